// The four modifier keys and the Carbon modifier bits in which every stored or registered
// modifier mask is expressed.
#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora {

// Modifier masks use these bits and no others; hot key registration takes them as they are.
namespace CarbonModifierFlags {

constexpr std::uint32_t command = 0x0100;
constexpr std::uint32_t shift = 0x0200;
constexpr std::uint32_t option = 0x0800;
constexpr std::uint32_t control = 0x1000;

} // namespace CarbonModifierFlags

enum class ShortcutModifier { control, option, shift, command };

inline constexpr std::array<ShortcutModifier, 4> allShortcutModifiers{
    ShortcutModifier::control, ShortcutModifier::option, ShortcutModifier::shift,
    ShortcutModifier::command};

// The order in which every text built from a mask lists its modifiers.
inline constexpr std::array<ShortcutModifier, 4> shortcutModifierDisplayOrder{
    ShortcutModifier::control, ShortcutModifier::option, ShortcutModifier::shift,
    ShortcutModifier::command};

constexpr std::uint32_t carbonFlag(ShortcutModifier modifier) {
    switch (modifier) {
    case ShortcutModifier::control:
        return CarbonModifierFlags::control;
    case ShortcutModifier::option:
        return CarbonModifierFlags::option;
    case ShortcutModifier::shift:
        return CarbonModifierFlags::shift;
    case ShortcutModifier::command:
        return CarbonModifierFlags::command;
    }
    return 0;
}

// The union of the four modifier bits.
inline constexpr std::uint32_t shortcutModifierMask = [] {
    std::uint32_t mask = 0;
    for (const ShortcutModifier modifier : shortcutModifierDisplayOrder) {
        mask |= carbonFlag(modifier);
    }
    return mask;
}();

// Shift alone counts; caps lock and other stray bits do not.
constexpr bool hasShortcutModifier(std::uint32_t carbonMask) {
    return (carbonMask & shortcutModifierMask) != 0;
}

// The modifiers whose bit is set, in display order.
std::vector<ShortcutModifier> shortcutModifiersIn(std::uint32_t carbonMask);

// A stored modifier set: {"modifiers": mask}. The mask is read as stored, unchecked; anything
// but an unsigned 32-bit number under the key fails.
QByteArray encodeModifierMask(std::uint32_t carbonMask);
std::optional<std::uint32_t> decodeModifierMask(const QByteArray& data);

// The raw value is also the identity and the JSON form: "control", "option", "shift", "command".
QString rawValue(ShortcutModifier modifier);
std::optional<ShortcutModifier> shortcutModifierFromRawValue(const QString& rawValue);

QString title(ShortcutModifier modifier);
QString symbol(ShortcutModifier modifier);

QJsonValue toJson(ShortcutModifier modifier);
// Nothing unless the value is one of the four raw strings.
std::optional<ShortcutModifier> shortcutModifierFromJson(const QJsonValue& value);

std::size_t qHash(ShortcutModifier modifier, std::size_t seed = 0) noexcept;

} // namespace tilmora
