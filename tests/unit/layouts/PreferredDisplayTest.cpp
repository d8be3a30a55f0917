#include "geometry/TilmoraCoordinateSpace.h"
#include "layouts/SavedWindowPlacement.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace tilmora;

namespace {

DisplayGeometry display(std::uint32_t id, const char* name, CGRect visibleFrame) {
    DisplayGeometry geometry;
    geometry.id = id;
    geometry.name = QString::fromUtf8(name);
    geometry.frame = geometry.visibleFrame = visibleFrame;
    return geometry;
}

TEST(PreferredDisplayTest, FindsTheDisplayAWindowBelongsToNow) {
    // Top-left space: a primary with a panel, one to its right, one far below.
    const std::vector<DisplayGeometry> displays{display(1, "Built-in", {0, 25, 1440, 875}),
                                                display(2, "Studio", {1440, 0, 1920, 1080}),
                                                display(3, "Projector", {0, 3000, 800, 600})};
    const std::optional<QString> none;
    const CGRect right{1500, 10, 100, 100};
    // Saved id, name and usable area, the window's current frame, the expected display.
    // clang-format off
    const std::tuple<std::optional<std::uint32_t>, std::optional<QString>, std::optional<WindowFrame>, std::optional<CGRect>, std::optional<std::uint32_t>> cases[] = {
        {2, QStringLiteral("Built-in"), std::nullopt, std::nullopt, 2},                    // same id
        {9, QStringLiteral("Projector"), WindowFrame{0, 25, 1440, 875}, std::nullopt, 3},  // same name
        {9, none, WindowFrame{0, 25, 1440, 867}, std::nullopt, 1},      // usable area 8 points taller
        {9, none, WindowFrame{1000, 25, 1440, 866}, std::nullopt, 2},   // largest overlap
        {9, none, WindowFrame{0, 2000, 800, 600}, right, 3},            // no overlap: nearest centre
        {9, none, std::nullopt, right, 2},                              // the window's frame
        {std::nullopt, none, std::nullopt, std::nullopt, 1}};           // nothing to go on
    // clang-format on
    for (const auto& [id, name, displayFrame, fallback, expected] : cases) {
        SavedWindowPlacement saved;
        saved.displayID = id;
        saved.displayName = name;
        saved.displayFrame = displayFrame;
        const auto found = saved.preferredDisplay(displays, fallback);
        EXPECT_EQ(found ? std::optional(found->id) : std::nullopt, expected);
    }
    SavedWindowPlacement saved;
    saved.displayFrame = WindowFrame{0, 25, 1440, 875};
    EXPECT_FALSE(saved.preferredDisplay({}, CGRect(0, 0, 100, 100)));
}

TEST(PreferredDisplayTest, SameUsableAreaMeansWithinEightPointsInclusive) {
    // A mirrored pair: the first within 8 points wins over overlap.
    const std::vector<DisplayGeometry> mirrored{display(1, "A", {0, 0, 1000, 1000}),
                                                display(2, "B", {8, 0, 1000, 1000})};
    SavedWindowPlacement saved;
    saved.displayFrame = WindowFrame{8, 0, 1000, 1000};
    EXPECT_EQ(saved.preferredDisplay(mirrored, std::nullopt)->id, 1u);
    saved.displayFrame = WindowFrame{9, 0, 1000, 1000};
    EXPECT_EQ(saved.preferredDisplay(mirrored, std::nullopt)->id, 2u);
}

} // namespace
