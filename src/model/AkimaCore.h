// The arithmetic of the Akima interpolation, shared by AkimaInterpolate and
// the routines that evaluate a curve many times (the Finish loop, the
// middle-score walk, the resampling). It reads the sample cells through a
// small accessor, so the same code runs on plain doubles and straight on the
// Variant cells of an array's storage, and every caller gets the same bits.
#pragma once

#include "model/Arith.h"

#include <kelmar/Variant.h>

#include <cmath>

namespace kelmar {

// Sample cells held as plain doubles.
struct DoubleCells {
    const double* p;
    double operator[](int k) const { return p[k]; }
};

// Sample cells held as Variants (cell k at p[k]), read as doubles.
struct VariantCells {
    const Variant* p;
    double operator[](int k) const { return p[k].asDoubleFast(); }
};

namespace akima {

// The tangent at a point from the four chord slopes a, b, c, d around it.
inline double tangent(double a, double b, double c, double d) {
    const double w1 = std::fabs(d - c);
    const double w2 = std::fabs(b - a);
    if (w1 == 0.0 && w2 == 0.0) return checkedResult((b + c) / 2.0);
    return checkedResult((w1 * b + w2 * c) / (w1 + w2));
}

// The interval i with X(i) <= at < X(i + 1), found by bisection over
// 1-based positions; the first and the last interval reach out beyond the
// ends. Needs n >= 3.
template <class Cells>
int intervalOf(const Cells& x, int n, double at) {
    if (at <= x[1]) return 0;
    if (at >= x[n - 1]) return n - 2;
    int lo = 1;
    int hi = n;
    while (hi - lo != 1) {
        const int mid = (lo + hi) / 2;
        const bool below = at < x[mid - 1];
        hi = below ? mid : hi;
        lo = below ? lo : mid;
    }
    return lo - 1;
}

}  // namespace akima

// Fills out[0..3] with the coefficients of the cubic on the interval that
// holds at and, when evaluate is set, out[4] with the value there; out[4]
// is left alone otherwise. Needs n >= 1 (n = 1 gives the constant y[0]).
// Only the points that the interval search and the five chord slopes around
// the interval touch are read. Raises error 11 for equal abscissae among
// them and 6 for a result that is not a finite double.
// (Hidden: each part of the library calls its own copy directly.)
template <class Cells>
[[gnu::visibility("hidden")]] void akimaCore(const Cells& x, const Cells& y, int n, bool evaluate,
                                             double at, double out[5]) {
    if (n == 1) {
        // One point carries a constant.
        const double y0 = y[0];
        out[0] = y0;
        out[1] = out[2] = out[3] = 0.0;
        if (evaluate) out[4] = y0;
        return;
    }
    if (n == 2) {
        const double x0 = x[0];
        const double y0 = y[0];
        const double p1 = checkedDiv(y[1] - y0, x[1] - x0);
        out[0] = y0;
        out[1] = p1;
        out[2] = out[3] = 0.0;
        // A score on a sample point gives that point's value exactly.
        if (evaluate) out[4] = at == x[1] ? y[1] : checkedResult(y0 + p1 * (at - x0));
        return;
    }

    const int i = akima::intervalOf(x, n, at);
    const int first = i - 2;  // the window holds points first .. first + 5

    // The points of the window that exist; px[j], py[j] hold point first + j.
    // The five chord slopes m(i - 2) .. m(i + 2); s[j] holds m(first + j).
    // Those inside 0 .. n - 2 are chords, the others are carried on
    // linearly from the nearest two, below the first and above the last.
    double px[6];
    double py[6];
    double s[5];
    if (first >= 0 && first + 5 <= n - 1) {
        // An interval well inside the set: all six points, five chords.
        for (int j = 0; j < 6; ++j) {
            px[j] = x[first + j];
            py[j] = y[first + j];
        }
        for (int j = 0; j < 5; ++j) s[j] = checkedDiv(py[j + 1] - py[j], px[j + 1] - px[j]);
    } else {
        const int lo = first < 0 ? 0 : first;
        const int hi = first + 5 > n - 1 ? n - 1 : first + 5;
        for (int k = lo; k <= hi; ++k) {
            px[k - first] = x[k];
            py[k - first] = y[k];
        }
        for (int j = 0; j < 5; ++j) {
            const int k = first + j;
            if (k >= 0 && k <= n - 2) s[j] = checkedDiv(py[j + 1] - py[j], px[j + 1] - px[j]);
        }
    }
    const auto m = [&](int k) -> double& { return s[k - first]; };
    if (first < 0) {
        m(-1) = checkedResult(2.0 * m(0) - m(1));
        if (first < -1) m(-2) = checkedResult(2.0 * m(-1) - m(0));
    }
    if (i + 2 >= n - 1) {
        m(n - 1) = checkedResult(2.0 * m(n - 2) - m(n - 3));
        if (i + 2 >= n) m(n) = checkedResult(2.0 * m(n - 1) - m(n - 2));
    }

    const double tL = akima::tangent(s[0], s[1], s[2], s[3]);
    const double tR = akima::tangent(s[1], s[2], s[3], s[4]);
    const double h = px[3] - px[2];
    const double mi = s[2];
    const double p2 = checkedDiv(3.0 * mi - 2.0 * tL - tR, h);
    const double p3 = checkedDiv(tL + tR - 2.0 * mi, h * h);
    out[0] = py[2];
    out[1] = tL;
    out[2] = p2;
    out[3] = p3;
    if (evaluate) {
        // The interval's right end is reached by the first interval (from
        // X(1)) and the last (at X(n - 1)): there the cubic would give the
        // point's value only to rounding, so the point's own value is taken.
        const double d = at - px[2];
        out[4] = at == px[3] ? py[3]
                             : checkedResult(py[2] + tL * d + p2 * d * d + p3 * d * d * d);
    }
}

}  // namespace kelmar
