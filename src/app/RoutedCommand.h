// A command that a client handed to the running instance, run through the instance's own store
// so that it prints what the process run prints: the command starts with no status line and
// no chosen window, as a fresh store does, and the window keeps its selection afterwards.
#pragma once

#include "cli/CommandLine.h"
#include "core/AppStore.h"

#include <QTextStream>

#include <functional>

namespace tilmora {

class RoutedCommand {
public:
    RoutedCommand(AppStore& store, const WindowSystem& windowSystem,
                  std::function<void()> popUpMenu);

    int operator()(const CommandLine& line, QTextStream& out, QTextStream& err);

private:
    AppStore& store_;
    const WindowSystem& windowSystem_;
    std::function<void()> popUpMenu_;
};

} // namespace tilmora
