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
class LotteryTest : public PageTest<Page> {
protected:
    using PageTest<Page>::page;

    void SetUp() override {
        fillProblem();
        wizardData().SelTechnique = std::is_same_v<Page, frmKelVarP> ? kVariableProbability : kVariableCertainty;
        setMessageBoxHook([this](QMessageBox& box) {
            this->messages.push_back(box.text());
            return QMessageBox::Ok;
        });
    }
    void TearDown() override {
        page.reset();
        setMessageBoxHook({});
        EXPECT_TRUE(this->messages.empty()) << "an unexpected message box";
    }

    void open(int att = 0) {
        wizardData().SelAtt = static_cast<std::int16_t>(att);
        page = std::make_unique<Page>();
        page->setEventSink(&this->sink);
        page->resize(lottery::kPageSize);
        page->load();
        page->show();
        this->sink.events.clear();
    }

    PointMark* mark(int i) const { return this->template child<PointMark>(QStringLiteral("picScorePoint_%1").arg(i)); }
    DrawSurface* chart() const { return this->template child<DrawSurface>(QStringLiteral("picRatingChart")); }
    QSlider* slider() const { return this->template child<QSlider>(QStringLiteral("sldProbability")); }
    void choose(const char* list, int index) {
        auto* combo = this->template child<QComboBox>(QString::fromLatin1(list));
        combo->setCurrentIndex(index);
        emit combo->activated(index);
    }

    static void mouse(QWidget* w, QEvent::Type type, QPointF pos, Qt::MouseButton button,
                      Qt::MouseButtons buttons) {
        QMouseEvent event(type, pos, w->mapToGlobal(pos), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(w, &event);
    }
    void press(int i, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF at(mark(i)->width() / 2.0, 8.0);
        mouse(mark(i), QEvent::MouseButtonPress, at, button, button);
        mouse(mark(i), QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    // Presses the slider with a button, puts its thumb at position and
    // lets go.
    void slide(int position, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF at(2.0, 2.0);
        mouse(slider(), QEvent::MouseButtonPress, at, button, button);
        slider()->setValue(position);
        mouse(slider(), QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    // Grabs mark i and drags it so that its centre comes to the chart
    // position target.
    void drag(int i, double target, Qt::MouseButton button = Qt::LeftButton) {
        PointMark* m = mark(i);
        const QPointF grab(m->width() / 2.0, 8.0);
        const double centre = chart()->childLeft(m) + chart()->childWidth(m) / 2.0;
        mouse(m, QEvent::MouseButtonPress, grab, button, button);
        const QPointF to(grab.x() + (target - centre) * chart()->width() / 116.0, grab.y());
        mouse(m, QEvent::MouseMove, to, Qt::NoButton, button);
        mouse(m, QEvent::MouseButtonRelease, to, button, Qt::NoButton);
    }

    // The text printed on the chart with its top at (x, y); empty if none.
    QString textAt(double x, double y) const {
        QString found;
        for (const auto& p : chart()->primitives())
            if (p.kind == DrawPrimitive::Kind::Text && std::abs(p.p1.y() - y) < 1e-9 &&
                (x < 0 || std::abs(p.p1.x() - x) < 1e-9))
                found = p.text;
        return found;
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
