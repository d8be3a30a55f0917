// The layout math that runs on every pointer movement of a modifier drag (snapping to a grid
// cell, finding the display under the pointer) and on every quick layout.
#include "geometry/LayoutAction.h"
#include "geometry/TilmoraCoordinateSpace.h"

#include <benchmark/benchmark.h>

using namespace tilmora;

namespace {

// A wide primary, a display to its right and a portrait one to its left.
std::vector<ScreenDescription> threeScreens() {
    return {
        {{0, 0, 2560, 1440}, {0, 0, 2560, 1410}, QStringLiteral("Primary"), 1.0, 1},
        {{2560, 0, 1920, 1080}, {2560, 0, 1920, 1080}, QStringLiteral("Right"), 1.0, 2},
        {{-1440, -400, 1440, 2560}, {-1440, -400, 1440, 2560}, QStringLiteral("Left"), 1.0, 3},
    };
}

void snapFrameUnderMovingPointer(benchmark::State& state) {
    const auto displays = TilmoraCoordinateSpace::currentDisplays(threeScreens());
    double x = 0;
    for (auto _ : state) {
        const CGPoint pointer{x, 700};
        const auto display = TilmoraCoordinateSpace::display(pointer, displays);
        benchmark::DoNotOptimize(TilmoraCoordinateSpace::snapFrame(pointer, *display, 6, 4, 8));
        x = x > 4000 ? -1000 : x + 7;
    }
}
BENCHMARK(snapFrameUnderMovingPointer);

void everyQuickLayoutFrame(benchmark::State& state) {
    const CGRect area{0, 25, 1440, 875};
    for (auto _ : state) {
        for (LayoutAction action : LayoutAction::quickActions()) {
            benchmark::DoNotOptimize(action.targetFrame(area, 8));
        }
    }
}
BENCHMARK(everyQuickLayoutFrame);

void currentDisplaysOfThreeScreens(benchmark::State& state) {
    const std::vector<ScreenDescription> screens = threeScreens();
    for (auto _ : state) {
        benchmark::DoNotOptimize(TilmoraCoordinateSpace::currentDisplays(screens));
    }
}
BENCHMARK(currentDisplaysOfThreeScreens);

} // namespace
