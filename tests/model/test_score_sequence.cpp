// Judged scores turned into a function on equal value steps.
#include "ModelFixture.h"

#include "model/ScoreSequence.h"

namespace kelmar::test {

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

}  // namespace kelmar::test
