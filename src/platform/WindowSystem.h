// Everything the window logic needs from the window system: screens, the pointer, the running
// applications and their windows, frame writes and the list of visible windows. All members are
// called on the main thread and answer synchronously from the caller's point of view.
//
// Two spaces are in use. Screens are in the bottom-left space (origin at the primary screen's
// bottom-left corner, y up), so that the conversion to displays happens in one place. Window
// positions, the pointer and on-screen bounds are in the top-left space (origin at the primary
// screen's top-left corner, y down); screens left of or above the primary one are negative.
#pragma once

#include "geometry/CGGeometry.h"
#include "geometry/ScreenDescription.h"
#include "platform/OnScreenWindow.h"
#include "platform/RunningApplication.h"
#include "platform/WindowElement.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace tilmora {

class WindowSystem {
public:
    using ActivationHandler = std::function<void(const RunningApplication&)>;

    virtual ~WindowSystem() = default;

    // --- Screens and pointer

    // Connected screens, the primary one first; empty when none is connected.
    virtual std::vector<ScreenDescription> screens() const = 0;
    // The pointer position, top-left space, not rounded.
    virtual CGPoint pointerLocation() const = 0;

    // --- Permission

    // Whether windows of other applications can be read and placed at all.
    virtual bool isTrusted() const = 0;
    // The same question, asking the user or re-establishing access first where the system can.
    virtual bool requestTrust() = 0;

    // --- Applications

    // In the system's own order, which callers keep as the tie-breaker of their sorting.
    virtual std::vector<RunningApplication> runningApplications() const = 0;
    // Looks the process up among the running applications; a system may answer more cheaply.
    virtual std::optional<RunningApplication> application(std::int32_t processIdentifier) const;
    // The application the user is working in; absent when none is active.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;
    // This process, which the logic never lists or targets.
    virtual std::int32_t ownProcessIdentifier() const = 0;
    // The application id under which this process's own windows are reported, so that the
    // exclusion works whatever rule derived it.
    virtual std::optional<QString> ownBundleIdentifier() const = 0;

    // Called on the main thread whenever an application becomes active, this one included.
    // Replaces the earlier handler; an empty function removes it.
    virtual void setActivationHandler(ActivationHandler handler) = 0;

    // --- Windows and their attributes. A failed read is absent, never a default value.

    // The application's top-level windows in a stable order (order of creation, not of
    // stacking), so that a window's position in the list survives focus changes. Empty also when
    // the list cannot be read: both mean there is nothing to arrange.
    virtual std::vector<WindowElement> windows(std::int32_t processIdentifier) const = 0;
    // The application's focused (or most recently active) window.
    virtual std::optional<WindowElement> focusedWindow(std::int32_t processIdentifier) const = 0;

    virtual std::optional<QString> role(WindowElement window) const = 0;
    // Absent for windows of no particular kind, which count as standard windows.
    virtual std::optional<QString> subrole(WindowElement window) const = 0;
    virtual std::optional<QString> title(WindowElement window) const = 0;
    // Top-left corner of the outer frame (decorations included), top-left space.
    virtual std::optional<CGPoint> position(WindowElement window) const = 0;
    // Size of the outer frame.
    virtual std::optional<CGSize> size(WindowElement window) const = 0;

    // --- Placing a window

    // False also when the question cannot be answered: either way the window cannot be placed.
    virtual bool isPositionSettable(WindowElement window) const = 0;
    virtual bool isSizeSettable(WindowElement window) const = 0;

    // Brings the window in front of its application's other windows. Best effort: placement goes
    // on whatever happens.
    virtual void raise(WindowElement window) = 0;

    // Each returns AXError::success or another AXError code. Success means the request was
    // delivered, not that the window took the frame: reading it back tells that.
    virtual std::int32_t setPosition(WindowElement window, CGPoint position) = 0;
    virtual std::int32_t setSize(WindowElement window, CGSize size) = 0;

    // Waits until the writes sent to the windows have taken effect, so that the next reads see
    // them, but never longer than `maximum` for all of them together. Blocks without running
    // other main-loop work.
    virtual void settle(const std::vector<WindowElement>& windows,
                        std::chrono::milliseconds maximum) = 0;
    // After the last pass: waits for the system to answer writes it has not answered at all
    // yet, because a busy window manager can answer later than a pass lasts and its late frame
    // must not be taken for the application's limit. A window that shows the frame asked for,
    // or one its application is known to allow or enforce instead, is not waited for. Never
    // longer than `maximum`; systems that answer at once need not wait. True when it waited,
    // so that the windows are worth reading again.
    virtual bool awaitLateAnswers(const std::vector<WindowElement>& windows,
                                  std::chrono::milliseconds maximum) {
        (void)windows;
        (void)maximum;
        return false;
    }

    // --- The window server's view

    // Visible windows of the current desktop, front-most first. Empty also when the list cannot
    // be read.
    virtual std::vector<OnScreenWindow> onScreenWindows() const = 0;
};

} // namespace tilmora
