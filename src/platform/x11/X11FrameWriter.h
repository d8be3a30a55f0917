// Moves, resizes and raises other applications' windows through the window manager, and waits
// for the server to confirm a write. The frame asked for is the outer visible frame; the
// writer takes the window out of maximized and full-screen states first, adds the decorations
// and removes client-side shadows, and leaves size increments and limits to the manager.
#pragma once

#include "platform/x11/X11Geometry.h"
#include "platform/x11/X11ManagerPing.h"

#include <xcb/xproto.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tilmora {

class X11Connection;
class X11WindowMirror;
struct X11WindowRecord;

class X11FrameWriter {
public:
    using Clock = std::chrono::steady_clock;

    // How long a window may take to leave a maximized or full-screen state.
    static constexpr std::chrono::milliseconds stateChangeTimeout{150};
    // After a window left a maximized or full-screen state, its restored geometry counts as
    // settled once it has had no further event for this long.
    static constexpr std::chrono::milliseconds quietPeriod{4};
    // Writes this close together belong to one placement: each one completes the frame the
    // earlier ones asked for instead of starting from the window's current frame.
    static constexpr std::chrono::milliseconds placementWindow{1000};
    // How long a window placed for the first time must keep the frame it reached before the
    // settle believes it (longer when the manager took longer to answer): a client that undoes
    // every resize does so about as fast as its manager answered, later on a busy machine
    // (a load of three processes per core delayed it past 20 ms).
    static constexpr std::chrono::milliseconds firstPlacementHold{50};
    // How long that hold may run past a pass's limit, until the manager has also handled what
    // the client asked for meanwhile.
    static constexpr std::chrono::milliseconds firstPlacementLimit{1000};

    X11FrameWriter(X11Connection& connection, X11WindowMirror& mirror);

    // Root coordinates of the outer frame's top-left corner; outer frame size. AXError codes.
    // The writes to a window add up to one frame, which goes to the manager as one request
    // when the window is settled or read.
    std::int32_t setPosition(xcb_window_t window, std::int64_t x, std::int64_t y);
    std::int32_t setSize(xcb_window_t window, std::int64_t width, std::int64_t height);
    void raise(xcb_window_t window);
    // Sends the frames written since the last request of each window, all windows at once.
    void sendWritten();
    // Sends what was written and waits for the manager's answer to it: the frame asked for, or
    // the one the window's size hints allow instead, never past `maximum`. With many windows
    // the manager answers one after the other: `maximum` then counts from its latest answer
    // while windows are still unanswered.
    void settle(const std::vector<xcb_window_t>& windows, std::chrono::milliseconds maximum);
    // After the last pass: settles, for up to `maximum`, the windows whose manager has not
    // answered their last request at all (neither the frame nor what the hints allow has shown
    // since it went out), unless they are known to undo resizes. True when there were any.
    bool awaitLateAnswers(const std::vector<xcb_window_t>& windows,
                          std::chrono::milliseconds maximum);
    // Written to in the current placement: its frame must be read from the server, unless
    // the settle has read it since the last request (what changed since comes as events).
    bool isBeingPlaced(xcb_window_t window) const;
    bool hasFreshFrame(xcb_window_t window) const;

private:
    // What a window did with a frame it reached, remembered for its next placements.
    enum class Answer { unknown, keepsFrames, undoesResizes };

    struct Placement {
        X11Rect target;
        Clock::time_point lastWrite;
        // Written since the last request.
        bool unsent = false;
        // The last request: when it went out, its sequence number, the window's
        // ConfigureNotify count then, and the client size it asked for.
        Clock::time_point sentAt;
        std::uint32_t sequence = 0;
        std::uint64_t configureEventsBefore = 0;
        std::int64_t clientWidth = 0;
        std::int64_t clientHeight = 0;
        // The window already had the target frame when the last request went out, so the
        // manager may drop it without any event.
        bool alreadyThere = false;
        // Read from the server after the last request.
        bool readSinceSent = false;
        // The frame asked for, or one the hints allow, has shown since the last request.
        bool answered = false;
        Answer answer = Answer::unknown;
    };

    std::int32_t write(xcb_window_t window, std::optional<std::int64_t> x,
                       std::optional<std::int64_t> y, std::optional<std::int64_t> width,
                       std::optional<std::int64_t> height);
    // The live record with its geometry, extents and state read afresh; null when gone.
    const X11WindowRecord* freshRecord(xcb_window_t window);
    // The live record, read afresh unless the settle has just read it.
    const X11WindowRecord* currentRecord(xcb_window_t window);
    // Asks the manager to restore the window and waits for it; false when it was neither
    // maximized nor full screen.
    bool leaveMaximizedAndFullScreen(const X11WindowRecord& record);
    // Sends the window's written frame; false when the request failed.
    bool send(xcb_window_t window, Placement& placement);
    // The request that asks for `target`; its sequence number, or nothing when it failed.
    std::optional<std::uint32_t> sendFrame(const X11WindowRecord& record, const X11Rect& target);
    std::uint32_t sendClientMessage(xcb_window_t window, xcb_atom_t type,
                                    std::initializer_list<std::uint32_t> data);
    // Whether the frame the window shows answers its last request, after a round trip when
    // the client size it was last notified of could.
    enum class Outcome { pending, target, allowedByHints };
    Outcome outcome(xcb_window_t window, Placement& placement);

    X11Connection& connection_;
    X11WindowMirror& mirror_;
    std::unordered_map<xcb_window_t, Placement> placements_;
    X11ManagerPing ping_;
};

} // namespace tilmora
