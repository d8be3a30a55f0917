#include "SavedLayoutTestData.h"

#include "layouts/SavedLayout.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace tilmora;

namespace {

TEST(SavedLayoutTest, WritesTheExactDocumentAndReadsItBack) {
    EXPECT_EQ(SavedLayout::encodeList(testdata::layouts()), testdata::document);
    EXPECT_EQ(SavedLayout::decodeList(testdata::document), testdata::layoutsAsRead());
}

// One change to the stored document: either it still means exactly the same layouts, or it
// makes the whole document unreadable.
TEST(SavedLayoutTest, EachEditReadsTheSameLayoutsOrNothing) {
    const char* const createdAt = R"("createdAt":"2026-11-16T08:07:04Z")";
    const char* const bareTitle = R"("appName":"xterm","title":"")";
    const char* const displayID = R"("displayID":3735928559)";
    const char* const frame =
        R"("frame":{"x":0.25,"y":0,"width":1280,"height":0.3333333333333333})";
    // clang-format off
    const std::tuple<const char*, const char*, bool> edits[] = {
        {"6F9619FF-8B86-D011-B42D-00C04FC964FF", "6f9619ff-8b86-d011-b42d-00c04fc964ff", true},
        {createdAt, R"("createdAt":"2026-11-16T09:37:04+01:30")", true},
        {bareTitle, R"("appName":"xterm","bundleIdentifier":null,"title":"","displayID":null,"displayName":null,"displayFrame":null,"relativeFrame":null)", true},
        {R"("name":"Empty")", R"("name":"Empty","pinned":{"x":1})", true},
        {R"("width":1280)", R"("width":1.28e3)", true},
        {displayID, R"("displayID":3735928559.0)", true},
        {createdAt, R"("createdAt":"2026-11-16T08:07:04.500Z")", false},
        {createdAt, R"("createdAt":"2026-02-30T08:07:04Z")", false},
        {createdAt, R"("createdAt":"2026-11-16T09:07:04+0100")", false},
        {createdAt, R"("createdAt":"2026-11-16T08:07:04Z\n")", false},
        {"\"6F9619FF-8B86-D011-B42D-00C04FC964FF\"", "\"{6F9619FF-8B86-D011-B42D-00C04FC964FF}\"", false},
        {"A1B2C3D4-E5F6-4711-8899-AABBCCDDEEFF", "G1B2C3D4-E5F6-4711-8899-AABBCCDDEEFF", false},
        // Required keys and types, in the second layout, which alone spoils the whole list.
        {R"("name":"Empty")", R"("name":null)", false},
        {R"("windows":[]})", R"("windows":null})", false},
        {R"("windows":[]}])", R"("windows":[]},"x"])", false},
        {bareTitle, R"("appName":"xterm")", false},
        {R"("bundleIdentifier":"org.gnome.Terminal")", R"("bundleIdentifier":1)", false},
        {displayID, R"("displayID":-1)", false},
        {displayID, R"("displayID":1.5)", false},
        {frame, R"("frame":null)", false},
        {R"(,"height":0.3333333333333333})", "}", false},
        {R"("displayFrame":{"x":-1440,"y":25,"width":1440,"height":875})", R"("displayFrame":[-1440,25,1440,875])", false},
        {R"("relativeFrame":{"x":0,"y":0,"width":0.5,"height":0.5})", R"("relativeFrame":{"x":0,"y":0,"width":0.5})", false}};
    // clang-format on
    for (const auto& [from, to, readable] : edits) {
        QByteArray edited = testdata::document;
        ASSERT_EQ(edited.count(from), 1) << from;
        edited.replace(from, to);
        const auto decoded = SavedLayout::decodeList(edited);
        if (readable) {
            EXPECT_EQ(decoded, testdata::layoutsAsRead()) << from << " -> " << to;
        } else {
            EXPECT_FALSE(decoded) << from << " -> " << to;
        }
    }
    // Without the frame.
    QByteArray edited = testdata::document;
    EXPECT_FALSE(SavedLayout::decodeList(edited.replace(QByteArray(",") + frame, "")));
}

TEST(SavedLayoutTest, WholeDocumentsOfTheWrongShapeAreUnreadable) {
    EXPECT_EQ(SavedLayout::decodeList("[]"), std::vector<SavedLayout>{});
    for (const char* data : {"", "null", "{}", "[5]", "[{}]", "not json", "[{\"id\":"}) {
        EXPECT_FALSE(SavedLayout::decodeList(data)) << data;
    }
}

} // namespace
