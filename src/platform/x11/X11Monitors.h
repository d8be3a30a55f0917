// The monitors of the X screen: RandR 1.5 monitors (what Qt sees too), Xinerama heads on a
// server without them, else the whole screen. Each gets a name the user recognises and a
// number that stays with the physical monitor.
#pragma once

#include "platform/x11/X11Geometry.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora {

class X11Connection;

struct X11Monitor {
    // The EDID product name, else the connector (RandR monitor) name; the connector is added
    // in parentheses when two monitors would otherwise share a name.
    QString name;
    QString connector;
    // Root-window pixels.
    X11Rect geometry;
    bool isPrimary = false;
    std::optional<std::uint32_t> displayNumber;

    friend bool operator==(const X11Monitor&, const X11Monitor&) = default;
};

// One monitor as the server describes it, before naming and numbering.
struct X11MonitorSource {
    QString connector;
    X11Rect geometry;
    bool isPrimary = false;
    QByteArray edid;
};

// Primary first, then in server order; names and display numbers as described above.
std::vector<X11Monitor> describeMonitors(const std::vector<X11MonitorSource>& sources);

// Asks the server (one round trip, two for RandR names and EDIDs); empty without a connection.
std::vector<X11Monitor> queryMonitors(X11Connection& connection);

} // namespace tilmora
