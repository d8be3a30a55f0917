#include "support/FakeWindowSystem.h"
#include "windows/WindowManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace tilmora;
using Kind = FakeWindowSystem::Call;
using namespace std::chrono_literals;

namespace {

const CGRect requested{0, 25, 1000, 875};
const QString cannotMove = QStringLiteral("Tilmora could not move that window. ");

struct FrameCase {
    std::string name;
    CGRect start;
    std::function<void(FakeWindowSystem::Window&)> script; // how the window answers writes
    std::optional<WindowPlacementResult> result;           // absent: the error text
    QString error;
};

class SetFrameTest : public ::testing::TestWithParam<FrameCase> {};

TEST_P(SetFrameTest, ReportsWhatTheWindowTook) {
    FakeWindowSystem system;
    FakeWindowSystem::Window window;
    window.processIdentifier = 1;
    window.frame = GetParam().start;
    GetParam().script(window);
    const WindowElement element = system.addWindow(window);
    const auto placed = WindowManager(system, std::nullopt).setFrame(requested, element);
    if (GetParam().result) {
        ASSERT_TRUE(placed) << placed.error();
        EXPECT_EQ(*placed, *GetParam().result);
    } else {
        ASSERT_FALSE(placed);
        EXPECT_EQ(placed.error().errorDescription(), GetParam().error);
    }
    // A window that cannot move is neither raised nor written.
    EXPECT_EQ(system.calls().empty(), GetParam().name.starts_with("Not"));
}

const CGRect elsewhere{300, 300, 400, 300};
using Result = WindowPlacementResult;

// clang-format off
const std::vector<FrameCase> frameCases{
    FrameCase{"TakenAtOnce", elsewhere, [](auto&) {}, Result{requested, requested, 1, true}, {}},
    FrameCase{"AlreadyInPlace", requested, [](auto&) {}, Result{requested, requested, 1, true}, {}},
    // A terminal's size increments: 2 points short in width, 3 in height, is close enough.
    FrameCase{"WithinTolerance", elsewhere, [](auto& w) { w.maximumSize = CGSize{998, 872}; }, Result{requested, {0, 25, 998, 872}, 1, true}, {}},
    FrameCase{"FourPointsOffIsNotExact", elsewhere, [](auto& w) { w.maximumSize = CGSize{996, 875}; }, Result{requested, {0, 25, 996, 875}, 4, false}, {}},
    FrameCase{"MinimumWidth", elsewhere, [](auto& w) { w.minimumSize = CGSize{1200, 0}; }, Result{requested, {0, 25, 1200, 875}, 4, false}, {}},
    // The manager answers only after the passes: exact, not limited by the application.
    FrameCase{"SizeArrivesAfterThePasses", elsewhere, [](auto& w) { w.answersLate = true; }, Result{requested, requested, 4, true}, {}},
    // Writes accepted but ignored: nothing comes closer than where the window started.
    FrameCase{"IgnoresEveryWrite", elsewhere, [](auto& w) { w.positionWriteRefusal = 0; w.sizeWriteRefusal = 0; }, Result{requested, elsewhere, 4, false}, {}},
    FrameCase{"RefusesSize", elsewhere, [](auto& w) { w.sizeWriteRefusal = -25200; }, std::nullopt, cannotMove + QStringLiteral("AX size: -25200, AX position: 0")},
    FrameCase{"NotResizable", elsewhere, [](auto& w) { w.isSizeSettable = false; }, std::nullopt, QStringLiteral("That window does not allow programmatic resize or move.")},
    FrameCase{"NotMovable", elsewhere, [](auto& w) { w.isPositionSettable = false; }, std::nullopt, QStringLiteral("That window does not allow programmatic resize or move.")},
    FrameCase{"NeverReadable", elsewhere, [](auto& w) { w.closesAfterReads = 0; }, std::nullopt, QStringLiteral("Tilmora could not read that window.")},
    // Read once at the start, then gone: every write fails.
    FrameCase{"ClosesAfterTheFirstRead", elsewhere, [](auto& w) { w.closesAfterReads = 2; }, std::nullopt, cannotMove + QStringLiteral("AX size: -25200, AX position: -25200")}};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Windows, SetFrameTest, ::testing::ValuesIn(frameCases),
                         [](const auto& p) { return p.param.name; });

// Placed together, every window gets what it gets alone, and each pass is settled once for all
// of the windows still in it, not once for each.
TEST(SetFramesTest, EachWindowGetsWhatItGetsAloneWithOneSettlePerPass) {
    FakeWindowSystem system;
    std::vector<WindowManager::FrameRequest> requests;
    for (const FrameCase& c : frameCases) {
        FakeWindowSystem::Window window;
        window.processIdentifier = 1;
        window.frame = c.start;
        c.script(window);
        requests.push_back({requested, system.addWindow(window)});
    }
    const auto placed = WindowManager(system, std::nullopt).setFrames(requests);
    ASSERT_EQ(placed.size(), frameCases.size());
    for (std::size_t i = 0; i < frameCases.size(); ++i) {
        SCOPED_TRACE(frameCases[i].name);
        if (frameCases[i].result) {
            ASSERT_TRUE(placed[i]) << placed[i].error();
            EXPECT_EQ(*placed[i], *frameCases[i].result);
        } else {
            ASSERT_FALSE(placed[i]);
            EXPECT_EQ(placed[i].error().errorDescription(), frameCases[i].error);
        }
    }
    EXPECT_EQ(std::count(system.calls().begin(), system.calls().end(), Kind::settle), 4);
}

// A window asked for twice takes both frames in turn: each is reported as taken, the last stays.
TEST(SetFramesTest, AWindowAskedForTwiceEndsWithTheLaterFrame) {
    FakeWindowSystem system;
    const WindowElement window = system.addWindow(1, elsewhere);
    const CGRect later{500, 25, 500, 875};
    const auto placed =
        WindowManager(system, std::nullopt).setFrames({{requested, window}, {later, window}});
    ASSERT_EQ(placed.size(), 2U);
    EXPECT_EQ(placed[0], (Result{requested, requested, 1, true}));
    EXPECT_EQ(placed[1], (Result{later, later, 1, true}));
    EXPECT_EQ(system.window(window).frame, later);
}

} // namespace
