// What a frame application achieved: the frame asked for, the closest frame the window reported,
// and whether that was close enough to count as exact.
#pragma once

#include "geometry/CGGeometry.h"

#include <QString>

namespace tilmora {

struct WindowPlacementResult {
    CGRect requestedFrame;
    CGRect finalFrame;
    // Write passes performed, 1 to 4.
    int attempts = 0;
    bool isExact = false;

    // Empty when exact; otherwise " App limited final size to W x H instead of W' x H'.",
    // appended to a command's success line.
    QString statusSuffix() const;

    friend bool operator==(const WindowPlacementResult&, const WindowPlacementResult&) = default;
};

} // namespace tilmora
