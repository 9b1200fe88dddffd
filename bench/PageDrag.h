// What the page benchmarks share: one attribute with a function through
// evenly spread points, and one drag step measured from the mouse move on a
// mark to the repainted window.
#pragma once

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace kelmar::bench {

// bench_main.cpp makes the application object before any benchmark runs;
// this only guards a benchmark run from another entry point.
inline void ensureApplication() {
    if (QApplication::instance() == nullptr) std::abort();
}

// Attribute 0 "Comfort", scores 0 .. 10, a curve (type 1) through `size`
// points at equal steps of score and value, on the value range 100, with the
// given method code (2: with the decoration bands); the technique chosen is `technique`.
inline void fillOneAttribute(std::int16_t technique, std::int16_t size, std::int16_t method = 2) {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AttNum = 1;
    w.AltNum = 1;
    w.MaxVal = 100;
    w.SelTechnique = technique;
    w.SelMCDAMethod = method;
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
    w.SmpSize(0) = Variant(size);
    w.VFunType(0) = Variant(std::int16_t(1));
    w.VFTechniqueID(0) = Variant(technique);
    w.AttVFDone(0) = Variant(false);
    for (int k = 0; k < size; ++k) {
        w.SmpX(0, k) = Variant(k * 10.0 / (size - 1));
        w.SmpY(0, k) = Variant(static_cast<double>(k) / (size - 1));
    }
}

// The next frame of a shown window: what the handlers left pending runs, the
// layouts that a changed text asks for and the repaint of the regions the
// widgets marked as changed, into the window's backing store. A chart weighs
// its changes in one turn of the event loop and has them painted in the
// next, so the frame takes two turns. The first frame after show() exposes
// the window and paints it whole.
inline void nextFrame() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

// What follows a drag step in a benchmark.
enum class Frame {
    None,     // the handler alone
    Changed,  // the next frame of the window
    Whole,    // the whole page painted into an image, as when it is uncovered
};

// Grabs mark at grab (inside it) and, for every benchmark iteration, moves
// the mouse back and forth by 2 and 4 times unit (pixels), never across a
// neighbour, which runs the page's drag handler; then the frame. Releases
// the mark at the end.
inline void dragSteps(benchmark::State& state, QWidget& page, QWidget& mark, QPointF grab,
                      QPointF unit, Frame frame = Frame::Changed) {
    auto send = [&mark](QEvent::Type type, QPointF at, Qt::MouseButton button,
                        Qt::MouseButtons buttons) {
        QMouseEvent event(type, at, mark.mapToGlobal(at), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&mark, &event);
    };
    nextFrame();  // the page's first painting is no step
    send(QEvent::MouseButtonPress, grab, Qt::LeftButton, Qt::LeftButton);
    nextFrame();
    const double offsets[4] = {2.0, -2.0, 4.0, -4.0};
    QImage image(page.size() * page.devicePixelRatio(), QImage::Format_ARGB32_Premultiplied);
    std::size_t step = 0;
    for (auto _ : state) {
        send(QEvent::MouseMove, grab + offsets[step++ % 4] * unit, Qt::NoButton, Qt::LeftButton);
        if (frame == Frame::Changed) {
            nextFrame();
        } else if (frame == Frame::Whole) {
            QPainter painter(&image);
            page.render(&painter);
            painter.end();
            benchmark::DoNotOptimize(image.constBits());
            // The window's own frame is not this step's work, but it runs,
            // as it would between two moves.
            state.PauseTiming();
            nextFrame();
            state.ResumeTiming();
        }
    }
    send(QEvent::MouseButtonRelease, grab, Qt::LeftButton, Qt::NoButton);
    nextFrame();
}

// A horizontal drag of the mark `markName` along the rating chart
// `chartName` (116 units across), grabbed near its top.
inline void measureDragStep(benchmark::State& state, QWidget& page, const QString& markName,
                            const QString& chartName, Frame frame = Frame::Changed) {
    auto* mark = page.findChild<QWidget*>(markName);
    const double unit = page.findChild<QWidget*>(chartName)->width() / 116.0;
    dragSteps(state, page, *mark, QPointF(mark->width() / 2.0, 8.0), QPointF(unit, 0.0), frame);
}

}  // namespace kelmar::bench
