// The value function chart of one attribute as kelmar-host shows and
// exports it: on screen, as PNG and as SVG.
#pragma once

#include "Workbench.h"

#include <kelmar/ValueFunctionChart.h>

#include <QByteArray>
#include <QPaintDevice>
#include <QWidget>

#include <memory>

namespace kelmarhost {

// Draws attribute att's curves (the last on top) into chart with the score
// axis' caption and the comparison's lines (where the curves differ most,
// where one turns back); the alternatives' scores are marked and, for a
// small problem, named on the problem's current function.
void drawAttributeChart(kelmar::ValueFunctionChart& chart, const Problem& problem, int att,
                        const QVector<AttributeCurve>& curves);

// A widget that shows a chart at its own size.
class ChartView : public QWidget {
public:
    explicit ChartView(QWidget* parent = nullptr);
    kelmar::ValueFunctionChart& chart() { return chart_; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    kelmar::ValueFunctionChart chart_;
};

// The chart as an SVG document of the given size (logical pixels), drawn
// as it is painted on screen.
QByteArray chartSvg(const kelmar::ValueFunctionChart& chart, QSize size);

// Writes the chart as PNG or SVG, chosen by the file's suffix (.png, .svg);
// false with a message in `error` for another suffix or a file that cannot
// be written.
bool writeChart(const kelmar::ValueFunctionChart& chart, const QString& path, QString* error,
                QSize size = QSize(780, 480));

}  // namespace kelmarhost
