// Set-up shared by the wizard-data tests: a clean wizard data per test and
// small helpers that lay out attributes and curves.
#pragma once

#include <kelmar/mdKelMain.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace kelmar::wtest {

// Runs a call and returns the run-time error number it raised (0 for none).
template <typename F>
int errorOf(F&& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

class WizardTest : public ::testing::Test {
protected:
    void SetUp() override { wizardData() = {}; }
    void TearDown() override { wizardData() = {}; }

    WizardData& w() { return wizardData(); }

    // Per-attribute arrays for `count` attributes: benefit orientation,
    // non-linear function type, no technique and no sample yet.
    void allocateAttributes(int count) {
        WizardData& d = wizardData();
        d.AttNum = static_cast<std::int16_t>(count);
        for (VariantArray* a : {&d.ScoreMinimum, &d.ScoreMiddle, &d.ScoreMaximum, &d.VFTechniqueID,
                                &d.SmpSize, &d.VFunType, &d.AttPropertyCopy, &d.AttName,
                                &d.AttVFDone}) {
            a->redim(0, count - 1);
        }
        d.SmpX.redim(0, count - 1, 0, 10);
        d.SmpY.redim(0, count - 1, 0, 10);
        for (int i = 0; i < count; ++i) {
            d.AttPropertyCopy(i) = std::int16_t(0);
            d.VFunType(i) = std::int16_t(1);
            d.VFTechniqueID(i) = std::int16_t(0);
            d.SmpSize(i) = std::int16_t(0);
        }
    }

    void setRange(int att, double low, double high) {
        w().ScoreMinimum(att) = low;
        w().ScoreMaximum(att) = high;
    }

    // Stores a curve as the attribute's sample points.
    void setCurve(int att, const std::vector<double>& xs, const std::vector<double>& ys) {
        for (std::size_t k = 0; k < xs.size(); ++k) {
            w().SmpX(att, static_cast<int>(k)) = xs[k];
            w().SmpY(att, static_cast<int>(k)) = ys[k];
        }
        w().SmpSize(att) = static_cast<std::int16_t>(xs.size());
    }

    std::vector<double> row(const VariantArray& a, int att, int count) const {
        std::vector<double> out;
        for (int k = 0; k < count; ++k) out.push_back(a(att, k).toDouble());
        return out;
    }
};

// One Akima evaluation over plain vectors; Out(0..4) is returned.
inline std::vector<double> akima(const std::vector<double>& xs, const std::vector<double>& ys,
                                 double x, bool evaluate = true) {
    const int n = static_cast<int>(xs.size());
    VariantArray X(0, n - 1), Y(0, n - 1), out(0, 4);
    for (int k = 0; k < n; ++k) {
        X(k) = xs[static_cast<std::size_t>(k)];
        Y(k) = ys[static_cast<std::size_t>(k)];
    }
    std::int16_t count = static_cast<std::int16_t>(n);
    std::int16_t flag = evaluate ? std::int16_t(-1) : std::int16_t(0);
    AkimaInterpolate(X, Y, count, flag, x, out);
    std::vector<double> r;
    for (int k = 0; k <= 4; ++k) r.push_back(out(k).toDouble());
    return r;
}

}  // namespace kelmar::wtest
