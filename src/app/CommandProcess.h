// A process started with a command: it hands the command to the running instance, or runs it
// itself when none runs on the display.
#pragma once

namespace tilmora::CommandProcess {

// `argv` without a command is not for this: the exit code.
int run(int argc, char** argv);

} // namespace tilmora::CommandProcess
