// The main() of the benchmarks that draw widgets: Google Benchmark inside a QApplication on Qt's
// offscreen platform, so they run without a display.
#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
