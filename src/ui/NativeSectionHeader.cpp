#include "ui/NativeSectionHeader.h"

#include "ui/TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace tilmora {

NativeSectionHeader::NativeSectionHeader(const QString& title,
                                         const std::optional<QString>& subtitle, QWidget* trailing,
                                         QWidget* parent)
    : QWidget(parent)
    , title_(new QLabel(title, this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);

    auto* column = new QVBoxLayout;
    column->setSpacing(3);
    TextStyle::apply(title_, TextStyle::Style::title3, QFont::DemiBold);
    title_->setWordWrap(true);
    title_->setTextFormat(Qt::PlainText);
    column->addWidget(title_);
    if (subtitle) {
        subtitle_ = new QLabel(*subtitle, this);
        TextStyle::apply(subtitle_, TextStyle::Style::callout, QFont::Normal, true);
        subtitle_->setWordWrap(true);
        subtitle_->setTextFormat(Qt::PlainText);
        column->addWidget(subtitle_);
    }
    // The texts take the width the trailing content leaves, so they wrap instead of clipping.
    row->addLayout(column, 1);
    if (trailing) {
        trailing->setParent(this);
        TextStyle::apply(trailing, TextStyle::Style::callout, QFont::Normal, true);
        row->addWidget(trailing, 0, Qt::AlignTop);
    }
}

} // namespace tilmora
