#include "platform/x11/X11PointSpace.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Monitors.h"
#include "platform/x11/X11Properties.h"

#include <algorithm>
#include <cmath>

namespace tilmora {

namespace {

constexpr double referenceDpi = 96.0;

} // namespace

X11PointSpace::X11PointSpace(const X11Rect& primary, std::optional<double> xftDpi)
    : primary_(primary)
    , scale_(scaleForDpi(xftDpi)) {}

X11PointSpace X11PointSpace::read(X11Connection& connection) {
    if (!connection.isUsable()) {
        return {};
    }
    const auto resources =
        xcb_get_property(connection.raw(), 0, connection.root(), XCB_ATOM_RESOURCE_MANAGER,
                         XCB_ATOM_STRING, 0, x11::resourceManagerLength);
    const std::vector<X11Monitor> monitors = queryMonitors(connection);
    const auto value = X11PropertyValue::from(
        connection.reply<xcb_get_property_reply_t>(resources.sequence).get());
    return X11PointSpace(monitors.empty() ? X11Rect{} : monitors.front().geometry,
                         value ? x11::xftDpi(value->bytes) : std::nullopt);
}

double X11PointSpace::scaleForDpi(std::optional<double> xftDpi) {
    if (!xftDpi) {
        return 1.0;
    }
    return std::max(1.0, std::round(*xftDpi) / referenceDpi);
}

CGPoint X11PointSpace::point(std::int64_t rootX, std::int64_t rootY) const {
    return CGPoint{static_cast<double>(rootX - primary_.x) / scale_,
                   static_cast<double>(rootY - primary_.y) / scale_};
}

CGRect X11PointSpace::rect(const X11Rect& root) const {
    const CGPoint origin = point(root.x, root.y);
    return CGRect(origin.x, origin.y, static_cast<double>(root.width) / scale_,
                  static_cast<double>(root.height) / scale_);
}

CGRect X11PointSpace::bottomLeftRect(const X11Rect& root) const {
    return CGRect(static_cast<double>(root.x - primary_.x) / scale_,
                  static_cast<double>(primary_.bottom() - root.bottom()) / scale_,
                  static_cast<double>(root.width) / scale_,
                  static_cast<double>(root.height) / scale_);
}

std::int64_t X11PointSpace::pixels(double length) const {
    const double value = length * scale_;
    if (!std::isfinite(value)) {
        return 0;
    }
    return static_cast<std::int64_t>(std::llround(std::clamp(value, -1e9, 1e9)));
}

} // namespace tilmora
