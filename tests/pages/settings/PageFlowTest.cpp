// Moving through the three panels: captions, buttons, the value range, the
// technique options and what the page raises on Next, Finish and Cancel.
#include "SettingsFixture.h"

namespace kelmar::test {
namespace {

using PageFlow = SettingsPageTest;

TEST_F(PageFlow, CaptionsButtonsAndPanelsFollowNextAndBack) {
    EXPECT_EQ(page->windowTitle(), "Kelmar: Specify Potential Performance Ranges");
    EXPECT_EQ(visiblePanel(), 0);
    EXPECT_FALSE(enabled("cmdBack"));
    EXPECT_FALSE(enabled("cmdFinish"));
    EXPECT_TRUE(enabled("cmdNext"));

    click("cmdNext");
    EXPECT_EQ(page->windowTitle(), "Kelmar: Determine Value Range for Value Measurement");
    EXPECT_EQ(visiblePanel(), 1);
    EXPECT_EQ(page->currentPanel(), 1);
    EXPECT_TRUE(enabled("cmdBack"));
    EXPECT_TRUE(enabled("cmdFinish"));
    EXPECT_TRUE(enabled("cmdNext"));

    click("cmdNext");
    EXPECT_EQ(page->windowTitle(), "Kelmar: Select a Technique to Construct Value Functions");
    EXPECT_EQ(visiblePanel(), 2);

    click("cmdBack");
    EXPECT_EQ(page->windowTitle(), "Kelmar: Determine Value Range for Value Measurement");
    EXPECT_EQ(visiblePanel(), 1);
    click("cmdBack");
    EXPECT_EQ(page->windowTitle(), "Kelmar: Specify Potential Performance Ranges");
    EXPECT_EQ(visiblePanel(), 0);
    // Back on the first panel does nothing; the buttons stay as Next left them.
    click("cmdBack");
    EXPECT_EQ(visiblePanel(), 0);
    EXPECT_EQ(page->currentPanel(), 0);
    EXPECT_TRUE(enabled("cmdFinish"));

    EXPECT_EQ(sink.messages(),
              (std::vector<QString>{
                  "Specify single-attribute value functions.",
                  "Specify value ranges of single-attribute value functions.",
                  "Select one of techniques to construct single-attibute value functions."}));
}

TEST_F(PageFlow, NextOnTheRangePanelChecksBothBoxesAndStoresTheRange) {
    replaceText(minBox(), "11");
    replaceText(maxBox(), "70");
    click("cmdNext");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "The score should be less than or equal to 10!");
    WizardData& w = wizardData();
    EXPECT_EQ(w.ScoreMinimum(0).toDouble(), 10.0);
    EXPECT_EQ(w.ScoreMaximum(0).toDouble(), 70.0);
    EXPECT_TRUE(w.AttRangeSet(0).toBoolean());
    EXPECT_EQ(w.ScoreMinimumCopy(0).toDouble(), 10.0);
    EXPECT_EQ(w.ScoreMaximumCopy(0).toDouble(), 70.0);
    EXPECT_EQ(w.AttPropertyCopy(2).toDouble(), 1.0);
    // The panel moves on even after a refused score.
    EXPECT_EQ(visiblePanel(), 1);
}

TEST_F(PageFlow, ValueRangeFollowsTheHostAndTheList) {
    click("cmdNext");
    auto* list = child<QComboBox>("cmbMaxVal");
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(list->itemText(0), "1");
    EXPECT_EQ(list->itemText(1), "100");
    EXPECT_EQ(list->currentIndex(), 1);
    auto tick = [this](int i) {
        return child<QLabel>(QStringLiteral("ChartLbl_%1").arg(i).toLatin1().constData())->text();
    };
    EXPECT_EQ(tick(0), "100");
    EXPECT_EQ(tick(4), "0");
    EXPECT_EQ(child<QLabel>("lblChartTitle")->text(), "VALUE FUNCION CHART");
    EXPECT_EQ(child<QLabel>("lblValues")->text(), "V(S)");

    list->setCurrentIndex(0);
    EXPECT_EQ(wizardData().MaxVal, 1);
    EXPECT_EQ(tick(0), "1.00");
    EXPECT_EQ(tick(1), "0.75");
    EXPECT_EQ(tick(4), "0.00");
    list->setCurrentIndex(1);
    EXPECT_EQ(wizardData().MaxVal, 100);
    EXPECT_EQ(tick(2), "50");
    list->setCurrentIndex(0);
    EXPECT_EQ(tick(2), "0.50");

    chooseAttribute(2);  // the list on the range panel
    wizardData().SelAtt = 2;
    click("cmdNext");
    EXPECT_EQ(wizardData().SelAtt, 0);
    EXPECT_EQ(wizardData().MaxVal, 1);
}

class PageFlowUnknownMaximum : public SettingsPageTest {
protected:
    void SetUp() override { setUpWith(10); }
};

TEST_F(PageFlowUnknownMaximum, SelectsNothingAndNextGivesZero) {
    click("cmdNext");
    EXPECT_EQ(child<QComboBox>("cmbMaxVal")->currentIndex(), -1);
    EXPECT_EQ(child<QLabel>("ChartLbl_0")->text(), "") << "labels are left as they were";
    click("cmdNext");
    EXPECT_EQ(wizardData().MaxVal, 0);
}

TEST_F(PageFlow, OneTechniqueAcrossBothFrames) {
    auto* direct = child<QRadioButton>("optDirectRating");
    auto* bisection = child<QRadioButton>("optBisection");
    auto* label = child<QLabel>("lblSelTechnique");
    EXPECT_EQ(direct->parentWidget()->objectName(), "frameNumEst");
    EXPECT_EQ(bisection->parentWidget()->objectName(), "frameIndEst");

    direct->click();
    EXPECT_EQ(wizardData().SelTechnique, 1);
    EXPECT_EQ(label->text(), "Selected technique: Direct Rating");
    bisection->click();
    EXPECT_EQ(wizardData().SelTechnique, 5);
    EXPECT_FALSE(direct->isChecked());
    EXPECT_TRUE(bisection->isChecked());
    EXPECT_EQ(label->text(), "Selected technique: Bisection");
    // Clicking the selected option keeps it selected.
    bisection->click();
    EXPECT_TRUE(bisection->isChecked());

    const char* names[8] = {"optMidPoint",     "optDirectRating", "optCurveDrawing",
                            "optCategoryIdn",  "optDiffStandSeq", "optBisection",
                            "optVarProbability", "optVarCertainty"};
    const char* captions[8] = {"Midpoint Setting",
                               "Direct Rating",
                               "Curve Drawing",
                               "Category Identification",
                               "Difference Standard Sequence",
                               "Bisection",
                               "Variable Probability Judgment",
                               "Variable Certainty Equivalent Judgment"};
    auto* picture = child<DrawSurface>("picTechniques");
    QStringList firstTexts;
    for (int id = 0; id < 8; ++id) {
        child<QRadioButton>(names[id])->click();
        EXPECT_EQ(wizardData().SelTechnique, id);
        EXPECT_EQ(label->text(), QStringLiteral("Selected technique: ") + captions[id]);
        int checked = 0;
        for (const char* n : names) checked += child<QRadioButton>(n)->isChecked() ? 1 : 0;
        EXPECT_EQ(checked, 1);
        // Each technique has its own picture.
        const QStringList texts = drawnTexts(*picture);
        ASSERT_FALSE(texts.isEmpty());
        EXPECT_FALSE(firstTexts.contains(texts.first())) << id;
        firstTexts << texts.first();
    }
}

TEST_F(PageFlow, TabsSwitchFramesButNotTheTechnique) {
    child<QRadioButton>("optCurveDrawing")->click();
    auto* tabs = child<QTabBar>("tsTechniques");
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(0), "Numerical estimations");
    EXPECT_EQ(tabs->tabText(1), "Indifference estimations");
    auto* numerical = child<QWidget>("frameNumEst");
    auto* indifference = child<QWidget>("frameIndEst");
    tabs->setCurrentIndex(1);
    EXPECT_TRUE(numerical->isHidden());
    EXPECT_FALSE(indifference->isHidden());
    EXPECT_EQ(wizardData().SelTechnique, 2);
    EXPECT_TRUE(child<QRadioButton>("optCurveDrawing")->isChecked());
    tabs->setCurrentIndex(0);
    EXPECT_FALSE(numerical->isHidden());
    EXPECT_TRUE(indifference->isHidden());
    EXPECT_EQ(wizardData().SelTechnique, 2);
}

TEST_F(PageFlow, NextOnTheTechniquePanelHandsOverToTheTechniquePage) {
    click("cmdNext");
    click("cmdNext");
    child<QRadioButton>("optVarCertainty")->click();
    sink.events.clear();
    page->move(120, 80);
    click("cmdNext");
    ASSERT_EQ(sink.names(), (std::vector<std::string>{"HideForm", "ShowForm"}));
    EXPECT_EQ(sink.events[0].frmID, 8);
    EXPECT_EQ(sink.events[1].frmID, 7);
    EXPECT_EQ(sink.events[1].left, page->pageLeft());
    EXPECT_EQ(sink.events[1].top, page->pageTop());
    EXPECT_EQ(page->currentPanel(), 2);
}

TEST_F(PageFlow, FinishExportsEveryValueThenUnloads) {
    click("cmdNext");
    child<QComboBox>("cmbMaxVal")->setCurrentIndex(1);
    sink.events.clear();
    click("cmdFinish");
    ASSERT_EQ(sink.names(), (std::vector<std::string>{"ExportResults", "UnloadKelmar"}));
    EXPECT_EQ(sink.events[0].maxVal, 100);
    // Alternative 0 scores a quarter up every (linear) range.
    EXPECT_NEAR(sink.exportedValues(0, 0).toDouble(), 25.0, 1e-9);
    EXPECT_NEAR(sink.exportedValues(1, 1).toDouble(), 100.0, 1e-9);
    ASSERT_TRUE(sink.exportedTechniques.isArray());
    EXPECT_EQ(sink.exportedTechniques.toArray().ubound(), 2);
}

TEST_F(PageFlow, CancelAndClosingExportNothing) {
    sink.events.clear();
    click("cmdCancel");
    EXPECT_EQ(sink.names(), std::vector<std::string>{"UnloadKelmar"});
    sink.events.clear();
    page->close();
    EXPECT_EQ(sink.names(), std::vector<std::string>{"UnloadKelmar"});
}

TEST_F(PageFlow, EveryPanelHasTheWizardButtons) {
    const char* buttons[5][2] = {{"cmdBack", "< &Back"},
                                 {"cmdNext", "&Next >"},
                                 {"cmdFinish", "&Finish"},
                                 {"cmdCancel", "&Cancel"},
                                 {"cmdHelp", "&Help"}};
    for (auto& b : buttons) {
        auto* button = child<QPushButton>(b[0]);
        EXPECT_EQ(button->text(), b[1]);
        // Not inside a panel, so the same buttons serve all three.
        EXPECT_EQ(button->parentWidget(), page.get());
        EXPECT_FALSE(button->autoDefault()) << b[0];
    }
}

}  // namespace
}  // namespace kelmar::test
