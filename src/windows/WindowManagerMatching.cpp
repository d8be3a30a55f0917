// Finding a live window again from partial information: the window under the pointer (from the
// on-screen list, paired with the application's own windows), a window whose record went stale,
// and the live counterpart of a saved window.
#include "windows/WindowManager.h"

#include "windows/CaselessText.h"

#include <algorithm>
#include <cmath>

namespace tilmora {

namespace {

double area(const CGRect& rect) {
    if (rect.isNull()) {
        return 0;
    }
    return std::max(0.0, rect.width()) * std::max(0.0, rect.height());
}

// The first window with the lowest score against `bounds`; ties go to the earlier one.
std::optional<ManagedWindow> closestWindow(std::vector<ManagedWindow>& windows,
                                           const CGRect& bounds) {
    if (windows.empty()) {
        return std::nullopt;
    }
    auto best = windows.begin();
    double bestScore = windowMatchScore(*best, bounds);
    for (auto it = std::next(windows.begin()); it != windows.end(); ++it) {
        if (const double score = windowMatchScore(*it, bounds); score < bestScore) {
            best = it;
            bestScore = score;
        }
    }
    return std::move(*best);
}

} // namespace

double windowMatchScore(const ManagedWindow& candidate, const CGRect& cgBounds) {
    const CGRect& f = candidate.frame;
    const double intersection = area(CGRectIntersection(f, cgBounds));
    const double united = area(f) + area(cgBounds) - intersection;
    return (1 - intersection / std::max(united, 1.0)) * 10000 +
           std::abs(f.minX() - cgBounds.minX()) + std::abs(f.minY() - cgBounds.minY()) +
           std::abs(f.width() - cgBounds.width()) + std::abs(f.height() - cgBounds.height());
}

std::optional<ManagedWindow>
WindowManager::bestAccessibilityWindow(const RunningApplication& app, const CGRect& cgBounds,
                                       const std::optional<QString>& cgTitle) const {
    std::vector<ManagedWindow> candidates = windows(app);
    if (candidates.empty()) {
        return std::nullopt;
    }
    const QString title = cgTitle.value_or(QString()).trimmed();
    if (!title.isEmpty()) {
        for (ManagedWindow& candidate : candidates) {
            if (!candidate.title.isEmpty() &&
                (candidate.title == title || containsIgnoringCase(candidate.title, title) ||
                 containsIgnoringCase(title, candidate.title))) {
                return std::move(candidate);
            }
        }
    }
    return closestWindow(candidates, cgBounds);
}

std::optional<ManagedWindow> WindowManager::window(CGPoint at) const {
    if (!windowSystem_.isTrusted()) {
        return std::nullopt;
    }
    const std::int32_t ownPID = windowSystem_.ownProcessIdentifier();
    for (const OnScreenWindow& entry : windowSystem_.onScreenWindows()) {
        if (!entry.ownerProcessIdentifier || *entry.ownerProcessIdentifier == ownPID ||
            entry.layer != 0 || entry.bounds.isNull()) {
            continue;
        }
        // A point just outside the edge still counts, as the edge is hard to hit exactly.
        if (!CGRectContainsPoint(CGRectInset(entry.bounds, -2, -2), at)) {
            continue;
        }
        const auto app = windowSystem_.application(*entry.ownerProcessIdentifier);
        if (!app || !app->isRegular || isOwnApplication(*app) || app->isTerminated) {
            continue;
        }
        if (auto paired = bestAccessibilityWindow(*app, entry.bounds, entry.title)) {
            return paired;
        }
    }
    return std::nullopt;
}

std::optional<ManagedWindow> WindowManager::refreshedWindow(const ManagedWindow& matching) const {
    const auto app = windowSystem_.application(matching.processIdentifier);
    if (!app) {
        return std::nullopt;
    }
    std::vector<ManagedWindow> candidates = windows(*app);
    for (ManagedWindow& candidate : candidates) {
        if (!candidate.title.isEmpty() && candidate.title == matching.title) {
            return std::move(candidate);
        }
    }
    for (ManagedWindow& candidate : candidates) {
        if (candidate.isFocused) {
            return std::move(candidate);
        }
    }
    return closestWindow(candidates, matching.frame);
}

std::optional<ManagedWindow>
WindowManager::findMatchingWindow(const SavedWindowPlacement& saved) const {
    return findMatchingWindow(saved, allWindows());
}

std::optional<ManagedWindow> WindowManager::findMatchingWindow(const SavedWindowPlacement& saved,
                                                               std::vector<ManagedWindow> listed) {
    if (!saved.bundleIdentifier) {
        // Without an application id only an exact name and title are trusted.
        for (ManagedWindow& window : listed) {
            if (window.appName == saved.appName && window.title == saved.title) {
                return std::move(window);
            }
        }
        return std::nullopt;
    }
    std::vector<ManagedWindow> candidates;
    std::copy_if(
        listed.begin(), listed.end(), std::back_inserter(candidates),
        [&](const ManagedWindow& w) { return w.bundleIdentifier == saved.bundleIdentifier; });
    if (candidates.empty()) {
        return std::nullopt;
    }
    for (ManagedWindow& candidate : candidates) {
        if (candidate.title == saved.title) {
            return std::move(candidate);
        }
    }
    for (ManagedWindow& candidate : candidates) {
        if (saved.title.isEmpty() || containsIgnoringCase(candidate.title, saved.title)) {
            return std::move(candidate);
        }
    }
    return std::move(candidates.front());
}

} // namespace tilmora
