#include "model/AkimaCore.h"

#include <kelmar/mdKelMain.h>

#include <cstdint>

namespace kelmar {

namespace {

// Cells (att, 0 .. n - 1) of an attribute-by-point array, n >= 1; a cell
// outside the bounds raises error 9, as indexing it would. The row's cells
// lie side by side, so checking its first and its last cell checks them all.
const Variant* pointRow(const VariantArray& a, int att, int n) {
    const Variant* row = &a(att, 0);
    static_cast<void>(a(att, n - 1));
    return row;
}

}  // namespace

void ComputeAlternativeValue(std::int16_t& alt, std::int16_t& att, std::int16_t& maxVal) {
    WizardData& w = wizardData();
    // The local arrays 0 .. n - 1 cannot be dimensioned for an empty sample.
    // (n - 1 overflows the 16-bit Integers only for n = -32768.)
    const std::int16_t n = w.SmpSize(att).toInteger();
    if (n < 1) {
        throw RuntimeError(n == INT16_MIN ? RuntimeError::Overflow
                                          : RuntimeError::SubscriptOutOfRange);
    }

    // The curve through the sample points, read straight from the rows of
    // SmpX and SmpY. It serves every function type: linear points lie on
    // their line.
    const VariantCells xs{pointRow(w.SmpX, att, n)};
    const VariantCells ys{pointRow(w.SmpY, att, n)};
    const double x = w.AltPScore(alt, att).asDoubleFast();
    double v = 0.0;
    if (x <= xs[0]) {
        // At or beyond an end the score is worth that end's value: the
        // extended end cubic may turn back before it leaves the value range.
        v = ys[0];
    } else if (x >= xs[n - 1]) {
        v = ys[n - 1];
    } else {
        double out[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
        akimaCore(xs, ys, n, true, x, out);
        v = out[4];
    }

    // A value the host's points put outside the value range is cut to it.
    // (Above 1 it is 1, else below 0 it is 0; v is never a NaN here.)
    v = v > 1.0 ? 1.0 : v;
    v = v < 0.0 ? 0.0 : v;
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
