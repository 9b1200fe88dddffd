#include "model/AkimaCore.h"
#include "model/Arith.h"
#include "model/ScoreSequence.h"

#include <kelmar/mdKelMain.h>

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
        old.x[static_cast<std::size_t>(k)] = w.SmpX(att, k).toDouble();
        old.y[static_cast<std::size_t>(k)] = w.SmpY(att, k).toDouble();
    }
    return old;
}

double valueOn(const OldPoints& old, double x) {
    double out[5];
    akimaCore(DoubleCells{old.x.data()}, DoubleCells{old.y.data()}, old.n, true, x, out);
    return out[4];
}

}  // namespace

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
    for (std::int16_t k = 1; k <= newSize - 2; ++k) {
        // The old curve may swing beyond the value range on a long interval
        // (an end moved far out): the new point's value stays within 0 .. 1.
        const double v = valueOn(old, w.SmpX(att, k).toDouble());
        w.SmpY(att, k) = v < 0.0 ? 0.0 : (v > 1.0 ? 1.0 : v);
    }
    const bool cost = isCostOriented();
    w.SmpY(att, 0) = std::int16_t(cost ? 1 : 0);
    w.SmpY(att, checkedSub(newSize, 1)) = std::int16_t(cost ? 0 : 1);
    w.ScoreMiddle(att) = ComputeScoreMiddle(att);
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
        const double previous = w.SmpX(att, k - 1).toDouble();
        if (!(x > previous && x < high)) x = previous + (high - previous) / (newSize - k);
        w.SmpX(att, k) = x;
    }
    w.ScoreMiddle(att) = ComputeScoreMiddle(att);
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
