#include "placement/PlacementCanvasPreviewState.h"

namespace tilmora {

void PlacementCanvasPreviewState::publish(std::optional<CGRect> frame,
                                          std::optional<std::uint32_t> displayID,
                                          std::optional<QString> displayName) {
    previewFrame_ = frame;
    activeDisplayID_ = displayID;
    activeDisplayName_ = std::move(displayName);
    Q_EMIT changed();
}

} // namespace tilmora
