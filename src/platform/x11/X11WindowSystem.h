// The window-system interface on X11 with an EWMH window manager: screens from RandR,
// applications and windows from the window mirror, placement through the frame writer.
#pragma once

#include "platform/WindowSystem.h"
#include "platform/x11/X11DesktopEntries.h"
#include "platform/x11/X11FrameWriter.h"
#include "platform/x11/X11Monitors.h"
#include "platform/x11/X11PointSpace.h"
#include "platform/x11/X11WindowMirror.h"

#include <QByteArray>

#include <chrono>
#include <memory>

namespace tilmora {

class X11Connection;

class X11WindowSystem final : public WindowSystem {
public:
    // Layers of the on-screen list; ordinary windows are on 0.
    static constexpr std::int32_t desktopLayer = -2147483623;
    static constexpr std::int32_t keptBelowLayer = -1;
    static constexpr std::int32_t keptAboveLayer = 3;
    static constexpr std::int32_t dockLayer = 20;

    struct Options {
        // The WM_CLASS that this application's own windows carry (Qt takes the instance from
        // the executable name and the class from the application name). Its own application
        // id is derived from it by the same rules as every other application's.
        QByteArray ownInstance = QByteArrayLiteral("tilmora");
        QByteArray ownClass = QByteArrayLiteral("Tilmora");
        // Where desktop entries are read from; the XDG directories when empty.
        QStringList desktopEntryDirectories;
    };

    explicit X11WindowSystem(X11Connection& connection);
    X11WindowSystem(X11Connection& connection, Options options);
    ~X11WindowSystem() override;

    std::vector<ScreenDescription> screens() const override;
    CGPoint pointerLocation() const override;
    bool isTrusted() const override;
    bool requestTrust() override;
    std::vector<RunningApplication> runningApplications() const override;
    std::optional<RunningApplication> application(std::int32_t processIdentifier) const override;
    std::optional<RunningApplication> frontmostApplication() const override;
    std::int32_t ownProcessIdentifier() const override;
    std::optional<QString> ownBundleIdentifier() const override;
    void setActivationHandler(ActivationHandler handler) override;
    std::vector<WindowElement> windows(std::int32_t processIdentifier) const override;
    std::optional<WindowElement> focusedWindow(std::int32_t processIdentifier) const override;
    std::optional<QString> role(WindowElement window) const override;
    std::optional<QString> subrole(WindowElement window) const override;
    std::optional<QString> title(WindowElement window) const override;
    std::optional<CGPoint> position(WindowElement window) const override;
    std::optional<CGSize> size(WindowElement window) const override;
    bool isPositionSettable(WindowElement window) const override;
    bool isSizeSettable(WindowElement window) const override;
    void raise(WindowElement window) override;
    std::int32_t setPosition(WindowElement window, CGPoint position) override;
    std::int32_t setSize(WindowElement window, CGSize size) override;
    void settle(const std::vector<WindowElement>& windows,
                std::chrono::milliseconds maximum) override;
    bool awaitLateAnswers(const std::vector<WindowElement>& windows,
                          std::chrono::milliseconds maximum) override;
    std::vector<OnScreenWindow> onScreenWindows() const override;

    // The monitors as last read, primary first (read when none were read yet).
    std::vector<X11Monitor> monitors() const;

private:
    struct Application {
        RunningApplication record;
        std::vector<const X11WindowRecord*> windows;
    };

    // Reads may use what the mirror saw a moment ago; placement looks at every event first.
    // Writes take the window as last read: the frame writer reads it afresh itself.
    enum class Freshness { asRead, recent, latest };

    // Brings the mirror up to date; false without a usable connection.
    bool refresh(Freshness freshness = Freshness::recent) const;
    const std::vector<Application>& applications() const;
    const Application* findApplication(std::int32_t processIdentifier) const;
    // The live record of a window handle, with `parts` read if they were stale; null when gone
    // or not a managed window.
    const X11WindowRecord* live(WindowElement window, Freshness freshness = Freshness::recent,
                                std::uint32_t parts = 0) const;
    // Points and root pixels: the primary monitor as last read and the desktop's scale.
    X11PointSpace pointSpace(Freshness freshness = Freshness::recent) const;
    std::optional<X11Rect> outerFrame(WindowElement window) const;
    void checkActivation();
    std::optional<std::int32_t> activePid() const;

    X11Connection& connection_;
    Options options_;
    std::unique_ptr<X11WindowMirror> mirror_;
    std::unique_ptr<X11FrameWriter> writer_;
    mutable X11DesktopEntries desktopEntries_;
    int activeListenerId_ = 0;

    mutable std::chrono::steady_clock::time_point lastRefresh_;
    mutable std::vector<X11Monitor> monitors_;
    mutable std::chrono::steady_clock::time_point monitorsRead_;
    mutable std::vector<Application> applications_;
    mutable std::uint64_t applicationsVersion_ = ~std::uint64_t{0};
    mutable std::optional<CGPoint> lastPointer_;

    ActivationHandler activationHandler_;
    bool activationCheckQueued_ = false;
    std::optional<std::int32_t> lastActivePid_;
};

} // namespace tilmora
