// What the backend does when there is no window manager, when the server goes away and when
// it comes back: every read fails cleanly, nothing hangs, and access returns with the server.
#include "platform/x11/X11Connection.h"
#include "platform/AXError.h"
#include "platform/x11/X11WindowSystem.h"
#include "x11/support/X11TestDesktop.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::X11TestDesktop;

TEST(X11Connection, WithoutAWindowManagerThereIsNoAccess) {
    X11TestDesktop desktop({X11TestDesktop::WindowManager::none, "1920x1080", {}});
    ASSERT_TRUE(desktop.isReady());
    X11Connection connection(QByteArray::fromStdString(desktop.display()));
    X11WindowSystem system(connection);

    EXPECT_FALSE(system.isTrusted());
    EXPECT_FALSE(system.requestTrust());
    // The screens are there all the same.
    EXPECT_EQ(system.screens().size(), 1U);
}

TEST(X11Connection, ALostServerFailsEveryReadAndIsReconnected) {
    X11TestDesktop desktop({X11TestDesktop::WindowManager::openbox, "1920x1080", {}});
    ASSERT_TRUE(desktop.isReady());
    const auto client = desktop.startTestClient({"--geometry", "400x300+10+10"});
    ASSERT_EQ(client.windows.size(), 1U);
    X11Connection connection(QByteArray::fromStdString(desktop.display()));
    X11WindowSystem system(connection);
    ASSERT_TRUE(system.isTrusted());
    const WindowElement window{client.windows.front()};
    ASSERT_TRUE(system.position(window));

    desktop.stopServer();

    EXPECT_FALSE(system.isTrusted());
    EXPECT_TRUE(system.screens().empty());
    EXPECT_TRUE(system.runningApplications().empty());
    EXPECT_FALSE(system.position(window));
    EXPECT_FALSE(system.isSizeSettable(window));
    EXPECT_EQ(system.setPosition(window, {0, 0}), AXError::failure);
    system.settle(window, std::chrono::milliseconds(35));
    EXPECT_TRUE(system.onScreenWindows().empty());
    EXPECT_FALSE(system.requestTrust());

    ASSERT_TRUE(desktop.restart());
    EXPECT_TRUE(system.requestTrust());
    EXPECT_EQ(system.screens().size(), 1U);
    const auto again = desktop.startTestClient({"--title", "Again"});
    ASSERT_EQ(again.windows.size(), 1U);
    EXPECT_EQ(system.title(WindowElement{again.windows.front()}), QStringLiteral("Again"));
}

} // namespace
} // namespace tilmora
