// The drawings of the settings page: the attribute's score range on the
// range panel and the sample chart of the value scale on the value panel.
#pragma once

#include <cstdint>

namespace kelmar {

class DrawSurface;

// The scope chart while the attribute's range is still the one the host
// passed: scoreMin and scoreMax are that range, drawn as the default range
// and as the end points.
void DrawScopeFromHostRange(DrawSurface& pic, std::int16_t& att, double& scoreMin,
                            double& scoreMax);
// The scope chart once the analyst confirmed a range: the host's range of
// the attribute as reference, scoreMin .. scoreMax as the chosen end points;
// the parts by which the range was widened are shaded apart.
void DrawScopeFromWorkingRange(DrawSurface& pic, std::int16_t& att, double& scoreMin,
                               double& scoreMax);

// The sample chart of the value scale: a straight value function from the
// lowest end point (value 0) to the highest (the maximum value), on a grid
// of five value levels.
void DrawValueScaleSample(DrawSurface& pic);
// The height, in the chart's user units, of a value level 0 .. 1 (the grid
// lines at which the tick labels of the page stand).
double ValueScaleLevelY(double fraction);

}  // namespace kelmar
