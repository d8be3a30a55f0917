#include "ui/DetailScrollView.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tilmora {

DetailScrollView::DetailScrollView(int maxWidth, int spacing, QWidget* parent)
    : QScrollArea(parent)
    , column_(new QWidget)
    , stack_(new QVBoxLayout(column_)) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setBackgroundRole(QPalette::Window);

    auto* canvas = new QWidget;
    canvas->setBackgroundRole(QPalette::Window);
    auto* row = new QHBoxLayout(canvas);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    column_->setMaximumWidth(maxWidth);
    row->addWidget(column_, 1);
    // Whatever the column cannot take stays empty on the trailing side.
    row->addStretch(0);

    stack_->setContentsMargins(padding, padding, padding, padding);
    stack_->setSpacing(spacing);
    stack_->addStretch(1);
    setWidget(canvas);
}

void DetailScrollView::fitContent() {
    // After the layouts have settled.
    QMetaObject::invokeMethod(
        this,
        [this] {
            // The content's height for this width, asked afresh, held as its minimum.
            widget()->setMinimumHeight(widget()->heightForWidth(viewport()->width()));
        },
        Qt::QueuedConnection);
}

void DetailScrollView::showEvent(QShowEvent* event) {
    QScrollArea::showEvent(event);
    fitContent();
}

bool DetailScrollView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Resize) {
        fitContent();
    }
    return QScrollArea::viewportEvent(event);
}

void DetailScrollView::addContent(QWidget* content) {
    stack_->insertWidget(stack_->count() - 1, content);
}

} // namespace tilmora
