// One level-mark drag step on the Category Identification page: the mouse
// move on the mark runs the move rule and redraws the order-values chart,
// the categorization chart and the value function chart. Measured with and
// without painting the page into an image afterwards (the next frame), on
// an offscreen page with the categorization chart in front.
#include "PageDrag.h"
#include "pages/techniques/frmKelCatIdn.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace kelmar;

// Grabs level mark 3 (at 12.5 on the scale, its neighbours at 6.25 and 25)
// and moves it back and forth, never across a neighbour; `paint` paints the
// page into an image after every step.
void dragLevel(benchmark::State& state, bool paint) {
    if (QApplication::instance() == nullptr) std::abort();
    // The straight line through eleven points, laid on the ladder at load.
    bench::fillOneAttribute(kCategoryIdentification, 11, 1);
    frmKelCatIdn page;
    page.resize(820, 820);
    page.load();
    page.show();
    auto* mark = page.findChild<QWidget*>(QStringLiteral("picScorePoint_3"));
    const double unit = page.findChild<QWidget*>(QStringLiteral("picRatingChart"))->width() / 116.0;
    bench::dragSteps(state, page, *mark, QPointF(mark->width() / 2.0, 8.0), QPointF(unit, 0.0), paint);
}

void CategoryDragStep(benchmark::State& state) { dragLevel(state, false); }
BENCHMARK(CategoryDragStep)->Unit(benchmark::kMicrosecond);

void CategoryDragStepPainted(benchmark::State& state) { dragLevel(state, true); }
BENCHMARK(CategoryDragStepPainted)->Unit(benchmark::kMicrosecond);

}  // namespace
