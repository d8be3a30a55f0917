#include "app/DesktopCheck.h"

namespace tilmora::DesktopCheck {

bool hasDisplay(const QByteArray& display, QTextStream& err) {
    if (display.isEmpty()) {
        err << "tilmora: no X display: set DISPLAY to the display whose windows to arrange "
               "(for example :0)\n";
    }
    return !display.isEmpty();
}

bool hasWindowManager(const WindowSystem& windowSystem, const QByteArray& display,
                      QTextStream& err) {
    const bool trusted = windowSystem.isTrusted();
    if (!trusted) {
        err << "tilmora: no EWMH window manager is running on " << display
            << "; Tilmora arranges windows through one (openbox, xfwm4, icewm, ...)\n";
    }
    return trusted;
}

} // namespace tilmora::DesktopCheck
