// The stored saved layouts.
#include "FuzzCheck.h"
#include "layouts/SavedLayout.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto layouts = tilmora::SavedLayout::decodeList(bytes)) {
        const auto written = tilmora::SavedLayout::encodeList(*layouts);
        TILMORA_FUZZ_CHECK(written);
        TILMORA_FUZZ_CHECK(tilmora::SavedLayout::decodeList(*written) == layouts);
    }
    return 0;
}
