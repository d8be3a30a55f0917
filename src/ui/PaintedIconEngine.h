// An icon drawn by our code at whatever size is asked, in the palette's text colour of the
// moment (so it follows a light or dark desktop) and in that of the icon's mode.
#pragma once

#include <QIconEngine>

namespace tilmora {

class PaintedIconEngine : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;

protected:
    // Draws into `rect` with `colour`; the painter is antialiased and restored afterwards.
    virtual void draw(QPainter& painter, const QRectF& rect, const QColor& colour) const = 0;
};

} // namespace tilmora
