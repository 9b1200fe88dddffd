// A settings page on a small problem, driven through its controls, with the
// events it raises and the message boxes it shows recorded.
#pragma once

#include "charts/DrawSurface.h"
#include "pages/common/KelPage.h"
#include "pages/common/Ui.h"
#include "pages/settings/frmKelSettings.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFocusEvent>
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
#include <utility>
#include <vector>

namespace kelmar::test {

struct RecordedEvent {
    explicit RecordedEvent(std::string n) : name(std::move(n)) {}
    std::string name;
    int frmID = -1;
    float left = 0, top = 0;
    QString msg;
    int maxVal = 0;
};

class RecordingSink : public PageEventSink {
public:
    std::vector<RecordedEvent> events;

    std::vector<std::string> names() const {
        std::vector<std::string> out;
        for (const auto& e : events) out.push_back(e.name);
        return out;
    }
    std::vector<QString> messages() const {
        std::vector<QString> out;
        for (const auto& e : events)
            if (e.name == "SendMasseges") out.push_back(e.msg);
        return out;
    }

    void pageUnloadKelmar(KelPage&) override { events.emplace_back("UnloadKelmar"); }
    void pageHideForm(KelPage&, std::int16_t& frmID) override {
        RecordedEvent e("HideForm");
        e.frmID = frmID;
        events.push_back(e);
    }
    void pageShowForm(KelPage&, std::int16_t& frmID, float& frmLeft, float& frmTop) override {
        RecordedEvent e("ShowForm");
        e.frmID = frmID;
        e.left = frmLeft;
        e.top = frmTop;
        events.push_back(e);
    }
    void pageUnloadOwn(KelPage&) override { events.emplace_back("UnloadOwn"); }
    void pageShowKelVFS(KelPage&) override { events.emplace_back("ShowKelVFS"); }
    void pageSendMasseges(KelPage&, QString Msg) override {
        RecordedEvent e("SendMasseges");
        e.msg = Msg;
        events.push_back(e);
    }
    void pageExportResults(KelPage&, VariantArray& AttVData, VariantArray&, VariantArray&,
                           VariantArray&, std::int16_t MaxVal, Variant& VFTechniqueID,
                           VariantArray&, VariantArray&, VariantArray&, VariantArray&,
                           VariantArray&, VariantArray&, VariantArray&, VariantArray&) override {
        RecordedEvent e("ExportResults");
        e.maxVal = MaxVal;
        events.push_back(e);
        exportedValues = AttVData;
        exportedTechniques = VFTechniqueID;
    }
    void pageUnloadKelVFS(KelPage&) override { events.emplace_back("UnloadKelVFS"); }

    VariantArray exportedValues;
    Variant exportedTechniques;
};

struct MessageRecord {
    QString text;
    QString title;
    QMessageBox::Icon icon;
};

// Three attributes: "Cost" 10 .. 50, "Comfort" 0 .. 5, "Delay" 2.5 .. 7.5
// (cost-oriented); two alternatives; linear functions of five points.
inline void fillProblem(std::int16_t inMaxVal = 100) {
    WizardData& w = wizardData();
    w = WizardData{};
    w.QUARNDir = QStringLiteral("C:\\QUARN");
    w.AltNum = 2;
    w.AttNum = 3;
    const double mins[3] = {10, 0, 2.5}, maxs[3] = {50, 5, 7.5};
    const char* names[3] = {"Cost", "Comfort", "Delay"};
    w.AltPScore.redim(0, 1, 0, 2);
    w.AttVData.redim(0, 1, 0, 2);
    for (int att = 0; att < 3; ++att) {
        w.AltPScore(0, att) = mins[att] + (maxs[att] - mins[att]) * 0.25;
        w.AltPScore(1, att) = maxs[att];
    }
    for (VariantArray* a : {&w.AttName, &w.AttDefinition, &w.AttProperty, &w.InScoreMinimum,
                            &w.InScoreMiddle, &w.InScoreMaximum, &w.InVFTechniqueID, &w.InSmpSize,
                            &w.InVFunParA, &w.InVFunParB, &w.InVFunParC, &w.InVFunParD,
                            &w.InVFunType}) {
        a->redim(0, 2);
    }
    w.InSmpX.redim(0, 2, 0, 10);
    w.InSmpY.redim(0, 2, 0, 10);
    for (int att = 0; att < 3; ++att) {
        w.AttName(att) = names[att];
        w.AttDefinition(att) = QStringLiteral("definition");
        w.AttProperty(att) = std::int16_t(att == 2 ? 1 : 0);
        w.InScoreMinimum(att) = mins[att];
        w.InScoreMaximum(att) = maxs[att];
        w.InScoreMiddle(att) = (mins[att] + maxs[att]) / 2;
        w.InVFTechniqueID(att) = std::int16_t(1);
        w.InSmpSize(att) = std::int16_t(5);
        w.InVFunParA(att) = 0.5 + att;
        w.InVFunParB(att) = 1.5;
        w.InVFunParC(att) = 0.0;
        w.InVFunParD(att) = 0.0;
        w.InVFunType(att) = std::int16_t(0);
        for (int k = 0; k < 5; ++k) {
            w.InSmpX(att, k) = mins[att] + (maxs[att] - mins[att]) * k / 4.0;
            w.InSmpY(att, k) = att == 2 ? 1.0 - k / 4.0 : k / 4.0;
        }
    }
    w.InMaxVal = inMaxVal;
    w.VFTechniqueID = w.InVFTechniqueID;
    w.SmpSize = w.InSmpSize;
    w.SmpX = w.InSmpX;
    w.SmpY = w.InSmpY;
}

inline void sendKey(QWidget* target, int key, const QString& text,
                    Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(target, &release);
}

// Types text key by key at the end of the box.
inline void typeText(QLineEdit* box, const QString& text) {
    for (QChar c : text) {
        const int key = c == QLatin1Char('.') ? Qt::Key_Period
                        : c == QLatin1Char('-') ? Qt::Key_Minus
                                                : Qt::Key_0 + (c.unicode() - '0');
        sendKey(box, key, QString(c));
    }
}

inline void replaceText(QLineEdit* box, const QString& text) {
    box->clear();
    typeText(box, text);
}

inline void pressEnter(QLineEdit* box) { sendKey(box, Qt::Key_Return, QStringLiteral("\r")); }

inline void leaveBox(QLineEdit* box) {
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(box, &out);
}

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

    void setUpWith(std::int16_t inMaxVal) {
        fillProblem(inMaxVal);
        setMessageBoxHook([this](QMessageBox& box) {
            boxes.push_back({box.text(), box.windowTitle(), box.icon()});
            return QMessageBox::Ok;
        });
        page = std::make_unique<frmKelSettings>();
        page->setEventSink(&sink);
        page->load();
    }

    void TearDown() override {
        page.reset();
        setMessageBoxHook({});
    }

    template <class T>
    T* child(const char* name) {
        T* found = page->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    void click(const char* button) { child<QPushButton>(button)->click(); }
    QLineEdit* minBox() { return child<QLineEdit>("txtMinScore"); }
    QLineEdit* maxBox() { return child<QLineEdit>("txtMaxScore"); }
    DrawSurface* scopeChart() { return child<DrawSurface>("picScopeChart"); }

    void chooseAttribute(int index) { child<QComboBox>("cmbSelAtt")->setCurrentIndex(index); }

    bool enabled(const char* button) { return child<QPushButton>(button)->isEnabled(); }
    int visiblePanel() {
        int shown = -1;
        for (int i = 0; i < 3; ++i) {
            auto* panel = page->findChild<QWidget*>(QStringLiteral("picPanel_%1").arg(i));
            if (panel != nullptr && !panel->isHidden()) {
                if (shown >= 0) return -2;  // more than one
                shown = i;
            }
        }
        return shown;
    }

    RecordingSink sink;
    std::vector<MessageRecord> boxes;
    std::unique_ptr<frmKelSettings> page;
};

}  // namespace kelmar::test
