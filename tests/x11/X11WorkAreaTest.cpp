// Usable areas: struts reserve space only on the monitor they reach into.
#include "platform/x11/X11WorkArea.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

// Two monitors side by side, as on most test servers: 1440 x 900 and 1920 x 1080.
const X11Rect left{0, 0, 1440, 900};
const X11Rect right{1440, 0, 1920, 1080};

// Panels as their _NET_WM_STRUT_PARTIAL gives them, measured from the root's edges.
const X11Strut topAcrossBoth{.top = 30, .topEndX = 3359};
const X11Strut topOfRight{.top = 30, .topStartX = 1440, .topEndX = 3359};
const X11Strut topOfLeft{.top = 30, .topEndX = 1439};
// 180 px below the left monitor plus a 40 px panel.
const X11Strut bottomOfLeft{.bottom = 220, .bottomEndX = 1439};
const X11Strut innerEdgeOfRight{.left = 1488, .leftEndY = 1079};

struct AreaCase {
    const char* name;
    std::vector<X11Strut> struts;
    X11Rect expectedLeft;
    X11Rect expectedRight;
};

class UsableAreas : public testing::TestWithParam<AreaCase> {};

TEST_P(UsableAreas, ShrinkOnlyTheMonitorsThePanelsAreOn) {
    const auto areas = usableAreas({left, right}, GetParam().struts, 3360, 1080);
    ASSERT_EQ(areas.size(), 2U);
    EXPECT_EQ(areas[0], GetParam().expectedLeft);
    EXPECT_EQ(areas[1], GetParam().expectedRight);
}

INSTANTIATE_TEST_SUITE_P(
    X11, UsableAreas,
    testing::Values(
        AreaCase{"None", {}, left, right},
        AreaCase{"TopPanelAcrossBoth", {topAcrossBoth}, {0, 30, 1440, 870}, {1440, 30, 1920, 1050}},
        AreaCase{"TopPanelOnRightOnly", {topOfRight}, left, {1440, 30, 1920, 1050}},
        AreaCase{"BottomOfSmallerMonitor", {bottomOfLeft}, {0, 0, 1440, 860}, right},
        AreaCase{"InnerEdgeOfRight", {innerEdgeOfRight}, left, {1488, 0, 1872, 1080}},
        AreaCase{"TwoPanelsOnOneMonitor", {topOfLeft, bottomOfLeft}, {0, 30, 1440, 830}, right}),
    [](const testing::TestParamInfo<AreaCase>& p) { return std::string(p.param.name); });

TEST(X11WorkArea, AShortPanelLeavesTheLargestRectangle) {
    // A 200 px wide panel at the top left: the strip below it (full width) is larger than the
    // strip beside it (full height).
    const X11Rect area = largestRemainder({0, 0, 1000, 800}, {0, 0, 200, 30});
    EXPECT_EQ(area, (X11Rect{0, 30, 1000, 770}));
    // A tall narrow panel: the part beside it wins.
    EXPECT_EQ(largestRemainder({0, 0, 1000, 800}, {0, 0, 40, 700}), (X11Rect{40, 0, 960, 800}));
}

TEST(X11WorkArea, PublishedWorkAreasAreMatchedByOverlap) {
    const auto areas = matchWorkAreas({left, right}, {{1440, 27, 1920, 1053}, {0, 27, 1440, 873}});
    EXPECT_EQ(areas[0], (X11Rect{0, 27, 1440, 873}));
    EXPECT_EQ(areas[1], (X11Rect{1440, 27, 1920, 1053}));
    EXPECT_EQ(matchWorkAreas({left}, {})[0], left);
}

} // namespace
} // namespace tilmora
