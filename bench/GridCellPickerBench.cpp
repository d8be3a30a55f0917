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

// Every move changes the highlight of an 8 x 6 grid: to the neighbouring cell (as a drag goes)
// or to a far one.
void DragMove(benchmark::State& state) {
    application();
    tilmora::GridCellPicker picker([](auto...) {});
    picker.resize(760, 260);
    picker.setGrid(8, 6, 8);
    picker.show();
    QApplication::processEvents();
    move(picker, {40, 40}, QEvent::MouseButtonPress, Qt::LeftButton);
    QApplication::processEvents();
    // Cells are 90 x 38 points: one column apart, or five columns and three rows.
    const QPointF ends[3][2] = {
        {{400, 150}, {490, 150}}, {{400, 150}, {130, 60}}, {{400, 150}, {400, 150}}};
    int i = 0;
    for (auto _ : state) {
        move(picker, ends[state.range(0)][i++ % 2], QEvent::MouseMove, Qt::LeftButton);
        // Delivers the update request: the changed region is painted here.
        QApplication::processEvents();
    }
    move(picker, {40, 40}, QEvent::MouseButtonRelease, Qt::NoButton);
}
BENCHMARK(DragMove)->ArgName("far")->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

} // namespace
