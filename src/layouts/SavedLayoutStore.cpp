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

std::optional<QByteArray> SavedLayoutStore::unreadableData() const {
    return tilmora::unreadableData(preferences_, key, &SavedLayout::decodeList);
}

Preferences::WriteResult SavedLayoutStore::save(const std::vector<SavedLayout>& layouts) {
    if (const auto data = SavedLayout::encodeList(layouts)) {
        return preferences_.setData(key, *data);
    }
    return {};
}

} // namespace tilmora
