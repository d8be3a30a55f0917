#include "UiTest.h"
#include "ui/AboutPanelPresenter.h"
#include "ui/ApplicationShell.h"
#include "ui/ArrangeMenu.h"
#include "ui/MainWindow.h"
#include "ui/MenuText.h"
#include "ui/TrayMenu.h"

#include <QApplication>
#include <QMenuBar>
#include <QSignalSpy>

using namespace tilmora;

namespace {

QStringList layoutTitles() {
    QStringList titles;
    for (const LayoutAction action : LayoutAction::quickActions()) {
        titles << action.title();
    }
    return titles;
}

class TrayMenuTest : public UiTest, public ::testing::Test {
protected:
    TrayMenu menu{store};
};

TEST_F(TrayMenuTest, WithoutSavedLayoutsTwoSeparatorsFrameTheCommands) {
    const QStringList expected =
        QStringList{QStringLiteral("Open Tilmora"), QStringLiteral("---"),
                    QStringLiteral("Placement Canvas (⌃⌥Space)")} +
        layoutTitles() +
        QStringList{QStringLiteral("Next Display"),    QStringLiteral("---"),
                    QStringLiteral("Settings"),        QStringLiteral("About Tilmora"),
                    QStringLiteral("Refresh Windows"), QStringLiteral("Quit Tilmora")};
    EXPECT_EQ(entries(menu), expected);
}

TEST_F(TrayMenuTest, ShowsTheNewestFiveOfSevenSavedLayoutsAndRestoresTheOneChosen) {
    for (int i = 1; i <= 7; ++i) {
        store.saveCurrentLayout(QStringLiteral("Desk %1").arg(i));
    }
    const QStringList shown = entries(menu);
    const auto next = shown.indexOf(QStringLiteral("Next Display"));
    EXPECT_EQ(shown.mid(next + 1, 8),
              (QStringList{QStringLiteral("---"), QStringLiteral("Restore Desk 7"),
                           QStringLiteral("Restore Desk 6"), QStringLiteral("Restore Desk 5"),
                           QStringLiteral("Restore Desk 4"), QStringLiteral("Restore Desk 3"),
                           QStringLiteral("---"), QStringLiteral("Settings")}));
    EXPECT_EQ(shown.count(QStringLiteral("---")), 3);

    entry(menu, QStringLiteral("Restore Desk 5"))->trigger();
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Restored 1 windows."));
}

TEST_F(TrayMenuTest, FollowsThePlacementHotKeyAndShortensItsTitle) {
    store.setPlacementHotKey({117, 0x1B00, QStringLiteral("Forward Delete")});
    // "Placement Canvas (⌃⌥⇧⌘Forward Delete)" is 37 characters long.
    EXPECT_EQ(entries(menu).at(2), QStringLiteral("Placement Canvas (⌃⌥⇧⌘Forwa..."));
    store.setPlacementHotKey({40, 0x0100, QStringLiteral("K")});
    EXPECT_EQ(entries(menu).at(2), QStringLiteral("Placement Canvas (⌘K)"));
}

TEST_F(TrayMenuTest, ANameWithAnAmpersandIsShownAsWritten) {
    store.saveCurrentLayout(QStringLiteral("R&D"));
    QAction* restore = entry(menu, QStringLiteral("Restore R&&D"));
    ASSERT_TRUE(restore);
    EXPECT_EQ(restore->iconText(), QStringLiteral("Restore R&D"));
}

struct ShorteningCase {
    std::string name;
    QString title;
    QString shown;
};

class ShorteningTest : public ::testing::TestWithParam<ShorteningCase> {};

TEST_P(ShorteningTest, KeepsThirtyCharactersOrTwentySevenAndAnEllipsis) {
    EXPECT_EQ(MenuText::shortened(GetParam().title), GetParam().shown);
}

const QString thirty = QStringLiteral("Restore Quarterly Review Board");
const QString accent = QStringLiteral("e\u0301");         // é as e + combining acute
const QString family = QStringLiteral("👩\u200d👩\u200d👧"); // one emoji of three people

// clang-format off
INSTANTIATE_TEST_SUITE_P(Menus, ShorteningTest, ::testing::Values(
    ShorteningCase{"ThirtyKeptWhole", thirty, thirty},
    ShorteningCase{"ThirtyOneCut", thirty + QStringLiteral("s"), QStringLiteral("Restore Quarterly Review Bo...")},
    ShorteningCase{"RestoreWithATwentyFiveCharacterName", QStringLiteral("Restore ") + QString(25, QLatin1Char('x')), QStringLiteral("Restore ") + QString(19, QLatin1Char('x')) + QStringLiteral("...")},
    // Thirty user-perceived characters in sixty code units: not shortened.
    ShorteningCase{"CombiningAccentsCountOnce", accent.repeated(30), accent.repeated(30)},
    ShorteningCase{"CutBetweenAccentsNeverInOne", accent.repeated(31), accent.repeated(27) + QStringLiteral("...")},
    ShorteningCase{"EmojiSequencesCountOnce", family.repeated(31), family.repeated(27) + QStringLiteral("...")},
    ShorteningCase{"Empty", QString(), QString()}),
    [](const auto& p) { return p.param.name; });
// clang-format on

struct ModifierCase {
    std::string name;
    std::uint32_t mask;
    Qt::KeyboardModifiers modifiers;
};

class LayoutShortcutTest : public UiTest, public ::testing::TestWithParam<ModifierCase> {
protected:
    ArrangeMenu arrange{store};
    TrayMenu tray{store};
};

TEST_P(LayoutShortcutTest, BothMenusCarryTheQuickHotKeyModifiers) {
    store.setQuickHotKeyModifiers({GetParam().mask});
    ASSERT_EQ(store.quickHotKeyModifiers().modifiers, GetParam().mask);
    for (const LayoutAction action : LayoutAction::quickActions()) {
        const QKeySequence expected(QKeyCombination(GetParam().modifiers, action.keyEquivalent()));
        EXPECT_EQ(arrange.layoutItem(action)->shortcut(), expected) << action;
        EXPECT_EQ(entry(tray, action.title())->shortcut(), expected) << action;
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Menus, LayoutShortcutTest, ::testing::Values(
    ModifierCase{"ControlOptionCommand", 0x1900, Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier},
    ModifierCase{"ControlShift", 0x1200, Qt::ControlModifier | Qt::ShiftModifier},
    ModifierCase{"OptionAlone", 0x0800, Qt::AltModifier},
    ModifierCase{"CommandAlone", 0x0100, Qt::MetaModifier}),
    [](const auto& p) { return p.param.name; });
// clang-format on

class ArrangeMenuTest : public UiTest, public ::testing::Test {
protected:
    ArrangeMenu menu{store};
};

TEST_F(ArrangeMenuTest, AfterTheLayoutsNextDisplayTheCanvasWithItsHotKeyAndRefresh) {
    const QStringList shown = entries(menu);
    EXPECT_EQ(shown.mid(0, 15), layoutTitles());
    EXPECT_EQ(shown.mid(15),
              (QStringList{QStringLiteral("---"), QStringLiteral("Move to Next Display"),
                           QStringLiteral("Placement Canvas (⌃⌥Space)"),
                           QStringLiteral("Refresh Windows")}));
    EXPECT_EQ(entry(menu, QStringLiteral("Move to Next Display"))->shortcut(),
              QKeySequence(Qt::CTRL | Qt::ALT | Qt::META | Qt::Key_N));
    EXPECT_TRUE(menu.canvasItem()->shortcut().isEmpty());
    EXPECT_EQ(entry(menu, QStringLiteral("Refresh Windows"))->shortcut(),
              QKeySequence(Qt::CTRL | Qt::Key_R));

    // The application menu's canvas title is never shortened.
    store.setPlacementHotKey({117, 0x1B00, QStringLiteral("Forward Delete")});
    EXPECT_EQ(menu.canvasItem()->text(), QStringLiteral("Placement Canvas (⌃⌥⇧⌘Forward Delete)"));
}

class ShellMenuTest : public UiTest, public ::testing::Test {
protected:
    ShellMenuTest() { shell.launch(); }

    QMenu* applicationMenu() const {
        return shell.mainWindow()->menuBar()->actions().constFirst()->menu();
    }

    template <typename T>
    static QList<T*> visibleWindows() {
        QList<T*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<T*>(widget); window && window->isVisible()) {
                found << window;
            }
        }
        return found;
    }

    ApplicationShell shell{store};
};

TEST_F(ShellMenuTest, TraySettingsSelectsTheSectionAndBringsTheClosedWindowBack) {
    shell.mainWindow()->close();
    entry(*shell.trayMenu(), QStringLiteral("Settings"))->trigger();
    EXPECT_EQ(store.selectedSection(), TilmoraSection::settings);
    EXPECT_TRUE(shell.mainWindow()->isVisible());
    EXPECT_EQ(shell.mainWindow()->windowTitle(), QStringLiteral("Settings"));

    shell.mainWindow()->close();
    entry(*shell.trayMenu(), QStringLiteral("Open Tilmora"))->trigger();
    EXPECT_TRUE(shell.mainWindow()->isVisible());
}

TEST_F(ShellMenuTest, ApplicationMenuOpensTheSettingsWindowAgainAfterItWasClosed) {
    QAction* settings = entry(*applicationMenu(), QStringLiteral("Settings…"));
    ASSERT_TRUE(settings);
    for (int round = 0; round < 2; ++round) {
        settings->trigger();
        const auto shown = visibleWindows<QWidget>();
        const auto window = std::find_if(shown.begin(), shown.end(), [](QWidget* w) {
            return w->objectName() == QLatin1String("settings");
        });
        ASSERT_NE(window, shown.end()) << round;
        EXPECT_EQ((*window)->minimumSize(), QSize(680, 620));
        (*window)->close();
    }
}

TEST_F(ShellMenuTest, EitherMenuShowsTheOneAboutDialogAndAsksToQuit) {
    QSignalSpy quits(&shell, &ApplicationShell::quitRequested);
    entry(*shell.trayMenu(), QStringLiteral("About Tilmora"))->trigger();
    entry(*applicationMenu(), QStringLiteral("About Tilmora"))->trigger();
    const auto dialogs = visibleWindows<AboutPanelPresenter>();
    ASSERT_EQ(dialogs.size(), 1);
    EXPECT_EQ(AboutPanelPresenter::creditsText().count(QStringLiteral("\n\n")), 4);

    entry(*shell.trayMenu(), QStringLiteral("Quit Tilmora"))->trigger();
    entry(*applicationMenu(), QStringLiteral("Quit Tilmora"))->trigger();
    EXPECT_EQ(quits.count(), 2);
}

} // namespace
