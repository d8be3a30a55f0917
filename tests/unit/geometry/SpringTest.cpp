#include "geometry/Spring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace tilmora;

namespace {

// The highlight and the gap move alike however often the screen redraws: many short steps end
// where a few long ones do, which a wrong velocity would not.
TEST(SpringTest, StepLengthDoesNotChangeThePath) {
    Spring fine(0);
    Spring coarse(0);
    fine.setTarget(100);
    coarse.setTarget(100);
    for (int frame = 0; frame < 6; ++frame) {
        for (int i = 0; i < 24; ++i) {
            fine.step(1.0 / 240);
        }
        coarse.step(0.1);
        EXPECT_NEAR(fine.value(), coarse.value(), 1e-6) << frame;
    }
}

// Damping 0.85 overshoots by e^(-pi * 0.85 / sqrt(1 - 0.85^2)), about 0.63 %, and comes to rest
// on the target within half a second; retargeting in flight glides on from where it is.
TEST(SpringTest, SettlesOnTheTargetWithTheDampedOvershootOnly) {
    Spring spring(0);
    spring.setTarget(100);
    double highest = 0;
    double seconds = 0;
    while (!spring.isSettled() && seconds < 2) {
        spring.step(1.0 / 60);
        seconds += 1.0 / 60;
        highest = std::max(highest, spring.value());
    }
    EXPECT_TRUE(spring.isSettled());
    EXPECT_EQ(spring.value(), 100);
    EXPECT_LT(seconds, 0.5);
    EXPECT_GT(highest, 100.3);
    EXPECT_LT(highest, 100.0 + 100 * std::exp(-M_PI * 0.85 / std::sqrt(1 - 0.85 * 0.85)) + 1e-9);

    spring.setTarget(0);
    spring.step(1.0 / 60);
    const double moving = spring.value();
    spring.setTarget(50);
    EXPECT_EQ(spring.value(), moving);
    EXPECT_FALSE(spring.isSettled());
}

} // namespace
