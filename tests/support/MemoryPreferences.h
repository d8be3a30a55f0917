// Preferences held in memory, with the same reading rules as the settings file. Tests can also
// plant text (the form only earlier versions or hand edits leave) and look at the exact form
// of what was written, for instance to tell an integer 0 from a double 0.
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
    void setString(const QString& key, const QString& value) { store(key, value); }

protected:
    void store(const QString& key, const PreferenceValue& value) override {
        values_.insert_or_assign(key, value);
    }

private:
    std::map<QString, PreferenceValue> values_;
};

} // namespace tilmora
