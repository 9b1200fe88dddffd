// The exponential value function of a judged middle score: its rate, its
// values and the points laid on it. Its parameters, and the line's, are
// pinned as the function view shows them.
#include "ModelFixture.h"
#include "model/ExponentialPoints.h"

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

}  // namespace

TEST(Exponential, TheRateIsSolvedToTwelveDigitsEvenBesideOneHalf) {
    for (const double z : {0.0010001, 0.0011, 0.005, 0.1, 0.45, 0.4989, 0.4995, 0.49999, 0.50001, 0.5011,
                           0.6, 0.994, 0.9989}) {
        SCOPED_TRACE(z);
        const double k = ExponentialRate(z);
        const long double reference = z < 0.5 ? referenceRate(z) : -referenceRate(1.0L - static_cast<long double>(z));
        EXPECT_LE(std::fabs((k - reference) / reference), 1e-12L);
        EXPECT_EQ(k > 0.0, z < 0.5);
        EXPECT_NEAR(ExponentialShape(z, k), 0.5, 1e-14);
    }
    EXPECT_EQ(ExponentialRate(0.5), 0.0);
    for (const double z : {0.0, 1.0, -0.2, 1.5, std::nan("")})
        EXPECT_EQ(errorNumber([z] { ExponentialRate(z); }), 5) << z;
}

// Eleven points carry the judged exponential: the exponential worth 0 and 1
// at the ends and one half at the judged score, the ends and the judged
// score exact, every point on the exponential, and the curve through them within
// 0.005 of it for 0.1 <= z <= 0.9. For every accepted z the curve passes
// one half at the judged score, stays within 0 .. 1 and keeps the
// attribute's order, and the distance the page reports is the one there is.
TEST_F(ModelTest, ElevenPointsCarryTheJudgedExponential) {
    setRange(0, 10.0, 50.0);
    I16 att = 0;
    std::vector<double> zs{0.0010001, 0.0011, 0.002, 0.004, 0.01, 0.03, 0.1, 0.9, 0.97, 0.99, 0.9949};
    for (int i = 0; i <= 40; ++i) zs.push_back(0.05 + 0.9 * i / 40.0);
    double widest = 0.0;
    for (const double z : zs) {
        for (const bool cost : {false, true}) {
            SCOPED_TRACE(testing::Message() << "z " << z << " cost " << cost);
            w().AttPropertyCopy(0) = I16(cost ? 1 : 0);
            w().SmpSize(0) = I16(11);
            double middle = cost ? 50.0 - 40.0 * z : 10.0 + 40.0 * z;
            ResampleExponential(att, middle);
            EXPECT_EQ(smpX(0, 0), 10.0);
            EXPECT_EQ(smpX(0, 10), 50.0);
            EXPECT_EQ(w().SmpY(0, 0).type(), Variant::Type::Integer);
            EXPECT_EQ(smpY(0, 0), cost ? 1.0 : 0.0);
            EXPECT_EQ(smpY(0, 10), cost ? 0.0 : 1.0);
            EXPECT_EQ(w().ScoreMiddle(0).toDouble(), middle);
            const double rate = MiddleScoreRate(att, middle);
            EXPECT_EQ(ExponentialValue(cost ? 50.0 : 10.0, 10.0, 50.0, rate, cost), 0.0);
            EXPECT_EQ(ExponentialValue(cost ? 10.0 : 50.0, 10.0, 50.0, rate, cost), 1.0);
            EXPECT_NEAR(ExponentialValue(middle, 10.0, 50.0, rate, cost), 0.5, 1e-9);
            int judged = 0;
            for (int k = 1; k < 11; ++k) {
                EXPECT_GT(smpX(0, k), smpX(0, k - 1)) << k;
                EXPECT_NEAR(smpY(0, k), ExponentialValue(smpX(0, k), 10.0, 50.0, rate, cost), 1e-12) << k;
                if (smpX(0, k) == middle && smpY(0, k) == 0.5) ++judged;
            }
            EXPECT_EQ(judged, 1);

            std::vector<double> xs, ys;
            for (int k = 0; k < 11; ++k) {
                xs.push_back(smpX(0, k));
                ys.push_back(smpY(0, k));
            }
            Curve curve(xs, ys);
            EXPECT_EQ(curve.at(middle), 0.5);
            double gap = 0.0;
            double previous = cost ? 1.0 : 0.0;
            for (int j = 0; j <= 4000; ++j) {
                const double x = 10.0 + 40.0 * j / 4000.0;
                const double v = curve.at(x);
                ASSERT_GE(v, -1e-12) << x;
                ASSERT_LE(v, 1.0 + 1e-12) << x;
                ASSERT_TRUE(cost ? v <= previous + 1e-12 : v >= previous - 1e-12) << x;
                previous = v;
            }
            for (int j = 0; j <= 500; ++j) {
                const double s = j / 500.0;
                for (const double u : {s, ExponentialShapeInverse(s, rate)}) {
                    const double x = cost ? 50.0 - 40.0 * u : 10.0 + 40.0 * u;
                    gap = std::fmax(gap, std::fabs(curve.at(x) - ExponentialValue(x, 10.0, 50.0, rate, cost)));
                }
            }
            if (z >= 0.1 && z <= 0.9) {
                EXPECT_LE(gap, 0.005);
            }
            widest = std::fmax(widest, gap);
            // The page shows the distance the placement reports.
            EXPECT_NEAR(ExponentialCurveGap(0), gap, 0.05 * gap + 1e-9);
        }
    }
    EXPECT_LE(widest, 0.02);
    // A gentle curve needs no search to lie on the exponential to a millionth.
    w().AttPropertyCopy(0) = I16(0);
    double middle = 10.0 + 40.0 * 0.45;
    ResampleExponential(att, middle);
    EXPECT_LE(ExponentialCurveGap(0), 1e-5);
    // The parameters of a line on a range without width divide by zero.
    setRange(0, 5.0, 5.0);
    EXPECT_EQ(errorNumber([&] { LinearParameterA(att); }), 11);
}

}  // namespace kelmar::test
