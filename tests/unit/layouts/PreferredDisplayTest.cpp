#include "geometry/TilmoraCoordinateSpace.h"
#include "layouts/SavedWindowPlacement.h"

#include <gtest/gtest.h>

#include <string>

using namespace tilmora;

namespace {

// Three displays, top-left space: a primary with a panel, one to its right, one far below.
std::vector<DisplayGeometry> displays() {
    std::vector<DisplayGeometry> list(3);
    list[0] = {1,   QStringLiteral("Built-in"), {}, {}, {0, 0, 1440, 900}, {0, 25, 1440, 875}, 2,
               true};
    list[1] = {
        2,    QStringLiteral("Studio"), {}, {}, {1440, 0, 1920, 1080}, {1440, 0, 1920, 1080}, 1,
        false};
    list[2] = {
        3, QStringLiteral("Projector"), {}, {}, {0, 3000, 800, 600}, {0, 3000, 800, 600}, 1, false};
    return list;
}

struct PreferredCase {
    std::string name;
    std::optional<std::uint32_t> displayID;
    std::optional<QString> displayName;
    std::optional<WindowFrame> displayFrame;
    std::optional<CGRect> fallback;
    std::optional<std::uint32_t> expected;
};

class PreferredDisplayTest : public ::testing::TestWithParam<PreferredCase> {};

TEST_P(PreferredDisplayTest, FindsTheDisplayAWindowBelongsToNow) {
    SavedWindowPlacement saved;
    saved.displayID = GetParam().displayID;
    saved.displayName = GetParam().displayName;
    saved.displayFrame = GetParam().displayFrame;
    const auto found = saved.preferredDisplay(displays(), GetParam().fallback);
    EXPECT_EQ(found ? std::optional(found->id) : std::nullopt, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, PreferredDisplayTest,
    ::testing::Values(
        PreferredCase{"SameId", 2, QStringLiteral("Built-in"), std::nullopt, std::nullopt, 2},
        PreferredCase{"SameNameWhenTheIdIsGone", 9, QStringLiteral("Projector"),
                      WindowFrame{0, 25, 1440, 875}, std::nullopt, 3},
        PreferredCase{"UsableAreaEightPointsTaller", 9, std::nullopt, WindowFrame{0, 25, 1440, 867},
                      std::nullopt, 1},
        PreferredCase{"LargestOverlap", 9, std::nullopt, WindowFrame{1000, 25, 1440, 866},
                      std::nullopt, 2},
        PreferredCase{"NoOverlapNearestCentre", 9, std::nullopt, WindowFrame{0, 2000, 800, 600},
                      CGRect(1500, 10, 100, 100), 3},
        PreferredCase{"FallbackFrame", 9, std::nullopt, std::nullopt, CGRect(1500, 10, 100, 100),
                      2},
        PreferredCase{"NothingToGoOn", std::nullopt, std::nullopt, std::nullopt, std::nullopt, 1}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(PreferredDisplayTest, SameUsableAreaMeansWithinEightPointsInclusive) {
    // Two overlapping displays (a mirrored pair): the first within 8 points wins over overlap.
    std::vector<DisplayGeometry> mirrored(2);
    mirrored[0].id = 1;
    mirrored[0].visibleFrame = {0, 0, 1000, 1000};
    mirrored[1].id = 2;
    mirrored[1].visibleFrame = {8, 0, 1000, 1000};
    SavedWindowPlacement saved;
    saved.displayFrame = WindowFrame{8, 0, 1000, 1000};
    EXPECT_EQ(saved.preferredDisplay(mirrored, std::nullopt)->id, 1u);
    saved.displayFrame = WindowFrame{9, 0, 1000, 1000};
    EXPECT_EQ(saved.preferredDisplay(mirrored, std::nullopt)->id, 2u);
}

TEST(PreferredDisplayTest, NoDisplaysNoPreference) {
    SavedWindowPlacement saved;
    saved.displayFrame = WindowFrame{0, 25, 1440, 875};
    EXPECT_FALSE(saved.preferredDisplay({}, CGRect(0, 0, 100, 100)));
    saved.displayFrame.reset();
    EXPECT_FALSE(saved.preferredDisplay({}, std::nullopt));
}

} // namespace
