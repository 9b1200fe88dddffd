// The two pages that judge scores on the score bar. First what they share,
// for both: the chart, refused moves, the score-difference
// read-out, when a move counts as an edit, the functions they export on
// either orientation, Linear and Restore. Then what each does of its own:
// the bisection sizes and the walk through the halvings, the sequence's
// steps shown side by side.
#include "ScoreAxisFixture.h"

#include <QRegularExpression>

#include <array>

namespace kelmar::test {
namespace {

template <class Page>
class ScoreAxisPages : public ScoreAxisTest<Page> {
protected:
    static constexpr bool bisection = std::is_same_v<Page, frmKelBisection>;
};
using BothPages = ::testing::Types<frmKelBisection, frmKelDiffStdSeq>;
TYPED_TEST_SUITE(ScoreAxisPages, BothPages);

// The two stretches of score drawn side by side for the judged point.
std::vector<std::pair<double, double>> spans(const DrawSurface& chart) {
    std::vector<std::pair<double, double>> out;
    for (const DrawPrimitive& p : chart.primitives())
        if (p.kind == DrawPrimitive::Kind::FilledBox && p.p1.y() == 40.0) out.emplace_back(p.p1.x(), p.p2.x());
    return out;
}

// Marks hang at 71 over their scores; the ticks stand at the equal steps
// whatever the scores are.
TYPED_TEST(ScoreAxisPages, MarksStandAtTheirScoresOverTicksAtTheEqualSteps) {
    WizardData& w = wizardData();
    const double judged[5] = {10, 14, 22, 42, 50};
    for (int k = 0; k < 5; ++k) w.SmpX(1, k) = judged[k];
    this->open(1);
    const double centres[5] = {0, 10, 30, 80, 100};
    for (int k = 0; k < 5; ++k) {
        EXPECT_NEAR(this->centreOf(k), centres[k], 1e-9) << k;
        EXPECT_EQ(this->chart()->childTop(this->mark(k)), 71.0);
        EXPECT_EQ(this->mark(k)->toolTip(), QString::number(judged[k], 'f', 2));
    }
    EXPECT_TRUE(this->mark(5)->isHidden());
    std::vector<double> ticks;
    for (const DrawPrimitive& p : this->chart()->primitives())
        if (p.kind == DrawPrimitive::Kind::Line && p.p1.y() == 90.0 && p.p2.y() == 97.0) ticks.push_back(p.p1.x());
    EXPECT_EQ(ticks, (std::vector<double>{0, 25, 50, 75, 100}));
    EXPECT_EQ(drawnTexts(*this->chart()).filter(QRegularExpression("^\\d+$")),
              QStringList({"10", "20", "30", "40", "50"}));
}

// A move onto or past an end is refused with the reason on the page and
// leaves everything as it was, the marks included; the next accepted move
// clears the reason. (Past a judged point: the guided pages' table.)
TYPED_TEST(ScoreAxisPages, AMoveOntoAnEndLeavesEverythingAsItWas) {
    this->open();
    const auto before = functionBits(0);
    this->drag(2, 0.0);
    EXPECT_EQ(functionBits(0), before);
    EXPECT_NEAR(this->centreOf(2), 50.0, 1e-9);
    EXPECT_EQ(this->mark(2)->toolTip(), "50.00");
    EXPECT_EQ(this->text("lblRefusal"), "Not accepted: 0.00 would reach or pass the end of the range, 0.00.");
    EXPECT_FALSE(this->page->MovePoint(3, 100.5));
    EXPECT_EQ(functionBits(0), before);
    this->drag(2, 60.0);
    EXPECT_EQ(this->text("lblRefusal"), "");
}

TYPED_TEST(ScoreAxisPages, ScoreDifferencesAtTheEndsInsideAndBetweenEqualScores) {
    const struct { std::array<double, 5> x; int index; const char* score; const char* differences; } cases[] = {
        {{0, 25, 50, 75, 100}, 0, "0.00", "[##] : [25.00]"},
        {{0, 25, 50, 75, 100}, 4, "100.00", "[25.00] : [##]"},
        {{0, 25, 50, 75, 100}, 3, "75.00", "[25.00] : [25.00]"},
        {{0, 10, 32.5, 75, 100}, 2, "32.50", "[22.50] : [42.50]"},
        {{0, 50, 50, 50, 100}, 2, "50.00", "[0.00] : [0.00]"},
    };
    this->open();
    for (const auto& c : cases) {
        for (int k = 0; k < 5; ++k) wizardData().SmpX(0, k) = c.x[static_cast<std::size_t>(k)];
        this->page->ShowPointLabels(c.index);
        EXPECT_EQ(this->text("lblCurScore").toStdString(), c.score) << c.index;
        EXPECT_EQ(this->text("lblScoreDiff").toStdString(), c.differences) << c.index;
    }
}

// Bisection counts a move at the release, as the other dragging pages do;
// the sequence page already at the move.
TYPED_TEST(ScoreAxisPages, AMovedMarkCountsAsAnEdit) {
    WizardData& w = wizardData();
    this->open();
    this->drag(2, 40.0, false);
    EXPECT_EQ(w.VFunType(0).toInteger(), this->bisection ? 0 : 1);
    EXPECT_FALSE(w.AttVFDone(0).toBoolean());
    EXPECT_EQ(this->text("lblScoreDiff"), "[20.00] : [30.00]") << "follows the drag";
    this->send(2, QEvent::MouseButtonRelease, this->kGrab, Qt::LeftButton, Qt::NoButton);
    this->expectEdited(0, this->technique, 2);
    EXPECT_EQ(this->mark(2)->toolTip(), "40.00");
}

// A judgment sequence on a benefit and on a cost attribute: the scores as
// placed, the values on equal steps in the attribute's direction, and the
// alternatives valued on the curve through them.
TYPED_TEST(ScoreAxisPages, ExportsTheJudgedPointsOnEitherOrientation) {
    const struct {
        std::int16_t att;
        std::array<double, 3> positions;  // points 1, 2, 3 in this order
        std::vector<double> scores, values;
        std::array<double, 4> exported;  // the four alternatives, value range 100
    } cases[] = {
        {0, {10, 25, 50}, {0, 10, 25, 50, 100}, {0, 0.25, 0.5, 0.75, 1}, {75, 0, 100, 50}},
        {1, {10, 25, 75}, {10, 14, 20, 40, 50}, {1, 0.75, 0.5, 0.25, 0}, {50, 0, 100, 25}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.att);
        this->SetUp();
        wizardData().MaxVal = 100;
        this->open(c.att);
        for (int k = 0; k < 3; ++k) this->drag(k + 1, c.positions[static_cast<std::size_t>(k)]);
        this->click("cmdFinish");
        EXPECT_EQ(this->sink.events, (std::vector<std::string>{"ExportResults", "UnloadKelmar"}));
        EXPECT_EQ(this->scores(c.att), c.scores);
        EXPECT_EQ(this->values(c.att), c.values);
        this->expectInvariants(c.att);
        for (int a = 0; a < 4; ++a)
            EXPECT_NEAR(this->sink.exportedValues(a, c.att).toDouble(), c.exported[static_cast<std::size_t>(a)], 1e-9)
                << "alternative " << a;
    }
}

// --- Bisection --------------------------------------------------------------

// A drag that comes back where it began leaves the function as it was (a
// press with a jiggle across the bar: the random-input run). The arrow keys
// move a mark that lies closer to its neighbour than a mark's width away
// from that neighbour.
TEST_F(BisectionTest, ADragBackToWhereItBeganChangesNothing) {
    WizardData& w = wizardData();
    open();
    choose("cmbSmpSize", 1);  // nine points: 12.5, 25, 37.5, ...
    const auto before = functionBits(0);
    const QPointF start = mark(3)->mapToGlobal(kGrab);
    drag(3, 45.0, false);
    EXPECT_EQ(w.SmpX(0, 3).toDouble(), 45.0);
    send(3, QEvent::MouseMove, mark(3)->mapFromGlobal(start), Qt::NoButton, Qt::LeftButton);
    send(3, QEvent::MouseButtonRelease, mark(3)->mapFromGlobal(start), Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(functionBits(0), before);

    w.SmpX(0, 7) = 99.5;
    choose("cmbAttributes", 0);
    sendKey(mark(7), Qt::Key_Left);
    EXPECT_LT(w.SmpX(0, 7).toDouble(), 99.5);
    EXPECT_GT(w.SmpX(0, 7).toDouble(), 87.5);
}

// The walk takes the halvings in the table's order; each judgment names
// the two scores it halves, as they stand, and the chart shows the two
// halves side by side.
TEST_F(BisectionTest, TheWalkGoesThroughTheHalvingsInOrder) {
    WizardData& w = wizardData();
    open();
    choose("cmbSmpSize", 1);
    const struct { int point; const char* words; std::pair<double, double> lower, upper; } walk[] = {
        {4, "Judgment 1 of 7, halving 1 of 3: place the selected point halfway in preference between 0.00 and 100.00", {0, 50}, {50, 100}},
        {2, "Judgment 2 of 7, halving 2 of 3: place the selected point halfway in preference between 0.00 and 50.00", {0, 25}, {25, 50}},
        {6, "Judgment 3 of 7, halving 2 of 3: place the selected point halfway in preference between 50.00 and 100.00", {50, 75}, {75, 100}},
        {1, "Its value, 0.125, lies halfway between 0.00 and 0.25.", {0, 12.5}, {12.5, 25}},
        {3, "between 25.00 and 50.00", {25, 37.5}, {37.5, 50}},
        {5, "between 50.00 and 75.00", {50, 62.5}, {62.5, 75}},
        {7, "Judgment 7 of 7, halving 3 of 3: place the selected point halfway in preference between 75.00 and 100.00", {75, 87.5}, {87.5, 100}},
        {4, "Judgment 1 of 7", {0, 50}, {50, 100}},
    };
    for (const auto& step : walk) {
        SCOPED_TRACE(step.point);
        EXPECT_EQ(page->judgedPoint(), step.point);
        EXPECT_EQ(mark(step.point)->picture(), 2);
        EXPECT_TRUE(text("lblJudgment").contains(step.words)) << text("lblJudgment").toStdString();
        EXPECT_EQ(spans(*chart()), (std::vector{step.lower, step.upper}));
        click("cmdNextJudgment");
    }
    EXPECT_TRUE(text("lblJudgment").contains("Its value, 0.25, lies halfway between 0.00 and 0.50."));

    // Judging the middle moves what the next halvings name; pressing a mark
    // takes the walk there.
    drag(4, 40.0);
    EXPECT_EQ(spans(*chart()), (std::vector<std::pair<double, double>>{{0, 40}, {40, 100}}));
    EXPECT_DOUBLE_EQ(w.SmpX(0, 4).toDouble(), 40.0);
    press(6);
    EXPECT_TRUE(text("lblJudgment").contains("Judgment 3 of 7, halving 2 of 3: place the selected point halfway in preference between 40.00 and 100.00"));
    click("cmdNextJudgment");
    EXPECT_EQ(page->judgedPoint(), 1);
    EXPECT_EQ(page->focusWidget(), mark(1)) << "ready for the arrow keys";
    sendKey(mark(1), Qt::Key_Right);
    EXPECT_DOUBLE_EQ(w.SmpX(0, 1).toDouble(), 11.0) << "made way to 10 when 4 was judged";
    click("cmdLinear");
    EXPECT_EQ(page->judgedPoint(), 4) << "a straight line starts the walk again";
    EXPECT_TRUE(text("lblJudgment").startsWith("Judgment 1 of 7"));
}

// --- Difference standard sequences -----------------------------------------

TEST_F(DiffStdSeqTest, ShowsTheTwoStepsBesideTheSelectedPoint) {
    wizardData().MaxVal = 100;
    open();
    EXPECT_EQ(page->judgedPoint(), 1);
    EXPECT_EQ(text("lblJudgment"),
              "Judgment 1 of 3: are these two steps equally preferred? Going from 0.00 to 25.00 and going "
              "from 25.00 to 50.00 should each be worth one step of value (25). If one of the two steps "
              "means more to you, move the selected point towards it.");
    EXPECT_EQ(spans(*chart()), (std::vector<std::pair<double, double>>{{0, 25}, {25, 50}}));
    EXPECT_TRUE(drawnTexts(*chart()).contains("Are these two steps equally preferred?"));
    EXPECT_TRUE(drawnTexts(*chart()).contains(QString::fromUtf8("0.00 \u2013 25.00")));
    // A step too narrow for its ends is captioned with its length; the
    // points not judged yet make way.
    drag(1, 5.0);
    EXPECT_TRUE(drawnTexts(*chart()).contains("5.00"));
    EXPECT_TRUE(drawnTexts(*chart()).contains(QString::fromUtf8("5.00 \u2013 36.67")));
    drag(2, 60.0);
    EXPECT_EQ(spans(*chart()), (std::vector<std::pair<double, double>>{{5, 60}, {60, 80}}));
    EXPECT_TRUE(text("lblJudgment").startsWith("Judgment 2 of 3"));
    // At an end, one step and the end's own words.
    drag(4, 50.0);
    EXPECT_EQ(spans(*chart()), (std::vector<std::pair<double, double>>{{80, 100}}));
    EXPECT_EQ(text("lblJudgment").section('.', 0, 1), "The last point stays at the highest score, 100.00");

    choose("cmbSmpSize", 1);
    EXPECT_EQ(page->judgedPoint(), 1) << "a new size starts the walk again";
    expectInvariants(0);
    EXPECT_TRUE(text("lblJudgment").contains("one step of value (16.7)"));
}

}  // namespace
}  // namespace kelmar::test
