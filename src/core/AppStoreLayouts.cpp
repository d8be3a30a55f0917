// Saved layouts: capturing every listed window with its display, restoring a layout onto the
// displays connected now, and deleting one.
#include "core/AppStore.h"

#include "core/CommandFailures.h"
#include "core/PlacementLimits.h"
#include "geometry/TilmoraCoordinateSpace.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace tilmora {

namespace space = TilmoraCoordinateSpace;

namespace {

// The locale's medium date: its long date without the weekday and with the month abbreviated,
// "Nov 16, 2026" in English.
QString mediumDate(const QLocale& locale, const QDate& date) {
    QString format = locale.dateFormat(QLocale::LongFormat);
    static const QRegularExpression weekday(QStringLiteral("d{4}[,.]?\\s*"));
    format.remove(weekday);
    format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    return locale.toString(date, format.trimmed());
}

WindowFrame relativeFrame(const CGRect& frame, const CGRect& area) {
    const double width = std::max(area.width(), 1.0);
    const double height = std::max(area.height(), 1.0);
    return {(frame.minX() - area.minX()) / width, (frame.minY() - area.minY()) / height,
            frame.width() / width, frame.height() / height};
}

} // namespace

QString AppStore::defaultLayoutName() {
    const QLocale locale;
    const QDateTime now = QDateTime::currentDateTime();
    return QStringLiteral("Layout ") + mediumDate(locale, now.date()) + QStringLiteral(", ") +
           locale.toString(now.time(), QLocale::ShortFormat);
}

void AppStore::saveCurrentLayout(const QString& name) {
    refresh();
    const QString trimmed = name.trimmed();
    const QString layoutName = trimmed.isEmpty() ? defaultLayoutName() : trimmed;
    if (windows_.empty()) {
        setStatusMessage(CommandFailures::nothingToSave);
        return;
    }
    const std::vector<DisplayGeometry> displays = currentDisplays();
    // Whole seconds, as the stored document keeps them, so that the list in memory is the list
    // a restart reads back.
    const QDateTime createdAt =
        QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch(), Qt::UTC);
    SavedLayout layout{QUuid::createUuid(), layoutName, createdAt, {}};
    for (const TilmoraWindow& window : windows_) {
        SavedWindowPlacement placement;
        placement.id = QUuid::createUuid();
        placement.appName = window.appName;
        placement.bundleIdentifier = window.bundleIdentifier;
        placement.title = window.title;
        placement.frame = WindowFrame::fromRect(window.frame);
        if (const auto display = space::display(window.frame, displays)) {
            placement.displayID = display->id;
            placement.displayName = display->name;
            placement.displayFrame = WindowFrame::fromRect(display->visibleFrame);
            placement.relativeFrame = relativeFrame(window.frame, display->visibleFrame);
        }
        layout.windows.push_back(std::move(placement));
    }
    std::vector<SavedLayout> layouts = savedLayouts_;
    layouts.insert(layouts.begin(), std::move(layout));
    publish(savedLayouts_, std::move(layouts), &AppStore::savedLayoutsChanged);
    if (saveSavedLayouts()) {
        setStatusMessage(QStringLiteral("Saved ") + layoutName + u'.');
    }
}

void AppStore::restore(const SavedLayout& layout) {
    // Restoring moves no window before every target is known, and nothing a move changes
    // (displays, titles, applications) decides a target: all windows are then placed together.
    const std::vector<ManagedWindow> listed = windowManager_.allWindows();
    const std::vector<DisplayGeometry> displays = currentDisplays();
    std::vector<WindowManager::FrameRequest> requests;
    for (const SavedWindowPlacement& saved : layout.windows) {
        // No window is set aside once used: two saved windows may move the same live one.
        const auto window = WindowManager::findMatchingWindow(saved, listed);
        if (!window) {
            continue;
        }
        auto display = saved.preferredDisplay(displays, saved.frame.rect());
        if (!display) {
            display = space::display(window->frame, displays);
        }
        CGRect target = saved.frame.rect();
        if (display) {
            const CGRect& area = display->visibleFrame;
            if (saved.relativeFrame) {
                const WindowFrame& r = *saved.relativeFrame;
                target = CGRect{area.minX() + area.width() * r.x, area.minY() + area.height() * r.y,
                                area.width() * r.width, area.height() * r.height}
                             .clamped(area, minimumPlacedSize);
            }
            // An absolute frame is only pushed inside the display, never carried across.
            target = target.clamped(area, minimumPlacedSize);
        }
        requests.push_back({target, window->element});
    }
    int restored = 0;
    int limited = 0;
    for (const auto& result : windowManager_.setFrames(requests)) {
        if (!result) {
            fail(result.error());
            continue;
        }
        ++restored;
        if (!result->isExact) {
            ++limited;
        }
    }
    if (restored == 0) {
        setStatusMessage(CommandFailures::nothingRestored);
    } else if (limited == 0) {
        setStatusMessage(QStringLiteral("Restored %1 windows.").arg(restored));
    } else {
        setStatusMessage(QStringLiteral("Restored %1 windows. %2 app windows limited their final "
                                        "size.")
                             .arg(restored)
                             .arg(limited));
    }
    refreshSoon();
}

void AppStore::deleteLayout(const SavedLayout& layout) {
    std::vector<SavedLayout> layouts = savedLayouts_;
    std::erase_if(layouts, [&](const SavedLayout& l) { return l.id == layout.id; });
    publish(savedLayouts_, std::move(layouts), &AppStore::savedLayoutsChanged);
    if (saveSavedLayouts()) {
        setStatusMessage(QStringLiteral("Deleted ") + layout.name + u'.');
    }
}

bool AppStore::saveSavedLayouts() {
    return keepUnreadable(SavedLayoutStore::key, savedLayoutStore_.unreadableData(),
                          QStringLiteral("saved layouts")) &&
           written(savedLayoutStore_.save(savedLayouts_));
}

} // namespace tilmora
