// The application's windows and tray, built on the one store: the main window and the menu the
// tray and `tilmora menu` show. A placeholder with the final interface until the widgets land.
#pragma once

#include "core/AppStore.h"

#include <QObject>

#include <memory>

class QMainWindow;
class QMenu;

namespace tilmora {

class ApplicationShell : public QObject {
    Q_OBJECT

public:
    explicit ApplicationShell(AppStore& store, QObject* parent = nullptr);
    ~ApplicationShell() override;

    // Builds windows and tray, shows the main window, starts the store.
    void launch();
    // Brings the main window back (also after it was closed), raised and activated.
    void showMainWindow();
    // Pops the tray menu up at the pointer (for `tilmora menu`).
    void popUpMenuAtPointer();

Q_SIGNALS:
    // "Quit Tilmora" chosen.
    void quitRequested();

private:
    AppStore& store_;
    std::unique_ptr<QMainWindow> mainWindow_;
    std::unique_ptr<QMenu> menu_;
};

} // namespace tilmora
