// A key press as the shortcut model sees it, whatever input source produced it.
#pragma once

#include "platform/EventModifierFlags.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace tilmora {

struct KeyEvent {
    // The physical key position in the Carbon virtual key-code numbering (49 is the space bar).
    std::uint32_t keyCode = 0;
    // A combination of EventModifierFlags bits.
    std::uint64_t modifierFlags = 0;
    // The text the key produces without modifiers; absent when the source cannot tell.
    std::optional<QString> charactersIgnoringModifiers;

    friend bool operator==(const KeyEvent&, const KeyEvent&) = default;
};

} // namespace tilmora
