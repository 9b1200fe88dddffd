// Cost of the curve evaluation and of the Finish loop.
//
// Akima/Ours against Akima/GslEval (init done once) and Akima/GslInitEval
// (init per evaluation) compare one evaluation on 11 points: ours takes the
// points afresh on every call, as GSL does when it is initialised for them.
// Finish/Loop runs ComputeAllAlternativeValues over 32,767 alternatives and
// 16 attributes; Finish/BareEvaluations makes the same AkimaInterpolate
// calls on arrays built beforehand, so the difference is the loop's own
// reading and storing of the wizard data. Finish/PlainEvaluations makes the
// same evaluations on plain doubles, without any Variant.
#include "model/AkimaCore.h"

#include <kelmar/mdKelMain.h>

#include <benchmark/benchmark.h>
#include <gsl/gsl_interp.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using kelmar::VariantArray;

constexpr int kPoints = 11;
constexpr int kAlternatives = 32767;
constexpr int kAttributes = 16;

// A concave value curve on 0 .. 100 with uneven spacing.
struct Curve {
    std::vector<double> x, y;
};

Curve makeCurve(int seed) {
    std::mt19937 gen(static_cast<unsigned>(seed));
    std::uniform_real_distribution<double> jitter(-2.0, 2.0);
    Curve c;
    for (int k = 0; k < kPoints; ++k) {
        const double base = 10.0 * k;
        const double xk = (k == 0 || k == kPoints - 1) ? base : base + jitter(gen);
        c.x.push_back(xk);
        c.y.push_back(1.0 - std::pow(1.0 - xk / 100.0, 2.0));
    }
    return c;
}

// Evaluation abscissae spread over the range, cycled through.
std::vector<double> probes() {
    std::mt19937 gen(7);
    std::uniform_real_distribution<double> u(0.0, 100.0);
    std::vector<double> p(1024);
    for (double& v : p) v = u(gen);
    return p;
}

void Akima_Ours(benchmark::State& state) {
    const Curve c = makeCurve(1);
    VariantArray X(0, kPoints - 1), Y(0, kPoints - 1), out(0, 4);
    for (int k = 0; k < kPoints; ++k) {
        X(k) = c.x[static_cast<std::size_t>(k)];
        Y(k) = c.y[static_cast<std::size_t>(k)];
    }
    const std::vector<double> p = probes();
    std::int16_t n = kPoints, evaluate = -1;
    std::size_t i = 0;
    for (auto _ : state) {
        double x = p[i++ & 1023];
        kelmar::AkimaInterpolate(X, Y, n, evaluate, x, out);
        benchmark::DoNotOptimize(out(4));
    }
}
BENCHMARK(Akima_Ours);

void Akima_GslEval(benchmark::State& state) {
    const Curve c = makeCurve(1);
    gsl_interp* interp = gsl_interp_alloc(gsl_interp_akima, kPoints);
    gsl_interp_init(interp, c.x.data(), c.y.data(), kPoints);
    const std::vector<double> p = probes();
    std::size_t i = 0;
    for (auto _ : state) {
        double v = gsl_interp_eval(interp, c.x.data(), c.y.data(), p[i++ & 1023], nullptr);
        benchmark::DoNotOptimize(v);
    }
    gsl_interp_free(interp);
}
BENCHMARK(Akima_GslEval);

void Akima_GslInitEval(benchmark::State& state) {
    const Curve c = makeCurve(1);
    gsl_interp* interp = gsl_interp_alloc(gsl_interp_akima, kPoints);
    const std::vector<double> p = probes();
    std::size_t i = 0;
    for (auto _ : state) {
        gsl_interp_init(interp, c.x.data(), c.y.data(), kPoints);
        double v = gsl_interp_eval(interp, c.x.data(), c.y.data(), p[i++ & 1023], nullptr);
        benchmark::DoNotOptimize(v);
    }
    gsl_interp_free(interp);
}
BENCHMARK(Akima_GslInitEval);

// A filled wizard data: every attribute an 11-point curve, every
// alternative a score inside or just beyond the range.
void fillWizardData() {
    kelmar::WizardData& w = kelmar::wizardData();
    w = {};
    w.AltNum = kAlternatives;
    w.AttNum = kAttributes;
    w.MaxVal = 100;
    w.SmpSize.redim(0, kAttributes - 1);
    w.SmpX.redim(0, kAttributes - 1, 0, 10);
    w.SmpY.redim(0, kAttributes - 1, 0, 10);
    for (int att = 0; att < kAttributes; ++att) {
        const Curve c = makeCurve(att + 1);
        w.SmpSize(att) = std::int16_t(kPoints);
        for (int k = 0; k < kPoints; ++k) {
            w.SmpX(att, k) = c.x[static_cast<std::size_t>(k)];
            w.SmpY(att, k) = c.y[static_cast<std::size_t>(k)];
        }
    }
    w.AltPScore.redim(0, kAlternatives - 1, 0, kAttributes - 1);
    w.AttVData.redim(0, kAlternatives - 1, 0, kAttributes - 1);
    std::mt19937 gen(3);
    std::uniform_real_distribution<double> u(-5.0, 105.0);
    for (int alt = 0; alt < kAlternatives; ++alt)
        for (int att = 0; att < kAttributes; ++att) w.AltPScore(alt, att) = u(gen);
}

void Finish_Loop(benchmark::State& state) {
    fillWizardData();
    for (auto _ : state) {
        kelmar::ComputeAllAlternativeValues();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kAlternatives * kAttributes);
    kelmar::wizardData() = {};
}
BENCHMARK(Finish_Loop)->Unit(benchmark::kMillisecond);

void Finish_BareEvaluations(benchmark::State& state) {
    fillWizardData();
    const kelmar::WizardData& w = kelmar::wizardData();
    std::vector<VariantArray> xs, ys;
    for (int att = 0; att < kAttributes; ++att) {
        xs.emplace_back(0, kPoints - 1);
        ys.emplace_back(0, kPoints - 1);
        for (int k = 0; k < kPoints; ++k) {
            xs.back()(k) = w.SmpX(att, k);
            ys.back()(k) = w.SmpY(att, k);
        }
    }
    std::vector<double> scores;
    scores.reserve(static_cast<std::size_t>(kAlternatives) * kAttributes);
    for (int alt = 0; alt < kAlternatives; ++alt)
        for (int att = 0; att < kAttributes; ++att) scores.push_back(w.AltPScore(alt, att).toDouble());
    VariantArray out(0, 4);
    std::int16_t n = kPoints, evaluate = -1;
    for (auto _ : state) {
        std::size_t cell = 0;
        for (int alt = 0; alt < kAlternatives; ++alt) {
            for (int att = 0; att < kAttributes; ++att) {
                double x = scores[cell++];
                kelmar::AkimaInterpolate(xs[static_cast<std::size_t>(att)],
                                         ys[static_cast<std::size_t>(att)], n, evaluate, x, out);
                benchmark::DoNotOptimize(out(4));
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kAlternatives * kAttributes);
    kelmar::wizardData() = {};
}
BENCHMARK(Finish_BareEvaluations)->Unit(benchmark::kMillisecond);

void Finish_PlainEvaluations(benchmark::State& state) {
    fillWizardData();
    const kelmar::WizardData& w = kelmar::wizardData();
    std::vector<double> xs, ys;
    for (int att = 0; att < kAttributes; ++att) {
        for (int k = 0; k < kPoints; ++k) {
            xs.push_back(w.SmpX(att, k).toDouble());
            ys.push_back(w.SmpY(att, k).toDouble());
        }
    }
    std::vector<double> scores;
    scores.reserve(static_cast<std::size_t>(kAlternatives) * kAttributes);
    for (int alt = 0; alt < kAlternatives; ++alt)
        for (int att = 0; att < kAttributes; ++att) scores.push_back(w.AltPScore(alt, att).toDouble());
    for (auto _ : state) {
        std::size_t cell = 0;
        for (int alt = 0; alt < kAlternatives; ++alt) {
            for (int att = 0; att < kAttributes; ++att) {
                const std::size_t row = static_cast<std::size_t>(att) * kPoints;
                double out[5];
                kelmar::akimaCore(kelmar::DoubleCells{xs.data() + row},
                                  kelmar::DoubleCells{ys.data() + row}, kPoints, true,
                                  scores[cell++], out);
                benchmark::DoNotOptimize(out[4]);
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kAlternatives * kAttributes);
    kelmar::wizardData() = {};
}
BENCHMARK(Finish_PlainEvaluations)->Unit(benchmark::kMillisecond);

}  // namespace

