// The command line of the tilmora executable, parsed: the global options and the command with
// its arguments. Checking a command's own arguments is the runner's job.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tilmora {

struct CommandLine {
    enum class Action { runCommand, showHelp, showVersion, noCommand, usageError };

    Action action = Action::noCommand;
    // Makes this window the target, as picking it in the window list does.
    std::optional<QString> windowID;
    bool json = false;
    QString command;
    QStringList arguments;
    // Why the line could not be understood, for usageError.
    QString error;

    // `arguments` without the program name.
    static CommandLine parse(const QStringList& arguments);
};

// The short usage printed with --help and after a usage error.
QString commandLineUsage();

} // namespace tilmora
