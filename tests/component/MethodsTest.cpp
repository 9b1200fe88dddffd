// The public methods of the component class.
#include "ComponentFixture.h"

#include <QApplication>
#include <QGuiApplication>
#include <QTimer>

namespace kelmartest {
namespace {

using MethodsTest = ComponentTest;

// A page is loaded, then shown modal once; later it is shown modeless as it
// was, and ShowForm moves it to the position given.
TEST_F(MethodsTest, AFirstShowIsModalAndLaterOnesReShowTheSamePage) {
    dll.ShowKelmar();
    FakePage* settings = pageOf(kSettingsPage);
    ASSERT_EQ(loadedWhenShown, std::vector<bool>{true});
    EXPECT_EQ(modalShows[0].data(), settings);
    settings->hide();
    dll.ShowKelmar();
    EXPECT_TRUE(settings->isVisible());

    FakePage* page = open(kDirectRating, 333, 222);
    EXPECT_NE(page->frameGeometry().topLeft(), QPoint(333, 222)) << "a new page ignores the position";
    hide(kDirectRating);
    EXPECT_EQ(open(kDirectRating, 120.4f, 80.6f), page);
    EXPECT_EQ(loadedWhenShown, (std::vector<bool>{true, true}));
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(page->frameGeometry().topLeft(), QPoint(120, 81));
    EXPECT_EQ(settings->loads + page->loads, 2);
}

// With the real modal loops: Next on the settings page opens the technique
// page's loop inside its handler, and ShowKelmar returns only after that
// handler has ended, since the settings page was hidden.
// Back shows the settings page again while its modal loop ends: the page
// stays modal while it is shown, so that hiding it unblocks the host's
// windows again (otherwise they would stay deaf to the mouse).
TEST_F(MethodsTest, TheSettingsPageShownAgainByBackStaysModalUntilHidden) {
    setModalRunner({});
    QObject scope;
    QTimer::singleShot(0, &scope, [&] {
        FakePage* settings = pageOf(kSettingsPage);
        settings->handle([&] {
            QTimer::singleShot(0, &scope, [&] {
                FakePage* technique = pageOf(kBisection);
                technique->raiseHideForm(kBisection);
                technique->raiseShowForm(kSettingsPage, 0, 0);
            });
            settings->raiseHideForm(kSettingsPage);
            settings->raiseShowForm(kBisection, 0, 0);
        });
    });
    dll.ShowKelmar();
    FakePage* settings = pageOf(kSettingsPage);
    ASSERT_TRUE(settings->isVisible());
    EXPECT_TRUE(settings->isModal());
    settings->hide();
    EXPECT_EQ(QGuiApplication::modalWindow(), nullptr);
}

TEST_F(MethodsTest, ModalLoopsNestAndShowKelmarReturnsWhenTheSettingsPageIsHidden) {
    setModalRunner({});
    QStringList steps;
    QObject scope;  // ends the timers with the test, whatever happens
    QTimer::singleShot(0, &scope, [&] {
        FakePage* settings = pageOf(kSettingsPage);
        steps << QStringLiteral("settings modal: %1").arg(QApplication::activeModalWidget() == settings);
        settings->handle([&] {
            QTimer::singleShot(0, &scope, [&] {
                FakePage* technique = pageOf(kBisection);
                steps << QStringLiteral("technique modal: %1")
                             .arg(QApplication::activeModalWidget() == technique);
                technique->hide();
            });
            settings->raiseHideForm(kSettingsPage);
            settings->raiseShowForm(kBisection, 0, 0);
            steps << QStringLiteral("technique loop ended");
        });
    });
    dll.ShowKelmar();
    steps << QStringLiteral("ShowKelmar returned");
    EXPECT_EQ(steps, (QStringList{QStringLiteral("settings modal: 1"), QStringLiteral("technique modal: 1"),
                                  QStringLiteral("technique loop ended"),
                                  QStringLiteral("ShowKelmar returned")}));
}

TEST_F(MethodsTest, IdsOutsideThePagesAreIgnoredAndOtherFaultsReachTheCaller) {
    for (std::int16_t outside : {9, -1, 100}) {
        EXPECT_EQ(errorOf([&] { hide(outside); }), 0) << outside;
        EXPECT_EQ(errorOf([&] { open(outside); }), 0) << outside;
    }
    for (std::int16_t never : {kCurveDrawing, kSettingsPage})
        EXPECT_EQ(errorOf([&] { hide(never); }), 91) << "hiding a page never created: " << never;
    FakePage::failingLoad = kVariableCertainty;
    EXPECT_EQ(errorOf([&] { open(kVariableCertainty); }), 9) << "an error while loading";
    EXPECT_TRUE(modalShows.empty());
}

TEST_F(MethodsTest, UnloadKelmarReleasesSixPagesAndKeepsThreeAndTheView) {
    dll.ShowKelmar();
    for (std::int16_t id = 0; id <= 7; ++id) open(id);
    pageOf(kMidPoint)->raiseShowKelVFS();
    std::vector<QPointer<KelPage>> before;
    for (int id = 0; id <= 8; ++id) before.emplace_back(pageOf(id));
    QPointer<QDialog> view = modalShows.back();
    ASSERT_EQ(view->objectName(), QStringLiteral("frmVFS"));

    dll.UnloadKelmar();
    for (int id : {8, 1, 0, 2, 4, 6}) EXPECT_FALSE(before[static_cast<std::size_t>(id)]->isVisible()) << id;
    flushDeletes();
    for (int id : {8, 1, 0, 2, 4, 6}) EXPECT_TRUE(before[static_cast<std::size_t>(id)].isNull()) << id;
    for (int id : {3, 5, 7}) EXPECT_FALSE(before[static_cast<std::size_t>(id)].isNull()) << id;
    EXPECT_FALSE(view.isNull());

    // The next run gets new pages for the released ids and the kept ones as they were.
    dll.ShowKelmar();
    EXPECT_NE(pageOf(kSettingsPage), nullptr);
    EXPECT_EQ(open(kCategoryIdentification), before[kCategoryIdentification].data());
    EXPECT_NE(open(kMidPoint), nullptr);
}

}  // namespace
}  // namespace kelmartest
