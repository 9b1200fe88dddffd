#include "model/AkimaCore.h"
#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <cmath>
#include <vector>

namespace kelmar {

namespace {

// The tangent at a point from the four chord slopes a, b, c, d around it.
inline double tangent(double a, double b, double c, double d) {
    const double w1 = std::fabs(d - c);
    const double w2 = std::fabs(b - a);
    if (w1 == 0.0 && w2 == 0.0) return checkedResult((b + c) / 2.0);
    return checkedResult((w1 * b + w2 * c) / (w1 + w2));
}

// The interval i with X(i) <= at < X(i + 1); the first and the last
// interval reach out beyond the ends.
inline int intervalOf(const double* x, int n, double at) {
    if (at <= x[1]) return 0;
    if (at >= x[n - 1]) return n - 2;
    int lo = 1;  // positions are 1-based here
    int hi = n;
    while (hi - lo != 1) {
        const int mid = (lo + hi) / 2;
        if (at < x[mid - 1]) {
            hi = mid;
        } else {
            lo = mid;
        }
    }
    return lo - 1;
}

}  // namespace

void akimaCore(const double* x, const double* y, int n, bool evaluate, double at, double out[5]) {
    if (n == 1) {
        // One point carries a constant.
        out[0] = y[0];
        out[1] = out[2] = out[3] = 0.0;
        if (evaluate) out[4] = y[0];
        return;
    }
    if (n == 2) {
        const double p1 = checkedDiv(y[1] - y[0], x[1] - x[0]);
        out[0] = y[0];
        out[1] = p1;
        out[2] = out[3] = 0.0;
        if (evaluate) out[4] = checkedResult(y[0] + p1 * (at - x[0]));
        return;
    }

    const int i = intervalOf(x, n, at);

    // The five chord slopes m(i - 2) .. m(i + 2); s[j] holds m(i - 2 + j).
    // Those inside 0 .. n - 2 are chords, the others are carried on
    // linearly from the nearest two, below the first and above the last.
    double s[5];
    const int first = i - 2;
    for (int j = 0; j < 5; ++j) {
        const int k = first + j;
        if (k >= 0 && k <= n - 2) s[j] = checkedDiv(y[k + 1] - y[k], x[k + 1] - x[k]);
    }
    auto m = [&](int k) -> double& { return s[k - first]; };
    if (first < 0) {
        m(-1) = checkedResult(2.0 * m(0) - m(1));
        if (first < -1) m(-2) = checkedResult(2.0 * m(-1) - m(0));
    }
    if (i + 2 >= n - 1) {
        m(n - 1) = checkedResult(2.0 * m(n - 2) - m(n - 3));
        if (i + 2 >= n) m(n) = checkedResult(2.0 * m(n - 1) - m(n - 2));
    }

    const double tL = tangent(s[0], s[1], s[2], s[3]);
    const double tR = tangent(s[1], s[2], s[3], s[4]);
    const double h = x[i + 1] - x[i];
    const double mi = s[2];
    const double p2 = checkedDiv(3.0 * mi - 2.0 * tL - tR, h);
    const double p3 = checkedDiv(tL + tR - 2.0 * mi, h * h);
    out[0] = y[i];
    out[1] = tL;
    out[2] = p2;
    out[3] = p3;
    if (evaluate) {
        const double d = at - x[i];
        out[4] = checkedResult(y[i] + tL * d + p2 * d * d + p3 * d * d * d);
    }
}

namespace {

// The cells 0 .. n - 1 of a one-dimensional array, read as doubles. A cell
// outside the array's bounds raises error 9, as indexing it would.
void readCells(const VariantArray& a, int n, double* out) {
    if (a.dimensions() != 1) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const int lo = a.lbound(1);
    const int hi = a.ubound(1);
    if (lo > 0 || hi < n - 1) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const Variant* cells = a.data().data() - lo;
    for (int k = 0; k < n; ++k) out[k] = cells[k].asDoubleFast();
}

}  // namespace

void AkimaInterpolate(VariantArray& X, VariantArray& Y, std::int16_t& n, std::int16_t& evaluate,
                      double& x, VariantArray& Out) {
    // Out(0 .. 4) are cleared first (as Singles); the cells that the
    // routine computes then receive Doubles.
    if (Out.dimensions() != 1 || Out.lbound(1) > 0 || Out.ubound(1) < 4)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    Variant* result = Out.data().data() - Out.lbound(1);
    const auto clear = [result] {
        for (int k = 0; k <= 4; ++k) result[k] = 0.0f;
    };
    if (n < 1) {
        clear();
        return;
    }

    // The points as doubles; a set of the usual size stays on the stack.
    double fx[kStackPoints];
    double fy[kStackPoints];
    std::vector<double> heap;
    double* px = fx;
    double* py = fy;
    if (n > kStackPoints) {
        heap.resize(2 * static_cast<std::size_t>(n));
        px = heap.data();
        py = px + n;
    }
    const bool wantValue = evaluate != 0;
    double out[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
    try {
        readCells(X, n, px);
        readCells(Y, n, py);
        akimaCore(px, py, n, wantValue, x, out);
    } catch (...) {
        clear();  // a fault leaves the cleared results behind
        throw;
    }
    const int computed = n >= 3 ? 4 : 2;  // coefficients set for this n
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
