// Builds against the installed headers, creates the component, and values
// scores with a stored function record without the wizard, as the README
// shows.
#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include <QApplication>

#include <algorithm>
#include <cmath>
#include <cstdio>

// The value (0 .. maxVal) of `score` on attribute `att` of a stored record.
double valueOf(const kelmar::VariantArray& smpX, const kelmar::VariantArray& smpY,
               const kelmar::Variant& smpSize, int att, double score, int maxVal) {
    std::int16_t n = smpSize.toInteger();
    if (n < 1) throw kelmar::RuntimeError(kelmar::RuntimeError::SubscriptOutOfRange);
    kelmar::VariantArray x(0, n - 1), y(0, n - 1), out(0, 4);
    for (int k = 0; k < n; ++k) {
        x(k) = smpX(att, k);
        y(k) = smpY(att, k);
    }
    std::int16_t evaluate = -1;  // True: compute the value into out(4)
    kelmar::AkimaInterpolate(x, y, n, evaluate, score, out);
    const double v = std::clamp(out(4).toDouble(), 0.0, 1.0);
    return maxVal * v;
}

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    kelmar::KelmarDll component;

    // A cost curve through four points, stored as an exported record holds it.
    kelmar::VariantArray smpX(0, 0, 0, 10), smpY(0, 0, 0, 10);
    const double xs[] = {0, 20, 50, 100}, ys[] = {1, 0.6, 0.3, 0};
    for (int k = 0; k < 4; ++k) {
        smpX(0, k) = xs[k];
        smpY(0, k) = ys[k];
    }
    const kelmar::Variant size = std::int16_t(4);
    const double atSample = valueOf(smpX, smpY, size, 0, 50.0, 100);
    const double beyondBest = valueOf(smpX, smpY, size, 0, -30.0, 100);
    std::printf("value at 50: %g, at -30: %g\n", atSample, beyondBest);
    return std::fabs(atSample - 30.0) < 1e-12 && beyondBest == 100.0 ? 0 : 1;
}
