#include "shortcuts/ShortcutModifier.h"


#include <gtest/gtest.h>

using namespace tilmora;
using namespace Qt::StringLiterals;

namespace {

TEST(ShortcutModifierTest, EachCaseHasItsFixedValuesAndRoundTripsThroughJson) {
    struct Case {
        ShortcutModifier modifier;
        QString raw, title, symbol;
        std::uint32_t carbonFlag;
    };
    const Case cases[] = {{ShortcutModifier::control, u"control"_s, u"Control"_s, u"⌃"_s, 0x1000},
                          {ShortcutModifier::option, u"option"_s, u"Option"_s, u"⌥"_s, 0x0800},
                          {ShortcutModifier::shift, u"shift"_s, u"Shift"_s, u"⇧"_s, 0x0200},
                          {ShortcutModifier::command, u"command"_s, u"Command"_s, u"⌘"_s, 0x0100}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.raw.toStdString());
        EXPECT_EQ(rawValue(c.modifier), c.raw);
        EXPECT_EQ(title(c.modifier), c.title);
        EXPECT_EQ(symbol(c.modifier), c.symbol);
        EXPECT_EQ(carbonFlag(c.modifier), c.carbonFlag);
        EXPECT_EQ(toJson(c.modifier), QJsonValue(c.raw));
        EXPECT_EQ(shortcutModifierFromJson(QJsonValue(c.raw)), c.modifier);
    }
}

TEST(ShortcutModifierTest, JsonAcceptsOnlyTheExactRawStrings) {
    EXPECT_FALSE(shortcutModifierFromJson(QJsonValue(u"Control"_s)));
    EXPECT_FALSE(shortcutModifierFromJson(QJsonValue(u"cmd"_s)));
    EXPECT_FALSE(shortcutModifierFromJson(QJsonValue(0x1000)));
    EXPECT_FALSE(shortcutModifierFromJson(QJsonValue()));
}

TEST(ShortcutModifierTest, MasksAreReadInControlOptionShiftCommandOrder) {
    const std::array<ShortcutModifier, 4> order{ShortcutModifier::control, ShortcutModifier::option,
                                                ShortcutModifier::shift, ShortcutModifier::command};
    EXPECT_EQ(allShortcutModifiers, order);
    EXPECT_EQ(shortcutModifierDisplayOrder, order);
    EXPECT_EQ(shortcutModifierMask, 0x1B00u);
    EXPECT_EQ(shortcutModifiersIn(0x0100 | 0x0400 | 0x1000),
              (std::vector{ShortcutModifier::control, ShortcutModifier::command}));
    EXPECT_TRUE(shortcutModifiersIn(0x0400).empty());
}

TEST(ShortcutModifierTest, OnlyTheFourBitsCountAsAModifier) {
    EXPECT_TRUE(hasShortcutModifier(0x0200)); // shift alone is enough
    EXPECT_TRUE(hasShortcutModifier(0x1800));
    EXPECT_FALSE(hasShortcutModifier(0));
    EXPECT_FALSE(hasShortcutModifier(0x0400)); // caps lock
    EXPECT_FALSE(hasShortcutModifier(~0x1B00u));
}

} // namespace
