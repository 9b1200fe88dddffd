// Linear and Restore on every technique page that has them, from a host
// function of another technique: Linear puts the page's points on the
// straight line and counts as done; Restore brings the host's curve back
// (refitted where the page works on its own sizes or on equal value steps)
// and the host's technique, not done. The marks follow the points either
// way. Then the sizes the halving pages work on.
#include "TechniqueFixture.h"

#include "model/Format.h"

#include <functional>

namespace kelmar::test {
namespace {

class LinearAndRestore : public AnyTechniqueTest {
protected:
    // Marks 0 .. size - 1 show with their scores, the others are hidden or
    // absent.
    void expectMarks(int att, int size) const {
        for (int k = 0; k < 11; ++k) {
            const auto* m = page->findChild<PointMark*>(QStringLiteral("picScorePoint_%1").arg(k));
            EXPECT_TRUE(m != nullptr || k >= size) << k;
            if (m == nullptr) continue;
            EXPECT_EQ(m->isHidden(), k >= size) << k;
            EXPECT_TRUE(k >= size || m->toolTip().startsWith(fmt::formatNumber(wizardData().SmpX(att, k).toDouble(), "0.00")))
                << k << " " << m->toolTip().toStdString();
        }
    }
};

TEST_F(LinearAndRestore, EveryPageStraightensAndRestoresTheHostsCurve) {
    // Comfort, benefit 1 .. 5: seven points rated by Direct Rating, rising
    // fast at first.
    const double y[7] = {0, 0.3, 0.55, 0.72, 0.85, 0.94, 1};
    // The size the page works on: the host's, or the nearest of its own;
    // on the guided pages, the point of the first judgment.
    const struct { int technique, size; bool equalSteps; int first; } pages[] = {
        {kDirectRating, 7, false, -1},       {kCurveDrawing, 7, false, -1}, {kCategoryIdentification, 7, false, -1},
        {kDiffStandardSequence, 7, true, 1}, {kBisection, 9, true, 4},      {kVariableProbability, 7, false, 1},
        {kVariableCertainty, 9, true, 4},
    };
    for (const auto& p : pages) {
        SCOPED_TRACE(p.technique);
        fillProblem();
        WizardData& w = wizardData();
        for (VariantArray* a : {&w.VFunParA, &w.VFunParB}) a->redim(0, 2);
        w.SmpSize(2) = w.InSmpSize(2) = std::int16_t(7);
        w.VFunType(2) = w.InVFunType(2) = std::int16_t(1);
        w.VFTechniqueID(2) = w.InVFTechniqueID(2) = std::int16_t(kDirectRating);
        VariantArray hostX(0, 6), hostY(0, 6), out(0, 4);
        for (int k = 0; k < 7; ++k) {
            w.SmpX(2, k) = w.InSmpX(2, k) = hostX(k) = 1.0 + 4.0 * k / 6.0;
            w.SmpY(2, k) = w.InSmpY(2, k) = hostY(k) = y[k];
        }
        const auto hostCurve = [&](double x) {
            std::int16_t n = 7, evaluate = -1;
            AkimaInterpolate(hostX, hostY, n, evaluate, x, out);
            return out(4).toDouble();
        };
        openAs(p.technique, 2, p.technique == kCategoryIdentification ? QSize(820, 820) : QSize(780, 740));
        // The points of att 2 on the range in order, each on the curve f,
        // the marks showing them.
        const auto expectPointsOn = [&](int size, const std::function<double(double)>& f, double tolerance) {
            std::int16_t att = 2;
            ASSERT_EQ(w.SmpSize(2).toInteger(), size);
            EXPECT_TRUE(SamplePointsInOrder(att));
            EXPECT_TRUE(!p.equalSteps || ValuesOnEqualSteps(att));
            for (int k = 0; k < size; ++k)
                EXPECT_NEAR(w.SmpY(2, k).toDouble(), f(w.SmpX(2, k).toDouble()), tolerance) << k;
            expectMarks(2, size);
        };
        if (p.first >= 0) press(5);  // the walk taken to a later point
        click("cmdLinear");
        EXPECT_TRUE(p.first < 0 || mark(p.first)->picture() == 2) << "a straight line starts the walk again";
        EXPECT_EQ(w.VFunType(2).toInteger(), 0);
        EXPECT_TRUE(w.AttVFDone(2).toBoolean());
        expectPointsOn(p.size, [](double x) { return (x - 1.0) / 4.0; }, 1e-6);
        EXPECT_EQ(child<QComboBox>("cmbAttributes")->currentText(), QString::fromUtf8(" \u00A4 Comfort"));

        // Another sample size first, where the page offers one.
        if (page->findChild<QComboBox*>(QStringLiteral("cmbSmpSize")) != nullptr) choose("cmbSmpSize", 0);
        click("cmdRestore");
        EXPECT_EQ(w.VFunType(2).toInteger(), 1);
        EXPECT_FALSE(w.AttVFDone(2).toBoolean());
        EXPECT_EQ(w.VFTechniqueID(2).toInteger(), kDirectRating);
        // A page on equal value steps finds the scores to within a hundredth of value.
        expectPointsOn(p.size, hostCurve, p.equalSteps ? 0.01 : 1e-6);
        EXPECT_EQ(child<QComboBox>("cmbAttributes")->currentText(), "Comfort");
        page.reset();
    }
}

// Bisection and the certainty equivalent work on five or nine points: other
// stored sizes arrive as the nearer one, nine on a tie; the size list
// offers only those, and Restore comes back to the size the page opened on.
TEST_F(LinearAndRestore, TheHalvingPagesWorkOnFiveOrNinePoints) {
    const struct { int stored, worked; } sizes[] = {{3, 5}, {5, 5}, {7, 9}, {9, 9}, {11, 9}};
    for (const int technique : {kBisection, kVariableCertainty}) {
        for (const auto& c : sizes) {
            SCOPED_TRACE(testing::Message() << technique << " " << c.stored);
            fillProblem();
            WizardData& w = wizardData();
            w.SmpSize(2) = w.InSmpSize(2) = std::int16_t(c.stored);
            for (int k = 0; k < c.stored; ++k) {
                w.SmpX(2, k) = w.InSmpX(2, k) = 1.0 + 4.0 * k / (c.stored - 1);
                w.SmpY(2, k) = w.InSmpY(2, k) = static_cast<double>(k) / (c.stored - 1);
            }
            openAs(technique, 2);
            const auto expectSize = [&](int n) {
                std::int16_t att = 2;
                EXPECT_EQ(w.SmpSize(2).toInteger(), n);
                EXPECT_EQ(w.BisectionTable.size(), static_cast<std::size_t>(n));
                EXPECT_TRUE(SamplePointsInOrder(att) && ValuesOnEqualSteps(att));
                expectMarks(2, n);
            };
            expectSize(c.worked);
            auto* list = child<QComboBox>("cmbSmpSize");
            EXPECT_EQ(list->currentText(), QString::number(c.worked));
            for (int index = 0; index < list->count(); ++index) {
                choose("cmbSmpSize", index);
                expectSize(index == 0 ? 5 : 9);
            }
            click("cmdRestore");
            expectSize(c.worked);
        }
    }
}

}  // namespace
}  // namespace kelmar::test
