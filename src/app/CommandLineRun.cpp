#include "app/CommandLineRun.h"

#include "cli/CommandRunner.h"

namespace tilmora {

InstanceProtocol::Reply runCommandLine(const QStringList& arguments,
                                       const CommandExecutor& execute) {
    QByteArray outBytes;
    QByteArray errBytes;
    int exitCode = CommandRunner::success;
    {
        QTextStream out(&outBytes);
        QTextStream err(&errBytes);
        const CommandLine line = CommandLine::parse(arguments);
        switch (line.action) {
        case CommandLine::Action::showHelp:
        case CommandLine::Action::noCommand:
            out << commandLineUsage();
            break;
        case CommandLine::Action::showVersion:
            out << "tilmora " << TILMORA_VERSION << '\n';
            break;
        case CommandLine::Action::usageError:
            err << "tilmora: " << line.error << "\n\n" << commandLineUsage();
            exitCode = CommandRunner::usageError;
            break;
        case CommandLine::Action::runCommand:
            exitCode = execute(line, out, err);
            break;
        }
    }
    return {exitCode, outBytes.toStdString(), errBytes.toStdString()};
}

QStringList decodeArguments(const std::vector<std::string>& arguments) {
    QStringList decoded;
    for (const std::string& argument : arguments) {
        decoded << QString::fromLocal8Bit(argument);
    }
    return decoded;
}

} // namespace tilmora
