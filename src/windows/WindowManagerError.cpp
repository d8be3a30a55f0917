#include "windows/WindowManagerError.h"

namespace tilmora {

WindowManagerError WindowManagerError::cannotMove(QString detail) {
    WindowManagerError error(cannotMoveWindow);
    error.detail_ = std::move(detail);
    return error;
}

QString WindowManagerError::errorDescription() const {
    switch (kind_) {
    case cannotMoveWindow:
        return QStringLiteral("Tilmora could not move that window. ") + detail_;
    case accessibilityDenied:
        return QStringLiteral("Tilmora needs an X11 session with a window manager before it can "
                              "arrange windows.");
    case noTargetWindow:
        return QStringLiteral("No target window is available.");
    case targetWindowMissing:
        return QStringLiteral("The selected window is no longer available.");
    case cannotReadWindow:
        return QStringLiteral("Tilmora could not read that window.");
    case cannotResizeWindow:
        return QStringLiteral("That window does not allow programmatic resize or move.");
    }
    return {};
}

std::ostream& operator<<(std::ostream& stream, const WindowManagerError& error) {
    return stream << error.errorDescription().toStdString();
}

} // namespace tilmora
