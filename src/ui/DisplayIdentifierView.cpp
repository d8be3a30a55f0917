#include "ui/DisplayIdentifierView.h"

#include "ui/PlacementCanvasStyle.h"
#include "ui/TextStyle.h"

#include <QBitmap>
#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tilmora {

namespace {

constexpr double cardMaximumWidth = 340;
constexpr double horizontalPadding = 34;
constexpr double verticalPadding = 24;
constexpr double spacing = 10;
constexpr double radius = 18;
constexpr double badgeSpacing = 8;
constexpr double shadowRadius = 18;
constexpr double shadowOffset = 10;

QSizeF badgeSize(const QFontMetricsF& metrics, const QString& title) {
    return {metrics.horizontalAdvance(title) + 16, metrics.height() + 8};
}

} // namespace

DisplayIdentifierView::DisplayIdentifierView(const DisplayIdentifierItem& item)
    : OverlayWindow(item.display, Input::passedThrough)
    , item_(item)
    , numberFont_(TextStyle::font(TextStyle::Style::body, QFont::DemiBold))
    , screenFont_(TextStyle::font(TextStyle::Style::title3, QFont::DemiBold))
    , nameFont_(TextStyle::font(TextStyle::Style::callout))
    , badgeFont_(TextStyle::font(TextStyle::Style::caption, QFont::Medium)) {
    setWindowTitle(QStringLiteral("Display Identifier"));
    numberFont_.setPixelSize(74);
    if (item.isSelected) {
        badges_ << QStringLiteral("Selected");
    }
    if (item.isPointer) {
        badges_ << QStringLiteral("Cursor");
    }
    if (item.display.isMain) {
        badges_ << QStringLiteral("Main");
    }

    const QFontMetricsF number(numberFont_);
    const QFontMetricsF screen(screenFont_);
    const QFontMetricsF name(nameFont_);
    const QFontMetricsF badge(badgeFont_);
    double badgesWidth = 0;
    for (const QString& title : std::as_const(badges_)) {
        badgesWidth += badgeSize(badge, title).width() + (badgesWidth > 0 ? badgeSpacing : 0);
    }
    const double content =
        std::max({number.horizontalAdvance(QString::number(item.number)),
                  screen.horizontalAdvance(QStringLiteral("Screen %1").arg(item.number)),
                  name.horizontalAdvance(item.display.name), badgesWidth});
    const double cardWidth = std::min(cardMaximumWidth, content + 2 * horizontalPadding);
    double cardHeight =
        number.height() + spacing + screen.height() + spacing + name.height() + 2 * verticalPadding;
    if (!badges_.isEmpty()) {
        cardHeight += spacing + badge.height() + 8;
    }
    card_ = QRectF(0, 0, cardWidth, cardHeight);
    card_.moveCenter(QRectF(rect()).center());

    if (!composited()) {
        // The rounded card alone; its corners show the desktop.
        QBitmap shape(size());
        shape.fill(Qt::color0);
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::color1);
        painter.drawRoundedRect(card_, radius, radius);
        painter.end();
        setMask(shape);
    }
}

void DisplayIdentifierView::paintEvent(QPaintEvent* event) {
    using namespace PlacementCanvasStyle;
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.setRenderHint(QPainter::Antialiasing);
    if (composited()) {
        clearToTransparent(painter);
        painter.fillRect(rect(), rgba(0, 0, 0, 0.08));
        // The card's shadow.
        painter.setPen(Qt::NoPen);
        for (int i = 6; i >= 1; --i) {
            const double spread = shadowRadius * i / 6;
            painter.setBrush(rgba(0, 0, 0, 0.18 / 6 * (1.0 - double(i - 1) / 6) * 1.6));
            painter.drawRoundedRect(card_.adjusted(-spread / 2, -spread / 2 + shadowOffset,
                                                   spread / 2, spread / 2 + shadowOffset),
                                    radius + spread / 2, radius + spread / 2);
        }
    }
    QPainterPath path;
    path.addRoundedRect(card_, radius, radius);
    painter.fillPath(path, composited() ? regularMaterial : QColor(33, 38, 36));
    painter.setPen(QPen(rgba(1, 1, 1, 0.2), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(card_.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);

    const QRectF inner =
        card_.adjusted(horizontalPadding, verticalPadding, -horizontalPadding, -verticalPadding);
    double y = inner.top();
    const auto line = [&](const QFont& font, const QColor& colour, const QString& text) {
        const QFontMetricsF metrics(font);
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(QRectF(inner.left(), y, inner.width(), metrics.height()),
                         Qt::AlignHCenter | Qt::AlignVCenter,
                         metrics.elidedText(text, Qt::ElideRight, inner.width()));
        y += metrics.height() + spacing;
    };
    line(numberFont_, primaryText, QString::number(item_.number));
    line(screenFont_, primaryText, QStringLiteral("Screen %1").arg(item_.number));
    line(nameFont_, secondaryText, item_.display.name);

    if (!badges_.isEmpty()) {
        const QFontMetricsF metrics(badgeFont_);
        double total = 0;
        for (const QString& title : std::as_const(badges_)) {
            total += badgeSize(metrics, title).width() + (total > 0 ? badgeSpacing : 0);
        }
        double x = inner.center().x() - total / 2;
        painter.setFont(badgeFont_);
        for (const QString& title : std::as_const(badges_)) {
            const QRectF badge(QPointF(x, y), badgeSize(metrics, title));
            QPainterPath pill;
            pill.addRoundedRect(badge, badge.height() / 2, badge.height() / 2);
            painter.fillPath(pill, thinMaterial);
            painter.setPen(secondaryText);
            painter.drawText(badge, Qt::AlignCenter, title);
            x += badge.width() + badgeSpacing;
        }
    }
}

} // namespace tilmora
