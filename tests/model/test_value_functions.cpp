// The middle score and the base-2 ladder functions.
#include "ModelFixture.h"

#include <cmath>

namespace kelmar::test {
namespace {

using MiddleScore = ModelTest;

TEST_F(MiddleScore, LinearFunctionTakesTheRangeMidpointAsSingle) {
    setRange(0, 0.1, 0.2);
    I16 att = 0;
    EXPECT_EQ(ComputeScoreMiddle(att), static_cast<float>((0.1 + 0.2) / 2.0));
    w().VFunType(0) = Variant();  // an empty type counts as linear
    EXPECT_EQ(ComputeScoreMiddle(att), static_cast<float>((0.1 + 0.2) / 2.0));
}

TEST_F(MiddleScore, WalkStopsAtTheFirstGridScoreWithinOneHundredth) {
    // On a straight line 0 .. 100 the value reaches 0.49 just before 49,
    // and the grid of Single steps 0.1f lands a hair above 49 after 490
    // steps: 49.00000073 as Double, which is 49 as a Single.
    I16 att = 1;
    setCurve(1, {0, 50, 100}, {0, 0.5, 1}, kDirectRating);
    EXPECT_EQ(ComputeScoreMiddle(att), 49.0f);
    // Cost-oriented values fall: the walk meets 0.51 at the same place.
    setCurve(1, {0, 50, 100}, {1, 0.5, 0}, kDirectRating);
    EXPECT_EQ(ComputeScoreMiddle(att), 49.0f);

    // Range 0 .. 1000 (step 1) but the points start at 300: the values
    // are (x - 300) / 240, above 0.49 from 417.6 on, so the walk of whole
    // steps from 300 stops at 418.
    setRange(2, 0.0, 1000.0);
    setCurve(2, {300, 420, 540}, {0, 0.5, 1}, kBisection);
    att = 2;
    EXPECT_EQ(ComputeScoreMiddle(att), 418.0f);
}

TEST_F(MiddleScore, WalkThatMissesOneHalfTakesTheNearestGridScore) {
    // A host's record whose values stop at 0.4: the last grid score below
    // the top sample score comes nearest, not the range's middle.
    I16 att = 0;
    setCurve(0, {0, 50, 100}, {0, 0.2, 0.4}, kCurveDrawing);
    const float middle = ComputeScoreMiddle(att);
    EXPECT_GT(middle, 99.8f);
    EXPECT_LT(middle, 100.0f);
    // No grid score at all (a reversed range): the middle of the range.
    setRange(0, 100.0, 0.0);
    EXPECT_EQ(ComputeScoreMiddle(att), 50.0f);
    // A curve without points cannot be walked.
    w().SmpSize(0) = Variant();
    EXPECT_EQ(errorNumber([&] { ComputeScoreMiddle(att); }), RuntimeError::SubscriptOutOfRange);
}

// --- Ladder ------------------------------------------------------------------

TEST(Ladder, PointFromLowAndFromHigh) {
    Variant a0 = 10.0, a1 = 90.0;
    I16 j = 3, k = 3;
    float c = 0.7f;
    EXPECT_EQ(GeometricPointFromLow(a0, a1, j, k, c), 90.0);  // j = k reaches a1
    EXPECT_EQ(GeometricPointFromHigh(a0, a1, j, k, c), 10.0);
    // The far end exactly, also where a0 + (a1 - a0) would round off it.
    Variant b0 = 0.2, b1 = 0.9;
    EXPECT_EQ(GeometricPointFromLow(b0, b1, j, k, c), 0.9);
    EXPECT_EQ(GeometricPointFromHigh(b0, b1, j, k, c), 0.2);
    j = 2;
    k = 0;
    c = 1.0f;  // r = 2^0 / 2^2
    EXPECT_EQ(GeometricPointFromLow(a0, a1, j, k, c), 30.0);
    EXPECT_EQ(GeometricPointFromHigh(a0, a1, j, k, c), 70.0);
}

TEST(Ladder, ExponentsAndTheFactorOneOverCAreSingles) {
    // Each exponent is index x c in single precision: 3 x 0.1f rounds to
    // a Single that differs from the Double product.
    Variant a0 = 0.0, a1 = 1.0;
    I16 j = 0, k = 3;
    float c = 0.1f;
    const float exponent = 3.0f * c;
    ASSERT_NE(static_cast<double>(exponent), 3.0 * static_cast<double>(c));
    EXPECT_EQ(GeometricPointFromLow(a0, a1, j, k, c), std::pow(2.0, static_cast<double>(exponent)));
    // 1 / c in single precision, times the Double log2 of R = 2^(2c) * 4.
    Variant b0 = 0.0, b1 = 8.0, b2 = 6.0;
    c = 0.3f;
    const double r = std::pow(2.0, static_cast<double>(2.0f * c)) * 8.0 / 2.0;
    const float reciprocal = 1.0f / c;
    ASSERT_NE(static_cast<double>(reciprocal), 1.0 / static_cast<double>(c));
    EXPECT_EQ(GeometricIndexFromLow(b0, b1, b2, k, c),
              static_cast<double>(reciprocal) * (std::log(r) / std::log(2.0)));
}

TEST(Ladder, IndexFunctionsInvertTheSpacingAndNeverGoNegative) {
    Variant a0 = 0.0, a1 = 10.0, a2 = 5.0;
    I16 k = 1;
    float c = 1.0f;
    // R = 2^0 * (10 - 0) / (10 - 5) = 2 -> log2(2) / 1
    EXPECT_DOUBLE_EQ(GeometricIndexFromLow(a0, a1, a2, k, c), 1.0);
    // R = (0 - 5) / 5 = -1 -> 0
    EXPECT_EQ(GeometricIndexFromHigh(a0, a1, a2, k, c), 0.0);
    // R exactly 1 -> 0
    a2 = 0.0;
    EXPECT_EQ(GeometricIndexFromLow(a0, a1, a2, k, c), 0.0);
    // FromHigh: R = 2 * (28 - 4) / (12 - 4) = 6 -> log2(6) / 0.5
    Variant h0 = 28.0, h1 = 12.0, h2 = 4.0;
    k = 3;
    c = 0.5f;
    EXPECT_DOUBLE_EQ(GeometricIndexFromHigh(h0, h1, h2, k, c), 2.0 * std::log2(6.0));
}

TEST(Ladder, ZeroSpacingAndEqualEndsDivideByZero) {
    Variant a0 = 0.0, a1 = 10.0, a2 = 5.0, same = 10.0;
    I16 k = 2;
    float zero = 0.0f, one = 1.0f;
    EXPECT_EQ(errorNumber([&] { GeometricIndexFromLow(a0, a1, a2, k, zero); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(errorNumber([&] { GeometricIndexFromHigh(a0, a1, a2, k, zero); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(errorNumber([&] { GeometricIndexFromLow(a0, a1, same, k, one); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(errorNumber([&] { GeometricIndexFromHigh(a0, a1, same, k, one); }),
              RuntimeError::DivisionByZero);
}

}  // namespace
}  // namespace kelmar::test
