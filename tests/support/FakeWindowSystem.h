// A window system held in memory, scripted by each test: screens, pointer, applications and
// their windows. Windows behave like real ones: a write is taken exactly, limited by a minimum or
// maximum size, refused with a status, or meets a window that has closed; raising a window
// brings it to the front of the on-screen list. Every raise, write and settle is recorded.
#pragma once

#include "platform/AXError.h"
#include "platform/WindowRole.h"
#include "platform/WindowSystem.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace tilmora {

class FakeWindowSystem final : public WindowSystem {
public:
    static constexpr std::int32_t defaultOwnProcessIdentifier = 999;

    // One window: how it answers (set by the test, also between calls) and what happened to it.
    struct Window {
        std::int32_t processIdentifier = 0;
        CGRect frame;
        std::optional<QString> title = QString();
        std::optional<QString> role = WindowRole::window;
        std::optional<QString> subrole = WindowSubrole::standardWindow;

        // Unreadable attributes read as absent; the window itself stays.
        bool isPositionReadable = true;
        bool isSizeReadable = true;
        bool isPositionSettable = true;
        bool isSizeSettable = true;

        // Size writes are clamped into these, as an application with size limits or a terminal
        // does; absent means unlimited. A zero component does not limit.
        std::optional<CGSize> minimumSize;
        std::optional<CGSize> maximumSize;
        // Writes answered with this status and not taken; 0 makes a write that is accepted but
        // ignored.
        std::optional<std::int32_t> positionWriteRefusal;
        std::optional<std::int32_t> sizeWriteRefusal;

        // The window answers this many attribute reads (or writes) and then closes: everything
        // after that fails. 0 closes it at the first read (or write); settability and raise
        // before it still work.
        std::optional<int> closesAfterReads;
        std::optional<int> closesAfterWrites;

        // In the on-screen list: the layer, and whether it is listed at all (a minimized window
        // is not).
        std::int32_t layer = 0;
        bool isOnScreen = true;

        bool isClosed = false;
        int readCount = 0;
        int writeCount = 0;
    };

    // One raise, write or settle, in call order.
    struct Call {
        enum class Kind { raise, setPosition, setSize, settle };

        Kind kind = Kind::raise;
        WindowElement window;
        CGPoint position;                       // setPosition
        CGSize size;                            // setSize
        std::chrono::milliseconds maximum{0};   // settle
        std::int32_t status = AXError::success; // raise and writes

        friend bool operator==(const Call&, const Call&) = default;
    };

    // --- WindowSystem

    std::vector<ScreenDescription> screens() const override;
    CGPoint pointerLocation() const override { return pointer_; }
    bool isTrusted() const override { return trusted_; }
    bool requestTrust() override;
    std::vector<RunningApplication> runningApplications() const override;
    std::optional<RunningApplication> frontmostApplication() const override;
    std::int32_t ownProcessIdentifier() const override { return ownProcessIdentifier_; }
    std::optional<QString> ownBundleIdentifier() const override { return ownBundleIdentifier_; }
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
    void settle(WindowElement window, std::chrono::milliseconds maximum) override;
    std::vector<OnScreenWindow> onScreenWindows() const override;

    // --- Screens, pointer, permission

    void setScreens(std::vector<ScreenDescription> screens);
    // Successive screens() calls answer these in turn; the last one stays.
    void setScreenSequence(std::vector<std::vector<ScreenDescription>> sequence);
    void setPointerLocation(CGPoint location) { pointer_ = location; }
    void setTrusted(bool trusted) { trusted_ = trusted; }
    // Whether the user grants access when asked.
    void setPromptGrantsTrust(bool grants) { promptGrantsTrust_ = grants; }
    // requestTrust() calls made without access, each of which asked the user.
    int promptsShown() const { return promptsShown_; }

    // --- Applications

    void setOwnProcessIdentifier(std::int32_t pid) { ownProcessIdentifier_ = pid; }
    void setOwnBundleIdentifier(std::optional<QString> id) { ownBundleIdentifier_ = std::move(id); }

    // Appended to the running applications (or replacing the one with the same pid).
    void addApplication(const RunningApplication& application);
    // A regular, running application.
    void addApplication(std::int32_t pid, std::optional<QString> bundleIdentifier,
                        std::optional<QString> localizedName);
    RunningApplication& applicationState(std::int32_t pid);
    // Still listed, but terminated; its windows close.
    void terminate(std::int32_t pid);
    // Gone from the list; its windows close.
    void removeApplication(std::int32_t pid);

    void setFrontmostApplication(std::optional<std::int32_t> pid) { frontmost_ = pid; }
    // Makes the application frontmost and reports its activation; false for an unknown pid.
    bool activate(std::int32_t pid);
    // Reports an activation of any record, known or not, without changing the frontmost one.
    void sendActivation(const RunningApplication& application);

    // --- Windows

    // A standard window, in front of all others. It is appended to its application's windows.
    WindowElement addWindow(std::int32_t pid, CGRect frame,
                            std::optional<QString> title = QString());
    WindowElement addWindow(const Window& window);
    // The window's script and state, changeable at any time.
    Window& window(WindowElement element);
    const Window& window(WindowElement element) const;
    void close(WindowElement element);
    // Without this, an application's focused window is its front-most open window, as the X11
    // implementation falls back to. A closed focused window falls back the same way; absent makes
    // the application answer that it has no focused window.
    void setFocusedWindow(std::int32_t pid, std::optional<WindowElement> element);
    // As if the user clicked it: front of the on-screen list, nothing recorded.
    void bringToFront(WindowElement element);

    // Answers onScreenWindows() with `windows` instead of deriving the list from the windows;
    // absent returns to the derived list.
    void setOnScreenWindows(std::optional<std::vector<OnScreenWindow>> windows);

    // Called after every settle() is recorded, to let a window change while the caller waits.
    void setSettleHook(std::function<void(WindowElement)> hook) { settleHook_ = std::move(hook); }

    // --- Records

    const std::vector<Call>& calls() const { return calls_; }
    std::vector<Call::Kind> callKinds() const;
    void clearCalls() { calls_.clear(); }

private:
    static Call makeCall(Call::Kind kind, WindowElement element);
    Window* find(WindowElement element) const;
    // Whether the window answers one more read or write, closing it when its budget is used up.
    static bool beginAccess(Window& window, int count, std::optional<int> limit);
    static void endAccess(Window& window, int& count, std::optional<int> limit);
    template <typename T, typename Read>
    std::optional<T> read(WindowElement element, Read readValue) const;
    std::int32_t write(Call call, const std::function<void(Window&)>& apply,
                       std::optional<std::int32_t> Window::*refusal);
    void closeWindowsOf(std::int32_t pid);

    // Mutable because reading a screen sequence consumes it.
    mutable std::vector<ScreenDescription> screens_;
    mutable std::deque<std::vector<ScreenDescription>> screenSequence_;
    CGPoint pointer_;
    bool trusted_ = true;
    bool promptGrantsTrust_ = false;
    int promptsShown_ = 0;

    std::int32_t ownProcessIdentifier_ = defaultOwnProcessIdentifier;
    std::optional<QString> ownBundleIdentifier_ = QStringLiteral("org.tilmora.Tilmora");
    std::vector<RunningApplication> applications_;
    std::optional<std::int32_t> frontmost_;
    ActivationHandler activationHandler_;

    // Keyed by element value, which grows with creation, so iteration is creation order. Mutable
    // because reads count against a window's budget.
    mutable std::map<std::uint64_t, Window> windows_;
    std::uint64_t nextElement_ = 1;
    std::map<std::int32_t, std::optional<WindowElement>> focused_;
    // Front-most first.
    std::vector<WindowElement> stacking_;
    std::optional<std::vector<OnScreenWindow>> scriptedOnScreen_;
    std::function<void(WindowElement)> settleHook_;
    std::vector<Call> calls_;
};

} // namespace tilmora
