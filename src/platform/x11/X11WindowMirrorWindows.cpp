// Client windows: one batch of requests for what is stale in every window.
#include "platform/x11/X11WindowMirror.h"

#include "platform/x11/X11Connection.h"

#include <xcb/res.h>

#include <algorithm>

namespace tilmora {

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
                    r.notifiedWidth = size->width;
                    r.notifiedHeight = size->height;
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

} // namespace tilmora
