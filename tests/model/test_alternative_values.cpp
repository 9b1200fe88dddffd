// Alternatives' values on Finish: one cell, the clamping, the whole table.
#include "ModelFixture.h"

#include <algorithm>

namespace kelmar::test {
namespace {

class AlternativeValues : public ModelTest {
protected:
    void SetUp() override {
        reset(2, 3);
        w().MaxVal = 100;
        // Attribute 0: linear, benefit, 0 .. 10 in seven points (uneven
        // Single steps). Attribute 1: a concave curve, cost.
        setRange(0, 0.0, 10.0);
        I16 att = 0, n = 7;
        SetLinearSamplePoints(att, n);
        w().SmpSize(0) = n;
        w().AttPropertyCopy(1) = I16(1);
        setCurve(1, {0, 20, 50, 100}, {1, 0.6, 0.3, 0}, kDirectRating);
    }

    double valueOf(int alt, int att, double score) {
        w().AltPScore(alt, att) = score;
        I16 a = static_cast<I16>(alt), b = static_cast<I16>(att);
        ComputeAlternativeValue(a, b, w().MaxVal);
        return w().AttVData(alt, att).toDouble();
    }
};

TEST_F(AlternativeValues, EndsGiveTheFullScaleAndZero) {
    EXPECT_EQ(valueOf(0, 0, 10.0), 100.0);
    EXPECT_EQ(valueOf(0, 0, 0.0), 0.0);
    EXPECT_EQ(valueOf(0, 1, 0.0), 100.0);
    EXPECT_EQ(valueOf(0, 1, 100.0), 0.0);
    EXPECT_EQ(w().AttVData(0, 1).type(), Variant::Type::Double);
}

TEST_F(AlternativeValues, InsideTheRangeTheCurveTimesTheScale) {
    EXPECT_NEAR(valueOf(1, 0, 2.5), 25.0, 1e-5);  // Single steps put the points off by ~1e-7
    VariantArray x(0, 3), y(0, 3), out(0, 4);
    for (int k = 0; k < 4; ++k) {
        x(k) = w().SmpX(1, k);
        y(k) = w().SmpY(1, k);
    }
    I16 n = 4, evaluate = -1;
    double at = 33.0;
    AkimaInterpolate(x, y, n, evaluate, at, out);
    EXPECT_EQ(valueOf(1, 1, 33.0), 100.0 * out(4).toDouble());
    w().MaxVal = 1;
    EXPECT_EQ(valueOf(1, 1, 33.0), out(4).toDouble());
    // A score given as numeric text converts.
    w().AltPScore(2, 0) = QStringLiteral("5");
    I16 alt = 2, att = 0;
    ComputeAlternativeValue(alt, att, w().MaxVal);
    EXPECT_NEAR(w().AttVData(2, 0).toDouble(), 0.5, 1e-7);
}

TEST_F(AlternativeValues, BeyondTheRangeIsCutToTheScale) {
    for (double score : {10.5, 14.0, 1e6}) EXPECT_EQ(valueOf(0, 0, score), 100.0) << score;
    for (double score : {-0.5, -1e6}) EXPECT_EQ(valueOf(0, 0, score), 0.0) << score;
    // The convex cost curve's extended cubics leave the range upwards on
    // the left (cut to 100) and turn back up on the far right: the values
    // stay within 0 .. 100, but far beyond the worst end they are no
    // longer 0.
    for (double score : {-30.0, -5.0}) EXPECT_EQ(valueOf(0, 1, score), 100.0) << score;
    EXPECT_LT(valueOf(0, 1, 101.0), 1.0);
    EXPECT_EQ(valueOf(0, 1, 1000.0), 100.0);
    for (double score : {101.0, 150.0, 250.0, 400.0}) {
        const double v = valueOf(0, 1, score);
        EXPECT_GE(v, 0.0) << score;
        EXPECT_LE(v, 100.0) << score;
    }
}

TEST_F(AlternativeValues, FaultsRaiseTheirErrorNumbers) {
    I16 alt = 0, att = 1;
    w().SmpSize(1) = I16(0);
    EXPECT_EQ(errorNumber([&] { ComputeAlternativeValue(alt, att, w().MaxVal); }),
              RuntimeError::SubscriptOutOfRange);
    w().SmpSize(1) = Variant();
    EXPECT_EQ(errorNumber([&] { ComputeAlternativeValue(alt, att, w().MaxVal); }),
              RuntimeError::SubscriptOutOfRange);
    att = 0;
    w().AltPScore(0, 0) = QStringLiteral("n/a");
    EXPECT_EQ(errorNumber([&] { ComputeAlternativeValue(alt, att, w().MaxVal); }),
              RuntimeError::TypeMismatch);
    alt = 3;
    EXPECT_EQ(errorNumber([&] { ComputeAlternativeValue(alt, att, w().MaxVal); }),
              RuntimeError::SubscriptOutOfRange);
}

TEST_F(AlternativeValues, FinishRecomputesEveryCellAlternativeByAlternative) {
    for (int alt = 0; alt < 3; ++alt) {
        w().AltPScore(alt, 0) = 5.0 * alt;
        w().AltPScore(alt, 1) = 50.0 * alt;
        w().AttVData(alt, 0) = -1.0;
        w().AttVData(alt, 1) = -1.0;
    }
    ComputeAllAlternativeValues();
    EXPECT_EQ(w().AttVData(0, 0).toDouble(), 0.0);
    EXPECT_NEAR(w().AttVData(1, 0).toDouble(), 50.0, 1e-5);
    EXPECT_EQ(w().AttVData(2, 0).toDouble(), 100.0);
    EXPECT_EQ(w().AttVData(0, 1).toDouble(), 100.0);
    EXPECT_NEAR(w().AttVData(1, 1).toDouble(), 30.0, 1e-12);
    EXPECT_EQ(w().AttVData(2, 1).toDouble(), 0.0);

    // An attribute without a sample ends the loop at its first cell: the
    // first alternative's earlier attribute is already done, the next
    // alternative is not reached.
    for (int alt = 0; alt < 3; ++alt) w().AttVData(alt, 0) = -1.0;
    w().SmpSize(1) = I16(0);
    EXPECT_EQ(errorNumber([] { ComputeAllAlternativeValues(); }),
              RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(w().AttVData(0, 0).toDouble(), 0.0);
    EXPECT_EQ(w().AttVData(1, 0).toDouble(), -1.0);
}

// The evaluation a host makes of a record it kept (docs: evaluating a value
// function record without the wizard) gives the exported values.
double hostValueOf(const VariantArray& smpX, const VariantArray& smpY, const Variant& smpSize,
                   int att, double score, int maxVal) {
    I16 n = smpSize.toInteger();
    VariantArray x(0, n - 1), y(0, n - 1), out(0, 4);
    for (int k = 0; k < n; ++k) {
        x(k) = smpX(att, k);
        y(k) = smpY(att, k);
    }
    I16 evaluate = -1;
    AkimaInterpolate(x, y, n, evaluate, score, out);
    return maxVal * std::clamp(out(4).toDouble(), 0.0, 1.0);
}

TEST_F(AlternativeValues, AKeptRecordEvaluatesToTheExportedValues) {
    const double scores[] = {-3.0, 0.0, 1.7, 5.0, 9.99, 10.0, 12.0, 35.0, 80.0, 140.0};
    for (double score : scores) {
        for (int att = 0; att < 2; ++att) {
            const double exported = valueOf(0, att, score);
            EXPECT_EQ(hostValueOf(w().SmpX, w().SmpY, w().SmpSize(att), att, score, w().MaxVal),
                      exported)
                << att << " " << score;
        }
    }
}

}  // namespace
}  // namespace kelmar::test
