// Laying sample points out: linear points, resampling by score and by
// value, the choice among them, and the category technique's preparation.
#include "ModelFixture.h"

#include <cmath>
#include <tuple>

namespace kelmar::test {
namespace {

using LinearPoints = ModelTest;

TEST_F(LinearPoints, BenefitAndCostOnAnEvenRange) {
    I16 att = 0, n = 5;
    SetLinearSamplePoints(att, n);
    const double scores[] = {0, 25, 50, 75, 100};
    const double values[] = {0, 0.25, 0.5, 0.75, 1};
    for (int k = 0; k < 5; ++k) {
        EXPECT_EQ(smpX(0, k), scores[k]);
        EXPECT_EQ(smpY(0, k), values[k]);
    }
    w().AttPropertyCopy(0) = I16(1);
    SetLinearSamplePoints(att, n);
    for (int k = 0; k < 5; ++k) EXPECT_EQ(smpY(0, k), values[4 - k]);
}

TEST_F(LinearPoints, StepsAndProductsAreSinglesAndTheEndsAreCopied) {
    // 10 / 6 does not divide evenly: every interior score is the Single
    // product k * step added to the Double minimum.
    setRange(1, 0.3, 10.3);
    I16 att = 1, n = 7;
    SetLinearSamplePoints(att, n);
    const float step = static_cast<float>((10.3 - 0.3) / 6.0);
    const float vstep = static_cast<float>(1.0 / 6.0);
    bool differsFromDouble = false;
    for (int k = 1; k <= 5; ++k) {
        const double expected = 0.3 + static_cast<double>(static_cast<float>(k) * step);
        EXPECT_EQ(smpX(1, k), expected) << k;
        differsFromDouble = differsFromDouble || expected != 0.3 + k * (10.0 / 6.0);
        EXPECT_EQ(w().SmpX(1, k).type(), Variant::Type::Double);
        EXPECT_EQ(w().SmpY(1, k).type(), Variant::Type::Single);
        EXPECT_EQ(w().SmpY(1, k).toSingle(), static_cast<float>(k) * vstep);
    }
    EXPECT_TRUE(differsFromDouble);
    EXPECT_EQ(smpX(1, 0), 0.3);
    EXPECT_EQ(smpX(1, 6), 10.3);
    EXPECT_EQ(w().SmpY(1, 0).type(), Variant::Type::Integer);
    EXPECT_EQ(w().SmpY(1, 6).type(), Variant::Type::Integer);
    // Cost: (N - 1 - k) * vstep, also a Single product.
    w().AttPropertyCopy(0) = 1.0;
    SetLinearSamplePoints(att, n);
    for (int k = 1; k <= 5; ++k)
        EXPECT_EQ(w().SmpY(1, k).toSingle(), static_cast<float>(6 - k) * vstep);
    EXPECT_EQ(w().SmpY(1, 0).toInteger(), 1);
    EXPECT_EQ(w().SmpY(1, 6).toInteger(), 0);
}

TEST_F(LinearPoints, OrientationIsReadAtTheSelectedAttribute) {
    w().AttPropertyCopy(0) = I16(0);
    w().AttPropertyCopy(2) = I16(-1);
    w().SelAtt = 2;
    I16 att = 0, n = 3;  // written for attribute 0, oriented as attribute 2
    SetLinearSamplePoints(att, n);
    EXPECT_EQ(smpY(0, 0), 1.0);
    EXPECT_EQ(smpY(0, 2), 0.0);
}

TEST_F(LinearPoints, SizeOneAndZeroRaiseErrors) {
    I16 att = 0, one = 1, zero = 0;
    EXPECT_EQ(errorNumber([&] { SetLinearSamplePoints(att, one); }), RuntimeError::DivisionByZero);
    EXPECT_EQ(errorNumber([&] { SetLinearSamplePoints(att, zero); }),
              RuntimeError::SubscriptOutOfRange);
    I16 twelve = 12;
    EXPECT_EQ(errorNumber([&] { SetLinearSamplePoints(att, twelve); }),
              RuntimeError::SubscriptOutOfRange);
}

// --- Resampling ----------------------------------------------------------------

using Resampling = ModelTest;

TEST_F(Resampling, ByScoreReadsTheOldCurveAtEvenScores) {
    // The old curve is the line value = score / 100 through three points.
    setCurve(0, {0, 40, 100}, {0, 0.4, 1}, kDirectRating);
    I16 att = 0, n = 6, old = 3;
    w().SmpSize(0) = n;  // the page stores the new size first
    ResampleByScore(att, n, old);
    const float step = 20.0f;
    for (int k = 1; k <= 4; ++k) {
        EXPECT_EQ(smpX(0, k), static_cast<double>(static_cast<float>(k) * step));
        EXPECT_NEAR(smpY(0, k), smpX(0, k) / 100.0, 1e-15);
    }
    EXPECT_EQ(w().SmpY(0, 0).type(), Variant::Type::Integer);
    EXPECT_EQ(smpY(0, 5), 1.0);
    EXPECT_EQ(w().ScoreMiddle(0).toSingle(), 49.0f);
}

TEST_F(Resampling, ByValueSearchesTheGridOfThousandths) {
    // Levels 0.25, 0.5, 0.75 on the line value = score / 100: each search
    // stops at the first grid score within 0.01, a little above 24, 49, 74.
    setCurve(0, {0, 40, 100}, {0, 0.4, 1}, kBisection);
    I16 att = 0, n = 5, old = 3;
    w().SmpSize(0) = n;
    ResampleByValue(att, n, old);
    auto gridAfter = [](int steps) {
        double x = 0.0;
        for (int i = 0; i < steps; ++i) x += static_cast<double>(0.1f);
        return x;
    };
    EXPECT_EQ(smpX(0, 1), gridAfter(240));
    EXPECT_EQ(smpX(0, 2), gridAfter(490));
    EXPECT_EQ(smpX(0, 3), gridAfter(740));
    EXPECT_NE(smpX(0, 1), 24.0);
    EXPECT_EQ(smpY(0, 2), 0.5);
    EXPECT_EQ(smpX(0, 4), 100.0);

    // Cost: levels fall 0.75, 0.5, 0.25 and the same scores are found.
    w().AttPropertyCopy(0) = I16(1);
    setCurve(0, {0, 40, 100}, {1, 0.6, 0}, kBisection);
    ResampleByValue(att, n, old);
    EXPECT_EQ(smpY(0, 1), 0.75);
    EXPECT_EQ(smpX(0, 1), gridAfter(240));
    EXPECT_EQ(smpX(0, 3), gridAfter(740));
}

TEST_F(Resampling, ByValueFallsBackToHalfTheRangeMeasuredFromZero) {
    // The old curve on 20 .. 120 never rises above 0.6: level 0.75 is not
    // found and its score becomes (120 - 20) / 2 = 50, not the midpoint 70.
    setRange(0, 20.0, 120.0);
    setCurve(0, {20, 70, 120}, {0, 0.3, 0.6}, kBisection);
    I16 att = 0, n = 5, old = 3;
    ResampleByValue(att, n, old);
    EXPECT_EQ(smpX(0, 3), 50.0);
    EXPECT_GT(smpX(0, 2), 100.0);  // 0.5 is met late, above the fallback
    EXPECT_EQ(smpX(0, 0), 20.0);
    EXPECT_EQ(smpX(0, 4), 120.0);
}

TEST_F(Resampling, FaultsRaiseTheirErrorNumbers) {
    setCurve(0, {0, 40, 100}, {0, 0.4, 1}, kBisection);
    I16 att = 0, one = 1, old = 3, none = 0, five = 5;
    EXPECT_EQ(errorNumber([&] { ResampleByValue(att, one, old); }), RuntimeError::DivisionByZero);
    EXPECT_EQ(errorNumber([&] { ResampleByScore(att, one, old); }), RuntimeError::DivisionByZero);
    EXPECT_EQ(errorNumber([&] { ResampleByScore(att, five, none); }),
              RuntimeError::SubscriptOutOfRange);
    setCurve(0, {0, 0, 100}, {0, 0.4, 1}, kBisection);
    EXPECT_EQ(errorNumber([&] { ResampleByScore(att, five, old); }), RuntimeError::DivisionByZero);
}

// --- Which layout a technique page gets ---------------------------------------

enum class Layout { Untouched, Linear, ByScore, ByValue };

// Which routine laid the points out, told by where they lie. The old curve
// has five points, none on an even grid of scores or of values.
Layout layoutOf(int n) {
    WizardData& d = wizardData();
    if (d.SmpY(0, 1).toDouble() == 0.37 && d.SmpX(0, 1).toDouble() == 13.0) return Layout::Untouched;
    const double evenScore = static_cast<double>(100.0f / static_cast<float>(n - 1));
    const double evenValue = static_cast<double>(1.0f / static_cast<float>(n - 1));
    const bool scoresEven = d.SmpX(0, 1).toDouble() == evenScore;
    const bool valuesEven = d.SmpY(0, 1).toDouble() == evenValue;
    if (scoresEven && valuesEven) return Layout::Linear;
    if (scoresEven) return Layout::ByScore;
    if (valuesEven) return Layout::ByValue;
    return Layout::Untouched;
}

using Case = std::tuple<int, int, int, Layout>;  // page, stored technique, new size, layout

class UpdateChoice : public ModelTest, public ::testing::WithParamInterface<Case> {};

TEST_P(UpdateChoice, FollowsThePageAndTheStoredTechnique) {
    const auto [page, stored, newSize, expected] = GetParam();
    setCurve(0, {0, 13, 40, 70, 100}, {0, 0.37, 0.66, 0.86, 1}, stored);
    w().SelTechnique = static_cast<I16>(page);
    I16 att = 0, n = static_cast<I16>(newSize), old = 5;
    UpdateSamplePoints(att, n, old);
    EXPECT_EQ(layoutOf(newSize), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Branches, UpdateChoice,
    ::testing::Values(
        // Direct Rating and Curve Drawing read the curve at even scores.
        Case{1, 3, 5, Layout::ByScore}, Case{1, 2, 5, Layout::Untouched},
        Case{1, 1, 7, Layout::ByScore}, Case{2, 0, 5, Layout::ByScore},
        Case{2, 1, 5, Layout::Untouched},
        // Difference standard sequence and Bisection search even values.
        Case{4, 7, 5, Layout::ByValue}, Case{4, 5, 5, Layout::Untouched},
        Case{4, 4, 7, Layout::ByValue}, Case{5, 1, 5, Layout::ByValue},
        // Variable Probability resamples only its own function, resized.
        Case{6, 1, 5, Layout::Untouched}, Case{6, 1, 7, Layout::Untouched},
        Case{6, 6, 5, Layout::Untouched}, Case{6, 6, 7, Layout::ByValue},
        // Variable Certainty Equivalent.
        Case{7, 6, 5, Layout::ByValue}, Case{7, 7, 5, Layout::Untouched},
        Case{7, 7, 7, Layout::ByValue},
        // Midpoint, Category and any other code leave the points alone.
        Case{0, 1, 7, Layout::Untouched}, Case{3, 1, 7, Layout::Untouched},
        Case{9, 1, 7, Layout::Untouched}));

TEST_F(ModelTest, LinearFunctionResetsToLinearPointsOnEveryPage) {
    for (int page : {0, 1, 3, 6, 7, 9}) {
        setCurve(0, {0, 13, 40, 70, 100}, {0, 0.37, 0.66, 0.86, 1}, 6);
        w().VFunType(0) = I16(0);
        w().SelTechnique = static_cast<I16>(page);
        I16 att = 0, n = 5, old = 5;
        UpdateSamplePoints(att, n, old);
        EXPECT_EQ(layoutOf(5), Layout::Linear) << page;
    }
}

// --- Category technique --------------------------------------------------------

TEST_F(ModelTest, CategoryPreparationByTheAttributesState) {
    I16 att = 0;
    w().SelTechnique = kCategoryIdentification;
    w().CategoryCount = 6;

    // No sample yet: the category count, linear points.
    PrepareCategoryPoints(att);
    EXPECT_EQ(w().SmpSize(0).toInteger(), 6);
    EXPECT_EQ(smpX(0, 5), 100.0);
    EXPECT_EQ(smpY(0, 5), 1.0);

    // Its own category points: the size stays, the points stay.
    setCurve(0, {0, 13, 40, 70, 100}, {0, 0.37, 0.66, 0.86, 1}, kCategoryIdentification);
    PrepareCategoryPoints(att);
    EXPECT_EQ(w().SmpSize(0).toInteger(), 5);
    EXPECT_EQ(smpX(0, 1), 13.0);
    EXPECT_EQ(smpY(0, 1), 0.37);

    // Another technique's curve: resized to the category count, ends on
    // the range, values read off the old curve.
    setCurve(0, {0, 13, 40, 70, 100}, {0, 0.37, 0.66, 0.86, 1}, kBisection);
    PrepareCategoryPoints(att);
    EXPECT_EQ(w().SmpSize(0).toInteger(), 6);
    EXPECT_EQ(smpX(0, 0), 0.0);
    EXPECT_EQ(smpX(0, 5), 100.0);
    EXPECT_EQ(smpX(0, 1), 20.0);
    EXPECT_GT(smpY(0, 1), 0.37);
    EXPECT_LT(smpY(0, 1), 0.66);
}

}  // namespace
}  // namespace kelmar::test
