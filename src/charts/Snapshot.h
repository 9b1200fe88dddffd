// Pictures of widgets for the documentation and for checks by eye.
#pragma once

#include <QImage>
#include <QString>

class QWidget;

namespace kelmar {

// The widget as it looks on screen, rendered offscreen at the given device
// pixel ratio (2 gives a picture for a high-density screen).
QImage snapshot(QWidget& widget, qreal devicePixelRatio = 1.0);

// Renders the widget and writes it as PNG; false when the file cannot be
// written.
bool saveSnapshot(QWidget& widget, const QString& path, qreal devicePixelRatio = 1.0);

}  // namespace kelmar
