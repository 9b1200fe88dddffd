// One level-mark drag step on the Category Identification page: the mouse
// move on the mark runs the move rule and redraws the order-values chart,
// the categorization chart and the value function chart. Measured with and
// without painting the page into an image afterwards (the next frame), on
// an offscreen page with the categorization chart in front.
#include "PageDrag.h"
#include "pages/techniques/frmKelCatIdn.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace kelmar;

// One benefit attribute on 0 .. 64 with its seven category points.
void fillCategoryAttribute() {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AttNum = 1;
    w.AltNum = 1;
    w.MaxVal = 100;
    w.SelTechnique = kCategoryIdentification;
    w.SelMCDAMethod = 1;
    for (VariantArray* a : {&w.AttName, &w.ScoreMinimum, &w.ScoreMiddle, &w.ScoreMaximum,
                            &w.ScoreMinimumCopy, &w.ScoreMaximumCopy, &w.AttPropertyCopy,
                            &w.SmpSize, &w.VFunType, &w.VFTechniqueID, &w.AttVFDone,
                            &w.InSmpSize, &w.InVFunType, &w.InVFTechniqueID})
        a->redim(0, 0);
    for (VariantArray* a : {&w.SmpX, &w.SmpY, &w.InSmpX, &w.InSmpY}) a->redim(0, 0, 0, 10);
    w.AttName(0) = Variant("Floor area");
    w.ScoreMinimum(0) = w.ScoreMinimumCopy(0) = Variant(0.0);
    w.ScoreMaximum(0) = w.ScoreMaximumCopy(0) = Variant(64.0);
    w.AttPropertyCopy(0) = Variant(std::int16_t(0));
    w.SmpSize(0) = Variant(std::int16_t(0));  // laid out by the page
    w.VFunType(0) = Variant(std::int16_t(1));
    w.AttVFDone(0) = Variant(false);
}

// Grabs level mark 3 (at 12.5 on the scale, its neighbours at 6.25 and 25)
// and moves it back and forth, never across a neighbour; `paint` paints the
// page into an image after every step.
void dragLevel(benchmark::State& state, bool paint) {
    if (QApplication::instance() == nullptr) std::abort();
    fillCategoryAttribute();
    frmKelCatIdn page;
    page.resize(820, 820);
    page.load();
    page.show();
    auto* mark = page.findChild<QWidget*>(QStringLiteral("picScorePoint_3"));
    const double unit = page.findChild<QWidget*>(QStringLiteral("picRatingChart"))->width() / 116.0;
    bench::dragSteps(state, page, *mark, QPointF(mark->width() / 2.0, 8.0), QPointF(unit, 0.0), paint);
}

void CategoryDragStep(benchmark::State& state) { dragLevel(state, false); }
BENCHMARK(CategoryDragStep)->Unit(benchmark::kMicrosecond);

void CategoryDragStepPainted(benchmark::State& state) { dragLevel(state, true); }
BENCHMARK(CategoryDragStepPainted)->Unit(benchmark::kMicrosecond);

}  // namespace
