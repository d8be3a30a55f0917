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

    void setDouble(const QString& key, double v) final { store(key, v); }
    void setInteger(const QString& key, std::int64_t v) final {
        store(key, PreferenceValue(std::in_place_type<std::int64_t>, v));
    }
    void setBool(const QString& key, bool v) final {
        store(key, PreferenceValue(std::in_place_type<bool>, v));
    }
    void setData(const QString& key, const QByteArray& v) final { store(key, v); }

protected:
    // Replaces whatever was stored under `key`, whatever its form.
    virtual void store(const QString& key, const PreferenceValue& value) = 0;
};

} // namespace tilmora
