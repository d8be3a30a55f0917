// A desktop scaled to 2 (Xft.dpi 192): the backend speaks points, so screens are half their
// pixel size, the store's layouts keep their physical size and land on twice as many pixels,
// and the pointer and window frames read back in points. A new Xft.dpi applies at once.
#include "platform/x11/X11Edid.h"
#include "x11/support/X11TestDesktop.h"
#include "x11/support/X11TestStore.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tilmora {
namespace {

using test::X11TestDesktop;

TEST(X11HiDpi, PointsAreDevicePixelsOverTheDesktopsScale) {
    // A 4K primary on the left, a 1080p monitor on its right with a 60 px panel at its top.
    X11TestDesktop desktop(
        {X11TestDesktop::WindowManager::openbox,
         "5760x2160",
         {{"*L", "3840/1016x2160/571+0+0", "screen"}, {"R", "1920/508x1080/286+3840+0"}}});
    ASSERT_TRUE(desktop.isReady());
    desktop.setXftDpi(192);
    ASSERT_TRUE(desktop.startPanel("0,0,60,0,0,0,0,0,3840,5759,0,0", "1920x60+3840+0"));
    const auto client = desktop.startTestClient({"--geometry", "400x300+200+200"});
    ASSERT_EQ(client.windows.size(), 1U);
    const xcb_window_t window = client.windows.front();
    test::X11TestStore running(desktop.display());
    X11WindowSystem& system = running.windowSystem;

    const std::vector<ScreenDescription> halfSize{
        {{0, 0, 1920, 1080}, {0, 0, 1920, 1080}, QStringLiteral("L"), 2.0, fnv1a("L")},
        {{1920, 540, 960, 540}, {1920, 540, 960, 510}, QStringLiteral("R"), 2.0, fnv1a("R")}};
    EXPECT_EQ(system.screens(), halfSize);

    // The centre layout's cap of 1180 x 820 points, centred on the 1920 x 1080 point primary.
    running.store.start();
    running.store.apply(LayoutAction::center);
    const QString status = running.store.statusMessage().value_or(QString());
    EXPECT_TRUE(status.startsWith(QStringLiteral("Center applied to"))) << status.toStdString();
    EXPECT_EQ(desktop.outerFrame(window), (std::array<std::int32_t, 4>{740, 260, 2360, 1640}));
    const WindowElement element{window};
    EXPECT_EQ(system.position(element), (CGPoint{370, 130}));
    EXPECT_EQ(system.size(element), (CGSize{1180, 820}));
    const auto onScreen = system.onScreenWindows();
    EXPECT_TRUE(std::any_of(onScreen.begin(), onScreen.end(), [](const OnScreenWindow& entry) {
        return entry.bounds == CGRect(370, 130, 1180, 820);
    })) << "no on-screen window with the placed bounds";

    // The pointer, from the window system and from passive input, on odd pixels.
    X11InputMonitor input(running.connection);
    std::vector<InputEvent> events;
    ASSERT_TRUE(input.start([&](const InputEvent& event) { events.push_back(event); }));
    const auto clickReportsAt = [&](CGPoint location) {
        events.clear();
        desktop.fakeButton(1, true);
        desktop.fakeButton(1, false);
        return desktop.waitUntil([&] {
            return events.size() >= 2 && events.front().location == location &&
                   events.back().location == location;
        });
    };
    desktop.fakeMotion(1001, 601);
    ASSERT_TRUE(desktop.waitUntil([&] {
        return system.pointerLocation() == CGPoint{500.5, 300.5};
    }));
    EXPECT_TRUE(clickReportsAt({500.5, 300.5}));

    // Back to 96 dpi: points are pixels again, without a new connection.
    desktop.setXftDpi(96);
    EXPECT_TRUE(desktop.waitUntil([&] {
        const auto screens = system.screens();
        return !screens.empty() && screens.front().frame == CGRect(0, 0, 3840, 2160) &&
               screens.front().scaleFactor == 1.0;
    }));
    EXPECT_EQ(system.position(element), (CGPoint{740, 260}));
    EXPECT_EQ(system.pointerLocation(), (CGPoint{1001, 601}));
    EXPECT_TRUE(clickReportsAt({1001, 601}));
}

} // namespace
} // namespace tilmora
