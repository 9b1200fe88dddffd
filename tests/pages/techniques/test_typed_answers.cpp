// Typed exact answers on the eight technique pages, and the words that tell
// the analyst at once when the answers disagree.
#include "TechniqueFixture.h"

#include <QLineEdit>

namespace kelmar::test {
namespace {

class TypedAnswerTest : public AnyTechniqueTest {
protected:
    void open(int technique, int att) {
        for (VariantArray* a : {&wizardData().VFunParA, &wizardData().VFunParB}) a->redim(0, 2);
        openAs(technique, att, technique == kCategoryIdentification ? QSize(820, 820) : QSize(780, 740));
    }
    void type(const QString& text) {
        auto* field = child<QLineEdit>(QStringLiteral("txtExact"));
        field->setText(text);
        sendKey(field, Qt::Key_Return);
    }
    QString note() const { return text("lblExactNote"); }
};

TEST_F(TypedAnswerTest, ATypedNumberIsJudgedAsADragToItWouldBe) {
    enum Outcome { Stored, Adjusted, Refused };
    enum Cell { Value, Score, Middle };
    const struct {
        const char* what;
        int technique, att, maxVal, point;
        const char* typed;
        Outcome outcome;
        Cell cell;
        double expected;      // the cell afterwards (Stored, Adjusted)
        const char* because;  // a part of the note (Adjusted, Refused)
    } cases[] = {
        {"rating", kDirectRating, 0, 1, 2, "0.37", Stored, Value, 0.37, ""},
        {"rating, cost", kDirectRating, 1, 1, 2, "0.4", Stored, Value, 0.4, ""},
        {"rating on 100", kDirectRating, 0, 100, 2, " 37.5 ", Stored, Value, 0.375, ""},
        {"rating past a neighbour", kDirectRating, 0, 1, 2, "0.9", Adjusted, Value, 0.725, "Set to 0.725"},
        {"rating, an end point", kDirectRating, 0, 1, 0, "0.1", Refused, Value, 0, "the ends of the range"},
        {"not a number", kDirectRating, 0, 1, 2, "0,4", Refused, Value, 0, "\"0,4\" is not a number"},
        {"curve on 100", kCurveDrawing, 0, 100, 1, "30", Stored, Value, 0.3, ""},
        {"curve, the top limit", kCurveDrawing, 0, 1, 3, "0.99", Adjusted, Value, 0.98, "Set to 0.98"},
        {"curve, cost", kCurveDrawing, 1, 1, 1, "0.8", Stored, Value, 0.8, ""},
        {"category", kCategoryIdentification, 0, 1, 4, "0.3", Stored, Value, 0.3, ""},
        {"category on 100, cost", kCategoryIdentification, 1, 100, 5, "40", Stored, Value, 0.4, ""},
        {"category past a neighbour", kCategoryIdentification, 0, 1, 4, "0.6", Adjusted, Value, 0.475, "Set to 0.475"},
        {"bisection", kBisection, 0, 1, 1, "30", Stored, Score, 30, ""},
        {"bisection, cost", kBisection, 1, 1, 1, "22.5", Stored, Score, 22.5, ""},
        {"bisection, beyond the range", kBisection, 0, 1, 1, "-5", Refused, Score, 0, ""},
        {"sequences", kDiffStandardSequence, 0, 1, 2, "55.5", Stored, Score, 55.5, ""},
        {"sequences, onto an end", kDiffStandardSequence, 0, 1, 2, "100", Refused, Score, 0, ""},
        {"certainty", kVariableCertainty, 0, 1, 2, "40", Stored, Score, 40, ""},
        {"certainty, onto an outcome", kVariableCertainty, 0, 1, 2, "100", Refused, Score, 0, ""},
        {"probability on 100", kVariableProbability, 0, 100, 1, "0.3", Stored, Value, 0.3, ""},
        {"probability, cost", kVariableProbability, 1, 1, 3, "0.2", Stored, Value, 0.2, ""},
        {"probability beyond 1", kVariableProbability, 0, 1, 1, "1.2", Refused, Value, 0, ""},
        {"midpoint", kMidPoint, 0, 1, 0, "30", Stored, Middle, 30, ""},
        {"midpoint, cost", kMidPoint, 1, 100, 0, "20.25", Stored, Middle, 20.25, ""},
        {"midpoint at an end", kMidPoint, 0, 1, 0, "0.05", Refused, Middle, 0, "unreasonable value"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fillProblem();
        wizardData().MaxVal = static_cast<std::int16_t>(c.maxVal);
        open(c.technique, c.att);
        if (c.technique != kMidPoint) press(c.point);
        const auto before = functionBits(c.att);
        QCoreApplication::processEvents();
        const QRect chartBefore = child<QWidget>(QStringLiteral("picVFChart"))->geometry();
        type(QString::fromLatin1(c.typed));
        QCoreApplication::processEvents();
        EXPECT_EQ(child<QWidget>(QStringLiteral("picVFChart"))->geometry(), chartBefore) << "the note takes no room";

        const WizardData& w = wizardData();
        const Variant& cell = c.cell == Value   ? w.SmpY(c.att, c.point)
                              : c.cell == Score ? w.SmpX(c.att, c.point)
                                                : w.ScoreMiddle(c.att);
        if (c.outcome == Refused) {
            EXPECT_EQ(functionBits(c.att), before) << "nothing changes";
        } else {
            EXPECT_EQ(cell.type(), Variant::Type::Double);
            if (c.outcome == Stored) {
                EXPECT_EQ(cell.toDouble(), c.expected) << "the typed number itself";
            } else {
                EXPECT_NEAR(cell.toDouble(), c.expected, 1e-12);
            }
            EXPECT_TRUE(w.AttVFDone(c.att).toBoolean());
            EXPECT_EQ(w.VFTechniqueID(c.att).toInteger(), c.technique);
        }
        EXPECT_TRUE(note().contains(QString::fromLatin1(c.because))) << note().toStdString();
        EXPECT_EQ(note().isEmpty(), c.outcome == Stored) << note().toStdString();
    }
}

TEST_F(TypedAnswerTest, TheWordsOnAnswersThatDisagreeFollowEachAnswerAtOnce) {
    // In order, yet the curve through 0.1, 0.9 and 0.91 overshoots the close
    // pair and comes back.
    open(kDirectRating, 0);
    auto* turnBack = child<QLabel>(QStringLiteral("lblTurnBack"));
    EXPECT_TRUE(turnBack->text().isEmpty());
    const QRect chartBefore = child<QWidget>(QStringLiteral("picVFChart"))->geometry();
    for (const auto& [point, typed] : {std::pair{3, "0.91"}, {2, "0.9"}, {1, "0.1"}}) {
        press(point);
        type(QString::fromLatin1(typed));
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(child<QWidget>(QStringLiteral("picVFChart"))->geometry(), chartBefore) << "the words take no room from the chart";
    EXPECT_TRUE(turnBack->text().contains("between 59.38 and 65.63")) << turnBack->text().toStdString();
    click("cmdLinear");
    EXPECT_TRUE(turnBack->text().isEmpty());

    // The whole range's lottery answered risk-averse, the lower half's
    // risk-prone: the premiums change sign.
    fillProblem();
    open(kVariableCertainty, 0);
    auto* premium = child<QLabel>(QStringLiteral("lblRiskPremium"));
    press(2);
    type(QStringLiteral("30"));
    EXPECT_EQ(premium->text(), "Risk premium of the lottery you just judged: 20.00, the expected score 50.00 minus the sure score 30.00.");
    ASSERT_EQ(child<QLineEdit>(QStringLiteral("txtExact"))->text(), "15") << "on to the lower half's lottery";
    type(QStringLiteral("20"));
    EXPECT_TRUE(premium->text().startsWith("Risk premium of the lottery you just judged: -5.00")) << premium->text().toStdString();
    EXPECT_TRUE(premium->text().contains("change sign: 20.00 at the sure score 30.00 but -5.00 at 20.00"))
        << premium->text().toStdString();

    // A refusal's longer words come and go without moving the charts.
    fillProblem();
    open(kBisection, 0);
    press(2);
    type(QStringLiteral("40"));
    QCoreApplication::processEvents();
    const QRect chartsBefore = child<QWidget>(QStringLiteral("picRatingChart"))->geometry();
    press(1);
    type(QStringLiteral("45"));
    EXPECT_TRUE(note().contains("the point you judged at 40.00")) << note().toStdString();
    QCoreApplication::processEvents();
    EXPECT_EQ(child<QWidget>(QStringLiteral("picRatingChart"))->geometry(), chartsBefore);
}

}  // namespace
}  // namespace kelmar::test
