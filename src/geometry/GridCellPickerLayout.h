// Where the grid cell picker draws its tiles and which cell a point picks, on whatever size the
// picker is given. The drawn spacing follows the display's gap; picking ignores it and cuts the
// content area into equal bands, so the space between two tiles still belongs to one of them.
#pragma once

#include "geometry/CGGeometry.h"
#include "geometry/GridSelection.h"

#include <cstdint>

namespace tilmora {

struct GridCellPickerLayout {
    static constexpr double margin = 12;
    static constexpr double maximumDrawnSpacing = 18;

    std::int64_t columns = 1;
    std::int64_t rows = 1;
    double gap = 0;

    // Counts below 1 act as 1.
    std::int64_t columnCount() const;
    std::int64_t rowCount() const;
    // The gap held to 0 ... 18.
    double drawnSpacing() const;

    // The size inset by the margin on every side, never less than 1 x 1.
    static CGRect contentArea(CGSize size);
    // Integral: origin rounded down, far edges up.
    CGRect cellFrame(std::int64_t column, std::int64_t row, CGSize size) const;
    // Always a cell of the grid: points outside the content area pick the nearest edge cell.
    GridCoordinate coordinate(CGPoint point, CGSize size) const;
    // From the block's first tile's top-left corner to its last tile's bottom-right one.
    CGRect highlightFrame(const GridSelection& selection, CGSize size) const;
};

} // namespace tilmora
