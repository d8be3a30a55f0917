#include "ui/CanvasPainting.h"

#include "ui/PlacementCanvasStyle.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tilmora::CanvasPainting {

namespace {

constexpr double cornerRadius = 8;
constexpr double shadowRadius = 14;
constexpr double shadowOffset = 6;
constexpr int shadowSteps = 3;

} // namespace

QRectF toQt(const CGRect& rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

namespace {

// `over` laid on `under`, as one colour: one pass over the pixels instead of two.
QColor stacked(const QColor& under, const QColor& over) {
    const double alpha = 1 - (1 - under.alphaF()) * (1 - over.alphaF());
    if (alpha <= 0) {
        return Qt::transparent;
    }
    const auto channel = [&](double below, double above) {
        return (below * under.alphaF() * (1 - over.alphaF()) + above * over.alphaF()) / alpha;
    };
    return QColor::fromRgbF(float(channel(under.redF(), over.redF())),
                            float(channel(under.greenF(), over.greenF())),
                            float(channel(under.blueF(), over.blueF())), float(alpha));
}

} // namespace

void drawBackdropAndSurface(QPainter& painter, const QRect& view, const QColor& backdrop,
                            const CGRect& localVisible) {
    const QRectF area = toQt(localVisible);
    // The backdrop around the usable area, both colours at once over it.
    for (const QRect& rect : QRegion(view) - QRegion(area.toAlignedRect())) {
        painter.fillRect(rect, backdrop);
    }
    painter.fillRect(area, stacked(backdrop, PlacementCanvasStyle::surfaceFill));
    painter.setPen(QPen(PlacementCanvasStyle::surfaceStroke, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(area.adjusted(0.5, 0.5, -0.5, -0.5));
}

namespace {

// A line on the point it starts in, the far edges of the view pulled inside it, so that a
// 1-point line stays one crisp point wide and the outline of the view is seen.
QRectF linePixels(const PlacementCanvasGeometry::LineSegment& line, QSizeF view) {
    const auto inside = [](double value, double length) {
        return std::clamp(std::floor(value), 0.0, std::max(0.0, length - 1));
    };
    const double left = inside(std::min(line.from.x, line.to.x), view.width());
    const double top = inside(std::min(line.from.y, line.to.y), view.height());
    const double right = inside(std::max(line.from.x, line.to.x), view.width());
    const double bottom = inside(std::max(line.from.y, line.to.y), view.height());
    return {left, top, right - left + 1, bottom - top + 1};
}

} // namespace

void drawGrid(QPainter& painter, const std::vector<PlacementCanvasGeometry::LineSegment>& lines,
              QSizeF view) {
    for (const auto& line : lines) {
        painter.fillRect(linePixels(line, view), PlacementCanvasStyle::gridStroke);
    }
}

void drawPreview(QPainter& painter, const CGRect& preview) {
    const QRectF rect = toQt(preview);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QPainterPath path;
    path.addRoundedRect(rect, cornerRadius, cornerRadius);
    // The soft shadow: rings fading out over its radius, reaching further down than up. Each
    // ring holds the preview inside it and is filled without it (odd-even), so the preview's
    // translucent fill never darkens over a shadow.
    QColor shade = PlacementCanvasStyle::previewShadow;
    const double stepAlpha = shade.alphaF() / shadowSteps;
    for (int i = shadowSteps; i >= 1; --i) {
        const double spread = shadowRadius * i / shadowSteps / 2;
        shade.setAlphaF(float(stepAlpha * 1.6 * (1.0 - double(i - 1) / shadowSteps)));
        QPainterPath ring = path;
        ring.setFillRule(Qt::OddEvenFill);
        ring.addRoundedRect(rect.adjusted(-spread, -spread + shadowOffset * i / shadowSteps / 2,
                                          spread, spread + shadowOffset * i / shadowSteps),
                            cornerRadius + spread, cornerRadius + spread);
        painter.fillPath(ring, shade);
    }
    painter.fillPath(path, PlacementCanvasStyle::previewFill);
    painter.setPen(QPen(PlacementCanvasStyle::previewStroke, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(0.75, 0.75, -0.75, -0.75), cornerRadius, cornerRadius);
    painter.restore();
}

QRect previewBounds(const CGRect& preview) {
    const int reach = int(std::ceil(shadowRadius)) + 2;
    return toQt(preview).toAlignedRect().adjusted(-reach, -reach, reach, reach + int(shadowOffset));
}

QRegion changedRegion(const QRectF& oldHeader, const QRectF& newHeader,
                      const std::optional<CGRect>& oldPreview,
                      const std::optional<CGRect>& newPreview) {
    QRegion changed = oldHeader.toAlignedRect() | newHeader.toAlignedRect();
    // Inside both previews nothing changes but the edges and shadows that moved.
    const auto drawn = [](const std::optional<CGRect>& preview) {
        return preview ? QRegion(previewBounds(*preview)) : QRegion();
    };
    const auto plain = [](const std::optional<CGRect>& preview) {
        const int inset = int(std::ceil(cornerRadius)) + 2;
        return preview
                   ? QRegion(toQt(*preview).toAlignedRect().adjusted(inset, inset, -inset, -inset))
                   : QRegion();
    };
    return changed |
           ((drawn(oldPreview) | drawn(newPreview)) - (plain(oldPreview) & plain(newPreview)));
}

QRegion gridRegion(const std::vector<PlacementCanvasGeometry::LineSegment>& lines, QSizeF view) {
    QRegion region;
    for (const auto& line : lines) {
        region += linePixels(line, view).toAlignedRect();
    }
    return region;
}

} // namespace tilmora::CanvasPainting
