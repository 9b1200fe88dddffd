// The stretches where an attribute's curve turns back, as the value chart
// draws it, and their shading on the chart.
#pragma once

#include "model/Consistency.h"

#include <cstdint>
#include <vector>

namespace kelmar {

class DrawSurface;

// Whether attribute att is cost-oriented (a non-zero property copy); an
// attribute without one counts as a benefit.
bool CostOrientedAttribute(std::int16_t att);

// The turn-back stretches of att's curve through its sample points,
// sampled at the chart's scores exactly as the chart draws it.
std::vector<TurnBack> DrawnTurnBacks(std::int16_t att);

// Shades each stretch over the full height of the plot box (0 .. 100 by
// 0 .. 100, scores scoreMin .. scoreMax across); drawn before the curve.
void ShadeTurnBacks(DrawSurface& pic, const std::vector<TurnBack>& stretches, double scoreMin, double scoreMax);

}  // namespace kelmar
