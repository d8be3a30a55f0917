#include "support/FakeWindowSystem.h"
#include "windows/WindowManager.h"

#include <gtest/gtest.h>

#include <string>

using namespace tilmora;

namespace {

const QString ownID = QStringLiteral("org.tilmora.Tilmora");

class WindowMatchingTest : public ::testing::Test {
protected:
    WindowMatchingTest() {
        system.addApplication(10, QStringLiteral("org.example.Editor"), QStringLiteral("Editor"));
        system.addApplication(20, QStringLiteral("org.example.Mail"), QStringLiteral("Mail"));
    }

    WindowElement add(std::int32_t pid, CGRect frame, const char* title) {
        return system.addWindow(pid, frame, QString::fromUtf8(title));
    }

    FakeWindowSystem system;
    WindowManager manager{system, ownID};
};

TEST_F(WindowMatchingTest, PointUpToTwoPointsOutsideStillCounts) {
    const WindowElement editor = add(10, {100, 100, 400, 300}, "doc");
    EXPECT_EQ(manager.window({98, 250})->element, editor);
    EXPECT_EQ(manager.window({501.9, 401.9})->element, editor);
    EXPECT_FALSE(manager.window({97, 250}));
    EXPECT_FALSE(manager.window({503, 250}));
}

TEST_F(WindowMatchingTest, PassesOverOwnWindowsAndOtherLayers) {
    const WindowElement below = add(10, {0, 0, 800, 600}, "doc");
    system.addApplication(system.ownProcessIdentifier(), ownID, QStringLiteral("Tilmora"));
    add(system.ownProcessIdentifier(), {0, 0, 800, 600}, "Tilmora");
    const WindowElement panel = add(20, {0, 0, 800, 600}, "Inbox");
    system.window(panel).layer = 3;
    EXPECT_EQ(manager.window({50, 50})->element, below);
}

TEST_F(WindowMatchingTest, TrustIsNeededToFindAnything) {
    add(10, {0, 0, 800, 600}, "doc");
    system.setTrusted(false);
    EXPECT_FALSE(manager.window({50, 50}));
}

struct PairingCase {
    std::string name;
    const char* serverTitle;
    std::vector<std::pair<const char*, CGRect>> windows;
    std::size_t expected;
};

class PairingTest : public ::testing::TestWithParam<PairingCase> {};

TEST_P(PairingTest, PairsByTitleThenByFrame) {
    FakeWindowSystem system;
    system.addApplication(10, QStringLiteral("ed"), QStringLiteral("Editor"));
    std::vector<WindowElement> elements;
    for (const auto& [title, frame] : GetParam().windows) {
        elements.push_back(system.addWindow(10, frame, QString::fromUtf8(title)));
    }
    const CGRect bounds{0, 0, 500, 400};
    std::vector<OnScreenWindow> onScreen{{10, 0, bounds, std::nullopt}};
    if (GetParam().serverTitle) {
        onScreen[0].title = QString::fromUtf8(GetParam().serverTitle);
    }
    system.setOnScreenWindows(onScreen);
    const auto found = WindowManager(system, ownID).window({10, 10});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->element, elements[GetParam().expected]);
}

INSTANTIATE_TEST_SUITE_P(
    Windows, PairingTest,
    ::testing::Values(
        PairingCase{"TitleContainsTrimmedText",
                    "  Report.txt \n",
                    {{"Notes", {0, 0, 500, 400}}, {"Report.txt - Editor", {900, 900, 90, 90}}},
                    1},
        PairingCase{"TrimmedTextContainsTitleIgnoringCase",
                    "Report.txt",
                    {{"Notes", {0, 0, 500, 400}}, {"report", {900, 900, 90, 90}}},
                    1},
        PairingCase{"EmptyTitlesFallBackToTheClosestFrame",
                    nullptr,
                    {{"", {600, 0, 500, 400}}, {"", {10, 0, 500, 400}}, {"", {900, 900, 90, 90}}},
                    1},
        PairingCase{"UnmatchedTitleFallsBackToTheClosestFrame",
                    "Budget",
                    {{"Notes", {900, 900, 90, 90}}, {"Draft", {0, 0, 500, 410}}},
                    1},
        PairingCase{"IdenticalFramesGoToTheFirst",
                    "",
                    {{"", {0, 0, 500, 400}}, {"", {0, 0, 500, 400}}},
                    0}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(WindowMatchScoreTest, OverlapDominatesEdgeDifferences) {
    ManagedWindow window;
    window.frame = {0, 0, 100, 100};
    EXPECT_EQ(windowMatchScore(window, {0, 0, 100, 100}), 0);
    EXPECT_GE(windowMatchScore(window, {200, 0, 100, 100}), 10000);
    // Half overlapping: IoU 1/3, plus 50 points of offset.
    EXPECT_NEAR(windowMatchScore(window, {50, 0, 100, 100}), 10000.0 * 2 / 3 + 50, 1e-6);
}

TEST_F(WindowMatchingTest, RefreshedWindowPrefersTitleThenFocusThenFrame) {
    const WindowElement first = add(10, {0, 0, 800, 600}, "one");
    const WindowElement second = add(10, {500, 500, 800, 600}, "two");
    ManagedWindow stale;
    stale.processIdentifier = 10;
    stale.title = QStringLiteral("two");
    stale.frame = {0, 0, 800, 600};
    EXPECT_EQ(manager.refreshedWindow(stale)->element, second);

    stale.title = QStringLiteral("renamed");
    system.setFocusedWindow(10, second);
    EXPECT_EQ(manager.refreshedWindow(stale)->element, second);

    system.setFocusedWindow(10, std::nullopt);
    EXPECT_EQ(manager.refreshedWindow(stale)->element, first);

    stale.processIdentifier = 4242;
    EXPECT_FALSE(manager.refreshedWindow(stale));
}

struct SavedMatchCase {
    std::string name;
    std::optional<QString> bundleIdentifier;
    const char* appName;
    const char* title;
    // Index of the expected window among those the fixture adds, or -1 for none.
    int expected;
};

class FindMatchingWindowTest : public ::testing::TestWithParam<SavedMatchCase> {};

TEST_P(FindMatchingWindowTest, MatchesSavedWindows) {
    FakeWindowSystem system;
    system.addApplication(10, QStringLiteral("org.example.Editor"), QStringLiteral("Editor"));
    system.addApplication(30, std::nullopt, QStringLiteral("Tool"));
    const std::vector<WindowElement> windows{
        system.addWindow(10, {0, 0, 800, 600}, QStringLiteral("Budget 2026")),
        system.addWindow(10, {0, 0, 800, 600}, QString()),
        system.addWindow(10, {0, 0, 800, 600}, QStringLiteral("Notes")),
        system.addWindow(30, {0, 0, 800, 600}, QStringLiteral("Palette")),
    };
    SavedWindowPlacement saved;
    saved.bundleIdentifier = GetParam().bundleIdentifier;
    saved.appName = QString::fromUtf8(GetParam().appName);
    saved.title = QString::fromUtf8(GetParam().title);
    const auto found = WindowManager(system, ownID).findMatchingWindow(saved);
    if (GetParam().expected < 0) {
        EXPECT_FALSE(found);
    } else {
        ASSERT_TRUE(found);
        EXPECT_EQ(found->element, windows[static_cast<std::size_t>(GetParam().expected)]);
    }
}

// The listing sorts by title within an application: "", "Budget 2026", "Notes".
INSTANTIATE_TEST_SUITE_P(
    Windows, FindMatchingWindowTest,
    ::testing::Values(
        SavedMatchCase{"ExactTitle", QStringLiteral("org.example.Editor"), "Editor", "Notes", 2},
        SavedMatchCase{"ContainedTitleIgnoringCase", QStringLiteral("org.example.Editor"), "Editor",
                       "budget", 0},
        SavedMatchCase{"EmptyTitleMatchesTheEmptyOne", QStringLiteral("org.example.Editor"),
                       "Editor", "", 1},
        SavedMatchCase{"UnmatchedTitleTakesTheFirst", QStringLiteral("org.example.Editor"),
                       "Editor", "Gone", 1},
        SavedMatchCase{"UnknownApplication", QStringLiteral("org.example.Other"), "Editor", "Notes",
                       -1},
        SavedMatchCase{"WithoutIdNameAndTitleMustMatch", std::nullopt, "Tool", "Palette", 3},
        SavedMatchCase{"WithoutIdNoFuzzyMatch", std::nullopt, "Tool", "palette", -1}),
    [](const auto& testCase) { return testCase.param.name; });

} // namespace
