// The Category Identification page: the ladder, the level table for every
// orientation and kind, the orientation buttons, the busy flag, the tab
// strip, the points and marks it lays out, dragging a level, Linear and
// Restore, and the order-values labels.
#include "TechniqueFixture.h"

#include "pages/techniques/frmKelCatIdn.h"

#include <QRadioButton>
#include <QTabBar>

#include <cmath>
#include <functional>
#include <set>

namespace kelmar::test {
namespace {

constexpr OleColor kBlue = 0xFF0000, kOlive = 0x008080, kRed = 0x0000FF;

class CategoryPageTest : public TechniquePageTest<frmKelCatIdn> {
protected:
    // Price (benefit) and Noise (cost) both on 0 .. 64, so the ladder reads
    // 1, 2, 4, ... 64; the host's functions are the linear ones.
    void SetUp() override {
        TechniquePageTest::SetUp();
        WizardData& w = wizardData();
        w.SelTechnique = kCategoryIdentification;
        pageSize = QSize(820, 820);
        for (int att : {0, 1}) {
            w.ScoreMinimum(att) = w.ScoreMinimumCopy(att) = 0.0;
            w.ScoreMaximum(att) = w.ScoreMaximumCopy(att) = 64.0;
            for (int k = 0; k < 5; ++k) w.SmpX(att, k) = w.InSmpX(att, k) = 16.0 * k;
        }
    }

    DrawSurface* chart(const char* name = "picRatingChart") const {
        return child<DrawSurface>(QString::fromLatin1(name));
    }
    QRadioButton* option(const char* name) const { return child<QRadioButton>(QString::fromLatin1(name)); }
    // A press and a release of the button in the middle of an option button.
    static void release(QRadioButton* option, Qt::MouseButton button) {
        gesture(option, {{option->width() / 2.0, option->height() / 2.0}}, button);
    }

    // The texts printed with their left edge at x, in the order drawn.
    static QStringList textsAt(const DrawSurface& pic, double x) {
        return drawnTexts(pic, [x](const DrawPrimitive& p) { return std::abs(p.p1.x() - x) < 1e-9; });
    }
    static const DrawPrimitive* textPrimitive(const DrawSurface& pic, const QString& text) {
        for (const DrawPrimitive& p : pic.primitives())
            if (p.kind == DrawPrimitive::Kind::Text && p.text == text) return &p;
        return nullptr;
    }
};

// The table's three columns for every orientation and kind: ladder lines in
// blue, scores without a trailing point, labels in olive, headings in red.
// Then the points the curve gets and where their marks stand: in score
// order, level numbers beside the marks, the values' scale reversed for a
// cost. (Turning the ladder and back gives the points back to the bit: the
// random-input run turns it on every visit.)
TEST_F(CategoryPageTest, TheLevelTableAndThePointsFollowTheOrientationAndTheKind) {
    const QStringList more = {"Less / Somewhat More", "Somewhat More", "Somewhat More / More", "More",
                              "More / Much More", "Much More"};
    QStringList less = more;
    less.replaceInStrings("More", "Less");
    less[0] = "Most / Somewhat Less";
    const struct { std::int16_t att; bool maxToMin; double high; QString first, heading, scores; } cases[] = {
        {0, true, 64, "Most Benefitial", "BENEFIT", "63 62 60 56 48 32 0"},
        {1, true, 64, "Most Costly", "COST", "63 62 60 56 48 32 0"},
        {0, false, 64, "Less Beneficial", "BENEFIT", "1 2 4 8 16 32 64"},
        {1, false, 64, "Less Costly", "COST", "1 2 4 8 16 32 64"},
        {1, false, 12, "Less Costly", "COST", "0.19 0.38 0.75 1.5 3 6 12"},
    };
    const auto colour = [](const DrawSurface& pic, const QString& text) { return textPrimitive(pic, text)->color; };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.att << c.maxToMin << " " << c.high);
        SetUp();
        wizardData().ScoreMaximum(c.att) = c.high;
        open(c.att);
        release(option(c.maxToMin ? "optMaxToMin" : "optMinToMax"), Qt::LeftButton);
        const DrawSurface& pic = *chart("picCatChart");
        const QStringList scores = c.scores.split(' ');
        QStringList names, values, labels = QStringList{c.first} + (c.maxToMin ? less : more);
        for (int i = 0; i < 7; ++i) {
            const QString n = QString::number(i);
            names << "P" + n + (c.maxToMin ? " = Pmax - e" : " = Pmin + e") + n;
            values << " = " + scores[i];
            labels[i] = "Label " + n + ": " + labels[i];
            EXPECT_EQ(textPrimitive(pic, names[i])->p1.y(), -22.0 - 9.5 * i);
            EXPECT_EQ(std::tuple(colour(pic, names[i]), colour(pic, values[i]), colour(pic, labels[i])),
                      std::tuple(kBlue, kBlue, kOlive));
        }
        EXPECT_EQ(textsAt(pic, 14.0), names);
        EXPECT_EQ(textsAt(pic, 37.0), values);
        EXPECT_EQ(textsAt(pic, 59.0), labels);
        for (const auto& [word, y] : {std::pair{c.heading, -24.0}, {QString("LEVELS"), -36.0},
                                      {QString("&"), -48.0}, {QString("CATEGORY"), -60.0}}) {
            EXPECT_EQ(textPrimitive(pic, word)->p1.y(), y);
            EXPECT_EQ(colour(pic, word), kRed);
        }
        if (c.high != 64) continue;
        for (int k = 0; k < 7; ++k) {
            // Point k stands at the table's level, the ends at the range's ends.
            const int level = c.maxToMin ? 6 - k : k;
            const double score = level == 0 ? (c.maxToMin ? 64 : 0) : scores[level].toDouble();
            EXPECT_EQ(wizardData().SmpX(c.att, k).toDouble(), score) << k;
            EXPECT_DOUBLE_EQ(value(c.att, k), c.att == 1 ? 1.0 - score / 64 : score / 64) << k;
            EXPECT_NEAR(centreOf(k), 100.0 * score / 64, 1e-9) << k;
            const QStringList beside = textsAt(*chart(), centreOf(k) + 3.0);
            ASSERT_FALSE(beside.isEmpty()) << k;
            EXPECT_EQ(beside.last(), QString::number(level)) << k;
        }
    }
}

TEST_F(CategoryPageTest, OnlyALeftReleaseSetsTheOrientationWhichStaysWithTheAttribute) {
    WizardData& w = wizardData();
    open();
    EXPECT_TRUE(option("optMinToMax")->isChecked());
    const auto before = chart("picCatChart")->primitives().size();
    for (Qt::MouseButton other : {Qt::RightButton, Qt::MiddleButton}) {
        release(option("optMaxToMin"), other);
        EXPECT_TRUE(w.SmpY(0, 10).isEmpty());
        EXPECT_TRUE(option("optMinToMax")->isChecked());
    }
    EXPECT_EQ(chart("picCatChart")->primitives().size(), before);

    release(option("optMaxToMin"), Qt::LeftButton);
    EXPECT_EQ(w.SmpY(0, 10).toDouble(), -1.0);
    EXPECT_TRUE(option("optMaxToMin")->isChecked());
    EXPECT_EQ(w.SmpX(0, 1).toDouble(), 32.0);

    choose("cmbAttributes", 1);  // never shown here: minimum to maximum
    EXPECT_TRUE(option("optMinToMax")->isChecked());
    release(option("optMinToMax"), Qt::LeftButton);
    EXPECT_EQ(w.SmpY(1, 10).type(), Variant::Type::Boolean);
    EXPECT_FALSE(w.SmpY(1, 10).toBoolean());

    choose("cmbAttributes", 0);
    EXPECT_TRUE(option("optMaxToMin")->isChecked());
    // Pressing the button already on keeps it on.
    release(option("optMaxToMin"), Qt::LeftButton);
    EXPECT_TRUE(option("optMaxToMin")->isChecked());
    EXPECT_EQ(w.SmpY(0, 10).toDouble(), -1.0);
}

// Refilling the attribute list raises the list's own events; while the
// load, Linear, Restore or a release runs they must not switch attributes.
TEST_F(CategoryPageTest, TheAttributeListIsIgnoredWhileTheBusyFlagIsSet) {
    page = std::make_unique<frmKelCatIdn>();
    page->setEventSink(&sink);
    auto* list = child<QComboBox>(QStringLiteral("cmbAttributes"));
    std::vector<int> flags;
    QObject::connect(list, &QComboBox::currentIndexChanged, page.get(), [&] {
        flags.push_back(page->busyFlag());
        if (page->busyFlag() != 0) emit list->activated(2);
    });
    const auto run = [&](const std::function<void()>& action) {
        flags.clear();
        action();
        EXPECT_EQ(wizardData().SelAtt, 0);
        EXPECT_EQ(page->busyFlag(), 0);
        return std::set<int>(flags.begin(), flags.end());
    };
    EXPECT_EQ(run([&] { page->load(); page->show(); }), std::set<int>{1});
    EXPECT_EQ(run([&] { click("cmdLinear"); }), std::set<int>{2});
    EXPECT_EQ(run([&] { drag(3, 30.0); }), std::set<int>{2});
    EXPECT_EQ(run([&] { click("cmdRestore"); }), std::set<int>{2});
    choose("cmbAttributes", 1);
    EXPECT_EQ(wizardData().SelAtt, 1);
}

// Opening sets the ladder's factor and count whatever they were.
TEST_F(CategoryPageTest, OpeningSetsTheLadderTheTabStripBringsEitherChartToTheFront) {
    WizardData& w = wizardData();
    w.CategoryFactor = 0.5f;
    w.CategoryCount = 5;
    open();
    EXPECT_EQ(w.CategoryFactor, 1.0f);
    EXPECT_EQ(w.CategoryCount, 7);
    QWidget* categories = chart("picCatChart");
    EXPECT_TRUE(categories->isVisible());
    child<QTabBar>("tsCurves")->setCurrentIndex(1);
    EXPECT_TRUE(chart("picVFChart")->isVisible());
    for (int other : {0, 3, -1}) {
        page->tsCurvesClick(other);
        EXPECT_FALSE(categories->isVisible()) << other;
    }
    page->tsCurvesClick(1);
    EXPECT_TRUE(categories->isVisible());
    EXPECT_FALSE(chart("picVFChart")->isVisible());
}

TEST_F(CategoryPageTest, ALevelIsDraggedBetweenItsNeighboursAndItsReleaseIsAnEdit) {
    open();  // values 0, 2/64, 4/64, 8/64, 16/64, 32/64, 1
    drag(4, 40.0);
    EXPECT_DOUBLE_EQ(value(0, 4), 0.40);
    EXPECT_NEAR(centreOf(4), 40.0, 1e-9);
    expectEdited(0, kCategoryIdentification, 4);
    // Across the next level: just below its value.
    drag(4, 70.0);
    EXPECT_DOUBLE_EQ(value(0, 4), 0.475);
    EXPECT_NEAR(centreOf(4), 47.5, 1e-9);
    // The categorization chart shows the new value at the level's score.
    bool shown = false;
    for (const DrawPrimitive& p : chart("picCatChart")->primitives())
        shown |= p.kind == DrawPrimitive::Kind::FilledBox && p.fillColor == kRed &&
                 std::abs((p.p1.x() + p.p2.x()) / 2.0 - 25.0) < 1e-9 &&
                 std::abs((p.p1.y() + p.p2.y()) / 2.0 - 47.5) < 1e-9;
    EXPECT_TRUE(shown);
}

// Linear keeps the ladder's orientation; Restore brings the host's
// orientation entry back with its function.
TEST_F(CategoryPageTest, LinearKeepsTheOrientationRestoreTakesTheHosts) {
    open();
    release(option("optMaxToMin"), Qt::LeftButton);
    drag(3, 70.0);
    click("cmdLinear");
    EXPECT_EQ(wizardData().SmpX(0, 3).toDouble(), 56.0);
    EXPECT_DOUBLE_EQ(value(0, 3), 56.0 / 64.0);
    EXPECT_TRUE(option("optMaxToMin")->isChecked());
    click("cmdRestore");
    EXPECT_EQ(wizardData().SmpX(0, 1).toDouble(), 2.0);
    EXPECT_TRUE(option("optMinToMax")->isChecked());
}

TEST_F(CategoryPageTest, OrderValueLabelsAreHundredthsOrMultiplesOfFive) {
    const struct { std::int16_t maxVal; QStringList rows; } cases[] = {
        {1, {"0.00", "0.03", "0.06", "0.13", "0.25", "0.50", "1.00"}},
        {100, {"0", "5", "5", "15", "25", "50", "100"}},
    };
    for (const auto& c : cases) {
        SetUp();
        wizardData().MaxVal = c.maxVal;
        open();
        // Each level's row carries its value at the left (drawn in point order).
        EXPECT_EQ(textsAt(*chart(), 1.0), c.rows);
    }
}

}  // namespace
}  // namespace kelmar::test
