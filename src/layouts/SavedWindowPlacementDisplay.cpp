// The display a saved window belongs to now: the same display if it is still connected, else the
// one with the same name, else the one whose usable area looks most like the saved one.
#include "layouts/SavedWindowPlacement.h"

#include "geometry/TilmoraCoordinateSpace.h"

#include <algorithm>
#include <cmath>

namespace tilmora {

namespace {

// A display whose usable area differs by a dock or panel of up to this size is the same one.
constexpr double displayFrameTolerance = 8;

template <typename Predicate>
std::optional<DisplayGeometry> firstDisplay(const std::vector<DisplayGeometry>& displays,
                                            Predicate predicate) {
    const auto found = std::find_if(displays.begin(), displays.end(), predicate);
    if (found == displays.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace

std::optional<DisplayGeometry>
SavedWindowPlacement::preferredDisplay(const std::vector<DisplayGeometry>& displays,
                                       const std::optional<CGRect>& fallbackFrame) const {
    if (displayID) {
        if (auto same = firstDisplay(displays, [&](const auto& d) { return d.id == *displayID; })) {
            return same;
        }
    }
    if (displayName) {
        if (auto named =
                firstDisplay(displays, [&](const auto& d) { return d.name == *displayName; })) {
            return named;
        }
    }
    if (displayFrame) {
        const CGRect saved = displayFrame->rect();
        if (auto alike = firstDisplay(displays, [&](const auto& d) {
                return d.visibleFrame.isClose(saved, displayFrameTolerance);
            })) {
            return alike;
        }
        namespace space = TilmoraCoordinateSpace;
        if (auto overlapping =
                space::displayWithLargestOverlap(saved, displays, &DisplayGeometry::visibleFrame)) {
            return overlapping;
        }
        return space::displayNearest(saved.center(), displays, &DisplayGeometry::visibleFrame);
    }
    if (fallbackFrame) {
        return TilmoraCoordinateSpace::display(*fallbackFrame, displays);
    }
    if (displays.empty()) {
        return std::nullopt;
    }
    return displays.front();
}

} // namespace tilmora
