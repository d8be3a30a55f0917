// What the mirror knows about one managed client window and about the root window, each field
// read from the server once and again only after an event said it changed.
#pragma once

#include "platform/x11/X11Geometry.h"
#include "platform/x11/X11Properties.h"

#include <QString>

#include <xcb/xproto.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora {

struct X11WindowRecord {
    // The parts of a record that are read together; a set bit in `stale` means "read again".
    struct Part {
        enum : std::uint32_t {
            title = 1U << 0,
            windowClass = 1U << 1,
            applicationId = 1U << 2,
            type = 1U << 3,
            state = 1U << 4,
            allowedActions = 1U << 5,
            processId = 1U << 6,
            extents = 1U << 7,
            sizeHints = 1U << 8,
            strut = 1U << 9,
            desktop = 1U << 10,
            geometry = 1U << 11,
            tree = 1U << 12,
            mapState = 1U << 13,
            resourcePid = 1U << 14,
            propertyList = 1U << 15,
            all = (1U << 16) - 1,
        };
    };

    xcb_window_t id = XCB_WINDOW_NONE;
    // The window manager's frame: the client's ancestor just below the root (the client itself
    // when it is not reparented).
    xcb_window_t frame = XCB_WINDOW_NONE;
    std::uint32_t stale = Part::all;
    // Destroyed, or every read fails: kept until it leaves the client list, never reported.
    bool gone = false;
    // The names of the properties the window has, sorted, kept current from PropertyNotify:
    // a property that is not there is not asked for, which halves the cold read.
    std::vector<xcb_atom_t> properties;

    std::optional<QString> netName;
    std::optional<QString> wmName;
    x11::WindowClass windowClass;
    QString gtkApplicationId;
    QString kdeDesktopFile;
    std::vector<xcb_atom_t> types;
    std::vector<xcb_atom_t> states;
    std::vector<xcb_atom_t> allowedActions;
    bool publishesAllowedActions = false;
    std::optional<std::uint32_t> netPid;
    std::optional<std::uint32_t> resourcePid;
    X11Extents frameExtents;
    X11Extents gtkExtents;
    X11SizeHints hints;
    std::optional<X11Strut> strut;
    std::optional<std::uint32_t> desktop;
    // The client area in root coordinates.
    std::optional<X11Rect> client;
    bool isViewable = false;

    // When it was last the active window (0: not since the mirror started); larger is later.
    std::uint64_t activationOrder = 0;
    // ConfigureNotify events seen for the client or its frame, and the sequence number of the
    // last one, so that a writer can tell which came after its request.
    std::uint64_t configureEvents = 0;
    std::uint32_t lastConfigureSequence = 0;
    // The client size that the last ConfigureNotify of the client window itself reported, so
    // that a writer can tell a resize from a move without asking the server.
    std::int64_t notifiedWidth = 0;
    std::int64_t notifiedHeight = 0;

    std::optional<std::int32_t> processIdentifier() const {
        const auto pid = resourcePid ? resourcePid : netPid;
        if (!pid || *pid == 0 || *pid > 0x7FFFFFFFU) {
            return std::nullopt;
        }
        return static_cast<std::int32_t>(*pid);
    }
    std::optional<QString> title() const { return netName ? netName : wmName; }
    bool hasProperty(xcb_atom_t atom) const {
        return std::binary_search(properties.begin(), properties.end(), atom);
    }
    void noteProperty(xcb_atom_t atom, bool present) {
        const auto at = std::lower_bound(properties.begin(), properties.end(), atom);
        const bool listed = at != properties.end() && *at == atom;
        if (present && !listed) {
            properties.insert(at, atom);
        } else if (!present && listed) {
            properties.erase(at);
        }
    }
    bool hasState(xcb_atom_t atom) const {
        return std::find(states.begin(), states.end(), atom) != states.end();
    }
    bool hasType(xcb_atom_t atom) const {
        return std::find(types.begin(), types.end(), atom) != types.end();
    }
    bool allows(xcb_atom_t action) const {
        return !publishesAllowedActions || std::find(allowedActions.begin(), allowedActions.end(),
                                                     action) != allowedActions.end();
    }

    // The frame the user sees: the client grown by the decorations and shrunk by client-side
    // shadows, root coordinates.
    std::optional<X11Rect> outerFrame() const {
        if (!client) {
            return std::nullopt;
        }
        return X11Rect{client->x - frameExtents.left + gtkExtents.left,
                       client->y - frameExtents.top + gtkExtents.top,
                       client->width + frameExtents.left + frameExtents.right - gtkExtents.left -
                           gtkExtents.right,
                       client->height + frameExtents.top + frameExtents.bottom - gtkExtents.top -
                           gtkExtents.bottom};
    }
};

struct X11RootState {
    struct Part {
        enum : std::uint32_t {
            clientList = 1U << 0,
            stacking = 1U << 1,
            activeWindow = 1U << 2,
            currentDesktop = 1U << 3,
            supported = 1U << 4,
            resources = 1U << 5,
            workAreas = 1U << 6,
            all = (1U << 7) - 1,
        };
    };

    std::uint32_t stale = Part::all;
    // The EWMH window manager's check window; none without such a manager.
    xcb_window_t windowManagerCheck = XCB_WINDOW_NONE;
    std::vector<xcb_atom_t> supported;
    std::vector<xcb_window_t> clients;
    // Bottom-most first, as _NET_CLIENT_LIST_STACKING lists them.
    std::vector<xcb_window_t> stacking;
    xcb_window_t activeWindow = XCB_WINDOW_NONE;
    std::optional<std::uint32_t> currentDesktop;
    std::optional<double> dpi;
    // _GTK_WORKAREAS_D<current desktop>, where the window manager publishes it.
    std::vector<X11Rect> gtkWorkAreas;
    std::int64_t width = 0;
    std::int64_t height = 0;

    bool supports(xcb_atom_t atom) const {
        return atom != XCB_ATOM_NONE &&
               std::find(supported.begin(), supported.end(), atom) != supported.end();
    }
    bool hasWindowManager() const { return windowManagerCheck != XCB_WINDOW_NONE; }
};

} // namespace tilmora
