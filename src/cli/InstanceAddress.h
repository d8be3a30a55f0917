// Where the instance of one X display listens and keeps its lock: a private per-user directory
// ($XDG_RUNTIME_DIR/tilmora, else /tmp/tilmora-<uid>), in it a socket and a lock named after
// the display. Plain C++ and libc: the routing client links no Qt.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace tilmora {

struct InstanceAddress {
    std::string directory;
    std::string socketPath;
    std::string lockPath;
    // The display the instance serves, as DISPLAY names it once normalised.
    std::string display;
    // $XDG_RUNTIME_DIR is private by definition; the /tmp fallback is checked before use.
    bool underRuntimeDirectory = false;

    // The address for a DISPLAY value and an $XDG_RUNTIME_DIR value (empty when unset).
    static InstanceAddress make(std::string_view display, std::string_view runtimeDirectory,
                                uid_t user);
    // From this process's environment; nothing when DISPLAY is unset.
    static std::optional<InstanceAddress> fromEnvironment();

    // Why a client cannot use this address: a socket path too long for sockaddr_un, or a
    // fallback directory that is not this user's own private one. Nothing when it can.
    std::optional<std::string> problem() const;
    // Creates the directory (0700) when missing, makes it private when it is the user's own;
    // why it could not, else nothing.
    std::optional<std::string> preparePrivateDirectory() const;
};

// The display as a file name: ":1.0", "unix:1" and ":1" all become ":1", "host:10.0" becomes
// "host:10", and a '/' of a socket path form becomes '_'.
std::string normalizedDisplayName(std::string_view display);

} // namespace tilmora
