// Preferences in an INI file through QSettings. By default the file is
// $XDG_CONFIG_HOME/tilmora/tilmora.conf (~/.config/tilmora/tilmora.conf), the path QSettings
// itself would choose for the organisation and application "tilmora".
//
// INI keeps only text, so every value carries its form. Byte strings use QSettings' own
// "@ByteArray(...)"; numbers and Booleans are written as "double:12.5", "int:0" and
// "bool:true"; anything else is read as plain text, which keeps a hand-written "12" from
// passing as a number. Keys are used as they are: dots stay part of the key, only '/' would
// start a group, and no Tilmora key contains one.
#pragma once

#include "platform/PreferenceValue.h"
#include "platform/TypedPreferences.h"

#include <QSettings>

namespace tilmora {

class QSettingsPreferences final : public TypedPreferences {
public:
    QSettingsPreferences();
    explicit QSettingsPreferences(const QString& filePath);

    static QString defaultFilePath();
    QString filePath() const;

    std::optional<PreferenceValue> value(const QString& key) const override;

protected:
    void store(const QString& key, const PreferenceValue& value) override;

private:
    void write(const QString& key, const QVariant& value);

    QSettings settings_;
    bool reportedWriteFailure_ = false;
};

} // namespace tilmora
