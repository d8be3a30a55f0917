#include "platform/x11/X11WindowMirror.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Log.h"

#include <xcb/res.h>

#include <algorithm>
#include <functional>
#include <unordered_set>

namespace tilmora {

namespace {

constexpr std::uint32_t clientEventMask =
    XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
constexpr std::uint32_t frameEventMask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
// Property lengths in 32-bit units: window lists of any realistic size, short lists, texts.
constexpr std::uint32_t listLength = 1U << 16;
constexpr std::uint32_t shortLength = 256;
// Frames nest this deep at most before the chain counts as broken.
constexpr int maximumTreeDepth = 8;

} // namespace

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
    if (root_.stale != 0) {
        ++version_;
        readRoot();
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

// --- Events

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

// --- Reading the root window

void X11WindowMirror::readRoot() {
    xcb_connection_t* c = connection_.raw();
    const xcb_window_t rootWindow = connection_.root();
    const std::uint32_t stale = root_.stale;
    root_.stale = 0;
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
        if (window == XCB_WINDOW_NONE || windows_.contains(window)) {
            continue;
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

// --- Reading client windows

X11WindowMirror::Collector X11WindowMirror::collectorFor(xcb_window_t window, RecordUpdate apply) {
    // The record may be gone by the time the reply is collected.
    return [this, window, apply = std::move(apply)] {
        if (X11WindowRecord* client = record(window)) {
            apply(*client);
        }
    };
}

void X11WindowMirror::readWindows(const PartsOf& partsOf) {
    using Part = X11WindowRecord::Part;
    // Read first, because the properties depend on it: which properties exist. Geometry, map
    // state and the first step towards the frame go along.
    constexpr std::uint32_t firstRound =
        Part::propertyList | Part::geometry | Part::mapState | Part::tree;
    xcb_connection_t* c = connection_.raw();
    const auto run = [](std::vector<Collector>& collectors) {
        for (const Collector& collector : collectors) {
            collector();
        }
        collectors.clear();
    };

    std::vector<xcb_window_t> needResourcePid;
    for (auto& [window, client] : windows_) {
        if (partsOf(window, client) & Part::resourcePid) {
            client.stale &= ~Part::resourcePid;
            needResourcePid.push_back(window);
        }
    }
    // Asked first, so that the answer is there before any property is: a window whose
    // process the server names needs no _NET_WM_PID.
    const auto resourceCookie = queryResourcePids(needResourcePid);

    std::vector<Collector> collectors;
    // The property reads, queued as soon as the window's property list is known, so that the
    // server works on them while the rest of the lists is still being collected.
    std::vector<Collector> propertyCollectors;
    const auto readRest = [&, this](X11WindowRecord& client) {
        if (const std::uint32_t stale = partsOf(client.id, client)) {
            client.stale &= ~stale;
            readProperties(client, stale, propertyCollectors);
        }
    };
    FrameClimb climb;
    for (auto& [window, client] : windows_) {
        const std::uint32_t stale = partsOf(window, client) & firstRound;
        client.stale &= ~stale;
        const xcb_window_t w = window;
        if (stale & Part::propertyList) {
            const auto cookie = xcb_list_properties(c, w);
            collectors.push_back(collectorFor(w, [=, this](X11WindowRecord& r) {
                X11Reply<xcb_generic_error_t> error;
                const auto list =
                    connection_.reply<xcb_list_properties_reply_t>(cookie.sequence, &error);
                r.properties.clear();
                if (list) {
                    const xcb_atom_t* atoms = xcb_list_properties_atoms(list.get());
                    r.properties.assign(atoms,
                                        atoms + xcb_list_properties_atoms_length(list.get()));
                    std::sort(r.properties.begin(), r.properties.end());
                } else {
                    r.gone = r.gone || (error && error->error_code == XCB_WINDOW);
                }
                readRest(r);
            }));
        }
        if (stale & Part::geometry) {
            const auto geometry = xcb_get_geometry(c, w);
            const auto origin = xcb_translate_coordinates(c, w, connection_.root(), 0, 0);
            collectors.push_back(collectorFor(w, [=, this](X11WindowRecord& r) {
                X11Reply<xcb_generic_error_t> error;
                const auto size =
                    connection_.reply<xcb_get_geometry_reply_t>(geometry.sequence, &error);
                const auto place =
                    connection_.reply<xcb_translate_coordinates_reply_t>(origin.sequence);
                if (size && place) {
                    r.client = X11Rect{place->dst_x, place->dst_y, size->width, size->height};
                } else {
                    r.client.reset();
                    r.gone = r.gone || (error && error->error_code == XCB_DRAWABLE);
                }
            }));
        }
        if (stale & Part::mapState) {
            const auto cookie = xcb_get_window_attributes(c, w);
            collectors.push_back(collectorFor(w, [=, this](X11WindowRecord& r) {
                const auto attributes =
                    connection_.reply<xcb_get_window_attributes_reply_t>(cookie.sequence);
                r.isViewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
            }));
        }
        if (stale & Part::tree) {
            climb.start(w);
        }
        if (!(stale & Part::propertyList)) {
            readRest(client);
        }
    }
    climb.sendQueries(c, connection_.root());
    if (resourceCookie) {
        applyResourcePids(*resourceCookie, needResourcePid);
    }
    run(collectors);
    climbToFrames(climb);
    run(propertyCollectors);
    connection_.flush();
}

std::optional<xcb_res_query_client_ids_cookie_t>
X11WindowMirror::queryResourcePids(const std::vector<xcb_window_t>& windows) {
    if (windows.empty() || !connection_.hasResource()) {
        return std::nullopt;
    }
    std::vector<xcb_res_client_id_spec_t> specs;
    specs.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        specs.push_back({window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
    }
    return xcb_res_query_client_ids(connection_.raw(), static_cast<std::uint32_t>(specs.size()),
                                    specs.data());
}

void X11WindowMirror::applyResourcePids(xcb_res_query_client_ids_cookie_t cookie,
                                        const std::vector<xcb_window_t>& windows) {
    // The server answers per client, named by its resource base: the window id without the
    // bits a client numbers its own resources with.
    const std::uint32_t mask = xcb_get_setup(connection_.raw())->resource_id_mask;
    std::unordered_map<std::uint32_t, std::uint32_t> pidByClient;
    if (const auto ids = connection_.reply<xcb_res_query_client_ids_reply_t>(cookie.sequence)) {
        for (auto it = xcb_res_query_client_ids_ids_iterator(ids.get()); it.rem > 0;
             xcb_res_client_id_value_next(&it)) {
            if ((it.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
                xcb_res_client_id_value_value_length(it.data) >= 1) {
                pidByClient[it.data->spec.client & ~mask] = *xcb_res_client_id_value_value(it.data);
            }
        }
    }
    for (const xcb_window_t window : windows) {
        if (X11WindowRecord* client = record(window)) {
            const auto found = pidByClient.find(window & ~mask);
            client->resourcePid = found == pidByClient.end()
                                      ? std::nullopt
                                      : std::optional<std::uint32_t>(found->second);
        }
    }
}

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

void X11WindowMirror::FrameClimb::start(xcb_window_t client) {
    steps.push_back({client, client, {}});
}

void X11WindowMirror::FrameClimb::sendQueries(xcb_connection_t* c, xcb_window_t root) {
    if (!steps.empty() && !topLevelQuery) {
        topLevelQuery = xcb_query_tree(c, root);
    }
    for (Step& step : steps) {
        step.query = xcb_query_tree(c, step.node);
    }
}

void X11WindowMirror::climbToFrames(FrameClimb& climb) {
    // One level per batch for all windows at once, from each client towards the root.
    xcb_connection_t* c = connection_.raw();
    const xcb_window_t rootWindow = connection_.root();
    // A parent that is a child of the root is the frame: most clients are found in one step.
    std::unordered_set<xcb_window_t> topLevel;
    if (climb.topLevelQuery) {
        if (const auto tree =
                connection_.reply<xcb_query_tree_reply_t>(climb.topLevelQuery->sequence)) {
            const xcb_window_t* children = xcb_query_tree_children(tree.get());
            topLevel.insert(children, children + xcb_query_tree_children_length(tree.get()));
        }
    }
    for (int depth = 0; depth < maximumTreeDepth && !climb.steps.empty(); ++depth) {
        if (depth > 0) {
            climb.sendQueries(c, rootWindow);
        }
        std::vector<FrameClimb::Step> next;
        // Selected after the replies are in: a request sent between two replies would be
        // flushed on its own, one write per window.
        std::vector<xcb_window_t> newFrames;
        for (const FrameClimb::Step& step : climb.steps) {
            const auto tree = connection_.reply<xcb_query_tree_reply_t>(step.query.sequence);
            X11WindowRecord* client = record(step.client);
            if (!client) {
                continue;
            }
            if (!tree) {
                client->gone = client->gone || step.node == step.client;
                continue;
            }
            const bool atTop = tree->parent == rootWindow || tree->parent == XCB_WINDOW_NONE;
            if (atTop || topLevel.contains(tree->parent)) {
                const xcb_window_t frame = atTop ? step.node : tree->parent;
                if (client->frame != frame) {
                    frameOwners_.erase(client->frame);
                    client->frame = frame;
                    if (client->frame != client->id) {
                        frameOwners_[client->frame] = client->id;
                        newFrames.push_back(client->frame);
                    }
                }
            } else {
                next.push_back({step.client, tree->parent, {}});
            }
        }
        for (const xcb_window_t frame : newFrames) {
            xcb_change_window_attributes(c, frame, XCB_CW_EVENT_MASK, &frameEventMask);
        }
        climb.steps = std::move(next);
    }
}

} // namespace tilmora
