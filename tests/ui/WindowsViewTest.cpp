// The Windows section over a thousand windows: a click picks the target, and the refresh every
// 3 seconds keeps both the pick and the scroll position; odd titles stay on their one line.
#include "UiTest.h"
#include "ui/MainWindow.h"
#include "ui/WindowListModel.h"

#include <QApplication>
#include <QDir>
#include <QListView>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

using namespace tilmora;

namespace {

class WindowsViewTest : public UiTest, public ::testing::Test {
protected:
    WindowsViewTest() {
        // Titles a real desktop shows: long, right to left, with control characters and a
        // broken surrogate, and a thousand ordinary ones.
        const QString odd[] = {
            QStringLiteral("A very long title that goes on and on well past the width of any "
                           "row, as browser tabs with page titles do, until it must be elided"),
            QStringLiteral("\u05e9\u05dc\u05d5\u05dd \u05e2\u05d5\u05dc\u05dd \u2014 "
                           "\u05de\u05e1\u05de\u05da"),
            QStringLiteral("tab\there\nnew line\u2028separator \u202eoverride"),
            QString(QChar(0xd800)) + QStringLiteral(" lone surrogate"),
        };
        for (const QString& title : odd) {
            fake.windowSystem.addWindow(10, {100, 100, 800, 600}, title);
        }
        for (int i = 0; i < 996; ++i) {
            fake.windowSystem.addWindow(10, {10.0 + i, 40, 640, 480},
                                        QStringLiteral("Document %1").arg(i, 4, 10, QChar(u'0')));
        }
        store.refresh();
        store.setSelectedSection(TilmoraSection::windows);
    }

    static void settle() {
        for (int pass = 0; pass < 8; ++pass) {
            QApplication::processEvents();
        }
    }
};

TEST_F(WindowsViewTest, AThousandWindowsKeepThePickAndTheScrollAcrossARefresh) {
    MainWindow window(store);
    window.show();
    settle();
    auto* list = window.findChild<QListView*>();
    ASSERT_TRUE(list);
    ASSERT_EQ(list->model()->rowCount(), 1001);
    // The section's page, which scrolls the rows.
    QScrollArea* page = nullptr;
    for (QWidget* up = list->parentWidget(); up && !page; up = up->parentWidget()) {
        page = qobject_cast<QScrollArea*>(up);
    }
    ASSERT_TRUE(page);
    page->verticalScrollBar()->setValue(20000);
    settle();
    const int scrolled = page->verticalScrollBar()->value();
    EXPECT_GT(scrolled, 10000);

    // Click the row at the middle of the visible part of the page.
    const QPoint middle = list->mapFrom(page->viewport(), page->viewport()->rect().center());
    const QModelIndex clicked = list->indexAt(middle);
    ASSERT_TRUE(clicked.isValid());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, middle);
    const QString picked = store.selectedWindowID().value_or(QString());
    EXPECT_EQ(picked, store.windows()[static_cast<std::size_t>(clicked.row())].id);

    store.refresh();
    settle();
    EXPECT_EQ(page->verticalScrollBar()->value(), scrolled);
    EXPECT_EQ(store.selectedWindowID(), picked);
    EXPECT_TRUE(clicked.data(WindowListModel::SelectedRole).toBool());

    page->verticalScrollBar()->setValue(0);
    settle();
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(TILMORA_SCREENSHOT_DIR)));
    window.grab().save(QStringLiteral(TILMORA_SCREENSHOT_DIR "/MainWindowWindowsListed.png"));
}

TEST(WindowListModelTest, OddTitlesBecomeOneLine) {
    const std::pair<QString, QString> cases[] = {
        {QStringLiteral("tab\there"), QStringLiteral("tab here")},
        {QStringLiteral("a\nb\r\nc"), QStringLiteral("a b  c")},
        {QStringLiteral("x\u2028y\u2029z"), QStringLiteral("x y z")},
        {QStringLiteral("bell\u0007"), QStringLiteral("bell\ufffd")},
        {QString(QChar(0xdc00)) + u'a', QStringLiteral("\ufffda")},
        {QStringLiteral("\U0001F600 ok"), QStringLiteral("\U0001F600 ok")},
        {QStringLiteral("\u202eevil"), QStringLiteral("\u202eevil")},
    };
    for (const auto& [title, line] : cases) {
        EXPECT_EQ(WindowListModel::oneLine(title), line);
    }
}

} // namespace
