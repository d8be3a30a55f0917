#include "ui/BringToFront.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace tilmora {

namespace {

// A window shown for the first time goes to the middle of the usable part of the monitor the
// user works on: a window manager's own placement can leave a 720-pixel-high window partly
// below a small monitor's edge or under a panel.
void placeOnPointerScreen(QWidget* window) {
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen) {
        screen = QGuiApplication::primaryScreen();
    }
    if (!screen) {
        return;
    }
    const QRect area = screen->availableGeometry();
    QRect frame({}, window->size());
    frame.moveCenter(area.center());
    window->move(std::max(area.left(), frame.left()), std::max(area.top(), frame.top()));
}

} // namespace

void bringToFront(QWidget* window) {
    // Qt marks a window moved once it was placed explicitly; the user's own moves come later.
    if (!window->testAttribute(Qt::WA_Moved)) {
        placeOnPointerScreen(window);
    }
    window->show();
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->raise();
    window->activateWindow();
}

} // namespace tilmora
