// A symbol beside a headline and a wrapping explanation in the secondary colour: the leading
// part of a notice or an action panel.
#pragma once

#include <QWidget>

class QLabel;

namespace tilmora {

class SymbolHeading : public QWidget {
    Q_OBJECT

public:
    SymbolHeading(const QString& symbolName, const QString& headline, const QString& text,
                  QWidget* parent = nullptr);

    QLabel* headline() const { return headline_; }
    // The width it takes beside other content: the headline whole, the text over a few lines.
    int rowWidth() const;
    QSize minimumSizeHint() const override;

private:
    QLabel* headline_;
    QLabel* text_;
};

} // namespace tilmora
