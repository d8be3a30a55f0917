// The smallest frame a store command places: a window is never made smaller than this, unless
// the display's usable area itself is smaller.
#pragma once

#include "geometry/CGGeometry.h"

namespace tilmora {

inline constexpr CGSize minimumPlacedSize{120, 90};

} // namespace tilmora
