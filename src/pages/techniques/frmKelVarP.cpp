#include "pages/techniques/frmKelVarP.h"

#include "component/PageRegistry.h"
#include "model/Format.h"
#include "pages/techniques/LotteryDiagram.h"

#include <kelmar/mdKelMain.h>

#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace kelmar {

KELMAR_REGISTER_PAGE(6, frmKelVarP)

namespace {

QString probabilityText(double p) { return fmt::formatNumber(p, QStringLiteral("0.000")); }

}  // namespace

frmKelVarP::frmKelVarP(QWidget* parent)
    : GuidedPage(kVariableProbability, QStringLiteral("frmKelVarP"),
                    QStringLiteral("Kelmar: Variable Probability"), lottery::PageFeatures(), parent) {
    frameProbability = new QGroupBox(QStringLiteral("Probability"), Frame1);
    frameProbability->setObjectName(QStringLiteral("frameProbability"));
    sldProbability = new QSlider(Qt::Horizontal, frameProbability);
    sldProbability->setObjectName(QStringLiteral("sldProbability"));
    sldProbability->setRange(0, 10);
    sldProbability->setSingleStep(1);
    sldProbability->setPageStep(1);
    sldProbability->setTickPosition(QSlider::TicksBelow);
    sldProbability->setTickInterval(1);
    sldProbability->installEventFilter(this);
    cmdNextJudgment = new QPushButton(tr("Next &judgment"), frameProbability);
    cmdNextJudgment->setObjectName(QStringLiteral("cmdNextJudgment"));
    cmdNextJudgment->setAutoDefault(false);
    cmdNextJudgment->setToolTip(tr("Judge the next score up with the slider"));
    auto* sliderLayout = new QHBoxLayout(frameProbability);
    sliderLayout->setContentsMargins(8, 4, 8, 4);
    // Under the slider, the probability of each position for the point
    // being judged.
    auto* scale = new lottery::SliderScale(
        *sldProbability,
        [this](int position) {
            std::int16_t att = wizardData().SelAtt;
            std::int16_t base = baseNeighbour_;
            float step = ProbStep;
            std::int16_t at = static_cast<std::int16_t>(position);
            return probabilityText(static_cast<double>(JudgedProbability(att, base, step, at)));
        },
        frameProbability);
    scale->setObjectName(QStringLiteral("sldProbabilityScale"));
    auto* sliderColumn = new QVBoxLayout;
    sliderColumn->setSpacing(0);
    sliderColumn->addWidget(sldProbability);
    sliderColumn->addWidget(scale);
    sliderLayout->addLayout(sliderColumn, 1);
    sliderLayout->addWidget(cmdNextJudgment);
    addToUpperFrame(frameProbability);
    addJudgmentNote();
    lottery::ShapeChart(*this, *picRatingChart);
    setTabOrder(picScorePoint.back(), sldProbability);
    setTabOrder(sldProbability, cmdNextJudgment);

    connect(sldProbability, &QSlider::valueChanged, this, [this] { handle([this] { onSliderScroll(); }); });
    connect(cmdNextJudgment, &QPushButton::clicked, this, [this] { handle([this] { onNextJudgment(); }); });
    for (PointMark* mark : picScorePoint)
        mark->setWhatsThis(tr("Press the mark to judge this score with the probability slider"));
}

bool frmKelVarP::judgingInnerPoint() const {
    return JudgedPoint > 0 && JudgedPoint < sampleSize() - 1;
}

// --- The rating chart ----------------------------------------------------------

void frmKelVarP::drawRatingChart() {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    const std::int16_t n = sampleSize();
    // Inner points are judged from the lowest score up, starting with the
    // first one not judged yet (the first when all are).
    if (JudgedPoint < 0 || JudgedPoint >= n) {
        std::vector<std::int16_t> inner;
        for (std::int16_t k = 1; k + 1 < n; ++k) inner.push_back(k);
        JudgedPoint = FirstUnjudged(inner, JudgedPoints(att), std::int16_t(0));
        lblRefusal->clear();
    }
    // A function of another technique keeps its points when the size
    // changes here; those points no longer fit the new size, so they are
    // laid out again at equal scores on the old curve.
    if (resizing_ && n != oldSize_ && !SamplePointsInOrder(att)) {
        std::int16_t newSize = n;
        ResampleByScore(att, newSize, oldSize_);
    }

    placeMarksAtScores(lottery::kMarkTop);
    selectMark(JudgedPoint);
    SetProbabilityRange(JudgedPoint);
}

void frmKelVarP::redraw(float p) {
    DrawSurface& pic = *picRatingChart;
    const std::int16_t n = sampleSize();
    lottery::DrawScoreBar(pic, n, 1);
    DrawLottery(pic, JudgedPoint);
    ShowProbability(pic, p);
    const QString guide =
        judgingInnerPoint()
            ? tr("Point %1 of %2, from the lowest score up: slide until the sure score and the "
                 "lottery are equally good, then let go.")
                  .arg(JudgedPoint)
                  .arg(n - 2)
            : tr("The end points are fixed: press an inner mark to judge its score.");
    lottery::PrintGuide(pic, lottery::kRowTop, guide);
}

void frmKelVarP::DrawLottery(DrawSurface& pic, std::int16_t judged) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const std::int16_t last = checkedSub(sampleSize(), 1);
    // p is the chance of the best score, so that p is the sure score's value.
    const bool cost = w.AttPropertyCopy(att).toDouble() != 0.0;
    const double best = w.SmpX(att, cost ? 0 : last).toDouble();
    const double worst = w.SmpX(att, cost ? last : 0).toDouble();
    lottery::DrawLotteryDiagram(pic, w.SmpX(att, judged).toDouble(), best, worst);
}

void frmKelVarP::ShowProbability(DrawSurface& pic, float p) {
    lottery::PrintBranchTexts(pic, probabilityText(static_cast<double>(p)),
                              probabilityText(1.0 - static_cast<double>(p)));
}

// --- The slider ----------------------------------------------------------------

void frmKelVarP::SetProbabilityRange(std::int16_t i) {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    const float value = w.SmpY(att, i).toSingle();
    if (i == 0 || i == sampleSize() - 1) {
        sldProbability->setEnabled(false);
        sldProbability->setToolTip(QString());
        redraw(value);
        return;
    }
    // The slider spans the room between the judged points around i; the
    // points not judged yet make way for the judgment.
    const JudgedRoom room = RoomBetweenJudged(JudgedPoints(att), i);
    LowerNeighbour = static_cast<std::int16_t>(room.lower);
    UpperNeighbour = static_cast<std::int16_t>(room.upper);
    const QSignalBlocker quiet(sldProbability);
    sldProbability->setEnabled(true);
    sldProbability->setRange(0, 10);
    sldProbability->setSingleStep(1);
    sldProbability->setPageStep(1);
    baseNeighbour_ = ProbabilityBaseNeighbour(att, LowerNeighbour, UpperNeighbour);
    std::int16_t far = baseNeighbour_ == LowerNeighbour ? UpperNeighbour : LowerNeighbour;
    const float width = ProbabilityWidth(att, baseNeighbour_, far);
    ProbStep = width / static_cast<float>(sldProbability->maximum());

    // The thumb starts at the step nearest the point's value; the diagram
    // shows the value itself until the thumb moves.
    const double base = w.SmpY(att, baseNeighbour_).toDouble();
    const double steps = ProbStep > 0.0f ? (static_cast<double>(value) - base) / ProbStep : 0.0;
    sldProbability->setValue(static_cast<int>(std::clamp(std::round(steps), 0.0, 10.0)));
    sldProbability->setToolTip(fmt::currencyText(static_cast<double>(value)));
    redraw(value);
}

float frmKelVarP::sliderProbability() const {
    std::int16_t att = wizardData().SelAtt;
    std::int16_t base = baseNeighbour_;
    float step = ProbStep;
    std::int16_t position = static_cast<std::int16_t>(sldProbability->value());
    return JudgedProbability(att, base, step, position);
}

void frmKelVarP::onSliderScroll() {
    if (!judgingInnerPoint()) return;
    const float p = sliderProbability();
    sldProbability->setToolTip(fmt::currencyText(static_cast<double>(p)));
    redraw(p);
}

void frmKelVarP::onSliderRelease() {
    if (!judgingInnerPoint()) return;
    if (static_cast<float>(sldProbability->value()) == SliderStart) {
        // No judgment: the diagram goes back to the stored value.
        redraw(wizardData().SmpY(currentAttribute(), JudgedPoint).toSingle());
        return;
    }
    judgeProbability(JudgedPoint, static_cast<double>(sliderProbability()));
}

JudgmentResult frmKelVarP::judgeProbability(int index, double p, bool exact) {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    const std::vector<bool> judged = JudgedPoints(att);
    const JudgmentResult result = CheckJudgment(att, index, p, judged, true);
    lblRefusal->setText(result.reason);
    if (!result.accepted) return result;
    std::int16_t point = static_cast<std::int16_t>(index);
    PlaceJudgedValue(att, index, p, judged);
    Variant value = exact ? Variant(p) : Variant(static_cast<float>(p));
    StoreJudgedValue(att, point, value);
    RememberJudgedPoint(att, judged, index);
    lastLottery_ = index;
    drawValueChart();
    refreshAttributeList();
    ShowRiskAttitude(att);
    // The judgment stays on this point until the analyst moves on.
    JudgedPoint = point;
    selectMark(JudgedPoint);
    SetProbabilityRange(JudgedPoint);
    return result;
}

double frmKelVarP::exactQuantity(int index) const {
    return wizardData().SmpY(currentAttribute(), index).toDouble();
}

QString frmKelVarP::exactText(int index) const {
    // A probability set with the slider is kept as a Single.
    const Variant& p = wizardData().SmpY(currentAttribute(), index);
    return p.type() == Variant::Type::Single ? fmt::plainSingle(static_cast<float>(p.toDouble()))
                                             : fmt::plainNumber(p.toDouble());
}

QString frmKelVarP::exactCaption() const { return tr("Exact probability:"); }

bool frmKelVarP::lotteryPremium(int index, LotteryPremium& premium) const {
    if (index <= 0 || index >= sampleSize() - 1) return false;
    premium = ProbabilityPremium(currentAttribute(), static_cast<std::int16_t>(index));
    return true;
}

void frmKelVarP::onNextJudgment() {
    const std::int16_t n = sampleSize();
    if (n < 3) return;
    JudgedPoint = JudgedPoint >= 1 && JudgedPoint < n - 2 ? checkedAdd(JudgedPoint, 1) : std::int16_t(1);
    lblRefusal->clear();
    selectMark(JudgedPoint);
    SetProbabilityRange(JudgedPoint);
    sldProbability->setFocus(Qt::OtherFocusReason);
}

bool frmKelVarP::eventFilter(QObject* watched, QEvent* event) {
    if (watched != sldProbability) return GuidedPage::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        // Only the left button works the slider.
        if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return true;
        SliderStart = static_cast<float>(sldProbability->value());
        return false;
    }
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return true;
        handle([this] { onSliderRelease(); });
        return false;
    case QEvent::MouseMove:
        return (static_cast<QMouseEvent*>(event)->buttons() & ~Qt::LeftButton) != Qt::NoButton;
    case QEvent::Wheel:
        // The wheel judges nothing: the thumb stays where the last
        // judgment left it.
        return true;
    case QEvent::KeyPress:
        // A key stroke works as a press and a release of its own.
        if (!static_cast<QKeyEvent*>(event)->isAutoRepeat()) keyStart_ = sldProbability->value();
        return false;
    case QEvent::KeyRelease:
        if (!static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
            SliderStart = static_cast<float>(keyStart_);
            handle([this] { onSliderRelease(); });
        }
        return false;
    default:
        return false;
    }
}

// --- Handlers ------------------------------------------------------------------

void frmKelVarP::onMarkPressed(int index) {
    GuidedPage::onMarkPressed(index);
    JudgedPoint = static_cast<std::int16_t>(index);
    SetProbabilityRange(JudgedPoint);
}

void frmKelVarP::refreshPage() {
    JudgedPoint = -1;
    GuidedPage::refreshPage();
}

void frmKelVarP::onLinear() {
    JudgedPoint = -1;
    GuidedPage::onLinear();
}

void frmKelVarP::onSampleSizeChosen(int listIndex) {
    // The size in force chosen again changes nothing, not even the point
    // under judgment.
    if (sizeForListIndex(listIndex) == sampleSize()) return;
    JudgedPoint = -1;
    const QScopedValueRollback<bool> resizing(resizing_, true);
    GuidedPage::onSampleSizeChosen(listIndex);
}

}  // namespace kelmar
