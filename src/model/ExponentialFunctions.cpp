// The exponential value function that a midpoint judgment implies, its
// parameters and the sample points laid out from it.
//
// On the unit square the function is s(t) = (1 - e^(-k t)) / (1 - e^(-k)),
// t the distance from the worst end as a fraction of the range and k the
// rate (k = 1 / R, R = rho / (max - min)). k > 0 bends the curve up above
// the straight line, k < 0 below it, k = 0 is the line itself. For k < 0
// the mirror s(t; k) = 1 - s(1 - t; -k) is used, so no exponential ever
// grows: e^(-k t) stays within 0 .. 1 and expm1 keeps the small rates exact.
#include "model/AkimaCore.h"
#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <array>
#include <cmath>

namespace kelmar {

namespace {

constexpr int kMaxPoints = 11;

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

// A candidate layout of the points on the unit square, worst end first:
// equal steps of u = alpha t + (1 - alpha) s(t) on each side of the middle
// point, so the middle point is the judged one whatever alpha is. alpha = 0
// gives equal steps of value, alpha = 1 equal steps of score.
struct Layout {
    std::array<double, kMaxPoints> t{};
    std::array<double, kMaxPoints> v{};
};

// The t at which alpha t + (1 - alpha) s(t) = u (0 < alpha <= 1, the blend
// strictly rising), by bisection on 0 .. 1.
double blendInverse(double u, double alpha, double k) {
    double lo = 0.0;
    double hi = 1.0;
    for (int i = 0; i < 60; ++i) {
        const double mid = 0.5 * (lo + hi);
        if (alpha * mid + (1.0 - alpha) * ExponentialShape(mid, k) < u) {
            lo = mid;
        } else {
            hi = mid;
        }
    }
    return 0.5 * (lo + hi);
}

Layout layOut(double alpha, double k, double z, int n) {
    Layout p;
    const int last = n - 1;
    const int half = last / 2;
    const double uMiddle = n % 2 == 1 ? alpha * z + (1.0 - alpha) * 0.5 : 0.5;
    for (int j = 1; j < last; ++j) {
        double u;
        if (n % 2 == 1) {
            u = j <= half ? uMiddle * j / half : uMiddle + (1.0 - uMiddle) * (j - half) / (last - half);
        } else {
            u = static_cast<double>(j) / last;
        }
        if (alpha == 0.0) {
            p.v[static_cast<std::size_t>(j)] = u;
            p.t[static_cast<std::size_t>(j)] = ExponentialShapeInverse(u, k);
        } else {
            const double t = blendInverse(u, alpha, k);
            p.t[static_cast<std::size_t>(j)] = t;
            p.v[static_cast<std::size_t>(j)] = ExponentialShape(t, k);
        }
    }
    p.t[0] = 0.0;
    p.v[0] = 0.0;
    p.t[static_cast<std::size_t>(last)] = 1.0;
    p.v[static_cast<std::size_t>(last)] = 1.0;
    if (n % 2 == 1) {
        p.t[static_cast<std::size_t>(half)] = z;
        p.v[static_cast<std::size_t>(half)] = 0.5;
    }
    return p;
}

// The largest distance between the curve through the layout's points and
// the exponential, over equal steps of t and equal steps of value (the
// second set follows a steep curve where the first has few points).
double layoutError(const Layout& p, double k, int n) {
    constexpr int kSteps = 128;
    double worst = 0.0;
    double out[5];
    const DoubleCells xs{p.t.data()};
    const DoubleCells ys{p.v.data()};
    for (int i = 0; i <= kSteps; ++i) {
        const double step = static_cast<double>(i) / kSteps;
        for (const double t : {step, ExponentialShapeInverse(step, k)}) {
            akimaCore(xs, ys, n, true, t, out);
            worst = std::fmax(worst, std::fabs(out[4] - ExponentialShape(t, k)));
        }
    }
    return worst;
}

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
    if (n < 2 || n > kMaxPoints) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const double lo = w.ScoreMinimum(att).toDouble();
    const double hi = w.ScoreMaximum(att).toDouble();
    const bool cost = costAttribute(att);
    const double rate = MiddleScoreRate(att, middle);
    const double z = cost ? (hi - middle) / (hi - lo) : (middle - lo) / (hi - lo);

    // Equal steps of value come first; a blend towards equal steps of score
    // replaces them only where its curve keeps closer to the exponential
    // (a steep curve leaves too few points on its flat part otherwise).
    Layout best = layOut(0.0, rate, z, n);
    double bestError = layoutError(best, rate, n);
    // Within a thousandth equal steps of value stand without a search.
    for (int i = 1; i <= 10 && bestError > 0.001; ++i) {
        const Layout candidate = layOut(i / 10.0, rate, z, n);
        const double error = layoutError(candidate, rate, n);
        if (error < bestError) {
            best = candidate;
            bestError = error;
        }
    }

    // Worst end first on the unit square; the scores run upwards, so a cost
    // attribute takes the layout from the top.
    const int last = n - 1;
    for (int j = 1; j < last; ++j) {
        const double t = best.t[static_cast<std::size_t>(j)];
        const int k = cost ? last - j : j;
        w.SmpX(att, k) = cost ? hi - t * (hi - lo) : lo + t * (hi - lo);
        w.SmpY(att, k) = best.v[static_cast<std::size_t>(j)];
    }
    if (n % 2 == 1) w.SmpX(att, last / 2) = middle;
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, last) = w.ScoreMaximum(att);
    w.SmpY(att, 0) = std::int16_t(cost ? 1 : 0);
    w.SmpY(att, last) = std::int16_t(cost ? 0 : 1);
    w.ScoreMiddle(att) = middle;
}

}  // namespace kelmar
