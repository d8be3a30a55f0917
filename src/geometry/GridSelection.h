// A cell of the grid cell picker and a rectangular block of cells spanning two of them.
#pragma once

#include <cstdint>
#include <ostream>

namespace tilmora {

struct GridCoordinate {
    std::int64_t column = 0;
    std::int64_t row = 0;

    friend bool operator==(const GridCoordinate&, const GridCoordinate&) = default;
};

struct GridSelection {
    std::int64_t column = 0;
    std::int64_t row = 0;
    std::int64_t columnSpan = 1;
    std::int64_t rowSpan = 1;

    // The block with both cells at opposite corners, whichever order they come in.
    GridSelection(GridCoordinate start, GridCoordinate end);

    bool contains(std::int64_t cellColumn, std::int64_t cellRow) const;
    GridCoordinate lastCell() const { return {column + columnSpan - 1, row + rowSpan - 1}; }

    friend bool operator==(const GridSelection&, const GridSelection&) = default;
};

std::ostream& operator<<(std::ostream& stream, const GridCoordinate& cell);
std::ostream& operator<<(std::ostream& stream, const GridSelection& selection);

} // namespace tilmora
