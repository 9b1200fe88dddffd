// The category technique's three ways of preparing its points. Until its
// page brings the ladder fitting, each leaves points of the new size that
// the page can place on its ladder: ends at the minimum and the maximum
// score, the values in the attribute's orientation.
#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

namespace kelmar {

void CategoryPointsFromLinear(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    (void)oldSize;
    SetLinearSamplePoints(att, newSize);
}

void CategoryPointsRefresh(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize) {
    (void)oldSize;
    // The attribute's own category points stay; only the ends are put back
    // on the current range.
    WizardData& w = wizardData();
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, checkedSub(newSize, 1)) = w.ScoreMaximum(att);
}

void CategoryPointsFromOtherTechnique(std::int16_t& att, std::int16_t& newSize,
                                      std::int16_t& oldSize) {
    // Another technique's curve is read off at equally spaced scores; a
    // linear function or a sample too small for a curve starts linear.
    WizardData& w = wizardData();
    if (isLinearType(w.VFunType(att)) || oldSize < 2) {
        SetLinearSamplePoints(att, newSize);
    } else {
        ResampleByScore(att, newSize, oldSize);
    }
}

}  // namespace kelmar
