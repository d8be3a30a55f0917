// Global hot keys: starting the hot key center, running the commands its keys deliver, and the two
// shortcut settings, which reach the center before they are stored.
#include "core/AppStore.h"
#include "core/PreferenceKeys.h"

#include <QPointer>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tilmora {

namespace {

// How many refused shortcuts the status line names before it only counts the rest.
constexpr std::size_t namedFailureCount = 4;

} // namespace

void AppStore::startHotKeys() {
    // Held weakly: a command that arrives after the store is gone does nothing.
    QPointer<AppStore> weak(this);
    Scheduler& scheduler = platform_.scheduler;
    hotKeyCenter_.start(placementHotKey_, quickHotKeyModifiers_,
                        [weak, &scheduler](const HotKeyCommand& command) {
                            scheduler.runSoon([weak, command] {
                                if (weak) {
                                    weak->runHotKeyCommand(command);
                                }
                            });
                        });
    if (!hotKeyCenter_.failures().empty()) {
        setStatusMessage(hotKeyFailureMessage(hotKeyCenter_.failures()));
    }
}

void AppStore::runHotKeyCommand(const HotKeyCommand& command) {
    if (const auto& action = command.layoutAction()) {
        apply(*action);
    } else {
        showPlacementCanvas();
    }
}

void AppStore::setPlacementHotKey(HotKeyShortcut shortcut) {
    if (!hasShortcutModifier(shortcut.modifiers)) {
        setStatusMessage(QStringLiteral("Use at least one modifier key with a normal key."));
        return;
    }
    const std::int32_t status = hotKeyCenter_.updateCanvasShortcut(shortcut);
    if (status != HotKeyStatus::success && hasStarted_) {
        // The center has put the previous shortcut back; it stays stored too.
        setStatusMessage(
            QStringLiteral("That shortcut is already used by your desktop or another app."));
        return;
    }
    const QString text = shortcut.displayText();
    publish(placementHotKey_, std::move(shortcut), &AppStore::placementHotKeyChanged);
    if (!savePlacementHotKey(placementHotKey_)) {
        return;
    }
    setStatusMessage(QStringLiteral("Placement Canvas hotkey changed to ") + text + u'.');
}

void AppStore::setQuickHotKeyModifiers(QuickHotKeyModifiers modifiers) {
    if (!hasShortcutModifier(modifiers.modifiers)) {
        setStatusMessage(QStringLiteral("Choose at least one quick hotkey modifier."));
        return;
    }
    // Before start() nothing is registered yet: start() registers the stored set.
    const std::vector<HotKeyCenter::RegistrationFailure> failures =
        hasStarted_ ? hotKeyCenter_.updateQuickLayoutModifiers(modifiers)
                    : std::vector<HotKeyCenter::RegistrationFailure>{};
    if (!failures.empty()) {
        setStatusMessage(hotKeyFailureMessage(failures));
        return;
    }
    publish(quickHotKeyModifiers_, modifiers, &AppStore::quickHotKeyModifiersChanged);
    if (!saveQuickHotKeyModifiers(modifiers)) {
        return;
    }
    setStatusMessage(QStringLiteral("Quick Layout hotkeys changed to ") + modifiers.displayText() +
                     QStringLiteral(" + layout keys."));
}

bool AppStore::savePlacementHotKey(const HotKeyShortcut& shortcut) {
    return saveData<&HotKeyShortcut::decode>(PreferenceKeys::placementHotKey, shortcut.encode(),
                                             QStringLiteral("Placement Canvas hotkey"));
}

bool AppStore::saveQuickHotKeyModifiers(const QuickHotKeyModifiers& modifiers) {
    return saveData<&QuickHotKeyModifiers::decode>(PreferenceKeys::quickHotKeyModifiers,
                                                   modifiers.encode(),
                                                   QStringLiteral("Quick Layout hotkey modifiers"));
}

QString
AppStore::hotKeyFailureMessage(const std::vector<HotKeyCenter::RegistrationFailure>& failures) {
    QStringList named;
    const std::size_t shown = std::min(failures.size(), namedFailureCount);
    for (std::size_t index = 0; index < shown; ++index) {
        named.append(failures[index].shortcut);
    }
    QString message = QStringLiteral("Some global shortcuts could not be registered: ") +
                      named.join(QStringLiteral(", "));
    if (failures.size() > namedFailureCount) {
        message += QStringLiteral(" and ") + QString::number(failures.size() - namedFailureCount) +
                   QStringLiteral(" more");
    }
    // The status codes mean nothing to the user and are left out.
    return message + QStringLiteral(". They may already be used by your desktop or another app.");
}

} // namespace tilmora
