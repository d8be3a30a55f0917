#include "geometry/PlacementCanvasGeometry.h"

#include "geometry/TilmoraCoordinateSpace.h"

#include <algorithm>
#include <cmath>

namespace tilmora::PlacementCanvasGeometry {

CGRect localVisibleRect(const DisplayGeometry& display) {
    const CGRect& visible = display.visibleFrame;
    return {visible.minX() - display.frame.minX(), visible.minY() - display.frame.minY(),
            visible.width(), visible.height()};
}

CGPoint clampedPoint(CGPoint local, const DisplayGeometry& display) {
    const CGRect area = localVisibleRect(display);
    return {std::min(std::max(local.x, area.minX()), area.maxX()),
            std::min(std::max(local.y, area.minY()), area.maxY())};
}

CGRect localGridCell(CGPoint local, const DisplayGeometry& display,
                     const DisplayLayoutProfile& profile) {
    // The same cell the snapping of a window finds, with the usable area seen from the view.
    DisplayGeometry seenFromView = display;
    seenFromView.visibleFrame = localVisibleRect(display);
    return TilmoraCoordinateSpace::snapFrame(local, seenFromView, profile.columns, profile.rows,
                                             profile.gap);
}

CGRect drawnRect(CGPoint start, CGPoint current, const DisplayGeometry& display) {
    const CGPoint s = clampedPoint(start, display);
    const CGPoint c = clampedPoint(current, display);
    const CGRect drawn{std::min(s.x, c.x), std::min(s.y, c.y), std::abs(s.x - c.x),
                       std::abs(s.y - c.y)};
    return CGRectIntegral(CGRectIntersection(drawn, localVisibleRect(display)));
}

CGRect appliedFrame(const std::optional<CGRect>& drawn, CGPoint end, const DisplayGeometry& display,
                    const DisplayLayoutProfile& profile) {
    const bool isClick = !drawn || drawn->width() < clickSize || drawn->height() < clickSize;
    const CGRect local =
        isClick ? localGridCell(clampedPoint(end, display), display, profile) : *drawn;
    const CGRect desktop{display.frame.minX() + local.minX(), display.frame.minY() + local.minY(),
                         local.width(), local.height()};
    return CGRectIntegral(CGRectIntersection(desktop, display.visibleFrame))
        .clamped(display.visibleFrame, minimumFrameSize);
}

QString previewText(const CGRect& local, const DisplayGeometry& display) {
    const CGRect& visible = display.visibleFrame;
    const double share = std::max(local.width() * local.height(), 1.0) /
                         std::max(visible.width() * visible.height(), 1.0) * 100;
    return QStringLiteral("%1 x %2 \u2022 %3%")
        .arg(static_cast<qint64>(std::trunc(local.width())))
        .arg(static_cast<qint64>(std::trunc(local.height())))
        .arg(static_cast<qint64>(std::round(share)));
}

std::vector<LineSegment> gridLines(const DisplayGeometry& display, std::int64_t columns,
                                   std::int64_t rows, CGSize viewSize) {
    const CGRect area = localVisibleRect(display);
    std::vector<LineSegment> lines;
    for (std::int64_t i = 1; i < columns; ++i) {
        const double x = area.minX() + area.width() / static_cast<double>(columns) * i;
        lines.push_back({{x, area.minY()}, {x, area.maxY()}});
    }
    for (std::int64_t j = 1; j < rows; ++j) {
        const double y = area.minY() + area.height() / static_cast<double>(rows) * j;
        lines.push_back({{area.minX(), y}, {area.maxX(), y}});
    }
    const double w = viewSize.width;
    const double h = viewSize.height;
    lines.push_back({{0, 0}, {w, 0}});
    lines.push_back({{w, 0}, {w, h}});
    lines.push_back({{w, h}, {0, h}});
    lines.push_back({{0, h}, {0, 0}});
    return lines;
}

std::optional<CGRect> passivePreviewRect(const std::optional<CGRect>& previewFrame,
                                         std::optional<std::uint32_t> activeDisplayID,
                                         const DisplayGeometry& display) {
    if (!previewFrame || activeDisplayID != display.id) {
        return std::nullopt;
    }
    const CGRect local{previewFrame->minX() - display.frame.minX(),
                       previewFrame->minY() - display.frame.minY(), previewFrame->width(),
                       previewFrame->height()};
    const CGRect shown = CGRectIntegral(CGRectIntersection(local, localVisibleRect(display)));
    if (shown.isNull() || shown.width() <= 0 || shown.height() <= 0) {
        return std::nullopt;
    }
    return shown;
}

bool showsPassiveHeader(std::optional<std::uint32_t> activeDisplayID,
                        const DisplayGeometry& display) {
    return !activeDisplayID || *activeDisplayID == display.id;
}

} // namespace tilmora::PlacementCanvasGeometry
