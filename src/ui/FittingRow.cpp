#include "ui/FittingRow.h"

#include <QBoxLayout>
#include <QResizeEvent>

#include <algorithm>

namespace tilmora {

FittingRow::FittingRow(int rowSpacing, int columnSpacing, QWidget* parent)
    : QWidget(parent)
    , rowSpacing_(rowSpacing)
    , columnSpacing_(columnSpacing)
    , layout_(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(rowSpacing);
    // The minimum is that of the stacked form, whichever is shown: the row can always narrow.
    layout_->setSizeConstraint(QLayout::SetNoConstraint);
}

void FittingRow::addWidget(QWidget* widget, int stretch) {
    widgets_.append(widget);
    layout_->addWidget(widget, stretch,
                       orientation_ == Qt::Horizontal ? Qt::AlignVCenter : Qt::AlignLeft);
}

void FittingRow::addStretch() {
    layout_->addStretch(1);
}

int FittingRow::rowWidth() const {
    if (rowWidth_) {
        return rowWidth_();
    }
    int width = rowSpacing_ * std::max<int>(0, static_cast<int>(widgets_.size()) - 1);
    for (const QWidget* widget : widgets_) {
        width += widget->sizeHint().width();
    }
    return width;
}

QSize FittingRow::minimumSizeHint() const {
    // As narrow as the stacked form; as high as the form shown.
    const bool row = orientation_ == Qt::Horizontal;
    int width = 0;
    int height = row ? 0 : columnSpacing_ * std::max<int>(0, static_cast<int>(widgets_.size()) - 1);
    for (const QWidget* widget : widgets_) {
        width = std::max(width, widget->minimumSizeHint().width());
        height = row ? std::max(height, widget->minimumSizeHint().height())
                     : height + widget->minimumSizeHint().height();
    }
    return {width, height};
}

void FittingRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut(event->size().width());
}

void FittingRow::layOut(int width) {
    const Qt::Orientation fitting = width >= rowWidth() ? Qt::Horizontal : Qt::Vertical;
    if (fitting == orientation_) {
        return;
    }
    orientation_ = fitting;
    const bool row = fitting == Qt::Horizontal;
    layout_->setDirection(row ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    layout_->setSpacing(row ? rowSpacing_ : columnSpacing_);
    for (QWidget* widget : widgets_) {
        layout_->setAlignment(widget, row ? Qt::AlignVCenter : Qt::AlignLeft);
    }
    // The height changed with the direction: whoever holds the row must know.
    updateGeometry();
}

} // namespace tilmora
