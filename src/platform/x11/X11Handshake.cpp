#include "platform/x11/X11Handshake.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

namespace tilmora {

namespace {

// Shared by the caller and the thread, which may outlive the caller's interest in it.
struct Attempt {
    std::mutex mutex;
    std::condition_variable finished;
    std::optional<X11Handshake> result;
    bool abandoned = false;
};

X11Handshake handshake(const std::string& name) {
    X11Handshake result;
    result.connection = xcb_connect(name.empty() ? nullptr : name.c_str(), &result.screen);
    return result;
}

} // namespace

std::expected<X11Handshake, X11Handshake::Failure>
X11Handshake::connect(const QByteArray& displayName, std::chrono::milliseconds timeout) {
    const auto attempt = std::make_shared<Attempt>();
    std::optional<X11Handshake> done;
    try {
        std::thread([attempt, name = displayName.toStdString()] {
            const X11Handshake result = handshake(name);
            const std::lock_guard lock(attempt->mutex);
            if (attempt->abandoned) {
                xcb_disconnect(result.connection);
                return;
            }
            attempt->result = result;
            attempt->finished.notify_one();
        }).detach();
        std::unique_lock lock(attempt->mutex);
        if (!attempt->finished.wait_for(lock, timeout,
                                        [&] { return attempt->result.has_value(); })) {
            attempt->abandoned = true;
            return std::unexpected(Failure::silent);
        }
        done = attempt->result;
    } catch (const std::system_error&) {
        // No thread to spare: wait without a limit rather than not connect at all.
        done = handshake(displayName.toStdString());
    }
    if (xcb_connection_has_error(done->connection) != 0) {
        xcb_disconnect(done->connection);
        return std::unexpected(Failure::unreachable);
    }
    return *done;
}

} // namespace tilmora
