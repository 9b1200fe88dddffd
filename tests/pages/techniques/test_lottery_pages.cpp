// The lottery pages: the probability slider (worked example, base
// neighbour, which presses and releases count, the end points), the
// certainty equivalent's diagram and judgments, the sizes the pages work
// with, and the points a round of judgments exports. (That showing an
// attribute again keeps a curve resampled on its first showing is checked
// by the random-input run on every page.)
#include "LotteryFixture.h"

#include <QWheelEvent>

namespace kelmar::test {
namespace {

// --- Variable probability -----------------------------------------------------

// Point 2 between judged neighbours valued 0.2 and 0.6: on the benefit
// attribute the lower neighbour is the base, on the cost one the upper. A
// second answer on the same lottery judges the same point again.
TEST_F(VarPTest, WorkedExampleFromTheLowerValuedNeighbourOnBothKinds) {
    const struct { int att; double before, after; std::array<QString, 2> outcomes; } cases[] = {
        {0, 0.2, 0.6, {"100.00", "0.00"}},
        {1, 0.6, 0.2, {"10.00", "50.00"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.att);
        fillProblem();
        wizardData().VFunType(c.att) = std::int16_t(1);  // a curve: every point judged
        wizardData().SmpY(c.att, 1) = c.before;
        wizardData().SmpY(c.att, 3) = c.after;
        open(c.att);
        press(2);
        EXPECT_EQ(outcomes(), c.outcomes);
        EXPECT_FLOAT_EQ(page->ProbStep, 0.039f);
        // The scale under the slider reads the probabilities of the positions.
        const auto* scale = child<lottery::SliderScale>(QStringLiteral("sldProbabilityScale"));
        EXPECT_EQ(scale->labelledTicks().back().first, 10);
        EXPECT_EQ(scale->tickText(0) + " " + scale->tickText(5) + " " + scale->tickText(10), "0.200 0.395 0.590");
        sendMouse(slider(), QEvent::MouseButtonPress, {2, 2}, Qt::LeftButton, Qt::LeftButton);
        slider()->setValue(0);
        EXPECT_EQ(branches(), (std::array<QString, 2>{"0.200", "0.800"})) << "follows the thumb";
        EXPECT_EQ(slider()->toolTip(), "0.2");
        sendMouse(slider(), QEvent::MouseButtonRelease, {2, 2}, Qt::LeftButton, Qt::NoButton);
        const struct { int position; const char* shown; float stored; } steps[] = {
            {5, "0.395", 0.395f}, {10, "0.590", 0.59f}};
        for (const auto& s : steps) {
            slide(s.position);
            EXPECT_EQ(page->JudgedPoint, 2);
            EXPECT_FLOAT_EQ(wizardData().SmpY(c.att, 2).toSingle(), s.stored);
            EXPECT_EQ(branches()[0], s.shown);
        }
        EXPECT_DOUBLE_EQ(y(c.att, 3), c.after);
    }
}

// Only a left release at another position judges, and the point stays the
// one under judgment until Next judgment; the wheel judges nothing and the
// diagram then shows the stored value.
TEST_F(VarPTest, OnlyALeftReleaseAtAnotherPositionStores) {
    open();
    // The page opens on the first inner point: the lowest score after the
    // minimum, against the best and the worst score. The score bar under
    // the marks shows its scores.
    EXPECT_EQ(textAt(-1, 34.0), "25.00");
    EXPECT_EQ(drawnTexts(*chart(), printedAt(-1, lottery::kScoreRowTop)).join(' '), "0 25 50 75 100");
    EXPECT_EQ(outcomes(), (std::array<QString, 2>{"100.00", "0.00"}));
    press(2);
    // Another button neither moves the thumb nor stores; nor does a release
    // where the left press began, nor the wheel.
    const int start = slider()->value();
    sendMouse(slider(), QEvent::MouseButtonPress, {2, 2}, Qt::RightButton, Qt::RightButton);
    sendMouse(slider(), QEvent::MouseButtonRelease, {2, 2}, Qt::RightButton, Qt::NoButton);
    EXPECT_EQ(slider()->value(), start);
    QWheelEvent wheel({2, 2}, slider()->mapToGlobal(QPointF(2, 2)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(slider(), &wheel);
    EXPECT_EQ(slider()->value(), start);
    sendMouse(slider(), QEvent::MouseButtonPress, {2, 2}, Qt::LeftButton, Qt::LeftButton);
    slider()->setValue(2);
    slider()->setValue(start);
    sendMouse(slider(), QEvent::MouseButtonRelease, {2, 2}, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(branches()[0], "0.500") << "the stored value, not the thumb's step";
    sendMouse(slider(), QEvent::MouseButtonPress, {2, 2}, Qt::LeftButton, Qt::LeftButton);
    slider()->setValue(2);
    sendMouse(slider(), QEvent::MouseButtonRelease, {2, 2}, Qt::RightButton, Qt::LeftButton);
    EXPECT_DOUBLE_EQ(y(0, 2), 0.5);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);
    EXPECT_FALSE(wizardData().AttVFDone(0).toBoolean());

    // On the straight line only the ends are judged: the slider spans 0 .. 1
    // (the unjudged neighbours making way is the guided pages' rule).
    sendMouse(slider(), QEvent::MouseButtonRelease, {2, 2}, Qt::LeftButton, Qt::NoButton);
    EXPECT_FLOAT_EQ(wizardData().SmpY(0, 2).toSingle(), 0.099f * 2);
    this->expectEdited(0, kVariableProbability, 2);
    EXPECT_EQ(page->JudgedPoint, 2);
    click("cmdNextJudgment");
    EXPECT_EQ(page->JudgedPoint, 3);
    EXPECT_EQ(mark(3)->picture(), 2);
    EXPECT_EQ(textAt(-1, 34.0), "75.00");
}

TEST_F(VarPTest, EndPointsNeverGetTheSlider) {
    open();
    for (int end : {0, 4}) {
        press(end);
        EXPECT_FALSE(slider()->isEnabled());
        EXPECT_TRUE(child<lottery::SliderScale>(QStringLiteral("sldProbabilityScale"))->labelledTicks().empty());
        slide(7);
        EXPECT_EQ(branches()[0], end == 0 ? "0.000" : "1.000");
    }
    EXPECT_DOUBLE_EQ(y(0, 0), 0.0);
    EXPECT_DOUBLE_EQ(y(0, 4), 1.0);
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);
    press(1);
    EXPECT_TRUE(slider()->isEnabled());
}

// --- Variable certainty equivalent ------------------------------------------------

TEST_F(VarCTest, EvenChancesBetweenTheTableRowsOutcomes) {
    for (int listIndex : {0, 1}) {
        open();
        choose("cmbSmpSize", listIndex);
        const int n = listIndex == 0 ? 5 : 9;
        ASSERT_EQ(wizardData().BisectionTable.size(), static_cast<std::size_t>(n));
        for (int i = 1; i < n - 1; ++i) {
            press(i);
            const BisectionRecord& row = wizardData().BisectionTable[static_cast<std::size_t>(i)];
            EXPECT_EQ(branches(), (std::array<QString, 2>{"0.50", "0.50"}));
            EXPECT_EQ(outcomes(), (std::array<QString, 2>{score(x(0, row.Lower)), score(x(0, row.Upper))}))
                << "point " << i << " of " << n;
            EXPECT_EQ(textAt(-1, 34.0), score(x(0, i)));
        }
    }
}

TEST_F(VarCTest, DraggedSureScoreTakesTheMeanOfItsOutcomesAndLeadsOn) {
    open(1);  // cost: values fall from 1 to 0 over the scores 10 .. 50
    EXPECT_EQ(page->JudgedPoint, 2) << "the whole range is halved first";
    press(1, Qt::RightButton);
    EXPECT_EQ(page->JudgedPoint, 2);

    // The sure score follows the drag before the release.
    PointMark* m = mark(2);
    const QPointF grab(m->width() / 2.0, 8.0);
    const QPointF to(grab.x() - 10.0 * chart()->width() / 116.0, grab.y());
    gesture(m, {grab, to}, Qt::LeftButton, false);
    EXPECT_EQ(textAt(-1, 34.0), "26.00");
    sendMouse(m, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    EXPECT_DOUBLE_EQ(x(1, 2), 26.0);
    EXPECT_DOUBLE_EQ(y(1, 2), 0.5);
    EXPECT_EQ(wizardData().VFunType(1).toInteger(), 1);
    EXPECT_EQ(page->JudgedPoint, 1);
    EXPECT_EQ(mark(1)->picture(), 2);
    EXPECT_EQ(outcomes(), (std::array<QString, 2>{"10.00", "26.00"}));

    // The unjudged points made way. A drop beyond a judged point changes
    // nothing; a drop before it judges.
    EXPECT_DOUBLE_EQ(x(1, 1), 18.0);
    drag(1, 50.0);
    EXPECT_DOUBLE_EQ(x(1, 1), 18.0);
    EXPECT_TRUE(text("lblRefusal").contains("the point you judged at 26.00"));
    drag(1, 15.0);
    EXPECT_DOUBLE_EQ(x(1, 1), 16.0);
    EXPECT_DOUBLE_EQ(y(1, 1), 0.75);
    EXPECT_EQ(page->JudgedPoint, 3);
    EXPECT_EQ(textAt(centreOf(1) - chart()->textWidth("0.75") / 2.0, lottery::kRowTop), "0.75");
}

TEST_F(VarCTest, PointValuesOfCrowdedPointsNeverPrintOverEachOther) {
    open(1);
    choose("cmbSmpSize", 1);
    drag(4, 94.0);  // the unjudged 5 .. 7 make way into the last few units
    ASSERT_GT(x(1, 7) - x(1, 5), 0.0);
    // The lottery under judgment first far from the ends, then beside one.
    for (const bool besideTheEnd : {false, true}) {
        if (besideTheEnd) press(7);
        std::vector<std::pair<double, double>> printed;
        QStringList texts;
        for (const auto& p : chart()->primitives())
            if (p.kind == DrawPrimitive::Kind::Text && std::abs(p.p1.y() - lottery::kRowTop) < 1e-9) {
                for (const auto& [left, right] : printed)
                    EXPECT_TRUE(p.p1.x() >= right || p.p1.x() + chart()->textWidth(p.text) <= left)
                        << p.text.toStdString();
                printed.emplace_back(p.p1.x(), p.p1.x() + chart()->textWidth(p.text));
                texts << p.text;
            }
        EXPECT_TRUE(texts.contains(fmt::formatNumber(y(1, page->JudgedPoint), QStringLiteral("0.00"))));
        EXPECT_EQ(texts.contains("0.00"), !besideTheEnd) << texts.join(' ').toStdString();
        EXPECT_TRUE(texts.contains("1.00"));
    }
}

TEST_F(VarCTest, ARoundOfJudgmentsExportsTheHalvings) {
    wizardData().VFunType(1) = std::int16_t(1);
    wizardData().VFTechniqueID(1) = std::int16_t(kDirectRating);
    open(1);
    choose("cmbSmpSize", 1);
    // Every inner point in the page's order, each pulled two units left
    // (0.8 on the scores 10 .. 50).
    for (const int k : {4, 2, 6, 1, 3, 5, 7}) {
        ASSERT_EQ(page->JudgedPoint, k);
        const double before = x(1, k);
        drag(k, centreOf(k) - 2.0);
        EXPECT_NEAR(x(1, k), before - 0.8, 1e-9);
    }
    click("cmdFinish");
    EXPECT_EQ(sink.events, (std::vector<std::string>{"ExportResults", "UnloadKelmar"}));
    std::int16_t att = 1;
    EXPECT_TRUE(SamplePointsInOrder(att));
    EXPECT_TRUE(ValuesOnEqualSteps(att));
    EXPECT_EQ(wizardData().VFTechniqueID(1).toInteger(), kVariableCertainty);
}

}  // namespace
}  // namespace kelmar::test
