// The Windows section with a thousand windows, on Qt's offscreen platform: how long a refresh
// in which one title changed takes until the view has repainted, and the process's resident
// memory with the section shown (reported as counters).
#include "core/AppStore.h"
#include "support/FakePlatform.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QFile>

#include <benchmark/benchmark.h>

using namespace tilmora;

namespace {

double residentMegabytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) {
            return line.mid(6).trimmed().split(' ').front().toDouble() / 1024.0;
        }
    }
    return 0;
}

void RefreshWithOneTitleChanged(benchmark::State& state) {
    FakePlatform fake;
    fake.windowSystem.setScreens({builtInScreen});
    fake.windowSystem.addApplication(10, QStringLiteral("org.example.Editor"),
                                     QStringLiteral("Editor"));
    std::vector<WindowElement> windows;
    for (int i = 0; i < state.range(0); ++i) {
        windows.push_back(
            fake.windowSystem.addWindow(10, {10.0 + i % 400, 40, 640, 480},
                                        QStringLiteral("Document %1").arg(i, 4, 10, QChar(u'0'))));
    }
    fake.windowSystem.setFrontmostApplication(10);
    AppStore store(fake.platform());
    store.refresh();
    store.setSelectedSection(TilmoraSection::windows);
    MainWindow window(store);
    window.show();
    for (int pass = 0; pass < 8; ++pass) {
        QApplication::processEvents();
    }
    int changes = 0;
    for (auto _ : state) {
        // The first row's title, so the change is in view.
        fake.windowSystem.window(windows.front()).title =
            QStringLiteral("Document 0000 (%1)").arg(++changes);
        store.refresh();
        QApplication::processEvents();
    }
    state.counters["resident_MB"] = residentMegabytes();
}
BENCHMARK(RefreshWithOneTitleChanged)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
