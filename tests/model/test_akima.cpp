// The Akima curve: hand-worked cases, the edges of the routine and a
// comparison with GSL's Akima interpolation on random point sets.
#include "ModelFixture.h"

#include <gsl/gsl_errno.h>
#include <gsl/gsl_interp.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace kelmar::test {
namespace {

struct Curve {
    VariantArray x, y, out{0, 4};
    I16 n = 0;

    Curve(const std::vector<double>& xs, const std::vector<double>& ys)
        : x(0, static_cast<int>(xs.size()) - 1), y(0, static_cast<int>(ys.size()) - 1),
          n(static_cast<I16>(xs.size())) {
        for (std::size_t k = 0; k < xs.size(); ++k) {
            x(static_cast<int>(k)) = xs[k];
            y(static_cast<int>(k)) = ys[k];
        }
    }

    double at(double v, bool evaluate = true) {
        I16 flag = evaluate ? I16(-1) : I16(0);
        AkimaInterpolate(x, y, n, flag, v, out);
        return out(4).toDouble();
    }
    double coef(int k) const { return out(k).toDouble(); }
};

TEST(AkimaHandWorked, StraightLineGivesTheLineBack) {
    Curve c({0, 10, 25, 40, 100}, {1, 2, 3.5, 5, 11});  // y = 1 + x / 10
    for (double v : {-20.0, 0.0, 3.0, 10.0, 17.5, 60.0, 100.0, 130.0}) {
        EXPECT_NEAR(c.at(v), 1.0 + v / 10.0, 1e-13) << v;
        EXPECT_NEAR(c.coef(1), 0.1, 1e-15);
        EXPECT_NEAR(c.coef(2), 0.0, 1e-15);
        EXPECT_NEAR(c.coef(3), 0.0, 1e-15);
    }
}

TEST(AkimaHandWorked, ThreePointsOfAParabolaIncludingExtrapolation) {
    // Slopes 1, 3 carried on as -3, -1 below and 5, 7 above: every tangent
    // is that of x^2, so the curve is x^2 inside and outside.
    Curve c({0, 1, 2}, {0, 1, 4});
    EXPECT_DOUBLE_EQ(c.at(0.5), 0.25);
    EXPECT_DOUBLE_EQ(c.coef(0), 0.0);
    EXPECT_DOUBLE_EQ(c.coef(1), 0.0);
    EXPECT_DOUBLE_EQ(c.coef(2), 1.0);
    EXPECT_DOUBLE_EQ(c.coef(3), 0.0);
    EXPECT_DOUBLE_EQ(c.at(1.5), 2.25);
    EXPECT_DOUBLE_EQ(c.coef(0), 1.0);
    EXPECT_DOUBLE_EQ(c.coef(1), 2.0);
    EXPECT_DOUBLE_EQ(c.at(3.0), 9.0);   // last cubic extended
    EXPECT_DOUBLE_EQ(c.at(-1.0), 1.0);  // first cubic extended
}

TEST(AkimaHandWorked, WeightedTangentsOnUnevenSpacing) {
    // Slopes 1, 0, 2, extended to 3, 2 below and 4, 6 above. On [1, 3]:
    // tL = (2*1 + 1*0) / 3, tR = (2*0 + 1*2) / 3, p2 = -1, p3 = 1/3.
    Curve c({0, 1, 3, 4}, {0, 1, 1, 3});
    EXPECT_NEAR(c.at(1.5), 1.125, 1e-15);
    EXPECT_DOUBLE_EQ(c.coef(0), 1.0);
    EXPECT_NEAR(c.coef(1), 2.0 / 3.0, 1e-15);
    EXPECT_NEAR(c.coef(2), -1.0, 1e-15);
    EXPECT_NEAR(c.coef(3), 1.0 / 3.0, 1e-15);
}

TEST(AkimaHandWorked, BothWeightsZeroTakeTheMeanOfTheTwoSlopes) {
    // At x = 2 the slopes are 1, 1 | 3, 3: the tangent is (1 + 3) / 2.
    // (GSL makes the whole interval a line of slope 3 here and gives 3.5.)
    Curve c({0, 1, 2, 3, 4}, {0, 1, 2, 5, 8});
    EXPECT_DOUBLE_EQ(c.at(2.5), 3.375);
    EXPECT_DOUBLE_EQ(c.coef(1), 2.0);
    EXPECT_DOUBLE_EQ(c.coef(2), 2.0);
    EXPECT_DOUBLE_EQ(c.coef(3), -1.0);
}

TEST(AkimaHandWorked, TwoPointsInterpolateAndExtrapolateLinearly) {
    Curve c({10, 20}, {0.2, 0.7});
    EXPECT_DOUBLE_EQ(c.at(15), 0.45);
    EXPECT_DOUBLE_EQ(c.at(30), 1.2);
    EXPECT_DOUBLE_EQ(c.at(0), -0.3);
    EXPECT_DOUBLE_EQ(c.coef(0), 0.2);
    EXPECT_DOUBLE_EQ(c.coef(1), 0.05);
    EXPECT_EQ(c.out(2).type(), Variant::Type::Single);
}

TEST(AkimaHandWorked, SampleScoresGiveTheirValues) {
    const std::vector<double> xs{0, 7, 15, 40, 41, 90};
    const std::vector<double> ys{0, 0.31, 0.47, 0.8, 0.81, 1};
    Curve c(xs, ys);
    // Where the point starts its interval the value is the point's own.
    for (std::size_t k : {0U, 2U, 3U, 4U}) EXPECT_EQ(c.at(xs[k]), ys[k]) << k;
    // x(1) and the last score end an interval: the cubic gets there
    // within rounding.
    EXPECT_NEAR(c.at(xs[1]), ys[1], 1e-15);
    EXPECT_NEAR(c.at(xs[5]), ys[5], 1e-15);
}

TEST(AkimaEdges, ResultSlotsAndTheEvaluateFlag) {
    Curve c({0, 1, 3, 4}, {0, 1, 1, 3});
    c.out(4) = 99.0;
    c.at(1.5, false);
    EXPECT_EQ(c.out(4).type(), Variant::Type::Single);  // cleared, not computed
    EXPECT_EQ(c.coef(4), 0.0);
    EXPECT_NEAR(c.coef(3), 1.0 / 3.0, 1e-15);  // the coefficients are still set
    c.at(1.5);
    EXPECT_EQ(c.out(4).type(), Variant::Type::Double);

    Curve none({0, 1}, {0, 1});
    none.n = 0;
    none.at(0.5);
    for (int k = 0; k <= 4; ++k) {
        EXPECT_EQ(none.out(k).type(), Variant::Type::Single);
        EXPECT_EQ(none.coef(k), 0.0);
    }

    Curve one({5}, {0.4});
    EXPECT_EQ(one.at(-3), 0.4);
    EXPECT_EQ(one.at(12), 0.4);
}

TEST(AkimaEdges, FaultsRaiseTheirErrorNumbers) {
    Curve twoEqual({3, 3}, {0, 1});
    EXPECT_EQ(errorNumber([&] { twoEqual.at(3); }), RuntimeError::DivisionByZero);
    Curve equalInside({0, 1, 1, 2, 3}, {0, 0.2, 0.4, 0.9, 1});
    EXPECT_EQ(errorNumber([&] { equalInside.at(0.5); }), RuntimeError::DivisionByZero);
    Curve text({0, 1, 2}, {0, 0.5, 1});
    text.y(1) = QStringLiteral("half");
    EXPECT_EQ(errorNumber([&] { text.at(0.5); }), RuntimeError::TypeMismatch);
    Curve shortArrays({0, 1, 2}, {0, 0.5, 1});
    shortArrays.n = 4;
    EXPECT_EQ(errorNumber([&] { shortArrays.at(0.5); }), RuntimeError::SubscriptOutOfRange);
    Curve huge({0, 1e-300, 1}, {0, 1e300, 1});
    EXPECT_EQ(errorNumber([&] { huge.at(0.5); }), RuntimeError::Overflow);
}

// --- Against GSL ------------------------------------------------------------

class Uniform {
public:
    explicit Uniform(std::uint64_t seed) : gen_(seed) {}
    double operator()(double lo, double hi) {
        const double u = static_cast<double>(gen_() >> 11) * 0x1.0p-53;
        return lo + u * (hi - lo);
    }

private:
    std::mt19937_64 gen_;
};

bool agrees(double ours, double theirs, double scale) {
    return std::fabs(ours - theirs) <= 1e-12 * std::max({std::fabs(theirs), scale, 1e-300});
}

TEST(AkimaAgainstGsl, RandomPointSetsOfFiveToElevenPoints) {
    gsl_set_error_handler_off();
    Uniform draw(20240611);
    int compared = 0;
    for (int set = 0; set < 400; ++set) {
        const int n = 5 + set % 7;
        std::vector<double> xs(static_cast<std::size_t>(n)), ys(xs.size());
        double x = draw(-50, 50);
        for (int k = 0; k < n; ++k) {
            x += draw(0.01, 20);
            xs[static_cast<std::size_t>(k)] = x;
            ys[static_cast<std::size_t>(k)] = set % 2 ? draw(0, 1) : draw(-1e3, 1e3);
        }
        const double scale = *std::max_element(ys.begin(), ys.end(), [](double a, double b) {
            return std::fabs(a) < std::fabs(b);
        });

        gsl_interp* interp = gsl_interp_alloc(gsl_interp_akima, static_cast<std::size_t>(n));
        ASSERT_EQ(gsl_interp_init(interp, xs.data(), ys.data(), static_cast<std::size_t>(n)),
                  GSL_SUCCESS);
        Curve c(xs, ys);

        std::vector<double> probes(xs);
        for (int p = 0; p < 25; ++p) probes.push_back(draw(xs.front(), xs.back()));
        for (double v : probes) {
            const double theirs = gsl_interp_eval(interp, xs.data(), ys.data(), v, nullptr);
            ASSERT_TRUE(agrees(c.at(v), theirs, std::fabs(scale)))
                << "set " << set << " x " << v << ": " << c.at(v) << " vs " << theirs;
            ++compared;
        }
        // The tangent at a score that starts its interval.
        for (int k = 2; k <= n - 2; ++k) {
            const double v = xs[static_cast<std::size_t>(k)];
            c.at(v);
            const double theirs = gsl_interp_eval_deriv(interp, xs.data(), ys.data(), v, nullptr);
            const double slopeScale = std::fabs(scale) / (xs.back() - xs.front());
            ASSERT_TRUE(agrees(c.coef(1), theirs, slopeScale)) << "set " << set << " k " << k;
        }
        gsl_interp_free(interp);
    }
    EXPECT_GT(compared, 400 * 30);
}

TEST(AkimaAgainstGsl, TheEndSlopesAreCarriedOnAlike) {
    // Near the ends both extend the chord slopes linearly (3 m0 - 2 m1 two
    // places out); the first and last intervals agree with GSL.
    gsl_set_error_handler_off();
    const std::vector<double> xs{0, 1, 2.5, 4, 4.5, 7};
    const std::vector<double> ys{0, 0.6, 0.7, 0.75, 0.9, 1};
    gsl_interp* interp = gsl_interp_alloc(gsl_interp_akima, xs.size());
    gsl_interp_init(interp, xs.data(), ys.data(), xs.size());
    Curve c(xs, ys);
    for (double v : {0.1, 0.5, 0.99, 4.6, 6.0, 6.99}) {
        EXPECT_TRUE(agrees(c.at(v), gsl_interp_eval(interp, xs.data(), ys.data(), v, nullptr), 1))
            << v;
    }
    gsl_interp_free(interp);
}

}  // namespace
}  // namespace kelmar::test
