#include "platform/x11/X11Edid.h"

#include <array>

namespace tilmora {

std::optional<X11Edid> X11Edid::parse(const QByteArray& bytes) {
    constexpr std::array<unsigned char, 8> header{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
    constexpr qsizetype blockSize = 128;
    if (bytes.size() < blockSize) {
        return std::nullopt;
    }
    const auto byte = [&](qsizetype index) { return static_cast<unsigned char>(bytes[index]); };
    for (std::size_t i = 0; i < header.size(); ++i) {
        if (byte(static_cast<qsizetype>(i)) != header[i]) {
            return std::nullopt;
        }
    }
    X11Edid edid;
    edid.vendor = static_cast<std::uint16_t>(byte(8) << 8 | byte(9));
    edid.product = static_cast<std::uint16_t>(byte(10) | byte(11) << 8);
    edid.serial = static_cast<std::uint32_t>(byte(12)) | static_cast<std::uint32_t>(byte(13)) << 8 |
                  static_cast<std::uint32_t>(byte(14)) << 16 |
                  static_cast<std::uint32_t>(byte(15)) << 24;
    const bool placeholderSerial = edid.serial == 0 || edid.serial == 0x01010101U;
    edid.identity = placeholderSerial ? bytes.left(blockSize) : bytes.mid(8, 8);

    // Four 18-byte descriptors; a display descriptor starts with 0, 0, 0 and its tag.
    constexpr qsizetype firstDescriptor = 54;
    constexpr qsizetype descriptorSize = 18;
    constexpr unsigned char productNameTag = 0xFC;
    for (qsizetype d = firstDescriptor; d + descriptorSize <= 126; d += descriptorSize) {
        if (byte(d) != 0 || byte(d + 1) != 0 || byte(d + 2) != 0 || byte(d + 3) != productNameTag) {
            continue;
        }
        QByteArray name = bytes.mid(d + 5, 13);
        if (const auto end = name.indexOf('\n'); end >= 0) {
            name.truncate(end);
        }
        const QString trimmed = QString::fromLatin1(name).trimmed();
        if (!trimmed.isEmpty()) {
            edid.productName = trimmed;
        }
        break;
    }
    return edid;
}

std::uint32_t fnv1a(QByteArrayView data, std::uint32_t hash) {
    for (const char c : data) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 16777619U;
    }
    return hash;
}

} // namespace tilmora
