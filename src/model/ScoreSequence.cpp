#include "model/ScoreSequence.h"

#include "model/Arith.h"

#include <algorithm>
#include <cmath>

namespace kelmar {

namespace {

// How far a stored value may lie from its step and still count as on it
// (the steps are Singles).
constexpr double kStepTolerance = 1e-6;

}  // namespace

bool HasEqualValueSteps(std::int16_t& att) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    if (n < 2) return false;
    const bool cost = isCostOriented();
    for (int k = 0; k < n; ++k) {
        const double step = static_cast<double>(cost ? n - 1 - k : k) / (n - 1);
        if (std::fabs(w.SmpY(att, k).toDouble() - step) > kStepTolerance) return false;
    }
    return true;
}

void FitEqualValueSteps(std::int16_t& att) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    const int last = checkedSub(n, 1);
    if (last < 1) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const double low = w.ScoreMinimum(att).toDouble();
    const double high = w.ScoreMaximum(att).toDouble();

    std::vector<double> x(static_cast<std::size_t>(n));
    for (int k = 0; k <= last; ++k) x[static_cast<std::size_t>(k)] = w.SmpX(att, k).toDouble();
    x.front() = low;
    x.back() = high;

    // The longest run of interior scores that rise strictly inside the
    // range: run[k] is its length up to point k, from[k] the point before.
    std::vector<int> run(x.size(), 0), from(x.size(), 0);
    for (int k = 1; k < last; ++k) {
        const double xk = x[static_cast<std::size_t>(k)];
        if (!(xk > low && xk < high)) continue;
        run[static_cast<std::size_t>(k)] = 1;
        for (int j = 1; j < k; ++j) {
            const auto sj = static_cast<std::size_t>(j);
            if (run[sj] > 0 && x[sj] < xk && run[sj] + 1 > run[static_cast<std::size_t>(k)]) {
                run[static_cast<std::size_t>(k)] = run[sj] + 1;
                from[static_cast<std::size_t>(k)] = j;
            }
        }
    }
    std::vector<bool> kept(x.size(), false);
    kept.front() = kept.back() = true;
    const auto best = std::max_element(run.begin(), run.end());
    for (int k = *best > 0 ? static_cast<int>(best - run.begin()) : 0; k > 0;
         k = from[static_cast<std::size_t>(k)])
        kept[static_cast<std::size_t>(k)] = true;

    // The others evenly between the kept points around them.
    for (int a = 0, b = 1; b <= last; ++b) {
        if (!kept[static_cast<std::size_t>(b)]) continue;
        for (int k = a + 1; k < b; ++k) {
            const double xa = x[static_cast<std::size_t>(a)];
            const double xb = x[static_cast<std::size_t>(b)];
            w.SmpX(att, k) = xa + (xb - xa) * (k - a) / (b - a);
        }
        a = b;
    }
    w.SmpX(att, 0) = w.ScoreMinimum(att);
    w.SmpX(att, last) = w.ScoreMaximum(att);
    layOutEqualValues(w, att, n);
}

std::vector<int> BisectionJudgmentOrder() {
    const std::vector<BisectionRecord>& table = wizardData().BisectionTable;
    std::vector<int> order;
    for (int i = 1; i + 1 < static_cast<int>(table.size()); ++i) order.push_back(i);
    std::stable_sort(order.begin(), order.end(), [&table](int a, int b) {
        return table[static_cast<std::size_t>(a)].Level < table[static_cast<std::size_t>(b)].Level;
    });
    return order;
}

}  // namespace kelmar
