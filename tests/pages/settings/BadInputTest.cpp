// What the range boxes and the lists of the settings page do with input that
// is not what they ask for, with boxes that show a rounded range, and with a
// step that fails half-way.
#include "SettingsFixture.h"

#include <cmath>
#include <tuple>

namespace kelmar::test {
namespace {

using BadInput = SettingsPageTest;

const QString kNotANumber = QStringLiteral("The score should be a number!");

// A complete number in any form is taken as it stands; anything else is
// refused with a message, and the box shows again what it stood for.
TEST_F(BadInput, BoxesTakeOnlyACompleteNumber) {
    const QString longDigits(400, QLatin1Char('9'));
    const QString longText = QStringLiteral("12") + QString(5000, QLatin1Char('x'));
    const QString refused[] = {
        "abc", "", "   ", "15,000", "12abc", "1.2.3", "+-5", "5-", "1e", "0x10", ".", "1e400",
        longDigits, longText, "5%", "inf", "NaN", QStringLiteral("\uFF11\uFF12"), "1,5"};
    const struct { QString text; bool maximum; double stored; } accepted[] = {
        {" -5 ", false, -5},   {"+5", false, 5},       {".5", false, 0.5},  {"5.", false, 5},
        {"-1E3", false, -1000}, {"1e-400", false, 0},  {"1d2", true, 100},  {"1e30", true, 1e30},
        {"00060", true, 60},   {"50.000000001", true, 50.000000001},
    };
    std::vector<std::tuple<QString, bool, double>> cases;
    for (const QString& text : refused)
        for (bool maximum : {false, true}) cases.emplace_back(text, maximum, std::nan(""));
    for (const auto& c : accepted) cases.emplace_back(c.text, c.maximum, c.stored);
    for (const auto& [text, maximum, stored] : cases) {
        SCOPED_TRACE((maximum ? "max " : "min ") + text.left(20).toStdString());
        setUpWith(100);
        QLineEdit* box = maximum ? maxBox() : minBox();
        box->setText(text);
        pressReturn(box);
        const bool taken = !std::isnan(stored);
        EXPECT_EQ(messages, taken ? std::vector<QString>{} : std::vector<QString>{kNotANumber});
        WizardData& w = wizardData();
        EXPECT_EQ(w.AttRangeSet(0).toBoolean(), taken);
        if (taken) {
            EXPECT_EQ((maximum ? w.ScoreMaximum : w.ScoreMinimum)(0).toDouble(), stored);
            continue;
        }
        EXPECT_EQ(box->text(), maximum ? "50" : "10") << "the box shows what it stood for";
        EXPECT_EQ(w.ScoreMinimum(0).toDouble(), 10.0);
        EXPECT_EQ(w.ScoreMaximum(0).toDouble(), 50.0);
    }
}

// A box filled from 0.125 shows 0.13 and stands for 0.125 (the random-input
// run confirms such boxes unchanged and checks the range never narrows).
// Any other text is a score of its own: 0.131 narrows the range, and the box
// given back stands for the host's value again; 0.12 widens it.
TEST_F(BadInput, RoundedBoxesStandForTheExactRangeTheyWereFilledFrom) {
    WizardData& w = wizardData();
    w.InScoreMinimum(1) = 0.125;
    chooseAttribute(0);
    chooseAttribute(1);
    typeText(minBox(), "0.131");
    pressReturn(minBox());
    EXPECT_EQ(messages, std::vector<QString>{"The score should be less than or equal to 0.13!"});
    EXPECT_EQ(minBox()->text(), "0.13");
    click("cmdNext");
    EXPECT_EQ(w.ScoreMinimum(1).toDouble(), 0.125);
    click("cmdBack");
    typeText(minBox(), "0.12");
    click("cmdNext");
    EXPECT_EQ(w.ScoreMinimum(1).toDouble(), 0.12);
}

TEST_F(BadInput, AFailingNextLeavesThePageAsItWasWithEveryButtonWorking) {
    std::vector<QString> errors;
    setMessageBoxHook([&](QMessageBox& box) {
        errors.push_back(box.text());
        return QMessageBox::Ok;
    });
    WizardData& w = wizardData();
    minBox()->setText("-1e300");
    maxBox()->setText("1e300");
    const WizardData before = w;
    click("cmdNext");
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_TRUE(errors[0].startsWith("Run-time error '6':")) << errors[0].toStdString();
    EXPECT_EQ(page->currentPanel(), 0);
    EXPECT_FALSE(child<QWidget>("picPanel_0")->isHidden());
    EXPECT_TRUE(child<QWidget>("picPanel_1")->isHidden());
    EXPECT_FALSE(child<QPushButton>("cmdFinish")->isEnabled());
    EXPECT_EQ(minBox()->text() + " " + maxBox()->text(), "-1e300 1e300");
    EXPECT_EQ(w.ScoreMinimum(0).toDouble(), 10.0);
    EXPECT_FALSE(w.AttRangeSet(0).toBoolean());
    EXPECT_EQ(w.AttPropertyCopy.isAllocated(), before.AttPropertyCopy.isAllocated());

    // The same range confirmed with Enter in a box fails the same way.
    pressReturn(maxBox());
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_TRUE(errors[1].startsWith("Run-time error '6':"));
    EXPECT_EQ(maxBox()->text(), "1e300");
    EXPECT_EQ(w.ScoreMaximum(0).toDouble(), 50.0);
    EXPECT_FALSE(w.AttRangeSet(0).toBoolean());

    // A range the functions can be built on goes on as usual.
    minBox()->setText("-5");
    maxBox()->setText("60");
    click("cmdNext");
    EXPECT_EQ(errors.size(), 2U);
    EXPECT_EQ(page->currentPanel(), 1);
    EXPECT_TRUE(child<QPushButton>("cmdFinish")->isEnabled());
    EXPECT_EQ(w.ScoreMinimum(0).toDouble(), -5.0);
    click("cmdBack");
    EXPECT_EQ(page->currentPanel(), 0);
    setMessageBoxHook({});
}

TEST_F(BadInput, ListsIgnoreNoChoiceAndKeysOnlyMoveBetweenTheirItems) {
    WizardData& w = wizardData();
    auto* attributes = child<QComboBox>("cmbSelAtt");
    chooseAttribute(2);
    attributes->setCurrentIndex(-1);
    EXPECT_EQ(w.SelAtt, 2) << "no choice keeps the attribute";
    // Keys on the list choose among its items only.
    const struct { int key; const char* text; int index; } keys[] = {
        {Qt::Key_Home, "", 0}, {Qt::Key_Down, "", 1}, {Qt::Key_Z, "z", 1},
        {Qt::Key_End, "", 2},  {Qt::Key_Down, "", 2}, {Qt::Key_Delete, "", 2},
    };
    for (const auto& k : keys) {
        sendKey(attributes, k.key, QString::fromLatin1(k.text));
        EXPECT_EQ(attributes->currentIndex(), k.index) << k.key;
        EXPECT_EQ(w.SelAtt, k.index) << k.key;
    }
    EXPECT_TRUE(messages.empty());
}

}  // namespace
}  // namespace kelmar::test
