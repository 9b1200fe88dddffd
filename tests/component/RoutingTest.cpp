// What the component does with each event a page raises, and how it keeps
// the host safe from errors and from pages released inside their handlers.
#include "ComponentFixture.h"

#include "pages/common/PlaceholderPage.h"

#include <QKeyEvent>
#include <QPushButton>

#include <stdexcept>

namespace kelmartest {
namespace {

class RoutingTest : public ComponentTest {
protected:
    void SetUp() override {
        ComponentTest::SetUp();
        dll.setEventSink(&host);
    }
    void TearDown() override {
        dll.setEventSink(nullptr);
        ComponentTest::TearDown();
    }
    FakePage* open(std::int16_t id) {
        float left = 0, top = 0;
        dll.ShowForm(id, left, top);
        return pageOf(id);
    }

    RecordingHost host;
    KelmarDll dll;
};

TEST_F(RoutingTest, ExportResultsPassesTheWorkingRecordByReference) {
    FakePage* page = open(kMidPoint);
    WizardData& w = wizardData();
    w.MaxVal = 100;
    w.AttVData(1, 1) = Variant(55.0);
    host.onExport = [](VariantArray& AttVData, Variant& VFTechniqueID) {
        EXPECT_EQ(AttVData(1, 1).toDouble(), 55.0);
        AttVData(2, 0) = Variant(7.0);  // the host writes through the reference
        ASSERT_TRUE(VFTechniqueID.isArray());
        EXPECT_EQ(VFTechniqueID.toArray().lbound(), 0);
        EXPECT_EQ(VFTechniqueID.toArray().ubound(), 1);
        EXPECT_EQ(VFTechniqueID.toArray()(0).toInteger(), 1);
        VFTechniqueID.toArray()(0) = Variant(std::int16_t{6});  // a copy: not written back
    };
    page->handle([page] { page->raiseExportResults(); });
    ASSERT_EQ(host.names(), QStringList{QStringLiteral("ExportResults")});
    EXPECT_EQ(host.exportedMaxVal, 100);
    EXPECT_EQ(w.AttVData(2, 0).toDouble(), 7.0);
    EXPECT_EQ(w.VFTechniqueID(0).toInteger(), 1);
}

TEST_F(RoutingTest, GuidanceReachesTheHostFromTechniquePagesOnly) {
    dll.ShowKelmar();
    pageOf(kSettingsPage)->raiseSendMasseges(QStringLiteral("Specify value ranges"));
    EXPECT_TRUE(host.events.empty());
    open(kBisection)->raiseSendMasseges(QStringLiteral("Specify single-attribute value functions."));
    ASSERT_EQ(host.events.size(), 1u);
    EXPECT_EQ(host.events[0].name, QStringLiteral("SendMasseges"));
    EXPECT_EQ(host.events[0].text, QStringLiteral("Specify single-attribute value functions."));
}

TEST_F(RoutingTest, BackHidesThePageShowsTheSettingsPageWhereItStoodAndReleasesIt) {
    dll.ShowKelmar();
    FakePage* settings = pageOf(kSettingsPage);
    // Next on the settings page.
    settings->handle([settings] {
        settings->raiseHideForm(kSettingsPage);
        settings->raiseShowForm(kDiffStandardSequence, settings->pageLeft(), settings->pageTop());
    });
    EXPECT_FALSE(settings->isVisible());
    QPointer<FakePage> technique = pageOf(kDiffStandardSequence);
    ASSERT_FALSE(technique.isNull());
    ASSERT_TRUE(technique->isVisible());

    technique->move(210, 140);
    technique->handle([page = technique.data()] {
        const float left = page->pageLeft();
        const float top = page->pageTop();
        page->raiseHideForm(static_cast<std::int16_t>(page->pageId()));
        page->raiseShowForm(kSettingsPage, left, top);
        page->raiseUnloadOwn();
    });
    EXPECT_TRUE(settings->isVisible());
    EXPECT_EQ(settings->frameGeometry().topLeft(), QPoint(210, 140));
    ASSERT_FALSE(technique.isNull()) << "the page is not deleted inside its own handler";
    EXPECT_FALSE(technique->isVisible());
    EXPECT_EQ(technique->eventSink(), nullptr);
    flushDeletes();
    EXPECT_TRUE(technique.isNull());

    // Its variable is empty now: HideForm fails, ShowForm builds a new page.
    std::int16_t id = kDiffStandardSequence;
    EXPECT_THROW(dll.HideForm(id), RuntimeError);
    open(kDiffStandardSequence);
    EXPECT_EQ(createdCount(kDiffStandardSequence), 2);
}

TEST_F(RoutingTest, ShowKelVFSCreatesTheViewOnceAndShowsItModalEachTime) {
    FakePage* page = open(kCurveDrawing);
    modalShows.clear();
    page->handle([page] { page->raiseShowKelVFS(); });
    ASSERT_EQ(modalShows.size(), 1u);
    QPointer<QDialog> view = modalShows[0];
    EXPECT_EQ(view->objectName(), QStringLiteral("frmVFS"));
    view->hide();
    view->move(5, 5);
    page->handle([page] { page->raiseShowKelVFS(); });
    ASSERT_EQ(modalShows.size(), 2u);
    EXPECT_EQ(modalShows[1].data(), view.data());
    EXPECT_EQ(view->pos(), QPoint(5, 5)) << "an existing view is not placed again";
}

TEST_F(RoutingTest, ClosingTheViewRaisesUnloadKelVFSToTheHost) {
    host.onUnloadKelVFS = [this] { dll.UnloadKelVFS(); };
    FakePage* page = open(kCurveDrawing);
    page->raiseShowKelVFS();
    QPointer<QDialog> view = modalShows.back();
    auto* ok = view->findChild<QPushButton*>(QStringLiteral("cmdOK"));
    ASSERT_NE(ok, nullptr);
    ok->click();
    EXPECT_EQ(host.names(), QStringList{QStringLiteral("UnloadKelVFS")});
    EXPECT_FALSE(view->isVisible());
    flushDeletes();
    EXPECT_TRUE(view.isNull());
}

TEST_F(RoutingTest, UnloadKelmarHidesTheRaisingPageBeforeTheHostHearsOfIt) {
    FakePage* page = open(kVariableProbability);
    bool visibleWhenHostCalled = true;
    host.onUnloadKelmar = [&] { visibleWhenHostCalled = page->isVisible(); };
    page->raiseUnloadKelmar();
    EXPECT_EQ(host.names(), QStringList{QStringLiteral("UnloadKelmar")});
    EXPECT_FALSE(visibleWhenHostCalled);
}

TEST_F(RoutingTest, ThePagesOwnUnloadEmptiesOnlyItsVariable) {
    FakePage* bisection = open(kBisection);
    QPointer<FakePage> catIdn = open(kCategoryIdentification);
    catIdn->raiseUnloadOwn();
    flushDeletes();
    EXPECT_TRUE(catIdn.isNull());
    std::int16_t id = kBisection;
    EXPECT_NO_THROW(dll.HideForm(id));
    EXPECT_FALSE(bisection->isVisible());
}

TEST_F(RoutingTest, AClosedTechniquePageIsReleasedAndEscapeDoesNotCloseIt) {
    QPointer<FakePage> page = open(kVariableCertainty);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(page.data(), &escape);
    EXPECT_TRUE(page->isVisible());
    page->close();
    EXPECT_FALSE(page->isVisible());
    flushDeletes();
    EXPECT_TRUE(page.isNull());
    std::int16_t id = kVariableCertainty;
    EXPECT_THROW(dll.HideForm(id), RuntimeError);
}

// Finish on a technique page: the host receives the results, then
// UnloadKelmar, and releases the pages from inside that event.
TEST_F(RoutingTest, FinishOnAPlaceholderPageExportsAndUnloadsSafely) {
    registerPage(kMidPoint, [] () -> KelPage* { return new PlaceholderPage(kMidPoint); });
    host.onUnloadKelmar = [this] { dll.UnloadKelmar(); };
    std::int16_t id = kMidPoint;
    float left = 0, top = 0;
    dll.ShowForm(id, left, top);
    QPointer<QDialog> page = modalShows.back();
    ASSERT_EQ(page->objectName(), QStringLiteral("frmKelMidPoint"));
    EXPECT_EQ(page->windowTitle(), QStringLiteral("Kelmar: Middle Point Setting"));
    EXPECT_EQ(host.names(), QStringList{QStringLiteral("SendMasseges")});
    host.events.clear();

    page->findChild<QPushButton*>(QStringLiteral("cmdFinish"))->click();
    EXPECT_EQ(host.names(),
              (QStringList{QStringLiteral("ExportResults"), QStringLiteral("UnloadKelmar")}));
    EXPECT_TRUE(messages.isEmpty()) << messages.join(QLatin1Char('\n')).toStdString();
    // Cost attribute, linear from 10 to 30: alternative 1 scores 20.
    EXPECT_DOUBLE_EQ(wizardData().AttVData(1, 0).toDouble(), 50.0);
    EXPECT_DOUBLE_EQ(wizardData().AttVData(2, 1).toDouble(), 100.0);
    ASSERT_FALSE(page.isNull());
    EXPECT_FALSE(page->isVisible());
    flushDeletes();
    EXPECT_TRUE(page.isNull());
}

// The host answers UnloadKelmar with the method UnloadKelmar while the
// raising page's handler is still on the stack.
TEST_F(RoutingTest, ReleasingThePagesFromInsideTheRaisingPagesHandlerIsSafe) {
    dll.ShowKelmar();
    std::vector<QPointer<FakePage>> pages(9);
    pages[kSettingsPage] = pageOf(kSettingsPage);
    for (std::int16_t id = 0; id <= 7; ++id) pages[static_cast<std::size_t>(id)] = open(id);
    FakePage* raising = pages[kDiffStandardSequence].data();
    host.onUnloadKelmar = [this] { dll.UnloadKelmar(); };
    bool aliveAfterEvent = false;
    raising->handle([&] {
        raising->raiseUnloadKelmar();
        // Still a valid object: only its deletion is scheduled.
        aliveAfterEvent = !raising->isVisible() && raising->pageId() == kDiffStandardSequence;
    });
    EXPECT_TRUE(aliveAfterEvent);
    EXPECT_TRUE(messages.isEmpty()) << messages.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(host.names(), QStringList{QStringLiteral("UnloadKelmar")});
    flushDeletes();
    for (int id : {8, 1, 0, 2, 4, 6}) {
        EXPECT_TRUE(pages[static_cast<std::size_t>(id)].isNull()) << id;
    }
    for (int id : {3, 5, 7}) EXPECT_FALSE(pages[static_cast<std::size_t>(id)].isNull()) << id;

    // The next ShowForm of a released page builds a new one.
    std::int16_t id = kDiffStandardSequence;
    float left = 0, top = 0;
    dll.ShowForm(id, left, top);
    EXPECT_EQ(createdCount(kDiffStandardSequence), 2);
}

TEST_F(RoutingTest, BackAndCancelOnAPlaceholderPage) {
    registerPage(kCurveDrawing, [] () -> KelPage* { return new PlaceholderPage(kCurveDrawing); });
    dll.ShowKelmar();
    FakePage* settings = pageOf(kSettingsPage);
    settings->hide();
    std::int16_t id = kCurveDrawing;
    float left = 0, top = 0;
    dll.ShowForm(id, left, top);
    QPointer<QDialog> page = modalShows.back();
    page->move(77, 66);
    page->findChild<QPushButton*>(QStringLiteral("cmdBack"))->click();
    EXPECT_TRUE(settings->isVisible());
    EXPECT_EQ(settings->frameGeometry().topLeft(), QPoint(77, 66));
    flushDeletes();
    EXPECT_TRUE(page.isNull());

    dll.ShowForm(id, left, top);
    page = modalShows.back();
    host.events.clear();
    page->findChild<QPushButton*>(QStringLiteral("cmdCancel"))->click();
    EXPECT_EQ(host.names(), QStringList{QStringLiteral("UnloadKelmar")});
    EXPECT_FALSE(page->isVisible());
}

TEST_F(RoutingTest, TheHostMayDestroyTheComponentInsideAnEventOfAPage) {
    auto* owned = new KelmarDll;
    RecordingHost local;
    owned->setEventSink(&local);
    float left = 0, top = 0;
    std::int16_t id = kBisection;
    owned->ShowForm(id, left, top);
    QPointer<FakePage> page = pageOf(kBisection);
    local.onUnloadKelmar = [&owned] {
        delete owned;
        owned = nullptr;
    };
    page->handle([p = page.data()] { p->raiseUnloadKelmar(); });
    EXPECT_EQ(owned, nullptr);
    ASSERT_FALSE(page.isNull());
    flushDeletes();
    EXPECT_TRUE(page.isNull());
}

TEST_F(RoutingTest, ErrorsInAHandlerAreReportedAndEndTheHandler) {
    FakePage* page = open(kDirectRating);
    bool reachedEnd = false;
    page->handle([&] {
        page->raiseHideForm(kBisection);  // never created: error 91
        reachedEnd = true;
    });
    EXPECT_FALSE(reachedEnd);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].startsWith(QStringLiteral("Run-time error '91':"))) << messages[0].toStdString();
    EXPECT_TRUE(messages[0].contains(QStringLiteral("Object variable or With block variable not set")));
    EXPECT_EQ(messageTitles[0], QStringLiteral("Kelmar"));

    // A host whose handler throws does not bring the process down either.
    host.onUnloadKelmar = [] { throw std::runtime_error("host failed"); };
    page->handle([page] { page->raiseUnloadKelmar(); });
    ASSERT_EQ(messages.size(), 2);
    EXPECT_TRUE(messages[1].contains(QStringLiteral("host failed")));
}

TEST_F(RoutingTest, HelpGoesToTheInstalledHandlerWithTheFileAndContext) {
    QString file;
    int context = 0;
    KelmarDll::setHelpHandler([&](const QString& f, int c) {
        file = f;
        context = c;
    });
    openHelp(nullptr);
    EXPECT_EQ(file, QStringLiteral("/opt/quarn\\QUARN.HLP"));
    EXPECT_EQ(context, 4005020);
    EXPECT_EQ(helpFilePath(), file);
    // The default handler does nothing visible when the file is missing.
    KelmarDll::setHelpHandler({});
    EXPECT_NO_THROW(openHelp(nullptr));
    EXPECT_TRUE(messages.isEmpty());
}

}  // namespace
}  // namespace kelmartest
