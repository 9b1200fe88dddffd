// One drag step on each page that judges scores on the score bar, from the
// mouse move on the mark to the repainted window: the move rule, the
// read-outs, the function fitted to the scores, the judgment redrawn on the
// chart and in words, the value function chart and the repaint of what
// changed, measured offscreen with the largest sample each page takes.
#include "PageDrag.h"
#include "pages/techniques/frmKelBisection.h"
#include "pages/techniques/frmKelDiffStdSeq.h"

namespace {

using namespace kelmar;
using namespace kelmar::bench;

template <class Page>
void ScoreAxisDragStep(benchmark::State& state, std::int16_t technique, std::int16_t size) {
    ensureApplication();
    fillOneAttribute(technique, size);
    Page page;
    page.resize(780, 680);
    page.load();
    page.show();
    measureDragStep(state, page, QStringLiteral("picScorePoint_%1").arg(size / 2),
                    QStringLiteral("picRatingChart"));
}

void BisectionDragStep(benchmark::State& state) {
    ScoreAxisDragStep<frmKelBisection>(state, kBisection, 9);
}
BENCHMARK(BisectionDragStep)->Unit(benchmark::kMicrosecond);

void DiffStdSeqDragStep(benchmark::State& state) {
    ScoreAxisDragStep<frmKelDiffStdSeq>(state, kDiffStandardSequence, 11);
}
BENCHMARK(DiffStdSeqDragStep)->Unit(benchmark::kMicrosecond);

}  // namespace
