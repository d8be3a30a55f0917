#include "x11/support/X11TestDesktop.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <xcb/xtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tilmora::test {

namespace {

// Queued work of the code under test (activation reports) needs a Qt application.
void ensureQtApplication() {
    if (!QCoreApplication::instance()) {
        static int argc = 1;
        static char name[] = "tilmora-x11-tests";
        static char* argv[] = {name, nullptr};
        new QCoreApplication(argc, argv);
    }
}

const char* openboxConfiguration = R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy></placement>
  <desktops><number>2</number></desktops>
  <margins><top>0</top><bottom>0</bottom><left>0</left><right>0</right></margins>
  <keyboard></keyboard>
  <mouse></mouse>
</openbox_config>
)";

const char* icewmPreferences = "ShowTaskBar=0\nTaskBarAutoHide=0\n";
// One workspace and no toolbar, so that nothing reserves space on the test screen.
const char* fluxboxInit = "session.screen0.toolbar.visible: false\n"
                          "session.screen0.workspaces: 1\n";

bool writeFile(const QString& path, const char* contents) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) >= 0;
}

} // namespace

std::string testClientPath() {
    return TILMORA_X11_TEST_CLIENT;
}

X11TestDesktop::X11TestDesktop(const Options& options) {
    ensureQtApplication();
    if (!scratch_.isValid() || !startServer(options.screenSize)) {
        return;
    }
    for (const Monitor& monitor : options.monitors) {
        if (!setMonitor(monitor)) {
            return;
        }
    }
    ready_ = startWindowManager(options.windowManager);
}

X11TestDesktop::~X11TestDesktop() {
    // Clients first, then the manager, then the server: each by its own pid.
    clients_.clear();
    windowManager_.stop();
    if (observer_) {
        xcb_disconnect(observer_);
    }
    server_.stop();
}

bool X11TestDesktop::startServer(const std::string& screenSize) {
    int pipeEnds[2];
    if (::pipe(pipeEnds) != 0) {
        return false;
    }
    X11TestProcess::Options options;
    // -displayfd lets the server pick a free display itself, so parallel tests never collide.
    options.arguments = {"Xvfb",     "-displayfd", std::to_string(pipeEnds[1]),
                         "-screen",  "0",          screenSize + "x24",
                         "-noreset", "-nolisten",  "tcp"};
    options.inheritedDescriptor = pipeEnds[1];
    options.outputFile = scratch_.filePath(QStringLiteral("xvfb.log")).toStdString();
    server_ = X11TestProcess(options);
    ::close(pipeEnds[1]);

    // The server writes its display number once it is ready, or exits and closes the pipe.
    FILE* ready = ::fdopen(pipeEnds[0], "r");
    char number[16] = {};
    const bool started =
        ready && std::fgets(number, sizeof number, ready) && std::strchr(number, '\n') != nullptr;
    if (ready) {
        std::fclose(ready);
    }
    if (!started) {
        return false;
    }
    display_ = ":" + std::string(number, std::strcspn(number, "\n"));
    observer_ = xcb_connect(display_.c_str(), nullptr);
    if (xcb_connection_has_error(observer_) != 0) {
        return false;
    }
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(observer_, root(), XCB_CW_EVENT_MASK, &mask);
    xcb_flush(observer_);
    return true;
}

bool X11TestDesktop::replaceWindowManager(WindowManager manager) {
    const std::vector<xcb_window_t> clients = clientList();
    X11TestProcess previous = std::move(windowManager_);
    if (!startWindowManager(manager, true) ||
        // The previous manager exits once it has given every window back.
        !waitUntil([&] { return !previous.isRunning(); })) {
        return false;
    }
    return waitUntil([&] {
        const std::vector<xcb_window_t> listed = clientList();
        return std::all_of(clients.begin(), clients.end(), [&](xcb_window_t window) {
            return std::find(listed.begin(), listed.end(), window) != listed.end() &&
                   !cardinals(window, "_NET_FRAME_EXTENTS").empty();
        });
    });
}

bool X11TestDesktop::killWindowManager() {
    const auto check = windowManagerCheck();
    if (!check) {
        return false;
    }
    xcb_kill_client(observer_, *check);
    xcb_flush(observer_);
    return waitUntil([&] { return !windowManagerCheck(); });
}

std::optional<xcb_window_t> X11TestDesktop::windowManagerCheck() const {
    const auto check = cardinals(root(), "_NET_SUPPORTING_WM_CHECK");
    if (check.empty() || cardinals(check.front(), "_NET_SUPPORTING_WM_CHECK") != check ||
        cardinals(root(), "_NET_SUPPORTED").empty()) {
        return std::nullopt;
    }
    return check.front();
}

bool X11TestDesktop::startWindowManager(WindowManager manager, bool replacing) {
    if (manager == WindowManager::none) {
        return true;
    }
    const std::optional<xcb_window_t> previousCheck = windowManagerCheck();
    X11TestProcess::Options options;
    const std::string home = scratch_.path().toStdString();
    options.environment = {{"DISPLAY", display_},
                           {"HOME", home},
                           {"XDG_CONFIG_HOME", home + "/config"},
                           {"XDG_CACHE_HOME", home + "/cache"}};
    // One log per manager started, so that a replacement keeps what the previous one wrote.
    static int started = 0;
    options.outputFile =
        scratch_.filePath(QStringLiteral("wm-%1.log").arg(++started)).toStdString();
    if (manager == WindowManager::openboxDefaults) {
        // Without --config-file and with an empty XDG_CONFIG_HOME, openbox reads the file it
        // ships with from the system configuration directories.
        options.environment["XDG_CONFIG_DIRS"] = "/etc/xdg";
        options.arguments = {"openbox", "--sm-disable"};
    } else if (manager == WindowManager::openbox) {
        const QString config = scratch_.filePath(QStringLiteral("openbox.xml"));
        if (!writeFile(config, openboxConfiguration)) {
            return false;
        }
        options.arguments = {"openbox", "--sm-disable", "--config-file", config.toStdString()};
    } else if (manager == WindowManager::xfwm4) {
        // Its settings daemon is started on demand over a session bus of its own; no
        // compositor, so that nothing but the frame surrounds a window.
        options.environment["NO_AT_BRIDGE"] = "1";
        options.arguments = {"dbus-run-session", "--", "xfwm4", "--compositor=off",
                             "--sm-client-disable"};
    } else if (manager == WindowManager::fluxbox) {
        const QString init = scratch_.filePath(QStringLiteral("fluxbox-init"));
        if (!writeFile(init, fluxboxInit)) {
            return false;
        }
        options.arguments = {"fluxbox", "-rc", init.toStdString()};
    } else {
        const QString directory = scratch_.filePath(QStringLiteral("icewm"));
        QDir().mkpath(directory);
        if (!writeFile(directory + QStringLiteral("/preferences"), icewmPreferences)) {
            return false;
        }
        options.environment["ICEWM_PRIVCFG"] = directory.toStdString();
        options.arguments = {"icewm"};
    }
    if (replacing) {
        options.arguments.push_back("--replace");
    }
    windowManager_ = X11TestProcess(options);
    if (!waitUntil([&] {
            const auto check = windowManagerCheck();
            return check && check != previousCheck;
        })) {
        return false;
    }
    // A manager announces itself before its event loop runs, and a window mapped in between
    // can stay unmanaged: a probe window that gets managed shows the loop is running.
    const xcb_window_t probe = xcb_generate_id(observer_);
    xcb_create_window(observer_, XCB_COPY_FROM_PARENT, probe, root(), 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto listed = [&] {
        const auto clients = clientList();
        return std::find(clients.begin(), clients.end(), probe) != clients.end();
    };
    // A map request that arrives too early is lost, so the probe is mapped again until the
    // manager takes it.
    bool managed = false;
    for (int attempt = 0; attempt < 40 && !managed; ++attempt) {
        xcb_unmap_window(observer_, probe);
        xcb_map_window(observer_, probe);
        xcb_flush(observer_);
        managed = waitUntil(listed, std::chrono::milliseconds(250));
    }
    if (!managed) {
        return false;
    }
    xcb_destroy_window(observer_, probe);
    xcb_flush(observer_);
    return waitUntil([&] { return !listed(); });
}

void X11TestDesktop::fakeInput(std::uint8_t type, std::uint8_t detail, std::int16_t x,
                               std::int16_t y) {
    xcb_test_fake_input(observer_, type, detail, XCB_CURRENT_TIME,
                        type == XCB_MOTION_NOTIFY ? root() : xcb_window_t{XCB_WINDOW_NONE}, x, y,
                        0);
    xcb_flush(observer_);
}

void X11TestDesktop::pressKeys(std::initializer_list<std::uint8_t> keys) {
    for (const std::uint8_t key : keys) {
        fakeKey(key, true);
    }
    for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) {
        fakeKey(*key, false);
    }
}

xcb_window_t X11TestDesktop::root() const {
    return xcb_setup_roots_iterator(xcb_get_setup(observer_)).data->root;
}

xcb_atom_t X11TestDesktop::atom(const char* name) const {
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        observer_,
        xcb_intern_atom(observer_, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return result;
}

std::vector<std::uint32_t> X11TestDesktop::cardinals(xcb_window_t window,
                                                     const char* property) const {
    xcb_get_property_reply_t* reply = xcb_get_property_reply(
        observer_, xcb_get_property(observer_, 0, window, atom(property), XCB_ATOM_ANY, 0, 65536),
        nullptr);
    std::vector<std::uint32_t> result;
    if (reply && reply->format == 32) {
        const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
        result.assign(values, values + xcb_get_property_value_length(reply) / 4);
    }
    std::free(reply);
    return result;
}

std::vector<xcb_window_t> X11TestDesktop::clientList() const {
    return cardinals(root(), "_NET_CLIENT_LIST");
}

std::vector<xcb_window_t> X11TestDesktop::windowsOf(pid_t pid) const {
    std::vector<xcb_window_t> windows;
    for (const xcb_window_t window : clientList()) {
        // Managed means listed and framed: the manager has published the extents.
        if (cardinals(window, "_NET_WM_PID") == std::vector{static_cast<std::uint32_t>(pid)} &&
            !cardinals(window, "_NET_FRAME_EXTENTS").empty()) {
            windows.push_back(window);
        }
    }
    return windows;
}

std::optional<std::array<std::int32_t, 4>> X11TestDesktop::outerFrame(xcb_window_t window) const {
    xcb_get_geometry_reply_t* geometry =
        xcb_get_geometry_reply(observer_, xcb_get_geometry(observer_, window), nullptr);
    xcb_translate_coordinates_reply_t* origin = xcb_translate_coordinates_reply(
        observer_, xcb_translate_coordinates(observer_, window, root(), 0, 0), nullptr);
    std::optional<std::array<std::int32_t, 4>> client;
    if (geometry && origin) {
        client = {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
    }
    std::free(geometry);
    std::free(origin);
    if (!client) {
        return std::nullopt;
    }
    auto frame = cardinals(window, "_NET_FRAME_EXTENTS");
    auto shadow = cardinals(window, "_GTK_FRAME_EXTENTS");
    frame.resize(4, 0);
    shadow.resize(4, 0);
    // Left, right, top, bottom: what the frame adds less what the shadow takes away.
    std::array<std::int32_t, 4> side{};
    for (std::size_t i = 0; i < 4; ++i) {
        side[i] = static_cast<std::int32_t>(frame[i]) - static_cast<std::int32_t>(shadow[i]);
    }
    const auto& c = *client;
    return std::array<std::int32_t, 4>{c[0] - side[0], c[1] - side[2], c[2] + side[0] + side[1],
                                       c[3] + side[2] + side[3]};
}

bool X11TestDesktop::waitUntil(const std::function<bool()>& condition,
                               std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (true) {
        QCoreApplication::processEvents();
        while (xcb_generic_event_t* event = xcb_poll_for_event(observer_)) {
            std::free(event);
        }
        if (condition()) {
            return true;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                              deadline - std::chrono::steady_clock::now())
                              .count();
        if (left <= 0) {
            return false;
        }
        // Woken by the next X event; the short bound catches changes that the observer is
        // not told about (another process's state, queued Qt work).
        pollfd descriptor{xcb_get_file_descriptor(observer_), POLLIN, 0};
        ::poll(&descriptor, 1, static_cast<int>(std::min<long long>(left, 10)));
    }
}

X11TestDesktop::Client X11TestDesktop::startManagedClient(X11TestProcess::Options options,
                                                          int windowCount) {
    options.environment["DISPLAY"] = display_;
    options.outputFile = scratch_.filePath(QStringLiteral("clients.log")).toStdString();
    clients_.emplace_back(options);
    Client client;
    client.pid = clients_.back().pid();
    if (!waitUntil([&] {
            client.windows = windowsOf(client.pid);
            return static_cast<int>(client.windows.size()) >= windowCount;
        })) {
        client.windows.clear();
    }
    return client;
}

X11TestDesktop::Client X11TestDesktop::startTestClient(const std::vector<std::string>& arguments,
                                                       int windowCount) {
    X11TestProcess::Options options;
    options.arguments = {testClientPath(), "--windows", std::to_string(windowCount)};
    options.arguments.insert(options.arguments.end(), arguments.begin(), arguments.end());
    return startManagedClient(options, windowCount);
}

bool X11TestDesktop::startPanel(const std::string& strut, const std::string& geometry) {
    return !startTestClient(
                {"--type", "DOCK", "--strut", strut, "--geometry", geometry, "--title", "Panel"})
                .windows.empty();
}

X11TestDesktop::Client X11TestDesktop::startXterm(const std::vector<std::string>& arguments) {
    X11TestProcess::Options options;
    options.arguments = {"xterm"};
    options.arguments.insert(options.arguments.end(), arguments.begin(), arguments.end());
    options.arguments.insert(options.arguments.end(), {"-e", "sleep", "600"});
    return startManagedClient(options, 1);
}

void X11TestDesktop::stopClient(pid_t pid) {
    for (X11TestProcess& process : clients_) {
        if (process.pid() == pid) {
            process.stop();
        }
    }
    waitUntil([&] { return windowsOf(pid).empty(); });
}

std::optional<int> X11TestDesktop::runTool(std::vector<std::string> arguments) {
    return X11TestProcess::run(arguments, std::chrono::seconds(10), {{"DISPLAY", display_}});
}

bool X11TestDesktop::setMonitor(const Monitor& monitor) {
    return runTool({"xrandr", "--setmonitor", monitor.name, monitor.geometry, monitor.output}) == 0;
}

void X11TestDesktop::setXftDpi(int dpi) {
    const std::string resources = "Xft.dpi:\t" + std::to_string(dpi) + "\n";
    xcb_change_property(observer_, XCB_PROP_MODE_REPLACE, root(), XCB_ATOM_RESOURCE_MANAGER,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(resources.size()),
                        resources.data());
    // Done once the server has answered a request sent after it.
    std::free(xcb_get_input_focus_reply(observer_, xcb_get_input_focus(observer_), nullptr));
}

bool X11TestDesktop::deleteMonitor(const std::string& name) {
    return runTool({"xrandr", "--delmonitor", name}) == 0;
}

} // namespace tilmora::test
