#include "model/AkimaCore.h"
#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

namespace kelmar {

namespace {

// Cell 0 of a one-dimensional array that reaches from 0 to at least n - 1
// (n >= 1); an array that does not raises error 9, as indexing it would.
// The cells lie side by side, so checking the first and the last checks all.
Variant* cellsFrom0(VariantArray& a, int n) {
    Variant* first = &a(0);
    static_cast<void>(a(n - 1));
    return first;
}

}  // namespace

void AkimaInterpolate(VariantArray& X, VariantArray& Y, std::int16_t& n, std::int16_t& evaluate,
                      double& x, VariantArray& Out) {
    // Out(0 .. 4) are cleared first (as Singles); the cells that the
    // routine computes then receive Doubles.
    Variant* result = cellsFrom0(Out, 5);
    const auto clear = [result] {
        for (int k = 0; k <= 4; ++k) result[k] = 0.0f;
    };
    if (n < 1) {
        clear();
        return;
    }

    const bool wantValue = evaluate != 0;
    double out[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
    try {
        const VariantCells xs{cellsFrom0(X, n)};
        const VariantCells ys{cellsFrom0(Y, n)};
        akimaCore(xs, ys, n, wantValue, x, out);
    } catch (...) {
        clear();  // a fault leaves the cleared results behind
        throw;
    }
    // Coefficients set for this n: p0 for one point, p0 and p1 for two.
    const int computed = n >= 3 ? 4 : n;
    for (int k = 0; k < 4; ++k) {
        if (k < computed) {
            result[k] = out[k];
        } else {
            result[k] = 0.0f;
        }
    }
    if (wantValue) {
        result[4] = out[4];
    } else {
        result[4] = 0.0f;
    }
}

}  // namespace kelmar
