#include "shortcuts/ShortcutRecorders.h"

#include "shortcuts/ShortcutModifier.h"

namespace tilmora {

void HotKeyRecorder::show(const HotKeyShortcut& shortcut) {
    if (!isRecording_) {
        shortcut_ = shortcut;
    }
}

HotKeyRecorder::KeyOutcome HotKeyRecorder::keyDown(const KeyEvent& event) {
    if (!isRecording_) {
        return {RecorderResponse::passOn, std::nullopt};
    }
    // Before anything else, so that Escape with modifiers held cancels too.
    if (event.keyCode == escapeKeyCode) {
        isRecording_ = false;
        return {RecorderResponse::handled, std::nullopt};
    }
    auto recorded = HotKeyShortcut::fromEvent(event);
    if (!recorded) {
        return {RecorderResponse::beep, std::nullopt};
    }
    isRecording_ = false;
    shortcut_ = *recorded;
    return {RecorderResponse::handled, std::move(recorded)};
}

QString HotKeyRecorder::title() const {
    return isRecording_ ? QStringLiteral("Type shortcut...") : shortcut_.displayText();
}

QString HotKeyRecorder::toolTip() const {
    return isRecording_ ? QStringLiteral("Press Escape to cancel")
                        : QStringLiteral("Click to change the Placement Canvas hotkey");
}

void PlacementDragModifierRecorder::show(const PlacementDragModifier& modifier) {
    if (!isRecording_) {
        modifier_ = modifier;
    }
}

void PlacementDragModifierRecorder::begin() {
    recorded_.reset();
    isRecording_ = true;
}

std::optional<PlacementDragModifier>
PlacementDragModifierRecorder::flagsChanged(std::uint64_t modifierFlags) {
    if (!isRecording_) {
        return std::nullopt;
    }
    const PlacementDragModifier current = PlacementDragModifier::fromEventFlags(modifierFlags);
    const auto count = [](const PlacementDragModifier& m) {
        return shortcutModifiersIn(m.modifiers).size();
    };
    if (count(current) > 0) {
        // Releasing one key of a chord keeps the chord.
        if (!recorded_ || count(current) >= count(*recorded_)) {
            recorded_ = current;
        }
        return std::nullopt;
    }
    if (!recorded_) {
        return std::nullopt;
    }
    isRecording_ = false;
    modifier_ = *recorded_;
    recorded_.reset();
    return modifier_;
}

RecorderResponse PlacementDragModifierRecorder::keyDown(const KeyEvent& event) {
    if (!isRecording_) {
        return RecorderResponse::passOn;
    }
    if (event.keyCode == HotKeyRecorder::escapeKeyCode) {
        cancel();
        return RecorderResponse::handled;
    }
    return RecorderResponse::beep;
}

void PlacementDragModifierRecorder::cancel() {
    recorded_.reset();
    isRecording_ = false;
}

QString PlacementDragModifierRecorder::title() const {
    if (!isRecording_) {
        return displayText(modifier_);
    }
    return recorded_ ? displayText(*recorded_) : QStringLiteral("Press modifiers...");
}

QString PlacementDragModifierRecorder::toolTip() const {
    return isRecording_ ? QStringLiteral("Press and release the modifier keys to save. Press "
                                         "Escape to cancel.")
                        : QStringLiteral("Click to change the drag placement modifier");
}

QString PlacementDragModifierRecorder::displayText(const PlacementDragModifier& modifier) {
    if (shortcutModifiersIn(modifier.modifiers).empty()) {
        return QStringLiteral("None");
    }
    return modifier.title() + QStringLiteral(" (") + modifier.symbol() + u')';
}

} // namespace tilmora
