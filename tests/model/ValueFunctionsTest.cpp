#include "WizardTestSupport.h"

#include <cmath>

namespace kelmar::wtest {
namespace {

using ScoreMiddleChecks = WizardTest;

TEST_F(ScoreMiddleChecks, LinearTypeIsTheMeanOfTheRange) {
    allocateAttributes(2);
    setRange(1, 0.0, 10.0);
    w().VFunType(1) = std::int16_t(0);
    std::int16_t att = 1;
    EXPECT_EQ(ComputeScoreMiddle(att), 5.0f);
    // No sample points are needed for it.
    EXPECT_EQ(w().SmpSize(1).toInteger(), 0);
}

TEST_F(ScoreMiddleChecks, WalkStopsAtTheFirstGridScoreNearOneHalf) {
    allocateAttributes(1);
    setRange(0, 0.0, 100.0);
    setCurve(0, {0, 25, 50, 75, 100}, {0, .25, .5, .75, 1});
    std::int16_t att = 0;
    const float middle = ComputeScoreMiddle(att);
    // Within 0.01 of one half on a grid of 0.1 from below: about 49, not 50.
    EXPECT_NEAR(middle, 49.0f, 0.11f);

    // A concave curve reaches one half well before the middle of the range.
    setCurve(0, {0, 10, 30, 60, 100}, {0, .4, .7, .9, 1});
    const float concave = ComputeScoreMiddle(att);
    const double value = akima({0, 10, 30, 60, 100}, {0, .4, .7, .9, 1}, concave)[4];
    EXPECT_LT(std::fabs(0.5 - value), 0.01);
    EXPECT_LT(concave, 20.0f);

    // The size is read through its text form.
    w().SmpSize(0) = QString("5");
    EXPECT_EQ(ComputeScoreMiddle(att), concave);
}

TEST_F(ScoreMiddleChecks, CurveJumpingAcrossOneHalfGivesANearbyGridScore) {
    allocateAttributes(1);
    setRange(0, 0.0, 1000.0);  // grid step 1
    setCurve(0, {0, 10, 10.5, 20}, {0, 0.3, 0.7, 1});
    std::int16_t att = 0;
    const float middle = ComputeScoreMiddle(att);
    EXPECT_GE(middle, 10.0f);
    EXPECT_LE(middle, 11.0f);
}

TEST_F(ScoreMiddleChecks, MissingSampleRaisesSubscriptError) {
    allocateAttributes(1);
    setRange(0, 0.0, 10.0);
    std::int16_t att = 0;
    EXPECT_EQ(errorOf([&] { ComputeScoreMiddle(att); }), RuntimeError::SubscriptOutOfRange);
    att = 1;
    EXPECT_EQ(errorOf([&] { ComputeScoreMiddle(att); }), RuntimeError::SubscriptOutOfRange);
}

TEST(GeometricChecks, PointsFromEitherEnd) {
    Variant a0(0.0), a1(10.0);
    float c = 0.7f;
    std::int16_t j = 3, k = 3;
    EXPECT_EQ(GeometricPointFromLow(a0, a1, j, k, c), 10.0);  // r = 1 reaches a1
    EXPECT_EQ(GeometricPointFromHigh(a0, a1, j, k, c), 0.0);

    c = 1.0f;
    j = 1;
    k = 0;  // one step back halves the distance
    EXPECT_EQ(GeometricPointFromLow(a0, a1, j, k, c), 5.0);
    EXPECT_EQ(GeometricPointFromHigh(a0, a1, j, k, c), 5.0);
    k = -1;
    EXPECT_EQ(GeometricPointFromLow(a0, a1, j, k, c), 2.5);
    EXPECT_EQ(GeometricPointFromHigh(a0, a1, j, k, c), 7.5);

    // c = 0: equal spacing, r = 1 for any indices.
    c = 0.0f;
    k = 9;
    EXPECT_EQ(GeometricPointFromLow(a0, a1, j, k, c), 10.0);

    // The exponent is the index times c in Single precision.
    c = 0.1f;
    j = 0;
    k = 3;
    Variant one(1.0);
    EXPECT_EQ(GeometricPointFromLow(a0, one, j, k, c),
              std::pow(2.0, static_cast<double>(3.0f * 0.1f)));
    EXPECT_NE(GeometricPointFromLow(a0, one, j, k, c), std::pow(2.0, 0.3));

    // Text scores convert; non-numeric text is a type mismatch.
    Variant text("4"), bad("abc");
    c = 1.0f;
    j = 1;
    k = 0;
    EXPECT_EQ(GeometricPointFromLow(a0, text, j, k, c), 2.0);
    EXPECT_EQ(errorOf([&] { GeometricPointFromLow(a0, bad, j, k, c); }),
              RuntimeError::TypeMismatch);
}

TEST(GeometricChecks, IndicesInvertThePoints) {
    Variant a0(0.0), a1(8.0), a2(4.0);
    std::int16_t k = 1;
    float c = 1.0f;
    EXPECT_DOUBLE_EQ(GeometricIndexFromLow(a0, a1, a2, k, c), 1.0);  // R = 2
    c = 0.5f;
    EXPECT_DOUBLE_EQ(GeometricIndexFromLow(a0, a1, a2, k, c), 2.0);  // 1/c times log2 R
    k = 3;  // P = 2^(2 * 0.5) = 2, R = 4
    EXPECT_DOUBLE_EQ(GeometricIndexFromLow(a0, a1, a2, k, c), 4.0);

    Variant h0(10.0), h1(2.0), h2(0.0);
    k = 1;
    c = 1.0f;
    EXPECT_DOUBLE_EQ(GeometricIndexFromHigh(h0, h1, h2, k, c), std::log2(5.0));
}

TEST(GeometricChecks, IndexOfRatioAtOrBelowOneIsZero) {
    Variant a0(0.0), a1(8.0), same(0.0), below(-8.0);
    std::int16_t k = 1;
    float c = 1.0f;
    EXPECT_EQ(GeometricIndexFromLow(a0, a1, same, k, c), 0.0);   // R = 1
    EXPECT_EQ(GeometricIndexFromLow(a0, a1, below, k, c), 0.0);  // R = 0.5
    c = -1.0f;  // a negative growth never turns the floor negative either
    EXPECT_EQ(GeometricIndexFromLow(a0, a1, below, k, c), 0.0);
    Variant h0(1.0), h1(8.0), h2(0.0);
    c = 1.0f;
    EXPECT_EQ(GeometricIndexFromHigh(h0, h1, h2, k, c), 0.0);  // R = 1/8
}

TEST(GeometricChecks, FaultsRaiseRuntimeErrors) {
    Variant a0(0.0), a1(8.0), a2(4.0), equal(8.0);
    std::int16_t k = 1;
    float c = 0.0f;
    EXPECT_EQ(errorOf([&] { GeometricIndexFromLow(a0, a1, a2, k, c); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(errorOf([&] { GeometricIndexFromHigh(a0, a1, a2, k, c); }),
              RuntimeError::DivisionByZero);
    c = 1.0f;
    EXPECT_EQ(errorOf([&] { GeometricIndexFromLow(a0, a1, equal, k, c); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(errorOf([&] { GeometricIndexFromHigh(a0, a1, equal, k, c); }),
              RuntimeError::DivisionByZero);
    // The index arithmetic is 16-bit: k - 1 below -32768 overflows.
    k = -32768;
    EXPECT_EQ(errorOf([&] { GeometricIndexFromLow(a0, a1, a2, k, c); }), RuntimeError::Overflow);
    // So is a power beyond the Doubles.
    std::int16_t j = 0, big = 2000;
    EXPECT_EQ(errorOf([&] { GeometricPointFromLow(a0, a1, j, big, c); }), RuntimeError::Overflow);
}

}  // namespace
}  // namespace kelmar::wtest
