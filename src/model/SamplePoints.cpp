#include "model/AkimaCore.h"
#include "model/Arith.h"
#include "model/ScoreSequence.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kelmar {

// Equal value steps: interior values as Singles, the ends as Integers.
void layOutEqualValues(WizardData& w, std::int16_t att, std::int16_t size) {
    const std::int16_t intervals = checkedSub(size, 1);
    const float vstep = csng(checkedDiv(1.0, intervals));
    const bool cost = isCostOriented();
    for (std::int16_t k = 1; k <= size - 2; ++k) {
        const std::int16_t steps = cost ? checkedSub(intervals, k) : k;
        w.SmpY(att, k) = static_cast<float>(steps) * vstep;
    }
    w.SmpY(att, 0) = std::int16_t(cost ? 1 : 0);
    w.SmpY(att, intervals) = std::int16_t(cost ? 0 : 1);
}

namespace {

bool techniqueIs(const Variant& id, int a, int b = -1) {
    const double v = id.toDouble();
    return v == a || v == b;
}

// Equally spaced scores from the minimum to the maximum; the steps and the
// index-times-step products are Singles, the ends are copied.
void layOutScores(WizardData& w, std::int16_t att, std::int16_t size) {
    const std::int16_t intervals = checkedSub(size, 1);
    const double low = w.ScoreMinimum(att).toDouble();
    const float step = csng(checkedDiv(w.ScoreMaximum(att).toDouble() - low, intervals));
    for (std::int16_t k = 1; k <= size - 2; ++k) {
        const float offset = static_cast<float>(k) * step;
        w.SmpX(att, k) = low + static_cast<double>(offset);
    }
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, checkedSub(size, 1)) = w.ScoreMaximum(att);
}

// The old points of the attribute, copied before they are overwritten.
struct OldPoints {
    std::vector<double> x, y;
    std::vector<Variant> xCell, yCell;  // the cells as stored
    int n = 0;
};

OldPoints copyOldPoints(WizardData& w, std::int16_t att, std::int16_t oldSize) {
    const std::int16_t last = checkedSub(oldSize, 1);
    if (last < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    OldPoints old;
    old.n = last + 1;
    old.x.resize(static_cast<std::size_t>(old.n));
    old.y.resize(static_cast<std::size_t>(old.n));
    for (int k = 0; k <= last; ++k) {
        old.xCell.push_back(w.SmpX(att, k));
        old.yCell.push_back(w.SmpY(att, k));
        old.x[static_cast<std::size_t>(k)] = old.xCell.back().toDouble();
        old.y[static_cast<std::size_t>(k)] = old.yCell.back().toDouble();
    }
    return old;
}

// The inner old point whose value is the level (to the last bits a Single
// step can differ by) and whose score lies strictly between the previous
// new score and the maximum; 0 when there is none.
int pointOnLevel(const OldPoints& old, double level, double previous, double high) {
    for (int k = 1; k + 1 < old.n; ++k) {
        const auto i = static_cast<std::size_t>(k);
        if (std::fabs(old.y[i] - level) <= 1e-9 && old.x[i] > previous && old.x[i] < high) return k;
    }
    return 0;
}

// True when att's first n points are the old points, cell for cell.
bool unchanged(const OldPoints& old, WizardData& w, std::int16_t att, std::int16_t n) {
    if (n != old.n) return false;
    for (int k = 0; k < n; ++k)
        if (!sameCell(w.SmpX(att, k), old.xCell[static_cast<std::size_t>(k)]) ||
            !sameCell(w.SmpY(att, k), old.yCell[static_cast<std::size_t>(k)]))
            return false;
    return true;
}

double valueOn(const OldPoints& old, double x) {
    double out[5];
    akimaCore(DoubleCells{old.x.data()}, DoubleCells{old.y.data()}, old.n, true, x, out);
    return out[4];
}

}  // namespace

void KeepValuesInOrder(const std::vector<double>& oldX, const std::vector<double>& oldY,
                       const std::vector<double>& scores, std::vector<double>& values, bool cost) {
    double previous = cost ? 1.0 : 0.0;
    for (std::size_t k = 0; k < values.size(); ++k) {
        double v = values[k];
        if (oldX.size() >= 2) {
            const auto at = std::upper_bound(oldX.begin(), oldX.end(), scores[k]);
            const std::size_t right =
                std::clamp<std::size_t>(static_cast<std::size_t>(at - oldX.begin()), 1, oldX.size() - 1);
            const double a = oldY[right - 1], b = oldY[right];
            v = std::clamp(v, std::min(a, b), std::max(a, b));
        }
        previous = cost ? std::min(v, previous) : std::max(v, previous);
        values[k] = std::clamp(previous, 0.0, 1.0);
    }
}

void UpdateSamplePoints(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    WizardData& w = wizardData();
    if (isLinearType(w.VFunType(att))) {
        SetLinearSamplePoints(att, newSize);
        return;
    }
    const Variant& stored = w.VFTechniqueID(att);
    const bool resized = oldSize != newSize;
    switch (w.SelTechnique) {
    case kDirectRating:
    case kCurveDrawing:
        if (!techniqueIs(stored, kDirectRating, kCurveDrawing) || resized)
            ResampleByScore(att, newSize, oldSize);
        break;
    case kDiffStandardSequence:
    case kBisection:
        if (!techniqueIs(stored, kDiffStandardSequence, kBisection) || resized)
            ResampleByValue(att, newSize, oldSize);
        break;
    case kVariableProbability:
        // Only a function of this technique is resampled, and only when
        // the size changes; another technique's points are left alone.
        if (techniqueIs(stored, kVariableProbability) && resized)
            ResampleByValue(att, newSize, oldSize);
        break;
    case kVariableCertainty:
        if (!techniqueIs(stored, kVariableCertainty) || resized)
            ResampleByValue(att, newSize, oldSize);
        break;
    default:
        break;
    }
}

void SetLinearSamplePoints(std::int16_t& att, std::int16_t& newSize) {
    WizardData& w = wizardData();
    layOutScores(w, att, newSize);
    layOutEqualValues(w, att, newSize);
}

void ResampleByScore(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    WizardData& w = wizardData();
    const OldPoints old = copyOldPoints(w, att, oldSize);
    layOutScores(w, att, newSize);
    const bool cost = isCostOriented();
    std::vector<double> scores, values;
    for (std::int16_t k = 1; k <= newSize - 2; ++k) {
        scores.push_back(w.SmpX(att, k).toDouble());
        values.push_back(valueOn(old, scores.back()));
    }
    KeepValuesInOrder(old.x, old.y, scores, values, cost);
    for (std::int16_t k = 1; k <= newSize - 2; ++k) w.SmpY(att, k) = values[static_cast<std::size_t>(k - 1)];
    w.SmpY(att, 0) = std::int16_t(cost ? 1 : 0);
    w.SmpY(att, checkedSub(newSize, 1)) = std::int16_t(cost ? 0 : 1);
    // Points given back as they were keep the middle score they had.
    if (!unchanged(old, w, att, newSize)) StoreScoreMiddle(att, ComputeScoreMiddle(att));
}

void ResampleByValue(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    WizardData& w = wizardData();
    const OldPoints old = copyOldPoints(w, att, oldSize);
    layOutEqualValues(w, att, newSize);
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, checkedSub(newSize, 1)) = w.ScoreMaximum(att);

    const double low = w.ScoreMinimum(att).toDouble();
    const double high = w.ScoreMaximum(att).toDouble();
    const float step = csng((high - low) / 1000.0);
    for (std::int16_t k = 1; k <= newSize - 2; ++k) {
        const double level = w.SmpY(att, k).toDouble();
        const double previous = w.SmpX(att, k - 1).toDouble();
        // An old point that already holds this level stays as it is: the
        // grid below would stop short of it, where the curve first comes
        // within 0.01, and every new resampling would move it further.
        if (const int on = pointOnLevel(old, level, previous, high); on > 0) {
            w.SmpX(att, k) = old.xCell[static_cast<std::size_t>(on)];
            w.SmpY(att, k) = old.yCell[static_cast<std::size_t>(on)];
            continue;
        }
        double x = old.x[0];
        for (;;) {
            const double next = x + static_cast<double>(step);
            if (next >= high || next <= x) {
                // The old curve never comes near this level: half the
                // range, measured from zero.
                x = (high - low) / 2.0;
                break;
            }
            x = next;
            if (std::fabs(level - valueOn(old, x)) <= 0.01) break;
        }
        // Scores stay strictly increasing inside the range: a score found
        // (or fallen back to) at or before the previous point, or at the
        // maximum, takes an even share of the range that is left instead.
        if (!(x > previous && x < high)) x = previous + (high - previous) / (newSize - k);
        w.SmpX(att, k) = x;
    }
    // Points given back as they were keep the middle score they had.
    if (!unchanged(old, w, att, newSize)) StoreScoreMiddle(att, ComputeScoreMiddle(att));
}

void PrepareCategoryPoints(std::int16_t& att) {
    WizardData& w = wizardData();
    if (w.SmpSize(att).toDouble() == 0.0) {
        w.SmpSize(att) = w.CategoryCount;
        std::int16_t size = w.SmpSize(att).toInteger();
        CategoryPointsFromLinear(att, size, size);
    } else if (w.VFTechniqueID(att).toDouble() == w.SelTechnique) {
        std::int16_t size = w.SmpSize(att).toInteger();
        CategoryPointsRefresh(att, size, size);
    } else {
        std::int16_t oldSize = w.SmpSize(att).toInteger();
        w.SmpSize(att) = w.CategoryCount;
        std::int16_t newSize = w.CategoryCount;
        CategoryPointsFromOtherTechnique(att, newSize, oldSize);
    }
}

}  // namespace kelmar
