// Preferences held in memory, with the same reading rules as the settings file. Tests can also
// plant text (the form only earlier versions or hand edits leave), look at the exact form of
// what was written, for instance to tell an integer 0 from a double 0, and make writes fail.
#pragma once

#include "platform/TypedPreferences.h"

#include <map>

namespace tilmora {

class MemoryPreferences final : public TypedPreferences {
public:
    std::optional<PreferenceValue> value(const QString& key) const override {
        const auto found = values_.find(key);
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    void setString(const QString& key, const QString& value) {
        values_.insert_or_assign(key, value);
    }

    Outcome<QString, PreferencesFailure> keepUnreadable(const QString& key,
                                                        const QByteArray& bytes) override {
        if (failure) {
            return failed(*failure);
        }
        kept.insert_or_assign(key, bytes);
        return QStringLiteral("memory:kept/") + key;
    }

    // While set, every write that would change something fails with it.
    std::optional<PreferencesFailure> failure;
    // What keepUnreadable kept, by key.
    std::map<QString, QByteArray> kept;

protected:
    WriteResult store(const QString& key, const PreferenceValue& value) override {
        if (this->value(key) == value) {
            return {};
        }
        if (failure) {
            return failed(*failure);
        }
        values_.insert_or_assign(key, value);
        return {};
    }

private:
    std::map<QString, PreferenceValue> values_;
};

} // namespace tilmora
