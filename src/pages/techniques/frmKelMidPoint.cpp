#include "pages/techniques/frmKelMidPoint.h"

#include "component/PageRegistry.h"
#include "model/Arith.h"
#include "model/ExponentialPoints.h"
#include "model/Format.h"
#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace kelmar {

KELMAR_REGISTER_PAGE(0, frmKelMidPoint)

namespace {

TechniqueFeatures midpointFeatures() {
    TechniqueFeatures f;
    f.ratingChart = false;
    f.pointMarks = false;
    f.markImages = false;
    f.sampleSize = false;
    f.linearRestore = false;
    f.currentScore = false;
    f.readout = TechniqueFeatures::Readout::None;
    return f;
}

std::unique_ptr<QPrinter> defaultPrinter() {
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull()) return nullptr;
    return std::make_unique<QPrinter>(info, QPrinter::HighResolution);
}

frmKelMidPoint::PrinterFactory& printerFactory() {
    static frmKelMidPoint::PrinterFactory factory;
    return factory;
}

QString parameterText(double v) { return fmt::formatNumber(v, QStringLiteral("0.000000")); }

// Below this the curve and the exponential cannot be told apart on the
// chart, and the page says nothing about the difference.
constexpr double kShownGap = 0.005;

// Where a middle score lies across the selected attribute's range (0 at
// its minimum, 1 at its maximum).
double middleShare(double middle) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const double low = w.ScoreMinimumCopy(att).toDouble();
    return checkedDiv(middle - low, w.ScoreMaximumCopy(att).toDouble() - low);
}

// The points the record holds for the attribute, at most eleven.
std::int16_t exponentialSize(std::int16_t att) {
    WizardData& w = wizardData();
    const int held = std::min(w.SmpX.ubound(2), w.SmpY.ubound(2)) + 1;
    static_cast<void>(w.SmpX(att, 0));  // an attribute outside the record is error 9
    return static_cast<std::int16_t>(std::min(held, kLayoutMaxPoints));
}

bool isSliderKey(int key) {
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default:
        return false;
    }
}

}  // namespace

void frmKelMidPoint::setPrinterFactory(PrinterFactory factory) { printerFactory() = std::move(factory); }

frmKelMidPoint::frmKelMidPoint(QWidget* parent)
    : TechniquePage(kMidPoint, QStringLiteral("frmKelMidPoint"),
                    QStringLiteral("Kelmar: Middle Point Setting"), midpointFeatures(), parent) {
    frameSlider = new QGroupBox(tr("Middle preferential score"), Frame1);
    frameSlider->setObjectName(QStringLiteral("frameSlider"));
    sldMidVal = new QSlider(Qt::Horizontal, frameSlider);
    sldMidVal->setObjectName(QStringLiteral("sldMidVal"));
    sldMidVal->setRange(0, kSliderPositions);
    sldMidVal->setSingleStep(1);
    sldMidVal->setPageStep(kSliderPositions / 20);
    sldMidVal->setTickPosition(QSlider::TicksBelow);
    sldMidVal->setTickInterval(kSliderPositions / 10);
    sldMidVal->setMinimumWidth(420);
    sldMidVal->setWhatsThis(
        tr("Slide to the score whose value lies half-way between the worst and the best score"));
    sldMidVal->installEventFilter(this);
    lblSliderMin_ = new QLabel(frameSlider);
    lblSliderMax_ = new QLabel(frameSlider);
    lblSliderMax_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* hint = new QLabel(
        tr("Which score is worth exactly half-way between the worst and the best score?"), frameSlider);
    hint->setWordWrap(true);
    auto* grid = new QGridLayout(frameSlider);
    grid->addWidget(hint, 0, 0, 1, 3);
    grid->addWidget(lblSliderMin_, 1, 0);
    grid->addWidget(sldMidVal, 1, 1);
    grid->addWidget(lblSliderMax_, 1, 2);
    // Under the slider: the function's middle score and, where the curve
    // cannot follow the exponential closely, how far it strays.
    lblMidScore = new QLabel(frameSlider);
    lblMidScore->setObjectName(QStringLiteral("lblMidScore"));
    lblCurveGap = new QLabel(frameSlider);
    lblCurveGap->setObjectName(QStringLiteral("lblCurveGap"));
    auto* under = new QHBoxLayout;
    under->addWidget(lblMidScore);
    under->addStretch(1);
    under->addWidget(lblCurveGap);
    grid->addLayout(under, 2, 0, 1, 3);
    grid->setColumnStretch(1, 1);
    addToUpperFrame(frameSlider);

    // Every change of position shows the middle score in the slider's text.
    connect(sldMidVal, &QSlider::valueChanged, this, [this](int position) {
        handle([this, position] { showMiddle(position); });
    });
    resize(780, 560);
}

QString frmKelMidPoint::sliderText() const { return sldMidVal->toolTip(); }

double frmKelMidPoint::middleAt(int position) const {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    if (position >= kSliderPositions) return w.ScoreMaximum(att).toDouble();
    // position x step, formed as position x range / positions so that a
    // position that meets a round score gives that score.
    const double low = w.ScoreMinimum(att).toDouble();
    return checkedResult(low + position * (w.ScoreMaximum(att).toDouble() - low) / kSliderPositions);
}

void frmKelMidPoint::showMiddle(int position) {
    middle_ = middleAt(position);
    const QString text = fmt::currencyText(middle_);
    sldMidVal->setToolTip(text);
    if (sliderLeftDown_) {
        QStyleOptionSlider option;
        option.initFrom(sldMidVal);
        option.orientation = sldMidVal->orientation();
        option.minimum = sldMidVal->minimum();
        option.maximum = sldMidVal->maximum();
        option.sliderPosition = position;
        option.sliderValue = position;
        const QRect handleRect =
            sldMidVal->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, sldMidVal);
        QToolTip::showText(sldMidVal->mapToGlobal(handleRect.center() - QPoint(0, handleRect.height())), text,
                           sldMidVal);
    }
}

bool frmKelMidPoint::eventFilter(QObject* watched, QEvent* event) {
    if (watched != sldMidVal) return TechniquePage::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        // The second press of a double-click moves the slider like the
        // first, so it is a press of its own that its release judges.
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            sliderLeftDown_ = true;
            handle([this] { sliderMouseDown(); });
        } else {
            return true;  // only the left button moves the slider
        }
        break;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton && sliderLeftDown_) {
            sliderLeftDown_ = false;
            QToolTip::hideText();
            handle([this] { sliderMouseUp(); });
        } else if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) {
            return true;
        }
        break;
    case QEvent::Wheel:
        return true;  // a judgment is made by hand, not by the wheel
    case QEvent::KeyPress: {
        // A key step is a press and a release of its own.
        auto* key = static_cast<QKeyEvent*>(event);
        if (isSliderKey(key->key()) && !sliderLeftDown_) {
            handle([this] { downPosition_ = sldMidVal->value(); });
            sldMidVal->event(event);
            handle([this] { sliderMouseUp(); });
            return true;
        }
        break;
    }
    default:
        break;
    }
    return false;
}

void frmKelMidPoint::sliderMouseDown() {
    downPosition_ = sldMidVal->value();
    showMiddle(downPosition_);
}

void frmKelMidPoint::sliderMouseUp() {
    const int position = sldMidVal->value();
    middle_ = middleAt(position);
    if (position == downPosition_) return;
    judgeMiddle();
}

void frmKelMidPoint::judgeMiddle() {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const bool accepted = FitMidpoint();
    drawValueChart();
    ShowRiskAttitude(att);
    if (accepted) {
        w.AttVFDone(att) = Variant(true);
        w.VFTechniqueID(att) = Variant(w.SelTechnique);
        // The display keeps its single-precision copy; the record keeps the
        // judged score itself.
        if (!isLinearType(w.VFunType(att))) w.ScoreMiddle(att) = Variant(middle_);
    }
    refreshAttributeList();
    // A refused score, or one that made the function linear, leaves the
    // slider where the function's middle score is; the typed answer shows
    // that score too.
    placeSlider();
    showExact();
}

bool frmKelMidPoint::unreasonableMiddle(double middle) {
    const double r = middleShare(middle);
    return r <= 0.001 || r >= 0.995;
}

double frmKelMidPoint::exactQuantity(int index) const {
    Q_UNUSED(index)
    return wizardData().ScoreMiddle(currentAttribute()).toDouble();
}

QString frmKelMidPoint::exactCaption() const { return tr("Exact middle score:"); }

QString frmKelMidPoint::moveToExact(int index, double typed) {
    Q_UNUSED(index)
    if (unreasonableMiddle(typed))
        return tr("You have set an unreasonable value for the middle preferential score: it must lie inside "
                  "the range, clear of its ends.");
    middle_ = typed;
    return {};
}

void frmKelMidPoint::afterExact(int index) {
    Q_UNUSED(index)
    judgeMiddle();
}

bool frmKelMidPoint::FitMidpoint() {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    if (unreasonableMiddle(middle_)) {
        showMessage(this, QStringLiteral("You have set an unreasonable value for the middle preferential score!"),
                    QMessageBox::Warning, QStringLiteral("QUARN"));
        return false;
    }
    HourGlass wait;
    std::int16_t size = w.SmpSize(att).toInteger();
    if (std::fabs(middleShare(middle_) - 0.5) < 0.001) {
        WriteLinearParB();
        WriteLinearParA();
        w.VFunType(att) = Variant(std::int16_t(0));
        SetLinearSamplePoints(att, size);
    } else {
        // The exponential takes every point the record holds: eleven, or
        // fewer where a host's arrays are smaller. A failed placement
        // leaves the function as it was.
        const Variant oldSize = w.SmpSize(att);
        w.SmpSize(att) = Variant(exponentialSize(att));
        try {
            ResampleExponential(att, middle_);
        } catch (...) {
            w.SmpSize(att) = oldSize;
            throw;
        }
        WriteExponentialParB();
        WriteExponentialParA();
        w.VFunType(att) = Variant(std::int16_t(1));
    }
    return true;
}

void frmKelMidPoint::WriteLinearParA() {
    std::int16_t att = wizardData().SelAtt;
    wizardData().VFunParA(att) = Variant(parameterText(LinearParameterA(att)));
}

void frmKelMidPoint::WriteLinearParB() {
    std::int16_t att = wizardData().SelAtt;
    wizardData().VFunParB(att) = Variant(parameterText(LinearParameterB(att)));
}

void frmKelMidPoint::WriteExponentialParA() {
    std::int16_t att = wizardData().SelAtt;
    wizardData().VFunParA(att) = Variant(parameterText(ExponentialParameterA(att, middle_)));
}

void frmKelMidPoint::WriteExponentialParB() {
    std::int16_t att = wizardData().SelAtt;
    wizardData().VFunParB(att) = Variant(parameterText(ExponentialParameterB(att, middle_)));
}

float frmKelMidPoint::middleScore(std::int16_t att) {
    // A curve whose middle point is worth exactly one half passes one half
    // there: that point is the middle score (for a judged curve, the judged
    // score), where the walk of ComputeScoreMiddle would stop up to a
    // hundredth of value short of it.
    WizardData& w = wizardData();
    if (!isLinearType(w.VFunType(att))) {
        const std::int16_t n = w.SmpSize(att).toInteger();
        for (int k = 1; k + 1 < n; ++k) {
            if (w.SmpY(att, k).toDouble() == 0.5) return csng(w.SmpX(att, k).toDouble());
        }
    }
    return TechniquePage::middleScore(att);
}

void frmKelMidPoint::refreshPage() {
    TechniquePage::refreshPage();
    placeSlider();
}

void frmKelMidPoint::placeSlider() {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const double low = w.ScoreMinimum(att).toDouble();
    const double high = w.ScoreMaximum(att).toDouble();
    step_ = (high - low) / kSliderPositions;
    lblSliderMin_->setText(fmt::formatNumber(low, QStringLiteral("0.00")));
    lblSliderMax_->setText(fmt::formatNumber(high, QStringLiteral("0.00")));
    int position = kSliderPositions / 2;
    if (step_ > 0.0) {
        const double at = std::round((w.ScoreMiddle(att).toDouble() - low) / step_);
        position = at < 0.0 ? 0 : at > kSliderPositions ? kSliderPositions : static_cast<int>(at);
    }
    const QSignalBlocker quiet(sldMidVal);
    sldMidVal->setValue(position);
    showMiddle(position);
    showFunctionLabels();
}

void frmKelMidPoint::showFunctionLabels() {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    lblMidScore->setText(tr("Middle score of the function: %1")
                             .arg(fmt::formatNumber(w.ScoreMiddle(att).toDouble(), QStringLiteral("0.00"))));
    // A midpoint exponential whose curve strays visibly from it says by how
    // much, on the value scale shown.
    double gap = 0.0;
    if (w.VFTechniqueID(att).toDouble() == static_cast<double>(kMidPoint) && !isLinearType(w.VFunType(att))) {
        try {
            gap = ExponentialCurveGap(att);
        } catch (const RuntimeError&) {
            gap = 0.0;  // no exponential through this middle score
        }
    }
    lblCurveGap->setText(gap > kShownGap ? tr("The exported curve strays up to %1 from the judged exponential.")
                                                .arg(fmt::formatNumber(gap * w.MaxVal, QStringLiteral("0.0###")))
                                         : QString());
}

void frmKelMidPoint::onPrint() {
    // A failing printer ends the print quietly; without any printer the
    // analyst is told, rather than left wondering why nothing came out.
    try {
        std::unique_ptr<QPrinter> printer = printerFactory() ? printerFactory()() : defaultPrinter();
        if (!printer) {
            showMessage(this, QStringLiteral("There is no printer to print the page on."));
            return;
        }
        HourGlass wait;
        const QPixmap image = grab();
        QPainter painter;
        if (!painter.begin(printer.get())) return;
        const QRect area = painter.viewport();
        const QSize size = image.size().scaled(area.size(), Qt::KeepAspectRatio);
        painter.drawPixmap(QRect(area.topLeft(), size), image);
        painter.end();
    } catch (...) {
    }
}

}  // namespace kelmar
