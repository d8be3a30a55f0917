#include "ui/DisplayProfileBadge.h"

#include "ui/NativeSurface.h"
#include "ui/TextStyle.h"

#include <QPainter>
#include <QPainterPath>

namespace tilmora {

DisplayProfileBadge::DisplayProfileBadge(const QString& title, bool isPrimary, QWidget* parent)
    : QLabel(title, parent) {
    setTextFormat(Qt::PlainText);
    setContentsMargins(7, 3, 7, 3);
    setAlignment(Qt::AlignCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    TextStyle::apply(this, TextStyle::Style::caption, isPrimary ? QFont::Medium : QFont::Normal,
                     !isPrimary);
    if (isPrimary) {
        QPalette colours = palette();
        // The stroke colour is light: on a light window it is darkened to stay readable.
        const bool lightWindow = colours.color(QPalette::Window).lightness() > 128;
        colours.setColor(QPalette::WindowText, lightWindow
                                                   ? NativeSurface::brandStroke().darker(150)
                                                   : NativeSurface::brandStroke());
        setPalette(colours);
    }
}

void DisplayProfileBadge::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        // A thin material: the window's base colour, half see-through, with a hairline.
        QColor fill = palette().color(QPalette::Base);
        fill.setAlphaF(0.6f);
        QColor edge = palette().color(QPalette::WindowText);
        edge.setAlphaF(0.1f);
        const QRectF shape = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        const double radius = shape.height() / 2.0;
        painter.setPen(QPen(edge, 1.0));
        painter.setBrush(fill);
        painter.drawRoundedRect(shape, radius, radius);
    }
    QLabel::paintEvent(event);
}

} // namespace tilmora
