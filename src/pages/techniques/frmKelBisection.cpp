#include "pages/techniques/frmKelBisection.h"

#include "component/PageRegistry.h"
#include "model/Format.h"
#include "model/ScoreSequence.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>

namespace kelmar {

KELMAR_REGISTER_PAGE(5, frmKelBisection)

frmKelBisection::frmKelBisection(QWidget* parent)
    : ScoreAxisPage(kBisection, QStringLiteral("frmKelBisection"), QStringLiteral("Kelmar: Bisection"),
                    parent) {}

// Two halvings give five points, three give nine.
std::int16_t frmKelBisection::sizeForListIndex(int listIndex) const {
    switch (listIndex) {
    case 0:
        return 5;
    case 1:
        return 9;
    default:
        return -1;
    }
}

QStringList frmKelBisection::sampleSizeEntries() const { return {QStringLiteral("5"), QStringLiteral("9")}; }

int frmKelBisection::listIndexForSize(std::int16_t size) const {
    return size == 5 ? 0 : size == 9 ? 1 : -1;
}

void frmKelBisection::preparePoints() {
    // A function of another size is resampled to the nearer of the two
    // halvings (nine when it lies as near to both).
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t size = w.SmpSize(att).toInteger();
    std::int16_t halved = size < 7 ? 5 : 9;
    if (size != halved) {
        w.SmpSize(att) = Variant(halved);
        UpdateSamplePoints(att, halved, size);
    }
    BuildBisectionTable(halved);
    ScoreAxisPage::preparePoints();
}

std::vector<int> frmKelBisection::judgmentOrder() const { return BisectionJudgmentOrder(); }

std::pair<int, int> frmKelBisection::comparedPoints(int i) const {
    const BisectionRecord& row = wizardData().BisectionTable.at(static_cast<std::size_t>(i));
    return {row.Lower, row.Upper};
}

QString frmKelBisection::comparisonHeading() const {
    return tr("Does the selected point halve the stretch in preference?");
}

QString frmKelBisection::judgmentText(int i, int step, int steps) const {
    const WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const auto [lower, upper] = comparedPoints(i);
    std::int16_t rounds = 0;
    for (const BisectionRecord& row : w.BisectionTable) rounds = std::max(rounds, row.Level);
    const auto score = [&](int k) { return fmt::formatNumber(w.SmpX(att, k).toDouble(), QStringLiteral("0.00")); };
    const auto value = [&](int k) { return fmt::formatValueInText(w.SmpY(att, k).toDouble(), w.MaxVal); };
    return tr("Judgment %1 of %2, halving %3 of %4: place the selected point halfway in preference "
              "between %5 and %6, so that going from %5 to its score means as much to you as going "
              "from its score to %6. Its value, %7, lies halfway between %8 and %9. If one of the two "
              "changes means more to you, move the point towards it.")
        .arg(step)
        .arg(steps)
        .arg(w.BisectionTable.at(static_cast<std::size_t>(i)).Level)
        .arg(rounds)
        .arg(score(lower), score(upper), value(i), value(lower), value(upper));
}

}  // namespace kelmar
