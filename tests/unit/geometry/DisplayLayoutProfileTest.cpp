#include "geometry/DisplayLayoutProfile.h"

#include <QSet>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace tilmora;

namespace {

using Profiles = std::vector<DisplayLayoutProfile>;
const double infinity = std::numeric_limits<double>::infinity();

DisplayLayoutProfile profile(std::uint32_t id, std::int64_t columns, std::int64_t rows,
                             double gap) {
    return {id, QStringLiteral("Display %1").arg(id), columns, rows, gap};
}

struct NormalizeCase {
    std::string name;
    DisplayLayoutProfile stored;
    bool edgeToEdge;
    bool defaultGrid;
    std::int64_t columns, rows;
    double gap;
};

class NormalizeTest : public ::testing::TestWithParam<NormalizeCase> {};

TEST_P(NormalizeTest, MigratesThenClamps) {
    const auto& c = GetParam();
    const Profiles result =
        DisplayLayoutProfile::normalized({c.stored}, c.edgeToEdge, c.defaultGrid);
    ASSERT_EQ(result.size(), 1u);
    EXPECT_EQ(result[0].id, c.stored.id);
    EXPECT_EQ(result[0].displayName, c.stored.displayName);
    EXPECT_EQ(result[0].columns, c.columns);
    EXPECT_EQ(result[0].rows, c.rows);
    EXPECT_EQ(result[0].gap, c.gap);
}

INSTANTIATE_TEST_SUITE_P(
    Profiles, NormalizeTest,
    ::testing::Values(
        NormalizeCase{"ClampsLowColumnsAndHighRows", profile(1, 0, 12, 4), false, false, 1, 6, 4},
        NormalizeCase{"ClampsHighColumns", profile(1, 20, -3, 4), false, false, 8, 1, 4},
        NormalizeCase{"NegativeGap", profile(1, 2, 1, -4), false, false, 2, 1, 0},
        NormalizeCase{"LargeGap", profile(1, 2, 1, 40), false, false, 2, 1, 32},
        NormalizeCase{"FractionalGapKept", profile(1, 2, 1, 12.5), false, false, 2, 1, 12.5},
        NormalizeCase{"InfiniteGap", profile(1, 2, 1, infinity), false, false, 2, 1, 0},
        NormalizeCase{"NaNGap", profile(1, 2, 1, NAN), false, false, 2, 1, 0},
        NormalizeCase{"LegacyThreeByOneGap8", profile(1, 3, 1, 8), false, true, 2, 1, 8},
        NormalizeCase{"LegacyThreeByTwoGap0", profile(1, 3, 2, 0), false, true, 2, 1, 0},
        NormalizeCase{"ThreeByThreeIsTheUsers", profile(1, 3, 3, 8), false, true, 3, 3, 8},
        NormalizeCase{"OtherGapIsTheUsers", profile(1, 3, 1, 10), false, true, 3, 1, 10},
        NormalizeCase{"FourByOneIsTheUsers", profile(1, 4, 1, 8), false, true, 4, 1, 8},
        NormalizeCase{"EdgeToEdgeOnlyZeroesTheGap", profile(1, 3, 1, 8), true, false, 3, 1, 0},
        NormalizeCase{"EdgeToEdgeKeepsOtherGrids", profile(1, 5, 4, 20), true, false, 5, 4, 0},
        // The grid test sees the gap as stored, before the edge-to-edge migration zeroes it.
        NormalizeCase{"BothLookAtTheStoredGap", profile(1, 3, 1, 8), true, true, 2, 1, 0},
        NormalizeCase{"BothKeepAUserGrid", profile(1, 3, 1, 10), true, true, 3, 1, 0}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(NormalizeTest, FirstProfileOfAnIdWinsAndOrderIsKept) {
    const Profiles result = DisplayLayoutProfile::normalized(
        {profile(7, 4, 3, 6), profile(2, 2, 2, 2), profile(7, 1, 1, 1)}, false, false);
    EXPECT_EQ(result, (Profiles{profile(7, 4, 3, 6), profile(2, 2, 2, 2)}));
}

TEST(NormalizeTest, ValidListWithoutMigrationsComesBackUnchanged) {
    const Profiles valid{profile(1, 2, 1, 0), profile(3, 8, 6, 32), profile(2, 1, 1, 12.5)};
    EXPECT_EQ(DisplayLayoutProfile::normalized(valid, false, false), valid);
    EXPECT_TRUE(DisplayLayoutProfile::normalized({}, true, true).empty());
}

TEST(DisplayLayoutProfileTest, EqualityAndHashCoverEveryField) {
    const DisplayLayoutProfile base = profile(1, 2, 1, 8);
    auto renamed = base;
    renamed.displayName = QStringLiteral("display 1");
    auto regapped = base;
    regapped.gap = 8.5;
    EXPECT_NE(base, renamed);
    EXPECT_NE(base, regapped);

    auto positiveZero = base;
    positiveZero.gap = 0.0;
    auto negativeZero = base;
    negativeZero.gap = -0.0;
    EXPECT_EQ(positiveZero, negativeZero);
    EXPECT_EQ(qHash(positiveZero), qHash(negativeZero));
    EXPECT_EQ((QSet<DisplayLayoutProfile>{positiveZero, negativeZero}).size(), 1);
}

TEST(DisplayLayoutProfileTest, EncodesTheFiveKeysInOrderAndDecodesThemBack) {
    const Profiles profiles{{4280325, QStringLiteral("DELL \"U2720Q\""), 3, 2, 12.5},
                            profile(1, 2, 1, 0)};
    const auto data = DisplayLayoutProfile::encodeList(profiles);
    ASSERT_TRUE(data);
    EXPECT_TRUE(data->startsWith(
        "[{\"id\":4280325,\"displayName\":\"DELL \\\"U2720Q\\\"\",\"columns\":3,\"rows\":2,"
        "\"gap\":12.5},"));
    EXPECT_EQ(DisplayLayoutProfile::decodeList(*data), profiles);
    EXPECT_EQ(DisplayLayoutProfile::encodeList({}), QByteArray("[]"));
}

TEST(DisplayLayoutProfileTest, NonFiniteGapCannotBeEncoded) {
    EXPECT_FALSE(DisplayLayoutProfile::encodeList({profile(1, 2, 1, 0), profile(2, 2, 1, NAN)}));
}

TEST(DisplayLayoutProfileTest, DecodingAcceptsAnyKeyOrderAndUnknownKeysButNoRanges) {
    const auto decoded = DisplayLayoutProfile::decodeList(
        R"([{"gap":40,"rows":0,"extra":[1],"columns":99,"displayName":"A","id":3}])");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, (Profiles{{3, QStringLiteral("A"), 99, 0, 40}}));
}

TEST(DisplayLayoutProfileTest, AnyBadElementFailsTheWholeList) {
    const char* good = R"({"id":1,"displayName":"A","columns":2,"rows":1,"gap":0})";
    for (const char* bad : {
             R"({"id":2,"displayName":"B","columns":2,"rows":1})",            // no gap
             R"({"id":2,"displayName":"B","columns":2,"rows":1,"gap":null})", // null gap
             R"({"id":-2,"displayName":"B","columns":2,"rows":1,"gap":0})",   // negative id
             R"({"id":2,"displayName":3,"columns":2,"rows":1,"gap":0})",      // name not text
             R"({"id":2,"displayName":"B","columns":2.5,"rows":1,"gap":0})",  // fractional
             R"({"id":2,"displayName":"B","columns":"2","rows":1,"gap":0})",  // text number
             R"({"id":2,"displayName":"B","columns":2,"rows":1,"gap":"8"})",  // text gap
             R"([])",                                                         // not an object
         }) {
        const QByteArray list = QByteArray("[") + good + "," + bad + "]";
        EXPECT_FALSE(DisplayLayoutProfile::decodeList(list)) << bad;
    }
    EXPECT_FALSE(DisplayLayoutProfile::decodeList(good));
    EXPECT_FALSE(DisplayLayoutProfile::decodeList("not json"));
}

} // namespace
