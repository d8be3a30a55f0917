#include "ui/PermissionBanner.h"
#include "UiTest.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace tilmora;

namespace {

class PermissionBannerTest : public UiTest, public ::testing::Test {
protected:
    PermissionBannerTest() {
        setAccessGranted(false);
        auto* column = new QVBoxLayout(&section);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(banner);
        column->addStretch();
        section.show();
    }

    QWidget section;
    PermissionBanner* banner = new PermissionBanner(store, &section);
};

TEST_F(PermissionBannerTest, RowWhenItFitsStackedWhenNotAndBackAgain) {
    const QWidget* buttons = banner->findChild<QPushButton*>()->parentWidget();
    const QWidget* label = banner->findChild<QLabel*>()->parentWidget();
    const int rowWidth = banner->rowWidth();
    for (const int width : {rowWidth, rowWidth - 1, rowWidth + 200, 560, rowWidth}) {
        section.resize(width, 400);
        QApplication::processEvents();
        EXPECT_EQ(banner->width(), width);
        if (width >= rowWidth) {
            EXPECT_EQ(banner->orientation(), Qt::Horizontal) << width;
            EXPECT_GT(buttons->x(), label->geometry().right()) << width;
            EXPECT_LT(buttons->y(), label->geometry().bottom()) << width;
        } else {
            EXPECT_EQ(banner->orientation(), Qt::Vertical) << width;
            EXPECT_GT(buttons->y(), label->geometry().bottom()) << width;
        }
        EXPECT_LE(buttons->geometry().right(), width) << width;
        EXPECT_LE(label->geometry().right(), width) << width;
    }
}

} // namespace
