#include "ui/PaintedIconEngine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

namespace tilmora {

void PaintedIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
                              QIcon::State) {
    const QPalette palette = QGuiApplication::palette();
    QColor colour = palette.color(QPalette::WindowText);
    if (mode == QIcon::Disabled) {
        colour = palette.color(QPalette::Disabled, QPalette::WindowText);
    } else if (mode == QIcon::Selected) {
        colour = palette.color(QPalette::HighlightedText);
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    draw(*painter, QRectF(rect), colour);
    painter->restore();
}

QPixmap PaintedIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap result(size);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return result;
}

} // namespace tilmora
