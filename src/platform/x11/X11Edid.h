// What a monitor's EDID block says about the physical monitor: who made it, which model and
// which unit, and the product name printed on it.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <optional>

namespace tilmora {

struct X11Edid {
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;
    std::uint32_t serial = 0;
    // The display product name descriptor; absent when the EDID has none.
    std::optional<QString> productName;
    // The bytes that identify this unit: vendor, product and serial, or the whole base block
    // when the serial is a placeholder (0 or 0x01010101).
    QByteArray identity;

    // Absent unless the bytes start with a valid 128-byte base block.
    static std::optional<X11Edid> parse(const QByteArray& bytes);
};

// 32-bit FNV-1a, continuing from `hash`.
std::uint32_t fnv1a(QByteArrayView data, std::uint32_t hash = 2166136261U);

} // namespace tilmora
