#include "layouts/WindowFrame.h"

#include "geometry/JsonCoding.h"

#include <QHashFunctions>
#include <QJsonObject>

#include <cmath>

namespace tilmora {

namespace {

const QString xKey = QStringLiteral("x");
const QString yKey = QStringLiteral("y");
const QString widthKey = QStringLiteral("width");
const QString heightKey = QStringLiteral("height");

// +0 and -0 compare equal, so they must hash alike.
double hashable(double value) {
    return value == 0 ? 0.0 : value;
}

} // namespace

WindowFrame WindowFrame::fromRect(const CGRect& rect) {
    return {rect.origin.x, rect.origin.y, rect.width(), rect.height()};
}

std::optional<WindowFrame> WindowFrame::fromJson(const QJsonValue& value) {
    if (!value.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = value.toObject();
    const auto x = json::toDouble(object.value(xKey));
    const auto y = json::toDouble(object.value(yKey));
    const auto width = json::toDouble(object.value(widthKey));
    const auto height = json::toDouble(object.value(heightKey));
    if (!x || !y || !width || !height) {
        return std::nullopt;
    }
    return WindowFrame{*x, *y, *width, *height};
}

std::optional<QByteArray> WindowFrame::encode() const {
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(width) || !std::isfinite(height)) {
        return std::nullopt;
    }
    return json::writeObject({{xKey, x}, {yKey, y}, {widthKey, width}, {heightKey, height}});
}

std::size_t qHash(const WindowFrame& frame, std::size_t seed) noexcept {
    return qHashMulti(seed, hashable(frame.x), hashable(frame.y), hashable(frame.width),
                      hashable(frame.height));
}

std::ostream& operator<<(std::ostream& stream, const WindowFrame& frame) {
    return stream << "(" << frame.x << ", " << frame.y << ", " << frame.width << " x "
                  << frame.height << ")";
}

} // namespace tilmora
