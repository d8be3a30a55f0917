#include "windows/WindowManager.h"
#include "support/FakeWindowSystem.h"
#include "windows/TilmoraWindow.h"

#include <gtest/gtest.h>

#include <string>

using namespace tilmora;

namespace {

const QString ownID = QStringLiteral("org.tilmora.Tilmora");

class WindowManagerTest : public ::testing::Test {
protected:
    WindowManagerTest() { system.setOwnBundleIdentifier(ownID); }

    std::vector<QString> listedIDs() const {
        std::vector<QString> ids;
        for (const ManagedWindow& window : manager.allWindows()) {
            ids.push_back(window.id);
        }
        return ids;
    }

    FakeWindowSystem system;
    WindowManager manager{system, ownID};
};

struct FilterCase {
    std::string name;
    CGSize size;
    std::optional<QString> role;
    std::optional<QString> subrole;
    bool listed;
};

class WindowFilterTest : public ::testing::TestWithParam<FilterCase> {};

TEST_P(WindowFilterTest, ListsOnlyStandardWindowsOfAtLeast80By60) {
    FakeWindowSystem system;
    system.addApplication(10, QStringLiteral("org.example.Mail"), QStringLiteral("Mail"));
    FakeWindowSystem::Window window;
    window.processIdentifier = 10;
    window.frame = {0, 0, GetParam().size.width, GetParam().size.height};
    window.role = GetParam().role;
    window.subrole = GetParam().subrole;
    system.addWindow(window);
    const WindowManager manager(system, ownID);
    EXPECT_EQ(manager.allWindows().size(), GetParam().listed ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Windows, WindowFilterTest,
    ::testing::Values(
        FilterCase{
            "Exactly80By60", {80, 60}, WindowRole::window, WindowSubrole::standardWindow, true},
        FilterCase{"Width79", {79, 600}, WindowRole::window, WindowSubrole::standardWindow, false},
        FilterCase{"Height59", {800, 59}, WindowRole::window, WindowSubrole::standardWindow, false},
        FilterCase{"NoSubrole", {800, 600}, WindowRole::window, std::nullopt, true},
        FilterCase{"Dialog", {800, 600}, WindowRole::window, WindowSubrole::dialog, true},
        FilterCase{"Floating", {800, 600}, WindowRole::window, WindowSubrole::floatingWindow, true},
        FilterCase{
            "OtherSubrole", {800, 600}, WindowRole::window, QStringLiteral("AXSplash"), false},
        FilterCase{"NotAWindow", {800, 600}, QStringLiteral("AXSheet"), std::nullopt, false},
        FilterCase{"NoRole", {800, 600}, std::nullopt, std::nullopt, false}),
    [](const auto& testCase) { return testCase.param.name; });

TEST_F(WindowManagerTest, SkipsOwnNonRegularAndTerminatedApplications) {
    system.addApplication(1, QStringLiteral("org.example.Mail"), QStringLiteral("Mail"));
    system.addApplication(2, ownID, QStringLiteral("Tilmora"));
    system.addApplication(
        {3, QStringLiteral("org.example.Panel"), QStringLiteral("Panel"), false, false});
    system.addApplication(4, QStringLiteral("org.example.Gone"), QStringLiteral("Gone"));
    for (std::int32_t pid : {1, 2, 3, 4}) {
        system.addWindow(pid, {0, 0, 800, 600}, QStringLiteral("W"));
    }
    system.applicationState(4).isTerminated = true;
    EXPECT_EQ(listedIDs(), std::vector<QString>{QStringLiteral("org.example.Mail-1-0-W")});
}

TEST_F(WindowManagerTest, AnApplicationWithoutIdIsOwnOnlyWhenOursHasNoneEither) {
    system.addApplication(77, std::nullopt, std::nullopt);
    system.addWindow(77, {0, 0, 800, 600});
    const auto listed = manager.allWindows();
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].id, QStringLiteral("pid-77-77-0-"));
    EXPECT_EQ(listed[0].appName, QStringLiteral("Unknown App"));
    EXPECT_FALSE(listed[0].bundleIdentifier);

    const WindowManager withoutOwnID(system, std::nullopt);
    EXPECT_TRUE(withoutOwnID.allWindows().empty());
}

TEST_F(WindowManagerTest, IdsCountSkippedWindowsAndIgnoreTheFrame) {
    system.addApplication(812, QStringLiteral("B"), QStringLiteral("Notes App"));
    system.addWindow(812, {0, 0, 20, 20}, QStringLiteral("tiny"));
    const WindowElement notes = system.addWindow(812, {0, 0, 800, 600}, QStringLiteral("Notes"));
    system.addWindow(812, {10, 10, 800, 600}, QStringLiteral("Notes"));
    EXPECT_EQ(listedIDs(), (std::vector<QString>{QStringLiteral("B-812-1-Notes"),
                                                 QStringLiteral("B-812-2-Notes")}));
    system.window(notes).frame = {500, 500, 900, 700};
    EXPECT_EQ(listedIDs()[0], QStringLiteral("B-812-1-Notes"));
    // A retitled window is a new window as far as ids go; the listing sorts it after its twin.
    system.window(notes).title = QStringLiteral("Notes - draft");
    EXPECT_EQ(listedIDs(), (std::vector<QString>{QStringLiteral("B-812-2-Notes"),
                                                 QStringLiteral("B-812-1-Notes - draft")}));
}

TEST_F(WindowManagerTest, NameFallsBackToTheIdAndUnreadableTitleIsEmpty) {
    system.addApplication(5, QStringLiteral("org.example.Term"), std::nullopt);
    FakeWindowSystem::Window window;
    window.processIdentifier = 5;
    window.frame = {0, 0, 800, 600};
    window.title = std::nullopt;
    system.addWindow(window);
    const auto listed = manager.allWindows();
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].appName, QStringLiteral("org.example.Term"));
    EXPECT_EQ(listed[0].title, QString());
}

struct SortCase {
    std::string name;
    // Application names and window titles in enumeration order.
    std::vector<std::pair<const char*, const char*>> windows;
    std::vector<std::pair<const char*, const char*>> expected;
};

class WindowSortTest : public ::testing::TestWithParam<SortCase> {};

TEST_P(WindowSortTest, SortsByNameThenTitleCaseInsensitivelyAndStably) {
    FakeWindowSystem system;
    std::int32_t pid = 100;
    for (const auto& [appName, title] : GetParam().windows) {
        ++pid;
        system.addApplication(pid, QStringLiteral("app%1").arg(pid), QString::fromUtf8(appName));
        system.addWindow(pid, {0, 0, 800, 600}, QString::fromUtf8(title));
    }
    std::vector<std::pair<std::string, std::string>> sorted;
    for (const ManagedWindow& window : WindowManager(system, ownID).allWindows()) {
        sorted.emplace_back(window.appName.toStdString(), window.title.toStdString());
    }
    std::vector<std::pair<std::string, std::string>> expected;
    for (const auto& [appName, title] : GetParam().expected) {
        expected.emplace_back(appName, title);
    }
    EXPECT_EQ(sorted, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Windows, WindowSortTest,
    ::testing::Values(SortCase{"CaseInsensitiveNames",
                               {{"beta", "1"}, {"Alpha", "2"}},
                               {{"Alpha", "2"}, {"beta", "1"}}},
                      SortCase{"NamesDifferingOnlyInCaseKeepTheirOrder",
                               {{"abc", "z"}, {"ABC", "a"}},
                               {{"abc", "z"}, {"ABC", "a"}}},
                      SortCase{"TitlesDecideWithinOneName",
                               {{"Term", "beta"}, {"Term", "Alpha"}, {"Edit", "x"}},
                               {{"Edit", "x"}, {"Term", "Alpha"}, {"Term", "beta"}}},
                      SortCase{"EqualNamesAndTitlesKeepTheirOrder",
                               {{"Same", "t"}, {"Same", "t"}, {"Another", "t"}},
                               {{"Another", "t"}, {"Same", "t"}, {"Same", "t"}}}),
    [](const auto& testCase) { return testCase.param.name; });

TEST_F(WindowManagerTest, MarksTheFocusedWindowAndNoOther) {
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    const WindowElement first = system.addWindow(1, {0, 0, 800, 600}, QStringLiteral("1"));
    const WindowElement second = system.addWindow(1, {0, 0, 800, 600}, QStringLiteral("2"));
    system.setFocusedWindow(1, first);
    const auto listed = manager.allWindows();
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_TRUE(listed[0].isFocused);
    EXPECT_FALSE(listed[1].isFocused);
    EXPECT_EQ(listed[1].element, second);
}

TEST_F(WindowManagerTest, WithoutAccessNothingIsListedOrTargeted) {
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    system.addWindow(1, {0, 0, 800, 600}, QStringLiteral("1"));
    system.setFrontmostApplication(1);
    system.setTrusted(false);
    EXPECT_TRUE(manager.allWindows().empty());
    EXPECT_EQ(manager.targetWindow(QStringLiteral("a-1-0-1"), 1).error(),
              WindowManagerError::accessibilityDenied);
    EXPECT_EQ(manager.targetWindow(std::nullopt, 1).error(),
              WindowManagerError::accessibilityDenied);
}

TEST_F(WindowManagerTest, GivenIdNeverFallsBackToAnotherWindow) {
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    system.addWindow(1, {0, 0, 800, 600}, QStringLiteral("one"));
    system.addWindow(1, {0, 0, 800, 600}, QStringLiteral("two"));
    system.setFrontmostApplication(1);
    EXPECT_EQ(manager.targetWindow(QStringLiteral("a-1-1-two"), std::nullopt)->title,
              QStringLiteral("two"));
    EXPECT_EQ(manager.targetWindow(QStringLiteral("a-1-5-gone"), 1).error(),
              WindowManagerError::targetWindowMissing);
}

TEST_F(WindowManagerTest, FocusedWindowOfTheFrontmostApplicationHasIndexZero) {
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    system.addWindow(1, {0, 0, 800, 600}, QStringLiteral("first"));
    const WindowElement second = system.addWindow(1, {0, 0, 800, 600}, QStringLiteral("second"));
    system.setFocusedWindow(1, second);
    system.setFrontmostApplication(1);
    const auto target = manager.targetWindow(std::nullopt, std::nullopt);
    ASSERT_TRUE(target);
    EXPECT_EQ(target->element, second);
    EXPECT_TRUE(target->isFocused);
    // Listed as a-1-1-second; targeted with index 0.
    EXPECT_EQ(target->id, QStringLiteral("a-1-0-second"));
}

TEST_F(WindowManagerTest, TooSmallOrNonStandardFocusedWindowFallsBackToTheFirstListed) {
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    const WindowElement palette = system.addWindow(1, {0, 0, 50, 50}, QStringLiteral("palette"));
    const WindowElement main = system.addWindow(1, {0, 0, 800, 600}, QStringLiteral("main"));
    system.setFocusedWindow(1, palette);
    system.setFrontmostApplication(1);
    EXPECT_EQ(manager.targetWindow(std::nullopt, std::nullopt)->element, main);
    system.window(palette).frame = {0, 0, 800, 600};
    system.window(palette).subrole = QStringLiteral("AXSystemFloatingWindow");
    const auto target = manager.targetWindow(std::nullopt, std::nullopt);
    EXPECT_EQ(target->element, main);
    EXPECT_FALSE(target->isFocused);
    EXPECT_EQ(target->id, QStringLiteral("a-1-1-main"));
}

TEST_F(WindowManagerTest, OwnFrontmostApplicationHandsOverToTheFallbackProcess) {
    system.addApplication(2, ownID, QStringLiteral("Tilmora"));
    system.addWindow(2, {0, 0, 800, 600}, QStringLiteral("Tilmora"));
    system.addApplication(3, QStringLiteral("ed"), QStringLiteral("Editor"));
    const WindowElement editor = system.addWindow(3, {0, 0, 800, 600}, QStringLiteral("doc"));
    // Even an application that is not regular can be the fallback target.
    system.applicationState(3).isRegular = false;
    system.setFrontmostApplication(2);
    EXPECT_EQ(manager.targetWindow(std::nullopt, 3)->element, editor);
    EXPECT_EQ(manager.targetWindow(std::nullopt, std::nullopt).error(),
              WindowManagerError::noTargetWindow);
    EXPECT_EQ(manager.targetWindow(std::nullopt, 4242).error(), WindowManagerError::noTargetWindow);
}

TEST_F(WindowManagerTest, FrontmostApplicationWithoutWindowsHandsOverToo) {
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    system.addApplication(3, QStringLiteral("ed"), QStringLiteral("Editor"));
    const WindowElement editor = system.addWindow(3, {0, 0, 800, 600}, QStringLiteral("doc"));
    system.setFrontmostApplication(1);
    EXPECT_EQ(manager.targetWindow(std::nullopt, 3)->element, editor);
}

TEST(WindowManagerErrorTest, MessagesReadAsTheUserSeesThem) {
    EXPECT_EQ(
        WindowManagerError::cannotMove(QStringLiteral("AX size: -25200, AX position: 0"))
            .errorDescription(),
        QStringLiteral("Tilmora could not move that window. AX size: -25200, AX position: 0"));
    EXPECT_EQ(WindowManagerError(WindowManagerError::accessibilityDenied).errorDescription(),
              QStringLiteral("Tilmora needs Accessibility access before it can arrange windows."));
    EXPECT_EQ(WindowManagerError(WindowManagerError::targetWindowMissing).errorDescription(),
              QStringLiteral("The selected window is no longer available."));
    EXPECT_EQ(WindowManagerError(WindowManagerError::cannotResizeWindow).errorDescription(),
              QStringLiteral("That window does not allow programmatic resize or move."));
}

TEST(TilmoraWindowTest, FrameSummaryTruncatesTowardZero) {
    TilmoraWindow window;
    window.frame = {-1280.5, 0, 1280, 1415};
    EXPECT_EQ(window.frameSummary(), QStringLiteral("-1280, 0  1280 x 1415"));
    window.frame = {10.9, -0.9, 799.99, 600.5};
    EXPECT_EQ(window.frameSummary(), QStringLiteral("10, 0  799 x 600"));
}

} // namespace
