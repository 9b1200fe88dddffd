#include "WizardTestSupport.h"

namespace kelmar::wtest {
namespace {

class AlternativeValueChecks : public WizardTest {
protected:
    // Three alternatives on two attributes: a linear benefit attribute on
    // 0 .. 100 and a concave cost attribute on 10 .. 50.
    void SetUp() override {
        WizardTest::SetUp();
        allocateAttributes(2);
        w().AltNum = 3;
        w().AltPScore.redim(0, 2, 0, 1);
        w().AttVData.redim(0, 2, 0, 1);
        w().MaxVal = 100;
        setCurve(0, {0, 25, 50, 75, 100}, {0, .25, .5, .75, 1});
        setCurve(1, {10, 20, 30, 50}, {1, 0.4, 0.15, 0});
    }

    double valueOf(int alt, int att, double score, std::int16_t maxVal = 100) {
        w().AltPScore(alt, att) = score;
        std::int16_t a = static_cast<std::int16_t>(alt), t = static_cast<std::int16_t>(att);
        ComputeAlternativeValue(a, t, maxVal);
        return w().AttVData(alt, att).toDouble();
    }
};

TEST_F(AlternativeValueChecks, EndsGiveFullAndNoValue) {
    EXPECT_EQ(valueOf(0, 0, 100.0), 100.0);
    EXPECT_EQ(valueOf(0, 0, 0.0), 0.0);
    EXPECT_EQ(valueOf(1, 1, 10.0), 100.0);  // cost: the lowest score is best
    EXPECT_EQ(valueOf(1, 1, 50.0), 0.0);
    EXPECT_DOUBLE_EQ(valueOf(2, 0, 40.0), 40.0);
    EXPECT_DOUBLE_EQ(valueOf(2, 0, 40.0, 1), 0.4);
    EXPECT_EQ(w().AttVData(2, 0).type(), Variant::Type::Double);
}

TEST_F(AlternativeValueChecks, ScoresBeyondTheRangeAreClampedExactly) {
    // The extended line leaves 0 .. 1; the value is cut back exactly.
    for (double score : {100.5, 130.0, 1e6}) EXPECT_EQ(valueOf(0, 0, score), 100.0) << score;
    for (double score : {-0.5, -40.0}) EXPECT_EQ(valueOf(0, 0, score), 0.0) << score;
    EXPECT_EQ(valueOf(0, 0, 130.0, 1), 1.0);
    // A curved end cubic may bend back once extended, but the value never
    // leaves the scale.
    for (double score = -200.0; score <= 300.0; score += 2.5) {
        const double v = valueOf(1, 1, score);
        EXPECT_GE(v, 0.0) << score;
        EXPECT_LE(v, 100.0) << score;
    }
}

TEST_F(AlternativeValueChecks, FaultsRaiseRuntimeErrors) {
    w().AltPScore(0, 0) = "abc";
    std::int16_t alt = 0, att = 0, maxVal = 100;
    EXPECT_EQ(errorOf([&] { ComputeAlternativeValue(alt, att, maxVal); }),
              RuntimeError::TypeMismatch);

    w().AltPScore(0, 0) = "40";  // numeric text is read as its number
    ComputeAlternativeValue(alt, att, maxVal);
    EXPECT_DOUBLE_EQ(w().AttVData(0, 0).toDouble(), 40.0);

    w().SmpSize(0) = Variant();
    EXPECT_EQ(errorOf([&] { ComputeAlternativeValue(alt, att, maxVal); }),
              RuntimeError::SubscriptOutOfRange);
    w().SmpSize(0) = std::int16_t(0);
    EXPECT_EQ(errorOf([&] { ComputeAlternativeValue(alt, att, maxVal); }),
              RuntimeError::SubscriptOutOfRange);

    att = 1;
    alt = 3;
    EXPECT_EQ(errorOf([&] { ComputeAlternativeValue(alt, att, maxVal); }),
              RuntimeError::SubscriptOutOfRange);
}

TEST_F(AlternativeValueChecks, FinishRecomputesEveryCell) {
    const double scores[3][2] = {{0, 10}, {50, 30}, {120, 50}};
    for (int alt = 0; alt < 3; ++alt) {
        for (int att = 0; att < 2; ++att) {
            w().AltPScore(alt, att) = scores[alt][att];
            w().AttVData(alt, att) = "stale";
        }
    }
    w().SelAtt = 1;  // the attribute just edited is not the only one
    ComputeAllAlternativeValues();
    const double expected[3][2] = {{0, 100}, {50, 15}, {100, 0}};
    for (int alt = 0; alt < 3; ++alt) {
        for (int att = 0; att < 2; ++att) {
            EXPECT_EQ(w().AttVData(alt, att).type(), Variant::Type::Double);
            EXPECT_NEAR(w().AttVData(alt, att).toDouble(), expected[alt][att], 1e-12)
                << alt << "," << att;
        }
    }

    // An empty score cell reads as 0; a missing sample stops the loop.
    w().AltPScore(2, 0) = Variant();
    w().SmpSize(1) = std::int16_t(0);
    EXPECT_EQ(errorOf([] { ComputeAllAlternativeValues(); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(w().AttVData(0, 0).toDouble(), 0.0);
}

}  // namespace
}  // namespace kelmar::wtest
