// System-wide mouse and modifier events on X11, observed without grabbing anything: XInput 2.2
// raw button and motion events on the root window (which keep arriving while another client,
// such as the window manager moving a window, holds the pointer) and XKB state events for the
// modifiers. Raw events carry no position, so the pointer is read from the server when they
// are delivered, on a later turn of the main loop.
#pragma once

#include "geometry/CGGeometry.h"
#include "platform/InputMonitor.h"
#include "platform/x11/X11PointSpace.h"

#include <QObject>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora {

class X11Connection;

class X11InputMonitor final : public InputMonitor {
public:
    explicit X11InputMonitor(X11Connection& connection);
    ~X11InputMonitor() override;
    X11InputMonitor(const X11InputMonitor&) = delete;
    X11InputMonitor& operator=(const X11InputMonitor&) = delete;

    // False without a server, or when it lacks XInput 2.2 or XKB.
    bool start(EventHandler handler) override;
    void stop() override;

private:
    // What one X event said, in arrival order.
    struct RawEvent {
        enum class Kind { buttonPress, buttonRelease, motion, modifiers };
        Kind kind = Kind::motion;
        // The button number, or the X modifier mask for Kind::modifiers.
        std::uint32_t value = 0;
    };

    // Negotiates the extensions and selects the events on the current connection.
    bool setUp();
    void handleEvent(const xcb_generic_event_t& event);
    void handleConnection(bool connected);
    void deliver();
    void readButtonMapping();
    bool isLeftButton(std::uint32_t physical) const;
    CGPoint pointerLocation();

    X11Connection& connection_;
    int eventListener_ = 0;
    int connectionListener_ = 0;
    EventHandler handler_;
    bool started_ = false;
    // The connection generation whose events are selected; 0 for none.
    std::uint64_t selectedGeneration_ = 0;
    std::uint8_t inputOpcode_ = 0;
    std::uint8_t xkbFirstEvent_ = 0;

    std::vector<RawEvent> pending_;
    bool deliveryQueued_ = false;
    bool leftButtonDown_ = false;
    // Raw events name physical buttons: entry n - 1 is the logical button of physical button n
    // (a left-handed mapping swaps 1 and 3).
    std::vector<std::uint8_t> buttonMapping_;
    bool buttonMappingStale_ = false;
    // The four modifiers held, in EventModifierFlags bits, as XKB last reported them.
    std::uint64_t modifierFlags_ = 0;
    std::uint64_t reportedFlags_ = 0;
    // The primary monitor's origin and the scale, re-read now and then.
    std::optional<X11PointSpace> space_;
    std::chrono::steady_clock::time_point spaceRead_;
    CGPoint lastLocation_;
    // Receiver of queued work, so that none runs after the monitor is gone.
    QObject context_;
};

} // namespace tilmora
