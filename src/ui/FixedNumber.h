// A decimal number right-aligned in a frame of fixed width, so that a changing value never
// shifts what stands beside it. The frame is the given width, or wider when the font would not
// fit the widest value the number can take.
#pragma once

#include <QWidget>

class QPainter;

namespace tilmora {

class FixedNumber : public QWidget {
    Q_OBJECT

public:
    FixedNumber(int value, int width, int widestValue, QWidget* parent = nullptr);

    int value() const { return value_; }
    void setValue(int value);

    // Draws `value` right-aligned in `frame` with the painter's font and pen.
    static void paint(QPainter& painter, const QRectF& frame, int value);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int value_;
    int width_;
    int widestValue_;
};

} // namespace tilmora
