// A command line run to the end with its output collected: --help, --version and usage errors
// answered here, a command handed to an executor. The process run and the instance's routed
// run both go through it, so both print the same bytes.
#pragma once

#include "cli/CommandLine.h"
#include "cli/InstanceProtocol.h"

#include <QStringList>
#include <QTextStream>

#include <functional>
#include <string>
#include <vector>

namespace tilmora {

// Runs the command of a parsed line; its exit code.
using CommandExecutor =
    std::function<int(const CommandLine& line, QTextStream& out, QTextStream& err)>;

InstanceProtocol::Reply runCommandLine(const QStringList& arguments,
                                       const CommandExecutor& execute);

// Arguments as the process received them, decoded as Qt decodes its own.
QStringList decodeArguments(const std::vector<std::string>& arguments);

} // namespace tilmora
