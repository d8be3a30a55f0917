#include "geometry/DisplayLayoutProfile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

using namespace tilmora;

namespace {

using Profiles = std::vector<DisplayLayoutProfile>;

DisplayLayoutProfile profile(std::uint32_t id, std::int64_t columns, std::int64_t rows,
                             double gap) {
    return {id, QStringLiteral("Display %1").arg(id), columns, rows, gap};
}

TEST(NormalizeTest, MigratesThenClamps) {
    // The stored profile, the edge-to-edge and default-grid migrations, the normalised grid.
    // clang-format off
    const std::tuple<DisplayLayoutProfile, bool, bool, std::int64_t, std::int64_t, double> cases[] = {
        {profile(1, 0, 12, 4),       false, false, 1, 6, 4},
        {profile(1, 20, -3, 4),      false, false, 8, 1, 4},
        {profile(1, 2, 1, -4),       false, false, 2, 1, 0},
        {profile(1, 2, 1, 12.5),     false, false, 2, 1, 12.5},
        {profile(1, 2, 1, INFINITY), false, false, 2, 1, 0},
        // The old default grids, 3 x 1 and 3 x 2 with gap 8 or 0, become 2 x 1.
        {profile(1, 3, 1, 8),        false, true,  2, 1, 8},
        {profile(1, 3, 2, 0),        false, true,  2, 1, 0},
        {profile(1, 3, 3, 8),        false, true,  3, 3, 8},
        {profile(1, 3, 1, 10),       false, true,  3, 1, 10},
        {profile(1, 3, 1, 8),        true,  false, 3, 1, 0},
        // The grid test sees the gap as stored, before the edge-to-edge migration zeroes it.
        {profile(1, 3, 1, 8),        true,  true,  2, 1, 0},
        {profile(1, 3, 1, 10),       true,  true,  3, 1, 0}};
    // clang-format on
    for (const auto& [stored, edgeToEdge, defaultGrid, columns, rows, gap] : cases) {
        EXPECT_EQ(DisplayLayoutProfile::normalized({stored}, edgeToEdge, defaultGrid),
                  (Profiles{{stored.id, stored.displayName, columns, rows, gap}}))
            << stored.columns << "x" << stored.rows << " gap " << stored.gap;
    }
}

TEST(NormalizeTest, FirstProfileOfAnIdWinsAndAValidListComesBackUnchanged) {
    EXPECT_EQ(DisplayLayoutProfile::normalized(
                  {profile(7, 4, 3, 6), profile(2, 2, 2, 2), profile(7, 1, 1, 1)}, false, false),
              (Profiles{profile(7, 4, 3, 6), profile(2, 2, 2, 2)}));
    const Profiles valid{profile(1, 2, 1, 0), profile(3, 8, 6, 32), profile(2, 1, 1, 12.5)};
    EXPECT_EQ(DisplayLayoutProfile::normalized(valid, false, false), valid);
    EXPECT_TRUE(DisplayLayoutProfile::normalized({}, true, true).empty());
}

TEST(DisplayLayoutProfileTest, DecodingAcceptsAnyKeyOrderAndUnknownKeysButNoRanges) {
    EXPECT_EQ(DisplayLayoutProfile::decodeList(
                  R"([{"gap":40,"rows":0,"extra":[1],"columns":-3,"displayName":"A","id":3}])"),
              (Profiles{{3, QStringLiteral("A"), -3, 0, 40}}));
}

TEST(DisplayLayoutProfileTest, AnyBadElementFailsTheWholeList) {
    const char* good = R"({"id":1,"displayName":"A","columns":2,"rows":1,"gap":0})";
    for (const char* bad : {
             R"({"id":2,"displayName":"B","columns":2,"rows":1})",           // no gap
             R"({"id":-2,"displayName":"B","columns":2,"rows":1,"gap":0})",  // negative id
             R"({"id":2,"displayName":3,"columns":2,"rows":1,"gap":0})",     // name not text
             R"({"id":2,"displayName":"B","columns":2.5,"rows":1,"gap":0})", // fractional
             R"({"id":2,"displayName":"B","columns":2,"rows":1,"gap":"8"})", // text gap
             R"([])",                                                        // not an object
         }) {
        EXPECT_FALSE(DisplayLayoutProfile::decodeList(QByteArray("[") + good + "," + bad + "]"))
            << bad;
    }
    EXPECT_FALSE(DisplayLayoutProfile::decodeList(good));
    EXPECT_FALSE(DisplayLayoutProfile::decodeList("not json"));
}

} // namespace
