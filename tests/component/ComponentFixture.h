// Shared set-up of the component tests: recording pages registered in place
// of the real ones, pages shown without blocking, message boxes recorded,
// and a host that records what reaches it.
#pragma once

#include "ErrorKit.h"
#include "component/PageRegistry.h"
#include "pages/common/KelPage.h"
#include "pages/common/Ui.h"

#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

namespace kelmartest {

using namespace kelmar;

// A page that lets a test raise its events. Every one is recorded.
class FakePage : public KelPage {
public:
    // Every page created, by id, to be found and released by the fixture.
    static inline std::vector<std::pair<int, QPointer<FakePage>>> created;

    explicit FakePage(int id) : KelPage(id) { created.emplace_back(id, this); }

    using KelPage::raiseExportResults;
    using KelPage::raiseHideForm;
    using KelPage::raiseSendMasseges;
    using KelPage::raiseShowForm;
    using KelPage::raiseShowKelVFS;
    using KelPage::raiseUnloadKelmar;
    using KelPage::raiseUnloadOwn;

    int loads = 0;
    static inline int failingLoad = -1;  // the id whose load raises error 9

protected:
    void onLoad() override {
        ++loads;
        if (pageId() == failingLoad) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    }
};

template <int Id>
KelPage* makeFake() {
    return new FakePage(Id);
}

class RecordingHost : public KelmarEvents {
public:
    QStringList events;  // in order
    std::function<void()> onUnloadKelmar;
    std::function<void(VariantArray&, std::int16_t, Variant&)> onExport;

    void UnloadKelmar() override {
        events << QStringLiteral("UnloadKelmar");
        if (onUnloadKelmar) onUnloadKelmar();
    }
    void UnloadKelVFS() override { events << QStringLiteral("UnloadKelVFS"); }
    void SendMasseges(QString Msg) override { events << QStringLiteral("SendMasseges: ") + Msg; }
    void ExportResults(VariantArray& AttVData, VariantArray&, VariantArray&, VariantArray&,
                       std::int16_t MaxVal, Variant& VFTechniqueID, VariantArray&, VariantArray&,
                       VariantArray&, VariantArray&, VariantArray&, VariantArray&, VariantArray&,
                       VariantArray&) override {
        events << QStringLiteral("ExportResults");
        if (onExport) onExport(AttVData, MaxVal, VFTechniqueID);
    }
};

using kelmar::test::errorNumber;

// Deletes what deleteLater scheduled.
inline void flushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

class ComponentTest : public ::testing::Test {
protected:
    void SetUp() override {
        static constexpr PageFactory kFakes[] = {&makeFake<0>, &makeFake<1>, &makeFake<2>, &makeFake<3>, &makeFake<4>,
                                                 &makeFake<5>, &makeFake<6>, &makeFake<7>, &makeFake<8>};
        for (int id = 0; id <= 8; ++id) {
            saved_.push_back(registeredPage(id));
            registerPage(id, kFakes[id]);
        }
        setModalRunner([this](QDialog& page) {
            modalShows.emplace_back(&page);
            const auto* kel = dynamic_cast<KelPage*>(&page);
            loadedWhenShown.push_back(kel && kel->isLoaded());
            page.show();
        });
        setMessageBoxHook([this](QMessageBox& box) {
            messages << box.windowTitle() + QStringLiteral(": ") + box.text();
            return QMessageBox::Ok;
        });
        dll.setEventSink(&host);
    }
    void TearDown() override {
        dll.setEventSink(nullptr);
        for (int id = 0; id <= 8; ++id) registerPage(id, saved_[static_cast<std::size_t>(id)]);
        setModalRunner({});
        setMessageBoxHook({});
        KelmarDll::setHelpHandler({});
        FakePage::failingLoad = -1;
        flushDeletes();
        for (const auto& p : FakePage::created) delete p.second.data();
        FakePage::created.clear();
        wizardData() = {};
    }

    // Shows a page through the component and returns the FakePage behind it.
    FakePage* open(std::int16_t id, float left = 0, float top = 0) {
        dll.ShowForm(id, left, top);
        return pageOf(id);
    }
    void hide(std::int16_t id) { dll.HideForm(id); }
    // The FakePage last created for an id (nullptr if none or deleted).
    static FakePage* pageOf(int id) {
        for (auto it = FakePage::created.rbegin(); it != FakePage::created.rend(); ++it)
            if (it->first == id) return it->second.data();
        return nullptr;
    }

    RecordingHost host;
    KelmarDll dll;
    std::vector<QPointer<QDialog>> modalShows;
    std::vector<bool> loadedWhenShown;  // one entry per modal show
    QStringList messages;  // "title: text" of each message box

private:
    std::vector<PageFactory> saved_;
};

}  // namespace kelmartest
