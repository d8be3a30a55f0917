// One system-wide mouse or modifier event, as the modifier-drag placement watches them.
#pragma once

#include "geometry/CGGeometry.h"

#include <cstdint>

namespace tilmora {

struct InputEvent {
    enum class Type { leftMouseDown, leftMouseUp, leftMouseDragged, flagsChanged };

    Type type = Type::leftMouseDown;
    // The pointer when the event happened, top-left space.
    CGPoint location;
    // The modifiers held after the event, in EventModifierFlags bits.
    std::uint64_t modifierFlags = 0;

    friend bool operator==(const InputEvent&, const InputEvent&) = default;
};

} // namespace tilmora
