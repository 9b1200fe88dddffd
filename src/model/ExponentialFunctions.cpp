// The exponential value function that a midpoint judgment implies, its
// parameters and the sample points laid out from it.
//
// On the unit square the function is s(t) = (1 - e^(-k t)) / (1 - e^(-k)),
// t the distance from the worst end as a fraction of the range and k the
// rate (k = 1 / R, R = rho / (max - min)). k > 0 bends the curve up above
// the straight line, k < 0 below it, k = 0 is the line itself. For k < 0
// the mirror s(t; k) = 1 - s(1 - t; -k) is used, so no exponential ever
// grows: e^(-k t) stays within 0 .. 1 and expm1 keeps the small rates exact.
#include "model/Arith.h"
#include "model/ExponentialPoints.h"

#include <kelmar/mdKelMain.h>

#include <array>
#include <cmath>

namespace kelmar {

namespace {

// s(t) for k > 0.
double risingShape(double t, double k) { return std::expm1(-k * t) / std::expm1(-k); }

// The t with s(t) = v for k > 0. The ends are given back as they are: for
// a steep curve e^(-k) is lost beside 1 and the logarithm would meet 0.
double risingInverse(double v, double k) {
    if (v <= 0.0) return 0.0;
    if (v >= 1.0) return 1.0;
    const double t = -std::log1p(v * std::expm1(-k)) / k;
    return t < 1.0 ? t : 1.0;
}

bool costAttribute(std::int16_t att) { return wizardData().AttPropertyCopy(att).toDouble() != 0.0; }

}  // namespace

double ExponentialShape(double t, double rate) {
    if (rate == 0.0) return t;
    if (rate > 0.0) return risingShape(t, rate);
    return 1.0 - risingShape(1.0 - t, -rate);
}

double ExponentialShapeInverse(double v, double rate) {
    if (rate == 0.0) return v;
    if (rate > 0.0) return risingInverse(v, rate);
    return 1.0 - risingInverse(1.0 - v, -rate);
}

double ExponentialRate(double z) {
    if (!(z > 0.0 && z < 1.0)) throw RuntimeError(RuntimeError::IllegalCall);
    if (z == 0.5) return 0.0;
    // Solved on the side below one half, where the rate is positive; the
    // other side is its mirror. 1 - z is exact for z in 0.5 .. 1.
    const double near = z < 0.5 ? z : 1.0 - z;
    // s(near; 0) = near < 0.5 and s(near; ln 2 / near) >= 0.5: the root lies
    // between. s rises with the rate, so bisection keeps it bracketed.
    // s < 0.5 is 2 expm1(-k z) > expm1(-k) (z = near), which beside one
    // half compares two numbers that agree in most of their digits. With
    // d = 0.5 - z it is e^(-2 k z) (1 - e^(-2 k d)) > expm1(-k z)^2, whose
    // two sides are each formed to a few units of their last digit.
    const double d = 0.5 - near;
    double lo = 0.0;
    double hi = std::log(2.0) / near;
    for (;;) {
        const double mid = lo + 0.5 * (hi - lo);
        if (mid <= lo || mid >= hi || hi - lo <= 0x1p-52 * hi) break;
        const double e = std::expm1(-mid * near);
        if (-std::exp(-2.0 * mid * near) * std::expm1(-2.0 * mid * d) > e * e) {
            lo = mid;
        } else {
            hi = mid;
        }
    }
    const double rate = lo + 0.5 * (hi - lo);
    return z < 0.5 ? rate : -rate;
}

double ExponentialValue(double x, double lo, double hi, double rate, bool cost) {
    const double width = hi - lo;
    const double t = cost ? (hi - x) / width : (x - lo) / width;
    return ExponentialShape(t, rate);
}

double MiddleScoreRate(std::int16_t& att, double& middle) {
    WizardData& w = wizardData();
    const double lo = w.ScoreMinimum(att).toDouble();
    const double hi = w.ScoreMaximum(att).toDouble();
    const double z = checkedDiv(costAttribute(att) ? hi - middle : middle - lo, hi - lo);
    return ExponentialRate(z);
}

double LinearParameterA(std::int16_t& att) {
    WizardData& w = wizardData();
    const double slope =
        checkedDiv(1.0, w.ScoreMaximum(att).toDouble() - w.ScoreMinimum(att).toDouble());
    return costAttribute(att) ? -slope : slope;
}

double LinearParameterB(std::int16_t& att) {
    WizardData& w = wizardData();
    const double end = costAttribute(att) ? w.ScoreMaximum(att).toDouble() : w.ScoreMinimum(att).toDouble();
    return checkedResult(0.0 - LinearParameterA(att) * end);  // 0, not -0, at a zero end
}

double ExponentialParameterA(std::int16_t& att, double& middle) {
    WizardData& w = wizardData();
    const double width = w.ScoreMaximum(att).toDouble() - w.ScoreMinimum(att).toDouble();
    return checkedDiv(width, MiddleScoreRate(att, middle));
}

double ExponentialParameterB(std::int16_t& att, double& middle) {
    return checkedDiv(1.0, MiddleScoreRate(att, middle));
}

void ResampleExponential(std::int16_t& att, double& middle) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    if (n < 3 || n > kLayoutMaxPoints) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const double lo = w.ScoreMinimum(att).toDouble();
    const double hi = w.ScoreMaximum(att).toDouble();
    const bool cost = costAttribute(att);
    const double rate = MiddleScoreRate(att, middle);
    const double z = cost ? (hi - middle) / (hi - lo) : (middle - lo) / (hi - lo);
    const ExponentialLayout layout = PlaceExponentialPoints(z, rate, n);

    // Worst end first on the unit square; the scores run upwards, so a cost
    // attribute takes the layout from the top. The ends are the range's own
    // and the judged point the judged score itself.
    const int last = n - 1;
    std::array<double, kLayoutMaxPoints> xs{};
    for (int j = 1; j < last; ++j) {
        const double t = layout.t[static_cast<std::size_t>(j)];
        xs[static_cast<std::size_t>(cost ? last - j : j)] = cost ? hi - t * (hi - lo) : lo + t * (hi - lo);
    }
    xs[static_cast<std::size_t>(cost ? last - layout.judged : layout.judged)] = middle;
    xs[0] = lo;
    xs[static_cast<std::size_t>(last)] = hi;
    // A range too narrow beside its distance from zero to hold the points
    // apart leaves the function as it was.
    for (int k = 1; k <= last; ++k) {
        if (!(xs[static_cast<std::size_t>(k)] > xs[static_cast<std::size_t>(k - 1)]))
            throw RuntimeError(RuntimeError::Overflow);
    }
    for (int j = 1; j < last; ++j) {
        const int k = cost ? last - j : j;
        w.SmpX(att, k) = xs[static_cast<std::size_t>(k)];
        w.SmpY(att, k) = layout.v[static_cast<std::size_t>(j)];
    }
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, last) = w.ScoreMaximum(att);
    w.SmpY(att, 0) = std::int16_t(cost ? 1 : 0);
    w.SmpY(att, last) = std::int16_t(cost ? 0 : 1);
    w.ScoreMiddle(att) = middle;
}

}  // namespace kelmar
