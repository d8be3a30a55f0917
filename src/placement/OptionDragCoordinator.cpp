#include "placement/OptionDragCoordinator.h"

#include "geometry/TilmoraCoordinateSpace.h"
#include "placement/PassivePlacementOverlay.h"
#include "platform/InputMonitor.h"
#include "platform/WindowSystem.h"
#include "shortcuts/ShortcutModifier.h"
#include "windows/WindowManager.h"

namespace tilmora {

namespace {

// Every configured modifier is held; extra ones do not matter. An empty set never qualifies.
bool qualifies(const InputEvent& event, const PlacementDragModifier& modifier) {
    const std::uint32_t required = modifier.modifiers;
    const std::uint32_t held = PlacementDragModifier::fromEventFlags(event.modifierFlags).modifiers;
    return (required & shortcutModifierMask) != 0 && (held & required) == required;
}

} // namespace

OptionDragCoordinator::OptionDragCoordinator(const WindowManager& windowManager,
                                             const WindowSystem& windowSystem,
                                             PassivePlacementOverlay& overlay,
                                             InputMonitor& inputMonitor, Scheduler& scheduler)
    : windowManager_(windowManager)
    , windowSystem_(windowSystem)
    , overlay_(overlay)
    , inputMonitor_(inputMonitor)
    , scheduler_(scheduler) {}

OptionDragCoordinator::~OptionDragCoordinator() {
    *alive_ = false;
    if (monitoring_) {
        inputMonitor_.stop();
    }
}

void OptionDragCoordinator::start(ConfigurationProvider configurationProvider,
                                  ApplyHandler applyHandler) {
    configurationProvider_ = std::move(configurationProvider);
    applyHandler_ = std::move(applyHandler);
    if (monitoring_) {
        return;
    }
    // Each event is handled on a later turn of the main loop, never inside the delivery.
    monitoring_ = inputMonitor_.start([this, alive = alive_](const InputEvent& event) {
        scheduler_.runSoon([this, alive, event] {
            if (*alive) {
                handle(event);
            }
        });
    });
}

std::optional<OptionDragCoordinator::Preview>
OptionDragCoordinator::preview(CGPoint pointer, const std::vector<DisplayGeometry>& displays,
                               const QHash<std::uint32_t, DisplayLayoutProfile>& displayProfiles) {
    const auto display = TilmoraCoordinateSpace::display(pointer, displays);
    if (!display) {
        return std::nullopt;
    }
    const auto profile = displayProfiles.constFind(display->id);
    const bool hasProfile = profile != displayProfiles.constEnd();
    const CGRect cell = TilmoraCoordinateSpace::snapFrame(
        pointer, *display, hasProfile ? profile->columns : 2, hasProfile ? profile->rows : 1,
        hasProfile ? profile->gap : 0);
    return Preview{cell.clamped(display->visibleFrame, {160, 120}), *display};
}

void OptionDragCoordinator::handle(const InputEvent& event) {
    if (!configurationProvider_) {
        resetDrag();
        return;
    }
    const Configuration configuration = configurationProvider_();
    if (!configuration.isEnabled) {
        resetDrag();
        return;
    }
    switch (event.type) {
    case InputEvent::Type::leftMouseDown:
        preparePendingTarget(event, configuration);
        break;
    case InputEvent::Type::leftMouseUp:
        finishDrag(event, configuration);
        break;
    case InputEvent::Type::leftMouseDragged:
        followPointer(event, configuration);
        break;
    case InputEvent::Type::flagsChanged:
        if (!qualifies(event, configuration.modifier)) {
            resetDrag();
        }
        break;
    }
}

void OptionDragCoordinator::preparePendingTarget(const InputEvent& event,
                                                 const Configuration& configuration) {
    // Every press starts clean, and closes an overlay a lost release left open.
    resetDrag();
    const auto pointer = currentMouseLocation(event);
    if (qualifies(event, configuration.modifier) && pointer) {
        pendingMouseDownPoint_ = pointer;
        pendingTarget_ = windowManager_.window(*pointer);
    }
}

std::optional<ManagedWindow> OptionDragCoordinator::findTarget(CGPoint point) const {
    if (pendingTarget_) {
        return pendingTarget_;
    }
    if (auto pressed = windowManager_.window(pendingMouseDownPoint_.value_or(point))) {
        return pressed;
    }
    if (auto under = windowManager_.window(point)) {
        return under;
    }
    if (auto target = windowManager_.targetWindow(std::nullopt, std::nullopt)) {
        return *target;
    }
    return std::nullopt;
}

void OptionDragCoordinator::beginDrag(CGPoint point, const Configuration& configuration) {
    auto target = findTarget(point);
    if (!target) {
        return;
    }
    auto displays = TilmoraCoordinateSpace::currentDisplays(windowSystem_.screens());
    if (displays.empty()) {
        return;
    }
    dragState_ = DragState{*target, std::move(displays), configuration, std::nullopt, std::nullopt};
    overlay_.showPassive(dragState_->displays, target->published(), configuration.displayProfiles,
                         configuration.modifier);
}

void OptionDragCoordinator::updateDragPreview(CGPoint point) {
    if (!dragState_) {
        return;
    }
    // Off every display the last preview stays.
    const auto shown =
        preview(point, dragState_->displays, dragState_->configuration.displayProfiles);
    if (!shown) {
        return;
    }
    dragState_->previewFrame = shown->frame;
    dragState_->activeDisplay = shown->display;
    overlay_.updatePassivePreview(shown->frame, shown->display);
}

bool OptionDragCoordinator::followPointer(const InputEvent& event,
                                          const Configuration& configuration) {
    // Checked before the location: a plain drag (the canvas's, any application's) must not
    // cost a round trip to the server on every motion.
    if (!qualifies(event, configuration.modifier)) {
        resetDrag();
        return false;
    }
    const auto pointer = currentMouseLocation(event);
    if (!pointer) {
        resetDrag();
        return false;
    }
    if (!dragState_) {
        beginDrag(*pointer, configuration);
    }
    updateDragPreview(*pointer);
    return true;
}

void OptionDragCoordinator::finishDrag(const InputEvent& event,
                                       const Configuration& configuration) {
    // A modifier-click without a drag places the window under the pointer too.
    if (!followPointer(event, configuration)) {
        return;
    }
    if (!dragState_ || !dragState_->previewFrame) {
        resetDrag();
        return;
    }
    const ManagedWindow target =
        windowManager_.refreshedWindow(dragState_->target).value_or(dragState_->target);
    const CGRect frame = *dragState_->previewFrame;
    const ApplyHandler handler = applyHandler_;
    resetDrag();
    // After the release has reached every client, and the window manager has ended its move.
    scheduler_.runSoon([handler, target, frame] {
        if (handler) {
            handler(target, frame);
        }
    });
}

void OptionDragCoordinator::resetDrag() {
    pendingTarget_.reset();
    pendingMouseDownPoint_.reset();
    if (dragState_) {
        dragState_.reset();
        overlay_.close();
    }
}

std::optional<CGPoint> OptionDragCoordinator::currentMouseLocation(const InputEvent& event) const {
    // The screens are a round trip to the server: a motion of a drag in progress goes by the
    // displays the drag began with, every other event (the release included) asks again.
    const bool moving = event.type == InputEvent::Type::leftMouseDragged && dragState_;
    if (!moving && windowSystem_.screens().empty()) {
        return std::nullopt;
    }
    return event.location;
}

} // namespace tilmora
