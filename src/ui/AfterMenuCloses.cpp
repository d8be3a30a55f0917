#include "ui/AfterMenuCloses.h"

#include <QGuiApplication>
#include <QMenu>
#include <QTimer>

#include <xcb/xcb.h>

#include <cstdlib>

namespace tilmora {

namespace {

// Long enough for the clients beneath the menu to answer its unmapping with a repaint.
constexpr int repaintMilliseconds = 60;

void whenUnmapped(QObject* context, const std::function<void()>& action) {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        // A round trip: the server has unmapped the menu when it answers.
        std::free(xcb_get_input_focus_reply(x11->connection(),
                                            xcb_get_input_focus(x11->connection()), nullptr));
    }
    QTimer::singleShot(repaintMilliseconds, context, action);
}

} // namespace

void afterMenuCloses(QMenu* menu, std::function<void()> action) {
    // A menu that goes away takes its pending entry with it.
    QObject* context = menu ? static_cast<QObject*>(menu) : qApp;
    const auto later = [context, action] {
        QTimer::singleShot(0, context, [context, action] { whenUnmapped(context, action); });
    };
    if (menu && menu->isVisible()) {
        QObject::connect(menu, &QMenu::aboutToHide, context, later, Qt::SingleShotConnection);
        return;
    }
    // The menu hides itself before its entry is triggered; the unmapping is on its way.
    later();
}

} // namespace tilmora
