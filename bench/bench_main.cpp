// The benchmark program's entry point: the widget benchmarks need an
// application object, offscreen unless the caller chose a platform.
#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>

int main(int argc, char** argv) {
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
