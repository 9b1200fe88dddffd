// The lottery judgments where the pages cannot reach: neighbours without
// room, the certainty equivalent over uneven values, and the repair of
// scores out of order. The worked example is tested on the page.
#include "ModelFixture.h"

namespace kelmar::test {

using Lottery = ModelTest;

TEST_F(Lottery, NeighboursWithoutRoomPinTheProbability) {
    const struct { std::vector<double> y; I16 index; } cases[] = {
        {{0, 0.5, 0.503, 0.506, 1}, 2},  // closer than twice the margin
        {{0, 0.7, 0.5, 0.3, 1}, 2},      // neighbours out of order
    };
    for (const auto& c : cases) {
        setCurve(0, {0, 25, 50, 75, 100}, c.y, 6);
        I16 att = 0, index = c.index;
        EXPECT_EQ(ProbabilityWidth(att, index), 0.0f);
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

TEST_F(Lottery, CertaintyEquivalentHalvesItsOutcomesInTheOrderOfTheHalvings) {
    const struct { I16 n; std::vector<I16> order; } cases[] = {{5, {2, 1, 3}}, {9, {4, 2, 6, 1, 3, 5, 7}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.n);
        std::vector<double> x, y;
        for (int k = 0; k < c.n; ++k) {
            x.push_back(k * 10.0);
            y.push_back(k * k / double((c.n - 1) * (c.n - 1)));  // not the equal steps
        }
        setCurve(0, x, y, 7);
        I16 n = c.n;
        BuildBisectionTable(n);
        EXPECT_EQ(CertaintyJudgmentOrder(), c.order);
        for (I16 i = 1; i + 1 < c.n; ++i) {
            const BisectionRecord& row = w().BisectionTable[static_cast<std::size_t>(i)];
            I16 att = 0, index = i;
            EXPECT_DOUBLE_EQ(CertaintyEquivalentValue(att, index), (y[row.Lower] + y[row.Upper]) / 2.0) << i;
        }
        I16 att = 0, beyond = c.n;
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
