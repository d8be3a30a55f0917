#include "shortcuts/QuickHotKeyModifiers.h"


#include <gtest/gtest.h>

using namespace tilmora;
using namespace Qt::StringLiterals;

namespace {

TEST(QuickHotKeyModifiersTest, ShowsAndConvertsOnlyTheFourModifiersInDisplayOrder) {
    struct Case {
        std::uint32_t modifiers;
        QString displayText;
        Qt::KeyboardModifiers eventModifiers;
    };
    const Case cases[] = {
        {0x1900, u"⌃⌥⌘"_s, Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier},
        {0x0A00, u"⌥⇧"_s, Qt::AltModifier | Qt::ShiftModifier},
        {0x0100, u"⌘"_s, Qt::MetaModifier},
        {0x1B00 | 0x0400, u"⌃⌥⇧⌘"_s,
         Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier},
        {0x0400, QString(), Qt::NoModifier},
        {0, QString(), Qt::NoModifier}};
    for (const Case& c : cases) {
        const QuickHotKeyModifiers value{c.modifiers};
        EXPECT_EQ(value.displayText(), c.displayText) << std::hex << c.modifiers;
        EXPECT_EQ(value.eventModifiers(), c.eventModifiers) << std::hex << c.modifiers;
    }
}

TEST(QuickHotKeyModifiersTest, DefaultIsControlOptionCommand) {
    EXPECT_EQ(QuickHotKeyModifiers::allowedMask, 0x1B00u);
    EXPECT_EQ(QuickHotKeyModifiers::defaultLayouts.modifiers, 0x1900u);
}

TEST(QuickHotKeyModifiersTest, JsonKeepsTheMaskExactlyAndRejectsNonIntegers) {
    EXPECT_EQ(QuickHotKeyModifiers::defaultLayouts.encode(), QByteArray(R"({"modifiers":6400})"));
    // Stray bits survive; deciding what to do with them is the loader's business.
    EXPECT_EQ(QuickHotKeyModifiers::decode(R"({"other":1,"modifiers":1280})"),
              QuickHotKeyModifiers{0x0500});
    EXPECT_EQ(QuickHotKeyModifiers::decode(R"({"modifiers":0})"), QuickHotKeyModifiers{0});
    for (const char* bad :
         {R"({})", R"({"modifiers":null})", R"({"modifiers":"6400"})", R"({"modifiers":-256})",
          R"({"modifiers":4294967296})", R"({"modifiers":1.5})", R"([6400])"}) {
        EXPECT_FALSE(QuickHotKeyModifiers::decode(bad)) << bad;
    }
}

} // namespace
