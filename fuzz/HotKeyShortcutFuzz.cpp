// The stored placement canvas shortcut.
#include "FuzzCheck.h"
#include "shortcuts/HotKeyShortcut.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto shortcut = tilmora::HotKeyShortcut::decode(bytes)) {
        TILMORA_FUZZ_CHECK(tilmora::HotKeyShortcut::decode(shortcut->encode()) == shortcut);
        (void)shortcut->displayText();
    }
    return 0;
}
