// A child process of a test: started with fork and exec, stopped by its pid (also when the test
// fails), and killed by the kernel if the test process itself dies.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tilmora::test {

class X11TestProcess {
public:
    struct Options {
        std::vector<std::string> arguments;
        // Added to (or replacing in) the test's own environment.
        std::map<std::string, std::string> environment;
        // Passed to the child as this descriptor number (for Xvfb's -displayfd).
        std::optional<int> inheritedDescriptor;
        // Where the child's stdout and stderr go; /dev/null when empty.
        std::string outputFile;
    };

    X11TestProcess() = default;
    explicit X11TestProcess(const Options& options);
    ~X11TestProcess();
    X11TestProcess(X11TestProcess&& other) noexcept;
    X11TestProcess& operator=(X11TestProcess&& other) noexcept;
    X11TestProcess(const X11TestProcess&) = delete;
    X11TestProcess& operator=(const X11TestProcess&) = delete;

    pid_t pid() const { return pid_; }
    bool isRunning();
    // SIGTERM, then SIGKILL if it has not exited within the grace period; reaps it.
    void stop(std::chrono::milliseconds grace = std::chrono::milliseconds(2000));
    // Waits for it to exit by itself; its exit status, or nothing at the time-out.
    std::optional<int> wait(std::chrono::milliseconds timeout);

    // Runs a command to completion; its exit status (nothing at the time-out, after a kill).
    static std::optional<int> run(const std::vector<std::string>& arguments,
                                  std::chrono::milliseconds timeout = std::chrono::seconds(10),
                                  const std::map<std::string, std::string>& environment = {});

private:
    pid_t pid_ = -1;
    std::optional<int> status_;
};

} // namespace tilmora::test
