#include "shortcuts/PlacementDragModifier.h"

#include "platform/EventModifierFlags.h"

#include <gtest/gtest.h>

#include <QSet>

using namespace tilmora;
using namespace Qt::StringLiterals;

namespace {

TEST(PlacementDragModifierTest, DescribesTheSelectedModifiers) {
    struct Case {
        std::uint32_t modifiers;
        QString title, symbol, systemImage;
    };
    const Case cases[] = {
        {0x0100, u"Command"_s, u"⌘"_s, u"command"_s},
        {0x0200, u"Shift"_s, u"⇧"_s, u"shift"_s},
        {0x0800, u"Option"_s, u"⌥"_s, u"option"_s},
        {0x1000, u"Control"_s, u"⌃"_s, u"control"_s},
        {0x0900, u"Option + Command"_s, u"⌥⌘"_s, u"keyboard"_s},
        {0x1B00, u"Control + Option + Shift + Command"_s, u"⌃⌥⇧⌘"_s, u"keyboard"_s},
        // Caps lock beside a single modifier still leaves one modifier.
        {0x0500, u"Command"_s, u"⌘"_s, u"command"_s},
        {0x0400, u"Modifier"_s, u"-"_s, u"keyboard"_s},
        {0, u"Modifier"_s, u"-"_s, u"keyboard"_s}};
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << "mask 0x" << std::hex << c.modifiers);
        const PlacementDragModifier value{c.modifiers};
        EXPECT_EQ(value.title(), c.title);
        EXPECT_EQ(value.symbol(), c.symbol);
        EXPECT_EQ(value.systemImage(), c.systemImage);
    }
}

TEST(PlacementDragModifierTest, DefaultIsCommandAlone) {
    EXPECT_EQ(PlacementDragModifier::command.modifiers, 0x0100u);
    EXPECT_EQ(PlacementDragModifier::defaultModifier(), PlacementDragModifier::command);
}

TEST(PlacementDragModifierTest, FromEventFlagsKeepsOnlyTheFourModifiers) {
    EXPECT_EQ(PlacementDragModifier::fromEventFlags(EventModifierFlags::control |
                                                    EventModifierFlags::option),
              PlacementDragModifier{0x1800});
    // Caps lock, function and a Carbon bit passed by mistake are not event modifiers.
    EXPECT_EQ(PlacementDragModifier::fromEventFlags(EventModifierFlags::shift | 0x010000 |
                                                    0x800000 | 0x0100),
              PlacementDragModifier{0x0200});
}

TEST(PlacementDragModifierTest, JsonKeepsTheMaskExactlyAndRejectsNonIntegers) {
    EXPECT_EQ(PlacementDragModifier::command.encode(), QByteArray(R"({"modifiers":256})"));
    EXPECT_EQ(PlacementDragModifier::decode(R"({"modifiers":1280})"),
              PlacementDragModifier{0x0500});
    for (const char* bad : {R"({})", R"({"modifiers":null})", R"({"modifiers":"256"})",
                            R"({"modifiers":-1})", R"({"modifiers":2.5})", "null"}) {
        EXPECT_FALSE(PlacementDragModifier::decode(bad)) << bad;
    }
}

TEST(PlacementDragModifierTest, HashesByMask) {
    const QSet<PlacementDragModifier> set{PlacementDragModifier{0x0100},
                                          PlacementDragModifier::command,
                                          PlacementDragModifier{0x0900}};
    EXPECT_EQ(set.size(), 2);
}

} // namespace
