// The running application of one X display: the lock and the socket that make it the only one,
// the real platform under the store, the shell's windows and tray, and the commands clients
// route to it. A second launch on the same display hands over to the running instance instead.
#pragma once

namespace tilmora::TilmoraInstance {

// Becomes the instance, or asks the running one to show its main window; the exit code.
int run(int& argc, char** argv);

} // namespace tilmora::TilmoraInstance
