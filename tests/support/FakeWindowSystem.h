// A window system held in memory, scripted by each test: screens, pointer, applications and
// their windows. Windows behave like real ones: a write is taken exactly, limited by a minimum or
// maximum size, refused with a status, or meets a window that has closed; raising a window
// brings it to the front of the on-screen list. Every raise, write and settle is recorded.
#pragma once

#include "platform/WindowRole.h"
#include "platform/WindowSystem.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace tilmora {

class FakeWindowSystem final : public WindowSystem {
public:
    // One window: how it answers (set by the test, also between calls) and what happened to it.
    struct Window {
        std::int32_t processIdentifier = 0;
        CGRect frame;
        std::optional<QString> title = QString();
        std::optional<QString> role = WindowRole::window;
        std::optional<QString> subrole = WindowSubrole::standardWindow;
        bool isPositionSettable = true;
        bool isSizeSettable = true;
        // Size writes are clamped into these, as an application with size limits or a terminal
        // does; a zero maximum component does not limit.
        std::optional<CGSize> minimumSize{};
        std::optional<CGSize> maximumSize{};
        // Writes answered with this status and not taken; 0 makes a write accepted but ignored.
        std::optional<std::int32_t> positionWriteRefusal{};
        std::optional<std::int32_t> sizeWriteRefusal{};
        // The window answers this many attribute reads and then closes; 0 closes it at the first
        // read, while settability and raise before it still work.
        std::optional<int> closesAfterReads{};
        // Size writes take effect only once late answers are waited for, as under a window
        // manager that is busy until after the passes.
        bool answersLate = false;
        std::optional<CGSize> lateSize{};
        std::int32_t layer = 0;
        bool isClosed = false;
        int readCount = 0;
    };

    enum class Call { raise, setPosition, setSize, settle };

    std::vector<ScreenDescription> screens() const override { return screens_; }
    CGPoint pointerLocation() const override { return pointer_; }
    bool isTrusted() const override { return trusted_; }
    bool requestTrust() override;
    std::vector<RunningApplication> runningApplications() const override { return applications_; }
    std::optional<RunningApplication> frontmostApplication() const override;
    std::int32_t ownProcessIdentifier() const override { return 999; }
    std::optional<QString> ownBundleIdentifier() const override {
        return QStringLiteral("org.tilmora.Tilmora");
    }
    void setActivationHandler(ActivationHandler handler) override;
    std::vector<WindowElement> windows(std::int32_t processIdentifier) const override;
    std::optional<WindowElement> focusedWindow(std::int32_t processIdentifier) const override;
    std::optional<QString> role(WindowElement w) const override { return read(w, &Window::role); }
    std::optional<QString> subrole(WindowElement w) const override {
        return read(w, &Window::subrole);
    }
    std::optional<QString> title(WindowElement w) const override { return read(w, &Window::title); }
    std::optional<CGPoint> position(WindowElement w) const override;
    std::optional<CGSize> size(WindowElement w) const override;
    bool isPositionSettable(WindowElement w) const override {
        return live(w) && live(w)->isPositionSettable;
    }
    bool isSizeSettable(WindowElement w) const override {
        return live(w) && live(w)->isSizeSettable;
    }
    void raise(WindowElement window) override;
    std::int32_t setPosition(WindowElement window, CGPoint position) override;
    std::int32_t setSize(WindowElement window, CGSize size) override;
    void settle(const std::vector<WindowElement>& windows,
                std::chrono::milliseconds maximum) override;
    bool awaitLateAnswers(const std::vector<WindowElement>& windows,
                          std::chrono::milliseconds maximum) override;
    std::vector<OnScreenWindow> onScreenWindows() const override;

    void setScreens(std::vector<ScreenDescription> screens) { screens_ = std::move(screens); }
    void setPointerLocation(CGPoint location) { pointer_ = location; }
    void setTrusted(bool trusted) { trusted_ = trusted; }
    // How often access was asked for; the user never grants it.
    int promptsShown() const { return promptsShown_; }

    // A regular, running application.
    void addApplication(std::int32_t pid, std::optional<QString> bundleIdentifier,
                        std::optional<QString> localizedName);
    RunningApplication& applicationState(std::int32_t pid);
    // Gone from the list; its windows close.
    void removeApplication(std::int32_t pid);
    void setFrontmostApplication(std::optional<std::int32_t> pid) { frontmost_ = pid; }
    // Makes the application frontmost and reports its activation.
    void activate(std::int32_t pid);

    // A window in front of all others, appended to its application's windows.
    WindowElement addWindow(std::int32_t pid, CGRect frame,
                            std::optional<QString> title = QString());
    WindowElement addWindow(const Window& window);
    Window& window(WindowElement element) { return windows_.at(element.value); }
    void close(WindowElement element) { window(element).isClosed = true; }
    // Without this, an application's focused window is its front-most open one; absent makes
    // the application answer that it has none.
    void setFocusedWindow(std::int32_t pid, std::optional<WindowElement> element);
    // Answers onScreenWindows() with this list instead of deriving it from the windows.
    void setOnScreenWindows(std::vector<OnScreenWindow> windows) {
        scriptedOnScreen_ = std::move(windows);
    }

    // Every raise, write and settle in call order.
    const std::vector<Call>& calls() const { return calls_; }
    void clearCalls() { calls_.clear(); }

private:
    // The window while it is open, else null.
    Window* live(WindowElement element) const;
    // Counts one attribute read; null once the window has closed or used up its reads.
    const Window* answering(WindowElement element) const;
    std::optional<QString> read(WindowElement w, std::optional<QString> Window::*field) const {
        const Window* window = answering(w);
        return window ? window->*field : std::nullopt;
    }
    std::int32_t write(WindowElement element, Call call,
                       std::optional<std::int32_t> Window::*refusal,
                       const std::function<void(Window&)>& apply);

    std::vector<ScreenDescription> screens_;
    CGPoint pointer_;
    bool trusted_ = true;
    int promptsShown_ = 0;
    std::vector<RunningApplication> applications_;
    std::optional<std::int32_t> frontmost_;
    ActivationHandler activationHandler_;
    // Keyed by element value, which grows with creation, so iteration is creation order. Mutable
    // because reads count against a window's budget.
    mutable std::map<std::uint64_t, Window> windows_;
    std::uint64_t nextElement_ = 1;
    std::map<std::int32_t, std::optional<WindowElement>> focused_;
    std::vector<WindowElement> stacking_; // front-most first
    std::optional<std::vector<OnScreenWindow>> scriptedOnScreen_;
    std::vector<Call> calls_;
};

} // namespace tilmora
