#include "layouts/SavedLayoutStore.h"

namespace tilmora {

SavedLayoutStore::SavedLayoutStore(Preferences& preferences)
    : preferences_(preferences) {}

std::vector<SavedLayout> SavedLayoutStore::load() const {
    const auto data = preferences_.dataValue(key);
    if (!data) {
        return {};
    }
    return SavedLayout::decodeList(*data).value_or(std::vector<SavedLayout>{});
}

void SavedLayoutStore::save(const std::vector<SavedLayout>& layouts) {
    if (const auto data = SavedLayout::encodeList(layouts)) {
        preferences_.setData(key, *data);
    }
}

} // namespace tilmora
