#include "ui/LayoutActionButton.h"

#include "core/AppStore.h"
#include "ui/LayoutSymbolIcon.h"
#include "ui/NativeSurface.h"
#include "ui/TextStyle.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tilmora {

namespace {

constexpr int horizontalPadding = 12;
constexpr int spacing = 10;
constexpr int iconFrame = 22;
constexpr int iconSide = 18;
constexpr double cornerRadius = 8;
// How far the title may shrink before it is cut short.
constexpr double smallestTitleScale = 0.86;

} // namespace

LayoutActionButton::LayoutActionButton(AppStore& store, LayoutAction action,
                                       std::function<void()> perform, QWidget* parent)
    : QAbstractButton(parent)
    , store_(store)
    , action_(action) {
    setText(action.title());
    setObjectName(QStringLiteral("layout-") + action.rawValue());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractButton::clicked, this, std::move(perform));
    setAccessibleDescription(hotKeyHint());
    connect(&store_, &AppStore::quickHotKeyModifiersChanged, this, [this] {
        setAccessibleDescription(hotKeyHint());
        updateGeometry();
        update();
    });
}

QString LayoutActionButton::hotKeyHint() const {
    return store_.quickHotKeyModifiers().displayText() + action_.hotKeyKeyLabel();
}

QFont LayoutActionButton::titleFont() const {
    return TextStyle::font(TextStyle::Style::callout);
}

QFont LayoutActionButton::hintFont() const {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(TextStyle::font(TextStyle::Style::caption).pointSizeF());
    return font;
}

QSize LayoutActionButton::sizeHint() const {
    const QFontMetrics title(titleFont());
    const QFontMetrics hint(hintFont());
    const int width = 2 * horizontalPadding + iconFrame + spacing +
                      title.horizontalAdvance(text()) + spacing +
                      hint.horizontalAdvance(hotKeyHint());
    return {width, std::max(minimumHeight, title.height() + 16)};
}

QSize LayoutActionButton::minimumSizeHint() const {
    const QSize full = sizeHint();
    QFont smallest = titleFont();
    smallest.setPointSizeF(smallest.pointSizeF() * smallestTitleScale);
    return {full.width() - QFontMetrics(titleFont()).horizontalAdvance(text()) +
                static_cast<int>(std::ceil(QFontMetricsF(smallest).horizontalAdvance(text()))) + 1,
            full.height()};
}

void LayoutActionButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool pressed = isDown();
    const QRectF bounds(rect());
    if (pressed) {
        // Pressed, the card sinks a hair about its centre.
        painter.translate(bounds.center());
        painter.scale(0.995, 0.995);
        painter.translate(-bounds.center());
    }
    const QPalette& colours = palette();
    QPainterPath card;
    card.addRoundedRect(bounds, cornerRadius, cornerRadius);
    painter.fillPath(
        card, NativeSurface::withOpacity(colours.color(QPalette::Base), pressed ? 0.95 : 0.58));
    painter.setPen(QPen(
        NativeSurface::withOpacity(colours.color(QPalette::WindowText), pressed ? 0.16 : 0.08), 1));
    painter.drawRoundedRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius - 0.5,
                            cornerRadius - 0.5);
    if (hasFocus()) {
        painter.setPen(
            QPen(NativeSurface::withOpacity(colours.color(QPalette::Highlight), 0.7), 2));
        painter.drawRoundedRect(bounds.adjusted(1, 1, -1, -1), cornerRadius - 1, cornerRadius - 1);
    }

    double x = horizontalPadding;
    const double middle = bounds.height() / 2.0;
    // The icon in the secondary colour: the text colour, partly see-through.
    painter.save();
    painter.setOpacity(0.64);
    LayoutSymbolIcon::icon(action_).paint(
        &painter, QRect(static_cast<int>(x) + (iconFrame - iconSide) / 2,
                        static_cast<int>(middle) - iconSide / 2, iconSide, iconSide));
    painter.restore();
    x += iconFrame + spacing;

    const QString hint = hotKeyHint();
    const QFont hintFont_ = hintFont();
    const int hintWidth = QFontMetrics(hintFont_).horizontalAdvance(hint);
    const double titleSpace =
        std::max(0.0, bounds.width() - horizontalPadding - x - spacing - hintWidth);

    // The title shrinks as far as it must, down to its smallest size, before it is cut short.
    QFont title = titleFont();
    const double fullSize = title.pointSizeF();
    for (double scale = 1.0; QFontMetricsF(title).horizontalAdvance(text()) > titleSpace &&
                             scale > smallestTitleScale;) {
        scale = std::max(smallestTitleScale, scale - 0.02);
        title.setPointSizeF(fullSize * scale);
    }
    const QFontMetrics titleMetrics(title);
    const QString shown =
        QFontMetricsF(title).horizontalAdvance(text()) <= titleSpace
            ? text()
            : titleMetrics.elidedText(text(), Qt::ElideRight, static_cast<int>(titleSpace));
    painter.setFont(title);
    painter.setPen(colours.color(QPalette::WindowText));
    const QRectF titleRect(x, 0, titleMetrics.horizontalAdvance(shown), bounds.height());
    painter.drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter, shown);
    x = titleRect.right() + spacing;

    painter.setFont(hintFont_);
    painter.setPen(TextStyle::tertiary(colours));
    painter.drawText(QRectF(x, 0, hintWidth + 1, bounds.height()), Qt::AlignLeft | Qt::AlignVCenter,
                     hint);
}

} // namespace tilmora
