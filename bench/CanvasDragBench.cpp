// One pointer move of a canvas drag, as the view handles it: the new rectangle, the size text,
// the header laid out again, and the repaint of what changed, on Qt's offscreen platform (no
// server in the measurement). The view is 1920 x 1080 with a 3 x 2 grid.
#include "ui/PlacementCanvasView.h"

#include <QApplication>
#include <QEvent>
#include <QWindow>

#include <benchmark/benchmark.h>

#include <memory>

using namespace tilmora;

namespace {

class PaintCounter final : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

void moveAndRepaint(benchmark::State& state) {
    DisplayGeometry display;
    display.id = 1;
    display.name = QStringLiteral("Right");
    display.frame = {0, 0, 1920, 1080};
    display.visibleFrame = {0, 25, 1920, 1055};
    PlacementCanvasView view(
        display, {}, {1, display.name, 3, 2, 8}, [](const CGRect&) {}, [] {},
        std::make_shared<CanvasDragSession>());
    view.setGeometry(0, 0, 1920, 1080);
    view.show();
    QCoreApplication::sendPostedEvents();
    PaintCounter counter;
    view.installEventFilter(&counter);
    view.beginDrag({200, 200});
    int step = 0;
    for (auto _ : state) {
        // Back and forth over 400 points, 4 at a time, as a hand moves.
        const int offset = 4 * (step++ % 100);
        view.dragTo({800.0 + offset, 600.0 + offset / 2.0});
        // The repaint the move asked for, before the next move.
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        view.windowHandle()->requestUpdate();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
    // Each move must have been painted, or the figure says nothing.
    state.counters["paints per move"] =
        benchmark::Counter(double(counter.paints) / double(state.iterations()));
}
BENCHMARK(moveAndRepaint)->Unit(benchmark::kMicrosecond);

} // namespace
