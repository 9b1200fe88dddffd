// The exponential value function of a judged middle score: its rate, its
// values and the points laid on it. Its parameters, and the line's, are
// pinned as the function view shows them.
#include "ModelFixture.h"

#include <cmath>
#include <vector>

namespace kelmar::test {

namespace {

// The rate whose shape is one half at z, by Newton's method in long
// double: a reference worked out another way than the bisection.
long double referenceRate(long double z) {
    long double k = 2.0L * (0.5L - z) / (z * (1.0L - z));  // the small-rate estimate
    for (int i = 0; i < 200; ++i) {
        const long double e = std::expm1(-k);
        const long double f = std::expm1(-k * z) / e - 0.5L;
        const long double df = (-z * std::exp(-k * z) * e + std::exp(-k) * std::expm1(-k * z)) / (e * e);
        const long double next = k - f / df;
        if (next == k) break;
        k = next;
    }
    return k;
}

// The largest distance between the curve through the attribute's points
// and the exponential, on a fine grid of scores and one of values.
double curveError(int att, double rate, bool cost) {
    WizardData& d = wizardData();
    const int n = d.SmpSize(att).toInteger();
    std::vector<double> xs, ys;
    for (int k = 0; k < n; ++k) {
        xs.push_back(d.SmpX(att, k).toDouble());
        ys.push_back(d.SmpY(att, k).toDouble());
    }
    Curve curve(xs, ys);
    const double lo = xs.front(), hi = xs.back();
    double worst = 0.0;
    for (int i = 0; i <= 500; ++i) {
        const double s = i / 500.0;
        const double t = ExponentialShapeInverse(s, rate);
        for (const double u : {s, t}) {
            const double x = cost ? hi - u * (hi - lo) : lo + u * (hi - lo);
            worst = std::fmax(worst, std::fabs(curve.at(x) - ExponentialValue(x, lo, hi, rate, cost)));
        }
    }
    return worst;
}

}  // namespace

TEST(Exponential, EndsMiddleMonotoneAndTheMirror) {
    const double lo = 10.0, hi = 50.0;
    for (const double z : {0.0011, 0.02, 0.3, 0.4989, 0.5011, 0.8, 0.994}) {
        SCOPED_TRACE(z);
        const double k = ExponentialRate(z);
        for (const bool cost : {false, true}) {
            const double worst = cost ? hi : lo, best = cost ? lo : hi;
            EXPECT_EQ(ExponentialValue(worst, lo, hi, k, cost), 0.0);
            EXPECT_EQ(ExponentialValue(best, lo, hi, k, cost), 1.0);
            const double middle = cost ? hi - z * (hi - lo) : lo + z * (hi - lo);
            EXPECT_NEAR(ExponentialValue(middle, lo, hi, k, cost), 0.5, 1e-9);
        }
        double previous = -1.0;
        for (int i = 0; i <= 4000; ++i) {
            const double x = lo + (hi - lo) * i / 4000.0;
            const double v = ExponentialValue(x, lo, hi, k, false);
            // Strictly rising while the doubles can tell the values apart.
            if (previous > 1e-12 && v < 1.0 - 1e-12) {
                EXPECT_GT(v, previous) << x;
            }
            EXPECT_GE(v, previous) << x;
            previous = v;
            // v_cost(x; rho) = 1 - v_benefit(x; -rho).
            EXPECT_NEAR(ExponentialValue(x, lo, hi, k, true), 1.0 - ExponentialValue(x, lo, hi, -k, false),
                        1e-12);
        }
    }
}

TEST(Exponential, TheRateIsSolvedToTwelveDigitsEvenBesideOneHalf) {
    for (const double z : {0.0010001, 0.0011, 0.005, 0.1, 0.45, 0.4989, 0.4995, 0.49999, 0.50001, 0.5011,
                           0.6, 0.994, 0.9989}) {
        SCOPED_TRACE(z);
        const double k = ExponentialRate(z);
        const long double reference =
            z < 0.5 ? referenceRate(z) : -referenceRate(1.0L - static_cast<long double>(z));
        EXPECT_LE(std::fabs((k - reference) / reference), 1e-12L);
        EXPECT_EQ(k > 0.0, z < 0.5);
        EXPECT_NEAR(ExponentialShape(z, k), 0.5, 1e-14);
    }
    EXPECT_EQ(ExponentialRate(0.5), 0.0);
    for (const double z : {0.0, 1.0, -0.2, 1.5, std::nan("")})
        EXPECT_EQ(errorNumber([z] { ExponentialRate(z); }), 5) << z;
}

// The points keep the ends and the judged middle and lie on the
// exponential; the curve through them strays from it by at most 0.005
// within the middle band, for every sample size. Towards the refused ends a
// curve that climbs to one half within a thousandth of the range cannot be
// carried by a few cubics, and the bound is what each size reaches there.
TEST_F(ModelTest, ExponentialPointsAndTheCurveThroughThemFollowTheExponential) {
    setRange(0, 10.0, 50.0);
    I16 att = 0;
    // 0.005 holds for band <= z <= 1 - band; ceiling is the largest distance
    // anywhere in 0.001 < z < 0.995.
    struct Row { int n; double band, ceiling; };
    for (const Row row : {Row{5, 0.3, 0.42}, Row{6, 0.25, 0.08}, Row{7, 0.2, 0.075}, Row{8, 0.2, 0.055},
                          Row{9, 0.15, 0.04}, Row{10, 0.15, 0.035}, Row{11, 0.1, 0.04}}) {
        const int n = row.n;
        for (int i = 0; i <= 24; ++i) {
            const double z = 0.0011 + (0.9949 - 0.0011) * i / 24.0;
            for (const bool cost : {false, true}) {
                SCOPED_TRACE(testing::Message() << "n " << n << " z " << z << " cost " << cost);
                w().AttPropertyCopy(0) = I16(cost ? 1 : 0);
                w().SmpSize(0) = I16(n);
                double middle = cost ? 50.0 - 40.0 * z : 10.0 + 40.0 * z;
                ResampleExponential(att, middle);
                EXPECT_EQ(smpX(0, 0), 10.0);
                EXPECT_EQ(smpX(0, n - 1), 50.0);
                EXPECT_EQ(w().SmpY(0, 0).type(), Variant::Type::Integer);
                EXPECT_EQ(smpY(0, 0), cost ? 1.0 : 0.0);
                EXPECT_EQ(smpY(0, n - 1), cost ? 0.0 : 1.0);
                EXPECT_EQ(w().ScoreMiddle(0).toDouble(), middle);
                const double rate = MiddleScoreRate(att, middle);
                for (int k = 1; k < n; ++k) {
                    EXPECT_GT(smpX(0, k), smpX(0, k - 1)) << k;
                    EXPECT_NEAR(smpY(0, k), ExponentialValue(smpX(0, k), 10.0, 50.0, rate, cost), 1e-12);
                }
                if (n % 2 == 1) {
                    EXPECT_EQ(smpX(0, n / 2), middle);
                    EXPECT_EQ(smpY(0, n / 2), 0.5);
                }
                const double error = curveError(0, ExponentialRate(z), cost);
                EXPECT_LE(error, z >= row.band && z <= 1.0 - row.band ? 0.005 : row.ceiling);
            }
        }
    }
    // A gentle curve takes equal steps of value.
    w().AttPropertyCopy(0) = I16(0);
    w().SmpSize(0) = I16(9);
    double middle = 10.0 + 40.0 * 0.45;
    ResampleExponential(att, middle);
    for (int k = 0; k < 9; ++k) EXPECT_DOUBLE_EQ(smpY(0, k), k / 8.0) << k;
    // The parameters of a line on a range without width divide by zero.
    setRange(0, 5.0, 5.0);
    EXPECT_EQ(errorNumber([&] { LinearParameterA(att); }), 11);
}

}  // namespace kelmar::test
