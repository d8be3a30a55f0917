#include "platform/x11/X11Monitors.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Edid.h"

#include <xcb/randr.h>
#include <xcb/xinerama.h>

#include <algorithm>

namespace tilmora {

std::vector<X11Monitor> describeMonitors(const std::vector<X11MonitorSource>& sources) {
    std::vector<X11MonitorSource> ordered = sources;
    std::stable_partition(ordered.begin(), ordered.end(),
                          [](const X11MonitorSource& source) { return source.isPrimary; });

    std::vector<std::optional<X11Edid>> edids;
    std::vector<X11Monitor> monitors;
    for (const X11MonitorSource& source : ordered) {
        const auto edid = X11Edid::parse(source.edid);
        X11Monitor monitor;
        monitor.connector = source.connector;
        monitor.geometry = source.geometry;
        monitor.isPrimary = source.isPrimary;
        monitor.name = edid && edid->productName ? *edid->productName : source.connector;
        if (monitor.name.isEmpty()) {
            monitor.name = QStringLiteral("Monitor %1").arg(monitors.size() + 1);
        }
        edids.push_back(edid);
        monitors.push_back(monitor);
    }

    std::vector<QString> plainNames;
    for (const X11Monitor& monitor : monitors) {
        plainNames.push_back(monitor.name);
    }
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        X11Monitor& monitor = monitors[i];
        const bool sameName = std::count(plainNames.begin(), plainNames.end(), monitor.name) > 1;
        if (sameName && !monitor.connector.isEmpty() && monitor.name != monitor.connector) {
            monitor.name += QStringLiteral(" (%1)").arg(monitor.connector);
        }
        const QByteArray connector = monitor.connector.toUtf8();
        if (edids[i]) {
            const bool twin = std::any_of(edids.begin(), edids.end(), [&](const auto& other) {
                return &other != &edids[i] && other && other->identity == edids[i]->identity;
            });
            const std::uint32_t identity = fnv1a(edids[i]->identity);
            monitor.displayNumber = twin ? fnv1a(connector, identity) : identity;
        } else if (!connector.isEmpty()) {
            monitor.displayNumber = fnv1a(connector);
        }
    }
    return monitors;
}

namespace {

std::vector<X11MonitorSource> randrMonitors(X11Connection& connection) {
    xcb_connection_t* c = connection.raw();
    const auto monitors = connection.reply<xcb_randr_get_monitors_reply_t>(
        xcb_randr_get_monitors(c, connection.root(), 1).sequence);
    if (!monitors) {
        return {};
    }
    std::vector<X11MonitorSource> sources;
    std::vector<xcb_get_atom_name_cookie_t> names;
    std::vector<std::optional<xcb_randr_get_output_property_cookie_t>> edids;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        const xcb_randr_monitor_info_t* info = it.data;
        X11MonitorSource source;
        source.geometry = {info->x, info->y, info->width, info->height};
        source.isPrimary = info->primary != 0;
        sources.push_back(source);
        names.push_back(xcb_get_atom_name(c, info->name));
        const xcb_randr_output_t* outputs = xcb_randr_monitor_info_outputs(info);
        if (xcb_randr_monitor_info_outputs_length(info) > 0 &&
            connection.atom(X11Atom::EDID) != XCB_ATOM_NONE) {
            // 256 longs hold the base block and the first extension blocks.
            edids.emplace_back(xcb_randr_get_output_property(
                c, outputs[0], connection.atom(X11Atom::EDID), XCB_ATOM_ANY, 0, 256, 0, 0));
        } else {
            edids.emplace_back();
        }
    }
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (const auto name = connection.reply<xcb_get_atom_name_reply_t>(names[i].sequence)) {
            sources[i].connector = QString::fromUtf8(xcb_get_atom_name_name(name.get()),
                                                     xcb_get_atom_name_name_length(name.get()));
        }
        if (edids[i]) {
            if (const auto edid =
                    connection.reply<xcb_randr_get_output_property_reply_t>(edids[i]->sequence)) {
                sources[i].edid = QByteArray(
                    reinterpret_cast<const char*>(xcb_randr_get_output_property_data(edid.get())),
                    xcb_randr_get_output_property_data_length(edid.get()));
            }
        }
    }
    std::erase_if(sources, [](const X11MonitorSource& s) { return s.geometry.isEmpty(); });
    return sources;
}

std::vector<X11MonitorSource> xineramaHeads(X11Connection& connection) {
    const auto heads = connection.reply<xcb_xinerama_query_screens_reply_t>(
        xcb_xinerama_query_screens(connection.raw()).sequence);
    std::vector<X11MonitorSource> sources;
    if (!heads) {
        return sources;
    }
    for (auto it = xcb_xinerama_query_screens_screen_info_iterator(heads.get()); it.rem > 0;
         xcb_xinerama_screen_info_next(&it)) {
        X11MonitorSource source;
        source.geometry = {it.data->x_org, it.data->y_org, it.data->width, it.data->height};
        sources.push_back(source);
    }
    std::erase_if(sources, [](const X11MonitorSource& s) { return s.geometry.isEmpty(); });
    return sources;
}

} // namespace

std::vector<X11Monitor> queryMonitors(X11Connection& connection) {
    if (!connection.isUsable()) {
        return {};
    }
    std::vector<X11MonitorSource> sources;
    if (connection.hasRandr15()) {
        sources = randrMonitors(connection);
    }
    if (sources.empty() && connection.hasXinerama()) {
        sources = xineramaHeads(connection);
    }
    if (sources.empty() && connection.screen()) {
        X11MonitorSource whole;
        whole.geometry = {0, 0, connection.screen()->width_in_pixels,
                          connection.screen()->height_in_pixels};
        whole.isPrimary = true;
        sources.push_back(whole);
    }
    return describeMonitors(sources);
}

} // namespace tilmora
