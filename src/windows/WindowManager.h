// The one class that reads and writes other applications' windows through the window system:
// which windows can be arranged, how each is identified, and which one a command acts on.
#pragma once

#include "layouts/SavedWindowPlacement.h"
#include "platform/RunningApplication.h"
#include "platform/WindowSystem.h"
#include "windows/ManagedWindow.h"
#include "windows/WindowManagerError.h"
#include "windows/WindowPlacementResult.h"

#include <QString>

#include <cstdint>
#include <expected>
#include <optional>
#include <vector>

namespace tilmora {

class WindowManager {
public:
    using Placement = std::expected<WindowPlacementResult, WindowManagerError>;
    // One window and the frame it is to take.
    struct FrameRequest {
        CGRect frame;
        WindowElement window;
    };

    static constexpr double minimumWindowWidth = 80;
    static constexpr double minimumWindowHeight = 60;

    // `ownBundleIdentifier` is this application's id: its windows are never listed or targeted.
    WindowManager(WindowSystem& windowSystem, std::optional<QString> ownBundleIdentifier,
                  double placementTolerance = 3.0);

    const std::optional<QString>& ownBundleIdentifier() const { return ownBundleIdentifier_; }
    double placementTolerance() const { return placementTolerance_; }

    // The standard windows of every other regular application, sorted by application name and
    // then title; empty without access.
    std::vector<ManagedWindow> allWindows() const;

    // The window a command acts on: the one the user picked, else the focused window of the
    // frontmost application, else that of the application last worked in.
    std::expected<ManagedWindow, WindowManagerError>
    targetWindow(const std::optional<QString>& selectedWindowID,
                 std::optional<std::int32_t> fallbackPID) const;

    // Writes the frame in up to four passes of position and size writes, reading back after
    // each, until the window reports it within the placement tolerance. A window that keeps
    // another frame is a success that is not exact; the closest frame seen is reported.
    Placement setFrame(const CGRect& frame, WindowElement window);
    // setFrame for many windows at once, with the outcome of each as setFrame would give it one
    // window after the other: each pass is written to every window that still needs it and
    // then settled for all of them together, so that the settle time is paid once per pass,
    // not once per window. A window asked for more than once takes its frames in turn, the
    // last one winning.
    std::vector<Placement> setFrames(const std::vector<FrameRequest>& requests);

    // The topmost arrangeable window under the point, from the on-screen list.
    std::optional<ManagedWindow> window(CGPoint at) const;
    // A stale record found again: same title, else the focused window, else the closest frame.
    std::optional<ManagedWindow> refreshedWindow(const ManagedWindow& matching) const;
    // The live window a saved one stands for. Keeps no memory: two saved windows may match the
    // same live window.
    std::optional<ManagedWindow> findMatchingWindow(const SavedWindowPlacement& saved) const;
    // The same among windows listed by allWindows() a moment before.
    static std::optional<ManagedWindow> findMatchingWindow(const SavedWindowPlacement& saved,
                                                           std::vector<ManagedWindow> listed);

private:
    // The application's window that an on-screen entry stands for: by title, else by frame.
    std::optional<ManagedWindow>
    bestAccessibilityWindow(const RunningApplication& app, const CGRect& cgBounds,
                            const std::optional<QString>& cgTitle) const;
    bool isOwnApplication(const RunningApplication& app) const;
    std::vector<ManagedWindow> windows(const RunningApplication& app) const;
    std::optional<ManagedWindow> focusedWindow(const RunningApplication& app) const;
    std::optional<WindowElement> focusedElement(std::int32_t processIdentifier) const;
    bool isStandardWindow(WindowElement window) const;
    std::optional<CGRect> readFrame(WindowElement window) const;
    // setFrames for requests that name each window once.
    std::vector<Placement> placeTogether(const std::vector<FrameRequest>& requests);
    ManagedWindow makeWindow(const RunningApplication& app, WindowElement window,
                             const CGRect& frame, int index, bool isFocused) const;

    WindowSystem& windowSystem_;
    std::optional<QString> ownBundleIdentifier_;
    double placementTolerance_;
};

// "<application id or pid-N>-<pid>-<index>-<title>"; the frame is deliberately not part of it.
QString stableWindowID(const RunningApplication& app, const QString& title, int index);
// How far a window's frame is from `cgBounds`, lower is closer: one minus the intersection over
// union, weighted 10000, plus the summed edge differences, which break ties.
double windowMatchScore(const ManagedWindow& candidate, const CGRect& cgBounds);
// Its localized name, else its id, else "Unknown App".
QString applicationName(const RunningApplication& app);

} // namespace tilmora
