#include "geometry/TilmoraCoordinateSpace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

using namespace tilmora;
namespace space = tilmora::TilmoraCoordinateSpace;

namespace {

ScreenDescription screen(CGRect frame, CGRect visible, std::optional<std::uint32_t> number,
                         const char* name = "Screen") {
    return {frame, visible, QString::fromUtf8(name), 2.0, number};
}

// Square displays whose whole frame is usable.
std::vector<DisplayGeometry> squares(std::vector<CGPoint> origins) {
    std::vector<ScreenDescription> screens;
    for (const CGPoint origin : origins) {
        const CGRect frame{origin, {1000, 1000}};
        screens.push_back(screen(frame, frame, static_cast<std::uint32_t>(screens.size() + 1)));
    }
    return space::currentDisplays(screens);
}

TEST(CurrentDisplaysTest, FlipsAboutThePrimaryTopEdge) {
    const QString built = QStringLiteral("Built-in");
    const QString plain = QStringLiteral("Screen");
    const CGRect fractional{-800.5, 100.25, 800.5, 600.5};
    // Without a display number the 1-based position stands in. Fractional rectangles become
    // integral ones that contain them; the original frames stay.
    // clang-format off
    const std::vector<DisplayGeometry> expected{
        {69733378, built, {0, 0, 1440, 900}, {0, 70, 1440, 805}, {0, 0, 1440, 900}, {0, 25, 1440, 805}, 2.0, true},
        {2, plain, {1440, -180, 1920, 1080}, {1440, -180, 1920, 1080}, {1440, 0, 1920, 1080}, {1440, 0, 1920, 1080}, 2.0, false},
        {7, plain, {0, 900, 1920, 1080}, {0, 900, 1920, 1055}, {0, -1080, 1920, 1080}, {0, -1055, 1920, 1055}, 2.0, false},
        {9, plain, fractional, fractional, {-801, 199, 801, 601}, {-801, 199, 801, 601}, 2.0, false}};
    // clang-format on
    EXPECT_EQ(space::currentDisplays({
                  screen({0, 0, 1440, 900}, {0, 70, 1440, 805}, 69733378, "Built-in"),
                  screen({1440, -180, 1920, 1080}, {1440, -180, 1920, 1080}, std::nullopt),
                  screen({0, 900, 1920, 1080}, {0, 900, 1920, 1055}, 7),
                  screen(fractional, fractional, 9),
              }),
              expected);
    EXPECT_TRUE(space::currentDisplays({}).empty());
}

TEST(DisplayContainingTest, PointPicksVisibleFrameThenFrameThenNearestCentre) {
    // Primary 1440 x 900 with a panel and dock; a 1920 x 1080 display to its right.
    const auto displays = space::currentDisplays({
        screen({0, 0, 1440, 900}, {0, 70, 1440, 805}, 1),
        screen({1440, -180, 1920, 1080}, {1440, -180, 1920, 1055}, 2),
    });
    // clang-format off
    const std::pair<CGPoint, std::uint32_t> cases[] = {
        {{100, 100}, 1},
        {{100, 5}, 1},     // on the panel: outside the visible frame but inside the frame
        {{1440, 100}, 2},  // max edges are exclusive: the shared edge belongs to the right one
        {{700, 1000}, 1}, {{-5000, 450}, 1}, {{9000, 540}, 2}};
    // clang-format on
    for (const auto& [point, id] : cases) {
        EXPECT_EQ(space::display(point, displays)->id, id) << point;
    }
    // Equidistant centres go to the earlier display.
    const auto apart = squares({{0, 0}, {2000, 0}});
    EXPECT_EQ(space::display(CGPoint{1500, 500}, apart)->id, 1u);
    EXPECT_EQ(space::display(CGPoint{1501, 500}, apart)->id, 2u);
    EXPECT_FALSE(space::display(CGPoint{0, 0}, {}));
}

TEST(DisplayContainingTest, RectPicksCentreThenOverlapThenNearestCentre) {
    // Two displays side by side, and a third well below them with nothing in between.
    const auto displays = squares({{0, 0}, {1000, 0}, {0, -3000}});
    // clang-format off
    const std::pair<CGRect, std::uint32_t> cases[] = {
        {{900, 100, 400, 400}, 2},
        // Centre in the empty space between row one and display 3: overlap decides.
        {{0, 800, 700, 1400}, 1},
        {{500, 900, 1000, 1200}, 1},  // equal overlaps go to the earlier display
        {{300, 2500, 100, 100}, 3}, {{5000, 0, 100, 100}, 2}};
    // clang-format on
    for (const auto& [rect, id] : cases) {
        EXPECT_EQ(space::display(rect, displays)->id, id) << rect;
    }
    EXPECT_FALSE(space::display(CGRect{0, 0, 10, 10}, {}));
}

TEST(PartitionEdgesTest, RoundsEachEdgeHalfAwayFromZero) {
    // clang-format off
    const std::tuple<double, std::int64_t, std::vector<double>> cases[] = {
        {100, 3, {0, 33, 67, 100}}, {1001, 2, {0, 501, 1001}}, {867, 2, {0, 434, 867}},
        {1432, 2, {0, 716, 1432}}, {1000.5, 1, {0, 1001}}, {-5, 2, {0, -3, -5}},
        {0, 4, {0, 0, 0, 0, 0}}};
    // clang-format on
    for (const auto& [length, count, expected] : cases) {
        EXPECT_EQ(space::partitionEdges(length, count), expected) << length << " / " << count;
    }
    // A zero count gives one value that is not a number.
    const auto edges = space::partitionEdges(100, 0);
    ASSERT_EQ(edges.size(), 1u);
    EXPECT_TRUE(std::isnan(edges[0]));
}

TEST(SnapFrameTest, ReturnsTheCellUnderThePoint) {
    DisplayGeometry display;
    display.visibleFrame = {0, 25, 1440, 875};
    // clang-format off
    const std::tuple<CGPoint, std::int64_t, std::int64_t, double, CGRect> cases[] = {
        {{1000, 600}, 2, 2, 8, {724, 467, 716, 433}},
        {{10, 30}, 2, 2, 8, {0, 25, 716, 434}},
        // A point in the gap belongs to the equal band that holds it, not to a neighbour.
        {{721, 30}, 2, 1, 8, {724, 25, 716, 875}},
        {{1000, 600}, 0, -3, 0, {0, 25, 1440, 875}},  // zero and negative counts are one
        {{-500, -500}, 3, 2, 0, {0, 25, 480, 438}},
        {{5000, 5000}, 3, 2, 0, {960, 463, 480, 437}},
        {{1000, 600}, 2, 2, -8, {720, 463, 720, 437}},  // a negative gap is none
        {{NAN, NAN}, 2, 2, 0, {0, 25, 720, 438}}};
    // clang-format on
    for (const auto& [point, columns, rows, gap, expected] : cases) {
        EXPECT_EQ(space::snapFrame(point, display, columns, rows, gap), expected) << point;
    }
    // An area smaller than the gaps gives one-point cells.
    display.visibleFrame = {0, 0, 10, 10};
    EXPECT_EQ(space::snapFrame({9, 9}, display, 4, 4, 8), CGRect(24, 24, 1, 1));
}

} // namespace
