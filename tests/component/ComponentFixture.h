// Shared set-up of the component tests: pages shown without blocking,
// message boxes recorded, a host event sink that records what reaches it,
// and recording pages registered in place of the real ones.
#pragma once

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
#include <vector>

namespace kelmartest {

using namespace kelmar;

// A page that exposes its events so a test can raise them.
class FakePage : public KelPage {
    Q_OBJECT
public:
    explicit FakePage(int id) : KelPage(id) {}

    using KelPage::raiseExportResults;
    using KelPage::raiseHideForm;
    using KelPage::raiseSendMasseges;
    using KelPage::raiseShowForm;
    using KelPage::raiseShowKelVFS;
    using KelPage::raiseUnloadKelmar;
    using KelPage::raiseUnloadKelVFS;
    using KelPage::raiseUnloadOwn;

    int loads = 0;
    std::function<void(FakePage&)> onLoadAction;

protected:
    void onLoad() override {
        ++loads;
        if (onLoadAction) onLoadAction(*this);
    }
};

// Every FakePage the registry built, in creation order.
struct CreatedPage {
    int id;
    QPointer<FakePage> page;
};
inline std::vector<CreatedPage>& createdPages() {
    static std::vector<CreatedPage> pages;
    return pages;
}

template <int Id>
KelPage* makeFakePage() {
    auto* page = new FakePage(Id);
    createdPages().push_back({Id, page});
    return page;
}

// What reached the host, in order.
struct HostEvent {
    QString name;
    QString text;
};

class RecordingHost : public KelmarEvents {
public:
    std::vector<HostEvent> events;
    std::function<void()> onUnloadKelmar;
    std::function<void()> onUnloadKelVFS;
    std::function<void(VariantArray&, Variant&)> onExport;
    std::int16_t exportedMaxVal = 0;

    void UnloadKelmar() override {
        events.push_back({QStringLiteral("UnloadKelmar"), {}});
        if (onUnloadKelmar) onUnloadKelmar();
    }
    void UnloadKelVFS() override {
        events.push_back({QStringLiteral("UnloadKelVFS"), {}});
        if (onUnloadKelVFS) onUnloadKelVFS();
    }
    void SendMasseges(QString Msg) override {
        events.push_back({QStringLiteral("SendMasseges"), Msg});
    }
    void ExportResults(VariantArray& AttVData, VariantArray&, VariantArray&, VariantArray&,
                       std::int16_t MaxVal, Variant& VFTechniqueID, VariantArray&, VariantArray&,
                       VariantArray&, VariantArray&, VariantArray&, VariantArray&, VariantArray&,
                       VariantArray&) override {
        events.push_back({QStringLiteral("ExportResults"), {}});
        exportedMaxVal = MaxVal;
        if (onExport) onExport(AttVData, VFTechniqueID);
    }

    QStringList names() const {
        QStringList out;
        for (const HostEvent& e : events) out << e.name;
        return out;
    }
};

// Deletes what deleteLater scheduled.
inline void flushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

// A small problem in the wizard data: 3 alternatives, 2 attributes.
void loadSmallProblem();

class ComponentTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The FakePage last created for an id (nullptr if none).
    FakePage* pageOf(int id) const;
    // How many pages of an id were ever created.
    int createdCount(int id) const;

    // Modal shows, in order.
    std::vector<QPointer<QDialog>> modalShows;
    // Texts of the message boxes, with their titles.
    QStringList messages;
    QStringList messageTitles;

private:
    std::vector<PageFactory> saved_;
};

}  // namespace kelmartest
