// The update manifest, as a hostile or broken endpoint may send it.
#include "FuzzCheck.h"
#include "updates/UpdateChecker.h"
#include "updates/UpdateManifest.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto manifest = tilmora::UpdateManifest::decode(bytes);
    if (!manifest) {
        return 0;
    }
    TILMORA_FUZZ_CHECK(manifest->version.size() <= tilmora::UpdateManifest::maximumVersionLength);
    const auto result = tilmora::UpdateChecker::result(*manifest, QStringLiteral("1.0"));
    // Only web links are ever offered.
    if (result && result->downloadURL) {
        const QString scheme = result->downloadURL->scheme();
        TILMORA_FUZZ_CHECK(scheme == QLatin1StringView("http") ||
                           scheme == QLatin1StringView("https"));
    }
    return 0;
}
