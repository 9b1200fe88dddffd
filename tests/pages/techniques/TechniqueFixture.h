// A two-attribute problem and a page under test with a recording event sink.
#pragma once

#include "charts/DrawSurface.h"
#include "pages/common/KelPage.h"
#include "pages/common/Ui.h"
#include "pages/techniques/frmKelDirectRating.h"

#include <kelmar/mdKelMain.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QLayout>
#include <QPushButton>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kelmar::testing {

class RecordingSink : public PageEventSink {
public:
    std::vector<std::string> events;
    VariantArray exportedValues;  // AttVData as ExportResults passed it
    float showLeft = 0, showTop = 0;

    void pageUnloadKelmar(KelPage&) override { events.emplace_back("UnloadKelmar"); }
    void pageHideForm(KelPage&, std::int16_t& frmID) override {
        events.push_back("HideForm(" + std::to_string(frmID) + ")");
    }
    void pageShowForm(KelPage&, std::int16_t& frmID, float& frmLeft, float& frmTop) override {
        showLeft = frmLeft;
        showTop = frmTop;
        events.push_back("ShowForm(" + std::to_string(frmID) + ")");
    }
    void pageUnloadOwn(KelPage&) override { events.emplace_back("UnloadOwn"); }
    void pageShowKelVFS(KelPage&) override { events.emplace_back("ShowKelVFS"); }
    void pageSendMasseges(KelPage&, QString Msg) override {
        events.push_back("SendMasseges:" + Msg.toStdString());
    }
    void pageExportResults(KelPage&, VariantArray& AttVData, VariantArray&, VariantArray&,
                           VariantArray&, std::int16_t, Variant&, VariantArray&, VariantArray&,
                           VariantArray&, VariantArray&, VariantArray&, VariantArray&,
                           VariantArray&, VariantArray&) override {
        exportedValues = AttVData;
        events.emplace_back("ExportResults");
    }
    void pageUnloadKelVFS(KelPage&) override { events.emplace_back("UnloadKelVFS"); }
};

// Attribute 0 "Price": benefit, scores 0..100, linear through five points.
// Attribute 1 "Noise": cost, scores 10..50, linear falling from 1 to 0.
// Attribute 2 "Comfort": benefit, scores 1..5, linear.
// Four alternatives.
inline void fillProblem() {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AttNum = 3;
    w.AltNum = 4;
    w.MaxVal = 1;
    w.SelAtt = 0;
    w.SelTechnique = kDirectRating;
    w.SelMCDAMethod = 1;
    w.AltPScore.redim(0, 3, 0, 2);
    w.AttVData.redim(0, 3, 0, 2);
    const double scores[4][3] = {{50.0, 20.0, 3.0}, {0.0, 50.0, 1.0}, {80.0, 10.0, 5.0},
                                 {25.0, 40.0, 2.0}};
    for (int a = 0; a < 4; ++a) {
        for (int att = 0; att < 3; ++att) {
            w.AltPScore(a, att) = Variant(scores[a][att]);
            w.AttVData(a, att) = Variant(-1.0);
        }
    }
    for (VariantArray* a : {&w.AttName, &w.AttDefinition, &w.AttProperty, &w.ScoreMinimum,
                            &w.ScoreMiddle, &w.ScoreMaximum, &w.ScoreMinimumCopy,
                            &w.ScoreMaximumCopy, &w.AttPropertyCopy, &w.SmpSize, &w.VFunType,
                            &w.VFTechniqueID, &w.VFunParA, &w.VFunParB, &w.VFunParC, &w.VFunParD,
                            &w.AttVFDone, &w.AttRangeSet, &w.InScoreMinimum, &w.InScoreMiddle,
                            &w.InScoreMaximum, &w.InSmpSize, &w.InVFunType, &w.InVFTechniqueID,
                            &w.InVFunParA, &w.InVFunParB, &w.InVFunParC, &w.InVFunParD})
        a->redim(0, 2);
    for (VariantArray* a : {&w.SmpX, &w.SmpY, &w.InSmpX, &w.InSmpY}) a->redim(0, 2, 0, 10);

    w.AttName(0) = Variant("Price");
    w.AttName(1) = Variant("Noise");
    w.AttName(2) = Variant("Comfort");
    const double low[3] = {0.0, 10.0, 1.0};
    const double high[3] = {100.0, 50.0, 5.0};
    for (int att = 0; att < 3; ++att) {
        w.ScoreMinimum(att) = w.ScoreMinimumCopy(att) = w.InScoreMinimum(att) = Variant(low[att]);
        w.ScoreMaximum(att) = w.ScoreMaximumCopy(att) = w.InScoreMaximum(att) = Variant(high[att]);
        w.ScoreMiddle(att) = w.InScoreMiddle(att) = Variant((low[att] + high[att]) / 2.0);
        w.AttPropertyCopy(att) = Variant(std::int16_t(att == 1 ? 1 : 0));
        w.SmpSize(att) = w.InSmpSize(att) = Variant(std::int16_t(5));
        w.VFunType(att) = w.InVFunType(att) = Variant(std::int16_t(0));
        w.VFTechniqueID(att) = w.InVFTechniqueID(att) = Variant(std::int16_t(kMidPoint));
        w.AttVFDone(att) = Variant(false);
        for (int k = 0; k < 5; ++k) {
            const double x = low[att] + (high[att] - low[att]) * k / 4.0;
            const double y = att == 1 ? 1.0 - k / 4.0 : k / 4.0;
            w.SmpX(att, k) = w.InSmpX(att, k) = Variant(x);
            w.SmpY(att, k) = w.InSmpY(att, k) = Variant(y);
        }
    }
}

class DirectRatingTest : public ::testing::Test {
protected:
    void SetUp() override {
        fillProblem();
        setMessageBoxHook([this](QMessageBox& box) {
            messages.push_back(box.text());
            return QMessageBox::Ok;
        });
    }
    void TearDown() override {
        page.reset();
        setMessageBoxHook({});
    }

    // Creates and loads the page for the data as it stands.
    frmKelDirectRating& open() {
        page = std::make_unique<frmKelDirectRating>();
        page->setEventSink(&sink);
        page->resize(780, 620);
        page->load();
        page->show();
        sink.events.clear();
        return *page;
    }

    template <typename T = QWidget>
    T* child(const QString& name) const {
        T* found = page->findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    PointMark* mark(int i) const { return child<PointMark>(QStringLiteral("picScorePoint_%1").arg(i)); }
    DrawSurface* chart() const { return child<DrawSurface>(QStringLiteral("picRatingChart")); }
    QString text(const char* label) const { return child<QLabel>(QString::fromLatin1(label))->text(); }
    void click(const char* button) { child<QPushButton>(QString::fromLatin1(button))->click(); }
    void chooseSize(int listIndex) {
        auto* combo = child<QComboBox>(QStringLiteral("cmbSmpSize"));
        combo->setCurrentIndex(listIndex);
        emit combo->activated(listIndex);
    }

    double centreOf(int i) const {
        return chart()->childLeft(mark(i)) + chart()->childWidth(mark(i)) / 2.0;
    }
    double pixelsPerUnit() const { return chart()->width() / 116.0; }

    static void sendMouse(QWidget* w, QEvent::Type type, QPointF pos, Qt::MouseButton button,
                          Qt::MouseButtons buttons) {
        QMouseEvent event(type, pos, w->mapToGlobal(pos), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(w, &event);
    }
    // Grabs mark i in its middle and drags it so that its centre would
    // come to the rating-scale position target.
    void drag(int i, double target, Qt::MouseButton button = Qt::LeftButton) {
        PointMark* m = mark(i);
        const QPointF grab(m->width() / 2.0, 8.0);
        sendMouse(m, QEvent::MouseButtonPress, grab, button, button);
        const QPointF to(grab.x() + (target - centreOf(i)) * pixelsPerUnit(), grab.y());
        sendMouse(m, QEvent::MouseMove, to, Qt::NoButton, button);
        sendMouse(m, QEvent::MouseButtonRelease, to, button, Qt::NoButton);
    }
    static void sendKey(QWidget* w, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(w, &event);
    }

    static double value(int att, int k) { return wizardData().SmpY(att, k).toDouble(); }

    // The attitude label that carries the highlight, or -1.
    int highlightedAttitude() const {
        int found = -1;
        for (int k = 0; k < 3; ++k) {
            auto* label = child<QLabel>(QStringLiteral("lblRiskAttitude_%1").arg(k));
            if (label->autoFillBackground() &&
                label->palette().color(QPalette::Window) == toQColor(ole::Highlight))
                found = k;
        }
        return found;
    }

    std::vector<QString> chartTexts() const {
        std::vector<QString> texts;
        for (const DrawPrimitive& p : chart()->primitives())
            if (p.kind == DrawPrimitive::Kind::Text) texts.push_back(p.text);
        return texts;
    }

    RecordingSink sink;
    std::vector<QString> messages;
    std::unique_ptr<frmKelDirectRating> page;
};

}  // namespace kelmar::testing
