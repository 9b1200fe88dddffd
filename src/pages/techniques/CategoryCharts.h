// The charts of the Category Identification page: the categorization chart
// with its level table, and the level labels.
#pragma once

#include <kelmar/Variant.h>

#include <QString>

#include <cstdint>

namespace kelmar {

class DrawSurface;

// The label of ladder level `level` (0 .. 6) for the orientation and the
// attribute's kind. Any other level raises the subscript error.
QString CategoryLevelLabel(int level, bool maxToMin, bool cost);

// The categorization chart of attribute att: the ladder's levels against
// the scores, the levels' values and, below, the level table of the
// attribute's kind (DrawBenefitLevels or DrawCostLevels).
void DrawCategoryChart(DrawSurface& pic, std::int16_t& att);
// The same chart while a level mark is dragged, from the values as they stand.
void DragCategoryChart(DrawSurface& pic, std::int16_t& att);

// The level table of a benefit (cost) attribute for `levelCount` levels on
// the range low .. high, with the headings. maxToMin: the ladder runs from
// the maximum to the minimum.
void DrawBenefitLevels(DrawSurface& pic, std::int16_t& levelCount, Variant& high, Variant& low,
                       bool& maxToMin);
void DrawCostLevels(DrawSurface& pic, std::int16_t& levelCount, Variant& high, Variant& low,
                    bool& maxToMin);

}  // namespace kelmar
