#include "platform/x11/X11WindowMirror.h"

#include "platform/x11/X11Connection.h"

#include <algorithm>

namespace tilmora {

X11WindowMirror::X11WindowMirror(X11Connection& connection)
    : connection_(connection) {
    listenerId_ =
        connection_.addEventListener([this](const xcb_generic_event_t& e) { handleEvent(e); });
    connection_.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

X11WindowMirror::~X11WindowMirror() {
    connection_.removeEventListener(listenerId_);
}

void X11WindowMirror::setActiveWindowListener(ActiveWindowListener listener) {
    activeWindowListener_ = std::move(listener);
}

const X11WindowRecord* X11WindowMirror::find(xcb_window_t window) const {
    const auto found = windows_.find(window);
    return found == windows_.end() ? nullptr : &found->second;
}

X11WindowRecord* X11WindowMirror::record(xcb_window_t window) {
    const auto found = windows_.find(window);
    return found == windows_.end() ? nullptr : &found->second;
}

std::vector<const X11WindowRecord*> X11WindowMirror::liveWindows() const {
    std::vector<const X11WindowRecord*> result;
    result.reserve(root_.clients.size());
    for (const xcb_window_t window : root_.clients) {
        const X11WindowRecord* found = find(window);
        if (found && !found->gone) {
            result.push_back(found);
        }
    }
    return result;
}

void X11WindowMirror::invalidate(xcb_window_t window, std::uint32_t fields) {
    if (X11WindowRecord* found = record(window)) {
        found->stale |= fields;
        needsRead_ = true;
    }
}

void X11WindowMirror::reset() {
    ++version_;
    needsRead_ = true;
    windows_.clear();
    frameOwners_.clear();
    root_ = X11RootState{};
    if (const xcb_screen_t* screen = connection_.screen()) {
        root_.width = screen->width_in_pixels;
        root_.height = screen->height_in_pixels;
    }
}

bool X11WindowMirror::update() {
    return read(0, {});
}

bool X11WindowMirror::require(const std::vector<xcb_window_t>& windows, std::uint32_t parts) {
    return read(parts, windows);
}

bool X11WindowMirror::requireAll(std::uint32_t parts) {
    return read(parts, std::nullopt);
}

bool X11WindowMirror::read(std::uint32_t demanded,
                           const std::optional<std::vector<xcb_window_t>>& demandedBy) {
    if (!connection_.isUsable()) {
        if (!windows_.empty() || root_.hasWindowManager()) {
            reset();
        }
        return false;
    }
    if (generation_ != connection_.generation()) {
        generation_ = connection_.generation();
        reset();
    }
    connection_.dispatchPendingEvents();
    if (!connection_.isAlive()) {
        reset();
        return false;
    }
    // Some windows' parts (a placement's read-back) need the client list, which says which
    // windows are gone, not the stacking the manager rewrites on every raise: the rest waits
    // for the next full update.
    const bool forWindows = demanded != 0 && demandedBy && !demandedBy->empty();
    const std::uint32_t rootParts =
        forWindows ? X11RootState::Part::clientList | X11RootState::Part::supported
                   : X11RootState::Part::all;
    if ((root_.stale & rootParts) != 0) {
        ++version_;
        readRoot(rootParts);
    }
    // The parts every listing needs, of every window, and the demanded ones of the windows
    // that demand them, all in the same round trips.
    const auto partsOf = [&](xcb_window_t window, const X11WindowRecord& client) -> std::uint32_t {
        if (client.gone) {
            return 0;
        }
        const bool demanding = !demandedBy || std::find(demandedBy->begin(), demandedBy->end(),
                                                        window) != demandedBy->end();
        return client.stale & (~onDemandParts | (demanding ? demanded : 0));
    };
    const bool due =
        needsRead_ ||
        (demanded != 0 && std::any_of(windows_.begin(), windows_.end(), [&](const auto& e) {
             return (partsOf(e.first, e.second) & demanded) != 0;
         }));
    if (due) {
        needsRead_ = false;
        ++version_;
        readWindows(partsOf);
    }
    if (!connection_.isAlive() || generation_ != connection_.generation()) {
        reset();
        return false;
    }
    return true;
}

} // namespace tilmora
