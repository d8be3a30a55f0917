// The colours of the placement canvas and its live preview.
#pragma once

#include <QColor>

namespace tilmora::PlacementCanvasStyle {

inline QColor rgba(double red, double green, double blue, double opacity) {
    return QColor::fromRgbF(float(red), float(green), float(blue), float(opacity));
}

inline const QColor passiveBackdrop = rgba(0, 0, 0, 0.10);
inline const QColor interactiveBackdrop = rgba(0, 0, 0, 0.12);
inline const QColor surfaceFill = rgba(0.74, 0.84, 0.78, 0.12);
inline const QColor surfaceStroke = rgba(1, 1, 1, 0.24);
inline const QColor gridStroke = rgba(1, 1, 1, 0.18);
inline const QColor previewFill = rgba(0.72, 0.86, 0.78, 0.34);
inline const QColor previewStroke = rgba(0.89, 0.98, 0.93, 0.92);
inline const QColor previewShadow = rgba(0, 0, 0, 0.16);

// The materials behind the headers and cards: dark and nearly opaque, so white text reads on
// any desktop beneath.
inline const QColor regularMaterial = rgba(0.13, 0.15, 0.14, 0.86);
inline const QColor thinMaterial = rgba(1, 1, 1, 0.14);
inline const QColor primaryText = rgba(1, 1, 1, 0.94);
inline const QColor secondaryText = rgba(1, 1, 1, 0.62);

} // namespace tilmora::PlacementCanvasStyle
