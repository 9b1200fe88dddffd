// Answers that disagree: the stretches where a drawn curve turns back, and
// the sign of the risk premiums that lottery answers imply.
#include "ModelFixture.h"
#include "model/Consistency.h"
#include "model/Format.h"

namespace kelmar::test {
namespace {

TEST(TurnBacks, StretchesWhereTheDrawnValuesLeaveTheOrder) {
    // Nine drawn values over the scores 0 .. 80 (one segment is 10 wide).
    const std::vector<float> wavy{0.0f, 0.1f, 0.2f, 0.15f, 0.1f, 0.3f, 0.3f, 0.2f, 1.0f};
    const struct { const char* what; std::vector<float> drawn; bool cost; std::vector<double> stretches; } cases[] = {
        {"benefit: falls twice", wavy, false, {20, 40, 60, 70}},
        {"cost: rises three times", wavy, true, {0, 20, 40, 50, 70, 80}},
        // A plateau inside a fall belongs to it; one between rises is none.
        {"benefit: plateau inside a fall", {1, 0.8f, 0.8f, 0.6f, 0.9f, 1, 1, 1, 1}, false, {0, 30}},
        // The chart cuts the curve to 0 .. 1: flat at the edge is no turn.
        {"benefit: cut at the top", {0, 0.5f, 1, 1, 1, 1, 1, 1, 1}, false, {}},
        {"cost: falling all the way", {1, 0.9f, 0.7f, 0.5f, 0.4f, 0.3f, 0.2f, 0.1f, 0}, true, {}},
    };
    for (const auto& c : cases) {
        std::vector<double> found;
        for (const TurnBack& t : TurnBackStretches(c.drawn, 0.0, 80.0, c.cost)) {
            found.push_back(t.from);
            found.push_back(t.to);
        }
        EXPECT_EQ(found, c.stretches) << c.what;
    }
}

TEST(RiskPremiums, ExpectedScoreMinusSureScoreAndTheirSigns) {
    // An even chance of 0 or 100 taken for 30 for sure: a premium of 20.
    EXPECT_DOUBLE_EQ(RiskPremium(30, 0, 100, 0.5), 20);
    // 100 with 0.8, else 0, against 90 for sure: -10.
    EXPECT_DOUBLE_EQ(RiskPremium(90, 100, 0, 0.8), -10);

    const auto premiums = [](std::initializer_list<double> p) {
        std::vector<LotteryPremium> out;
        std::int16_t k = 1;
        for (double v : p) out.push_back({k, 10.0 * k, v}), ++k;
        return out;
    };
    const struct { std::vector<LotteryPremium> judged; bool changes; int positive, negative; } cases[] = {
        {premiums({20, 5, -3}), true, 1, 3},
        {premiums({-2, 0, 4}), true, 3, 1},
        {premiums({20, 5, 3}), false, 0, 0},
        // Within a millionth of the range (100) a premium counts as none.
        {premiums({20, -0.00009}), false, 0, 0},
        {premiums({}), false, 0, 0},
    };
    for (const auto& c : cases) {
        LotteryPremium up, down;
        ASSERT_EQ(PremiumsChangeSign(c.judged, 100.0, up, down), c.changes) << c.judged.size();
        if (c.changes) {
            EXPECT_EQ(std::pair(int(up.point), int(down.point)), std::pair(c.positive, c.negative));
        }
    }
}

TEST(NumberFormats, PlainNumbersAsAnAnalystTypesThem) {
    const struct { double value; const char* expected; } cases[] = {
        {0.1 + 0.2, "0.3"}, {0.73 * 100, "73"}, {0.32500000000000007, "0.325"}, {1e-7, "0.0000001"},
        {-12.5, "-12.5"}, {1234567.25, "1234567.25"}, {-0.0, "0"}, {2.0 / 3.0, "0.666666666666667"},
    };
    for (const auto& c : cases) EXPECT_EQ(fmt::plainNumber(c.value), c.expected) << c.value;
    // A Single shows the digits that give it back, not its Double's.
    EXPECT_EQ(fmt::plainSingle(0.29999995f), "0.29999995");
    EXPECT_EQ(fmt::plainSingle(0.3f), "0.3");
    EXPECT_EQ(fmt::plainSingle(-0.0f), "0");
}

}  // namespace
}  // namespace kelmar::test
