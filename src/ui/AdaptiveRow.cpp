#include "ui/AdaptiveRow.h"

#include <QBoxLayout>
#include <QResizeEvent>

#include <algorithm>

namespace tilmora {

// Items count when they show with the row: one the caller hid is left out, one merely not shown
// yet (the row itself is not on screen) is not.
AdaptiveRow::AdaptiveRow(QWidget* parent, int spacing)
    : QWidget(parent)
    , layout_(new QBoxLayout(QBoxLayout::LeftToRight, this))
    , spacing_(spacing) {
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(spacing);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void AdaptiveRow::addItem(QWidget* item, bool stretches) {
    items_.append(item);
    stretches_.append(stretches);
    layOut(orientation_);
}

int AdaptiveRow::rowWidth() const {
    int width = 0;
    for (const QWidget* item : items_) {
        if (item->isVisibleTo(this)) {
            width += item->sizeHint().width() + spacing_;
        }
    }
    return std::max(width - spacing_, 0);
}

int AdaptiveRow::heightAt(int width) const {
    int height = 0;
    int tallest = 0;
    for (const QWidget* item : items_) {
        if (!item->isVisibleTo(this)) {
            continue;
        }
        const int least = item->minimumSizeHint().height();
        const int itemHeight =
            std::max(least, item->hasHeightForWidth() ? item->heightForWidth(width)
                                                      : item->sizeHint().height());
        height += itemHeight + spacing_;
        tallest = std::max({tallest, least, item->sizeHint().height()});
    }
    return width >= rowWidth() ? tallest : std::max(height - spacing_, 0);
}

QSize AdaptiveRow::minimumSizeHint() const {
    // Stacked, it is as narrow as its widest item.
    int width = 0;
    int height = 0;
    for (const QWidget* item : items_) {
        if (item->isVisibleTo(this)) {
            width = std::max(width, item->minimumSizeHint().width());
            height = std::max(height, item->minimumSizeHint().height());
        }
    }
    // Whatever the width, the height asked for is the one the current width needs: layouts
    // do not pass a width down through every level reliably, so the row keeps it up to date.
    return {width, std::max(height, minimumHeight())};
}

QSize AdaptiveRow::sizeHint() const {
    return {rowWidth(), heightAt(width() > 0 ? width() : rowWidth())};
}

void AdaptiveRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const Qt::Orientation wanted =
        event->size().width() >= rowWidth() ? Qt::Horizontal : Qt::Vertical;
    if (wanted != orientation_) {
        layOut(wanted);
    }
    const int needed = heightAt(event->size().width());
    if (needed != minimumHeight()) {
        setMinimumHeight(needed);
        updateGeometry();
    }
}

void AdaptiveRow::layOut(Qt::Orientation orientation) {
    orientation_ = orientation;
    while (layout_->count() > 0) {
        delete layout_->takeAt(0);
    }
    layout_->setDirection(orientation == Qt::Horizontal ? QBoxLayout::LeftToRight
                                                        : QBoxLayout::TopToBottom);
    for (qsizetype i = 0; i < items_.size(); ++i) {
        const bool stretches = stretches_[i] && orientation == Qt::Horizontal;
        layout_->addWidget(items_[i], stretches ? 1 : 0,
                           orientation == Qt::Horizontal ? Qt::Alignment() : Qt::AlignLeft);
    }
}

} // namespace tilmora
