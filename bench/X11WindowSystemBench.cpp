// The X11 backend against a private Xvfb with openbox and 200 windows of 20 applications:
// enumeration with a warm mirror, the first enumeration of a fresh connection, and one
// placement of a cooperative window from request to verified frame.
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WindowSystem.h"
#include "windows/WindowManager.h"
#include "x11/support/X11TestDesktop.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace tilmora {
namespace {

using test::X11TestDesktop;

constexpr int applicationCount = 20;
constexpr int windowsPerApplication = 10;

X11TestDesktop& desktop() {
    static X11TestDesktop* shared = [] {
        auto* d = new X11TestDesktop({X11TestDesktop::WindowManager::openbox, "1920x1080", {}});
        for (int i = 0; i < applicationCount && d->isReady(); ++i) {
            const std::string name = "app" + std::to_string(i);
            d->startTestClient({"--class", name + "," + name, "--title", name, "--geometry",
                                "400x300+" + std::to_string(20 * i) + "+40"},
                               windowsPerApplication);
        }
        // Stopped with the process: every child dies with it.
        return d;
    }();
    return *shared;
}

void AllWindowsWarm(benchmark::State& state) {
    X11Connection connection(QByteArray::fromStdString(desktop().display()));
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
        X11Connection connection(QByteArray::fromStdString(desktop().display()));
        X11WindowSystem system(connection);
        WindowManager manager(system, system.ownBundleIdentifier());
        count = manager.allWindows().size();
        benchmark::DoNotOptimize(count);
    }
    state.counters["windows"] = static_cast<double>(count);
}
BENCHMARK(AllWindowsCold)->Unit(benchmark::kMillisecond);

void CooperativePlacement(benchmark::State& state) {
    const auto client =
        desktop().startTestClient({"--title", "Target", "--geometry", "400x300+0+0"});
    X11Connection connection(QByteArray::fromStdString(desktop().display()));
    X11WindowSystem system(connection);
    WindowManager manager(system, system.ownBundleIdentifier());
    const WindowElement window{client.windows.at(0)};
    const CGRect frames[] = {{0, 0, 960, 1080}, {960, 0, 960, 540}};
    int exact = 0;
    int placements = 0;
    for (auto _ : state) {
        const auto result = manager.setFrame(frames[placements++ % 2], window);
        exact += result && result->isExact && result->attempts == 1 ? 1 : 0;
    }
    state.counters["exactInOnePass"] = static_cast<double>(exact) / placements;
}
BENCHMARK(CooperativePlacement)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tilmora
