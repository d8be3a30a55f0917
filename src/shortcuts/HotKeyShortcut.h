// One key plus modifiers with a printable key name: the Placement Canvas hot key.
#pragma once

#include "shortcuts/KeyEvent.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tilmora {

struct HotKeyShortcut {
    // Carbon virtual key code, i.e. the physical key position.
    std::uint32_t keyCode = 0;
    // Carbon modifier mask (CarbonModifierFlags).
    std::uint32_t modifiers = 0;
    QString keyLabel;

    // Control + Alt + Space.
    static HotKeyShortcut defaultShortcut();

    // The shortcut a key press records; nothing when no modifier is held, and nothing for
    // Escape, Caps Lock and the left-hand modifier keys whatever is held.
    static std::optional<HotKeyShortcut> fromEvent(const KeyEvent& event);

    // Modifier symbols directly followed by the key label: "⌃⌥Space", "⌘K".
    QString displayText() const;

    // EventModifierFlags in, Carbon mask out; bits other than the four modifiers are dropped.
    static std::uint32_t carbonModifiers(std::uint64_t eventModifierFlags);
    // The name of a key position on an ANSI keyboard, "Key <code>" for keys without one.
    static QString labelForKeyCode(std::uint32_t keyCode);
    // The upper-cased characters the key types, falling back to the key-code name when it types
    // nothing visible (Space, Tab, Return).
    static QString labelForEvent(const KeyEvent& event);

    // {"keyCode":…,"modifiers":…,"keyLabel":…}
    QByteArray encode() const;
    // Fails unless keyCode and modifiers are unsigned 32-bit integers; a missing or null
    // keyLabel is recomputed from the key code. The modifiers are not checked.
    static std::optional<HotKeyShortcut> decode(const QByteArray& data);

    friend bool operator==(const HotKeyShortcut&, const HotKeyShortcut&) = default;
};

std::size_t qHash(const HotKeyShortcut& shortcut, std::size_t seed = 0) noexcept;

} // namespace tilmora
