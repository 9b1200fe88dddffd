#include "model/JudgedPoints.h"

#include "model/Arith.h"
#include "model/Format.h"

#include <QCoreApplication>

namespace kelmar {

namespace {

// att's points as numbers: the size, then score and value of each point.
std::vector<double> pointsOf(std::int16_t att) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    std::vector<double> points{static_cast<double>(n)};
    for (int k = 0; k < n && k <= 10; ++k) {
        points.push_back(w.SmpX(att, k).toDouble());
        points.push_back(w.SmpY(att, k).toDouble());
    }
    return points;
}

}  // namespace

std::vector<bool> JudgedPoints(std::int16_t att) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    if (n < 2) return std::vector<bool>(static_cast<std::size_t>(std::max<int>(n, 0)), true);
    const auto a = static_cast<std::size_t>(att);
    if (att >= 0 && a < w.Judged.size() && w.Judged[a].judged.size() == static_cast<std::size_t>(n) &&
        w.Judged[a].points == pointsOf(att))
        return w.Judged[a].judged;
    std::vector<bool> judged(static_cast<std::size_t>(n), !isLinearType(w.VFunType(att)));
    judged.front() = judged.back() = true;
    return judged;
}

void RecordJudgedPoints(std::int16_t att, const std::vector<bool>& judged) {
    WizardData& w = wizardData();
    if (att < 0) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const auto a = static_cast<std::size_t>(att);
    if (w.Judged.size() <= a) w.Judged.resize(a + 1);
    w.Judged[a] = {pointsOf(att), judged};
}

void RememberJudgedPoint(std::int16_t att, std::vector<bool> judged, int index) {
    if (judged.size() != static_cast<std::size_t>(std::max<int>(wizardData().SmpSize(att).toInteger(), 0)))
        judged = JudgedPoints(att);
    judged.at(static_cast<std::size_t>(index)) = true;
    RecordJudgedPoints(att, judged);
}

JudgedRoom RoomBetweenJudged(const std::vector<bool>& judged, int index) {
    const int last = static_cast<int>(judged.size()) - 1;
    JudgedRoom room{0, last};
    for (int k = index - 1; k > 0; --k)
        if (judged[static_cast<std::size_t>(k)]) {
            room.lower = k;
            break;
        }
    for (int k = index + 1; k < last; ++k)
        if (judged[static_cast<std::size_t>(k)]) {
            room.upper = k;
            break;
        }
    return room;
}

void LayOutUnjudged(std::vector<double>& at, const std::vector<double>& along, std::vector<bool> judged,
                    int index) {
    if (at.size() < 2) return;
    judged.resize(at.size(), false);
    judged.front() = judged.back() = true;
    if (index >= 0 && static_cast<std::size_t>(index) < judged.size()) judged[static_cast<std::size_t>(index)] = true;
    std::size_t from = 0;
    for (std::size_t k = 1; k < at.size(); ++k) {
        if (!judged[k]) continue;
        const double span = along[k] - along[from];
        for (std::size_t j = from + 1; j < k; ++j) {
            const double t = span != 0.0 ? (along[j] - along[from]) / span
                                         : static_cast<double>(j - from) / static_cast<double>(k - from);
            at[j] = at[from] + (at[k] - at[from]) * t;
        }
        from = k;
    }
}

void PlaceJudgedScore(std::int16_t att, int index, double score, const std::vector<bool>& judged) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    std::vector<double> x, along;
    for (int k = 0; k < n; ++k) {
        x.push_back(k == index ? score : w.SmpX(att, k).toDouble());
        along.push_back(k);
    }
    LayOutUnjudged(x, along, judged, index);
    for (int k = 0; k < n; ++k)
        if (k == index || !judged[static_cast<std::size_t>(k)]) w.SmpX(att, k) = Variant(x[static_cast<std::size_t>(k)]);
}

void PlaceJudgedValue(std::int16_t att, int index, double value, const std::vector<bool>& judged) {
    WizardData& w = wizardData();
    const std::int16_t n = w.SmpSize(att).toInteger();
    std::vector<double> y, x;
    for (int k = 0; k < n; ++k) {
        y.push_back(k == index ? value : w.SmpY(att, k).toDouble());
        x.push_back(w.SmpX(att, k).toDouble());
    }
    LayOutUnjudged(y, x, judged, index);
    for (int k = 0; k < n; ++k)
        if (k != index && !judged[static_cast<std::size_t>(k)]) w.SmpY(att, k) = Variant(y[static_cast<std::size_t>(k)]);
}

int BlockingJudgedPoint(std::int16_t att, int index, double wanted, const std::vector<bool>& judged, bool byValue) {
    WizardData& w = wizardData();
    const JudgedRoom room = RoomBetweenJudged(judged, index);
    if (!byValue) {
        if (!(wanted > w.SmpX(att, room.lower).toDouble())) return room.lower;
        if (!(wanted < w.SmpX(att, room.upper).toDouble())) return room.upper;
        return -1;
    }
    const double a = w.SmpY(att, room.lower).toDouble();
    const double b = w.SmpY(att, room.upper).toDouble();
    const int below = a <= b ? room.lower : room.upper;
    const int above = a <= b ? room.upper : room.lower;
    if (!(wanted >= std::min(a, b))) return below;
    if (!(wanted <= std::max(a, b))) return above;
    return -1;
}

QString ScoreRefusal(std::int16_t att, int blocker, double wanted, bool byValue) {
    WizardData& w = wizardData();
    const int last = w.SmpSize(att).toInteger() - 1;
    const QString pattern = byValue ? QStringLiteral("0.000") : QStringLiteral("0.00");
    const double limit = byValue ? w.SmpY(att, blocker).toDouble() : w.SmpX(att, blocker).toDouble();
    return RefusalText(blocker <= 0 || blocker >= last, fmt::formatNumber(wanted, pattern),
                       fmt::formatNumber(limit, pattern));
}

JudgmentResult CheckJudgment(std::int16_t att, int index, double wanted, const std::vector<bool>& judged,
                             bool byValue) {
    if (index <= 0 || index >= wizardData().SmpSize(att).toInteger() - 1)
        return {false, QCoreApplication::translate("kelmar", "The first and the last point stay as they are.")};
    if (const int blocker = BlockingJudgedPoint(att, index, wanted, judged, byValue); blocker >= 0)
        return {false, ScoreRefusal(att, blocker, wanted, byValue)};
    return {true, {}};
}

QString RefusalText(bool atEnd, const QString& wanted, const QString& limit) {
    return atEnd ? QCoreApplication::translate("kelmar", "Not accepted: %1 would reach or pass the end of "
                                                         "the range, %2.")
                       .arg(wanted, limit)
                 : QCoreApplication::translate("kelmar", "Not accepted: %1 would reach or pass the point "
                                                         "you judged at %2. A point stays between the "
                                                         "points judged around it; move that one first to "
                                                         "make room.")
                       .arg(wanted, limit);
}

}  // namespace kelmar
