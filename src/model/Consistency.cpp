#include "model/Consistency.h"

#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <cmath>

namespace kelmar {

std::vector<TurnBack> TurnBackStretches(const std::vector<float>& drawn, double scoreMin, double scoreMax,
                                        bool cost) {
    std::vector<TurnBack> stretches;
    if (drawn.size() < 2) return stretches;
    const auto segments = static_cast<double>(drawn.size() - 1);
    const float h = csng((scoreMax - scoreMin) / segments);
    const auto score = [&](std::size_t k) { return scoreMin + static_cast<double>(static_cast<float>(k) * h); };
    bool open = false;
    for (std::size_t k = 1; k < drawn.size(); ++k) {
        const bool back = cost ? drawn[k] > drawn[k - 1] : drawn[k] < drawn[k - 1];
        if (back && open) {
            stretches.back().to = score(k);
        } else if (back) {
            stretches.push_back({score(k - 1), score(k)});
        }
        if (back || drawn[k] != drawn[k - 1]) open = back;
    }
    return stretches;
}

double RiskPremium(double sure, double outcomeA, double outcomeB, double pA) {
    return pA * outcomeA + (1.0 - pA) * outcomeB - sure;
}

LotteryPremium CertaintyPremium(std::int16_t att, std::int16_t index) {
    WizardData& w = wizardData();
    if (index < 0 || static_cast<std::size_t>(index) >= w.BisectionTable.size())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const BisectionRecord& row = w.BisectionTable[static_cast<std::size_t>(index)];
    const double sure = w.SmpX(att, index).toDouble();
    return {index, sure, RiskPremium(sure, w.SmpX(att, row.Lower).toDouble(), w.SmpX(att, row.Upper).toDouble(), 0.5)};
}

LotteryPremium ProbabilityPremium(std::int16_t att, std::int16_t index) {
    WizardData& w = wizardData();
    const std::int16_t last = checkedSub(w.SmpSize(att).toInteger(), 1);
    const bool cost = w.AttPropertyCopy(att).toDouble() != 0.0;
    const double best = w.SmpX(att, cost ? 0 : last).toDouble();
    const double worst = w.SmpX(att, cost ? last : 0).toDouble();
    const double sure = w.SmpX(att, index).toDouble();
    return {index, sure, RiskPremium(sure, best, worst, w.SmpY(att, index).toDouble())};
}

bool PremiumsChangeSign(const std::vector<LotteryPremium>& premiums, double range, LotteryPremium& positive,
                        LotteryPremium& negative) {
    const double none = std::fabs(range) * 1e-6;
    const LotteryPremium* up = nullptr;
    const LotteryPremium* down = nullptr;
    for (const LotteryPremium& p : premiums) {
        if (p.premium > none && up == nullptr) up = &p;
        if (p.premium < -none && down == nullptr) down = &p;
    }
    if (up == nullptr || down == nullptr) return false;
    positive = *up;
    negative = *down;
    return true;
}

}  // namespace kelmar
