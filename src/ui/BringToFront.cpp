#include "ui/BringToFront.h"

#include <QWidget>

namespace tilmora {

void bringToFront(QWidget* window) {
    window->show();
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->raise();
    window->activateWindow();
}

} // namespace tilmora
