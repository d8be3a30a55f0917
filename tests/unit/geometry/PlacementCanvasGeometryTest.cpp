// What the canvas applies for a drag or a click, the size text, the grid lines and the passive
// preview, on a display with a panel and on one left of and above the primary display.
#include "geometry/PlacementCanvasGeometry.h"

#include <gtest/gtest.h>

using namespace tilmora;
namespace canvas = tilmora::PlacementCanvasGeometry;

namespace {

DisplayGeometry display(std::uint32_t id, CGRect frame, CGRect visible) {
    DisplayGeometry shown;
    shown.id = id;
    shown.frame = frame;
    shown.visibleFrame = visible;
    return shown;
}

// 1440 x 900 with a 25-point panel on top; a 1920 x 1080 display up and left of it.
const DisplayGeometry primary = display(1, {0, 0, 1440, 900}, {0, 25, 1440, 875});
const DisplayGeometry upLeft = display(2, {-1920, -200, 1920, 1080}, {-1920, -200, 1920, 1040});
const DisplayLayoutProfile twoByTwo{1, QString(), 2, 2, 8};

struct Gesture {
    const char* name;
    const DisplayGeometry& on;
    CGPoint start;
    CGPoint end;
    CGRect drawn;
    CGRect applied;
};

TEST(PlacementCanvasGeometryTest, ADragAppliesWhatWasDrawnAndTooLittleIsAClick) {
    // clang-format off
    const Gesture cases[] = {
        {"DrawnAsIs", primary, {100, 100}, {700, 500}, {100, 100, 600, 400}, {100, 100, 600, 400}},
        {"DrawnUpwards", primary, {700, 500}, {100, 100}, {100, 100, 600, 400}, {100, 100, 600, 400}},
        {"ClickIsTheCellUnderTheRelease", primary, {1000, 600}, {1000, 600}, {1000, 600, 0, 0}, {724, 467, 716, 433}},
        {"NarrowDragIsAClickAtItsEnd", primary, {100, 100}, {120, 400}, {100, 100, 20, 300}, {0, 25, 716, 434}},
        {"Exactly24IsDrawnThenEnlarged", primary, {500, 500}, {524, 524}, {500, 500, 24, 24}, {500, 500, 160, 120}},
        {"23WideIsAClick", primary, {500, 100}, {523, 200}, {500, 100, 23, 100}, {0, 25, 716, 434}},
        {"StartOnThePanelStartsAtTheUsableTop", primary, {100, 5}, {400, 300}, {100, 25, 300, 275}, {100, 25, 300, 275}},
        {"CrossingToAnotherDisplayStopsAtTheEdge", primary, {1000, 400}, {2000, 800}, {1000, 400, 440, 400}, {1000, 400, 440, 400}},
        {"TinyInTheCornerMovesInside", primary, {1410, 870}, {1440, 900}, {1410, 870, 30, 30}, {1280, 780, 160, 120}},
        {"NegativeOriginKeepsItsOffset", upLeft, {100, 100}, {700, 500}, {100, 100, 600, 400}, {-1820, -100, 600, 400}},
        {"ClickBelowTheUsableAreaTakesTheLastRow", upLeft, {10, 1070}, {10, 1070}, {10, 1040, 0, 0}, {-1920, 324, 956, 516}},
    };
    // clang-format on
    for (const Gesture& c : cases) {
        SCOPED_TRACE(c.name);
        const CGRect drawn = canvas::drawnRect(c.start, c.end, c.on);
        EXPECT_EQ(drawn, c.drawn);
        EXPECT_EQ(canvas::appliedFrame(drawn, c.end, c.on, twoByTwo), c.applied);
    }
    // A release without any drawing at all is a click too.
    EXPECT_EQ(canvas::appliedFrame(std::nullopt, {1000, 600}, primary, twoByTwo),
              CGRect(724, 467, 716, 433));
}

TEST(PlacementCanvasGeometryTest, SizeTextAndGridLines) {
    // clang-format off
    const std::pair<CGRect, const char*> texts[] = {
        {{100, 100, 600, 400}, "600 x 400 \u2022 19%"},
        {{0, 0, 1, 1}, "1 x 1 \u2022 0%"},
        {{0, 25, 1440, 875}, "1440 x 875 \u2022 100%"},
        {{0, 0, 720.9, 437.5}, "720 x 437 \u2022 25%"},  // 25.03 %
        {{0, 0, 0, 0}, "0 x 0 \u2022 0%"},
    };
    // clang-format on
    for (const auto& [rect, text] : texts) {
        EXPECT_EQ(canvas::previewText(rect, primary), QString::fromUtf8(text)) << rect;
    }

    const CGSize view{1440, 900};
    const std::vector<canvas::LineSegment> outline{
        {{0, 0}, {1440, 0}}, {{1440, 0}, {1440, 900}}, {{1440, 900}, {0, 900}}, {{0, 900}, {0, 0}}};
    std::vector<canvas::LineSegment> threeByTwo{
        {{480, 25}, {480, 900}}, {{960, 25}, {960, 900}}, {{0, 462.5}, {1440, 462.5}}};
    threeByTwo.insert(threeByTwo.end(), outline.begin(), outline.end());
    EXPECT_EQ(canvas::gridLines(primary, 3, 2, view), threeByTwo);
    EXPECT_EQ(canvas::gridLines(primary, 1, 1, view), outline);
    EXPECT_EQ(canvas::gridLines(primary, 0, -1, view), outline);
}

TEST(PlacementCanvasGeometryTest, PassivePreviewShowsOnlyOnTheDisplayHoldingIt) {
    struct Case {
        const char* name;
        std::optional<CGRect> frame;
        std::optional<std::uint32_t> active;
        const DisplayGeometry& on;
        std::optional<CGRect> shown;
        bool header;
    };
    // clang-format off
    const Case cases[] = {
        {"BeforeTheFirstPreviewEveryHeaderShows", std::nullopt, std::nullopt, upLeft, std::nullopt, true},
        {"OnItsDisplay", CGRect{-1420, -100, 600.5, 400}, 2, upLeft, CGRect{500, 100, 601, 400}, true},
        {"OtherDisplayShowsNothing", CGRect{100, 100, 600, 400}, 1, upLeft, std::nullopt, false},
        {"CutToTheUsableArea", CGRect{100, 0, 600, 400}, 1, primary, CGRect{100, 25, 600, 375}, true},
        {"NothingLeftAfterTheCut", CGRect{100, 0, 600, 20}, 1, primary, std::nullopt, true},
        {"ClearedPreviewKeepsTheHeader", std::nullopt, 1, primary, std::nullopt, true},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(canvas::passivePreviewRect(c.frame, c.active, c.on), c.shown);
        EXPECT_EQ(canvas::showsPassiveHeader(c.active, c.on), c.header);
    }
}

} // namespace
