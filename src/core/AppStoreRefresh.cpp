// Start-up and the refresh cycle: the activation observer, the periodic refresh and the one a
// quarter second after each placement. Every callback holds the store weakly and touches it only
// from a task on the main loop.
#include "core/AppStore.h"

#include "geometry/TilmoraCoordinateSpace.h"

#include <QPointer>

namespace tilmora {

void AppStore::start() {
    if (hasStarted_) {
        return;
    }
    hasStarted_ = true;
    observeActiveApplications();
    refresh();
    // Registration failures become the status line.
    startHotKeys();
    startOptionDrag();

    QPointer<AppStore> weak(this);
    Scheduler& scheduler = platform_.scheduler;
    if (refreshTimer_) {
        scheduler.cancel(*refreshTimer_);
    }
    refreshTimer_ = scheduler.repeatEvery(refreshInterval, [weak, &scheduler] {
        scheduler.runSoon([weak] {
            if (weak) {
                weak->refresh();
            }
        });
    });
}

std::vector<DisplayGeometry> AppStore::readDisplays() {
    std::vector<DisplayGeometry> displays =
        TilmoraCoordinateSpace::currentDisplays(platform_.windowSystem.screens());
    publish(connectedDisplays_, displays, &AppStore::connectedDisplaysChanged);
    return displays;
}

void AppStore::updatePointerDisplay(const std::vector<DisplayGeometry>& displays) {
    std::optional<std::uint32_t> pointerDisplay;
    // The screens are read once more, as the pointer is: both describe the same moment.
    if (!platform_.windowSystem.screens().empty()) {
        const CGPoint pointer = platform_.windowSystem.pointerLocation();
        if (const auto display = TilmoraCoordinateSpace::display(pointer, displays)) {
            pointerDisplay = display->id;
        }
    }
    publish(pointerDisplayID_, pointerDisplay, &AppStore::pointerDisplayIDChanged);
}

void AppStore::refresh() {
    const std::vector<DisplayGeometry> displays = readDisplays();
    syncDisplayProfiles(displays);
    updatePointerDisplay(displays);
    syncSelectedDisplay(displays);
    setPermissionGranted(platform_.windowSystem.isTrusted());

    if (!permissionGranted_) {
        // The selection is kept: it is checked again once access returns.
        listedWindows_.clear();
        publish(windows_, std::vector<TilmoraWindow>{}, &AppStore::windowsChanged);
        return;
    }
    listedWindows_ = windowManager_.allWindows();
    std::vector<TilmoraWindow> listed;
    for (const ManagedWindow& window : listedWindows_) {
        listed.push_back(window.published());
    }
    publish(windows_, std::move(listed), &AppStore::windowsChanged);
    if (selectedWindowID_) {
        const bool stillThere = std::any_of(windows_.begin(), windows_.end(), [&](const auto& w) {
            return w.id == *selectedWindowID_;
        });
        if (!stillThere) {
            setSelectedWindowID(std::nullopt);
        }
    }
}

void AppStore::refreshSoon() {
    // Not coalesced: every placement gets its own refresh.
    QPointer<AppStore> weak(this);
    platform_.scheduler.runAfter(refreshSoonDelay, [weak] {
        if (weak) {
            weak->refresh();
        }
    });
}

void AppStore::observeActiveApplications() {
    QPointer<AppStore> weak(this);
    platform_.windowSystem.setActivationHandler([weak](const RunningApplication& app) {
        if (!weak) {
            return;
        }
        // Activating Tilmora itself must not make it the fallback target.
        if (app.bundleIdentifier == weak->windowManager_.ownBundleIdentifier()) {
            return;
        }
        const std::int32_t pid = app.processIdentifier;
        const QString name = applicationName(app);
        weak->platform_.scheduler.runSoon([weak, pid, name] {
            if (!weak) {
                return;
            }
            weak->lastTargetPID_ = pid;
            weak->publish(weak->lastTargetAppName_, name, &AppStore::lastTargetAppNameChanged);
        });
    });
}

void AppStore::requestAccessibilityPermission() {
    setPermissionGranted(platform_.windowSystem.requestTrust());
    setStatusMessage(permissionGranted_
                         ? QStringLiteral("Window manager access is enabled.")
                         : QStringLiteral("Start an EWMH window manager on this display, then "
                                          "check again."));
}

} // namespace tilmora
