#include "geometry/LayoutAction.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace tilmora;

namespace {

using L = LayoutAction;

TEST(TargetFrameTest, MatchesTheWorkedExamplesWithGap0And8) {
    const CGRect area{0, 25, 1440, 875};
    // clang-format off
    const std::tuple<LayoutAction, CGRect, CGRect> cases[] = {
        {L::maximize,       {0, 25, 1440, 875},   {0, 25, 1440, 875}},
        {L::leftHalf,       {0, 25, 720, 875},    {0, 25, 716, 875}},
        {L::rightHalf,      {720, 25, 720, 875},  {724, 25, 716, 875}},
        {L::topHalf,        {0, 25, 1440, 438},   {0, 25, 1440, 434}},
        {L::bottomHalf,     {0, 463, 1440, 437},  {0, 467, 1440, 433}},
        {L::topLeft,        {0, 25, 720, 438},    {0, 25, 716, 434}},
        {L::topRight,       {720, 25, 720, 438},  {724, 25, 716, 434}},
        {L::bottomLeft,     {0, 463, 720, 437},   {0, 467, 716, 433}},
        {L::bottomRight,    {720, 463, 720, 437}, {724, 467, 716, 433}},
        {L::leftThird,      {0, 25, 480, 875},    {0, 25, 475, 875}},
        {L::centerThird,    {480, 25, 480, 875},  {483, 25, 474, 875}},
        {L::rightThird,     {960, 25, 480, 875},  {965, 25, 475, 875}},
        {L::twoThirdsLeft,  {0, 25, 960, 875},    {0, 25, 957, 875}},
        {L::twoThirdsRight, {480, 25, 960, 875},  {483, 25, 957, 875}},
        {L::center,         {201, 130, 1038, 665}, {207, 136, 1026, 653}}};
    // clang-format on
    for (const auto& [action, withoutGap, withGap8] : cases) {
        EXPECT_EQ(action.targetFrame(area, 0), withoutGap) << action;
        EXPECT_EQ(action.targetFrame(area, 8), withGap8) << action;
        // A negative gap acts as none, except for the centre area, which it grows.
        if (action != L::center) {
            EXPECT_EQ(action.targetFrame(area, -5), withoutGap) << action;
        }
    }
    // Inset by -5: (-5, 20, 1450, 885) -> 1044 x 672.6 centred on (720, 462.5).
    EXPECT_EQ(L(L::center).targetFrame(area, -5), CGRect(198, 126, 1044, 673));
}

TEST(TargetFrameTest, MaximizeIgnoresTheGapAndRoundsOutward) {
    for (double gap : {0.0, 8.0, -3.0, 100.0}) {
        EXPECT_EQ(L(L::maximize).targetFrame({0.5, 10.25, 1000.6, 700.3}, gap),
                  CGRect(0, 10, 1002, 701));
    }
}

TEST(TargetFrameTest, OddWidthGivesTheLeftHalfTheExtraPoint) {
    const CGRect area{0, 0, 1001, 500};
    EXPECT_EQ(L(L::leftHalf).targetFrame(area, 0), CGRect(0, 0, 501, 500));
    EXPECT_EQ(L(L::rightHalf).targetFrame(area, 0), CGRect(501, 0, 500, 500));
    // With a gap the two halves and the gap still fill the width exactly.
    const CGRect right = L(L::rightHalf).targetFrame(area, 8);
    EXPECT_EQ(L(L::leftHalf).targetFrame(area, 8).width() + 8 + right.width(), 1001);
    EXPECT_EQ(right.maxX(), 1001);
}

TEST(TargetFrameTest, CenterIsCappedAndCanBecomeNullAndTinyAreasGiveOnePointCells) {
    EXPECT_EQ(L(L::center).targetFrame({0, 0, 1920, 1055}, 0), CGRect(370, 126, 1180, 803));
    EXPECT_TRUE(L(L::center).targetFrame({0, 0, 100, 100}, 50.5).isNull());
    EXPECT_TRUE(L(L::center).targetFrame({0, 0, 1000, 60}, 30.5).isNull());
    EXPECT_EQ(L(L::rightThird).targetFrame({0, 0, 10, 10}, 20), CGRect(40, 0, 1, 10));
    EXPECT_EQ(L(L::bottomRight).targetFrame({0, 0, 10, 10}, 20), CGRect(20, 20, 1, 1));
}

TEST(LayoutActionTest, JsonIsTheCaseSensitiveRawValue) {
    for (LayoutAction action : LayoutAction::allCases()) {
        EXPECT_EQ(LayoutAction::decode(action.encode()), action) << action;
    }
    EXPECT_EQ(L(L::leftHalf).encode(), QByteArray("\"leftHalf\""));
    for (const char* bad : {"\"LeftHalf\"", "\"left half\"", "\"\"", "leftHalf", "1", "null",
                            "[\"leftHalf\"]", "\"leftHalf\",\"center\""}) {
        EXPECT_FALSE(LayoutAction::decode(bad)) << bad;
    }
}

} // namespace
