#include "pages/techniques/frmKelCurveDrawing.h"

#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"
#include "component/PageRegistry.h"
#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <QLabel>

#include <cmath>

namespace kelmar {

KELMAR_REGISTER_PAGE(2, frmKelCurveDrawing)

namespace {

// A dragged point stays this far inside the value scale's ends.
constexpr double kLowest = 2.0;
constexpr double kHighest = 98.0;

TechniqueFeatures curveFeatures() {
    TechniqueFeatures f;
    f.ratingChart = false;
    f.marksOnValueChart = true;
    return f;
}

}  // namespace

frmKelCurveDrawing::frmKelCurveDrawing(QWidget* parent)
    : TechniquePage(kCurveDrawing, QStringLiteral("frmKelCurveDrawing"),
                    QStringLiteral("Kelmar: Curve Drawing"), curveFeatures(), parent) {
    for (PointMark* mark : picScorePoint)
        mark->setWhatsThis(tr("Drag the point up or down, or use the arrow keys, to set its value"));
    picVFChart->setToolTip(tr("Drag a point of the curve up or down to change its value"));
}

double frmKelCurveDrawing::snapPosition(double position) const {
    // Whole units of the value scale: values move in steps of 0.01.
    return std::round(position);
}

void frmKelCurveDrawing::placeMark(int index) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const double low = w.ScoreMinimum(att).toDouble();
    const double range = w.ScoreMaximum(att).toDouble() - low;
    if (range == 0.0) throw RuntimeError(RuntimeError::DivisionByZero);
    const double x = (w.SmpX(att, index).toDouble() - low) / range * 100.0;
    placeMarkMiddle(index, x, w.SmpY(att, index).toDouble() * 100.0);
}

void frmKelCurveDrawing::PlaceMarks() {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const std::int16_t n = w.SmpSize(att).toInteger();
    // The chart's scale first: a mark keeps its place in chart units.
    SetVFChartScale(*picVFChart);
    for (int i = 0; i < n; ++i) {
        if (i >= kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
        picScorePoint[static_cast<std::size_t>(i)]->setToolTip(
            fmt::formatNumber(w.SmpX(att, i).toDouble(), QStringLiteral("0.00")));
        placeMark(i);
    }
    hideMarksFrom(n < 0 ? 0 : n);
    // The read-outs belonged to a point that has just been laid out anew.
    lblCurScore->clear();
    lblCurValue->clear();
}

double frmKelCurveDrawing::dragPosition(int index, QPointF pos) const {
    // The mark's middle moves by as much as the mouse has moved from where
    // it grabbed the mark, in the chart's value units (upwards).
    const PointMark* m = picScorePoint.at(static_cast<std::size_t>(index));
    const QPointF origin = m->mapTo(picVFChart, QPointF(0.0, 0.0));
    const double grab = picVFChart->toUser(origin + QPointF(0.0, grabOffsetY_)).y();
    const double now = picVFChart->toUser(origin + QPointF(0.0, pos.y())).y();
    return snapPosition(markMiddle(index) + (now - grab));
}

void frmKelCurveDrawing::MovePoint(int index, double y) {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t point = static_cast<std::int16_t>(index);
    // The chart shows values upwards whatever the orientation: on a cost
    // attribute the previous point lies above this one, the next below.
    const double rising = w.AttPropertyCopy(att).toDouble() == 0.0 ? 1.0 : -1.0;
    const double previous = w.SmpY(att, index - 1).toDouble() * 100.0;
    const double next = w.SmpY(att, index + 1).toDouble() * 100.0;
    // The neighbour that a position lies beyond, or -1.
    auto crossed = [&](double at) -> std::int16_t {
        if ((at - previous) * rising < 0.0) return checkedSub(point, 1);
        if ((next - at) * rising < 0.0) return checkedAdd(point, 1);
        return -1;
    };
    std::int16_t neighbour = crossed(y);
    if (neighbour < 0) {
        if (y < kLowest) y = kLowest;
        if (y > kHighest) y = kHighest;
        // A neighbour that already lies beyond the limit keeps the order.
        neighbour = crossed(y);
    }
    if (neighbour >= 0) {
        SetValueBesideNeighbour(att, point, neighbour);
    } else {
        w.SmpY(att, index) = Variant(y / 100.0);
    }
    placeMark(index);
    // The release does not mark the function: the move itself does.
    w.VFunType(att) = Variant(std::int16_t(1));
    w.AttVFDone(att) = Variant(true);
    w.VFTechniqueID(att) = Variant(w.SelTechnique);
    w.SelPoint = point;
    moved_ = true;
}

QString frmKelCurveDrawing::moveToExact(int index, double typed) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const double value = typed / valueScale();
    MovePoint(index, value * 100.0);
    // Where the drag took the position as it is, the point takes the typed
    // value itself.
    if (w.SmpY(att, index).toDouble() == value * 100.0 / 100.0) {
        w.SmpY(att, index) = Variant(value);
        placeMark(index);
    }
    return {};
}

void frmKelCurveDrawing::ShowPointLabels(int index) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    lblCurScore->setText(fmt::formatNumber(w.SmpX(att, index).toDouble(), QStringLiteral("0.00")));
    lblCurValue->setText(fmt::formatValue(w.SmpY(att, index).toDouble(), w.MaxVal));
}

void frmKelCurveDrawing::onMarkPressed(int index) {
    Q_UNUSED(index)
    moved_ = false;
}

void frmKelCurveDrawing::onMarkReleased(int index) {
    // The curve and the read-outs followed every step; what is left is the
    // attribute list's mark and the risk attitude.
    const std::int16_t last = checkedSub(sampleSize(), 1);
    if (index == 0 || index == last || !moved_) return;
    moved_ = false;
    showPointLabels(index);
    refreshAttributeList();
    ShowRiskAttitude(wizardData().SelAtt);
}

}  // namespace kelmar
