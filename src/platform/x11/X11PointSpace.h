// Root-window device pixels on one side, the points of the logic on the other: the top-left
// space has its origin at the primary monitor's top-left corner, and a point is the desktop's
// scale in pixels, as Qt's device-independent pixels are, so that sizes in points keep their
// physical size on a HiDPI desktop. Every conversion of the backend goes through here.
#pragma once

#include "geometry/CGGeometry.h"
#include "platform/x11/X11Geometry.h"

#include <cstdint>
#include <optional>

namespace tilmora {

class X11Connection;

class X11PointSpace {
public:
    X11PointSpace() = default;
    // `primary` is the primary monitor in root pixels; `xftDpi` the desktop's Xft.dpi, if set.
    X11PointSpace(const X11Rect& primary, std::optional<double> xftDpi);

    // Reads the primary monitor and Xft.dpi from the server (one round trip each).
    static X11PointSpace read(X11Connection& connection);

    // What Qt's xcb platform makes of Xft.dpi: the value rounded to a whole dpi over 96, never
    // below 1 (a lower dpi makes fonts smaller but leaves pixels alone).
    static double scaleForDpi(std::optional<double> xftDpi);

    double scale() const { return scale_; }

    CGPoint point(std::int64_t rootX, std::int64_t rootY) const;
    // A rectangle of root pixels in the top-left space.
    CGRect rect(const X11Rect& root) const;
    // A rectangle of root pixels in the bottom-left space, where screens are reported.
    CGRect bottomLeftRect(const X11Rect& root) const;

    std::int64_t rootX(double x) const { return pixels(x) + primary_.x; }
    std::int64_t rootY(double y) const { return pixels(y) + primary_.y; }
    // A length in points as whole pixels.
    std::int64_t pixels(double length) const;

    friend bool operator==(const X11PointSpace&, const X11PointSpace&) = default;

private:
    X11Rect primary_;
    double scale_ = 1.0;
};

} // namespace tilmora
