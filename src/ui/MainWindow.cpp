#include "ui/MainWindow.h"

#include "core/AppStore.h"
#include "ui/ApplicationIcon.h"
#include "ui/ArrangeMenu.h"
#include "ui/DetailScrollView.h"
#include "ui/SectionInfo.h"
#include "ui/SectionViews.h"
#include "ui/SidebarView.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QLabel>
#include <QMenuBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>

namespace tilmora {

MainWindow::MainWindow(AppStore& store, QWidget* parent)
    : QMainWindow(parent)
    , store_(store)
    , sidebar_(new SidebarView(store))
    , detail_(new QStackedWidget)
    , status_(new QLabel) {
    setObjectName(QStringLiteral("main"));
    setWindowIcon(ApplicationIcon::icon());
    setMinimumSize(minimumSize);
    resize(minimumSize);

    for (const TilmoraSection section : SectionInfo::allSections) {
        detail_->addWidget(SectionViews::make(section, store_));
    }
    auto* split = new QSplitter(Qt::Horizontal);
    split->setChildrenCollapsible(false);
    split->setHandleWidth(1);
    split->addWidget(sidebar_);
    split->addWidget(detail_);
    split->setStretchFactor(1, 1);
    split->setSizes({SidebarView::idealWidth, minimumSize.width() - SidebarView::idealWidth});
    setCentralWidget(split);

    buildMenus();
    buildToolbar();

    status_->setObjectName(QStringLiteral("status"));
    TextStyle::apply(status_, TextStyle::Style::callout, QFont::Normal, true);
    status_->setTextFormat(Qt::PlainText);
    status_->setContentsMargins(DetailScrollView::padding / 2, 2, DetailScrollView::padding / 2, 2);
    statusBar()->addWidget(status_, 1);
    statusBar()->setSizeGripEnabled(false);
    // A line of text, not a sunken field.
    statusBar()->setStyleSheet(QStringLiteral("QStatusBar::item { border: none; }"));

    showSection();
    showStatus();
    connect(&store_, &AppStore::selectedSectionChanged, this, &MainWindow::showSection);
    connect(&store_, &AppStore::statusMessageChanged, this, &MainWindow::showStatus);
}

void MainWindow::buildMenus() {
    menuBar()->setAccessibleName(QStringLiteral("Menu bar"));
    QMenu* application = menuBar()->addMenu(QStringLiteral("Tilmora"));
    application->addAction(SymbolIcon::icon(QStringLiteral("info.circle")),
                           QStringLiteral("About Tilmora"), this, &MainWindow::aboutRequested);
    application->addAction(SymbolIcon::icon(QStringLiteral("gearshape")),
                           QStringLiteral("Settings…"), this, &MainWindow::settingsRequested);
    application->addSeparator();
    application
        ->addAction(SymbolIcon::icon(QStringLiteral("power")), QStringLiteral("Quit Tilmora"), this,
                    &MainWindow::quitRequested)
        ->setShortcut(QKeySequence::Quit);

    arrangeMenu_ = new ArrangeMenu(store_, this);
    menuBar()->addMenu(arrangeMenu_);
}

void MainWindow::buildToolbar() {
    QToolBar* tools = addToolBar(QStringLiteral("Toolbar"));
    tools->setObjectName(QStringLiteral("toolbar"));
    tools->setMovable(false);
    tools->setFloatable(false);
    tools->setContextMenuPolicy(Qt::PreventContextMenu);
    tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tools->setIconSize(QSize(18, 18));
    // Qt's own button for tools that do not fit; it is a control like any other for AT-SPI.
    if (auto* more = tools->findChild<QWidget*>(QStringLiteral("qt_toolbar_ext_button"))) {
        more->setAccessibleName(QStringLiteral("More tools"));
    }

    QAction* refresh =
        tools->addAction(SymbolIcon::icon(QStringLiteral("arrow.clockwise")),
                         QStringLiteral("Refresh"), this, [this] { store_.refresh(); });
    refresh->setToolTip(QStringLiteral("Refresh windows"));
    QAction* nextDisplay = tools->addAction(
        SymbolIcon::icon(QStringLiteral("rectangle.connected.to.line.below")),
        QStringLiteral("Next Display"), this, [this] { store_.moveTargetToNextDisplay(); });
    nextDisplay->setToolTip(QStringLiteral("Move target to next display"));
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    Q_EMIT shown();
}

void MainWindow::showSection() {
    const auto& section = store_.selectedSection();
    // With nothing selected the detail stays on Arrange, and the title names the application.
    detail_->setCurrentIndex(SectionInfo::index(section.value_or(TilmoraSection::arrange)));
    setWindowTitle(section ? SectionInfo::title(*section) : QStringLiteral("Tilmora"));
}

void MainWindow::showStatus() {
    const QString message = store_.statusMessage().value_or(QString());
    status_->setText(message);
    // A screen reader finds the line by its name also while it is empty.
    status_->setAccessibleName(message.isEmpty() ? QStringLiteral("Status") : message);
}

} // namespace tilmora
