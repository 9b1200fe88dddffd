// Consistency of an analyst's answers: where the curve through the points
// runs against the attribute's order, and the risk premiums that the
// lottery answers imply.
#pragma once

#include <cstdint>
#include <vector>

namespace kelmar {

// A stretch of scores over which the curve turns back.
struct TurnBack {
    double from = 0.0;
    double to = 0.0;
};

// The stretches over which a curve, as the value chart draws it, turns
// back: `drawn` holds its values at the chart's evenly spaced scores
// scoreMin + k * h (k = 0 .. drawn.size() - 1, h the range over
// drawn.size() - 1 formed in single precision, as the chart forms it); a
// segment turns back where its value falls on a benefit attribute or rises
// on a cost one. Touching segments make one stretch; a flat segment breaks
// none and makes none.
std::vector<TurnBack> TurnBackStretches(const std::vector<float>& drawn, double scoreMin, double scoreMax,
                                        bool cost);

// The risk premium of a lottery that gives outcomeA with probability pA and
// outcomeB otherwise, against the score taken for sure instead: the expected
// score minus the sure score.
double RiskPremium(double sure, double outcomeA, double outcomeB, double pA);

// One judged lottery: its point, the sure score and the premium.
struct LotteryPremium {
    std::int16_t point = 0;
    double sure = 0.0;
    double premium = 0.0;
};

// The premium of point index's lottery on the Variable Certainty page: an
// even chance of the two outcomes of its BisectionTable row.
LotteryPremium CertaintyPremium(std::int16_t att, std::int16_t index);
// The premium of point index's lottery on the Variable Probability page: the
// best score with the point's value as probability, the worst otherwise.
LotteryPremium ProbabilityPremium(std::int16_t att, std::int16_t index);

// Whether the premiums have both signs; a premium within a millionth of
// the score range of zero counts as neither. On true, positive and negative
// are the first premium of each sign.
bool PremiumsChangeSign(const std::vector<LotteryPremium>& premiums, double range, LotteryPremium& positive,
                        LotteryPremium& negative);

}  // namespace kelmar
