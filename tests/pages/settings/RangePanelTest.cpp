// The range panel: the score boxes' key filters, the range checks with their
// messages and resets, and what the scope chart shows.
#include "SettingsFixture.h"

namespace kelmar::test {
namespace {

using RangePanel = SettingsPageTest;

TEST_F(RangePanel, LoadAllocatesTheWorkingRangesFromTheHost) {
    WizardData& w = wizardData();
    ASSERT_EQ(w.AttRangeSet.ubound(), 2);
    ASSERT_EQ(w.AttVFDone.ubound(), 2);
    for (int att = 0; att < 3; ++att) {
        EXPECT_FALSE(w.AttRangeSet(att).toBoolean());
        EXPECT_FALSE(w.AttVFDone(att).toBoolean());
        EXPECT_EQ(w.ScoreMinimum(att).toDouble(), w.InScoreMinimum(att).toDouble());
        EXPECT_EQ(w.ScoreMaximum(att).toDouble(), w.InScoreMaximum(att).toDouble());
        EXPECT_EQ(w.ScoreMiddle(att).toDouble(), w.InScoreMiddle(att).toDouble());
    }
    auto* list = child<QComboBox>("cmbSelAtt");
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->itemText(0), "Cost");
    EXPECT_EQ(list->itemText(2), "Delay");
    EXPECT_EQ(minBox()->text(), "10");
    EXPECT_EQ(maxBox()->text(), "50");
    EXPECT_EQ(sink.messages(), std::vector<QString>{"Specify single-attribute value functions."});
}

TEST_F(RangePanel, MinimumAboveTheHostsIsRefusedAndReset) {
    replaceText(minBox(), "12.5");
    pressEnter(minBox());
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "The score should be less than or equal to 10!");
    EXPECT_EQ(boxes[0].title, "QUARN");
    EXPECT_EQ(boxes[0].icon, QMessageBox::Warning);
    EXPECT_EQ(minBox()->text(), "10");
    EXPECT_FALSE(wizardData().AttRangeSet(0).toBoolean());
    EXPECT_EQ(wizardData().ScoreMinimum(0).toDouble(), 10.0);
}

TEST_F(RangePanel, MaximumBelowTheHostsIsRefusedAndReset) {
    chooseAttribute(2);
    replaceText(maxBox(), "7");
    pressEnter(maxBox());
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "The score should be larger than or equal to 7.5!");
    EXPECT_EQ(boxes[0].title, "QUARN");
    EXPECT_EQ(boxes[0].icon, QMessageBox::Warning);
    EXPECT_EQ(maxBox()->text(), "7.5");
    EXPECT_FALSE(wizardData().AttRangeSet(2).toBoolean());
}

TEST_F(RangePanel, ResetValuesAreFormattedAsScores) {
    WizardData& w = wizardData();
    w.InScoreMinimum(0) = 2.499;
    replaceText(minBox(), "3");
    pressEnter(minBox());
    EXPECT_EQ(minBox()->text(), "2.5");
    w.InScoreMinimum(0) = 5.0;
    replaceText(minBox(), "6");
    pressEnter(minBox());
    EXPECT_EQ(minBox()->text(), "5");
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].text, "The score should be less than or equal to 2.5!");
    EXPECT_EQ(boxes[1].text, "The score should be less than or equal to 5!");
}

TEST_F(RangePanel, EqualAndWiderScoresAreAcceptedAndConfirmTheRange) {
    WizardData& w = wizardData();
    replaceText(minBox(), "10");
    pressEnter(minBox());
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(w.AttRangeSet(0).toBoolean());
    replaceText(minBox(), "-2.5");
    pressEnter(minBox());
    replaceText(maxBox(), "60");
    pressEnter(maxBox());
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(w.ScoreMinimum(0).toDouble(), -2.5);
    EXPECT_EQ(w.ScoreMaximum(0).toDouble(), 60.0);
    const QStringList texts = drawnTexts(*scopeChart());
    EXPECT_TRUE(texts.contains("Default range: 10 to 50")) << texts.join('|').toStdString();
    EXPECT_TRUE(texts.contains("End points: -2.5 to 60")) << texts.join('|').toStdString();
}

TEST_F(RangePanel, LeavingTheBoxChecksItLikeEnter) {
    replaceText(maxBox(), "40");
    EXPECT_TRUE(boxes.empty()) << "typing alone checks nothing";
    leaveBox(maxBox());
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(maxBox()->text(), "50");

    // Switching to another window is no leaving of the box.
    replaceText(maxBox(), "40");
    QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(maxBox(), &away);
    EXPECT_EQ(boxes.size(), 1u);
    EXPECT_EQ(maxBox()->text(), "40");
}

TEST_F(RangePanel, TextThatIsNoNumberReadsAsZero) {
    // "abc" reads as 0, which widens the minimum 10 down to 0.
    minBox()->setText("abc");
    pressEnter(minBox());
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(wizardData().ScoreMinimum(0).toDouble(), 0.0);
    // and narrows the maximum, which is refused.
    maxBox()->setText("");
    pressEnter(maxBox());
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "The score should be larger than or equal to 50!");
}

TEST_F(RangePanel, TypingASecondDecimalPointRemovesIt) {
    minBox()->clear();
    typeText(minBox(), "1.2.3");
    EXPECT_EQ(minBox()->text(), "1.23");
    minBox()->clear();
    typeText(minBox(), "..5");
    EXPECT_EQ(minBox()->text(), ".5");
    // A point typed before an existing one is the one that goes.
    minBox()->setText("1.5");
    minBox()->setCursorPosition(1);
    sendKey(minBox(), Qt::Key_Period, ".");
    EXPECT_EQ(minBox()->text(), "1.5");
    EXPECT_EQ(minBox()->cursorPosition(), 1);
}

TEST_F(RangePanel, PastingKeysAreSwallowed) {
    QApplication::clipboard()->setText("99");
    minBox()->setText("1");
    minBox()->end(false);
    sendKey(minBox(), Qt::Key_V, QString(QChar(22)), Qt::ControlModifier);
    sendKey(minBox(), Qt::Key_Insert, QString(), Qt::ShiftModifier);
    EXPECT_EQ(minBox()->text(), "1");
    // Other keys still reach the box.
    sendKey(minBox(), Qt::Key_4, "4");
    EXPECT_EQ(minBox()->text(), "14");
}

TEST_F(RangePanel, UnconfirmedAttributeShowsTheHostsRange) {
    // Chart and boxes follow the chosen attribute, whatever was typed before.
    minBox()->setText("3");
    maxBox()->setText("99");
    chooseAttribute(1);
    EXPECT_EQ(wizardData().SelAtt, 1);
    QStringList texts = drawnTexts(*scopeChart());
    EXPECT_TRUE(texts.contains("Comfort"));
    EXPECT_TRUE(texts.contains("End points: 0 to 5 (the default range)"))
        << texts.join('|').toStdString();
    EXPECT_EQ(minBox()->text(), "0");
    EXPECT_EQ(maxBox()->text(), "5");

    // A confirmed attribute shows its working range when chosen again.
    replaceText(maxBox(), "8");
    pressEnter(maxBox());
    chooseAttribute(0);
    chooseAttribute(1);
    texts = drawnTexts(*scopeChart());
    EXPECT_TRUE(texts.contains("End points: 0 to 8")) << texts.join('|').toStdString();
    EXPECT_TRUE(texts.contains("Default range: 0 to 5"));
    EXPECT_EQ(maxBox()->text(), "8");
}

TEST_F(RangePanel, ChecksApplyToTheChosenAttribute) {
    chooseAttribute(2);
    replaceText(minBox(), "2.5");
    pressEnter(minBox());
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(wizardData().AttRangeSet(2).toBoolean());
    EXPECT_FALSE(wizardData().AttRangeSet(0).toBoolean());
}

}  // namespace
}  // namespace kelmar::test
