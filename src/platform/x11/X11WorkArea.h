// The usable part of each monitor: the monitor minus the space that docks and panels reserve
// with struts, so that a panel on one monitor shrinks only that monitor.
#pragma once

#include "platform/x11/X11Geometry.h"

#include <vector>

namespace tilmora {

// The rectangles (root pixels) that one strut reserves, one per non-zero side.
std::vector<X11Rect> strutRectangles(const X11Strut& strut, std::int64_t rootWidth,
                                     std::int64_t rootHeight);

// Per monitor, in the monitors' order: the monitor minus every strut rectangle that reaches
// into it, keeping the largest rectangle that remains. A strut rectangle that spans a monitor
// along its whole depth (a panel on the inner edge of a neighbouring monitor, measured from
// the root window's edge) does not reserve that monitor.
std::vector<X11Rect> usableAreas(const std::vector<X11Rect>& monitors,
                                 const std::vector<X11Strut>& struts, std::int64_t rootWidth,
                                 std::int64_t rootHeight);

// Per monitor: the work area (as mutter publishes per monitor) that overlaps it most, clipped
// to it; the monitor itself when none overlaps.
std::vector<X11Rect> matchWorkAreas(const std::vector<X11Rect>& monitors,
                                    const std::vector<X11Rect>& workAreas);

// The largest of the four parts of `area` that lie left of, right of, above and below `hole`.
X11Rect largestRemainder(const X11Rect& area, const X11Rect& hole);

} // namespace tilmora
