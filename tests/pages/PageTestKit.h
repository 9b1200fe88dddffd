// What the settings and technique page tests share: an event sink that
// records what a page raises, the input kit, the texts on a picture and the
// page fixture's lookups.
#pragma once

#include "InputKit.h"
#include "charts/DrawSurface.h"
#include "pages/common/KelPage.h"
#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QPushButton>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
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
    VariantArray exportedValues;  // AttVData as ExportResults passed it

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

// The texts drawn on a picture, in order; only those that `where` accepts if given.
inline QStringList drawnTexts(const DrawSurface& pic, const std::function<bool(const DrawPrimitive&)>& where = {}) {
    QStringList out;
    for (const auto& p : pic.primitives())
        if (p.kind == DrawPrimitive::Kind::Text && (!where || where(p))) out << p.text;
    return out;
}

// Accepts a text printed with its top at y (and its left edge at x unless x < 0).
inline auto printedAt(double x, double y) {
    return [x, y](const DrawPrimitive& p) {
        return std::abs(p.p1.y() - y) < 1e-9 && (x < 0 || std::abs(p.p1.x() - x) < 1e-9);
    };
}

// A page under test with the recording sink; the fixture creates it.
template <class Page>
class PageTest : public ::testing::Test {
protected:
    template <class T = QWidget>
    T* child(const QString& name) const {
        T* found = page->template findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    void click(const char* button) { child<QPushButton>(QString::fromLatin1(button))->click(); }
    // Makes the page (a new one of the class unless given) for the data as it stands and loads it; with a
    // size, at that size and shown, the events of its load forgotten.
    void openPage(Page* made = new Page, QSize size = {}) {
        page.reset(made);
        page->setEventSink(&sink);
        if (size.isValid()) page->resize(size);
        page->load();
        if (!size.isValid()) return;
        page->show();
        sink.events.clear();
    }

    RecordingSink sink;
    std::vector<QString> messages;  // the texts of the message boxes shown
    std::unique_ptr<Page> page;
};

}  // namespace kelmar::test
