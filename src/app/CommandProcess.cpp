#include "app/CommandProcess.h"

#include "app/CommandLineRun.h"
#include "app/InProcessCommand.h"
#include "cli/InstanceClient.h"

#include <QCoreApplication>

namespace tilmora::CommandProcess {

int run(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (const auto address = InstanceAddress::fromEnvironment()) {
        if (const auto exitCode = InstanceClient::route(*address, arguments, {})) {
            return *exitCode;
        }
    }
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tilmora"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TILMORA_VERSION));
    return InstanceClient::print(runCommandLine(decodeArguments(arguments), runInProcess));
}

} // namespace tilmora::CommandProcess
