// The categorization chart. Its scale runs from -10 to 110 across and from
// 120 (top) down to -90: the chart proper fills 0 .. 100 both ways, the
// level table lies below it.
//
// Across, the chart is the attribute's score range (minimum at 0, maximum
// at 100). Up, it is preference: each ladder level stands at its rank, the
// most preferred level at the top and the least preferred at the bottom, so
// the blue ladder curve (the fractional level of every score, from the
// ladder's inverse) falls or rises by the orientation and the attribute's
// kind. The red points are the levels' values as the analyst ordered them
// (value 1 at the top), at the levels' sample scores; where they leave the
// blue curve, the analyst values the categories unevenly.
#include "pages/techniques/CategoryCharts.h"

#include "charts/DrawSurface.h"
#include "model/Arith.h"
#include "model/CategoryLadder.h"
#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>
#include <array>
#include <vector>

namespace kelmar {

namespace {

constexpr OleColor kBlue = 0xFF0000;   // the level lines of the table, the ladder curve
constexpr OleColor kOlive = 0x008080;  // the level labels
constexpr OleColor kRed = 0x0000FF;    // the table headings, the levels' values
constexpr OleColor kGuide = ole::rgb(0xDC, 0xDC, 0xDC);
constexpr OleColor kFrame = ole::rgb(0x60, 0x60, 0x60);
constexpr OleColor kCaption = ole::rgb(0x40, 0x40, 0x40);
constexpr int kCurveSteps = 96;  // even score steps of the ladder curve, besides the levels

constexpr std::array<const char*, 7> kMaxToMinLabels = {
    "Most Benefitial", "Most / Somewhat Less", "Somewhat Less", "Somewhat Less / Less",
    "Less",            "Less / Much Less",     "Much Less"};
constexpr std::array<const char*, 7> kMinToMaxLabels = {
    "Less Beneficial", "Less / Somewhat More", "Somewhat More", "Somewhat More / More",
    "More",            "More / Much More",     "Much More"};

bool costAttribute(std::int16_t att) { return wizardData().AttPropertyCopy(att).toDouble() != 0.0; }

void printAt(DrawSurface& pic, double x, double y, const QString& text) {
    pic.setCurrentX(x);
    pic.setCurrentY(y);
    pic.print(text);
}

// The height of a (fractional) level: its rank on 0 .. 100, the most
// preferred level at the top. Level 0 is the most preferred on a benefit
// ladder from the maximum and on a cost ladder from the minimum.
double levelHeight(double level, std::int16_t count, bool maxToMin, bool cost) {
    const double rank = checkedDiv(level * 100.0, checkedSub(count, 1));
    return maxToMin != cost ? 100.0 - rank : rank;
}

// The one routine behind DrawBenefitLevels and DrawCostLevels.
void drawLevels(DrawSurface& pic, std::int16_t levelCount, Variant& high, Variant& low,
                bool maxToMin, bool cost) {
    // The frame goes under the lines of the table.
    pic.filledBox(-8.0, -20.0, 108.0, -88.0, ole::White);
    pic.box(-8.0, -20.0, 108.0, -88.0, ole::Black);
    pic.box(-8.0, -20.0, 12.0, -88.0, ole::Black);

    const QString sign = maxToMin ? QStringLiteral(" = Pmax - e") : QStringLiteral(" = Pmin + e");
    for (std::int16_t i = 0; i < levelCount; i = checkedAdd(i, 1)) {
        const double y = -22.0 - 9.5 * i;
        pic.setForeColor(kBlue);
        const QString number = QString::number(i);
        printAt(pic, 14.0, y, QStringLiteral("P") + number + sign + number);
        printAt(pic, 37.0, y,
                QStringLiteral(" = ") + fmt::formatScore(CategoryLevelScore(high, low, levelCount, i, maxToMin)));
        pic.setForeColor(kOlive);
        printAt(pic, 59.0, y, QStringLiteral("Label %1: %2").arg(i).arg(CategoryLevelLabel(i, maxToMin, cost)));
    }

    pic.setForeColor(kRed);
    const QString first = QStringLiteral("Order of ");
    printAt(pic, -5.0, -10.0, first);
    printAt(pic, -5.0 + pic.textWidth(first), -10.0, QStringLiteral("Magnitude"));
    const std::pair<double, QString> cell[] = {
        {-24.0, cost ? QStringLiteral("COST") : QStringLiteral("BENEFIT")},
        {-36.0, QStringLiteral("LEVELS")},
        {-48.0, QStringLiteral("&")},
        {-60.0, QStringLiteral("CATEGORY")},
        {-72.0, QStringLiteral("LABELS")}};
    for (const auto& [y, word] : cell) printAt(pic, 2.0 - pic.textWidth(word) / 2.0, y, word);
}

void drawChart(DrawSurface& pic, std::int16_t att) {
    WizardData& w = wizardData();
    std::int16_t count = w.CategoryCount;
    bool maxToMin = CategoryMaxToMin(att);
    const bool cost = costAttribute(att);
    Variant& high = w.ScoreMaximum(att);
    Variant& low = w.ScoreMinimum(att);
    const double lowScore = low.toDouble();
    const double span = high.toDouble() - lowScore;
    const auto across = [&](double score) { return checkedDiv((score - lowScore) * 100.0, span); };

    pic.cls();
    pic.setScale(-10.0, 120.0, 110.0, -90.0);
    pic.filledBox(0.0, 0.0, 100.0, 100.0, ole::White, kFrame);

    // The ladder: a guide at each level's rank and score.
    std::vector<double> levelScores;
    for (std::int16_t i = 0; i < count; i = checkedAdd(i, 1)) {
        const double score = CategoryLevelScore(high, low, count, i, maxToMin);
        levelScores.push_back(score);
        const double y = levelHeight(i, count, maxToMin, cost);
        pic.line(0.0, y, 100.0, y, kGuide);
        pic.line(across(score), 0.0, across(score), y, kGuide);
        pic.setForeColor(kCaption);
        const QString name = QStringLiteral("P%1").arg(i);
        printAt(pic, -1.5 - pic.textWidth(name), y + pic.textHeight(name) / 2.0, name);
    }

    // The ladder curve from level 0 to the far end: the levels' own scores
    // and even steps between them, each turned back into its level.
    const double nearest = levelScores.front();
    const double farEnd = levelScores.back();
    std::vector<double> scores = levelScores;
    for (int k = 1; k < kCurveSteps; ++k) scores.push_back(nearest + (farEnd - nearest) * k / kCurveSteps);
    std::sort(scores.begin(), scores.end());
    const int savedWidth = pic.drawWidth();
    pic.setDrawWidth(2);
    QPointF previous;
    for (std::size_t k = 0; k < scores.size(); ++k) {
        Variant score(scores[k]);
        const QPointF p(across(scores[k]),
                        levelHeight(CategoryLevelOfScore(high, low, score, count, maxToMin), count,
                                    maxToMin, cost));
        if (k > 0) pic.line(previous.x(), previous.y(), p.x(), p.y(), kBlue);
        previous = p;
    }

    // The levels' values at their sample scores.
    const std::int16_t n = w.SmpSize(att).toInteger();
    for (int k = 0; k < n; ++k) {
        const QPointF p(across(w.SmpX(att, k).toDouble()), 100.0 * w.SmpY(att, k).toDouble());
        if (k > 0) pic.line(previous.x(), previous.y(), p.x(), p.y(), kRed);
        previous = p;
    }
    pic.setDrawWidth(savedWidth);
    for (int k = 0; k < n; ++k) {
        const double x = across(w.SmpX(att, k).toDouble());
        const double y = 100.0 * w.SmpY(att, k).toDouble();
        pic.filledBox(x - 1.0, y - 1.6, x + 1.0, y + 1.6, kRed);
    }

    // The range's ends under the chart, and what the two lines are.
    pic.setForeColor(kCaption);
    printAt(pic, 0.0, -2.0, QStringLiteral("Pmin (") + fmt::formatScore(lowScore) + QStringLiteral(")"));
    const QString right = QStringLiteral("Pmax (") + fmt::formatScore(high.toDouble()) + QStringLiteral(")");
    printAt(pic, 100.0 - pic.textWidth(right), -2.0, right);
    const QString legend[2] = {QStringLiteral("Category levels"), QStringLiteral("Values of the levels")};
    const OleColor colours[2] = {kBlue, kRed};
    double x = 0.0;
    for (int i = 0; i < 2; ++i) {
        pic.line(x, 112.0, x + 6.0, 112.0, colours[i]);
        pic.setForeColor(kCaption);
        printAt(pic, x + 8.0, 112.0 + pic.textHeight(legend[i]) / 2.0, legend[i]);
        x += 16.0 + pic.textWidth(legend[i]);
    }

    if (cost) {
        DrawCostLevels(pic, count, high, low, maxToMin);
    } else {
        DrawBenefitLevels(pic, count, high, low, maxToMin);
    }
}

}  // namespace

QString CategoryLevelLabel(int level, bool maxToMin, bool cost) {
    if (level < 0 || level >= static_cast<int>(kMaxToMinLabels.size()))
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    if (level == 0 && cost) return maxToMin ? QStringLiteral("Most Costly") : QStringLiteral("Less Costly");
    const auto& labels = maxToMin ? kMaxToMinLabels : kMinToMaxLabels;
    return QString::fromLatin1(labels[static_cast<std::size_t>(level)]);
}

void DrawCategoryChart(DrawSurface& pic, std::int16_t& att) { drawChart(pic, att); }

void DragCategoryChart(DrawSurface& pic, std::int16_t& att) { drawChart(pic, att); }

void DrawBenefitLevels(DrawSurface& pic, std::int16_t& levelCount, Variant& high, Variant& low,
                       bool& maxToMin) {
    drawLevels(pic, levelCount, high, low, maxToMin, false);
}

void DrawCostLevels(DrawSurface& pic, std::int16_t& levelCount, Variant& high, Variant& low,
                    bool& maxToMin) {
    drawLevels(pic, levelCount, high, low, maxToMin, true);
}

}  // namespace kelmar
