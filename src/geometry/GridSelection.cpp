#include "geometry/GridSelection.h"

#include <QtGlobal>

#include <algorithm>

namespace tilmora {

namespace {

// |a - b| + 1; a block wider than 64 bits can hold is a programming error, not input.
std::int64_t span(std::int64_t a, std::int64_t b) {
    std::int64_t difference = 0;
    std::int64_t result = 0;
    if (__builtin_sub_overflow(std::max(a, b), std::min(a, b), &difference) ||
        __builtin_add_overflow(difference, 1, &result)) {
        qFatal("grid selection span overflows");
    }
    return result;
}

} // namespace

GridSelection::GridSelection(GridCoordinate start, GridCoordinate end)
    : column(std::min(start.column, end.column))
    , row(std::min(start.row, end.row))
    , columnSpan(span(start.column, end.column))
    , rowSpan(span(start.row, end.row)) {}

bool GridSelection::contains(std::int64_t cellColumn, std::int64_t cellRow) const {
    return column <= cellColumn && cellColumn - column < columnSpan && row <= cellRow &&
           cellRow - row < rowSpan;
}

std::ostream& operator<<(std::ostream& stream, const GridCoordinate& cell) {
    return stream << "(column " << cell.column << ", row " << cell.row << ')';
}

std::ostream& operator<<(std::ostream& stream, const GridSelection& selection) {
    return stream << "(column " << selection.column << ", row " << selection.row << ", span "
                  << selection.columnSpan << " x " << selection.rowSpan << ')';
}

} // namespace tilmora
