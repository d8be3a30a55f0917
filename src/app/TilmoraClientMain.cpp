// `tilmora`: the command line as users and key bindings call it. It hands the arguments to the
// Tilmora instance of this X display and prints what the instance sends back, byte for byte,
// exiting with its code. With no instance running it becomes one of the Qt programs installed
// beside it: tilmora-run, which runs the command itself, or, without a command, tilmora-app,
// which becomes the instance. No Qt here: this runs on every key press a binding sends.
#include "cli/InstanceClient.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <unistd.h>

using namespace tilmora;

namespace {

// The program of that name beside this executable.
std::string besideThis(const std::string& program) {
    char self[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0) {
        return program;
    }
    const std::string path(self, static_cast<std::size_t>(length));
    return path.substr(0, path.rfind('/') + 1) + program;
}

} // namespace

int main(int argc, char** argv) {
    if (const auto address = InstanceAddress::fromEnvironment()) {
        if (const auto exitCode = InstanceClient::route(
                *address, std::vector<std::string>(argv + 1, argv + argc), {})) {
            return *exitCode;
        }
    }
    // Still named "tilmora": the name its messages carry.
    const std::string program = besideThis(argc > 1 ? "tilmora-run" : "tilmora-app");
    std::vector<char*> arguments(argv, argv + argc + 1);
    arguments[0] = const_cast<char*>("tilmora");
    ::execv(program.c_str(), arguments.data());
    std::fprintf(stderr, "tilmora: cannot start %s: %s\n", program.c_str(), std::strerror(errno));
    return 1;
}
