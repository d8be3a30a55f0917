// Applying a frame: the window system offers separate position and size writes, and the
// application may clamp either, so the writes go out in several fixed orders until the window
// reports the requested frame, and the closest frame seen is what is reported. Many windows
// go through the passes side by side, sharing each pass's settle.
#include "windows/WindowManager.h"

#include "platform/AXError.h"

#include <array>
#include <cmath>
#include <limits>
#include <unordered_map>
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
// How long a frame that no pass saw answered may still arrive before it is judged.
constexpr std::chrono::milliseconds lateAnswerTime{1000};

double distance(const CGRect& a, const CGRect& b) {
    return std::abs(a.minX() - b.minX()) + std::abs(a.minY() - b.minY()) +
           std::abs(a.width() - b.width()) + std::abs(a.height() - b.height());
}

// One window on its way through the passes.
struct Progress {
    CGRect frame;
    WindowElement window;
    std::optional<CGRect> best;
    double bestDistance = std::numeric_limits<double>::max();
    std::int32_t sizeCode = AXError::success;
    std::int32_t positionCode = AXError::success;
    std::optional<WindowManager::Placement> outcome;
};

} // namespace

WindowManager::Placement WindowManager::setFrame(const CGRect& frame, WindowElement window) {
    return setFrames({{frame, window}}).front();
}

std::vector<WindowManager::Placement>
WindowManager::setFrames(const std::vector<FrameRequest>& requests) {
    // The n-th request for a window goes in the n-th round, so that within a round every
    // window is asked once and a later request for it lands after the earlier one.
    std::vector<std::vector<std::size_t>> rounds;
    std::unordered_map<WindowElement, std::size_t> asked;
    for (std::size_t i = 0; i < requests.size(); ++i) {
        const std::size_t round = asked[requests[i].window]++;
        rounds.resize(std::max(rounds.size(), round + 1));
        rounds[round].push_back(i);
    }
    std::vector<std::optional<Placement>> outcomes(requests.size());
    for (const std::vector<std::size_t>& round : rounds) {
        std::vector<FrameRequest> together;
        for (const std::size_t i : round) {
            together.push_back(requests[i]);
        }
        std::vector<Placement> placed = placeTogether(together);
        for (std::size_t k = 0; k < round.size(); ++k) {
            outcomes[round[k]] = std::move(placed[k]);
        }
    }
    std::vector<Placement> result;
    result.reserve(outcomes.size());
    for (std::optional<Placement>& outcome : outcomes) {
        result.push_back(std::move(*outcome));
    }
    return result;
}

std::vector<WindowManager::Placement>
WindowManager::placeTogether(const std::vector<FrameRequest>& requests) {
    std::vector<Progress> windows;
    windows.reserve(requests.size());
    for (const FrameRequest& request : requests) {
        Progress& p = windows.emplace_back();
        p.frame = request.frame;
        p.window = request.window;
        if (!windowSystem_.isSizeSettable(p.window) ||
            !windowSystem_.isPositionSettable(p.window)) {
            p.outcome = std::unexpected(WindowManagerError::cannotResizeWindow);
            continue;
        }
        windowSystem_.raise(p.window);
        p.best = readFrame(p.window);
        if (p.best) {
            p.bestDistance = distance(p.frame, *p.best);
        }
    }

    // Reads a window back after its writes were settled: the closest frame yet becomes the
    // best, and one within the tolerance ends its placement.
    const auto judge = [&](Progress& p, int attempts) {
        const std::optional<CGRect> landed = readFrame(p.window);
        if (!landed) {
            return;
        }
        if (const double d = distance(p.frame, *landed); d < p.bestDistance) {
            p.best = landed;
            p.bestDistance = d;
        }
        if (landed->isClose(p.frame, placementTolerance_)) {
            p.outcome = WindowPlacementResult{p.frame, *landed, attempts, true};
        }
    };
    for (std::size_t pass = 0; pass < writePasses.size(); ++pass) {
        std::vector<WindowElement> written;
        for (Progress& p : windows) {
            if (p.outcome) {
                continue;
            }
            for (const Write write : writePasses[pass]) {
                if (write == Write::position) {
                    p.positionCode = windowSystem_.setPosition(p.window, p.frame.origin);
                } else {
                    p.sizeCode = windowSystem_.setSize(p.window, p.frame.size);
                }
            }
            written.push_back(p.window);
        }
        if (written.empty()) {
            break;
        }
        windowSystem_.settle(written, settleTime);
        for (Progress& p : windows) {
            if (!p.outcome) {
                judge(p, static_cast<int>(pass) + 1);
            }
        }
    }
    std::vector<WindowElement> unplaced;
    for (const Progress& p : windows) {
        if (!p.outcome) {
            unplaced.push_back(p.window);
        }
    }
    if (!unplaced.empty() && windowSystem_.awaitLateAnswers(unplaced, lateAnswerTime)) {
        for (Progress& p : windows) {
            if (!p.outcome) {
                judge(p, static_cast<int>(writePasses.size()));
            }
        }
    }

    std::vector<Placement> result;
    result.reserve(windows.size());
    for (Progress& p : windows) {
        if (p.outcome) {
            result.push_back(std::move(*p.outcome));
        } else if (!p.best) {
            result.push_back(std::unexpected(WindowManagerError::cannotReadWindow));
        } else if (p.sizeCode != AXError::success || p.positionCode != AXError::success) {
            result.push_back(std::unexpected(
                WindowManagerError::cannotMove(QStringLiteral("AX size: %1, AX position: %2")
                                                   .arg(p.sizeCode)
                                                   .arg(p.positionCode))));
        } else {
            result.push_back(WindowPlacementResult{p.frame, *p.best,
                                                   static_cast<int>(writePasses.size()),
                                                   p.best->isClose(p.frame, placementTolerance_)});
        }
    }
    return result;
}

} // namespace tilmora
