#include <kelmar/ValueFunctionChart.h>

#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelmar {

namespace {

// QBColor numbers: the bright blue of the page chart first, then colours
// that stay apart from it and from each other on a white ground.
constexpr std::array<int, 12> kCurveColors = {9, 12, 10, 13, 4, 1, 2, 5, 6, 3, 11, 8};

constexpr std::int16_t kPointCount = 32;
constexpr double kLegendPoint = 7.0;
constexpr double kLegendSwatch = 5.0;
constexpr double kLegendPad = 1.0;
constexpr double kMarkHalf = 0.8;

OleColor curveOle(std::size_t index) {
    return qbColor(kCurveColors[index % kCurveColors.size()]);
}

// The box coordinate (0 .. 100) of a score on the chart's axis.
double boxX(double score, double scoreMin, double scoreMax) {
    return std::clamp((score - scoreMin) / (scoreMax - scoreMin) * 100.0, 0.0, 100.0);
}

// The legend stands in the corner of the box that the curves cross least.
void drawLegend(DrawSurface& pic, const std::vector<QString>& labels,
                const std::vector<std::vector<float>>& tables,
                const std::vector<OleColor>& colors) {
    pic.setFontBold(false);
    pic.setFontPointSize(kLegendPoint);
    double widest = 0;
    for (const QString& l : labels) widest = std::max(widest, pic.textWidth(l));
    const double line = pic.textHeight(QStringLiteral("Xg"));
    const double w = std::min(100.0, kLegendPad * 3 + kLegendSwatch + widest);
    const double h = kLegendPad * 2 + line * static_cast<double>(labels.size());

    // Corners as the left and top edge of the legend (y grows upwards).
    const std::array<QPointF, 4> corners = {QPointF(1, 99), QPointF(99 - w, h + 1),
                                            QPointF(99 - w, 99), QPointF(1, h + 1)};
    std::size_t best = 0;
    int fewest = -1;
    for (std::size_t c = 0; c < corners.size(); ++c) {
        int crossing = 0;
        for (const std::vector<float>& t : tables) {
            for (std::size_t k = 0; k < t.size(); ++k) {
                const double x = 100.0 * static_cast<double>(k) / kPointCount;
                const double y = 100.0 * t[k];
                crossing += x >= corners[c].x() - 2 && x <= corners[c].x() + w + 2 &&
                                    y <= corners[c].y() + 2 && y >= corners[c].y() - h - 2
                                ? 1
                                : 0;
            }
        }
        if (fewest < 0 || crossing < fewest) {
            fewest = crossing;
            best = c;
        }
    }
    const double left = corners[best].x();
    const double top = corners[best].y();
    pic.setDrawWidth(1);
    pic.filledBox(left, top, left + w, top - h, ole::White, qbColor(8));
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const double rowTop = top - kLegendPad - line * static_cast<double>(i);
        const double mid = rowTop - line / 2;
        pic.setDrawWidth(2);
        pic.line(left + kLegendPad, mid, left + kLegendPad + kLegendSwatch, mid, colors[i]);
        pic.setDrawWidth(1);
        pic.setCurrentX(left + kLegendPad * 2 + kLegendSwatch);
        pic.setCurrentY(rowTop);
        pic.setForeColor(ole::Black);
        pic.print(labels[i]);
    }
}

}  // namespace

struct ValueFunctionChart::Impl {
    DrawSurface surface;
};

ValueFunctionChart::ValueFunctionChart() : d_(std::make_unique<Impl>()) {
    d_->surface.setDesignSize(QSize(520, 320));
}

ValueFunctionChart::~ValueFunctionChart() = default;

QSize ValueFunctionChart::designSize() const { return d_->surface.designSize(); }

QColor ValueFunctionChart::curveColor(std::size_t index) { return toQColor(curveOle(index)); }

void ValueFunctionChart::draw(const QString& attributeName, double scoreMinimum,
                              double scoreMaximum, std::int16_t maxVal,
                              const std::vector<ChartCurve>& curves,
                              const std::vector<QPointF>& marks) {
    DrawSurface& pic = d_->surface;
    QString title = QStringLiteral("Value Function Curve on ") + attributeName.trimmed();
    std::int16_t pointCount = kPointCount;
    std::int16_t valueTicks = 4;
    std::vector<QString> labels = ValueLabels(maxVal, valueTicks);
    DrawVFAxes(pic, title, valueTicks, labels, pointCount, scoreMinimum, scoreMaximum);

    std::vector<std::vector<float>> tables;
    std::vector<QString> names;
    std::vector<OleColor> colors;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const ChartCurve& c = curves[i];
        const std::size_t n = std::min(c.scores.size(), c.values.size());
        if (n == 0) continue;
        VariantArray xs(0, static_cast<int>(n) - 1), ys(0, static_cast<int>(n) - 1);
        for (std::size_t k = 0; k < n; ++k) {
            xs(static_cast<int>(k)) = c.scores[k];
            ys(static_cast<int>(k)) = c.values[k];
        }
        std::int16_t count = static_cast<std::int16_t>(std::min<std::size_t>(n, 32767));
        tables.push_back(SampleCurve(xs, ys, count, scoreMinimum, scoreMaximum));
        names.push_back(c.label);
        colors.push_back(curveOle(i));
    }
    // In order: the last curve (a host's current one) lies on top.
    for (std::size_t i = 0; i < tables.size(); ++i)
        DrawVFCurve(pic, tables[i], pointCount, 1.0, colors[i]);

    // Square marks: as many units high as make them as tall as they are wide.
    const QSize design = pic.designSize();
    const double halfY = kMarkHalf * (std::abs(pic.scaleHeight()) / design.height()) /
                         (pic.scaleWidth() / design.width());
    pic.setDrawWidth(1);
    for (const QPointF& m : marks) {
        const double x = boxX(m.x(), scoreMinimum, scoreMaximum);
        const double y = std::clamp(m.y(), 0.0, 1.0) * 100.0;
        pic.filledBox(x - kMarkHalf, y - halfY, x + kMarkHalf, y + halfY, ole::DarkGrey);
    }
    if (names.size() >= 2) drawLegend(pic, names, tables, colors);
}

void ValueFunctionChart::paint(QPainter& painter, QSizeF size) const {
    d_->surface.replay(painter, size);
}

}  // namespace kelmar
