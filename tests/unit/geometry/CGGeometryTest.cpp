#include "geometry/CGGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace tilmora;

namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

struct IntegralCase {
    CGRect input;
    CGRect expected;
};

class IntegralTest : public ::testing::TestWithParam<IntegralCase> {};

TEST_P(IntegralTest, RoundsOriginDownAndFarEdgesUp) {
    const CGRect result = CGRectIntegral(GetParam().input);
    EXPECT_EQ(result.origin, GetParam().expected.origin);
    EXPECT_EQ(result.size, GetParam().expected.size);
}

INSTANTIATE_TEST_SUITE_P(
    Rectangles, IntegralTest,
    ::testing::Values(IntegralCase{{0, 0, 1440, 900}, {0, 0, 1440, 900}},
                      IntegralCase{{0.5, 10.25, 1000.6, 700.3}, {0, 10, 1002, 701}},
                      // Far edge 0.4 + 0.2 = 0.6 rounds up to 1, not the size alone.
                      IntegralCase{{0.4, 0.4, 0.2, 0.2}, {0, 0, 1, 1}},
                      IntegralCase{{-0.5, -1.5, 1, 1}, {-1, -2, 2, 2}},
                      // Negative sizes are standardized first.
                      IntegralCase{{10, 10, -4.5, -2}, {5, 8, 5, 2}},
                      IntegralCase{{3, 4, 0, 0}, {3, 4, 0, 0}}));

TEST(CGRectTest, NullRectangleStaysNullThroughIntegralAndInset) {
    EXPECT_TRUE(CGRectIntegral(CGRect::null()).isNull());
    EXPECT_TRUE(CGRectInset(CGRect::null(), -5, -5).isNull());
    EXPECT_TRUE(CGRect::null().isEmpty());
    EXPECT_EQ(CGRect::null(), CGRect::null());
    EXPECT_FALSE(CGRect(0, 0, 0, 0) == CGRect::null());
}

TEST(CGRectTest, AccessorsUseTheStandardizedRectangle) {
    const CGRect r{100, 50, -40, -20};
    EXPECT_EQ(r.minX(), 60);
    EXPECT_EQ(r.maxX(), 100);
    EXPECT_EQ(r.midX(), 80);
    EXPECT_EQ(r.minY(), 30);
    EXPECT_EQ(r.maxY(), 50);
    EXPECT_EQ(r.midY(), 40);
    EXPECT_EQ(r.width(), 40);
    EXPECT_EQ(r.height(), 20);
    EXPECT_EQ(r, CGRect(60, 30, 40, 20));
}

struct InsetCase {
    CGRect input;
    double dx, dy;
    CGRect expected; // null for "becomes null"
};

class InsetTest : public ::testing::TestWithParam<InsetCase> {};

TEST_P(InsetTest, ShrinksOrBecomesNull) {
    const auto& c = GetParam();
    EXPECT_EQ(CGRectInset(c.input, c.dx, c.dy), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Rectangles, InsetTest,
                         ::testing::Values(InsetCase{{0, 25, 1440, 875}, 8, 8, {8, 33, 1424, 859}},
                                           InsetCase{{0, 0, 100, 100}, -5, -5, {-5, -5, 110, 110}},
                                           InsetCase{{0, 0, 100, 100}, 50, 0, {50, 0, 0, 100}},
                                           InsetCase{{0, 0, 100, 100}, 50.5, 0, CGRect::null()},
                                           InsetCase{{0, 0, 100, 10}, 0, 6, CGRect::null()},
                                           InsetCase{
                                               {100, 100, -100, -100}, 10, 10, {10, 10, 80, 80}}));

struct IntersectionCase {
    CGRect a, b;
    CGRect expected;
};

class IntersectionTest : public ::testing::TestWithParam<IntersectionCase> {};

TEST_P(IntersectionTest, IsSymmetricAndNullWhenDisjoint) {
    const auto& c = GetParam();
    EXPECT_EQ(CGRectIntersection(c.a, c.b), c.expected);
    EXPECT_EQ(CGRectIntersection(c.b, c.a), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rectangles, IntersectionTest,
    ::testing::Values(IntersectionCase{{0, 0, 100, 100}, {50, 50, 100, 100}, {50, 50, 50, 50}},
                      IntersectionCase{{0, 0, 100, 100}, {200, 0, 10, 10}, CGRect::null()},
                      // Touching edges share a line: empty, but not null.
                      IntersectionCase{{0, 0, 1440, 900}, {1440, 0, 1920, 1080}, {1440, 0, 0, 900}},
                      IntersectionCase{{0, 0, 100, 100}, {10, 10, 10, 10}, {10, 10, 10, 10}},
                      IntersectionCase{{100, 100, -50, -50}, {0, 0, 60, 60}, {50, 50, 10, 10}},
                      IntersectionCase{CGRect::null(), {0, 0, 10, 10}, CGRect::null()}));

struct ContainsCase {
    CGPoint point;
    bool inside;
};

class ContainsPointTest : public ::testing::TestWithParam<ContainsCase> {};

TEST_P(ContainsPointTest, IncludesMinimumEdgesOnly) {
    const CGRect r{0, 25, 1440, 875};
    EXPECT_EQ(CGRectContainsPoint(r, GetParam().point), GetParam().inside);
}

INSTANTIATE_TEST_SUITE_P(
    Points, ContainsPointTest,
    ::testing::Values(ContainsCase{{0, 25}, true}, ContainsCase{{1439.999, 899.999}, true},
                      ContainsCase{{1440, 100}, false}, ContainsCase{{100, 900}, false},
                      ContainsCase{{-0.001, 100}, false}, ContainsCase{{100, 24.5}, false},
                      ContainsCase{{nan, 100}, false}));

TEST(CGRectTest, NullRectangleContainsNothing) {
    EXPECT_FALSE(CGRectContainsPoint(CGRect::null(), {0, 0}));
}

struct ClampCase {
    CGRect input;
    CGRect bounds;
    CGSize minimum;
    CGRect expected;
};

class ClampTest : public ::testing::TestWithParam<ClampCase> {};

TEST_P(ClampTest, MinimumFirstThenBoundsWinAndPositionMoves) {
    const auto& c = GetParam();
    EXPECT_EQ(c.input.clamped(c.bounds, c.minimum), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rectangles, ClampTest,
    ::testing::Values(
        ClampCase{{-50, 10, 300, 200}, {0, 0, 1000, 800}, {100, 100}, {0, 10, 300, 200}},
        ClampCase{{-300, 10, 2000, 100}, {0, 0, 1000, 800}, {100, 100}, {0, 10, 1000, 100}},
        // Grown to the minimum size, then pushed back inside from the far edges.
        ClampCase{{990, 790, 20, 20}, {0, 0, 1000, 800}, {120, 90}, {880, 710, 120, 90}},
        // Larger than the bounds in both directions: the bounds exactly.
        ClampCase{{500, 500, 5000, 5000}, {0, 25, 1440, 875}, {160, 120}, {0, 25, 1440, 875}},
        // Fractional results are made integral.
        ClampCase{{10.5, 20.25, 300.5, 200.5}, {0, 0, 1000, 800}, {120, 90}, {10, 20, 301, 201}},
        // A minimum larger than the bounds loses to the bounds.
        ClampCase{{0, 0, 10, 10}, {100, 100, 50, 40}, {120, 90}, {100, 100, 50, 40}}));

struct CloseCase {
    CGRect a, b;
    double tolerance;
    bool close;
};

class IsCloseTest : public ::testing::TestWithParam<CloseCase> {};

TEST_P(IsCloseTest, ComparesEachValueWithinTheTolerance) {
    const auto& c = GetParam();
    EXPECT_EQ(c.a.isClose(c.b, c.tolerance), c.close);
    EXPECT_EQ(c.b.isClose(c.a, c.tolerance), c.close);
}

INSTANTIATE_TEST_SUITE_P(
    Rectangles, IsCloseTest,
    ::testing::Values(CloseCase{{0, 0, 100, 100}, {0, 0, 100, 100}, 0, true},
                      CloseCase{{0, 0, 100, 100}, {0, 0, 100, 100.5}, 0, false},
                      CloseCase{{0, 0, 100, 100}, {3, -3, 103, 97}, 3, true},
                      CloseCase{{0, 0, 100, 100}, {3.01, 0, 100, 100}, 3, false},
                      CloseCase{{0, 0, 100, 100}, {0, 0, 100, 104}, 3, false},
                      CloseCase{{100, 100, -100, -100}, {0, 0, 100, 100}, 0, true}));

} // namespace
