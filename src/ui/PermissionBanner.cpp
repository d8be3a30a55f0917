#include "ui/PermissionBanner.h"

#include "core/AppStore.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>

namespace tilmora {

namespace {

constexpr int padding = 14;
constexpr int spacing = 12;
constexpr int symbolWidth = 24;
// In a row the explanation wraps to a few lines; below this width it would be a thin column.
constexpr int rowSubtitleWidth = 320;

} // namespace

PermissionBanner::PermissionBanner(AppStore& store, QWidget* parent)
    : NativePanel(parent)
    , store_(store)
    , layout_(new QBoxLayout(QBoxLayout::LeftToRight, this))
    , headline_(new QLabel(QStringLiteral("Window manager access required"), this))
    , subtitle_(new QLabel(QStringLiteral("Tilmora arranges windows through your X11 window "
                                          "manager. Start one (or log in to an X11 session), "
                                          "then check again or relaunch."),
                           this))
    , buttons_(new QWidget(this)) {
    setObjectName(QStringLiteral("permissionBanner"));
    setAccessibleName(headline_->text());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    layout_->setContentsMargins(padding, padding, padding, padding);
    layout_->setSizeConstraint(QLayout::SetNoConstraint);
    layout_->setSpacing(spacing);

    auto* label = new QWidget(this);
    auto* labelRow = new QHBoxLayout(label);
    labelRow->setContentsMargins(0, 0, 0, 0);
    labelRow->setSpacing(10);
    auto* symbol = new QLabel(label);
    symbol->setPixmap(SymbolIcon::icon(QStringLiteral("lock.shield")).pixmap(22, 22));
    symbol->setFixedWidth(symbolWidth);
    symbol->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    labelRow->addWidget(symbol, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(3);
    TextStyle::apply(headline_, TextStyle::Style::headline);
    TextStyle::apply(subtitle_, TextStyle::Style::callout, QFont::Normal, true);
    subtitle_->setWordWrap(true);
    texts->addWidget(headline_);
    texts->addWidget(subtitle_);
    labelRow->addLayout(texts, 1);
    layout_->addWidget(label, 1);

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
    const int label =
        symbolWidth + 10 +
        std::max(headline_->sizeHint().width(),
                 std::min(subtitle_->fontMetrics().horizontalAdvance(subtitle_->text()),
                          rowSubtitleWidth));
    return 2 * padding + label + spacing + buttons_->sizeHint().width();
}

QSize PermissionBanner::minimumSizeHint() const {
    const int label = symbolWidth + 10 + headline_->minimumSizeHint().width();
    return {2 * padding + std::max(label, buttons_->sizeHint().width()),
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
