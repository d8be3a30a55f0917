#include "shortcuts/HotKeyCenter.h"

#include "support/FakeHotKeyService.h"
#include "support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

using namespace tilmora;
using namespace Qt::StringLiterals;

namespace tilmora {
void PrintTo(const HotKeyCenter::RegistrationFailure& failure, std::ostream* out) {
    PrintTo(failure.shortcut, out);
    *out << " status " << failure.status;
}
} // namespace tilmora

namespace {

using Failure = HotKeyCenter::RegistrationFailure;
using Failures = std::vector<Failure>;
using Combinations = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

constexpr std::uint32_t layoutMask = 0x1900; // ⌃⌥⌘
constexpr std::uint32_t controlOption = 0x1800;
constexpr std::uint32_t command = 0x0100;
constexpr std::uint32_t leftArrow = 123;
constexpr std::uint32_t rightArrow = 124;
constexpr std::int32_t taken = HotKeyStatus::alreadyTaken;
constexpr std::int32_t parameterError = HotKeyStatus::parameterError;
constexpr std::uint32_t canvasID = HotKeyCenter::canvasHotKeyID;

const HotKeyShortcut controlOptionSpace = HotKeyShortcut::defaultShortcut();
const HotKeyShortcut commandK{40, command, u"K"_s};

// A centre over a fake service, recording the commands it delivers.
struct Rig {
    void start() {
        center.start(controlOptionSpace, {layoutMask},
                     [this](HotKeyCommand c) { received.push_back(c); });
    }
    void holdElsewhere(const Combinations& combinations) {
        for (const auto& [keyCode, modifiers] : combinations) {
            service.refuse(keyCode, modifiers);
        }
    }
    // The modifier mask each layout key is registered with, by id; 0 where it is not registered.
    std::vector<std::uint32_t> layoutKeyMasks() const {
        std::vector<std::uint32_t> masks;
        for (std::uint32_t id = 1; id <= 15; ++id) {
            masks.push_back(service.registered(id) ? service.registered(id)->modifiers : 0);
        }
        return masks;
    }
    // Presses every key by id; the number of commands delivered.
    std::size_t pressEveryKey() {
        received.clear();
        for (std::uint32_t id = 1; id <= 15; ++id) {
            service.press(id);
        }
        service.press(canvasID);
        scheduler.runPending();
        return received.size();
    }

    FakeHotKeyService service;
    ManualScheduler scheduler;
    std::vector<HotKeyCommand> received;
    HotKeyCenter center{service, scheduler};
};

class HotKeyCenterTest : public ::testing::Test, protected Rig {};

TEST_F(HotKeyCenterTest, KeysDeliverTheirCommandsOnALaterTurn) {
    start();
    ASSERT_TRUE(center.failures().empty());
    ASSERT_EQ(service.registrations().size(), 16u);
    ASSERT_TRUE(service.pressShortcut(23, layoutMask));
    ASSERT_TRUE(service.pressShortcut(49, controlOption));
    // Never inside the service's callback.
    EXPECT_TRUE(received.empty());
    scheduler.runPending();
    EXPECT_EQ(received, (std::vector{HotKeyCommand::layout(LayoutAction::twoThirdsRight),
                                     HotKeyCommand::placementCanvas()}));
}

TEST_F(HotKeyCenterTest, StartKeepsWhatRegisteredAndListsLayoutFailuresBeforeTheCanvas) {
    service.refuse(49, controlOption, -9);
    holdElsewhere({{40, layoutMask}, {leftArrow, layoutMask}});
    start();
    EXPECT_EQ(center.failures(),
              (Failures{{u"⌃⌥⌘←"_s, taken}, {u"⌃⌥⌘K"_s, taken}, {u"⌃⌥Space"_s, -9}}));
    EXPECT_EQ(service.registrations().size(), 13u);
    EXPECT_EQ(center.quickLayoutModifiers(), QuickHotKeyModifiers{layoutMask});
    EXPECT_FALSE(center.canvasShortcut());
}

TEST(HotKeyCenterCanvasTest, ReplacesTheKeyOrPutsThePreviousOneBack) {
    using Shortcut = std::optional<HotKeyShortcut>;
    const HotKeyShortcut layoutKey{leftArrow, layoutMask, u"←"_s};
    const HotKeyShortcut unmodifiedK{40, 0x0400, u"K"_s};
    // Started, the new shortcut, what others hold once started, the status, the shortcut in
    // force and the one registered under the canvas id afterwards.
    // clang-format off
    const std::tuple<bool, HotKeyShortcut, Combinations, std::int32_t, Shortcut, Shortcut> cases[] = {
        {true, commandK, {}, 0, commandK, commandK},
        {false, commandK, {}, 0, commandK, commandK},
        {true, commandK, {{40, command}}, taken, controlOptionSpace, controlOptionSpace},
        {true, layoutKey, {}, taken, controlOptionSpace, controlOptionSpace},
        {true, commandK, {{40, command}, {49, controlOption}}, taken, controlOptionSpace, std::nullopt},
        {false, commandK, {{40, command}}, taken, std::nullopt, std::nullopt},
        {true, unmodifiedK, {}, parameterError, controlOptionSpace, controlOptionSpace}};
    // clang-format on
    for (const auto& [started, next, heldElsewhere, status, inForce, registered] : cases) {
        SCOPED_TRACE(next.displayText().toStdString() + (started ? " started" : ""));
        Rig rig;
        if (started) {
            rig.start();
        }
        rig.holdElsewhere(heldElsewhere);
        const int attemptsBefore = rig.service.attempts();
        EXPECT_EQ(rig.center.updateCanvasShortcut(next), status);
        EXPECT_EQ(rig.center.canvasShortcut(), inForce);
        const auto* registration = rig.service.registered(canvasID);
        ASSERT_EQ(registration != nullptr, registered.has_value());
        if (registration) {
            EXPECT_EQ(registration->keyCode, registered->keyCode);
            EXPECT_EQ(registration->modifiers, registered->modifiers);
        }
        if (status == parameterError) {
            EXPECT_EQ(rig.service.attempts(), attemptsBefore);
        }
        // The layout keys are never touched; presses arrive only once started.
        EXPECT_EQ(rig.layoutKeyMasks(), std::vector<std::uint32_t>(15, started ? layoutMask : 0));
        EXPECT_EQ(rig.pressEveryKey(), started ? (registration ? 16u : 15u) : 0u);
    }
}

TEST(HotKeyCenterModifiersTest, MovesAllFifteenKeysOrNone) {
    // Started, what others hold from the beginning, the new set, the failures returned, the set
    // in force, the failures kept afterwards and how many layout keys are registered then.
    // clang-format off
    const std::tuple<bool, Combinations, std::uint32_t, Failures, std::optional<std::uint32_t>, Failures, std::size_t> cases[] = {
        {true, {}, command, {}, command, {}, 15},
        // Success also clears the failures of the start.
        {true, {{leftArrow, layoutMask}}, command, {}, command, {}, 15},
        {true, {{rightArrow, command}}, command, {{u"⌘→"_s, taken}}, layoutMask, {}, 15},
        // The failures kept are the restored set's, the ones returned the attempted set's.
        {true, {{rightArrow, command}, {leftArrow, layoutMask}}, command, {{u"⌘→"_s, taken}}, layoutMask, {{u"⌃⌥⌘←"_s, taken}}, 14},
        {false, {{rightArrow, command}}, command, {{u"⌘→"_s, taken}}, std::nullopt, {}, 0},
        {true, {}, 0, {{QString(), parameterError}}, layoutMask, {}, 15},
        // A mask's extra bits go to the service untouched.
        {true, {}, command | 0x0400, {}, command | 0x0400, {}, 15}};
    // clang-format on
    for (const auto& [started, heldElsewhere, next, returned, inForce, kept, count] : cases) {
        SCOPED_TRACE(::testing::Message() << "set " << next << " started " << started);
        Rig rig;
        rig.holdElsewhere(heldElsewhere);
        if (started) {
            rig.start();
        }
        const int attemptsBefore = rig.service.attempts();
        EXPECT_EQ(rig.center.updateQuickLayoutModifiers({next}), returned);
        EXPECT_EQ(rig.center.quickLayoutModifiers(),
                  inForce ? std::optional(QuickHotKeyModifiers{*inForce}) : std::nullopt);
        EXPECT_EQ(rig.center.failures(), kept);
        const auto masks = rig.layoutKeyMasks();
        EXPECT_EQ(masks.size() - std::count(masks.begin(), masks.end(), 0u), count);
        for (const std::uint32_t mask : masks) {
            EXPECT_TRUE(mask == 0 || mask == inForce) << mask;
        }
        if (!returned.empty() && returned[0].status == parameterError) {
            EXPECT_EQ(rig.service.attempts(), attemptsBefore);
        }
        // The canvas key is never touched; the id table follows what is registered.
        EXPECT_EQ(rig.service.registered(canvasID) != nullptr, started);
        EXPECT_EQ(rig.pressEveryKey(), started ? count + 1 : 0u);
    }
}

TEST_F(HotKeyCenterTest, PressQueuedBeforeItsKeyWentAwayIsIgnored) {
    start();
    // The canvas key goes: the new one is refused and so is the old one when it is put back.
    holdElsewhere({{40, command}, {49, controlOption}});
    center.updateCanvasShortcut(commandK);
    service.pressQueued(canvasID);
    service.pressQueued(999);
    service.pressQueued(1);
    scheduler.runPending();
    EXPECT_EQ(received, std::vector{HotKeyCommand::layout(LayoutAction::leftHalf)});
}

} // namespace
