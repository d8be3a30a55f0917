// The window logic's tests rely on the fake behaving like a real window: these pin the
// behaviours that are easy to get subtly wrong, limits on writes and windows that close.
#include "support/FakeWindowSystem.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

constexpr std::int32_t pid = 42;
using Kind = FakeWindowSystem::Call::Kind;

struct SizeLimitCase {
    const char* name;
    std::optional<CGSize> minimumSize;
    std::optional<CGSize> maximumSize;
    CGSize requested;
    CGSize expected;

    friend void PrintTo(const SizeLimitCase& c, std::ostream* os) { *os << c.name; }
};

class FakeWindowSizeLimitTest : public ::testing::TestWithParam<SizeLimitCase> {};

TEST_P(FakeWindowSizeLimitTest, SizeWritesEndClampedButSucceed) {
    FakeWindowSystem system;
    const WindowElement window = system.addWindow(pid, {10, 20, 800, 600});
    system.window(window).minimumSize = GetParam().minimumSize;
    system.window(window).maximumSize = GetParam().maximumSize;

    EXPECT_EQ(system.setSize(window, GetParam().requested), AXError::success);

    EXPECT_EQ(system.size(window), GetParam().expected);
    EXPECT_EQ(system.position(window), (CGPoint{10, 20}));
}

INSTANTIATE_TEST_SUITE_P(
    Limits, FakeWindowSizeLimitTest,
    ::testing::Values(
        SizeLimitCase{"TakenExactly", std::nullopt, std::nullopt, {1000, 700}, {1000, 700}},
        SizeLimitCase{"MinimumWidthWins", CGSize{1200, 0}, std::nullopt, {1000, 700}, {1200, 700}},
        SizeLimitCase{
            "MinimumInBothDimensions", CGSize{400, 300}, std::nullopt, {120, 90}, {400, 300}},
        SizeLimitCase{"MaximumHeightWins", std::nullopt, CGSize{0, 500}, {1000, 700}, {1000, 500}},
        SizeLimitCase{
            "WithinBothLimits", CGSize{200, 100}, CGSize{2000, 1000}, {640, 480}, {640, 480}},
        SizeLimitCase{
            "BelowMinimumAndAboveMaximum", CGSize{300, 0}, CGSize{0, 400}, {100, 900}, {300, 400}}),
    [](const auto& param) { return std::string(param.param.name); });

TEST(FakeWindowSystemTest, RefusedWritesLeaveTheFrameAndReportTheirStatus) {
    FakeWindowSystem system;
    const WindowElement window = system.addWindow(pid, {0, 0, 800, 600});
    system.window(window).sizeWriteRefusal = AXError::failure;
    // Accepted but ignored, as a window manager ignoring moves of a maximized window does.
    system.window(window).positionWriteRefusal = AXError::success;

    EXPECT_EQ(system.setSize(window, {1000, 700}), AXError::failure);
    EXPECT_EQ(system.setPosition(window, {50, 60}), AXError::success);

    EXPECT_EQ(system.window(window).frame, CGRect(0, 0, 800, 600));
    ASSERT_EQ(system.calls().size(), 2u);
    EXPECT_EQ(system.calls()[0].status, AXError::failure);
    EXPECT_EQ(system.calls()[0].size, (CGSize{1000, 700}));
    EXPECT_EQ(system.calls()[1].position, (CGPoint{50, 60}));
}

// Reads of every kind until the first failure; returns how many succeeded.
int successfulReads(FakeWindowSystem& system, WindowElement window) {
    for (int reads = 0; reads < 20; ++reads) {
        const bool answered = reads % 3 == 0   ? system.position(window).has_value()
                              : reads % 3 == 1 ? system.size(window).has_value()
                                               : system.title(window).has_value();
        if (!answered) {
            return reads;
        }
    }
    return 20;
}

class FakeWindowClosingAfterReadsTest : public ::testing::TestWithParam<int> {};

TEST_P(FakeWindowClosingAfterReadsTest, AnswersExactlyThatManyReadsThenIsGone) {
    FakeWindowSystem system;
    const WindowElement other = system.addWindow(pid, {0, 0, 400, 300}, QStringLiteral("Other"));
    const WindowElement window = system.addWindow(pid, {0, 0, 800, 600}, QStringLiteral("Doc"));
    system.window(window).closesAfterReads = GetParam();

    // Questions that are not reads, and a raise, are still answered before the first read.
    EXPECT_TRUE(system.isSizeSettable(window));
    system.raise(window);
    EXPECT_EQ(system.calls().back().status, AXError::success);
    EXPECT_EQ(system.focusedWindow(pid), window);

    EXPECT_EQ(successfulReads(system, window), GetParam());

    EXPECT_TRUE(system.window(window).isClosed);
    EXPECT_EQ(system.setPosition(window, {1, 1}), AXError::failure);
    EXPECT_EQ(system.setSize(window, {500, 500}), AXError::failure);
    EXPECT_FALSE(system.isPositionSettable(window));
    EXPECT_EQ(system.windows(pid), std::vector<WindowElement>{other});
    EXPECT_EQ(system.focusedWindow(pid), other);
    ASSERT_EQ(system.onScreenWindows().size(), 1u);
    EXPECT_EQ(system.onScreenWindows()[0].title, QStringLiteral("Other"));
}

INSTANTIATE_TEST_SUITE_P(Budgets, FakeWindowClosingAfterReadsTest, ::testing::Values(0, 1, 4));

TEST(FakeWindowSystemTest, AWindowClosingAfterWritesTakesThemAndFailsTheNextRead) {
    FakeWindowSystem system;
    const WindowElement window = system.addWindow(pid, {0, 0, 800, 600});
    system.window(window).closesAfterWrites = 2;

    EXPECT_EQ(system.setPosition(window, {10, 10}), AXError::success);
    EXPECT_EQ(system.setSize(window, {900, 700}), AXError::success);
    EXPECT_EQ(system.position(window), std::nullopt);
    EXPECT_EQ(system.setPosition(window, {20, 20}), AXError::failure);

    EXPECT_EQ(system.window(window).frame, CGRect(10, 10, 900, 700));
    EXPECT_EQ(system.callKinds(),
              (std::vector<Kind>{Kind::setPosition, Kind::setSize, Kind::setPosition}));
}

TEST(FakeWindowSystemTest, OnScreenListIsFrontMostFirstAndFollowsRaises) {
    FakeWindowSystem system;
    const WindowElement back = system.addWindow(pid, {0, 0, 400, 300}, QStringLiteral("back"));
    const WindowElement hidden = system.addWindow(pid, {0, 0, 400, 300}, QStringLiteral("hidden"));
    const WindowElement dock = system.addWindow(7, {0, 1000, 1920, 80}, std::nullopt);
    const WindowElement front = system.addWindow(pid, {0, 0, 400, 300}, QStringLiteral("front"));
    system.window(hidden).isOnScreen = false;
    system.window(dock).layer = 20;

    auto titles = [&] {
        std::vector<std::optional<QString>> result;
        for (const OnScreenWindow& entry : system.onScreenWindows()) {
            result.push_back(entry.title);
        }
        return result;
    };
    EXPECT_EQ(titles(), (std::vector<std::optional<QString>>{QStringLiteral("front"), std::nullopt,
                                                             QStringLiteral("back")}));
    EXPECT_EQ(system.onScreenWindows()[1].layer, 20);

    system.raise(back);
    EXPECT_EQ(titles(), (std::vector<std::optional<QString>>{
                            QStringLiteral("back"), QStringLiteral("front"), std::nullopt}));
    // The application's window list keeps creation order whatever the stacking.
    EXPECT_EQ(system.windows(pid), (std::vector<WindowElement>{back, hidden, front}));
}

TEST(FakeWindowSystemTest, FocusedWindowFollowsTheScriptThenFallsBackToTheFrontMost) {
    FakeWindowSystem system;
    const WindowElement first = system.addWindow(pid, {0, 0, 400, 300});
    const WindowElement second = system.addWindow(pid, {0, 0, 400, 300});
    EXPECT_EQ(system.focusedWindow(pid), second);

    system.setFocusedWindow(pid, first);
    EXPECT_EQ(system.focusedWindow(pid), first);

    system.close(first);
    EXPECT_EQ(system.focusedWindow(pid), second);

    system.setFocusedWindow(pid, std::nullopt);
    EXPECT_EQ(system.focusedWindow(pid), std::nullopt);
}

TEST(FakeWindowSystemTest, ScreenSequenceAnswersSuccessiveReadsThenKeepsTheLast) {
    FakeWindowSystem system;
    const ScreenDescription one{
        {0, 0, 1440, 900}, {0, 0, 1440, 875}, QStringLiteral("One"), 1.0, 1};
    const ScreenDescription two{
        {1440, 0, 1920, 1080}, {1440, 0, 1920, 1080}, QStringLiteral("Two"), 1.0, 2};
    system.setScreenSequence({{one, two}, {one}, {}});

    EXPECT_EQ(system.screens().size(), 2u);
    EXPECT_EQ(system.screens().size(), 1u);
    EXPECT_TRUE(system.screens().empty());
    EXPECT_TRUE(system.screens().empty());
}

} // namespace
