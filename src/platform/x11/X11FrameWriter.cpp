#include "platform/x11/X11FrameWriter.h"

#include "platform/AXError.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Log.h"
#include "platform/x11/X11WindowMirror.h"

#include <algorithm>
#include <array>

namespace tilmora {

namespace {

// Source indication of a pager or other tool acting for the user: window managers honour it
// where they would second-guess an application.
constexpr std::uint32_t sourcePager = 2;
constexpr std::uint32_t stateRemove = 0;
// _NET_MOVERESIZE_WINDOW flags: x, y, width and height present.
constexpr std::uint32_t allFourValues = 0xFU << 8;

} // namespace

X11FrameWriter::X11FrameWriter(X11Connection& connection, X11WindowMirror& mirror)
    : connection_(connection)
    , mirror_(mirror) {}

bool X11FrameWriter::isBeingPlaced(xcb_window_t window) const {
    const auto found = placements_.find(window);
    return found != placements_.end() && Clock::now() - found->second.lastWrite < placementWindow;
}

std::int32_t X11FrameWriter::setPosition(xcb_window_t window, std::int64_t x, std::int64_t y) {
    return write(window, x, y, std::nullopt, std::nullopt);
}

std::int32_t X11FrameWriter::setSize(xcb_window_t window, std::int64_t width, std::int64_t height) {
    return write(window, std::nullopt, std::nullopt, width, height);
}

const X11WindowRecord* X11FrameWriter::freshRecord(xcb_window_t window) {
    mirror_.invalidate(window, X11WindowRecord::Part::geometry | X11WindowRecord::Part::extents |
                                   X11WindowRecord::Part::state | X11WindowRecord::Part::sizeHints);
    if (!mirror_.require({window},
                         X11WindowRecord::Part::sizeHints | X11WindowRecord::Part::tree)) {
        return nullptr;
    }
    const X11WindowRecord* record = mirror_.find(window);
    return record && !record->gone && record->client ? record : nullptr;
}

std::int32_t X11FrameWriter::write(xcb_window_t window, std::optional<std::int64_t> x,
                                   std::optional<std::int64_t> y, std::optional<std::int64_t> width,
                                   std::optional<std::int64_t> height) {
    const X11WindowRecord* record = freshRecord(window);
    if (record && leaveMaximizedAndFullScreen(*record)) {
        record = freshRecord(window);
    }
    if (!record) {
        return AXError::failure;
    }
    const X11Rect current = *record->outerFrame();
    const bool continuing = isBeingPlaced(window);
    X11Rect target = continuing ? placements_[window].target : current;
    target.x = x.value_or(target.x);
    target.y = y.value_or(target.y);
    target.width = std::max<std::int64_t>(width.value_or(target.width), 1);
    target.height = std::max<std::int64_t>(height.value_or(target.height), 1);

    const auto sequence = sendFrame(*record, target);
    if (!sequence) {
        return AXError::failure;
    }
    Placement& placement = placements_[window];
    if (!continuing) {
        placement.earlierFrames = {current};
    } else if (placement.target != target) {
        placement.earlierFrames.push_back(placement.target);
    }
    placement.target = target;
    placement.lastWrite = Clock::now();
    placement.sequence = *sequence;
    placement.configureEventsBefore = record->configureEvents;
    placement.alreadyThere = current == target;
    return AXError::success;
}

bool X11FrameWriter::leaveMaximizedAndFullScreen(const X11WindowRecord& record) {
    const xcb_window_t window = record.id;
    const xcb_atom_t vertical = connection_.atom(X11Atom::_NET_WM_STATE_MAXIMIZED_VERT);
    const xcb_atom_t horizontal = connection_.atom(X11Atom::_NET_WM_STATE_MAXIMIZED_HORZ);
    const xcb_atom_t fullScreen = connection_.atom(X11Atom::_NET_WM_STATE_FULLSCREEN);
    const auto isConstrained = [&](const X11WindowRecord& r) {
        return r.hasState(vertical) || r.hasState(horizontal) || r.hasState(fullScreen);
    };
    if (!isConstrained(record)) {
        return false;
    }
    // Most managers ignore or undo moves of a maximized window; the state goes first.
    const xcb_atom_t state = connection_.atom(X11Atom::_NET_WM_STATE);
    if (record.hasState(fullScreen)) {
        sendClientMessage(window, state, {stateRemove, fullScreen, 0, sourcePager});
    }
    if (record.hasState(vertical) || record.hasState(horizontal)) {
        sendClientMessage(window, state, {stateRemove, vertical, horizontal, sourcePager});
    }
    placements_.erase(window);
    // Wait for the state to go and then for the restored geometry to come to rest, so that
    // the manager's own restore does not land after the first write.
    const auto deadline = Clock::now() + stateChangeTimeout;
    std::optional<std::uint64_t> configureEvents;
    auto quietUntil = deadline;
    while (Clock::now() < std::min(deadline, quietUntil)) {
        const bool woke = connection_.waitForEvents(std::min(deadline, quietUntil));
        if (!mirror_.update()) {
            return true;
        }
        const X11WindowRecord* now = mirror_.find(window);
        if (!now || now->gone) {
            return true;
        }
        if (isConstrained(*now)) {
            continue;
        }
        if (!configureEvents || now->configureEvents != *configureEvents) {
            configureEvents = now->configureEvents;
            quietUntil = Clock::now() + quietPeriod;
        } else if (!woke) {
            return true;
        }
    }
    if (configureEvents) {
        return true;
    }
    qCDebug(lcX11) << "window" << Qt::hex << window << "kept its maximized or full-screen state";
    return true;
}

std::optional<std::uint32_t> X11FrameWriter::sendFrame(const X11WindowRecord& record,
                                                       const X11Rect& target) {
    const X11Extents& frame = record.frameExtents;
    const X11Extents& shadow = record.gtkExtents;
    // The manager sizes the client: the decorations come off, the invisible shadows go on.
    const std::int64_t clientWidth = std::max<std::int64_t>(
        target.width - frame.left - frame.right + shadow.left + shadow.right, 1);
    const std::int64_t clientHeight = std::max<std::int64_t>(
        target.height - frame.top - frame.bottom + shadow.top + shadow.bottom, 1);
    const auto card = [](std::int64_t value) {
        return static_cast<std::uint32_t>(static_cast<std::int32_t>(value));
    };

    const xcb_atom_t moveResize = connection_.atom(X11Atom::_NET_MOVERESIZE_WINDOW);
    if (mirror_.root().supports(moveResize)) {
        // NorthWest gravity, never the window's own: x and y are then the top-left corner of
        // the manager's frame, wherever the client sits inside it.
        const std::uint32_t flags = XCB_GRAVITY_NORTH_WEST | allFourValues | sourcePager << 12;
        return sendClientMessage(record.id, moveResize,
                                 {flags, card(target.x - shadow.left), card(target.y - shadow.top),
                                  card(clientWidth), card(clientHeight)});
    }

    // Without the message the request goes to the client, interpreted with its own gravity:
    // Static places the client itself, the others the frame's corner.
    const bool isStatic = record.hints.windowGravity == XCB_GRAVITY_STATIC;
    const std::int64_t x = target.x - shadow.left + (isStatic ? frame.left : 0);
    const std::int64_t y = target.y - shadow.top + (isStatic ? frame.top : 0);
    const std::array<std::uint32_t, 4> values{card(x), card(y), card(clientWidth),
                                              card(clientHeight)};
    const auto cookie =
        xcb_configure_window_checked(connection_.raw(), record.id,
                                     XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                                     values.data());
    if (connection_.check(cookie) || !connection_.isUsable()) {
        return std::nullopt;
    }
    return cookie.sequence;
}

std::uint32_t X11FrameWriter::sendClientMessage(xcb_window_t window, xcb_atom_t type,
                                                std::initializer_list<std::uint32_t> data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy_n(data.begin(), std::min<std::size_t>(data.size(), 5), message.data.data32);
    const auto cookie =
        xcb_send_event(connection_.raw(), 0, connection_.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
    connection_.flush();
    return cookie.sequence;
}

void X11FrameWriter::raise(xcb_window_t window) {
    if (!mirror_.require({window}, X11WindowRecord::Part::tree)) {
        return;
    }
    const X11WindowRecord* record = mirror_.find(window);
    if (!record || record->gone) {
        return;
    }
    const X11RootState& root = mirror_.root();
    const xcb_atom_t restack = connection_.atom(X11Atom::_NET_RESTACK_WINDOW);
    const xcb_atom_t activate = connection_.atom(X11Atom::_NET_ACTIVE_WINDOW);
    if (root.supports(restack)) {
        // Raises without taking the keyboard focus from whoever has it.
        sendClientMessage(window, restack, {sourcePager, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE});
    } else if (root.supports(activate)) {
        sendClientMessage(window, activate, {sourcePager, XCB_CURRENT_TIME, root.activeWindow});
    } else {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_.raw(), record->frame ? record->frame : window,
                             XCB_CONFIG_WINDOW_STACK_MODE, &above);
        connection_.flush();
    }
}

void X11FrameWriter::settle(xcb_window_t window, std::chrono::milliseconds maximum) {
    const auto deadline = Clock::now() + maximum;
    const auto found = placements_.find(window);
    if (found == placements_.end() || !isBeingPlaced(window)) {
        mirror_.update();
        return;
    }
    const Placement placement = found->second;
    if (placement.alreadyThere) {
        mirror_.update();
        return;
    }
    std::uint64_t seen = placement.configureEventsBefore;
    std::optional<Clock::time_point> lastConfirmation;
    while (true) {
        const auto now = Clock::now();
        auto until = deadline;
        if (lastConfirmation) {
            until = std::min(deadline, *lastConfirmation + quietPeriod);
        }
        if (now >= until) {
            break;
        }
        connection_.waitForEvents(until);
        if (!connection_.isUsable()) {
            return;
        }
        const X11WindowRecord* record = mirror_.find(window);
        if (!record || record->gone) {
            break;
        }
        if (record->configureEvents == seen ||
            !X11Connection::isAtOrAfter(record->lastConfigureSequence, placement.sequence)) {
            continue;
        }
        // The window changed after the last request: done if it shows the frame asked for,
        // otherwise give the manager a moment for the rest of its answer.
        seen = record->configureEvents;
        lastConfirmation = Clock::now();
        const X11WindowRecord* fresh = freshRecord(window);
        if (!fresh) {
            break;
        }
        const auto frame = fresh->outerFrame();
        if (frame == placement.target) {
            return;
        }
        // An event from before the manager acted, or its answer to an earlier request of this
        // placement that reached the window after the last one was sent: the answer to the last
        // one is still to come.
        if (frame && std::find(placement.earlierFrames.begin(), placement.earlierFrames.end(),
                               *frame) != placement.earlierFrames.end()) {
            lastConfirmation.reset();
        }
    }
    mirror_.update();
}

} // namespace tilmora
