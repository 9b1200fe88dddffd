// The two lottery pages' own steps on an offscreen page with a nine-point
// function: a step of the probability slider (the tip, the probability
// texts, the redrawn diagram and the next frame) and a release of the slider
// (the stored value, the value function chart, the labels and the next
// point); a certainty-equivalent drag step and a drag with its release (the
// stored mean, the charts and the labels).
#include "PageDrag.h"
#include "pages/techniques/frmKelVarC.h"
#include "pages/techniques/frmKelVarP.h"

#include <kelmar/mdKelMain.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <QSlider>

#include <benchmark/benchmark.h>


namespace {

using namespace kelmar;
using namespace kelmar::bench;

// Nine points on 0 .. 10, values on the 100 scale.
void fillNinePoints(std::int16_t technique) { fillOneAttribute(technique, 9, 1); }

void send(QWidget* w, QEvent::Type type, QPointF pos, Qt::MouseButton button, Qt::MouseButtons buttons) {
    QMouseEvent event(type, pos, w->mapToGlobal(pos), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &event);
}


// One slider step on point 4: the thumb moves, the page shows p, the window
// repaints what changed.
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
    nextFrame();
    for (auto _ : state) {
        slider->setValue(position++ % 11);
        nextFrame();
    }
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

// A drag step of the middle point on the certainty equivalent page: the
// sure score, the diagram and the next frame.
void CertaintyDragStep(benchmark::State& state) {
    ensureApplication();
    fillNinePoints(kVariableCertainty);
    frmKelVarC page;
    page.load();
    page.show();
    measureDragStep(state, page, QStringLiteral("picScorePoint_4"), QStringLiteral("picRatingChart"));
}
BENCHMARK(CertaintyDragStep)->Unit(benchmark::kMicrosecond);

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
