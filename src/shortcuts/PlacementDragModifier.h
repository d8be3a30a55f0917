// The modifier set that turns an ordinary window drag into a placement drag.
#pragma once

#include "shortcuts/ShortcutModifier.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tilmora {

struct PlacementDragModifier {
    // Carbon modifier mask (CarbonModifierFlags); a decoded mask is kept exactly as stored.
    std::uint32_t modifiers = 0;

    // Command alone.
    static const PlacementDragModifier command;
    static PlacementDragModifier defaultModifier() { return command; }

    // EventModifierFlags in; only the four modifier bits survive.
    static PlacementDragModifier fromEventFlags(std::uint64_t eventModifierFlags);

    // The selected modifiers' titles joined by " + ", "Modifier" when none is selected.
    QString title() const;
    // The selected modifiers' symbols, "-" when none is selected.
    QString symbol() const;
    // A single modifier's raw value (also an icon name), otherwise "keyboard".
    QString systemImage() const;

    // {"modifiers":…}
    QByteArray encode() const;
    // Fails unless modifiers is an unsigned 32-bit integer; the mask is not checked.
    static std::optional<PlacementDragModifier> decode(const QByteArray& data);

    friend bool operator==(const PlacementDragModifier&, const PlacementDragModifier&) = default;

private:
    static constexpr std::uint32_t allowedMask = shortcutModifierMask;
};

inline constexpr PlacementDragModifier PlacementDragModifier::command{
    PlacementDragModifier::allowedMask & CarbonModifierFlags::command};

std::size_t qHash(const PlacementDragModifier& value, std::size_t seed = 0) noexcept;

} // namespace tilmora
