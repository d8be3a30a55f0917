// The root window: client list, stacking, active window, desktop, work areas, resources.
#include "platform/x11/X11WindowMirror.h"

#include "platform/x11/X11Connection.h"

#include <unordered_set>

namespace tilmora {

void X11WindowMirror::readRoot(std::uint32_t parts) {
    xcb_connection_t* c = connection_.raw();
    const xcb_window_t rootWindow = connection_.root();
    const std::uint32_t stale = root_.stale & parts;
    root_.stale &= ~parts;
    const auto request = [&](X11Atom atom, std::uint32_t length) {
        return xcb_get_property(c, 0, rootWindow, connection_.atom(atom), XCB_ATOM_ANY, 0, length);
    };
    const auto collect = [&](xcb_get_property_cookie_t cookie) {
        return X11PropertyValue::from(
            connection_.reply<xcb_get_property_reply_t>(cookie.sequence).get());
    };

    std::vector<Collector> collectors;
    if (stale & X11RootState::Part::supported) {
        const auto check = request(X11Atom::_NET_SUPPORTING_WM_CHECK, 1);
        const auto supported = request(X11Atom::_NET_SUPPORTED, listLength);
        collectors.emplace_back([=, this] {
            root_.windowManagerCheck = x11::firstCardinal(collect(check)).value_or(0);
            root_.supported = x11::cardinals(collect(supported));
        });
    }
    std::optional<std::vector<xcb_window_t>> clients;
    if (stale & X11RootState::Part::clientList) {
        const auto cookie = request(X11Atom::_NET_CLIENT_LIST, listLength);
        collectors.emplace_back([=, &clients] { clients = x11::cardinals(collect(cookie)); });
    }
    if (stale & X11RootState::Part::stacking) {
        const auto cookie = request(X11Atom::_NET_CLIENT_LIST_STACKING, listLength);
        collectors.emplace_back([=, this] { root_.stacking = x11::cardinals(collect(cookie)); });
    }
    std::optional<xcb_window_t> active;
    if (stale & X11RootState::Part::activeWindow) {
        const auto cookie = request(X11Atom::_NET_ACTIVE_WINDOW, 1);
        collectors.emplace_back(
            [=, &active] { active = x11::firstCardinal(collect(cookie)).value_or(0); });
    }
    if (stale & X11RootState::Part::currentDesktop) {
        const auto cookie = request(X11Atom::_NET_CURRENT_DESKTOP, 1);
        collectors.emplace_back(
            [=, this] { root_.currentDesktop = x11::firstCardinal(collect(cookie)); });
    }
    if (stale & X11RootState::Part::resources) {
        const auto cookie = xcb_get_property(c, 0, rootWindow, XCB_ATOM_RESOURCE_MANAGER,
                                             XCB_ATOM_STRING, 0, x11::resourceManagerLength);
        collectors.emplace_back([=, this] {
            const auto value = collect(cookie);
            root_.dpi = value ? x11::xftDpi(value->bytes) : std::nullopt;
        });
    }
    for (const Collector& collector : collectors) {
        collector();
    }

    if ((stale & X11RootState::Part::supported) && root_.windowManagerCheck != XCB_WINDOW_NONE) {
        // The check window names itself while its manager lives; a stale property left by a
        // manager that died names a window that is gone.
        const xcb_window_t check = root_.windowManagerCheck;
        const auto cookie = xcb_get_property(
            c, 0, check, connection_.atom(X11Atom::_NET_SUPPORTING_WM_CHECK), XCB_ATOM_ANY, 0, 1);
        xcb_change_window_attributes(c, check, XCB_CW_EVENT_MASK, &frameEventMask);
        if (x11::firstCardinal(collect(cookie)) != check) {
            root_.windowManagerCheck = XCB_WINDOW_NONE;
            root_.supported.clear();
        }
    }
    if (stale & (X11RootState::Part::workAreas | X11RootState::Part::currentDesktop |
                 X11RootState::Part::supported)) {
        root_.gtkWorkAreas.clear();
        workAreasAtom_ = XCB_ATOM_NONE;
        if (root_.supports(connection_.atom(X11Atom::_GTK_WORKAREAS)) && root_.currentDesktop) {
            workAreasAtom_ = connection_.internAtom(QByteArrayLiteral("_GTK_WORKAREAS_D") +
                                                    QByteArray::number(*root_.currentDesktop));
            const auto cookie =
                xcb_get_property(c, 0, rootWindow, workAreasAtom_, XCB_ATOM_ANY, 0, shortLength);
            const auto items = x11::cardinals(collect(cookie));
            for (std::size_t i = 0; i + 3 < items.size(); i += 4) {
                root_.gtkWorkAreas.push_back({static_cast<std::int32_t>(items[i]),
                                              static_cast<std::int32_t>(items[i + 1]), items[i + 2],
                                              items[i + 3]});
            }
        }
    }
    if (clients) {
        root_.clients = std::move(*clients);
        applyClientList();
    }
    if (active && *active != root_.activeWindow) {
        root_.activeWindow = *active;
        if (X11WindowRecord* activeRecord = record(*active)) {
            activeRecord->activationOrder = ++activations_;
        }
        if (activeWindowListener_) {
            activeWindowListener_(*active);
        }
    }
}

void X11WindowMirror::applyClientList() {
    const std::unordered_set<xcb_window_t> listed(root_.clients.begin(), root_.clients.end());
    for (auto it = windows_.begin(); it != windows_.end();) {
        if (!listed.contains(it->first)) {
            frameOwners_.erase(it->second.frame);
            it = windows_.erase(it);
        } else {
            ++it;
        }
    }
    for (const xcb_window_t window : root_.clients) {
        // The server hands the ids of a client that left to the next one: a window destroyed
        // and still listed may be a new window under the old id, so it is read again (and
        // found gone again if it is not).
        const X11WindowRecord* known = find(window);
        if (window == XCB_WINDOW_NONE || (known && !known->gone)) {
            continue;
        }
        if (known) {
            frameOwners_.erase(known->frame);
            windows_.erase(window);
        }
        X11WindowRecord fresh;
        fresh.id = window;
        windows_.emplace(window, fresh);
        // Selected before anything is read, so that no change between the read and the
        // selection can be missed.
        xcb_change_window_attributes(connection_.raw(), window, XCB_CW_EVENT_MASK,
                                     &clientEventMask);
    }
}

} // namespace tilmora
