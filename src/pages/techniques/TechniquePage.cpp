#include "pages/techniques/TechniquePage.h"

#include "charts/DrawSurface.h"
#include "charts/TurnBacks.h"
#include "charts/mdVFGraphs.h"
#include "model/Arith.h"
#include "model/Format.h"
#include "model/JudgedPoints.h"
#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QShowEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelmar {

namespace {

constexpr double kRatingScaleUnits = 116.0;  // -8 .. 108 across the rating chart

const QColor kMarkNormal(0x2F, 0x4A, 0x6D);
const QColor kMarkSelected(0xE0, 0x5A, 0x10);
const QColor kFocusRing(0x1F, 0x6F, 0xD0);

QLabel* makeLabel(QWidget* parent, const char* name, const QString& caption) {
    auto* label = new QLabel(caption, parent);
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

QLabel* makeReadout(QWidget* parent, const char* name) {
    auto* label = makeLabel(parent, name, QString());
    label->setFrameShape(QFrame::Panel);
    label->setFrameShadow(QFrame::Sunken);
    label->setMinimumWidth(110);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QPushButton* makeButton(QWidget* parent, const char* name, const QString& caption) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

// Swallows the wheel events of the widget it is installed on.
class WheelStop : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        Q_UNUSED(watched)
        return event->type() == QEvent::Wheel;
    }
};

}  // namespace

// --- MarkImageList -----------------------------------------------------------

MarkImageList::MarkImageList(QObject* parent, Shape shape)
    : QObject(parent), size_(shape == Shape::Dot ? PointMark::dotSize() : PointMark::markSize()) {
    const QSize size = size_;
    const qreal ratio = 2.0;  // drawn at twice the size so that it stays crisp when scaled
    for (int picture = 0; picture < 2; ++picture) {
        QPixmap pixmap(size * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        const QColor fill = picture == 0 ? kMarkNormal : kMarkSelected;
        if (shape == Shape::Dot) {
            // A ring with a light centre, so that the curve under it shows
            // where the point lies.
            const QRectF ring = QRectF(QPointF(0, 0), QSizeF(size)).adjusted(1.5, 1.5, -1.5, -1.5);
            p.setPen(QPen(fill, 2.5));
            p.setBrush(QColor(255, 255, 255, 200));
            p.drawEllipse(ring);
            p.setPen(Qt::NoPen);
            p.setBrush(fill);
            p.drawEllipse(ring.center(), 1.5, 1.5);
            pictures_[static_cast<std::size_t>(picture)] = pixmap;
            continue;
        }
        // A pin: a round head above a point that marks the position.
        const qreal w = size.width();
        const qreal cx = w / 2.0;
        QPainterPath path;
        path.moveTo(cx, size.height() - 1.0);
        path.lineTo(1.0, 5.5);
        path.arcTo(QRectF(1.0, 1.0, w - 2.0, w - 2.0), 180.0 + 25.0, -(180.0 + 50.0));
        path.closeSubpath();
        p.setPen(QPen(fill.darker(160), 1.0));
        p.setBrush(fill);
        p.drawPath(path);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(255, 255, 255, picture == 0 ? 170 : 230));
        p.drawEllipse(QPointF(cx, 5.0), 1.8, 1.8);
        pictures_[static_cast<std::size_t>(picture)] = pixmap;
    }
}

const QPixmap& MarkImageList::picture(int picture) const noexcept {
    return pictures_[picture == 2 ? 1U : 0U];
}

// --- PointMark -------------------------------------------------------------

PointMark::PointMark(TechniquePage& page, int index, QWidget* parent)
    : QWidget(parent), page_(page), index_(index) {
    setObjectName(QStringLiteral("picScorePoint_%1").arg(index));
    setFixedSize(page.markPictures().size());
    setFocusPolicy(Qt::StrongFocus);
    setCursor(page.features().marksOnValueChart ? Qt::SizeVerCursor : Qt::SizeHorCursor);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    hide();
}

QSize PointMark::markSize() { return {11, 17}; }
QSize PointMark::dotSize() { return {13, 13}; }

void PointMark::setPicture(int picture) {
    if (picture_ == picture) return;
    picture_ = picture;
    update();
}

void PointMark::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawPixmap(QPointF(0, 0), page_.markPictures().picture(picture_));
    if (hasFocus()) {
        QPen pen(kFocusRing, 1, Qt::DotLine);
        p.setPen(pen);
        p.setBrush(Qt::NoBrush);
        p.drawRect(QRectF(0.5, 0.5, width() - 1.0, height() - 1.0));
    }
}

void PointMark::mousePressEvent(QMouseEvent* event) {
    page_.markMouseDown(index_, event->button(), event->position());
    event->accept();
}

void PointMark::mouseMoveEvent(QMouseEvent* event) {
    page_.markMouseMove(index_, event->buttons(), event->position());
    event->accept();
}

void PointMark::mouseReleaseEvent(QMouseEvent* event) {
    page_.markMouseUp(index_, event->button(), event->position());
    event->accept();
}

void PointMark::keyPressEvent(QKeyEvent* event) {
    const double step = (event->modifiers() & Qt::ShiftModifier) ? 10.0 : 1.0;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        page_.markKeyStep(index_, -step);
        event->accept();
        return;
    case Qt::Key_Right:
    case Qt::Key_Up:
        page_.markKeyStep(index_, step);
        event->accept();
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void PointMark::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        page_.markFocused(index_);
}

void PointMark::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

// --- TechniquePage -----------------------------------------------------------

TechniquePage::TechniquePage(int pageId, const QString& formName, const QString& title,
                             TechniqueFeatures features, QWidget* parent)
    : KelPage(pageId, parent), features_(features) {
    setObjectName(formName);
    setWindowTitle(title);
    markPictures_ = new MarkImageList(this, features_.marksOnValueChart ? MarkImageList::Shape::Dot
                                                                       : MarkImageList::Shape::Pin);
    if (features_.markImages) {
        markPictures_->setObjectName(QStringLiteral("imgListMark"));
        imgListMark = markPictures_;
    }
    buildControls();
}

TechniquePage::~TechniquePage() = default;

const MarkImageList& TechniquePage::markPictures() const noexcept { return *markPictures_; }

void TechniquePage::buildControls() {
    const TechniqueFeatures& f = features_;

    // Upper frame: attribute, sample size, read-outs and the rating chart.
    Frame1 = new QFrame(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    Frame1->setFrameShape(QFrame::StyledPanel);
    Frame1->setFrameShadow(QFrame::Sunken);
    auto* upper = new QVBoxLayout(Frame1);
    upperLayout_ = upper;

    auto* choices = new QGridLayout;
    choices->setHorizontalSpacing(8);
    Label1[0] = makeLabel(Frame1, "Label1_0", QStringLiteral("Selected attribute:"));
    cmbAttributes = new QComboBox(Frame1);
    cmbAttributes->setObjectName(QStringLiteral("cmbAttributes"));
    cmbAttributes->setMinimumWidth(240);
    cmbAttributes->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    Label1[0]->setBuddy(cmbAttributes);
    choices->addWidget(Label1[0], 0, 0);
    choices->addWidget(cmbAttributes, 0, 1);
    if (f.sampleSize) {
        Label2 = makeLabel(Frame1, "Label2", QStringLiteral("Sample size:"));
        cmbSmpSize = new QComboBox(Frame1);
        cmbSmpSize->setObjectName(QStringLiteral("cmbSmpSize"));
        cmbSmpSize->setMinimumWidth(70);
        Label2->setBuddy(cmbSmpSize);
        choices->addWidget(Label2, 0, 3, Qt::AlignRight);
        choices->addWidget(cmbSmpSize, 0, 4);
    }
    if (f.currentScore) {
        Label3 = makeLabel(Frame1, "Label3", QStringLiteral("Current score:"));
        lblCurScore = makeReadout(Frame1, "lblCurScore");
        choices->addWidget(Label3, 1, 0);
        choices->addWidget(lblCurScore, 1, 1, Qt::AlignLeft);
    }
    if (f.readout == TechniqueFeatures::Readout::Value) {
        Label4 = makeLabel(Frame1, "Label4", QStringLiteral("Current value:"));
        lblCurValue = makeReadout(Frame1, "lblCurValue");
        choices->addWidget(Label4, 1, 3, Qt::AlignRight);
        choices->addWidget(lblCurValue, 1, 4);
    } else if (f.readout == TechniqueFeatures::Readout::ScoreDifferences) {
        Label4 = makeLabel(Frame1, "Label4", QStringLiteral("Score differences:"));
        lblScoreDiff = makeReadout(Frame1, "lblScoreDiff");
        lblScoreDiff->setMinimumWidth(160);
        choices->addWidget(Label4, 1, 3, Qt::AlignRight);
        choices->addWidget(lblScoreDiff, 1, 4);
    }
    // The typed answer: the selected point's judged quantity, and a note
    // on what became of the last number typed.
    lblExact = makeLabel(Frame1, "lblExact", QString());
    txtExact = new QLineEdit(Frame1);
    txtExact->setObjectName(QStringLiteral("txtExact"));
    // Room for a value with its fifteen digits; longer numbers show from
    // their first digit.
    txtExact->setMinimumWidth(80);
    txtExact->setMaximumWidth(txtExact->fontMetrics().horizontalAdvance(QStringLiteral("0.485094850948509")) + 12);
    txtExact->setToolTip(tr("Type a number and press Enter to set the selected point exactly"));
    lblExact->setBuddy(txtExact);
    lblExactNote = makeLabel(Frame1, "lblExactNote", QString());
    lblExactNote->setWordWrap(true);
    // Two lines kept free for the note, as a refusal that names a judged
    // point takes, so that the charts do not move when it comes and goes.
    lblExactNote->setMinimumHeight(lblExactNote->fontMetrics().lineSpacing() * 2);
    // Beside the attribute, in the row every page has, so that the charts
    // keep their size.
    auto* exact = new QHBoxLayout;
    exact->addStretch(1);
    exact->addWidget(lblExact);
    exact->addWidget(txtExact);
    choices->addLayout(exact, 0, 2);
    choices->addWidget(lblExactNote, 2, 0, 1, 5);
    choices->setColumnStretch(2, 1);
    upper->addLayout(choices);

    if (f.ratingChart) {
        picRatingChart = new DrawSurface(Frame1);
        picRatingChart->setObjectName(QStringLiteral("picRatingChart"));
        picRatingChart->setMinimumSize(600, 150);
        picRatingChart->setDesignSize(QSize(740, 160));
        upper->addWidget(picRatingChart, 1);
    }

    // Lower part: the value function chart beside the risk attitude and the
    // function buttons.
    picVFChart = new DrawSurface(this);
    picVFChart->setObjectName(QStringLiteral("picVFChart"));
    picVFChart->setMinimumSize(420, 290);
    picVFChart->setDesignSize(QSize(520, 320));

    picPanel = new DrawSurface(this);
    picPanel->setObjectName(QStringLiteral("picPanel"));
    picPanel->setFixedHeight(118);
    picPanel->setMinimumWidth(190);
    auto* panelLayout = new QVBoxLayout(picPanel);
    panelLayout->setContentsMargins(10, 8, 10, 10);
    Label1[1] = makeLabel(picPanel, "Label1_1", QStringLiteral("Risk attitude:"));
    panelLayout->addWidget(Label1[1]);
    picRiskAttitude = new QFrame(picPanel);
    picRiskAttitude->setObjectName(QStringLiteral("picRiskAttitude"));
    picRiskAttitude->setFrameShape(QFrame::Panel);
    picRiskAttitude->setFrameShadow(QFrame::Sunken);
    auto* riskLayout = new QVBoxLayout(picRiskAttitude);
    riskLayout->setContentsMargins(3, 3, 3, 3);
    riskLayout->setSpacing(1);
    const QString attitudes[3] = {QStringLiteral("Risk Averse"), QStringLiteral("Risk Neutral"),
                                  QStringLiteral("Risk Prone")};
    for (int k = 0; k < 3; ++k) {
        auto* label = new QLabel(attitudes[k], picRiskAttitude);
        label->setObjectName(QStringLiteral("lblRiskAttitude_%1").arg(k));
        label->setAlignment(Qt::AlignCenter);
        label->setAutoFillBackground(true);
        label->setMargin(1);
        riskLayout->addWidget(label);
        lblRiskAttitude[static_cast<std::size_t>(k)] = label;
    }
    panelLayout->addWidget(picRiskAttitude);

    auto* side = new QVBoxLayout;
    side->addWidget(picPanel);
    side->addSpacing(6);
    if (f.linearRestore) {
        cmdLinear = makeButton(this, "cmdLinear", QStringLiteral("&Linear"));
        cmdRestore = makeButton(this, "cmdRestore", QStringLiteral("&Restore"));
        cmdLinear->setToolTip(tr("Make the value function linear"));
        cmdRestore->setToolTip(tr("Return to the value function the attribute had when the wizard opened"));
        side->addWidget(cmdLinear);
        side->addWidget(cmdRestore);
    }
    cmdS = makeButton(this, "cmdS", QStringLiteral("&Specification"));
    cmdCUFPrint = makeButton(this, "cmdCUFPrint", QStringLiteral("&Print"));
    side->addWidget(cmdS);
    side->addWidget(cmdCUFPrint);
    side->addStretch(1);

    // Under the buttons, where a turn back is told, in room the column has
    // to spare, so that the value chart keeps its size; the lottery pages'
    // premiums under their diagram.
    // The turn-back words keep their room whether they are shown or not:
    // words that came and went would change the chart's size under a mark
    // being dragged.
    lblTurnBack = makeLabel(this, "lblTurnBack", QString());
    lblTurnBack->setWordWrap(true);
    lblTurnBack->setFixedSize(picPanel->minimumWidth(), lblTurnBack->fontMetrics().lineSpacing() * 5 + 4);
    lblTurnBack->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    side->insertWidget(side->count() - 1, lblTurnBack);
    lblRiskPremium = makeLabel(Frame1, "lblRiskPremium", QString());
    lblRiskPremium->setWordWrap(true);
    lblRiskPremium->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // The lottery pages keep three lines for the premiums from the start;
    // the page does not grow under the analyst when the first one is told.
    lblRiskPremium->setMinimumHeight(lblRiskPremium->fontMetrics().lineSpacing() * 3 + 2);
    lblRiskPremium->setVisible(f.riskPremium);
    upper->addWidget(lblRiskPremium);
    QPalette warning = lblTurnBack->palette();
    warning.setColor(QPalette::WindowText, QColor(0xA0, 0x30, 0x10));
    lblTurnBack->setPalette(warning);

    auto* lower = new QHBoxLayout;
    lower->addWidget(picVFChart, 1);
    lower->addLayout(side);

    cmdHelp = makeButton(this, "cmdHelp", QStringLiteral("&Help"));
    cmdCancel = makeButton(this, "cmdCancel", QStringLiteral("&Cancel"));
    cmdBack = makeButton(this, "cmdBack", QStringLiteral("< &Back"));
    cmdNext = makeButton(this, "cmdNext", QStringLiteral("&Next >"));
    cmdFinish = makeButton(this, "cmdFinish", QStringLiteral("&Finish"));
    // A technique page is the wizard's last step: Next leads nowhere.
    cmdNext->setEnabled(false);
    cmdNext->setToolTip(tr("This is the last step: press Finish to return the value functions"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdHelp);
    buttons->addStretch(1);
    buttons->addWidget(cmdBack);
    buttons->addWidget(cmdNext);
    buttons->addSpacing(8);
    buttons->addWidget(cmdFinish);
    buttons->addWidget(cmdCancel);

    auto* page = new QVBoxLayout(this);
    page->addWidget(Frame1);
    page->addLayout(lower, 1);
    auto* rule = new QFrame(this);
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    page->addWidget(rule);
    page->addLayout(buttons);

    // The marks lie on the chart they are dragged on.
    if (f.pointMarks) {
        DrawSurface* surface = markSurface();
        for (int i = 0; i < kMarkCount; ++i)
            picScorePoint[static_cast<std::size_t>(i)] = new PointMark(*this, i, surface);
        connect(surface, &DrawSurface::resized, this, [this] { replaceMarks(); });
        // Tab reaches the marks right after the choices above them.
        QWidget* previous = cmbSmpSize != nullptr ? static_cast<QWidget*>(cmbSmpSize) : cmbAttributes;
        for (PointMark* m : picScorePoint) {
            setTabOrder(previous, m);
            previous = m;
        }
        setTabOrder(previous, cmdLinear != nullptr ? cmdLinear : cmdS);
    }

    // Handlers. Every one runs guarded: a run-time error ends it.
    connect(cmbAttributes, &QComboBox::activated, this,
            [this](int index) { handle([this, index] { onAttributeChosen(index); }); });
    if (cmbSmpSize != nullptr) {
        connect(cmbSmpSize, &QComboBox::activated, this,
                [this](int index) { handle([this, index] { onSampleSizeChosen(index); }); });
        // A sample size is a judgment: it is chosen from the list or with
        // the keys, never by a wheel turned while the pointer passes over.
        cmbSmpSize->installEventFilter(new WheelStop(cmbSmpSize));
    }
    if (cmdLinear != nullptr)
        connect(cmdLinear, &QPushButton::clicked, this, [this] { handle([this] { onLinear(); }); });
    if (cmdRestore != nullptr)
        connect(cmdRestore, &QPushButton::clicked, this, [this] { handle([this] { onRestore(); }); });
    connect(cmdS, &QPushButton::clicked, this, [this] { handle([this] { onShowVFS(); }); });
    connect(cmdCUFPrint, &QPushButton::clicked, this, [this] { handle([this] { onPrint(); }); });
    connect(cmdHelp, &QPushButton::clicked, this, [this] { handle([this] { onHelp(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { handle([this] { onCancel(); }); });
    connect(cmdBack, &QPushButton::clicked, this, [this] { handle([this] { onBack(); }); });
    connect(cmdFinish, &QPushButton::clicked, this, [this] { handle([this] { onFinish(); }); });
    connect(txtExact, &QLineEdit::returnPressed, this, [this] { applyTypedAnswer(); });

    resize(780, 620);
    // Settle the geometry now, so that the marks placed at load have their
    // final size in chart units.
    layout()->activate();
    layout()->setGeometry(rect());
}

DrawSurface* TechniquePage::markSurface() const {
    return features_.marksOnValueChart || picRatingChart == nullptr ? picVFChart : picRatingChart;
}

void TechniquePage::addToUpperFrame(QWidget* widget) { upperLayout_->addWidget(widget); }

// --- Helpers -----------------------------------------------------------------

std::int16_t TechniquePage::currentAttribute() { return wizardData().SelAtt; }

std::int16_t TechniquePage::sampleSize() const {
    return wizardData().SmpSize(currentAttribute()).toInteger();
}

void TechniquePage::drawValueChart() {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t maxVal = w.MaxVal;
    showConsistency(DrawVFChart(*picVFChart, att, maxVal));
    showExact();
}

void TechniquePage::refreshAttributeList() { FillAttributeList(*cmbAttributes); }

void TechniquePage::showSampleSizeEntry() {
    if (cmbSmpSize == nullptr) return;
    const int index = listIndexForSize(sampleSize());
    cmbSmpSize->setCurrentIndex(index < cmbSmpSize->count() ? index : -1);
}

QStringList TechniquePage::sampleSizeEntries() const {
    return {QStringLiteral("5"), QStringLiteral("7"), QStringLiteral("9"), QStringLiteral("11")};
}

int TechniquePage::listIndexForSize(std::int16_t size) const {
    return size >= 5 && size % 2 == 1 ? (size - 5) / 2 : -1;
}

void TechniquePage::selectMark(int index) {
    for (int i = 0; i < kMarkCount; ++i) {
        PointMark* m = picScorePoint[static_cast<std::size_t>(i)];
        if (m != nullptr) m->setPicture(i == index ? 2 : 1);
    }
    showExact();
}

void TechniquePage::resetMarkPictures(int from) {
    for (int i = from; i < kMarkCount; ++i) {
        PointMark* m = picScorePoint[static_cast<std::size_t>(i)];
        if (m != nullptr) m->setPicture(1);
    }
}

void TechniquePage::placeMarkCentre(int index, double x, double y) {
    PointMark* m = picScorePoint.at(static_cast<std::size_t>(index));
    DrawSurface* surface = markSurface();
    markCentre_[static_cast<std::size_t>(index)] = x;
    markTop_[static_cast<std::size_t>(index)] = y;
    placedByMiddle_[static_cast<std::size_t>(index)] = false;
    surface->placeChild(m, x - surface->childWidth(m) / 2.0, y);
    m->show();
}

double TechniquePage::topOverMiddle(const QWidget* m, double y) const {
    const DrawSurface* surface = markSurface();
    const double half = surface->childHeight(m) / 2.0;
    return surface->scaleHeight() < 0 ? y + half : y - half;
}

void TechniquePage::placeMarkMiddle(int index, double x, double y) {
    placeMarkCentre(index, x, topOverMiddle(picScorePoint.at(static_cast<std::size_t>(index)), y));
    markMiddle_[static_cast<std::size_t>(index)] = y;
    placedByMiddle_[static_cast<std::size_t>(index)] = true;
}

double TechniquePage::markMiddle(int index) const {
    if (index < 0 || index >= kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return markMiddle_[static_cast<std::size_t>(index)];
}

void TechniquePage::replaceMarks() {
    DrawSurface* surface = markSurface();
    for (int i = 0; i < kMarkCount; ++i) {
        PointMark* m = picScorePoint[static_cast<std::size_t>(i)];
        if (m == nullptr || m->isHidden()) continue;
        const auto k = static_cast<std::size_t>(i);
        const double half = surface->childWidth(m) / 2.0;
        const double left = markCentre_[k] - half;
        if (placedByMiddle_[k]) markTop_[k] = topOverMiddle(m, markMiddle_[k]);
        const bool moved = std::abs(surface->childLeft(m) - left) > 1e-9 ||
                           std::abs(surface->childTop(m) - markTop_[k]) > 1e-9;
        if (moved) surface->placeChild(m, left, markTop_[k]);
    }
}

void TechniquePage::hideMarksFrom(int from) {
    for (int i = from; i < kMarkCount; ++i) {
        PointMark* m = picScorePoint[static_cast<std::size_t>(i)];
        if (m != nullptr) m->hide();
    }
}

double TechniquePage::markLeft(int index) const {
    // A mark beyond the eleven raises the subscript error, as the arrays do.
    if (index < 0 || index >= kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return markSurface()->childLeft(picScorePoint[static_cast<std::size_t>(index)]);
}

double TechniquePage::markWidth(int index) const {
    if (index < 0 || index >= kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return markSurface()->childWidth(picScorePoint[static_cast<std::size_t>(index)]);
}

double TechniquePage::scaleFactor() const {
    return static_cast<double>(markSurface()->width()) / kRatingScaleUnits;
}

// --- Marks -------------------------------------------------------------------

double TechniquePage::dragPosition(int index, QPointF pos) const {
    // c = left - (grab offset - X) / f + (width / 2) / f, worked out in the
    // surface's user units: both mouse positions go through toUser, so the
    // rule does not depend on the chart's size in pixels or the screen's
    // pixel ratio.
    const PointMark* m = picScorePoint.at(static_cast<std::size_t>(index));
    const DrawSurface* surface = markSurface();
    const QPointF origin = m->mapTo(surface, QPointF(0.0, 0.0));
    const double grab = surface->toUser(origin + QPointF(grabOffset_, 0.0)).x();
    const double now = surface->toUser(origin + QPointF(pos.x(), 0.0)).x();
    return snapPosition(markLeft(index) - (grab - now) + markWidth(index) / 2.0);
}

double TechniquePage::markPosition(int index) const { return markLeft(index) + markWidth(index) / 2.0; }

int TechniquePage::crossedNeighbour(int index, double x) const {
    const double here = markPosition(index);
    const double lower = markLeft(index - 1) + markWidth(index - 1);
    const double upper = markLeft(index + 1) - markWidth(index);
    if (x < lower && (x < here || x <= markPosition(index - 1))) return index - 1;
    if (x > upper && (x > here || x >= markPosition(index + 1))) return index + 1;
    return -1;
}

std::vector<Variant> TechniquePage::functionCells(std::int16_t att) {
    WizardData& w = wizardData();
    std::vector<Variant> cells{w.SmpSize(att), w.VFunType(att), w.VFTechniqueID(att), w.AttVFDone(att),
                               w.ScoreMiddle(att), Variant(w.SelPoint)};
    for (int k = 0; k < kMarkCount; ++k) {
        cells.push_back(w.SmpX(att, k));
        cells.push_back(w.SmpY(att, k));
    }
    return cells;
}

void TechniquePage::putFunctionCells(std::int16_t att, const std::vector<Variant>& cells) {
    WizardData& w = wizardData();
    auto cell = cells.begin();
    for (Variant* to : {&w.SmpSize(att), &w.VFunType(att), &w.VFTechniqueID(att), &w.AttVFDone(att),
                        &w.ScoreMiddle(att)})
        *to = *cell++;
    w.SelPoint = (cell++)->toInteger();
    for (int k = 0; k < kMarkCount; ++k) {
        w.SmpX(att, k) = *cell++;
        w.SmpY(att, k) = *cell++;
    }
}

bool TechniquePage::sameCells(const std::vector<Variant>& a, const std::vector<Variant>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), sameCell);
}

void TechniquePage::showFunction(const std::function<void()>& redraw) {
    if (showing_) {
        redraw();
        return;
    }
    showing_ = true;
    shownCells_ = functionCells(currentAttribute());
    try {
        redraw();
    } catch (...) {
        showing_ = false;
        throw;
    }
    showing_ = false;
}

bool TechniquePage::keepUnlessMoved(int index, QPointF pos) {
    const std::int16_t att = currentAttribute();
    const QPointF screen = picScorePoint.at(static_cast<std::size_t>(index))->mapToGlobal(pos);
    if (scaleCoordinate(screen) != downAlong_ || pressed_.att != att) return true;
    if (!sameCells(functionCells(att), pressed_.cells)) {
        // Moved away and back: what the steps on the way wrote goes.
        putFunctionCells(att, pressed_.cells);
        drawRatingChart();
        afterDragStep(index);
        drawValueChart();
    }
    return false;
}

void TechniquePage::markMouseDown(int index, Qt::MouseButton button, QPointF pos) {
    handle([&] {
        grabOffset_ = pos.x();
        grabOffsetY_ = pos.y();
        downLeft_ = markLeft(index);
        downAlong_ = scaleCoordinate(picScorePoint.at(static_cast<std::size_t>(index))->mapToGlobal(pos));
        dragIndex_ = index;
        leftDown_ = button == Qt::LeftButton;
        if (leftDown_) pressed_ = {currentAttribute(), functionCells(currentAttribute())};
        const std::int16_t n = sampleSize();
        for (int i = 0; i < n && i < kMarkCount; ++i)
            picScorePoint[static_cast<std::size_t>(i)]->setPicture(1);
        picScorePoint.at(static_cast<std::size_t>(index))->setPicture(2);
        showPointLabels(index);
        onMarkPressed(index);
        showExact();
    });
}

void TechniquePage::markMouseMove(int index, Qt::MouseButtons buttons, QPointF pos) {
    if (buttons != Qt::LeftButton) return;
    handle([&] {
        const std::int16_t last = checkedSub(sampleSize(), 1);
        if (index == 0 || index == last) return;
        // Only a move along the mark's scale moves it: a jiggle across
        // the scale is no judgment.
        const QPointF grab(grabOffset_, grabOffsetY_);
        if (scaleCoordinate(pos) == scaleCoordinate(grab)) return;
        movePoint(index, dragPosition(index, pos));
        afterDragStep(index);
    });
}

void TechniquePage::markMouseUp(int index, Qt::MouseButton button, QPointF pos) {
    if (button != Qt::LeftButton) return;
    const bool pressedHere = leftDown_ && index == dragIndex_;
    leftDown_ = false;
    handle([&] {
        if (pressedHere && !keepUnlessMoved(index, pos)) return;
        onMarkReleased(index);
    });
}

void TechniquePage::markKeyStep(int index, double units) {
    handle([&] {
        const std::int16_t last = checkedSub(sampleSize(), 1);
        if (index <= 0 || index >= last) return;
        downLeft_ = markLeft(index);
        dragIndex_ = index;
        selectMark(index);
        movePoint(index, snapPosition(markPosition(index) + units));
        afterDragStep(index);
        onMarkReleased(index);
    });
}

void TechniquePage::markFocused(int index) {
    handle([&] {
        if (index >= sampleSize()) return;
        selectMark(index);
        showPointLabels(index);
        onMarkFocused(index);
    });
}

void TechniquePage::afterDragStep(int index) {
    showPointLabels(index);
    drawValueChart();
}

bool TechniquePage::releaseJudges(int index) const {
    return index > 0 && index < sampleSize() - 1 && markLeft(index) != downLeft_;
}

void TechniquePage::onMarkReleased(int index) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    if (!releaseJudges(index)) return;
    w.VFunType(att) = Variant(std::int16_t(1));
    w.AttVFDone(att) = Variant(true);
    w.VFTechniqueID(att) = Variant(w.SelTechnique);
    showPointLabels(index);
    w.SelPoint = static_cast<std::int16_t>(index);
    drawValueChart();
    refreshAttributeList();
    ShowRiskAttitude(att);
}

// --- Typed answers and consistency --------------------------------------------

double TechniquePage::valueScale() { return wizardData().MaxVal == 100 ? 100.0 : 1.0; }

int TechniquePage::exactPoint() const {
    const std::int16_t n = sampleSize();
    for (int i = 0; i < n && i < kMarkCount; ++i) {
        const PointMark* m = picScorePoint[static_cast<std::size_t>(i)];
        if (m != nullptr && m->picture() == 2) return i;
    }
    return -1;
}

double TechniquePage::exactQuantity(int index) const {
    return wizardData().SmpY(currentAttribute(), index).toDouble() * valueScale();
}

QString TechniquePage::exactText(int index) const { return fmt::plainNumber(exactQuantity(index)); }

QString TechniquePage::exactCaption() const { return tr("Exact value:"); }

QString TechniquePage::moveToExact(int index, double typed) {
    Q_UNUSED(index)
    Q_UNUSED(typed)
    return tr("This page takes no typed answer.");
}

void TechniquePage::afterExact(int index) {
    afterDragStep(index);
    onMarkReleased(index);
}

bool TechniquePage::lotteryPremium(int index, LotteryPremium& premium) const {
    Q_UNUSED(index)
    Q_UNUSED(premium)
    return false;
}

void TechniquePage::showExact() {
    if (txtExact == nullptr || !isLoaded()) return;
    const int index = exactPoint();
    const bool any = index >= 0 && index < sampleSize();
    shownExact_ = any ? exactText(index) : QString();
    txtExact->setEnabled(any);
    txtExact->setPlaceholderText(any ? QString() : tr("no point"));
    if (txtExact->text() != shownExact_) {
        txtExact->setText(shownExact_);
        txtExact->setCursorPosition(0);  // the leading digits in view
    }
    lblExactNote->clear();
}

void TechniquePage::applyTypedAnswer() {
    handle([this] {
        const QString text = txtExact->text();
        // The number shown, entered again, is no judgment.
        if (text == shownExact_) return;
        const auto say = [this](const QString& note) {
            lblExactNote->setText(note);
        };
        const int index = exactPoint();
        if (index < 0 || index >= sampleSize()) return say(tr("Select a point first."));
        double typed = 0.0;
        if (!fmt::completeNumber(text, typed))
            return say(tr("\"%1\" is not a number: type digits, with a point for decimals (such as 0.25).")
                           .arg(text.trimmed()));
        if (features_.pointMarks && (index == 0 || index == sampleSize() - 1))
            return say(tr("The first and the last point stay at the ends of the range: select an inner point."));
        if (typed == exactQuantity(index)) {
            showExact();
            return;
        }
        downLeft_ = features_.pointMarks ? markLeft(index) : 0.0;
        dragIndex_ = index;
        const QString refused = moveToExact(index, typed);
        if (!refused.isEmpty()) return say(refused);
        afterExact(index);
        showExact();
        // The move rules may keep the point off the number typed.
        const QString stored = exactText(index);
        if (exactPoint() == index && stored != fmt::plainNumber(typed))
            say(tr("Set to %1, not %2: a point keeps its place between its neighbours and on the scale.")
                    .arg(stored, fmt::plainNumber(typed)));
    });
}

void TechniquePage::showConsistency(const std::vector<TurnBack>& turnBacks) {
    if (lblTurnBack == nullptr) return;
    const std::int16_t att = currentAttribute();
    const bool cost = CostOrientedAttribute(att);
    const auto score = [](double v) { return fmt::formatNumber(v, QStringLiteral("0.00")); };
    QStringList stretches;
    for (const TurnBack& t : turnBacks) stretches << tr("%1 and %2").arg(score(t.from), score(t.to));
    const QString turnBack =
        stretches.isEmpty()
            ? QString()
            : tr("The curve turns back between %1 (shaded): there a higher score is worth %2.")
                  .arg(stretches.join(tr("; between ")), cost ? tr("more") : tr("less"));
    if (lblTurnBack->text() != turnBack) lblTurnBack->setText(turnBack);

    // Only the lottery pages have premiums to tell.
    if (!features_.riskPremium) return;
    // The premiums of the lotteries of the inner points judged so far.
    std::vector<LotteryPremium> judged;
    LotteryPremium premium;
    const std::vector<bool> answered = JudgedPoints(att);
    for (std::size_t k = 1; k + 1 < answered.size(); ++k)
        if (answered[k] && lotteryPremium(static_cast<int>(k), premium)) judged.push_back(premium);
    QString words;
    if (lastLottery_ > 0 && lastLottery_ < sampleSize() - 1 && lotteryPremium(lastLottery_, premium))
        words = tr("Risk premium of the lottery you just judged: %1, the expected score %2 minus the sure score %3.")
                    .arg(score(premium.premium), score(premium.sure + premium.premium), score(premium.sure));
    const WizardData& w = wizardData();
    const double range = w.ScoreMaximum(att).toDouble() - w.ScoreMinimum(att).toDouble();
    LotteryPremium positive, negative;
    if (PremiumsChangeSign(judged, range, positive, negative))
        words += (words.isEmpty() ? QString() : QStringLiteral(" ")) +
                 tr("The premiums change sign: %1 at the sure score %2 but %3 at %4, so your answers take "
                    "risk differently across the range.")
                     .arg(score(positive.premium), score(positive.sure), score(negative.premium),
                          score(negative.sure));
    if (lblRiskPremium->text() != words) lblRiskPremium->setText(words);
}

// --- Risk attitude -----------------------------------------------------------

void TechniquePage::ShowRiskAttitude(std::int16_t att) {
    WizardData& w = wizardData();
    auto highlight = [this](int which) {
        for (int k = 0; k < 3; ++k) {
            QLabel* label = lblRiskAttitude[static_cast<std::size_t>(k)];
            QPalette palette = label->palette();
            if (k == which) {
                palette.setColor(QPalette::Window, toQColor(ole::Highlight));
                palette.setColor(QPalette::WindowText, Qt::black);
                label->setAutoFillBackground(true);
            } else {
                palette.setColor(QPalette::WindowText, toQColor(ole::DarkGrey));
                label->setAutoFillBackground(false);
            }
            label->setPalette(palette);
            QFont font = label->font();
            font.setBold(k == which);
            label->setFont(font);
        }
    };

    if (!showing_ || att != currentAttribute() || !sameCells(functionCells(att), shownCells_))
        StoreScoreMiddle(att, middleScore(att));
    if (isLinearType(w.VFunType(att))) {
        highlight(1);
        return;
    }
    const double centre = (w.ScoreMinimumCopy(att).toDouble() + w.ScoreMaximumCopy(att).toDouble()) / 2.0;
    const std::int16_t method = w.SelMCDAMethod;
    if (method != 0 && method != 1 && method != 5) return;
    const float middle = w.ScoreMiddle(att).toSingle();
    // The orientation is tested, but both kinds of attribute read the
    // comparison the same way.
    if (w.AttPropertyCopy(att).toDouble() == 0.0) {
        highlight(middle < centre ? 2 : 0);
    } else {
        highlight(middle < centre ? 2 : 0);
    }
}

float TechniquePage::middleScore(std::int16_t att) {
    // The exponential of a midpoint judgment is worth one half at the
    // judged score itself; the walk of ComputeScoreMiddle would stop short
    // of it, and showing the function on any page would move it.
    WizardData& w = wizardData();
    const Variant& middle = w.ScoreMiddle(att);
    if (!isLinearType(w.VFunType(att)) && w.VFTechniqueID(att).toDouble() == static_cast<double>(kMidPoint) && !middle.isEmpty() &&
        middle.isNumeric())
        return csng(middle.toDouble());
    return ComputeScoreMiddle(att);
}

// --- Common handlers ---------------------------------------------------------

void TechniquePage::onLoad() {
    CentreFormOnScreen(*this);
    lblExact->setText(exactCaption());
    DrawPanel(*picPanel, 0.0, 0.0, 100.0, 100.0, 1);
    if (cmbSmpSize != nullptr) {
        cmbSmpSize->clear();
        cmbSmpSize->addItems(sampleSizeEntries());
    }
    showFunction([this] { refreshPage(); });
    raiseSendMasseges(QStringLiteral("Specify single-attribute value functions."));
}

void TechniquePage::placeMarksAtScores(double top) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const std::int16_t n = sampleSize();
    const double low = w.ScoreMinimum(att).toDouble();
    const double high = w.ScoreMaximum(att).toDouble();
    for (int i = 0; i < n; ++i) {
        if (i >= kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
        const double score = w.SmpX(att, i).toDouble();
        picScorePoint[static_cast<std::size_t>(i)]->setToolTip(
            fmt::formatNumber(score, QStringLiteral("0.00")));
        placeMarkCentre(i, high == low ? 0.0 : (score - low) * 100.0 / (high - low), top);
    }
    hideMarksFrom(std::max<int>(n, 0));
}

void TechniquePage::showEvent(QShowEvent* event) {
    KelPage::showEvent(event);
    if (event->spontaneous() || !isLoaded()) return;
    if (shownBefore_) handle([this] { showFunction([this] { refreshPage(); }); });
    shownBefore_ = true;
}

void TechniquePage::refreshPage() {
    WizardData& w = wizardData();
    refreshAttributeList();
    cmbAttributes->setCurrentIndex(w.SelAtt < cmbAttributes->count() ? w.SelAtt : -1);
    showSampleSizeEntry();
    clearReadouts();
    lastLottery_ = -1;
    drawRatingChart();
    drawValueChart();
    ShowRiskAttitude(w.SelAtt);
}

void TechniquePage::clearReadouts() {
    if (lblCurScore != nullptr) lblCurScore->clear();
    if (lblCurValue != nullptr) lblCurValue->clear();
    if (lblScoreDiff != nullptr) lblScoreDiff->clear();
}

void TechniquePage::onAttributeChosen(int listIndex) {
    if (listIndex < 0) return;
    HourGlass wait;
    wizardData().SelAtt = static_cast<std::int16_t>(listIndex);
    resetMarkPictures(0);
    showFunction([this] { refreshPage(); });
}

std::int16_t TechniquePage::sizeForListIndex(int listIndex) const {
    return checkedAdd(checkedMul(2, static_cast<std::int16_t>(listIndex)), 5);
}

void TechniquePage::onSampleSizeChosen(int listIndex) {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t newSize = sizeForListIndex(listIndex);
    if (newSize < 0) return;
    if (Variant(newSize) == w.SmpSize(att)) return;
    HourGlass wait;
    oldSize_ = w.SmpSize(att).toInteger();
    w.SmpSize(att) = Variant(newSize);
    resetMarkPictures(1);
    lastLottery_ = -1;
    UpdateSamplePoints(att, newSize, oldSize_);
    // The read-outs belonged to a point of the old layout.
    clearReadouts();
    drawRatingChart();
    drawValueChart();
}

void TechniquePage::onLinear() {
    HourGlass wait;
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    w.VFunType(att) = Variant(std::int16_t(0));
    w.AttVFDone(att) = Variant(true);
    w.VFTechniqueID(att) = Variant(w.SelTechnique);
    // The record hands the host the line's own parameters, not those of
    // the function it replaces (a midpoint exponential's, say).
    for (auto [cell, parameter] : {std::pair{&w.VFunParA, &LinearParameterA}, {&w.VFunParB, &LinearParameterB}})
        if (cell->isAllocated() && cell->dimensions() == 1 && att >= cell->lbound() && att <= cell->ubound())
            (*cell)(att) = Variant(fmt::formatNumber(parameter(att), QStringLiteral("0.000000")));
    std::int16_t size = w.SmpSize(att).toInteger();
    resetMarkPictures(1);
    lastLottery_ = -1;
    UpdateSamplePoints(att, size, size);
    drawRatingChart();
    drawValueChart();
    refreshAttributeList();
    ShowRiskAttitude(att);
}

void TechniquePage::onRestore() {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    w.VFunType(att) = w.InVFunType(att);
    w.VFTechniqueID(att) = w.InVFTechniqueID(att);
    w.SmpSize(att) = w.InSmpSize(att);
    for (int k = 0; k <= 10; ++k) {
        w.SmpX(att, k) = w.InSmpX(att, k);
        w.SmpY(att, k) = w.InSmpY(att, k);
    }
    // The host's points lie on the host's range; a widened range keeps its
    // ends on the first and the last point.
    FitSamplePointsToRange(att);
    w.AttVFDone(att) = Variant(false);
    resetMarkPictures(0);
    refreshPage();
}

void TechniquePage::onShowVFS() { raiseShowKelVFS(); }

void TechniquePage::onHelp() { openHelp(this); }

void TechniquePage::onBack() {
    const float left = pageLeft();
    const float top = pageTop();
    raiseHideForm(static_cast<std::int16_t>(pageId()));
    raiseShowForm(kSettingsPage, left, top);
    raiseUnloadOwn();
}

void TechniquePage::onCancel() { raiseUnloadKelmar(); }

void TechniquePage::onFinish() {
    {
        HourGlass wait;
        ComputeAllAlternativeValues();
    }
    raiseExportResults();
    raiseUnloadKelmar();
}

}  // namespace kelmar
