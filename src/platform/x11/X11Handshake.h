// Opening an xcb connection within a time limit. xcb_connect blocks in the set-up handshake
// until the server answers, which a stopped or hung server (or anything else listening on the
// display's socket) never does; so the handshake runs on a thread of its own, which is left
// behind at the deadline and closes the connection itself should it ever complete.
#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <chrono>
#include <expected>

namespace tilmora {

struct X11Handshake {
    enum class Failure {
        // Nothing accepts connections there, or the server refused this one.
        unreachable,
        // Something accepted the connection and gave no answer in time.
        silent,
    };

    // Owned by the caller, who disconnects it.
    xcb_connection_t* connection = nullptr;
    int screen = 0;

    // An empty name connects to $DISPLAY.
    static std::expected<X11Handshake, Failure> connect(const QByteArray& displayName,
                                                        std::chrono::milliseconds timeout);
};

} // namespace tilmora
