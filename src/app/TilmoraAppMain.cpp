// tilmora-app, the Qt program that the `tilmora` client becomes when no instance runs and no
// command is given: the instance of this X display, or, when one already runs, a request to
// show its main window. Given a command it behaves as tilmora-run.
#include "app/CommandProcess.h"
#include "app/TilmoraInstance.h"

#include <vector>

using namespace tilmora;

int main(int argc, char** argv) {
    if (argc > 1) {
        return CommandProcess::run(argc, argv);
    }
    // Qt names the WM_CLASS instance of the windows after argv[0]: "tilmora", however this
    // program was started (a relaunch starts it by its own path).
    std::vector<char*> qtArguments(argv, argv + argc + 1);
    qtArguments[0] = const_cast<char*>("tilmora");
    return TilmoraInstance::run(argc, qtArguments.data());
}
