#include "support/FakeWindowSystem.h"
#include "windows/WindowManager.h"

#include <gtest/gtest.h>

#include <string>

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
INSTANTIATE_TEST_SUITE_P(Windows, SetFrameTest, ::testing::Values(
    FrameCase{"TakenAtOnce", elsewhere, [](auto&) {}, Result{requested, requested, 1, true}, {}},
    FrameCase{"AlreadyInPlace", requested, [](auto&) {}, Result{requested, requested, 1, true}, {}},
    // A terminal's size increments: 2 points short in width, 3 in height, is close enough.
    FrameCase{"WithinTolerance", elsewhere, [](auto& w) { w.maximumSize = CGSize{998, 872}; }, Result{requested, {0, 25, 998, 872}, 1, true}, {}},
    FrameCase{"FourPointsOffIsNotExact", elsewhere, [](auto& w) { w.maximumSize = CGSize{996, 875}; }, Result{requested, {0, 25, 996, 875}, 4, false}, {}},
    FrameCase{"MinimumWidth", elsewhere, [](auto& w) { w.minimumSize = CGSize{1200, 0}; }, Result{requested, {0, 25, 1200, 875}, 4, false}, {}},
    // Writes accepted but ignored: nothing comes closer than where the window started.
    FrameCase{"IgnoresEveryWrite", elsewhere, [](auto& w) { w.positionWriteRefusal = 0; w.sizeWriteRefusal = 0; }, Result{requested, elsewhere, 4, false}, {}},
    FrameCase{"RefusesSize", elsewhere, [](auto& w) { w.sizeWriteRefusal = -25200; }, std::nullopt, cannotMove + QStringLiteral("AX size: -25200, AX position: 0")},
    FrameCase{"NotResizable", elsewhere, [](auto& w) { w.isSizeSettable = false; }, std::nullopt, QStringLiteral("That window does not allow programmatic resize or move.")},
    FrameCase{"NotMovable", elsewhere, [](auto& w) { w.isPositionSettable = false; }, std::nullopt, QStringLiteral("That window does not allow programmatic resize or move.")},
    FrameCase{"NeverReadable", elsewhere, [](auto& w) { w.closesAfterReads = 0; }, std::nullopt, QStringLiteral("Tilmora could not read that window.")},
    // Read once at the start, then gone: every write fails.
    FrameCase{"ClosesAfterTheFirstRead", elsewhere, [](auto& w) { w.closesAfterReads = 2; }, std::nullopt, cannotMove + QStringLiteral("AX size: -25200, AX position: -25200")}),
    [](const auto& p) { return p.param.name; });
// clang-format on

} // namespace
