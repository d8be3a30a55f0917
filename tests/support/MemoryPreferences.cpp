#include "support/MemoryPreferences.h"

namespace tilmora {

std::optional<PreferenceValue> MemoryPreferences::value(const QString& key) const {
    const auto found = values_.find(key);
    if (found == values_.end()) {
        return std::nullopt;
    }
    return found->second;
}

void MemoryPreferences::store(const QString& key, const PreferenceValue& value) {
    values_.insert_or_assign(key, value);
}

} // namespace tilmora
