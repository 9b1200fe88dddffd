#include "pages/techniques/frmKelDiffStdSeq.h"

#include "component/PageRegistry.h"
#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>

namespace kelmar {

KELMAR_REGISTER_PAGE(4, frmKelDiffStdSeq)

frmKelDiffStdSeq::frmKelDiffStdSeq(QWidget* parent)
    : ScoreAxisPage(kDiffStandardSequence, QStringLiteral("frmKelDiffStdSeq"),
                    QStringLiteral("Kelmar: Difference Standard Sequences"), parent) {}

// The steps in their order along the chain.
std::vector<int> frmKelDiffStdSeq::judgmentOrder() const {
    std::vector<int> order;
    for (int i = 1; i + 1 < sampleSize(); ++i) order.push_back(i);
    return order;
}

std::pair<int, int> frmKelDiffStdSeq::comparedPoints(int i) const {
    return {std::max(i - 1, 0), std::min(i + 1, sampleSize() - 1)};
}

QString frmKelDiffStdSeq::comparisonHeading() const { return tr("Are these two steps equally preferred?"); }

QString frmKelDiffStdSeq::judgmentText(int i, int step, int steps) const {
    const WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const auto score = [&](int k) { return fmt::formatNumber(w.SmpX(att, k).toDouble(), QStringLiteral("0.00")); };
    return tr("Judgment %1 of %2: are these two steps equally preferred? Going from %3 to %4 and "
              "going from %4 to %5 should each be worth one step of value (%6). If one of the two "
              "steps means more to you, move the selected point towards it.")
        .arg(step)
        .arg(steps)
        .arg(score(i - 1), score(i), score(i + 1),
             fmt::formatValueInText(1.0 / (sampleSize() - 1), w.MaxVal));
}

void frmKelDiffStdSeq::onMoveAccepted(int index) {
    Q_UNUSED(index)
    WizardData& w = wizardData();
    w.VFunType(w.SelAtt) = Variant(std::int16_t(1));
}

}  // namespace kelmar
