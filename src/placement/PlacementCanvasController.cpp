#include "placement/PlacementCanvasController.h"

namespace tilmora {

PlacementCanvasController::PlacementCanvasController(PlacementOverlayFactory& factory,
                                                     Scheduler& scheduler,
                                                     std::function<void(const QString&)> failed)
    : factory_(factory)
    , scheduler_(scheduler)
    , failed_(std::move(failed))
    , alive_(std::make_shared<PlacementCanvasController*>(this)) {}

PlacementCanvasController::~PlacementCanvasController() {
    *alive_ = nullptr;
    for (const auto& window : windows_) {
        window->dismiss();
    }
}

void PlacementCanvasController::show(
    const std::vector<DisplayGeometry>& displays, const TilmoraWindow& target,
    const QHash<std::uint32_t, DisplayLayoutProfile>& displayProfiles, Apply apply) {
    close();
    if (displays.empty()) {
        return;
    }
    const std::weak_ptr<PlacementCanvasController*> weak = alive_;
    const auto closeSoon = [weak] {
        if (const auto alive = weak.lock(); alive && *alive) {
            // Deferred by close() itself; the view that asked is still in its event.
            (*alive)->close();
        }
    };
    std::vector<std::pair<DisplayGeometry, DisplayLayoutProfile>> views;
    for (const DisplayGeometry& display : displays) {
        views.emplace_back(
            display, displayProfiles.value(
                         display.id, DisplayLayoutProfile{display.id, display.name, 2, 1, 0}));
    }
    windows_ = factory_.interactive(
        views, target,
        [apply, closeSoon](const CGRect& frame) {
            // The store places the window before the overlays go.
            apply(frame);
            closeSoon();
        },
        closeSoon);
    if (windows_.empty()) {
        return;
    }
    for (const auto& window : windows_) {
        window->present();
    }
    // The last display's window holds the grab; the others get their events through it.
    const PlacementOverlay* holder = windows_.back().get();
    windows_.back()->takeInput([weak, holder](const QString& reason) {
        const auto alive = weak.lock();
        if (!alive || !*alive) {
            return;
        }
        PlacementCanvasController& self = **alive;
        // A refusal that arrives after this set was replaced is about windows already gone.
        if (self.windows_.empty() || self.windows_.back().get() != holder) {
            return;
        }
        self.close();
        if (self.failed_) {
            self.failed_(reason);
        }
    });
}

void PlacementCanvasController::showPassive(
    const std::vector<DisplayGeometry>& displays, const TilmoraWindow& target,
    const QHash<std::uint32_t, DisplayLayoutProfile>& displayProfiles,
    const PlacementDragModifier& modifier) {
    close();
    passiveState_ =
        std::make_shared<PlacementCanvasPreviewState>(target, displayProfiles, modifier);
    presentPassive(displays);
}

void PlacementCanvasController::presentPassive(const std::vector<DisplayGeometry>& displays) {
    passiveDisplays_ = displays;
    for (const DisplayGeometry& display : displays) {
        windows_.push_back(factory_.passive(display, passiveState_));
    }
    for (const auto& window : windows_) {
        window->present();
    }
}

void PlacementCanvasController::followDisplays(const std::vector<DisplayGeometry>& displays) {
    if (!passiveState_ || displays == passiveDisplays_) {
        return;
    }
    const auto state = passiveState_;
    close();
    passiveState_ = state;
    presentPassive(displays);
}

void PlacementCanvasController::updatePassivePreview(
    const std::optional<CGRect>& frame, const std::optional<DisplayGeometry>& display) {
    if (!passiveState_) {
        return;
    }
    passiveState_->publish(frame, display ? std::optional(display->id) : std::nullopt,
                           display ? std::optional(display->name) : std::nullopt);
}

void PlacementCanvasController::close() {
    auto taken =
        std::make_shared<std::vector<std::unique_ptr<PlacementOverlay>>>(std::move(windows_));
    windows_.clear();
    passiveState_.reset();
    passiveDisplays_.clear();
    if (taken->empty()) {
        return;
    }
    scheduler_.runSoon([taken] {
        for (const auto& window : *taken) {
            window->dismiss();
        }
        taken->clear();
    });
}

} // namespace tilmora
