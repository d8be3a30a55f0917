#include "core/AppStore.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

const ScreenDescription& builtIn = builtInScreen;
const ScreenDescription& studio = studioScreen;

class AppStoreLayoutsTest : public ::testing::Test {
protected:
    AppStoreLayoutsTest() {
        fake.windowSystem.setScreens({builtIn, studio});
        fake.windowSystem.addApplication(10, QStringLiteral("org.example.Mail"),
                                         QStringLiteral("Mail"));
        fake.windowSystem.addApplication(20, QStringLiteral("org.example.Editor"),
                                         QStringLiteral("Editor"));
        mail = fake.windowSystem.addWindow(10, {0, 25, 720, 875}, QStringLiteral("Inbox"));
        editor =
            fake.windowSystem.addWindow(20, {1440, 25, 960, 1055}, QStringLiteral("notes.txt"));
    }

    CGRect frameOf(WindowElement window) { return fake.windowSystem.window(window).frame; }

    FakePlatform fake;
    AppStore store{fake.platform()};
    WindowElement mail;
    WindowElement editor;
};

TEST_F(AppStoreLayoutsTest, RestoreOntoChangedDisplaysUsesRelativeFrames) {
    store.saveCurrentLayout(QStringLiteral("Work"));
    // The studio display is replaced by a larger one under another number and name, and the
    // windows have wandered off.
    fake.windowSystem.setScreens(
        {builtIn,
         {{1440, -180, 2560, 1440}, {1440, -180, 2560, 1415}, QStringLiteral("Wide"), 1, 7}});
    fake.windowSystem.window(editor).frame = {10, 30, 500, 500};
    fake.windowSystem.window(mail).frame = {300, 300, 500, 500};
    store.restore(store.savedLayouts().front());
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Restored 2 windows."));
    EXPECT_EQ(frameOf(mail), CGRect(0, 25, 720, 875));
    // The saved usable area overlaps the new display most: half its width, full height.
    EXPECT_EQ(frameOf(editor), CGRect(1440, -335, 1280, 1415));
}

TEST_F(AppStoreLayoutsTest, RestoreCountsLimitedWindowsAndSkipsMissingOnes) {
    fake.windowSystem.addApplication(30, QStringLiteral("org.example.Term"),
                                     QStringLiteral("Term"));
    const WindowElement term =
        fake.windowSystem.addWindow(30, {0, 25, 400, 300}, QStringLiteral("sh"));
    store.saveCurrentLayout(QStringLiteral("Three"));
    fake.windowSystem.removeApplication(20);
    fake.windowSystem.window(term).maximumSize = CGSize{300, 300};
    fake.windowSystem.window(mail).frame = {500, 500, 300, 300};
    fake.windowSystem.window(term).frame = {600, 100, 200, 200};
    store.restore(store.savedLayouts().front());
    EXPECT_EQ(store.statusMessage(),
              QStringLiteral("Restored 2 windows. 1 app windows limited their final size."));
    EXPECT_EQ(frameOf(mail), CGRect(0, 25, 720, 875));
}

TEST_F(AppStoreLayoutsTest, FailedWindowIsNotCountedAndNothingMatchingSaysSo) {
    store.saveCurrentLayout(QStringLiteral("Work"));
    fake.windowSystem.window(mail).isSizeSettable = false;
    store.restore(store.savedLayouts().front());
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Restored 1 windows."));

    fake.windowSystem.removeApplication(10);
    fake.windowSystem.removeApplication(20);
    store.restore(store.savedLayouts().front());
    EXPECT_EQ(store.statusMessage(), QStringLiteral("No matching windows are open."));
}

// A saved Mail window that is matched by application alone.
SavedWindowPlacement savedMail(WindowFrame frame) {
    SavedWindowPlacement saved;
    saved.appName = QStringLiteral("Mail");
    saved.bundleIdentifier = QStringLiteral("org.example.Mail");
    saved.title = QStringLiteral("Gone");
    saved.frame = frame;
    return saved;
}

TEST_F(AppStoreLayoutsTest, TwoSavedWindowsMatchingOneLiveWindowTheLaterWins) {
    store.restore({{}, {}, {}, {savedMail({0, 25, 700, 500}), savedMail({100, 125, 800, 600})}});
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Restored 2 windows."));
    EXPECT_EQ(frameOf(mail), CGRect(100, 125, 800, 600));
    // A saved frame below the minimum size comes back at it, inside the display.
    store.restore({{}, {}, {}, {savedMail({1300, 880, 100, 50})}});
    EXPECT_EQ(frameOf(mail), CGRect(1300, 810, 120, 90));
}

} // namespace
