#include "charts/TurnBacks.h"

#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>

namespace kelmar {

namespace {

constexpr OleColor kShade = ole::rgb(0xFB, 0xDF, 0xD6);
constexpr OleColor kShadeEdge = ole::rgb(0xD9, 0x6A, 0x4A);

}  // namespace

bool CostOrientedAttribute(std::int16_t att) {
    const VariantArray& kind = wizardData().AttPropertyCopy;
    if (!kind.isAllocated() || kind.dimensions() != 1 || att < kind.lbound() || att > kind.ubound()) return false;
    return kind(att).toDouble() != 0.0;
}

std::vector<TurnBack> DrawnTurnBacks(std::int16_t att) {
    WizardData& w = wizardData();
    if (w.SmpSize(att).toInteger() < 2) return {};
    return TurnBackStretches(SampleAttributeCurve(att), w.ScoreMinimum(att).toDouble(),
                             w.ScoreMaximum(att).toDouble(), CostOrientedAttribute(att));
}

void ShadeTurnBacks(DrawSurface& pic, const std::vector<TurnBack>& stretches, double scoreMin, double scoreMax) {
    if (stretches.empty() || scoreMax == scoreMin) return;
    const auto across = [&](double score) {
        return std::clamp((score - scoreMin) / (scoreMax - scoreMin) * 100.0, 0.0, 100.0);
    };
    const int savedWidth = pic.drawWidth();
    pic.setDrawWidth(1);
    for (const TurnBack& s : stretches) {
        const double x1 = across(s.from), x2 = across(s.to);
        pic.filledBox(x1, 0.0, x2, 100.0, kShade);
        for (int i = 1; i < 4; ++i) pic.line(x1, i * 25.0, x2, i * 25.0, ole::ButtonFace);
        pic.line(x1, 0.0, x1, 100.0, kShadeEdge);
        pic.line(x2, 0.0, x2, 100.0, kShadeEdge);
    }
    pic.setDrawWidth(savedWidth);
}

}  // namespace kelmar
