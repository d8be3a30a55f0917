#include "ui/ArrangeSection.h"
#include "UiTest.h"
#include "geometry/GridCellPickerLayout.h"
#include "ui/DisplayLayoutProfileRow.h"
#include "ui/DisplayProfileBadge.h"
#include "ui/GridCellPicker.h"
#include "ui/GridSettingControls.h"
#include "ui/SettingStepper.h"

#include <QApplication>
#include <QLabel>
#include <QSlider>
#include <QTest>
#include <QToolButton>

#include <string>

using namespace tilmora;

namespace {

class ArrangeSectionTest : public UiTest, public ::testing::Test {
protected:
    ArrangeSectionTest() {
        fake.windowSystem.setFrontmostApplication(10);
        section.resize(900, 1600);
        section.show();
        QApplication::processEvents();
    }

    ArrangeSection section{store};
};

struct StepperCase {
    std::string name;
    SettingStepper* (GridSettingControls::*stepper)() const;
    std::int64_t (*stored)(const AppStore&);
    int maximum;
};

class StepperBoundsTest : public ArrangeSectionTest,
                          public ::testing::WithParamInterface<StepperCase> {};

TEST_P(StepperBoundsTest, StopsAtItsBoundsAndTheStoreFollows) {
    SettingStepper* stepper = (section.gridControls()->*GetParam().stepper)();
    const auto stored = [&] { return GetParam().stored(store); };
    int clicks = 0;
    while (stepper->increaseButton()->isEnabled() && clicks < 20) {
        QTest::mouseClick(stepper->increaseButton(), Qt::LeftButton);
        ++clicks;
        EXPECT_EQ(stepper->value(), stored());
    }
    EXPECT_EQ(stored(), GetParam().maximum);
    EXPECT_TRUE(stepper->decreaseButton()->isEnabled());
    while (stepper->decreaseButton()->isEnabled() && clicks < 40) {
        QTest::mouseClick(stepper->decreaseButton(), Qt::LeftButton);
        ++clicks;
    }
    EXPECT_EQ(stored(), 1);
    EXPECT_EQ(stepper->value(), 1);
    EXPECT_FALSE(stepper->decreaseButton()->isEnabled());
}

INSTANTIATE_TEST_SUITE_P(
    Steppers, StepperBoundsTest,
    ::testing::Values(
        StepperCase{"Columns", &GridSettingControls::columns,
                    [](const AppStore& s) { return s.activeDisplayProfile().columns; }, 8},
        StepperCase{"Rows", &GridSettingControls::rows,
                    [](const AppStore& s) { return s.activeDisplayProfile().rows; }, 6}),
    [](const auto& p) { return p.param.name; });

TEST_F(ArrangeSectionTest, GapSliderMovesInWholePointsUpTo32AndRedrawsThePicker) {
    QSlider* gap = section.gridControls()->gap();
    gap->setFocus();
    QTest::keyClick(gap, Qt::Key_Right);
    EXPECT_EQ(store.activeDisplayProfile().gap, 1.0);
    QTest::keyClick(gap, Qt::Key_End);
    EXPECT_EQ(store.activeDisplayProfile().gap, 32.0);
    EXPECT_EQ(section.picker()->grid().gap, 32.0);
    // The picker eases to its widest drawn spacing.
    EXPECT_TRUE(section.picker()->isAnimating());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !section.picker()->isAnimating(); }, 2000));
}

TEST_F(ArrangeSectionTest, RowWithoutANumberAndItsBadgesInOrder) {
    DisplayLayoutProfileRow row([] {}, [] {});
    row.setState({{7, QStringLiteral("Studio"), 3, 2, 8}, 0, true, true, true});
    row.resize(600, row.sizeHint().height());
    row.show();
    QApplication::processEvents();
    QStringList texts;
    for (const QLabel* label : row.findChildren<QLabel*>()) {
        texts << label->text();
    }
    EXPECT_TRUE(texts.contains(QStringLiteral("-"))) << texts.join(u'|').toStdString();
    EXPECT_EQ(row.text(), QStringLiteral("Screen"));
    // Left to right: "Selected", "Cursor", "Main".
    QList<DisplayProfileBadge*> badges = row.findChildren<DisplayProfileBadge*>();
    std::sort(badges.begin(), badges.end(), [](auto* a, auto* b) { return a->x() < b->x(); });
    QStringList order;
    for (const DisplayProfileBadge* badge : badges) {
        EXPECT_TRUE(badge->isVisible());
        order << badge->text();
    }
    EXPECT_EQ(order.join(u' '), QStringLiteral("Selected Cursor Main"));

    row.setState({{7, QStringLiteral("Studio"), 3, 2, 8}, 2, false, false, true});
    EXPECT_EQ(row.text(), QStringLiteral("Screen 2"));
    QStringList shown;
    for (const DisplayProfileBadge* badge : row.findChildren<DisplayProfileBadge*>()) {
        if (badge->isVisibleTo(&row)) {
            shown << badge->text();
        }
    }
    EXPECT_EQ(shown, QStringList{QStringLiteral("Cursor")});
}

TEST_F(ArrangeSectionTest, CustomGridLeavesWithTheLastDisplayAndComesBack) {
    EXPECT_TRUE(section.customGrid()->isVisibleTo(&section));
    EXPECT_EQ(section.displayRows().size(), 1u);
    fake.windowSystem.setScreens({});
    store.refresh();
    EXPECT_FALSE(section.customGrid()->isVisibleTo(&section));
    EXPECT_TRUE(section.displayRows().empty());
    fake.windowSystem.setScreens({builtInScreen, studioScreen});
    store.refresh();
    EXPECT_TRUE(section.customGrid()->isVisibleTo(&section));
    ASSERT_EQ(section.displayRows().size(), 2u);
    EXPECT_EQ(section.displayRows()[1]->text(), QStringLiteral("Screen 2"));
}

TEST_F(ArrangeSectionTest, DragAcrossThePickerPlacesTheTargetOnTheBlock) {
    store.updateActiveDisplayProfile(3, 2, 0);
    QApplication::processEvents();
    GridCellPicker* picker = section.picker();
    const GridCellPickerLayout& grid = picker->grid();
    const CGSize size{static_cast<double>(picker->width()), static_cast<double>(picker->height())};
    const auto centre = [&](std::int64_t column, std::int64_t row) {
        const CGRect tile = grid.cellFrame(column, row, size);
        return QPoint(static_cast<int>(tile.midX()), static_cast<int>(tile.midY()));
    };

    QTest::mousePress(picker, Qt::LeftButton, {}, centre(2, 0));
    EXPECT_EQ(picker->previewSelection(), GridSelection({2, 0}, {2, 0}));
    QTest::mouseMove(picker, centre(1, 0));
    QTest::mouseMove(picker, centre(1, 1));
    EXPECT_EQ(picker->previewSelection(), GridSelection({1, 0}, {2, 1}));
    // Released beyond the picker's bottom-left edge: the nearest cell, column 0, row 1.
    QTest::mouseRelease(picker, Qt::LeftButton, {}, QPoint(-40, picker->height() + 40));
    EXPECT_FALSE(picker->previewSelection());
    EXPECT_FALSE(picker->dragStart());

    // Columns 0 ... 2 of 480 points and both rows of the 875-point visible frame.
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Grid area applied to Mail."));
    const WindowElement inbox = fake.windowSystem.windows(10).front();
    EXPECT_EQ(fake.windowSystem.window(inbox).frame, CGRect(0, 25, 1440, 875));

    // A click is a one-cell drag that starts afresh.
    QTest::mouseClick(picker, Qt::LeftButton, {}, centre(1, 1));
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Grid cell applied to Mail."));
    EXPECT_EQ(fake.windowSystem.window(inbox).frame, CGRect(480, 463, 480, 437));
}

} // namespace
