// The properties of one client window, asked for only where the window has them.
#include "platform/x11/X11WindowMirror.h"

#include "platform/x11/X11Connection.h"

namespace tilmora {

void X11WindowMirror::readProperties(const X11WindowRecord& client, std::uint32_t stale,
                                     std::vector<Collector>& collectors) {
    using Part = X11WindowRecord::Part;
    xcb_connection_t* c = connection_.raw();
    const xcb_atom_t utf8 = connection_.atom(X11Atom::UTF8_STRING);
    const auto atomOf = [this](X11Atom atom) { return connection_.atom(atom); };
    const xcb_window_t w = client.id;
    // A property the window does not have is not asked for; it reads as absent.
    const auto property = [&](xcb_atom_t atom, std::uint32_t length) -> PendingProperty {
        if (!client.hasProperty(atom)) {
            return std::nullopt;
        }
        return xcb_get_property(c, 0, w, atom, XCB_ATOM_ANY, 0, length);
    };
    // Collected later: the value, and whether the window turned out to be gone.
    const auto collect = [this](X11WindowRecord& r, PendingProperty cookie) {
        if (!cookie) {
            return std::optional<X11PropertyValue>();
        }
        X11Reply<xcb_generic_error_t> error;
        const auto reply = connection_.reply<xcb_get_property_reply_t>(cookie->sequence, &error);
        r.gone = r.gone || (error && error->error_code == XCB_WINDOW);
        return X11PropertyValue::from(reply.get());
    };
    const auto add = [&](RecordUpdate apply) {
        collectors.push_back(collectorFor(w, std::move(apply)));
    };
    const auto atomList = [&](X11Atom atom, std::vector<xcb_atom_t> X11WindowRecord::*field) {
        const auto cookie = property(atomOf(atom), shortLength);
        add([=](X11WindowRecord& r) { r.*field = x11::cardinals(collect(r, cookie)); });
    };
    // A second name is read only when the preferred one is missing.
    const auto preferred = [&](xcb_atom_t first, xcb_atom_t second, std::uint32_t length) {
        const auto one = property(first, length);
        return std::pair{one, one ? PendingProperty() : property(second, length)};
    };

    if (stale & Part::title) {
        const auto [net, plain] =
            preferred(atomOf(X11Atom::_NET_WM_NAME), XCB_ATOM_WM_NAME, maximumTitleBytes / 4);
        add([=](X11WindowRecord& r) {
            r.netName = x11::text(collect(r, net), utf8);
            r.wmName = x11::text(collect(r, plain), utf8);
        });
    }
    if (stale & Part::windowClass) {
        const auto cookie = property(XCB_ATOM_WM_CLASS, shortLength);
        add([=](X11WindowRecord& r) {
            r.windowClass = x11::windowClass(collect(r, cookie)).value_or(x11::WindowClass{});
        });
    }
    if (stale & Part::applicationId) {
        const auto gtk = property(atomOf(X11Atom::_GTK_APPLICATION_ID), shortLength);
        const auto kde = property(atomOf(X11Atom::_KDE_NET_WM_DESKTOP_FILE), shortLength);
        add([=](X11WindowRecord& r) {
            r.gtkApplicationId = x11::text(collect(r, gtk), utf8).value_or(QString());
            r.kdeDesktopFile = x11::text(collect(r, kde), utf8).value_or(QString());
        });
    }
    if (stale & Part::type) {
        atomList(X11Atom::_NET_WM_WINDOW_TYPE, &X11WindowRecord::types);
    }
    if (stale & Part::state) {
        atomList(X11Atom::_NET_WM_STATE, &X11WindowRecord::states);
    }
    if (stale & Part::allowedActions) {
        const auto cookie = property(atomOf(X11Atom::_NET_WM_ALLOWED_ACTIONS), shortLength);
        add([=](X11WindowRecord& r) {
            const auto value = collect(r, cookie);
            r.allowedActions = x11::cardinals(value);
            r.publishesAllowedActions = value.has_value();
        });
    }
    // The server's own answer, where it gave one, outranks what the client claims.
    if ((stale & Part::processId) && !client.resourcePid) {
        const auto cookie = property(atomOf(X11Atom::_NET_WM_PID), 1);
        add([=](X11WindowRecord& r) { r.netPid = x11::firstCardinal(collect(r, cookie)); });
    }
    if (stale & Part::extents) {
        const auto frame = property(atomOf(X11Atom::_NET_FRAME_EXTENTS), 4);
        const auto gtk = property(atomOf(X11Atom::_GTK_FRAME_EXTENTS), 4);
        add([=](X11WindowRecord& r) {
            r.frameExtents = x11::extents(collect(r, frame)).value_or(X11Extents{});
            r.gtkExtents = x11::extents(collect(r, gtk)).value_or(X11Extents{});
        });
    }
    if (stale & Part::sizeHints) {
        const auto cookie = property(XCB_ATOM_WM_NORMAL_HINTS, 18);
        add([=](X11WindowRecord& r) { r.hints = x11::sizeHints(collect(r, cookie)); });
    }
    if (stale & Part::strut) {
        const auto [partial, plain] =
            preferred(atomOf(X11Atom::_NET_WM_STRUT_PARTIAL), atomOf(X11Atom::_NET_WM_STRUT), 12);
        add([=, this](X11WindowRecord& r) {
            r.strut = x11::strutPartial(collect(r, partial));
            const auto whole = x11::strut(collect(r, plain), root_.width, root_.height);
            if (!r.strut) {
                r.strut = whole;
            }
        });
    }
    if (stale & Part::desktop) {
        const auto cookie = property(atomOf(X11Atom::_NET_WM_DESKTOP), 1);
        add([=](X11WindowRecord& r) { r.desktop = x11::firstCardinal(collect(r, cookie)); });
    }
}

} // namespace tilmora
