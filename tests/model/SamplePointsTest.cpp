#include "WizardTestSupport.h"

#include <cmath>

namespace kelmar::wtest {
namespace {

using SamplePointChecks = WizardTest;

TEST_F(SamplePointChecks, LinearPointsForBenefitAndCost) {
    allocateAttributes(1);
    setRange(0, 0.0, 100.0);
    std::int16_t att = 0, n = 5;
    SetLinearSamplePoints(att, n);
    EXPECT_EQ(row(w().SmpX, 0, 5), (std::vector<double>{0, 25, 50, 75, 100}));
    EXPECT_EQ(row(w().SmpY, 0, 5), (std::vector<double>{0, .25, .5, .75, 1}));

    w().AttPropertyCopy(0) = std::int16_t(1);
    SetLinearSamplePoints(att, n);
    EXPECT_EQ(row(w().SmpX, 0, 5), (std::vector<double>{0, 25, 50, 75, 100}));
    EXPECT_EQ(row(w().SmpY, 0, 5), (std::vector<double>{1, .75, .5, .25, 0}));
}

TEST_F(SamplePointChecks, LinearPointsKeepSinglePrecisionStepsAndExactEnds) {
    allocateAttributes(1);
    setRange(0, 0.0, 10.0);
    std::int16_t att = 0, n = 7;
    SetLinearSamplePoints(att, n);
    const float step = static_cast<float>(10 / 6.0);
    const float vstep = static_cast<float>(1 / 6.0);
    for (int k = 1; k <= 5; ++k) {
        EXPECT_EQ(w().SmpX(0, k).toDouble(), 0.0 + static_cast<double>(float(k) * step)) << k;
        EXPECT_EQ(w().SmpY(0, k).type(), Variant::Type::Single) << k;
        EXPECT_EQ(w().SmpY(0, k).toSingle(), float(k) * vstep) << k;
    }
    // The Single step really shows: the first score is not 10/6 in Double.
    EXPECT_NE(w().SmpX(0, 1).toDouble(), 10 / 6.0);
    EXPECT_EQ(w().SmpY(0, 0).type(), Variant::Type::Integer);
    EXPECT_EQ(w().SmpY(0, 6).type(), Variant::Type::Integer);

    // Ends are copies, even where the summed steps would miss them.
    setRange(0, 0.1, 10.3);
    SetLinearSamplePoints(att, n);
    EXPECT_EQ(w().SmpX(0, 0).toDouble(), 0.1);
    EXPECT_EQ(w().SmpX(0, 6).toDouble(), 10.3);
    EXPECT_NE(0.1 + static_cast<double>(6.0f * static_cast<float>(10.2 / 6.0)), 10.3);
}

TEST_F(SamplePointChecks, OrientationIsReadAtTheSelectedAttribute) {
    allocateAttributes(2);
    setRange(0, 0.0, 1.0);
    setRange(1, 0.0, 1.0);
    w().AttPropertyCopy(1) = QString("1");  // read as a number: cost
    std::int16_t n = 3;

    w().SelAtt = 0;
    std::int16_t att = 1;
    SetLinearSamplePoints(att, n);
    EXPECT_EQ(row(w().SmpY, 1, 3), (std::vector<double>{0, .5, 1}));

    w().SelAtt = 1;
    att = 0;
    SetLinearSamplePoints(att, n);
    EXPECT_EQ(row(w().SmpY, 0, 3), (std::vector<double>{1, .5, 0}));
}

TEST_F(SamplePointChecks, SizeOneRaisesDivisionByZero) {
    allocateAttributes(1);
    setRange(0, 0.0, 10.0);
    std::int16_t att = 0, n = 1;
    EXPECT_EQ(errorOf([&] { SetLinearSamplePoints(att, n); }), RuntimeError::DivisionByZero);
}

// UpdateSamplePoints: which routine runs for each technique.
enum class Outcome { Unchanged, ByScore, ByValue };

struct Branch {
    std::int16_t selected;
    std::int16_t stored;
    std::int16_t newSize;
    Outcome outcome;
};

class UpdateBranchChecks : public WizardTest, public ::testing::WithParamInterface<Branch> {};

// A concave curve on unequally spaced scores, so that both resampling
// routines visibly move the points even at an unchanged size.
const std::vector<double> kCurveX{0, 10, 30, 60, 100};
const std::vector<double> kCurveY{0, 0.4, 0.7, 0.9, 1};

TEST_P(UpdateBranchChecks, ChoosesTheRoutine) {
    const Branch b = GetParam();
    allocateAttributes(1);
    setRange(0, 0.0, 100.0);
    setCurve(0, kCurveX, kCurveY);
    w().VFTechniqueID(0) = b.stored;
    w().SelTechnique = b.selected;
    const auto xsBefore = row(w().SmpX, 0, 11);
    const auto ysBefore = row(w().SmpY, 0, 11);

    // The page stores the new size before the points are laid out again.
    w().SmpSize(0) = b.newSize;
    std::int16_t att = 0, newSize = b.newSize, oldSize = 5;
    UpdateSamplePoints(att, newSize, oldSize);
    const int last = newSize - 1;
    switch (b.outcome) {
    case Outcome::Unchanged:
        EXPECT_EQ(row(w().SmpX, 0, 11), xsBefore);
        EXPECT_EQ(row(w().SmpY, 0, 11), ysBefore);
        break;
    case Outcome::ByScore:
        EXPECT_EQ(w().SmpX(0, 1).toDouble(), static_cast<double>(static_cast<float>(100.0 / last)));
        EXPECT_GT(w().SmpY(0, 1).toDouble(), 1.0 / last + 0.1);  // concave: above the line
        EXPECT_EQ(w().SmpY(0, last).toDouble(), 1.0);
        break;
    case Outcome::ByValue:
        EXPECT_EQ(w().SmpY(0, 1).type(), Variant::Type::Single);
        EXPECT_EQ(w().SmpY(0, 1).toSingle(), static_cast<float>(1.0 / last));
        EXPECT_LT(w().SmpX(0, 1).toDouble(), 100.0 / last - 5.0);  // concave: left of the line
        EXPECT_EQ(w().SmpX(0, last).toDouble(), 100.0);
        break;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Techniques, UpdateBranchChecks,
    ::testing::Values(
        Branch{1, 1, 5, Outcome::Unchanged}, Branch{1, 2, 5, Outcome::Unchanged},
        Branch{2, 1, 5, Outcome::Unchanged}, Branch{1, 4, 5, Outcome::ByScore},
        Branch{2, 0, 5, Outcome::ByScore}, Branch{1, 1, 7, Outcome::ByScore},
        Branch{2, 2, 3, Outcome::ByScore}, Branch{4, 5, 5, Outcome::Unchanged},
        Branch{5, 4, 5, Outcome::Unchanged}, Branch{4, 1, 5, Outcome::ByValue},
        Branch{5, 7, 5, Outcome::ByValue}, Branch{5, 5, 7, Outcome::ByValue},
        Branch{6, 6, 5, Outcome::Unchanged}, Branch{6, 6, 7, Outcome::ByValue},
        // Technique 6 leaves another technique's points alone, resized or not.
        Branch{6, 1, 5, Outcome::Unchanged}, Branch{6, 1, 7, Outcome::Unchanged},
        Branch{6, 7, 3, Outcome::Unchanged}, Branch{7, 7, 5, Outcome::Unchanged},
        Branch{7, 6, 5, Outcome::ByValue}, Branch{7, 7, 3, Outcome::ByValue},
        Branch{0, 1, 7, Outcome::Unchanged}, Branch{3, 1, 7, Outcome::Unchanged},
        Branch{8, 1, 7, Outcome::Unchanged}));

TEST_F(SamplePointChecks, LinearFunctionTypeResetsToLinearForEveryTechnique) {
    for (std::int16_t technique : {0, 1, 3, 4, 6, 7}) {
        allocateAttributes(1);
        setRange(0, 0.0, 100.0);
        setCurve(0, kCurveX, kCurveY);
        w().VFunType(0) = std::int16_t(0);
        w().VFTechniqueID(0) = std::int16_t(2);
        w().SelTechnique = technique;
        std::int16_t att = 0, newSize = 5, oldSize = 5;
        UpdateSamplePoints(att, newSize, oldSize);
        EXPECT_EQ(row(w().SmpX, 0, 5), (std::vector<double>{0, 25, 50, 75, 100})) << technique;
        EXPECT_EQ(row(w().SmpY, 0, 5), (std::vector<double>{0, .25, .5, .75, 1})) << technique;
    }
}

TEST_F(SamplePointChecks, ResampleByScoreReadsTheOldCurve) {
    allocateAttributes(1);
    setRange(0, 0.0, 100.0);
    const std::vector<double> ys{0, 0.45, 0.7, 0.88, 1};
    setCurve(0, {0, 25, 50, 75, 100}, ys);
    std::int16_t att = 0, newSize = 9, oldSize = 5;
    ResampleByScore(att, newSize, oldSize);
    // Every second new score is an old one and keeps its value.
    for (int k = 2; k <= 6; k += 2) EXPECT_NEAR(w().SmpY(0, k).toDouble(), ys[k / 2], 1e-14) << k;
    for (int k = 1; k < 9; ++k) EXPECT_GT(w().SmpY(0, k).toDouble(), w().SmpY(0, k - 1).toDouble());
    EXPECT_EQ(w().SmpX(0, 1).toDouble(), 12.5);
    EXPECT_EQ(w().ScoreMiddle(0).type(), Variant::Type::Single);
    EXPECT_EQ(w().ScoreMiddle(0).toSingle(), ComputeScoreMiddle(att));
    EXPECT_LT(w().ScoreMiddle(0).toDouble(), 50.0);

    // Cost orientation (at SelAtt) fixes the end values whatever the curve.
    w().AttPropertyCopy(0) = std::int16_t(-1);
    setCurve(0, {0, 25, 50, 75, 100}, {1, 0.55, 0.3, 0.12, 0});
    newSize = 3;
    ResampleByScore(att, newSize, oldSize);
    EXPECT_EQ(row(w().SmpY, 0, 3), (std::vector<double>{1, 0.3, 0}));
    EXPECT_EQ(w().SmpY(0, 0).type(), Variant::Type::Integer);
}

TEST_F(SamplePointChecks, ResampleByValueTakesTheFirstGridScoreWithinTolerance) {
    allocateAttributes(1);
    setRange(0, 0.0, 100.0);
    setCurve(0, {0, 50, 100}, {0, 0.5, 1});  // the straight line y = x / 100
    std::int16_t att = 0, newSize = 5, oldSize = 3;
    ResampleByValue(att, newSize, oldSize);
    // Levels .25, .5, .75 on a grid of about 0.1: the first score within
    // 0.01 of the level lies one unit before it, no refinement after.
    for (int k = 1; k <= 3; ++k) {
        EXPECT_NEAR(w().SmpX(0, k).toDouble(), 25.0 * k - 1.0, 0.11) << k;
        EXPECT_EQ(w().SmpX(0, k).type(), Variant::Type::Double);
    }
    EXPECT_EQ(row(w().SmpY, 0, 5), (std::vector<double>{0, .25, .5, .75, 1}));
    EXPECT_EQ(w().SmpX(0, 4).toDouble(), 100.0);
}

TEST_F(SamplePointChecks, ResampleByValueFallsBackToHalfTheRangeFromZero) {
    allocateAttributes(1);
    setRange(0, 10.0, 20.0);
    setCurve(0, {10, 15, 20}, {0, 0, 0});  // never comes near one half
    std::int16_t att = 0, newSize = 3, oldSize = 3;
    ResampleByValue(att, newSize, oldSize);
    EXPECT_EQ(w().SmpX(0, 1).toDouble(), 5.0);  // not the midpoint 15
    EXPECT_EQ(w().SmpX(0, 0).toDouble(), 10.0);
    EXPECT_EQ(w().SmpX(0, 2).toDouble(), 20.0);
}

TEST_F(SamplePointChecks, ResampleWithoutOldPointsRaisesSubscriptError) {
    allocateAttributes(1);
    setRange(0, 0.0, 10.0);
    std::int16_t att = 0, newSize = 5, oldSize = 0;
    EXPECT_EQ(errorOf([&] { ResampleByScore(att, newSize, oldSize); }),
              RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { ResampleByValue(att, newSize, oldSize); }),
              RuntimeError::SubscriptOutOfRange);
    std::int16_t beyond = 1;
    EXPECT_EQ(errorOf([&] { SetLinearSamplePoints(beyond, newSize); }),
              RuntimeError::SubscriptOutOfRange);
}

TEST_F(SamplePointChecks, PrepareCategoryPointsSetsTheSize) {
    allocateAttributes(1);
    setRange(0, 0.0, 60.0);
    w().SelTechnique = kCategoryIdentification;
    w().CategoryCount = 7;
    std::int16_t att = 0;

    // No sample yet: linear points of the category count.
    PrepareCategoryPoints(att);
    EXPECT_EQ(w().SmpSize(0).toInteger(), 7);
    EXPECT_EQ(w().SmpX(0, 6).toDouble(), 60.0);
    EXPECT_EQ(w().SmpY(0, 3).toDouble(), 0.5);

    // Another technique's curve of 5 points becomes 7 points.
    setCurve(0, {0, 10, 20, 40, 60}, {0, .4, .6, .85, 1});
    w().VFTechniqueID(0) = std::int16_t(kDirectRating);
    PrepareCategoryPoints(att);
    EXPECT_EQ(w().SmpSize(0).toInteger(), 7);
    EXPECT_EQ(w().SmpX(0, 1).toDouble(), 10.0);
    EXPECT_NEAR(w().SmpY(0, 1).toDouble(), 0.4, 1e-14);

    // Its own points keep their size and take the current range ends.
    w().VFTechniqueID(0) = std::int16_t(kCategoryIdentification);
    w().SmpSize(0) = std::int16_t(4);
    setRange(0, 5.0, 55.0);
    PrepareCategoryPoints(att);
    EXPECT_EQ(w().SmpSize(0).toInteger(), 4);
    EXPECT_EQ(w().SmpX(0, 0).toDouble(), 5.0);
    EXPECT_EQ(w().SmpX(0, 3).toDouble(), 55.0);
}

}  // namespace
}  // namespace kelmar::wtest
