#include "ui/CanvasHeader.h"

#include "ui/PlacementCanvasStyle.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QFontMetricsF>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tilmora {

namespace {

constexpr double margin = 18;
constexpr double padding = 10;
constexpr double spacing = 12;
constexpr double lineSpacing = 3;
constexpr double radius = 8;
constexpr double buttonSide = 28;
constexpr double badgeSide = 34;

void fillRounded(QPainter& painter, const QRectF& rect, const QColor& colour) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    painter.fillPath(path, colour);
}

} // namespace

CanvasHeader::CanvasHeader()
    : symbolFont_(TextStyle::font(TextStyle::Style::title3))
    , badgeFont_(TextStyle::font(TextStyle::Style::body, QFont::DemiBold))
    , titleFont_(TextStyle::font(TextStyle::Style::headline))
    , subtitleFont_(TextStyle::font(TextStyle::Style::body))
    , sizeFont_(TextStyle::font(TextStyle::Style::callout)) {
    badgeFont_.setPointSizeF(18); // 24 px
    sizeFont_.setFamily(QStringLiteral("monospace"));
    sizeFont_.setStyleHint(QFont::Monospace);
}

void CanvasHeader::setContent(const CanvasHeaderContent& content, double viewWidth) {
    content_ = content;
    const QFontMetricsF title(titleFont_);
    const QFontMetricsF subtitle(subtitleFont_);
    const QFontMetricsF size(sizeFont_);
    const double width = std::max(0.0, std::min(content.maximumWidth, viewWidth - 2 * margin));

    double leadingWidth = QFontMetricsF(symbolFont_).height();
    double leadingHeight = leadingWidth;
    if (content.badge) {
        QFont font = badgeFont_;
        const double natural = QFontMetricsF(font).horizontalAdvance(*content.badge) + 16;
        leadingWidth = std::max(badgeSide, std::min(natural, 120.0));
        leadingHeight = badgeSide;
    }
    const double textHeight = title.height() + lineSpacing + subtitle.height();
    const QSizeF sizePill =
        content.sizeText
            ? QSizeF(size.horizontalAdvance(*content.sizeText) + 20, size.height() + 12)
            : QSizeF();
    const double rowHeight = std::max(
        {leadingHeight, textHeight, sizePill.height(), content.cancelButton ? buttonSide : 0.0});
    frame_ = QRectF(margin, margin, width, rowHeight + 2 * padding);
    const double middle = frame_.center().y();

    double x = frame_.left() + padding;
    leading_ = QRectF(x, middle - leadingHeight / 2, leadingWidth, leadingHeight);
    x += leadingWidth + spacing;
    const double right = frame_.right() - padding -
                         (content.cancelButton ? buttonSide + spacing : 0.0) -
                         (content.sizeText ? sizePill.width() + spacing : 0.0);
    const double textWidth = std::max(0.0, right - x);
    titleRect_ = QRectF(x, middle - textHeight / 2, textWidth, title.height());
    subtitleRect_ = QRectF(x, titleRect_.bottom() + lineSpacing, textWidth, subtitle.height());
    // The size text follows the names; the flexible space is after it.
    const double namesWidth =
        std::min(textWidth, std::max(title.horizontalAdvance(content.title),
                                     subtitle.horizontalAdvance(content.subtitle)));
    size_ =
        content.sizeText
            ? QRectF(QPointF(x + namesWidth + spacing, middle - sizePill.height() / 2), sizePill)
            : QRectF();
    button_ = content.cancelButton ? QRectF(frame_.right() - padding - buttonSide,
                                            middle - buttonSide / 2, buttonSide, buttonSide)
                                   : QRectF();
}

void CanvasHeader::paint(QPainter& painter) const {
    using namespace PlacementCanvasStyle;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, frame_, regularMaterial);

    if (content_.badge) {
        fillRounded(painter, leading_, thinMaterial);
        QFont font = badgeFont_;
        // Shrinks to fit, down to 0.68 of its size.
        const double natural = QFontMetricsF(font).horizontalAdvance(*content_.badge);
        const double room = leading_.width() - 16;
        if (natural > room && natural > 0) {
            font.setPointSizeF(font.pointSizeF() * std::max(0.68, room / natural));
        }
        painter.setFont(font);
        painter.setPen(primaryText);
        painter.drawText(leading_, Qt::AlignCenter, *content_.badge);
    } else {
        // Selected: the light glyph colour, which reads on the dark material.
        SymbolIcon::icon(QStringLiteral("rectangle.dashed"))
            .paint(&painter, leading_.toRect(), Qt::AlignCenter, QIcon::Selected);
    }

    const auto elided = [](const QFont& font, const QString& text, double width) {
        return QFontMetricsF(font).elidedText(text, Qt::ElideRight, width);
    };
    painter.setFont(titleFont_);
    painter.setPen(primaryText);
    painter.drawText(titleRect_, Qt::AlignLeft | Qt::AlignVCenter,
                     elided(titleFont_, content_.title, titleRect_.width()));
    painter.setFont(subtitleFont_);
    painter.setPen(secondaryText);
    painter.drawText(subtitleRect_, Qt::AlignLeft | Qt::AlignVCenter,
                     elided(subtitleFont_, content_.subtitle, subtitleRect_.width()));

    if (content_.sizeText) {
        fillRounded(painter, size_, thinMaterial);
        painter.setFont(sizeFont_);
        painter.setPen(primaryText);
        painter.drawText(size_, Qt::AlignCenter, *content_.sizeText);
    }
    if (content_.cancelButton) {
        fillRounded(painter, button_, thinMaterial);
        painter.setPen(QPen(secondaryText, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(button_.adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
        // The "xmark".
        painter.setPen(QPen(primaryText, 1.6, Qt::SolidLine, Qt::RoundCap));
        const QRectF cross = button_.adjusted(9.5, 9.5, -9.5, -9.5);
        painter.drawLine(cross.topLeft(), cross.bottomRight());
        painter.drawLine(cross.topRight(), cross.bottomLeft());
    }
    painter.restore();
}

} // namespace tilmora
