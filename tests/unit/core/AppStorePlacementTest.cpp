#include "core/AppStore.h"
#include "core/FrameMapping.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <string>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

const ScreenDescription& builtIn = builtInScreen;
const ScreenDescription& studio = studioScreen;

class AppStorePlacementTest : public ::testing::Test {
protected:
    AppStorePlacementTest() {
        fake.windowSystem.setScreens({builtIn});
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

TEST_F(AppStorePlacementTest, QuickLayoutReportsAndRefreshesSoon) {
    store.apply(LayoutAction::leftHalf);
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Left Half applied to Mail."));
    EXPECT_EQ(mailFrame(), CGRect(0, 25, 720, 875));
    fake.scheduler.advance(249ms);
    EXPECT_EQ(refreshes, 0);
    fake.scheduler.advance(1ms);
    EXPECT_EQ(refreshes, 1);
}

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

TEST_F(AppStorePlacementTest, LimitedWindowSucceedsWithTheSuffix) {
    fake.windowSystem.window(mail).minimumSize = CGSize{1000, 0};
    store.apply(LayoutAction::leftHalf);
    EXPECT_EQ(store.statusMessage(),
              QStringLiteral("Left Half applied to Mail. App limited final size to 1000 x 875 "
                             "instead of 720 x 875."));
}

struct FailureCase {
    std::string name;
    std::function<void(FakePlatform&, WindowElement)> script;
    QString message;
};

class PlacementFailureTest : public AppStorePlacementTest,
                             public ::testing::WithParamInterface<FailureCase> {};

TEST_P(PlacementFailureTest, EveryCommandReportsTheErrorAndSchedulesNothing) {
    GetParam().script(fake, mail);
    const std::vector<std::function<void()>> commands{
        [&] { store.apply(LayoutAction::maximize); },
        [&] { store.applyGrid(0, 0, 1, 1); },
        [&] { store.showPlacementCanvas(); },
    };
    for (const auto& command : commands) {
        store.setStatusMessage(std::nullopt);
        command();
        EXPECT_EQ(store.statusMessage(), GetParam().message);
    }
    fake.scheduler.advance(1s);
    EXPECT_EQ(refreshes, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, PlacementFailureTest,
    ::testing::Values(
        FailureCase{
            "NoAccess", [](auto& f, auto) { f.windowSystem.setTrusted(false); },
            QStringLiteral("Tilmora needs Accessibility access before it can arrange windows.")},
        FailureCase{"NoTarget", [](auto& f, auto) { f.windowSystem.setFrontmostApplication({}); },
                    QStringLiteral("No target window is available.")},
        FailureCase{"NoDisplay", [](auto& f, auto) { f.windowSystem.setScreens({}); },
                    QStringLiteral("No target window is available.")},
        FailureCase{"FrontmostWithoutWindows", [](auto& f, auto w) { f.windowSystem.close(w); },
                    QStringLiteral("No target window is available.")}),
    [](const auto& testCase) { return testCase.param.name; });

TEST_F(AppStorePlacementTest, RefusedWritesAndFixedWindowsAreReported) {
    fake.windowSystem.window(mail).sizeWriteRefusal = -25200;
    store.apply(LayoutAction::center);
    EXPECT_EQ(
        store.statusMessage(),
        QStringLiteral("Tilmora could not move that window. AX size: -25200, AX position: 0"));
    fake.windowSystem.window(mail).isSizeSettable = false;
    store.apply(LayoutAction::center);
    EXPECT_EQ(store.statusMessage(),
              QStringLiteral("That window does not allow programmatic resize or move."));
}

TEST_F(AppStorePlacementTest, WindowClosingMidPlacementIsReported) {
    // Takes the first pass, then closes while Tilmora waits for it to settle.
    fake.windowSystem.setSettleHook([&](WindowElement w) { fake.windowSystem.close(w); });
    store.apply(LayoutAction::leftHalf);
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Tilmora could not move that window. AX "
                                                    "size: -25200, AX position: -25200"));
}

TEST_F(AppStorePlacementTest, WindowAlreadyInPlaceIsStillWritten) {
    fake.windowSystem.window(mail).frame = {0, 25, 1440, 875};
    fake.windowSystem.clearCalls();
    store.apply(LayoutAction::maximize);
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Maximize applied to Mail."));
    EXPECT_EQ(fake.windowSystem.calls().size(), 5u); // raise, three writes, settle
}

TEST_F(AppStorePlacementTest, SelectedWindowIsTheTargetAndAMissingOneIsAnError) {
    const WindowElement second =
        fake.windowSystem.addWindow(10, {0, 0, 500, 500}, QStringLiteral("Drafts"));
    store.refresh();
    store.setSelectedWindowID(QStringLiteral("org.example.Mail-10-1-Drafts"));
    store.apply(LayoutAction::rightHalf);
    EXPECT_EQ(fake.windowSystem.window(second).frame, CGRect(720, 25, 720, 875));
    fake.windowSystem.close(second);
    store.apply(LayoutAction::rightHalf);
    EXPECT_EQ(store.statusMessage(), QStringLiteral("The selected window is no longer available."));
}

struct GridCase {
    std::string name;
    std::int64_t columns, rows;
    double gap;
    std::int64_t column, row, columnSpan, rowSpan;
    CGRect expected;
    const char* message;
};

class GridPlacementTest : public AppStorePlacementTest,
                          public ::testing::WithParamInterface<GridCase> {};

TEST_P(GridPlacementTest, SanitisesTheBlockAndNamesItAsAsked) {
    const auto& c = GetParam();
    store.refresh();
    store.updateDisplayProfile(1, c.columns, c.rows, c.gap);
    store.applyGrid(c.column, c.row, c.columnSpan, c.rowSpan);
    EXPECT_EQ(mailFrame(), c.expected);
    EXPECT_EQ(store.statusMessage(), QString::fromUtf8(c.message));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, GridPlacementTest,
    ::testing::Values(
        GridCase{"FirstCell", 2, 1, 0, 0, 0, 1, 1, {0, 25, 720, 875}, "Grid cell applied to Mail."},
        GridCase{"SpanCutAtTheLastColumn",
                 3,
                 2,
                 0,
                 5,
                 0,
                 9,
                 1,
                 {960, 25, 480, 438},
                 "Grid area applied to Mail."},
        GridCase{"ZeroSpanReadsAsArea",
                 2,
                 2,
                 0,
                 0,
                 0,
                 0,
                 0,
                 {0, 25, 720, 438},
                 "Grid area applied to Mail."},
        GridCase{"GapBetweenCells",
                 2,
                 1,
                 10,
                 1,
                 0,
                 1,
                 1,
                 {725, 25, 715, 875},
                 "Grid cell applied to Mail."},
        GridCase{"NegativeCellIsTheFirst",
                 4,
                 3,
                 0,
                 -2,
                 -2,
                 2,
                 3,
                 {0, 25, 720, 875},
                 "Grid area applied to Mail."}),
    [](const auto& testCase) { return testCase.param.name; });

TEST_F(AppStorePlacementTest, GridGoesToTheSelectedDisplayOnlyWithSeveral) {
    fake.windowSystem.setScreens({builtIn, studio});
    store.refresh();
    store.selectDisplay(2);
    store.applyGrid(0, 0, 1, 1);
    EXPECT_EQ(mailFrame(), CGRect(1440, 25, 960, 1055));

    fake.windowSystem.setScreens({builtIn});
    fake.windowSystem.window(mail).frame = {100, 100, 600, 400};
    store.applyGrid(0, 0, 1, 1);
    EXPECT_EQ(mailFrame(), CGRect(0, 25, 720, 875));
}

TEST_F(AppStorePlacementTest, NextDisplayWrapsAndKeepsAMaximisedWindowMaximised) {
    fake.windowSystem.setScreens({builtIn, studio});
    fake.windowSystem.window(mail).frame = {0, 25, 1440, 875};
    store.moveTargetToNextDisplay();
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Moved Mail to next display."));
    EXPECT_EQ(mailFrame(), CGRect(1440, 25, 1920, 1055));
    store.moveTargetToNextDisplay();
    EXPECT_EQ(mailFrame(), CGRect(0, 25, 1440, 875));
}

TEST_F(AppStorePlacementTest, NextDisplayNeedsTwoDisplaysButATargetFirst) {
    store.moveTargetToNextDisplay();
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Only one display is connected."));
    fake.windowSystem.setFrontmostApplication({});
    store.moveTargetToNextDisplay();
    EXPECT_EQ(store.statusMessage(), QStringLiteral("No target window is available."));
    fake.scheduler.advance(1s);
    EXPECT_EQ(refreshes, 0);
}

struct MappingCase {
    std::string name;
    CGRect frame, from, to;
    double gap;
    CGRect expected;
};

class FrameMappingTest : public ::testing::TestWithParam<MappingCase> {};

TEST_P(FrameMappingTest, KeepsRelativePlaceAndFullSpans) {
    const auto& c = GetParam();
    EXPECT_EQ(mappedFrame(c.frame, c.from, c.to, c.gap), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Frames, FrameMappingTest,
    ::testing::Values(
        // Within 4 points of the whole area: the whole destination, without gap.
        MappingCase{"Maximised",
                    {2, 27, 1437, 871},
                    {0, 25, 1440, 875},
                    {1440, 25, 1920, 1055},
                    8,
                    {1440, 25, 1920, 1055}},
        // Full height stays full (raw area); half the width scales.
        MappingCase{"FullHeightHalfWidth",
                    {0, 25, 720, 875},
                    {0, 25, 1440, 875},
                    {1440, 25, 1920, 1055},
                    0,
                    {1440, 25, 960, 1055}},
        MappingCase{"RightHalfFullHeight",
                    {720, 25, 720, 875},
                    {0, 25, 1440, 875},
                    {1440, 0, 1920, 1055},
                    0,
                    {2400, 0, 960, 1055}},
        MappingCase{"FloatingWindowScales",
                    {360, 243.75, 360, 218.75},
                    {0, 25, 1440, 875},
                    {0, 0, 2880, 1750},
                    0,
                    {720, 437, 720, 438}},
        // The gap insets both areas: the relative place is taken inside the insets.
        MappingCase{"GapInsetsBothAreas",
                    {354, 329, 492, 392},
                    {100, 125, 1000, 800},
                    {0, 0, 1984, 1584},
                    8,
                    {500, 400, 984, 784}}),
    [](const auto& testCase) { return testCase.param.name; });

class FakeCanvas : public PlacementCanvas {
public:
    bool isOpen() const override { return open; }
    void close() override {
        open = false;
        ++closes;
    }
    void show(const std::vector<DisplayGeometry>& shownDisplays, const TilmoraWindow& shownTarget,
              const QHash<std::uint32_t, DisplayLayoutProfile>& profiles,
              Apply applyRect) override {
        open = true;
        displays = shownDisplays;
        target = shownTarget;
        displayProfiles = profiles;
        apply = std::move(applyRect);
    }

    bool open = false;
    int closes = 0;
    std::vector<DisplayGeometry> displays;
    TilmoraWindow target;
    QHash<std::uint32_t, DisplayLayoutProfile> displayProfiles;
    Apply apply;
};

TEST_F(AppStorePlacementTest, CanvasOpensTogglesAndPlacesTheWindowItWasOpenedFor) {
    FakeCanvas canvas;
    store.setPlacementCanvas(&canvas);
    store.refresh();
    store.showPlacementCanvas();
    ASSERT_TRUE(canvas.open);
    EXPECT_EQ(canvas.target.title, QStringLiteral("Inbox"));
    EXPECT_EQ(canvas.displays.size(), 1u);
    EXPECT_EQ(canvas.displayProfiles.size(), 1);

    // Focus moves on and the window is retitled before the user draws: it is still found.
    fake.windowSystem.setFrontmostApplication({});
    fake.windowSystem.window(mail).title = QStringLiteral("Inbox (3)");
    canvas.apply({-50, 10, 50, 50});
    EXPECT_EQ(mailFrame(), CGRect(0, 25, 120, 90));
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Canvas placement applied to Mail."));

    // A second command while open only closes it.
    fake.windowSystem.clearCalls();
    store.showPlacementCanvas();
    EXPECT_EQ(canvas.closes, 1);
    EXPECT_FALSE(canvas.open);
    EXPECT_TRUE(fake.windowSystem.calls().empty());
}

TEST_F(AppStorePlacementTest, CanvasRectangleOffEveryDisplayIsUsedUnclamped) {
    FakeCanvas canvas;
    store.setPlacementCanvas(&canvas);
    store.showPlacementCanvas();
    fake.windowSystem.setScreens({});
    canvas.apply({5000, 5000, 300, 200});
    EXPECT_EQ(mailFrame(), CGRect(5000, 5000, 300, 200));
}

TEST_F(AppStorePlacementTest, WithoutACanvasTheCommandSaysSo) {
    store.showPlacementCanvas();
    EXPECT_EQ(store.statusMessage(), QStringLiteral("The Placement Canvas is not available."));
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

} // namespace
