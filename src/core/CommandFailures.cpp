#include "core/CommandFailures.h"

#include "windows/WindowManagerError.h"

namespace tilmora::CommandFailures {

bool isFailure(const QString& statusMessage) {
    for (const QString& failure :
         {onlyOneDisplay, nothingToSave, nothingRestored, canvasUnavailable}) {
        if (statusMessage == failure) {
            return true;
        }
    }
    for (int kind = WindowManagerError::cannotMoveWindow;
         kind <= WindowManagerError::cannotResizeWindow; ++kind) {
        const QString text =
            WindowManagerError(static_cast<WindowManagerError::Kind>(kind)).errorDescription();
        // The move error carries the write codes after its fixed opening.
        if (kind == WindowManagerError::cannotMoveWindow ? statusMessage.startsWith(text)
                                                         : statusMessage == text) {
            return true;
        }
    }
    return false;
}

} // namespace tilmora::CommandFailures
