#include "SavedLayoutTestData.h"

#include "layouts/SavedLayout.h"

#include <gtest/gtest.h>

using namespace tilmora;

namespace {

TEST(SavedLayoutTest, WritesTheExactDocumentAndReadsItBack) {
    EXPECT_EQ(SavedLayout::encodeList(testdata::layouts()), testdata::document);
    EXPECT_EQ(SavedLayout::decodeList(testdata::document), testdata::layoutsAsRead());
}

// One change to the stored document: either it still means exactly the same layouts, or it
// makes the whole document unreadable.
struct EditCase {
    const char* name;
    const char* from;
    const char* to;
    bool readable;
};

void PrintTo(const EditCase& c, std::ostream* out) {
    *out << c.from << " -> " << c.to;
}

class SavedLayoutDocumentEditTest : public ::testing::TestWithParam<EditCase> {};

TEST_P(SavedLayoutDocumentEditTest, ReadsTheSameLayoutsOrNothing) {
    const EditCase& c = GetParam();
    QByteArray edited = testdata::document;
    ASSERT_EQ(edited.count(c.from), 1) << c.from;
    edited.replace(c.from, c.to);

    const auto decoded = SavedLayout::decodeList(edited);
    if (c.readable) {
        EXPECT_EQ(decoded, testdata::layoutsAsRead()) << edited.toStdString();
    } else {
        EXPECT_FALSE(decoded) << edited.toStdString();
    }
}

const char* const createdAt = R"("createdAt":"2026-11-16T08:07:04Z")";
const char* const bareTitle = R"("appName":"xterm","title":"")";
const char* const displayID = R"("displayID":3735928559)";
const char* const bareFrame = R"("height":0.3333333333333333})";

INSTANTIATE_TEST_SUITE_P(
    Edits, SavedLayoutDocumentEditTest,
    ::testing::Values(
        // The same layouts written differently.
        EditCase{"LowerCaseId", "6F9619FF-8B86-D011-B42D-00C04FC964FF",
                 "6f9619ff-8b86-d011-b42d-00c04fc964ff", true},
        EditCase{"PositiveOffset", createdAt, R"("createdAt":"2026-11-16T09:37:04+01:30")", true},
        EditCase{"NegativeOffset", createdAt, R"("createdAt":"2026-11-15T23:07:04-09:00")", true},
        EditCase{"NullOptionalKeys", bareTitle,
                 R"("appName":"xterm","bundleIdentifier":null,"title":"","displayID":null,)"
                 R"("displayName":null,"displayFrame":null,"relativeFrame":null)",
                 true},
        EditCase{"UnknownKeys", R"("name":"Empty")", R"("name":"Empty","pinned":{"x":1})", true},
        EditCase{"IntegerWrittenWithFraction", R"("width":1280)", R"("width":1.28e3)", true},
        EditCase{"DisplayIDWrittenWithFraction", displayID, R"("displayID":3735928559.0)", true},
        // Dates other than whole seconds with a zone.
        EditCase{"FractionalSeconds", createdAt, R"("createdAt":"2026-11-16T08:07:04.500Z")",
                 false},
        EditCase{"NoZone", createdAt, R"("createdAt":"2026-11-16T08:07:04")", false},
        EditCase{"DateOnly", createdAt, R"("createdAt":"2026-11-16")", false},
        EditCase{"ImpossibleDay", createdAt, R"("createdAt":"2026-02-30T08:07:04Z")", false},
        EditCase{"Hour24", createdAt, R"("createdAt":"2026-11-16T24:00:00Z")", false},
        EditCase{"OffsetWithoutColon", createdAt, R"("createdAt":"2026-11-16T09:07:04+0100")",
                 false},
        EditCase{"TrailingNewline", createdAt, R"("createdAt":"2026-11-16T08:07:04Z\n")", false},
        // Identifiers.
        EditCase{"IdInBraces", "\"6F9619FF-8B86-D011-B42D-00C04FC964FF\"",
                 "\"{6F9619FF-8B86-D011-B42D-00C04FC964FF}\"", false},
        EditCase{"IdNotHex", "A1B2C3D4-E5F6-4711-8899-AABBCCDDEEFF",
                 "G1B2C3D4-E5F6-4711-8899-AABBCCDDEEFF", false},
        // Required keys and types, in the second layout, which alone spoils the whole list.
        EditCase{"NameNull", R"("name":"Empty")", R"("name":null)", false},
        EditCase{"NameMissing", R"("name":"Empty",)", "", false},
        EditCase{"WindowsNull", R"("windows":[]})", R"("windows":null})", false},
        EditCase{"WindowNotAnObject", R"("windows":[]})", R"("windows":[5]})", false},
        EditCase{"LayoutNotAnObject", R"("windows":[]}])", R"("windows":[]},"x"])", false},
        // Windows.
        EditCase{"TitleMissing", bareTitle, R"("appName":"xterm")", false},
        EditCase{"TitleNull", bareTitle, R"("appName":"xterm","title":null)", false},
        EditCase{"BundleIdentifierNumber", R"("bundleIdentifier":"org.gnome.Terminal")",
                 R"("bundleIdentifier":1)", false},
        EditCase{"DisplayIDNegative", displayID, R"("displayID":-1)", false},
        EditCase{"DisplayIDTooLarge", displayID, R"("displayID":4294967296)", false},
        EditCase{"DisplayIDFraction", displayID, R"("displayID":1.5)", false},
        EditCase{"DisplayIDString", displayID, R"("displayID":"3735928559")", false},
        EditCase{"FrameMissing",
                 R"(,"frame":{"x":0.25,"y":0,"width":1280,"height":0.3333333333333333})", "",
                 false},
        EditCase{"FrameNull",
                 R"("frame":{"x":0.25,"y":0,"width":1280,"height":0.3333333333333333})",
                 R"("frame":null)", false},
        EditCase{"FrameHeightMissing", R"(,"height":0.3333333333333333})", "}", false},
        EditCase{"FrameNumberAsString", bareFrame, R"("height":"0.33"})", false},
        EditCase{"DisplayFrameArray",
                 R"("displayFrame":{"x":-1440,"y":25,"width":1440,"height":875})",
                 R"("displayFrame":[-1440,25,1440,875])", false},
        EditCase{"RelativeFrameIncomplete",
                 R"("relativeFrame":{"x":0,"y":0,"width":0.5,"height":0.5})",
                 R"("relativeFrame":{"x":0,"y":0,"width":0.5})", false}),
    [](const ::testing::TestParamInfo<EditCase>& edit) { return std::string(edit.param.name); });

TEST(SavedLayoutTest, WholeDocumentsOfTheWrongShapeAreUnreadable) {
    EXPECT_EQ(SavedLayout::decodeList("[]"), std::vector<SavedLayout>{});
    for (const char* data : {"", "null", "{}", "[5]", "[{}]", "not json", "[{\"id\":"}) {
        EXPECT_FALSE(SavedLayout::decodeList(data)) << data;
    }
}

TEST(WindowFrameTest, FromRectKeepsTheOriginAndTheStandardizedSize) {
    EXPECT_EQ(WindowFrame::fromRect({10, 20, 300, 200}), (WindowFrame{10, 20, 300, 200}));
    EXPECT_EQ(WindowFrame::fromRect({100, 50, -40, -20}), (WindowFrame{100, 50, 40, 20}));
}

TEST(WindowFrameTest, EqualFramesHashAlike) {
    const WindowFrame zero{0, 0, 100, 100};
    const WindowFrame negativeZero{-0.0, -0.0, 100, 100};
    ASSERT_EQ(zero, negativeZero);
    EXPECT_EQ(qHash(zero), qHash(negativeZero));
}

} // namespace
