// The one modifier set shared by all fifteen quick-layout hot keys.
#pragma once

#include "shortcuts/ShortcutModifier.h"

#include <QByteArray>
#include <QString>
#include <Qt>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tilmora {

struct QuickHotKeyModifiers {
    // Carbon modifier mask (CarbonModifierFlags), kept exactly as stored.
    std::uint32_t modifiers = 0;

    static constexpr std::uint32_t allowedMask = shortcutModifierMask;
    // Control + Alt + Super.
    static const QuickHotKeyModifiers defaultLayouts;

    // The symbols of the present modifiers in display order, "" when there are none: "⌃⌥⌘".
    QString displayText() const;
    // The same set as Qt modifiers, for the shortcuts menus show; command is Meta (Super).
    Qt::KeyboardModifiers eventModifiers() const;

    // {"modifiers":…}
    QByteArray encode() const;
    // Fails unless modifiers is an unsigned 32-bit integer; the mask is not checked.
    static std::optional<QuickHotKeyModifiers> decode(const QByteArray& data);

    friend bool operator==(const QuickHotKeyModifiers&, const QuickHotKeyModifiers&) = default;
};

inline constexpr QuickHotKeyModifiers QuickHotKeyModifiers::defaultLayouts{
    QuickHotKeyModifiers::allowedMask &
    (CarbonModifierFlags::control | CarbonModifierFlags::option | CarbonModifierFlags::command)};

std::size_t qHash(const QuickHotKeyModifiers& value, std::size_t seed = 0) noexcept;

} // namespace tilmora
