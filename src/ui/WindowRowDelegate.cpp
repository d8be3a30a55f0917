#include "ui/WindowRowDelegate.h"

#include "ui/NativePanel.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"
#include "ui/WindowListModel.h"

#include <QPainter>
#include <QTextOption>

namespace tilmora {

namespace {

constexpr int padding = 12;
constexpr int symbolSide = 22;
constexpr int lineGap = 2;

// One line in `rect`, elided at its end, laid out in the text's own direction.
void drawLine(QPainter& painter, const QRectF& rect, const QString& text, const QFont& font,
              const QColor& colour) {
    painter.setFont(font);
    painter.setPen(colour);
    const QString elided =
        QFontMetrics(font).elidedText(text, Qt::ElideRight, static_cast<int>(rect.width()));
    QTextOption option(Qt::AlignLeft | Qt::AlignVCenter);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(rect, elided, option);
}

} // namespace

WindowRowDelegate::WindowRowDelegate(const WindowListModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , model_(model) {}

QSize WindowRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const int title = QFontMetrics(TextStyle::font(TextStyle::Style::headline)).height();
    const int detail = QFontMetrics(TextStyle::font(TextStyle::Style::callout)).height();
    return {option.rect.width(), 2 * padding + title + lineGap + detail + rowSpacing};
}

void WindowRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    const TilmoraWindow& window = model_.window(index.row());
    const bool selected = index.data(WindowListModel::SelectedRole).toBool();
    const QPalette& palette = option.palette;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(option.rect).adjusted(0, 0, 0, -rowSpacing);
    NativePanel::paint(*painter, card, selected, palette);

    const QRectF inner = card.adjusted(padding, padding, -padding, -padding);
    const QRectF symbol(inner.left(), inner.center().y() - symbolSide / 2.0, symbolSide,
                        symbolSide);
    const QString symbolName =
        selected ? QStringLiteral("macwindow.badge.plus") : QStringLiteral("macwindow");
    // Painted in the accent colour when selected, the secondary one otherwise.
    QPixmap glyph = SymbolIcon::icon(symbolName).pixmap(symbolSide, symbolSide);
    {
        QPainter tint(&glyph);
        tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
        tint.fillRect(glyph.rect(), selected ? palette.color(QPalette::Highlight)
                                             : TextStyle::secondary(palette));
    }
    painter->drawPixmap(symbol.topLeft(), glyph);

    const QFont titleFont = TextStyle::font(TextStyle::Style::headline);
    const QFont detailFont = TextStyle::font(TextStyle::Style::callout);
    double right = inner.right();
    if (window.isFocused) {
        const QFont tagFont = TextStyle::font(TextStyle::Style::caption, QFont::DemiBold);
        const QString tag = QStringLiteral("Active");
        const QFontMetricsF metrics(tagFont);
        const QRectF badge(right - metrics.horizontalAdvance(tag) - 12,
                           inner.center().y() - metrics.height() / 2 - 2,
                           metrics.horizontalAdvance(tag) + 12, metrics.height() + 4);
        QColor fill = palette.color(QPalette::Highlight);
        fill.setAlphaF(0.16F);
        painter->setPen(Qt::NoPen);
        painter->setBrush(fill);
        painter->drawRoundedRect(badge, badge.height() / 2, badge.height() / 2);
        painter->setFont(tagFont);
        painter->setPen(palette.color(QPalette::Highlight));
        painter->drawText(badge, Qt::AlignCenter, tag);
        right = badge.left() - 10;
    }
    const double left = symbol.right() + 10;
    const double titleHeight = QFontMetricsF(titleFont).height();
    drawLine(*painter, QRectF(left, inner.top(), right - left, titleHeight),
             WindowListModel::oneLine(window.title), titleFont, palette.color(QPalette::Text));
    drawLine(*painter,
             QRectF(left, inner.top() + titleHeight + lineGap, right - left,
                    QFontMetricsF(detailFont).height()),
             WindowListModel::oneLine(window.appName) + QStringLiteral("  ") +
                 window.frameSummary(),
             detailFont, TextStyle::secondary(palette));
    painter->restore();
}

} // namespace tilmora
