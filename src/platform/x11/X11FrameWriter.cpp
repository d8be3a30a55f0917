#include "platform/x11/X11FrameWriter.h"

#include "platform/AXError.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Log.h"
#include "platform/x11/X11WindowMirror.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace tilmora {

namespace {

// Source indication of a pager or other tool acting for the user: window managers honour it
// where they would second-guess an application.
constexpr std::uint32_t sourcePager = 2;
constexpr std::uint32_t stateRemove = 0;
// _NET_MOVERESIZE_WINDOW flags: x, y, width and height present.
constexpr std::uint32_t allFourValues = 0xFU << 8;
// Pixels a frame may be off and still count as the one asked for (fluxbox counts its border).
constexpr std::int64_t tolerance = 3;

} // namespace

X11FrameWriter::X11FrameWriter(X11Connection& connection, X11WindowMirror& mirror)
    : connection_(connection)
    , mirror_(mirror)
    , ping_(connection, mirror) {}

bool X11FrameWriter::isBeingPlaced(xcb_window_t window) const {
    const auto found = placements_.find(window);
    return found != placements_.end() && Clock::now() - found->second.lastWrite < placementWindow;
}

bool X11FrameWriter::hasFreshFrame(xcb_window_t window) const {
    const auto found = placements_.find(window);
    return found != placements_.end() && found->second.readSinceSent && !found->second.unsent;
}

std::int32_t X11FrameWriter::setPosition(xcb_window_t window, std::int64_t x, std::int64_t y) {
    return write(window, x, y, std::nullopt, std::nullopt);
}

std::int32_t X11FrameWriter::setSize(xcb_window_t window, std::int64_t width, std::int64_t height) {
    return write(window, std::nullopt, std::nullopt, width, height);
}

const X11WindowRecord* X11FrameWriter::freshRecord(xcb_window_t window) {
    // Only the geometry must be asked for: the extents, state and size hints change with a
    // PropertyNotify, and one sent before the server answered arrives ahead of the answer, so
    // the second look reads just what such an event says has changed.
    mirror_.invalidate(window, X11WindowRecord::Part::geometry);
    constexpr std::uint32_t parts = X11WindowRecord::Part::geometry |
                                    X11WindowRecord::Part::extents | X11WindowRecord::Part::state |
                                    X11WindowRecord::Part::sizeHints | X11WindowRecord::Part::tree;
    if (!mirror_.require({window}, parts) || !mirror_.require({window}, parts)) {
        return nullptr;
    }
    const X11WindowRecord* record = mirror_.find(window);
    return record && !record->gone && record->client ? record : nullptr;
}

const X11WindowRecord* X11FrameWriter::currentRecord(xcb_window_t window) {
    if (!hasFreshFrame(window)) {
        return freshRecord(window);
    }
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
    const auto existing = placements_.find(window);
    const X11WindowRecord* record = nullptr;
    if (existing != placements_.end() && existing->second.unsent) {
        // A later write of the same frame: what the first one read still holds.
        record = mirror_.find(window);
        record = record && !record->gone && record->client ? record : nullptr;
    } else {
        // Windows that are gone take what was learnt about them along.
        std::erase_if(placements_, [&](const auto& entry) {
            const X11WindowRecord* known = mirror_.find(entry.first);
            return !known || known->gone;
        });
        record = currentRecord(window);
        if (record && leaveMaximizedAndFullScreen(*record)) {
            record = freshRecord(window);
        }
    }
    if (!record) {
        placements_.erase(window);
        return AXError::failure;
    }
    const bool continuing = isBeingPlaced(window);
    Placement& placement = placements_[window];
    X11Rect target = continuing ? placement.target : *record->outerFrame();
    target.x = x.value_or(target.x);
    target.y = y.value_or(target.y);
    target.width = std::max<std::int64_t>(width.value_or(target.width), 1);
    target.height = std::max<std::int64_t>(height.value_or(target.height), 1);
    placement.target = target;
    placement.lastWrite = Clock::now();
    placement.unsent = true;
    if (!mirror_.root().supports(connection_.atom(X11Atom::_NET_MOVERESIZE_WINDOW))) {
        // A configure request goes out at once, so that its X error is this write's status.
        return send(window, placement) ? AXError::success : AXError::failure;
    }
    return AXError::success;
}

void X11FrameWriter::sendWritten() {
    for (auto& [window, placement] : placements_) {
        if (placement.unsent) {
            send(window, placement);
        }
    }
}

bool X11FrameWriter::send(xcb_window_t window, Placement& placement) {
    placement.unsent = false;
    placement.readSinceSent = false;
    const X11WindowRecord* record = mirror_.find(window);
    if (!record || record->gone || !record->client) {
        return false;
    }
    const auto sequence = sendFrame(*record, placement.target);
    if (!sequence) {
        return false;
    }
    const X11Extents& frame = record->frameExtents;
    const X11Extents& shadow = record->gtkExtents;
    placement.sentAt = Clock::now();
    placement.sequence = *sequence;
    placement.configureEventsBefore = record->configureEvents;
    placement.clientWidth = std::max<std::int64_t>(
        placement.target.width - frame.left - frame.right + shadow.left + shadow.right, 1);
    placement.clientHeight = std::max<std::int64_t>(
        placement.target.height - frame.top - frame.bottom + shadow.top + shadow.bottom, 1);
    placement.alreadyThere = record->outerFrame() == placement.target;
    placement.answered = placement.alreadyThere;
    return true;
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
    // The restored frame is where the next write starts from.
    if (const auto found = placements_.find(window); found != placements_.end()) {
        found->second.lastWrite = {};
    }
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
    // Already in front of every other window: a restack would only have the manager rewrite
    // its stacking list, which costs the placement's read-back a round trip.
    if (!root.stacking.empty() && root.stacking.back() == window && root.stale == 0) {
        return;
    }
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

X11FrameWriter::Outcome X11FrameWriter::outcome(xcb_window_t window, Placement& placement) {
    const X11WindowRecord* record = mirror_.find(window);
    // The client size the window was last notified of must be one the request can end with;
    // anything else (a move on its way, the manager's own placement) is not worth a round trip.
    if (!record || !record->hints.allowsAnswer(placement.clientWidth, placement.clientHeight,
                                               record->notifiedWidth, record->notifiedHeight)) {
        return Outcome::pending;
    }
    const X11WindowRecord* fresh = freshRecord(window);
    const auto frame = fresh ? fresh->outerFrame() : std::nullopt;
    if (!frame) {
        return Outcome::pending;
    }
    placement.readSinceSent = true;
    const X11Rect& target = placement.target;
    const auto near = [](std::int64_t a, std::int64_t b) { return std::abs(a - b) <= tolerance; };
    const bool placed = near(frame->x, target.x) && near(frame->y, target.y);
    if (placed && near(frame->width, target.width) && near(frame->height, target.height)) {
        return Outcome::target;
    }
    const bool limited = fresh->hints.allowsAnswer(placement.clientWidth, placement.clientHeight,
                                                   fresh->client->width, fresh->client->height);
    return placed && limited ? Outcome::allowedByHints : Outcome::pending;
}

void X11FrameWriter::settle(const std::vector<xcb_window_t>& windows,
                            std::chrono::milliseconds maximum) {
    auto deadline = Clock::now() + maximum;
    sendWritten();
    struct Waiting {
        xcb_window_t window = XCB_WINDOW_NONE;
        Placement* placement = nullptr;
        std::uint64_t seen = 0;
        // It shows the frame and must keep it until the hold ends.
        bool holding = false;
        bool done = false;
    };
    std::vector<Waiting> waiting;
    for (const xcb_window_t window : windows) {
        const auto found = placements_.find(window);
        if (found != placements_.end() && isBeingPlaced(window) && !found->second.alreadyThere) {
            waiting.push_back({window, &found->second, found->second.configureEventsBefore});
        }
    }
    const auto answeredAll = [&] {
        return std::all_of(waiting.begin(), waiting.end(),
                           [](const Waiting& w) { return w.done || w.holding; });
    };
    // Once every window shows its frame, each must keep it for as long as the manager took to
    // answer the last of them.
    std::optional<Clock::time_point> lastAnswer;
    const auto firstSent = [&] {
        return std::min_element(waiting.begin(), waiting.end(),
                                [](const Waiting& a, const Waiting& b) {
                                    return a.placement->sentAt < b.placement->sentAt;
                                })
            ->placement->sentAt;
    };
    const auto holdEnd = [&] {
        return *lastAnswer +
               std::max<Clock::duration>(firstPlacementHold, *lastAnswer - firstSent());
    };
    // Judges what arrived for each window since its request; true when any window answered.
    const auto takeAnswers = [&] {
        bool answered = false;
        for (Waiting& w : waiting) {
            if (w.done) {
                continue;
            }
            const X11WindowRecord* record = mirror_.find(w.window);
            if (!record || record->gone) {
                w.done = true;
                continue;
            }
            // Only what happened after the request can answer it.
            if (record->configureEvents == w.seen ||
                !X11Connection::isAtOrAfter(record->lastConfigureSequence, w.placement->sequence)) {
                continue;
            }
            w.seen = record->configureEvents;
            const Outcome now = outcome(w.window, *w.placement);
            w.placement->answered = w.placement->answered || now != Outcome::pending;
            if (now == Outcome::allowedByHints ||
                (now == Outcome::target && w.placement->answer == Answer::keepsFrames)) {
                w.done = true;
                answered = true;
            } else if (now == Outcome::target) {
                if (!w.holding) {
                    w.holding = true;
                    lastAnswer = Clock::now();
                    answered = true;
                }
            } else if (w.holding) {
                // It showed the frame and left it again with no request of ours in between.
                w.placement->answer = Answer::undoesResizes;
                w.holding = false;
            }
        }
        return answered;
    };
    // The hold may outlast the pass: a client's undo reaches a busy compositing manager late.
    const auto holdLimit = deadline + firstPlacementLimit;
    int pings = 0;
    Clock::time_point pingDeadline;
    bool holdComplete = false;
    bool lookedAtDeadline = false;
    while (!std::all_of(waiting.begin(), waiting.end(), [](const Waiting& w) { return w.done; })) {
        const bool holdingAll = lastAnswer && answeredAll();
        if (holdingAll && Clock::now() >= holdEnd()) {
            // The manager must also have handled what the clients asked for until now. The
            // server takes requests from its clients in no set order: a client's request sent
            // just before the first question may still come after it, not after the second.
            if (pings < 2 && (pings == 0 || ping_.isAnswered())) {
                if (!ping_.send()) {
                    qCDebug(lcX11) << "the window manager cannot be asked whether it is done";
                    holdComplete = true;
                    break;
                }
                ++pings;
                pingDeadline = Clock::now() +
                               ping_.patience(std::chrono::duration_cast<std::chrono::milliseconds>(
                                   *lastAnswer - firstSent()));
            } else if (pings == 2 && ping_.isAnswered()) {
                holdComplete = true;
                break;
            } else if (Clock::now() >= pingDeadline) {
                qCDebug(lcX11) << "the window manager did not answer whether it is done";
                ping_.giveUp();
                break;
            }
        }
        const auto until =
            holdingAll ? std::min(pings > 0 ? pingDeadline : holdEnd(), holdLimit) : deadline;
        if (Clock::now() >= until) {
            if (holdingAll || lookedAtDeadline) {
                break;
            }
            // A window whose manager answered after the pass's limit shows the frame to the
            // read-back that follows: one not known to keep frames must first hold it too.
            lookedAtDeadline = true;
            bool unsure = false;
            for (const Waiting& w : waiting) {
                if (!w.done && !w.holding && w.placement->answer != Answer::keepsFrames) {
                    unsure = freshRecord(w.window) || unsure;
                }
            }
            if (!unsure || !mirror_.update() || !takeAnswers() || !answeredAll()) {
                break;
            }
            continue;
        }
        connection_.waitForEvents(until);
        if (!connection_.isUsable()) {
            return;
        }
        const bool answered = takeAnswers();
        // A manager working through many windows is given the time again after each answer.
        if (answered && !answeredAll()) {
            deadline = std::max(deadline, Clock::now() + maximum);
        }
    }
    if (holdComplete) {
        for (const Waiting& w : waiting) {
            if (w.holding && w.placement->answer == Answer::unknown) {
                w.placement->answer = Answer::keepsFrames;
            }
        }
    }
    mirror_.update();
}

bool X11FrameWriter::awaitLateAnswers(const std::vector<xcb_window_t>& windows,
                                      std::chrono::milliseconds maximum) {
    std::vector<xcb_window_t> unanswered;
    for (const xcb_window_t window : windows) {
        const auto found = placements_.find(window);
        if (found != placements_.end() && isBeingPlaced(window) && !found->second.answered &&
            found->second.answer != Answer::undoesResizes) {
            unanswered.push_back(window);
        }
    }
    if (unanswered.empty()) {
        return false;
    }
    qCDebug(lcX11) << unanswered.size() << "window(s) not answered after the last pass";
    settle(unanswered, maximum);
    return true;
}

} // namespace tilmora
