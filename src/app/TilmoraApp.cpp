// The tilmora executable. With a command it runs that command once against the current X
// display and exits; without one it shows how to use it.
#include "cli/CommandLine.h"
#include "cli/CommandRunner.h"
#include "core/AppStore.h"
#include "platform/qt/QSettingsPreferences.h"
#include "platform/qt/QtScheduler.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11HotKeyService.h"
#include "platform/x11/X11InputMonitor.h"
#include "platform/x11/X11WindowSystem.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

using namespace tilmora;

namespace {

int runCommand(const CommandLine& line, QTextStream& out, QTextStream& err) {
    const QByteArray display = qgetenv("DISPLAY");
    if (display.isEmpty()) {
        err << "tilmora: no X display: set DISPLAY to the display whose windows to arrange "
               "(for example :0)\n";
        return CommandRunner::failure;
    }
    X11Connection connection;
    if (!connection.ensureConnected(true)) {
        err << "tilmora: cannot open the X display " << display << '\n';
        return CommandRunner::failure;
    }
    X11WindowSystem windowSystem(connection);
    if (!windowSystem.isTrusted()) {
        err << "tilmora: no EWMH window manager is running on " << display
            << "; Tilmora arranges windows through one (openbox, xfwm4, icewm, ...)\n";
        return CommandRunner::failure;
    }
    X11HotKeyService hotKeys(connection);
    X11InputMonitor input(connection);
    QtScheduler scheduler;
    QSettingsPreferences preferences;
    AppStore store({windowSystem, hotKeys, input, scheduler, preferences});
    return CommandRunner(store, out, err).run(line);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tilmora"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TILMORA_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);

    const CommandLine line = CommandLine::parse(QCoreApplication::arguments().mid(1));
    switch (line.action) {
    case CommandLine::Action::showHelp:
    case CommandLine::Action::noCommand:
        out << commandLineUsage();
        return CommandRunner::success;
    case CommandLine::Action::showVersion:
        out << "tilmora " << TILMORA_VERSION << '\n';
        return CommandRunner::success;
    case CommandLine::Action::usageError:
        err << "tilmora: " << line.error << "\n\n" << commandLineUsage();
        return CommandRunner::usageError;
    case CommandLine::Action::runCommand:
        break;
    }
    return runCommand(line, out, err);
}
