// The application's fixed frame: the main window, the settings window, the tray icon with its
// menu, the about dialog, the placement canvas and the display cards, all over the one store, which
// it starts when the first of them is shown.
#pragma once

#include "ui/KeyNameTranslator.h"
#include "ui/MonitorChangeFilter.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace tilmora {

class AboutPanelPresenter;
class AppStore;
class DisplayIdentifierController;
class PlacementCanvasController;
class QtPlacementOverlayFactory;
class QtScheduler;
class MainWindow;
class SettingsWindow;
class TrayIcon;
class TrayMenu;

class ApplicationShell : public QObject {
    Q_OBJECT

public:
    explicit ApplicationShell(AppStore& store, QObject* parent = nullptr);
    ~ApplicationShell() override;

    // Builds the windows and the tray, shows the main window and starts the store.
    void launch();
    // Brings the main window back, also after it was closed, raised and activated.
    void showMainWindow();
    // Pops the tray menu up at the pointer, for desktops without a tray.
    void popUpMenuAtPointer();

    MainWindow* mainWindow() const { return mainWindow_.get(); }
    TrayMenu* trayMenu() const { return trayMenu_.get(); }
    PlacementCanvasController* placementCanvas() const { return canvas_.get(); }

Q_SIGNALS:
    // "Quit Tilmora" was chosen from a menu.
    void quitRequested();

private:
    void build();
    void startStore();
    void showSettings();
    void showAbout();

    AppStore& store_;
    KeyNameTranslator keyNames_;
    std::unique_ptr<MainWindow> mainWindow_;
    std::unique_ptr<TrayMenu> trayMenu_;
    std::unique_ptr<TrayIcon> trayIcon_;
    std::unique_ptr<SettingsWindow> settingsWindow_;
    std::unique_ptr<AboutPanelPresenter> about_;
    std::unique_ptr<QtScheduler> scheduler_;
    std::unique_ptr<QtPlacementOverlayFactory> overlays_;
    std::unique_ptr<PlacementCanvasController> canvas_;
    std::unique_ptr<DisplayIdentifierController> identifier_;
    QTimer* canvasPreparation_ = nullptr;
    std::unique_ptr<MonitorChangeFilter> monitorChanges_;
};

} // namespace tilmora
