// The live preview of a modifier drag on one display: the same surface and grid as the canvas,
// the rectangle the window would land on, and a header with the drag's modifier symbols. It
// never takes input; without a compositor it is shaped to what it draws, so the desktop beneath,
// the dragged window included, stays live.
#pragma once

#include "geometry/PlacementCanvasGeometry.h"
#include "placement/PlacementCanvasPreviewState.h"
#include "ui/CanvasHeader.h"
#include "ui/OverlayWindow.h"

#include <memory>
#include <optional>
#include <vector>

namespace tilmora {

class PassivePlacementCanvasView final : public OverlayWindow {
public:
    PassivePlacementCanvasView(const DisplayGeometry& display,
                               std::shared_ptr<PlacementCanvasPreviewState> state);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void stateChanged();

    std::shared_ptr<PlacementCanvasPreviewState> state_;
    CGRect localVisible_;
    std::vector<PlacementCanvasGeometry::LineSegment> gridLines_;
    CanvasHeader header_;
    bool showsHeader_ = true;
    std::optional<CGRect> localPreviewRect_;
};

} // namespace tilmora
