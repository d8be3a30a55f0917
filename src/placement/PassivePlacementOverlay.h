// The live preview a modifier drag shows on every display: opened when the drag begins, told
// where the window would land as the pointer moves, closed when the drag ends either way.
#pragma once

#include "geometry/DisplayGeometry.h"
#include "geometry/DisplayLayoutProfile.h"
#include "shortcuts/PlacementDragModifier.h"
#include "windows/TilmoraWindow.h"

#include <QHash>

#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora {

class PassivePlacementOverlay {
public:
    virtual ~PassivePlacementOverlay() = default;

    // Replaces whatever overlay is open; takes no input and does not activate Tilmora.
    virtual void showPassive(const std::vector<DisplayGeometry>& displays,
                             const TilmoraWindow& target,
                             const QHash<std::uint32_t, DisplayLayoutProfile>& displayProfiles,
                             const PlacementDragModifier& modifier) = 0;
    // Top-left space; nothing clears the preview. Ignored while no passive overlay is open.
    virtual void updatePassivePreview(const std::optional<CGRect>& frame,
                                      const std::optional<DisplayGeometry>& display) = 0;
    virtual void close() = 0;
};

} // namespace tilmora
