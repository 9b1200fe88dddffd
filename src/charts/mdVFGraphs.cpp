#include "charts/mdVFGraphs.h"

#include "charts/DrawSurface.h"
#include "model/Format.h"

#include <kelmar/mdKelMain.h>

namespace kelmar {

namespace {
constexpr std::int16_t kPointCount = 32;
// Every eighth score tick carries a label, so five labels share the axis.
constexpr int kScoreLabelEvery = 8;
}  // namespace

void DrawVFChart(DrawSurface& pic, std::int16_t& att, std::int16_t& maxVal) {
    WizardData& w = wizardData();
    QString title = QStringLiteral("Value Function Curve on ") + w.AttName(att).toString().trimmed();

    std::int16_t pointCount = kPointCount;
    std::int16_t seriesCount = 1;
    std::vector<std::vector<float>> table(2, std::vector<float>(kPointCount + 1, 0.0f));

    std::int16_t n = Variant(w.SmpSize(att).toString()).toInteger();
    const std::int16_t last = checkedSub(n, 1);
    if (last < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    VariantArray xs(0, last), ys(0, last), out(0, 4);
    for (int k = 0; k <= last; ++k) {
        xs(k) = w.SmpX(att, k);
        ys(k) = w.SmpY(att, k);
    }
    double scoreMin = w.ScoreMinimum(att).toDouble();
    double scoreMax = w.ScoreMaximum(att).toDouble();
    const double h = (scoreMax - scoreMin) / kPointCount;
    std::int16_t evaluate = -1;
    for (int k = 0; k <= kPointCount; ++k) {
        double x = scoreMin + k * h;
        AkimaInterpolate(xs, ys, n, evaluate, x, out);
        double v = out(4).toDouble();
        if (v > 1.0) {
            v = 1.0;
        } else if (v < 0.0) {
            v = 0.0;
        }
        table[1][static_cast<std::size_t>(k)] = static_cast<float>(v);
    }

    // Value labels from the top of the axis down: 1.00 .. 0.00 or 100 .. 0.
    std::vector<QString> labels;
    for (int i = 4; i >= 0; --i) {
        const double v = maxVal * i / 4.0;
        labels.push_back(fmt::formatNumber(v, maxVal >= 10 ? QStringLiteral("0") : QStringLiteral("0.00")));
    }
    std::int16_t valueTicks = 4;
    DrawVFAxes(pic, title, valueTicks, labels, pointCount, scoreMin, scoreMax);
    double divisor = 1.0;
    DrawVFSeries(pic, pointCount, seriesCount, table, divisor);
}

void DrawVFAxes(DrawSurface& pic, QString& title, std::int16_t& valueTicks,
                std::vector<QString>& valueLabels, std::int16_t& scoreTicks, double& scoreMin,
                double& scoreMax) {
    pic.cls();
    pic.setScale(-14, 110, 120, -14);
    pic.setDrawWidth(1);
    pic.setForeColor(ole::Black);

    pic.setFontBold(true);
    pic.setCurrentX((100 - pic.textWidth(title)) / 2);
    pic.setCurrentY(110 - pic.textHeight(title) / 2);
    pic.print(title);
    pic.setFontBold(false);

    pic.line(0, 0, 0, 100, ole::Black);
    pic.line(0, 0, 100, 0, ole::Black);

    for (int i = 0; i <= scoreTicks; ++i) {
        const float x = static_cast<float>(i) * 100.0f / static_cast<float>(scoreTicks);
        if (i > 0) pic.line(x, 0, x, 100, ole::ButtonFace);
        if (i % kScoreLabelEvery != 0 && i != scoreTicks) continue;
        const double score = scoreMin + i * (scoreMax - scoreMin) / scoreTicks;
        QString label = fmt::formatNumber(score, QStringLiteral("#,##0.###"));
        label = TrimTrailingPoint(label);
        pic.setCurrentX(x - pic.textWidth(label) / 2);
        pic.setCurrentY(-2);
        pic.print(label);
    }

    for (int j = 0; j <= valueTicks; ++j) {
        const double y = 100.0 * (valueTicks - j) / valueTicks;
        if (j < valueTicks) pic.line(0, y, 100, y, ole::ButtonFace);
        if (j >= static_cast<int>(valueLabels.size())) continue;
        const QString& label = valueLabels[static_cast<std::size_t>(j)];
        pic.setCurrentX(-2 - pic.textWidth(label));
        pic.setCurrentY(y + pic.textHeight(label) / 2);
        pic.print(label);
    }

    const QString caption = QStringLiteral("V(s)");
    pic.setCurrentX(-12);
    pic.setCurrentY(108);
    pic.print(caption);

    pic.line(0, 0, 0, 100, qbColor(0));
    pic.line(0, 0, 100, 0, qbColor(0));
    pic.line(100, 100, 100, 0, qbColor(0));
    pic.line(100, 100, 0, 100, qbColor(0));
}

void DrawVFSeries(DrawSurface& pic, std::int16_t& pointCount, std::int16_t& seriesCount,
                  std::vector<std::vector<float>>& table, double& divisor) {
    const int savedWidth = pic.drawWidth();
    pic.setDrawWidth(2);
    for (int s = 1; s <= seriesCount; ++s) {
        const auto& series = table.at(static_cast<std::size_t>(s));
        double x = 0;
        double y = series.at(0) * 100.0 / divisor;
        for (int k = 1; k <= pointCount; ++k) {
            const double x2 = x + 100.0 / pointCount;
            const double y2 = series.at(static_cast<std::size_t>(k)) * 100.0 / divisor;
            pic.line(x, y, x2, y2, qbColor(s + 8));
            x = x2;
            y = y2;
        }
    }
    pic.setDrawWidth(savedWidth);
}

void DrawPanel(DrawSurface& pic, double x1, double y1, double x2, double y2, std::int16_t style) {
    const int savedWidth = pic.drawWidth();
    const OleColor savedColor = pic.foreColor();
    pic.setDrawWidth(1);
    pic.filledBox(x1, y1, x2, y2, ole::ButtonFace);
    const double dx = x2 > x1 ? 0.4 : -0.4;
    const double dy = y2 > y1 ? 0.4 : -0.4;
    const OleColor first = style == 1 ? ole::White : ole::ButtonShadow;
    const OleColor second = style == 1 ? ole::ButtonShadow : ole::White;
    // The edges at (x1, y1) and at (x2, y2).
    pic.line(x1 + dx, y1 + dy, x2 - dx, y1 + dy, first);
    pic.line(x1 + dx, y1 + dy, x1 + dx, y2 - dy, first);
    pic.line(x1 + dx, y2 - dy, x2 - dx, y2 - dy, second);
    pic.line(x2 - dx, y1 + dy, x2 - dx, y2 - dy, second);
    pic.setDrawWidth(savedWidth);
    pic.setForeColor(savedColor);
}

}  // namespace kelmar
