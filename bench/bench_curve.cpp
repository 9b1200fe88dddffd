// One drag step on the Curve Drawing page: the mouse move on a mark that
// stands on the value function chart, the move rule, the read-outs, the
// chart redrawn under the mark and the repaint of what changed.
#include "PageDrag.h"
#include "charts/DrawSurface.h"
#include "pages/techniques/frmKelCurveDrawing.h"

namespace {

using namespace kelmar;

void CurveDragStep(benchmark::State& state) {
    bench::ensureApplication();
    bench::fillOneAttribute(kCurveDrawing, 11, 1);
    frmKelCurveDrawing page;
    page.resize(780, 620);
    page.load();
    page.show();
    // The middle mark (value 0.5) moved up and down by a few value units.
    auto* mark = page.findChild<QWidget*>(QStringLiteral("picScorePoint_5"));
    auto* chart = page.findChild<DrawSurface*>(QStringLiteral("picVFChart"));
    const QPointF grab(mark->width() / 2.0, mark->height() / 2.0);
    bench::dragSteps(state, page, *mark, grab, QPointF(0.0, -chart->pixelsPerUnitY()));
}
BENCHMARK(CurveDragStep)->Unit(benchmark::kMicrosecond);

}  // namespace
