// One numbered card of the display identification overlays.
#pragma once

#include "geometry/DisplayGeometry.h"

namespace tilmora {

struct DisplayIdentifierItem {
    DisplayGeometry display;
    // 1-based, in display order.
    int number = 0;
    bool isSelected = false;
    bool isPointer = false;

    friend bool operator==(const DisplayIdentifierItem&, const DisplayIdentifierItem&) = default;
};

} // namespace tilmora
