// tilmora-run, the program that the `tilmora` client becomes for a command when no instance
// runs: the command run in this process against the display. Qt Core only, since loading the
// widget libraries would double its start-up.
#include "app/CommandProcess.h"

int main(int argc, char** argv) {
    return tilmora::CommandProcess::run(argc, argv);
}
