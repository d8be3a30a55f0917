// The live preview of a modifier drag, shared by the passive views of one overlay set: what is
// fixed while the drag lasts, and where the window would land, announced on every change.
#pragma once

#include "geometry/CGGeometry.h"
#include "geometry/DisplayLayoutProfile.h"
#include "shortcuts/PlacementDragModifier.h"
#include "windows/TilmoraWindow.h"

#include <QHash>
#include <QObject>

#include <cstdint>
#include <optional>

namespace tilmora {

class PlacementCanvasPreviewState : public QObject {
    Q_OBJECT

public:
    PlacementCanvasPreviewState(TilmoraWindow dragged,
                                QHash<std::uint32_t, DisplayLayoutProfile> profiles,
                                PlacementDragModifier heldModifier)
        : target(std::move(dragged))
        , displayProfiles(std::move(profiles))
        , modifier(heldModifier) {}

    const TilmoraWindow target;
    const QHash<std::uint32_t, DisplayLayoutProfile> displayProfiles;
    const PlacementDragModifier modifier;

    const std::optional<CGRect>& previewFrame() const { return previewFrame_; }
    std::optional<std::uint32_t> activeDisplayID() const { return activeDisplayID_; }
    const std::optional<QString>& activeDisplayName() const { return activeDisplayName_; }

    // All three at once, then one announcement: a view never sees a frame paired with the
    // display it has just left.
    void publish(std::optional<CGRect> frame, std::optional<std::uint32_t> displayID,
                 std::optional<QString> displayName);

Q_SIGNALS:
    void changed();

private:
    std::optional<CGRect> previewFrame_;
    std::optional<std::uint32_t> activeDisplayID_;
    std::optional<QString> activeDisplayName_;
};

} // namespace tilmora
