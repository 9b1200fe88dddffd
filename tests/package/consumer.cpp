// Builds against the installed headers and evaluates a function record
// without opening the wizard.
#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include <QApplication>

#include <cmath>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    kelmar::KelmarDll component;
    kelmar::VariantArray x(0, 2), y(0, 2), out(0, 4);
    x(0) = 0.0; x(1) = 50.0; x(2) = 100.0;
    y(0) = 0.0; y(1) = 0.5; y(2) = 1.0;
    std::int16_t n = 3, evaluate = -1;
    double at = 25.0;
    kelmar::AkimaInterpolate(x, y, n, evaluate, at, out);
    const double v = out(4).toDouble();
    std::printf("value at 25: %g\n", v);
    return std::fabs(v - 0.25) < 1e-12 ? 0 : 1;
}
