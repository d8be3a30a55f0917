// The latency of a global hot key on a private Xvfb: from a key press that another client sends
// with XTest to the service's pressed handler, through the socket notifier and the Qt event
// loop as in the application. Reported per press, with the median and the 95th percentile.
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11HotKeyService.h"
#include "x11/support/X11TestDesktop.h"

#include <QEventLoop>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace tilmora {
namespace {

using test::X11TestDesktop;

constexpr std::uint8_t modifierKeys[] = {37, 64, 133}; // control, alt, super
constexpr std::uint8_t leftKey = 113;

void HotKeyPressToHandler(benchmark::State& state) {
    X11TestDesktop desktop({X11TestDesktop::WindowManager::none, "1920x1080", {}});
    X11Connection connection(QByteArray::fromStdString(desktop.display()));
    X11HotKeyService service(connection);
    // Control + option + command + left arrow.
    if (!desktop.isReady() ||
        service.registerHotKey(123, 0x1000 | 0x0800 | 0x0100, 1).status != 0) {
        state.SkipWithError("no server, or the key was refused");
        return;
    }
    QEventLoop loop;
    bool pressed = false;
    service.setPressedHandler([&](std::uint32_t) {
        pressed = true;
        loop.quit();
    });
    QTimer timeout;
    timeout.setSingleShot(true);
    timeout.setInterval(1000);
    QObject::connect(&timeout, &QTimer::timeout, &loop, &QEventLoop::quit);
    for (const std::uint8_t key : modifierKeys) {
        desktop.fakeKey(key, true);
    }

    std::vector<double> latencies;
    for (auto _ : state) {
        pressed = false;
        timeout.start();
        const auto start = std::chrono::steady_clock::now();
        desktop.fakeKey(leftKey, true);
        loop.exec();
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        timeout.stop();
        if (!pressed) {
            state.SkipWithError("a press did not arrive within a second");
            break;
        }
        state.SetIterationTime(elapsed.count());
        latencies.push_back(elapsed.count() * 1000);
        desktop.fakeKey(leftKey, false);
    }
    for (const std::uint8_t key : modifierKeys) {
        desktop.fakeKey(key, false);
    }
    if (latencies.empty()) {
        return;
    }
    std::sort(latencies.begin(), latencies.end());
    state.counters["median_ms"] = latencies[latencies.size() / 2];
    state.counters["p95_ms"] = latencies[latencies.size() * 95 / 100];
}
BENCHMARK(HotKeyPressToHandler)->UseManualTime()->Iterations(500)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tilmora
