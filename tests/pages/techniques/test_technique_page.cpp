// The common skeleton, driven through the Direct Rating page: sample size,
// Linear, Restore, the attribute choice, the risk attitude and navigation.
#include "TechniqueFixture.h"

namespace kelmar::testing {
namespace {

TEST_F(DirectRatingTest, ChoosingTheSizeInForceChangesNothing) {
    open();
    drag(2, 40.0);
    const auto before = chart()->primitives().size();
    chooseSize(0);
    EXPECT_EQ(wizardData().SmpSize(0).toInteger(), 5);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.40);
    EXPECT_EQ(chart()->primitives().size(), before);
}

TEST_F(DirectRatingTest, AnotherSizeResamplesAndRedrawsTheMarks) {
    open();
    drag(2, 40.0);
    chooseSize(2);
    EXPECT_EQ(wizardData().SmpSize(0).toInteger(), 9);
    for (int i = 0; i < 11; ++i) EXPECT_EQ(mark(i)->isHidden(), i >= 9) << i;
    // Scores evenly spread, the shape kept: the curve still passes 0.40 at 50.
    EXPECT_DOUBLE_EQ(wizardData().SmpX(0, 4).toDouble(), 50.0);
    EXPECT_NEAR(value(0, 4), 0.40, 1e-9);
    for (int i = 1; i < 11; ++i) EXPECT_EQ(mark(i)->picture(), 1) << i;
    EXPECT_NEAR(centreOf(4), 40.0, 1e-6);
}

TEST_F(DirectRatingTest, LinearMakesTheFunctionStraightAndDone) {
    open();
    drag(1, 40.0);
    drag(2, 60.0);
    click("cmdLinear");
    WizardData& w = wizardData();
    EXPECT_EQ(w.VFunType(0).toInteger(), 0);
    EXPECT_TRUE(w.AttVFDone(0).toBoolean());
    EXPECT_EQ(w.VFTechniqueID(0).toInteger(), kDirectRating);
    for (int k = 0; k < 5; ++k) EXPECT_NEAR(value(0, k), k / 4.0, 1e-9) << k;
    EXPECT_NEAR(centreOf(1), 25.0, 1e-6);
    EXPECT_EQ(highlightedAttitude(), 1);
}

TEST_F(DirectRatingTest, RestoreReturnsTheHostsFunction) {
    WizardData& w = wizardData();
    w.InSmpY(0, 1) = Variant(0.4);
    w.InVFunType(0) = Variant(std::int16_t(1));
    open();
    drag(2, 70.0);
    chooseSize(1);
    click("cmdRestore");
    EXPECT_EQ(w.SmpSize(0).toInteger(), 5);
    EXPECT_DOUBLE_EQ(value(0, 1), 0.4);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.5);
    EXPECT_EQ(w.VFunType(0).toInteger(), 1);
    EXPECT_EQ(w.VFTechniqueID(0).toInteger(), kMidPoint);
    EXPECT_FALSE(w.AttVFDone(0).toBoolean());
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbAttributes"))->itemText(0), "Price");
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbSmpSize"))->currentText(), "5");
    EXPECT_NEAR(centreOf(1), 40.0, 1e-6);
    EXPECT_TRUE(mark(5)->isHidden());
}

TEST_F(DirectRatingTest, ChoosingAnAttributeSwitchesThePage) {
    open();
    auto* attributes = child<QComboBox>(QStringLiteral("cmbAttributes"));
    attributes->setCurrentIndex(1);
    emit attributes->activated(1);
    EXPECT_EQ(wizardData().SelAtt, 1);
    EXPECT_NEAR(centreOf(0), 0.0, 1e-9);  // the cost attribute's best point on the left
    EXPECT_EQ(mark(1)->toolTip(), "20.00");
}

TEST_F(DirectRatingTest, RiskAttitudeFollowsTheMiddleScoreAndTheMethodGate) {
    WizardData& w = wizardData();
    w.VFunType(0) = Variant(std::int16_t(1));
    w.SmpY(0, 1) = Variant(0.45);
    w.SmpY(0, 2) = Variant(0.7);
    w.SmpY(0, 3) = Variant(0.88);
    open();
    // Concave: the middle score lies below the centre of the range.
    EXPECT_EQ(highlightedAttitude(), 2);

    w.SmpY(0, 1) = Variant(0.1);
    w.SmpY(0, 2) = Variant(0.25);
    w.SmpY(0, 3) = Variant(0.5);
    open();
    // Convex: the middle score lies above the centre (or on it).
    EXPECT_EQ(highlightedAttitude(), 0);
    EXPECT_GT(w.ScoreMiddle(0).toDouble(), 50.0);

    // Methods outside 0, 1 and 5 leave the labels as they were.
    w.SelMCDAMethod = 3;
    open();
    EXPECT_EQ(highlightedAttitude(), -1);
    // ... but a linear function is always neutral.
    click("cmdLinear");
    EXPECT_EQ(highlightedAttitude(), 1);
}

TEST_F(DirectRatingTest, BackHidesShowsTheSettingsPageAndUnloadsKeepingThePoints) {
    open();
    drag(2, 35.0);
    sink.events.clear();
    const float left = page->pageLeft();
    const float top = page->pageTop();
    click("cmdBack");
    const std::vector<std::string> expected{"HideForm(1)", "ShowForm(8)", "UnloadOwn"};
    EXPECT_EQ(sink.events, expected);
    EXPECT_EQ(sink.showLeft, left);
    EXPECT_EQ(sink.showTop, top);

    // A new page for the same attribute shows the points where they were left.
    open();
    EXPECT_NEAR(centreOf(2), 35.0, 1e-6);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.35);
}

TEST_F(DirectRatingTest, CancelRaisesOnlyUnloadKelmar) {
    open();
    drag(2, 35.0);
    click("cmdCancel");
    EXPECT_EQ(sink.events, std::vector<std::string>{"UnloadKelmar"});
    EXPECT_DOUBLE_EQ(wizardData().AttVData(0, 0).toDouble(), -1.0);
}

TEST_F(DirectRatingTest, FinishExportsEveryAttributesValuesThenUnloads) {
    wizardData().MaxVal = 100;
    open();
    drag(2, 40.0);
    sink.events.clear();
    click("cmdFinish");
    const std::vector<std::string> expected{"ExportResults", "UnloadKelmar"};
    EXPECT_EQ(sink.events, expected);
    const VariantArray& v = sink.exportedValues;
    EXPECT_NEAR(v(0, 0).toDouble(), 40.0, 1e-9);   // score 50, rated 0.40
    EXPECT_NEAR(v(1, 0).toDouble(), 0.0, 1e-9);    // the worst price
    EXPECT_NEAR(v(0, 1).toDouble(), 75.0, 1e-9);   // noise 20 on 10..50, falling
    EXPECT_NEAR(v(1, 1).toDouble(), 0.0, 1e-9);
    EXPECT_NEAR(v(2, 1).toDouble(), 100.0, 1e-9);
    EXPECT_NEAR(v(3, 0).toDouble(), 25.0, 1e-9);   // a sample score keeps its rating
    EXPECT_NEAR(v(3, 1).toDouble(), 25.0, 1e-9);
    // The attribute no page touched is computed too.
    const double comfort[4] = {50.0, 0.0, 100.0, 25.0};
    for (int a = 0; a < 4; ++a) EXPECT_NEAR(v(a, 2).toDouble(), comfort[a], 1e-9) << a;
}

TEST_F(DirectRatingTest, SpecificationAndNextAndPrint) {
    open();
    click("cmdS");
    EXPECT_EQ(sink.events, std::vector<std::string>{"ShowKelVFS"});
    sink.events.clear();
    click("cmdNext");
    click("cmdCUFPrint");
    EXPECT_TRUE(sink.events.empty());
    EXPECT_TRUE(messages.empty());
}

TEST_F(DirectRatingTest, ARunTimeErrorIsReportedAndEndsTheHandler) {
    open();
    wizardData().SelAtt = 7;  // beyond the attribute arrays
    EXPECT_NO_THROW(click("cmdLinear"));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].startsWith("Run-time error '9'")) << messages[0].toStdString();

    // Finish stops before the export when a value cannot be computed.
    wizardData().SelAtt = 0;
    wizardData().SmpSize(1) = Variant();
    sink.events.clear();
    EXPECT_NO_THROW(click("cmdFinish"));
    EXPECT_EQ(messages.size(), 2U);
    EXPECT_TRUE(sink.events.empty());
}

}  // namespace
}  // namespace kelmar::testing
