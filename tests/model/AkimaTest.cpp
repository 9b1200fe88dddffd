#include "WizardTestSupport.h"

#include <gsl/gsl_errno.h>
#include <gsl/gsl_interp.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace kelmar::wtest {
namespace {

TEST(AkimaChecks, StraightLineComesBackAsTheLine) {
    // Unequal spacing, all chords of slope 2: both weights vanish at every
    // point, so both tangents are the slope and the cubic terms are zero.
    const std::vector<double> xs{0, 1, 3, 4, 8}, ys{1, 3, 7, 9, 17};
    for (double x : {-2.0, 0.5, 2.0, 3.5, 6.0, 10.0}) {
        const auto out = akima(xs, ys, x);
        EXPECT_EQ(out[2], 0.0) << x;
        EXPECT_EQ(out[3], 0.0) << x;
        EXPECT_EQ(out[1], 2.0) << x;
        EXPECT_DOUBLE_EQ(out[4], 2.0 * x + 1.0) << x;
    }
}

TEST(AkimaChecks, HandComputedSmallSets) {
    // n = 3: every missing slope is extrapolated; y = 2d - d^2 on [0, 1]
    // and y = 1 - d^2 on [1, 2].
    const std::vector<double> x3{0, 1, 2}, y3{0, 1, 0};
    EXPECT_EQ(akima(x3, y3, 0.5), (std::vector<double>{0, 2, -1, 0, 0.75}));
    EXPECT_EQ(akima(x3, y3, 1.5), (std::vector<double>{1, 0, -1, 0, 0.75}));
    // Outside the points the end cubics are extended.
    EXPECT_DOUBLE_EQ(akima(x3, y3, -1.0)[4], -3.0);
    EXPECT_DOUBLE_EQ(akima(x3, y3, 3.0)[4], -3.0);

    // n = 4.
    const std::vector<double> x4{0, 1, 2, 3}, y4{0, 0, 1, 1};
    EXPECT_EQ(akima(x4, y4, 1.5), (std::vector<double>{0, 0.5, 1.5, -1, 0.5}));
    EXPECT_EQ(akima(x4, y4, 0.5), (std::vector<double>{0, -0.5, 0.5, 0, -0.125}));
}

TEST(AkimaChecks, BothWeightsZeroTakesTheMeanOfTheChords) {
    // At x = 2 the chords are 0, 0 | 1, 1: the tangent is (0 + 1) / 2, so
    // the interval [2, 3] carries a true cubic (a linear piece would be wrong).
    const std::vector<double> xs{0, 1, 2, 3, 4, 5}, ys{0, 0, 0, 1, 2, 3};
    EXPECT_EQ(akima(xs, ys, 2.5), (std::vector<double>{0, 0.5, 1, -0.5, 0.4375}));
}

TEST(AkimaChecks, SampleScoresGiveTheSampleValues) {
    const std::vector<double> xs{0, 0.7, 2.3, 3.1, 5.9, 7.2, 9.0};
    const std::vector<double> ys{0.1, 0.37, 0.52, 0.61, 0.83, 0.91, 1.0};
    for (std::size_t k = 0; k < xs.size(); ++k) {
        const double got = akima(xs, ys, xs[k])[4];
        if (k == 1 || k + 1 == xs.size()) {
            // These two are reached at the far end of the interval before
            // them, so the cubic is summed up to h rather than read at 0.
            EXPECT_NEAR(got, ys[k], 1e-15) << k;
        } else {
            EXPECT_EQ(got, ys[k]) << k;
        }
    }
}

TEST(AkimaChecks, TwoPointsAreLinearInsideAndOutside) {
    const std::vector<double> xs{1, 3}, ys{2, 6};
    EXPECT_EQ(akima(xs, ys, 2.0), (std::vector<double>{2, 2, 0, 0, 4}));
    EXPECT_EQ(akima(xs, ys, 0.0)[4], 0.0);
    EXPECT_EQ(akima(xs, ys, 5.0)[4], 10.0);
}

TEST(AkimaChecks, ExtrapolationExtendsTheEndCubics) {
    const std::vector<double> xs{0, 1, 2.5, 4, 6}, ys{0, 0.5, 0.6, 0.9, 1.0};
    const auto first = akima(xs, ys, 0.5);
    const auto last = akima(xs, ys, 5.0);
    auto cubic = [](const std::vector<double>& c, double d) {
        return c[0] + c[1] * d + c[2] * d * d + c[3] * d * d * d;
    };
    for (double x : {-3.0, -0.25}) {
        const auto out = akima(xs, ys, x);
        EXPECT_EQ(std::vector<double>(out.begin(), out.begin() + 4),
                  std::vector<double>(first.begin(), first.begin() + 4));
        EXPECT_NEAR(out[4], cubic(first, x - xs[0]), 1e-12) << x;
    }
    for (double x : {6.5, 9.0}) {
        const auto out = akima(xs, ys, x);
        EXPECT_EQ(std::vector<double>(out.begin(), out.begin() + 4),
                  std::vector<double>(last.begin(), last.begin() + 4));
        EXPECT_NEAR(out[4], cubic(last, x - xs[3]), 1e-12) << x;
    }
}

TEST(AkimaChecks, ResultsAreResetAndCoefficientsKeptWithoutEvaluation) {
    VariantArray X(0, 2), Y(0, 2), out(0, 4);
    for (int k = 0; k <= 2; ++k) {
        X(k) = double(k);
        Y(k) = double(k * k);
    }
    for (int k = 0; k <= 4; ++k) out(k) = "stale";
    std::int16_t n = 0, evaluate = -1;
    double x = 1.0;
    AkimaInterpolate(X, Y, n, evaluate, x, out);
    for (int k = 0; k <= 4; ++k) {
        EXPECT_EQ(out(k).type(), Variant::Type::Single) << k;
        EXPECT_EQ(out(k).toDouble(), 0.0) << k;
    }
    n = 3;
    evaluate = 0;
    x = 1.5;
    AkimaInterpolate(X, Y, n, evaluate, x, out);
    EXPECT_EQ(out(0).toDouble(), 1.0);
    EXPECT_EQ(out(4).toDouble(), 0.0);
}

TEST(AkimaChecks, EqualAbscissaeRaiseDivisionByZero) {
    EXPECT_EQ(errorOf([] { akima({0, 1, 1, 2, 3}, {0, .2, .4, .6, 1}, 0.5); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(errorOf([] { akima({2, 2}, {0, 1}, 2.0); }), RuntimeError::DivisionByZero);
    // Fewer points given than n claims: subscript out of range.
    VariantArray X(0, 2), Y(0, 2), out(0, 4);
    std::int16_t n = 5, evaluate = -1;
    double x = 0.0;
    EXPECT_EQ(errorOf([&] { AkimaInterpolate(X, Y, n, evaluate, x, out); }),
              RuntimeError::SubscriptOutOfRange);
}

// Cross-check against GSL's Akima interpolation.
//
// Both pad the chord slopes alike at the ends: GSL's m[-1] = 2m0 - m1 and
// m[-2] = 3m0 - 2m1 equal our m(-1) = 2m(0) - m(1), m(-2) = 2m(-1) - m(0)
// (and likewise at the top), so the end intervals agree as well. They part
// where both weights of a tangent are zero: GSL then makes the whole
// interval linear with the chord slope, while we take the mean of the two
// chords (see BothWeightsZeroTakesTheMeanOfTheChords). Random sets are
// checked for that case and skipped should it occur. GSL needs at least five
// points and refuses abscissae outside the range, so smaller sets and
// extrapolation are covered by the hand-computed tests above.
bool hasZeroWeightTangent(const std::vector<double>& xs, const std::vector<double>& ys) {
    const int n = static_cast<int>(xs.size());
    std::vector<double> m(static_cast<std::size_t>(n + 3));
    auto at = [&](int k) -> double& { return m[static_cast<std::size_t>(k + 2)]; };
    for (int k = 0; k <= n - 2; ++k) at(k) = (ys[k + 1] - ys[k]) / (xs[k + 1] - xs[k]);
    at(-1) = 2 * at(0) - at(1);
    at(-2) = 2 * at(-1) - at(0);
    at(n - 1) = 2 * at(n - 2) - at(n - 3);
    at(n) = 2 * at(n - 1) - at(n - 2);
    for (int k = 0; k < n; ++k) {
        if (at(k + 1) == at(k) && at(k - 1) == at(k - 2)) return true;
    }
    return false;
}

TEST(AkimaChecks, AgreesWithGslOnRandomSets) {
    gsl_error_handler_t* previous = gsl_set_error_handler_off();
    std::mt19937 gen(20240611u);
    std::uniform_int_distribution<int> sizeDist(5, 11);
    std::uniform_real_distribution<double> gap(0.05, 20.0), start(-100.0, 100.0),
        value(-5.0, 5.0), unit(0.0, 1.0);
    int compared = 0;
    for (int set = 0; set < 400; ++set) {
        const int n = sizeDist(gen);
        std::vector<double> xs(static_cast<std::size_t>(n)), ys(xs.size());
        xs[0] = start(gen);
        for (std::size_t k = 1; k < xs.size(); ++k) xs[k] = xs[k - 1] + gap(gen);
        // Half the sets are monotone curves as value functions are.
        const bool monotone = set % 2 == 0;
        ys[0] = monotone ? 0.0 : value(gen);
        for (std::size_t k = 1; k < ys.size(); ++k) ys[k] = monotone ? ys[k - 1] + unit(gen) : value(gen);
        if (hasZeroWeightTangent(xs, ys)) continue;

        gsl_interp* interp = gsl_interp_alloc(gsl_interp_akima, xs.size());
        ASSERT_EQ(gsl_interp_init(interp, xs.data(), ys.data(), xs.size()), GSL_SUCCESS);
        double scale = 1.0;
        for (double y : ys) scale = std::max(scale, std::fabs(y));

        std::vector<double> probes(xs);
        std::uniform_real_distribution<double> inside(xs.front(), xs.back());
        for (int p = 0; p < 40; ++p) probes.push_back(inside(gen));
        for (double x : probes) {
            double expected = 0.0;
            ASSERT_EQ(gsl_interp_eval_e(interp, xs.data(), ys.data(), x, nullptr, &expected),
                      GSL_SUCCESS);
            const double got = akima(xs, ys, x)[4];
            const double tol = 1e-12 * std::max(std::fabs(expected), scale);
            EXPECT_NEAR(got, expected, tol) << "set " << set << " n " << n << " x " << x;
            ++compared;
        }
        gsl_interp_free(interp);
    }
    gsl_set_error_handler(previous);
    EXPECT_GT(compared, 300 * 45);
}

}  // namespace
}  // namespace kelmar::wtest
