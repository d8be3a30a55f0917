// Preferences kept as typed values: an implementation only says how one value is read and
// stored, and every implementation reads with the same rules.
#pragma once

#include "platform/PreferenceValue.h"
#include "platform/Preferences.h"

namespace tilmora {

class TypedPreferences : public Preferences {
public:
    // The value under `key` in its stored form; nothing when absent or unreadable.
    virtual std::optional<PreferenceValue> value(const QString& key) const = 0;

    std::optional<double> doubleValue(const QString& key) const final {
        return preferences::asDouble(value(key));
    }
    bool boolValue(const QString& key) const final { return preferences::asBool(value(key)); }
    std::optional<QByteArray> dataValue(const QString& key) const final {
        return preferences::asData(value(key));
    }
    std::optional<QString> stringValue(const QString& key) const final {
        return preferences::asString(value(key));
    }

    WriteResult setDouble(const QString& key, double v) final { return set(key, v); }
    WriteResult setInteger(const QString& key, std::int64_t v) final {
        return set(key, PreferenceValue(std::in_place_type<std::int64_t>, v));
    }
    WriteResult setBool(const QString& key, bool v) final {
        return set(key, PreferenceValue(std::in_place_type<bool>, v));
    }
    WriteResult setData(const QString& key, const QByteArray& v) final { return set(key, v); }

protected:
    // Replaces whatever was stored under `key`, whatever its form.
    virtual WriteResult store(const QString& key, const PreferenceValue& value) = 0;

private:
    // Start-up stores many values unchanged: only a real change is written. Whether a value is
    // unchanged is the store's to say: another process may have written the file since.
    WriteResult set(const QString& key, const PreferenceValue& v) { return store(key, v); }
};

} // namespace tilmora
