#include "platform/x11/X11ManagerPing.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WindowMirror.h"

#include <algorithm>

namespace tilmora {

X11ManagerPing::X11ManagerPing(X11Connection& connection, X11WindowMirror& mirror)
    : connection_(connection)
    , mirror_(mirror) {
    listener_ = connection_.addEventListener([this](const xcb_generic_event_t& event) {
        const auto* property = reinterpret_cast<const xcb_property_notify_event_t*>(&event);
        if ((event.response_type & 0x7F) == XCB_PROPERTY_NOTIFY && window_ != XCB_WINDOW_NONE &&
            property->window == window_ && property->atom == extents_) {
            // Each answer counts for every question asked before it.
            answers_ = asked_;
            everAnswered_ = true;
            givenUp_ = false;
        }
    });
}

X11ManagerPing::~X11ManagerPing() {
    connection_.removeEventListener(listener_);
}

bool X11ManagerPing::send() {
    if (request_ == XCB_ATOM_NONE) {
        request_ = connection_.internAtom(QByteArrayLiteral("_NET_REQUEST_FRAME_EXTENTS"));
        extents_ = connection_.atom(X11Atom::_NET_FRAME_EXTENTS);
    }
    if (request_ == XCB_ATOM_NONE || !mirror_.root().supports(request_) ||
        !connection_.isUsable() || (givenUp_ && generation_ == connection_.generation())) {
        return false;
    }
    if (window_ == XCB_WINDOW_NONE || generation_ != connection_.generation()) {
        window_ = xcb_generate_id(connection_.raw());
        generation_ = connection_.generation();
        everAnswered_ = givenUp_ = false;
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(connection_.raw(), XCB_COPY_FROM_PARENT, window_, connection_.root(),
                          -100, -100, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_EVENT_MASK, &mask);
    }
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window_;
    message.type = request_;
    xcb_send_event(connection_.raw(), 0, connection_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    connection_.flush();
    ++asked_;
    return true;
}

std::chrono::milliseconds X11ManagerPing::patience(std::chrono::milliseconds managerAnswer) const {
    constexpr std::chrono::milliseconds full{1000};
    // A manager that answers a move in a few milliseconds answers a question as fast; one that
    // took tens of them is busy, and its first answer is worth the full wait (measured under
    // mutter with two busy processes per core: 60 ms for the move, over 300 ms for the question).
    return everAnswered_ ? full
                         : std::clamp(managerAnswer * 10, std::chrono::milliseconds{300}, full);
}

void X11ManagerPing::giveUp() {
    givenUp_ = true;
    answers_ = asked_;
}

} // namespace tilmora
