// Moving through the three panels: captions, buttons, the value range, the
// technique options and what the page raises on Next, Finish and Cancel.
#include "SettingsFixture.h"

namespace kelmar::test {
namespace {

using PageFlow = SettingsPageTest;

const char* const kRanges = "Kelmar: Specify Potential Performance Ranges";
const char* const kValueRange = "Kelmar: Determine Value Range for Value Measurement";
const char* const kTechnique = "Kelmar: Select a Technique to Construct Value Functions";

TEST_F(PageFlow, CaptionsButtonsAndPanelsFollowNextAndBack) {
    // button nullptr: as loaded. Back leaves the buttons as Next set them, and does nothing on the first panel.
    const struct { const char* button; int panel; const char* caption; bool back, finish, next; } steps[] = {
        {nullptr, 0, kRanges, false, false, true},   {"cmdNext", 1, kValueRange, true, true, true},
        {"cmdNext", 2, kTechnique, true, true, true}, {"cmdBack", 1, kValueRange, true, true, true},
        {"cmdBack", 0, kRanges, true, true, true},    {"cmdBack", 0, kRanges, true, true, true},
    };
    for (const auto& s : steps) {
        SCOPED_TRACE(std::string(s.button ? s.button : "load") + " to " + s.caption);
        if (s.button != nullptr) click(s.button);
        EXPECT_EQ(page->windowTitle(), s.caption);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(child<QWidget>(QStringLiteral("picPanel_%1").arg(i))->isHidden(), i != s.panel);
        EXPECT_EQ(child<QPushButton>("cmdBack")->isEnabled(), s.back);
        EXPECT_EQ(child<QPushButton>("cmdFinish")->isEnabled(), s.finish);
        EXPECT_EQ(child<QPushButton>("cmdNext")->isEnabled(), s.next);
    }
    EXPECT_EQ(sink.events,
              (std::vector<std::string>{
                  "Msg:Specify single-attribute value functions.",
                  "Msg:Specify value ranges of single-attribute value functions.",
                  "Msg:Select one of techniques to construct single-attibute value functions."}));
}

TEST_F(PageFlow, ValueRangeListSetsTheLabelsAndNextTakesItsValue) {
    const auto ticks = [this] {
        QStringList out;
        for (int i = 0; i < 5; ++i) out << child<QLabel>(QStringLiteral("ChartLbl_%1").arg(i))->text();
        return out.join('|');
    };
    click("cmdNext");
    auto* list = child<QComboBox>("cmbMaxVal");
    EXPECT_EQ(list->currentIndex(), 1);
    EXPECT_EQ(ticks(), "100|75|50|25|0");
    // 1, then 100, then 1 again: the decimals come back.
    for (int index : {0, 1, 0}) list->setCurrentIndex(index);
    EXPECT_EQ(wizardData().MaxVal, 1);
    EXPECT_EQ(ticks(), "1.00|0.75|0.50|0.25|0.00");
    list->setCurrentIndex(1);
    EXPECT_EQ(wizardData().MaxVal, 100);
    EXPECT_EQ(ticks(), "100|75|50|25|0");

    list->setCurrentIndex(0);
    wizardData().SelAtt = 2;
    click("cmdNext");
    EXPECT_EQ(wizardData().SelAtt, 0);
    EXPECT_EQ(wizardData().MaxVal, 1);

    // A host maximum other than 1 or 100 selects nothing and leaves the
    // labels as they were; Next then gives 0.
    setUpWith(10);
    click("cmdNext");
    EXPECT_EQ(child<QComboBox>("cmbMaxVal")->currentIndex(), -1);
    EXPECT_EQ(ticks(), "||||");
    click("cmdNext");
    EXPECT_EQ(wizardData().MaxVal, 0);
}

TEST_F(PageFlow, OneTechniqueAcrossBothFrames) {
    // By technique id; the first four on the numerical estimations tab.
    const struct { const char* name; const char* caption; } options[8] = {
        {"optMidPoint", "Midpoint Setting"},   {"optDirectRating", "Direct Rating"},
        {"optCurveDrawing", "Curve Drawing"},  {"optCategoryIdn", "Category Identification"},
        {"optDiffStandSeq", "Difference Standard Sequence"}, {"optBisection", "Bisection"},
        {"optVarProbability", "Variable Probability Judgment"},
        {"optVarCertainty", "Variable Certainty Equivalent Judgment"}};
    QStringList pictures;
    for (int id = 0; id < 8; ++id) {
        SCOPED_TRACE(options[id].name);
        auto* option = child<QRadioButton>(options[id].name);
        EXPECT_EQ(option->parentWidget()->objectName(), id < 4 ? "frameNumEst" : "frameIndEst");
        option->click();
        option->click();  // clicking the selected option keeps it selected
        EXPECT_EQ(wizardData().SelTechnique, id);
        EXPECT_EQ(child<QLabel>("lblSelTechnique")->text(),
                  QStringLiteral("Selected technique: ") + options[id].caption);
        for (int other = 0; other < 8; ++other)
            EXPECT_EQ(child<QRadioButton>(options[other].name)->isChecked(), other == id);
        const QStringList texts = drawnTexts(*child<DrawSurface>("picTechniques"));
        ASSERT_FALSE(texts.isEmpty());
        EXPECT_FALSE(pictures.contains(texts.first())) << "each has its own picture";
        pictures << texts.first();
    }
}

TEST_F(PageFlow, TabsSwitchFramesButNotTheTechnique) {
    child<QRadioButton>("optCurveDrawing")->click();
    auto* tabs = child<QTabBar>("tsTechniques");
    for (int tab : {1, 0}) {
        tabs->setCurrentIndex(tab);
        EXPECT_EQ(child<QWidget>("frameNumEst")->isHidden(), tab == 1);
        EXPECT_EQ(child<QWidget>("frameIndEst")->isHidden(), tab == 0);
        EXPECT_EQ(wizardData().SelTechnique, 2);
    }
}

TEST_F(PageFlow, NextOnTheTechniquePanelHandsOverToTheTechniquePage) {
    click("cmdNext");
    click("cmdNext");
    child<QRadioButton>("optVarCertainty")->click();
    sink.events.clear();
    page->move(120, 80);
    click("cmdNext");
    EXPECT_EQ(sink.events, (std::vector<std::string>{"HideForm(8)", "ShowForm(7)"}));
    EXPECT_EQ(sink.showLeft, page->pageLeft());
    EXPECT_EQ(sink.showTop, page->pageTop());
}

TEST_F(PageFlow, BackToTheRangesShowsTheAttributeNextStoresAndKeepsBuiltFunctions) {
    WizardData& w = wizardData();
    chooseAttribute(2);
    minBox()->setText("-2.5");
    pressEnter(minBox());
    click("cmdNext");
    click("cmdNext");  // the technique pages start from the first attribute
    // A technique page builds a curve for the first attribute and goes on
    // with the second one.
    const double curve[5] = {0, 0.45, 0.7, 0.9, 1};
    for (int k = 0; k < 5; ++k) w.SmpY(0, k) = curve[k];
    w.VFunType(0) = std::int16_t(1);
    w.VFunParA(0) = QStringLiteral("0.123456");
    w.SelAtt = 1;

    click("cmdBack");
    click("cmdBack");
    EXPECT_EQ(child<QComboBox>("cmbSelAtt")->currentIndex(), 1);
    EXPECT_EQ(minBox()->text(), "0");
    EXPECT_EQ(maxBox()->text(), "5");
    EXPECT_TRUE(drawnTexts(*child<DrawSurface>("picScopeChart")).contains("Comfort"));

    click("cmdNext");
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(w.ScoreMinimum(1).toDouble(), 0.0);
    EXPECT_EQ(w.ScoreMaximum(1).toDouble(), 5.0);
    EXPECT_EQ(w.ScoreMinimum(2).toDouble(), -2.5);
    EXPECT_EQ(w.ScoreMaximum(2).toDouble(), 7.5);
    EXPECT_EQ(w.VFunType(0).toDouble(), 1.0);
    EXPECT_EQ(w.VFunParA(0).toString(), "0.123456");
    for (int k = 0; k < 5; ++k) EXPECT_EQ(w.SmpY(0, k).toDouble(), curve[k]) << k;
}

TEST_F(PageFlow, FinishExportsEveryValueThenUnloads) {
    click("cmdNext");
    sink.events.clear();
    click("cmdFinish");
    EXPECT_EQ(sink.events, (std::vector<std::string>{"ExportResults", "UnloadKelmar"}));
    EXPECT_EQ(sink.exportedMaxVal, 100);
    // Alternative 0 scores a quarter up every (linear) range; the cost
    // attribute falls.
    EXPECT_NEAR(sink.exportedValues(0, 0).toDouble(), 25.0, 1e-9);
    EXPECT_NEAR(sink.exportedValues(0, 2).toDouble(), 75.0, 1e-9);
}

TEST_F(PageFlow, CancelAndClosingExportNothing) {
    sink.events.clear();
    click("cmdCancel");
    page->close();
    EXPECT_EQ(sink.events, (std::vector<std::string>{"UnloadKelmar", "UnloadKelmar"}));
}

}  // namespace
}  // namespace kelmar::test
