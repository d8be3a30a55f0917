#include "cli/InstanceClient.h"

#include "platform/file/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <thread>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tilmora {

namespace {

using Clock = std::chrono::steady_clock;
using Outcome = InstanceClient::Outcome;
using namespace std::chrono_literals;

Outcome failure(std::string error) {
    return {Outcome::Kind::failed, {}, std::move(error)};
}

int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

// Waits for `events` on the descriptor until the deadline; false when it passed.
bool waitFor(int fd, short events, Clock::time_point deadline) {
    for (;;) {
        pollfd entry{fd, events, 0};
        const int ready = ::poll(&entry, 1, millisecondsUntil(deadline));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

// A connected, non-blocking socket; -1 with `errno` set when the attempt failed. Non-blocking,
// because connecting to a stopped instance whose queue is full would block without end.
int connectOnce(const std::string& path) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) {
        return -1;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    int result = 0;
    do {
        result = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        const int error = errno;
        ::close(fd);
        errno = error;
        return -1;
    }
    return fd;
}

bool writeAll(int fd, const std::string& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t written = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(written, 0));
    }
    return true;
}

} // namespace

std::optional<int> InstanceClient::route(const InstanceAddress& address,
                                         const std::vector<std::string>& arguments,
                                         const Timeouts& timeouts) {
    const Outcome outcome = exchange(address, arguments, timeouts);
    switch (outcome.kind) {
    case Outcome::Kind::replied:
        return print(outcome.reply);
    case Outcome::Kind::failed:
        std::fprintf(stderr, "tilmora: %s\n", outcome.error.c_str());
        return 1;
    case Outcome::Kind::noInstance:
        break;
    }
    return std::nullopt;
}

int InstanceClient::print(const InstanceProtocol::Reply& reply) {
    return writeAll(STDOUT_FILENO, reply.out) && writeAll(STDERR_FILENO, reply.err) ? reply.exitCode
                                                                                    : 1;
}

Outcome InstanceClient::exchange(const InstanceAddress& address,
                                 const std::vector<std::string>& arguments,
                                 const Timeouts& timeouts) {
    if (address.problem()) {
        return {};
    }
    const auto start = Clock::now();
    const auto answerDeadline = start + timeouts.answer;
    const auto retryDeadline = start + timeouts.connectRetry;
    const std::string instance = "the Tilmora instance on " + address.display;
    const std::string silent = instance + " did not answer within " +
                               std::to_string(timeouts.answer / 1s) + " seconds (stopped or hung?)";

    int fd = -1;
    for (;;) {
        fd = connectOnce(address.socketPath);
        if (fd >= 0) {
            break;
        }
        const int error = errno;
        const bool nobodyListens = error == ENOENT || error == ECONNREFUSED;
        // A full queue of waiting connections: the instance is alive but not accepting.
        const bool queueFull = error == EAGAIN;
        if (nobodyListens && Clock::now() >= retryDeadline) {
            return {};
        }
        if (!nobodyListens && !queueFull) {
            return failure("cannot reach " + instance + " at " + address.socketPath + ": " +
                           std::strerror(error));
        }
        if (Clock::now() >= answerDeadline) {
            return failure(silent);
        }
        std::this_thread::sleep_for(20ms);
    }
    const FileDescriptor socket(fd);

    const std::string request = InstanceProtocol::encodeRequest(arguments);
    for (std::size_t sent = 0; sent < request.size();) {
        if (!waitFor(fd, POLLOUT, answerDeadline)) {
            return failure(silent);
        }
        const ssize_t written =
            ::send(fd, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
        if (written < 0 && errno != EAGAIN && errno != EINTR) {
            return failure(instance + " closed the connection without answering");
        }
        sent += static_cast<std::size_t>(std::max<ssize_t>(written, 0));
    }

    InstanceProtocol::FrameReader reader;
    InstanceProtocol::Frame frame;
    bool accepted = false;
    Clock::time_point deadline = answerDeadline;
    char buffer[65536];
    for (;;) {
        if (!waitFor(fd, POLLIN, deadline)) {
            return failure(accepted ? instance + " took the command but gave no result within " +
                                          std::to_string(timeouts.result / 1s) + " seconds"
                                    : silent);
        }
        const ssize_t received = ::recv(fd, buffer, sizeof buffer, 0);
        if (received < 0) {
            if (errno == EAGAIN || errno == EINTR) {
                continue;
            }
            return failure("reading from " + instance + ": " + std::strerror(errno));
        }
        if (received == 0) {
            // It refuses other users, and an instance of another version drops what it
            // cannot read.
            return failure(accepted ? instance + " ended before it replied"
                                    : instance + " closed the connection without answering");
        }
        reader.append(std::string_view(buffer, static_cast<std::size_t>(received)));
        for (;;) {
            const auto status = reader.next(frame);
            if (status == InstanceProtocol::FrameReader::Status::incomplete) {
                break;
            }
            if (status != InstanceProtocol::FrameReader::Status::frame) {
                return failure(instance + ": " + InstanceProtocol::describe(status));
            }
            if (frame.kind == InstanceProtocol::Kind::accepted && !accepted) {
                accepted = true;
                deadline = Clock::now() + timeouts.result;
            } else if (frame.kind == InstanceProtocol::Kind::reply && accepted) {
                auto reply = InstanceProtocol::decodeReply(frame.payload);
                if (!reply) {
                    return failure(instance + " sent a reply that cannot be read");
                }
                return {Outcome::Kind::replied, std::move(*reply), {}};
            } else {
                return failure(instance + " answered out of order");
            }
        }
    }
}

} // namespace tilmora
