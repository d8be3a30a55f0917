#include "app/RoutedCommand.h"

#include "app/DesktopCheck.h"
#include "app/DisplayConnection.h"
#include "cli/CommandRunner.h"

namespace tilmora {

RoutedCommand::RoutedCommand(AppStore& store, const WindowSystem& windowSystem,
                             X11Connection& connection, std::function<void()> popUpMenu)
    : store_(store)
    , windowSystem_(windowSystem)
    , connection_(connection)
    , popUpMenu_(std::move(popUpMenu)) {}

int RoutedCommand::operator()(const CommandLine& line, QTextStream& out, QTextStream& err) {
    return DisplayConnection::run(
        connection_, out, err,
        [&](QTextStream& heldOut, QTextStream& heldErr) { return run(line, heldOut, heldErr); });
}

int RoutedCommand::run(const CommandLine& line, QTextStream& out, QTextStream& err) {
    if (!DesktopCheck::hasWindowManager(windowSystem_, qgetenv("DISPLAY"), err)) {
        return CommandRunner::failure;
    }
    // An earlier status line would be printed as this command's; a window picked in the
    // window list would become its target instead of the focused window.
    const std::optional<QString> status = store_.statusMessage();
    const std::optional<QString> selection = store_.selectedWindowID();
    store_.setStatusMessage(std::nullopt);
    if (selection) {
        store_.setSelectedWindowID(std::nullopt);
    }

    CommandRunner runner(store_, out, err);
    runner.setMenuPopUp(popUpMenu_);
    const int exitCode = runner.run(line);

    // A command that reported nothing leaves the window's status line as it was.
    if (!store_.statusMessage()) {
        store_.setStatusMessage(status);
    }
    if (selection || line.windowID) {
        store_.setSelectedWindowID(selection);
    }
    return exitCode;
}

} // namespace tilmora
