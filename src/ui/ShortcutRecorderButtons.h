// The two recorder buttons of Settings: a click starts a recording, the keys that follow are
// the new value. While one records it holds the keyboard (an active grab), so that a combination
// Tilmora or the window manager has grabbed reaches the button instead of acting; the grab ends
// with the recording, also when the window closes mid-recording.
#pragma once

#include "shortcuts/ShortcutRecorders.h"

#include <QPushButton>

#include <functional>

namespace tilmora {

// What the recorders share: the recording's start and end, the grab, the title and tool tip.
class RecorderButton : public QPushButton {
    Q_OBJECT
public:
    explicit RecorderButton(QSize size, QWidget* parent = nullptr);
    QSize sizeHint() const override { return size_; }

protected:
    // The model's recording state changed: the grab follows it, and the texts are redrawn.
    void recordingChanged(bool isRecording);
    virtual QString titleText() const = 0;
    virtual QString toolTipText() const = 0;
    virtual void beginRecording() = 0;
    void refreshTexts();
    void hideEvent(QHideEvent* event) override;
    // A key press as the shortcut model sees it; nothing for a key without a known position.
    static std::optional<KeyEvent> keyEvent(const QKeyEvent& event);
    // A modifier key's own press or release.
    static bool isModifierKey(const QKeyEvent& event);
    static void beep();

private:
    QSize size_;
    bool grabbing_ = false;
};

class HotKeyRecorderButton : public RecorderButton {
    Q_OBJECT
public:
    explicit HotKeyRecorderButton(QWidget* parent = nullptr);
    // From outside; left alone while recording.
    void setShortcut(const HotKeyShortcut& shortcut);
    std::function<void(const HotKeyShortcut&)> onShortcut;

protected:
    QString titleText() const override { return recorder_.title(); }
    QString toolTipText() const override { return recorder_.toolTip(); }
    void beginRecording() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    HotKeyRecorder recorder_;
};

class PlacementDragModifierRecorderButton : public RecorderButton {
    Q_OBJECT
public:
    explicit PlacementDragModifierRecorderButton(QWidget* parent = nullptr);
    void setModifier(const PlacementDragModifier& modifier);
    std::function<void(const PlacementDragModifier&)> onModifier;

protected:
    QString titleText() const override { return recorder_.title(); }
    QString toolTipText() const override { return recorder_.toolTip(); }
    void beginRecording() override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    void modifiersChanged(Qt::KeyboardModifiers held);

    PlacementDragModifierRecorder recorder_;
};

} // namespace tilmora
