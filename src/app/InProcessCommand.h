// A command run in this process when no instance runs on the display: its own X connection and
// store, gone when the command has run.
#pragma once

#include "cli/CommandLine.h"

#include <QTextStream>

namespace tilmora {

int runInProcess(const CommandLine& line, QTextStream& out, QTextStream& err);

} // namespace tilmora
