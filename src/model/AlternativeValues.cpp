#include "model/AkimaCore.h"

#include <kelmar/mdKelMain.h>

#include <vector>

namespace kelmar {

namespace {

// Cells (att, 0 .. n - 1) of an attribute-by-point array; a cell outside
// the bounds raises error 9, as indexing it would.
const Variant* pointRow(const VariantArray& a, int att, int n) {
    if (a.dimensions() != 2) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const int lo1 = a.lbound(1);
    const int lo2 = a.lbound(2);
    const int hi2 = a.ubound(2);
    if (att < lo1 || att > a.ubound(1) || lo2 > 0 || hi2 < n - 1)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const std::size_t width = static_cast<std::size_t>(hi2 - lo2 + 1);
    return a.data().data() + static_cast<std::size_t>(att - lo1) * width - lo2;
}

}  // namespace

void ComputeAlternativeValue(std::int16_t& alt, std::int16_t& att, std::int16_t& maxVal) {
    WizardData& w = wizardData();
    // The local arrays 0 .. n - 1 cannot be dimensioned for an empty sample.
    const std::int16_t n = w.SmpSize(att).toInteger();
    const std::int16_t last = checkedSub(n, 1);
    if (last < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);

    // The curve through the sample points, read as doubles. It serves
    // every function type: linear points lie on their line.
    double fx[kStackPoints];
    double fy[kStackPoints];
    std::vector<double> heap;
    double* xs = fx;
    double* ys = fy;
    if (n > kStackPoints) {
        heap.resize(2 * static_cast<std::size_t>(n));
        xs = heap.data();
        ys = xs + n;
    }
    const Variant* rowX = pointRow(w.SmpX, att, n);
    const Variant* rowY = pointRow(w.SmpY, att, n);
    for (int k = 0; k < n; ++k) {
        xs[k] = rowX[k].asDoubleFast();
        ys[k] = rowY[k].asDoubleFast();
    }
    const double x = w.AltPScore(alt, att).asDoubleFast();
    double out[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
    akimaCore(xs, ys, n, true, x, out);

    // Beyond the ends the extended cubics are cut to the value range.
    double v = out[4];
    if (v > 1.0) {
        v = 1.0;
    } else if (v < 0.0) {
        v = 0.0;
    }
    w.AttVData(alt, att) = static_cast<double>(maxVal) * v;
}

void ComputeAllAlternativeValues() {
    WizardData& w = wizardData();
    for (std::int16_t alt = 0; alt < w.AltNum; ++alt) {
        for (std::int16_t att = 0; att < w.AttNum; ++att) {
            ComputeAlternativeValue(alt, att, w.MaxVal);
        }
    }
}

}  // namespace kelmar
