#include "ui/QtPlacementOverlayFactory.h"

#include "ui/CanvasWindowPool.h"
#include "ui/OverlayLog.h"
#include "ui/PassivePlacementCanvasView.h"
#include "ui/PlacementCanvasView.h"

namespace tilmora {

QtPlacementOverlayFactory::QtPlacementOverlayFactory()
    : canvasWindows_(std::make_shared<CanvasWindowPool>()) {}

QtPlacementOverlayFactory::~QtPlacementOverlayFactory() = default;

void QtPlacementOverlayFactory::prepare(const std::vector<DisplayGeometry>& displays) {
    canvasWindows_->prepare(displays);
}

std::vector<std::unique_ptr<PlacementOverlay>> QtPlacementOverlayFactory::interactive(
    const std::vector<std::pair<DisplayGeometry, DisplayLayoutProfile>>& displays,
    const TilmoraWindow& target, Apply apply, std::function<void()> cancel) {
    qCDebug(lcOverlay) << "canvas asked for" << OverlayLog::stamp().constData();
    const auto session = std::make_shared<CanvasDragSession>();
    std::vector<std::unique_ptr<PlacementOverlay>> overlays;
    for (const auto& [display, profile] : displays) {
        PlacementCanvasView* view = nullptr;
        overlays.push_back(canvasWindows_->take(display, view));
        view->open(target, profile, apply, cancel, session);
    }
    return overlays;
}

std::unique_ptr<PlacementOverlay>
QtPlacementOverlayFactory::passive(const DisplayGeometry& display,
                                   std::shared_ptr<PlacementCanvasPreviewState> state) {
    return std::make_unique<PassivePlacementCanvasView>(display, std::move(state));
}

} // namespace tilmora
