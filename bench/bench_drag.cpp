// One drag step on the Direct Rating page, from the mouse move on the mark
// to the painted page: the move rule, the read-out labels, the value
// function chart and a repaint of the whole page into an image, measured on
// an offscreen page with an eleven-point function and the decoration bands.
#include "MarkDrag.h"
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"
#include "pages/techniques/frmKelDirectRating.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace kelmar;

void fillElevenPoints() {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AttNum = 1;
    w.AltNum = 1;
    w.MaxVal = 100;
    w.SelTechnique = kDirectRating;
    w.SelMCDAMethod = 2;  // with the decoration bands
    for (VariantArray* a : {&w.AttName, &w.ScoreMinimum, &w.ScoreMiddle, &w.ScoreMaximum,
                            &w.ScoreMinimumCopy, &w.ScoreMaximumCopy, &w.AttPropertyCopy,
                            &w.SmpSize, &w.VFunType, &w.VFTechniqueID, &w.AttVFDone,
                            &w.InSmpSize, &w.InVFunType, &w.InVFTechniqueID})
        a->redim(0, 0);
    for (VariantArray* a : {&w.SmpX, &w.SmpY, &w.InSmpX, &w.InSmpY}) a->redim(0, 0, 0, 10);
    w.AttName(0) = Variant("Comfort");
    w.ScoreMinimum(0) = w.ScoreMinimumCopy(0) = Variant(0.0);
    w.ScoreMaximum(0) = w.ScoreMaximumCopy(0) = Variant(10.0);
    w.AttPropertyCopy(0) = Variant(std::int16_t(0));
    w.SmpSize(0) = Variant(std::int16_t(11));
    w.VFunType(0) = Variant(std::int16_t(1));
    w.AttVFDone(0) = Variant(false);
    for (int k = 0; k <= 10; ++k) {
        w.SmpX(0, k) = Variant(k * 1.0);
        w.SmpY(0, k) = Variant(k / 10.0);
    }
}

// bench_main.cpp makes the application object before any benchmark runs;
// this only guards a benchmark run from another entry point.
void ensureApplication() {
    if (QApplication::instance() == nullptr) std::abort();
}

void DragStep(benchmark::State& state) {
    ensureApplication();
    fillElevenPoints();
    frmKelDirectRating page;
    page.resize(780, 620);
    page.load();
    page.show();
    // Grab the middle mark (point 5 at 50) as the analyst would; every step
    // is one mouse move delivered to the mark, which runs the drag handler:
    // the drag position, MovePoint, the read-outs and the value function
    // chart. The page is then painted into an image, as the next frame.
    auto* mark = page.findChild<QWidget*>(QStringLiteral("picScorePoint_5"));
    const QPointF grab(mark->width() / 2.0, 8.0);
    bench::sendMarkEvent(mark, QEvent::MouseButtonPress, grab, Qt::LeftButton);
    // Back and forth by a few rating units, never across a neighbour.
    const double unit = page.findChild<QWidget*>(QStringLiteral("picRatingChart"))->width() / 116.0;
    const double offsets[4] = {2.0, -2.0, 4.0, -4.0};
    QImage frame(page.size() * page.devicePixelRatio(), QImage::Format_ARGB32_Premultiplied);
    std::size_t step = 0;
    for (auto _ : state) {
        const QPointF to(grab.x() + offsets[step++ % 4] * unit, grab.y());
        bench::sendMarkEvent(mark, QEvent::MouseMove, to, Qt::NoButton);
        bench::paintPage(page, frame);
    }
    bench::sendMarkEvent(mark, QEvent::MouseButtonRelease, grab, Qt::LeftButton);
}
BENCHMARK(DragStep)->Unit(benchmark::kMicrosecond);

// The value function chart alone.
void ValueChartRedraw(benchmark::State& state) {
    ensureApplication();
    fillElevenPoints();
    frmKelDirectRating page;
    page.load();
    auto* chart = page.findChild<DrawSurface*>(QStringLiteral("picVFChart"));
    std::int16_t att = 0;
    std::int16_t maxVal = 100;
    for (auto _ : state) DrawVFChart(*chart, att, maxVal);
}
BENCHMARK(ValueChartRedraw)->Unit(benchmark::kMicrosecond);

}  // namespace

