// A typed exact answer, from the Enter in txtExact to the repainted window:
// the page's judgment of the number, the read-outs, the value function
// chart with its turn-back check, the consistency words and the repaint of
// what changed, on Direct Rating, Bisection and Variable Probability.
#include "PageDrag.h"
#include "pages/techniques/frmKelBisection.h"
#include "pages/techniques/frmKelDirectRating.h"
#include "pages/techniques/frmKelVarP.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace {

using namespace kelmar;
using namespace kelmar::bench;

// Presses and lets go of mark `point`, then types each of the two numbers
// in turn, one a benchmark iteration, with Enter and the next frame.
template <class Page>
void typedAnswers(benchmark::State& state, std::int16_t technique, std::int16_t size, int point,
                  const char* first, const char* second) {
    ensureApplication();
    fillOneAttribute(technique, size);
    Page page;
    page.resize(780, 740);
    page.load();
    page.show();
    nextFrame();
    auto* mark = page.template findChild<QWidget*>(QStringLiteral("picScorePoint_%1").arg(point));
    const QPointF at(mark->width() / 2.0, mark->height() / 2.0);
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, mark->mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(mark, &event);
    }
    nextFrame();
    auto* field = page.template findChild<QLineEdit*>(QStringLiteral("txtExact"));
    const QString answers[2] = {QString::fromLatin1(first), QString::fromLatin1(second)};
    std::size_t step = 0;
    for (auto _ : state) {
        field->setText(answers[step++ % 2]);
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
        QCoreApplication::sendEvent(field, &enter);
        nextFrame();
    }
    if (field->text() != answers[(step + 1) % 2]) state.SkipWithError("the typed answer was not taken");
}

void TypedAnswerDirectRating(benchmark::State& state) {
    typedAnswers<frmKelDirectRating>(state, kDirectRating, 11, 5, "48.5", "51.25");
}
BENCHMARK(TypedAnswerDirectRating)->Unit(benchmark::kMicrosecond);

void TypedAnswerBisection(benchmark::State& state) {
    typedAnswers<frmKelBisection>(state, kBisection, 9, 4, "4.5", "5.25");
}
BENCHMARK(TypedAnswerBisection)->Unit(benchmark::kMicrosecond);

void TypedAnswerVariableProbability(benchmark::State& state) {
    typedAnswers<frmKelVarP>(state, kVariableProbability, 9, 4, "0.45", "0.525");
}
BENCHMARK(TypedAnswerVariableProbability)->Unit(benchmark::kMicrosecond);

}  // namespace
