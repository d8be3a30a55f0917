// A private X desktop for one test: its own X server on a free display (Xvfb, or Xorg's dummy
// driver with two outputs), monitors set with xrandr, a window manager with a test configuration
// (the big desktops' managers each in a D-Bus session of their own), and clients (xterm and the
// project's own test client). Waits are for conditions seen through an observer connection, never
// fixed sleeps, and everything started is stopped by its pid when the desktop goes away.
#pragma once

#include "x11/support/X11TestProcess.h"

#include <QTemporaryDir>

#include <xcb/xcb.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tilmora::test {

// X key codes of the keys tests press (evdev codes + 8).
namespace keycode {
constexpr std::uint8_t control = 37, alt = 64, super = 133, capsLock = 66, numLock = 77;
constexpr std::uint8_t left = 113, right = 114;
} // namespace keycode

class X11TestDesktop {
public:
    // openboxDefaults is openbox with the configuration it ships with: its own key bindings
    // (control+alt+arrows, ...) and its mouse bindings (title-bar and alt drags move windows).
    enum class WindowManager {
        none,
        openbox,
        openboxDefaults,
        icewm,
        fluxbox,
        xfwm4,
        // The managers of KDE, GNOME, Cinnamon, MATE and GNOME Flashback, run as those desktops
        // run them (compositing where they composite), with their default settings.
        kwin,
        mutter,
        muffin,
        marco,
        metacity,
    };

    // Xvfb, whose monitors come from `xrandr --setmonitor`, or Xorg with the dummy driver and
    // two real outputs, DUMMY0 (1440 x 900, primary) and DUMMY1 (1920 x 1080) to its right: the
    // big desktops' managers lay outputs out themselves and ignore monitors without one.
    enum class Server { xvfb, xorgTwoOutputs };

    // One `xrandr --setmonitor` call: name ("*" marks the primary), geometry, output.
    struct Monitor {
        std::string name;
        std::string geometry;
        std::string output = "none";
    };

    struct Options {
        WindowManager windowManager = WindowManager::openbox;
        std::string screenSize = "3360x1080";
        std::vector<Monitor> monitors;
        Server server = Server::xvfb;
    };

    struct Client {
        pid_t pid = 0;
        // Its managed windows, in the order the manager listed them.
        std::vector<xcb_window_t> windows;
    };

    static constexpr std::chrono::milliseconds defaultTimeout{10000};

    explicit X11TestDesktop(const Options& options);
    ~X11TestDesktop();

    // Why a desktop with this manager and server cannot run here (a program or driver is not
    // installed); nothing when it can.
    static std::optional<std::string> unavailable(WindowManager manager, Server server);
    // The manager's name as tests print it: "openbox", "kwin", "mutter", ...
    static std::string name(WindowManager manager);

    // False when the server or the window manager did not come up; `failure()` says which.
    bool isReady() const { return ready_; }
    const std::string& failure() const { return failure_; }
    const std::string& display() const { return display_; }
    pid_t serverPid() const { return server_.pid(); }
    xcb_connection_t* observer() const { return observer_; }
    xcb_window_t root() const;

    // Checks `condition` whenever an X event or a Qt event may have changed it.
    bool waitUntil(const std::function<bool()>& condition,
                   std::chrono::milliseconds timeout = defaultTimeout);

    // Starts the test client (see TestClientMain.cpp for its arguments) and waits until the
    // manager manages `windowCount` of its windows.
    Client startTestClient(const std::vector<std::string>& arguments, int windowCount = 1);
    Client startXterm(const std::vector<std::string>& arguments);
    // A panel: a dock window at `geometry` reserving `strut` (_NET_WM_STRUT_PARTIAL, 12
    // numbers). False when it was not managed.
    bool startPanel(const std::string& strut, const std::string& geometry);
    // Stops a client and waits until its windows have left the client list.
    void stopClient(pid_t pid);

    // Starts `manager` with --replace, as a user switching managers does: the running one hands
    // the screen over and exits, the new one frames every window. True once it has.
    bool replaceWindowManager(WindowManager manager);
    // Kills the manager's connection, as xkill does: it dies as on a crash, and the server
    // hands its windows back to the root. True once no manager announces itself.
    bool killWindowManager();

    // Asks the manager to maximize the window, as a double click on its title does, and waits
    // until the window is maximized.
    bool maximize(xcb_window_t window);
    // Asks the manager to activate the window, as a click on it does, and waits until it is
    // the active window.
    bool activate(xcb_window_t window);

    bool setMonitor(const Monitor& monitor);
    // Replaces the root's RESOURCE_MANAGER with one line, "Xft.dpi: <dpi>", as xrdb would.
    void setXftDpi(int dpi);
    bool deleteMonitor(const std::string& name);
    // Runs an X command-line tool against this display; its exit status.
    std::optional<int> runTool(std::vector<std::string> arguments);

    // Input through XTest, as a device sends it: motion moves the pointer to root coordinates
    // (raw motion events follow, unlike a warp), keys and buttons are pressed or released.
    void fakeKey(std::uint8_t keycode, bool press) {
        fakeInput(press ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode);
    }
    // Presses the keys in order and lets go of them in reverse, as a shortcut is typed.
    void pressKeys(std::initializer_list<std::uint8_t> keys);
    void fakeButton(std::uint8_t button, bool press) {
        fakeInput(press ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, button);
    }
    void fakeMotion(std::int16_t x, std::int16_t y) { fakeInput(XCB_MOTION_NOTIFY, 0, x, y); }

    std::vector<std::uint32_t> cardinals(xcb_window_t window, const char* property) const;
    // The outer visible frame: the client area grown by _NET_FRAME_EXTENTS and shrunk by
    // _GTK_FRAME_EXTENTS, as this connection sees them on the server.
    std::optional<std::array<std::int32_t, 4>> outerFrame(xcb_window_t window) const;

private:
    bool startServer(const Options& options);
    // Starts `arguments` with -displayfd and connects once the server reports its display.
    bool startDisplay(std::vector<std::string> arguments, const QString& log);
    // DUMMY0 at 1440 x 900 on the left, DUMMY1 at 1920 x 1080 on its right.
    bool layOutTwoOutputs();
    // With `replacing`, the manager takes over from the running one.
    bool startWindowManager(WindowManager manager, bool replacing = false);
    std::optional<xcb_window_t> windowManagerCheck() const;
    Client startManagedClient(X11TestProcess::Options options, int windowCount);
    std::vector<xcb_window_t> clientList() const;
    bool isViewable(xcb_window_t window) const;
    // The managed windows of a process, in the order the manager lists them.
    std::vector<xcb_window_t> windowsOf(pid_t pid) const;
    xcb_atom_t atom(const char* name) const;
    // Sends the manager a client message about `window`, as pagers and tools do.
    void askManager(xcb_window_t window, const char* type,
                    std::initializer_list<std::uint32_t> data);
    void fakeInput(std::uint8_t type, std::uint8_t detail, std::int16_t x = 0, std::int16_t y = 0);

    QTemporaryDir scratch_;
    X11TestProcess server_;
    X11TestProcess windowManager_;
    std::vector<X11TestProcess> clients_;
    std::string display_;
    xcb_connection_t* observer_ = nullptr;
    bool ready_ = false;
    std::string failure_;
};

// The path of the test client executable.
std::string testClientPath();

} // namespace tilmora::test
