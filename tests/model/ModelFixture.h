// A fresh wizard data set for each test: a few attributes with scores
// 0 .. 100 (benefit-oriented), a few alternatives, room for eleven points;
// and a curve through given points, evaluated by AkimaInterpolate.
#pragma once

#include "ErrorKit.h"

#include <kelmar/mdKelMain.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace kelmar::test {

using I16 = std::int16_t;

struct Curve {
    VariantArray x, y, out{0, 4};
    I16 n = 0;

    Curve(const std::vector<double>& xs, const std::vector<double>& ys)
        : x(0, static_cast<int>(xs.size()) - 1), y(0, static_cast<int>(ys.size()) - 1), n(static_cast<I16>(xs.size())) {
        for (std::size_t k = 0; k < xs.size(); ++k) {
            x(static_cast<int>(k)) = xs[k];
            y(static_cast<int>(k)) = ys[k];
        }
    }

    // The value at v; out then holds the cubic's coefficients as well.
    double at(double v) {
        I16 evaluate = -1;
        AkimaInterpolate(x, y, n, evaluate, v, out);
        return out(4).toDouble();
    }
    double coef(int k) const { return out(k).toDouble(); }
};

class ModelTest : public ::testing::Test {
protected:
    void SetUp() override { reset(3, 4); }

    static WizardData& w() { return wizardData(); }

    static void reset(int attNum, int altNum) {
        WizardData& d = wizardData();
        d = WizardData{};
        d.AttNum = static_cast<I16>(attNum);
        d.AltNum = static_cast<I16>(altNum);
        d.MaxVal = 1;
        d.SelAtt = 0;
        for (VariantArray* a : {&d.ScoreMinimum, &d.ScoreMiddle, &d.ScoreMaximum, &d.VFTechniqueID,
                                &d.SmpSize, &d.VFunType, &d.AttPropertyCopy, &d.AttVFDone,
                                &d.AttName}) {
            a->redim(0, attNum - 1);
        }
        d.SmpX.redim(0, attNum - 1, 0, 10);
        d.SmpY.redim(0, attNum - 1, 0, 10);
        d.AltPScore.redim(0, altNum - 1, 0, attNum - 1);
        d.AttVData.redim(0, altNum - 1, 0, attNum - 1);
        for (int a = 0; a < attNum; ++a) {
            d.ScoreMinimum(a) = 0.0;
            d.ScoreMaximum(a) = 100.0;
            d.AttPropertyCopy(a) = I16(0);
            d.VFunType(a) = I16(0);
            d.SmpSize(a) = I16(0);
        }
    }

    static void setRange(int att, double low, double high) {
        w().ScoreMinimum(att) = low;
        w().ScoreMaximum(att) = high;
    }

    // Stores the points of a non-linear (type 1) function of the technique.
    static void setCurve(int att, const std::vector<double>& x, const std::vector<double>& y, int technique) {
        w().VFunType(att) = I16(1);
        w().VFTechniqueID(att) = static_cast<I16>(technique);
        w().SmpSize(att) = static_cast<I16>(x.size());
        for (std::size_t k = 0; k < x.size(); ++k) {
            w().SmpX(att, static_cast<int>(k)) = x[k];
            w().SmpY(att, static_cast<int>(k)) = y[k];
        }
    }

    static double smpX(int att, int k) { return w().SmpX(att, k).toDouble(); }
    static double smpY(int att, int k) { return w().SmpY(att, k).toDouble(); }
};

}  // namespace kelmar::test
