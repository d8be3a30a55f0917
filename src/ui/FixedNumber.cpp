#include "ui/FixedNumber.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace tilmora {

FixedNumber::FixedNumber(int value, int width, int widestValue, QWidget* parent)
    : QWidget(parent)
    , value_(value)
    , width_(width)
    , widestValue_(widestValue) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    setAccessibleName(QString::number(value_));
}

void FixedNumber::setValue(int value) {
    if (value_ != value) {
        value_ = value;
        setAccessibleName(QString::number(value_));
        update();
    }
}

void FixedNumber::paint(QPainter& painter, const QRectF& frame, int value) {
    painter.drawText(frame, Qt::AlignRight | Qt::AlignVCenter, QString::number(value));
}

QSize FixedNumber::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    // Every digit as wide as the widest one, whatever the font does with figures.
    int digit = 0;
    for (char c = '0'; c <= '9'; ++c) {
        digit = std::max(digit, metrics.horizontalAdvance(QLatin1Char(c)));
    }
    const int widest = digit * static_cast<int>(QString::number(widestValue_).size());
    return {std::max(width_, widest), metrics.height()};
}

void FixedNumber::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    paint(painter, QRectF(rect()), value_);
}

void FixedNumber::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
}

} // namespace tilmora
