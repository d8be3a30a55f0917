// Global hot keys on a real server: grabs another client holds refuse exactly those shortcuts,
// and presses sent with XTest arrive in every lock state and after keyboard changes.
#include "platform/qt/QtScheduler.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11HotKeyService.h"
#include "shortcuts/HotKeyCenter.h"
#include "x11/support/X11TestDesktop.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::X11TestDesktop;

namespace key = test::keycode;
constexpr std::uint8_t cKey = 54;
constexpr std::uint8_t spaceKey = 65;
// The key that types Y on a US keyboard and Z on a German one.
constexpr std::uint8_t yPositionKey = 29;

constexpr std::uint32_t control = CarbonModifierFlags::control;
constexpr std::uint32_t option = CarbonModifierFlags::option;
constexpr std::uint32_t command = CarbonModifierFlags::command;
constexpr std::uint16_t controlAltSuper = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

class X11HotKeys : public testing::Test {
protected:
    void SetUp() override {
        desktop_ = std::make_unique<X11TestDesktop>(
            X11TestDesktop::Options{X11TestDesktop::WindowManager::none, "1920x1080", {}});
        ASSERT_TRUE(desktop_->isReady());
        connection_ =
            std::make_unique<X11Connection>(QByteArray::fromStdString(desktop_->display()));
        service_ = std::make_unique<X11HotKeyService>(*connection_);
        service_->setPressedHandler([this](std::uint32_t id) { pressed_.push_back(id); });
    }

    // Presses control+alt+super+key until a press is reported: after a keyboard change the
    // grabs are renewed on a later turn of the event loop, and presses before that go elsewhere.
    bool pressUntilReported(std::uint8_t arrow) {
        for (int attempt = 0; attempt < 50 && pressed_.empty(); ++attempt) {
            desktop_->pressKeys({key::control, key::alt, key::super, arrow});
            desktop_->waitUntil([&] { return !pressed_.empty(); }, std::chrono::milliseconds(100));
        }
        return !pressed_.empty();
    }

    // Grabs the key as another client would (the desktop's observer connection); the X error
    // code, 0 when the grab succeeded.
    int grabAsAnotherClient(std::uint8_t keycode, std::uint16_t modifiers) {
        xcb_connection_t* other = desktop_->observer();
        const auto cookie = xcb_grab_key_checked(other, 0, desktop_->root(), modifiers, keycode,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_generic_error_t* error = xcb_request_check(other, cookie);
        const int code = error ? error->error_code : 0;
        std::free(error);
        return code;
    }

    // Returns once the server has handled every request of the service's connection, which
    // requests of other clients may otherwise overtake.
    void sync() {
        connection_->reply<xcb_get_input_focus_reply_t>(
            xcb_get_input_focus(connection_->raw()).sequence);
    }

    // The lock modifiers the server's keyboard state has on.
    std::uint16_t lockState() {
        xcb_connection_t* c = desktop_->observer();
        xcb_query_pointer_reply_t* reply =
            xcb_query_pointer_reply(c, xcb_query_pointer(c, desktop_->root()), nullptr);
        const std::uint16_t mask = reply ? reply->mask & 0xFF : 0;
        std::free(reply);
        return mask;
    }

    std::unique_ptr<X11TestDesktop> desktop_;
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<X11HotKeyService> service_;
    std::vector<std::uint32_t> pressed_;
};

TEST_F(X11HotKeys, AnotherClientsGrabRefusesExactlyThoseShortcuts) {
    constexpr int badAccess = 10;
    // Another client holds control+alt+super+Left with NumLock only, and +C outright.
    ASSERT_EQ(grabAsAnotherClient(key::left, controlAltSuper | XCB_MOD_MASK_2), 0);
    ASSERT_EQ(grabAsAnotherClient(cKey, controlAltSuper), 0);
    QtScheduler scheduler;
    {
        HotKeyCenter center(*service_, scheduler);
        center.start(HotKeyShortcut::defaultShortcut(), QuickHotKeyModifiers::defaultLayouts,
                     [](const HotKeyCommand&) {});
        using Failure = HotKeyCenter::RegistrationFailure;
        EXPECT_EQ(center.failures(),
                  (std::vector<Failure>{{QStringLiteral("⌃⌥⌘←"), HotKeyStatus::alreadyTaken},
                                        {QStringLiteral("⌃⌥⌘C"), HotKeyStatus::alreadyTaken}}));
        // What Tilmora holds itself is taken too.
        EXPECT_EQ(service_->registerHotKey(124, control | option | command, 99).status,
                  HotKeyStatus::alreadyTaken);
        // The refused Left got the variants without NumLock at first; they were given back.
        sync();
        EXPECT_EQ(grabAsAnotherClient(key::left, controlAltSuper), 0);
        EXPECT_EQ(grabAsAnotherClient(key::left, controlAltSuper | XCB_MOD_MASK_LOCK), 0);
        EXPECT_EQ(grabAsAnotherClient(key::left + 1, controlAltSuper), badAccess);
    }
    // Gone with the center: every key is free again.
    sync();
    EXPECT_EQ(grabAsAnotherClient(key::left + 1, controlAltSuper), 0);
    EXPECT_EQ(grabAsAnotherClient(spaceKey, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1), 0);
}

TEST_F(X11HotKeys, PressesArriveInEveryLockStateAndAfterKeyboardChanges) {
    ASSERT_EQ(service_->registerHotKey(123, control | option | command, 1).status,
              HotKeyStatus::success);
    ASSERT_EQ(service_->registerHotKey(16, control | option | command, 2).status,
              HotKeyStatus::success);

    struct Row {
        const char* name;
        std::vector<std::string> tool;
        std::vector<std::uint8_t> locks;
        std::uint16_t expectedState;
    };
    const std::vector<Row> rows = {
        {"no lock", {}, {}, 0},
        {"CapsLock", {}, {key::capsLock}, XCB_MOD_MASK_LOCK},
        {"NumLock", {}, {key::numLock}, XCB_MOD_MASK_2},
        {"both locks", {}, {key::capsLock, key::numLock}, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2},
        {"NumLock moved to Mod3",
         {"xmodmap", "-e", "clear mod2", "-e", "add mod3 = Num_Lock"},
         {key::numLock},
         XCB_MOD_MASK_3},
        {"German layout", {"setxkbmap", "-layout", "de"}, {key::numLock}, XCB_MOD_MASK_2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        if (!row.tool.empty()) {
            ASSERT_EQ(desktop_->runTool(row.tool), 0);
        }
        for (const std::uint8_t lock : row.locks) {
            desktop_->pressKeys({lock});
        }
        ASSERT_TRUE(desktop_->waitUntil([&] { return lockState() == row.expectedState; }));
        pressed_.clear();
        ASSERT_TRUE(pressUntilReported(key::left));
        // Every earlier press has arrived once a later one has.
        desktop_->pressKeys({key::control, key::alt, key::super, yPositionKey});
        ASSERT_TRUE(desktop_->waitUntil([&] { return !pressed_.empty() && pressed_.back() == 2; }));
        pressed_.clear();
        // Without super the combination is not Tilmora's; the key by position is.
        desktop_->pressKeys({key::control, key::alt, key::left});
        desktop_->pressKeys({key::control, key::alt, key::super, yPositionKey});
        ASSERT_TRUE(desktop_->waitUntil([&] { return !pressed_.empty(); }));
        EXPECT_EQ(pressed_, std::vector<std::uint32_t>{2});
        for (const std::uint8_t lock : row.locks) {
            desktop_->pressKeys({lock});
        }
    }
}

} // namespace
} // namespace tilmora
