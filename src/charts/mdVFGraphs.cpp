#include "charts/mdVFGraphs.h"

#include "charts/DrawSurface.h"
#include "charts/TurnBacks.h"
#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>
#include <cmath>

namespace kelmar {

namespace {

constexpr std::int16_t kPointCount = 32;

// The plot box is 0..100 by 0..100 inside this scale.
constexpr double kScaleLeft = -14;
constexpr double kScaleTop = 110;
constexpr double kScaleRight = 120;
constexpr double kScaleBottom = -14;

// Label placement, in user units: score labels hang from y = -2 under
// their tick, value labels end 2 units left of the axis.
constexpr double kScoreLabelTop = -2;
constexpr double kValueLabelGap = 2;
// Horizontal room kept free between two neighbouring score labels (about
// two digits), so a row of decimal labels stays easy to read.
constexpr double kScoreLabelSpacing = 4;

constexpr double kLabelPoint = 8.0;
constexpr double kTitlePoint = 9.0;
constexpr double kTitleMinPoint = 6.0;

// The window background: the grid lines in the button-face colour need a
// lighter ground to be seen.
constexpr OleColor kChartBack = 0x80000005;

// The score of tick i of count: the ends are copied, the steps in between
// are formed in single precision.
double tickScore(int i, int count, double scoreMin, double scoreMax) {
    if (i == 0) return scoreMin;
    if (i == count) return scoreMax;
    const float step = csng((scoreMax - scoreMin) / count);
    return scoreMin + static_cast<double>(static_cast<float>(i) * step);
}

QString scoreLabel(double score) {
    QString label = fmt::formatNumber(score, QStringLiteral("#,##0.###"));
    return TrimTrailingPoint(label);
}

// Every how many score ticks a label is printed: the smallest step that
// divides the tick count, keeps the widest label clear of its neighbours and
// gives neighbouring labels different texts (on a narrow range the rounding
// to three decimals would repeat them). Both ends are always labelled.
int scoreLabelStep(DrawSurface& pic, int count, double scoreMin, double scoreMax) {
    if (count <= 0) return 1;
    std::vector<QString> labels;
    double widest = 0;
    for (int i = 0; i <= count; ++i) {
        labels.push_back(scoreLabel(tickScore(i, count, scoreMin, scoreMax)));
        widest = std::max(widest, pic.textWidth(labels.back()));
    }
    for (int step = 1; step < count; ++step) {
        if (count % step != 0) continue;
        if (widest + kScoreLabelSpacing > step * 100.0 / count) continue;
        bool distinct = true;
        for (int i = step; i <= count && distinct; i += step)
            distinct = labels[static_cast<std::size_t>(i)] != labels[static_cast<std::size_t>(i - step)];
        if (distinct) return step;
    }
    return count;
}

// The title's font: as large as fits in the band above the plot box (the
// title hangs one text line below the top of the scale, and its baseline
// must stay clear of the frame) and within the box's width. A name too long
// even for the smallest size is cut short with an ellipsis.
QString fitTitle(DrawSurface& pic, const QString& title) {
    pic.setFontBold(true);
    const double gap = 1.5;
    double pt = kTitlePoint;
    for (; pt > kTitleMinPoint; pt -= 0.5) {
        pic.setFontPointSize(pt);
        const bool fitsBand = pic.textHeight(title) + pic.textAscent() <= kScaleTop - 100 - gap;
        if (fitsBand && pic.textWidth(title) <= 100) return title;
    }
    pic.setFontPointSize(kTitleMinPoint);
    if (pic.textWidth(title) <= 100) return title;
    const QString ellipsis(QChar(0x2026));
    QString cut = title;
    while (cut.size() > 1 && pic.textWidth(cut + ellipsis) > 100) cut.chop(1);
    return cut.trimmed() + ellipsis;
}

// The value labels' font: the label size, made smaller in half points (down
// to the title's smallest size) until the widest label fits in the margin
// left of the value axis, one unit clear of the picture's edge.
void fitValueLabels(DrawSurface& pic, const std::vector<QString>& labels) {
    const double room = -kScaleLeft - kValueLabelGap - 1;
    for (double pt = kLabelPoint; pt >= kTitleMinPoint; pt -= 0.5) {
        pic.setFontPointSize(pt);
        double widest = 0;
        for (const QString& label : labels) widest = std::max(widest, pic.textWidth(label));
        if (widest <= room) return;
    }
}

}  // namespace

std::vector<float> SampleCurve(VariantArray& xs, VariantArray& ys, std::int16_t& n,
                               double scoreMin, double scoreMax) {
    std::vector<float> curve(kPointCount + 1, 0.0f);
    VariantArray out(0, 4);
    const float h = csng((scoreMax - scoreMin) / kPointCount);
    std::int16_t evaluate = -1;
    for (int k = 0; k <= kPointCount; ++k) {
        double x = scoreMin + static_cast<double>(static_cast<float>(k) * h);
        AkimaInterpolate(xs, ys, n, evaluate, x, out);
        double v = out(4).toDouble();
        if (v > 1.0) {
            v = 1.0;
        } else if (v < 0.0) {
            v = 0.0;
        }
        curve[static_cast<std::size_t>(k)] = static_cast<float>(v);
    }
    return curve;
}

std::vector<QString> ValueLabels(std::int16_t maxVal, std::int16_t valueTicks) {
    // Labels 0 .. maxVal in equal steps, index i at the height i/ticks of
    // the box, all formatted "0.00" ("0.00" .. "1.00", or "0.00" .. "100.00").
    std::vector<QString> labels;
    for (int i = 0; i <= valueTicks; ++i) {
        const float v = static_cast<float>(maxVal) * static_cast<float>(i) / valueTicks;
        labels.push_back(fmt::formatNumber(v, QStringLiteral("0.00")));
    }
    return labels;
}

std::vector<float> SampleAttributeCurve(std::int16_t att) {
    WizardData& w = wizardData();
    std::int16_t n = w.SmpSize(att).toInteger();
    const std::int16_t last = checkedSub(n, 1);
    if (last < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    VariantArray xs(0, last), ys(0, last);
    for (int k = 0; k <= last; ++k) {
        xs(k) = w.SmpX(att, k);
        ys(k) = w.SmpY(att, k);
    }
    double scoreMin = w.ScoreMinimum(att).toDouble();
    double scoreMax = w.ScoreMaximum(att).toDouble();
    return SampleCurve(xs, ys, n, scoreMin, scoreMax);
}

std::vector<TurnBack> DrawVFChart(DrawSurface& pic, std::int16_t& att, std::int16_t& maxVal) {
    WizardData& w = wizardData();
    QString title = QStringLiteral("Value Function Curve on ") + w.AttName(att).toString().trimmed();

    std::int16_t pointCount = kPointCount;
    std::int16_t seriesCount = 1;

    std::vector<std::vector<float>> table(2, std::vector<float>(kPointCount + 1, 0.0f));
    table[1] = SampleAttributeCurve(att);
    double scoreMin = w.ScoreMinimum(att).toDouble();
    double scoreMax = w.ScoreMaximum(att).toDouble();

    std::int16_t valueTicks = 4;
    std::vector<QString> labels = ValueLabels(maxVal, valueTicks);
    DrawVFAxes(pic, title, valueTicks, labels, pointCount, scoreMin, scoreMax);
    std::vector<TurnBack> turnBacks = TurnBackStretches(table[1], scoreMin, scoreMax, CostOrientedAttribute(att));
    ShadeTurnBacks(pic, turnBacks, scoreMin, scoreMax);
    double divisor = 1.0;
    DrawVFSeries(pic, pointCount, seriesCount, table, divisor);
    return turnBacks;
}

void SetVFChartScale(DrawSurface& pic) {
    pic.setScale(kScaleLeft, kScaleTop, kScaleRight, kScaleBottom);
}

void DrawVFAxes(DrawSurface& pic, QString& title, std::int16_t& valueTicks,
                std::vector<QString>& valueLabels, std::int16_t& scoreTicks, double& scoreMin,
                double& scoreMax) {
    pic.setBackColor(kChartBack);
    pic.cls();
    SetVFChartScale(pic);
    pic.setDrawWidth(1);
    pic.setForeColor(qbColor(0));

    const QString shown = fitTitle(pic, title);
    pic.setCurrentX((100 - pic.textWidth(shown)) / 2);
    pic.setCurrentY(kScaleTop - pic.textHeight(shown));
    pic.print(shown);
    pic.setFontBold(false);
    pic.setFontPointSize(kLabelPoint);

    pic.line(0, 0, 0, 100, qbColor(0));
    pic.line(0, 0, 100, 0, qbColor(0));

    const int labelStep = scoreLabelStep(pic, scoreTicks, scoreMin, scoreMax);
    for (int i = 0; i <= scoreTicks; ++i) {
        const float x = static_cast<float>(i) * 100.0f / static_cast<float>(scoreTicks);
        pic.line(x, 0, x, 100, ole::ButtonFace);
        if (i % labelStep != 0) continue;
        const QString label = scoreLabel(tickScore(i, scoreTicks, scoreMin, scoreMax));
        pic.setCurrentX(x - pic.textWidth(label) / 2);
        pic.setCurrentY(kScoreLabelTop);
        pic.print(label);
    }

    fitValueLabels(pic, valueLabels);
    for (int i = 0; i <= valueTicks; ++i) {
        const double y = 100.0 * i / valueTicks;
        pic.line(0, y, 100, y, ole::ButtonFace);
        if (i >= static_cast<int>(valueLabels.size())) continue;
        const QString& label = valueLabels[static_cast<std::size_t>(i)];
        pic.setCurrentX(-kValueLabelGap - pic.textWidth(label));
        pic.setCurrentY(y + pic.textHeight(label) / 2);
        pic.print(label);
    }

    // The caption stands right-aligned with the value labels, just above
    // the top one.
    const QString caption = QStringLiteral("V(s)");
    const double lineHeight = pic.textHeight(caption);
    pic.setCurrentX(-kValueLabelGap - pic.textWidth(caption));
    pic.setCurrentY(std::min(100 + 1.5 * lineHeight, kScaleTop));
    pic.print(caption);

    pic.line(0, 0, 0, 100, qbColor(0));
    pic.line(0, 0, 100, 0, qbColor(0));
    pic.line(100, 100, 100, 0, qbColor(0));
    pic.line(100, 100, 0, 100, qbColor(0));
}

void DrawVFSeries(DrawSurface& pic, std::int16_t& pointCount, std::int16_t& seriesCount,
                  std::vector<std::vector<float>>& table, double& divisor) {
    for (int s = 1; s <= seriesCount; ++s)
        DrawVFCurve(pic, table.at(static_cast<std::size_t>(s)), pointCount, divisor, qbColor(s + 8));
}

void DrawVFCurve(DrawSurface& pic, const std::vector<float>& series, std::int16_t pointCount,
                 double divisor, OleColor color) {
    const int savedWidth = pic.drawWidth();
    pic.setDrawWidth(2);
    double x = 0;
    double y = series.at(0) * 100.0 / divisor;
    for (int k = 1; k <= pointCount; ++k) {
        const double x2 = x + 100.0 / pointCount;
        const double y2 = series.at(static_cast<std::size_t>(k)) * 100.0 / divisor;
        pic.line(x, y, x2, y2, color);
        x = x2;
        y = y2;
    }
    pic.setDrawWidth(savedWidth);
}

void DrawPanel(DrawSurface& pic, double x1, double y1, double x2, double y2, std::int16_t style) {
    const int savedWidth = pic.drawWidth();
    const OleColor savedColor = pic.foreColor();
    const double savedX = pic.currentX();
    const double savedY = pic.currentY();
    pic.setDrawWidth(1);
    pic.filledBox(x1, y1, x2, y2, ole::ButtonFace);

    // Which of the given edges appear at the top and at the left depends on
    // the direction of the user scale.
    const bool yDown = pic.scaleHeight() > 0;
    const bool xRight = pic.scaleWidth() > 0;
    const double top = yDown ? std::min(y1, y2) : std::max(y1, y2);
    const double bottom = yDown ? std::max(y1, y2) : std::min(y1, y2);
    const double left = xRight ? std::min(x1, x2) : std::max(x1, x2);
    const double right = xRight ? std::max(x1, x2) : std::min(x1, x2);
    const double inY = yDown ? 0.4 : -0.4;
    const double inX = xRight ? 0.4 : -0.4;
    const double t = top + inY, b = bottom - inY, l = left + inX, r = right - inX;

    const OleColor lit = style == 2 ? ole::ButtonShadow : ole::White;
    const OleColor shaded = style == 2 ? ole::White : ole::ButtonShadow;
    pic.line(l, t, r, t, lit);
    pic.line(l, t, l, b, lit);
    pic.line(l, b, r, b, shaded);
    pic.line(r, t, r, b, shaded);

    pic.setDrawWidth(savedWidth);
    pic.setForeColor(savedColor);
    pic.setCurrentX(savedX);
    pic.setCurrentY(savedY);
}

}  // namespace kelmar
