#include "ui/ApplicationShell.h"

#include <QCursor>
#include <QMainWindow>
#include <QMenu>

namespace tilmora {

ApplicationShell::ApplicationShell(AppStore& store, QObject* parent)
    : QObject(parent)
    , store_(store) {}

ApplicationShell::~ApplicationShell() = default;

void ApplicationShell::launch() {
    mainWindow_ = std::make_unique<QMainWindow>();
    mainWindow_->setObjectName(QStringLiteral("main"));
    mainWindow_->setWindowTitle(QStringLiteral("Tilmora"));
    mainWindow_->setMinimumSize(1120, 720);

    menu_ = std::make_unique<QMenu>();
    connect(menu_->addAction(QStringLiteral("Open Tilmora")), &QAction::triggered, this,
            &ApplicationShell::showMainWindow);
    connect(menu_->addAction(QStringLiteral("Quit Tilmora")), &QAction::triggered, this,
            &ApplicationShell::quitRequested);

    showMainWindow();
    store_.start();
}

void ApplicationShell::showMainWindow() {
    mainWindow_->show();
    mainWindow_->raise();
    mainWindow_->activateWindow();
}

void ApplicationShell::popUpMenuAtPointer() {
    menu_->popup(QCursor::pos());
}

} // namespace tilmora
