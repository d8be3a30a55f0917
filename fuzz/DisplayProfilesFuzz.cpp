// The stored display layout profiles.
#include "FuzzCheck.h"
#include "geometry/DisplayLayoutProfile.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto profiles = tilmora::DisplayLayoutProfile::decodeList(bytes)) {
        const auto written = tilmora::DisplayLayoutProfile::encodeList(*profiles);
        TILMORA_FUZZ_CHECK(written);
        TILMORA_FUZZ_CHECK(tilmora::DisplayLayoutProfile::decodeList(*written) == profiles);
    }
    return 0;
}
