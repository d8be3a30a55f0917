#include "geometry/CGGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>

namespace tilmora {

namespace {
constexpr double infinity = std::numeric_limits<double>::infinity();
}

CGRect CGRect::null() {
    return {infinity, infinity, 0, 0};
}

bool CGRect::isNull() const {
    return std::isinf(origin.x) || std::isinf(origin.y);
}

bool CGRect::isEmpty() const {
    return isNull() || size.width == 0 || size.height == 0;
}

CGRect CGRect::standardized() const {
    CGRect result = *this;
    if (result.size.width < 0) {
        result.origin.x += result.size.width;
        result.size.width = -result.size.width;
    }
    if (result.size.height < 0) {
        result.origin.y += result.size.height;
        result.size.height = -result.size.height;
    }
    return result;
}

double CGRect::minX() const {
    return standardized().origin.x;
}
double CGRect::minY() const {
    return standardized().origin.y;
}
double CGRect::width() const {
    return std::abs(size.width);
}
double CGRect::height() const {
    return std::abs(size.height);
}
double CGRect::midX() const {
    return minX() + width() * 0.5;
}
double CGRect::midY() const {
    return minY() + height() * 0.5;
}
double CGRect::maxX() const {
    return minX() + width();
}
double CGRect::maxY() const {
    return minY() + height();
}

CGRect CGRect::clamped(const CGRect& bounds, CGSize minimumSize) const {
    const double w = std::min(bounds.width(), std::max(size.width, minimumSize.width));
    const double h = std::min(bounds.height(), std::max(size.height, minimumSize.height));
    const double x = std::min(std::max(origin.x, bounds.minX()), bounds.maxX() - w);
    const double y = std::min(std::max(origin.y, bounds.minY()), bounds.maxY() - h);
    return CGRectIntegral({x, y, w, h});
}

bool CGRect::isClose(const CGRect& other, double tolerance) const {
    return std::abs(minX() - other.minX()) <= tolerance &&
           std::abs(minY() - other.minY()) <= tolerance &&
           std::abs(width() - other.width()) <= tolerance &&
           std::abs(height() - other.height()) <= tolerance;
}

bool operator==(const CGRect& a, const CGRect& b) {
    return CGRectEqualToRect(a, b);
}

CGRect CGRectIntegral(const CGRect& rect) {
    if (rect.isNull()) {
        return rect;
    }
    const CGRect r = rect.standardized();
    const double x = std::floor(r.origin.x);
    const double y = std::floor(r.origin.y);
    const double right = std::ceil(r.origin.x + r.size.width);
    const double bottom = std::ceil(r.origin.y + r.size.height);
    return {x, y, right - x, bottom - y};
}

CGRect CGRectInset(const CGRect& rect, double dx, double dy) {
    if (rect.isNull()) {
        return rect;
    }
    const CGRect r = rect.standardized();
    const CGRect inset{r.origin.x + dx, r.origin.y + dy, r.size.width - 2 * dx,
                       r.size.height - 2 * dy};
    if (inset.size.width < 0 || inset.size.height < 0) {
        return CGRect::null();
    }
    return inset;
}

CGRect CGRectIntersection(const CGRect& a, const CGRect& b) {
    if (a.isNull() || b.isNull()) {
        return CGRect::null();
    }
    const double left = std::max(a.minX(), b.minX());
    const double right = std::min(a.maxX(), b.maxX());
    const double top = std::max(a.minY(), b.minY());
    const double bottom = std::min(a.maxY(), b.maxY());
    if (left > right || top > bottom) {
        return CGRect::null();
    }
    return {left, top, right - left, bottom - top};
}

bool CGRectContainsPoint(const CGRect& rect, CGPoint point) {
    if (rect.isNull()) {
        return false;
    }
    return point.x >= rect.minX() && point.x < rect.maxX() && point.y >= rect.minY() &&
           point.y < rect.maxY();
}

bool CGRectEqualToRect(const CGRect& a, const CGRect& b) {
    if (a.isNull() || b.isNull()) {
        return a.isNull() && b.isNull();
    }
    const CGRect sa = a.standardized();
    const CGRect sb = b.standardized();
    return sa.origin == sb.origin && sa.size == sb.size;
}

QDebug operator<<(QDebug debug, const CGPoint& point) {
    QDebugStateSaver saver(debug);
    debug.nospace() << "(" << point.x << ", " << point.y << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const CGSize& size) {
    QDebugStateSaver saver(debug);
    debug.nospace() << size.width << " x " << size.height;
    return debug;
}

QDebug operator<<(QDebug debug, const CGRect& rect) {
    QDebugStateSaver saver(debug);
    debug.nospace() << "(" << rect.origin.x << ", " << rect.origin.y << ", " << rect.size.width
                    << ", " << rect.size.height << ")";
    return debug;
}

std::ostream& operator<<(std::ostream& stream, const CGPoint& point) {
    return stream << "(" << point.x << ", " << point.y << ")";
}

std::ostream& operator<<(std::ostream& stream, const CGSize& size) {
    return stream << size.width << " x " << size.height;
}

std::ostream& operator<<(std::ostream& stream, const CGRect& rect) {
    return stream << "(" << rect.origin.x << ", " << rect.origin.y << ", " << rect.size.width
                  << ", " << rect.size.height << ")";
}

} // namespace tilmora
