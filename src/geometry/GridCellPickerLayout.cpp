#include "geometry/GridCellPickerLayout.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tilmora {

namespace {

// Truncation towards zero of a quotient that finite input keeps finite and in range.
std::int64_t truncated(double quotient) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!std::isfinite(quotient) || quotient >= limit || quotient < -limit) {
        qFatal("grid cell picker: point maps outside the grid (%f)", quotient);
    }
    return static_cast<std::int64_t>(quotient);
}

} // namespace

std::int64_t GridCellPickerLayout::columnCount() const {
    return std::max<std::int64_t>(columns, 1);
}

std::int64_t GridCellPickerLayout::rowCount() const {
    return std::max<std::int64_t>(rows, 1);
}

double GridCellPickerLayout::drawnSpacing() const {
    if (gap <= 0) {
        return 0;
    }
    return gap > maximumDrawnSpacing ? maximumDrawnSpacing : gap;
}

CGRect GridCellPickerLayout::contentArea(CGSize size) {
    return {margin, margin, std::max(size.width - 2 * margin, 1.0),
            std::max(size.height - 2 * margin, 1.0)};
}

CGRect GridCellPickerLayout::cellFrame(std::int64_t column, std::int64_t row, CGSize size) const {
    const CGRect content = contentArea(size);
    const double spacing = drawnSpacing();
    const auto c = static_cast<double>(columnCount());
    const auto r = static_cast<double>(rowCount());
    const double tileWidth = std::max(content.width() - spacing * (c - 1), 1.0) / c;
    const double tileHeight = std::max(content.height() - spacing * (r - 1), 1.0) / r;
    return CGRectIntegral({content.minX() + (spacing + tileWidth) * static_cast<double>(column),
                           content.minY() + (spacing + tileHeight) * static_cast<double>(row),
                           tileWidth, tileHeight});
}

GridCoordinate GridCellPickerLayout::coordinate(CGPoint point, CGSize size) const {
    const CGRect content = contentArea(size);
    // The 0.001 keeps a point on the far edge inside the last cell.
    const double x = std::min(std::max(point.x, content.minX()), content.maxX() - 0.001);
    const double y = std::min(std::max(point.y, content.minY()), content.maxY() - 0.001);
    const std::int64_t c = columnCount();
    const std::int64_t r = rowCount();
    const double cellWidth = std::max(content.width() / static_cast<double>(c), 1.0);
    const double cellHeight = std::max(content.height() / static_cast<double>(r), 1.0);
    return {
        std::min(c - 1, std::max<std::int64_t>(truncated((x - content.minX()) / cellWidth), 0)),
        std::min(r - 1, std::max<std::int64_t>(truncated((y - content.minY()) / cellHeight), 0))};
}

CGRect GridCellPickerLayout::highlightFrame(const GridSelection& selection, CGSize size) const {
    const CGRect first = cellFrame(selection.column, selection.row, size);
    const GridCoordinate lastCell = selection.lastCell();
    const CGRect last = cellFrame(lastCell.column, lastCell.row, size);
    return {first.minX(), first.minY(), last.maxX() - first.minX(), last.maxY() - first.minY()};
}

} // namespace tilmora
