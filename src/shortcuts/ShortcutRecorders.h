// What the two shortcut recorder buttons do with the keys they are given, apart from any widget:
// the Placement Canvas hot key recorder (a key with modifiers) and the drag modifier recorder
// (a chord of modifiers, recorded when all of them are released). Idle until begun; the value
// shown changes only through a completed recording or, while idle, from outside.
#pragma once

#include "shortcuts/HotKeyShortcut.h"
#include "shortcuts/KeyEvent.h"
#include "shortcuts/PlacementDragModifier.h"

#include <QString>

#include <optional>

namespace tilmora {

// What the button does with a key event it was given.
enum class RecorderResponse {
    // Not recording: the button's ordinary handling.
    passOn,
    handled,
    // Handled, and the user hears that the key does not make a shortcut.
    beep,
};

class HotKeyRecorder {
public:
    static constexpr std::uint32_t escapeKeyCode = 53;

    struct KeyOutcome {
        RecorderResponse response;
        // Set when this key completed a recording.
        std::optional<HotKeyShortcut> recorded;
    };

    const HotKeyShortcut& shortcut() const { return shortcut_; }
    bool isRecording() const { return isRecording_; }
    // A change from outside; ignored while recording, so that it cannot disturb one.
    void show(const HotKeyShortcut& shortcut);
    void begin() { isRecording_ = true; }
    // Escape cancels whatever modifiers are held; a key without a modifier beeps.
    KeyOutcome keyDown(const KeyEvent& event);
    QString title() const;
    QString toolTip() const;

private:
    HotKeyShortcut shortcut_ = HotKeyShortcut::defaultShortcut();
    bool isRecording_ = false;
};

class PlacementDragModifierRecorder {
public:
    const PlacementDragModifier& modifier() const { return modifier_; }
    bool isRecording() const { return isRecording_; }
    void show(const PlacementDragModifier& modifier);
    void begin();
    // Modifiers went down or up (EventModifierFlags held now). The largest chord held during the
    // recording is what the release of the last modifier records.
    std::optional<PlacementDragModifier> flagsChanged(std::uint64_t modifierFlags);
    // Escape cancels; any other key beeps.
    RecorderResponse keyDown(const KeyEvent& event);
    // Focus moved elsewhere: a recording in progress is cancelled.
    void focusLost() { cancel(); }
    QString title() const;
    QString toolTip() const;

    // "None", or the title and symbols: "Control + Option (⌃⌥)".
    static QString displayText(const PlacementDragModifier& modifier);

private:
    void cancel();

    PlacementDragModifier modifier_ = PlacementDragModifier::defaultModifier();
    std::optional<PlacementDragModifier> recorded_;
    bool isRecording_ = false;
};

} // namespace tilmora
