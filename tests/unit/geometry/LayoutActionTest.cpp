#include "geometry/LayoutAction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace tilmora;

namespace {

struct FrameCase {
    LayoutAction action;
    CGRect withoutGap;
    CGRect withGap8;
};

class TargetFrameTest : public ::testing::TestWithParam<FrameCase> {};

TEST_P(TargetFrameTest, MatchesTheWorkedExamples) {
    const CGRect area{0, 25, 1440, 875};
    EXPECT_EQ(GetParam().action.targetFrame(area, 0), GetParam().withoutGap);
    EXPECT_EQ(GetParam().action.targetFrame(area, 8), GetParam().withGap8);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, TargetFrameTest,
    ::testing::Values(
        FrameCase{LayoutAction::maximize, {0, 25, 1440, 875}, {0, 25, 1440, 875}},
        FrameCase{LayoutAction::leftHalf, {0, 25, 720, 875}, {0, 25, 716, 875}},
        FrameCase{LayoutAction::rightHalf, {720, 25, 720, 875}, {724, 25, 716, 875}},
        FrameCase{LayoutAction::topHalf, {0, 25, 1440, 438}, {0, 25, 1440, 434}},
        FrameCase{LayoutAction::bottomHalf, {0, 463, 1440, 437}, {0, 467, 1440, 433}},
        FrameCase{LayoutAction::topLeft, {0, 25, 720, 438}, {0, 25, 716, 434}},
        FrameCase{LayoutAction::topRight, {720, 25, 720, 438}, {724, 25, 716, 434}},
        FrameCase{LayoutAction::bottomLeft, {0, 463, 720, 437}, {0, 467, 716, 433}},
        FrameCase{LayoutAction::bottomRight, {720, 463, 720, 437}, {724, 467, 716, 433}},
        FrameCase{LayoutAction::leftThird, {0, 25, 480, 875}, {0, 25, 475, 875}},
        FrameCase{LayoutAction::centerThird, {480, 25, 480, 875}, {483, 25, 474, 875}},
        FrameCase{LayoutAction::rightThird, {960, 25, 480, 875}, {965, 25, 475, 875}},
        FrameCase{LayoutAction::twoThirdsLeft, {0, 25, 960, 875}, {0, 25, 957, 875}},
        FrameCase{LayoutAction::twoThirdsRight, {480, 25, 960, 875}, {483, 25, 957, 875}},
        FrameCase{LayoutAction::center, {201, 130, 1038, 665}, {207, 136, 1026, 653}}),
    [](const auto& testCase) { return testCase.param.action.rawValue().toStdString(); });

TEST(TargetFrameTest, MaximizeIgnoresTheGapAndRoundsOutward) {
    const CGRect area{0.5, 10.25, 1000.6, 700.3};
    for (double gap : {0.0, 8.0, -3.0, 100.0}) {
        EXPECT_EQ(LayoutAction(LayoutAction::maximize).targetFrame(area, gap),
                  CGRect(0, 10, 1002, 701));
    }
}

TEST(TargetFrameTest, OddWidthGivesTheLeftHalfTheExtraPoint) {
    const CGRect area{0, 0, 1001, 500};
    const LayoutAction left = LayoutAction::leftHalf;
    const LayoutAction right = LayoutAction::rightHalf;
    EXPECT_EQ(left.targetFrame(area, 0), CGRect(0, 0, 501, 500));
    EXPECT_EQ(right.targetFrame(area, 0), CGRect(501, 0, 500, 500));
    // With a gap the two halves and the gap still fill the width exactly.
    const CGRect l = left.targetFrame(area, 8);
    const CGRect r = right.targetFrame(area, 8);
    EXPECT_EQ(l.width() + 8 + r.width(), 1001);
    EXPECT_EQ(r.maxX(), 1001);
}

TEST(TargetFrameTest, NegativeGapActsAsZeroForGridsButGrowsTheCentreArea) {
    const CGRect area{0, 25, 1440, 875};
    for (LayoutAction action : LayoutAction::allCases()) {
        if (action == LayoutAction::center) {
            continue;
        }
        EXPECT_EQ(action.targetFrame(area, -5), action.targetFrame(area, 0)) << action;
    }
    // Inset by -5: (-5, 20, 1450, 885) -> 1044 x 672.6 centred on (720, 462.5).
    EXPECT_EQ(LayoutAction(LayoutAction::center).targetFrame(area, -5),
              CGRect(198, 126, 1044, 673));
}

TEST(TargetFrameTest, CenterIsCappedAndCanBecomeNull) {
    const LayoutAction center = LayoutAction::center;
    EXPECT_EQ(center.targetFrame({0, 0, 1920, 1055}, 0), CGRect(370, 126, 1180, 803));
    EXPECT_TRUE(center.targetFrame({0, 0, 100, 100}, 50.5).isNull());
    EXPECT_TRUE(center.targetFrame({0, 0, 1000, 60}, 30.5).isNull());
}

TEST(TargetFrameTest, AreaSmallerThanTheGapsGivesOnePointCells) {
    const CGRect area{0, 0, 10, 10};
    EXPECT_EQ(LayoutAction(LayoutAction::rightThird).targetFrame(area, 20), CGRect(40, 0, 1, 10));
    EXPECT_EQ(LayoutAction(LayoutAction::bottomRight).targetFrame(area, 20), CGRect(20, 20, 1, 1));
}

TEST(LayoutActionTest, TheTwoOrdersDiffer) {
    const auto& all = LayoutAction::allCases();
    EXPECT_EQ(all.front(), LayoutAction::maximize);
    EXPECT_EQ(all.back(), LayoutAction::center);
    const auto& quick = LayoutAction::quickActions();
    EXPECT_EQ(quick[0], LayoutAction::leftHalf);
    EXPECT_EQ(quick[4], LayoutAction::maximize);
    EXPECT_EQ(quick[5], LayoutAction::center);
    EXPECT_EQ(quick[14], LayoutAction::twoThirdsRight);
    // Both hold every case exactly once.
    for (LayoutAction action : all) {
        EXPECT_EQ(std::count(quick.begin(), quick.end(), action), 1) << action;
    }
}

struct TextCase {
    LayoutAction action;
    const char* rawValue;
    const char* title;
    Qt::Key key;
    QString keyLabel;
};

class LayoutTextTest : public ::testing::TestWithParam<TextCase> {};

TEST_P(LayoutTextTest, CarriesItsTableValues) {
    const auto& c = GetParam();
    EXPECT_EQ(c.action.rawValue(), QLatin1String(c.rawValue));
    EXPECT_EQ(c.action.title(), QLatin1String(c.title));
    EXPECT_EQ(c.action.keyEquivalent(), c.key);
    EXPECT_EQ(c.action.hotKeyKeyLabel(), c.keyLabel);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, LayoutTextTest,
    ::testing::Values(
        TextCase{LayoutAction::maximize, "maximize", "Maximize", Qt::Key_M, QStringLiteral("M")},
        TextCase{LayoutAction::leftHalf, "leftHalf", "Left Half", Qt::Key_Left,
                 QStringLiteral("←")},
        TextCase{LayoutAction::bottomHalf, "bottomHalf", "Bottom Half", Qt::Key_Down,
                 QStringLiteral("↓")},
        TextCase{LayoutAction::bottomRight, "bottomRight", "Bottom Right", Qt::Key_K,
                 QStringLiteral("K")},
        TextCase{LayoutAction::centerThird, "centerThird", "Center Third", Qt::Key_2,
                 QStringLiteral("2")},
        TextCase{LayoutAction::twoThirdsRight, "twoThirdsRight", "Two Thirds Right", Qt::Key_5,
                 QStringLiteral("5")},
        TextCase{LayoutAction::center, "center", "Center", Qt::Key_C, QStringLiteral("C")}),
    [](const auto& testCase) { return testCase.param.action.rawValue().toStdString(); });

TEST(LayoutActionTest, SharedSymbolsAreDeliberate) {
    EXPECT_EQ(LayoutAction(LayoutAction::centerThird).symbolName(),
              LayoutAction(LayoutAction::center).symbolName());
    EXPECT_EQ(LayoutAction(LayoutAction::twoThirdsLeft).symbolName(),
              QStringLiteral("rectangle.leadinghalf.inset.filled"));
}

TEST(LayoutActionTest, JsonIsTheCaseSensitiveRawValue) {
    for (LayoutAction action : LayoutAction::allCases()) {
        EXPECT_EQ(LayoutAction::decode(action.encode()), action) << action;
    }
    EXPECT_EQ(LayoutAction(LayoutAction::leftHalf).encode(), QByteArray("\"leftHalf\""));
    EXPECT_EQ(LayoutAction::decode("\"leftHalf\""), LayoutAction::leftHalf);
    for (const char* bad : {"\"LeftHalf\"", "\"left half\"", "\"\"", "leftHalf", "1", "null",
                            "[\"leftHalf\"]", "\"leftHalf\",\"center\""}) {
        EXPECT_FALSE(LayoutAction::decode(bad)) << bad;
    }
}

} // namespace
