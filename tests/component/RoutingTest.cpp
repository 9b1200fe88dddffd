// What the component does with each event a page raises, and how it keeps
// the host safe from errors and from pages released inside their handlers.
#include "ComponentFixture.h"


#include <stdexcept>

namespace kelmartest {
namespace {

using RoutingTest = ComponentTest;

// The host gets the working arrays themselves, the technique ids as one
// variant holding the whole array; what it writes into either comes back.
TEST_F(RoutingTest, ExportResultsPassesTheWorkingArraysByReferenceAndTheMaxVal) {
    FakePage* page = open(kMidPoint);
    WizardData& w = wizardData();
    w.MaxVal = 100;
    w.AttVData = VariantArray(0, 2, 0, 1);
    w.VFTechniqueID = VariantArray(0, 1);
    w.VFTechniqueID(0) = Variant(std::int16_t{1});
    std::int16_t maxVal = 0, technique = -1;
    host.onExport = [&](VariantArray& AttVData, std::int16_t MaxVal, Variant& VFTechniqueID) {
        maxVal = MaxVal;
        AttVData(2, 0) = Variant(7.0);
        technique = VFTechniqueID.toArray()(0).toInteger();
        VFTechniqueID.toArray()(0) = Variant(std::int16_t{6});
    };
    page->handle([page] { page->raiseExportResults(); });
    EXPECT_EQ(host.events, QStringList{QStringLiteral("ExportResults")});
    EXPECT_EQ(maxVal, 100);
    EXPECT_EQ(technique, 1);
    EXPECT_EQ(w.AttVData(2, 0).toDouble(), 7.0);
    EXPECT_EQ(w.VFTechniqueID(0).toInteger(), 6);
}

// The class has no handler for the settings page's guidance nor for its
// fourth event: neither reaches the host, and the page stays in its variable.
TEST_F(RoutingTest, TheSettingsPagesGuidanceAndFourthEventStopAtTheClass) {
    dll.ShowKelmar();
    QPointer<FakePage> settings = pageOf(kSettingsPage);
    settings->raiseSendMasseges(QStringLiteral("Specify value ranges"));
    settings->raiseUnloadOwn();
    flushDeletes();
    ASSERT_FALSE(settings.isNull());
    EXPECT_EQ(errorNumber([&] { hide(kSettingsPage); }), 0);
    open(kBisection)->raiseSendMasseges(QStringLiteral("Specify value functions."));
    EXPECT_EQ(host.events, QStringList{QStringLiteral("SendMasseges: Specify value functions.")});
}

TEST_F(RoutingTest, TheViewIsCreatedOnceReusedAndReleasedByUnloadKelVFS) {
    FakePage* page = open(kCurveDrawing);
    for (int n = 0; n < 2; ++n) {
        page->handle([page] { page->raiseShowKelVFS(); });
        modalShows.back()->hide();
    }
    ASSERT_EQ(modalShows.size(), 3u);
    QPointer<QDialog> view = modalShows[1];
    EXPECT_EQ(view->objectName(), QStringLiteral("frmVFS"));
    EXPECT_EQ(modalShows[2].data(), view.data());
    dll.UnloadKelVFS();
    flushDeletes();
    EXPECT_TRUE(view.isNull());
    EXPECT_EQ(pageOf(kCurveDrawing), page) << "only the view is released";
}

// Back: the page hides, shows the settings page where it stood and raises
// its own unload event, which empties its variable and no other.
TEST_F(RoutingTest, BackShowsTheSettingsPageInPlaceAndReleasesOnlyTheRaisingPage) {
    dll.ShowKelmar();
    FakePage* settings = pageOf(kSettingsPage);
    settings->hide();
    open(kBisection);
    QPointer<FakePage> technique = open(kDiffStandardSequence);
    technique->move(210, 140);
    technique->resize(900, 800);
    technique->handle([page = technique.data()] {
        const float left = page->pageLeft(), top = page->pageTop();
        page->raiseHideForm(static_cast<std::int16_t>(page->pageId()));
        page->raiseShowForm(kSettingsPage, left, top);
        page->raiseUnloadOwn();
    });
    EXPECT_TRUE(settings->isVisible());
    EXPECT_EQ(settings->frameGeometry().topLeft(), QPoint(210, 140));
    ASSERT_FALSE(technique.isNull()) << "the page is not deleted inside its own handler";
    flushDeletes();
    EXPECT_TRUE(technique.isNull());
    EXPECT_EQ(errorNumber([&] { hide(kDiffStandardSequence); }), 91);
    EXPECT_EQ(errorNumber([&] { hide(kBisection); }), 0);

    // The next technique page keeps the size the analyst gave the last one.
    settings->raiseShowForm(kMidPoint, 0, 0);
    EXPECT_EQ(pageOf(kMidPoint)->size(), QSize(900, 800));
}

// The raising page is hidden before the host hears of UnloadKelmar; the
// host may then destroy the component, which deletes every page and the
// view, while the page's handler is still on the stack.
TEST_F(RoutingTest, TheHostMayDestroyTheComponentInsideAnEventOfAPage) {
    auto* owned = new KelmarDll;
    RecordingHost local;
    owned->setEventSink(&local);
    owned->ShowKelmar();
    std::int16_t id = kBisection;
    float left = 0, top = 0;
    owned->ShowForm(id, left, top);
    QPointer<FakePage> page = pageOf(kBisection);
    page->raiseShowKelVFS();
    bool visibleWhenHostCalled = true;
    local.onUnloadKelmar = [&] {
        visibleWhenHostCalled = page->isVisible();
        delete owned;
        owned = nullptr;
    };
    page->handle([p = page.data()] { p->raiseUnloadKelmar(); });
    EXPECT_EQ(owned, nullptr);
    EXPECT_FALSE(visibleWhenHostCalled);
    ASSERT_FALSE(page.isNull()) << "not deleted inside its own handler";
    flushDeletes();
    ASSERT_EQ(modalShows.size(), 3u);
    for (const QPointer<QDialog>& p : modalShows) EXPECT_TRUE(p.isNull());
}

// An error ends the handler with a message box; so does a host's exception.
TEST_F(RoutingTest, ErrorsInAHandlerAreReportedAndEndTheHandler) {
    FakePage* page = open(kDirectRating);
    bool reachedEnd = false;
    page->handle([&] {
        page->raiseHideForm(kBisection);  // never created: error 91
        reachedEnd = true;
    });
    EXPECT_FALSE(reachedEnd);
    host.onUnloadKelmar = [] { throw std::runtime_error("host failed"); };
    page->handle([page] { page->raiseUnloadKelmar(); });
    ASSERT_EQ(messages.size(), 2);
    EXPECT_TRUE(messages[0].startsWith(QStringLiteral(
        "Kelmar: Run-time error '91':\n\nObject variable or With block variable not set")))
        << messages[0].toStdString();
    EXPECT_TRUE(messages[1].contains(QStringLiteral("host failed")));
}

// Help goes to the installed handler, the host's directory joined with a
// backslash (the context is pinned by the technique pages' Help button).
TEST_F(RoutingTest, HelpGoesToTheInstalledHandler) {
    wizardData().QUARNDir = QStringLiteral("/opt/quarn");
    QString file;
    KelmarDll::setHelpHandler([&](const QString& f, int) { file = f; });
    openHelp(nullptr);
    EXPECT_EQ(file, QStringLiteral("/opt/quarn\\QUARN.HLP"));
}

}  // namespace
}  // namespace kelmartest
