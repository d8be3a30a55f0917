// Applying a frame: the window system offers separate position and size writes, and the
// application may clamp either, so the writes go out in several fixed orders until the window
// reports the requested frame, and the closest frame seen is what is reported.
#include "windows/WindowManager.h"

#include "platform/AXError.h"

#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace tilmora {

namespace {

enum class Write { size, position };

// Each pass ends with a position write, because a size change can move the window on some
// systems; all but the third also begin with one.
const std::array<std::vector<Write>, 4> writePasses{{
    {Write::position, Write::size, Write::position},
    {Write::position, Write::size, Write::position, Write::size, Write::position},
    {Write::size, Write::position, Write::size, Write::position},
    {Write::position, Write::position, Write::size, Write::position, Write::size, Write::position},
}};

constexpr std::chrono::milliseconds settleTime{35};

double distance(const CGRect& a, const CGRect& b) {
    return std::abs(a.minX() - b.minX()) + std::abs(a.minY() - b.minY()) +
           std::abs(a.width() - b.width()) + std::abs(a.height() - b.height());
}

} // namespace

std::expected<WindowPlacementResult, WindowManagerError>
WindowManager::setFrame(const CGRect& frame, WindowElement window) {
    if (!windowSystem_.isSizeSettable(window) || !windowSystem_.isPositionSettable(window)) {
        return std::unexpected(WindowManagerError::cannotResizeWindow);
    }
    windowSystem_.raise(window);

    std::optional<CGRect> best = readFrame(window);
    double bestDistance = best ? distance(frame, *best) : std::numeric_limits<double>::max();
    std::int32_t sizeCode = AXError::success;
    std::int32_t positionCode = AXError::success;

    for (std::size_t pass = 0; pass < writePasses.size(); ++pass) {
        for (const Write write : writePasses[pass]) {
            if (write == Write::position) {
                positionCode = windowSystem_.setPosition(window, frame.origin);
            } else {
                sizeCode = windowSystem_.setSize(window, frame.size);
            }
        }
        windowSystem_.settle(window, settleTime);
        const std::optional<CGRect> landed = readFrame(window);
        if (!landed) {
            continue;
        }
        if (const double d = distance(frame, *landed); d < bestDistance) {
            best = landed;
            bestDistance = d;
        }
        if (landed->isClose(frame, placementTolerance_)) {
            return WindowPlacementResult{frame, *landed, static_cast<int>(pass) + 1, true};
        }
    }

    if (!best) {
        return std::unexpected(WindowManagerError::cannotReadWindow);
    }
    if (sizeCode != AXError::success || positionCode != AXError::success) {
        return std::unexpected(WindowManagerError::cannotMove(
            QStringLiteral("AX size: %1, AX position: %2").arg(sizeCode).arg(positionCode)));
    }
    return WindowPlacementResult{frame, *best, static_cast<int>(writePasses.size()),
                                 best->isClose(frame, placementTolerance_)};
}

} // namespace tilmora
