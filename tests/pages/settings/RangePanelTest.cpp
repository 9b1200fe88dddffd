// The range panel: the score boxes' key filters, the range checks with their
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
        {"Next checks the boxes", 0, false, "11", Commit::Next, "10", "10", 10},
        {"switching windows is no leaving", 0, true, "40", Commit::WindowSwitch, nullptr, "40", 50},
        {"equal minimum", 0, false, "10", Commit::Enter, nullptr, "10", 10},
        {"wider minimum", 2, false, "-2.5", Commit::Enter, nullptr, "-2.5", -2.5},
        {"equal maximum", 2, true, "7.5", Commit::Enter, nullptr, "7.5", 7.5},
        {"no number reads as 0 and widens", 0, false, "abc", Commit::Enter, nullptr, nullptr, 0},
        {"no number reads as 0 and narrows", 0, true, "", Commit::Enter, "50", "50", 50},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        setUpWith(100);
        boxes.clear();
        chooseAttribute(c.att);
        QLineEdit* box = c.maximum ? maxBox() : minBox();
        box->setText(QString::fromLatin1(c.typed));
        if (c.commit == Commit::Enter) {
            pressEnter(box);
        } else if (c.commit == Commit::Next) {
            click("cmdNext");  // and moves on whatever the check found
        } else {
            QFocusEvent out(QEvent::FocusOut, c.commit == Commit::TabAway
                                                  ? Qt::TabFocusReason
                                                  : Qt::ActiveWindowFocusReason);
            QApplication::sendEvent(box, &out);
        }
        std::vector<QString> expected;
        if (c.bound != nullptr)
            expected.push_back(QStringLiteral("The score should be %1 or equal to %2!")
                                   .arg(c.maximum ? "larger than" : "less than", c.bound));
        EXPECT_EQ(boxes, expected);
        if (c.shownAfter != nullptr) {
            EXPECT_EQ(box->text(), c.shownAfter);
        }
        WizardData& w = wizardData();
        EXPECT_EQ((c.maximum ? w.ScoreMaximum : w.ScoreMinimum)(c.att).toDouble(), c.stored);
        const bool confirmed =
            c.commit == Commit::Next || (c.bound == nullptr && c.commit == Commit::Enter);
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
    EXPECT_EQ(minBox()->text(), "1");
    sendKey(minBox(), Qt::Key_4, "4");
    EXPECT_EQ(minBox()->text(), "14");
}

TEST_F(RangePanel, ChosenAttributeShowsItsRangeInChartAndBoxes) {
    EXPECT_EQ(child<QComboBox>("cmbSelAtt")->itemText(2), "Delay");
    // An unconfirmed attribute shows the host's range, whatever was typed.
    minBox()->setText("3");
    maxBox()->setText("99");
    chooseAttribute(1);
    EXPECT_EQ(wizardData().SelAtt, 1);
    QStringList texts = drawnTexts(*child<DrawSurface>("picScopeChart"));
    EXPECT_TRUE(texts.contains("End points: 0 to 5 (the default range)"));
    EXPECT_EQ(minBox()->text(), "0");
    EXPECT_EQ(maxBox()->text(), "5");

    // A confirmed one shows its working range next to the host's.
    maxBox()->setText("8");
    pressEnter(maxBox());
    chooseAttribute(0);
    chooseAttribute(1);
    texts = drawnTexts(*child<DrawSurface>("picScopeChart"));
    EXPECT_TRUE(texts.contains("End points: 0 to 8")) << texts.join('|').toStdString();
    EXPECT_TRUE(texts.contains("Default range: 0 to 5"));
    EXPECT_EQ(maxBox()->text(), "8");
}

}  // namespace
}  // namespace kelmar::test
