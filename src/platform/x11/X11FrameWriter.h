// Moves, resizes and raises other applications' windows through the window manager, and waits
// for the server to confirm a write. The frame asked for is the outer visible frame; the
// writer takes the window out of maximized and full-screen states first, adds the decorations
// and removes client-side shadows, and leaves size increments and limits to the manager.
#pragma once

#include "platform/x11/X11Geometry.h"

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
    // After a confirmation that did not show the requested frame, the settle ends once the
    // window has had no further event for this long.
    static constexpr std::chrono::milliseconds quietPeriod{4};
    // Writes this close together belong to one placement: each one completes the frame the
    // earlier ones asked for instead of starting from the window's current frame.
    static constexpr std::chrono::milliseconds placementWindow{1000};

    X11FrameWriter(X11Connection& connection, X11WindowMirror& mirror);

    // Root coordinates of the outer frame's top-left corner; outer frame size. AXError codes.
    std::int32_t setPosition(xcb_window_t window, std::int64_t x, std::int64_t y);
    std::int32_t setSize(xcb_window_t window, std::int64_t width, std::int64_t height);
    void raise(xcb_window_t window);
    // Waits until the server confirms the last write's outcome, never past `maximum`.
    void settle(xcb_window_t window, std::chrono::milliseconds maximum);
    // Written to in the current placement: its frame must be read from the server.
    bool isBeingPlaced(xcb_window_t window) const;

private:
    struct Placement {
        X11Rect target;
        // The frame before the placement and what its earlier writes asked for.
        std::vector<X11Rect> earlierFrames;
        Clock::time_point lastWrite;
        // The last request and the window's ConfigureNotify count when it was sent.
        std::uint32_t sequence = 0;
        std::uint64_t configureEventsBefore = 0;
        // The window already had the target frame when the last request went out, so the
        // manager may drop it without any event.
        bool alreadyThere = false;
    };

    std::int32_t write(xcb_window_t window, std::optional<std::int64_t> x,
                       std::optional<std::int64_t> y, std::optional<std::int64_t> width,
                       std::optional<std::int64_t> height);
    // The live record with its geometry, extents and state read afresh; null when gone.
    const X11WindowRecord* freshRecord(xcb_window_t window);
    // Asks the manager to restore the window and waits for it; false when it was neither
    // maximized nor full screen.
    bool leaveMaximizedAndFullScreen(const X11WindowRecord& record);
    // The request that asks for `target`; its sequence number, or nothing when it failed.
    std::optional<std::uint32_t> sendFrame(const X11WindowRecord& record, const X11Rect& target);
    std::uint32_t sendClientMessage(xcb_window_t window, xcb_atom_t type,
                                    std::initializer_list<std::uint32_t> data);

    X11Connection& connection_;
    X11WindowMirror& mirror_;
    std::unordered_map<xcb_window_t, Placement> placements_;
};

} // namespace tilmora
