#include <kelmar/ValueFunctionChart.h>

#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelmar {

namespace {

// The bright blue of the page chart first, then orange, bluish green,
// reddish purple, sky blue and wine: they differ in lightness and along the
// blue-yellow axis, so they stay apart from each other and from a white
// ground for readers who confuse red and green.
constexpr std::array<OleColor, 6> kCurveColors = {
    ole::rgb(0x00, 0x00, 0xFF), ole::rgb(0xE6, 0x9F, 0x00), ole::rgb(0x00, 0x9E, 0x73),
    ole::rgb(0xCC, 0x79, 0xA7), ole::rgb(0x56, 0xB4, 0xE9), ole::rgb(0x88, 0x22, 0x55)};

constexpr std::int16_t kPointCount = 32;
constexpr double kLegendPoint = 7.0;
constexpr double kLegendSwatch = 5.0;
constexpr double kLegendPad = 1.0;
constexpr double kMarkHalf = 0.8;
constexpr double kNotePoint = 6.5;  // mark names, guide captions, the score caption
constexpr double kNotePad = 0.6;

OleColor curveOle(std::size_t index) { return kCurveColors[index % kCurveColors.size()]; }

// A text's box in user units: left, top, right, bottom (y grows upwards).
struct TextBox {
    double left, top, right, bottom;
    bool overlaps(const TextBox& o) const {
        return left < o.right && o.left < right && bottom < o.top && o.bottom < top;
    }
    bool inside(double l, double t, double r, double b) const {
        return left >= l && right <= r && top <= t && bottom >= b;
    }
};

// Prints text in the box (its top-left corner at the box's); the curves
// stay visible through it.
void printNote(DrawSurface& pic, const TextBox& box, const QString& text, OleColor color) {
    pic.setForeColor(color);
    pic.setCurrentX(box.left + kNotePad / 2);
    pic.setCurrentY(box.top);
    pic.print(text);
    pic.setForeColor(ole::Black);
}

// A w by h box beside (x, y), gapX and gapY away from it: to the right or
// left of it, above or below it.
TextBox boxBeside(QPointF at, QSizeF size, QSizeF gap, bool right, bool above) {
    const double left = right ? at.x() + gap.width() : at.x() - gap.width() - size.width();
    const double top = above ? at.y() + gap.height() + size.height() : at.y() - gap.height();
    return {left, top, left + size.width(), top - size.height()};
}

// Names beside the marks, each where it overlaps no name placed before it
// and stays in the box (right and above first); a name without such a
// place is left out rather than printed over another.
void drawMarkNames(DrawSurface& pic, const std::vector<QPointF>& at,
                   const std::vector<QString>& names, QSizeF markHalf, std::vector<TextBox>& taken) {
    pic.setFontBold(false);
    pic.setFontPointSize(kNotePoint);
    const double h = pic.textHeight(QStringLiteral("Xg"));
    for (std::size_t i = 0; i < at.size() && i < names.size(); ++i) {
        if (names[i].isEmpty()) continue;
        const double w = pic.textWidth(names[i]) + kNotePad;
        for (const auto& [right, above] : {std::pair{true, true}, std::pair{true, false},
                                           std::pair{false, true}, std::pair{false, false}}) {
            const TextBox b = boxBeside(at[i], {w, h}, markHalf, right, above);
            const bool free = std::none_of(taken.begin(), taken.end(),
                                           [&](const TextBox& t) { return t.overlaps(b); });
            if (!free || !b.inside(0, 100, 100, 0)) continue;
            printNote(pic, b, names[i], ole::DarkGrey);
            taken.push_back(b);
            break;
        }
    }
}

// A guide: the line at its score in its curve's colour, the caption at the
// line's middle, on whichever side has room.
void drawGuide(DrawSurface& pic, const ChartGuide& g, double x, std::vector<TextBox>& taken) {
    const OleColor color = g.curve < 0 ? ole::Black : curveOle(static_cast<std::size_t>(g.curve));
    const double from = std::clamp(g.from, 0.0, 1.0) * 100.0;
    const double to = std::clamp(g.to, 0.0, 1.0) * 100.0;
    pic.setDrawWidth(1);
    pic.line(x, from, x, to, color);
    // Short ends mark how far a difference reaches.
    if (std::abs(to - from) < 100.0) {
        pic.line(x - 1, from, x + 1, from, color);
        pic.line(x - 1, to, x + 1, to, color);
    }
    if (g.caption.isEmpty()) return;
    pic.setFontBold(false);
    pic.setFontPointSize(kNotePoint);
    const double w = pic.textWidth(g.caption) + kNotePad;
    const double h = pic.textHeight(g.caption);
    const double mid = std::clamp((from + to) / 2 + h / 2, h, 100.0);
    TextBox b = boxBeside({x, mid}, {w, h}, {kNotePad, 0}, x + kNotePad + w <= 100, false);
    b.left = std::max(0.0, b.left);
    b.right = b.left + w;
    printNote(pic, b, g.caption, color);
    taken.push_back(b);
}

// The caption of the score axis, centred under its labels.
void drawScoreCaption(DrawSurface& pic, const QString& caption) {
    pic.setFontBold(false);
    pic.setFontPointSize(8.0);
    const double labelHeight = pic.textHeight(QStringLiteral("0"));
    pic.setFontPointSize(kNotePoint + 0.5);
    QString shown = caption;
    const QString ellipsis(QChar(0x2026));
    while (shown.size() > 1 && pic.textWidth(shown) > 100) shown = shown.chopped(2) + ellipsis;
    pic.setCurrentX((100 - pic.textWidth(shown)) / 2);
    pic.setCurrentY(-2 - labelHeight - 0.5);
    pic.setForeColor(ole::Black);
    pic.print(shown);
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
        pic.setTextFromLeft(true);
        pic.print(labels[i]);
        pic.setTextFromLeft(false);
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
                              const std::vector<QPointF>& marks, const ChartExtras& extras) {
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
    if (!extras.scoreCaption.trimmed().isEmpty()) drawScoreCaption(pic, extras.scoreCaption.trimmed());
    // Guides lie under the curves, which stay whole.
    std::vector<TextBox> taken;
    for (const ChartGuide& g : extras.guides)
        drawGuide(pic, g, boxX(g.score, scoreMinimum, scoreMaximum), taken);
    // In order: the last curve (a host's current one) lies on top.
    for (std::size_t i = 0; i < tables.size(); ++i)
        DrawVFCurve(pic, tables[i], pointCount, 1.0, colors[i]);

    // Square marks: as many units high as make them as tall as they are wide.
    const QSize design = pic.designSize();
    const double halfY = kMarkHalf * (std::abs(pic.scaleHeight()) / design.height()) /
                         (pic.scaleWidth() / design.width());
    pic.setDrawWidth(1);
    std::vector<QPointF> at;
    at.reserve(marks.size());
    for (const QPointF& m : marks) {
        const double x = boxX(m.x(), scoreMinimum, scoreMaximum);
        const double y = std::clamp(m.y(), 0.0, 1.0) * 100.0;
        pic.filledBox(x - kMarkHalf, y - halfY, x + kMarkHalf, y + halfY, ole::DarkGrey);
        at.emplace_back(x, y);
        // A name never covers a mark.
        taken.push_back({x - kMarkHalf, y + halfY, x + kMarkHalf, y - halfY});
    }
    drawMarkNames(pic, at, extras.markNames, {kMarkHalf, halfY}, taken);
    if (names.size() >= 2) drawLegend(pic, names, tables, colors);
}

void ValueFunctionChart::paint(QPainter& painter, QSizeF size) const {
    d_->surface.replay(painter, size);
}

}  // namespace kelmar
