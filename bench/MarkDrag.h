// What the drag benchmarks share: the mouse events a drag delivers to a
// point mark, and painting the page as the next frame.
#pragma once

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

#include <benchmark/benchmark.h>

namespace kelmar::bench {

// A press (button down), a move with the left button held (button
// NoButton) or a release (button up) at a position inside the mark.
inline void sendMarkEvent(QWidget* mark, QEvent::Type type, QPointF at, Qt::MouseButton button) {
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::MouseButtons(Qt::NoButton) : Qt::MouseButtons(Qt::LeftButton);
    QMouseEvent event(type, at, mark->mapToGlobal(at), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(mark, &event);
}

// Paints the whole page into the frame image.
inline void paintPage(QWidget& page, QImage& frame) {
    QPainter painter(&frame);
    page.render(&painter);
    painter.end();
    benchmark::DoNotOptimize(frame.constBits());
}

}  // namespace kelmar::bench
