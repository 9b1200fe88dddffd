// Laying sample points out: linear points, resampling by value, and the
// choice among the layouts a technique page gets.
#include "ModelFixture.h"

#include <tuple>
#include <vector>

namespace kelmar::test {
namespace {

using LinearPoints = ModelTest;

TEST_F(LinearPoints, BenefitAndCostOnAnEvenRange) {
    I16 att = 0, n = 5;
    SetLinearSamplePoints(att, n);
    const double values[] = {0, 0.25, 0.5, 0.75, 1};
    for (int k = 0; k < 5; ++k) {
        EXPECT_EQ(smpX(0, k), 25.0 * k);
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
        EXPECT_EQ(w().SmpY(1, k).type(), Variant::Type::Single);
        EXPECT_EQ(w().SmpY(1, k).toSingle(), static_cast<float>(k) * vstep);
    }
    EXPECT_TRUE(differsFromDouble);
    EXPECT_EQ(smpX(1, 0), 0.3);
    EXPECT_EQ(smpX(1, 6), 10.3);
    EXPECT_EQ(w().SmpY(1, 0).type(), Variant::Type::Integer);
    EXPECT_EQ(w().SmpY(1, 6).type(), Variant::Type::Integer);
    // Cost (read at the selected attribute): (N - 1 - k) * vstep.
    w().AttPropertyCopy(0) = 1.0;
    SetLinearSamplePoints(att, n);
    for (int k = 1; k <= 5; ++k)
        EXPECT_EQ(w().SmpY(1, k).toSingle(), static_cast<float>(6 - k) * vstep);
    EXPECT_EQ(w().SmpY(1, 0).toInteger(), 1);
    EXPECT_EQ(w().SmpY(1, 6).toInteger(), 0);
}

TEST_F(LinearPoints, OnePointDividesByZeroAndTwoAreTheEnds) {
    I16 att = 0, one = 1, two = 2;
    EXPECT_EQ(errorNumber([&] { SetLinearSamplePoints(att, one); }), RuntimeError::DivisionByZero);
    w().ScoreMinimum(0) = 0.1f;  // a Single end stays a Single: copied, not computed
    SetLinearSamplePoints(att, two);
    EXPECT_EQ(w().SmpX(0, 0).type(), Variant::Type::Single);
    EXPECT_EQ(smpX(0, 1), 100.0);
    EXPECT_EQ(w().SmpY(0, 0).toInteger(), 0);
    EXPECT_EQ(w().SmpY(0, 1).toInteger(), 1);
}

// Values of the curve through the points (x, y) at the scores given, by
// AkimaInterpolate itself.
std::vector<double> curveAt(const std::vector<double>& x, const std::vector<double>& y,
                            const std::vector<double>& at) {
    VariantArray xs(0, static_cast<int>(x.size()) - 1), ys(0, static_cast<int>(y.size()) - 1);
    VariantArray out(0, 4);
    for (std::size_t k = 0; k < x.size(); ++k) {
        xs(static_cast<int>(k)) = x[k];
        ys(static_cast<int>(k)) = y[k];
    }
    I16 n = static_cast<I16>(x.size()), evaluate = -1;
    std::vector<double> values;
    for (double v : at) {
        AkimaInterpolate(xs, ys, n, evaluate, v, out);
        values.push_back(out(4).toDouble());
    }
    return values;
}

TEST_F(ModelTest, ResampleByScoreReadsTheOldCurveAtEvenScores) {
    // Attribute 1 is written; the orientation is that of the selected
    // attribute 0 (cost), so the ends become 1 and 0 whatever the old
    // points said.
    w().AttPropertyCopy(0) = I16(1);
    const std::vector<double> oldX{0, 15, 60, 100}, oldY{0.9, 0.7, 0.2, 0.05};
    setCurve(1, oldX, oldY, kBisection);
    I16 att = 1, n = 6, old = 4;
    ResampleByScore(att, n, old);
    const std::vector<double> expected = curveAt(oldX, oldY, {20, 40, 60, 80});
    for (int k = 1; k <= 4; ++k) {
        EXPECT_EQ(smpX(1, k), 20.0 * k);
        EXPECT_EQ(smpY(1, k), expected[static_cast<std::size_t>(k - 1)]) << k;
    }
    EXPECT_EQ(w().SmpY(1, 0).type(), Variant::Type::Integer);
    EXPECT_EQ(smpY(1, 0), 1.0);
    EXPECT_EQ(smpY(1, 5), 0.0);
    // The middle score follows the new points and is kept as a Single.
    EXPECT_EQ(w().ScoreMiddle(1).type(), Variant::Type::Single);
    EXPECT_EQ(w().ScoreMiddle(1).toSingle(), ComputeScoreMiddle(att));
}

TEST_F(ModelTest, ResampleByValueTakesTheFirstGridScoreWithinOneHundredth) {
    // On the old line 0 .. 100 the level 0.25 is first within 0.01 at 24,
    // not at 25 where it is met exactly; a cost line meets 0.75 there too.
    setCurve(0, {0, 50, 100}, {0, 0.5, 1}, kBisection);
    I16 att = 0, n = 5, old = 3;
    ResampleByValue(att, n, old);
    EXPECT_GE(smpX(0, 1), 24.0);
    EXPECT_LT(smpX(0, 1), 24.01);
    EXPECT_EQ(w().SmpX(0, 1).type(), Variant::Type::Double);
    EXPECT_EQ(w().ScoreMiddle(0).type(), Variant::Type::Single);

    w().AttPropertyCopy(0) = I16(1);
    setCurve(0, {0, 50, 100}, {1, 0.5, 0}, kBisection);
    ResampleByValue(att, n, old);
    EXPECT_EQ(smpY(0, 1), 0.75);
    EXPECT_GE(smpX(0, 1), 24.0);
    EXPECT_LT(smpX(0, 1), 24.01);
}

TEST_F(ModelTest, ResampleByValueFallsBackToHalfTheRangeMeasuredFromZero) {
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

TEST_F(ModelTest, CategoryPointsTakeTheCategoryCountOnlyForANewOrForeignFunction) {
    WizardData& d = w();
    d.SelTechnique = kCategoryIdentification;
    d.CategoryCount = 7;
    I16 att = 0;
    // No points yet: the category count, end to end on the range.
    PrepareCategoryPoints(att);
    EXPECT_EQ(d.SmpSize(0).toInteger(), 7);
    EXPECT_EQ(smpX(0, 0), 0.0);
    EXPECT_EQ(smpX(0, 6), 100.0);
    // Built with this technique before: its size stays.
    d.VFTechniqueID(0) = I16(kCategoryIdentification);
    I16 five = 5;
    d.SmpSize(0) = five;
    SetLinearSamplePoints(att, five);
    PrepareCategoryPoints(att);
    EXPECT_EQ(d.SmpSize(0).toInteger(), 5);
    // Another technique's curve is carried over to the category count.
    setCurve(0, {0, 20, 50, 100}, {0, 0.5, 0.8, 1}, kDirectRating);
    PrepareCategoryPoints(att);
    EXPECT_EQ(d.SmpSize(0).toInteger(), 7);
    EXPECT_EQ(smpX(0, 6), 100.0);
    EXPECT_EQ(smpY(0, 6), 1.0);
}

TEST_F(ModelTest, FunctionTypeHeldAsTextIsReadAsItsNumber) {
    setCurve(0, {0, 13, 40, 70, 100}, {0, 0.37, 0.66, 0.86, 1}, kBisection);
    w().SelTechnique = kBisection;
    w().VFunType(0) = QStringLiteral("0");
    I16 att = 0, n = 5, old = 5;
    UpdateSamplePoints(att, n, old);
    EXPECT_EQ(smpX(0, 1), 25.0);  // linear
    EXPECT_EQ(ComputeScoreMiddle(att), 50.0f);
    w().VFunType(0) = QStringLiteral("linear");
    EXPECT_EQ(errorNumber([&] { UpdateSamplePoints(att, n, old); }), RuntimeError::TypeMismatch);
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

// page, stored technique, new size, function type, layout
using Case = std::tuple<int, int, int, int, Layout>;

class UpdateChoice : public ModelTest, public ::testing::WithParamInterface<Case> {};

TEST_P(UpdateChoice, FollowsThePageAndTheStoredTechnique) {
    const auto [page, stored, newSize, type, expected] = GetParam();
    setCurve(0, {0, 13, 40, 70, 100}, {0, 0.37, 0.66, 0.86, 1}, stored);
    w().VFunType(0) = static_cast<I16>(type);
    w().SelTechnique = static_cast<I16>(page);
    I16 att = 0, n = static_cast<I16>(newSize), old = 5;
    UpdateSamplePoints(att, n, old);
    EXPECT_EQ(layoutOf(newSize), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Branches, UpdateChoice,
    ::testing::Values(
        // Direct Rating and Curve Drawing read the curve at even scores.
        Case{1, 3, 5, 1, Layout::ByScore}, Case{1, 2, 5, 1, Layout::Untouched},
        Case{1, 1, 7, 1, Layout::ByScore}, Case{2, 0, 5, 1, Layout::ByScore},
        Case{2, 1, 5, 1, Layout::Untouched},
        // Difference standard sequence and Bisection search even values.
        Case{4, 7, 5, 1, Layout::ByValue}, Case{4, 5, 5, 1, Layout::Untouched},
        Case{4, 4, 7, 1, Layout::ByValue}, Case{5, 1, 5, 1, Layout::ByValue},
        // Variable Probability resamples only its own function, resized.
        Case{6, 1, 5, 1, Layout::Untouched}, Case{6, 1, 7, 1, Layout::Untouched},
        Case{6, 6, 5, 1, Layout::Untouched}, Case{6, 6, 7, 1, Layout::ByValue},
        // Variable Certainty Equivalent.
        Case{7, 6, 5, 1, Layout::ByValue}, Case{7, 7, 5, 1, Layout::Untouched},
        Case{7, 7, 7, 1, Layout::ByValue},
        // Midpoint, Category and any other code leave the points alone.
        Case{0, 1, 7, 1, Layout::Untouched}, Case{3, 1, 7, 1, Layout::Untouched},
        Case{9, 1, 7, 1, Layout::Untouched},
        // A linear function goes back to linear points on every page.
        Case{0, 6, 5, 0, Layout::Linear}, Case{1, 6, 5, 0, Layout::Linear},
        Case{3, 6, 5, 0, Layout::Linear}, Case{6, 6, 5, 0, Layout::Linear},
        Case{7, 6, 5, 0, Layout::Linear}, Case{9, 6, 5, 0, Layout::Linear}));

}  // namespace
}  // namespace kelmar::test
