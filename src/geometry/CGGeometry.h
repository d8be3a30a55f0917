// Points, sizes and rectangles in points, with the rectangle rules every placement relies on:
// standardisation of negative sizes, integral rounding outward, inset and intersection that
// yield the null rectangle, half-open containment and exact equality.
#pragma once

#include <QDebug>

namespace tilmora {

struct CGPoint {
    double x = 0;
    double y = 0;

    friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

struct CGSize {
    double width = 0;
    double height = 0;

    friend bool operator==(const CGSize&, const CGSize&) = default;
};

struct CGRect {
    CGPoint origin;
    CGSize size;

    constexpr CGRect() = default;
    constexpr CGRect(double x, double y, double width, double height)
        : origin{x, y}
        , size{width, height} {}
    constexpr CGRect(CGPoint origin_, CGSize size_)
        : origin(origin_)
        , size(size_) {}

    // The rectangle that stands for "no rectangle": infinite origin, zero size.
    static CGRect null();
    bool isNull() const;
    // True when null or when either standardized side is zero.
    bool isEmpty() const;

    // The same rectangle with non-negative width and height.
    CGRect standardized() const;

    // Accessors of the standardized rectangle.
    double minX() const;
    double midX() const;
    double maxX() const;
    double minY() const;
    double midY() const;
    double maxY() const;
    double width() const;
    double height() const;
    CGPoint center() const { return {midX(), midY()}; }

    // Keeps the minimum size first, lets the bounds win over it, and moves rather than shrinks.
    CGRect clamped(const CGRect& bounds, CGSize minimumSize) const;
    // Each of min x, min y, width and height within `tolerance` (inclusive) of the other's.
    bool isClose(const CGRect& other, double tolerance) const;

    // Exact comparison of the standardized rectangles; all null rectangles are equal.
    friend bool operator==(const CGRect& a, const CGRect& b);
};

// Smallest rectangle with integral origin and size containing `rect`: origin rounded down, far
// edges rounded up. Null stays null.
CGRect CGRectIntegral(const CGRect& rect);
// Shrinks the standardized rectangle by dx and dy on each side; null when a side would become
// negative.
CGRect CGRectInset(const CGRect& rect, double dx, double dy);
// The common part of two rectangles; null when they are disjoint (touching edges give an empty,
// non-null rectangle).
CGRect CGRectIntersection(const CGRect& a, const CGRect& b);
// Minimum edges belong to the rectangle, maximum edges do not.
bool CGRectContainsPoint(const CGRect& rect, CGPoint point);
bool CGRectEqualToRect(const CGRect& a, const CGRect& b);

QDebug operator<<(QDebug debug, const CGPoint& point);
QDebug operator<<(QDebug debug, const CGSize& size);
QDebug operator<<(QDebug debug, const CGRect& rect);

// GoogleTest and other std::ostream users print through these.
std::ostream& operator<<(std::ostream& stream, const CGPoint& point);
std::ostream& operator<<(std::ostream& stream, const CGSize& size);
std::ostream& operator<<(std::ostream& stream, const CGRect& rect);

} // namespace tilmora
