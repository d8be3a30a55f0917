// The overlay windows of the placement interaction: the interactive canvas on which the user
// draws the target area, and the passive preview of a modifier drag. One set at a time; opening
// either closes the other. Closing is deferred to a later turn of the main loop because it is
// mostly asked for from inside an event that one of the overlays is still handling, while the
// state clears at once, so a following show starts from nothing.
#pragma once

#include "core/PlacementCanvas.h"
#include "placement/PlacementCanvasPreviewState.h"
#include "placement/PlacementOverlayFactory.h"
#include "platform/Scheduler.h"

#include <functional>
#include <memory>
#include <vector>

namespace tilmora {

class PlacementCanvasController final : public PlacementCanvas {
public:
    // `failed` receives a one-line reason when an open canvas has to give up (its input refused).
    PlacementCanvasController(PlacementOverlayFactory& factory, Scheduler& scheduler,
                              std::function<void(const QString&)> failed);
    ~PlacementCanvasController() override;

    bool isOpen() const override { return !windows_.empty(); }
    bool isPassive() const { return passiveState_ != nullptr; }
    const PlacementCanvasPreviewState* passiveState() const { return passiveState_.get(); }

    void show(const std::vector<DisplayGeometry>& displays, const TilmoraWindow& target,
              const QHash<std::uint32_t, DisplayLayoutProfile>& displayProfiles,
              Apply apply) override;
    void showPassive(const std::vector<DisplayGeometry>& displays, const TilmoraWindow& target,
                     const QHash<std::uint32_t, DisplayLayoutProfile>& displayProfiles,
                     const PlacementDragModifier& modifier) override;
    void updatePassivePreview(const std::optional<CGRect>& frame,
                              const std::optional<DisplayGeometry>& display) override;
    void close() override;

    // The monitors changed: a shown live preview moves onto the new set, windows made again
    // with the same shared state; the interactive canvas is left to cancel itself, as a drawing
    // on a monitor that moved would land somewhere else.
    void followDisplays(const std::vector<DisplayGeometry>& displays);

private:
    void presentPassive(const std::vector<DisplayGeometry>& displays);

    PlacementOverlayFactory& factory_;
    Scheduler& scheduler_;
    std::function<void(const QString&)> failed_;
    std::vector<std::unique_ptr<PlacementOverlay>> windows_;
    std::shared_ptr<PlacementCanvasPreviewState> passiveState_;
    std::vector<DisplayGeometry> passiveDisplays_;
    // Lets the deferred work of a view's callback find out that the controller is gone.
    std::shared_ptr<PlacementCanvasController*> alive_;
};

} // namespace tilmora
