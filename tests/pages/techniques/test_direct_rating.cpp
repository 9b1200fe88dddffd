// The Direct Rating page: the chart, the drag rules and the labels.
#include "TechniqueFixture.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace kelmar::testing {
namespace {

TEST_F(DirectRatingTest, LoadShowsTheAttributeItsSizeAndOneMarkPerPoint) {
    std::int16_t att = 0;
    std::int16_t seven = 7;
    wizardData().SmpSize(0) = Variant(seven);
    SetLinearSamplePoints(att, seven);
    page = std::make_unique<frmKelDirectRating>();
    page->setEventSink(&sink);
    page->load();

    ASSERT_FALSE(sink.events.empty());
    EXPECT_EQ(sink.events.back(), "SendMasseges:Specify single-attribute value functions.");
    EXPECT_EQ(page->windowTitle(), "Kelmar: Direct Rating");
    auto* sizes = child<QComboBox>(QStringLiteral("cmbSmpSize"));
    ASSERT_EQ(sizes->count(), 4);
    EXPECT_EQ(sizes->itemText(0), "5");
    EXPECT_EQ(sizes->itemText(3), "11");
    EXPECT_EQ(sizes->currentText(), "7");
    auto* attributes = child<QComboBox>(QStringLiteral("cmbAttributes"));
    EXPECT_EQ(attributes->count(), 3);
    EXPECT_EQ(attributes->currentIndex(), 0);
    for (int i = 0; i < 11; ++i) EXPECT_EQ(mark(i)->isHidden(), i >= 7) << i;
    // Marks at their values, their scores as tool tips.
    EXPECT_NEAR(centreOf(3), 50.0, 1e-9);
    EXPECT_EQ(mark(3)->toolTip(), "50.00");
    EXPECT_EQ(highlightedAttitude(), 1);
}

TEST_F(DirectRatingTest, TickLabelsFollowTheValueRange) {
    open();
    std::vector<QString> expectOne{"0.00", "0.25", "0.50", "0.75", "1.00"};
    EXPECT_EQ(chartTexts(), expectOne);

    wizardData().MaxVal = 100;
    open();
    std::vector<QString> expectHundred{"0", "25", "50", "75", "100"};
    EXPECT_EQ(chartTexts(), expectHundred);
}

TEST_F(DirectRatingTest, BandsAppearOnlyForTheMethodsThatUseThem) {
    for (std::int16_t method : {0, 1, 5}) {
        wizardData().SelMCDAMethod = method;
        open();
        EXPECT_EQ(chartTexts().size(), 5U) << method;
    }
    wizardData().SelMCDAMethod = 2;
    open();
    const auto texts = chartTexts();
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Acceptable"), texts.end());
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Good"), texts.end());
}

TEST_F(DirectRatingTest, LeftDragSetsTheValueAndMarksTheFunctionDone) {
    open();
    drag(2, 40.0);
    WizardData& w = wizardData();
    EXPECT_DOUBLE_EQ(value(0, 2), 0.40);
    EXPECT_NEAR(centreOf(2), 40.0, 1e-9);
    EXPECT_EQ(w.VFunType(0).toInteger(), 1);
    EXPECT_TRUE(w.AttVFDone(0).toBoolean());
    EXPECT_EQ(w.VFTechniqueID(0).toInteger(), kDirectRating);
    EXPECT_EQ(w.SelPoint, 2);
    EXPECT_EQ(child<QComboBox>(QStringLiteral("cmbAttributes"))->itemText(0), QString::fromUtf8(" \u00A4 Price"));
    EXPECT_EQ(text("lblCurScore"), "50.00");
    EXPECT_EQ(text("lblCurValue"), "0.40");
    EXPECT_EQ(mark(2)->picture(), 2);
    EXPECT_EQ(mark(1)->picture(), 1);
    // The middle score now lies above the centre of the range.
    EXPECT_EQ(highlightedAttitude(), 0);
}

TEST_F(DirectRatingTest, TheDragRuleHoldsAtAnyChartSize) {
    for (const QSize size : {QSize(780, 620), QSize(1300, 900)}) {
        fillProblem();
        open();
        page->resize(size);
        page->layout()->activate();
        drag(3, 62.0);
        EXPECT_DOUBLE_EQ(value(0, 3), 0.62) << size.width();
        EXPECT_NEAR(centreOf(3), 62.0, 1e-6) << size.width();
        // The grab point inside the mark does not matter.
        PointMark* m = mark(1);
        const QPointF grab(2.0, 4.0);
        sendMouse(m, QEvent::MouseButtonPress, grab, Qt::LeftButton, Qt::LeftButton);
        const QPointF to(grab.x() + (10.0 - centreOf(1)) * pixelsPerUnit(), grab.y());
        sendMouse(m, QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
        sendMouse(m, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
        EXPECT_DOUBLE_EQ(value(0, 1), 0.10) << size.width();
    }
}

TEST_F(DirectRatingTest, OtherButtonsSelectButNeverDrag) {
    open();
    drag(2, 40.0, Qt::RightButton);
    EXPECT_EQ(mark(2)->picture(), 2);  // MouseDown with any button selects
    EXPECT_EQ(text("lblCurValue"), "0.50");
    EXPECT_DOUBLE_EQ(value(0, 2), 0.5);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);
    EXPECT_FALSE(wizardData().AttVFDone(0).toBoolean());

    // A move with the left and the right button held is not a left drag.
    PointMark* m = mark(2);
    sendMouse(m, QEvent::MouseButtonPress, {5, 8}, Qt::LeftButton, Qt::LeftButton);
    sendMouse(m, QEvent::MouseMove, {-60, 8}, Qt::NoButton, Qt::LeftButton | Qt::RightButton);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.5);
}

TEST_F(DirectRatingTest, EndMarksStayFixed) {
    open();
    drag(0, 30.0);
    drag(4, 60.0);
    EXPECT_DOUBLE_EQ(value(0, 0), 0.0);
    EXPECT_DOUBLE_EQ(value(0, 4), 1.0);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);
    EXPECT_FALSE(wizardData().AttVFDone(0).toBoolean());
}

TEST_F(DirectRatingTest, CrossingANeighbourTakesItsValuePlusOrMinusAStep) {
    open();
    page->MovePoint(2, 10.0);  // past point 1 at 25
    EXPECT_DOUBLE_EQ(value(0, 2), 0.25 + 0.025);
    EXPECT_NEAR(centreOf(2), 50.0, 1e-9);  // the mark stays

    page->MovePoint(2, 90.0);  // past point 3 at 75
    EXPECT_DOUBLE_EQ(value(0, 2), 0.75 - 0.025);

    // A drag that only crosses does not move the mark, so the release
    // leaves the function type alone.
    fillProblem();
    open();
    drag(2, 5.0);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.275);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);
}

TEST_F(DirectRatingTest, DropsOutsideTheScaleAreLimited) {
    open();
    // The first mark's right edge must leave room below 1 at this size.
    ASSERT_LT(chart()->childLeft(mark(0)) + chart()->childWidth(mark(0)), 1.0);
    drag(1, 1.0);
    EXPECT_DOUBLE_EQ(value(0, 1), 0.02);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 1);

    // Beyond 100, when the right neighbour lies further out.
    chart()->placeChild(mark(4), 110.0, 84.0);
    page->MovePoint(3, 101.0);
    EXPECT_DOUBLE_EQ(value(0, 3), 1.0);
}

TEST_F(DirectRatingTest, CostAttributesReadTheScaleFromTheRight) {
    wizardData().SelAtt = 1;
    open();
    EXPECT_NEAR(centreOf(0), 0.0, 1e-9);  // value 1 at the minimum score
    EXPECT_NEAR(centreOf(4), 100.0, 1e-9);
    drag(1, 40.0);
    EXPECT_DOUBLE_EQ(value(1, 1), 0.60);
    // Label i belongs to the value i/4: "0.00" stands at the right end.
    const DrawPrimitive* zero = nullptr;
    for (const DrawPrimitive& p : chart()->primitives())
        if (p.kind == DrawPrimitive::Kind::Text && p.text == "0.00") zero = &p;
    ASSERT_NE(zero, nullptr);
    EXPECT_GT(zero->p1.x(), 90.0);
}

TEST_F(DirectRatingTest, ValueLabelFollowsTheValueRange) {
    open();
    drag(2, 73.0);
    EXPECT_EQ(text("lblCurValue"), "0.73");
    EXPECT_EQ(text("lblCurScore"), "50.00");

    wizardData().MaxVal = 100;
    open();
    drag(2, 73.0);
    EXPECT_EQ(text("lblCurValue"), "73");
}

TEST_F(DirectRatingTest, ArrowKeysMoveTheMarkThroughTheSameRules) {
    open();
    PointMark* m = mark(2);
    sendKey(m, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.51);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 1);
    EXPECT_EQ(wizardData().SelPoint, 2);
    EXPECT_EQ(text("lblCurValue"), "0.51");
    EXPECT_EQ(m->picture(), 2);

    sendKey(m, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.41);
    // Into the neighbour: its value plus a step, the mark stays.
    for (int k = 0; k < 2; ++k) sendKey(m, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.275);

    // The end marks do not move.
    sendKey(mark(0), Qt::Key_Right, Qt::ShiftModifier);
    sendKey(mark(4), Qt::Key_Left);
    EXPECT_DOUBLE_EQ(value(0, 0), 0.0);
    EXPECT_DOUBLE_EQ(value(0, 4), 1.0);
}

TEST_F(DirectRatingTest, MarksTakeKeyboardFocus) {
    open();
    EXPECT_EQ(mark(3)->focusPolicy(), Qt::StrongFocus);
}

}  // namespace
}  // namespace kelmar::testing
