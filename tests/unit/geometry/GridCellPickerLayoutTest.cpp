#include "geometry/GridCellPickerLayout.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

using namespace tilmora;

namespace {

// The tile drawn for a cell.
struct Tile {
    GridCoordinate cell;
    CGRect frame;
};
// The cell a point picks.
struct Pick {
    CGPoint point;
    GridCoordinate cell;
};
// The block dragged from one cell to another, and where its highlight is drawn.
struct Drag {
    GridCoordinate from;
    GridCoordinate to;
    GridSelection block;
    CGRect highlight;
};

struct Case {
    const char* name;
    GridCellPickerLayout picker;
    CGSize size;
    std::variant<Tile, Pick, Drag> expected;
};

GridSelection block(std::int64_t column, std::int64_t row, std::int64_t columns,
                    std::int64_t rows) {
    GridSelection result({column, row}, {column + columns - 1, row + rows - 1});
    return result;
}

const GridCellPickerLayout grid3x2{3, 2, 8};
const CGSize size300x200{300, 200};

// clang-format off
const Case cases[] = {
    // Content (12, 12, 276, 176), tiles 86.67 x 84 with 8 between.
    {"FirstTile", grid3x2, size300x200, Tile{{0, 0}, {12, 12, 87, 84}}},
    {"SecondTileRoundsOutward", grid3x2, size300x200, Tile{{1, 0}, {106, 12, 88, 84}}},
    {"LastTileEndsOnTheContentEdge", grid3x2, size300x200, Tile{{2, 1}, {201, 104, 87, 84}}},
    {"GapAbove18IsDrawnAs18", {3, 2, 30}, size300x200, Tile{{0, 0}, {12, 12, 80, 79}}},
    {"NegativeGapIsDrawnAsNone", {3, 2, -5}, size300x200, Tile{{1, 1}, {104, 100, 92, 88}}},
    {"ZeroColumnsDrawOneColumn", {0, 2, 8}, size300x200, Tile{{0, 1}, {12, 104, 276, 84}}},
    {"NegativeRowsDrawOneRow", {3, -4, 0}, size300x200, Tile{{2, 0}, {196, 12, 92, 176}}},
    {"TinyPickerKeepsAOnePointContentArea", {3, 2, 8}, {20, 10}, Tile{{0, 0}, {12, 12, 1, 1}}},

    {"PointInsideTheGrid", grid3x2, size300x200, Pick{{150, 100}, {1, 1}}},
    {"PointAboveAndLeftPicksTheFirstCell", grid3x2, size300x200, Pick{{-5, -5}, {0, 0}}},
    {"PointBelowAndRightPicksTheLastCell", grid3x2, size300x200, Pick{{400, 400}, {2, 1}}},
    {"FarCornerOfTheContentStaysInTheLastCell", grid3x2, size300x200, Pick{{288, 188}, {2, 1}}},
    {"MarginPicksTheEdgeCell", grid3x2, size300x200, Pick{{5, 150}, {0, 1}}},
    // x = 103 lies in the drawn space between tiles 0 and 1 (98.7 ... 106.7), nearer to tile 1,
    // but in column 0's band (12 ... 104): equal bands decide, not the nearer tile.
    {"SpaceBetweenTilesGoesByEqualBands", grid3x2, size300x200, Pick{{103, 50}, {0, 0}}},
    {"SpaceBetweenTilesPastTheBandEdge", grid3x2, size300x200, Pick{{104, 50}, {1, 0}}},
    {"GapDoesNotMoveTheBands", {3, 2, 30}, size300x200, Pick{{104, 50}, {1, 0}}},
    {"ZeroColumnsPickColumnZero", {0, 0, 8}, size300x200, Pick{{280, 180}, {0, 0}}},
    {"TinyPickerPicksAnEdgeCell", {8, 6, 8}, {10, 10}, Pick{{9, 9}, {0, 0}}},

    {"ClickIsOneCell", grid3x2, size300x200,
     Drag{{1, 1}, {1, 1}, block(1, 1, 1, 1), {106, 104, 88, 84}}},
    {"DragDownAndLeft", {4, 3, 0}, {412, 324},
     Drag{{3, 0}, {1, 2}, block(1, 0, 3, 3), {109, 12, 291, 300}}},
    {"SameDragReversed", {4, 3, 0}, {412, 324},
     Drag{{1, 2}, {3, 0}, block(1, 0, 3, 3), {109, 12, 291, 300}}},
    {"WholeGridCoversTheSpacing", grid3x2, size300x200,
     Drag{{0, 0}, {2, 1}, block(0, 0, 3, 2), {12, 12, 276, 176}}},
};
// clang-format on

class GridCellPickerLayoutTest : public testing::TestWithParam<Case> {};

TEST_P(GridCellPickerLayoutTest, Computes) {
    const Case& c = GetParam();
    if (const auto* tile = std::get_if<Tile>(&c.expected)) {
        EXPECT_EQ(c.picker.cellFrame(tile->cell.column, tile->cell.row, c.size), tile->frame);
    } else if (const auto* pick = std::get_if<Pick>(&c.expected)) {
        EXPECT_EQ(c.picker.coordinate(pick->point, c.size), pick->cell);
    } else {
        const auto& drag = std::get<Drag>(c.expected);
        const GridSelection selection(drag.from, drag.to);
        EXPECT_EQ(selection, drag.block);
        EXPECT_EQ(c.picker.highlightFrame(selection, c.size), drag.highlight);
        // Exactly the block's cells count as selected, none beside it.
        for (std::int64_t row = -1; row <= c.picker.rowCount(); ++row) {
            for (std::int64_t column = -1; column <= c.picker.columnCount(); ++column) {
                const bool inside = column >= drag.block.column && row >= drag.block.row &&
                                    column < drag.block.column + drag.block.columnSpan &&
                                    row < drag.block.row + drag.block.rowSpan;
                EXPECT_EQ(selection.contains(column, row), inside) << column << ", " << row;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, GridCellPickerLayoutTest, testing::ValuesIn(cases),
                         [](const testing::TestParamInfo<Case>& param) {
                             return std::string(param.param.name);
                         });

} // namespace
