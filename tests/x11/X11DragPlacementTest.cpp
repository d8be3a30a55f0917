// A window dragged with the placement drag modifier held lands on the grid cell under the pointer
// when the button is released, under each window manager, also when the manager itself moves
// the window on that drag: the placement has to come after the manager's move has ended, or the
// manager drops the window where the pointer let go of it.
#include "platform/EventModifierFlags.h"
#include "support/FakePlatform.h"
#include "x11/support/X11TestDesktop.h"
#include "x11/support/X11TestStore.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::X11TestDesktop;
using WM = X11TestDesktop::WindowManager;

struct Manager {
    WM windowManager;
    // The modifier the manager itself moves windows with, made the placement drag modifier.
    std::uint8_t keycode;
    std::uint64_t flags;
    // Whether the manager reliably moves the window on that drag on this test desktop, so that
    // its move and Tilmora's placement race for the same release.
    bool movesTheWindow;
};

void PrintTo(const Manager& manager, std::ostream* out) {
    *out << X11TestDesktop::name(manager.windowManager);
}

class X11DragPlacementTest : public testing::TestWithParam<Manager> {};

TEST_P(X11DragPlacementTest, ReleasingWithTheModifierHeldPlacesOnTheCellUnderThePointer) {
    const Manager& manager = GetParam();
    if (const auto why =
            X11TestDesktop::unavailable(manager.windowManager, X11TestDesktop::Server::xvfb)) {
        GTEST_SKIP() << *why;
    }
    X11TestDesktop desktop({manager.windowManager, "1920x1080", {}});
    ASSERT_TRUE(desktop.isReady()) << desktop.failure();
    const auto client = desktop.startTestClient({"--geometry", "400x300+200+200"});
    ASSERT_EQ(client.windows.size(), 1U);
    const xcb_window_t window = client.windows.front();

    test::X11TestStore running(desktop.display());
    FakeCanvas overlay;
    running.store.setPlacementCanvas(&overlay);
    running.store.start();
    // A 2 x 2 grid without gaps.
    running.store.setPlacementDragModifier(PlacementDragModifier::fromEventFlags(manager.flags));
    running.store.updateActiveDisplayProfile(2, 2, 0);

    const auto before = desktop.outerFrame(window);
    ASSERT_TRUE(before);
    std::int16_t x = static_cast<std::int16_t>((*before)[0] + 200);
    std::int16_t y = static_cast<std::int16_t>((*before)[1] + 150);
    const auto pointerAt = [&](std::int16_t px, std::int16_t py) {
        xcb_connection_t* c = desktop.observer();
        xcb_query_pointer_reply_t* reply =
            xcb_query_pointer_reply(c, xcb_query_pointer(c, desktop.root()), nullptr);
        const bool there = reply && reply->root_x == px && reply->root_y == py;
        std::free(reply);
        return there;
    };
    desktop.fakeMotion(x, y);
    desktop.fakeKey(manager.keycode, true);
    desktop.fakeButton(1, true);
    // In steps, as a mouse moves, each one seen by the server before the next.
    while (x < 1500 || y < 800) {
        x = static_cast<std::int16_t>(std::min(x + 40, 1500));
        y = static_cast<std::int16_t>(std::min(y + 30, 800));
        desktop.fakeMotion(x, y);
        ASSERT_TRUE(desktop.waitUntil([&] { return pointerAt(x, y); }));
    }
    ASSERT_TRUE(desktop.waitUntil([&] {
        return overlay.passive && overlay.preview == CGRect(960, 540, 960, 540);
    })) << "no live preview of the bottom-right cell";
    const bool managerMoved = desktop.waitUntil(
        [&] {
            const auto now = desktop.outerFrame(window);
            return now && (*now)[0] > (*before)[0] + 400;
        },
        std::chrono::milliseconds(3000));
    desktop.fakeButton(1, false);
    desktop.fakeKey(manager.keycode, false);

    const std::array<std::int32_t, 4> cell{960, 540, 960, 540};
    EXPECT_TRUE(desktop.waitUntil([&] { return desktop.outerFrame(window) == cell; }))
        << "the window is at " << (*desktop.outerFrame(window))[0] << ", "
        << (*desktop.outerFrame(window))[1] << (managerMoved ? " after" : " without")
        << " the manager's own move";
    if (manager.movesTheWindow) {
        EXPECT_TRUE(managerMoved) << "the manager did not move the window: no race was tested";
    }
    EXPECT_FALSE(overlay.open);
    EXPECT_TRUE(
        running.store.statusMessage().value_or(QString()).startsWith(QStringLiteral("Dropped ")));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(WindowManagers, X11DragPlacementTest, testing::Values(
    Manager{WM::icewm, test::keycode::alt, EventModifierFlags::option, true},
    Manager{WM::fluxbox, test::keycode::alt, EventModifierFlags::option, true},
    Manager{WM::xfwm4, test::keycode::alt, EventModifierFlags::option, true},
    Manager{WM::mutter, test::keycode::super, EventModifierFlags::command, true},
    // These move a window on a modifier drag only some of the time here: the landing counts.
    Manager{WM::openboxDefaults, test::keycode::alt, EventModifierFlags::option, false},
    Manager{WM::metacity, test::keycode::alt, EventModifierFlags::option, false},
    Manager{WM::kwin, test::keycode::alt, EventModifierFlags::option, false}),
    [](const auto& testCase) { return X11TestDesktop::name(testCase.param.windowManager); });
// clang-format on

} // namespace
} // namespace tilmora
