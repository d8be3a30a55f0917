// The two modifier sets: the drag modifier and the quick layout modifiers.
#include "platform/EventModifierFlags.h"
#include "shortcuts/PlacementDragModifier.h"
#include "shortcuts/QuickHotKeyModifiers.h"

#include <gtest/gtest.h>

using namespace tilmora;
using namespace Qt::StringLiterals;

namespace {

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
