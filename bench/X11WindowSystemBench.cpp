// The X11 backend against private X servers: enumeration of 200 windows of 20 applications
// under openbox (with a warm mirror, and the first enumeration of a fresh connection), and under
// each of the nine window managers the placement of a cooperative window from request to
// verified frame, measured beside a bare xcb client that sends the same _NET_MOVERESIZE_WINDOW
// and waits for the ConfigureNotify with the new size: the manager's own answer time.
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WindowSystem.h"
#include "windows/WindowManager.h"
#include "x11/support/X11TestDesktop.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <map>

namespace tilmora {
namespace {

using test::X11TestDesktop;
using WM = X11TestDesktop::WindowManager;
using Clock = std::chrono::steady_clock;

constexpr int applicationCount = 20;
constexpr int windowsPerApplication = 10;
constexpr int placementCount = 100;

// One desktop at a time: the one the running benchmark asked for, the previous one stopped.
struct DesktopSlot {
    std::string key;
    std::unique_ptr<X11TestDesktop> desktop;
    // The window placed by the placement benchmarks.
    xcb_window_t target = XCB_WINDOW_NONE;
};

DesktopSlot& slot() {
    static DesktopSlot current;
    return current;
}

X11TestDesktop& crowdedDesktop() {
    DesktopSlot& s = slot();
    if (s.key != "crowded") {
        s.desktop.reset();
        s.key = "crowded";
        s.desktop =
            std::make_unique<X11TestDesktop>(X11TestDesktop::Options{WM::openbox, "1920x1080", {}});
        for (int i = 0; i < applicationCount && s.desktop->isReady(); ++i) {
            const std::string name = "app" + std::to_string(i);
            s.desktop->startTestClient({"--class", name + "," + name, "--title", name, "--geometry",
                                        "400x300+" + std::to_string(20 * i) + "+40"},
                                       windowsPerApplication);
        }
    }
    return *s.desktop;
}

bool desktopManager(WM manager) {
    return manager == WM::kwin || manager == WM::mutter || manager == WM::muffin ||
           manager == WM::marco || manager == WM::metacity;
}

// The desktop of `manager` with one window to place; null (and the benchmark skipped) when it
// cannot run here.
DesktopSlot* placementDesktop(WM manager, benchmark::State& state) {
    const auto server = desktopManager(manager) ? X11TestDesktop::Server::xorgTwoOutputs
                                                : X11TestDesktop::Server::xvfb;
    if (const auto reason = X11TestDesktop::unavailable(manager, server)) {
        state.SkipWithError(reason->c_str());
        return nullptr;
    }
    DesktopSlot& s = slot();
    const std::string key = "placement " + X11TestDesktop::name(manager);
    if (s.key != key) {
        s.desktop.reset();
        s.key = key;
        s.desktop = std::make_unique<X11TestDesktop>(
            X11TestDesktop::Options{manager, "1920x1080", {}, server});
        const auto client =
            s.desktop->isReady()
                ? s.desktop->startTestClient({"--title", "Target", "--geometry", "400x300+0+0"})
                : X11TestDesktop::Client{};
        s.target = client.windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : client.windows.front();
    }
    if (s.target == XCB_WINDOW_NONE) {
        state.SkipWithError(("the desktop under " + X11TestDesktop::name(manager) +
                             " did not come up: " + s.desktop->failure())
                                .c_str());
        return nullptr;
    }
    return &s;
}

// The left half and the top right quarter of the primary monitor, in turn.
std::array<CGRect, 2> placementFrames(X11WindowSystem& system) {
    const auto monitors = system.monitors();
    const X11Rect m = monitors.empty() ? X11Rect{0, 0, 1920, 1080} : monitors.front().geometry;
    const double halfWidth = static_cast<double>(m.width / 2);
    return {CGRect(m.x, m.y, halfWidth, m.height),
            CGRect(m.x + halfWidth, m.y, halfWidth, static_cast<double>(m.height / 2))};
}

double median(std::vector<double> samples) {
    if (samples.empty()) {
        return 0;
    }
    std::sort(samples.begin(), samples.end());
    const std::size_t middle = samples.size() / 2;
    return samples.size() % 2 ? samples[middle] : (samples[middle - 1] + samples[middle]) / 2;
}

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The bare round trip of each manager, for the ratio of the placement that follows it.
std::map<WM, double>& bareMedians() {
    static std::map<WM, double> medians;
    return medians;
}

void AllWindowsWarm(benchmark::State& state) {
    X11Connection connection(QByteArray::fromStdString(crowdedDesktop().display()));
    X11WindowSystem system(connection);
    WindowManager manager(system, system.ownBundleIdentifier());
    std::size_t count = manager.allWindows().size();
    for (auto _ : state) {
        count = manager.allWindows().size();
        benchmark::DoNotOptimize(count);
    }
    state.counters["windows"] = static_cast<double>(count);
}
BENCHMARK(AllWindowsWarm)->Unit(benchmark::kMicrosecond);

void AllWindowsCold(benchmark::State& state) {
    std::size_t count = 0;
    for (auto _ : state) {
        X11Connection connection(QByteArray::fromStdString(crowdedDesktop().display()));
        X11WindowSystem system(connection);
        WindowManager manager(system, system.ownBundleIdentifier());
        count = manager.allWindows().size();
        benchmark::DoNotOptimize(count);
    }
    state.counters["windows"] = static_cast<double>(count);
}
BENCHMARK(AllWindowsCold)->Unit(benchmark::kMillisecond);

// A client of its own, with nothing but xcb: the request, then the ConfigureNotify that shows
// the new client size.
void BareMoveResize(benchmark::State& state, WM manager) {
    DesktopSlot* s = placementDesktop(manager, state);
    if (!s) {
        return;
    }
    xcb_connection_t* c = xcb_connect(s->desktop->display().c_str(), nullptr);
    X11Connection monitorsConnection(QByteArray::fromStdString(s->desktop->display()));
    X11WindowSystem monitorsSystem(monitorsConnection);
    const auto frames = placementFrames(monitorsSystem);
    const xcb_window_t window = s->target;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    const auto atom = [&](const char* name) {
        auto* reply = xcb_intern_atom_reply(
            c, xcb_intern_atom(c, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr);
        const xcb_atom_t result = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return result;
    };
    const xcb_atom_t moveResize = atom("_NET_MOVERESIZE_WINDOW");
    auto extents = s->desktop->cardinals(window, "_NET_FRAME_EXTENTS");
    extents.resize(4, 0);
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(c);

    std::vector<double> samples;
    int placements = 0;
    for (auto _ : state) {
        const CGRect& frame = frames[placements++ % 2];
        const auto width = static_cast<std::uint32_t>(frame.width()) - extents[0] - extents[1];
        const auto height = static_cast<std::uint32_t>(frame.height()) - extents[2] - extents[3];
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = moveResize;
        message.data.data32[0] = XCB_GRAVITY_NORTH_WEST | 0xFU << 8 | 2U << 12;
        message.data.data32[1] = static_cast<std::uint32_t>(frame.minX());
        message.data.data32[2] = static_cast<std::uint32_t>(frame.minY());
        message.data.data32[3] = width;
        message.data.data32[4] = height;
        const auto start = Clock::now();
        xcb_send_event(c, 0, root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(c);
        bool answered = false;
        while (!answered) {
            xcb_generic_event_t* event = xcb_wait_for_event(c);
            if (!event) {
                state.SkipWithError("the connection to the X server was lost");
                break;
            }
            const auto* configure = reinterpret_cast<const xcb_configure_notify_event_t*>(event);
            answered = (event->response_type & 0x7F) == XCB_CONFIGURE_NOTIFY &&
                       configure->window == window && configure->width == width &&
                       configure->height == height;
            std::free(event);
        }
        samples.push_back(millisecondsSince(start));
    }
    xcb_disconnect(c);
    bareMedians()[manager] = median(samples);
    state.counters["median_ms"] = median(samples);
}

// Our placement, request to verified frame: the frame written, the manager's answer awaited and
// the frame read back from the server.
void CooperativePlacement(benchmark::State& state, WM manager) {
    DesktopSlot* s = placementDesktop(manager, state);
    if (!s) {
        return;
    }
    X11Connection connection(QByteArray::fromStdString(s->desktop->display()));
    X11WindowSystem system(connection);
    WindowManager windows(system, system.ownBundleIdentifier());
    const WindowElement window{s->target};
    const auto frames = placementFrames(system);
    std::vector<double> samples;
    int exact = 0;
    int placements = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        const auto result = windows.setFrame(frames[placements++ % 2], window);
        const double time = millisecondsSince(start);
        if (result && result->isExact) {
            ++exact;
            samples.push_back(time);
        }
    }
    state.counters["exact"] = exact;
    state.counters["attempted"] = placements;
    state.counters["median_ms"] = median(samples);
    if (const auto bare = bareMedians().find(manager);
        bare != bareMedians().end() && bare->second > 0) {
        state.counters["x_bare"] = median(samples) / bare->second;
    }
}

// Each manager's bare round trip, then the placement on the same desktop.
const bool registered = [] {
    for (const WM manager : {WM::openbox, WM::icewm, WM::fluxbox, WM::xfwm4, WM::kwin, WM::mutter,
                             WM::muffin, WM::marco, WM::metacity}) {
        const std::string name = X11TestDesktop::name(manager);
        benchmark::RegisterBenchmark(("BareMoveResize/" + name).c_str(), BareMoveResize, manager)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(placementCount);
        benchmark::RegisterBenchmark(("CooperativePlacement/" + name).c_str(), CooperativePlacement,
                                     manager)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(placementCount);
    }
    return true;
}();

} // namespace
} // namespace tilmora
