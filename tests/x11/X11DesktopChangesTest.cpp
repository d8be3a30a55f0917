// The running store when the desktop changes under it: its window manager replaced (by itself,
// by xfwm4) or dying and started again, monitors removed and added. Windows, frames and work
// areas are read afresh, the hot keys keep working and placements land where they should.
#include "x11/support/X11TestDesktop.h"
#include "x11/support/X11TestStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tilmora {
namespace {

using test::X11TestDesktop;
namespace keycode = test::keycode;
using Frame = std::array<std::int32_t, 4>;

TEST(X11DesktopChanges, TheStoreLivesThroughManagerReplacementsAndMonitorChanges) {
    // The primary on the left with a 40 px panel at its bottom, a larger monitor on its right.
    X11TestDesktop desktop(
        {X11TestDesktop::WindowManager::openbox,
         "3360x1080",
         {{"*L", "1440/381x900/238+0+0", "screen"}, {"R", "1920/508x1080/286+1440+0"}}});
    ASSERT_TRUE(desktop.isReady());
    ASSERT_TRUE(desktop.startPanel("0,0,0,220,0,0,0,0,0,0,0,1439", "1440x40+0+860"));
    const auto client = desktop.startTestClient({"--geometry", "400x300+100+100"});
    ASSERT_EQ(client.windows.size(), 1U);
    const xcb_window_t window = client.windows.front();
    test::X11TestStore running(desktop.display());
    AppStore& store = running.store;
    store.start();

    // The quick layout hot key control+alt+super+arrow, and the frame it must give the window.
    const auto press = [&](std::uint8_t arrow) {
        desktop.pressKeys({keycode::control, keycode::alt, keycode::super, arrow});
    };
    const auto pressPlaces = [&](std::uint8_t arrow, const Frame& expected) {
        press(arrow);
        return desktop.waitUntil([&] { return desktop.outerFrame(window) == expected; });
    };
    // The store lists the window with the frame the server has, and the panel's space is kept.
    const auto storeSeesTheDesktop = [&] {
        store.refresh();
        const auto& listed = store.windows();
        const auto found = std::find_if(listed.begin(), listed.end(), [&](const auto& w) {
            return w.processIdentifier == client.pid;
        });
        const auto frame = desktop.outerFrame(window);
        const auto& displays = store.connectedDisplays();
        return store.permissionGranted() && listed.size() == 1 && found != listed.end() && frame &&
               found->frame == CGRect((*frame)[0], (*frame)[1], (*frame)[2], (*frame)[3]) &&
               !displays.empty() && displays.front().visibleFrame == CGRect(0, 0, 1440, 860);
    };
    const Frame leftHalf{0, 0, 720, 860};
    const Frame rightHalf{720, 0, 720, 860};
    ASSERT_TRUE(pressPlaces(keycode::left, leftHalf));
    ASSERT_TRUE(storeSeesTheDesktop());

    // Work areas published as mutter publishes them, which win over the panel's strut while
    // the manager announces them; a manager replacing it leaves the property behind.
    xcb_connection_t* c = running.connection.raw();
    const std::uint32_t published[] = {0, 0, 1440, 800, 1440, 0, 1920, 1080};
    const xcb_atom_t gtkWorkAreas = running.connection.internAtom("_GTK_WORKAREAS");
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, running.connection.root(),
                        running.connection.internAtom("_GTK_WORKAREAS_D0"), XCB_ATOM_CARDINAL, 32,
                        8, published);
    xcb_change_property(c, XCB_PROP_MODE_APPEND, running.connection.root(),
                        running.connection.internAtom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 32, 1,
                        &gtkWorkAreas);
    running.connection.flush();
    EXPECT_TRUE(desktop.waitUntil([&] {
        store.refresh();
        const auto& displays = store.connectedDisplays();
        return !displays.empty() && displays.front().visibleFrame == CGRect(0, 0, 1440, 800);
    }));

    // Each manager takes over from the one before, with --replace or after it died.
    struct Replacement {
        const char* name;
        bool previousDies;
        X11TestDesktop::WindowManager manager;
        std::uint8_t arrow;
        Frame expected;
    };
    const Replacement replacements[] = {
        {"openbox replacing itself", false, X11TestDesktop::WindowManager::openbox, keycode::right,
         rightHalf},
        {"xfwm4 replacing openbox", false, X11TestDesktop::WindowManager::xfwm4, keycode::left,
         leftHalf},
        {"openbox after xfwm4 died", true, X11TestDesktop::WindowManager::openbox, keycode::right,
         rightHalf},
    };
    for (const Replacement& step : replacements) {
        SCOPED_TRACE(step.name);
        if (step.previousDies) {
            ASSERT_TRUE(desktop.killWindowManager());
            // Without a manager nothing is listed, and a hot key says why nothing moves.
            store.refresh();
            EXPECT_FALSE(store.permissionGranted());
            EXPECT_TRUE(store.windows().empty());
            const QString denied =
                WindowManagerError(WindowManagerError::accessibilityDenied).errorDescription();
            store.setStatusMessage(std::nullopt);
            press(step.arrow);
            EXPECT_TRUE(desktop.waitUntil([&] { return store.statusMessage() == denied; }));
        }
        ASSERT_TRUE(desktop.replaceWindowManager(step.manager));
        EXPECT_TRUE(desktop.waitUntil(storeSeesTheDesktop));
        EXPECT_TRUE(pressPlaces(step.arrow, step.expected))
            << store.statusMessage().value_or(QString()).toStdString();
        EXPECT_TRUE(desktop.waitUntil(storeSeesTheDesktop));
    }

    // A monitor goes away and another one comes; the window moves onto the new one. Under
    // openbox: xfwm4 on Xvfb knows only the monitor that has the output, and keeps windows on it.
    ASSERT_TRUE(desktop.deleteMonitor("R"));
    store.refresh();
    EXPECT_EQ(store.connectedDisplays().size(), 1U);
    store.moveTargetToNextDisplay();
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Only one display is connected."));
    ASSERT_TRUE(desktop.setMonitor({"S", "1920/508x1080/286+1440+0"}));
    store.refresh();
    ASSERT_EQ(store.connectedDisplays().size(), 2U);
    EXPECT_EQ(store.connectedDisplays()[1].name, QStringLiteral("S"));
    store.moveTargetToNextDisplay();
    EXPECT_EQ(desktop.outerFrame(window), (Frame{2400, 0, 960, 1080}))
        << store.statusMessage().value_or(QString()).toStdString();
}

} // namespace
} // namespace tilmora
