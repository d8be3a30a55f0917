#include "ui/TextStyle.h"

#include "ui/NativeSurface.h"

#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QWidget>

namespace tilmora::TextStyle {

namespace {

// Sizes relative to a 13-point body, the ratios of a desktop type ramp.
double scale(Style style) {
    switch (style) {
    case Style::title3:
        return 15.0 / 13.0;
    case Style::headline:
    case Style::body:
        return 1.0;
    case Style::callout:
        return 12.0 / 13.0;
    case Style::caption:
        return 10.5 / 13.0;
    case Style::caption2:
        return 10.0 / 13.0;
    }
    return 1.0;
}

} // namespace

QFont font(Style style, QFont::Weight weight) {
    QFont result = QApplication::font();
    const double base = result.pointSizeF() > 0 ? result.pointSizeF() : 10.0;
    result.setPointSizeF(base * scale(style));
    result.setWeight(style == Style::headline ? QFont::DemiBold : weight);
    return result;
}

QColor secondary(const QPalette& palette) {
    return NativeSurface::withOpacity(palette.color(QPalette::WindowText), 0.64);
}

QColor tertiary(const QPalette& palette) {
    return NativeSurface::withOpacity(palette.color(QPalette::WindowText), 0.45);
}

void apply(QWidget* widget, Style style, QFont::Weight weight, bool secondaryColour) {
    widget->setFont(font(style, weight));
    if (secondaryColour) {
        QPalette palette = widget->palette();
        palette.setColor(QPalette::WindowText, secondary(palette));
        widget->setPalette(palette);
    }
}

QLabel* wrappingLabel(const QString& text, Style style, bool secondaryColour,
                      QFont::Weight weight) {
    auto* label = new QLabel(text);
    apply(label, style, weight, secondaryColour);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace tilmora::TextStyle
