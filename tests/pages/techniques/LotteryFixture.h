// The lottery pages under test on the three-attribute problem: the slider
// and the marks worked with mouse events, and the texts of the diagram read
// back by where they are printed.
#pragma once

#include "TechniqueFixture.h"
#include "pages/techniques/frmKelVarC.h"
#include "pages/techniques/frmKelVarP.h"
#include "pages/techniques/LotteryDiagram.h"
#include "model/Format.h"

#include <QSlider>

namespace kelmar::test {

template <class Page>
class LotteryTest : public TechniquePageTest<Page> {
protected:
    using PageTest<Page>::page;
    using TechniquePageTest<Page>::mark;
    using TechniquePageTest<Page>::chart;

    void SetUp() override {
        TechniquePageTest<Page>::SetUp();
        wizardData().SelTechnique = std::is_same_v<Page, frmKelVarP> ? kVariableProbability : kVariableCertainty;
        this->pageSize = lottery::kPageSize;
    }

    QSlider* slider() const { return this->template child<QSlider>(QStringLiteral("sldProbability")); }
    void press(int i, Qt::MouseButton button = Qt::LeftButton) { gesture(mark(i), {{mark(i)->width() / 2.0, 8.0}}, button); }
    // Presses the slider with a button, puts its thumb at position and
    // lets go.
    void slide(int position, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF at(2.0, 2.0);
        sendMouse(slider(), QEvent::MouseButtonPress, at, button, button);
        slider()->setValue(position);
        sendMouse(slider(), QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    // The text printed on the chart with its top at (x, y); empty if none.
    QString textAt(double x, double y) const {
        const QStringList found = drawnTexts(*chart(), printedAt(x, y));
        return found.isEmpty() ? QString() : found.last();
    }
    // The branch texts and the outcomes (top, bottom) as the chart shows them.
    std::array<QString, 2> branches() const { return {textAt(46, 16), textAt(46, 53)}; }
    std::array<QString, 2> outcomes() const { return {textAt(72, 26), textAt(72, 42)}; }

    static double x(int att, int k) { return wizardData().SmpX(att, k).toDouble(); }
    static double y(int att, int k) { return wizardData().SmpY(att, k).toDouble(); }
    static QString score(double v) { return fmt::formatNumber(v, QStringLiteral("0.00")); }
};

using VarPTest = LotteryTest<frmKelVarP>;
using VarCTest = LotteryTest<frmKelVarC>;

}  // namespace kelmar::test
