// One window of a saved layout: enough identity to find the window again and enough geometry to
// put it back on the same or a changed display.
#pragma once

#include "geometry/DisplayGeometry.h"
#include "layouts/WindowFrame.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <vector>

namespace tilmora {

struct SavedWindowPlacement {
    // Made at capture time; names the record, not the window.
    QUuid id;
    QString appName;
    std::optional<QString> bundleIdentifier;
    QString title;
    // The display that held the window, its name, its visible frame and the window's frame as
    // fractions of it. Written all together or not at all, but read one by one.
    std::optional<std::uint32_t> displayID;
    std::optional<QString> displayName;
    WindowFrame frame;
    std::optional<WindowFrame> displayFrame;
    std::optional<WindowFrame> relativeFrame;

    // The display this window belongs to among `displays`: the same id, else the same name,
    // else the one whose usable area matches the saved one (within 8 points, else the largest
    // overlap, else the nearest centre), else the display holding `fallbackFrame`, else the
    // first display.
    std::optional<DisplayGeometry>
    preferredDisplay(const std::vector<DisplayGeometry>& displays,
                     const std::optional<CGRect>& fallbackFrame) const;

    // Keys that are left out when absent may also be null; anything else missing, null or of
    // the wrong type fails.
    static std::optional<SavedWindowPlacement> fromJson(const QJsonValue& value);
    // The keys in field order, absent ones left out; nothing when a frame cannot be written.
    std::optional<QByteArray> encode() const;

    friend bool operator==(const SavedWindowPlacement&, const SavedWindowPlacement&) = default;
};

std::size_t qHash(const SavedWindowPlacement& placement, std::size_t seed = 0) noexcept;
std::ostream& operator<<(std::ostream& stream, const SavedWindowPlacement& placement);

} // namespace tilmora
