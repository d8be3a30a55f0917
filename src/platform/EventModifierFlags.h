// The modifier flags that input events carry, in one fixed bit layout shared by every event
// source (X11 input, Qt key events, the fakes). Only these four bits are ever set.
#pragma once

#include <cstdint>

namespace tilmora::EventModifierFlags {

constexpr std::uint64_t shift = 0x020000;
constexpr std::uint64_t control = 0x040000;
constexpr std::uint64_t option = 0x080000;
constexpr std::uint64_t command = 0x100000;

} // namespace tilmora::EventModifierFlags
