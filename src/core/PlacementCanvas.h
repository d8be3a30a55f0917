// The full-screen canvas on which the user draws the target area, as the store drives it, and the
// passive preview of a modifier drag, which shares its overlay windows (opening one closes the
// other). The overlay windows live with the views; the store only opens, closes and hands over
// what to do with the chosen rectangle.
#pragma once

#include "placement/PassivePlacementOverlay.h"

#include <QHash>

#include <cstdint>
#include <functional>
#include <vector>

namespace tilmora {

class PlacementCanvas : public PassivePlacementOverlay {
public:
    // Receives the chosen rectangle, top-left space.
    using Apply = std::function<void(const CGRect&)>;

    virtual bool isOpen() const = 0;
    // One overlay per display, showing each display's own grid and the target's current frame.
    virtual void show(const std::vector<DisplayGeometry>& displays, const TilmoraWindow& target,
                      const QHash<std::uint32_t, DisplayLayoutProfile>& displayProfiles,
                      Apply apply) = 0;
};

} // namespace tilmora
