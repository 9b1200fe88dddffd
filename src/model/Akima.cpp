#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <array>
#include <cmath>
#include <vector>

namespace kelmar {

namespace {

// Chord slopes m(-2) .. m(n) of n points, the missing ones extrapolated
// linearly from their neighbours. m(k) is stored at slot k + 2.
class Slopes {
public:
    Slopes(const double* x, const double* y, int n) {
        const int count = n + 3;
        if (count <= static_cast<int>(fixed_.size())) {
            m_ = fixed_.data();
        } else {
            heap_.resize(static_cast<std::size_t>(count));
            m_ = heap_.data();
        }
        for (int k = 0; k <= n - 2; ++k) {
            at(k) = checkedDiv(y[k + 1] - y[k], x[k + 1] - x[k]);
        }
        at(-1) = checkedResult(2.0 * at(0) - at(1));
        at(-2) = checkedResult(2.0 * at(-1) - at(0));
        at(n - 1) = checkedResult(2.0 * at(n - 2) - at(n - 3));
        at(n) = checkedResult(2.0 * at(n - 1) - at(n - 2));
    }
    double& at(int k) { return m_[k + 2]; }

private:
    std::array<double, 20> fixed_{};
    std::vector<double> heap_;
    double* m_ = nullptr;
};

// The tangent at a point from the four chord slopes around it.
double tangent(double a, double b, double c, double d) {
    const double w1 = std::fabs(d - c);
    const double w2 = std::fabs(b - a);
    if (w1 == 0.0 && w2 == 0.0) return (b + c) / 2.0;
    return checkedResult((w1 * b + w2 * c) / (w1 + w2));
}

}  // namespace

void AkimaInterpolate(VariantArray& X, VariantArray& Y, std::int16_t& n, std::int16_t& evaluate,
                      double& x, VariantArray& Out) {
    for (int k = 0; k <= 4; ++k) Out(k) = 0.0f;
    if (n < 1) return;

    // Read the points once; small sets stay on the stack.
    std::array<double, 16> fx{}, fy{};
    std::vector<double> vx, vy;
    double* px = fx.data();
    double* py = fy.data();
    if (n > static_cast<int>(fx.size())) {
        vx.resize(static_cast<std::size_t>(n));
        vy.resize(static_cast<std::size_t>(n));
        px = vx.data();
        py = vy.data();
    }
    for (int k = 0; k < n; ++k) {
        px[k] = X(k).asDoubleFast();
        py[k] = Y(k).asDoubleFast();
    }
    const bool wantValue = evaluate != 0;

    if (n == 1) {
        // A single point carries a constant.
        Out(0) = py[0];
        if (wantValue) Out(4) = py[0];
        return;
    }
    if (n == 2) {
        const double p0 = py[0];
        const double p1 = checkedDiv(py[1] - py[0], px[1] - px[0]);
        Out(0) = p0;
        Out(1) = p1;
        if (wantValue) Out(4) = checkedResult(p0 + p1 * (x - px[0]));
        return;
    }

    // The interval i with X(i) <= x < X(i + 1), ends extended outwards.
    int i;
    if (x <= px[1]) {
        i = 0;
    } else if (x >= px[n - 1]) {
        i = n - 2;
    } else {
        int lo = 1;
        int hi = n;
        while (hi - lo != 1) {
            const int mid = (lo + hi) / 2;
            if (x < px[mid - 1]) {
                hi = mid;
            } else {
                lo = mid;
            }
        }
        i = lo - 1;
    }

    Slopes m(px, py, n);
    const double tL = tangent(m.at(i - 2), m.at(i - 1), m.at(i), m.at(i + 1));
    const double tR = tangent(m.at(i - 1), m.at(i), m.at(i + 1), m.at(i + 2));
    const double h = px[i + 1] - px[i];
    const double mi = m.at(i);
    const double p0 = py[i];
    const double p1 = tL;
    const double p2 = checkedDiv(3.0 * mi - 2.0 * tL - tR, h);
    const double p3 = checkedDiv(tL + tR - 2.0 * mi, h * h);
    Out(0) = p0;
    Out(1) = p1;
    Out(2) = p2;
    Out(3) = p3;
    if (wantValue) {
        const double d = x - px[i];
        Out(4) = checkedResult(p0 + p1 * d + p2 * d * d + p3 * d * d * d);
    }
}

}  // namespace kelmar
