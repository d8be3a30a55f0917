// Result codes of window writes. The values are the accessibility error codes that the status
// texts show ("AX size: -25200"), so that a message reads the same on every platform.
#pragma once

#include <cstdint>

namespace tilmora::AXError {

constexpr std::int32_t success = 0;
// Any failure: a refused request, a window that has gone, a server error.
constexpr std::int32_t failure = -25200;

} // namespace tilmora::AXError
