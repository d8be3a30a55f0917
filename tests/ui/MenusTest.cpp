#include "UiTest.h"
#include "ui/ApplicationShell.h"
#include "ui/ArrangeMenu.h"
#include "ui/MainWindow.h"
#include "ui/MenuText.h"
#include "ui/TrayMenu.h"

using namespace tilmora;

namespace {

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

class ShellMenuTest : public UiTest, public ::testing::Test {
protected:
    ApplicationShell shell{store};
};

TEST_F(ShellMenuTest, TraySettingsSelectsTheSectionAndBringsTheClosedWindowBack) {
    shell.launch();
    shell.mainWindow()->close();
    entry(*shell.trayMenu(), QStringLiteral("Settings"))->trigger();
    EXPECT_EQ(store.selectedSection(), TilmoraSection::settings);
    EXPECT_TRUE(shell.mainWindow()->isVisible());
    EXPECT_EQ(shell.mainWindow()->windowTitle(), QStringLiteral("Settings"));
}

} // namespace
