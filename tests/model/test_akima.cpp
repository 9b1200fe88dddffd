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

TEST(AkimaHandWorked, FewPointsExtrapolationAndZeroWeights) {
    struct Row {
        std::vector<double> x, y;
        double at, value;
        std::vector<double> coefs;  // p1, p2, p3 where worked out
    };
    const Row rows[] = {
        // Slopes 1, 3 carried on as -3, -1 below and 5, 7 above: every
        // tangent is that of x^2, so the curve is x^2 inside and outside.
        {{0, 1, 2}, {0, 1, 4}, 0.5, 0.25, {}},
        {{0, 1, 2}, {0, 1, 4}, 1.5, 2.25, {2.0}},
        {{0, 1, 2}, {0, 1, 4}, 3.0, 9.0, {}},  // last cubic extended
        {{0, 1, 2}, {0, 1, 4}, -1.0, 1.0, {}},  // first cubic extended
        // Slopes 1, 0, 2, extended to 3, 2 below and 4, 6 above. On [1, 3]:
        // tL = (2*1 + 1*0) / 3, tR = (2*0 + 1*2) / 3, p2 = -1, p3 = 1/3.
        {{0, 1, 3, 4}, {0, 1, 1, 3}, 1.5, 1.125, {2.0 / 3.0, -1.0, 1.0 / 3.0}},
        {{10, 20}, {0.2, 0.7}, 15, 0.45, {}},
        {{10, 20}, {0.2, 0.7}, 30, 1.2, {}},
        {{10, 20}, {0.2, 0.7}, 0, -0.3, {}},
        // At x = 2 the slopes are 1, 1 | 3, 3: both weights are zero and the
        // tangent is (1 + 3) / 2. (GSL makes the interval a line of slope 3.)
        {{0, 1, 2, 3, 4}, {0, 1, 2, 5, 8}, 2.5, 3.375, {2.0, 2.0, -1.0}},
    };
    for (const Row& r : rows) {
        Curve c(r.x, r.y);
        SCOPED_TRACE(testing::Message() << r.x.size() << " points at " << r.at);
        EXPECT_NEAR(c.at(r.at), r.value, 1e-14);
        for (std::size_t k = 0; k < r.coefs.size(); ++k)
            EXPECT_NEAR(c.coef(static_cast<int>(k) + 1), r.coefs[k], 1e-14) << k + 1;
    }
}

TEST(AkimaHandWorked, ResultsAreClearedFirstAndOnlyComputedCellsBecomeDoubles) {
    Curve c({0, 1, 2, 3, 4}, {0, 0.1, 0.5, 0.9, 1});
    const auto singleZeroFrom = [&](int first) {
        for (int k = first; k <= 4; ++k)
            if (c.out(k).type() != Variant::Type::Single || c.out(k).toDouble() != 0.0) return false;
        return true;
    };
    I16 no = 0;
    double v = 1.5;
    c.at(2.5);  // without evaluate the last call's value does not survive
    AkimaInterpolate(c.x, c.y, c.n, no, v, c.out);
    EXPECT_EQ(c.coef(0), 0.1);  // the interval [1, 2]
    EXPECT_TRUE(singleZeroFrom(4));
    c.at(2.5);  // a fault leaves nothing but the cleared results
    c.x(3) = 2.0;
    EXPECT_EQ(errorNumber([&] { c.at(2.5); }), RuntimeError::DivisionByZero);
    EXPECT_TRUE(singleZeroFrom(0));
}

TEST(AkimaHandWorked, FaultsRaiseTheirNumbersInsteadOfInfinitiesOrNaNs) {
    const struct { std::vector<double> x, y; double at; int error; } cases[] = {
        {{3, 3}, {0, 1}, 3, RuntimeError::DivisionByZero},
        {{0, 1, 1, 2, 3}, {0, 0.2, 0.4, 0.9, 1}, 0.5, RuntimeError::DivisionByZero},
        {{0, 1, 2, 3, 4}, {0, 1e308, -1e308, 1e308, 0}, 1.5, RuntimeError::Overflow},  // slopes overflow
        {{0, 1, 2, 3, 4}, {0, 0.2, 0.4, 0.9, 1}, std::nan(""), RuntimeError::Overflow},
        {{0, 1, 2, 3, 4}, {0, 0.2, 0.4, 0.9, 1}, 1e300, RuntimeError::Overflow},
    };
    for (const auto& c : cases) {
        Curve curve(c.x, c.y);
        EXPECT_EQ(errorNumber([&] { curve.at(c.at); }), c.error) << c.at;
    }
    Curve fine({0, 1, 2, 3, 4}, {0, 0.2, 0.4, 0.9, 1});
    // Cells the routine needs must exist and hold numbers.
    I16 tooMany = 6, yes = -1;
    double v = 0.5;
    EXPECT_EQ(errorNumber([&] { AkimaInterpolate(fine.x, fine.y, tooMany, yes, v, fine.out); }),
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
        double x = draw(-50, 50), scale = 0.0;
        for (std::size_t k = 0; k < n; ++k) {
            x += draw(0.01, 20);
            xs[k] = x;
            ys[k] = set % 2 ? draw(0, 1) : draw(-1e3, 1e3);
            scale = std::max(scale, std::fabs(ys[k]));
        }
        gsl_interp* interp = gsl_interp_alloc(gsl_interp_akima, n);
        ASSERT_EQ(gsl_interp_init(interp, xs.data(), ys.data(), n), GSL_SUCCESS);
        Curve c(xs, ys);
        std::vector<double> probes(xs);
        for (int p = 0; p < 25; ++p) probes.push_back(draw(xs.front(), xs.back()));
        // A score on a sample point gives its sample's value exactly.
        for (std::size_t k = 0; k < n; ++k)
            ASSERT_EQ(c.at(xs[k]), ys[k]) << "set " << set << " k " << k;
        for (double v : probes) {
            const double theirs = gsl_interp_eval(interp, xs.data(), ys.data(), v, nullptr);
            ASSERT_TRUE(agrees(c.at(v), theirs, scale))
                << "set " << set << " x " << v << ": " << c.at(v) << " vs " << theirs;
        }
        gsl_interp_free(interp);
    }
}

}  // namespace
}  // namespace kelmar::test
