// The canvas views as widgets: pointer input through the drag session to the applied frame,
// and what the live preview draws on which display.
#include "placement/PlacementCanvasPreviewState.h"
#include "ui/PassivePlacementCanvasView.h"
#include "ui/PlacementCanvasView.h"

#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

using namespace tilmora;

namespace {

// An 800 x 600 display at the origin, on the offscreen platform's one screen, with a 25-point
// strip at the top that is not usable.
DisplayGeometry screenDisplay(std::uint32_t id) {
    DisplayGeometry display;
    display.id = id;
    display.name = QStringLiteral("Display %1").arg(id);
    display.frame = {0, 0, 800, 600};
    display.visibleFrame = {0, 25, 800, 575};
    return display;
}

struct Gesture {
    const char* name;
    QPoint press;
    QPoint release;
    // Absent: the gesture cancels.
    std::optional<CGRect> applied;
};

class PlacementCanvasViewGesture : public testing::TestWithParam<Gesture> {};

TEST_P(PlacementCanvasViewGesture, AppliesOrCancels) {
    const DisplayGeometry display = screenDisplay(1);
    std::optional<CGRect> applied;
    int cancels = 0;
    PlacementCanvasView view(
        display, {}, {1, display.name, 2, 2, 8}, [&](const CGRect& frame) { applied = frame; },
        [&] { ++cancels; }, std::make_shared<CanvasDragSession>());
    view.show();

    QPoint press = GetParam().press;
    if (press.x() < 0) {
        // The header's cancel button.
        press = view.header().cancelButton().center().toPoint();
    }
    QTest::mousePress(&view, Qt::LeftButton, {}, press);
    QTest::mouseMove(&view, (press + GetParam().release) / 2);
    QTest::mouseMove(&view, GetParam().release);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, GetParam().release);

    EXPECT_EQ(applied, GetParam().applied);
    EXPECT_EQ(cancels, GetParam().applied ? 0 : 1);
}

// The usable area (0, 25, 800, 575) has a 2 x 2 grid with an
// 8-point gap: cells 396 wide, 283 and 284 high.
INSTANTIATE_TEST_SUITE_P(
    , PlacementCanvasViewGesture,
    testing::Values(
        Gesture{"DragAppliesTheDrawnRectangle", {100, 100}, {500, 400}, CGRect{100, 100, 400, 300}},
        Gesture{"DragFromTheTopStripStartsAtTheUsableEdge",
                {300, 5},
                {600, 300},
                CGRect{300, 25, 300, 275}},
        Gesture{"TooSmallIsAClickOnTheCellUnderTheRelease",
                {600, 400},
                {610, 420},
                CGRect{404, 317, 396, 283}},
        Gesture{"ACornerSpeckBecomesTheMinimumSizeInside",
                {770, 570},
                {799, 599},
                CGRect{640, 480, 160, 120}},
        Gesture{"PressOnTheCancelButton", {-1, -1}, {-1, -1}, std::nullopt}),
    [](const testing::TestParamInfo<Gesture>& param) { return std::string(param.param.name); });

TEST(PlacementCanvasViewTest, EscapeCancels) {
    const DisplayGeometry display = screenDisplay(1);
    int cancels = 0;
    PlacementCanvasView view(
        display, {}, {1, display.name, 2, 1, 0}, [](const CGRect&) {}, [&] { ++cancels; },
        std::make_shared<CanvasDragSession>());
    view.show();
    QTest::keyClick(&view, Qt::Key_Escape, Qt::ShiftModifier);
    EXPECT_EQ(cancels, 0);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(cancels, 1);
}

// Two displays at the same place (the offscreen platform has one screen): what each draws
// depends only on which display id the preview names.
TEST(PassivePlacementCanvasViewTest, PreviewAndHeaderOnlyOnTheDisplayHoldingThePreview) {
    const auto state = std::make_shared<PlacementCanvasPreviewState>(
        TilmoraWindow{}, QHash<std::uint32_t, DisplayLayoutProfile>{},
        PlacementDragModifier::command);
    PassivePlacementCanvasView first(screenDisplay(1), state);
    PassivePlacementCanvasView second(screenDisplay(2), state);
    EXPECT_TRUE(first.windowFlags().testFlag(Qt::WindowTransparentForInput));

    const auto alpha = [](QWidget& view, QPoint point) {
        return view.grab().toImage().pixelColor(point).alpha();
    };
    const QPoint header(40, 40);
    const QPoint inPreview(300, 300);
    const int backdrop = alpha(first, QPoint(700, 500));

    // Before the preview lands, every display shows its header.
    EXPECT_GT(alpha(first, header), 200);
    EXPECT_GT(alpha(second, header), 200);

    state->publish(CGRect{200, 200, 300, 200}, 2u, QStringLiteral("Display 2"));
    EXPECT_EQ(alpha(first, header), backdrop);
    EXPECT_EQ(alpha(first, inPreview), backdrop);
    EXPECT_GT(alpha(second, header), 200);
    EXPECT_GT(alpha(second, inPreview), backdrop + 40);

    state->publish(std::nullopt, std::nullopt, std::nullopt);
    EXPECT_EQ(alpha(second, inPreview), backdrop);
    EXPECT_GT(alpha(first, header), 200);
}

} // namespace
