#include "core/CommandFailures.h"

#include "windows/WindowManagerError.h"

namespace tilmora::CommandFailures {

namespace {

const QString notSaved = QStringLiteral("Could not save settings");

} // namespace

QString settingsNotSaved(const PreferencesFailure& failure) {
    return notSaved + QStringLiteral(" to %1: %2.").arg(failure.path, failure.reason);
}

QString unreadableNotKept(const QString& what, const PreferencesFailure& failure) {
    return notSaved + QStringLiteral(": the unreadable %1 could not be kept in %2 first: %3.")
                          .arg(what, failure.path, failure.reason);
}

bool isFailure(const QString& statusMessage) {
    for (const QString& failure :
         {onlyOneDisplay, nothingToSave, nothingRestored, canvasUnavailable, notSaved}) {
        if (statusMessage.startsWith(failure)) {
            return true;
        }
    }
    for (int kind = WindowManagerError::cannotMoveWindow;
         kind <= WindowManagerError::cannotResizeWindow; ++kind) {
        const QString text =
            WindowManagerError(static_cast<WindowManagerError::Kind>(kind)).errorDescription();
        // The move error carries the write codes after its fixed opening.
        if (statusMessage.startsWith(text)) {
            return true;
        }
    }
    return false;
}

} // namespace tilmora::CommandFailures
