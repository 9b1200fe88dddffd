// The Akima curve: hand-worked cases where it departs from GSL on purpose,
// its faults, and a comparison with GSL's Akima interpolation on random
// point sets.
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

    double at(double v) {
        I16 evaluate = -1;
        AkimaInterpolate(x, y, n, evaluate, v, out);
        return out(4).toDouble();
    }
    double coef(int k) const { return out(k).toDouble(); }
};

TEST(AkimaHandWorked, FewerThanFivePointsAndExtrapolation) {
    // Slopes 1, 3 carried on as -3, -1 below and 5, 7 above: every tangent
    // is that of x^2, so the curve is x^2 inside and outside.
    Curve parabola({0, 1, 2}, {0, 1, 4});
    EXPECT_DOUBLE_EQ(parabola.at(0.5), 0.25);
    EXPECT_DOUBLE_EQ(parabola.at(1.5), 2.25);
    EXPECT_DOUBLE_EQ(parabola.coef(1), 2.0);
    EXPECT_DOUBLE_EQ(parabola.at(3.0), 9.0);   // last cubic extended
    EXPECT_DOUBLE_EQ(parabola.at(-1.0), 1.0);  // first cubic extended

    // Slopes 1, 0, 2, extended to 3, 2 below and 4, 6 above. On [1, 3]:
    // tL = (2*1 + 1*0) / 3, tR = (2*0 + 1*2) / 3, p2 = -1, p3 = 1/3.
    Curve uneven({0, 1, 3, 4}, {0, 1, 1, 3});
    EXPECT_NEAR(uneven.at(1.5), 1.125, 1e-15);
    EXPECT_NEAR(uneven.coef(1), 2.0 / 3.0, 1e-15);
    EXPECT_NEAR(uneven.coef(2), -1.0, 1e-15);
    EXPECT_NEAR(uneven.coef(3), 1.0 / 3.0, 1e-15);

    Curve two({10, 20}, {0.2, 0.7});
    EXPECT_DOUBLE_EQ(two.at(15), 0.45);
    EXPECT_DOUBLE_EQ(two.at(30), 1.2);
    EXPECT_DOUBLE_EQ(two.at(0), -0.3);
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

TEST(AkimaHandWorked, ResultsAreClearedFirstAndOnlyComputedCellsBecomeDoubles) {
    Curve c({0, 1, 2, 3, 4}, {0, 0.1, 0.5, 0.9, 1});
    const auto singleZeroFrom = [&](int first) {
        for (int k = first; k <= 4; ++k)
            if (c.out(k).type() != Variant::Type::Single || c.out(k).toDouble() != 0.0) return false;
        return true;
    };
    I16 no = 0, yes = -1, two = 2, none = 0;
    double v = 1.5;
    // Without evaluate the last call's value does not survive in Out(4).
    c.at(2.5);
    AkimaInterpolate(c.x, c.y, c.n, no, v, c.out);
    EXPECT_EQ(c.coef(0), 0.1);  // the interval [1, 2]
    EXPECT_TRUE(singleZeroFrom(4));
    // Two points set p0, p1 and the value only.
    c.at(2.5);
    AkimaInterpolate(c.x, c.y, two, yes, v, c.out);
    EXPECT_DOUBLE_EQ(c.coef(4), 0.15);
    EXPECT_TRUE(c.out(2).type() == Variant::Type::Single && c.out(3).type() == Variant::Type::Single);
    // No points, or a fault: nothing but the cleared results.
    c.at(2.5);
    AkimaInterpolate(c.x, c.y, none, yes, v, c.out);
    EXPECT_TRUE(singleZeroFrom(0));
    c.at(2.5);
    c.x(3) = 2.0;
    EXPECT_EQ(errorNumber([&] { c.at(2.5); }), RuntimeError::DivisionByZero);
    EXPECT_TRUE(singleZeroFrom(0));
}

TEST(AkimaHandWorked, FaultsRaiseTheirNumbersInsteadOfInfinitiesOrNaNs) {
    Curve twoEqual({3, 3}, {0, 1});
    EXPECT_EQ(errorNumber([&] { twoEqual.at(3); }), RuntimeError::DivisionByZero);
    Curve equalInside({0, 1, 1, 2, 3}, {0, 0.2, 0.4, 0.9, 1});
    EXPECT_EQ(errorNumber([&] { equalInside.at(0.5); }), RuntimeError::DivisionByZero);
    // Slopes beyond the doubles' range overflow.
    Curve huge({0, 1, 2, 3, 4}, {0, 1e308, -1e308, 1e308, 0});
    EXPECT_EQ(errorNumber([&] { huge.at(1.5); }), RuntimeError::Overflow);
    Curve fine({0, 1, 2, 3, 4}, {0, 0.2, 0.4, 0.9, 1});
    EXPECT_EQ(errorNumber([&] { fine.at(std::nan("")); }), RuntimeError::Overflow);
    EXPECT_EQ(errorNumber([&] { fine.at(1e300); }), RuntimeError::Overflow);
    // Cells the routine needs must exist and hold numbers.
    I16 tooMany = 6, yes = -1;
    double v = 0.5;
    EXPECT_EQ(errorNumber([&] { AkimaInterpolate(fine.x, fine.y, tooMany, yes, v, fine.out); }),
              RuntimeError::SubscriptOutOfRange);
    VariantArray shortOut(0, 3);
    I16 n = 5;
    EXPECT_EQ(errorNumber([&] { AkimaInterpolate(fine.x, fine.y, n, yes, v, shortOut); }),
              RuntimeError::SubscriptOutOfRange);
    fine.y(1) = QStringLiteral("n/a");
    EXPECT_EQ(errorNumber([&] { fine.at(0.5); }), RuntimeError::TypeMismatch);
}

bool agrees(double ours, double theirs, double scale) {
    return std::fabs(ours - theirs) <= 1e-12 * std::max({std::fabs(theirs), scale, 1e-300});
}

TEST(AkimaAgainstGsl, RandomPointSetsOfFiveToElevenPoints) {
    gsl_set_error_handler_off();
    std::mt19937_64 gen(20240611);
    const auto draw = [&](double lo, double hi) {
        return lo + static_cast<double>(gen() >> 11) * 0x1.0p-53 * (hi - lo);
    };
    for (int set = 0; set < 400; ++set) {
        const auto n = static_cast<std::size_t>(5 + set % 7);
        std::vector<double> xs(n), ys(n);
        double x = draw(-50, 50);
        for (std::size_t k = 0; k < n; ++k) {
            x += draw(0.01, 20);
            xs[k] = x;
            ys[k] = set % 2 ? draw(0, 1) : draw(-1e3, 1e3);
        }
        double scale = 0.0;
        for (double y : ys) scale = std::max(scale, std::fabs(y));

        gsl_interp* interp = gsl_interp_alloc(gsl_interp_akima, n);
        ASSERT_EQ(gsl_interp_init(interp, xs.data(), ys.data(), n), GSL_SUCCESS);
        Curve c(xs, ys);
        std::vector<double> probes(xs);
        for (int p = 0; p < 25; ++p) probes.push_back(draw(xs.front(), xs.back()));
        // A score that starts an interval gives its sample's value exactly.
        for (std::size_t k = 0; k + 1 < n; ++k) {
            if (k != 1) {
                ASSERT_EQ(c.at(xs[k]), ys[k]) << "set " << set << " k " << k;
            }
        }
        for (double v : probes) {
            const double theirs = gsl_interp_eval(interp, xs.data(), ys.data(), v, nullptr);
            ASSERT_TRUE(agrees(c.at(v), theirs, scale))
                << "set " << set << " x " << v << ": " << c.at(v) << " vs " << theirs;
        }
        // The tangent at a score that starts its interval.
        for (std::size_t k = 2; k + 2 <= n; ++k) {
            c.at(xs[k]);
            const double theirs =
                gsl_interp_eval_deriv(interp, xs.data(), ys.data(), xs[k], nullptr);
            ASSERT_TRUE(agrees(c.coef(1), theirs, scale / (xs.back() - xs.front())))
                << "set " << set << " k " << k;
        }
        gsl_interp_free(interp);
    }
}

}  // namespace
}  // namespace kelmar::test
