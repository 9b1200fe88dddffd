#include "pages/techniques/frmKelCatIdn.h"

#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"
#include "component/PageRegistry.h"
#include "model/Arith.h"
#include "model/CategoryLadder.h"
#include "model/Format.h"
#include "pages/common/Ui.h"
#include "pages/techniques/CategoryCharts.h"

#include <kelmar/mdKelMain.h>

#include <QBoxLayout>
#include <QComboBox>
#include <QGroupBox>
#include <QLayout>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTabBar>

#include <algorithm>
#include <cmath>

namespace kelmar {

KELMAR_REGISTER_PAGE(3, frmKelCatIdn)

namespace {

// Heights on the order-values chart (the scale grows downwards).
constexpr double kRowsTop = 1.0;
constexpr double kRowsHeight = 76.0;
constexpr double kMarkTop = 84.0;
constexpr double kLabelTop = 102.0;
constexpr OleColor kBar = ole::rgb(0xC8, 0xDC, 0xF0);
constexpr OleColor kGuide = ole::rgb(0xC0, 0xC0, 0xC0);
constexpr OleColor kText = ole::rgb(0x30, 0x30, 0x30);

TechniqueFeatures categoryFeatures() {
    TechniqueFeatures f;
    f.markImages = false;
    f.sampleSize = false;
    f.currentScore = false;
    f.readout = TechniqueFeatures::Readout::None;
    return f;
}

bool costAttribute(std::int16_t att) { return wizardData().AttPropertyCopy(att).toDouble() != 0.0; }

// Position of a value (fraction 0..1) on the order-values scale: the points
// run from left to right in score order, so a cost attribute's values fall
// along the scale.
double positionOf(double value, bool cost) { return cost ? 100.0 - value * 100.0 : value * 100.0; }

// A value as the order-values chart labels it: two decimals, or on the value
// range 100 a whole multiple of 5.
QString orderValueText(double value, std::int16_t maxVal) {
    if (maxVal == 100) return QString::number(5 * std::lround(value * 20.0));
    return fmt::formatNumber(value, QStringLiteral("0.00"));
}

// Sets the busy flag for the lifetime of a handler; it is cleared also when
// the handler ends with a run-time error, so that the attribute list never
// stays dead.
class Busy {
public:
    Busy(int& flag, int state) : flag_(flag) { flag_ = state; }
    ~Busy() { flag_ = 0; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    int& flag_;
};

}  // namespace

frmKelCatIdn::frmKelCatIdn(QWidget* parent)
    : TechniquePage(kCategoryIdentification, QStringLiteral("frmKelCatIdn"),
                    QStringLiteral("Kelmar: Category Identification"), categoryFeatures(), parent) {
    // The orientation of the ladder, under the attribute choice.
    frameOrientation = new QGroupBox(QStringLiteral("Sequence orientation"), Frame1);
    frameOrientation->setObjectName(QStringLiteral("frameOrientation"));
    optMaxToMin = new QRadioButton(QStringLiteral("From maximum to minimum"), frameOrientation);
    optMaxToMin->setObjectName(QStringLiteral("optMaxToMin"));
    optMinToMax = new QRadioButton(QStringLiteral("Form minimum to maximum"), frameOrientation);
    optMinToMax->setObjectName(QStringLiteral("optMinToMax"));
    // The page sets both buttons itself from the stored orientation.
    optMaxToMin->setAutoExclusive(false);
    optMinToMax->setAutoExclusive(false);
    optMaxToMin->setToolTip(tr("Level 0 lies next to the maximum score; each level doubles its distance"));
    optMinToMax->setToolTip(tr("Level 0 lies next to the minimum score; each level doubles its distance"));
    auto* orientation = new QHBoxLayout(frameOrientation);
    orientation->addWidget(optMaxToMin);
    orientation->addSpacing(16);
    orientation->addWidget(optMinToMax);
    orientation->addStretch(1);
    auto* upper = qobject_cast<QBoxLayout*>(Frame1->layout());
    upper->insertWidget(1, frameOrientation);

    // The order-values chart in its frame, where the rating chart stood.
    frameOrdVal = new QGroupBox(QStringLiteral("Order values"), Frame1);
    frameOrdVal->setObjectName(QStringLiteral("frameOrdVal"));
    delete upper->replaceWidget(picRatingChart, frameOrdVal);
    auto* ordered = new QVBoxLayout(frameOrdVal);
    ordered->addWidget(picRatingChart);
    picRatingChart->setMinimumHeight(190);
    picRatingChart->setDesignSize(QSize(740, 200));
    picRatingChart->setToolTip(tr("Drag each level's mark to its value; the marks keep the order of the levels"));

    // The two curves on one tab strip, where the value function chart stood.
    auto* curves = new QWidget(this);
    auto* curvesLayout = new QVBoxLayout(curves);
    curvesLayout->setContentsMargins(0, 0, 0, 0);
    curvesLayout->setSpacing(0);
    tsCurves = new QTabBar(curves);
    tsCurves->setObjectName(QStringLiteral("tsCurves"));
    tsCurves->addTab(QStringLiteral("Categorization Curve"));
    tsCurves->setTabData(0, QStringLiteral("CatCurve"));
    tsCurves->addTab(QStringLiteral("Value Function Curve"));
    tsCurves->setTabData(1, QStringLiteral("ValFunCurve"));
    tsCurves->setExpanding(false);
    curves_ = new QStackedWidget(curves);
    picCatChart = new DrawSurface(curves_);
    picCatChart->setObjectName(QStringLiteral("picCatChart"));
    picCatChart->setMinimumSize(420, 330);
    picCatChart->setDesignSize(QSize(520, 400));
    delete layout()->replaceWidget(picVFChart, curves);
    curves_->addWidget(picCatChart);
    curves_->addWidget(picVFChart);
    curvesLayout->addWidget(tsCurves);
    curvesLayout->addWidget(curves_, 1);

    for (PointMark* mark : picScorePoint)
        mark->setWhatsThis(tr("Drag the mark, or use the arrow keys, to set this level's value"));
    setTabOrder(cmbAttributes, optMaxToMin);
    setTabOrder(optMaxToMin, optMinToMax);
    setTabOrder(optMinToMax, picScorePoint[0]);

    connect(optMaxToMin, &QRadioButton::clicked, this, [this] { handle([this] { onOrientation(true); }); });
    connect(optMinToMax, &QRadioButton::clicked, this, [this] { handle([this] { onOrientation(false); }); });
    connect(tsCurves, &QTabBar::currentChanged, this,
            [this](int index) { handle([this, index] { tsCurvesClick(index + 1); }); });

    resize(820, 820);
    layout()->activate();
    layout()->setGeometry(rect());
}

// --- Handlers ----------------------------------------------------------------

void frmKelCatIdn::onLoad() {
    Busy busy(busy_, 1);
    WizardData& w = wizardData();
    w.CategoryFactor = 1.0f;
    w.CategoryCount = 7;
    // Exactly one mark per level.
    if (w.CategoryCount > kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    for (int i = w.CategoryCount; i < kMarkCount; ++i) {
        delete picScorePoint[static_cast<std::size_t>(i)];
        picScorePoint[static_cast<std::size_t>(i)] = nullptr;
    }
    TechniquePage::onLoad();
}

void frmKelCatIdn::refreshPage() {
    WizardData& w = wizardData();
    refreshAttributeList();
    cmbAttributes->setCurrentIndex(w.SelAtt < cmbAttributes->count() ? w.SelAtt : -1);
    std::int16_t att = w.SelAtt;
    RefreshCategoryPage(att);
    showOrientation();
}

void frmKelCatIdn::onAttributeChosen(int listIndex) {
    if (busy_ != 0 || listIndex < 0) return;
    HourGlass wait;
    WizardData& w = wizardData();
    for (int i = 1; i < w.CategoryCount && i < kMarkCount; ++i) {
        PointMark* mark = picScorePoint[static_cast<std::size_t>(i)];
        if (mark != nullptr) mark->hide();
    }
    w.SelAtt = static_cast<std::int16_t>(listIndex);
    resetMarkPictures(0);
    showFunction([this] {
        std::int16_t att = wizardData().SelAtt;
        RefreshCategoryPage(att);
        showOrientation();
    });
}

void frmKelCatIdn::onOrientation(bool maxToMin) {
    (maxToMin ? optMinToMax : optMaxToMin)->setChecked(false);
    std::int16_t att = wizardData().SelAtt;
    TurnCategoryLadder(att, maxToMin);
    // The buttons show what is stored, also when the refresh fails.
    try {
        RefreshCategoryPage(att);
    } catch (...) {
        showOrientation();
        throw;
    }
    showOrientation();
}

void frmKelCatIdn::showOrientation() {
    const bool maxToMin = CategoryMaxToMin(wizardData().SelAtt);
    optMaxToMin->setChecked(maxToMin);
    optMinToMax->setChecked(!maxToMin);
}

void frmKelCatIdn::onLinear() {
    Busy busy(busy_, 2);
    HourGlass wait;
    // The common Linear leaves evenly spaced points; the refresh puts them
    // on the ladder, with their values on the line.
    TechniquePage::onLinear();
    std::int16_t att = wizardData().SelAtt;
    RefreshCategoryPage(att);
}

void frmKelCatIdn::onRestore() {
    Busy busy(busy_, 2);
    TechniquePage::onRestore();
}

void frmKelCatIdn::tsCurvesClick(int tabIndex) {
    DrawSurface* front = tabIndex == 1 ? picCatChart : tabIndex == 2 ? picVFChart : nullptr;
    if (front == nullptr) return;
    curves_->setCurrentWidget(front);
    front->raise();
}

// --- Drawing -----------------------------------------------------------------

void frmKelCatIdn::RefreshCategoryPage(std::int16_t& att) {
    WizardData& w = wizardData();
    PrepareCategoryPoints(att);
    DrawCategoryChart(*picCatChart, att);
    std::int16_t n = w.SmpSize(att).toInteger();
    DrawOrderValues(*picRatingChart, att, n, w.ScoreMaximum(att), w.ScoreMinimum(att), w.SmpX, w.SmpY);
    drawValueChart();
    ShowRiskAttitude(att);
}

void frmKelCatIdn::drawRatingChart() {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t n = w.SmpSize(att).toInteger();
    DrawOrderValues(*picRatingChart, att, n, w.ScoreMaximum(att), w.ScoreMinimum(att), w.SmpX, w.SmpY);
}

void frmKelCatIdn::DrawOrderValues(DrawSurface& pic, std::int16_t& att, std::int16_t& sampleSize,
                                   Variant& scoreMaximum, Variant& scoreMinimum, VariantArray& smpX,
                                   VariantArray& smpY) {
    Q_UNUSED(scoreMaximum)
    Q_UNUSED(scoreMinimum)
    WizardData& w = wizardData();
    const bool cost = costAttribute(att);
    const bool maxToMin = CategoryMaxToMin(att);
    DrawRatingFrame(pic);
    if (sampleSize > kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);

    // Guides under the labelled values.
    for (int i = 0; i <= 4; ++i) pic.line(i * 25.0, 1.0, i * 25.0, 77.0, ole::rgb(0xE6, 0xE6, 0xE6));

    // One row per level, the most valued at the top: a bar from the value 0
    // end of the scale to the level's value, its category and its value.
    const double rowHeight = checkedDiv(kRowsHeight, sampleSize);
    const double zero = positionOf(0.0, cost);
    for (std::int16_t k = 0; k < sampleSize; ++k) {
        const std::int16_t level = CategoryLevelOfPoint(k, sampleSize, maxToMin);
        const double value = smpY(att, k).toDouble();
        const double x = positionOf(value, cost);
        const int row = cost ? k : sampleSize - 1 - k;
        const double top = kRowsTop + row * rowHeight;
        if (x != zero) pic.filledBox(std::min(zero, x), top + 1.0, std::max(zero, x), top + rowHeight - 1.0, kBar);
        pic.line(x, top + rowHeight - 1.0, x, 79.0, kGuide);
        pic.setForeColor(kText);
        const QString category = QStringLiteral("%1  %2").arg(level).arg(CategoryLevelLabel(level, maxToMin, cost));
        const double textTop = top + (rowHeight - pic.textHeight(category)) / 2.0;
        pic.setCurrentX(cost ? 1.0 : 99.0 - pic.textWidth(category));
        pic.setCurrentY(textTop);
        pic.print(category);
        const QString shown = orderValueText(value, w.MaxVal);
        pic.setCurrentX(cost ? 99.0 - pic.textWidth(shown) : 1.0);
        pic.setCurrentY(textTop);
        pic.print(shown);

        PointMark* mark = picScorePoint[static_cast<std::size_t>(k)];
        if (mark == nullptr) throw RuntimeError(RuntimeError::ObjectNotSet);
        mark->setToolTip(QStringLiteral("%1: %2").arg(fmt::formatNumber(smpX(att, k).toDouble(), QStringLiteral("0.00")),
                                                      CategoryLevelLabel(level, maxToMin, cost)));
        placeMarkCentre(k, x, kMarkTop);
        // The level number beside its mark.
        pic.setForeColor(ole::Black);
        pic.setCurrentX(x + 3.0);
        pic.setCurrentY(kMarkTop + 1.0);
        pic.print(QString::number(level));
    }
    hideMarksFrom(sampleSize < 0 ? 0 : sampleSize);

    // The value scale under the marks.
    pic.setForeColor(ole::Black);
    for (int i = 0; i <= 4; ++i) {
        const double x = positionOf(i / 4.0, cost);
        const QString label = orderValueText(i / 4.0, w.MaxVal);
        pic.line(x, 97.0, x, 100.0, ole::Black);
        pic.setCurrentX(x - pic.textWidth(label) / 2.0);
        pic.setCurrentY(kLabelTop);
        pic.print(label);
    }
    pic.line(0.0, 100.0, 100.0, 100.0, ole::Black);
}

// --- Dragging ----------------------------------------------------------------

double frmKelCatIdn::snapPosition(double position) const {
    // Whole units of the scale: values move in steps of 0.01.
    return std::round(position);
}

void frmKelCatIdn::MovePoint(int index, double x) {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t point = static_cast<std::int16_t>(index);
    // A level keeps its place between its neighbours: a drop beyond one
    // puts it just beside that neighbour's value.
    if (const int crossed = crossedNeighbour(index, x); crossed >= 0) {
        std::int16_t neighbour = static_cast<std::int16_t>(crossed);
        SetValueBesideNeighbour(att, point, neighbour);
        return;
    }
    x = std::clamp(x, 0.0, 100.0);
    w.SmpY(att, index) = Variant(costAttribute(att) ? (100.0 - x) / 100.0 : x / 100.0);
}

QString frmKelCatIdn::moveToExact(int index, double typed) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const double value = typed / valueScale();
    const double x = positionOf(value, costAttribute(att));
    // Where the drag would take the position as it is, the level takes the
    // typed value itself; elsewhere the drag's rule decides.
    if (crossedNeighbour(index, x) >= 0 || x < 0.0 || x > 100.0)
        MovePoint(index, x);
    else
        w.SmpY(att, index) = Variant(value);
    return {};
}

void frmKelCatIdn::afterDragStep(int index) {
    Q_UNUSED(index)
    drawRatingChart();
    std::int16_t att = wizardData().SelAtt;
    DragCategoryChart(*picCatChart, att);
    drawValueChart();
}

void frmKelCatIdn::onMarkReleased(int index) {
    Busy busy(busy_, 2);
    TechniquePage::onMarkReleased(index);
    std::int16_t att = wizardData().SelAtt;
    DrawCategoryChart(*picCatChart, att);
}

}  // namespace kelmar
