#include "support/FakeWindowSystem.h"
#include "windows/WindowManager.h"

#include <gtest/gtest.h>

#include <string>

using namespace tilmora;
using Kind = FakeWindowSystem::Call::Kind;

namespace {

const CGRect requested{0, 25, 1000, 875};

struct FrameCase {
    std::string name;
    CGRect start;
    // How the window answers writes.
    std::function<void(FakeWindowSystem::Window&)> script;
    // Either the result or the error text.
    std::optional<WindowPlacementResult> result;
    QString error;
};

class SetFrameTest : public ::testing::TestWithParam<FrameCase> {};

TEST_P(SetFrameTest, ReportsWhatTheWindowTook) {
    FakeWindowSystem system;
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    FakeWindowSystem::Window window;
    window.processIdentifier = 1;
    window.frame = GetParam().start;
    GetParam().script(window);
    const WindowElement element = system.addWindow(window);
    WindowManager manager(system, std::nullopt);

    const auto placed = manager.setFrame(requested, element);
    if (GetParam().result) {
        ASSERT_TRUE(placed) << placed.error();
        EXPECT_EQ(*placed, *GetParam().result);
    } else {
        ASSERT_FALSE(placed);
        EXPECT_EQ(placed.error().errorDescription(), GetParam().error);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Windows, SetFrameTest,
    ::testing::Values(
        FrameCase{"TakenAtOnce",
                  {300, 300, 400, 300},
                  [](auto&) {},
                  WindowPlacementResult{requested, requested, 1, true},
                  {}},
        FrameCase{"AlreadyInPlace",
                  requested,
                  [](auto&) {},
                  WindowPlacementResult{requested, requested, 1, true},
                  {}},
        // A terminal's size increments: 2 points short in width, 3 in height, is close enough.
        FrameCase{"WithinTolerance",
                  {300, 300, 400, 300},
                  [](auto& w) {
                      w.maximumSize = CGSize{998, 872};
                  },
                  WindowPlacementResult{requested, {0, 25, 998, 872}, 1, true},
                  {}},
        FrameCase{"FourPointsOffIsNotExact",
                  {300, 300, 400, 300},
                  [](auto& w) {
                      w.maximumSize = CGSize{996, 875};
                  },
                  WindowPlacementResult{requested, {0, 25, 996, 875}, 4, false},
                  {}},
        FrameCase{"MinimumWidth",
                  {300, 300, 400, 300},
                  [](auto& w) {
                      w.minimumSize = CGSize{1200, 0};
                  },
                  WindowPlacementResult{requested, {0, 25, 1200, 875}, 4, false},
                  {}},
        // Writes accepted but ignored: nothing comes closer than where the window started.
        FrameCase{"IgnoresEveryWrite",
                  {300, 300, 400, 300},
                  [](auto& w) {
                      w.positionWriteRefusal = 0;
                      w.sizeWriteRefusal = 0;
                  },
                  WindowPlacementResult{requested, {300, 300, 400, 300}, 4, false},
                  {}},
        FrameCase{"RefusesSize",
                  {300, 300, 400, 300},
                  [](auto& w) { w.sizeWriteRefusal = -25200; },
                  std::nullopt,
                  QStringLiteral("Tilmora could not move that window. AX size: -25200, AX "
                                 "position: 0")},
        FrameCase{"NotResizable",
                  {300, 300, 400, 300},
                  [](auto& w) { w.isSizeSettable = false; },
                  std::nullopt,
                  QStringLiteral("That window does not allow programmatic resize or move.")},
        FrameCase{"NeverReadable",
                  {300, 300, 400, 300},
                  [](auto& w) { w.closesAfterReads = 0; },
                  std::nullopt,
                  QStringLiteral("Tilmora could not read that window.")},
        // Read once at the start, then gone: every write fails.
        FrameCase{"ClosesAfterTheFirstRead",
                  {300, 300, 400, 300},
                  [](auto& w) { w.closesAfterReads = 2; },
                  std::nullopt,
                  QStringLiteral("Tilmora could not move that window. AX size: -25200, AX "
                                 "position: -25200")}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(SetFrameTest, WritesThePassesInTheirOrderWithASettleAfterEach) {
    FakeWindowSystem system;
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    FakeWindowSystem::Window window;
    window.processIdentifier = 1;
    window.frame = {0, 0, 400, 300};
    window.minimumSize = CGSize{1200, 0};
    const WindowElement element = system.addWindow(window);
    WindowManager manager(system, std::nullopt);
    ASSERT_TRUE(manager.setFrame(requested, element));

    const auto P = Kind::setPosition;
    const auto S = Kind::setSize;
    const auto W = Kind::settle;
    const std::vector<Kind> expected{Kind::raise, P, S, P, W, P, S, P, S, P, W, S,
                                     P,           S, P, W, P, P, S, P, S, P, W};
    EXPECT_EQ(system.callKinds(), expected);
    for (const auto& call : system.calls()) {
        if (call.kind == Kind::settle) {
            EXPECT_EQ(call.maximum, std::chrono::milliseconds(35));
        }
    }
}

TEST(SetFrameTest, RefusedWindowIsNeitherWrittenNorRaised) {
    FakeWindowSystem system;
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    const WindowElement element = system.addWindow(1, {0, 0, 400, 300});
    system.window(element).isPositionSettable = false;
    WindowManager manager(system, std::nullopt);
    EXPECT_FALSE(manager.setFrame(requested, element));
    EXPECT_TRUE(system.calls().empty());
}

TEST(WindowPlacementResultTest, SuffixNamesTruncatedSizesOnlyWhenNotExact) {
    WindowPlacementResult result{{0, 25, 1440.9, 875}, {7, 25, 1200.99, 875.5}, 4, false};
    EXPECT_EQ(result.statusSuffix(),
              QStringLiteral(" App limited final size to 1200 x 875 instead of 1440 x 875."));
    result.isExact = true;
    EXPECT_EQ(result.statusSuffix(), QString());
}

} // namespace
