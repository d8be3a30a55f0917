// Global hot keys on X11: passive key grabs on the root window, one for every Lock/NumLock
// combination so that a shortcut works whatever lock is on. Keys are grabbed by physical
// position; the grabs are renewed when NumLock moves to another modifier and after the
// connection comes back, and a press arrives as a KeyPress on the root from the connection's
// event dispatch on the main thread.
#pragma once

#include "platform/HotKeyService.h"

#include <QObject>

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace tilmora {

class X11Connection;

class X11HotKeyService final : public HotKeyService {
public:
    // The X server refused the grab for a reason other than a taken key, or cannot be reached.
    static constexpr std::int32_t serverFailure = -9868;

    explicit X11HotKeyService(X11Connection& connection);
    // Releases every grab.
    ~X11HotKeyService() override;
    X11HotKeyService(const X11HotKeyService&) = delete;
    X11HotKeyService& operator=(const X11HotKeyService&) = delete;

    HotKeyRegistrationResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            std::uint32_t id) override;
    void unregisterHotKey(HotKeyHandle handle) override;
    void setPressedHandler(PressedHandler handler) override;

private:
    struct Registration {
        std::uint32_t id = 0;
        xcb_keycode_t keycode = 0;
        // Shift, Control, Mod1 and Mod4 bits.
        std::uint16_t modifiers = 0;
        // The full masks grabbed on the server right now (with the lock bits of that time).
        std::vector<std::uint16_t> grabbed;
    };

    void handleEvent(const xcb_generic_event_t& event);
    void handleConnection(bool connected);
    // Renews the grabs on a later turn of the main loop (never inside an event dispatch).
    void scheduleRegrab();
    void regrab();
    // Sets up a new connection: the keyboard extension and where NumLock is.
    void prepare();
    // Enables XKB's detectable auto-repeat and asks for keyboard-change events.
    void setUpKeyboardExtension();
    // The modifier bit that Num_Lock is on; 0 when it is on none (or on one we grab with).
    std::uint16_t readNumLockMask();
    std::vector<std::uint16_t> lockVariants() const;
    // Grabs every lock variant of the registration; its status. Undoes a partial grab.
    std::int32_t grab(Registration& registration);
    void ungrab(Registration& registration);

    X11Connection& connection_;
    int eventListener_ = 0;
    int connectionListener_ = 0;
    std::uint8_t xkbFirstEvent_ = 0;
    bool hasXkb_ = false;
    // The connection generation that prepare() last ran for.
    std::uint64_t preparedGeneration_ = 0;
    std::uint16_t numLockMask_ = 0;
    bool regrabQueued_ = false;
    std::uint64_t nextHandle_ = 1;
    std::map<std::uint64_t, Registration> registrations_;
    // Keys whose press was reported and whose release has not come yet: auto-repeat of a held
    // shortcut is one press.
    std::set<xcb_keycode_t> heldKeys_;
    PressedHandler pressedHandler_;
    // Receiver of the queued regrab, so that it never runs after the service is gone.
    QObject context_;
};

} // namespace tilmora
