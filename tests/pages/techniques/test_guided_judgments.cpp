// The rule the four guided pages share: the first judgment in the page's
// order takes a strongly risk-averse or risk-prone answer, the points not
// judged yet make way, the page opened again goes on with the next
// judgment, and a later answer past a judged point is refused with the
// reason on the page while the function stays as it was.
#include "TechniqueFixture.h"
#include "pages/techniques/ScoreAxisPage.h"
#include "pages/techniques/frmKelVarC.h"
#include "pages/techniques/frmKelVarP.h"

#include <QSlider>

namespace kelmar::test {
namespace {

class GuidedTest : public AnyTechniqueTest {
protected:
    int judgedPoint() const {
        if (auto* p = dynamic_cast<ScoreAxisPage*>(page.get())) return p->judgedPoint();
        if (auto* p = dynamic_cast<frmKelVarC*>(page.get())) return p->JudgedPoint;
        return dynamic_cast<frmKelVarP*>(page.get())->JudgedPoint;
    }
    void slide(int position) {
        auto* slider = child<QSlider>(QStringLiteral("sldProbability"));
        sendMouse(slider, QEvent::MouseButtonPress, {2, 2}, Qt::LeftButton, Qt::LeftButton);
        slider->setValue(position);
        sendMouse(slider, QEvent::MouseButtonRelease, {2, 2}, Qt::LeftButton, Qt::NoButton);
    }
};

TEST_F(GuidedTest, FirstJudgmentTakesAnyAttitudeAndUnjudgedPointsMakeWay) {
    // Price: benefit, 0 .. 100. A score page is answered with a drag to
    // the score, the probability page with a slider position.
    const struct {
        int technique;
        int sizeIndex;  // in cmbSmpSize
        int first;      // the page's first judgment
        double answer;
        std::vector<double> after;  // scores, or values on the probability page
        double refused;             // for the second judgment, past the first
        const char* limit;
    } cases[] = {
        {kBisection, 1, 4, 20, {0, 5, 10, 15, 20, 40, 60, 80, 100}, 30, "20.00"},
        {kBisection, 1, 4, 80, {0, 20, 40, 60, 80, 85, 90, 95, 100}, 90, "80.00"},
        {kVariableCertainty, 1, 4, 20, {0, 5, 10, 15, 20, 40, 60, 80, 100}, 30, "20.00"},
        {kVariableCertainty, 1, 4, 80, {0, 20, 40, 60, 80, 85, 90, 95, 100}, 90, "80.00"},
        {kDiffStandardSequence, 0, 1, 10, {0, 10, 40, 70, 100}, 5, "10.00"},
        {kDiffStandardSequence, 0, 1, 60, {0, 60, 220 / 3.0, 260 / 3.0, 100}, 50, "60.00"},
        {kVariableProbability, 0, 1, 10, {0, 0.99, 0.99 + 0.01 / 3, 0.99 + 0.02 / 3, 1}, 0.5, "0.990"},
        {kVariableProbability, 0, 1, 1, {0, 0.099, 0.099 + 0.901 / 3, 0.099 + 1.802 / 3, 1}, 0.05, "0.099"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.technique << " answer " << c.answer);
        fillProblem();
        openAs(c.technique);
        choose("cmbSmpSize", c.sizeIndex);
        ASSERT_EQ(judgedPoint(), c.first);
        const bool byValue = c.technique == kVariableProbability;
        if (byValue)
            slide(static_cast<int>(c.answer));
        else
            drag(c.first, c.answer);
        for (std::size_t k = 0; k < c.after.size(); ++k) {
            const int i = static_cast<int>(k);
            EXPECT_NEAR(byValue ? value(0, i) : wizardData().SmpX(0, i).toDouble(), c.after[k], 1e-5) << i;
        }
        expectEdited(0, wizardData().SelTechnique, c.first);

        // Opened again, the page goes on with the next judgment, and the
        // first one still bounds it.
        openAs(c.technique);
        constexpr int next = 2;  // the second judgment on every page
        EXPECT_EQ(judgedPoint(), next);
        const auto before = functionBits(0);
        if (byValue) {
            const JudgmentResult r = static_cast<frmKelVarP*>(page.get())->judgeProbability(next, c.refused);
            EXPECT_FALSE(r.accepted);
        } else {
            drag(next, c.refused);
        }
        EXPECT_EQ(functionBits(0), before);
        EXPECT_TRUE(text("lblRefusal").contains(QStringLiteral("would reach or pass the point you judged at %1.")
                                                    .arg(QLatin1String(c.limit))))
            << text("lblRefusal").toStdString();
    }
}

}  // namespace
}  // namespace kelmar::test
