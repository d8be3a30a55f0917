#include "geometry/CGGeometry.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <utility>

using namespace tilmora;

namespace {

const CGRect null = CGRect::null();

TEST(CGRectTest, IntegralRoundsTheStandardizedOriginDownAndFarEdgesUp) {
    // clang-format off
    const std::pair<CGRect, CGRect> cases[] = {
        {{0.5, 10.25, 1000.6, 700.3}, {0, 10, 1002, 701}},
        // Far edge 0.4 + 0.2 = 0.6 rounds up to 1, not the size alone.
        {{0.4, 0.4, 0.2, 0.2}, {0, 0, 1, 1}},
        {{-0.5, -1.5, 1, 1}, {-1, -2, 2, 2}},
        {{10, 10, -4.5, -2}, {5, 8, 5, 2}},
        {{3, 4, 0, 0}, {3, 4, 0, 0}}};
    // clang-format on
    for (const auto& [input, expected] : cases) {
        const CGRect result = CGRectIntegral(input);
        EXPECT_EQ(result.origin, expected.origin) << input;
        EXPECT_EQ(result.size, expected.size) << input;
    }
    EXPECT_TRUE(CGRectIntegral(null).isNull());
}

TEST(CGRectTest, InsetShrinksOrBecomesNull) {
    // clang-format off
    const std::tuple<CGRect, double, double, CGRect> cases[] = {
        {{0, 25, 1440, 875}, 8, 8, {8, 33, 1424, 859}},
        {{0, 0, 100, 100}, -5, -5, {-5, -5, 110, 110}},
        {{0, 0, 100, 100}, 50, 0, {50, 0, 0, 100}},
        {{0, 0, 100, 100}, 50.5, 0, null},
        {{0, 0, 100, 10}, 0, 6, null},
        {{100, 100, -100, -100}, 10, 10, {10, 10, 80, 80}},
        {null, -5, -5, null}};
    // clang-format on
    for (const auto& [input, dx, dy, expected] : cases) {
        EXPECT_EQ(CGRectInset(input, dx, dy), expected) << input << " by " << dx << ", " << dy;
    }
}

TEST(CGRectTest, ContainsPointIncludesMinimumEdgesOnly) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    // clang-format off
    const std::pair<CGPoint, bool> cases[] = {
        {{0, 25}, true}, {{1439.999, 899.999}, true}, {{1440, 100}, false}, {{100, 900}, false},
        {{-0.001, 100}, false}, {{100, 24.5}, false}, {{nan, 100}, false}};
    // clang-format on
    for (const auto& [point, inside] : cases) {
        EXPECT_EQ(CGRectContainsPoint({0, 25, 1440, 875}, point), inside) << point;
    }
    EXPECT_FALSE(CGRectContainsPoint(null, {0, 0}));
}

TEST(CGRectTest, ClampedGrowsToTheMinimumThenBoundsWinAndPositionMoves) {
    // clang-format off
    const std::tuple<CGRect, CGRect, CGSize, CGRect> cases[] = {
        {{-50, 10, 300, 200}, {0, 0, 1000, 800}, {100, 100}, {0, 10, 300, 200}},
        {{-300, 10, 2000, 100}, {0, 0, 1000, 800}, {100, 100}, {0, 10, 1000, 100}},
        // Grown to the minimum size, then pushed back inside from the far edges.
        {{990, 790, 20, 20}, {0, 0, 1000, 800}, {120, 90}, {880, 710, 120, 90}},
        {{500, 500, 5000, 5000}, {0, 25, 1440, 875}, {160, 120}, {0, 25, 1440, 875}},
        // Fractional results are made integral.
        {{10.5, 20.25, 300.5, 200.5}, {0, 0, 1000, 800}, {120, 90}, {10, 20, 301, 201}},
        // A minimum larger than the bounds loses to the bounds.
        {{0, 0, 10, 10}, {100, 100, 50, 40}, {120, 90}, {100, 100, 50, 40}}};
    // clang-format on
    for (const auto& [input, bounds, minimum, expected] : cases) {
        EXPECT_EQ(input.clamped(bounds, minimum), expected) << input << " in " << bounds;
    }
}

} // namespace
