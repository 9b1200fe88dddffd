// The public methods of the component class.
#include "ComponentFixture.h"

#include <QApplication>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>

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

    // A new page that a page of the wizard asks for takes that page's place.
    settings->move(140, 90);
    settings->raiseShowForm(kMidPoint, 0, 0);
    EXPECT_EQ(pageOf(kMidPoint)->frameGeometry().topLeft(), QPoint(140, 90));
}

// A host window with a button and a text box; clicks and keys reach it
// through the window system, as the analyst's do, so a modal page that
// outlives the wizard would swallow them.
class HostWindow : public QWidget {
public:
    HostWindow() {
        button = new QPushButton(QStringLiteral("Save"), this);
        button->setGeometry(0, 0, 100, 30);
        button->setFocusPolicy(Qt::NoFocus);  // keys keep going to the box
        box = new QLineEdit(this);
        box->setGeometry(0, 40, 100, 30);
        QObject::connect(button, &QPushButton::clicked, this, [this] { ++clicks; });
        resize(200, 100);
        show();
        activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(this));
        box->setFocus();
    }
    bool takesInput() {
        QWindow* window = windowHandle();
        const int before = clicks;
        QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(50, 15));
        box->clear();
        QTest::keyClick(window, Qt::Key_A);
        return clicks == before + 1 && box->text() == QStringLiteral("a");
    }
    QPushButton* button;
    QLineEdit* box;
    int clicks = 0;
};

// With the real modal loops, every way through the wizard ends with the
// host's windows taking the mouse and the keyboard again: Back shows the
// settings page while its own loop ends, and ShowKelmar returns with the
// wizard still open; the host's own loop carries on from there.
TEST_F(MethodsTest, EveryWayThroughTheWizardLeavesTheHostTakingInput) {
    const struct { const char* name; QStringList steps; bool exported; } cases[] = {
        {"Next, Finish", {"Next", "Finish"}, true},
        {"Next, Cancel", {"Next", "Cancel"}, false},
        {"Back, Next, Finish", {"Next", "Back", "Next", "Finish"}, true},
        {"Back, Next, Cancel", {"Next", "Back", "Next", "Cancel"}, false},
        {"Back twice, Finish on the settings page", {"Next", "Back", "Next", "Back", "Finish"}, true},
        {"Back, Cancel on the settings page", {"Next", "Back", "Cancel"}, false},
    };
    setModalRunner({});
    host.onUnloadKelmar = [this] { dll.UnloadKelmar(); };
    HostWindow window;
    ASSERT_TRUE(window.takesInput()) << "before the wizard";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        host.events.clear();
        QStringList steps = c.steps;
        QObject scope;
        // Each step waits for the page in front to run its loop, then acts
        // as that page's button would.
        std::function<void()> next = [&] {
            if (steps.isEmpty()) return;
            const QString step = steps.takeFirst();
            QTimer::singleShot(0, &scope, next);
            const int technique = kBisection;
            FakePage* settings = pageOf(kSettingsPage);
            FakePage* page = settings != nullptr && settings->isVisible() ? settings : pageOf(technique);
            ASSERT_NE(page, nullptr) << qPrintable(step);
            page->handle([&] {
                if (step == QLatin1String("Next")) {
                    page->raiseHideForm(kSettingsPage);
                    page->raiseShowForm(technique, page->pageLeft(), page->pageTop());
                } else if (step == QLatin1String("Back")) {
                    page->raiseHideForm(technique);
                    page->raiseShowForm(kSettingsPage, page->pageLeft(), page->pageTop());
                    page->raiseUnloadOwn();
                } else {
                    if (step == QLatin1String("Finish")) page->raiseExportResults();
                    page->raiseUnloadKelmar();
                }
            });
        };
        QTimer::singleShot(0, &scope, next);
        dll.ShowKelmar();
        for (int i = 0; i < 100 && !host.events.contains(QStringLiteral("UnloadKelmar")); ++i)
            QCoreApplication::processEvents();
        flushDeletes();
        EXPECT_TRUE(steps.isEmpty());
        EXPECT_EQ(host.events.contains(QStringLiteral("ExportResults")), c.exported);
        EXPECT_EQ(QGuiApplication::modalWindow(), nullptr);
        EXPECT_TRUE(window.takesInput());
    }
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
                steps << QStringLiteral("technique modal: %1").arg(QApplication::activeModalWidget() == technique);
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
        EXPECT_EQ(errorNumber([&] { hide(outside); }), 0) << outside;
        EXPECT_EQ(errorNumber([&] { open(outside); }), 0) << outside;
    }
    for (std::int16_t never : {kCurveDrawing, kSettingsPage})
        EXPECT_EQ(errorNumber([&] { hide(never); }), 91) << "hiding a page never created: " << never;
    FakePage::failingLoad = kVariableCertainty;
    EXPECT_EQ(errorNumber([&] { open(kVariableCertainty); }), 9) << "an error while loading";
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
