// One connected display in both coordinate spaces: as the window system reports it (bottom-left
// origin) and as every placement uses it (top-left origin, integral).
#pragma once

#include "geometry/CGGeometry.h"

#include <QString>

#include <cstdint>

namespace tilmora {

struct DisplayGeometry {
    // The display's number, or its 1-based position when the system gives none. Keys the grid
    // profiles and saved placements.
    std::uint32_t id = 0;
    QString name;
    CGRect appKitFrame;
    CGRect appKitVisibleFrame;
    CGRect frame;
    // The usable area; every layout, grid and snap works in it.
    CGRect visibleFrame;
    double scaleFactor = 1.0;
    // The primary display, first of the list; it does not follow keyboard focus.
    bool isMain = false;

    friend bool operator==(const DisplayGeometry&, const DisplayGeometry&) = default;
};

std::ostream& operator<<(std::ostream& stream, const DisplayGeometry& display);

} // namespace tilmora
