// The settings file's text. Whatever it holds, a value written under a key reads back as
// written, and the keys not written keep what they read before.
#include "FuzzCheck.h"
#include "platform/file/PreferencesDocument.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    tilmora::PreferencesDocument document(text);
    const QString written = QStringLiteral("Tilmora.savedLayouts");
    const QString others[] = {QStringLiteral("Tilmora.layoutGap"),
                              QStringLiteral("Tilmora.displayLayoutProfiles"),
                              QStringLiteral("Other/key")};
    std::optional<tilmora::PreferenceValue> before[std::size(others)];
    for (std::size_t i = 0; i < std::size(others); ++i) {
        before[i] = document.value(others[i]);
    }
    // The text itself as the value: every byte, quote and line break.
    const tilmora::PreferenceValue value(std::in_place_type<QByteArray>, text.left(256));
    document.setValue(written, value);
    TILMORA_FUZZ_CHECK(document.value(written) == value);
    for (std::size_t i = 0; i < std::size(others); ++i) {
        TILMORA_FUZZ_CHECK(document.value(others[i]) == before[i]);
    }
    return 0;
}
