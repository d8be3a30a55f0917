// A command that a client handed to the running instance, run through the instance's own store
// so that it prints what the process run prints: the command starts with no status line and
// no chosen window, as a fresh store does, and the window keeps its selection afterwards.
#pragma once

#include "cli/CommandLine.h"
#include "core/AppStore.h"
#include "platform/x11/X11Connection.h"

#include <QTextStream>

#include <functional>

namespace tilmora {

class RoutedCommand {
public:
    RoutedCommand(AppStore& store, const WindowSystem& windowSystem, X11Connection& connection,
                  std::function<void()> popUpMenu);

    int operator()(const CommandLine& line, QTextStream& out, QTextStream& err);

private:
    int run(const CommandLine& line, QTextStream& out, QTextStream& err);

    AppStore& store_;
    const WindowSystem& windowSystem_;
    X11Connection& connection_;
    std::function<void()> popUpMenu_;
};

} // namespace tilmora
