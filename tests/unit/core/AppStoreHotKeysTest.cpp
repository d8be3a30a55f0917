#include "core/AppStore.h"
#include "core/PreferenceKeys.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <tuple>
#include <vector>

using namespace tilmora;
using namespace Qt::StringLiterals;
namespace keys = tilmora::PreferenceKeys;

namespace {

constexpr std::uint32_t layoutMask = 0x1900; // ⌃⌥⌘
constexpr std::uint32_t controlOption = 0x1800;
constexpr std::uint32_t command = 0x0100;
constexpr std::uint32_t space = 49;
constexpr std::uint32_t leftArrow = 123;
constexpr std::uint32_t rightArrow = 124;

using Combinations = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

const QString refusedPrefix = u"Some global shortcuts could not be registered: "_s;
const QString refusedSuffix = u"They may already be used by your desktop or another app."_s;

// Mail's inbox, frontmost, and a store over it.
struct Desk {
    Desk() {
        fake.windowSystem.setScreens({builtInScreen});
        fake.windowSystem.addApplication(10, u"org.example.Mail"_s, u"Mail"_s);
        fake.windowSystem.addWindow(10, {100, 100, 600, 400}, u"Inbox"_s);
        fake.windowSystem.setFrontmostApplication(10);
    }
    void holdElsewhere(const Combinations& combinations) {
        for (const auto& [keyCode, modifiers] : combinations) {
            fake.hotKeyService.refuse(keyCode, modifiers);
        }
    }

    FakePlatform fake;
    std::unique_ptr<AppStore> store = std::make_unique<AppStore>(fake.platform());
};

TEST(HotKeyStartMessageTest, NamesTheFirstFourRefusalsAndCountsTheRest) {
    // clang-format off
    const Combinations arrowsAndM{{123, layoutMask}, {124, layoutMask}, {126, layoutMask}, {125, layoutMask}, {46, layoutMask}};
    Combinations arrowsMAndCanvas = arrowsAndM;
    arrowsMAndCanvas.emplace_back(space, controlOption);
    const std::pair<Combinations, std::optional<QString>> cases[] = {
        {{}, std::nullopt},
        {{{space, controlOption}}, refusedPrefix + u"⌃⌥Space. "_s + refusedSuffix},
        // Layout keys in id order, the canvas key last; exactly four need no count.
        {{{space, controlOption}, {18, layoutMask}, {40, layoutMask}, {leftArrow, layoutMask}}, refusedPrefix + u"⌃⌥⌘←, ⌃⌥⌘K, ⌃⌥⌘1, ⌃⌥Space. "_s + refusedSuffix},
        {arrowsAndM, refusedPrefix + u"⌃⌥⌘←, ⌃⌥⌘→, ⌃⌥⌘↑, ⌃⌥⌘↓ and 1 more. "_s + refusedSuffix},
        {arrowsMAndCanvas, refusedPrefix + u"⌃⌥⌘←, ⌃⌥⌘→, ⌃⌥⌘↑, ⌃⌥⌘↓ and 2 more. "_s + refusedSuffix}};
    // clang-format on
    for (const auto& [heldElsewhere, message] : cases) {
        Desk desk;
        desk.holdElsewhere(heldElsewhere);
        desk.store->start();
        EXPECT_EQ(desk.store->statusMessage(), message);
    }
}

TEST(ShortcutSetterTest, ReportsStoresAndKeepsTheKeysInStep) {
    const QByteArray spaceJson = R"({"keyCode":49,"modifiers":6144,"keyLabel":"Space"})";
    const QByteArray commandKJson = R"({"keyCode":40,"modifiers":256,"keyLabel":"K"})";
    const QByteArray layoutMaskJson = R"({"modifiers":6400})";
    const QString alreadyUsed = u"That shortcut is already used by your desktop or another app."_s;
    using Set = std::function<void(AppStore&)>;
    const Set commandK = [](AppStore& s) { s.setPlacementHotKey({40, command, u"K"_s}); };
    const Set commandOnly = [](AppStore& s) { s.setQuickHotKeyModifiers({command}); };
    // Started, what others hold, the change, the status, then what is stored under the setting's
    // key afterwards (absent: nothing, as after a fresh start) and what the store publishes,
    // both in the stored form.
    using Case =
        std::tuple<bool, Combinations, Set, QString, std::optional<QByteArray>, QByteArray>;
    // clang-format off
    const std::vector<Case> canvasCases{
        {true, {}, commandK, u"Placement Canvas hotkey changed to ⌘K."_s, commandKJson, commandKJson},
        {true, {}, [](AppStore& s) { s.setPlacementHotKey(HotKeyShortcut::defaultShortcut()); }, u"Placement Canvas hotkey changed to ⌃⌥Space."_s, spaceJson, spaceJson},
        {true, {{40, command}}, commandK, alreadyUsed, std::nullopt, spaceJson},
        // Before start no hot key is live, so a refusal does not count.
        {false, {{40, command}}, commandK, u"Placement Canvas hotkey changed to ⌘K."_s, commandKJson, commandKJson},
        {true, {}, [](AppStore& s) { s.setPlacementHotKey({40, 0x0400, u"K"_s}); }, u"Use at least one modifier key with a normal key."_s, std::nullopt, spaceJson}};
    const std::vector<Case> modifierCases{
        {true, {}, [](AppStore& s) { s.setQuickHotKeyModifiers({0x0300}); }, u"Quick Layout hotkeys changed to ⇧⌘ + layout keys."_s, R"({"modifiers":768})", R"({"modifiers":768})"},
        {true, {{rightArrow, command}, {46, command}}, commandOnly, refusedPrefix + u"⌘→, ⌘M. "_s + refusedSuffix, std::nullopt, layoutMaskJson},
        {false, {{rightArrow, command}}, commandOnly, u"Quick Layout hotkeys changed to ⌘ + layout keys."_s, R"({"modifiers":256})", R"({"modifiers":256})"},
        {true, {}, [](AppStore& s) { s.setQuickHotKeyModifiers({0x0400}); }, u"Choose at least one quick hotkey modifier."_s, std::nullopt, layoutMaskJson}};
    // clang-format on
    for (const bool canvas : {true, false}) {
        for (const auto& [started, heldElsewhere, set, message, stored, published] :
             canvas ? canvasCases : modifierCases) {
            SCOPED_TRACE(message.toStdString());
            Desk desk;
            desk.holdElsewhere(heldElsewhere);
            if (started) {
                desk.store->start();
            }
            set(*desk.store);
            AppStore& store = *desk.store;
            EXPECT_EQ(store.statusMessage(), message);
            EXPECT_EQ(desk.fake.preferences.dataValue(canvas ? keys::placementHotKey
                                                             : keys::quickHotKeyModifiers),
                      stored);
            EXPECT_EQ(canvas ? store.placementHotKey().encode()
                             : store.quickHotKeyModifiers().encode(),
                      published);
            // Whatever happened, the registered keys are the published ones, also once started
            // later.
            store.start();
            for (const auto& registration : desk.fake.hotKeyService.registrations()) {
                if (registration.id == HotKeyCenter::canvasHotKeyID) {
                    EXPECT_EQ(registration.keyCode, store.placementHotKey().keyCode);
                    EXPECT_EQ(registration.modifiers, store.placementHotKey().modifiers);
                } else {
                    EXPECT_EQ(registration.modifiers, store.quickHotKeyModifiers().modifiers);
                }
            }
        }
    }
}

} // namespace
