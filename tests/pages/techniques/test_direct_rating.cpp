// The Direct Rating page: the drag rules, the keys and the labels.
#include "TechniqueFixture.h"

#include <QLayout>

namespace kelmar::testing {

namespace {

TEST_F(DirectRatingTest, OnlyALeftDragMovesAMarkAtAnyChartSize) {
    for (const QSize size : {QSize(780, 620), QSize(1300, 900)}) {
        SCOPED_TRACE(size.width());
        fillProblem();
        open();
        page->resize(size);
        page->layout()->activate();
        // Another button selects the mark but does not move it.
        drag(2, 40.0, Qt::RightButton);
        EXPECT_EQ(mark(2)->picture(), 2);
        EXPECT_DOUBLE_EQ(value(0, 2), 0.5);
        EXPECT_FALSE(wizardData().AttVFDone(0).toBoolean());
        // Nor does a move with left and right held.
        sendMouse(mark(2), QEvent::MouseButtonPress, {5, 8}, Qt::LeftButton, Qt::LeftButton);
        sendMouse(mark(2), QEvent::MouseMove, {-60, 8}, Qt::NoButton, Qt::LeftButton | Qt::RightButton);
        EXPECT_DOUBLE_EQ(value(0, 2), 0.5);
        EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);

        drag(2, 40.0);
        WizardData& w = wizardData();
        EXPECT_DOUBLE_EQ(value(0, 2), 0.40);
        EXPECT_NEAR(centreOf(2), 40.0, 1e-6);
        EXPECT_EQ(w.VFunType(0).toInteger(), 1);
        EXPECT_TRUE(w.AttVFDone(0).toBoolean());
        EXPECT_EQ(w.VFTechniqueID(0).toInteger(), kDirectRating);
        EXPECT_EQ(child<QComboBox>("cmbAttributes")->itemText(0), QString::fromUtf8(" \u00A4 Price"));
        EXPECT_EQ(text("lblCurScore"), "50.00");
        EXPECT_EQ(text("lblCurValue"), "0.40");
        EXPECT_EQ(mark(1)->picture(), 1);
    }
}

TEST_F(DirectRatingTest, CrossingANeighbourTakesItsValuePlusOrMinusAStep) {
    open();
    page->MovePoint(2, 10.0);  // past point 1 at 25
    EXPECT_DOUBLE_EQ(value(0, 2), 0.25 + 0.025);
    EXPECT_NEAR(centreOf(2), 50.0, 1e-9) << "the mark stays";
    page->MovePoint(2, 90.0);  // past point 3 at 75
    EXPECT_DOUBLE_EQ(value(0, 2), 0.75 - 0.025);

    // A drag that only crosses leaves the function type alone.
    fillProblem();
    open();
    drag(2, 5.0);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.275);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);
}

TEST_F(DirectRatingTest, DropsOutsideTheScaleAreLimited) {
    open();
    ASSERT_LT(chart()->childLeft(mark(0)) + chart()->childWidth(mark(0)), 1.0)
        << "the first mark must leave room below 1";
    drag(1, 1.0);
    EXPECT_DOUBLE_EQ(value(0, 1), 0.02);
    // Beyond 100, when the right neighbour lies further out.
    chart()->placeChild(mark(4), 110.0, 84.0);
    page->MovePoint(3, 101.0);
    EXPECT_DOUBLE_EQ(value(0, 3), 1.0);
}

TEST_F(DirectRatingTest, LabelsFollowTheValueRange) {
    const struct { std::int16_t maxVal; std::vector<QString> ticks; const char* value; } cases[] = {
        {1, {"0.00", "0.25", "0.50", "0.75", "1.00"}, "0.73"},
        {100, {"0", "25", "50", "75", "100"}, "73"}};
    for (const auto& c : cases) {
        wizardData().MaxVal = c.maxVal;
        open();
        std::vector<QString> texts;
        for (const DrawPrimitive& p : chart()->primitives())
            if (p.kind == DrawPrimitive::Kind::Text && p.p1.y() == 102.0) texts.push_back(p.text);
        EXPECT_EQ(texts, c.ticks);
        drag(2, 73.0);
        EXPECT_EQ(text("lblCurValue"), c.value);
    }
}

TEST_F(DirectRatingTest, CostAttributesReadTheScaleFromTheRight) {
    wizardData().SelAtt = 1;
    open();
    EXPECT_NEAR(centreOf(0), 0.0, 1e-9);  // value 1 at the minimum score
    EXPECT_NEAR(centreOf(4), 100.0, 1e-9);
    drag(1, 40.0);
    EXPECT_DOUBLE_EQ(value(1, 1), 0.60);
}

TEST_F(DirectRatingTest, ArrowKeysMoveTheMarkThroughTheSameRules) {
    open();
    PointMark* m = mark(2);
    sendKey(m, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.51);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 1);
    EXPECT_EQ(text("lblCurValue"), "0.51");
    EXPECT_EQ(m->picture(), 2);
    sendKey(m, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.41);
    for (int k = 0; k < 2; ++k) sendKey(m, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.275) << "into the neighbour";
}

TEST_F(DirectRatingTest, FirstAndLastMarksStayFixed) {
    open();
    drag(0, 30.0);
    drag(4, 60.0);
    sendKey(mark(0), Qt::Key_Right, Qt::ShiftModifier);
    sendKey(mark(4), Qt::Key_Left);
    EXPECT_DOUBLE_EQ(value(0, 0), 0.0);
    EXPECT_DOUBLE_EQ(value(0, 4), 1.0);
    EXPECT_NEAR(centreOf(4), 100.0, 1e-9);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);
    EXPECT_FALSE(wizardData().AttVFDone(0).toBoolean());
}

}  // namespace
}  // namespace kelmar::testing
