// The Direct Rating page through the common skeleton: the drag rules, the
// keys and the labels, sample size, Linear, Restore, the risk attitude,
// navigation and a failing Finish; then the tab order and the decoration
// bands of the rating chart.
#include "TechniqueFixture.h"

#include <kelmar/KelmarDll.h>

#include <QFocusEvent>
#include <QLineEdit>
#include <QRegularExpression>

namespace kelmar::test {
namespace {

// Attribute 0 rises with the score (marks at 0, 25, 50, 75, 100 for the
// values 0 .. 1), attribute 1 falls (the same marks for the values 1 .. 0).
// A drop at 1 counts as 2 on the scale; a drag across a neighbour steps
// towards the point's own side. At any chart size the mark shows the value
// and the release is an edit.
TEST_F(DirectRatingTest, DragsKeepToTheScaleAndStepPastANeighbourTowardsThePointsOwnSide) {
    const struct { const char* what; int att, point; double target, value; } cases[] = {
        {"benefit, inside", 0, 2, 40, 0.40},
        {"benefit, below the scale", 0, 1, 1, 0.02},
        {"benefit, past the left neighbour", 0, 2, 10, 0.275},
        {"benefit, past the right neighbour", 0, 2, 90, 0.725},
        {"benefit, past the last mark", 0, 3, 110, 0.975},
        {"cost, past the left neighbour", 1, 2, 10, 0.725},
        {"cost, past the right neighbour", 1, 2, 90, 0.275},
        {"cost, past the last mark", 1, 3, 110, 0.025},
        {"cost, past the first mark", 1, 1, -10, 0.975},
    };
    for (const QSize size : {QSize(780, 620), QSize(1300, 900)}) {
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << c.what << " at " << size.width());
            fillProblem();
            pageSize = size;
            open(c.att);
            drag(c.point, c.target);
            EXPECT_DOUBLE_EQ(value(c.att, c.point), c.value);
            EXPECT_NEAR(centreOf(c.point), c.att == 1 ? 100.0 - 100.0 * c.value : 100.0 * c.value, 1e-6);
            expectEdited(c.att, kDirectRating, c.point);
        }
    }
    EXPECT_EQ(child<QComboBox>("cmbAttributes")->itemText(1), QString::fromUtf8(" \u00A4 Noise"));
    EXPECT_EQ(text("lblCurScore") + " " + text("lblCurValue"), "20.00 0.98");
}

// The end marks stay where they are; another button selects a mark but
// does not move it, nor does a move with left and right held. One beyond
// 100 counts as 100 when the right neighbour lies further out.
TEST_F(DirectRatingTest, OnlyALeftDragOfAnInnerMarkMovesIt) {
    open();
    const auto before = functionBits(0);
    drag(0, 30.0);
    drag(4, 60.0);
    sendKey(mark(0), Qt::Key_Right, {}, Qt::ShiftModifier);
    sendKey(mark(4), Qt::Key_Left);
    drag(2, 40.0, Qt::RightButton);
    EXPECT_EQ(mark(2)->picture(), 2);
    sendMouse(mark(2), QEvent::MouseButtonPress, {5, 8}, Qt::LeftButton, Qt::LeftButton);
    sendMouse(mark(2), QEvent::MouseMove, {-60, 8}, Qt::NoButton, Qt::LeftButton | Qt::RightButton);
    EXPECT_EQ(functionBits(0), before);
    EXPECT_NEAR(centreOf(4), 100.0, 1e-9);
    chart()->placeChild(mark(4), 110.0, 84.0);
    page->MovePoint(3, 101.0);
    EXPECT_DOUBLE_EQ(value(0, 3), 1.0);
}

TEST_F(DirectRatingTest, LabelsFollowTheValueRange) {
    const struct { std::int16_t maxVal; QStringList ticks; const char* value; } cases[] = {
        {1, {"0.00", "0.25", "0.50", "0.75", "1.00"}, "0.73"},
        {100, {"0", "25", "50", "75", "100"}, "73"}};
    for (const auto& c : cases) {
        wizardData().MaxVal = c.maxVal;
        open();
        EXPECT_EQ(drawnTexts(*chart(), printedAt(-1, 102.0)), c.ticks);
        drag(2, 73.0);
        EXPECT_EQ(text("lblCurValue"), c.value);
    }
}

TEST_F(DirectRatingTest, AMarkReachedWithTabIsReadOutAndArrowKeysMoveIt) {
    open();
    // The marks follow the sample size in the tab order.
    EXPECT_EQ(child("cmbSmpSize")->nextInFocusChain(), mark(0));
    EXPECT_EQ(mark(10)->nextInFocusChain(), child("cmdLinear"));
    // The typed-answer field follows the mark chosen by a click, Tab or a key.
    auto* field = child<QLineEdit>("txtExact");
    EXPECT_FALSE(field->isEnabled()) << "no point selected yet";
    gesture(mark(1), {{5, 8}});
    EXPECT_EQ(field->text(), "0.25");
    QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(mark(3), &focus);
    EXPECT_EQ(mark(3)->picture(), 2);
    EXPECT_EQ(text("lblCurScore") + " " + text("lblCurValue") + " " + field->text(), "75.00 0.75 0.75");
    EXPECT_EQ(funType(), 0) << "selecting changes nothing";
    // The keys move a mark by the same rules as a drag.
    PointMark* m = mark(2);
    sendKey(m, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.51);
    EXPECT_EQ(funType(), 1);
    EXPECT_EQ(text("lblCurValue") + " " + field->text(), "0.51 0.51");
    EXPECT_EQ(m->picture(), 2);
    sendKey(m, Qt::Key_Left, {}, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.41);
    for (int k = 0; k < 2; ++k) sendKey(m, Qt::Key_Left, {}, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.275) << "into the neighbour";
}

TEST_F(DirectRatingTest, ChoosingASampleSize) {
    open();
    drag(2, 40.0);
    // The size in force changes nothing.
    const auto before = chart()->primitives().size();
    choose("cmbSmpSize", 0);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.40);
    EXPECT_EQ(chart()->primitives().size(), before);
    EXPECT_EQ(mark(2)->picture(), 2);
    // Another resamples keeping the shape: the curve still passes 0.40 at 50.
    choose("cmbSmpSize", 2);
    EXPECT_EQ(wizardData().SmpSize(0).toInteger(), 9);
    EXPECT_EQ(text("lblCurScore") + text("lblCurValue"), "") << "the old point's read-outs go";
    EXPECT_EQ(mark(2)->picture(), 1) << "marks 1 to 10 return to the normal picture";
    for (int i = 0; i < 11; ++i) EXPECT_EQ(mark(i)->isHidden(), i >= 9) << i;
    EXPECT_DOUBLE_EQ(wizardData().SmpX(0, 4).toDouble(), 50.0);
    EXPECT_NEAR(value(0, 4), 0.40, 1e-9);
    EXPECT_NEAR(centreOf(4), 40.0, 1e-6);
    // The first mark keeps its picture.
    sendMouse(mark(0), QEvent::MouseButtonPress, {5, 8}, Qt::RightButton, Qt::RightButton);
    choose("cmbSmpSize", 3);
    EXPECT_EQ(mark(0)->picture(), 2);
}

TEST_F(DirectRatingTest, RestoreKeepsTheEndsOnAWidenedRange) {
    // The host's points lie on 0 .. 100; the range was widened to -20 .. 140.
    const struct { const char* what; int hostType; Variant hostSize; std::vector<double> scores; } cases[] = {
        {"linear", 0, Variant(std::int16_t(5)), {-20, 20, 60, 100, 140}},
        {"curve", 1, Variant(std::int16_t(5)), {-20, 25, 50, 75, 140}},
        {"no function", 0, Variant(), {-20, 20, 60, 100, 140}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fillProblem();
        WizardData& w = wizardData();
        w.InVFunType(0) = std::int16_t(c.hostType);
        w.InSmpSize(0) = c.hostSize;
        w.InSmpY(0, 1) = 0.4;
        w.ScoreMinimum(0) = -20.0;
        w.ScoreMaximum(0) = 140.0;
        open();
        click("cmdRestore");
        ASSERT_EQ(w.SmpSize(0).toInteger(), 5);
        for (int k = 0; k < 5; ++k) EXPECT_NEAR(w.SmpX(0, k).toDouble(), c.scores[static_cast<std::size_t>(k)], 1e-4) << k;
        EXPECT_FALSE(done());
    }
}

TEST_F(DirectRatingTest, NavigationKeepsThePointsCancelExportsNothingFinishExportsEveryAttribute) {
    wizardData().MaxVal = 100;
    open();
    drag(2, 40.0);
    sink.events.clear();
    // The function view, Print, Next and Help do only their own part; Next,
    // which has none on the last step, is disabled.
    EXPECT_FALSE(child<QPushButton>("cmdNext")->isEnabled());
    int context = 0;
    KelmarDll::setHelpHandler([&](const QString&, int c) { context = c; });
    for (const char* button : {"cmdS", "cmdCUFPrint", "cmdNext", "cmdHelp"}) click(button);
    KelmarDll::setHelpHandler({});
    EXPECT_EQ(context, 4005020);
    EXPECT_EQ(sink.events, std::vector<std::string>{"ShowKelVFS"});
    sink.events.clear();
    const float left = page->pageLeft(), top = page->pageTop();
    click("cmdBack");
    EXPECT_EQ(sink.events, (std::vector<std::string>{"HideForm(1)", "ShowForm(8)", "UnloadOwn"}));
    EXPECT_EQ(sink.showLeft, left);
    EXPECT_EQ(sink.showTop, top);
    open();
    EXPECT_NEAR(centreOf(2), 40.0, 1e-6);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.40);

    click("cmdCancel");
    EXPECT_EQ(sink.events, std::vector<std::string>{"UnloadKelmar"});
    EXPECT_DOUBLE_EQ(wizardData().AttVData(0, 0).toDouble(), -1.0);

    open();
    click("cmdFinish");
    EXPECT_EQ(sink.events, (std::vector<std::string>{"ExportResults", "UnloadKelmar"}));
    // Price rated 0.40 at 50; Noise falling on 10..50; Comfort, which no page
    // touched, computed too.
    const double expected[4][3] = {{40, 75, 50}, {0, 0, 0}, {100, 100, 100}, {25, 25, 25}};
    for (int a = 0; a < 4; ++a)
        for (int att = 0; att < 3; ++att)
            EXPECT_NEAR(sink.exportedValues(a, att).toDouble(), expected[a][att], 1e-9) << a << att;
}

TEST_F(DirectRatingTest, FinishStopsBeforeTheExportWhenAValueCannotBeComputed) {
    open();
    wizardData().SmpSize(1) = Variant();
    EXPECT_NO_THROW(click("cmdFinish"));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].startsWith("Run-time error")) << messages[0].toStdString();
    EXPECT_TRUE(sink.events.empty());
    messages.clear();
}

// Raising the middle point makes the curve reach one half early: the middle
// score drops below the range's centre, shown as Risk Prone. Method codes
// other than 0, 1 and 5 leave the display as it was.
TEST_F(DirectRatingTest, RiskAttitudeFollowsTheMiddleScoreAndTheMethodCode) {
    const auto highlighted = [this] {
        for (int k = 0; k < 3; ++k)
            if (child<QLabel>(QStringLiteral("lblRiskAttitude_%1").arg(k))->font().bold()) return k;
        return -1;
    };
    open();
    EXPECT_EQ(highlighted(), 1);  // linear: Risk Neutral
    const struct { std::int16_t code; double target; bool belowCentre; int shown; } moves[] = {
        {1, 70, true, 2}, {2, 30, false, 2}, {5, 32, false, 0}};
    for (const auto& m : moves) {
        SCOPED_TRACE(m.code);
        wizardData().SelMCDAMethod = m.code;
        drag(2, m.target);
        EXPECT_EQ(wizardData().ScoreMiddle(0).toDouble() < 50.0, m.belowCentre);
        EXPECT_EQ(highlighted(), m.shown);
    }
}

// The decoration bands: drawn only for the method codes that ask for them,
// filled polygons inside the rating area, each captioned with the values it
// covers on either orientation.
TEST_F(DirectRatingTest, DecorationBandsFollowTheMethodCodeAndTheValues) {
    auto polygons = [this] {
        std::vector<QVector<QPointF>> found;
        for (const DrawPrimitive& p : chart()->primitives())
            if (p.kind == DrawPrimitive::Kind::Polygon) found.push_back(p.points);
        return found;
    };
    for (std::int16_t code = -1; code <= 6; ++code) {
        wizardData().SelMCDAMethod = code;
        open();
        EXPECT_EQ(polygons().size(), code == 2 || code == 3 || code == 4 || code == 6 ? 3U : 0U) << code;
    }
    const struct { std::int16_t att, maxVal; QStringList captions; bool risesToTheRight; } cases[] = {
        {0, 1, {"values 0.02 \u2013 0.74", "values 0.74 \u2013 1.00"}, true},
        {1, 1, {"values 0.26 \u2013 0.98", "values 0.00 \u2013 0.26"}, false},
        {1, 100, {"values 26 \u2013 98", "values 0 \u2013 26"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.att * 1000 + c.maxVal);
        wizardData().SelMCDAMethod = 2;
        wizardData().MaxVal = c.maxVal;
        open(c.att);
        EXPECT_EQ(drawnTexts(*chart()).filter(QRegularExpression("^values")), c.captions);
        // The ramp's top edge of the wide band: higher (smaller y) towards the best end.
        const QVector<QPointF> band2 = polygons().at(1);
        EXPECT_EQ(band2[1].y() > band2[2].y(), c.risesToTheRight);
    }
}

}  // namespace
}  // namespace kelmar::test
