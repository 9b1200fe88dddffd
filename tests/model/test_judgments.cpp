// The neighbour step of the dragging pages and the bisection judgment table.
#include "ModelFixture.h"
#include "model/ScoreSequence.h"

#include <array>

namespace kelmar::test {

using Judgments = ModelTest;

TEST_F(Judgments, NeighbourStepGoesTowardsThePointsOwnSide) {
    const struct { bool cost; std::vector<double> y; I16 index, neighbour; double expected; } cases[] = {
        {false, {0, 0.2, 0.5, 0.8, 1}, 2, 1, 0.225},   // benefit, past the lower point
        {false, {0, 0.2, 0.5, 0.8, 1}, 2, 3, 0.775},   // benefit, past the upper point
        {true, {1, 0.8, 0.5, 0.2, 0}, 2, 1, 0.775},    // cost, past the previous point
        {true, {1, 0.8, 0.5, 0.2, 0}, 2, 3, 0.225},    // cost, past the next point
        {true, {1, 0.8, 0.5, 0.2, 0}, 3, 4, 0.025},    // cost, past the last point: never below 0
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
    n = 9;
    BuildBisectionTable(n);
    EXPECT_EQ(rows(), (std::vector<std::array<int, 3>>{{0, 0, 1}, {0, 2, 3}, {0, 4, 2}, {2, 4, 3}, {0, 8, 1},
                                                       {4, 6, 3}, {4, 8, 2}, {6, 8, 3}, {8, 8, 1}}));
    EXPECT_EQ(BisectionJudgmentOrder(), (std::vector<int>{4, 2, 6, 1, 3, 5, 7}));
    for (I16 bad : {I16(7), I16(3), I16(0)}) {
        n = bad;
        EXPECT_EQ(errorNumber([&] { BuildBisectionTable(n); }), 9) << bad;
    }
    n = 11;  // room for the nine rows: the last two stay empty
    BuildBisectionTable(n);
    EXPECT_EQ(rows()[8], (std::array<int, 3>{8, 8, 1}));
    EXPECT_EQ(rows()[10], (std::array<int, 3>{0, 0, 0}));
}

}  // namespace kelmar::test
