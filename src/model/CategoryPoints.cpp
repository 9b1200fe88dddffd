// The order-of-magnitude ladder of the category technique and its three
// ways of preparing an attribute's points.
//
// The category points are the ladder's levels in score order: point k lies
// at the score of its level, except that the level nearest each end of the
// range stands for that end, so point 0 is at the minimum score and the last
// point at the maximum. The points' values are read off the attribute's
// function as it stands (the straight line for a linear function, the curve
// through its points otherwise), cut to 0 .. 1, with the end values of the
// attribute's orientation.
#include "model/AkimaCore.h"
#include "model/Arith.h"
#include "model/CategoryLadder.h"
#include "model/ScoreSequence.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace kelmar {

namespace {

bool costAttribute(const WizardData& w, std::int16_t att) {
    return w.AttPropertyCopy(att).toDouble() != 0.0;
}

// The straight line of the attribute's orientation read at the scores.
std::vector<double> lineValues(WizardData& w, std::int16_t att, const std::vector<double>& scores) {
    std::vector<double> values(scores.size());
    const double low = w.ScoreMinimum(att).toDouble();
    const double span = w.ScoreMaximum(att).toDouble() - low;
    const bool cost = costAttribute(w, att);
    for (std::size_t k = 0; k < scores.size(); ++k) {
        const double v = checkedDiv(scores[k] - low, span);
        values[k] = cost ? 1.0 - v : v;
    }
    return values;
}

// The attribute's function read at the given scores: the line when the
// function is linear or has fewer than two points, the curve through its
// first `size` points otherwise.
std::vector<double> readFunction(WizardData& w, std::int16_t att, std::int16_t size,
                                 const std::vector<double>& scores) {
    if (isLinearType(w.VFunType(att)) || size < 2) return lineValues(w, att, scores);
    std::vector<double> values(scores.size());
    std::vector<double> xs(static_cast<std::size_t>(size)), ys(xs.size());
    for (int k = 0; k < size; ++k) {
        xs[static_cast<std::size_t>(k)] = w.SmpX(att, k).toDouble();
        ys[static_cast<std::size_t>(k)] = w.SmpY(att, k).toDouble();
    }
    double out[5];
    for (std::size_t k = 0; k < scores.size(); ++k) {
        double x = scores[k];
        akimaCore(DoubleCells{xs.data()}, DoubleCells{ys.data()}, size, true, x, out);
        values[k] = out[4];
    }
    KeepValuesInOrder(xs, ys, scores, values, costAttribute(w, att));
    return values;
}

// Stores v in a cell unless the cell already holds that number, so that
// laying points out again where they lie leaves their cells as they are.
void store(Variant& cell, double v) {
    if (cell.isNumeric() && !cell.isEmpty() && cell.toDouble() == v && std::signbit(cell.toDouble()) == std::signbit(v))
        return;
    cell = v;
}

// Writes the ladder's n points of the attribute with the given values (in
// point order); the end scores are the range's own, copied.
void layOnLadder(WizardData& w, std::int16_t att, std::int16_t n, const std::vector<double>& scores,
                 const std::vector<double>& values) {
    const std::int16_t last = checkedSub(n, 1);
    const bool cost = costAttribute(w, att);
    std::vector<Variant> before;
    for (std::int16_t k = 0; k <= last; ++k) {
        before.push_back(w.SmpX(att, k));
        before.push_back(w.SmpY(att, k));
    }
    for (std::int16_t k = 1; k < last; ++k) {
        store(w.SmpX(att, k), scores[static_cast<std::size_t>(k)]);
        store(w.SmpY(att, k), std::clamp(values[static_cast<std::size_t>(k)], 0.0, 1.0));
    }
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, last) = w.ScoreMaximum(att);
    w.SmpY(att, 0) = std::int16_t(cost ? 1 : 0);
    w.SmpY(att, last) = std::int16_t(cost ? 0 : 1);
    // Points laid out again where they lay keep the middle score they had.
    for (std::int16_t k = 0; k <= last; ++k) {
        if (!sameCell(before[2 * static_cast<std::size_t>(k)], w.SmpX(att, k)) ||
            !sameCell(before[2 * static_cast<std::size_t>(k) + 1], w.SmpY(att, k))) {
            StoreScoreMiddle(att, ComputeScoreMiddle(att));
            return;
        }
    }
}

// The function as it stands (its first `oldSize` points) moved onto the
// ladder of n points.
void moveOntoLadder(std::int16_t att, std::int16_t n, std::int16_t oldSize) {
    WizardData& w = wizardData();
    const std::vector<double> scores = CategorySampleScores(att, n);
    const std::vector<double> values = readFunction(w, att, oldSize, scores);
    w.SmpSize(att) = n;
    layOnLadder(w, att, n, scores, values);
}

// The cells of att's function that a turn of its ladder may change: the
// size, the middle score and every sample cell, the orientation entry too.
std::vector<Variant> turnCells(WizardData& w, std::int16_t att) {
    std::vector<Variant> cells{w.SmpSize(att), w.ScoreMiddle(att)};
    for (int k = 0; k <= kOrientationEntry; ++k) {
        cells.push_back(w.SmpX(att, k));
        cells.push_back(w.SmpY(att, k));
    }
    return cells;
}

void putTurnCells(WizardData& w, std::int16_t att, const std::vector<Variant>& cells) {
    auto cell = cells.begin();
    w.SmpSize(att) = *cell++;
    w.ScoreMiddle(att) = *cell++;
    for (int k = 0; k <= kOrientationEntry; ++k) {
        w.SmpX(att, k) = *cell++;
        w.SmpY(att, k) = *cell++;
    }
}

bool sameCells(const std::vector<Variant>& a, const std::vector<Variant>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), sameCell);
}

}  // namespace

void TurnCategoryLadder(std::int16_t& att, bool maxToMin) {
    WizardData& w = wizardData();
    if (CategoryMaxToMin(att) == maxToMin) {
        // The ladder runs that way already: the entry records the choice.
        SetCategoryMaxToMin(att, maxToMin);
        return;
    }
    if (att < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const std::vector<Variant> now = turnCells(w, att);
    if (w.CategoryTurns.size() <= static_cast<std::size_t>(att))
        w.CategoryTurns.resize(static_cast<std::size_t>(att) + 1);
    WizardData::CategoryTurn& turn = w.CategoryTurns[static_cast<std::size_t>(att)];
    if (turn.maxToMin == maxToMin && !turn.before.empty() && sameCells(turn.after, now)) {
        // Turned back with nothing changed in between: the points as they
        // were, their orientation entry with them, and the points just left
        // are what a turn back gives.
        std::vector<Variant> restored = std::move(turn.before);
        putTurnCells(w, att, restored);
        turn.before = now;
        turn.after = std::move(restored);
        turn.maxToMin = !maxToMin;
        return;
    }
    turn.maxToMin = !maxToMin;
    turn.before = now;
    SetCategoryMaxToMin(att, maxToMin);
    PrepareCategoryPoints(att);
    turn.after = turnCells(w, att);
}

bool CategoryMaxToMin(std::int16_t att) {
    const Variant& flag = wizardData().SmpY(att, kOrientationEntry);
    // Only True counts; an empty entry, text or a sample value of another
    // technique reads as "from minimum to maximum".
    return flag.isNumeric() && !flag.isEmpty() && flag.toDouble() == -1.0;
}

void SetCategoryMaxToMin(std::int16_t att, bool maxToMin) {
    wizardData().SmpY(att, kOrientationEntry) = Variant(maxToMin);
}

double CategoryLevelScore(Variant& high, Variant& low, std::int16_t count, std::int16_t level,
                          bool maxToMin) {
    std::int16_t top = checkedSub(count, 1);
    std::int16_t k = level;
    float c = wizardData().CategoryFactor;
    return maxToMin ? GeometricPointFromLow(high, low, top, k, c)
                    : GeometricPointFromHigh(high, low, top, k, c);
}

double CategoryLevelOfScore(Variant& high, Variant& low, Variant& score, std::int16_t count,
                            bool maxToMin) {
    std::int16_t first = 1;
    float c = wizardData().CategoryFactor;
    // Both index functions count the levels down from the far end.
    const double fromFarEnd = maxToMin ? GeometricIndexFromLow(low, high, score, first, c)
                                       : GeometricIndexFromHigh(high, score, low, first, c);
    return static_cast<double>(checkedSub(count, 1)) - fromFarEnd;
}

std::int16_t CategoryLevelOfPoint(std::int16_t k, std::int16_t n, bool maxToMin) {
    return maxToMin ? checkedSub(checkedSub(n, 1), k) : k;
}

std::vector<double> CategorySampleScores(std::int16_t att, std::int16_t n) {
    WizardData& w = wizardData();
    const std::int16_t last = checkedSub(n, 1);
    if (last < 1) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const bool maxToMin = CategoryMaxToMin(att);
    std::vector<double> scores(static_cast<std::size_t>(n));
    for (std::int16_t k = 1; k < last; ++k)
        scores[static_cast<std::size_t>(k)] = CategoryLevelScore(
            w.ScoreMaximum(att), w.ScoreMinimum(att), n, CategoryLevelOfPoint(k, n, maxToMin),
            maxToMin);
    const double low = w.ScoreMinimum(att).toDouble();
    const double high = w.ScoreMaximum(att).toDouble();
    scores.front() = low;
    scores.back() = high;
    // A range so narrow against its scores that two levels meet: the curve
    // needs distinct scores, so the points are spread evenly instead. A
    // range too narrow even for that is refused as the zero step it is.
    const auto increasing = [&scores] {
        return std::adjacent_find(scores.begin(), scores.end(), std::greater_equal<>()) == scores.end();
    };
    if (!increasing()) {
        const float step = csng(checkedDiv(high - low, last));
        for (std::int16_t k = 1; k < last; ++k)
            scores[static_cast<std::size_t>(k)] = low + static_cast<double>(static_cast<float>(k) * step);
        if (!increasing()) throw RuntimeError(RuntimeError::DivisionByZero);
    }
    return scores;
}

void CategoryPointsFromLinear(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    (void)oldSize;
    // A first sample: the straight line of the attribute's orientation.
    WizardData& w = wizardData();
    const std::vector<double> scores = CategorySampleScores(att, newSize);
    w.SmpSize(att) = newSize;
    layOnLadder(w, att, newSize, scores, lineValues(w, att, scores));
}

void CategoryPointsRefresh(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    WizardData& w = wizardData();
    const std::int16_t count = w.CategoryCount;
    if (newSize != count) {
        // Stored with another number of points: one point per level.
        moveOntoLadder(att, count, oldSize);
        return;
    }
    const std::vector<double> scores = CategorySampleScores(att, newSize);
    bool onLadder = true;
    for (std::size_t k = 0; k < scores.size() && onLadder; ++k)
        onLadder = w.SmpX(att, static_cast<int>(k)).toDouble() == scores[k];
    if (!onLadder) {
        // Laid out for the other orientation, or evenly by Linear.
        moveOntoLadder(att, newSize, oldSize);
        return;
    }
    // The attribute's own category points: their values stay.
    std::vector<double> values(scores.size());
    for (std::size_t k = 0; k < scores.size(); ++k) values[k] = w.SmpY(att, static_cast<int>(k)).toDouble();
    layOnLadder(w, att, newSize, scores, values);
}

void CategoryPointsFromOtherTechnique(std::int16_t& att, std::int16_t& newSize,
                                      std::int16_t& oldSize) {
    moveOntoLadder(att, newSize, oldSize);
}

}  // namespace kelmar
