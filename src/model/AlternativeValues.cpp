#include <kelmar/mdKelMain.h>

namespace kelmar {

void ComputeAlternativeValue(std::int16_t& alt, std::int16_t& att, std::int16_t& maxVal) {
    WizardData& w = wizardData();
    std::int16_t n = w.SmpSize(att).toInteger();
    const std::int16_t last = checkedSub(n, 1);
    if (last < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);

    thread_local VariantArray xs, ys, out(0, 4);
    xs.redim(0, last);
    ys.redim(0, last);
    for (int k = 0; k <= last; ++k) {
        xs(k) = w.SmpX(att, k);
        ys(k) = w.SmpY(att, k);
    }
    double x = w.AltPScore(alt, att).toDouble();
    std::int16_t evaluate = -1;
    AkimaInterpolate(xs, ys, n, evaluate, x, out);

    double v = out(4).toDouble();
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
