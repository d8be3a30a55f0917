// A copy of the window manager's view of the managed client windows (client list, stacking,
// active window, and per window its title, class, type, state, pid, extents, geometry, hints,
// allowed actions and strut), kept current from PropertyNotify and ConfigureNotify events.
// update() reads only what events marked stale, all of it in one batch of requests, so that
// a refresh of an unchanged desktop costs no round trip at all.
#pragma once

#include "platform/x11/X11WindowRecord.h"

#include <xcb/xproto.h>

#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

namespace tilmora {

class X11Connection;

class X11WindowMirror {
public:
    // Called from update() when _NET_ACTIVE_WINDOW names another window.
    using ActiveWindowListener = std::function<void(xcb_window_t window)>;

    explicit X11WindowMirror(X11Connection& connection);
    ~X11WindowMirror();
    X11WindowMirror(const X11WindowMirror&) = delete;
    X11WindowMirror& operator=(const X11WindowMirror&) = delete;

    // Handles the events that have arrived and reads what they made stale. False without a
    // usable connection; the mirror is then empty.
    bool update();
    // Makes the next update() read these fields of the window from the server again.
    void invalidate(xcb_window_t window, std::uint32_t fields);

    const X11RootState& root() const { return root_; }
    // The managed window, also when gone; null for any other window.
    const X11WindowRecord* find(xcb_window_t window) const;
    // Managed, live windows in client-list (mapping) order.
    std::vector<const X11WindowRecord*> liveWindows() const;

    void setActiveWindowListener(ActiveWindowListener listener);

    // Grows whenever update() read something, so that derived lists can be cached.
    std::uint64_t version() const { return version_; }
    // Whether update() would read anything beyond the events still unhandled.
    bool needsRead() const { return needsRead_; }

private:
    void reset();
    void handleEvent(const xcb_generic_event_t& event);
    void markRoot(xcb_atom_t property);
    void markWindow(X11WindowRecord& record, xcb_atom_t property);
    void readRoot();
    void applyClientList();
    void readWindows();
    void readFrames(std::vector<xcb_window_t> windows);
    X11WindowRecord* record(xcb_window_t window);

    X11Connection& connection_;
    int listenerId_ = 0;
    std::uint64_t generation_ = 0;
    X11RootState root_;
    std::unordered_map<xcb_window_t, X11WindowRecord> windows_;
    // Frame window to client window.
    std::unordered_map<xcb_window_t, xcb_window_t> frameOwners_;
    std::uint64_t activations_ = 0;
    std::uint64_t version_ = 0;
    bool needsRead_ = true;
    // _GTK_WORKAREAS_D<current desktop>, once interned.
    xcb_atom_t workAreasAtom_ = XCB_ATOM_NONE;
    ActiveWindowListener activeWindowListener_;
};

} // namespace tilmora
