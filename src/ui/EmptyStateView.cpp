#include "ui/EmptyStateView.h"

#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tilmora {

EmptyStateView::EmptyStateView(const QString& symbolName, const QString& title, const QString& text,
                               QWidget* parent)
    : NativePanel(parent)
    , symbol_(new QLabel(this))
    , title_(new QLabel(this))
    , text_(new QLabel(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(30, 30, 30, 30);
    column->setSpacing(8);
    for (QLabel* label : {symbol_, title_, text_}) {
        label->setAlignment(Qt::AlignHCenter);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(label != symbol_);
        column->addWidget(label);
    }
    TextStyle::apply(title_, TextStyle::Style::headline);
    TextStyle::apply(text_, TextStyle::Style::callout, QFont::Normal, true);
    setContent(symbolName, title, text);
}

void EmptyStateView::setContent(const QString& symbolName, const QString& title,
                                const QString& text) {
    symbol_->setPixmap(SymbolIcon::icon(symbolName).pixmap(32, 32));
    title_->setText(title);
    text_->setText(text);
    setAccessibleName(title);
}

} // namespace tilmora
