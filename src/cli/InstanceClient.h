// The client side of routing: hands the command line to the instance of this X display and
// waits, with deadlines, for its output and exit code. Plain C++ and libc: it runs on every key
// press a binding sends, so it must not pay for Qt's start-up.
#pragma once

#include "cli/InstanceAddress.h"
#include "cli/InstanceProtocol.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace tilmora {

struct InstanceClient {
    struct Timeouts {
        // Until the instance says it took the request: a stopped or hung instance ends here.
        std::chrono::milliseconds answer{4000};
        // Until the result, once the request was taken: placements may wait for slow clients.
        std::chrono::milliseconds result{120000};
        // How long to keep connecting while nobody listens yet (an instance that is starting).
        std::chrono::milliseconds connectRetry{0};
    };

    struct Outcome {
        enum class Kind { noInstance, replied, failed };
        Kind kind = Kind::noInstance;
        InstanceProtocol::Reply reply;
        // Why it failed, one line without the program name.
        std::string error;
    };

    // noInstance when no socket is there or no one listens on it (a stale socket).
    static Outcome exchange(const InstanceAddress& address,
                            const std::vector<std::string>& arguments, const Timeouts& timeouts);

    // Hands the command line to the instance and prints its output, or the one-line reason it
    // failed; the exit code, or nothing when no instance runs.
    static std::optional<int> route(const InstanceAddress& address,
                                    const std::vector<std::string>& arguments,
                                    const Timeouts& timeouts);

    // Writes a reply's output to stdout and stderr as it came; its exit code (1 when the
    // output could not be written).
    static int print(const InstanceProtocol::Reply& reply);
};

} // namespace tilmora
