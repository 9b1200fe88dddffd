// The Bisection and Difference Standard Sequences pages under test on the
// three-attribute problem of the technique tests, with the invariants every
// function they leave must keep.
#pragma once

#include "TechniqueFixture.h"
#include "pages/techniques/frmKelBisection.h"
#include "pages/techniques/frmKelDiffStdSeq.h"

#include <QPushButton>

namespace kelmar::test {

template <class Page>
class ScoreAxisTest : public TechniquePageTest<Page> {
protected:
    using TechniquePageTest<Page>::mark;
    using TechniquePageTest<Page>::chart;
    using TechniquePageTest<Page>::centreOf;

    static constexpr std::int16_t technique =
        std::is_same_v<Page, frmKelBisection> ? kBisection : kDiffStandardSequence;

    void SetUp() override {
        TechniquePageTest<Page>::SetUp();
        wizardData().SelTechnique = technique;
        this->pageSize = QSize(780, 680);
    }

    void choose(const char* list, int index) {
        auto* combo = this->template child<QComboBox>(QString::fromLatin1(list));
        emit combo->activated(index);
    }

    void send(int i, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) const {
        sendMouse(mark(i), type, at, button, held);
    }
    void press(int i) const { send(i, QEvent::MouseButtonPress, kGrab, Qt::LeftButton, Qt::LeftButton); }
    // Presses mark i, moves it so that its centre would come to position
    // target on the score bar, and releases it unless told otherwise.
    void drag(int i, double target, bool release = true) const {
        const QPointF to(kGrab.x() + (target - centreOf(i)) * chart()->width() / 116.0, kGrab.y());
        gesture(mark(i), {kGrab, to}, Qt::LeftButton, release);
    }
    static constexpr QPointF kGrab{5.5, 6.0};  // the middle of the pin's head

    static std::vector<double> column(const VariantArray& a, int att) {
        std::vector<double> out;
        for (int k = 0; k < wizardData().SmpSize(att).toInteger(); ++k) out.push_back(a(att, k).toDouble());
        return out;
    }
    static std::vector<double> scores(int att = 0) { return column(wizardData().SmpX, att); }
    static std::vector<double> values(int att = 0) { return column(wizardData().SmpY, att); }

    // Ends on the range, scores strictly increasing, values on the equal
    // steps of the attribute's orientation.
    static void expectInvariants(std::int16_t att) {
        EXPECT_TRUE(SamplePointsInOrder(att));
        EXPECT_TRUE(ValuesOnEqualSteps(att));
    }
};

using BisectionTest = ScoreAxisTest<frmKelBisection>;
using DiffStdSeqTest = ScoreAxisTest<frmKelDiffStdSeq>;

}  // namespace kelmar::test
