#include "ui/PermissionBanner.h"

#include "core/AppStore.h"
#include "ui/SymbolHeading.h"
#include "ui/SymbolIcon.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>

namespace tilmora {

namespace {

constexpr int padding = 14;
constexpr int spacing = 12;

} // namespace

PermissionBanner::PermissionBanner(AppStore& store, QWidget* parent)
    : NativePanel(parent)
    , store_(store)
    , layout_(new QBoxLayout(QBoxLayout::LeftToRight, this))
    , heading_(new SymbolHeading(
          QStringLiteral("lock.shield"), QStringLiteral("Window manager access required"),
          QStringLiteral("Tilmora arranges windows through your X11 window manager. Start one (or "
                         "log in to an X11 session), then check again or relaunch."),
          this))
    , buttons_(new QWidget(this)) {
    setObjectName(QStringLiteral("permissionBanner"));
    setAccessibleName(heading_->headline()->text());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    layout_->setContentsMargins(padding, padding, padding, padding);
    layout_->setSizeConstraint(QLayout::SetNoConstraint);
    layout_->setSpacing(spacing);

    layout_->addWidget(heading_, 1);

    auto* buttonRow = new QHBoxLayout(buttons_);
    buttonRow->setContentsMargins(0, 0, 0, 0);
    buttonRow->setSpacing(8);
    QPushButton* grant =
        addButton(QStringLiteral("Grant Access"), QStringLiteral("checkmark.shield"));
    // The one prominent button: filled with the desktop's accent colour.
    QPalette prominent = grant->palette();
    prominent.setColor(QPalette::Button, prominent.color(QPalette::Highlight));
    prominent.setColor(QPalette::ButtonText, prominent.color(QPalette::HighlightedText));
    grant->setPalette(prominent);
    connect(grant, &QPushButton::clicked, this,
            [this] { store_.requestAccessibilityPermission(); });
    // Linux has no privacy pane to open: the guide's troubleshooting says what to do instead.
    connect(addButton(QStringLiteral("Open Settings"), QStringLiteral("gearshape")),
            &QPushButton::clicked, this,
            [this] { store_.setSelectedSection(TilmoraSection::guide); });
    connect(addButton(QStringLiteral("Check Again"), QStringLiteral("arrow.clockwise")),
            &QPushButton::clicked, this, [this] { store_.refresh(); });
    connect(addButton(QStringLiteral("Relaunch"), QStringLiteral("arrow.triangle.2.circlepath")),
            &QPushButton::clicked, this, [this] { store_.relaunch(); });
    layout_->addWidget(buttons_, 0, Qt::AlignVCenter);

    setVisible(!store_.permissionGranted());
    connect(&store_, &AppStore::permissionGrantedChanged, this,
            [this] { setVisible(!store_.permissionGranted()); });
}

QPushButton* PermissionBanner::addButton(const QString& title, const QString& symbolName) {
    auto* button = new QPushButton(SymbolIcon::icon(symbolName), title, buttons_);
    buttons_->layout()->addWidget(button);
    return button;
}

int PermissionBanner::rowWidth() const {
    return 2 * padding + heading_->rowWidth() + spacing + buttons_->sizeHint().width();
}

QSize PermissionBanner::minimumSizeHint() const {
    return {2 * padding +
                std::max(heading_->minimumSizeHint().width(), buttons_->sizeHint().width()),
            layout_->minimumSize().height()};
}

void PermissionBanner::resizeEvent(QResizeEvent* event) {
    NativePanel::resizeEvent(event);
    layOut(event->size().width());
}

void PermissionBanner::layOut(int width) {
    const Qt::Orientation fitting = width >= rowWidth() ? Qt::Horizontal : Qt::Vertical;
    if (fitting == orientation_) {
        return;
    }
    orientation_ = fitting;
    layout_->setDirection(fitting == Qt::Horizontal ? QBoxLayout::LeftToRight
                                                    : QBoxLayout::TopToBottom);
    layout_->setAlignment(buttons_, fitting == Qt::Horizontal ? Qt::AlignVCenter : Qt::AlignLeft);
}

} // namespace tilmora
