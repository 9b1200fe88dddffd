// A settings page on a small problem, driven through its controls, with the
// events it raises and the message boxes it shows recorded.
#pragma once

#include "charts/DrawSurface.h"
#include "pages/common/Ui.h"
#include "pages/settings/frmKelSettings.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kelmar::test {

// Events by name, the form id in brackets; messages as "Msg:text".
class RecordingSink : public PageEventSink {
public:
    std::vector<std::string> events;
    float showLeft = 0, showTop = 0;
    int exportedMaxVal = -1;
    VariantArray exportedValues;

    void pageUnloadKelmar(KelPage&) override { events.emplace_back("UnloadKelmar"); }
    void pageHideForm(KelPage&, std::int16_t& id) override {
        events.push_back("HideForm(" + std::to_string(id) + ")");
    }
    void pageShowForm(KelPage&, std::int16_t& id, float& left, float& top) override {
        events.push_back("ShowForm(" + std::to_string(id) + ")");
        showLeft = left;
        showTop = top;
    }
    void pageUnloadOwn(KelPage&) override { events.emplace_back("UnloadOwn"); }
    void pageShowKelVFS(KelPage&) override { events.emplace_back("ShowKelVFS"); }
    void pageSendMasseges(KelPage&, QString Msg) override { events.push_back("Msg:" + Msg.toStdString()); }
    void pageExportResults(KelPage&, VariantArray& AttVData, VariantArray&, VariantArray&,
                           VariantArray&, std::int16_t MaxVal, Variant&, VariantArray&,
                           VariantArray&, VariantArray&, VariantArray&, VariantArray&,
                           VariantArray&, VariantArray&, VariantArray&) override {
        events.emplace_back("ExportResults");
        exportedMaxVal = MaxVal;
        exportedValues = AttVData;
    }
    void pageUnloadKelVFS(KelPage&) override { events.emplace_back("UnloadKelVFS"); }
};

// Three attributes: "Cost" 10 .. 50, "Comfort" 0 .. 5, "Delay" 2.5 .. 7.5
// (cost-oriented); two alternatives, the first a quarter up every range, the
// second at the maxima; linear functions of five points.
inline void fillProblem(std::int16_t inMaxVal = 100) {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AltNum = 2;
    w.AttNum = 3;
    w.InMaxVal = inMaxVal;
    const double mins[3] = {10, 0, 2.5}, maxs[3] = {50, 5, 7.5};
    const char* names[3] = {"Cost", "Comfort", "Delay"};
    w.AltPScore.redim(0, 1, 0, 2);
    w.AttVData.redim(0, 1, 0, 2);
    for (VariantArray* a : {&w.AttName, &w.AttProperty, &w.InScoreMinimum, &w.InScoreMiddle,
                            &w.InScoreMaximum, &w.InVFunType, &w.SmpSize})
        a->redim(0, 2);
    w.SmpX.redim(0, 2, 0, 10);
    w.SmpY.redim(0, 2, 0, 10);
    for (int att = 0; att < 3; ++att) {
        w.AltPScore(0, att) = mins[att] + (maxs[att] - mins[att]) * 0.25;
        w.AltPScore(1, att) = maxs[att];
        w.AttName(att) = names[att];
        w.AttProperty(att) = std::int16_t(att == 2 ? 1 : 0);
        w.InScoreMinimum(att) = mins[att];
        w.InScoreMaximum(att) = maxs[att];
        w.InScoreMiddle(att) = (mins[att] + maxs[att]) / 2;
        w.InVFunType(att) = std::int16_t(0);
        w.SmpSize(att) = std::int16_t(5);
        for (int k = 0; k < 5; ++k) {
            w.SmpX(att, k) = mins[att] + (maxs[att] - mins[att]) * k / 4.0;
            w.SmpY(att, k) = att == 2 ? 1.0 - k / 4.0 : k / 4.0;
        }
    }
}

inline void sendKey(QWidget* target, int key, const QString& text,
                    Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(target, &release);
}

// Clears the box and types text key by key.
inline void typeText(QLineEdit* box, const QString& text) {
    box->clear();
    for (QChar c : text) {
        const int key = c == QLatin1Char('.') ? Qt::Key_Period : Qt::Key_0 + (c.unicode() - '0');
        sendKey(box, key, QString(c));
    }
}

inline void pressEnter(QLineEdit* box) { sendKey(box, Qt::Key_Return, QStringLiteral("\r")); }

// All the texts drawn on a picture, in order.
inline QStringList drawnTexts(const DrawSurface& pic) {
    QStringList out;
    for (const auto& p : pic.primitives())
        if (p.kind == DrawPrimitive::Kind::Text) out << p.text;
    return out;
}

class SettingsPageTest : public ::testing::Test {
protected:
    void SetUp() override { setUpWith(100); }
    void TearDown() override { setMessageBoxHook({}); }

    // A freshly loaded page; warnings are recorded by their text.
    void setUpWith(std::int16_t inMaxVal) {
        fillProblem(inMaxVal);
        setMessageBoxHook([this](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), "QUARN");
            EXPECT_EQ(box.icon(), QMessageBox::Warning);
            boxes.push_back(box.text());
            return QMessageBox::Ok;
        });
        page = std::make_unique<frmKelSettings>();
        page->setEventSink(&sink);
        page->load();
    }

    template <class T>
    T* child(const QString& name) {
        T* found = page->findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    void click(const char* button) { child<QPushButton>(button)->click(); }
    QLineEdit* minBox() { return child<QLineEdit>("txtMinScore"); }
    QLineEdit* maxBox() { return child<QLineEdit>("txtMaxScore"); }
    void chooseAttribute(int index) { child<QComboBox>("cmbSelAtt")->setCurrentIndex(index); }

    RecordingSink sink;
    std::vector<QString> boxes;
    std::unique_ptr<frmKelSettings> page;
};

}  // namespace kelmar::test
