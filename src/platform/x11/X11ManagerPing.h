// Asks the window manager a question it answers from its event loop, in the order of the
// events it gets: once the answer is here, the manager has handled every request that reached
// the server before the question, also those of other clients. A compositing manager that is
// busy drawing handles a client's own resize that late.
#pragma once

#include <xcb/xproto.h>

#include <chrono>
#include <cstdint>

namespace tilmora {

class X11Connection;
class X11WindowMirror;

class X11ManagerPing {
public:
    X11ManagerPing(X11Connection& connection, X11WindowMirror& mirror);
    ~X11ManagerPing();
    X11ManagerPing(const X11ManagerPing&) = delete;
    X11ManagerPing& operator=(const X11ManagerPing&) = delete;

    // Sends the question; false when the manager does not offer one to ask
    // (_NET_REQUEST_FRAME_EXTENTS, answered on a window of ours that is never shown).
    bool send();
    // The manager has answered the last question sent.
    bool isAnswered() const { return answers_ >= asked_; }
    // How long an answer is worth waiting for, given how long the manager took to answer the
    // window's own request: a manager that lists the question may still leave it unanswered
    // (fluxbox), so until one has come the wait is short, unless the manager is slow now.
    std::chrono::milliseconds patience(std::chrono::milliseconds managerAnswer) const;
    // The manager left a question unanswered: none is asked again on this connection until an
    // answer comes after all (a manager busy drawing can take longer than it was given).
    void giveUp();

private:
    X11Connection& connection_;
    X11WindowMirror& mirror_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::uint64_t generation_ = 0;
    xcb_atom_t request_ = XCB_ATOM_NONE;
    xcb_atom_t extents_ = XCB_ATOM_NONE;
    std::uint64_t asked_ = 0;
    std::uint64_t answers_ = 0;
    bool everAnswered_ = false;
    bool givenUp_ = false;
    int listener_ = 0;
};

} // namespace tilmora
