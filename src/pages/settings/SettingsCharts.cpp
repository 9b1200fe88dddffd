#include "pages/settings/SettingsCharts.h"

#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"
#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <QPointF>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace kelmar {

namespace {

using ole::rgb;

constexpr OleColor kInk = rgb(32, 32, 32);
constexpr OleColor kMuted = rgb(96, 96, 96);
constexpr OleColor kGrid = rgb(210, 210, 210);
constexpr OleColor kRange = rgb(40, 96, 168);       // the chosen end points
constexpr OleColor kWidened = rgb(168, 200, 236);   // parts beyond the default range
constexpr OleColor kDefault = rgb(236, 236, 236);   // the default range bar
constexpr OleColor kScore = rgb(200, 80, 32);        // an alternative's score
constexpr OleColor kPaper = rgb(255, 255, 255);

bool numberIn(const Variant& v, double& out) {
    if (v.isEmpty() || v.isArray()) return false;
    try {
        out = v.toDouble();
    } catch (const RuntimeError&) {
        return false;
    }
    return std::isfinite(out);
}

void printAt(DrawSurface& pic, double x, double y, const QString& s) {
    pic.setCurrentX(x);
    pic.setCurrentY(y);
    pic.print(s);
}

void printCentred(DrawSurface& pic, double x, double y, const QString& s) {
    printAt(pic, x - pic.textWidth(s) / 2.0, y, s);
}

// Round tick steps (1, 2 or 5 times a power of ten) for about five ticks.
double tickStep(double span) {
    if (!(span > 0)) return 1.0;
    const double raw = span / 5.0;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double m : {1.0, 2.0, 5.0, 10.0}) {
        if (m * power >= raw) return m * power;
    }
    return 10.0 * power;
}

// The horizontal layout shared by both rows of the scope chart.
struct ScoreAxis {
    double low = 0, high = 1;        // scores at the plot's edges
    double left = 7, right = 93;     // plot edges in user units
    double x(double score) const { return left + (score - low) * (right - left) / (high - low); }
};

ScoreAxis axisFor(double a, double b, double c, double d) {
    ScoreAxis axis;
    const double lo = std::min({a, b, c, d});
    const double hi = std::max({a, b, c, d});
    const double pad = hi > lo ? (hi - lo) * 0.04 : std::max(1.0, std::fabs(lo) * 0.1);
    axis.low = lo - pad;
    axis.high = hi + pad;
    return axis;
}

// The text as it stands if it fits in width user units, otherwise cut short
// with an ellipsis.
QString fitWidth(DrawSurface& pic, const QString& text, double width) {
    if (pic.textWidth(text) <= width) return text;
    const QString ellipsis(QChar(0x2026));
    QString cut = text;
    while (cut.size() > 1 && pic.textWidth(cut + ellipsis) > width) cut.chop(1);
    return cut.trimmed() + ellipsis;
}

QString rangeText(double low, double high) {
    return fmt::formatScore(low) + QStringLiteral(" to ") + fmt::formatScore(high);
}

// The one scope drawing: the default range as a grey bar with the
// alternatives' scores on it, the chosen end points as a blue bar beneath,
// its widened parts lighter, and a score axis.
void drawScope(DrawSurface& pic, std::int16_t att, double hostMin, double hostMax, double scoreMin,
               double scoreMax, bool confirmed) {
    WizardData& w = wizardData();
    pic.cls();
    pic.setBackColor(kPaper);
    pic.setScale(0, 0, 100, 100);
    pic.setDrawWidth(1);

    QString name;
    if (w.AttName.isAllocated() && att >= w.AttName.lbound() && att <= w.AttName.ubound())
        name = w.AttName(att).toString().trimmed();
    pic.setFontPointSize(9);
    pic.setFontBold(true);
    pic.setForeColor(kInk);
    printAt(pic, 3, 2, fitWidth(pic, name, 94));
    pic.setFontBold(false);
    pic.setFontPointSize(8);

    const ScoreAxis axis = axisFor(hostMin, hostMax, scoreMin, scoreMax);
    const double hx1 = axis.x(hostMin), hx2 = axis.x(hostMax);
    const double sx1 = axis.x(scoreMin), sx2 = axis.x(scoreMax);

    // Guides from the ends of the default range down to the axis.
    for (double gx : {hx1, hx2}) {
        for (double y = 50; y < 72; y += 4) pic.line(gx, y, gx, y + 2, kMuted);
    }

    // Default range with the alternatives' scores.
    pic.setForeColor(kMuted);
    printAt(pic, 3, 14, QStringLiteral("Default range: ") + rangeText(hostMin, hostMax));
    pic.filledBox(hx1, 26, std::max(hx2, hx1 + 0.4), 35, kDefault, kMuted);
    if (w.AltPScore.isAllocated() && w.AltPScore.dimensions() == 2 && att >= w.AltPScore.lbound(2) &&
        att <= w.AltPScore.ubound(2)) {
        for (int alt = w.AltPScore.lbound(1); alt <= w.AltPScore.ubound(1); ++alt) {
            double score = 0;
            if (!numberIn(w.AltPScore(alt, att), score)) continue;
            const double x = axis.x(score);
            pic.polygon({QPointF(x, 27.5), QPointF(x + 1.2, 30.5), QPointF(x, 33.5),
                         QPointF(x - 1.2, 30.5)},
                        kScore);
        }
    }

    // Chosen end points; the widened parts lighter.
    pic.setForeColor(kInk);
    QString chosen = QStringLiteral("End points: ") + rangeText(scoreMin, scoreMax);
    if (!confirmed) chosen += QStringLiteral(" (the default range)");
    printAt(pic, 3, 42, chosen);
    pic.filledBox(sx1, 54, std::max(sx2, sx1 + 0.4), 63, kRange, kRange);
    if (sx1 < hx1) pic.filledBox(sx1, 54, hx1, 63, kWidened, kRange);
    if (sx2 > hx2) pic.filledBox(hx2, 54, sx2, 63, kWidened, kRange);
    pic.line(sx1, 51, sx1, 66, kInk);
    pic.line(sx2, 51, sx2, 66, kInk);

    // Score axis.
    pic.line(axis.left, 74, axis.right, 74, kInk);
    const double step = tickStep(axis.high - axis.low);
    const double first = std::ceil(axis.low / step) * step;
    double lastLabelRight = -1e9;
    for (int i = 0; i <= 20; ++i) {
        const double score = first + i * step;
        if (score > axis.high + step * 1e-9) break;
        const double x = axis.x(score);
        pic.line(x, 74, x, 77, kInk);
        QString label = fmt::formatNumber(std::fabs(score) < step * 1e-9 ? 0.0 : score,
                                          QStringLiteral("#,##0.###"));
        label = TrimTrailingPoint(label);
        const double half = pic.textWidth(label) / 2.0;
        if (x - half < lastLabelRight + 1.0 || x - half < 0 || x + half > 100) continue;
        pic.setForeColor(kInk);
        printCentred(pic, x, 78, label);
        lastLabelRight = x + half;
    }

    // Legend.
    pic.setForeColor(kMuted);
    pic.polygon({QPointF(4, 91), QPointF(5.2, 94), QPointF(4, 97), QPointF(2.8, 94)}, kScore);
    printAt(pic, 6.5, 90.5, QStringLiteral("alternatives' scores"));
    if (sx1 < hx1 || sx2 > hx2) {
        pic.filledBox(50, 91, 54, 97, kWidened, kRange);
        printAt(pic, 55.5, 90.5, QStringLiteral("widened beyond the default"));
    }
}

}  // namespace

void DrawScopeFromHostRange(DrawSurface& pic, std::int16_t& att, double& scoreMin,
                            double& scoreMax) {
    drawScope(pic, att, scoreMin, scoreMax, scoreMin, scoreMax, false);
}

void DrawScopeFromWorkingRange(DrawSurface& pic, std::int16_t& att, double& scoreMin,
                               double& scoreMax) {
    WizardData& w = wizardData();
    double hostMin = scoreMin, hostMax = scoreMax;
    numberIn(w.InScoreMinimum(att), hostMin);
    numberIn(w.InScoreMaximum(att), hostMax);
    drawScope(pic, att, hostMin, hostMax, scoreMin, scoreMax, true);
}

namespace {
constexpr double kPlotLeft = 3, kPlotRight = 97;
constexpr double kValueTop = 5, kValueBottom = 80;
}  // namespace

double ValueScaleLevelY(double fraction) {
    return kValueBottom - fraction * (kValueBottom - kValueTop);
}

void DrawValueScaleSample(DrawSurface& pic) {
    pic.cls();
    pic.setBackColor(kPaper);
    pic.setScale(0, 0, 100, 100);
    pic.setDrawWidth(1);
    pic.setFontBold(false);
    pic.setFontPointSize(8);

    for (int i = 0; i <= 4; ++i) {
        const double y = ValueScaleLevelY(i / 4.0);
        pic.line(kPlotLeft, y, kPlotRight, y, i == 0 ? kInk : kGrid);
    }
    pic.line(kPlotLeft, kValueTop, kPlotLeft, kValueBottom, kInk);
    pic.box(kPlotLeft, kValueTop, kPlotRight, kValueBottom, kMuted);

    pic.setDrawWidth(2);
    pic.line(kPlotLeft, ValueScaleLevelY(0), kPlotRight, ValueScaleLevelY(1), kRange);
    pic.setDrawWidth(1);
    pic.filledBox(kPlotLeft - 0.8, ValueScaleLevelY(0) - 1.6, kPlotLeft + 0.8,
                  ValueScaleLevelY(0) + 1.6, kRange, kRange);
    pic.filledBox(kPlotRight - 0.8, ValueScaleLevelY(1) - 1.6, kPlotRight + 0.8,
                  ValueScaleLevelY(1) + 1.6, kRange, kRange);

    pic.setForeColor(kInk);
    printAt(pic, kPlotLeft, 83, QStringLiteral("lowest end point"));
    const QString high = QStringLiteral("highest end point");
    printAt(pic, kPlotRight - pic.textWidth(high), 83, high);
    pic.setForeColor(kMuted);
    printCentred(pic, 50, 91, QStringLiteral("S (performance score)"));
}

}  // namespace kelmar
