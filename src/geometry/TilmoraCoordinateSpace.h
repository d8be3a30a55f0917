// The one place where screens become displays in the top-left space, and the rules that find the
// display under a point or a window and cut a display's usable area into grid cells.
#pragma once

#include "geometry/CGGeometry.h"
#include "geometry/DisplayGeometry.h"
#include "geometry/ScreenDescription.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora {

// A block of cells in a grid of `columns` x `rows`. Callers bring the values into range first.
struct GridSpan {
    std::int64_t columns = 1;
    std::int64_t rows = 1;
    std::int64_t column = 0;
    std::int64_t row = 0;
    std::int64_t columnSpan = 1;
    std::int64_t rowSpan = 1;

    friend bool operator==(const GridSpan&, const GridSpan&) = default;
};

namespace TilmoraCoordinateSpace {

// Flips every screen about the primary screen's top edge and makes the result integral. The
// first screen is the primary one; a screen without a number gets its 1-based position.
std::vector<DisplayGeometry> currentDisplays(const std::vector<ScreenDescription>& screens);

// Visible frames first, then whole frames (menu bars, panels), then the nearest frame centre.
std::optional<DisplayGeometry> display(CGPoint containing, const std::vector<DisplayGeometry>& in);
// The frame holding the centre, else the largest overlap, else the nearest frame centre.
std::optional<DisplayGeometry> display(const CGRect& containing,
                                       const std::vector<DisplayGeometry>& in);

// Which rectangle of a display a rule looks at: &DisplayGeometry::frame or ::visibleFrame.
using DisplayArea = CGRect DisplayGeometry::*;

// The display whose `area` overlaps `rect` most, when any overlaps at all; a later display wins
// only with a strictly larger overlap.
std::optional<DisplayGeometry> displayWithLargestOverlap(const CGRect& rect,
                                                         const std::vector<DisplayGeometry>& in,
                                                         DisplayArea area);
// The display whose `area` centre is nearest to `point`; a later display wins only when strictly
// nearer. Nothing only for an empty list.
std::optional<DisplayGeometry> displayNearest(CGPoint point, const std::vector<DisplayGeometry>& in,
                                              DisplayArea area);

// count + 1 offsets round(length * i / count), halves away from zero, each edge on its own.
std::vector<double> partitionEdges(double length, std::int64_t count);

// The frame of a block of cells inside `area`: gaps only between cells, the last column and row
// ending on the area's far edges. A negative gap counts as 0.
CGRect gridFrame(const CGRect& area, const GridSpan& span, double gap);

// The one grid cell of the display's visible frame under `point`. Hit-testing ignores the gaps,
// so a point in a gap belongs to the cell whose equal band holds it.
CGRect snapFrame(CGPoint containing, const DisplayGeometry& on, std::int64_t columns,
                 std::int64_t rows, double gap);

} // namespace TilmoraCoordinateSpace
} // namespace tilmora
