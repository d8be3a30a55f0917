#include "core/AppStore.h"
#include "core/PreferenceKeys.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace tilmora;
using namespace Qt::StringLiterals;
namespace keys = tilmora::PreferenceKeys;

namespace {

constexpr std::uint32_t defaultLayoutMask = 0x1900; // ⌃⌥⌘
constexpr std::uint32_t controlOption = 0x1800;
constexpr std::uint32_t command = 0x0100;
constexpr std::uint32_t space = 49;
constexpr std::uint32_t leftArrow = 123;
constexpr std::uint32_t rightArrow = 124;
constexpr std::uint32_t canvasID = HotKeyCenter::canvasHotKeyID;

const HotKeyShortcut commandK{40, command, u"K"_s};
const QString alreadyUsed = u"That shortcut is already used by macOS or another app."_s;

using Combination = std::pair<std::uint32_t, std::uint32_t>;

class AppStoreHotKeysTest : public ::testing::Test {
protected:
    AppStoreHotKeysTest() {
        fake.windowSystem.setScreens({screen({0, 0, 1440, 900}, 1, "Built-in")});
        fake.windowSystem.addApplication(10, u"org.example.Mail"_s, u"Mail"_s);
        inbox = fake.windowSystem.addWindow(10, {100, 100, 600, 400}, u"Inbox"_s);
        fake.windowSystem.setFrontmostApplication(10);
    }

    void holdElsewhere(const std::vector<Combination>& combinations) {
        for (const auto& [keyCode, modifiers] : combinations) {
            fake.hotKeyService.refuse(keyCode, modifiers);
        }
    }

    FakePlatform fake;
    WindowElement inbox;
    std::unique_ptr<AppStore> store = std::make_unique<AppStore>(fake.platform());
};

struct StartCase {
    std::string name;
    std::vector<Combination> heldElsewhere;
    std::optional<QString> message;

    friend void PrintTo(const StartCase& c, std::ostream* out) { *out << c.name; }
};

class HotKeyStartMessageTest : public AppStoreHotKeysTest,
                               public ::testing::WithParamInterface<StartCase> {};

TEST_P(HotKeyStartMessageTest, NamesTheFirstFourRefusalsAndCountsTheRest) {
    holdElsewhere(GetParam().heldElsewhere);
    store->start();
    EXPECT_EQ(store->statusMessage(), GetParam().message);
}

const std::vector<Combination> fourArrowsAndM{{123, defaultLayoutMask},
                                              {124, defaultLayoutMask},
                                              {126, defaultLayoutMask},
                                              {125, defaultLayoutMask},
                                              {46, defaultLayoutMask}};

INSTANTIATE_TEST_SUITE_P(
    AppStore, HotKeyStartMessageTest,
    ::testing::Values(
        StartCase{"NoneRefused", {}, std::nullopt},
        StartCase{"CanvasOnly",
                  {{space, controlOption}},
                  u"Some global shortcuts could not be registered: ⌃⌥Space. They may already be "
                  u"used by macOS or another app."_s},
        // Layout keys in id order, the canvas key last; exactly four need no count.
        StartCase{"FourWithTheCanvasLast",
                  {{space, controlOption},
                   {18, defaultLayoutMask},
                   {40, defaultLayoutMask},
                   {leftArrow, defaultLayoutMask}},
                  u"Some global shortcuts could not be registered: ⌃⌥⌘←, ⌃⌥⌘K, ⌃⌥⌘1, ⌃⌥Space. "
                  u"They may already be used by macOS or another app."_s},
        StartCase{"Five", fourArrowsAndM,
                  u"Some global shortcuts could not be registered: ⌃⌥⌘←, ⌃⌥⌘→, ⌃⌥⌘↑, ⌃⌥⌘↓ and 1 "
                  u"more. They may already be used by macOS or another app."_s},
        StartCase{"SixWithTheCanvas",
                  [] {
                      auto held = fourArrowsAndM;
                      held.emplace_back(space, controlOption);
                      return held;
                  }(),
                  u"Some global shortcuts could not be registered: ⌃⌥⌘←, ⌃⌥⌘→, ⌃⌥⌘↑, ⌃⌥⌘↓ and 2 "
                  u"more. They may already be used by macOS or another app."_s}),
    [](const auto& testCase) { return testCase.param.name; });

TEST_F(AppStoreHotKeysTest, StartTwiceRegistersOnce) {
    store->start();
    store->start();
    EXPECT_EQ(fake.hotKeyService.attempts().size(), 16u);
    EXPECT_EQ(fake.hotKeyService.registrations().size(), 16u);
}

class OpenCanvas final : public PlacementCanvas {
public:
    bool isOpen() const override { return open; }
    void close() override { open = false; }
    void show(const std::vector<DisplayGeometry>&, const TilmoraWindow&,
              const QHash<std::uint32_t, DisplayLayoutProfile>&, Apply) override {
        open = true;
    }

    bool open = false;
};

TEST_F(AppStoreHotKeysTest, KeysRunTheirCommandsOnALaterTurn) {
    OpenCanvas canvas;
    store->setPlacementCanvas(&canvas);
    store->start();

    ASSERT_TRUE(fake.hotKeyService.pressShortcut(leftArrow, defaultLayoutMask));
    EXPECT_FALSE(store->statusMessage());
    fake.scheduler.runPending();
    EXPECT_EQ(store->statusMessage(), u"Left Half applied to Mail."_s);

    ASSERT_TRUE(fake.hotKeyService.pressShortcut(space, controlOption));
    fake.scheduler.runPending();
    EXPECT_TRUE(canvas.open);

    fake.windowSystem.close(inbox);
    fake.hotKeyService.pressShortcut(rightArrow, defaultLayoutMask);
    fake.scheduler.runPending();
    EXPECT_EQ(store->statusMessage(), u"No target window is available."_s);
}

TEST_F(AppStoreHotKeysTest, CommandForAStoreThatIsGoneDoesNothing) {
    store->start();
    fake.hotKeyService.pressShortcut(leftArrow, defaultLayoutMask);
    store.reset();
    fake.scheduler.runPending();
    // The store's keys went with it.
    EXPECT_TRUE(fake.hotKeyService.registrations().empty());
}

struct SetterCase {
    std::string name;
    bool started;
    std::vector<Combination> heldElsewhere;
    std::function<void(AppStore&)> set;
    QString message;
    const QString* key;
    // What is stored under the key afterwards (absent: nothing, as after a fresh start) and
    // what the store publishes, both in the stored form.
    std::optional<QByteArray> stored;
    QByteArray published;

    friend void PrintTo(const SetterCase& c, std::ostream* out) { *out << c.name; }
};

class ShortcutSetterTest : public AppStoreHotKeysTest,
                           public ::testing::WithParamInterface<SetterCase> {};

TEST_P(ShortcutSetterTest, ReportsStoresAndKeepsTheKeysInStep) {
    const SetterCase& c = GetParam();
    holdElsewhere(c.heldElsewhere);
    if (c.started) {
        store->start();
    }
    GetParam().set(*store);

    EXPECT_EQ(store->statusMessage(), c.message);
    EXPECT_EQ(fake.preferences.dataValue(*c.key), c.stored);
    EXPECT_EQ(c.key == &keys::placementHotKey ? store->placementHotKey().encode()
                                              : store->quickHotKeyModifiers().encode(),
              c.published);

    // Whatever happened, the registered keys are the published ones, also once started later.
    store->start();
    for (const auto& registration : fake.hotKeyService.registrations()) {
        if (registration.id == canvasID) {
            EXPECT_EQ(registration.keyCode, store->placementHotKey().keyCode);
            EXPECT_EQ(registration.modifiers, store->placementHotKey().modifiers);
        } else {
            EXPECT_EQ(registration.modifiers, store->quickHotKeyModifiers().modifiers)
                << "id " << registration.id;
        }
    }
}

const QByteArray defaultShortcutJson = R"({"keyCode":49,"modifiers":6144,"keyLabel":"Space"})";
const QByteArray commandKJson = R"({"keyCode":40,"modifiers":256,"keyLabel":"K"})";
const QByteArray defaultModifiersJson = R"({"modifiers":6400})";

void setCommandK(AppStore& store) {
    store.setPlacementHotKey(commandK);
}

void setCommandModifier(AppStore& store) {
    store.setQuickHotKeyModifiers({command});
}

INSTANTIATE_TEST_SUITE_P(
    AppStore, ShortcutSetterTest,
    ::testing::Values(
        SetterCase{"CanvasKeyAccepted",
                   true,
                   {},
                   setCommandK,
                   u"Placement Canvas hotkey changed to ⌘K."_s,
                   &keys::placementHotKey,
                   commandKJson,
                   commandKJson},
        SetterCase{"CanvasKeyDefaultAgain",
                   true,
                   {},
                   [](AppStore& s) { s.setPlacementHotKey(HotKeyShortcut::defaultShortcut()); },
                   u"Placement Canvas hotkey changed to ⌃⌥Space."_s,
                   &keys::placementHotKey,
                   defaultShortcutJson,
                   defaultShortcutJson},
        SetterCase{"CanvasKeyRefused",
                   true,
                   {{40, command}},
                   setCommandK,
                   alreadyUsed,
                   &keys::placementHotKey,
                   std::nullopt,
                   defaultShortcutJson},
        // Before start no hot key is live, so a refusal does not count.
        SetterCase{"CanvasKeyRefusedBeforeStart",
                   false,
                   {{40, command}},
                   setCommandK,
                   u"Placement Canvas hotkey changed to ⌘K."_s,
                   &keys::placementHotKey,
                   commandKJson,
                   commandKJson},
        SetterCase{"CanvasKeyWithoutModifier",
                   true,
                   {},
                   [](AppStore& s) {
                       s.setPlacementHotKey({40, 0x0400, u"K"_s});
                   },
                   u"Use at least one modifier key with a normal key."_s,
                   &keys::placementHotKey,
                   std::nullopt,
                   defaultShortcutJson},
        SetterCase{"ModifiersAccepted",
                   true,
                   {},
                   [](AppStore& s) { s.setQuickHotKeyModifiers({0x0300}); },
                   u"Quick Layout hotkeys changed to ⇧⌘ + layout keys."_s,
                   &keys::quickHotKeyModifiers,
                   R"({"modifiers":768})",
                   R"({"modifiers":768})"},
        SetterCase{"ModifiersRefused",
                   true,
                   {{rightArrow, command}, {46, command}},
                   setCommandModifier,
                   u"Some global shortcuts could not be registered: ⌘→, ⌘M. They may already be "
                   u"used by macOS or another app."_s,
                   &keys::quickHotKeyModifiers,
                   std::nullopt,
                   defaultModifiersJson},
        SetterCase{"ModifiersBeforeStart",
                   false,
                   {{rightArrow, command}},
                   setCommandModifier,
                   u"Quick Layout hotkeys changed to ⌘ + layout keys."_s,
                   &keys::quickHotKeyModifiers,
                   R"({"modifiers":256})",
                   R"({"modifiers":256})"},
        SetterCase{"ModifiersWithoutModifier",
                   true,
                   {},
                   [](AppStore& s) { s.setQuickHotKeyModifiers({0x0400}); },
                   u"Choose at least one quick hotkey modifier."_s,
                   &keys::quickHotKeyModifiers,
                   std::nullopt,
                   defaultModifiersJson}),
    [](const auto& testCase) { return testCase.param.name; });

} // namespace
