// Keeps the saved layouts as one JSON document under one preference key. There is no cache:
// every load reads the preferences again and every save replaces the whole document.
#pragma once

#include "layouts/SavedLayout.h"
#include "platform/Preferences.h"

#include <QString>

#include <vector>

namespace tilmora {

class SavedLayoutStore {
public:
    static inline const QString key = QStringLiteral("Tilmora.savedLayouts");

    explicit SavedLayoutStore(Preferences& preferences);

    // The stored layouts in stored order; an empty list when nothing readable is stored. An
    // unreadable document is left in place: only the next save replaces it.
    std::vector<SavedLayout> load() const;
    // The stored document when it cannot be read; nothing when there is none or it reads.
    std::optional<QByteArray> unreadableData() const;
    // Replaces the stored document. Writes nothing when the list cannot be written (a
    // non-finite number, an invalid date), so the previous document stays; that is no failure.
    [[nodiscard]] Preferences::WriteResult save(const std::vector<SavedLayout>& layouts);

private:
    Preferences& preferences_;
};

} // namespace tilmora
