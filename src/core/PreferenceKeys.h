// The preference keys of Tilmora's settings. Saved layouts keep their own key.
#pragma once

#include <QString>

namespace tilmora::PreferenceKeys {

inline const QString layoutGap = QStringLiteral("Tilmora.layoutGap");
inline const QString edgeToEdgeMigration = QStringLiteral("Tilmora.layoutGap.edgeToEdgeMigration");
inline const QString twoByOneMigration = QStringLiteral("Tilmora.defaultGrid.twoByOneMigration");
inline const QString defaultZeroMigration =
    QStringLiteral("Tilmora.layoutGap.defaultZeroMigration");
inline const QString displayLayoutProfiles = QStringLiteral("Tilmora.displayLayoutProfiles");
inline const QString placementHotKey = QStringLiteral("Tilmora.placementHotKey");
inline const QString quickHotKeyModifiers = QStringLiteral("Tilmora.quickHotKeyModifiers");
inline const QString placementDragModifier = QStringLiteral("Tilmora.placementDragModifier");

} // namespace tilmora::PreferenceKeys
