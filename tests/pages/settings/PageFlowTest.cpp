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
    const struct { const char* button; int panel; const char* caption; bool back, finish; } steps[] = {
        {nullptr, 0, kRanges, false, false},   {"cmdNext", 1, kValueRange, true, true},
        {"cmdNext", 2, kTechnique, true, true}, {"cmdBack", 1, kValueRange, true, true},
        {"cmdBack", 0, kRanges, true, true},    {"cmdBack", 0, kRanges, true, true},
    };
    for (const auto& s : steps) {
        SCOPED_TRACE(std::string(s.button ? s.button : "load") + " to " + s.caption);
        if (s.button != nullptr) click(s.button);
        EXPECT_EQ(page->windowTitle(), s.caption);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(child<QWidget>(QStringLiteral("picPanel_%1").arg(i))->isHidden(), i != s.panel);
        EXPECT_EQ(child<QPushButton>("cmdBack")->isEnabled(), s.back);
        EXPECT_EQ(child<QPushButton>("cmdFinish")->isEnabled(), s.finish);
        EXPECT_TRUE(child<QPushButton>("cmdNext")->isEnabled());
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
    // 100, 1, 100, 1: the decimals come and go.
    for (int index : {1, 0, 1, 0}) {
        list->setCurrentIndex(index);
        EXPECT_EQ(wizardData().MaxVal, index == 0 ? 1 : 100);
        EXPECT_EQ(ticks(), index == 0 ? "1.00|0.75|0.50|0.25|0.00" : "100|75|50|25|0");
    }
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

TEST_F(PageFlow, OneTechniqueAcrossBothFramesAndTabsDoNotChangeIt) {
    // By technique id.
    const char* const options[8] = {"optMidPoint",    "optDirectRating", "optCurveDrawing",
                                    "optCategoryIdn", "optDiffStandSeq", "optBisection",
                                    "optVarProbability", "optVarCertainty"};
    QStringList pictures;
    for (int id = 0; id < 8; ++id) {
        SCOPED_TRACE(options[id]);
        auto* option = child<QRadioButton>(options[id]);
        option->click();
        option->click();  // clicking the selected option keeps it selected
        EXPECT_EQ(wizardData().SelTechnique, id);
        for (int other = 0; other < 8; ++other) EXPECT_EQ(child<QRadioButton>(options[other])->isChecked(), other == id);
        pictures << drawnTexts(*child<DrawSurface>("picTechniques")).value(0);
    }
    pictures.removeDuplicates();
    EXPECT_EQ(pictures.size(), 8) << "each has its own picture";

    child<QRadioButton>("optCurveDrawing")->click();
    for (int tab : {1, 0}) {
        child<QTabBar>("tsTechniques")->setCurrentIndex(tab);
        EXPECT_EQ(child<QWidget>("frameNumEst")->isHidden(), tab == 1);
        EXPECT_EQ(child<QWidget>("frameIndEst")->isHidden(), tab == 0);
        EXPECT_EQ(wizardData().SelTechnique, 2);
    }
}

TEST_F(PageFlow, NextHandsOverFinishExportsCancelAndClosingExportNothing) {
    // nexts: Next clicks before the button; nullptr closes the page.
    const struct { int nexts; const char* button; std::vector<std::string> events; } cases[] = {
        {2, "cmdNext", {"HideForm(8)", "ShowForm(7)"}},
        {1, "cmdFinish", {"ExportResults", "UnloadKelmar"}},
        {1, "cmdCancel", {"UnloadKelmar"}},
        {0, nullptr, {"UnloadKelmar"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.button ? c.button : "close");
        setUpWith(100);
        for (int i = 0; i < c.nexts; ++i) click("cmdNext");
        child<QRadioButton>("optVarCertainty")->click();
        page->move(120, 80);
        sink.events.clear();
        c.button ? click(c.button) : void(page->close());
        EXPECT_EQ(sink.events, c.events);
    }
    EXPECT_EQ(sink.showLeft, page->pageLeft());
    EXPECT_EQ(sink.showTop, page->pageTop());
    EXPECT_EQ(sink.exportedMaxVal, 100);
    // Alternative 0 scores a quarter up every (linear) range; the cost
    // attribute falls.
    EXPECT_NEAR(sink.exportedValues(0, 0).toDouble(), 25.0, 1e-9);
    EXPECT_NEAR(sink.exportedValues(0, 2).toDouble(), 75.0, 1e-9);
}

}  // namespace
}  // namespace kelmar::test
