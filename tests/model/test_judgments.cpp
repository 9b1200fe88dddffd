// What the technique pages' judgments do to the points: the neighbour step
// of the dragging pages, the bisection table, judged scores turned into a
// function on equal value steps, and the lottery judgments where the pages
// cannot reach (neighbours without room, the certainty equivalent over
// uneven values, the repair of scores out of order; the worked example is
// tested on the page).
#include "ModelFixture.h"
#include "model/ScoreSequence.h"

#include <array>

namespace kelmar::test {

using Judgments = ModelTest;

// The step past either neighbour on either orientation, and past the last
// point, is pinned through the dragging pages' tests; here a step that
// ends below the point's old value, gaps too narrow for a step, and a
// point that is no neighbour.
TEST_F(Judgments, NeighbourStepGoesTowardsThePointsOwnSide) {
    const struct { bool cost; std::vector<double> y; I16 index, neighbour; double expected; } cases[] = {
        {false, {0, 0.2, 0.21, 0.8, 1}, 1, 2, 0.185},
        {false, {0, 0.5, 0.51, 0.52, 1}, 2, 1, 0.52},  // a narrow gap: kept at the other neighbour
        {true, {1, 0.5, 0.49, 0.48, 0}, 2, 1, 0.48},
    };
    for (const auto& c : cases) {
        w().AttPropertyCopy(0) = I16(c.cost ? 1 : 0);
        setCurve(0, {0, 25, 50, 75, 100}, c.y, 1);
        I16 att = 0, index = c.index, neighbour = c.neighbour;
        EXPECT_NEAR(SetValueBesideNeighbour(att, index, neighbour), c.expected, 1e-12)
            << "index " << c.index << " past " << c.neighbour << (c.cost ? " (cost)" : "");
        EXPECT_NEAR(smpY(0, c.index), c.expected, 1e-12);
    }
    I16 att = 0, index = 2, notNeighbour = 4;
    EXPECT_EQ(errorNumber([&] { SetValueBesideNeighbour(att, index, notNeighbour); }), 9);
}

// The rows of the table, and the order in which the halvings are judged.
TEST_F(Judgments, BisectionTableRowsAndJudgmentOrder) {
    const auto rows = [] {
        std::vector<std::array<int, 3>> r;
        for (const BisectionRecord& b : w().BisectionTable) r.push_back({b.Lower, b.Upper, b.Level});
        return r;
    };
    I16 n = 5;
    BuildBisectionTable(n);
    EXPECT_EQ(rows(), (std::vector<std::array<int, 3>>{{0, 0, 1}, {0, 2, 2}, {0, 4, 1}, {2, 4, 2}, {4, 4, 1}}));
    EXPECT_EQ(BisectionJudgmentOrder(), (std::vector<int>{2, 1, 3}));
    for (I16 bad : {I16(7), I16(3), I16(0)}) {
        n = bad;
        EXPECT_EQ(errorNumber([&] { BuildBisectionTable(n); }), 9) << bad;
    }
    // Nine points: the bisection page's walk pins the inner rows and their
    // order; the last row and two empty ones follow in room for eleven.
    n = 11;
    BuildBisectionTable(n);
    EXPECT_EQ(rows()[8], (std::array<int, 3>{8, 8, 1}));
    EXPECT_EQ(rows()[10], (std::array<int, 3>{0, 0, 0}));
}

using ScoreSequence = ModelTest;

TEST_F(ScoreSequence, JudgedScoresBecomeAFunctionOnEqualValueSteps) {
    const struct { bool cost; double low, high; std::vector<double> in, out; } cases[] = {
        {false, 0, 100, {0, 10, 40, 70, 100}, {0, 10, 40, 70, 100}},     // kept as judged
        {true, 0, 100, {0, 10, 40, 70, 100}, {0, 10, 40, 70, 100}},
        {false, 0, 100, {0, 90, 30, 50, 100}, {0, 15, 30, 50, 100}},     // one out of order
        {false, 10, 50, {10, 30, 20, 40, 50}, {10, 30, 35, 40, 50}},     // the first rising run wins
        {false, 0, 100, {-5, 120, 40, 40, 100}, {0, 20, 40, 70, 100}},   // outside the range, equal
        {true, 0, 100, {3, 0, 0, 0, 97}, {0, 25, 50, 75, 100}},          // ends moved to the range
        {false, 1, 5, {1, 2, 3}, {1, 2, 5}},                              // the last point at the maximum
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.in));
        w().AttPropertyCopy(0) = I16(c.cost ? 1 : 0);
        setRange(0, c.low, c.high);
        setCurve(0, c.in, std::vector<double>(c.in.size(), 0.3), kBisection);
        I16 att = 0;
        EXPECT_FALSE(HasEqualValueSteps(att));
        FitEqualValueSteps(att);
        const double n = static_cast<double>(c.in.size() - 1);
        for (std::size_t k = 0; k < c.in.size(); ++k) {
            EXPECT_NEAR(smpX(0, static_cast<int>(k)), c.out[k], 1e-12) << k;
            EXPECT_NEAR(smpY(0, static_cast<int>(k)), c.cost ? 1 - k / n : k / n, 1e-7) << k;
        }
        EXPECT_TRUE(HasEqualValueSteps(att));
    }
    // The steps are those of the linear layout, to the last bit.
    I16 att = 0, n = 7;
    SetLinearSamplePoints(att, n);
    const std::vector<double> linear = {smpY(0, 1), smpY(0, 2), smpY(0, 5)};
    setCurve(0, {0, 5, 20, 30, 60, 90, 100}, std::vector<double>(7, 0.0), kDiffStandardSequence);
    FitEqualValueSteps(att);
    EXPECT_EQ((std::vector<double>{smpY(0, 1), smpY(0, 2), smpY(0, 5)}), linear);
}

using Lottery = ModelTest;

TEST_F(Lottery, NeighboursWithoutRoomPinTheProbability) {
    const struct { std::vector<double> y; I16 index; } cases[] = {
        {{0, 0.5, 0.503, 0.506, 1}, 2},  // closer than twice the margin
        {{0, 0.7, 0.5, 0.3, 1}, 2},      // neighbours out of order
    };
    for (const auto& c : cases) {
        setCurve(0, {0, 25, 50, 75, 100}, c.y, 6);
        I16 att = 0, lower = c.index - 1, upper = c.index + 1;
        EXPECT_EQ(ProbabilityWidth(att, lower, upper), 0.0f);
        I16 base = 1, position = 10;
        float step = 0.0f;
        EXPECT_FLOAT_EQ(JudgedProbability(att, base, step, position), static_cast<float>(c.y[1]));
    }
    // Whatever the step, p stays within 0 .. 1.
    setCurve(0, {0, 25, 50, 75, 100}, {0, 0.9, 0.95, 0.99, 1}, 6);
    I16 att = 0, base = 2, position = 10;
    float step = 0.5f;
    EXPECT_EQ(JudgedProbability(att, base, step, position), 1.0f);
}

// The order of the halvings is pinned through the certainty-equivalent
// page's rounds of judgments.
TEST_F(Lottery, CertaintyEquivalentHalvesItsOutcomes) {
    for (const I16 size : {I16(5), I16(9)}) {
        SCOPED_TRACE(size);
        std::vector<double> x, y;
        for (int k = 0; k < size; ++k) {
            x.push_back(k * 10.0);
            y.push_back(k * k / double((size - 1) * (size - 1)));  // not the equal steps
        }
        setCurve(0, x, y, 7);
        I16 n = size;
        BuildBisectionTable(n);
        for (I16 i = 1; i + 1 < size; ++i) {
            const BisectionRecord& row = w().BisectionTable[static_cast<std::size_t>(i)];
            I16 att = 0, index = i;
            EXPECT_DOUBLE_EQ(CertaintyEquivalentValue(att, index), (y[row.Lower] + y[row.Upper]) / 2.0) << i;
        }
        I16 att = 0, beyond = size;
        EXPECT_EQ(errorNumber([&] { CertaintyEquivalentValue(att, beyond); }), 9);
    }
    // Only the table's sizes are worked with.
    for (I16 n = 0; n <= 12; ++n) EXPECT_EQ(CertaintySampleSize(n), n <= 6 ? 5 : 9) << n;
}

TEST_F(Lottery, ScoresOutOfOrderAreSpreadBetweenTheKeptOnes) {
    const struct { std::vector<double> x, expected; } cases[] = {
        {{0, 25, 50, 75, 100}, {0, 25, 50, 75, 100}},    // in order: kept
        {{0, 60, 40, 75, 100}, {0, 20, 40, 75, 100}},    // one too far up
        {{0, 25, 50, 120, 100}, {0, 25, 50, 75, 100}},   // beyond the range
        {{0, 50, 50, 50, 100}, {0, 50 / 3.0, 100 / 3.0, 50, 100}},
        {{0, -5, 0, 200, 100}, {0, 25, 50, 75, 100}},
    };
    for (const auto& c : cases) {
        setCurve(0, c.x, {0, 0.25, 0.5, 0.75, 1}, 7);
        I16 att = 0;
        EXPECT_EQ(SamplePointsInOrder(att), c.x == c.expected);
        SpreadScoresInOrder(att);
        for (std::size_t k = 0; k < c.x.size(); ++k)
            EXPECT_NEAR(smpX(0, static_cast<int>(k)), c.expected[k], 1e-9) << "point " << k << " of " << c.x[1];
        EXPECT_TRUE(SamplePointsInOrder(att));
    }
    // Ends away from the range and values beyond 0 .. 1 break the shape too.
    setCurve(0, {0, 25, 50, 75, 90}, {0, 0.25, 0.5, 0.75, 1}, 7);
    I16 att = 0;
    EXPECT_FALSE(SamplePointsInOrder(att));
    setCurve(0, {0, 25, 50, 75, 100}, {0, 0.25, 1.2, 0.75, 1}, 7);
    EXPECT_FALSE(SamplePointsInOrder(att));
}

}  // namespace kelmar::test
