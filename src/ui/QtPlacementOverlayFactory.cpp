#include "ui/QtPlacementOverlayFactory.h"

#include "ui/PassivePlacementCanvasView.h"
#include "ui/PlacementCanvasView.h"

namespace tilmora {

std::vector<std::unique_ptr<PlacementOverlay>> QtPlacementOverlayFactory::interactive(
    const std::vector<std::pair<DisplayGeometry, DisplayLayoutProfile>>& displays,
    const TilmoraWindow& target, Apply apply, std::function<void()> cancel) {
    const auto session = std::make_shared<CanvasDragSession>();
    std::vector<std::unique_ptr<PlacementOverlay>> overlays;
    for (const auto& [display, profile] : displays) {
        overlays.push_back(std::make_unique<PlacementCanvasView>(display, target, profile, apply,
                                                                 cancel, session));
    }
    return overlays;
}

std::unique_ptr<PlacementOverlay>
QtPlacementOverlayFactory::passive(const DisplayGeometry& display,
                                   std::shared_ptr<PlacementCanvasPreviewState> state) {
    return std::make_unique<PassivePlacementCanvasView>(display, std::move(state));
}

} // namespace tilmora
