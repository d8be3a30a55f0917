#include "support/FakeWindowSystem.h"
#include "windows/WindowManager.h"

#include <gtest/gtest.h>

#include <tuple>

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

TEST_F(WindowMatchingTest, PassesOverOwnWindowsAndOtherLayersAndNeedsTrust) {
    const WindowElement below = add(10, {0, 0, 800, 600}, "doc");
    system.addApplication(system.ownProcessIdentifier(), ownID, QStringLiteral("Tilmora"));
    add(system.ownProcessIdentifier(), {0, 0, 800, 600}, "Tilmora");
    system.window(add(20, {0, 0, 800, 600}, "Inbox")).layer = 3;
    EXPECT_EQ(manager.window({50, 50})->element, below);
    system.setTrusted(false);
    EXPECT_FALSE(manager.window({50, 50}));
}

TEST(WindowPairingTest, PairsTheOnScreenEntryByTitleThenByFrame) {
    using Windows = std::vector<std::pair<const char*, CGRect>>;
    const CGRect far{900, 900, 90, 90};
    // The on-screen entry's title (absent: none), the application's windows, the expected one.
    // clang-format off
    const std::tuple<const char*, Windows, std::size_t> cases[] = {
        // The title contains the trimmed entry title, or the other way round, ignoring case.
        {"  Report.txt \n", {{"Notes", {0, 0, 500, 400}}, {"Report.txt - Editor", far}}, 1},
        {"Report.txt", {{"Notes", {0, 0, 500, 400}}, {"report", far}}, 1},
        {"strasse", {{"Notes", {0, 0, 500, 400}}, {"Straße - Map", far}}, 1},
        // Otherwise the closest frame; identical frames go to the first.
        {nullptr, {{"", {600, 0, 500, 400}}, {"", {10, 0, 500, 400}}, {"", far}}, 1},
        {"Budget", {{"Notes", far}, {"Draft", {0, 0, 500, 410}}}, 1},
        {"", {{"", {0, 0, 500, 400}}, {"", {0, 0, 500, 400}}}, 0}};
    // clang-format on
    for (const auto& [entryTitle, windows, expected] : cases) {
        FakeWindowSystem system;
        system.addApplication(10, QStringLiteral("ed"), QStringLiteral("Editor"));
        std::vector<WindowElement> elements;
        for (const auto& [title, frame] : windows) {
            elements.push_back(system.addWindow(10, frame, QString::fromUtf8(title)));
        }
        OnScreenWindow entry{10, 0, {0, 0, 500, 400}, std::nullopt};
        if (entryTitle) {
            entry.title = QString::fromUtf8(entryTitle);
        }
        system.setOnScreenWindows({entry});
        const auto found = WindowManager(system, ownID).window({10, 10});
        const char* label = entryTitle ? entryTitle : "(no title)";
        ASSERT_TRUE(found) << label;
        EXPECT_EQ(found->element, elements[expected]) << label;
    }
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

TEST(FindMatchingWindowTest, MatchesSavedWindowsByIdThenTitle) {
    FakeWindowSystem system;
    system.addApplication(10, QStringLiteral("org.example.Editor"), QStringLiteral("Editor"));
    system.addApplication(30, std::nullopt, QStringLiteral("Tool"));
    // The listing sorts by title within an application: "", "Budget 2026", "Notes".
    const std::vector<WindowElement> windows{
        system.addWindow(10, {0, 0, 800, 600}, QStringLiteral("Budget 2026")),
        system.addWindow(10, {0, 0, 800, 600}, QString()),
        system.addWindow(10, {0, 0, 800, 600}, QStringLiteral("Notes")),
        system.addWindow(30, {0, 0, 800, 600}, QStringLiteral("Palette")),
    };
    const std::optional<QString> editorID = QStringLiteral("org.example.Editor");
    // The saved window's id, name and title, and the index of the expected window (-1: none).
    // clang-format off
    const std::tuple<std::optional<QString>, const char*, const char*, int> cases[] = {
        {editorID, "Editor", "Notes", 2},
        {editorID, "Editor", "budget", 0},  // contained, ignoring case
        {editorID, "Editor", "", 1},        // the empty title matches the empty one
        {editorID, "Editor", "Gone", 1},    // no title matches: the first listed
        {QStringLiteral("org.example.Other"), "Editor", "Notes", -1},
        // Without an id, name and title must match exactly.
        {std::nullopt, "Tool", "Palette", 3},
        {std::nullopt, "Tool", "palette", -1}};
    // clang-format on
    const WindowManager manager(system, ownID);
    for (const auto& [bundleIdentifier, appName, title, expected] : cases) {
        SavedWindowPlacement saved;
        saved.bundleIdentifier = bundleIdentifier;
        saved.appName = QString::fromUtf8(appName);
        saved.title = QString::fromUtf8(title);
        const auto found = manager.findMatchingWindow(saved);
        ASSERT_EQ(found.has_value(), expected >= 0) << title;
        if (found) {
            EXPECT_EQ(found->element, windows[static_cast<std::size_t>(expected)]) << title;
        }
    }
}

} // namespace
