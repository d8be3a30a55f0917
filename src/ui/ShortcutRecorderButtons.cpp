#include "ui/ShortcutRecorderButtons.h"

#include "platform/EventModifierFlags.h"
#include "platform/x11/X11KeyCodes.h"

#include <QApplication>
#include <QKeyEvent>

namespace tilmora {

namespace {

std::uint64_t eventFlags(Qt::KeyboardModifiers held) {
    std::uint64_t flags = 0;
    // Qt names the logo key Meta on X11; it is the shortcut model's command.
    for (const auto& [qt, flag] : {std::pair{Qt::ControlModifier, EventModifierFlags::control},
                                   std::pair{Qt::AltModifier, EventModifierFlags::option},
                                   std::pair{Qt::ShiftModifier, EventModifierFlags::shift},
                                   std::pair{Qt::MetaModifier, EventModifierFlags::command}}) {
        if (held.testFlag(qt)) {
            flags |= flag;
        }
    }
    return flags;
}

bool isModifier(int key) {
    switch (key) {
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Shift:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return true;
    default:
        return false;
    }
}

} // namespace

RecorderButton::RecorderButton(QSize size, QWidget* parent)
    : QPushButton(parent)
    , size_(size) {
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QPushButton::clicked, this, [this] { beginRecording(); });
}

void RecorderButton::recordingChanged(bool isRecording) {
    if (isRecording && !grabbing_) {
        setFocus(Qt::OtherFocusReason);
        grabKeyboard();
        grabbing_ = true;
    } else if (!isRecording && grabbing_) {
        releaseKeyboard();
        grabbing_ = false;
    }
    refreshTexts();
}

void RecorderButton::refreshTexts() {
    setText(titleText());
    setToolTip(toolTipText());
    setAccessibleName(titleText());
}

void RecorderButton::hideEvent(QHideEvent* event) {
    // A window closed mid-recording must not keep the keyboard.
    if (grabbing_) {
        releaseKeyboard();
        grabbing_ = false;
    }
    QPushButton::hideEvent(event);
}

std::optional<KeyEvent> RecorderButton::keyEvent(const QKeyEvent& event) {
    // On X11 the native scan code is the X key code, which names the physical key.
    auto position = shortcutKeyCode(event.nativeScanCode());
    if (!position && event.key() == Qt::Key_Escape) {
        position = HotKeyRecorder::escapeKeyCode;
    }
    if (!position) {
        return std::nullopt;
    }
    const QString typed = event.text();
    return KeyEvent{*position, eventFlags(event.modifiers()),
                    typed.isEmpty() || !typed.at(0).isPrint() ? std::nullopt
                                                              : std::optional<QString>(typed)};
}

bool RecorderButton::isModifierKey(const QKeyEvent& event) {
    return isModifier(event.key());
}

void RecorderButton::beep() {
    QApplication::beep();
}

HotKeyRecorderButton::HotKeyRecorderButton(QWidget* parent)
    : RecorderButton({180, 30}, parent) {
    refreshTexts();
}

void HotKeyRecorderButton::setShortcut(const HotKeyShortcut& shortcut) {
    recorder_.show(shortcut);
    refreshTexts();
}

void HotKeyRecorderButton::beginRecording() {
    recorder_.begin();
    recordingChanged(true);
}

void HotKeyRecorderButton::keyPressEvent(QKeyEvent* event) {
    if (!recorder_.isRecording()) {
        RecorderButton::keyPressEvent(event);
        return;
    }
    // Modifiers going down are the start of a chord, not a key of their own.
    if (isModifierKey(*event)) {
        return;
    }
    const auto key = keyEvent(*event);
    const auto outcome =
        key ? recorder_.keyDown(*key) : HotKeyRecorder::KeyOutcome{RecorderResponse::beep, {}};
    if (outcome.response == RecorderResponse::beep) {
        beep();
        return;
    }
    recordingChanged(recorder_.isRecording());
    if (outcome.recorded && onShortcut) {
        onShortcut(*outcome.recorded);
    }
}

bool HotKeyRecorderButton::event(QEvent* event) {
    // While recording, a shortcut of the window (Alt+letter, a menu's key) is recorded instead.
    if (event->type() == QEvent::ShortcutOverride && recorder_.isRecording()) {
        event->accept();
        return true;
    }
    return RecorderButton::event(event);
}

PlacementDragModifierRecorderButton::PlacementDragModifierRecorderButton(QWidget* parent)
    : RecorderButton({210, 30}, parent) {
    refreshTexts();
}

void PlacementDragModifierRecorderButton::setModifier(const PlacementDragModifier& modifier) {
    recorder_.show(modifier);
    refreshTexts();
}

void PlacementDragModifierRecorderButton::beginRecording() {
    recorder_.begin();
    recordingChanged(true);
}

void PlacementDragModifierRecorderButton::modifiersChanged(Qt::KeyboardModifiers held) {
    const auto recorded = recorder_.flagsChanged(eventFlags(held));
    recordingChanged(recorder_.isRecording());
    if (recorded && onModifier) {
        onModifier(*recorded);
    }
}

// For a modifier key's own press or release Qt reports the modifiers held after it.
void PlacementDragModifierRecorderButton::keyPressEvent(QKeyEvent* event) {
    if (!recorder_.isRecording()) {
        RecorderButton::keyPressEvent(event);
        return;
    }
    if (isModifierKey(*event)) {
        modifiersChanged(event->modifiers());
        return;
    }
    const auto key = keyEvent(*event);
    if (!key || recorder_.keyDown(*key) == RecorderResponse::beep) {
        beep();
    }
    recordingChanged(recorder_.isRecording());
}

void PlacementDragModifierRecorderButton::keyReleaseEvent(QKeyEvent* event) {
    if (recorder_.isRecording() && isModifierKey(*event)) {
        modifiersChanged(event->modifiers());
        return;
    }
    RecorderButton::keyReleaseEvent(event);
}

void PlacementDragModifierRecorderButton::focusOutEvent(QFocusEvent* event) {
    recorder_.focusLost();
    recordingChanged(false);
    RecorderButton::focusOutEvent(event);
}

bool PlacementDragModifierRecorderButton::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && recorder_.isRecording()) {
        event->accept();
        return true;
    }
    return RecorderButton::event(event);
}

} // namespace tilmora
