// One entry of the window server's list of visible windows, which answers "what is under this
// point" without asking every application.
#pragma once

#include "geometry/CGGeometry.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace tilmora {

struct OnScreenWindow {
    // Absent when the server cannot tell which process owns the window.
    std::optional<std::int32_t> ownerProcessIdentifier;
    // 0 for ordinary application windows; docks, desktops and kept-above or -below windows
    // are on other layers.
    std::int32_t layer = 0;
    // The outer frame, in the top-left space of window positions.
    CGRect bounds;
    std::optional<QString> title;

    friend bool operator==(const OnScreenWindow&, const OnScreenWindow&) = default;
};

} // namespace tilmora
