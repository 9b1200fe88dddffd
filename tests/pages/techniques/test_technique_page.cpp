// The common skeleton, driven through the Direct Rating page: sample size,
// Linear, Restore, navigation and the handling of run-time errors.
#include "TechniqueFixture.h"

namespace kelmar::testing {
namespace {

TEST_F(DirectRatingTest, ChoosingASampleSize) {
    open();
    drag(2, 40.0);
    // The size in force changes nothing.
    const auto before = chart()->primitives().size();
    chooseSize(0);
    EXPECT_EQ(wizardData().SmpSize(0).toInteger(), 5);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.40);
    EXPECT_EQ(chart()->primitives().size(), before);
    EXPECT_EQ(mark(2)->picture(), 2);
    // Another resamples keeping the shape: the curve still passes 0.40 at 50.
    chooseSize(2);
    EXPECT_EQ(wizardData().SmpSize(0).toInteger(), 9);
    EXPECT_EQ(mark(2)->picture(), 1) << "marks 1 to 10 return to the normal picture";
    for (int i = 0; i < 11; ++i) EXPECT_EQ(mark(i)->isHidden(), i >= 9) << i;
    EXPECT_DOUBLE_EQ(wizardData().SmpX(0, 4).toDouble(), 50.0);
    EXPECT_NEAR(value(0, 4), 0.40, 1e-9);
    EXPECT_NEAR(centreOf(4), 40.0, 1e-6);
    // The first mark keeps its picture.
    sendMouse(mark(0), QEvent::MouseButtonPress, {5, 8}, Qt::RightButton, Qt::RightButton);
    chooseSize(3);
    EXPECT_EQ(mark(0)->picture(), 2);
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
}

TEST_F(DirectRatingTest, RestoreReturnsTheHostsFunction) {
    WizardData& w = wizardData();
    w.InSmpY(0, 1) = 0.4;
    w.InVFunType(0) = std::int16_t(1);
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
    EXPECT_EQ(child<QComboBox>("cmbAttributes")->itemText(0), "Price");
    EXPECT_EQ(child<QComboBox>("cmbSmpSize")->currentText(), "5");
    EXPECT_NEAR(centreOf(1), 40.0, 1e-6);
    EXPECT_TRUE(mark(5)->isHidden());
}

TEST_F(DirectRatingTest, BackReturnsToTheSettingsPageKeepingThePoints) {
    open();
    drag(2, 35.0);
    sink.events.clear();
    const float left = page->pageLeft(), top = page->pageTop();
    click("cmdBack");
    EXPECT_EQ(sink.events, (std::vector<std::string>{"HideForm(1)", "ShowForm(8)", "UnloadOwn"}));
    EXPECT_EQ(sink.showLeft, left);
    EXPECT_EQ(sink.showTop, top);
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
    EXPECT_EQ(sink.events, (std::vector<std::string>{"ExportResults", "UnloadKelmar"}));
    // Price rated 0.40 at 50; Noise falling on 10..50; Comfort, which no page
    // touched, computed too.
    const double expected[4][3] = {{40, 75, 50}, {0, 0, 0}, {100, 100, 100}, {25, 25, 25}};
    for (int a = 0; a < 4; ++a)
        for (int att = 0; att < 3; ++att)
            EXPECT_NEAR(sink.exportedValues(a, att).toDouble(), expected[a][att], 1e-9) << a << att;
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
    EXPECT_NO_THROW(click("cmdFinish"));
    EXPECT_EQ(messages.size(), 2U);
    EXPECT_TRUE(sink.events.empty());
    messages.clear();
}

}  // namespace
}  // namespace kelmar::testing

namespace kelmar::testing {

// Which attitude label is highlighted, or -1.
static int highlightedAttitude(const QWidget& page) {
    for (int k = 0; k < 3; ++k) {
        const auto* label = page.findChild<QLabel*>(QStringLiteral("lblRiskAttitude_%1").arg(k));
        if (label != nullptr && label->font().bold()) return k;
    }
    return -1;
}

TEST_F(DirectRatingTest, RiskAttitudeFollowsTheMiddleScoreAndTheMethodCode) {
    open();
    EXPECT_EQ(highlightedAttitude(*page), 1);  // linear: Risk Neutral

    // Raising the middle point makes the curve reach one half early: the
    // middle score drops below the range's centre, shown as Risk Prone for
    // this benefit attribute as for a cost one.
    drag(2, 70);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 1);
    EXPECT_LT(wizardData().ScoreMiddle(0).toDouble(), 50.0);
    EXPECT_EQ(highlightedAttitude(*page), 2);

    // Method codes other than 0, 1 and 5 leave the display as it was.
    wizardData().SelMCDAMethod = 2;
    drag(2, 30);
    EXPECT_GT(wizardData().ScoreMiddle(0).toDouble(), 50.0);
    EXPECT_EQ(highlightedAttitude(*page), 2);
    wizardData().SelMCDAMethod = 5;
    drag(2, 32);
    EXPECT_EQ(highlightedAttitude(*page), 0);
}

}  // namespace kelmar::testing
