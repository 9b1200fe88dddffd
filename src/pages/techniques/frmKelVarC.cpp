#include "pages/techniques/frmKelVarC.h"

#include "component/PageRegistry.h"
#include "model/Format.h"
#include "pages/techniques/LotteryDiagram.h"

#include <kelmar/mdKelMain.h>

#include <QLabel>

#include <algorithm>
#include <utility>
#include <vector>

namespace kelmar {

KELMAR_REGISTER_PAGE(7, frmKelVarC)

namespace {

constexpr int kTextRows = 2;  // the point values, then the guidance
constexpr double kValueGap = 1.5;  // kept free between two point values, in chart units

}  // namespace

frmKelVarC::frmKelVarC(QWidget* parent)
    : GuidedPage(kVariableCertainty, QStringLiteral("frmKelVarC"),
                    QStringLiteral("Kelmar: Variable Certainty Equivalent"), lottery::PageFeatures(), parent) {
    addJudgmentNote();
    lottery::ShapeChart(*this, *picRatingChart);
    for (PointMark* mark : picScorePoint)
        mark->setWhatsThis(tr("Drag the mark to the score you would take for sure instead of the lottery"));
}

std::int16_t frmKelVarC::sizeForListIndex(int listIndex) const {
    return listIndex == 0 ? 5 : listIndex == 1 ? 9 : -1;
}

QStringList frmKelVarC::sampleSizeEntries() const { return {QStringLiteral("5"), QStringLiteral("9")}; }

int frmKelVarC::listIndexForSize(std::int16_t size) const { return size == 5 ? 0 : size == 9 ? 1 : -1; }

std::int16_t frmKelVarC::firstJudgment() const {
    // The first lottery not judged yet; the first of all when every one is.
    return FirstUnjudged(CertaintyJudgmentOrder(), JudgedPoints(currentAttribute()), std::int16_t(0));
}

void frmKelVarC::settlePoints() {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t n = sampleSize();
    if (n != 5 && n != 9) {
        std::int16_t size = CertaintySampleSize(n);
        w.SmpSize(att) = Variant(size);
        if (n >= 2)
            UpdateSamplePoints(att, size, n);
        else
            SetLinearSamplePoints(att, size);
        n = size;
    } else {
        UpdateSamplePoints(att, n, n);
    }
    // Every judgment puts a point at the mean of two others, so the values
    // are the equal steps of the halvings.
    if (!ValuesOnEqualSteps(att)) ResampleByValue(att, n, n);
    if (!SamplePointsInOrder(att)) SpreadScoresInOrder(att);
    BuildBisectionTable(n);
}

// --- The rating chart ----------------------------------------------------------

void frmKelVarC::drawRatingChart() {
    PlaceVarCPoints();
    DrawCertaintyChart();
}

void frmKelVarC::PlaceVarCPoints() {
    placeMarksAtScores(lottery::kMarkTop);
}

void frmKelVarC::DrawCertaintyChart() {
    WizardData& w = wizardData();
    std::int16_t n = sampleSize();
    if (w.BisectionTable.size() != static_cast<std::size_t>(std::max<int>(n, 0))) BuildBisectionTable(n);
    if (JudgedPoint < 0 || JudgedPoint >= n) {
        JudgedPoint = firstJudgment();
        selectMark(JudgedPoint);
    }
    DrawSurface& pic = *picRatingChart;
    lottery::DrawScoreBar(pic, n, kTextRows);
    DrawLottery(pic, JudgedPoint);
    ShowPointValues();

    const std::vector<std::int16_t> order = CertaintyJudgmentOrder();
    const auto place = std::find(order.begin(), order.end(), JudgedPoint);
    const QString guide =
        place != order.end()
            ? tr("Lottery %1 of %2, the whole range first and then its halves: drag the marked "
                 "point to the score you would take for sure instead.")
                  .arg(place - order.begin() + 1)
                  .arg(order.size())
            : tr("The end points are fixed: press an inner mark to judge its score.");
    lottery::PrintGuide(pic, lottery::kRowTop + lottery::kRowHeight, guide);
}

void frmKelVarC::DrawLottery(DrawSurface& pic, std::int16_t judged) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    if (judged < 0 || static_cast<std::size_t>(judged) >= w.BisectionTable.size())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const BisectionRecord& row = w.BisectionTable[static_cast<std::size_t>(judged)];
    lottery::DrawLotteryDiagram(pic, w.SmpX(att, judged).toDouble(), w.SmpX(att, row.Lower).toDouble(),
                                w.SmpX(att, row.Upper).toDouble());
    lottery::PrintBranchTexts(pic, QStringLiteral("0.50"), QStringLiteral("0.50"));
}

void frmKelVarC::ShowPointValues() {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const std::int16_t n = sampleSize();
    const double low = w.ScoreMinimum(att).toDouble();
    const double high = w.ScoreMaximum(att).toDouble();
    DrawSurface& pic = *picRatingChart;
    pic.filledBox(-8.0, lottery::kRowTop - 0.5, 108.0, lottery::kRowTop + lottery::kRowHeight - 0.5,
                  ole::ButtonFace);
    pic.setForeColor(ole::Black);
    // Points close in score would print their values over each other: the
    // point under judgment always shows its value, then the ends and the
    // other points where they stay clear of those already printed.
    std::vector<int> order;
    if (JudgedPoint > 0 && JudgedPoint < n - 1) order.push_back(JudgedPoint);
    const std::size_t always = order.size();
    order.push_back(0);
    order.push_back(n - 1);
    for (int i = 1; i < n - 1; ++i)
        if (i != JudgedPoint) order.push_back(i);
    std::vector<std::pair<double, double>> taken;
    for (const int i : order) {
        const QString text = fmt::formatNumber(w.SmpY(att, i).toDouble(), QStringLiteral("0.00"));
        const double x = lottery::ScorePosition(w.SmpX(att, i).toDouble(), low, high);
        const double half = pic.textWidth(text) / 2.0 + kValueGap / 2.0;
        const bool clear = std::all_of(taken.begin(), taken.end(), [&](const std::pair<double, double>& box) {
            return x + half <= box.first || x - half >= box.second;
        });
        if (taken.size() >= always && !clear) continue;
        taken.emplace_back(x - half, x + half);
        lottery::PrintCentred(pic, x, lottery::kRowTop, text);
    }
}

// --- Judgments -----------------------------------------------------------------

void frmKelVarC::MovePoint(int index, double x) {
    // A sure score lies between the judged points around it, which are its
    // lottery's outcomes when the lotteries are taken in order.
    if (moveScore(index, x)) PlaceVarCPoints();
}

JudgmentResult frmKelVarC::judgeSureScore(int index, double score) {
    const JudgmentResult result = placeTypedScore(index, score);
    if (!result.accepted) return result;
    PlaceVarCPoints();
    releaseAsMoved(index);
    return result;
}

void frmKelVarC::afterDragStep(int index) {
    Q_UNUSED(index)
    DrawCertaintyChart();
    drawValueChart();
}

void frmKelVarC::judge(int index) {
    JudgedPoint = static_cast<std::int16_t>(index);
    lblRefusal->clear();
    DrawCertaintyChart();
}

void frmKelVarC::onMarkPressed(int index) {
    GuidedPage::onMarkPressed(index);
    // Only the left button chooses the lottery.
    if (leftDown_) judge(index);
}

void frmKelVarC::onMarkFocused(int index) { judge(index); }

void frmKelVarC::onMarkReleased(int index) {
    if (!releaseJudges(index)) return;
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t point = static_cast<std::int16_t>(index);
    lastLottery_ = index;
    w.SmpY(att, point) = Variant(CertaintyEquivalentValue(att, point));
    // Remembered first, so that the premiums under the value chart count
    // this lottery as judged.
    rememberJudgment(index);
    TechniquePage::onMarkReleased(index);
    // On to the next lottery in the order of the halvings.
    const std::vector<std::int16_t> order = CertaintyJudgmentOrder();
    const auto place = std::find(order.begin(), order.end(), point);
    if (place != order.end() && place + 1 != order.end()) {
        JudgedPoint = *(place + 1);
        selectMark(JudgedPoint);
    }
    DrawCertaintyChart();
}

QString frmKelVarC::exactCaption() const { return tr("Exact sure score:"); }

bool frmKelVarC::lotteryPremium(int index, LotteryPremium& premium) const {
    if (index <= 0 || static_cast<std::size_t>(index) + 1 >= wizardData().BisectionTable.size()) return false;
    premium = CertaintyPremium(currentAttribute(), static_cast<std::int16_t>(index));
    return true;
}

// --- Handlers ------------------------------------------------------------------

void frmKelVarC::refreshPage() {
    settlePoints();
    JudgedPoint = -1;
    TechniquePage::refreshPage();
}

void frmKelVarC::onLinear() {
    JudgedPoint = -1;
    GuidedPage::onLinear();
}

void frmKelVarC::onSampleSizeChosen(int listIndex) {
    const std::int16_t oldSize = sampleSize();
    JudgedPoint = -1;
    TechniquePage::onSampleSizeChosen(listIndex);
    if (sampleSize() != oldSize) {
        settlePoints();
        drawRatingChart();
        drawValueChart();
    }
}

}  // namespace kelmar
