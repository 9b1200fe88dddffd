#include "model/AkimaCore.h"
#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <cmath>
#include <limits>
#include <vector>

namespace kelmar {

bool isCostOriented() {
    WizardData& w = wizardData();
    return w.AttPropertyCopy(w.SelAtt).toDouble() != 0.0;
}

namespace {

// 2 raised to (index as Single) x c, as the ladder functions form it.
double ladderPower(std::int16_t index, float c) {
    const float exponent = static_cast<float>(index) * c;
    return checkedResult(std::pow(2.0, static_cast<double>(exponent)));
}

// The ratio of the two powers k and j: how far a ladder point lies along
// its span.
double ladderRatio(std::int16_t j, std::int16_t k, float c) {
    return checkedDiv(ladderPower(k, c), ladderPower(j, c));
}

// (1 / c) x log2(R'), R' the ratio cut below at 1. The factor 1 / c is
// formed in single precision from the Single c; the logarithms and the
// product are Doubles.
double ladderIndex(double ratio, float c) {
    if (c == 0.0f) throw RuntimeError(RuntimeError::DivisionByZero);
    const float reciprocal = 1.0f / c;
    if (!std::isfinite(reciprocal)) throw RuntimeError(RuntimeError::Overflow);
    const double r = ratio > 1.0 ? ratio : 1.0;
    return checkedResult(static_cast<double>(reciprocal) * (std::log(r) / std::log(2.0)));
}

}  // namespace

float ComputeScoreMiddle(std::int16_t& att) {
    WizardData& w = wizardData();
    const double lowEnd = w.ScoreMinimum(att).toDouble();
    const double highEnd = w.ScoreMaximum(att).toDouble();
    if (isLinearType(w.VFunType(att))) {
        return csng((lowEnd + highEnd) / 2.0);
    }

    // Local copies of the sample points; an empty size cannot be dimensioned.
    const std::int16_t last = checkedSub(w.SmpSize(att).toInteger(), 1);
    if (last < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    std::vector<double> xs(static_cast<std::size_t>(last) + 1);
    std::vector<double> ys(xs.size());
    for (int k = 0; k <= last; ++k) {
        xs[static_cast<std::size_t>(k)] = w.SmpX(att, k).toDouble();
        ys[static_cast<std::size_t>(k)] = w.SmpY(att, k).toDouble();
    }
    const std::int16_t n = Variant(w.SmpSize(att).toString()).toInteger();
    if (n < 1 || n > last + 1) throw RuntimeError(RuntimeError::SubscriptOutOfRange);

    // Walk up from the lowest sample score in steps of a thousandth of the
    // range until the curve comes within 0.01 of one half.
    const float step = csng((highEnd - lowEnd) / 1000.0);
    const double top = xs[static_cast<std::size_t>(n - 1)];
    double x = xs[0];
    double closest = (lowEnd + highEnd) / 2.0;
    double closestGap = 2.0;
    double out[5];
    if (step > 0.0f) {
        for (;;) {
            const double next = x + static_cast<double>(step);
            if (next >= top || next == x) break;
            x = next;
            akimaCore(DoubleCells{xs.data()}, DoubleCells{ys.data()}, n, true, x, out);
            const double gap = std::fabs(0.5 - out[4]);
            if (gap < 0.01) return csng(x);
            if (gap < closestGap) {
                closestGap = gap;
                closest = x;
            }
        }
    }
    // The curve crosses one half between two grid scores (it is that steep
    // there): the grid score nearest to one half stands for the middle. With
    // no grid score at all, the middle of the range.
    return csng(closest);
}

void StoreScoreMiddle(std::int16_t& att, float computed) {
    Variant& stored = wizardData().ScoreMiddle(att);
    switch (stored.type()) {
    case Variant::Type::Integer:
    case Variant::Type::Long:
    case Variant::Type::Single:
    case Variant::Type::Double: {
        const double d = stored.toDouble();
        if (std::fabs(d) <= static_cast<double>(std::numeric_limits<float>::max()) &&
            static_cast<float>(d) == computed)
            return;
        break;
    }
    default:
        break;  // Empty, text and the rest take the computed number
    }
    stored = computed;
}

double GeometricPointFromLow(Variant& a0, Variant& a1, std::int16_t& j, std::int16_t& k, float& c) {
    const double r = ladderRatio(j, k, c);
    const double low = a0.toDouble();
    const double high = a1.toDouble();
    // r = 1 puts the point on the far end: a1 itself, copied, not computed.
    if (r == 1.0) return high;
    return checkedResult(low + r * (high - low));
}

double GeometricPointFromHigh(Variant& a0, Variant& a1, std::int16_t& j, std::int16_t& k,
                              float& c) {
    const double r = ladderRatio(j, k, c);
    const double low = a0.toDouble();
    const double high = a1.toDouble();
    if (r == 1.0) return low;  // a0 itself
    return checkedResult(high + r * (low - high));
}

double GeometricIndexFromLow(Variant& a0, Variant& a1, Variant& a2, std::int16_t& k, float& c) {
    const double p = ladderPower(checkedSub(k, 1), c);
    const double ratio =
        checkedDiv(p * (a1.toDouble() - a0.toDouble()), a1.toDouble() - a2.toDouble());
    return ladderIndex(ratio, c);
}

double GeometricIndexFromHigh(Variant& a0, Variant& a1, Variant& a2, std::int16_t& k, float& c) {
    const double p = ladderPower(checkedSub(k, 1), c);
    const double ratio =
        checkedDiv(p * (a0.toDouble() - a2.toDouble()), a1.toDouble() - a2.toDouble());
    return ladderIndex(ratio, c);
}

}  // namespace kelmar
