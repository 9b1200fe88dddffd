// A settings page on a small problem, driven through its controls, with the
// events it raises and the message boxes it shows recorded.
#pragma once

#include "../PageTestKit.h"
#include "pages/settings/frmKelSettings.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTabBar>

#include <gtest/gtest.h>

namespace kelmar::test {

// Three attributes: "Cost" 10 .. 50, "Comfort" 0 .. 5, "Delay" 2.5 .. 7.5
// (cost-oriented); two alternatives, the first a quarter up every range, the
// second at the maxima; linear functions of five points.
inline void fillProblem(std::int16_t inMaxVal) {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AltNum = 2;
    w.AttNum = 3;
    w.InMaxVal = inMaxVal;
    for (VariantArray* a : {&w.AltPScore, &w.AttVData}) a->redim(0, 1, 0, 2);
    for (VariantArray* a : {&w.AttName, &w.AttProperty, &w.InScoreMinimum, &w.InScoreMiddle,
                            &w.InScoreMaximum, &w.InVFunType, &w.SmpSize})
        a->redim(0, 2);
    for (VariantArray* a : {&w.SmpX, &w.SmpY}) a->redim(0, 2, 0, 10);
    const double mins[3] = {10, 0, 2.5}, maxs[3] = {50, 5, 7.5};
    const char* names[3] = {"Cost", "Comfort", "Delay"};
    for (int att = 0; att < 3; ++att) {
        w.AltPScore(0, att) = mins[att] + (maxs[att] - mins[att]) * 0.25;
        w.AltPScore(1, att) = w.InScoreMaximum(att) = maxs[att];
        w.InScoreMinimum(att) = mins[att];
        w.InScoreMiddle(att) = (mins[att] + maxs[att]) / 2;
        w.AttName(att) = names[att];
        w.AttProperty(att) = std::int16_t(att == 2 ? 1 : 0);
        w.InVFunType(att) = std::int16_t(0);
        w.SmpSize(att) = std::int16_t(5);
        for (int k = 0; k < 5; ++k) {
            w.SmpX(att, k) = mins[att] + (maxs[att] - mins[att]) * k / 4.0;
            w.SmpY(att, k) = att == 2 ? 1.0 - k / 4.0 : k / 4.0;
        }
    }
}

// Clears the box and types digits and points key by key.
inline void typeText(QLineEdit* box, const QString& text) {
    box->clear();
    typeKeys(box, text);
}

class SettingsPageTest : public PageTest<frmKelSettings> {
protected:
    void SetUp() override { setUpWith(100); }
    void TearDown() override { setMessageBoxHook({}); }

    // A fresh problem on a freshly loaded page; warnings are recorded by their text.
    void setUpWith(std::int16_t inMaxVal) {
        fillProblem(inMaxVal);
        messages.clear();
        setMessageBoxHook([this](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), "QUARN");
            EXPECT_EQ(box.icon(), QMessageBox::Warning);
            messages.push_back(box.text());
            return QMessageBox::Ok;
        });
        openPage();
    }

    QLineEdit* minBox() { return child<QLineEdit>("txtMinScore"); }
    QLineEdit* maxBox() { return child<QLineEdit>("txtMaxScore"); }
    void chooseAttribute(int index) { child<QComboBox>("cmbSelAtt")->setCurrentIndex(index); }
};

}  // namespace kelmar::test
