#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <cmath>

namespace kelmar {

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

// Equal value steps: interior values as Singles, the ends as Integers.
void layOutValues(WizardData& w, std::int16_t att, std::int16_t size) {
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

// The old points of the attribute, copied before they are overwritten.
void copyOldPoints(WizardData& w, std::int16_t att, std::int16_t oldSize, VariantArray& xs,
                   VariantArray& ys) {
    const std::int16_t last = checkedSub(oldSize, 1);
    if (last < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    xs.redim(0, last);
    ys.redim(0, last);
    for (int k = 0; k <= last; ++k) {
        xs(k) = w.SmpX(att, k);
        ys(k) = w.SmpY(att, k);
    }
}

}  // namespace

void UpdateSamplePoints(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    WizardData& w = wizardData();
    if (w.VFunType(att) == Variant(std::int16_t(0))) {
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
    layOutValues(w, att, newSize);
}

void ResampleByScore(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    WizardData& w = wizardData();
    VariantArray xs, ys, out(0, 4);
    copyOldPoints(w, att, oldSize, xs, ys);
    layOutScores(w, att, newSize);

    std::int16_t n = oldSize;
    std::int16_t evaluate = -1;
    for (std::int16_t k = 1; k <= newSize - 2; ++k) {
        double x = w.SmpX(att, k).toDouble();
        AkimaInterpolate(xs, ys, n, evaluate, x, out);
        w.SmpY(att, k) = out(4);
    }
    const bool cost = isCostOriented();
    w.SmpY(att, 0) = std::int16_t(cost ? 1 : 0);
    w.SmpY(att, checkedSub(newSize, 1)) = std::int16_t(cost ? 0 : 1);
    w.ScoreMiddle(att) = ComputeScoreMiddle(att);
}

void ResampleByValue(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    WizardData& w = wizardData();
    VariantArray xs, ys, out(0, 4);
    copyOldPoints(w, att, oldSize, xs, ys);
    layOutValues(w, att, newSize);
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, checkedSub(newSize, 1)) = w.ScoreMaximum(att);

    const double low = w.ScoreMinimum(att).toDouble();
    const double high = w.ScoreMaximum(att).toDouble();
    const float step = csng((high - low) / 1000.0);
    std::int16_t n = oldSize;
    std::int16_t evaluate = -1;
    for (std::int16_t k = 1; k <= newSize - 2; ++k) {
        const double level = w.SmpY(att, k).toDouble();
        double x = xs(0).toDouble();
        for (;;) {
            x = x + static_cast<double>(step);
            if (x >= high || step <= 0.0f) {
                // The old curve never reaches this level: half the range,
                // measured from zero.
                x = (high - low) / 2.0;
                break;
            }
            AkimaInterpolate(xs, ys, n, evaluate, x, out);
            if (std::fabs(level - out(4).toDouble()) <= 0.01) break;
        }
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

// The category technique's own fitting comes with its page; until then the
// three routines leave linear points of the new size.
void CategoryPointsFromLinear(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    (void)oldSize;
    SetLinearSamplePoints(att, newSize);
}

void CategoryPointsRefresh(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    (void)oldSize;
    WizardData& w = wizardData();
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, checkedSub(newSize, 1)) = w.ScoreMaximum(att);
}

void CategoryPointsFromOtherTechnique(std::int16_t& att, std::int16_t& newSize,
                                      std::int16_t& oldSize) {
    WizardData& w = wizardData();
    if (w.VFunType(att) == Variant(std::int16_t(0)) || oldSize < 2) {
        SetLinearSamplePoints(att, newSize);
    } else {
        ResampleByScore(att, newSize, oldSize);
    }
}

}  // namespace kelmar
