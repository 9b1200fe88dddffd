// The settings step: run when the analyst leaves the range panel of the
// settings page with Next. It makes the copies the technique pages read, gives
// the per-attribute function arrays their shape and keeps every attribute's
// sample points on the ends of its (possibly widened) score range.
#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <utility>
#include <vector>

namespace kelmar {

namespace {

// True when the array is one-dimensional with the bounds 0 .. last.
bool hasBounds(const VariantArray& a, int last) {
    return a.isAllocated() && a.dimensions() == 1 && a.lbound() == 0 && a.ubound() == last;
}

bool holds(const VariantArray& a, int i) {
    return a.isAllocated() && a.dimensions() == 1 && i >= a.lbound() && i <= a.ubound();
}

bool holds(const VariantArray& a, int i, int j) {
    return a.isAllocated() && a.dimensions() == 2 && i >= a.lbound(1) && i <= a.ubound(1) &&
           j >= a.lbound(2) && j <= a.ubound(2);
}

// Reads a number out of a cell; Empty, text that is no number and arrays
// give false, so a half-filled record from the host is left alone.
bool readNumber(const Variant& v, double& out) {
    if (v.isEmpty() || v.isArray()) return false;
    try {
        out = v.toDouble();
    } catch (const RuntimeError&) {
        return false;
    }
    return true;
}

// Gives a per-attribute array the bounds 0 .. last unless it has them
// already; a new array starts from the host's array where that holds the
// attribute. An array with the right bounds keeps what the pages wrote.
void shapeFromHost(VariantArray& working, const VariantArray& host, int last) {
    if (hasBounds(working, last)) return;
    working.redim(0, last);
    for (int att = 0; att <= last; ++att) {
        if (holds(host, att)) working(att) = host(att);
    }
}

// Sets SelAtt for the layout routine (it takes the orientation of the
// current attribute) and puts the old value back afterwards.
class CurrentAttribute {
public:
    CurrentAttribute(WizardData& w, std::int16_t att) : w_(w), saved_(w.SelAtt) { w.SelAtt = att; }
    ~CurrentAttribute() { w_.SelAtt = saved_; }
    CurrentAttribute(const CurrentAttribute&) = delete;
    CurrentAttribute& operator=(const CurrentAttribute&) = delete;

private:
    WizardData& w_;
    std::int16_t saved_;
};

// Lays n linear points out on the attribute's range, in its orientation, and
// computes its middle score again.
void layLinear(WizardData& w, std::int16_t att, std::int16_t n) {
    std::int16_t a = att;
    {
        CurrentAttribute current(w, att);
        SetLinearSamplePoints(a, n);
    }
    if (holds(w.ScoreMiddle, att)) StoreScoreMiddle(a, ComputeScoreMiddle(a));
}

// An attribute for which the host has no usable function (no sample size, or
// one that the sample arrays cannot hold) starts as a straight line of five
// points on its range, so that a technique page has marks to show and Finish
// has a function to value the alternatives with.
void startLinear(WizardData& w, std::int16_t att) {
    constexpr std::int16_t kStartSize = 5;
    if (!holds(w.SmpX, att, kStartSize - 1) || !holds(w.SmpY, att, kStartSize - 1)) return;
    if (!holds(w.VFunType, att)) return;
    w.SmpSize(att) = Variant(kStartSize);
    w.VFunType(att) = Variant(std::int16_t(0));
    layLinear(w, att, kStartSize);
}

// Keeps the first sample point on ScoreMinimum and the last on ScoreMaximum
// after the analyst changed the range. A linear function is laid out again
// on the new range; a curve keeps its interior points where the analyst put
// them and only its ends move, unless an interior point now lies outside the
// range: then all points are stretched with the range so that the scores
// stay strictly increasing. The middle score follows the moved points.
void fitSamplePoints(WizardData& w, std::int16_t att) {
    if (!holds(w.SmpSize, att) || !holds(w.ScoreMinimum, att) || !holds(w.ScoreMaximum, att))
        return;
    double size = 0, low = 0, high = 0;
    if (!readNumber(w.ScoreMinimum(att), low) || !readNumber(w.ScoreMaximum(att), high)) return;
    if (!readNumber(w.SmpSize(att), size)) size = 0;
    if (!(low < high)) return;
    if (size < 2 || size > 11 || size != static_cast<double>(static_cast<int>(size)) ||
        !holds(w.SmpX, att, static_cast<int>(size) - 1) ||
        !holds(w.SmpY, att, static_cast<int>(size) - 1)) {
        startLinear(w, att);
        return;
    }
    const int n = static_cast<int>(size);

    std::vector<double> xs(static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k) {
        if (!readNumber(w.SmpX(att, k), xs[static_cast<std::size_t>(k)])) return;
    }
    const double first = xs.front();
    const double lastX = xs.back();
    if (first == low && lastX == high) return;

    if (!holds(w.VFunType, att) || isLinearType(w.VFunType(att))) {
        layLinear(w, att, static_cast<std::int16_t>(n));
        return;
    }
    const bool inside = n == 2 || (xs[1] > low && xs[static_cast<std::size_t>(n - 2)] < high);
    if (!inside) {
        if (!(first < lastX)) return;  // no order to stretch
        const double scale = (high - low) / (lastX - first);
        for (int k = 1; k <= n - 2; ++k)
            w.SmpX(att, k) = checkedResult(low + (xs[static_cast<std::size_t>(k)] - first) * scale);
    }
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, n - 1) = w.ScoreMaximum(att);
    std::int16_t a = att;
    if (holds(w.ScoreMiddle, att)) StoreScoreMiddle(a, ComputeScoreMiddle(a));
}

}  // namespace

void PrepareWorkingArrays() {
    WizardData& w = wizardData();
    const std::int16_t last = checkedSub(w.AttNum, std::int16_t(1));

    w.AttPropertyCopy = w.AttProperty;
    w.ScoreMinimumCopy = w.ScoreMinimum;
    w.ScoreMaximumCopy = w.ScoreMaximum;

    // The middle scores were copied from the host when the page loaded; the
    // function arrays are new only on the first pass through this step.
    shapeFromHost(w.ScoreMiddle, w.InScoreMiddle, last);
    shapeFromHost(w.VFunParA, w.InVFunParA, last);
    shapeFromHost(w.VFunParB, w.InVFunParB, last);
    shapeFromHost(w.VFunParC, w.InVFunParC, last);
    shapeFromHost(w.VFunParD, w.InVFunParD, last);
    shapeFromHost(w.VFunType, w.InVFunType, last);

    for (std::int16_t att = 0; att <= last; ++att) fitSamplePoints(w, att);
}

void FitSamplePointsToRange(std::int16_t& att) { fitSamplePoints(wizardData(), att); }

void StartFromHostFunctions() {
    WizardData& w = wizardData();
    w.ScoreMinimum = w.InScoreMinimum;
    w.ScoreMaximum = w.InScoreMaximum;
    w.ScoreMiddle = w.InScoreMiddle;
    // Points the host never handed over stay as they are.
    for (auto [working, host] : {std::pair{&w.VFTechniqueID, &w.InVFTechniqueID}, {&w.SmpSize, &w.InSmpSize},
                                 {&w.SmpX, &w.InSmpX}, {&w.SmpY, &w.InSmpY}})
        if (host->isAllocated()) *working = *host;
    for (VariantArray* a : {&w.VFunParA, &w.VFunParB, &w.VFunParC, &w.VFunParD, &w.VFunType})
        *a = VariantArray();
    w.CategoryTurns.clear();
}

}  // namespace kelmar
