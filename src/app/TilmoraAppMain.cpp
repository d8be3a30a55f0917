// tilmora-app, the Qt program behind `tilmora`. Without a command it becomes the instance of
// this X display (or shows the running one's window); with one it hands the command to the
// running instance, or runs it itself when none runs.
#include "app/CommandLineRun.h"
#include "app/InProcessCommand.h"
#include "app/TilmoraInstance.h"
#include "cli/InstanceClient.h"

#include <QCoreApplication>

#include <string>
#include <vector>

using namespace tilmora;

int main(int argc, char** argv) {
    // Qt names the WM_CLASS instance of the windows after argv[0]: "tilmora", however this
    // program was started.
    std::vector<char*> qtArguments(argv, argv + argc + 1);
    qtArguments[0] = const_cast<char*>("tilmora");
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.empty()) {
        return TilmoraInstance::run(argc, qtArguments.data());
    }
    if (const auto address = InstanceAddress::fromEnvironment()) {
        if (const auto exitCode = InstanceClient::route(*address, arguments, {})) {
            return *exitCode;
        }
    }
    QCoreApplication application(argc, qtArguments.data());
    QCoreApplication::setApplicationName(QStringLiteral("tilmora"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TILMORA_VERSION));
    return InstanceClient::print(runCommandLine(decodeArguments(arguments), runInProcess));
}
