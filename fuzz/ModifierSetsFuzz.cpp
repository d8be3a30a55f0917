// The stored quick hot-key modifiers and placement drag modifier.
#include "FuzzCheck.h"
#include "shortcuts/PlacementDragModifier.h"
#include "shortcuts/QuickHotKeyModifiers.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto quick = tilmora::QuickHotKeyModifiers::decode(bytes)) {
        TILMORA_FUZZ_CHECK(tilmora::QuickHotKeyModifiers::decode(quick->encode()) == quick);
    }
    if (const auto drag = tilmora::PlacementDragModifier::decode(bytes)) {
        TILMORA_FUZZ_CHECK(tilmora::PlacementDragModifier::decode(drag->encode()) == drag);
    }
    return 0;
}
