#include "shortcuts/HotKeyShortcut.h"

#include "platform/EventModifierFlags.h"

#include <gtest/gtest.h>

#include <QSet>

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

TEST(HotKeyShortcutTest, LabelsFollowAnsiKeyPositionsWithANumberedFallback) {
    const std::pair<std::uint32_t, QString> cases[] = {
        // The digit row follows the keyboard, not numeric order.
        {0, u"A"_s},
        {11, u"B"_s},
        {22, u"6"_s},
        {23, u"5"_s},
        {28, u"8"_s},
        {29, u"0"_s},
        {40, u"K"_s},
        {36, u"Return"_s},
        {49, u"Space"_s},
        {117, u"Forward Delete"_s},
        {121, u"Page Down"_s},
        {123, u"←"_s},
        {126, u"↑"_s},
        {10, u"Key 10"_s},
        {24, u"Key 24"_s},
        {53, u"Key 53"_s},
        {122, u"Key 122"_s},
        {127, u"Key 127"_s},
        {4294967295u, u"Key 4294967295"_s}};
    for (const auto& [keyCode, label] : cases) {
        EXPECT_EQ(HotKeyShortcut::labelForKeyCode(keyCode), label) << "key code " << keyCode;
    }
}

struct EventCase {
    const char* name; // a test name: letters, digits, underscores
    std::uint32_t keyCode;
    std::uint64_t flags;
    const char16_t* characters; // nullptr: the source reports none
    const char16_t* label;      // nullptr: not a shortcut
    std::uint32_t modifiers;
};

void PrintTo(const EventCase& c, std::ostream* out) {
    *out << c.name;
}

class FromEventTest : public ::testing::TestWithParam<EventCase> {};

TEST_P(FromEventTest, RecordsOrRefuses) {
    const auto& c = GetParam();
    KeyEvent event{c.keyCode, c.flags, std::nullopt};
    if (c.characters != nullptr) {
        event.charactersIgnoringModifiers = QString::fromUtf16(c.characters);
    }
    const auto shortcut = HotKeyShortcut::fromEvent(event);
    if (c.label == nullptr) {
        EXPECT_EQ(shortcut, std::nullopt);
    } else {
        EXPECT_EQ(shortcut, (HotKeyShortcut{c.keyCode, c.modifiers, QString::fromUtf16(c.label)}));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Events, FromEventTest,
    ::testing::Values(EventCase{"shift_a", 0, shiftFlag, u"a", u"A", 0x0200},
                      EventCase{"all_four", 40, shiftFlag | controlFlag | optionFlag | commandFlag,
                                u"k", u"K", 0x1B00},
                      EventCase{"caps_lock_is_dropped", 40, commandFlag | capsLockFlag, u"k", u"K",
                                0x0100},
                      EventCase{"no_modifiers", 40, 0, u"k", nullptr, 0},
                      EventCase{"caps_lock_alone", 40, capsLockFlag, u"k", nullptr, 0},
                      EventCase{"control_on_left_control", 59, controlFlag, nullptr, nullptr, 0},
                      // Keys that type only whitespace, or nothing, fall back to the key-code name.
                      EventCase{"space", 49, controlFlag | optionFlag, u" ", u"Space", 0x1800},
                      EventCase{"tab", 48, optionFlag, u"\t", u"Tab", 0x0800},
                      EventCase{"return", 36, optionFlag, u"\r", u"Return", 0x0800},
                      EventCase{"right_option", 61, commandFlag, u"", u"Key 61", 0x0100},
                      EventCase{"padded_text", 40, controlFlag, u" k\n", u"K", 0x1000},
                      // Arrow keys keep the character the source reports, not the table's arrow.
                      EventCase{"left_arrow", 123, controlFlag, u"\uF702", u"\uF702", 0x1000}),
    [](const auto& testParam) { return std::string(testParam.param.name); });

TEST(HotKeyShortcutTest, OnlyEscapeAndTheLeftModifierKeysAreRefused) {
    // The right-hand modifiers (54, 60 to 62) and Fn (63) stay recordable.
    for (std::uint32_t keyCode = 0; keyCode < 128; ++keyCode) {
        const bool refused = keyCode == 53 || (keyCode >= 55 && keyCode <= 59);
        const auto shortcut = HotKeyShortcut::fromEvent({keyCode, commandFlag, std::nullopt});
        EXPECT_EQ(shortcut.has_value(), !refused) << "key code " << keyCode;
    }
}

TEST(HotKeyShortcutTest, CarbonModifiersMapEachEventFlagAndDropTheRest) {
    EXPECT_EQ(HotKeyShortcut::carbonModifiers(commandFlag), 0x0100u);
    EXPECT_EQ(HotKeyShortcut::carbonModifiers(shiftFlag), 0x0200u);
    EXPECT_EQ(HotKeyShortcut::carbonModifiers(optionFlag), 0x0800u);
    EXPECT_EQ(HotKeyShortcut::carbonModifiers(controlFlag), 0x1000u);
    EXPECT_EQ(
        HotKeyShortcut::carbonModifiers(~(shiftFlag | controlFlag | optionFlag | commandFlag)), 0u);
}

TEST(HotKeyShortcutTest, DisplayTextIsModifierSymbolsInFixedOrderThenTheKey) {
    EXPECT_EQ(HotKeyShortcut::defaultShortcut().displayText(), u"⌃⌥Space"_s);
    EXPECT_EQ((HotKeyShortcut{40, 0x0100, u"K"_s}.displayText()), u"⌘K"_s);
    EXPECT_EQ((HotKeyShortcut{0, 0x1B00 | 0x0400, u"A"_s}.displayText()), u"⌃⌥⇧⌘A"_s);
    EXPECT_EQ((HotKeyShortcut{0, 0, u"A"_s}.displayText()), u"A"_s);
}

TEST(HotKeyShortcutTest, EqualityAndHashingIncludeTheLabel) {
    const HotKeyShortcut space = HotKeyShortcut::defaultShortcut();
    const HotKeyShortcut shouted{49, 0x1800, u"SPACE"_s};
    EXPECT_EQ(space, (HotKeyShortcut{49, 0x1800, u"Space"_s}));
    EXPECT_NE(space, shouted);
    EXPECT_NE(qHash(space), qHash(shouted));
    EXPECT_EQ((QSet<HotKeyShortcut>{space, shouted, HotKeyShortcut::defaultShortcut()}.size()), 2);
}

TEST(HotKeyShortcutTest, EncodesAllThreeKeysCompactly) {
    EXPECT_EQ(HotKeyShortcut::defaultShortcut().encode(),
              QByteArray(R"({"keyCode":49,"modifiers":6144,"keyLabel":"Space"})"));
    const HotKeyShortcut extreme{4294967295u, 4294967295u, u"←\"é"_s};
    EXPECT_EQ(HotKeyShortcut::decode(extreme.encode()), extreme);
}

struct DecodeCase {
    const char* name;
    const char* json;
    std::optional<HotKeyShortcut> expected;
};

void PrintTo(const DecodeCase& c, std::ostream* out) {
    *out << c.json;
}

class HotKeyShortcutDecodeTest : public ::testing::TestWithParam<DecodeCase> {};

TEST_P(HotKeyShortcutDecodeTest, ReadsStrictly) {
    EXPECT_EQ(HotKeyShortcut::decode(GetParam().json), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, HotKeyShortcutDecodeTest,
    ::testing::Values(
        DecodeCase{"any_key_order",
                   R"({"keyLabel":"Space","modifiers":6144,"keyCode":49,"extra":[1]})",
                   HotKeyShortcut::defaultShortcut()},
        DecodeCase{"missing_label", R"({"keyCode":40,"modifiers":256})",
                   HotKeyShortcut{40, 256, u"K"_s}},
        DecodeCase{"null_label", R"({"keyCode":122,"modifiers":256,"keyLabel":null})",
                   HotKeyShortcut{122, 256, u"Key 122"_s}},
        DecodeCase{"empty_label_kept", R"({"keyCode":40,"modifiers":256,"keyLabel":""})",
                   HotKeyShortcut{40, 256, QString()}},
        DecodeCase{"modifiers_unchecked", R"({"keyCode":40,"modifiers":1024})",
                   HotKeyShortcut{40, 1024, u"K"_s}},
        DecodeCase{"numeric_label", R"({"keyCode":40,"modifiers":256,"keyLabel":7})", std::nullopt},
        DecodeCase{"missing_key_code", R"({"modifiers":256})", std::nullopt},
        DecodeCase{"null_key_code", R"({"keyCode":null,"modifiers":256})", std::nullopt},
        DecodeCase{"string_key_code", R"({"keyCode":"40","modifiers":256})", std::nullopt},
        DecodeCase{"negative_key_code", R"({"keyCode":-1,"modifiers":256})", std::nullopt},
        DecodeCase{"fractional_modifiers", R"({"keyCode":40,"modifiers":256.5})", std::nullopt},
        DecodeCase{"modifiers_too_large", R"({"keyCode":40,"modifiers":4294967296})", std::nullopt},
        DecodeCase{"not_an_object", R"([40,256,"K"])", std::nullopt}),
    [](const auto& testParam) { return std::string(testParam.param.name); });

} // namespace
