// The settings step that Next on the range panel runs: the copies, the shape
// of the function arrays, and sample points that keep to a changed range.
#include "SettingsFixture.h"

namespace kelmar::test {
namespace {

// The loaded page has made the working ranges from the host's.
using SettingsStep = SettingsPageTest;

void setPoints(VariantArray& a, int att, const double (&values)[5]) {
    for (int k = 0; k < 5; ++k) a(att, k) = values[k];
}

TEST_F(SettingsStep, NewArraysStartFromTheHostsAndABuiltFunctionSurvives) {
    WizardData& w = wizardData();
    w.VFunType.redim(0, 0);  // left from a problem with one attribute
    w.VFunType(0) = std::int16_t(7);
    PrepareWorkingArrays();
    for (VariantArray* a : {&w.VFunParA, &w.VFunParB, &w.VFunParC, &w.VFunParD, &w.VFunType,
                            &w.ScoreMiddle, &w.AttPropertyCopy, &w.ScoreMinimumCopy,
                            &w.ScoreMaximumCopy}) {
        ASSERT_TRUE(a->isAllocated());
        EXPECT_EQ(a->lbound(), 0);
        EXPECT_EQ(a->ubound(), 2);
    }
    EXPECT_EQ(w.VFunType(0).toDouble(), 0.0) << "from the host's";
    EXPECT_EQ(w.ScoreMiddle(0).toDouble(), 30.0);
    EXPECT_EQ(w.AttPropertyCopy(2).toDouble(), 1.0);
    EXPECT_EQ(w.ScoreMaximumCopy(1).toDouble(), 5.0);

    // A curve built on a technique page, then a second pass.
    w.VFunType(1) = std::int16_t(1);
    w.VFunParA(1) = QStringLiteral("0.123456");
    w.ScoreMiddle(1) = 1.75f;
    setPoints(w.SmpY, 1, {0, 0.45, 0.7, 0.9, 1});
    PrepareWorkingArrays();
    EXPECT_EQ(w.VFunType(1).toDouble(), 1.0);
    EXPECT_EQ(w.VFunParA(1).toString(), "0.123456");
    EXPECT_FLOAT_EQ(static_cast<float>(w.ScoreMiddle(1).toDouble()), 1.75f);
    EXPECT_EQ(w.SmpY(1, 1).toDouble(), 0.45);
}

TEST_F(SettingsStep, ANewSessionStartsFromTheHostsFunctions) {
    WizardData& w = wizardData();
    click("cmdNext");
    w.VFunType(0) = std::int16_t(1);  // built in this session
    w.VFunParA(0) = QStringLiteral("0.5");
    page->close();

    // The host passes its functions again and opens the wizard anew.
    w.InVFunType(0) = std::int16_t(0);
    w.InVFunParA.redim(0, 2);
    w.InVFunParA(0) = QStringLiteral("0.25");
    page = std::make_unique<frmKelSettings>();
    page->setEventSink(&sink);
    page->load();
    click("cmdNext");
    EXPECT_EQ(w.VFunType(0).toDouble(), 0.0);
    EXPECT_EQ(w.VFunParA(0).toString(), "0.25");
}

TEST_F(SettingsStep, SamplePointsKeepToAChangedRange) {
    WizardData& w = wizardData();
    PrepareWorkingArrays();
    // Linear functions are laid out again on the new range, a cost one falling.
    w.ScoreMinimum(0) = 0.0;
    w.ScoreMaximum(0) = 80.0;
    w.ScoreMaximum(2) = 12.5;
    // A curve keeps its inner points and moves its ends ...
    w.VFunType(1) = std::int16_t(1);
    setPoints(w.SmpX, 1, {-1, 1, 2.5, 4, 6});
    PrepareWorkingArrays();
    for (int k = 0; k < 5; ++k) {
        EXPECT_NEAR(w.SmpX(0, k).toDouble(), 20.0 * k, 1e-5) << k;
        EXPECT_NEAR(w.SmpY(2, k).toDouble(), 1 - k / 4.0, 1e-6) << k;
        EXPECT_EQ(w.SmpY(1, k).toDouble(), k / 4.0) << k;
    }
    EXPECT_FLOAT_EQ(static_cast<float>(w.ScoreMiddle(0).toDouble()), 40.0f);
    EXPECT_EQ(w.SelAtt, 0) << "the current attribute is put back";
    const double kept[5] = {0, 1, 2.5, 4, 5};
    for (int k = 0; k < 5; ++k) EXPECT_EQ(w.SmpX(1, k).toDouble(), kept[k]) << k;
    // ... unless they lie outside it: then all are stretched into it.
    setPoints(w.SmpX, 1, {-5, -1, 2.5, 6, 10});
    PrepareWorkingArrays();
    const double stretched[5] = {0, 4 / 3.0, 2.5, 11 / 3.0, 5};
    for (int k = 0; k < 5; ++k) EXPECT_NEAR(w.SmpX(1, k).toDouble(), stretched[k], 1e-9) << k;
}

// A host without a function for an attribute (no sample size, or a size the
// sample arrays cannot hold) gets a straight line of five points on the
// attribute's range, in its orientation.
TEST_F(SettingsStep, AttributesWithoutAHostFunctionStartLinear) {
    WizardData& w = wizardData();
    w.SmpSize(0) = Variant();
    w.SmpSize(2) = std::int16_t(0);
    w.InVFunType(2) = std::int16_t(1);  // a type without points is no function
    w.SmpSize(1) = std::int16_t(12);
    PrepareWorkingArrays();
    for (int att = 0; att < 3; ++att) {
        EXPECT_EQ(w.SmpSize(att).toInteger(), 5) << att;
        EXPECT_EQ(w.VFunType(att).toDouble(), 0.0) << att;
    }
    const double lows[3] = {10, 0, 2.5}, highs[3] = {50, 5, 7.5};
    for (int att = 0; att < 3; ++att) {
        for (int k = 0; k < 5; ++k) {
            EXPECT_NEAR(w.SmpX(att, k).toDouble(), lows[att] + (highs[att] - lows[att]) * k / 4,
                        1e-5);
            EXPECT_NEAR(w.SmpY(att, k).toDouble(), att == 2 ? 1 - k / 4.0 : k / 4.0, 1e-7);
        }
        EXPECT_NEAR(w.ScoreMiddle(att).toDouble(), (lows[att] + highs[att]) / 2, 1e-5) << att;
    }
    EXPECT_EQ(w.SelAtt, 0);
}

}  // namespace
}  // namespace kelmar::test
