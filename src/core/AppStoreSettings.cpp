// Settings: what is read at construction, the one-time migrations, and what is written when a
// setting changes. Unreadable values fall back to their defaults without a word and stay in the
// preferences until the setting is next saved; then they are kept in a file of their own first.
// A write that fails is said in the status line.
#include "core/AppStore.h"
#include "core/CommandFailures.h"
#include "core/PreferenceKeys.h"

#include <cmath>

namespace tilmora {

namespace {

// Earlier installations stored this gap by default, so a stored 8 was never chosen by the user.
constexpr double legacyDefaultGap = 8.0;

} // namespace

void AppStore::loadSettings() {
    Preferences& preferences = platform_.preferences;
    const std::optional<double> stored = preferences.doubleValue(PreferenceKeys::layoutGap);
    const double storedGap = stored.value_or(0);
    const bool edgeDone = preferences.boolValue(PreferenceKeys::edgeToEdgeMigration);
    const bool twoByOneDone = preferences.boolValue(PreferenceKeys::twoByOneMigration);
    const bool zeroDone = preferences.boolValue(PreferenceKeys::defaultZeroMigration);
    const bool custom = stored && storedGap != legacyDefaultGap;

    // Initial values: the gap's observer does not run here.
    if (!zeroDone && !custom) {
        gap_ = 0;
        // The migration is recorded only once its gap is stored.
        if (written(preferences.setInteger(PreferenceKeys::layoutGap, 0))) {
            written(preferences.setBool(PreferenceKeys::defaultZeroMigration, true));
        }
    } else if (edgeDone) {
        gap_ = DisplayLayoutProfile::clampedGap(storedGap);
    } else {
        gap_ = 0;
        written(preferences.setInteger(PreferenceKeys::layoutGap, 0));
    }

    placementHotKey_ = loadPlacementHotKey(preferences);
    quickHotKeyModifiers_ = loadQuickHotKeyModifiers(preferences);
    placementDragModifier_ = loadPlacementDragModifier(preferences);

    // The profile list may be written three times here with the same content; harmless.
    displayProfiles_ = loadDisplayProfiles(preferences, !edgeDone, !twoByOneDone);
    saveDisplayProfiles();
    savedLayouts_ = savedLayoutStore_.load();
    // A migration whose flag could not be stored runs again at the next start.
    if (!edgeDone) {
        written(preferences.setBool(PreferenceKeys::edgeToEdgeMigration, true));
        saveDisplayProfiles();
    }
    if (!twoByOneDone) {
        written(preferences.setBool(PreferenceKeys::twoByOneMigration, true));
        saveDisplayProfiles();
    }
}

HotKeyShortcut AppStore::loadPlacementHotKey(const Preferences& preferences) {
    if (const auto data = preferences.dataValue(PreferenceKeys::placementHotKey)) {
        if (const auto shortcut = HotKeyShortcut::decode(*data);
            shortcut && hasShortcutModifier(shortcut->modifiers)) {
            return *shortcut;
        }
    }
    return HotKeyShortcut::defaultShortcut();
}

QuickHotKeyModifiers AppStore::loadQuickHotKeyModifiers(const Preferences& preferences) {
    if (const auto data = preferences.dataValue(PreferenceKeys::quickHotKeyModifiers)) {
        // Kept exactly as stored, bits outside the four modifiers included.
        if (const auto modifiers = QuickHotKeyModifiers::decode(*data);
            modifiers && hasShortcutModifier(modifiers->modifiers)) {
            return *modifiers;
        }
    }
    return QuickHotKeyModifiers::defaultLayouts;
}

PlacementDragModifier AppStore::loadPlacementDragModifier(const Preferences& preferences) {
    if (const auto data = preferences.dataValue(PreferenceKeys::placementDragModifier)) {
        if (const auto modifier = PlacementDragModifier::decode(*data);
            modifier && hasShortcutModifier(modifier->modifiers)) {
            return *modifier;
        }
    }
    // An older version stored this setting as text. Reading it is a deliberate no-op: such a
    // value is not honoured.
    (void)preferences.stringValue(PreferenceKeys::placementDragModifier);
    return PlacementDragModifier::defaultModifier();
}

std::vector<DisplayLayoutProfile>
AppStore::loadDisplayProfiles(const Preferences& preferences, bool migratingToEdgeToEdge,
                              bool migratingDefaultGridToCurrent) {
    const auto data = preferences.dataValue(PreferenceKeys::displayLayoutProfiles);
    if (!data) {
        return {};
    }
    const auto profiles = DisplayLayoutProfile::decodeList(*data);
    if (!profiles) {
        return {};
    }
    return DisplayLayoutProfile::normalized(*profiles, migratingToEdgeToEdge,
                                            migratingDefaultGridToCurrent);
}

bool AppStore::written(const Preferences::WriteResult& result) {
    if (!result) {
        setStatusMessage(CommandFailures::settingsNotSaved(result.error()));
    }
    return result.has_value();
}

bool AppStore::keepUnreadable(const QString& key, const std::optional<QByteArray>& unreadable,
                              const QString& what) {
    if (!unreadable) {
        return true;
    }
    const auto kept = platform_.preferences.keepUnreadable(key, *unreadable);
    if (!kept) {
        setStatusMessage(CommandFailures::unreadableNotKept(what, kept.error()));
        return false;
    }
    if (!pendingNotice_.isEmpty()) {
        pendingNotice_ += u' ';
    }
    pendingNotice_ += QStringLiteral("Kept the unreadable %1 in %2.").arg(what, *kept);
    return true;
}

bool AppStore::saveData(const QString& key, const QByteArray& data,
                        bool (*decodes)(const QByteArray&), const QString& what) {
    Preferences& preferences = platform_.preferences;
    return keepUnreadable(key, unreadableData(preferences, key, decodes), what) &&
           written(preferences.setData(key, data));
}

bool AppStore::saveDisplayProfiles() {
    const auto data = DisplayLayoutProfile::encodeList(displayProfiles_);
    return !data ||
           saveData<&DisplayLayoutProfile::decodeList>(PreferenceKeys::displayLayoutProfiles, *data,
                                                       QStringLiteral("display profiles"));
}

bool AppStore::savePlacementDragModifier(const PlacementDragModifier& modifier) {
    return saveData<&PlacementDragModifier::decode>(PreferenceKeys::placementDragModifier,
                                                    modifier.encode(),
                                                    QStringLiteral("placement drag modifier"));
}

void AppStore::setGap(double gap) {
    publish(gap_, gap, &AppStore::gapChanged);
    const double clamped = DisplayLayoutProfile::clampedGap(gap);
    if (gap_ == clamped) {
        written(platform_.preferences.setDouble(PreferenceKeys::layoutGap, clamped));
    } else {
        // The corrected value goes through the observer once more, which then saves it.
        setGap(clamped);
    }
}

void AppStore::setPlacementDragModifier(PlacementDragModifier modifier) {
    publish(placementDragModifier_, modifier, &AppStore::placementDragModifierChanged);
    if (!savePlacementDragModifier(modifier)) {
        return;
    }
    const QString description =
        hasShortcutModifier(modifier.modifiers)
            ? modifier.title() + QStringLiteral(" (") + modifier.symbol() + u')'
            : QStringLiteral("None");
    setStatusMessage(QStringLiteral("Placement drag modifier changed to ") + description + u'.');
}

} // namespace tilmora
