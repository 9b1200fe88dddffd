// What the page drag benchmarks share: an eleven-point function on one
// attribute, and drag steps delivered to a mark as mouse moves, each
// followed by a repaint of the whole page into an image, as the next frame.
#pragma once

#include <kelmar/mdKelMain.h>

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

#include <benchmark/benchmark.h>

namespace kelmar::bench {

// One benefit attribute "Comfort" on 0 .. 10 with the straight line through
// eleven points, values on the 100 scale, for the given technique and
// method code.
inline void fillElevenPoints(std::int16_t technique, std::int16_t method) {
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
    w.SmpSize(0) = Variant(std::int16_t(11));
    w.VFunType(0) = Variant(std::int16_t(1));
    w.AttVFDone(0) = Variant(false);
    for (int k = 0; k <= 10; ++k) {
        w.SmpX(0, k) = Variant(k * 1.0);
        w.SmpY(0, k) = Variant(k / 10.0);
    }
}

// Grabs mark at grab (inside it) and, for every benchmark iteration, moves
// the mouse back and forth by 2 and 4 times unit (pixels), never across a
// neighbour, then paints page. Releases the mark at the end.
inline void dragSteps(benchmark::State& state, QWidget& page, QWidget& mark, QPointF grab,
                      QPointF unit) {
    auto send = [&mark](QEvent::Type type, QPointF at, Qt::MouseButton button,
                        Qt::MouseButtons buttons) {
        QMouseEvent event(type, at, mark.mapToGlobal(at), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&mark, &event);
    };
    send(QEvent::MouseButtonPress, grab, Qt::LeftButton, Qt::LeftButton);
    const double offsets[4] = {2.0, -2.0, 4.0, -4.0};
    QImage frame(page.size() * page.devicePixelRatio(), QImage::Format_ARGB32_Premultiplied);
    std::size_t step = 0;
    for (auto _ : state) {
        send(QEvent::MouseMove, grab + offsets[step++ % 4] * unit, Qt::NoButton, Qt::LeftButton);
        QPainter painter(&frame);
        page.render(&painter);
        painter.end();
        benchmark::DoNotOptimize(frame.constBits());
    }
    send(QEvent::MouseButtonRelease, grab, Qt::LeftButton, Qt::NoButton);
}

}  // namespace kelmar::bench
