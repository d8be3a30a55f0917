// A copy of the window manager's view of the managed client windows (client list, stacking,
// active window, and per window its title, class, type, state, pid, extents, geometry, hints,
// allowed actions and strut), kept current from PropertyNotify and ConfigureNotify events.
// update() reads only what events marked stale, all of it in one batch of requests, so that
// a refresh of an unchanged desktop costs no round trip at all.
#pragma once

#include "platform/x11/X11WindowRecord.h"

#include <xcb/res.h>
#include <xcb/xproto.h>

#include <cstdint>
#include <functional>
#include <optional>
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
    // Parts that only some callers need: update() leaves them, require() reads them. Without
    // the frame a window's moves are still seen, from the ConfigureNotify its manager sends it.
    static constexpr std::uint32_t onDemandParts =
        X11WindowRecord::Part::allowedActions | X11WindowRecord::Part::sizeHints |
        X11WindowRecord::Part::mapState | X11WindowRecord::Part::desktop |
        X11WindowRecord::Part::tree;
    // update(), and these parts of these windows where they are stale, in the same batch.
    bool require(const std::vector<xcb_window_t>& windows, std::uint32_t parts);
    bool requireAll(std::uint32_t parts);
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
    static constexpr std::uint32_t clientEventMask =
        XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    static constexpr std::uint32_t frameEventMask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    // Property lengths in 32-bit units: window lists of any realistic size, short lists, texts.
    static constexpr std::uint32_t listLength = 1U << 16;
    static constexpr std::uint32_t shortLength = 256;
    // Frames nest this deep at most before the chain counts as broken.
    static constexpr int maximumTreeDepth = 8;

    void reset();
    void handleEvent(const xcb_generic_event_t& event);
    void markRoot(xcb_atom_t property);
    void markWindow(X11WindowRecord& record, xcb_atom_t property);
    void readRoot(std::uint32_t parts = X11RootState::Part::all);
    void applyClientList();
    using Collector = std::function<void()>;
    using RecordUpdate = std::function<void(X11WindowRecord&)>;
    Collector collectorFor(xcb_window_t window, RecordUpdate apply);
    using PendingProperty = std::optional<xcb_get_property_cookie_t>;
    // Clients on their way up the window tree to the frame their window manager gave them.
    struct FrameClimb {
        struct Step {
            xcb_window_t client;
            xcb_window_t node;
            xcb_query_tree_cookie_t query;
        };
        std::vector<Step> steps;
        // The root's children, asked for once with the first step.
        std::optional<xcb_query_tree_cookie_t> topLevelQuery;

        void start(xcb_window_t client);
        void sendQueries(xcb_connection_t* connection, xcb_window_t root);
    };

    // Handles events, then reads what is stale: of every window the parts a listing needs,
    // and the `demanded` parts of the windows in `demandedBy` (of all when absent).
    bool read(std::uint32_t demanded, const std::optional<std::vector<xcb_window_t>>& demandedBy);
    // Which stale parts of a window to read now.
    using PartsOf = std::function<std::uint32_t(xcb_window_t, const X11WindowRecord&)>;
    void readWindows(const PartsOf& partsOf);
    std::optional<xcb_res_query_client_ids_cookie_t>
    queryResourcePids(const std::vector<xcb_window_t>& windows);
    void applyResourcePids(xcb_res_query_client_ids_cookie_t cookie,
                           const std::vector<xcb_window_t>& windows);
    // Queues the reads of the stale properties, whose collectors go to `collectors`.
    void readProperties(const X11WindowRecord& client, std::uint32_t stale,
                        std::vector<Collector>& collectors);
    void climbToFrames(FrameClimb& climb);
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
