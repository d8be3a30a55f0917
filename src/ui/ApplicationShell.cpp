#include "ui/ApplicationShell.h"

#include "core/AppStore.h"
#include "placement/PlacementCanvasController.h"
#include "platform/qt/QtScheduler.h"
#include "ui/AboutPanelPresenter.h"
#include "ui/ApplicationIcon.h"
#include "ui/BringToFront.h"
#include "ui/DisplayIdentifierController.h"
#include "ui/MainWindow.h"
#include "ui/QtPlacementOverlayFactory.h"
#include "ui/SettingsWindow.h"
#include "ui/TrayIcon.h"
#include "ui/TrayMenu.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <QTimer>

#include <memory>
#include <utility>

namespace tilmora {

ApplicationShell::ApplicationShell(AppStore& store, QObject* parent)
    : QObject(parent)
    , store_(store)
    , scheduler_(std::make_unique<QtScheduler>())
    , overlays_(std::make_unique<QtPlacementOverlayFactory>())
    , identifier_(std::make_unique<DisplayIdentifierController>()) {
    QCoreApplication::installTranslator(&keyNames_);
    canvas_ = std::make_unique<PlacementCanvasController>(
        *overlays_, *scheduler_,
        [this](const QString& reason) { store_.setStatusMessage(reason); });
    // Before the store starts: its modifier drag shows its preview on the same overlays.
    store_.setPlacementCanvas(canvas_.get());
    connect(&store_, &AppStore::displayIdentificationRequested, identifier_.get(),
            &DisplayIdentifierController::show);
    // The canvas windows wait, unmapped, for the monitors there are. They are made once the
    // monitors have held still a moment: at start-up the main window comes first, and a
    // burst of monitor changes makes them once.
    canvasPreparation_ = new QTimer(this);
    canvasPreparation_->setSingleShot(true);
    canvasPreparation_->setInterval(750);
    connect(canvasPreparation_, &QTimer::timeout, this,
            [this] { overlays_->prepare(store_.connectedDisplays()); });
    // Shown overlays follow a change of the monitors.
    connect(&store_, &AppStore::connectedDisplaysChanged, this, [this] {
        const std::vector<DisplayGeometry>& displays = store_.connectedDisplays();
        canvasPreparation_->start();
        canvas_->followDisplays(displays);
        identifier_->followDisplays(displays);
    });
    // A monitor that comes, goes or changes is read at once rather than at the next refresh.
    // A burst of reports (a monitor change is several) reads the monitors once.
    const auto screensChanged = [this, pending = std::make_shared<bool>(false)] {
        if (std::exchange(*pending, true)) {
            return;
        }
        QTimer::singleShot(0, this, [this, pending] {
            *pending = false;
            if (store_.hasStarted()) {
                store_.refresh();
            }
        });
    };
    const auto watch = [this, screensChanged](QScreen* screen) {
        connect(screen, &QScreen::geometryChanged, this, screensChanged);
        connect(screen, &QScreen::availableGeometryChanged, this, screensChanged);
    };
    for (QScreen* screen : QGuiApplication::screens()) {
        watch(screen);
    }
    connect(qApp, &QGuiApplication::screenAdded, this, [watch, screensChanged](QScreen* screen) {
        watch(screen);
        screensChanged();
    });
    connect(qApp, &QGuiApplication::screenRemoved, this, screensChanged);
    monitorChanges_ = std::make_unique<MonitorChangeFilter>(screensChanged);
}

ApplicationShell::~ApplicationShell() {
    store_.setPlacementCanvas(nullptr);
}

void ApplicationShell::launch() {
    // Closing the last window leaves Tilmora running: its hot keys and tray stay live.
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(ApplicationIcon::icon());
    build();
    showMainWindow();
}

void ApplicationShell::build() {
    if (mainWindow_) {
        return;
    }
    mainWindow_ = std::make_unique<MainWindow>(store_);
    // Queued: the first refresh and the hot key grabs come after the window is on its way to
    // the screen, not before it.
    connect(mainWindow_.get(), &MainWindow::shown, this, &ApplicationShell::startStore,
            Qt::QueuedConnection);
    connect(mainWindow_.get(), &MainWindow::aboutRequested, this, &ApplicationShell::showAbout);
    connect(mainWindow_.get(), &MainWindow::settingsRequested, this,
            &ApplicationShell::showSettings);
    connect(mainWindow_.get(), &MainWindow::quitRequested, this, &ApplicationShell::quitRequested);

    trayMenu_ = std::make_unique<TrayMenu>(store_);
    connect(trayMenu_.get(), &QMenu::aboutToShow, this, &ApplicationShell::startStore);
    connect(trayMenu_.get(), &TrayMenu::openMainWindowRequested, this,
            &ApplicationShell::showMainWindow);
    connect(trayMenu_.get(), &TrayMenu::aboutRequested, this, &ApplicationShell::showAbout);
    connect(trayMenu_.get(), &TrayMenu::quitRequested, this, &ApplicationShell::quitRequested);

    trayIcon_ = std::make_unique<TrayIcon>(trayMenu_.get());
    connect(trayIcon_.get(), &TrayIcon::clicked, this, &ApplicationShell::showMainWindow);
    trayIcon_->show();
}

void ApplicationShell::startStore() {
    // Idempotent in the store: whichever of the window and the menu shows first starts it.
    store_.start();
}

void ApplicationShell::showMainWindow() {
    build();
    bringToFront(mainWindow_.get());
}

void ApplicationShell::popUpMenuAtPointer() {
    build();
    trayMenu_->popup(QCursor::pos());
    trayMenu_->activateWindow();
}

void ApplicationShell::showSettings() {
    if (!settingsWindow_) {
        settingsWindow_ = std::make_unique<SettingsWindow>(store_);
    }
    bringToFront(settingsWindow_.get());
}

void ApplicationShell::showAbout() {
    if (!about_) {
        about_ = std::make_unique<AboutPanelPresenter>();
    }
    bringToFront(about_.get());
}

} // namespace tilmora
