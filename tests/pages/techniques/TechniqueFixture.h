// A three-attribute problem and a Direct Rating page under test with a
// recording event sink.
#pragma once

#include "../PageTestKit.h"
#include "component/PageRegistry.h"
#include "pages/techniques/frmKelDirectRating.h"

#include <QComboBox>
#include <QLabel>

#include <gtest/gtest.h>

namespace kelmar::test {

// Attribute 0 "Price": benefit, scores 0..100; 1 "Noise": cost, 10..50;
// 2 "Comfort": benefit, 1..5; all linear through five points. Four
// alternatives; the host's functions are the same as the working ones.
inline void fillProblem() {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AttNum = 3;
    w.AltNum = 4;
    w.MaxVal = 1;
    w.SelTechnique = kDirectRating;
    w.SelMCDAMethod = 1;
    for (VariantArray* a : {&w.AltPScore, &w.AttVData}) a->redim(0, 3, 0, 2);
    for (VariantArray* a : {&w.AttName, &w.ScoreMinimum, &w.ScoreMiddle, &w.ScoreMaximum,
                            &w.ScoreMinimumCopy, &w.ScoreMaximumCopy, &w.AttPropertyCopy, &w.SmpSize,
                            &w.VFunType, &w.VFTechniqueID, &w.AttVFDone, &w.InSmpSize, &w.InVFunType,
                            &w.InVFTechniqueID})
        a->redim(0, 2);
    for (VariantArray* a : {&w.SmpX, &w.SmpY, &w.InSmpX, &w.InSmpY}) a->redim(0, 2, 0, 10);
    const double scores[4][3] = {{50, 20, 3}, {0, 50, 1}, {100, 10, 5}, {25, 40, 2}};
    const char* names[3] = {"Price", "Noise", "Comfort"};
    const double low[3] = {0, 10, 1}, high[3] = {100, 50, 5};
    for (int att = 0; att < 3; ++att) {
        for (int a = 0; a < 4; ++a) {
            w.AltPScore(a, att) = scores[a][att];
            w.AttVData(a, att) = -1.0;
        }
        w.AttName(att) = names[att];
        w.ScoreMinimum(att) = w.ScoreMinimumCopy(att) = low[att];
        w.ScoreMaximum(att) = w.ScoreMaximumCopy(att) = high[att];
        w.ScoreMiddle(att) = (low[att] + high[att]) / 2.0;
        w.AttPropertyCopy(att) = std::int16_t(att == 1 ? 1 : 0);
        w.SmpSize(att) = w.InSmpSize(att) = std::int16_t(5);
        w.VFunType(att) = w.InVFunType(att) = std::int16_t(0);
        w.VFTechniqueID(att) = w.InVFTechniqueID(att) = std::int16_t(kMidPoint);
        w.AttVFDone(att) = false;
        for (int k = 0; k < 5; ++k) {
            w.SmpX(att, k) = w.InSmpX(att, k) = low[att] + (high[att] - low[att]) * k / 4.0;
            w.SmpY(att, k) = w.InSmpY(att, k) = att == 1 ? 1.0 - k / 4.0 : k / 4.0;
        }
    }
}

// Every cell of att's function as type and exact number, to tell whether an
// action changed a single bit of it.
inline std::vector<std::pair<int, double>> functionBits(int att) {
    WizardData& w = wizardData();
    std::vector<std::pair<int, double>> bits;
    const auto add = [&bits](const Variant& v) {
        bits.emplace_back(static_cast<int>(v.type()), v.isNumeric() ? v.toDouble() : 0.0);
    };
    for (VariantArray* a : {&w.SmpSize, &w.ScoreMinimum, &w.ScoreMiddle, &w.ScoreMaximum, &w.VFunType,
                            &w.VFTechniqueID, &w.AttVFDone})
        add((*a)(att));
    for (int k = 0; k <= 10; ++k) {
        add(w.SmpX(att, k));
        add(w.SmpY(att, k));
    }
    return bits;
}

// A technique page on the problem above; message boxes are recorded and
// none is expected.
template <class Page>
class TechniquePageTest : public PageTest<Page> {
protected:
    void SetUp() override {
        fillProblem();
        setMessageBoxHook([this](QMessageBox& box) {
            this->messages.push_back(box.text());
            return QMessageBox::Ok;
        });
    }
    void TearDown() override {
        this->page.reset();
        setMessageBoxHook({});
        EXPECT_TRUE(this->messages.empty()) << "an unexpected message box";
    }

    // Creates and loads the page on attribute att for the data as it stands.
    void open(int att = 0) {
        wizardData().SelAtt = static_cast<std::int16_t>(att);
        this->openPage(new Page, pageSize);
    }
    QSize pageSize{780, 620};

    PointMark* mark(int i) const {
        return this->template child<PointMark>(QStringLiteral("picScorePoint_%1").arg(i));
    }
    DrawSurface* chart() const { return this->template child<DrawSurface>(QStringLiteral("picRatingChart")); }
    QString text(const char* label) const { return this->template child<QLabel>(QString::fromLatin1(label))->text(); }
    // The centre of mark i on its chart, in chart units.
    double centreOf(int i) const { return chart()->childLeft(mark(i)) + chart()->childWidth(mark(i)) / 2.0; }
    void choose(const char* list, int index) { test::choose(this->template child<QComboBox>(QString::fromLatin1(list)), index); }
    void drag(int i, double target, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF grab(mark(i)->width() / 2.0, 8.0);
        gesture(mark(i), {grab, grab + QPointF((target - centreOf(i)) * chart()->width() / 116.0, 0)}, button);
    }
    static double value(int att, int k) { return wizardData().SmpY(att, k).toDouble(); }

    // The function of att was changed by technique, last at point (if any).
    static void expectEdited(int att, int technique, int point = -1) {
        const WizardData& w = wizardData();
        EXPECT_EQ(w.VFunType(att).toInteger(), 1);
        EXPECT_TRUE(w.AttVFDone(att).toBoolean());
        EXPECT_EQ(w.VFTechniqueID(att).toInteger(), technique);
        EXPECT_TRUE(point < 0 || w.SelPoint == point) << w.SelPoint;
    }
};

// Any technique page, as the component builds it for the technique's id.
class AnyTechniqueTest : public TechniquePageTest<TechniquePage> {
protected:
    void openAs(int technique, int att = 0, QSize size = {780, 740}) {
        wizardData().SelTechnique = static_cast<std::int16_t>(technique);
        wizardData().SelAtt = static_cast<std::int16_t>(att);
        page.reset();
        openPage(dynamic_cast<TechniquePage*>(createPage(technique)), size);
    }
    // Presses and lets go of mark i where it stands.
    void press(int i) const { gesture(mark(i), {{mark(i)->width() / 2.0, mark(i)->height() / 2.0}}); }
};

class DirectRatingTest : public TechniquePageTest<frmKelDirectRating> {
protected:
    static int funType() { return wizardData().VFunType(0).toInteger(); }
    static bool done() { return wizardData().AttVFDone(0).toBoolean(); }
};

}  // namespace kelmar::test
