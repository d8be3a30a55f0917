#include "ui/WindowsView.h"

#include "core/AppStore.h"
#include "ui/AdaptiveRow.h"
#include "ui/EmptyStateView.h"
#include "ui/LayoutSymbolIcon.h"
#include "ui/NativeSectionHeader.h"
#include "ui/StatusLine.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"
#include "ui/WindowListModel.h"
#include "ui/WindowRowDelegate.h"

#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace tilmora {

WindowsView::WindowsView(AppStore& store, QWidget* parent)
    : QWidget(parent)
    , store_(store)
    , model_(new WindowListModel(store, this))
    , list_(new QListView(this))
    , empty_(new EmptyStateView(QString(), QString(), QString(), this))
    , status_(new QLabel(this)) {
    setObjectName(QStringLiteral("windows"));
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(24);

    auto* refresh = new QPushButton(SymbolIcon::icon(QStringLiteral("arrow.clockwise")),
                                    QStringLiteral("Refresh"));
    connect(refresh, &QPushButton::clicked, this, [this] { store_.refresh(); });
    page->addWidget(new NativeSectionHeader(
        QStringLiteral("Open Windows"),
        QStringLiteral("Select a target window, then apply a quick placement."), refresh));

    auto* actions = new AdaptiveRow;
    for (const auto& [title, action] :
         {std::pair{"Left", LayoutAction::leftHalf}, std::pair{"Right", LayoutAction::rightHalf},
          std::pair{"Maximize", LayoutAction::maximize}}) {
        auto* button = new QPushButton(LayoutSymbolIcon::icon(action), QString::fromUtf8(title));
        connect(button, &QPushButton::clicked, this, [this, action] { store_.apply(action); });
        actions->addItem(button);
    }
    TextStyle::apply(status_, TextStyle::Style::callout, QFont::Normal, true);
    status_->setTextFormat(Qt::PlainText);
    status_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    status_->setWordWrap(true);
    actions->addItem(status_, true);
    page->addWidget(actions);

    // One view paints the rows in sight; the page scrolls, not the list.
    list_->setModel(model_);
    list_->setItemDelegate(new WindowRowDelegate(*model_, list_));
    list_->setUniformItemSizes(true);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setFocusPolicy(Qt::NoFocus);
    list_->setMouseTracking(true);
    list_->viewport()->setAutoFillBackground(false);
    list_->setAccessibleName(QStringLiteral("Open windows"));
    connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) {
        store_.setSelectedWindowID(model_->window(index.row()).id);
    });
    page->addWidget(list_);
    page->addWidget(empty_);
    page->addWidget(new StatusLine(store_));

    for (const auto changed :
         {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(model_, changed, this, &WindowsView::showWindows);
    }
    connect(&store_, &AppStore::permissionGrantedChanged, this, &WindowsView::showWindows);
    connect(&store_, &AppStore::statusMessageChanged, this, &WindowsView::showStatus);
    connect(&store_, &AppStore::windowsChanged, this, &WindowsView::showStatus);
    showWindows();
    showStatus();
}

void WindowsView::showWindows() {
    const int rows = model_->rowCount();
    empty_->setVisible(rows == 0);
    list_->setVisible(rows > 0);
    if (rows == 0) {
        if (store_.permissionGranted()) {
            empty_->setContent(QStringLiteral("macwindow"), QStringLiteral("No Windows Found"),
                               QStringLiteral("Open or focus an app window, then refresh."));
        } else {
            empty_->setContent(QStringLiteral("lock.shield"),
                               QStringLiteral("Window Manager Required"),
                               QStringLiteral("Start an EWMH window manager so Tilmora can read "
                                              "and arrange windows."));
        }
        return;
    }
    list_->setFixedHeight(rows * list_->sizeHintForRow(0));
}

void WindowsView::showStatus() {
    status_->setText(store_.statusMessage().value_or(QString::number(store_.windows().size()) +
                                                     QStringLiteral(" windows")));
}

} // namespace tilmora
