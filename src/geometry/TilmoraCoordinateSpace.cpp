#include "geometry/TilmoraCoordinateSpace.h"

#include <algorithm>
#include <cmath>
#include <ostream>

namespace tilmora {

std::ostream& operator<<(std::ostream& stream, const DisplayGeometry& display) {
    return stream << "display " << display.id << " \"" << display.name.toStdString() << "\" frame "
                  << display.frame << " visible " << display.visibleFrame
                  << (display.isMain ? " main" : "");
}

namespace TilmoraCoordinateSpace {

namespace {

// y' = maxY(primary) - maxY(r): the distance of the rectangle's top edge below the primary
// display's top edge.
CGRect flipped(const CGRect& rect, double primaryMaxY) {
    return CGRectIntegral({rect.minX(), primaryMaxY - rect.maxY(), rect.width(), rect.height()});
}

double distance(CGPoint a, CGPoint b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

double overlapArea(const CGRect& a, const CGRect& b) {
    const CGRect common = CGRectIntersection(a, b);
    if (common.isNull()) {
        return 0;
    }
    return std::max(0.0, common.width()) * std::max(0.0, common.height());
}

// Truncation toward zero, then into 0 ... count - 1. A quotient that is not a number (only from
// non-finite input) counts as the first cell rather than stopping the program.
std::int64_t cellIndex(double offset, double cellLength, std::int64_t count) {
    const double quotient = std::trunc(offset / cellLength);
    if (std::isnan(quotient)) {
        return 0;
    }
    const double clamped = std::clamp(quotient, 0.0, static_cast<double>(count - 1));
    return static_cast<std::int64_t>(clamped);
}

} // namespace

std::vector<DisplayGeometry> currentDisplays(const std::vector<ScreenDescription>& screens) {
    std::vector<DisplayGeometry> displays;
    if (screens.empty()) {
        return displays;
    }
    const double primaryMaxY = screens.front().frame.maxY();
    displays.reserve(screens.size());
    for (std::size_t i = 0; i < screens.size(); ++i) {
        const ScreenDescription& screen = screens[i];
        displays.push_back({
            .id = screen.displayNumber.value_or(static_cast<std::uint32_t>(i + 1)),
            .name = screen.name,
            .appKitFrame = screen.frame,
            .appKitVisibleFrame = screen.visibleFrame,
            .frame = flipped(screen.frame, primaryMaxY),
            .visibleFrame = flipped(screen.visibleFrame, primaryMaxY),
            .scaleFactor = screen.scaleFactor,
            .isMain = i == 0,
        });
    }
    return displays;
}

std::optional<DisplayGeometry> display(CGPoint containing, const std::vector<DisplayGeometry>& in) {
    if (in.empty()) {
        return std::nullopt;
    }
    for (const DisplayGeometry& d : in) {
        if (CGRectContainsPoint(d.visibleFrame, containing)) {
            return d;
        }
    }
    for (const DisplayGeometry& d : in) {
        if (CGRectContainsPoint(d.frame, containing)) {
            return d;
        }
    }
    return displayNearest(containing, in, &DisplayGeometry::frame);
}

std::optional<DisplayGeometry> display(const CGRect& containing,
                                       const std::vector<DisplayGeometry>& in) {
    const CGPoint centre = containing.center();
    if (in.empty()) {
        return std::nullopt;
    }
    for (const DisplayGeometry& d : in) {
        if (CGRectContainsPoint(d.frame, centre)) {
            return d;
        }
    }
    if (auto overlapping = displayWithLargestOverlap(containing, in, &DisplayGeometry::frame)) {
        return overlapping;
    }
    return displayNearest(centre, in, &DisplayGeometry::frame);
}

std::optional<DisplayGeometry> displayWithLargestOverlap(const CGRect& rect,
                                                         const std::vector<DisplayGeometry>& in,
                                                         DisplayArea area) {
    const DisplayGeometry* best = nullptr;
    double bestArea = 0;
    for (const DisplayGeometry& d : in) {
        if (const double overlap = overlapArea(d.*area, rect); overlap > bestArea) {
            best = &d;
            bestArea = overlap;
        }
    }
    if (!best) {
        return std::nullopt;
    }
    return *best;
}

std::optional<DisplayGeometry> displayNearest(CGPoint point, const std::vector<DisplayGeometry>& in,
                                              DisplayArea area) {
    if (in.empty()) {
        return std::nullopt;
    }
    const DisplayGeometry* best = &in.front();
    double bestDistance = distance(point, (best->*area).center());
    for (const DisplayGeometry& d : in) {
        if (const double candidate = distance(point, (d.*area).center());
            candidate < bestDistance) {
            best = &d;
            bestDistance = candidate;
        }
    }
    return *best;
}

std::vector<double> partitionEdges(double length, std::int64_t count) {
    count = std::max<std::int64_t>(count, 0);
    std::vector<double> edges;
    edges.reserve(static_cast<std::size_t>(count) + 1);
    for (std::int64_t i = 0; i <= count; ++i) {
        edges.push_back(std::round(length * static_cast<double>(i) / static_cast<double>(count)));
    }
    return edges;
}

CGRect gridFrame(const CGRect& area, const GridSpan& span, double gap) {
    const double g = std::max(gap, 0.0);
    const auto columns = static_cast<double>(span.columns);
    const auto rows = static_cast<double>(span.rows);
    const double usableWidth = std::max(area.width() - g * (columns - 1), 0.0);
    const double usableHeight = std::max(area.height() - g * (rows - 1), 0.0);
    const std::vector<double> xs = partitionEdges(usableWidth, span.columns);
    const std::vector<double> ys = partitionEdges(usableHeight, span.rows);

    const auto endColumn = span.column + span.columnSpan;
    const auto endRow = span.row + span.rowSpan;
    const auto at = [](const std::vector<double>& edges, std::int64_t i) {
        return edges[static_cast<std::size_t>(i)];
    };
    const auto gapsBefore = [g](std::int64_t cells) {
        return g * static_cast<double>(std::max<std::int64_t>(cells, 0));
    };

    const double x = gapsBefore(span.column) + (area.minX() + at(xs, span.column));
    const double y = gapsBefore(span.row) + (area.minY() + at(ys, span.row));
    const double right = gapsBefore(endColumn - 1) + (area.minX() + at(xs, endColumn));
    const double bottom = gapsBefore(endRow - 1) + (area.minY() + at(ys, endRow));
    return CGRectIntegral({x, y, std::max(right - x, 1.0), std::max(bottom - y, 1.0)});
}

CGRect snapFrame(CGPoint containing, const DisplayGeometry& on, std::int64_t columns,
                 std::int64_t rows, double gap) {
    const CGRect& area = on.visibleFrame;
    const std::int64_t c = std::max<std::int64_t>(columns, 1);
    const std::int64_t r = std::max<std::int64_t>(rows, 1);
    const double cellWidth = std::max(area.width() / static_cast<double>(c), 1.0);
    const double cellHeight = std::max(area.height() / static_cast<double>(r), 1.0);
    const std::int64_t column = cellIndex(containing.x - area.minX(), cellWidth, c);
    const std::int64_t row = cellIndex(containing.y - area.minY(), cellHeight, r);
    const GridSpan span{.columns = c,
                        .rows = r,
                        .column = column,
                        .row = row,
                        .columnSpan = std::min<std::int64_t>(1, c - column),
                        .rowSpan = std::min<std::int64_t>(1, r - row)};
    return gridFrame(area, span, gap);
}

} // namespace TilmoraCoordinateSpace
} // namespace tilmora
