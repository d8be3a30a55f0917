#include "cli/InstanceAddress.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace tilmora {

namespace {

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::string_view(value) : std::string_view();
}

std::optional<std::string> privateDirectoryProblem(const std::string& directory, uid_t user) {
    struct stat info {};
    if (::lstat(directory.c_str(), &info) != 0) {
        return directory + ": " + std::strerror(errno);
    }
    if (!S_ISDIR(info.st_mode) || info.st_uid != user) {
        return directory + " is not a directory of this user";
    }
    if ((info.st_mode & 077) != 0) {
        return directory + " is open to other users";
    }
    return std::nullopt;
}

} // namespace

std::string normalizedDisplayName(std::string_view display) {
    std::string name(display);
    const auto colon = name.rfind(':');
    if (colon != std::string::npos) {
        const auto dot = name.find('.', colon);
        if (dot != std::string::npos) {
            name.erase(dot);
        }
        if (std::string_view(name).substr(0, colon) == "unix") {
            name.erase(0, colon);
        }
    }
    for (char& c : name) {
        if (c == '/') {
            c = '_';
        }
    }
    return name;
}

InstanceAddress InstanceAddress::make(std::string_view display, std::string_view runtimeDirectory,
                                      uid_t user) {
    InstanceAddress address;
    // A relative value is as good as none (the XDG rule for these variables).
    address.underRuntimeDirectory = runtimeDirectory.starts_with('/');
    address.directory = address.underRuntimeDirectory ? std::string(runtimeDirectory) + "/tilmora"
                                                      : "/tmp/tilmora-" + std::to_string(user);
    address.display = normalizedDisplayName(display);
    address.socketPath = address.directory + '/' + address.display;
    address.lockPath = address.socketPath + ".lock";
    return address;
}

std::optional<InstanceAddress> InstanceAddress::fromEnvironment() {
    const std::string_view display = environment("DISPLAY");
    if (display.empty()) {
        return std::nullopt;
    }
    return make(display, environment("XDG_RUNTIME_DIR"), ::getuid());
}

std::optional<std::string> InstanceAddress::problem() const {
    if (socketPath.size() >= sizeof(sockaddr_un::sun_path)) {
        return "the socket path " + socketPath + " is longer than a socket address allows";
    }
    if (!underRuntimeDirectory) {
        return privateDirectoryProblem(directory, ::getuid());
    }
    return std::nullopt;
}

std::optional<std::string> InstanceAddress::preparePrivateDirectory() const {
    if (::mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) {
        return "cannot create " + directory + ": " + std::strerror(errno);
    }
    struct stat info {};
    if (::lstat(directory.c_str(), &info) == 0 && S_ISDIR(info.st_mode) &&
        info.st_uid == ::getuid() && (info.st_mode & 077) != 0) {
        ::chmod(directory.c_str(), 0700);
    }
    return privateDirectoryProblem(directory, ::getuid());
}

} // namespace tilmora
