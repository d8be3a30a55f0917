// Hot keys are named by physical key position in one fixed numbering (the one shortcuts are
// stored in: 49 is the space bar, 123 the left arrow). This maps that numbering to X key codes
// of the evdev keyboard driver, so a shortcut stays on the same physical key whatever the
// keyboard layout.
#pragma once

#include <cstdint>
#include <optional>

namespace tilmora {

// The X key code (evdev code + 8) of the key at that position; nothing for positions without
// a key on a PC keyboard (Function).
std::optional<std::uint8_t> x11KeyCode(std::uint32_t shortcutKeyCode);
// The position of the key with that X key code; nothing for keys without one.
std::optional<std::uint32_t> shortcutKeyCode(std::uint32_t x11KeyCode);

} // namespace tilmora
