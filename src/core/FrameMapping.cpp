#include "core/FrameMapping.h"

#include "core/PlacementLimits.h"

#include <algorithm>
#include <cmath>

namespace tilmora {

namespace {

// Inset by the gap, but never by more than leaves a positive size.
CGRect insetByGap(const CGRect& rect, double gap) {
    const double inset =
        std::min(std::max(std::min(rect.width(), rect.height()) * 0.5 - 1, 0.0), gap);
    const CGRect inner = CGRectInset(rect, inset, inset);
    if (inner.isNull() || inner.width() <= 0 || inner.height() <= 0) {
        return rect;
    }
    return inner;
}

bool aligned(double frameMin, double frameMax, double areaMin, double areaMax) {
    return std::abs(frameMin - areaMin) <= frameAlignmentTolerance &&
           std::abs(frameMax - areaMax) <= frameAlignmentTolerance;
}

} // namespace

CGRect mappedFrame(const CGRect& frame, const CGRect& from, const CGRect& to, double gap) {
    if (frame.isClose(from, frameAlignmentTolerance)) {
        return CGRectIntegral(to);
    }
    const bool alignedX = aligned(frame.minX(), frame.maxX(), from.minX(), from.maxX());
    const bool alignedY = aligned(frame.minY(), frame.maxY(), from.minY(), from.maxY());
    const double g = std::max(gap, 0.0);
    const CGRect fromInner = insetByGap(from, g);
    const CGRect toInner = insetByGap(to, g);
    const double fromWidth = std::max(fromInner.width(), 1.0);
    const double fromHeight = std::max(fromInner.height(), 1.0);

    double x = to.minX();
    double width = to.width();
    if (!alignedX) {
        x = toInner.minX() + (frame.minX() - fromInner.minX()) / fromWidth * toInner.width();
        width = std::min(frame.width() / fromWidth * toInner.width(), toInner.width());
    }
    double y = to.minY();
    double height = to.height();
    if (!alignedY) {
        y = toInner.minY() + (frame.minY() - fromInner.minY()) / fromHeight * toInner.height();
        height = std::min(frame.height() / fromHeight * toInner.height(), toInner.height());
    }
    const CGRect& boundsX = alignedX ? to : toInner;
    const CGRect& boundsY = alignedY ? to : toInner;
    const CGRect bounds{boundsX.minX(), boundsY.minY(), boundsX.width(), boundsY.height()};
    return CGRect{x, y, width, height}.clamped(bounds, minimumPlacedSize);
}

} // namespace tilmora
