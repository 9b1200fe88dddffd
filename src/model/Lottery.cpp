// The mathematics of the two lottery techniques: the probability interval
// that a judged point's neighbours leave free, the certainty equivalent of an
// even-chance lottery, the order of the judgments, and the checks that keep
// a function's points in shape.
#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>
#include <cmath>

namespace kelmar {

namespace {

bool costAttribute(std::int16_t att) { return wizardData().AttPropertyCopy(att).toDouble() != 0.0; }

}  // namespace

std::int16_t ProbabilityBaseNeighbour(std::int16_t& att, std::int16_t& lower, std::int16_t& upper) {
    return costAttribute(att) ? upper : lower;
}

float ProbabilityWidth(std::int16_t& att, std::int16_t& base, std::int16_t& far) {
    WizardData& w = wizardData();
    const double baseValue = w.SmpY(att, base).toDouble();
    const double farValue = w.SmpY(att, far).toDouble();
    const float width = csng((farValue - kProbabilityMargin) - (baseValue + kProbabilityMargin));
    return std::max(width, 0.0f);
}

float JudgedProbability(std::int16_t& att, std::int16_t& base, float& step, std::int16_t& position) {
    const float offset = step * static_cast<float>(position);
    const double baseValue = wizardData().SmpY(att, base).toDouble();
    float p = csng(baseValue + static_cast<double>(offset));
    // A Single rounded below the base neighbour's value would put the
    // point's value out of order with it: the next Single up.
    if (static_cast<double>(p) < baseValue) p = std::nextafter(p, 2.0f);
    return std::clamp(p, 0.0f, 1.0f);
}

void StoreJudgedValue(std::int16_t& att, std::int16_t& index, Variant& value) {
    WizardData& w = wizardData();
    w.SmpY(att, index) = value;
    w.VFunType(att) = Variant(std::int16_t(1));
    w.AttVFDone(att) = Variant(true);
    w.VFTechniqueID(att) = Variant(w.SelTechnique);
    w.SelPoint = index;
}

double CertaintyEquivalentValue(std::int16_t& att, std::int16_t& index) {
    WizardData& w = wizardData();
    if (index < 0 || static_cast<std::size_t>(index) >= w.BisectionTable.size())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const BisectionRecord& row = w.BisectionTable[static_cast<std::size_t>(index)];
    return (w.SmpY(att, row.Lower).toDouble() + w.SmpY(att, row.Upper).toDouble()) / 2.0;
}

std::int16_t CertaintySampleSize(std::int16_t& n) { return n <= 6 ? 5 : 9; }

std::vector<std::int16_t> CertaintyJudgmentOrder() {
    const std::vector<BisectionRecord>& table = wizardData().BisectionTable;
    std::vector<std::int16_t> order;
    for (std::size_t i = 1; i + 1 < table.size(); ++i) order.push_back(static_cast<std::int16_t>(i));
    std::stable_sort(order.begin(), order.end(), [&table](std::int16_t a, std::int16_t b) {
        return table[static_cast<std::size_t>(a)].Level < table[static_cast<std::size_t>(b)].Level;
    });
    return order;
}

bool ValuesOnEqualSteps(std::int16_t& att) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    if (n < 2) return false;
    const bool cost = costAttribute(att);
    for (std::int16_t k = 0; k < n; ++k) {
        const double step = static_cast<double>(cost ? n - 1 - k : k) / (n - 1);
        if (std::fabs(w.SmpY(att, k).toDouble() - step) > 1e-6) return false;
    }
    return true;
}

bool SamplePointsInOrder(std::int16_t& att) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    if (n < 2 || n > 11) return false;
    if (w.SmpX(att, 0).toDouble() != w.ScoreMinimum(att).toDouble()) return false;
    if (w.SmpX(att, n - 1).toDouble() != w.ScoreMaximum(att).toDouble()) return false;
    for (std::int16_t k = 0; k < n; ++k) {
        const double y = w.SmpY(att, k).toDouble();
        if (!(y >= 0.0 && y <= 1.0)) return false;
        if (k > 0 && !(w.SmpX(att, k).toDouble() > w.SmpX(att, k - 1).toDouble())) return false;
    }
    return true;
}

void SpreadScoresInOrder(std::int16_t& att) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    if (n < 3 || n > 11) return;
    const double high = w.ScoreMaximum(att).toDouble();
    std::vector<double> x(static_cast<std::size_t>(n));
    for (std::int16_t k = 0; k < n; ++k) x[static_cast<std::size_t>(k)] = w.SmpX(att, k).toDouble();
    x.front() = w.ScoreMinimum(att).toDouble();
    x.back() = high;

    // Keep a score that lies above the last kept one and below the range's
    // end, unless its successor would fit between the two and it would not.
    std::vector<bool> keep(x.size(), false);
    keep.front() = keep.back() = true;
    double previous = x.front();
    for (std::size_t k = 1; k + 1 < x.size(); ++k) {
        const auto fits = [&](double v) { return v > previous && v < high; };
        if (!fits(x[k])) continue;
        if (k + 2 < x.size() && fits(x[k + 1]) && x[k + 1] <= x[k]) continue;
        keep[k] = true;
        previous = x[k];
    }
    // The others evenly between the kept scores around them.
    std::size_t left = 0;
    for (std::size_t k = 1; k < x.size(); ++k) {
        if (!keep[k]) continue;
        for (std::size_t j = left + 1; j < k; ++j)
            x[j] = x[left] + (x[k] - x[left]) * static_cast<double>(j - left) / static_cast<double>(k - left);
        left = k;
    }
    for (std::int16_t k = 1; k + 1 < n; ++k) w.SmpX(att, k) = Variant(x[static_cast<std::size_t>(k)]);
}

}  // namespace kelmar
