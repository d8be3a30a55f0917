#include "app/TilmoraInstance.h"

#include "app/CommandLineRun.h"
#include "app/DesktopCheck.h"
#include "app/DisplayConnection.h"
#include "app/InstanceLock.h"
#include "app/InstanceServer.h"
#include "app/Relauncher.h"
#include "app/RoutedCommand.h"
#include "app/UnixSignalQuit.h"
#include "cli/InstanceClient.h"
#include "core/AppStore.h"
#include "platform/file/PreferencesFile.h"
#include "platform/qt/QtScheduler.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11HotKeyService.h"
#include "platform/x11/X11InputMonitor.h"
#include "platform/x11/X11WindowSystem.h"
#include "ui/ApplicationShell.h"

#include <QApplication>

#include <xcb/xcb.h>

namespace tilmora::TilmoraInstance {

namespace {

using namespace std::chrono_literals;

// Qt ends the process with a core dump when it cannot reach the display, and waits without end
// for a server that does not answer: find out first. Why not, when it cannot.
std::optional<QString> displayProblem(const QByteArray& display) {
    const auto handshake = X11Handshake::connect(display, X11Connection::connectTimeout);
    if (!handshake) {
        return DisplayConnection::failure(handshake.error(), display);
    }
    xcb_disconnect(handshake->connection);
    return std::nullopt;
}

// The lock holder may still be starting and not listen yet: connect until a deadline.
int showRunningInstance(const InstanceAddress& address, QTextStream& err) {
    const InstanceClient::Timeouts timeouts{.answer = 5s, .result = 10s, .connectRetry = 5s};
    if (const auto exitCode = InstanceClient::route(address, {}, timeouts)) {
        return *exitCode;
    }
    err << "tilmora: another Tilmora holds " << QString::fromStdString(address.lockPath)
        << " but does not listen on " << QString::fromStdString(address.socketPath) << '\n';
    return 1;
}

} // namespace

int run(int& argc, char** argv) {
    const bool relaunched = Relauncher::takeMarker();
    QTextStream err(stderr);
    const QByteArray display = qgetenv("DISPLAY");
    if (!DesktopCheck::hasDisplay(display, err)) {
        return 1;
    }
    if (const auto problem = displayProblem(display)) {
        err << "tilmora: " << *problem << '\n';
        return 1;
    }
    const InstanceAddress address = *InstanceAddress::fromEnvironment();

    QApplication application(argc, argv);
    // The WM_CLASS class of the windows, by which the window list leaves them out.
    QApplication::setApplicationName(QStringLiteral("Tilmora"));
    QApplication::setApplicationVersion(QStringLiteral(TILMORA_VERSION));
    QApplication::setQuitOnLastWindowClosed(false);
    const UnixSignalQuit signalQuit;

    InstanceLock lock(address);
    switch (lock.acquire(relaunched ? Relauncher::lockWait : 0ms)) {
    case InstanceLock::Outcome::failed:
        err << "tilmora: " << lock.error() << '\n';
        return 1;
    case InstanceLock::Outcome::heldByAnother:
        if (relaunched) {
            err << "tilmora: the Tilmora to be replaced did not quit within "
                << Relauncher::lockWait / 1s << " seconds\n";
            return 1;
        }
        return showRunningInstance(address, err);
    case InstanceLock::Outcome::acquired:
        break;
    }
    InstanceServer server;
    const auto problem = address.problem();
    const auto listenError =
        problem ? problem : server.listen(QString::fromStdString(address.socketPath));
    if (listenError) {
        err << "tilmora: " << QString::fromStdString(*listenError) << '\n';
        return 1;
    }

    const auto settingsPath = PreferencesFile::defaultPath();
    if (!settingsPath) {
        err << "tilmora: " << settingsPath.error() << '\n';
        return 1;
    }
    const auto preferences =
        PreferencesFile::open(*settingsPath, PreferencesFile::Locking::eachWrite);
    if (!preferences) {
        err << "tilmora: " << preferences.error() << '\n';
        return 1;
    }

    X11Connection connection;
    X11WindowSystem windowSystem(connection);
    X11HotKeyService hotKeys(connection);
    X11InputMonitor input(connection);
    QtScheduler scheduler;
    AppStore store({windowSystem, hotKeys, input, scheduler, **preferences});
    store.setRelauncher(&Relauncher::relaunch);
    ApplicationShell shell(store);
    QObject::connect(&shell, &ApplicationShell::quitRequested, &application,
                     &QCoreApplication::quit);
    RoutedCommand routed(store, windowSystem, connection, [&shell] { shell.popUpMenuAtPointer(); });
    server.setHandler([&](const std::vector<std::string>& arguments) {
        if (arguments.empty()) {
            shell.showMainWindow();
            return InstanceProtocol::Reply{};
        }
        return runCommandLine(decodeArguments(arguments), routed);
    });
    shell.launch();
    return application.exec();
}

} // namespace tilmora::TilmoraInstance
