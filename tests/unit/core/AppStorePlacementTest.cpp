#include "core/AppStore.h"
#include "core/FrameMapping.h"
#include "platform/EventModifierFlags.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

// Mail's inbox, frontmost, on the built-in display; refreshes are counted.
struct MailDesk {
    MailDesk() {
        fake.windowSystem.setScreens({builtInScreen});
        fake.windowSystem.addApplication(10, QStringLiteral("org.example.Mail"),
                                         QStringLiteral("Mail"));
        mail = fake.windowSystem.addWindow(10, {100, 100, 600, 400}, QStringLiteral("Inbox"));
        fake.windowSystem.setFrontmostApplication(10);
        QObject::connect(&store, &AppStore::windowsChanged, [this] { ++refreshes; });
    }
    CGRect mailFrame() { return fake.windowSystem.window(mail).frame; }

    FakePlatform fake;
    AppStore store{fake.platform()};
    WindowElement mail;
    int refreshes = 0;
};

class AppStorePlacementTest : public ::testing::Test, protected MailDesk {};

TEST_F(AppStorePlacementTest, QuickLayoutUsesTheDisplayGapAndClampsToTheMinimum) {
    store.refresh();
    store.updateDisplayProfile(1, std::nullopt, std::nullopt, 8);
    store.apply(LayoutAction::rightThird);
    EXPECT_EQ(mailFrame(), CGRect(965, 25, 475, 875));
    // A usable area too small for the minimum size is filled, not overrun.
    fake.windowSystem.setScreens({{{0, 0, 300, 100}, {0, 0, 300, 100}, {}, 1.0, 1}});
    store.apply(LayoutAction::leftThird);
    EXPECT_EQ(mailFrame(), CGRect(0, 0, 120, 100));
}

TEST_F(AppStorePlacementTest, LimitedWindowSucceedsWithTheSuffixAndARefusedOneFails) {
    fake.windowSystem.window(mail).minimumSize = CGSize{1000, 0};
    store.apply(LayoutAction::leftHalf);
    EXPECT_EQ(store.statusMessage(),
              QStringLiteral("Left Half applied to Mail. App limited final size to 1000 x 875 "
                             "instead of 720 x 875."));
    fake.windowSystem.window(mail).sizeWriteRefusal = -25200;
    store.apply(LayoutAction::center);
    EXPECT_EQ(
        store.statusMessage(),
        QStringLiteral("Tilmora could not move that window. AX size: -25200, AX position: 0"));
}

TEST(PlacementFailureTest, EveryCommandReportsTheErrorAndSchedulesNothing) {
    const QString noTarget = QStringLiteral("No target window is available.");
    // clang-format off
    const std::pair<std::function<void(MailDesk&)>, QString> cases[] = {
        {[](auto& d) { d.fake.windowSystem.setTrusted(false); }, QStringLiteral("Tilmora needs an X11 session with a window manager before it can arrange windows.")},
        {[](auto& d) { d.fake.windowSystem.setFrontmostApplication({}); }, noTarget},
        {[](auto& d) { d.fake.windowSystem.setScreens({}); }, noTarget},
        {[](auto& d) { d.fake.windowSystem.close(d.mail); }, noTarget}};
    // clang-format on
    for (const auto& [script, message] : cases) {
        MailDesk desk;
        script(desk);
        const std::function<void()> commands[] = {[&] { desk.store.apply(LayoutAction::maximize); },
                                                  [&] { desk.store.applyGrid(0, 0, 1, 1); },
                                                  [&] { desk.store.showPlacementCanvas(); }};
        for (const auto& command : commands) {
            desk.store.setStatusMessage(std::nullopt);
            command();
            EXPECT_EQ(desk.store.statusMessage(), message);
        }
        desk.fake.scheduler.advance(1s);
        EXPECT_EQ(desk.refreshes, 0);
    }
}

TEST_F(AppStorePlacementTest, GridSanitisesTheBlockAndNamesItAsAsked) {
    const QString cell = QStringLiteral("Grid cell applied to Mail.");
    const QString area = QStringLiteral("Grid area applied to Mail.");
    // Columns, rows, gap; column, row, column span, row span; the frame and the text.
    // clang-format off
    const std::tuple<std::int64_t, std::int64_t, double, std::int64_t, std::int64_t, std::int64_t, std::int64_t, CGRect, QString> cases[] = {
        {2, 1, 0,  0,  0,  1, 1, {0, 25, 720, 875},   cell},
        {3, 2, 0,  5,  0,  9, 1, {960, 25, 480, 438}, area},  // the span is cut at the last column
        {2, 2, 0,  0,  0,  0, 0, {0, 25, 720, 438},   area},  // a zero span reads as an area
        {2, 1, 10, 1,  0,  1, 1, {725, 25, 715, 875}, cell},
        {4, 3, 0,  -2, -2, 2, 3, {0, 25, 720, 875},   area}}; // a negative cell is the first
    // clang-format on
    store.refresh();
    for (const auto& [columns, rows, gap, column, row, columnSpan, rowSpan, frame, text] : cases) {
        store.updateDisplayProfile(1, columns, rows, gap);
        store.applyGrid(column, row, columnSpan, rowSpan);
        EXPECT_EQ(mailFrame(), frame) << column << ", " << row;
        EXPECT_EQ(store.statusMessage(), text);
    }
}

TEST_F(AppStorePlacementTest, NextDisplayWrapsAndKeepsAMaximisedWindowMaximised) {
    fake.windowSystem.setScreens({builtInScreen, studioScreen});
    fake.windowSystem.window(mail).frame = {0, 25, 1440, 875};
    store.moveTargetToNextDisplay();
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Moved Mail to next display."));
    EXPECT_EQ(mailFrame(), CGRect(1440, 25, 1920, 1055));
    store.moveTargetToNextDisplay();
    EXPECT_EQ(mailFrame(), CGRect(0, 25, 1440, 875));
}

TEST(FrameMappingTest, KeepsRelativePlaceAndFullSpans) {
    const CGRect builtInArea{0, 25, 1440, 875};
    // The frame, the areas it is mapped from and to, the gap, the mapped frame.
    // clang-format off
    const std::tuple<CGRect, CGRect, CGRect, double, CGRect> cases[] = {
        // Within 4 points of the whole area: the whole destination, without gap.
        {{2, 27, 1437, 871}, builtInArea, {1440, 25, 1920, 1055}, 8, {1440, 25, 1920, 1055}},
        // Full height stays full (raw area); half the width scales.
        {{0, 25, 720, 875}, builtInArea, {1440, 25, 1920, 1055}, 0, {1440, 25, 960, 1055}},
        {{720, 25, 720, 875}, builtInArea, {1440, 0, 1920, 1055}, 0, {2400, 0, 960, 1055}},
        {{360, 243.75, 360, 218.75}, builtInArea, {0, 0, 2880, 1750}, 0, {720, 437, 720, 438}},
        // The gap insets both areas: the relative place is taken inside the insets.
        {{354, 329, 492, 392}, {100, 125, 1000, 800}, {0, 0, 1984, 1584}, 8, {500, 400, 984, 784}}};
    // clang-format on
    for (const auto& [frame, from, to, gap, expected] : cases) {
        EXPECT_EQ(mappedFrame(frame, from, to, gap), expected) << frame;
    }
}

TEST_F(AppStorePlacementTest, CanvasOpensTogglesAndPlacesTheWindowItWasOpenedFor) {
    store.showPlacementCanvas();
    EXPECT_EQ(store.statusMessage(), QStringLiteral("The Placement Canvas is not available."));
    FakeCanvas canvas;
    store.setPlacementCanvas(&canvas);
    store.refresh();
    store.showPlacementCanvas();
    ASSERT_TRUE(canvas.open);
    EXPECT_EQ(canvas.target.title, QStringLiteral("Inbox"));
    EXPECT_EQ(canvas.displays.size(), 1u);
    EXPECT_EQ(canvas.profiles.size(), 1);

    // Focus moves on and the window is retitled before the user draws: it is still found.
    fake.windowSystem.setFrontmostApplication({});
    fake.windowSystem.window(mail).title = QStringLiteral("Inbox (3)");
    canvas.apply({-50, 10, 50, 50});
    EXPECT_EQ(mailFrame(), CGRect(0, 25, 120, 90));
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Canvas placement applied to Mail."));

    // A second command while open only closes it.
    fake.windowSystem.clearCalls();
    store.showPlacementCanvas();
    EXPECT_FALSE(canvas.open);
    EXPECT_TRUE(fake.windowSystem.calls().empty());

    // A rectangle off every display is used as drawn.
    store.showPlacementCanvas();
    fake.windowSystem.setScreens({});
    canvas.apply({5000, 5000, 300, 200});
    EXPECT_EQ(mailFrame(), CGRect(5000, 5000, 300, 200));
}

TEST_F(AppStorePlacementTest, DroppedDragIsClampedToItsDisplay) {
    store.refresh();
    ManagedWindow dropped = *store.windowManager().targetWindow(std::nullopt, std::nullopt);
    store.applyDraggedPlacement(dropped, {1300, 800, 400, 300});
    EXPECT_EQ(mailFrame(), CGRect(1040, 600, 400, 300));
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Dropped Mail on canvas."));

    fake.windowSystem.setScreens({});
    store.applyDraggedPlacement(dropped, {0, 0, 400, 300});
    EXPECT_EQ(store.statusMessage(), QStringLiteral("No target window is available."));
}

TEST_F(AppStorePlacementTest, AModifierDragFollowsTheDragModifierSetAtThatMoment) {
    FakeCanvas canvas;
    store.setPlacementCanvas(&canvas);
    store.start();
    store.updateDisplayProfile(1, 2, 2, 0);
    const auto drag = [&](std::uint64_t held) {
        for (const auto type : {InputEvent::Type::leftMouseDown, InputEvent::Type::leftMouseDragged,
                                InputEvent::Type::leftMouseUp}) {
            fake.inputMonitor.deliver({type, {1000, 600}, held});
            fake.scheduler.runPending();
        }
    };
    // Super by default: Alt does nothing.
    drag(EventModifierFlags::option);
    EXPECT_EQ(mailFrame(), CGRect(100, 100, 600, 400));
    drag(EventModifierFlags::command);
    EXPECT_EQ(mailFrame(), CGRect(720, 463, 720, 437));
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Dropped Mail on canvas."));
    EXPECT_FALSE(canvas.open);

    store.setPlacementDragModifier(
        PlacementDragModifier::fromEventFlags(EventModifierFlags::option));
    store.apply(LayoutAction::leftHalf);
    drag(EventModifierFlags::command);
    EXPECT_EQ(mailFrame(), CGRect(0, 25, 720, 875));
    drag(EventModifierFlags::option | EventModifierFlags::shift);
    EXPECT_EQ(mailFrame(), CGRect(720, 463, 720, 437));
}

} // namespace
