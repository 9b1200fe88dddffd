// The Curve Drawing page: marks that stand on the value function chart and
// move up and down, on benefit and cost attributes alike. (A press that
// strays across the scale is left to the random-input run; what Finish
// exports is the skeleton's, tested on the rating page.)
#include "TechniqueFixture.h"

#include "pages/techniques/frmKelCurveDrawing.h"

#include <kelmar/mdKelMain.h>

namespace kelmar::test {
namespace {

class CurveDrawingTest : public TechniquePageTest<frmKelCurveDrawing> {
protected:
    void SetUp() override {
        TechniquePageTest::SetUp();
        wizardData().SelTechnique = kCurveDrawing;
    }

    DrawSurface* chart() const { return child<DrawSurface>(QStringLiteral("picVFChart")); }
    // The middle of mark i in the chart's units.
    QPointF middleOf(int i) const {
        const QRect r = mark(i)->geometry();
        return chart()->toUser(QPointF(r.x() + r.width() / 2.0, r.y() + r.height() / 2.0));
    }
    // Grabs mark i in its middle and drags it to the height target of the
    // value scale; press only, or the whole drag.
    void drag(int i, double target, bool release = true, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF grab(mark(i)->width() / 2.0, mark(i)->height() / 2.0);
        gesture(mark(i), {grab, grab - QPointF(0, (target - middleOf(i).y()) * chart()->pixelsPerUnitY())}, button, release);
    }
    static int funType(int att) { return wizardData().VFunType(att).toInteger(); }
};

// The marks stand on the curve at any chart size. Rising and falling
// preferences read the chart the same way: the height is the value. A move past a neighbour stops 0.025 inside it, on the point's
// own side; every move marks the function as changed.
TEST_F(CurveDrawingTest, DragsKeepTheLimitsAndTheOrderOnBothOrientations) {
    const struct { std::int16_t att; int point; double target, stored; } cases[] = {
        {0, 3, 100.0, 0.98},  // the top of the chart
        {0, 1, 1.0, 0.02},    {0, 2, 40.4, 0.40},  {0, 2, 10.0, 0.275}, {0, 2, 90.0, 0.725},
        {0, 3, 104.0, 0.975},  // beyond the last point
        {1, 1, 100.0, 0.98},  {1, 3, 1.0, 0.02},   {1, 2, 60.0, 0.60},  {1, 2, 90.0, 0.725},
        {1, 2, 10.0, 0.275},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.att << " " << c.point << " " << c.target);
        SetUp();
        pageSize = c.att == 0 ? QSize(780, 620) : QSize(1300, 900);
        open(c.att);
        EXPECT_NEAR(middleOf(c.point).x(), c.point * 25.0, 0.5) << "the marks stand on the curve";
        drag(c.point, c.target);
        EXPECT_NEAR(value(c.att, c.point), c.stored, 1e-12);
        EXPECT_NEAR(middleOf(c.point).y(), c.stored * 100.0, 0.5) << "the mark shows the value";
        expectEdited(c.att, kCurveDrawing, c.point);
        EXPECT_TRUE(child<QComboBox>("cmbAttributes")->currentText().startsWith(" \u00A4 "));
    }
}

TEST_F(CurveDrawingTest, OnlyALeftDragOfAnInnerMarkChangesTheFunction) {
    open();
    drag(2, 70.0, true, Qt::RightButton);
    drag(0, 30.0);
    drag(4, 60.0);
    gesture(mark(2), {{6, 6}});
    for (int k = 0; k < 5; ++k) EXPECT_DOUBLE_EQ(value(0, k), k / 4.0);
    EXPECT_EQ(funType(0), 0);
    EXPECT_FALSE(wizardData().AttVFDone(0).toBoolean());
    EXPECT_EQ(mark(0)->picture(), 1);
    EXPECT_EQ(mark(2)->picture(), 2);
}

// The curve follows the mark before the release; the labels read as on the
// rating page in either value range; the arrow keys step a focused mark.
TEST_F(CurveDrawingTest, TheCurveAndTheLabelsFollowTheDrag) {
    for (const std::int16_t maxVal : {1, 100}) {
        wizardData().MaxVal = maxVal;
        open();
        drag(2, 73.0, false);
        std::vector<double> curve;
        for (const DrawPrimitive& p : chart()->primitives())
            if (p.kind == DrawPrimitive::Kind::Line && p.color == qbColor(9)) curve.push_back(p.p2.y());
        ASSERT_EQ(curve.size(), 32U);
        EXPECT_NEAR(curve[15], 73.0, 1e-4) << "the curve passes the mark at score 50";
        EXPECT_EQ(text("lblCurScore"), "50.00");
        EXPECT_EQ(text("lblCurValue"), maxVal == 1 ? "0.73" : "73");
        sendMouse(mark(2), QEvent::MouseButtonRelease, {6, 6}, Qt::LeftButton, Qt::NoButton);
        sendKey(mark(2), Qt::Key_Down, {}, Qt::ShiftModifier);
        sendKey(mark(2), Qt::Key_Up);
        EXPECT_DOUBLE_EQ(value(0, 2), 0.64);
        EXPECT_EQ(text("lblCurValue"), maxVal == 1 ? "0.64" : "64");
    }
}

}  // namespace
}  // namespace kelmar::test
