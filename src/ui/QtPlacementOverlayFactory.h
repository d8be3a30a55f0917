// The canvas controller's overlays as Qt windows, one per monitor.
#pragma once

#include "placement/PlacementOverlayFactory.h"

namespace tilmora {

class QtPlacementOverlayFactory final : public PlacementOverlayFactory {
public:
    std::vector<std::unique_ptr<PlacementOverlay>>
    interactive(const std::vector<std::pair<DisplayGeometry, DisplayLayoutProfile>>& displays,
                const TilmoraWindow& target, Apply apply, std::function<void()> cancel) override;
    std::unique_ptr<PlacementOverlay>
    passive(const DisplayGeometry& display,
            std::shared_ptr<PlacementCanvasPreviewState> state) override;
};

} // namespace tilmora
