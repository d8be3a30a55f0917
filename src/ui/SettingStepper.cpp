#include "ui/SettingStepper.h"

#include "ui/FixedNumber.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

namespace tilmora {

namespace {

QToolButton* arrowButton(Qt::ArrowType arrow, const QString& name, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setArrowType(arrow);
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return button;
}

} // namespace

SettingStepper::SettingStepper(const QString& title, int minimum, int maximum, int valueWidth,
                               QWidget* parent)
    : QWidget(parent)
    , minimum_(minimum)
    , maximum_(maximum)
    , value_(minimum)
    , number_(new FixedNumber(minimum, valueWidth, maximum, this))
    , up_(arrowButton(Qt::UpArrow, QStringLiteral("More ") + title, this))
    , down_(arrowButton(Qt::DownArrow, QStringLiteral("Fewer ") + title, this)) {
    setObjectName(title);
    setAccessibleName(title);
    setFocusPolicy(Qt::StrongFocus);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(number_);
    auto* label = new QLabel(title, this);
    label->setTextFormat(Qt::PlainText);
    row->addWidget(label);
    row->addStretch(1);
    // Side by side, each at the size the style gives it.
    auto* arrows = new QHBoxLayout;
    arrows->setContentsMargins(0, 0, 0, 0);
    arrows->setSpacing(2);
    arrows->addWidget(down_);
    arrows->addWidget(up_);
    row->addLayout(arrows);
    connect(up_, &QToolButton::clicked, this, [this] { request(value_ + 1); });
    connect(down_, &QToolButton::clicked, this, [this] { request(value_ - 1); });
    setValue(minimum);
}

void SettingStepper::setValue(int value) {
    value_ = std::clamp(value, minimum_, maximum_);
    number_->setValue(value_);
    up_->setEnabled(value_ < maximum_);
    down_->setEnabled(value_ > minimum_);
}

void SettingStepper::request(int value) {
    if (value >= minimum_ && value <= maximum_ && value != value_) {
        Q_EMIT valueRequested(value);
    }
}

void SettingStepper::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Right) {
        request(value_ + 1);
    } else if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Left) {
        request(value_ - 1);
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace tilmora
