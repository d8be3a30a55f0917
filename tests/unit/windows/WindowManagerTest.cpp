#include "windows/WindowManager.h"
#include "support/FakeWindowSystem.h"
#include "windows/TilmoraWindow.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

using namespace tilmora;

namespace {

const QString ownID = QStringLiteral("org.tilmora.Tilmora");

class WindowManagerTest : public ::testing::Test {
protected:
    std::vector<QString> listedIDs() const {
        std::vector<QString> ids;
        for (const ManagedWindow& window : manager.allWindows()) {
            ids.push_back(window.id);
        }
        return ids;
    }
    // Application 1 ("A"), frontmost, with the given windows.
    std::vector<WindowElement> frontmost(std::vector<std::pair<CGRect, const char*>> windows) {
        system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
        system.setFrontmostApplication(1);
        std::vector<WindowElement> elements;
        for (const auto& [frame, title] : windows) {
            elements.push_back(system.addWindow(1, frame, QString::fromUtf8(title)));
        }
        return elements;
    }

    FakeWindowSystem system;
    WindowManager manager{system, ownID};
};

TEST(WindowFilterTest, ListsOnlyStandardWindowsOfAtLeast80By60) {
    const QString window = WindowRole::window;
    const QString standard = WindowSubrole::standardWindow;
    const std::optional<QString> none;
    // clang-format off
    const std::tuple<CGSize, std::optional<QString>, std::optional<QString>, bool> cases[] = {
        {{80, 60}, window, standard, true}, {{79, 600}, window, standard, false},
        {{800, 59}, window, standard, false}, {{800, 600}, window, none, true},
        {{800, 600}, window, WindowSubrole::dialog, true},
        {{800, 600}, window, WindowSubrole::floatingWindow, true},
        {{800, 600}, window, QStringLiteral("AXSplash"), false},
        {{800, 600}, QStringLiteral("AXSheet"), none, false}, {{800, 600}, none, none, false}};
    // clang-format on
    for (const auto& [size, role, subrole, listed] : cases) {
        FakeWindowSystem system;
        system.addApplication(10, QStringLiteral("org.example.Mail"), QStringLiteral("Mail"));
        system.addWindow(
            {.processIdentifier = 10, .frame = {{0, 0}, size}, .role = role, .subrole = subrole});
        EXPECT_EQ(WindowManager(system, ownID).allWindows().size(), listed ? 1u : 0u)
            << size.width << " x " << size.height << " " << role.value_or(QString()).toStdString()
            << " " << subrole.value_or(QString()).toStdString();
    }
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

TEST(WindowSortTest, SortsByNameThenTitleCaseInsensitivelyAndStably) {
    using Names = std::vector<std::pair<std::string, std::string>>; // application, window title
    // The windows in enumeration order, then as listed.
    // clang-format off
    const std::pair<Names, Names> cases[] = {
        {{{"beta", "1"}, {"Alpha", "2"}}, {{"Alpha", "2"}, {"beta", "1"}}},
        {{{"abc", "z"}, {"ABC", "a"}}, {{"abc", "z"}, {"ABC", "a"}}},
        {{{"Term", "beta"}, {"Term", "Alpha"}, {"Edit", "x"}}, {{"Edit", "x"}, {"Term", "Alpha"}, {"Term", "beta"}}},
        {{{"Same", "t"}, {"Same", "t"}, {"Another", "t"}}, {{"Another", "t"}, {"Same", "t"}, {"Same", "t"}}}};
    // clang-format on
    for (const auto& [windows, expected] : cases) {
        FakeWindowSystem system;
        std::int32_t pid = 100;
        for (const auto& [appName, title] : windows) {
            ++pid;
            system.addApplication(pid, QStringLiteral("app%1").arg(pid),
                                  QString::fromStdString(appName));
            system.addWindow(pid, {0, 0, 800, 600}, QString::fromStdString(title));
        }
        Names sorted;
        for (const ManagedWindow& window : WindowManager(system, ownID).allWindows()) {
            sorted.emplace_back(window.appName.toStdString(), window.title.toStdString());
        }
        EXPECT_EQ(sorted, expected);
    }
}

TEST_F(WindowManagerTest, GivenIdNeverFallsBackToAnotherWindow) {
    frontmost({{{0, 0, 800, 600}, "one"}, {{0, 0, 800, 600}, "two"}});
    EXPECT_EQ(manager.targetWindow(QStringLiteral("a-1-1-two"), std::nullopt)->title,
              QStringLiteral("two"));
    EXPECT_EQ(manager.targetWindow(QStringLiteral("a-1-5-gone"), 1).error(),
              WindowManagerError::targetWindowMissing);
}

TEST_F(WindowManagerTest, FocusedWindowIsMarkedAndTargetedWithIndexZero) {
    const auto windows = frontmost({{{0, 0, 800, 600}, "first"}, {{0, 0, 800, 600}, "second"}});
    system.setFocusedWindow(1, windows[1]);
    const auto listed = manager.allWindows();
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_FALSE(listed[0].isFocused);
    EXPECT_TRUE(listed[1].isFocused);
    const auto target = manager.targetWindow(std::nullopt, std::nullopt);
    ASSERT_TRUE(target);
    EXPECT_EQ(target->element, windows[1]);
    EXPECT_TRUE(target->isFocused);
    // Listed as a-1-1-second; targeted with index 0.
    EXPECT_EQ(target->id, QStringLiteral("a-1-0-second"));
}

TEST_F(WindowManagerTest, TooSmallOrNonStandardFocusedWindowFallsBackToTheFirstListed) {
    const auto windows = frontmost({{{0, 0, 50, 50}, "palette"}, {{0, 0, 800, 600}, "main"}});
    system.setFocusedWindow(1, windows[0]);
    EXPECT_EQ(manager.targetWindow(std::nullopt, std::nullopt)->element, windows[1]);
    system.window(windows[0]).frame = {0, 0, 800, 600};
    system.window(windows[0]).subrole = QStringLiteral("AXSystemFloatingWindow");
    const auto target = manager.targetWindow(std::nullopt, std::nullopt);
    EXPECT_EQ(target->element, windows[1]);
    EXPECT_FALSE(target->isFocused);
    EXPECT_EQ(target->id, QStringLiteral("a-1-1-main"));
}

TEST_F(WindowManagerTest, OwnOrWindowlessFrontmostApplicationHandsOverToTheFallbackProcess) {
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
    system.addApplication(1, QStringLiteral("a"), QStringLiteral("A"));
    system.setFrontmostApplication(1);
    EXPECT_EQ(manager.targetWindow(std::nullopt, 3)->element, editor);
}

} // namespace
