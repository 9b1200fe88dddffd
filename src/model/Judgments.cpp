#include <kelmar/mdKelMain.h>

#include <algorithm>

namespace kelmar {

namespace {

constexpr double kNeighbourStep = 0.025;

struct Row {
    std::int16_t lower, upper, level;
};

constexpr Row kFivePoints[] = {{0, 0, 1}, {0, 2, 2}, {0, 4, 1}, {2, 4, 2}, {4, 4, 1}};
constexpr Row kNinePoints[] = {{0, 0, 1}, {0, 2, 3}, {0, 4, 2}, {2, 4, 3}, {0, 8, 1},
                               {4, 6, 3}, {4, 8, 2}, {6, 8, 3}, {8, 8, 1}};

}  // namespace

double SetValueBesideNeighbour(std::int16_t& att, std::int16_t& index, std::int16_t& neighbour) {
    WizardData& w = wizardData();
    const int other = 2 * static_cast<int>(index) - static_cast<int>(neighbour);
    if (neighbour != index - 1 && neighbour != index + 1)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const double nearValue = w.SmpY(att, neighbour).toDouble();
    const double farValue = w.SmpY(att, other).toDouble();
    const bool cost = w.AttPropertyCopy(att).toDouble() != 0.0;
    // Values rise with the index on a benefit attribute and fall on a cost
    // one; the moved point lies above its lower neighbour and below its
    // upper one.
    const bool neighbourBelow = (neighbour < index) != cost;
    double value = neighbourBelow ? nearValue + kNeighbourStep : nearValue - kNeighbourStep;
    value = std::clamp(value, std::min(nearValue, farValue), std::max(nearValue, farValue));
    w.SmpY(att, index) = Variant(value);
    return value;
}

void BuildBisectionTable(std::int16_t& n) {
    WizardData& w = wizardData();
    w.BisectionTable.assign(n > 0 ? static_cast<std::size_t>(n) : 0U, BisectionRecord{});
    const bool five = n == 5;
    const std::size_t rows = five ? std::size(kFivePoints) : std::size(kNinePoints);
    for (std::size_t i = 0; i < rows; ++i) {
        if (i >= w.BisectionTable.size()) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
        const Row& r = five ? kFivePoints[i] : kNinePoints[i];
        w.BisectionTable[i] = BisectionRecord{r.lower, r.upper, r.level};
    }
}

}  // namespace kelmar
