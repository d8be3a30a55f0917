// The canvas controller's overlays as Qt windows, one per monitor.
#pragma once

#include "placement/PlacementOverlayFactory.h"

#include <memory>

namespace tilmora {

class CanvasWindowPool;

class QtPlacementOverlayFactory final : public PlacementOverlayFactory {
public:
    QtPlacementOverlayFactory();
    ~QtPlacementOverlayFactory() override;

    // The canvas windows of these monitors made ahead of the first opening.
    void prepare(const std::vector<DisplayGeometry>& displays);

    std::vector<std::unique_ptr<PlacementOverlay>>
    interactive(const std::vector<std::pair<DisplayGeometry, DisplayLayoutProfile>>& displays,
                const TilmoraWindow& target, Apply apply, std::function<void()> cancel) override;
    std::unique_ptr<PlacementOverlay>
    passive(const DisplayGeometry& display,
            std::shared_ptr<PlacementCanvasPreviewState> state) override;

private:
    std::shared_ptr<CanvasWindowPool> canvasWindows_;
};

} // namespace tilmora
