#include "ui/SymbolHeading.h"

#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace tilmora {

namespace {

constexpr int symbolWidth = 24;
constexpr int symbolSpacing = 10;
// Beside other content the text wraps to a few lines; narrower it would be a thin column.
constexpr int rowTextWidth = 320;

} // namespace

SymbolHeading::SymbolHeading(const QString& symbolName, const QString& headline,
                             const QString& text, QWidget* parent)
    : QWidget(parent)
    , headline_(new QLabel(headline, this))
    , text_(new QLabel(text, this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(symbolSpacing);
    auto* symbol = new QLabel(this);
    symbol->setPixmap(SymbolIcon::icon(symbolName).pixmap(22, 22));
    symbol->setFixedWidth(symbolWidth);
    symbol->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    row->addWidget(symbol, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(3);
    headline_->setTextFormat(Qt::PlainText);
    text_->setTextFormat(Qt::PlainText);
    TextStyle::apply(headline_, TextStyle::Style::headline);
    TextStyle::apply(text_, TextStyle::Style::callout, QFont::Normal, true);
    text_->setWordWrap(true);
    texts->addWidget(headline_);
    texts->addWidget(text_);
    row->addLayout(texts, 1);
}

int SymbolHeading::rowWidth() const {
    return symbolWidth + symbolSpacing +
           std::max(headline_->sizeHint().width(),
                    std::min(text_->fontMetrics().horizontalAdvance(text_->text()), rowTextWidth));
}

QSize SymbolHeading::minimumSizeHint() const {
    return {symbolWidth + symbolSpacing + headline_->minimumSizeHint().width(),
            layout()->minimumSize().height()};
}

} // namespace tilmora
