// One pointer move of a drag across the grid cell picker: the move's handling and the repaint
// of the region it changed, on Qt's offscreen platform (software rendering, as under Xvfb).
#include "ui/GridCellPicker.h"

#include <QApplication>
#include <QMouseEvent>

#include <benchmark/benchmark.h>

namespace {

QApplication& application() {
    static int argc = 1;
    static char name[] = "grid_cell_picker_bench";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication app(argc, argv);
    return app;
}

void move(QWidget& widget, QPointF at, QEvent::Type type, Qt::MouseButtons buttons) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

// Alternates between two blocks of an 8 x 6 grid, so every move changes the highlight.
void DragMove(benchmark::State& state) {
    application();
    tilmora::GridCellPicker picker([](auto...) {});
    picker.resize(760, 260);
    picker.setGrid(8, 6, 8);
    picker.show();
    QApplication::processEvents();
    move(picker, {40, 40}, QEvent::MouseButtonPress, Qt::LeftButton);
    QApplication::processEvents();
    const QPointF ends[] = {{400, 150}, {560, 200}};
    int i = 0;
    for (auto _ : state) {
        move(picker, ends[i++ % 2], QEvent::MouseMove, Qt::LeftButton);
        // Delivers the update request: the changed region is painted here.
        QApplication::processEvents();
    }
    move(picker, {40, 40}, QEvent::MouseButtonRelease, Qt::NoButton);
}
BENCHMARK(DragMove)->Unit(benchmark::kMicrosecond);

} // namespace
