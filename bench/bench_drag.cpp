// One drag step on the Direct Rating page, from the mouse move on the mark
// to the painted page: the move rule, the read-out labels, the value
// function chart and a repaint of the whole page into an image, measured on
// an offscreen page with an eleven-point function and the decoration bands.
#include "PageDrag.h"
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"
#include "pages/techniques/frmKelDirectRating.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace kelmar;

// bench_main.cpp makes the application object before any benchmark runs;
// this only guards a benchmark run from another entry point.
void ensureApplication() {
    if (QApplication::instance() == nullptr) std::abort();
}

void DragStep(benchmark::State& state) {
    ensureApplication();
    bench::fillElevenPoints(kDirectRating, 2);  // with the decoration bands
    frmKelDirectRating page;
    page.resize(780, 620);
    page.load();
    page.show();
    // Grab the middle mark (point 5 at 50) as the analyst would; every step
    // is one mouse move delivered to the mark, which runs the drag handler:
    // the drag position, MovePoint, the read-outs and the value function
    // chart. The page is then painted into an image, as the next frame.
    auto* mark = page.findChild<QWidget*>(QStringLiteral("picScorePoint_5"));
    const double unit = page.findChild<QWidget*>(QStringLiteral("picRatingChart"))->width() / 116.0;
    bench::dragSteps(state, page, *mark, QPointF(mark->width() / 2.0, 8.0), QPointF(unit, 0.0));
}
BENCHMARK(DragStep)->Unit(benchmark::kMicrosecond);

// The value function chart alone.
void ValueChartRedraw(benchmark::State& state) {
    ensureApplication();
    bench::fillElevenPoints(kDirectRating, 2);
    frmKelDirectRating page;
    page.load();
    auto* chart = page.findChild<DrawSurface*>(QStringLiteral("picVFChart"));
    std::int16_t att = 0;
    std::int16_t maxVal = 100;
    for (auto _ : state) DrawVFChart(*chart, att, maxVal);
}
BENCHMARK(ValueChartRedraw)->Unit(benchmark::kMicrosecond);

}  // namespace

