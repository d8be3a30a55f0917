#include "ui/NativeSurface.h"

namespace tilmora::NativeSurface {

QColor brandTint() {
    static const QColor tint = QColor::fromRgbF(0.62f, 0.76f, 0.67f);
    return tint;
}

QColor brandStroke() {
    static const QColor stroke = QColor::fromRgbF(0.52f, 0.68f, 0.58f);
    return stroke;
}

QColor withOpacity(QColor colour, double opacity) {
    colour.setAlphaF(static_cast<float>(colour.alphaF() * opacity));
    return colour;
}

} // namespace tilmora::NativeSurface
