// The Settings section driven as a user does: the two recorders take keys (X key codes, as the
// server reports them), the gap slider and the modifier boxes go through the store, which may
// refuse.
#include "ui/SettingsView.h"
#include "UiTest.h"
#include "ui/SavedLayoutsView.h"
#include "ui/ShortcutRecorderButtons.h"

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

using namespace tilmora;

namespace {

// X key codes of the evdev driver.
constexpr quint32 xK = 45, xControl = 37, xAlt = 64, xEscape = 9;

class SettingsViewTest : public UiTest, public ::testing::Test {
protected:
    SettingsViewTest() {
        view.show();
        QApplication::processEvents();
    }

    static void key(QWidget* to, QEvent::Type type, int qtKey, Qt::KeyboardModifiers held,
                    quint32 scanCode, const QString& text = {}) {
        QKeyEvent event(type, qtKey, held, scanCode, 0, 0, text);
        QApplication::sendEvent(to, &event);
    }

    SettingsView view{store};
};

TEST_F(SettingsViewTest, RecordersSetTheStoreAndEscapeKeepsIt) {
    auto* hotKey = view.findChild<HotKeyRecorderButton*>();
    hotKey->click();
    EXPECT_EQ(hotKey->text(), QStringLiteral("Type shortcut..."));
    // A modifier going down is no key of its own; K alone beeps; Shift+K records.
    key(hotKey, QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier, 50);
    key(hotKey, QEvent::KeyPress, Qt::Key_K, Qt::NoModifier, xK, QStringLiteral("k"));
    EXPECT_EQ(hotKey->text(), QStringLiteral("Type shortcut..."));
    key(hotKey, QEvent::KeyPress, Qt::Key_K, Qt::ShiftModifier, xK, QStringLiteral("K"));
    EXPECT_EQ(store.placementHotKey().displayText(), QStringLiteral("\u21e7K"));
    EXPECT_EQ(hotKey->text(), QStringLiteral("\u21e7K"));
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);

    auto* drag = view.findChild<PlacementDragModifierRecorderButton*>();
    drag->click();
    EXPECT_EQ(QWidget::keyboardGrabber(), drag);
    key(drag, QEvent::KeyPress, Qt::Key_Control, Qt::NoModifier, xControl);
    key(drag, QEvent::KeyPress, Qt::Key_Alt, Qt::ControlModifier, xAlt);
    EXPECT_EQ(drag->text(), QStringLiteral("Control + Alt (\u2303\u2325)"));
    key(drag, QEvent::KeyRelease, Qt::Key_Control, Qt::ControlModifier | Qt::AltModifier, xControl);
    key(drag, QEvent::KeyRelease, Qt::Key_Alt, Qt::AltModifier, xAlt);
    EXPECT_EQ(store.placementDragModifier(),
              PlacementDragModifier::fromEventFlags(EventModifierFlags::control |
                                                    EventModifierFlags::option));
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);

    drag->click();
    key(drag, QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, xEscape);
    EXPECT_EQ(drag->text(), QStringLiteral("Control + Alt (\u2303\u2325)"));
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
}

TEST_F(SettingsViewTest, GapAndModifierBoxesGoThroughTheStore) {
    view.findChild<QSlider*>()->setValue(7);
    EXPECT_EQ(store.gap(), 7.0);
    bool shown = false;
    for (const QLabel* label : view.findChildren<QLabel*>()) {
        shown = shown || label->text() == QStringLiteral("7 px");
    }
    EXPECT_TRUE(shown);

    store.setQuickHotKeyModifiers(QuickHotKeyModifiers{CarbonModifierFlags::option});
    QCheckBox* alt = nullptr;
    for (QCheckBox* box : view.findChildren<QCheckBox*>()) {
        if (box->accessibleName() == QStringLiteral("Alt")) {
            alt = box;
        }
    }
    ASSERT_TRUE(alt && alt->isChecked());
    // The last box cannot be unticked: the store refuses and says why.
    alt->click();
    EXPECT_TRUE(alt->isChecked());
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Choose at least one quick hotkey modifier."));
}

TEST_F(SettingsViewTest, SavingClearsTheNameAndABlankNameGetsTheDefault) {
    SavedLayoutsView saved(store);
    auto* name = saved.findChild<QLineEdit*>();
    QPushButton* save = nullptr;
    for (QPushButton* button : saved.findChildren<QPushButton*>()) {
        save = button->text() == QStringLiteral("Save Current") ? button : save;
    }
    ASSERT_TRUE(name && save);
    name->setText(QStringLiteral("Desk"));
    save->click();
    EXPECT_TRUE(name->text().isEmpty());
    save->click();
    ASSERT_EQ(store.savedLayouts().size(), 2u);
    EXPECT_EQ(store.savedLayouts()[1].name, QStringLiteral("Desk"));
    EXPECT_TRUE(store.savedLayouts()[0].name.startsWith(QStringLiteral("Layout ")));
    QStringList rows;
    for (const QLabel* label : saved.findChildren<QLabel*>()) {
        if (label->isVisibleTo(&saved)) {
            rows << label->text();
        }
    }
    EXPECT_EQ(rows.count(QStringLiteral("1 window saved")), 2);
}

} // namespace
