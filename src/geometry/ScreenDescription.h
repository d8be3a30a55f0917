// One connected screen as the window system reports it, in the bottom-left space: origin at the
// primary screen's bottom-left corner, y up. The primary screen comes first in every list.
#pragma once

#include "geometry/CGGeometry.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace tilmora {

struct ScreenDescription {
    CGRect frame;
    // The frame minus panels and docks.
    CGRect visibleFrame;
    QString name;
    double scaleFactor = 1.0;
    // A number that stays with the physical display; none when the system cannot tell one.
    std::optional<std::uint32_t> displayNumber;

    friend bool operator==(const ScreenDescription&, const ScreenDescription&) = default;
};

} // namespace tilmora
