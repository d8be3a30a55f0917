// The two modifier sets: the drag modifier and the quick layout modifiers.
#include "platform/EventModifierFlags.h"
#include "shortcuts/PlacementDragModifier.h"
#include "shortcuts/QuickHotKeyModifiers.h"

#include <gtest/gtest.h>

using namespace tilmora;
using namespace Qt::StringLiterals;

namespace {

TEST(PlacementDragModifierTest, DescribesTheSelectedModifiersInControlOptionShiftCommandOrder) {
    struct Case {
        std::uint32_t modifiers;
        QString title, symbol, systemImage;
    };
    // clang-format off
    const Case cases[] = {
        {0x0100, u"Super"_s, u"⌘"_s, u"command"_s}, {0x0200, u"Shift"_s, u"⇧"_s, u"shift"_s},
        {0x0800, u"Alt"_s, u"⌥"_s, u"option"_s}, {0x1000, u"Control"_s, u"⌃"_s, u"control"_s},
        {0x0900, u"Alt + Super"_s, u"⌥⌘"_s, u"keyboard"_s},
        {0x1B00, u"Control + Alt + Shift + Super"_s, u"⌃⌥⇧⌘"_s, u"keyboard"_s},
        // Caps lock beside a single modifier still leaves one modifier.
        {0x0500, u"Super"_s, u"⌘"_s, u"command"_s},
        {0x0400, u"Modifier"_s, u"-"_s, u"keyboard"_s}, {0, u"Modifier"_s, u"-"_s, u"keyboard"_s}};
    // clang-format on
    for (const Case& c : cases) {
        const PlacementDragModifier value{c.modifiers};
        EXPECT_EQ(value.title(), c.title) << c.modifiers;
        EXPECT_EQ(value.symbol(), c.symbol) << c.modifiers;
        EXPECT_EQ(value.systemImage(), c.systemImage) << c.modifiers;
    }
}

TEST(PlacementDragModifierTest, FromEventFlagsKeepsOnlyTheFourModifiers) {
    // Caps lock, function and a Carbon bit passed by mistake are not event modifiers.
    EXPECT_EQ(PlacementDragModifier::fromEventFlags(EventModifierFlags::shift |
                                                    EventModifierFlags::control | 0x010000 |
                                                    0x800000 | 0x0100),
              PlacementDragModifier{0x1200});
}

TEST(QuickHotKeyModifiersTest, ShowsAndConvertsOnlyTheFourModifiersInDisplayOrder) {
    const Qt::KeyboardModifiers all =
        Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier;
    const std::tuple<std::uint32_t, QString, Qt::KeyboardModifiers> cases[] = {
        {0x1900, u"⌃⌥⌘"_s, Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier},
        {0x0A00, u"⌥⇧"_s, Qt::AltModifier | Qt::ShiftModifier},
        {0x1B00 | 0x0400, u"⌃⌥⇧⌘"_s, all},
        {0x0400, QString(), Qt::NoModifier}};
    for (const auto& [mask, text, eventModifiers] : cases) {
        EXPECT_EQ(QuickHotKeyModifiers{mask}.displayText(), text) << mask;
        EXPECT_EQ(QuickHotKeyModifiers{mask}.eventModifiers(), eventModifiers) << mask;
    }
}

TEST(ModifierSetJsonTest, KeepsTheMaskExactlyAndRejectsAnythingButAnUnsignedInteger) {
    EXPECT_EQ(PlacementDragModifier::command.encode(), QByteArray(R"({"modifiers":256})"));
    EXPECT_EQ(QuickHotKeyModifiers::defaultLayouts.encode(), QByteArray(R"({"modifiers":6400})"));
    // Stray bits survive; deciding what to do with them is the loader's business.
    EXPECT_EQ(QuickHotKeyModifiers::decode(R"({"other":1,"modifiers":1280.0})"),
              QuickHotKeyModifiers{0x0500});
    EXPECT_EQ(PlacementDragModifier::decode(R"({"modifiers":0})"), PlacementDragModifier{0});
    for (const char* bad :
         {R"({})", R"({"modifiers":null})", R"({"modifiers":"256"})", R"({"modifiers":true})",
          R"({"modifiers":-1})", R"({"modifiers":4294967296})", R"({"modifiers":1e30})",
          R"({"modifiers":1.5})", "[6400]", "null"}) {
        EXPECT_FALSE(QuickHotKeyModifiers::decode(bad)) << bad;
        EXPECT_FALSE(PlacementDragModifier::decode(bad)) << bad;
    }
}

} // namespace
