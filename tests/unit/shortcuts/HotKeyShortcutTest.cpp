#include "shortcuts/HotKeyShortcut.h"

#include "platform/EventModifierFlags.h"

#include <gtest/gtest.h>

#include <tuple>

namespace tilmora {

void PrintTo(const HotKeyShortcut& shortcut, std::ostream* out) {
    *out << '(' << shortcut.keyCode << ", 0x" << std::hex << shortcut.modifiers << std::dec << ", ";
    PrintTo(shortcut.keyLabel, out);
    *out << ')';
}

} // namespace tilmora

using namespace tilmora;
using namespace Qt::StringLiterals;

namespace {

constexpr std::uint64_t shiftFlag = EventModifierFlags::shift;
constexpr std::uint64_t controlFlag = EventModifierFlags::control;
constexpr std::uint64_t optionFlag = EventModifierFlags::option;
constexpr std::uint64_t commandFlag = EventModifierFlags::command;
constexpr std::uint64_t capsLockFlag = 0x010000;

TEST(HotKeyShortcutTest, FromEventRecordsAModifiedKeyOrRefuses) {
    // Key code, event flags, the characters the source reports (null: none), the label (null: not
    // a shortcut) and the Carbon modifiers.
    // clang-format off
    const std::tuple<std::uint32_t, std::uint64_t, const char16_t*, const char16_t*, std::uint32_t> cases[] = {
        {0, shiftFlag, u"a", u"A", 0x0200},
        {40, shiftFlag | controlFlag | optionFlag | commandFlag, u"k", u"K", 0x1B00},
        {40, commandFlag | capsLockFlag, u"k", u"K", 0x0100},  // caps lock is dropped
        {40, 0, u"k", nullptr, 0}, {40, capsLockFlag, u"k", nullptr, 0},
        {59, controlFlag, nullptr, nullptr, 0},  // control on the left control key
        // Keys that type only whitespace, or nothing, fall back to the key-code name.
        {49, controlFlag | optionFlag, u" ", u"Space", 0x1800},
        {61, commandFlag, u"", u"Key 61", 0x0100},
        {40, controlFlag, u" k\n", u"K", 0x1000},
        // Arrow keys keep the character the source reports, not the table's arrow.
        {123, controlFlag, u"\uF702", u"\uF702", 0x1000}};
    // clang-format on
    for (const auto& [keyCode, flags, characters, label, modifiers] : cases) {
        KeyEvent event{keyCode, flags, std::nullopt};
        if (characters != nullptr) {
            event.charactersIgnoringModifiers = QString::fromUtf16(characters);
        }
        const auto expected =
            label ? std::optional(HotKeyShortcut{keyCode, modifiers, QString::fromUtf16(label)})
                  : std::nullopt;
        EXPECT_EQ(HotKeyShortcut::fromEvent(event), expected) << keyCode << " flags " << flags;
    }
    // Only Escape and the left-hand modifier keys are refused; the right-hand ones (54, 60 to 62)
    // and Fn (63) stay recordable.
    for (std::uint32_t keyCode = 0; keyCode < 128; ++keyCode) {
        const bool refused = keyCode == 53 || (keyCode >= 55 && keyCode <= 59);
        const auto shortcut = HotKeyShortcut::fromEvent({keyCode, commandFlag, std::nullopt});
        EXPECT_EQ(shortcut.has_value(), !refused) << "key code " << keyCode;
    }
}

TEST(HotKeyShortcutTest, EncodesAllThreeKeysCompactlyAndDecodesStrictly) {
    EXPECT_EQ(HotKeyShortcut::defaultShortcut().encode(),
              QByteArray(R"({"keyCode":49,"modifiers":6144,"keyLabel":"Space"})"));
    const HotKeyShortcut extreme{4294967295u, 4294967295u, u"←\"é"_s};
    EXPECT_EQ(HotKeyShortcut::decode(extreme.encode()), extreme);
    using Shortcut = std::optional<HotKeyShortcut>;
    // clang-format off
    const std::pair<const char*, Shortcut> cases[] = {
        {R"({"keyLabel":"Space","modifiers":6144,"keyCode":49,"extra":[1]})", HotKeyShortcut::defaultShortcut()},
        {R"({"keyCode":40,"modifiers":256})", HotKeyShortcut{40, 256, u"K"_s}},
        {R"({"keyCode":122,"modifiers":256,"keyLabel":null})", HotKeyShortcut{122, 256, u"Key 122"_s}},
        {R"({"keyCode":40,"modifiers":1024})", HotKeyShortcut{40, 1024, u"K"_s}},  // not checked here
        {R"({"keyCode":40,"modifiers":256,"keyLabel":7})", std::nullopt},
        {R"({"modifiers":256})", std::nullopt},
        {R"({"keyCode":"40","modifiers":256})", std::nullopt},
        {R"({"keyCode":-1,"modifiers":256})", std::nullopt},
        {R"({"keyCode":1e30,"modifiers":256})", std::nullopt},
        {R"({"keyCode":40,"modifiers":4294967296})", std::nullopt},
        {R"([40,256,"K"])", std::nullopt},
        {R"({"keyCode":40,)", std::nullopt}};
    // clang-format on
    for (const auto& [json, expected] : cases) {
        EXPECT_EQ(HotKeyShortcut::decode(json), expected) << json;
    }
}

} // namespace
