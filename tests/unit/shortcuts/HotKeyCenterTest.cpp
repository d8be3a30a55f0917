#include "shortcuts/HotKeyCenter.h"

#include "support/FakeHotKeyService.h"
#include "support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
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

constexpr std::uint32_t defaultLayoutMask = 0x1900; // ⌃⌥⌘
constexpr std::uint32_t controlOption = 0x1800;
constexpr std::uint32_t command = 0x0100;
constexpr std::uint32_t leftArrow = 123;
constexpr std::uint32_t rightArrow = 124;
constexpr std::int32_t taken = HotKeyStatus::alreadyTaken;

const HotKeyShortcut controlOptionSpace = HotKeyShortcut::defaultShortcut();
const HotKeyShortcut commandK{40, command, u"K"_s};

// Hands presses over the way the real service does when it reads a key event that was queued
// before the key was unregistered: by id, whatever is registered now.
class QueuedPressService final : public HotKeyService {
public:
    explicit QueuedPressService(FakeHotKeyService& fake)
        : fake_(fake) {}

    HotKeyRegistrationResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            std::uint32_t id) override {
        return fake_.registerHotKey(keyCode, modifiers, id);
    }
    void unregisterHotKey(HotKeyHandle handle) override { fake_.unregisterHotKey(handle); }
    void setPressedHandler(PressedHandler handler) override { handler_ = std::move(handler); }

    void deliver(std::uint32_t id) const { handler_(id); }
    bool hasHandler() const { return static_cast<bool>(handler_); }

private:
    FakeHotKeyService& fake_;
    PressedHandler handler_;
};

class HotKeyCenterTest : public ::testing::Test {
protected:
    void start(const HotKeyShortcut& canvas = controlOptionSpace,
               std::uint32_t layoutMask = defaultLayoutMask) {
        center.start(canvas, {layoutMask}, [this](HotKeyCommand c) { received.push_back(c); });
    }

    // The modifier mask of each registered layout key, by id; 0 where the key is not registered.
    std::vector<std::uint32_t> layoutKeyMasks() const {
        std::vector<std::uint32_t> masks(15, 0);
        for (const auto& registration : service.registrations()) {
            if (registration.id >= 1 && registration.id <= 15) {
                masks[registration.id - 1] = registration.modifiers;
            }
        }
        return masks;
    }

    std::optional<FakeHotKeyService::Registration> canvasRegistration() const {
        for (const auto& registration : service.registrations()) {
            if (registration.id == HotKeyCenter::canvasHotKeyID) {
                return registration;
            }
        }
        return std::nullopt;
    }

    FakeHotKeyService service;
    ManualScheduler scheduler;
    std::vector<HotKeyCommand> received;
    HotKeyCenter center{service, scheduler};
};

TEST_F(HotKeyCenterTest, EveryKeyDeliversItsCommandOnALaterTurn) {
    struct Key {
        std::uint32_t keyCode;
        std::uint32_t modifiers;
        HotKeyCommand command;
    };
    using L = LayoutAction;
    const std::vector<Key> keys{
        {123, defaultLayoutMask, HotKeyCommand::layout(L::leftHalf)},
        {124, defaultLayoutMask, HotKeyCommand::layout(L::rightHalf)},
        {126, defaultLayoutMask, HotKeyCommand::layout(L::topHalf)},
        {125, defaultLayoutMask, HotKeyCommand::layout(L::bottomHalf)},
        {46, defaultLayoutMask, HotKeyCommand::layout(L::maximize)},
        {8, defaultLayoutMask, HotKeyCommand::layout(L::center)},
        {32, defaultLayoutMask, HotKeyCommand::layout(L::topLeft)},
        {34, defaultLayoutMask, HotKeyCommand::layout(L::topRight)},
        {38, defaultLayoutMask, HotKeyCommand::layout(L::bottomLeft)},
        {40, defaultLayoutMask, HotKeyCommand::layout(L::bottomRight)},
        {18, defaultLayoutMask, HotKeyCommand::layout(L::leftThird)},
        {19, defaultLayoutMask, HotKeyCommand::layout(L::centerThird)},
        {20, defaultLayoutMask, HotKeyCommand::layout(L::rightThird)},
        {21, defaultLayoutMask, HotKeyCommand::layout(L::twoThirdsLeft)},
        {23, defaultLayoutMask, HotKeyCommand::layout(L::twoThirdsRight)},
        {49, controlOption, HotKeyCommand::placementCanvas()},
    };
    start();
    ASSERT_TRUE(center.failures().empty());
    ASSERT_EQ(service.registrations().size(), keys.size());

    std::vector<HotKeyCommand> expected;
    for (const Key& key : keys) {
        ASSERT_TRUE(service.pressShortcut(key.keyCode, key.modifiers)) << key.command;
        expected.push_back(key.command);
    }
    // Never inside the service's callback.
    EXPECT_TRUE(received.empty());
    scheduler.runPending();
    EXPECT_EQ(received, expected);
}

TEST_F(HotKeyCenterTest, SecondStartOnlySwapsTheHandler) {
    start();
    std::vector<HotKeyCommand> second;
    center.start(commandK, {command}, [&](HotKeyCommand c) { second.push_back(c); });

    EXPECT_EQ(service.attempts().size(), 16u);
    EXPECT_EQ(center.canvasShortcut(), controlOptionSpace);
    EXPECT_EQ(center.quickLayoutModifiers(), QuickHotKeyModifiers{defaultLayoutMask});
    service.pressShortcut(leftArrow, defaultLayoutMask);
    scheduler.runPending();
    EXPECT_TRUE(received.empty());
    EXPECT_EQ(second, std::vector{HotKeyCommand::layout(LayoutAction::leftHalf)});
}

TEST_F(HotKeyCenterTest, StartKeepsWhatRegisteredAndListsLayoutFailuresBeforeTheCanvas) {
    service.refuse(49, controlOption, -9);
    service.refuse(40, defaultLayoutMask);
    service.refuse(leftArrow, defaultLayoutMask);
    start();

    EXPECT_EQ(center.failures(),
              (std::vector<Failure>{{u"⌃⌥⌘←"_s, taken}, {u"⌃⌥⌘K"_s, taken}, {u"⌃⌥Space"_s, -9}}));
    EXPECT_EQ(service.registrations().size(), 13u);
    EXPECT_EQ(center.quickLayoutModifiers(), QuickHotKeyModifiers{defaultLayoutMask});
    EXPECT_FALSE(center.canvasShortcut());
}

struct CanvasCase {
    std::string name;
    bool started;
    HotKeyShortcut next;
    // Combinations another application holds once the center has started.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> heldElsewhere;
    std::int32_t status;
    std::optional<HotKeyShortcut> inForce;
    // The key registered under the canvas id afterwards.
    std::optional<HotKeyShortcut> registered;

    friend void PrintTo(const CanvasCase& c, std::ostream* out) { *out << c.name; }
};

class CanvasShortcutTest : public HotKeyCenterTest,
                           public ::testing::WithParamInterface<CanvasCase> {};

TEST_P(CanvasShortcutTest, ReplacesTheKeyOrPutsThePreviousOneBack) {
    const CanvasCase& c = GetParam();
    if (c.started) {
        start();
    }
    for (const auto& [keyCode, modifiers] : c.heldElsewhere) {
        service.refuse(keyCode, modifiers);
    }
    const std::size_t attemptsBefore = service.attempts().size();

    EXPECT_EQ(center.updateCanvasShortcut(c.next), c.status);
    EXPECT_EQ(center.canvasShortcut(), c.inForce);
    const auto registration = canvasRegistration();
    ASSERT_EQ(registration.has_value(), c.registered.has_value());
    if (registration) {
        EXPECT_EQ(registration->keyCode, c.registered->keyCode);
        EXPECT_EQ(registration->modifiers, c.registered->modifiers);
        // The id table follows what is registered; presses arrive only once started.
        EXPECT_EQ(service.press(HotKeyCenter::canvasHotKeyID), c.started);
        scheduler.runPending();
        EXPECT_EQ(received, c.started ? std::vector{HotKeyCommand::placementCanvas()}
                                      : std::vector<HotKeyCommand>{});
    }
    if (c.status == HotKeyStatus::parameterError) {
        EXPECT_EQ(service.attempts().size(), attemptsBefore);
    }
    // The layout keys are never touched.
    EXPECT_EQ(layoutKeyMasks(), std::vector<std::uint32_t>(15, c.started ? defaultLayoutMask : 0));
}

INSTANTIATE_TEST_SUITE_P(
    HotKeyCenter, CanvasShortcutTest,
    ::testing::Values(CanvasCase{"Accepted", true, commandK, {}, 0, commandK, commandK},
                      CanvasCase{"AcceptedBeforeStart", false, commandK, {}, 0, commandK, commandK},
                      CanvasCase{"RefusedPutsThePreviousBack",
                                 true,
                                 commandK,
                                 {{40, command}},
                                 taken,
                                 controlOptionSpace,
                                 controlOptionSpace},
                      CanvasCase{"EqualToALayoutKey",
                                 true,
                                 {leftArrow, defaultLayoutMask, u"←"_s},
                                 {},
                                 taken,
                                 controlOptionSpace,
                                 controlOptionSpace},
                      CanvasCase{"PreviousCannotComeBack",
                                 true,
                                 commandK,
                                 {{40, command}, {49, controlOption}},
                                 taken,
                                 controlOptionSpace,
                                 std::nullopt},
                      CanvasCase{"RefusedWithoutPrevious",
                                 false,
                                 commandK,
                                 {{40, command}},
                                 taken,
                                 std::nullopt,
                                 std::nullopt},
                      CanvasCase{"NoModifier",
                                 true,
                                 {40, 0x0400, u"K"_s},
                                 {},
                                 HotKeyStatus::parameterError,
                                 controlOptionSpace,
                                 controlOptionSpace}),
    [](const auto& testCase) { return testCase.param.name; });

struct ModifiersCase {
    std::string name;
    bool started;
    // Combinations another application holds from the beginning.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> heldElsewhere;
    std::uint32_t next;
    std::vector<Failure> returned;
    std::optional<std::uint32_t> inForce;
    std::vector<Failure> failuresAfterwards;
    // Layout keys registered afterwards, all with the set in force.
    std::size_t registeredCount;

    friend void PrintTo(const ModifiersCase& c, std::ostream* out) { *out << c.name; }
};

class QuickLayoutModifiersTest : public HotKeyCenterTest,
                                 public ::testing::WithParamInterface<ModifiersCase> {};

TEST_P(QuickLayoutModifiersTest, MovesAllFifteenKeysOrNone) {
    const ModifiersCase& c = GetParam();
    for (const auto& [keyCode, modifiers] : c.heldElsewhere) {
        service.refuse(keyCode, modifiers);
    }
    if (c.started) {
        start();
    }
    const std::size_t attemptsBefore = service.attempts().size();

    EXPECT_EQ(center.updateQuickLayoutModifiers({c.next}), c.returned);
    EXPECT_EQ(center.quickLayoutModifiers(),
              c.inForce ? std::optional(QuickHotKeyModifiers{*c.inForce}) : std::nullopt);
    EXPECT_EQ(center.failures(), c.failuresAfterwards);
    std::size_t registered = 0;
    for (std::uint32_t id = 1; id <= 15; ++id) {
        const std::uint32_t mask = layoutKeyMasks()[id - 1];
        if (mask != 0) {
            ++registered;
            EXPECT_EQ(mask, c.inForce) << "id " << id;
        }
        // The id table follows what is registered.
        EXPECT_EQ(service.press(id), c.started && mask != 0) << "id " << id;
    }
    EXPECT_EQ(registered, c.registeredCount);
    scheduler.runPending();
    EXPECT_EQ(received.size(), c.started ? registered : 0u);
    if (c.returned.size() == 1 && c.returned[0].status == HotKeyStatus::parameterError) {
        EXPECT_EQ(service.attempts().size(), attemptsBefore);
    }
    // The canvas key is never touched.
    EXPECT_EQ(canvasRegistration().has_value(), c.started);
}

INSTANTIATE_TEST_SUITE_P(
    HotKeyCenter, QuickLayoutModifiersTest,
    ::testing::Values(
        ModifiersCase{"Accepted", true, {}, command, {}, command, {}, 15},
        ModifiersCase{"SuccessClearsStartFailures",
                      true,
                      {{leftArrow, defaultLayoutMask}},
                      command,
                      {},
                      command,
                      {},
                      15},
        ModifiersCase{"OneRefusalRestoresThePreviousSet",
                      true,
                      {{rightArrow, command}},
                      command,
                      {{u"⌘→"_s, taken}},
                      defaultLayoutMask,
                      {},
                      15},
        // The failures are the restored set's, the return value the attempted set's.
        ModifiersCase{"PreviousSetPartlyRefused",
                      true,
                      {{rightArrow, command}, {leftArrow, defaultLayoutMask}},
                      command,
                      {{u"⌘→"_s, taken}},
                      defaultLayoutMask,
                      {{u"⌃⌥⌘←"_s, taken}},
                      14},
        ModifiersCase{"RefusedWithoutPreviousSet",
                      false,
                      {{rightArrow, command}},
                      command,
                      {{u"⌘→"_s, taken}},
                      std::nullopt,
                      {},
                      0},
        ModifiersCase{"NoModifier",
                      true,
                      {},
                      0,
                      {{QString(), HotKeyStatus::parameterError}},
                      defaultLayoutMask,
                      {},
                      15},
        // A mask's extra bits go to the service untouched.
        ModifiersCase{"ExtraBitsKept", true, {}, command | 0x0400, {}, command | 0x0400, {}, 15}),
    [](const auto& testCase) { return testCase.param.name; });

TEST_F(HotKeyCenterTest, PressQueuedBeforeItsKeyWentAwayIsIgnored) {
    QueuedPressService queued(service);
    HotKeyCenter queuedCenter(queued, scheduler);
    queuedCenter.start(controlOptionSpace, {defaultLayoutMask},
                       [this](HotKeyCommand c) { received.push_back(c); });

    // The canvas key goes: the new one is refused and so is the old one when it is put back.
    service.refuse(40, command);
    service.refuse(49, controlOption);
    queuedCenter.updateCanvasShortcut(commandK);
    queued.deliver(HotKeyCenter::canvasHotKeyID);
    queued.deliver(999);
    queued.deliver(1);
    scheduler.runPending();
    EXPECT_EQ(received, std::vector{HotKeyCommand::layout(LayoutAction::leftHalf)});
}

TEST_F(HotKeyCenterTest, DestructionUnregistersEverythingAndStopsListening) {
    QueuedPressService queued(service);
    auto doomed = std::make_unique<HotKeyCenter>(queued, scheduler);
    doomed->start(controlOptionSpace, {defaultLayoutMask}, [](HotKeyCommand) {});
    doomed->updateQuickLayoutModifiers({command});
    doomed->updateCanvasShortcut(commandK);
    ASSERT_EQ(service.registrations().size(), 16u);

    doomed.reset();
    EXPECT_TRUE(service.registrations().empty());
    EXPECT_EQ(service.staleUnregistrationCount(), 0);
    EXPECT_FALSE(queued.hasHandler());
}

} // namespace
