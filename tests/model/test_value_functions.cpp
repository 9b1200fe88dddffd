// The middle score and the base-2 ladder functions.
#include "ModelFixture.h"

#include <cmath>

namespace kelmar::test {
namespace {

TEST_F(ModelTest, MiddleScoreWalkStopsAtTheFirstGridScoreWithinOneHundredth) {
    // A linear function, or one of no type, takes the range midpoint as Single.
    setRange(0, 0.1, 0.2);
    I16 att = 0;
    EXPECT_EQ(ComputeScoreMiddle(att), static_cast<float>((0.1 + 0.2) / 2.0));
    w().VFunType(0) = Variant();
    EXPECT_EQ(ComputeScoreMiddle(att), static_cast<float>((0.1 + 0.2) / 2.0));
    const struct { double low, high; std::vector<double> x, y; float expected; } cases[] = {
        // On a straight line 0 .. 100 the value reaches 0.49 just before 49,
        // and the grid of Single steps 0.1f lands a hair above 49 after 490
        // steps: 49.00000073 as Double, which is 49 as a Single.
        {0, 100, {0, 50, 100}, {0, 0.5, 1}, 49.0f},
        {0, 100, {0, 50, 100}, {1, 0.5, 0}, 49.0f},  // cost: meets 0.51 there
        // Step 1 but the points start at 300: the values are (x - 300) / 240,
        // above 0.49 from 417.6 on, so the walk from 300 stops at 418.
        {0, 1000, {300, 420, 540}, {0, 0.5, 1}, 418.0f},
        // No grid score at all (a reversed range): the middle of the range.
        {100, 0, {0, 50, 100}, {0, 0.2, 0.4}, 50.0f},
    };
    att = 1;
    for (const auto& c : cases) {
        setRange(1, c.low, c.high);
        setCurve(1, c.x, c.y, kBisection);
        EXPECT_EQ(ComputeScoreMiddle(att), c.expected) << c.low << " " << c.high;
    }
    // Values that stop at 0.4: the last grid score below the top sample
    // score comes nearest, not the range's middle.
    setRange(1, 0, 100);
    const float middle = ComputeScoreMiddle(att);
    EXPECT_TRUE(middle > 99.8f && middle < 100.0f) << middle;
    w().SmpSize(1) = Variant();  // a curve without points cannot be walked
    EXPECT_EQ(errorNumber([&] { ComputeScoreMiddle(att); }), RuntimeError::SubscriptOutOfRange);
}

TEST(Ladder, PointFromLowAndFromHigh) {
    // Each exponent is index x c in single precision: 3 x 0.1f rounds to
    // a Single that differs from the Double product.
    const double r = std::pow(2.0, static_cast<double>(3.0f * 0.1f));
    ASSERT_NE(r, std::pow(2.0, 3.0 * static_cast<double>(0.1f)));
    const struct { double a0, a1; I16 j, k; float c; double low, high; } cases[] = {
        {10, 90, 3, 3, 0.7f, 90, 10},     // j = k reaches the far end
        {0.2, 0.9, 3, 3, 0.7f, 0.9, 0.2},  // exactly, where a0 + (a1 - a0) rounds off it
        {10, 90, 2, 0, 1.0f, 30, 70},     // r = 2^0 / 2^2
        {0, 1, 0, 3, 0.1f, r, 1 - r},
    };
    for (auto c : cases) {
        Variant a0 = c.a0, a1 = c.a1;
        EXPECT_EQ(GeometricPointFromLow(a0, a1, c.j, c.k, c.c), c.low) << c.a0 << " " << c.c;
        EXPECT_EQ(GeometricPointFromHigh(a0, a1, c.j, c.k, c.c), c.high) << c.a0 << " " << c.c;
    }
}

TEST(Ladder, IndexFunctionsInvertTheSpacingNeverGoNegativeAndCatchZeroDivisors) {
    // 1 / c is taken in single precision, times the Double log2 of R.
    const float reciprocal = 1.0f / 0.3f;
    ASSERT_NE(static_cast<double>(reciprocal), 1.0 / static_cast<double>(0.3f));
    const double r = std::pow(2.0, static_cast<double>(2.0f * 0.3f)) * 8.0 / 2.0;
    const struct { bool fromLow; double a0, a1, a2; I16 k; float c; double expected; } cases[] = {
        {true, 0, 10, 5, 1, 1.0f, 1.0},                // R = 2^0 * 10 / 5 = 2
        {false, 0, 10, 5, 1, 1.0f, 0.0},               // R = (0 - 5) / 5 = -1
        {true, 0, 10, 0, 1, 1.0f, 0.0},                // R exactly 1
        {false, 28, 12, 4, 3, 0.5f, 2.0 * std::log2(6.0)},  // R = 2 * 24 / 8 = 6
        {true, 0, 8, 6, 3, 0.3f, static_cast<double>(reciprocal) * std::log2(r)},
    };
    for (auto c : cases) {
        Variant a0 = c.a0, a1 = c.a1, a2 = c.a2;
        const double index = c.fromLow ? GeometricIndexFromLow(a0, a1, a2, c.k, c.c)
                                       : GeometricIndexFromHigh(a0, a1, a2, c.k, c.c);
        EXPECT_NEAR(index, c.expected, 1e-14) << c.fromLow << " " << c.a0;
    }
    // Zero spacing, or a point equal to the far end.
    Variant a0 = 0.0, a1 = 10.0;
    I16 k = 2;
    for (auto [a, c] : {std::pair{5.0, 0.0f}, std::pair{10.0, 1.0f}}) {
        Variant a2 = a;
        EXPECT_EQ(errorNumber([&] { GeometricIndexFromLow(a0, a1, a2, k, c); }), RuntimeError::DivisionByZero) << a;
        EXPECT_EQ(errorNumber([&] { GeometricIndexFromHigh(a0, a1, a2, k, c); }), RuntimeError::DivisionByZero) << a;
    }
}

}  // namespace
}  // namespace kelmar::test
