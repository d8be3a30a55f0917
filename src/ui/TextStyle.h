// The text styles of the views, a type ramp scaled from the application font, and the secondary
// and tertiary text colours.
#pragma once

#include <QColor>
#include <QFont>

class QPalette;
class QLabel;
class QWidget;

namespace tilmora::TextStyle {

enum class Style { title3, headline, body, callout, caption, caption2 };

// The style at `weight`; the headline is semibold whatever the weight asks.
QFont font(Style style, QFont::Weight weight = QFont::Normal);
QColor secondary(const QPalette& palette);
QColor tertiary(const QPalette& palette);

// Sets the widget's font to the style, and its text to the secondary colour when asked.
void apply(QWidget* widget, Style style, QFont::Weight weight = QFont::Normal,
           bool secondaryColour = false);
// Plain text in the style that wraps onto as many lines as it needs.
QLabel* wrappingLabel(const QString& text, Style style, bool secondaryColour = false,
                      QFont::Weight weight = QFont::Normal);

} // namespace tilmora::TextStyle
