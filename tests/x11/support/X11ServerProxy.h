// A display of its own in front of a test desktop's X server, for failures at a known point of
// a command. Either it passes every connection through to the server and kills the server just
// before a chosen request would reach it (a server that dies in the middle of a command), or it
// accepts connections and never answers (a stopped or hung server). It listens on an abstract
// socket, which xcb tries first, so nothing is left in the file system.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

namespace tilmora::test {

class X11ServerProxy {
public:
    // The `occurrence`-th request with this major opcode, counted over all connections.
    struct Trigger {
        std::uint8_t opcode = 0;
        int occurrence = 1;
    };

    // Accepts connections and never answers.
    X11ServerProxy();
    // Passes connections through to `serverDisplay`; at the trigger it kills `serverPid` with
    // SIGKILL, waits until the server has closed the connection and closes the client's.
    X11ServerProxy(const std::string& serverDisplay, pid_t serverPid, Trigger trigger);
    ~X11ServerProxy();
    X11ServerProxy(const X11ServerProxy&) = delete;
    X11ServerProxy& operator=(const X11ServerProxy&) = delete;

    bool isReady() const { return listener_ >= 0; }
    // ":N", for DISPLAY.
    const std::string& display() const { return display_; }
    bool hasKilledTheServer() const { return killed_; }

private:
    void listen();
    void pass();

    std::string serverSocket_;
    pid_t serverPid_ = 0;
    Trigger trigger_;
    std::string display_;
    // Closed by the thread once the server is dead, so that reconnecting fails at once.
    std::atomic<int> listener_ = -1;
    int wakeUp_[2] = {-1, -1};
    std::atomic<bool> killed_ = false;
    std::thread thread_;
};

} // namespace tilmora::test
