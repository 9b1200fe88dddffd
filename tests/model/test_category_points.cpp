// The order-of-magnitude ladder and the category points the curve is given:
// level scores both ways, the points of the four orientation and kind
// combinations, keeping, moving and carrying over points, the orientation
// entry and ranges too narrow for a ladder.
#include "ModelFixture.h"

#include "model/CategoryLadder.h"

#include <vector>

namespace kelmar::test {
namespace {

class CategoryTest : public ModelTest {
protected:
    void SetUp() override {
        ModelTest::SetUp();
        w().SelTechnique = kCategoryIdentification;
        w().CategoryCount = 7;
        w().CategoryFactor = 1.0f;
        setRange(0, 0.0, 64.0);
    }
    static void prepare() {
        I16 att = 0;
        PrepareCategoryPoints(att);
    }
    static std::vector<double> scores() {
        std::vector<double> out;
        for (int k = 0; k < w().SmpSize(0).toInteger(); ++k) out.push_back(smpX(0, k));
        return out;
    }
    static std::vector<double> values() {
        std::vector<double> out;
        for (int k = 0; k < w().SmpSize(0).toInteger(); ++k) out.push_back(smpY(0, k));
        return out;
    }
};

TEST_F(CategoryTest, LevelScoresDoubleTowardsTheFarEndAndTurnBackIntoTheirLevels) {
    const struct { bool maxToMin; std::vector<double> levels; } ladders[] = {
        {false, {1, 2, 4, 8, 16, 32, 64}},
        {true, {63, 62, 60, 56, 48, 32, 0}},
    };
    Variant high = 64.0, low = 0.0;
    for (const auto& l : ladders) {
        for (I16 i = 0; i < 7; ++i) {
            EXPECT_EQ(CategoryLevelScore(high, low, 7, i, l.maxToMin), l.levels[static_cast<std::size_t>(i)])
                << l.maxToMin << " " << i;
            Variant score = l.levels[static_cast<std::size_t>(i)];
            EXPECT_NEAR(CategoryLevelOfScore(high, low, score, 7, l.maxToMin), i, 1e-12);
        }
        // Between two levels the inverse gives a level between them.
        Variant between = l.maxToMin ? 58.0 : 6.0;
        const double level = CategoryLevelOfScore(high, low, between, 7, l.maxToMin);
        EXPECT_GT(level, 2.0);
        EXPECT_LT(level, 3.0);
    }
}

// Point k lies at its level's score, in score order, with the level nearest
// each end on that end; the values lie on the attribute's line.
TEST_F(CategoryTest, AFirstSampleIsTheLadderInScoreOrderForEveryOrientationAndKind) {
    const std::vector<double> minToMax = {0, 2, 4, 8, 16, 32, 64};
    const std::vector<double> maxToMin = {0, 32, 48, 56, 60, 62, 64};
    for (bool fromMax : {false, true}) {
        for (int cost : {0, 1}) {
            SCOPED_TRACE(fromMax * 10 + cost);
            SetUp();
            w().AttPropertyCopy(0) = I16(cost);
            SetCategoryMaxToMin(0, fromMax);
            prepare();
            const std::vector<double>& expected = fromMax ? maxToMin : minToMax;
            EXPECT_EQ(scores(), expected);
            EXPECT_EQ(w().SmpX(0, 0), w().ScoreMinimum(0));
            for (int k = 0; k < 7; ++k) {
                const double line = expected[static_cast<std::size_t>(k)] / 64.0;
                EXPECT_DOUBLE_EQ(smpY(0, k), cost ? 1.0 - line : line) << k;
            }
            EXPECT_EQ(w().SmpY(0, 10).toBoolean(), fromMax) << "the orientation entry is kept";
        }
    }
}

TEST_F(CategoryTest, OwnPointsKeepTheirValuesAndMoveWhenTheOrientationOrTheSizeChanged) {
    setCurve(0, {0, 2, 4, 8, 16, 32, 64}, {0, 0.3, 0.5, 0.6, 0.7, 0.9, 1}, kCategoryIdentification);
    prepare();
    EXPECT_EQ(values(), (std::vector<double>{0, 0.3, 0.5, 0.6, 0.7, 0.9, 1}));

    // The other orientation: new scores, values read off the same curve.
    SetCategoryMaxToMin(0, true);
    prepare();
    EXPECT_EQ(scores(), (std::vector<double>{0, 32, 48, 56, 60, 62, 64}));
    EXPECT_DOUBLE_EQ(smpY(0, 1), 0.9);
    // The curve rises above 1 beyond 32: those levels are cut to 1.
    for (int k = 2; k < 7; ++k) EXPECT_EQ(smpY(0, k), 1.0) << k;

    // Stored by this technique with five points (Linear, or the host): one
    // point per level again.
    setCurve(0, {0, 16, 32, 48, 64}, {0, 0.25, 0.5, 0.75, 1}, kCategoryIdentification);
    w().VFunType(0) = I16(0);
    SetCategoryMaxToMin(0, false);
    prepare();
    EXPECT_EQ(w().SmpSize(0).toInteger(), 7);
    EXPECT_EQ(scores(), (std::vector<double>{0, 2, 4, 8, 16, 32, 64}));
    EXPECT_DOUBLE_EQ(smpY(0, 3), 0.125);
}

TEST_F(CategoryTest, AnotherTechniquesFunctionIsReadAtTheLadderAndCutToTheValueRange) {
    // A curve that overshoots 1 before the maximum.
    setCurve(0, {0, 8, 16, 64}, {0, 0.9, 1.0, 1.0}, kDirectRating);
    w().CategoryCount = 7;
    prepare();
    EXPECT_EQ(w().SmpSize(0).toInteger(), 7);
    EXPECT_EQ(scores(), (std::vector<double>{0, 2, 4, 8, 16, 32, 64}));
    EXPECT_DOUBLE_EQ(smpY(0, 3), 0.9);
    for (double v : values()) {
        EXPECT_GE(v, 0.0);
        EXPECT_LE(v, 1.0);
    }
    EXPECT_EQ(w().VFTechniqueID(0).toInteger(), kDirectRating) << "an edit sets the technique";
}

TEST_F(CategoryTest, OnlyTrueInTheOrientationEntryMeansFromTheMaximum) {
    const struct { Variant entry; bool maxToMin; } entries[] = {
        {Variant(true), true}, {Variant(I16(-1)), true}, {Variant(-1.0), true},
        {Variant(false), false}, {Variant(), false}, {Variant(1.0), false},
        {Variant(QStringLiteral("True")), false}};
    for (const auto& e : entries) {
        w().SmpY(0, 10) = e.entry;
        EXPECT_EQ(CategoryMaxToMin(0), e.maxToMin) << e.entry.toString().toStdString();
    }
}

TEST_F(CategoryTest, ARangeTooNarrowForTheLadderIsSpreadEvenlyOrRefused) {
    // Near 4e15 the doubles are 0.5 apart: levels 0 and 1 (0.125 and 0.25
    // above the minimum) meet it, so the points are spread evenly.
    setRange(0, 4e15, 4e15 + 8.0);
    prepare();
    const std::vector<double> s = scores();
    for (std::size_t k = 1; k < s.size(); ++k) EXPECT_GT(s[k], s[k - 1]) << k;
    EXPECT_EQ(s.back(), 4e15 + 8.0);

    setRange(0, 5.0, 5.0);
    w().SmpSize(0) = I16(0);
    EXPECT_EQ(errorNumber([] { prepare(); }), RuntimeError::DivisionByZero);
}

}  // namespace
}  // namespace kelmar::test
