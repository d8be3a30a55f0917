#include "geometry/TilmoraCoordinateSpace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace tilmora;
namespace space = tilmora::TilmoraCoordinateSpace;

namespace {

ScreenDescription screen(CGRect frame, CGRect visible, std::optional<std::uint32_t> number,
                         const char* name = "Screen") {
    return {frame, visible, QString::fromUtf8(name), 2.0, number};
}

// Primary 1440 x 900 with a menu bar and dock; a 1920 x 1080 display to its right.
std::vector<DisplayGeometry> sideBySide() {
    return space::currentDisplays({
        screen({0, 0, 1440, 900}, {0, 70, 1440, 805}, 1, "Built-in"),
        screen({1440, -180, 1920, 1080}, {1440, -180, 1920, 1055}, 2, "Studio"),
    });
}

TEST(CurrentDisplaysTest, FlipsAboutThePrimaryTopEdge) {
    const auto displays = space::currentDisplays({
        screen({0, 0, 1440, 900}, {0, 70, 1440, 805}, 69733378, "Built-in"),
        screen({1440, -180, 1920, 1080}, {1440, -180, 1920, 1080}, std::nullopt),
        screen({0, 900, 1920, 1080}, {0, 900, 1920, 1055}, 7),
        screen({-800.5, 100.25, 800.5, 600.5}, {-800.5, 100.25, 800.5, 600.5}, 9),
    });
    ASSERT_EQ(displays.size(), 4u);

    EXPECT_EQ(displays[0].id, 69733378u);
    EXPECT_EQ(displays[0].name, QStringLiteral("Built-in"));
    EXPECT_EQ(displays[0].frame, CGRect(0, 0, 1440, 900));
    EXPECT_EQ(displays[0].visibleFrame, CGRect(0, 25, 1440, 805));
    EXPECT_EQ(displays[0].appKitVisibleFrame, CGRect(0, 70, 1440, 805));
    EXPECT_EQ(displays[0].scaleFactor, 2.0);
    EXPECT_TRUE(displays[0].isMain);

    // Without a display number the 1-based position stands in.
    EXPECT_EQ(displays[1].id, 2u);
    EXPECT_EQ(displays[1].frame, CGRect(1440, 0, 1920, 1080));
    EXPECT_FALSE(displays[1].isMain);

    EXPECT_EQ(displays[2].frame, CGRect(0, -1080, 1920, 1080));
    EXPECT_EQ(displays[2].visibleFrame, CGRect(0, -1055, 1920, 1055));

    // Fractional AppKit rectangles become integral ones that contain them; appKit frames stay.
    EXPECT_EQ(displays[3].frame, CGRect(-801, 199, 801, 601));
    EXPECT_EQ(displays[3].appKitFrame, CGRect(-800.5, 100.25, 800.5, 600.5));
}

TEST(CurrentDisplaysTest, EmptyScreenListGivesNoDisplayAndNoMatches) {
    const auto displays = space::currentDisplays({});
    EXPECT_TRUE(displays.empty());
    EXPECT_FALSE(space::display(CGPoint{0, 0}, displays));
    EXPECT_FALSE(space::display(CGRect{0, 0, 10, 10}, displays));
}

struct PointCase {
    std::string name;
    CGPoint point;
    std::uint32_t expectedID;
};

class DisplayContainingPointTest : public ::testing::TestWithParam<PointCase> {};

TEST_P(DisplayContainingPointTest, PicksVisibleFrameThenFrameThenNearestCentre) {
    const auto found = space::display(GetParam().point, sideBySide());
    ASSERT_TRUE(found);
    EXPECT_EQ(found->id, GetParam().expectedID);
}

INSTANTIATE_TEST_SUITE_P(
    Points, DisplayContainingPointTest,
    ::testing::Values(PointCase{"InsideThePrimary", {100, 100}, 1},
                      // The menu bar is outside the visible frame but inside the frame.
                      PointCase{"OnTheMenuBar", {100, 5}, 1},
                      // Max edges are exclusive: the shared edge belongs to the right display.
                      PointCase{"OnTheSharedEdge", {1440, 100}, 2},
                      PointCase{"BelowThePrimaryNearestCentre", {700, 1000}, 1},
                      PointCase{"FarLeft", {-5000, 450}, 1}, PointCase{"FarRight", {9000, 540}, 2}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(DisplayContainingPointTest, EquidistantCentresGoToTheEarlierDisplay) {
    const auto displays = space::currentDisplays({
        screen({0, 0, 1000, 1000}, {0, 0, 1000, 1000}, 1),
        screen({2000, 0, 1000, 1000}, {2000, 0, 1000, 1000}, 2),
    });
    EXPECT_EQ(space::display(CGPoint{1500, 500}, displays)->id, 1u);
    EXPECT_EQ(space::display(CGPoint{1501, 500}, displays)->id, 2u);
}

struct RectCase {
    std::string name;
    CGRect rect;
    std::uint32_t expectedID;
};

class DisplayContainingRectTest : public ::testing::TestWithParam<RectCase> {};

TEST_P(DisplayContainingRectTest, PicksCentreThenOverlapThenNearestCentre) {
    // Two displays side by side, and a third well below them with nothing in between.
    const auto displays = space::currentDisplays({
        screen({0, 0, 1000, 1000}, {0, 0, 1000, 1000}, 1),
        screen({1000, 0, 1000, 1000}, {1000, 0, 1000, 1000}, 2),
        screen({0, -3000, 1000, 1000}, {0, -3000, 1000, 1000}, 3),
    });
    const auto found = space::display(GetParam().rect, displays);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->id, GetParam().expectedID);
}

INSTANTIATE_TEST_SUITE_P(
    Rectangles, DisplayContainingRectTest,
    ::testing::Values(RectCase{"CentreOnSecond", {900, 100, 400, 400}, 2},
                      // Centre in the empty space between row one and display 3: overlap decides.
                      RectCase{"LargerOverlapWins", {0, 800, 700, 1400}, 1},
                      RectCase{"EqualOverlapsGoToTheEarlier", {500, 900, 1000, 1200}, 1},
                      // The visible frame is never consulted for rectangles.
                      RectCase{"TouchingNothing", {300, 2500, 100, 100}, 3},
                      RectCase{"OffToTheRight", {5000, 0, 100, 100}, 2}),
    [](const auto& testCase) { return testCase.param.name; });

struct EdgesCase {
    double length;
    std::int64_t count;
    std::vector<double> expected;
};

class PartitionEdgesTest : public ::testing::TestWithParam<EdgesCase> {};

TEST_P(PartitionEdgesTest, RoundsEachEdgeHalfAwayFromZero) {
    EXPECT_EQ(space::partitionEdges(GetParam().length, GetParam().count), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, PartitionEdgesTest,
    ::testing::Values(EdgesCase{100, 3, {0, 33, 67, 100}}, EdgesCase{1001, 2, {0, 501, 1001}},
                      EdgesCase{867, 2, {0, 434, 867}}, EdgesCase{1432, 2, {0, 716, 1432}},
                      EdgesCase{1000.5, 1, {0, 1001}}, EdgesCase{-5, 2, {0, -3, -5}},
                      EdgesCase{0, 4, {0, 0, 0, 0, 0}}));

TEST(PartitionEdgesTest, ZeroCountGivesOneValueThatIsNotANumber) {
    const auto edges = space::partitionEdges(100, 0);
    ASSERT_EQ(edges.size(), 1u);
    EXPECT_TRUE(std::isnan(edges[0]));
}

struct SnapCase {
    std::string name;
    CGPoint point;
    std::int64_t columns, rows;
    double gap;
    CGRect expected;
};

class SnapFrameTest : public ::testing::TestWithParam<SnapCase> {};

TEST_P(SnapFrameTest, ReturnsTheCellUnderThePoint) {
    DisplayGeometry display;
    display.visibleFrame = {0, 25, 1440, 875};
    const auto& c = GetParam();
    EXPECT_EQ(space::snapFrame(c.point, display, c.columns, c.rows, c.gap), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Points, SnapFrameTest,
    ::testing::Values(
        SnapCase{"BottomRightCellWithGap", {1000, 600}, 2, 2, 8, {724, 467, 716, 433}},
        SnapCase{"TopLeftCellWithGap", {10, 30}, 2, 2, 8, {0, 25, 716, 434}},
        // A point in the gap belongs to the equal band that holds it, not to a neighbour.
        SnapCase{"PointInTheGap", {721, 30}, 2, 1, 8, {724, 25, 716, 875}},
        SnapCase{"ZeroColumnsIsOne", {1000, 600}, 0, -3, 0, {0, 25, 1440, 875}},
        SnapCase{"LeftOfAndAboveTheArea", {-500, -500}, 3, 2, 0, {0, 25, 480, 438}},
        SnapCase{"RightOfAndBelowTheArea", {5000, 5000}, 3, 2, 0, {960, 463, 480, 437}},
        SnapCase{"NegativeGapIsZero", {1000, 600}, 2, 2, -8, {720, 463, 720, 437}},
        SnapCase{"NotANumberIsTheFirstCell", {NAN, NAN}, 2, 2, 0, {0, 25, 720, 438}}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(SnapFrameTest, AreaSmallerThanTheGapsGivesOnePointCells) {
    DisplayGeometry display;
    display.visibleFrame = {0, 0, 10, 10};
    EXPECT_EQ(space::snapFrame({9, 9}, display, 4, 4, 8), CGRect(24, 24, 1, 1));
}

} // namespace
