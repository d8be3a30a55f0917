#include "app/InProcessCommand.h"

#include "app/DesktopCheck.h"
#include "app/DisplayConnection.h"
#include "cli/CommandRunner.h"
#include "core/AppStore.h"
#include "platform/file/PreferencesFile.h"
#include "platform/qt/QtScheduler.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11HotKeyService.h"
#include "platform/x11/X11InputMonitor.h"
#include "platform/x11/X11WindowSystem.h"

namespace tilmora {

int runInProcess(const CommandLine& line, QTextStream& out, QTextStream& err) {
    const auto settingsPath = PreferencesFile::defaultPath();
    if (!settingsPath) {
        err << "tilmora: " << settingsPath.error() << '\n';
        return CommandRunner::failure;
    }
    const QByteArray display = qgetenv("DISPLAY");
    if (!DesktopCheck::hasDisplay(display, err)) {
        return CommandRunner::failure;
    }
    X11Connection connection;
    if (!connection.isAlive()) {
        const auto failure = connection.faults().unanswered > 0
                                 ? X11Handshake::Failure::silent
                                 : X11Handshake::Failure::unreachable;
        err << "tilmora: " << DisplayConnection::failure(failure, display) << '\n';
        return CommandRunner::failure;
    }
    // Said even when the display failed: it is about the settings, which were read.
    QString notice;
    const int exitCode = DisplayConnection::run(
        connection, out, err, [&](QTextStream& heldOut, QTextStream& heldErr) {
            X11WindowSystem windowSystem(connection);
            if (!DesktopCheck::hasWindowManager(windowSystem, display, heldErr)) {
                return CommandRunner::failure;
            }
            X11HotKeyService hotKeys(connection);
            X11InputMonitor input(connection);
            QtScheduler scheduler;
            // Locked from reading the settings to the command's last write: commands run at
            // once must not each save their own copy of a list and lose the others' changes.
            const auto preferences =
                PreferencesFile::open(*settingsPath, PreferencesFile::Locking::untilClosed);
            if (!preferences) {
                heldErr << "tilmora: " << preferences.error() << '\n';
                return CommandRunner::failure;
            }
            AppStore store({windowSystem, hotKeys, input, scheduler, **preferences});
            const int commandExitCode = CommandRunner(store, heldOut, heldErr).run(line);
            notice = store.pendingNotice();
            return commandExitCode;
        });
    // A command without a status line still says once where unreadable settings were kept.
    if (!notice.isEmpty()) {
        err << "tilmora: " << notice << '\n';
    }
    return exitCode;
}

} // namespace tilmora
