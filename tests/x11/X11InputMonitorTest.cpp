// Passive input on a real server under openbox with its shipped bindings: window drags by the
// title bar and with alt, driven by XTest motion, reported from raw events while openbox holds
// the pointer and moves the window.
#include "platform/x11/X11InputMonitor.h"
#include "platform/EventModifierFlags.h"
#include "platform/x11/X11Connection.h"
#include "x11/support/X11TestDesktop.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::X11TestDesktop;
using Type = InputEvent::Type;
namespace Flags = EventModifierFlags;

class X11InputMonitorTest : public testing::Test {
protected:
    void SetUp() override {
        desktop_ = std::make_unique<X11TestDesktop>(X11TestDesktop::Options{
            X11TestDesktop::WindowManager::openboxDefaults, "1920x1080", {}});
        ASSERT_TRUE(desktop_->isReady());
        connection_ =
            std::make_unique<X11Connection>(QByteArray::fromStdString(desktop_->display()));
        monitor_ = std::make_unique<X11InputMonitor>(*connection_);
        ASSERT_TRUE(monitor_->start([this](const InputEvent& e) { events_.push_back(e); }));
    }

    void moveTo(std::int16_t x, std::int16_t y) {
        desktop_->fakeMotion(x, y);
        ASSERT_TRUE(desktop_->waitUntil([&] { return pointer() == std::pair{x, y}; }));
    }

    std::pair<std::int16_t, std::int16_t> pointer() {
        xcb_connection_t* c = desktop_->observer();
        xcb_query_pointer_reply_t* reply =
            xcb_query_pointer_reply(c, xcb_query_pointer(c, desktop_->root()), nullptr);
        const std::pair<std::int16_t, std::int16_t> position =
            reply ? std::pair{reply->root_x, reply->root_y}
                  : std::pair<std::int16_t, std::int16_t>{};
        std::free(reply);
        return position;
    }

    // Whether the window's frame is at least this far right of and below `from`.
    bool movedBy(xcb_window_t window, const std::array<std::int32_t, 4>& from, int x, int y) {
        const auto now = desktop_->outerFrame(window);
        return now && (*now)[0] >= from[0] + x && (*now)[1] >= from[1] + y;
    }

    bool waitForEvent(Type type, CGPoint location) {
        return desktop_->waitUntil([&] {
            return !events_.empty() && events_.back().type == type &&
                   events_.back().location == location;
        });
    }

    std::unique_ptr<X11TestDesktop> desktop_;
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<X11InputMonitor> monitor_;
    std::vector<InputEvent> events_;
};

TEST_F(X11InputMonitorTest, WindowManagerDragsAreReportedWhileItHoldsThePointer) {
    struct Row {
        const char* name;
        std::vector<std::uint8_t> modifiers;
        std::uint64_t flags;
        // The drag starts in the middle of the title bar, else inside the client area.
        bool onTitleBar;
        // The physical button pressed; the mapping makes it the left one.
        std::uint8_t button;
        const char* buttonMapping;
    };
    const std::vector<Row> rows = {
        {"title bar", {}, 0, true, 1, "1 2 3"},
        {"alt+drag", {test::keycode::alt}, Flags::option, false, 1, "1 2 3"},
        {"left-handed", {}, 0, true, 3, "3 2 1"},
    };
    const auto client = desktop_->startTestClient({"--geometry", "400x300+100+100"});
    ASSERT_EQ(client.windows.size(), 1U);
    const xcb_window_t window = client.windows.front();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_EQ(
            desktop_->runTool({"xmodmap", "-e", std::string("pointer = ") + row.buttonMapping}), 0);
        const auto before = desktop_->outerFrame(window);
        ASSERT_TRUE(before);
        const auto extents = desktop_->cardinals(window, "_NET_FRAME_EXTENTS");
        ASSERT_EQ(extents.size(), 4U);
        const auto titleBar = static_cast<std::int32_t>(extents[2]);
        const auto x = static_cast<std::int16_t>((*before)[0] + 60);
        const auto y = static_cast<std::int16_t>((*before)[1] +
                                                 (row.onTitleBar ? titleBar / 2 : titleBar + 100));
        moveTo(x, y);
        for (const std::uint8_t modifier : row.modifiers) {
            desktop_->fakeKey(modifier, true);
        }
        ASSERT_TRUE(desktop_->waitUntil([&] {
            return row.flags == 0 ||
                   (!events_.empty() && events_.back().modifierFlags == row.flags);
        }));
        events_.clear();
        desktop_->fakeButton(row.button, true);
        ASSERT_TRUE(waitForEvent(Type::leftMouseDown, CGPoint{double(x), double(y)}));
        // Motion in steps, as a mouse sends it, until openbox has moved the window well along:
        // it starts the move only once the pointer has left the press point.
        CGPoint end{double(x), double(y)};
        for (int step = 0; step < 60 && !movedBy(window, *before, 100, 75); ++step) {
            end = CGPoint{end.x + 8, end.y + 6};
            desktop_->fakeMotion(static_cast<std::int16_t>(end.x),
                                 static_cast<std::int16_t>(end.y));
            ASSERT_TRUE(waitForEvent(Type::leftMouseDragged, end));
        }
        EXPECT_TRUE(movedBy(window, *before, 100, 75));
        desktop_->fakeButton(row.button, false);
        ASSERT_TRUE(waitForEvent(Type::leftMouseUp, end));
        for (const std::uint8_t modifier : row.modifiers) {
            desktop_->fakeKey(modifier, false);
        }

        ASSERT_GE(events_.size(), 3U);
        EXPECT_EQ(events_.front().type, Type::leftMouseDown);
        for (std::size_t i = 1; i + 1 < events_.size(); ++i) {
            EXPECT_EQ(events_[i].type, Type::leftMouseDragged);
        }
        for (const InputEvent& event : events_) {
            EXPECT_EQ(event.modifierFlags, row.flags);
        }
    }
}

} // namespace
} // namespace tilmora
