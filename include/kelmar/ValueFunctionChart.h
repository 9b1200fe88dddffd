// The value function chart of the technique pages, for hosts: draws one or
// more function records of an attribute (for instance the same attribute
// built with two techniques) on the wizard's axes, with the alternatives'
// scores marked, and paints the result on any QPainter (a widget, a QImage,
// a printer or a paint device of the host's own).
//
//     kelmar::ValueFunctionChart chart;
//     chart.draw(name, scoreMin, scoreMax, maxVal, {{"Direct Rating", xs, ys}}, marks);
//     QPainter painter(&image);
//     chart.paint(painter, image.size());
//
// A QApplication must exist. Not a QObject: it can live anywhere.
#pragma once

#include <QPointF>
#include <QSize>
#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

class QColor;
class QPainter;

#if defined(KELMAR_BUILDING_LIBRARY)
#define KELMAR_CHART_API __attribute__((visibility("default")))
#else
#define KELMAR_CHART_API
#endif

namespace kelmar {

// One function record on the chart: its sample points (SmpX and SmpY of
// one attribute, SmpSize of them), values as fractions 0 .. 1. Drawn as the
// wizard draws it: the Akima curve sampled at 33 scores and cut to 0 .. 1.
struct ChartCurve {
    QString label;  // the legend's text; a legend is drawn for two curves or more
    std::vector<double> scores;
    std::vector<double> values;
};

// A line up the chart at one score, from one value to another (0 .. 1),
// with a caption beside it: where two curves differ most, where a curve
// turns back.
struct ChartGuide {
    double score = 0.0;
    double from = 0.0;
    double to = 1.0;
    QString caption;
    int curve = -1;  // drawn in curveColor(curve); -1: black
};

// What a host adds to the chart besides curves and marks.
struct ChartExtras {
    QString scoreCaption;            // under the score axis' labels
    std::vector<QString> markNames;  // one per mark, printed beside it where there is room
    std::vector<ChartGuide> guides;
};

class KELMAR_CHART_API ValueFunctionChart {
public:
    ValueFunctionChart();
    ~ValueFunctionChart();
    ValueFunctionChart(const ValueFunctionChart&) = delete;
    ValueFunctionChart& operator=(const ValueFunctionChart&) = delete;

    // Draws the chart titled after the attribute over [scoreMinimum,
    // scoreMaximum], value labels 0 .. maxVal (1 or 100), curve i in
    // curveColor(i) (in order, the last on top), and a small square at every mark (score, value 0 .. 1;
    // marks beyond the range stand at its edge). A curve with no points is
    // left out. Replaces whatever was drawn before.
    void draw(const QString& attributeName, double scoreMinimum, double scoreMaximum,
              std::int16_t maxVal, const std::vector<ChartCurve>& curves,
              const std::vector<QPointF>& marks, const ChartExtras& extras = {});

    // Paints the drawing onto painter as if the device were `size` large
    // (logical pixels). Text and pens keep their proportions at any size.
    void paint(QPainter& painter, QSizeF size) const;
    // The size at which fonts have their nominal point size.
    QSize designSize() const;

    // The colour of curve i: six colours that stay apart for readers who
    // do not tell red from green (no red against green), the first the blue
    // of the wizard's own chart; then they repeat.
    static QColor curveColor(std::size_t index);

private:
    struct Impl;
    std::unique_ptr<Impl> d_;
};

}  // namespace kelmar
