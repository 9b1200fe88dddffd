// The points of the techniques that judge scores: their values are fixed at
// equal steps of value and the analyst places the scores, by halving
// (bisection) or by a chain of equally preferred steps (difference standard
// sequence).
#pragma once

#include <kelmar/mdKelMain.h>

#include <vector>

namespace kelmar {

// Equal value steps for `size` points of attribute att, falling on a cost
// attribute and rising on a benefit one: interior values as Singles, the
// ends as Integers.
void layOutEqualValues(WizardData& w, std::int16_t att, std::int16_t size);

// Values read off the curve through the old points (oldX, oldY) at rising
// scores, put in shape where the curve swings past the old points between
// two of them: each kept between the old values around its score, none
// turning back against the orientation (falling on a cost attribute,
// rising on a benefit one), all within 0 .. 1.
void KeepValuesInOrder(const std::vector<double>& oldX, const std::vector<double>& oldY,
                       const std::vector<double>& scores, std::vector<double>& values, bool cost);

// True when the values of att's SmpSize points lie on the equal steps.
bool HasEqualValueSteps(std::int16_t& att);

// Turns att's judged scores into the function: point 0 at ScoreMinimum,
// the last point at ScoreMaximum, the values on the equal steps. Interior
// scores that are not strictly increasing inside the range (points that
// came from elsewhere) are replaced: the longest rising run of them is kept
// and the others are spread evenly between the kept ones.
void FitEqualValueSteps(std::int16_t& att);

// The interior points of BisectionTable in the order they are judged: by
// the round of halving, then from the lowest score up.
std::vector<int> BisectionJudgmentOrder();

}  // namespace kelmar
