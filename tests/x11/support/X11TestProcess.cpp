#include "x11/support/X11TestProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tilmora::test {

X11TestProcess::X11TestProcess(const Options& options) {
    std::vector<std::string> environment;
    for (char** entry = environ; *entry; ++entry) {
        const std::string line(*entry);
        const std::string name = line.substr(0, line.find('='));
        if (!options.environment.contains(name)) {
            environment.push_back(line);
        }
    }
    for (const auto& [name, value] : options.environment) {
        environment.push_back(name + '=' + value);
    }
    std::vector<char*> argv;
    for (const std::string& argument : options.arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (std::string& line : environment) {
        envp.push_back(line.data());
    }
    envp.push_back(nullptr);
    const std::string output = options.outputFile.empty() ? "/dev/null" : options.outputFile;
    const pid_t parent = ::getpid();

    pid_ = ::fork();
    if (pid_ == 0) {
        // Dies with the test, so that a crashed test leaves no server behind.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) {
            ::_exit(127);
        }
        ::setpgid(0, 0);
        const int out = ::open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        if (out >= 0) {
            ::dup2(out, STDOUT_FILENO);
            ::dup2(out, STDERR_FILENO);
        }
        const int in = ::open("/dev/null", O_RDONLY);
        if (in >= 0) {
            ::dup2(in, STDIN_FILENO);
        }
        if (options.inheritedDescriptor) {
            const int fd = *options.inheritedDescriptor;
            ::fcntl(fd, F_SETFD, ::fcntl(fd, F_GETFD) & ~FD_CLOEXEC);
        }
        ::execvpe(argv[0], argv.data(), envp.data());
        ::_exit(127);
    }
}

X11TestProcess::~X11TestProcess() {
    stop();
}

X11TestProcess::X11TestProcess(X11TestProcess&& other) noexcept
    : pid_(other.pid_)
    , status_(other.status_) {
    other.pid_ = -1;
}

X11TestProcess& X11TestProcess::operator=(X11TestProcess&& other) noexcept {
    if (this != &other) {
        stop();
        pid_ = other.pid_;
        status_ = other.status_;
        other.pid_ = -1;
    }
    return *this;
}

bool X11TestProcess::isRunning() {
    if (pid_ <= 0 || status_) {
        return false;
    }
    int status = 0;
    const pid_t done = ::waitpid(pid_, &status, WNOHANG);
    if (done == pid_) {
        status_ = status;
        return false;
    }
    return done == 0;
}

std::optional<int> X11TestProcess::wait(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    // waitpid has no time-out: poll it, with a short pause between looks.
    while (isRunning()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    if (!status_) {
        return std::nullopt;
    }
    return WIFEXITED(*status_) ? WEXITSTATUS(*status_) : 128 + WTERMSIG(*status_);
}

void X11TestProcess::stop(std::chrono::milliseconds grace) {
    if (pid_ <= 0) {
        return;
    }
    // The whole process group: a program started through a wrapper (a session bus, a shell)
    // leaves no helper behind.
    if (isRunning()) {
        ::kill(-pid_, SIGTERM);
        if (!wait(grace)) {
            ::kill(-pid_, SIGKILL);
            wait(std::chrono::seconds(5));
        }
    }
    ::kill(-pid_, SIGKILL);
    pid_ = -1;
}

std::optional<int> X11TestProcess::run(const std::vector<std::string>& arguments,
                                       std::chrono::milliseconds timeout,
                                       const std::map<std::string, std::string>& environment) {
    Options options;
    options.arguments = arguments;
    options.environment = environment;
    X11TestProcess process(options);
    const auto status = process.wait(timeout);
    if (!status) {
        process.stop();
    }
    return status;
}

} // namespace tilmora::test
