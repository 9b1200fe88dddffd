// The settings step that Next on the range panel runs: the copies, the shape
// of the function arrays, and sample points that keep to a changed range.
#include "SettingsFixture.h"

namespace kelmar::test {
namespace {

class SettingsStep : public ::testing::Test {
protected:
    void SetUp() override {
        fillProblem();
        WizardData& w = wizardData();
        // What the page's load makes.
        w.ScoreMinimum = w.InScoreMinimum;
        w.ScoreMaximum = w.InScoreMaximum;
        w.ScoreMiddle = w.InScoreMiddle;
    }
};

TEST_F(SettingsStep, FirstPassStartsFromTheHostsFunctions) {
    PrepareWorkingArrays();
    WizardData& w = wizardData();
    for (VariantArray* a : {&w.VFunParA, &w.VFunParB, &w.VFunParC, &w.VFunParD, &w.VFunType,
                            &w.ScoreMiddle, &w.AttPropertyCopy, &w.ScoreMinimumCopy,
                            &w.ScoreMaximumCopy}) {
        ASSERT_TRUE(a->isAllocated());
        EXPECT_EQ(a->lbound(), 0);
        EXPECT_EQ(a->ubound(), 2);
    }
    EXPECT_EQ(w.VFunParA(1).toDouble(), 1.5);
    EXPECT_EQ(w.VFunParB(2).toDouble(), 1.5);
    EXPECT_EQ(w.VFunType(0).toDouble(), 0.0);
    EXPECT_EQ(w.ScoreMiddle(0).toDouble(), 30.0);
    EXPECT_EQ(w.AttPropertyCopy(2).toDouble(), 1.0);
    EXPECT_EQ(w.ScoreMaximumCopy(1).toDouble(), 5.0);
}

TEST_F(SettingsStep, AFunctionBuiltOnATechniquePageSurvivesASecondPass) {
    PrepareWorkingArrays();
    WizardData& w = wizardData();
    // The analyst built a curve for attribute 1 on a technique page.
    w.VFunType(1) = std::int16_t(1);
    w.VFunParA(1) = QStringLiteral("0.123456");
    w.ScoreMiddle(1) = 1.75f;
    const double ys[5] = {0, 0.45, 0.7, 0.9, 1};
    for (int k = 0; k < 5; ++k) w.SmpY(1, k) = ys[k];
    const VariantArray pointsBefore = w.SmpY;

    PrepareWorkingArrays();
    EXPECT_EQ(w.VFunType(1).toDouble(), 1.0);
    EXPECT_EQ(w.VFunParA(1).toString(), "0.123456");
    EXPECT_FLOAT_EQ(static_cast<float>(w.ScoreMiddle(1).toDouble()), 1.75f);
    for (int k = 0; k < 5; ++k) EXPECT_EQ(w.SmpY(1, k), pointsBefore(1, k));
}

TEST_F(SettingsStep, ArraysOfTheWrongShapeAreMadeAnew) {
    WizardData& w = wizardData();
    w.VFunType.redim(0, 0);  // left from a problem with one attribute
    w.VFunType(0) = std::int16_t(7);
    PrepareWorkingArrays();
    ASSERT_EQ(w.VFunType.ubound(), 2);
    EXPECT_EQ(w.VFunType(0).toDouble(), 0.0);
}

TEST_F(SettingsStep, WidenedLinearFunctionIsLaidOutOnTheNewRange) {
    WizardData& w = wizardData();
    w.ScoreMinimum(0) = 0.0;
    w.ScoreMaximum(0) = 80.0;
    PrepareWorkingArrays();
    const double expected[5] = {0, 20, 40, 60, 80};
    for (int k = 0; k < 5; ++k) EXPECT_NEAR(w.SmpX(0, k).toDouble(), expected[k], 1e-5) << k;
    EXPECT_EQ(w.SmpX(0, 0).toDouble(), 0.0);
    EXPECT_EQ(w.SmpX(0, 4).toDouble(), 80.0);
    EXPECT_NEAR(w.SmpY(0, 1).toDouble(), 0.25, 1e-6);
    EXPECT_FLOAT_EQ(static_cast<float>(w.ScoreMiddle(0).toDouble()), 40.0f);
    EXPECT_EQ(w.ScoreMaximumCopy(0).toDouble(), 80.0);
}

TEST_F(SettingsStep, WidenedCostAttributeKeepsItsOrientation) {
    WizardData& w = wizardData();
    w.SelAtt = 0;
    w.ScoreMaximum(2) = 12.5;
    PrepareWorkingArrays();
    EXPECT_EQ(w.SmpX(2, 4).toDouble(), 12.5);
    EXPECT_EQ(w.SmpY(2, 0).toDouble(), 1.0);
    EXPECT_EQ(w.SmpY(2, 4).toDouble(), 0.0);
    EXPECT_NEAR(w.SmpY(2, 1).toDouble(), 0.75, 1e-6);
    EXPECT_EQ(w.SelAtt, 0) << "the current attribute is put back";
}

TEST_F(SettingsStep, WidenedCurveMovesOnlyItsEnds) {
    WizardData& w = wizardData();
    PrepareWorkingArrays();
    w.VFunType(0) = std::int16_t(1);
    const double ys[5] = {0, 0.5, 0.75, 0.9, 1};
    for (int k = 0; k < 5; ++k) w.SmpY(0, k) = ys[k];
    w.ScoreMinimum(0) = 5.0;
    w.ScoreMaximum(0) = 60.0;
    PrepareWorkingArrays();
    const double expected[5] = {5, 20, 30, 40, 60};
    for (int k = 0; k < 5; ++k) {
        EXPECT_EQ(w.SmpX(0, k).toDouble(), expected[k]) << k;
        EXPECT_EQ(w.SmpY(0, k).toDouble(), ys[k]) << k;
    }
}

TEST_F(SettingsStep, CurveWithPointsOutsideTheNewRangeIsStretched) {
    WizardData& w = wizardData();
    PrepareWorkingArrays();
    // Points laid out on a range widened to 0 .. 100 earlier ...
    w.VFunType(0) = std::int16_t(1);
    const double xs[5] = {0, 5, 50, 95, 100};
    for (int k = 0; k < 5; ++k) w.SmpX(0, k) = xs[k];
    // ... and the range now taken back to the host's 10 .. 50.
    PrepareWorkingArrays();
    double previous = -1e9;
    for (int k = 0; k < 5; ++k) {
        const double x = w.SmpX(0, k).toDouble();
        EXPECT_GT(x, previous) << k;
        previous = x;
    }
    EXPECT_EQ(w.SmpX(0, 0).toDouble(), 10.0);
    EXPECT_EQ(w.SmpX(0, 4).toDouble(), 50.0);
    EXPECT_NEAR(w.SmpX(0, 2).toDouble(), 30.0, 1e-9);
}

TEST_F(SettingsStep, AttributesWithoutUsablePointsAreLeftAlone) {
    WizardData& w = wizardData();
    w.SmpSize(1) = Variant();
    w.SmpX(2, 3) = QStringLiteral("n/a");
    w.ScoreMaximum(1) = 9.0;
    w.ScoreMaximum(2) = 9.0;
    PrepareWorkingArrays();
    EXPECT_EQ(w.SmpX(1, 4).toDouble(), 5.0);
    EXPECT_EQ(w.SmpX(2, 4).toDouble(), 7.5);
}

TEST_F(SettingsStep, NextOnThePageKeepsABuiltFunction) {
    // The same through the page: leave the range panel twice.
    RecordingSink sink;
    setMessageBoxHook([](QMessageBox&) { return QMessageBox::Ok; });
    frmKelSettings page;
    page.setEventSink(&sink);
    page.load();
    page.findChild<QPushButton*>("cmdNext")->click();
    WizardData& w = wizardData();
    w.VFunType(0) = std::int16_t(1);
    w.VFunParB(0) = 4.25;
    page.findChild<QPushButton*>("cmdBack")->click();
    page.findChild<QPushButton*>("cmdNext")->click();
    EXPECT_EQ(w.VFunType(0).toDouble(), 1.0);
    EXPECT_EQ(w.VFunParB(0).toDouble(), 4.25);
    setMessageBoxHook({});
}

}  // namespace
}  // namespace kelmar::test
