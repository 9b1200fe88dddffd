// The public methods of the component class and their kept quirks.
#include "ComponentFixture.h"

namespace kelmartest {
namespace {

class MethodsTest : public ComponentTest {};

TEST_F(MethodsTest, ShowKelmarCreatesLoadsAndShowsTheSettingsPageModalOnce) {
    KelmarDll dll;
    bool loadedBeforeShown = false;
    setModalRunner([&](QDialog& page) {
        modalShows.emplace_back(&page);
        loadedBeforeShown = static_cast<KelPage&>(page).isLoaded();
        page.show();
    });
    dll.ShowKelmar();
    FakePage* settings = pageOf(kSettingsPage);
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->loads, 1);
    EXPECT_TRUE(loadedBeforeShown);
    ASSERT_EQ(modalShows.size(), 1u);
    EXPECT_EQ(modalShows[0].data(), settings);

    // A second call shows the same page again, not modal and not re-placed.
    settings->hide();
    settings->move(40, 50);
    const QPoint placed = settings->pos();
    dll.ShowKelmar();
    EXPECT_EQ(createdCount(kSettingsPage), 1);
    EXPECT_EQ(modalShows.size(), 1u);
    EXPECT_TRUE(settings->isVisible());
    EXPECT_EQ(settings->pos(), placed);
    EXPECT_EQ(settings->loads, 1);
}

TEST_F(MethodsTest, HideFormHidesAKnownPageIgnoresOtherIdsAndFailsOnAnEmptyVariable) {
    KelmarDll dll;
    std::int16_t id = kBisection;
    float left = 10, top = 20;
    dll.ShowForm(id, left, top);
    FakePage* page = pageOf(kBisection);
    ASSERT_NE(page, nullptr);
    ASSERT_TRUE(page->isVisible());

    dll.HideForm(id);
    EXPECT_FALSE(page->isVisible());
    flushDeletes();
    EXPECT_EQ(pageOf(kBisection), page) << "hiding never destroys a page";

    for (std::int16_t outside : {std::int16_t{9}, std::int16_t{-1}, std::int16_t{100}}) {
        EXPECT_NO_THROW(dll.HideForm(outside));
    }

    std::int16_t never = kCurveDrawing;
    try {
        dll.HideForm(never);
        FAIL() << "HideForm of a page never created must fail";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 91);
    }
    std::int16_t settingsId = kSettingsPage;
    EXPECT_THROW(dll.HideForm(settingsId), RuntimeError);
}

TEST_F(MethodsTest, ShowFormIgnoresThePositionForANewPageAndMovesAnExistingOne) {
    KelmarDll dll;
    std::int16_t id = kDirectRating;
    float left = 333, top = 222;
    dll.ShowForm(id, left, top);
    FakePage* page = pageOf(kDirectRating);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->loads, 1);
    ASSERT_EQ(modalShows.size(), 1u);
    EXPECT_NE(page->frameGeometry().topLeft(), QPoint(333, 222));

    dll.HideForm(id);
    const QSize size = page->size();
    left = 120.4f;
    top = 80.6f;
    dll.ShowForm(id, left, top);
    EXPECT_EQ(createdCount(kDirectRating), 1);
    EXPECT_EQ(modalShows.size(), 1u) << "an existing page is shown, not modal";
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(page->frameGeometry().topLeft(), QPoint(120, 81));
    EXPECT_EQ(page->size(), size);
    EXPECT_EQ(page->loads, 1);

    for (std::int16_t outside : {std::int16_t{-1}, std::int16_t{9}}) {
        dll.ShowForm(outside, left, top);
    }
    EXPECT_EQ(createdPages().size(), 1u);
}

TEST_F(MethodsTest, UnloadKelmarReleasesSixPagesAndKeepsFour) {
    KelmarDll dll;
    dll.ShowKelmar();
    float left = 0, top = 0;
    for (std::int16_t id = 0; id <= 7; ++id) dll.ShowForm(id, left, top);
    FakePage* anyTechnique = pageOf(kMidPoint);
    anyTechnique->raiseShowKelVFS();
    ASSERT_EQ(createdPages().size(), 9u);
    std::vector<QPointer<KelPage>> before;
    for (int id = 0; id <= 8; ++id) before.emplace_back(pageOf(id));
    QPointer<QWidget> view = modalShows.back().data();
    ASSERT_EQ(view->objectName(), QStringLiteral("frmVFS"));

    dll.UnloadKelmar();
    for (int id : {8, 1, 0, 2, 4, 6}) {
        EXPECT_FALSE(before[static_cast<std::size_t>(id)]->isVisible()) << id;
    }
    flushDeletes();
    for (int id : {8, 1, 0, 2, 4, 6}) EXPECT_TRUE(before[static_cast<std::size_t>(id)].isNull()) << id;
    for (int id : {3, 5, 7}) EXPECT_FALSE(before[static_cast<std::size_t>(id)].isNull()) << id;
    EXPECT_FALSE(view.isNull());

    // A second run: a new settings page, the kept pages with their state.
    before[3]->setProperty("state", 42);
    dll.ShowKelmar();
    EXPECT_EQ(createdCount(kSettingsPage), 2);
    std::int16_t catIdn = kCategoryIdentification;
    dll.ShowForm(catIdn, left, top);
    EXPECT_EQ(createdCount(kCategoryIdentification), 1);
    EXPECT_EQ(before[3]->property("state").toInt(), 42);
    std::int16_t midPoint = kMidPoint;
    dll.ShowForm(midPoint, left, top);
    EXPECT_EQ(createdCount(kMidPoint), 2);

    // Without the settings page, hiding it is again an error.
    dll.UnloadKelmar();
    std::int16_t settingsId = kSettingsPage;
    EXPECT_THROW(dll.HideForm(settingsId), RuntimeError);
}

TEST_F(MethodsTest, UnloadKelVFSEmptiesOnlyTheSpecificationView) {
    KelmarDll dll;
    float left = 0, top = 0;
    std::int16_t id = kMidPoint;
    dll.ShowForm(id, left, top);
    pageOf(kMidPoint)->raiseShowKelVFS();
    QPointer<QDialog> view = modalShows.back();
    dll.UnloadKelVFS();
    EXPECT_FALSE(view->isVisible());
    flushDeletes();
    EXPECT_TRUE(view.isNull());
    EXPECT_NE(pageOf(kMidPoint), nullptr);

    pageOf(kMidPoint)->raiseShowKelVFS();
    EXPECT_NE(modalShows.back().data(), nullptr);
    EXPECT_EQ(modalShows.back()->objectName(), QStringLiteral("frmVFS"));
}

TEST_F(MethodsTest, DestroyingTheComponentDeletesEveryPage) {
    std::vector<QPointer<KelPage>> pages;
    {
        KelmarDll dll;
        dll.ShowKelmar();
        float left = 0, top = 0;
        for (std::int16_t id : {std::int16_t{0}, std::int16_t{3}, std::int16_t{5}}) {
            dll.ShowForm(id, left, top);
        }
        pageOf(kMidPoint)->raiseShowKelVFS();
        for (const CreatedPage& p : createdPages()) pages.emplace_back(p.page.data());
        pages.emplace_back(static_cast<KelPage*>(modalShows.back().data()));
    }
    for (const QPointer<KelPage>& p : pages) EXPECT_TRUE(p.isNull());
}

TEST_F(MethodsTest, ErrorsOfAPageLoadReachTheCaller) {
    registerPage(kVariableCertainty, [] () -> KelPage* {
        auto* page = new FakePage(kVariableCertainty);
        createdPages().push_back({kVariableCertainty, page});
        page->onLoadAction = [](FakePage&) { throw RuntimeError(RuntimeError::SubscriptOutOfRange); };
        return page;
    });
    KelmarDll dll;
    std::int16_t id = kVariableCertainty;
    float left = 0, top = 0;
    try {
        dll.ShowForm(id, left, top);
        FAIL() << "the load error must reach the caller";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 9);
    }
    EXPECT_TRUE(modalShows.empty());
}

}  // namespace
}  // namespace kelmartest
