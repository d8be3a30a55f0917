#include "ui/StatusLine.h"

#include "core/AppStore.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tilmora {

StatusLine::StatusLine(AppStore& store, QWidget* parent)
    : QWidget(parent)
    , store_(store)
    , text_(new QLabel(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    auto* symbol = new QLabel(this);
    symbol->setPixmap(SymbolIcon::icon(QStringLiteral("info.circle")).pixmap(16, 16));
    row->addWidget(symbol, 0, Qt::AlignTop);
    TextStyle::apply(text_, TextStyle::Style::callout, QFont::Normal, true);
    text_->setWordWrap(true);
    text_->setTextFormat(Qt::PlainText);
    row->addWidget(text_, 1);
    connect(&store_, &AppStore::statusMessageChanged, this, &StatusLine::showMessage);
    showMessage();
}

void StatusLine::showMessage() {
    const auto& message = store_.statusMessage();
    text_->setText(message.value_or(QString()));
    setAccessibleName(message.value_or(QString()));
    setVisible(message.has_value());
}

} // namespace tilmora
