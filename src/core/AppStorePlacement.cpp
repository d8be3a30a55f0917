// The commands that move the target window: a quick layout, a block of grid cells, the next
// display, the canvas and a dropped drag. Each resolves the target, computes a frame in the
// top-left space, clamps it to a display, applies it and reports exactly one status line.
#include "core/AppStore.h"

#include "core/CommandFailures.h"
#include "core/FrameMapping.h"
#include "core/PlacementLimits.h"
#include "geometry/TilmoraCoordinateSpace.h"

#include <QPointer>

#include <algorithm>

namespace tilmora {

namespace space = TilmoraCoordinateSpace;

std::vector<DisplayGeometry> AppStore::currentDisplays() const {
    return space::currentDisplays(platform_.windowSystem.screens());
}

void AppStore::fail(const WindowManagerError& error) {
    setStatusMessage(error.errorDescription());
}

void AppStore::place(WindowElement window, const CGRect& frame, const QString& successText) {
    const auto result = windowManager_.setFrame(frame, window);
    if (!result) {
        fail(result.error());
        return;
    }
    setStatusMessage(successText + result->statusSuffix());
    refreshSoon();
}

void AppStore::apply(LayoutAction action) {
    const auto target = windowManager_.targetWindow(selectedWindowID_, lastTargetPID_);
    if (!target) {
        fail(target.error());
        return;
    }
    const auto display = space::display(target->frame, currentDisplays());
    if (!display) {
        fail(WindowManagerError::noTargetWindow);
        return;
    }
    const CGRect& area = display->visibleFrame;
    const CGRect frame =
        action.targetFrame(area, displayProfile(*display).gap).clamped(area, minimumPlacedSize);
    place(target->element, frame,
          action.title() + QStringLiteral(" applied to ") + target->appName + u'.');
}

std::optional<DisplayGeometry>
AppStore::gridDisplay(const ManagedWindow& window,
                      const std::vector<DisplayGeometry>& displays) const {
    // The display chosen for the custom grid wins, even when the window is on another one.
    if (displays.size() > 1 && selectedDisplayID_) {
        const auto selected =
            std::find_if(displays.begin(), displays.end(),
                         [&](const DisplayGeometry& d) { return d.id == *selectedDisplayID_; });
        if (selected != displays.end()) {
            return *selected;
        }
    }
    if (auto containing = space::display(window.frame, displays)) {
        return containing;
    }
    if (displays.empty()) {
        return std::nullopt;
    }
    return displays.front();
}

void AppStore::applyGrid(std::int64_t column, std::int64_t row, std::int64_t columnSpan,
                         std::int64_t rowSpan) {
    const auto target = windowManager_.targetWindow(selectedWindowID_, lastTargetPID_);
    if (!target) {
        fail(target.error());
        return;
    }
    const auto display = gridDisplay(*target, currentDisplays());
    if (!display) {
        fail(WindowManagerError::noTargetWindow);
        return;
    }
    const DisplayLayoutProfile profile = displayProfile(*display);
    const std::int64_t columns = std::max<std::int64_t>(profile.columns, 1);
    const std::int64_t rows = std::max<std::int64_t>(profile.rows, 1);
    const std::int64_t col = std::clamp<std::int64_t>(column, 0, columns - 1);
    const std::int64_t r = std::clamp<std::int64_t>(row, 0, rows - 1);
    const GridSpan span{.columns = columns,
                        .rows = rows,
                        .column = col,
                        .row = r,
                        .columnSpan = std::clamp<std::int64_t>(columnSpan, 1, columns - col),
                        .rowSpan = std::clamp<std::int64_t>(rowSpan, 1, rows - r)};
    const CGRect& area = display->visibleFrame;
    const CGRect frame = space::gridFrame(area, span, profile.gap).clamped(area, minimumPlacedSize);
    // Worded from the spans as asked for: a span of 0 raised to 1 still reads as an area.
    const QString kind =
        columnSpan == 1 && rowSpan == 1 ? QStringLiteral("Grid cell") : QStringLiteral("Grid area");
    place(target->element, frame, kind + QStringLiteral(" applied to ") + target->appName + u'.');
}

void AppStore::moveTargetToNextDisplay() {
    const auto target = windowManager_.targetWindow(selectedWindowID_, lastTargetPID_);
    if (!target) {
        fail(target.error());
        return;
    }
    const std::vector<DisplayGeometry> displays = currentDisplays();
    if (displays.size() < 2) {
        setStatusMessage(CommandFailures::onlyOneDisplay);
        return;
    }
    const auto current = space::display(target->frame, displays);
    const auto index =
        current ? std::find(displays.begin(), displays.end(), *current) : displays.end();
    if (index == displays.end()) {
        fail(WindowManagerError::noTargetWindow);
        return;
    }
    const auto position = static_cast<std::size_t>(index - displays.begin());
    const DisplayGeometry& next = displays[(position + 1) % displays.size()];
    const CGRect frame = mappedFrame(target->frame, current->visibleFrame, next.visibleFrame,
                                     displayProfile(next).gap);
    place(target->element, frame,
          QStringLiteral("Moved ") + target->appName + QStringLiteral(" to next display."));
}

void AppStore::showPlacementCanvas() {
    if (placementCanvas_ && placementCanvas_->isOpen()) {
        placementCanvas_->close();
        return;
    }
    const auto target = windowManager_.targetWindow(selectedWindowID_, lastTargetPID_);
    if (!target) {
        fail(target.error());
        return;
    }
    const std::vector<DisplayGeometry> displays = currentDisplays();
    if (displays.empty()) {
        fail(WindowManagerError::noTargetWindow);
        return;
    }
    if (!placementCanvas_) {
        setStatusMessage(CommandFailures::canvasUnavailable);
        return;
    }
    QPointer<AppStore> weak(this);
    const ManagedWindow captured = *target;
    placementCanvas_->show(
        displays, captured.published(), displayProfileMap(), [weak, captured](const CGRect& rect) {
            if (weak) {
                weak->applyPreparedPlacement(captured, rect, false,
                                             QStringLiteral("Canvas placement applied to "),
                                             QStringLiteral("."));
            }
        });
}

void AppStore::startOptionDrag() {
    if (!placementCanvas_) {
        return;
    }
    if (!optionDragCoordinator_) {
        optionDragCoordinator_ = std::make_unique<OptionDragCoordinator>(
            windowManager_, platform_.windowSystem, *placementCanvas_, platform_.inputMonitor,
            platform_.scheduler);
    }
    QPointer<AppStore> weak(this);
    optionDragCoordinator_->start(
        [weak] {
            if (!weak) {
                return OptionDragCoordinator::Configuration{
                    false, PlacementDragModifier::command, {}};
            }
            return OptionDragCoordinator::Configuration{
                weak->permissionGranted_, weak->placementDragModifier_, weak->displayProfileMap()};
        },
        [weak](const ManagedWindow& target, const CGRect& frame) {
            if (weak) {
                weak->applyDraggedPlacement(target, frame);
            }
        });
}

void AppStore::applyDraggedPlacement(const ManagedWindow& target, const CGRect& frame) {
    applyPreparedPlacement(target, frame, true, QStringLiteral("Dropped "),
                           QStringLiteral(" on canvas."));
}

void AppStore::applyPreparedPlacement(const ManagedWindow& target, const CGRect& frame,
                                      bool needsDisplay, const QString& before,
                                      const QString& after) {
    const std::vector<DisplayGeometry> displays = currentDisplays();
    if (needsDisplay && displays.empty()) {
        fail(WindowManagerError::noTargetWindow);
        return;
    }
    // The record may be old by now: find the window again, else write through what it holds.
    const ManagedWindow window = windowManager_.refreshedWindow(target).value_or(target);
    CGRect placed = frame;
    if (const auto display = space::display(frame, displays)) {
        placed = frame.clamped(display->visibleFrame, minimumPlacedSize);
    }
    place(window.element, placed, before + window.appName + after);
}

} // namespace tilmora
