// Passive input on a real server under openbox with its shipped bindings: modifier changes
// from XKB, and window drags by the title bar and with alt, driven by XTest motion, reported
// from raw events while openbox holds the pointer and moves the window.
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

constexpr std::uint8_t controlKey = 37;
constexpr std::uint8_t controlRightKey = 105;
constexpr std::uint8_t altKey = 64;
constexpr std::uint8_t shiftKey = 50;
constexpr std::uint8_t superKey = 133;
constexpr std::uint8_t superRightKey = 134;
constexpr std::uint8_t capsLockKey = 66;
constexpr std::uint8_t numLockKey = 77;

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

    // Whether the window's client area is at least this far right of and below `from`.
    bool movedBy(xcb_window_t window, const std::array<std::int32_t, 4>& from, int x, int y) {
        const auto now = desktop_->clientGeometry(window);
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

TEST_F(X11InputMonitorTest, ModifierChangesComeFromXkbWithThePointer) {
    moveTo(300, 200);
    struct Step {
        std::uint8_t key;
        bool press;
    };
    // Locks and a second key of a held modifier change none of the four flags.
    const std::vector<Step> steps = {
        {controlKey, true},       {shiftKey, true},        {altKey, true},
        {superKey, true},         {capsLockKey, true},     {capsLockKey, false},
        {superRightKey, true},    {superKey, false},       {superRightKey, false},
        {altKey, false},          {shiftKey, false},       {numLockKey, true},
        {numLockKey, false},      {controlRightKey, true}, {controlKey, false},
        {controlRightKey, false},
    };
    const std::vector<std::uint64_t> expected = {
        Flags::control,
        Flags::control | Flags::shift,
        Flags::control | Flags::shift | Flags::option,
        Flags::control | Flags::shift | Flags::option | Flags::command,
        Flags::control | Flags::shift | Flags::option,
        Flags::control | Flags::shift,
        Flags::control,
        0,
    };
    for (const Step& step : steps) {
        desktop_->fakeKey(step.key, step.press);
    }
    ASSERT_TRUE(desktop_->waitUntil([&] { return events_.size() >= expected.size(); }));
    std::vector<std::uint64_t> flags;
    for (const InputEvent& event : events_) {
        EXPECT_EQ(event.type, Type::flagsChanged);
        EXPECT_EQ(event.location, (CGPoint{300, 200}));
        flags.push_back(event.modifierFlags);
    }
    EXPECT_EQ(flags, expected);

    monitor_->stop();
    desktop_->stopServer();
    EXPECT_FALSE(monitor_->start([](const InputEvent&) {}));
}

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
        {"alt+drag", {altKey}, Flags::option, false, 1, "1 2 3"},
        {"left-handed", {}, 0, true, 3, "3 2 1"},
    };
    const auto client = desktop_->startTestClient({"--geometry", "400x300+100+100"});
    ASSERT_EQ(client.windows.size(), 1U);
    const xcb_window_t window = client.windows.front();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_EQ(
            desktop_->runTool({"xmodmap", "-e", std::string("pointer = ") + row.buttonMapping}), 0);
        const auto before = desktop_->clientGeometry(window);
        ASSERT_TRUE(before);
        const auto extents = desktop_->cardinals(window, "_NET_FRAME_EXTENTS");
        ASSERT_EQ(extents.size(), 4U);
        const auto x = static_cast<std::int16_t>((*before)[0] + 60);
        const auto y = static_cast<std::int16_t>(
            (*before)[1] + (row.onTitleBar ? -static_cast<std::int32_t>(extents[2]) / 2 : 100));
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
