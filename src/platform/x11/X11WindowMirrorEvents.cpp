// Events: what each one makes stale, so that the next read asks only for that.
#include "platform/x11/X11WindowMirror.h"

#include "platform/x11/X11Connection.h"

namespace tilmora {

void X11WindowMirror::handleEvent(const xcb_generic_event_t& event) {
    const auto owner = [this](xcb_window_t window) -> X11WindowRecord* {
        if (X11WindowRecord* client = record(window)) {
            return client;
        }
        const auto frame = frameOwners_.find(window);
        return frame == frameOwners_.end() ? nullptr : record(frame->second);
    };
    needsRead_ = true;
    switch (event.response_type & 0x7F) {
    case 0: {
        const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
        if (error.error_code == XCB_WINDOW) {
            if (X11WindowRecord* client = record(error.resource_id)) {
                client->gone = true;
            }
        }
        break;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto& e = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (e.window == connection_.root()) {
            markRoot(e.atom);
        } else if (X11WindowRecord* client = record(e.window)) {
            client->noteProperty(e.atom, e.state == XCB_PROPERTY_NEW_VALUE);
            markWindow(*client, e.atom);
        }
        break;
    }
    case XCB_CONFIGURE_NOTIFY: {
        const auto& e = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (e.window == connection_.root()) {
            root_.width = e.width;
            root_.height = e.height;
            root_.stale |= X11RootState::Part::workAreas;
        } else if (X11WindowRecord* client = owner(e.window)) {
            client->stale |= X11WindowRecord::Part::geometry;
            ++client->configureEvents;
            client->lastConfigureSequence = event.full_sequence;
            if (e.window == client->id) {
                client->notifiedWidth = e.width;
                client->notifiedHeight = e.height;
            }
        }
        break;
    }
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY: {
        // Both events have the window at the same place.
        const auto& e = reinterpret_cast<const xcb_map_notify_event_t&>(event);
        if (X11WindowRecord* client = owner(e.window)) {
            client->stale |= X11WindowRecord::Part::mapState;
        }
        break;
    }
    case XCB_DESTROY_NOTIFY: {
        const auto& e = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        if (X11WindowRecord* client = record(e.window)) {
            client->gone = true;
        } else if (X11WindowRecord* framed = owner(e.window)) {
            framed->stale |= X11WindowRecord::Part::tree | X11WindowRecord::Part::geometry |
                             X11WindowRecord::Part::mapState;
        }
        if (e.window == root_.windowManagerCheck) {
            root_.stale |= X11RootState::Part::supported;
        }
        break;
    }
    case XCB_REPARENT_NOTIFY: {
        const auto& e = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
        if (X11WindowRecord* client = record(e.window)) {
            client->stale |= X11WindowRecord::Part::tree | X11WindowRecord::Part::geometry |
                             X11WindowRecord::Part::mapState;
        }
        break;
    }
    default:
        break;
    }
}

void X11WindowMirror::markRoot(xcb_atom_t property) {
    const auto is = [&](X11Atom atom) { return property == connection_.atom(atom); };
    if (is(X11Atom::_NET_CLIENT_LIST)) {
        root_.stale |= X11RootState::Part::clientList;
    } else if (is(X11Atom::_NET_CLIENT_LIST_STACKING)) {
        root_.stale |= X11RootState::Part::stacking;
    } else if (is(X11Atom::_NET_ACTIVE_WINDOW)) {
        root_.stale |= X11RootState::Part::activeWindow;
    } else if (is(X11Atom::_NET_CURRENT_DESKTOP)) {
        root_.stale |= X11RootState::Part::currentDesktop | X11RootState::Part::workAreas;
    } else if (is(X11Atom::_NET_SUPPORTED) || is(X11Atom::_NET_SUPPORTING_WM_CHECK)) {
        root_.stale |= X11RootState::Part::supported | X11RootState::Part::workAreas;
    } else if (property == XCB_ATOM_RESOURCE_MANAGER) {
        root_.stale |= X11RootState::Part::resources;
    } else if (is(X11Atom::_GTK_WORKAREAS) || property == workAreasAtom_) {
        root_.stale |= X11RootState::Part::workAreas;
    }
}

void X11WindowMirror::markWindow(X11WindowRecord& client, xcb_atom_t property) {
    const auto is = [&](X11Atom atom) { return property == connection_.atom(atom); };
    std::uint32_t field = 0;
    if (is(X11Atom::_NET_WM_NAME) || property == XCB_ATOM_WM_NAME) {
        field = X11WindowRecord::Part::title;
    } else if (property == XCB_ATOM_WM_CLASS) {
        field = X11WindowRecord::Part::windowClass;
    } else if (is(X11Atom::_GTK_APPLICATION_ID) || is(X11Atom::_KDE_NET_WM_DESKTOP_FILE)) {
        field = X11WindowRecord::Part::applicationId;
    } else if (is(X11Atom::_NET_WM_WINDOW_TYPE)) {
        field = X11WindowRecord::Part::type;
    } else if (is(X11Atom::_NET_WM_STATE)) {
        field = X11WindowRecord::Part::state;
    } else if (is(X11Atom::_NET_WM_ALLOWED_ACTIONS)) {
        field = X11WindowRecord::Part::allowedActions;
    } else if (is(X11Atom::_NET_WM_PID)) {
        field = X11WindowRecord::Part::processId;
    } else if (is(X11Atom::_NET_FRAME_EXTENTS) || is(X11Atom::_GTK_FRAME_EXTENTS)) {
        field = X11WindowRecord::Part::extents;
    } else if (property == XCB_ATOM_WM_NORMAL_HINTS) {
        field = X11WindowRecord::Part::sizeHints;
    } else if (is(X11Atom::_NET_WM_STRUT) || is(X11Atom::_NET_WM_STRUT_PARTIAL)) {
        field = X11WindowRecord::Part::strut;
    } else if (is(X11Atom::_NET_WM_DESKTOP)) {
        field = X11WindowRecord::Part::desktop;
    }
    client.stale |= field;
}

} // namespace tilmora
