#include "app/InProcessCommand.h"

#include "app/DesktopCheck.h"
#include "cli/CommandRunner.h"
#include "core/AppStore.h"
#include "platform/qt/QSettingsPreferences.h"
#include "platform/qt/QtScheduler.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11HotKeyService.h"
#include "platform/x11/X11InputMonitor.h"
#include "platform/x11/X11WindowSystem.h"

namespace tilmora {

int runInProcess(const CommandLine& line, QTextStream& out, QTextStream& err) {
    const QByteArray display = qgetenv("DISPLAY");
    if (!DesktopCheck::hasDisplay(display, err)) {
        return CommandRunner::failure;
    }
    X11Connection connection;
    if (!connection.ensureConnected(true)) {
        err << "tilmora: cannot open the X display " << display << '\n';
        return CommandRunner::failure;
    }
    X11WindowSystem windowSystem(connection);
    if (!DesktopCheck::hasWindowManager(windowSystem, display, err)) {
        return CommandRunner::failure;
    }
    X11HotKeyService hotKeys(connection);
    X11InputMonitor input(connection);
    QtScheduler scheduler;
    QSettingsPreferences preferences;
    AppStore store({windowSystem, hotKeys, input, scheduler, preferences});
    return CommandRunner(store, out, err).run(line);
}

} // namespace tilmora
