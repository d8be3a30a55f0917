// Moving a window's frame from one display's usable area to another's, keeping its relative
// place and size, full-width or full-height spans full, and a window that fills its display
// filling the new one.
#pragma once

#include "geometry/CGGeometry.h"

namespace tilmora {

// How far a frame may be from an edge (or from the whole area) and still count as aligned.
constexpr double frameAlignmentTolerance = 4;

// The gap enters only through an inset of both areas, so a window placed with a gap on one
// display lands with the destination's gap; edge-aligned spans use the raw area.
CGRect mappedFrame(const CGRect& frame, const CGRect& from, const CGRect& to, double gap);

} // namespace tilmora
