#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include "component/PageRegistry.h"
#include "pages/common/KelPage.h"
#include "pages/common/Ui.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QPointer>
#include <QScreen>
#include <QSize>
#include <QUrl>

#include <algorithm>
#include <array>

namespace kelmar {

KelmarEvents::~KelmarEvents() = default;

void KelmarEvents::ExportResults(VariantArray&, VariantArray&, VariantArray&, VariantArray&,
                                 std::int16_t, Variant&, VariantArray&, VariantArray&,
                                 VariantArray&, VariantArray&, VariantArray&, VariantArray&,
                                 VariantArray&, VariantArray&) {}

// --- Help ----------------------------------------------------------------------

namespace {
HelpHandler& helpHandler() {
    static HelpHandler handler;
    return handler;
}

void openHelpFileWithDesktop(const QString& helpFile, int) {
    QString path = helpFile;
    if (!QFileInfo::exists(path)) path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (QFileInfo::exists(path)) QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}
}  // namespace

void openHelp(QWidget*) {
    const QString file = helpFilePath();
    if (helpHandler()) {
        helpHandler()(file, kHelpContext);
    } else {
        openHelpFileWithDesktop(file, kHelpContext);
    }
}

void KelmarDll::setHelpHandler(HelpHandler handler) { helpHandler() = std::move(handler); }

// --- The component class --------------------------------------------------------

class KelmarDll::Impl : public PageEventSink {
public:
    ~Impl() override {
        // The Midpoint page is let go first; the others go with the object.
        // A host may drop the component from inside an event that a page
        // raised, so a page whose handler is still running is only
        // scheduled for deletion.
        discard(mKelMidPoint);
        for (QPointer<KelPage>* slot : allSlots()) discard(*slot);
    }

    KelmarEvents* events = nullptr;

    // The page variables, each empty until its page is first created.
    QPointer<KelPage> mKelSettings;
    QPointer<KelPage> mKelDirectRating;
    QPointer<KelPage> mKelMidPoint;
    QPointer<KelPage> mKelCurveDrawing;
    QPointer<KelPage> mKelCatIdn;
    QPointer<KelPage> mKelDiffStdSeq;
    QPointer<KelPage> mKelBisection;
    QPointer<KelPage> mKelVarP;
    QPointer<KelPage> mKelVarC;
    QPointer<KelPage> mKelVFS;
    // The size the last technique page had when it asked for another page:
    // the next technique page opens at least as large, so the wizard keeps
    // the size the analyst gave it.
    QSize techniquePageSize;

    QPointer<KelPage>& slotFor(int frmID) {
        switch (frmID) {
        case kMidPoint: return mKelMidPoint;
        case kDirectRating: return mKelDirectRating;
        case kCurveDrawing: return mKelCurveDrawing;
        case kCategoryIdentification: return mKelCatIdn;
        case kDiffStandardSequence: return mKelDiffStdSeq;
        case kBisection: return mKelBisection;
        case kVariableProbability: return mKelVarP;
        case kVariableCertainty: return mKelVarC;
        default: return mKelSettings;
        }
    }

    std::array<QPointer<KelPage>*, 10> allSlots() {
        return {&mKelSettings, &mKelDirectRating, &mKelMidPoint, &mKelCurveDrawing, &mKelCatIdn,
                &mKelDiffStdSeq, &mKelBisection, &mKelVarP, &mKelVarC, &mKelVFS};
    }

    KelPage* create(int key, QPointer<KelPage>& slot) {
        KelPage* page = createPage(key);
        slot = page;
        page->setEventSink(this);
        page->load();
        return page;
    }

    // Sets a page variable empty. The page may be running one of its own
    // handlers right now, so it is deleted once control is back in the
    // event loop.
    static void release(QPointer<KelPage>& slot) {
        KelPage* page = slot.data();
        slot = nullptr;
        if (page == nullptr) return;
        page->setEventSink(nullptr);
        page->hide();
        page->deleteLater();
    }

    static void discard(QPointer<KelPage>& slot) {
        KelPage* page = slot.data();
        if (page != nullptr && !page->isRunningHandler()) {
            slot = nullptr;
            page->setEventSink(nullptr);
            delete page;
            return;
        }
        release(slot);
    }

    void hideForm(std::int16_t frmID) {
        if (frmID < 0 || frmID > 8) return;
        KelPage* page = slotFor(frmID).data();
        if (page == nullptr) throw RuntimeError(RuntimeError::ObjectNotSet);
        page->hide();
    }

    // `asking` is the page whose event asked for this one, if any.
    void showForm(std::int16_t frmID, float frmLeft, float frmTop, const KelPage* asking = nullptr) {
        if (frmID < 0 || frmID > 8) return;
        QPointer<KelPage>& slot = slotFor(frmID);
        if (asking != nullptr && isTechniquePage(*asking)) techniquePageSize = asking->size();
        if (slot.isNull()) {
            // A new page places itself when it loads; one that a page of the
            // wizard asked for then takes that page's place, so that the
            // wizard does not jump about the screen from page to page.
            KelPage* page = create(frmID, slot);
            if (asking != nullptr) {
                if (isTechniquePage(*page) && techniquePageSize.isValid())
                    page->resize(page->size().expandedTo(techniquePageSize));
                takePlaceOf(*page, *asking);
            }
            runModal(*page);
            return;
        }
        slot->move(qRound(frmLeft), qRound(frmTop));
        slot->show();
    }

    static bool isTechniquePage(const KelPage& page) {
        return page.pageId() >= kMidPoint && page.pageId() <= kVariableCertainty;
    }

    // Puts the page's top-left corner where the other page's is, moved in
    // as far as needed to keep the whole page on that screen.
    static void takePlaceOf(KelPage& page, const KelPage& other) {
        QPoint at = other.frameGeometry().topLeft();
        if (const QScreen* screen = other.screen()) {
            const QRect room = screen->availableGeometry();
            const QSize size = page.frameGeometry().size();
            at.setX(std::max(room.left(), std::min(at.x(), room.right() + 1 - size.width())));
            at.setY(std::max(room.top(), std::min(at.y(), room.bottom() + 1 - size.height())));
        }
        page.move(at);
    }

    // PageEventSink
    void pageUnloadKelmar(KelPage& page) override {
        page.hide();
        if (events) events->UnloadKelmar();
    }
    void pageHideForm(KelPage&, std::int16_t& frmID) override { hideForm(frmID); }
    void pageShowForm(KelPage& page, std::int16_t& frmID, float& frmLeft, float& frmTop) override {
        showForm(frmID, frmLeft, frmTop, &page);
    }
    void pageUnloadOwn(KelPage& page) override {
        // Only the technique pages' unload events are received: the
        // settings page's fourth event has no handler in the class.
        if (!isTechniquePage(page)) return;
        for (QPointer<KelPage>* slot : allSlots()) {
            if (slot->data() == &page) release(*slot);
        }
    }
    void pageShowKelVFS(KelPage&) override {
        if (mKelVFS.isNull()) {
            KelPage* view = create(kFunctionViewKey, mKelVFS);
            CentreFormOnScreen(*view);
            runModal(*view);
        } else {
            runModal(*mKelVFS);
        }
    }
    void pageSendMasseges(KelPage& page, QString Msg) override {
        // The settings page's guidance is not forwarded to the host.
        if (page.pageId() == kSettingsPage) return;
        if (events) events->SendMasseges(Msg);
    }
    void pageExportResults(KelPage&, VariantArray& AttVData, VariantArray& ScoreMinimum,
                           VariantArray& ScoreMiddle, VariantArray& ScoreMaximum,
                           std::int16_t MaxVal, Variant& VFTechniqueID, VariantArray& SmpSize,
                           VariantArray& SmpX, VariantArray& SmpY, VariantArray& VFunParA,
                           VariantArray& VFunParB, VariantArray& VFunParC,
                           VariantArray& VFunParD, VariantArray& VFunType) override {
        if (events)
            events->ExportResults(AttVData, ScoreMinimum, ScoreMiddle, ScoreMaximum, MaxVal,
                                  VFTechniqueID, SmpSize, SmpX, SmpY, VFunParA, VFunParB,
                                  VFunParC, VFunParD, VFunType);
    }
    void pageUnloadKelVFS(KelPage&) override {
        if (events) events->UnloadKelVFS();
    }
};

KelmarDll::KelmarDll() : d_(std::make_unique<Impl>()) {}
KelmarDll::~KelmarDll() = default;

void KelmarDll::ShowKelmar() {
    if (d_->mKelSettings.isNull()) {
        KelPage* page = d_->create(kSettingsPage, d_->mKelSettings);
        CentreFormOnScreen(*page);
        runModal(*page);
        // Back from a technique page shows the settings page again while
        // its modal loop is ending, and the loop's end takes the page's
        // modality away while it is on the screen: hidden later, it would
        // leave the host's windows blocked for the mouse. It stays modal
        // for as long as it is shown.
        if (!d_->mKelSettings.isNull() && d_->mKelSettings->isVisible())
            d_->mKelSettings->setWindowModality(Qt::ApplicationModal);
    } else {
        d_->mKelSettings->show();
    }
}

void KelmarDll::TransferData(Variant& QUARNDir, std::int16_t SelMCDAMethod, std::int16_t AltNum,
                             std::int16_t AttNum, VariantArray& AltPScore, VariantArray& AttVData,
                             VariantArray& AttName, VariantArray& AttDefinition,
                             VariantArray& AttProperty) {
    TransferProblemData(QUARNDir, SelMCDAMethod, AltNum, AttNum, AltPScore, AttVData, AttName,
                        AttDefinition, AttProperty);
}

void KelmarDll::TransferVFunData(VariantArray& ScoreMinimum, VariantArray& ScoreMiddle,
                                 VariantArray& ScoreMaximum, std::int16_t MaxVal,
                                 VariantArray& VFTechniqueID, VariantArray& SmpSize,
                                 VariantArray& SmpX, VariantArray& SmpY, VariantArray& VFunParA,
                                 VariantArray& VFunParB, VariantArray& VFunParC,
                                 VariantArray& VFunParD, VariantArray& VFunType) {
    TransferValueFunctions(ScoreMinimum, ScoreMiddle, ScoreMaximum, MaxVal, VFTechniqueID, SmpSize,
                           SmpX, SmpY, VFunParA, VFunParB, VFunParC, VFunParD, VFunType);
}

void KelmarDll::HideForm(std::int16_t& frmID) { d_->hideForm(frmID); }

void KelmarDll::ShowForm(std::int16_t& frmID, float& frmLeft, float& frmTop) {
    d_->showForm(frmID, frmLeft, frmTop);
}

void KelmarDll::UnloadKelmar() {
    // The Category Identification, Bisection, Variable Certainty and
    // function view (frmVFS) pages are kept on purpose.
    Impl::release(d_->mKelSettings);
    Impl::release(d_->mKelDirectRating);
    Impl::release(d_->mKelMidPoint);
    Impl::release(d_->mKelCurveDrawing);
    Impl::release(d_->mKelDiffStdSeq);
    Impl::release(d_->mKelVarP);
}

void KelmarDll::UnloadKelVFS() { Impl::release(d_->mKelVFS); }

void KelmarDll::setEventSink(KelmarEvents* sink) { d_->events = sink; }

}  // namespace kelmar

extern "C" {
kelmar::KelmarDll* KelmarCreate() { return new kelmar::KelmarDll(); }
void KelmarDestroy(kelmar::KelmarDll* component) { delete component; }
}
