// One drag step on the Direct Rating page, from the mouse move on the mark
// to the repainted window: the move rule, the read-out labels, the value
// function chart and the repaint of what changed, measured on an offscreen
// page with an eleven-point function and the decoration bands; and the same
// step with the whole page painted, as when the window is uncovered.
#include "PageDrag.h"
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"
#include "pages/techniques/frmKelDirectRating.h"

namespace {

using namespace kelmar;
using namespace kelmar::bench;

void directRatingStep(benchmark::State& state, Frame frame) {
    ensureApplication();
    fillOneAttribute(kDirectRating, 11);
    frmKelDirectRating page;
    page.resize(780, 620);
    page.load();
    page.show();
    // The middle mark: point 5 at 50.
    measureDragStep(state, page, QStringLiteral("picScorePoint_5"), QStringLiteral("picRatingChart"),
                    frame);
}

void DragStep(benchmark::State& state) { directRatingStep(state, Frame::Changed); }
BENCHMARK(DragStep)->Unit(benchmark::kMicrosecond);

void DragStepWholePage(benchmark::State& state) { directRatingStep(state, Frame::Whole); }
BENCHMARK(DragStepWholePage)->Unit(benchmark::kMicrosecond);

// The value function chart alone.
void ValueChartRedraw(benchmark::State& state) {
    ensureApplication();
    fillOneAttribute(kDirectRating, 11);
    frmKelDirectRating page;
    page.load();
    auto* chart = page.findChild<DrawSurface*>(QStringLiteral("picVFChart"));
    std::int16_t att = 0;
    std::int16_t maxVal = 100;
    for (auto _ : state) DrawVFChart(*chart, att, maxVal);
}
BENCHMARK(ValueChartRedraw)->Unit(benchmark::kMicrosecond);

}  // namespace
