// Drawing routines shared by the pages (module mdVFGraphs).
#pragma once

#include "model/Consistency.h"

#include <kelmar/Variant.h>

#include <QString>

#include <cstdint>
#include <vector>

namespace kelmar {

class DrawSurface;

// The value function chart of attribute att: title, the 33-point curve
// (clipped to 0..1), axes, grid, tick labels and the "V(s)" caption.
// maxVal (1 or 100) chooses the value labels. Where the curve turns back
// it lies on a shaded ground; the result is those stretches.
std::vector<TurnBack> DrawVFChart(DrawSurface& pic, std::int16_t& att, std::int16_t& maxVal);
// The curve of attribute att through its sample points at the chart's
// scores (SampleCurve); error 9 for an attribute without points.
std::vector<float> SampleAttributeCurve(std::int16_t att);

// The user scale of the value function chart, in which the plot box runs
// from 0 to 100 both ways (values upwards); the axes routine sets it, and a
// page that places marks on the chart before its first drawing sets it too.
void SetVFChartScale(DrawSurface& pic);
// The curve through n sample points (xs, ys from 0), evaluated at the 33
// scores of the chart's score axis and cut to 0 .. 1.
std::vector<float> SampleCurve(VariantArray& xs, VariantArray& ys, std::int16_t& n,
                               double scoreMin, double scoreMax);
// The value axis labels 0 .. maxVal in valueTicks equal steps, "0.00".
std::vector<QString> ValueLabels(std::int16_t maxVal, std::int16_t valueTicks);

// The axes routine: clears the picture and draws frame, grid, title, labels.
void DrawVFAxes(DrawSurface& pic, QString& title, std::int16_t& valueTicks,
                std::vector<QString>& valueLabels, std::int16_t& scoreTicks, double& scoreMin,
                double& scoreMax);

// The series routine: each series 1..seriesCount of table (series x point)
// as a polyline in QBColor(s + 8), pen width 2.
void DrawVFSeries(DrawSurface& pic, std::int16_t& pointCount, std::int16_t& seriesCount,
                  std::vector<std::vector<float>>& table, double& divisor);

// One series as a polyline of pointCount segments across the box, pen
// width 2.
void DrawVFCurve(DrawSurface& pic, const std::vector<float>& series, std::int16_t pointCount,
                 double divisor, std::uint32_t color);

// A raised (style 1) or sunken (style 2) panel filled with the button face.
void DrawPanel(DrawSurface& pic, double x1, double y1, double x2, double y2, std::int16_t style);

// The ground of a rating chart: clears the picture, sets the scale -8 .. 108
// across and -3 (top) .. 112 (bottom), and draws the button-face ground, the
// white rating area (0 .. 78) and the band under it (80 .. 102) on which the
// marks lie.
void DrawRatingFrame(DrawSurface& pic);

// One decoration band of the Direct Rating chart: a pale band over the
// rating area between the scale positions lo and hi (band 1, 2 or 3), named
// by the part of the value range it covers. falling: the attribute's values
// fall along the scale (a cost attribute).
void DrawRatingBand(DrawSurface& pic, std::int16_t band, double lo, double hi,
                    bool falling = false);

}  // namespace kelmar
