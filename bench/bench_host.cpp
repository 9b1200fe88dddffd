// Cost of opening and saving a large problem in kelmar-host: 32,767
// alternatives by 16 attributes, every function with 11 points.
//
// Host/Open reads and checks the file (loadProblemFile), Host/Save writes
// it (saveProblemFile), Host/Evaluate computes the value table the
// problem's functions give (the table of --evaluate and of the Values tab),
// Host/Report writes the analyst's PDF report (--report): every
// attribute's chart and tables and the whole value table, some 1,700 pages.
#include "ProblemFile.h"
#include "Report.h"
#include "Workbench.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QTemporaryDir>

#include <random>

namespace {

using namespace kelmarhost;

constexpr int kAlternatives = 32767;
constexpr int kAttributes = 16;

Problem largeProblem() {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Problem p;
    p.source = QStringLiteral("bench");
    p.title = QStringLiteral("Large problem");
    for (int i = 0; i < kAlternatives; ++i) p.alternatives << QStringLiteral("Alternative %1").arg(i);
    for (int j = 0; j < kAttributes; ++j) {
        p.attributes.append({QStringLiteral("Attribute %1").arg(j), QStringLiteral("in units"), j % 3 == 0});
        ValueFunction f;
        f.minimum = 0;
        f.maximum = 1000;
        f.middle = 410.25;
        f.type = 1;
        for (int k = 0; k <= 10; ++k) f.points.append(QPointF(100.0 * k, std::sqrt(k / 10.0)));
        p.functions.append(f);
    }
    for (int i = 0; i < kAlternatives; ++i) {
        QVector<double> row(kAttributes);
        for (double& v : row) v = 1000.0 * unit(random);
        p.scores.append(row);
    }
    return p;
}

struct Files {
    QTemporaryDir dir;
    Problem problem = largeProblem();
    QString path = dir.filePath(QStringLiteral("large.json"));
    Files() { saveProblemFile(problem, path); }
};

Files& files() {
    static Files f;
    return f;
}

void HostOpen(benchmark::State& state) {
    Files& f = files();
    for (auto _ : state) benchmark::DoNotOptimize(loadProblemFile(f.path));
}
BENCHMARK(HostOpen)->Name("Host/Open")->Unit(benchmark::kMillisecond);

void HostSave(benchmark::State& state) {
    Files& f = files();
    const QString path = f.dir.filePath(QStringLiteral("saved.json"));
    for (auto _ : state) benchmark::DoNotOptimize(saveProblemFile(f.problem, path));
}
BENCHMARK(HostSave)->Name("Host/Save")->Unit(benchmark::kMillisecond);

void HostEvaluate(benchmark::State& state) {
    Files& f = files();
    for (auto _ : state) benchmark::DoNotOptimize(evaluateProblem(f.problem));
}
BENCHMARK(HostEvaluate)->Name("Host/Evaluate")->Unit(benchmark::kMillisecond);

void HostReport(benchmark::State& state) {
    Files& f = files();
    const QString path = f.dir.filePath(QStringLiteral("report.pdf"));
    for (auto _ : state) {
        if (!writeReport(reportOfProblem(f.problem), path)) state.SkipWithError("not written");
    }
}
BENCHMARK(HostReport)->Name("Host/Report")->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
