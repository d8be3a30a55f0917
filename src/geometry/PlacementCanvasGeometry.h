// The arithmetic of the placement canvas views, apart from any drawing: a view covers one
// display's whole frame with its origin at the frame's top-left corner; the user draws inside the
// display's usable area, and what is drawn (or the grid cell clicked) becomes a window frame in
// the top-left desktop space.
#pragma once

#include "geometry/CGGeometry.h"
#include "geometry/DisplayGeometry.h"
#include "geometry/DisplayLayoutProfile.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora::PlacementCanvasGeometry {

// A drawn rectangle narrower or lower than this is a click on the grid cell under the release.
inline constexpr double clickSize = 24;
// Every frame the canvas applies is at least this large.
inline constexpr CGSize minimumFrameSize{160, 120};

// The display's usable area in the view's own coordinates.
CGRect localVisibleRect(const DisplayGeometry& display);
// Into the usable area, far edges included.
CGPoint clampedPoint(CGPoint local, const DisplayGeometry& display);
// The grid cell (with its gaps) under a local point, in local coordinates.
CGRect localGridCell(CGPoint local, const DisplayGeometry& display,
                     const DisplayLayoutProfile& profile);
// The rectangle between the clamped start of a drag and its current point, cut to the usable
// area and made integral.
CGRect drawnRect(CGPoint start, CGPoint current, const DisplayGeometry& display);
// What the release of a drag applies: the drawn rectangle, or the cell under the release point
// when too little was drawn, as a frame in the desktop space inside the visible frame and at
// least the minimum size.
CGRect appliedFrame(const std::optional<CGRect>& drawn, CGPoint end, const DisplayGeometry& display,
                    const DisplayLayoutProfile& profile);
// "600 x 400 • 19%": the size and its share of the display's usable area.
QString previewText(const CGRect& local, const DisplayGeometry& display);

struct LineSegment {
    CGPoint from;
    CGPoint to;

    friend bool operator==(const LineSegment&, const LineSegment&) = default;
};

// Equal divisions of the usable area without gaps or rounding (they show the grid, not its
// cells), then the four sides of the whole view.
std::vector<LineSegment> gridLines(const DisplayGeometry& display, std::int64_t columns,
                                   std::int64_t rows, CGSize viewSize);

// The live preview of a drag as this display's view shows it: only on the display that holds
// it, in local coordinates, cut to the usable area; nothing when nothing of it is left.
std::optional<CGRect> passivePreviewRect(const std::optional<CGRect>& previewFrame,
                                         std::optional<std::uint32_t> activeDisplayID,
                                         const DisplayGeometry& display);
// Every display shows its header until the preview lands on one; then only that one does.
bool showsPassiveHeader(std::optional<std::uint32_t> activeDisplayID,
                        const DisplayGeometry& display);

} // namespace tilmora::PlacementCanvasGeometry
