// Relaunch: starts a new copy of this executable and quits this one. The new process is marked
// so that it waits for this one's lock instead of handing over to it as a second launch does.
#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace tilmora::Relauncher {

// The environment variable that marks the new process.
inline constexpr char marker[] = "TILMORA_RELAUNCHED";
// How long the new process waits for the old one to let go of the lock.
inline constexpr std::chrono::milliseconds lockWait{10000};

// Why the new process could not be started, or nothing once it is on its way and this one
// is quitting.
std::optional<QString> relaunch();

// True in a process that a relaunch started; clears the mark so that its own children do not
// inherit it.
bool takeMarker();

} // namespace tilmora::Relauncher
