// One level-mark drag step on the Category Identification page: the mouse
// move on the mark runs the move rule and redraws the order-values chart,
// the categorization chart and the value function chart. Measured with and
// without the next frame of the window, on an offscreen page with the
// categorization chart in front.
#include "PageDrag.h"
#include "pages/techniques/frmKelCatIdn.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace kelmar;

// Grabs level mark 3 (at 12.5 on the scale, its neighbours at 6.25 and 25)
// and moves it back and forth, never across a neighbour.
void dragLevel(benchmark::State& state, bench::Frame frame) {
    if (QApplication::instance() == nullptr) std::abort();
    // The straight line through eleven points, laid on the ladder at load.
    bench::fillOneAttribute(kCategoryIdentification, 11, 1);
    frmKelCatIdn page;
    page.resize(820, 820);
    page.load();
    page.show();
    auto* mark = page.findChild<QWidget*>(QStringLiteral("picScorePoint_3"));
    const double unit = page.findChild<QWidget*>(QStringLiteral("picRatingChart"))->width() / 116.0;
    bench::dragSteps(state, page, *mark, QPointF(mark->width() / 2.0, 8.0), QPointF(unit, 0.0), frame);
}

void CategoryDragStep(benchmark::State& state) { dragLevel(state, bench::Frame::Changed); }
BENCHMARK(CategoryDragStep)->Unit(benchmark::kMicrosecond);

void CategoryDragHandler(benchmark::State& state) { dragLevel(state, bench::Frame::None); }
BENCHMARK(CategoryDragHandler)->Unit(benchmark::kMicrosecond);

}  // namespace
