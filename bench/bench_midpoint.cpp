// The Midpoint page's two steps: a slider step while dragging (the middle
// score and its tip text) and a release (the judgment, the exponential's
// points, the value function chart, the risk attitude and the labels), on
// an offscreen page with eleven points; and the resampling alone.
#include "PageDrag.h"
#include "pages/techniques/frmKelMidPoint.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QSlider>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace kelmar;

// The shared eleven-point attribute, as a straight line with its middle
// score and room for the parameters.
void fillOneAttribute() {
    bench::fillOneAttribute(kMidPoint, 11, 1);
    WizardData& w = wizardData();
    for (VariantArray* a : {&w.VFunParA, &w.VFunParB, &w.VFunParC, &w.VFunParD}) a->redim(0, 0);
    w.ScoreMiddle(0) = Variant(5.0);
    w.VFunType(0) = Variant(std::int16_t(0));
}

void ensureApplication() {
    if (QApplication::instance() == nullptr) std::abort();
}

void send(QWidget* w, QEvent::Type type, QPointF pos, Qt::MouseButton button, Qt::MouseButtons buttons) {
    QMouseEvent event(type, pos, w->mapToGlobal(pos), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &event);
}

// One mouse move of a held slider handle: the slider's new position, the
// middle score, the tip text and the next frame of the window.
void MidpointSliderStep(benchmark::State& state) {
    ensureApplication();
    fillOneAttribute();
    frmKelMidPoint page;
    page.load();
    page.show();
    auto* slider = page.findChild<QSlider*>(QStringLiteral("sldMidVal"));
    const double y = slider->height() / 2.0;
    const double x = slider->width() / 2.0;
    send(slider, QEvent::MouseButtonPress, {x, y}, Qt::LeftButton, Qt::LeftButton);
    const double offsets[4] = {6.0, -6.0, 12.0, -12.0};
    std::size_t step = 0;
    for (auto _ : state) {
        send(slider, QEvent::MouseMove, {x + offsets[step++ % 4], y}, Qt::NoButton, Qt::LeftButton);
        bench::nextFrame();
        benchmark::DoNotOptimize(page.middleShown());
    }
    send(slider, QEvent::MouseButtonRelease, {x, y}, Qt::LeftButton, Qt::NoButton);
}
BENCHMARK(MidpointSliderStep)->Unit(benchmark::kMicrosecond);

// A release at a new position: FitMidpoint with the placement of eleven
// points, the value function chart, the risk attitude and the labels.
void MidpointRelease(benchmark::State& state) {
    ensureApplication();
    fillOneAttribute();
    frmKelMidPoint page;
    page.load();
    page.show();
    auto* slider = page.findChild<QSlider*>(QStringLiteral("sldMidVal"));
    const QPointF at(slider->width() / 2.0, slider->height() / 2.0);
    // Steep and gentle curves on either side of the centre, the steepest
    // the slider accepts among them.
    const int positions[6] = {3, 1400, 20, 700, 1989, 200};
    std::size_t step = 0;
    for (auto _ : state) {
        send(slider, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
        slider->setValue(positions[step++ % 6]);
        send(slider, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
        benchmark::DoNotOptimize(wizardData().SmpX(0, 5).toDouble());
    }
}
BENCHMARK(MidpointRelease)->Unit(benchmark::kMicrosecond);

// The exponential's eleven points alone, from the steepest curve to a
// gentle one (the middle score in thousandths of the 0 .. 10 range).
void ExponentialResample(benchmark::State& state) {
    fillOneAttribute();
    std::int16_t att = 0;
    double middle = state.range(0) / 1000.0;
    for (auto _ : state) ResampleExponential(att, middle);
}
BENCHMARK(ExponentialResample)->Arg(11)->Arg(100)->Arg(1000)->Arg(3000)->Arg(9940)->Unit(benchmark::kMicrosecond);

}  // namespace
