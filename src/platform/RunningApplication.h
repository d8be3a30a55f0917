// One running application as the window system reports it.
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace tilmora {

struct RunningApplication {
    std::int32_t processIdentifier = 0;
    // The application id (GTK application id, desktop entry, else the WM_CLASS class). Named
    // like the field of the window records, which carry it unchanged.
    std::optional<QString> bundleIdentifier;
    // The user-visible name; absent when the system knows none.
    std::optional<QString> localizedName;
    // True for applications with ordinary task-bar windows; helpers, panels and agents are not.
    bool isRegular = false;
    // Still listed for a moment after it exited; nothing of it can be read any more.
    bool isTerminated = false;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

} // namespace tilmora
