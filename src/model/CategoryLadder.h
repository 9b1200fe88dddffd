// The order-of-magnitude ladder of the category technique: where its levels
// lie on an attribute's score range, which sample point carries which level,
// and the orientation each attribute keeps in its sample values.
#pragma once

#include <kelmar/mdKelMain.h>

#include <cstdint>
#include <vector>

namespace kelmar {

// The sample-value entry (SmpY(att, 10)) that holds the attribute's ladder
// orientation: True for "from maximum to minimum", anything else "from
// minimum to maximum". No category sample reaches it.
inline constexpr int kOrientationEntry = 10;

// True when the attribute's ladder runs from its maximum to its minimum.
bool CategoryMaxToMin(std::int16_t att);
// Stores the orientation as a Boolean in the orientation entry.
void SetCategoryMaxToMin(std::int16_t att, bool maxToMin);

// The score of ladder level `level` (0 .. count - 1) on the range low ..
// high: low + e for the minimum-to-maximum ladder, high - e for the other,
// e = 2^((level - (count - 1)) c) (high - low), c = CategoryFactor.
double CategoryLevelScore(Variant& high, Variant& low, std::int16_t count, std::int16_t level,
                          bool maxToMin);

// The fractional level of a score on a ladder of `count` levels (the
// inverse of the level score); a score at or beyond the far end gives
// count - 1, one nearer the near end than level 0 a negative level. The
// score must differ from the near end.
double CategoryLevelOfScore(Variant& high, Variant& low, Variant& score, std::int16_t count,
                            bool maxToMin);

// The level that sample point k of an n-point ladder carries: the points run
// from the minimum score up, so on a maximum-to-minimum ladder point 0 is the
// last level.
std::int16_t CategoryLevelOfPoint(std::int16_t k, std::int16_t n, bool maxToMin);

// The sample scores of the attribute's ladder in point order: the level
// scores, strictly increasing, with point 0 at ScoreMinimum and the last at
// ScoreMaximum (the level nearest each end stands for that end). When the
// range is too narrow for distinct level scores the points are spread evenly.
std::vector<double> CategorySampleScores(std::int16_t att, std::int16_t n);

}  // namespace kelmar
