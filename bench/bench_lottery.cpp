// The two lottery pages' own steps on an offscreen page with a nine-point
// function: a step of the probability slider (the tip, the probability
// texts and the redrawn diagram) and a release of the slider (the stored
// value, the value function chart, the labels and the next point), and a
// certainty-equivalent release (the stored mean, the charts and the labels).
#include "pages/techniques/frmKelVarC.h"
#include "pages/techniques/frmKelVarP.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QSlider>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace kelmar;

void fillNinePoints(std::int16_t technique) {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AttNum = 1;
    w.AltNum = 1;
    w.MaxVal = 100;
    w.SelTechnique = technique;
    w.SelMCDAMethod = 1;
    for (VariantArray* a : {&w.AttName, &w.ScoreMinimum, &w.ScoreMiddle, &w.ScoreMaximum,
                            &w.ScoreMinimumCopy, &w.ScoreMaximumCopy, &w.AttPropertyCopy,
                            &w.SmpSize, &w.VFunType, &w.VFTechniqueID, &w.AttVFDone,
                            &w.InSmpSize, &w.InVFunType, &w.InVFTechniqueID})
        a->redim(0, 0);
    for (VariantArray* a : {&w.SmpX, &w.SmpY, &w.InSmpX, &w.InSmpY}) a->redim(0, 0, 0, 10);
    w.AttName(0) = Variant("Comfort");
    w.ScoreMinimum(0) = w.ScoreMinimumCopy(0) = Variant(0.0);
    w.ScoreMaximum(0) = w.ScoreMaximumCopy(0) = Variant(8.0);
    w.AttPropertyCopy(0) = Variant(std::int16_t(0));
    w.SmpSize(0) = Variant(std::int16_t(9));
    w.VFunType(0) = Variant(std::int16_t(1));
    w.VFTechniqueID(0) = Variant(technique);
    w.AttVFDone(0) = Variant(false);
    for (int k = 0; k <= 8; ++k) {
        w.SmpX(0, k) = Variant(k * 1.0);
        w.SmpY(0, k) = Variant(k / 8.0);
    }
}

void send(QWidget* w, QEvent::Type type, QPointF pos, Qt::MouseButton button, Qt::MouseButtons buttons) {
    QMouseEvent event(type, pos, w->mapToGlobal(pos), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &event);
}

void ensureApplication() {
    if (QApplication::instance() == nullptr) std::abort();
}

// One slider step on point 4: the thumb moves, the page shows p.
void ProbabilitySliderStep(benchmark::State& state) {
    ensureApplication();
    fillNinePoints(kVariableProbability);
    frmKelVarP page;
    page.load();
    page.show();
    auto* slider = page.findChild<QSlider*>(QStringLiteral("sldProbability"));
    page.JudgedPoint = 4;
    page.SetProbabilityRange(4);
    int position = 0;
    for (auto _ : state) slider->setValue(position++ % 11);
}
BENCHMARK(ProbabilitySliderStep)->Unit(benchmark::kMicrosecond);

// A left press and a release at another position on point 4: the value is
// stored, the charts and labels follow and the page moves on to point 5;
// the page is then put back on point 4 for the next round (not timed).
void ProbabilitySliderRelease(benchmark::State& state) {
    ensureApplication();
    fillNinePoints(kVariableProbability);
    frmKelVarP page;
    page.load();
    page.show();
    auto* slider = page.findChild<QSlider*>(QStringLiteral("sldProbability"));
    const QPointF at(2.0, 2.0);
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        page.JudgedPoint = 4;
        page.SetProbabilityRange(4);
        send(slider, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
        slider->setValue(round++ % 2 == 0 ? 3 : 7);
        state.ResumeTiming();
        send(slider, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    }
}
BENCHMARK(ProbabilitySliderRelease)->Unit(benchmark::kMicrosecond);

// A drag of the middle point by a step and its release on the certainty
// equivalent page: the move redraws the diagram, the release stores the
// mean and leads on.
void CertaintyDragRelease(benchmark::State& state) {
    ensureApplication();
    fillNinePoints(kVariableCertainty);
    frmKelVarC page;
    page.load();
    page.show();
    auto* mark = page.findChild<QWidget*>(QStringLiteral("picScorePoint_4"));
    const double unit = page.findChild<QWidget*>(QStringLiteral("picRatingChart"))->width() / 116.0;
    const QPointF grab(mark->width() / 2.0, 8.0);
    int round = 0;
    for (auto _ : state) {
        const QPointF to(grab.x() + (round++ % 2 == 0 ? 2.0 : -2.0) * unit, grab.y());
        send(mark, QEvent::MouseButtonPress, grab, Qt::LeftButton, Qt::LeftButton);
        send(mark, QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
        send(mark, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    }
}
BENCHMARK(CertaintyDragRelease)->Unit(benchmark::kMicrosecond);

}  // namespace
