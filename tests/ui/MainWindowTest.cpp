#include "ui/MainWindow.h"
#include "UiTest.h"
#include "ui/ApplicationShell.h"
#include "ui/PermissionBanner.h"
#include "ui/SidebarView.h"
#include "ui/TrayMenu.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QVBoxLayout>

using namespace tilmora;

namespace {

struct NavigationCase {
    std::string name;
    std::optional<TilmoraSection> section;
    QString windowTitle;
    QString detail; // the object name of the section view shown
};

class NavigationTest : public UiTest, public ::testing::TestWithParam<NavigationCase> {
protected:
    NavigationTest() { window.show(); }

    int selectedRow() const {
        const auto selected = window.sidebar()->list()->selectedItems();
        return selected.isEmpty() ? -1 : window.sidebar()->list()->row(selected.first());
    }

    MainWindow window{store};
};

TEST_P(NavigationTest, SidebarAndStoreSelectTheSameSection) {
    const NavigationCase& c = GetParam();
    // Start elsewhere, so that every case changes the selection.
    store.setSelectedSection(c.section == TilmoraSection::about ? TilmoraSection::guide
                                                                : TilmoraSection::about);
    const int row = c.section ? static_cast<int>(*c.section) : -1;

    // From the store to the sidebar, the title and the detail.
    store.setSelectedSection(c.section);
    EXPECT_EQ(selectedRow(), row);
    EXPECT_EQ(window.windowTitle(), c.windowTitle);
    EXPECT_EQ(window.detail()->currentWidget()->objectName(), c.detail);

    // From a click on the sidebar to the store.
    if (c.section) {
        store.setSelectedSection(std::nullopt);
        QListWidget* list = window.sidebar()->list();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(row)).center());
        EXPECT_EQ(store.selectedSection(), c.section);
        EXPECT_EQ(window.windowTitle(), c.windowTitle);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(MainWindow, NavigationTest, ::testing::Values(
    NavigationCase{"Arrange", TilmoraSection::arrange, QStringLiteral("Arrange"), QStringLiteral("section-arrange")},
    NavigationCase{"Windows", TilmoraSection::windows, QStringLiteral("Windows"), QStringLiteral("section-windows")},
    NavigationCase{"SavedLayoutsReadSaved", TilmoraSection::savedLayouts, QStringLiteral("Saved"), QStringLiteral("section-saved")},
    NavigationCase{"Settings", TilmoraSection::settings, QStringLiteral("Settings"), QStringLiteral("section-settings")},
    NavigationCase{"Guide", TilmoraSection::guide, QStringLiteral("Guide"), QStringLiteral("section-guide")},
    NavigationCase{"About", TilmoraSection::about, QStringLiteral("About"), QStringLiteral("section-about")},
    NavigationCase{"NothingShowsArrangeUnderTheApplicationsName", std::nullopt, QStringLiteral("Tilmora"), QStringLiteral("section-arrange")}),
    [](const auto& p) { return p.param.name; });
// clang-format on

class PermissionBannerTest : public UiTest, public ::testing::Test {
protected:
    PermissionBannerTest() {
        setAccessGranted(false);
        auto* column = new QVBoxLayout(&section);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(banner);
        column->addStretch();
        section.show();
    }

    QPushButton* button(const QString& title) const {
        for (QPushButton* candidate : banner->findChildren<QPushButton*>()) {
            if (candidate->text() == title) {
                return candidate;
            }
        }
        return nullptr;
    }

    QWidget section;
    PermissionBanner* banner = new PermissionBanner(store, &section);
};

TEST_F(PermissionBannerTest, RowWhenItFitsStackedWhenNotAndBackAgain) {
    const QWidget* buttons = button(QStringLiteral("Grant Access"))->parentWidget();
    const QWidget* label = banner->findChild<QLabel*>()->parentWidget();
    const int rowWidth = banner->rowWidth();
    for (const int width : {rowWidth, rowWidth - 1, rowWidth + 200, 560, rowWidth}) {
        section.resize(width, 400);
        QApplication::processEvents();
        EXPECT_EQ(banner->width(), width);
        if (width >= rowWidth) {
            EXPECT_EQ(banner->orientation(), Qt::Horizontal) << width;
            EXPECT_GT(buttons->x(), label->geometry().right()) << width;
            EXPECT_LT(buttons->y(), label->geometry().bottom()) << width;
        } else {
            EXPECT_EQ(banner->orientation(), Qt::Vertical) << width;
            EXPECT_GT(buttons->y(), label->geometry().bottom()) << width;
        }
        EXPECT_LE(buttons->geometry().right(), width) << width;
        EXPECT_LE(label->geometry().right(), width) << width;
    }
}

TEST_F(PermissionBannerTest, ButtonsReachTheStoreAndTheBannerLeavesOnceAccessIsThere) {
    QPushButton* grant = button(QStringLiteral("Grant Access"));
    ASSERT_TRUE(grant);
    grant->click();
    EXPECT_EQ(fake.windowSystem.promptsShown(), 1);

    button(QStringLiteral("Open Settings"))->click();
    EXPECT_EQ(store.selectedSection(), TilmoraSection::guide);

    int relaunches = 0;
    store.setRelauncher([&]() -> std::optional<QString> {
        ++relaunches;
        return QStringLiteral("no executable");
    });
    button(QStringLiteral("Relaunch"))->click();
    EXPECT_EQ(relaunches, 1);

    EXPECT_TRUE(banner->isVisible());
    fake.windowSystem.setTrusted(true);
    button(QStringLiteral("Check Again"))->click();
    EXPECT_FALSE(banner->isVisible());
}

class ApplicationShellTest : public UiTest, public ::testing::Test {
protected:
    ApplicationShell shell{store};
};

TEST_F(ApplicationShellTest, ClosingHidesTheWindowAndShowingBringsItBack) {
    shell.launch();
    MainWindow* window = shell.mainWindow();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(window->isVisible());
    shell.showMainWindow();
    EXPECT_EQ(shell.mainWindow(), window);
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->isMinimized());
}

TEST_F(ApplicationShellTest, WhicheverSceneShowsFirstStartsTheStoreOnce) {
    EXPECT_FALSE(store.hasStarted());
    // The tray menu is the first scene shown; the window after it starts nothing more.
    shell.popUpMenuAtPointer();
    EXPECT_TRUE(store.hasStarted());
    shell.trayMenu()->close();
    const int registrations = fake.hotKeyService.attempts();
    EXPECT_GT(registrations, 0);
    shell.launch();
    EXPECT_TRUE(shell.mainWindow()->isVisible());
    EXPECT_EQ(fake.hotKeyService.attempts(), registrations);
}

} // namespace
