// A rectangle as saved layouts store it: left edge, top edge, width and height, in points of the
// top-left accessibility space.
#pragma once

#include "geometry/CGGeometry.h"

#include <QByteArray>
#include <QJsonValue>

#include <cstddef>
#include <optional>
#include <ostream>

namespace tilmora {

struct WindowFrame {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    // The origin as it is, with the standardized width and height: a rectangle with a negative
    // width keeps its x.
    static WindowFrame fromRect(const CGRect& rect);
    CGRect rect() const { return {x, y, width, height}; }

    // {"x":…,"y":…,"width":…,"height":…}: all four numbers required, other keys ignored.
    static std::optional<WindowFrame> fromJson(const QJsonValue& value);
    // Nothing when a number is not finite, since JSON cannot hold it.
    std::optional<QByteArray> encode() const;

    friend bool operator==(const WindowFrame&, const WindowFrame&) = default;
};

std::size_t qHash(const WindowFrame& frame, std::size_t seed = 0) noexcept;
std::ostream& operator<<(std::ostream& stream, const WindowFrame& frame);

} // namespace tilmora
