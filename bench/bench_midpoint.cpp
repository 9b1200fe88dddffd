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

// A release at a new position: FitMidpoint with the resampling of eleven
// points, the value function chart, the risk attitude and the labels.
void MidpointRelease(benchmark::State& state) {
    ensureApplication();
    fillOneAttribute();
    frmKelMidPoint page;
    page.load();
    page.show();
    auto* slider = page.findChild<QSlider*>(QStringLiteral("sldMidVal"));
    const QPointF at(slider->width() / 2.0, slider->height() / 2.0);
    // Steep and gentle curves on either side of the centre.
    const int positions[4] = {20, 1400, 700, 1985};
    std::size_t step = 0;
    for (auto _ : state) {
        send(slider, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
        slider->setValue(positions[step++ % 4]);
        send(slider, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
        benchmark::DoNotOptimize(wizardData().SmpX(0, 5).toDouble());
    }
}
BENCHMARK(MidpointRelease)->Unit(benchmark::kMicrosecond);

// The exponential's eleven points alone, for a steep and a gentle curve.
void ExponentialResample(benchmark::State& state) {
    fillOneAttribute();
    std::int16_t att = 0;
    double middle = state.range(0) / 1000.0;
    for (auto _ : state) ResampleExponential(att, middle);
}
BENCHMARK(ExponentialResample)->Arg(11)->Arg(3000)->Unit(benchmark::kMicrosecond);

}  // namespace
