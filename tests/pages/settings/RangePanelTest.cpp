// The range panel: the score messages' key filters, the range checks with their
// messages and resets, and what the scope chart shows.
#include "SettingsFixture.h"

#include <QClipboard>
#include <QFocusEvent>

namespace kelmar::test {
namespace {

using RangePanel = SettingsPageTest;

enum class Commit { Enter, TabAway, WindowSwitch, Next };

TEST_F(RangePanel, ScoreChecksRefuseNarrowingAndResetTheBox) {
    // bound: the one the message names, nullptr when the score is accepted;
    // stored: the working score afterwards.
    const struct { const char* what; int att; bool maximum; const char* typed; Commit commit;
                   const char* bound; const char* shownAfter; double stored; } cases[] = {
        {"minimum above the host's", 0, false, "12.5", Commit::Enter, "10", "10", 10},
        {"maximum below the host's", 2, true, "7", Commit::Enter, "7.5", "7.5", 7.5},
        {"leaving the box checks", 0, true, "40", Commit::TabAway, "50", "50", 50},
        {"Next checks the messages", 0, false, "11", Commit::Next, "10", "10", 10},
        {"switching windows is no leaving", 0, true, "40", Commit::WindowSwitch, nullptr, "40", 50},
        {"equal minimum", 0, false, "10", Commit::Enter, nullptr, "10", 10},
        {"wider minimum", 2, false, "-2.5", Commit::Enter, nullptr, "-2.5", -2.5},
        {"equal maximum", 2, true, "7.5", Commit::Enter, nullptr, "7.5", 7.5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        setUpWith(100);
        chooseAttribute(c.att);
        QLineEdit* box = c.maximum ? maxBox() : minBox();
        box->setText(QString::fromLatin1(c.typed));
        if (c.commit == Commit::Enter) {
            pressReturn(box);
        } else if (c.commit == Commit::Next) {
            click("cmdNext");  // and moves on whatever the check found
        } else {
            QFocusEvent out(QEvent::FocusOut, c.commit == Commit::TabAway ? Qt::TabFocusReason
                                                                          : Qt::ActiveWindowFocusReason);
            QApplication::sendEvent(box, &out);
        }
        std::vector<QString> expected;
        if (c.bound != nullptr)
            expected.push_back(QStringLiteral("The score should be %1 or equal to %2!")
                                   .arg(c.maximum ? "larger than" : "less than", c.bound));
        EXPECT_EQ(messages, expected);
        EXPECT_EQ(box->text(), c.shownAfter);
        WizardData& w = wizardData();
        EXPECT_EQ((c.maximum ? w.ScoreMaximum : w.ScoreMinimum)(c.att).toDouble(), c.stored);
        const bool confirmed = c.commit == Commit::Next || (c.bound == nullptr && c.commit == Commit::Enter);
        for (int att = 0; att < 3; ++att)
            EXPECT_EQ(w.AttRangeSet(att).toBoolean(), att == c.att && confirmed) << att;
    }
}

TEST_F(RangePanel, KeyFiltersKeepOnePointAndSwallowPasting) {
    typeText(minBox(), "1.2.3");
    EXPECT_EQ(minBox()->text(), "1.23");
    // A point typed before an existing one is the one that goes.
    minBox()->setText("1.5");
    minBox()->setCursorPosition(1);
    sendKey(minBox(), Qt::Key_Period, ".");
    EXPECT_EQ(minBox()->text(), "1.5");
    EXPECT_EQ(minBox()->cursorPosition(), 1);

    QApplication::clipboard()->setText("99");
    minBox()->setText("1");
    minBox()->end(false);
    sendKey(minBox(), Qt::Key_V, QString(QChar(22)), Qt::ControlModifier);
    sendKey(minBox(), Qt::Key_Insert, QString(), Qt::ShiftModifier);
    sendKey(minBox(), Qt::Key_4, "4");
    EXPECT_EQ(minBox()->text(), "14");
}

TEST_F(RangePanel, ChosenAttributeShowsItsRangeInChartAndBoxes) {
    // An unconfirmed attribute shows the host's range, whatever was typed.
    minBox()->setText("3");
    maxBox()->setText("99");
    chooseAttribute(1);
    EXPECT_EQ(wizardData().SelAtt, 1);
    EXPECT_TRUE(drawnTexts(*child<DrawSurface>("picScopeChart")).contains("End points: 0 to 5 (the default range)"));
    EXPECT_EQ(minBox()->text() + maxBox()->text(), "05");

    // A confirmed one shows its working range next to the host's.
    maxBox()->setText("8");
    pressReturn(maxBox());
    chooseAttribute(0);
    chooseAttribute(1);
    const QStringList texts = drawnTexts(*child<DrawSurface>("picScopeChart"));
    EXPECT_TRUE(texts.contains("End points: 0 to 8")) << texts.join('|').toStdString();
    EXPECT_TRUE(texts.contains("Default range: 0 to 5"));
    EXPECT_EQ(maxBox()->text(), "8");
}

// The loaded page has made the working ranges from the host's.
using SettingsStep = SettingsPageTest;

// Every session starts from the host's record, types and parameters
// included, whatever the session before left in the working record; the
// flags start again too. (That the points follow a range confirmed in a box
// at once is a rule the random-input run checks after every event.)
TEST_F(SettingsStep, ANewSessionStartsFromTheHostsRecord) {
    WizardData& w = wizardData();
    w.InSmpX = w.SmpX;
    w.InSmpY = w.SmpY;
    typeText(minBox(), "0");
    pressReturn(minBox());
    w.VFunType(0) = std::int16_t(1);
    w.VFunParA(0) = QStringLiteral("0.5");
    w.SmpY(0, 1) = 0.6;
    w.AttVFDone(0) = true;
    page->close();
    w.InVFunParA.redim(0, 2);
    w.InVFunParA(0) = QStringLiteral("0.25");
    openPage();
    EXPECT_FALSE(w.AttVFDone(0).toBoolean());
    EXPECT_EQ(w.ScoreMinimum(0).toDouble(), 10.0);
    EXPECT_EQ(w.SmpX(0, 0).toDouble(), 10.0);
    click("cmdNext");
    EXPECT_EQ(w.VFunType(0).toDouble(), 0.0);
    EXPECT_EQ(w.VFunParA(0).toString(), "0.25");
    EXPECT_EQ(w.SmpY(0, 1).toDouble(), 0.25);
}

// A curve keeps its inner points and moves its ends to a changed range,
// unless they lie outside it: then all are stretched into it.
TEST_F(SettingsStep, ACurveKeepsToAChangedRange) {
    WizardData& w = wizardData();
    w.VFunType(1) = std::int16_t(1);
    w.SelAtt = 2;
    const struct { double x[5], after[5]; } cases[] = {
        {{-1, 1, 2.5, 4, 6}, {0, 1, 2.5, 4, 5}},
        {{-5, -1, 2.5, 6, 10}, {0, 4 / 3.0, 2.5, 11 / 3.0, 5}},
    };
    for (const auto& c : cases) {
        for (int k = 0; k < 5; ++k) w.SmpX(1, k) = c.x[k];
        PrepareWorkingArrays();
        for (int k = 0; k < 5; ++k) EXPECT_NEAR(w.SmpX(1, k).toDouble(), c.after[k], 1e-9) << k;
    }
    EXPECT_EQ(w.SelAtt, 2) << "the current attribute is put back";
}

// A host without a function for an attribute (no sample size, or a size the
// sample arrays cannot hold) gets a straight line of five points on the
// attribute's range, in its orientation; arrays left from an earlier
// problem are made again.
TEST_F(SettingsStep, AttributesWithoutAHostFunctionStartLinear) {
    WizardData& w = wizardData();
    w.VFunType.redim(0, 0);  // left from a problem with one attribute
    w.VFunType(0) = std::int16_t(7);
    w.SmpSize(0) = Variant();
    w.SmpSize(2) = std::int16_t(0);
    w.InVFunType(2) = std::int16_t(1);  // a type without points is no function
    w.SmpSize(1) = std::int16_t(12);
    PrepareWorkingArrays();
    const double lows[3] = {10, 0, 2.5}, highs[3] = {50, 5, 7.5};
    for (int att = 0; att < 3; ++att) {
        SCOPED_TRACE(att);
        EXPECT_EQ(w.SmpSize(att).toInteger(), 5);
        EXPECT_EQ(w.VFunType(att).toDouble(), 0.0);
        for (int k = 0; k < 5; ++k) {
            EXPECT_NEAR(w.SmpX(att, k).toDouble(), lows[att] + (highs[att] - lows[att]) * k / 4, 1e-5);
            EXPECT_NEAR(w.SmpY(att, k).toDouble(), att == 2 ? 1 - k / 4.0 : k / 4.0, 1e-7);
        }
        EXPECT_NEAR(w.ScoreMiddle(att).toDouble(), (lows[att] + highs[att]) / 2, 1e-5);
    }
}

}  // namespace
}  // namespace kelmar::test
