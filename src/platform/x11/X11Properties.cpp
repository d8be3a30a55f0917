#include "platform/x11/X11Properties.h"

#include <QList>

#include <cstring>

namespace tilmora {

std::optional<X11PropertyValue> X11PropertyValue::from(const xcb_get_property_reply_t* reply) {
    if (!reply || reply->type == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    const auto* data = static_cast<const char*>(xcb_get_property_value(reply));
    const int length = xcb_get_property_value_length(reply);
    return X11PropertyValue{reply->type, reply->format, QByteArray(data, std::max(length, 0))};
}

namespace x11 {

std::vector<std::uint32_t> cardinals(const std::optional<X11PropertyValue>& value) {
    std::vector<std::uint32_t> result;
    if (!value || value->format != 32) {
        return result;
    }
    result.resize(static_cast<std::size_t>(value->bytes.size()) / sizeof(std::uint32_t));
    std::memcpy(result.data(), value->bytes.constData(), result.size() * sizeof(std::uint32_t));
    return result;
}

std::optional<std::uint32_t> firstCardinal(const std::optional<X11PropertyValue>& value) {
    const auto items = cardinals(value);
    if (items.empty()) {
        return std::nullopt;
    }
    return items.front();
}

std::optional<QString> text(const std::optional<X11PropertyValue>& value, xcb_atom_t utf8String) {
    if (!value || value->format != 8) {
        return std::nullopt;
    }
    QByteArray bytes = value->bytes;
    if (const auto nul = bytes.indexOf('\0'); nul >= 0) {
        bytes.truncate(nul);
    }
    if (value->type != utf8String) {
        return QString::fromLatin1(bytes);
    }
    if (bytes.size() >= static_cast<qsizetype>(maximumTitleBytes)) {
        // A title cut at the read limit may end inside a character: drop that partial one
        // rather than show a replacement character for it.
        qsizetype end = bytes.size();
        qsizetype lead = end - 1;
        while (lead > 0 && (static_cast<unsigned char>(bytes[lead]) & 0xC0) == 0x80 &&
               end - lead < 4) {
            --lead;
        }
        const auto first = static_cast<unsigned char>(bytes[lead]);
        const qsizetype expected = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
        if (end - lead < expected) {
            bytes.truncate(lead);
        }
    }
    return QString::fromUtf8(bytes);
}

std::optional<WindowClass> windowClass(const std::optional<X11PropertyValue>& value) {
    if (!value || value->format != 8) {
        return std::nullopt;
    }
    const QList<QByteArray> parts = value->bytes.split('\0');
    WindowClass result;
    result.instance = parts.value(0);
    result.className = parts.value(1);
    return result;
}

std::optional<X11Extents> extents(const std::optional<X11PropertyValue>& value) {
    const auto items = cardinals(value);
    if (items.size() < 4) {
        return std::nullopt;
    }
    return X11Extents{items[0], items[1], items[2], items[3]};
}

std::optional<X11Strut> strutPartial(const std::optional<X11PropertyValue>& value) {
    const auto v = cardinals(value);
    if (v.size() < 12) {
        return std::nullopt;
    }
    return X11Strut{v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10], v[11]};
}

std::optional<X11Strut> strut(const std::optional<X11PropertyValue>& value, std::int64_t rootWidth,
                              std::int64_t rootHeight) {
    const auto v = cardinals(value);
    if (v.size() < 4) {
        return std::nullopt;
    }
    return X11Strut{v[0], v[1],           v[2], v[3],          0, rootHeight - 1,
                    0,    rootHeight - 1, 0,    rootWidth - 1, 0, rootWidth - 1};
}

X11SizeHints sizeHints(const std::optional<X11PropertyValue>& value) {
    // Flags, x, y, width, height, min w/h, max w/h, increments, aspects, base w/h, gravity.
    constexpr std::uint32_t minSize = 1U << 4;
    constexpr std::uint32_t maxSize = 1U << 5;
    constexpr std::uint32_t increments = 1U << 6;
    constexpr std::uint32_t baseSize = 1U << 8;
    constexpr std::uint32_t gravity = 1U << 9;
    const auto v = cardinals(value);
    X11SizeHints hints;
    if (v.size() < 9) {
        return hints;
    }
    const auto toSigned = [](std::uint32_t item) {
        return static_cast<std::int64_t>(static_cast<std::int32_t>(item));
    };
    if ((v[0] & minSize) != 0) {
        hints.minWidth = toSigned(v[5]);
        hints.minHeight = toSigned(v[6]);
    }
    if ((v[0] & maxSize) != 0) {
        hints.maxWidth = toSigned(v[7]);
        hints.maxHeight = toSigned(v[8]);
    }
    if ((v[0] & increments) != 0 && v.size() >= 11) {
        hints.widthIncrement = toSigned(v[9]);
        hints.heightIncrement = toSigned(v[10]);
    }
    if ((v[0] & baseSize) != 0 && v.size() >= 17) {
        hints.baseWidth = toSigned(v[15]);
        hints.baseHeight = toSigned(v[16]);
    }
    if ((v[0] & gravity) != 0 && v.size() >= 18) {
        hints.windowGravity = v[17];
    }
    return hints;
}

std::optional<double> xftDpi(const QByteArray& resources) {
    for (const QByteArray& line : resources.split('\n')) {
        const auto colon = line.indexOf(':');
        if (colon < 0 || line.left(colon).trimmed() != "Xft.dpi") {
            continue;
        }
        bool ok = false;
        const double dpi = line.mid(colon + 1).trimmed().toDouble(&ok);
        if (ok && dpi > 0 && dpi < 10000) {
            return dpi;
        }
    }
    return std::nullopt;
}

} // namespace x11

} // namespace tilmora
