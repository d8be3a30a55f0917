#include "x11/support/X11ServerProxy.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <optional>
#include <vector>

namespace tilmora::test {

namespace {

constexpr int firstDisplay = 700;
constexpr int lastDisplay = 999;

std::string socketPath(int display) {
    return "/tmp/.X11-unix/X" + std::to_string(display);
}

// A connected socket of the named server's file system socket; -1 on failure.
int connectTo(const std::string& path) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    if (fd >= 0 &&
        ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

bool writeAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(fd, data, size);
        if (written <= 0) {
            return false;
        }
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

std::size_t padded(std::size_t length) {
    return (length + 3) & ~std::size_t{3};
}

// One client's connection and where its byte stream stands: the set-up first, then requests.
struct Pipe {
    int client = -1;
    int server = -1;
    std::string inbound;
    bool setUp = false;
    bool littleEndian = true;

    std::uint32_t number(std::size_t offset, std::size_t bytes) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i) {
            const auto byte = static_cast<std::uint8_t>(inbound[offset + i]);
            value |= littleEndian ? std::uint32_t{byte} << (8 * i)
                                  : std::uint32_t{byte} << (8 * (bytes - 1 - i));
        }
        return value;
    }
    struct Message {
        std::size_t length = 0;
        // The request's major opcode; -1 for the set-up.
        int opcode = -1;
    };
    // The set-up or request at the front, once its length is known.
    std::optional<Message> next() {
        if (!setUp) {
            if (inbound.size() < 12) {
                return std::nullopt;
            }
            littleEndian = inbound[0] == 'l';
            return Message{12 + padded(number(6, 2)) + padded(number(8, 2))};
        }
        if (inbound.size() < 4) {
            return std::nullopt;
        }
        const int opcode = static_cast<std::uint8_t>(inbound[0]);
        if (const std::uint32_t units = number(2, 2); units != 0) {
            return Message{std::size_t{units} * 4, opcode};
        }
        // BIG-REQUESTS: the length follows the header.
        if (inbound.size() < 8) {
            return std::nullopt;
        }
        return Message{std::size_t{number(4, 4)} * 4, opcode};
    }
};

} // namespace

X11ServerProxy::X11ServerProxy() {
    listen();
}

X11ServerProxy::X11ServerProxy(const std::string& serverDisplay, pid_t serverPid, Trigger trigger)
    : serverSocket_(socketPath(std::stoi(serverDisplay.substr(1))))
    , serverPid_(serverPid)
    , trigger_(trigger) {
    listen();
    if (isReady() && ::pipe2(wakeUp_, O_CLOEXEC) == 0) {
        thread_ = std::thread([this] { pass(); });
    }
}

X11ServerProxy::~X11ServerProxy() {
    if (thread_.joinable()) {
        ::write(wakeUp_[1], "", 1);
        thread_.join();
    }
    for (const int fd : {listener_.load(), wakeUp_[0], wakeUp_[1]}) {
        if (fd >= 0) {
            ::close(fd);
        }
    }
}

void X11ServerProxy::listen() {
    for (int number = firstDisplay; number <= lastDisplay; ++number) {
        // A display with a socket file belongs to a server of its own.
        if (::access(socketPath(number).c_str(), F_OK) == 0) {
            continue;
        }
        const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string name = socketPath(number);
        std::memcpy(address.sun_path + 1, name.c_str(), name.size());
        const auto length =
            static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
        if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), length) == 0 &&
            ::listen(fd, 16) == 0) {
            listener_ = fd;
            display_ = ":" + std::to_string(number);
            return;
        }
        ::close(fd);
    }
}

void X11ServerProxy::pass() {
    std::vector<Pipe> pipes;
    int seen = 0;
    const auto closeAll = [&] {
        for (const Pipe& pipe : pipes) {
            ::close(pipe.client);
            ::close(pipe.server);
        }
        pipes.clear();
    };
    while (true) {
        std::vector<pollfd> watched{{wakeUp_[0], POLLIN, 0}, {listener_, POLLIN, 0}};
        for (const Pipe& pipe : pipes) {
            watched.push_back({pipe.client, POLLIN, 0});
            watched.push_back({pipe.server, POLLIN, 0});
        }
        if (::poll(watched.data(), watched.size(), -1) < 0 || watched[0].revents != 0) {
            closeAll();
            return;
        }
        if (watched[1].revents & POLLIN) {
            const int client = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            const int server = connectTo(serverSocket_);
            if (client >= 0 && server >= 0) {
                Pipe pipe;
                pipe.client = client;
                pipe.server = server;
                pipes.push_back(std::move(pipe));
            } else {
                ::close(client);
                ::close(server);
            }
            continue;
        }
        for (std::size_t i = 0; i < pipes.size(); ++i) {
            Pipe& pipe = pipes[i];
            char buffer[65536];
            bool open = true;
            if (watched[3 + 2 * i].revents != 0) {
                const ssize_t got = ::read(pipe.server, buffer, sizeof buffer);
                open = got > 0 && writeAll(pipe.client, buffer, static_cast<std::size_t>(got));
            }
            if (open && watched[2 + 2 * i].revents != 0) {
                const ssize_t got = ::read(pipe.client, buffer, sizeof buffer);
                open = got > 0;
                pipe.inbound.append(buffer, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
                while (open) {
                    const auto message = pipe.next();
                    if (!message || pipe.inbound.size() < message->length) {
                        break;
                    }
                    if (message->opcode == trigger_.opcode && ++seen == trigger_.occurrence) {
                        ::kill(serverPid_, SIGKILL);
                        // The server is gone once it has closed its end.
                        while (::read(pipe.server, buffer, sizeof buffer) > 0) {
                        }
                        killed_ = true;
                        closeAll();
                        ::close(listener_);
                        listener_ = -1;
                        return;
                    }
                    open = writeAll(pipe.server, pipe.inbound.data(), message->length);
                    pipe.inbound.erase(0, message->length);
                    pipe.setUp = true;
                }
            }
            if (!open) {
                // Either side closing ends the other's connection too.
                ::close(pipe.client);
                ::close(pipe.server);
                pipes.erase(pipes.begin() + static_cast<std::ptrdiff_t>(i));
                break;
            }
        }
    }
}

} // namespace tilmora::test
