// The header card of both canvas views: a leading symbol or badge, the target's application and
// the display's name, the size text while there is a preview, and the cancel button on the
// interactive canvas. Laid out once per change, so painting only draws.
#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

#include <optional>

class QPainter;

namespace tilmora {

struct CanvasHeaderContent {
    // The modifier symbols of a drag; absent: the canvas's own dashed-rectangle symbol.
    std::optional<QString> badge;
    QString title;
    QString subtitle;
    std::optional<QString> sizeText;
    bool cancelButton = false;
    double maximumWidth = 620;

    friend bool operator==(const CanvasHeaderContent&, const CanvasHeaderContent&) = default;
};

class CanvasHeader {
public:
    CanvasHeader();

    // Lays the header out at the top-left of a view of this width.
    void setContent(const CanvasHeaderContent& content, double viewWidth);
    QRectF frame() const { return frame_; }
    QRectF cancelButton() const { return button_; }
    void paint(QPainter& painter) const;

private:
    CanvasHeaderContent content_;
    QFont symbolFont_;
    QFont badgeFont_;
    QFont titleFont_;
    QFont subtitleFont_;
    QFont sizeFont_;
    QRectF frame_;
    QRectF leading_;
    QRectF titleRect_;
    QRectF subtitleRect_;
    QRectF size_;
    QRectF button_;
};

} // namespace tilmora
