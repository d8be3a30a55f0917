// Runs one command of the command line against the store and prints what it did: the store's
// status line for commands, a listing for the listing commands. The exit code is 0 on success,
// 1 when the command failed and 2 when its arguments were wrong.
#pragma once

#include "cli/CommandLine.h"
#include "core/AppStore.h"

#include <QTextStream>

#include <functional>

namespace tilmora {

class CommandRunner {
public:
    static constexpr int success = 0;
    static constexpr int failure = 1;
    static constexpr int usageError = 2;

    CommandRunner(AppStore& store, QTextStream& out, QTextStream& err);

    int run(const CommandLine& line);

    // How `menu` pops up the tray menu at the pointer. Only a running instance has a menu;
    // without one `menu` fails.
    void setMenuPopUp(std::function<void()> popUp) { popUpMenu_ = std::move(popUp); }

private:
    // The store's id of the window `--window` names: an X window id of a listed window is
    // turned into that window's id; anything else is taken as an id.
    QString windowID(const QString& named) const;
    int usage(const QString& problem);
    int fail(const QString& problem);
    // Prints the store's status line; its exit code tells whether the command failed.
    int reportStatus();

    int displays(bool json);
    int windows(bool json);
    int layouts(bool json);
    int apply(const QStringList& arguments);
    int grid(const QStringList& arguments);
    int selectDisplay(const QStringList& arguments);
    int profile(const QStringList& arguments);
    int restoreOrDelete(const QString& command, const QStringList& arguments);

    AppStore& store_;
    QTextStream& out_;
    QTextStream& err_;
    std::function<void()> popUpMenu_;
};

} // namespace tilmora
