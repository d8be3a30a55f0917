#include "ui/LayoutSymbolIcon.h"

#include "ui/PaintedIconEngine.h"

#include <QPainter>

#include <algorithm>

namespace tilmora::LayoutSymbolIcon {

namespace {

// A 16:10 display large enough that rounding to whole points does not show.
const CGRect referenceDisplay{0, 0, 1600, 1000};

class LayoutEngine final : public PaintedIconEngine {
public:
    explicit LayoutEngine(LayoutAction action)
        : action_(action) {}

    QIconEngine* clone() const override { return new LayoutEngine(action_); }

protected:
    void draw(QPainter& painter, const QRectF& rect, const QColor& colour) const override {
        const double side = std::min(rect.width(), rect.height());
        // The display outline, 16:11 within the square.
        const double pen = std::max(1.0, side / 12.0);
        const double width = side - pen;
        const double height = side * 11.0 / 16.0 - pen;
        const QRectF screen(rect.x() + (rect.width() - width) / 2.0,
                            rect.y() + (rect.height() - height) / 2.0, width, height);
        painter.setPen(QPen(colour, pen));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(screen, pen * 1.5, pen * 1.5);
        // The target area, inset so that the outline stays visible around it.
        const QRectF inner = screen.adjusted(pen * 1.5, pen * 1.5, -pen * 1.5, -pen * 1.5);
        const QRectF unit = unitArea(action_);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawRoundedRect(
            QRectF(inner.x() + unit.x() * inner.width(), inner.y() + unit.y() * inner.height(),
                   unit.width() * inner.width(), unit.height() * inner.height()),
            pen * 0.6, pen * 0.6);
    }

private:
    LayoutAction action_;
};

} // namespace

QRectF unitArea(LayoutAction action) {
    const CGRect frame = action.targetFrame(referenceDisplay, 0);
    return {frame.minX() / referenceDisplay.width(), frame.minY() / referenceDisplay.height(),
            frame.width() / referenceDisplay.width(), frame.height() / referenceDisplay.height()};
}

QIcon icon(LayoutAction action) {
    return QIcon(new LayoutEngine(action));
}

} // namespace tilmora::LayoutSymbolIcon
