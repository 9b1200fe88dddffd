#include "pages/techniques/ScoreAxisPage.h"

#include "charts/DrawSurface.h"
#include "model/Arith.h"
#include "model/Format.h"
#include "model/ScoreSequence.h"

#include <kelmar/mdKelMain.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QPushButton>

#include <algorithm>
#include <cmath>

namespace kelmar {

namespace {

// Heights on the chart (the scale grows downwards).
constexpr double kAreaBottom = 83.0;   // the white area above the score bar
constexpr double kMarkTop = 71.0;
constexpr double kBandTop = 85.0;
constexpr double kBandOutline = 84.5;
constexpr double kBarTop = 88.0;
constexpr double kBarBottom = 99.0;
constexpr double kTickTop = 90.0;
constexpr double kTickBottom = 97.0;
constexpr double kLabelTop = 102.0;
constexpr double kHeadingTop = 24.0;
constexpr double kSpanTop = 40.0;
constexpr double kSpanBottom = 60.0;
// The bar reaches a little beyond the scores' 0 .. 100.
constexpr double kBarLeft = -1.5;
constexpr double kBarRight = 101.5;
// Room kept between two tick labels.
constexpr double kLabelSpacing = 4.0;

// The two stretches of score that one judgment compares: fill, edge, text.
struct SpanLook {
    OleColor fill, edge, text;
};
constexpr SpanLook kSpans[2] = {
    {ole::rgb(0xDD, 0xE9, 0xF7), ole::rgb(0x5E, 0x86, 0xC0), ole::rgb(0x1F, 0x3F, 0x6A)},
    {ole::rgb(0xFB, 0xE6, 0xCB), ole::rgb(0xC8, 0x8A, 0x3C), ole::rgb(0x6A, 0x40, 0x10)},
};
constexpr OleColor kHeadingColor = 0x505050;

QString scoreText(double score) { return fmt::formatNumber(score, QStringLiteral("0.00")); }

QString tickText(double score) {
    QString label = fmt::formatNumber(score, QStringLiteral("#,##0.###"));
    return TrimTrailingPoint(label);
}

void printCentred(DrawSurface& pic, double x, double y, const QString& text) {
    pic.setCurrentX(x - pic.textWidth(text) / 2.0);
    pic.setCurrentY(y);
    pic.print(text);
}

// A word-wrapped label that remembers its height at the widths asked for
// the text it shows: a layout asks for it several times a pass, and a drag
// step would lay the text out again each time.
class WrappedLabel : public QLabel {
public:
    using QLabel::QLabel;

    int heightForWidth(int width) const override {
        if (text() != heightsText_) {
            heights_.clear();
            heightsText_ = text();
        }
        for (const auto& [w, h] : heights_)
            if (w == width) return h;
        const int height = QLabel::heightForWidth(width);
        if (heights_.size() >= 8) heights_.erase(heights_.begin());
        heights_.emplace_back(width, height);
        return height;
    }

protected:
    void changeEvent(QEvent* event) override {
        heights_.clear();  // a new font or style lays the text out anew
        QLabel::changeEvent(event);
    }

private:
    mutable QString heightsText_;
    mutable std::vector<std::pair<int, int>> heights_;
};

}  // namespace

ScoreAxisPage::ScoreAxisPage(int pageId, const QString& formName, const QString& title,
                             QWidget* parent)
    : GuidedPage(pageId, formName, title,
                    [] {
                        TechniqueFeatures f;
                        f.readout = TechniqueFeatures::Readout::ScoreDifferences;
                        return f;
                    }(),
                    parent) {
    auto* row = new QWidget(Frame1);
    auto* rowLayout = new QHBoxLayout(row);
    rowLayout->setContentsMargins(0, 0, 0, 0);
    lblJudgment = new WrappedLabel(row);
    lblJudgment->setObjectName(QStringLiteral("lblJudgment"));
    lblJudgment->setWordWrap(true);
    lblJudgment->setMinimumHeight(lblJudgment->fontMetrics().lineSpacing() * 3 + 4);
    lblJudgment->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    cmdNextJudgment = new QPushButton(tr("Next &judgment"), row);
    cmdNextJudgment->setObjectName(QStringLiteral("cmdNextJudgment"));
    cmdNextJudgment->setAutoDefault(false);
    cmdNextJudgment->setToolTip(tr("Select the point of the next judgment"));
    rowLayout->addWidget(lblJudgment, 1);
    rowLayout->addWidget(cmdNextJudgment, 0, Qt::AlignTop);
    addToUpperFrame(row);
    addJudgmentNote();
    connect(cmdNextJudgment, &QPushButton::clicked, this, [this] { handle([this] { onNextJudgment(); }); });

    for (PointMark* mark : picScorePoint)
        mark->setWhatsThis(tr("Drag the mark, or use the arrow keys, to place this point's score"));

    resize(780, 680);
    layout()->activate();
    layout()->setGeometry(rect());
}

double ScoreAxisPage::snapPosition(double position) const {
    // Whole units of the score bar: scores move in hundredths of the range.
    return std::round(position);
}

// --- Points and chart --------------------------------------------------------

void ScoreAxisPage::preparePoints() {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t n = w.SmpSize(att).toInteger();
    if (!HasEqualValueSteps(att)) {
        if (isLinearType(w.VFunType(att)))
            SetLinearSamplePoints(att, n);
        else
            ResampleByValue(att, n, n);
    }
    FitEqualValueSteps(att);
}

void ScoreAxisPage::drawRatingChart() {
    preparePoints();
    showSampleSizeEntry();
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t n = sampleSize();
    order_ = judgmentOrder();
    // A new size (or a new attribute) starts the walk at its first
    // judgment not made yet (at the first when all are made).
    if (n != walkSize_ || selected_ < 0 || selected_ >= n) {
        walkSize_ = n;
        selected_ = FirstUnjudged(order_, JudgedPoints(att), -1);
        lblRefusal->clear();
    }
    DrawRatingChart(att, w.ScoreMinimum(att), w.ScoreMaximum(att), n, w.SmpX);
    if (selected_ >= 0) {
        selectMark(selected_);
        ShowPointLabels(selected_);
    }
    showJudgmentText();
}

void ScoreAxisPage::DrawRatingChart(std::int16_t& att, Variant& scoreMinimum, Variant& scoreMaximum,
                                    std::int16_t& sampleSize, VariantArray& smpX) {
    const double low = scoreMinimum.toDouble();
    const double range = scoreMaximum.toDouble() - low;
    drawAxis(att, low, scoreMaximum.toDouble(), sampleSize, smpX);
    for (int i = 0; i < sampleSize; ++i) {
        if (i >= kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
        const double score = smpX(att, i).toDouble();
        PointMark* mark = picScorePoint[static_cast<std::size_t>(i)];
        mark->setToolTip(scoreText(score));
        placeMarkCentre(i, checkedDiv((score - low) * 100.0, range), kMarkTop);
    }
    hideMarksFrom(sampleSize < 0 ? 0 : sampleSize);
}

void ScoreAxisPage::redrawAxis() {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    drawAxis(att, w.ScoreMinimum(att).toDouble(), w.ScoreMaximum(att).toDouble(), sampleSize(), w.SmpX);
}

void ScoreAxisPage::drawAxis(std::int16_t att, double scoreMinimum, double scoreMaximum,
                             std::int16_t n, VariantArray& smpX) {
    DrawSurface& pic = *picRatingChart;
    pic.cls();
    pic.setScale(-8.0, -3.0, 108.0, 112.0);
    const double range = scoreMaximum - scoreMinimum;
    const auto position = [&](int k) { return checkedDiv((smpX(att, k).toDouble() - scoreMinimum) * 100.0, range); };

    pic.filledBox(-8.0, -3.0, 108.0, 102.0, ole::ButtonFace);
    pic.filledBox(-1.0, 0.0, 101.0, kAreaBottom, ole::White, ole::Black);

    // The two stretches of score that the selected point's judgment
    // compares, side by side.
    const int last = n - 1;
    if (selected_ >= 0 && selected_ <= last) {
        const auto [a, b] = comparedPoints(selected_);
        const int ends[2][2] = {{a, selected_}, {selected_, b}};
        bool any = false;
        for (int s = 0; s < 2; ++s) {
            const int from = ends[s][0], to = ends[s][1];
            if (from >= to) continue;
            any = true;
            const SpanLook& look = kSpans[s];
            const double x1 = position(from), x2 = position(to);
            pic.filledBox(x1, kSpanTop, x2, kSpanBottom, look.fill, look.edge);
            // Its ends, or only its length where the ends do not fit.
            const double low = smpX(att, from).toDouble(), high = smpX(att, to).toDouble();
            QString caption = scoreText(low) + QStringLiteral(" \u2013 ") + scoreText(high);
            if (pic.textWidth(caption) + 1.0 >= x2 - x1) caption = scoreText(high - low);
            if (pic.textWidth(caption) + 1.0 < x2 - x1) {
                pic.setForeColor(look.text);
                printCentred(pic, (x1 + x2) / 2.0,
                             (kSpanTop + kSpanBottom - pic.textHeight(caption)) / 2.0, caption);
            }
        }
        if (any) {
            pic.setForeColor(kHeadingColor);
            printCentred(pic, 50.0, kHeadingTop, comparisonHeading());
        }
    }

    // The band and the sunken score bar.
    pic.filledBox(-8.0, kBandTop, 108.0, 102.0, ole::ButtonFace);
    pic.box(-8.0, kBandOutline, 108.0, 102.0, ole::ButtonShadow);
    pic.filledBox(kBarLeft, kBarTop, kBarRight, kBarBottom, ole::ButtonFace);
    pic.line(kBarLeft, kBarTop, kBarRight, kBarTop, ole::ButtonShadow);
    pic.line(kBarLeft, kBarTop, kBarLeft, kBarBottom, ole::ButtonShadow);
    pic.line(kBarLeft, kBarBottom, kBarRight, kBarBottom, ole::White);
    pic.line(kBarRight, kBarTop, kBarRight, kBarBottom, ole::White);

    // The equal steps: a tick at each, labelled with its score when the
    // labels fit side by side (the ends always).
    const std::int16_t intervals = checkedSub(n, 1);
    if (intervals <= 0) throw RuntimeError(RuntimeError::DivisionByZero);
    std::vector<QString> labels;
    double widest = 0.0;
    for (int i = 0; i <= intervals; ++i) {
        const double score = i == intervals ? scoreMaximum : scoreMinimum + range * i / intervals;
        labels.push_back(tickText(score));
        widest = std::max(widest, pic.textWidth(labels.back()));
    }
    const bool all = widest + kLabelSpacing < 100.0 / intervals;
    pic.setForeColor(ole::Black);
    for (int i = 0; i <= intervals; ++i) {
        const float x = static_cast<float>(i) * 100.0f / static_cast<float>(intervals);
        pic.line(x, kTickTop, x, kTickBottom, ole::Black);
        if (all || i == 0 || i == intervals)
            printCentred(pic, x, kLabelTop, labels[static_cast<std::size_t>(i)]);
    }
}

// --- Moves and read-outs -------------------------------------------------------

bool ScoreAxisPage::MovePoint(int index, double x) {
    if (!moveScore(index, x)) return false;
    onMoveAccepted(index);
    placeMarksAtScores(kMarkTop);
    updateJudgment(index);
    return true;
}

QString ScoreAxisPage::exactCaption() const { return tr("Exact score:"); }

JudgmentResult ScoreAxisPage::judgeScore(int index, double score) {
    const JudgmentResult result = placeTypedScore(index, score);
    if (!result.accepted) return result;
    onMoveAccepted(index);
    placeMarksAtScores(kMarkTop);
    selectMark(index);
    updateJudgment(index);
    releaseAsMoved(index);
    return result;
}

void ScoreAxisPage::onMarkReleased(int index) {
    if (!releaseJudges(index)) return;
    TechniquePage::onMarkReleased(index);
    rememberJudgment(index);
}

void ScoreAxisPage::ShowPointLabels(int index) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const int last = sampleSize() - 1;
    const double score = w.SmpX(att, index).toDouble();
    lblCurScore->setText(scoreText(score));
    const QString before = index == 0 ? QStringLiteral("[##]")
                                      : QStringLiteral("[%1]").arg(scoreText(score - w.SmpX(att, index - 1).toDouble()));
    const QString after = index == last ? QStringLiteral("[##]")
                                        : QStringLiteral("[%1]").arg(scoreText(w.SmpX(att, index + 1).toDouble() - score));
    lblScoreDiff->setText(before + QStringLiteral(" : ") + after);
}

void ScoreAxisPage::updateJudgment(int index) {
    std::int16_t att = currentAttribute();
    selected_ = index;
    ShowPointLabels(index);
    FitEqualValueSteps(att);
    redrawAxis();
    showJudgmentText();
    drawValueChart();
}

// --- The walk through the judgments ------------------------------------------

void ScoreAxisPage::refreshPage() {
    walkSize_ = 0;
    TechniquePage::refreshPage();
}

void ScoreAxisPage::onLinear() {
    walkSize_ = 0;
    GuidedPage::onLinear();
}

void ScoreAxisPage::onMarkPressed(int index) {
    GuidedPage::onMarkPressed(index);
    selected_ = index;
    redrawAxis();
    showJudgmentText();
}

void ScoreAxisPage::onNextJudgment() {
    if (order_.empty()) return;
    const auto at = std::find(order_.begin(), order_.end(), selected_);
    const std::size_t next = at == order_.end() ? 0U : static_cast<std::size_t>(at - order_.begin() + 1) % order_.size();
    selected_ = order_[next];
    lblRefusal->clear();
    selectMark(selected_);
    ShowPointLabels(selected_);
    redrawAxis();
    showJudgmentText();
    picScorePoint.at(static_cast<std::size_t>(selected_))->setFocus(Qt::OtherFocusReason);
}

void ScoreAxisPage::showJudgmentText() {
    const int last = sampleSize() - 1;
    if (selected_ < 0 || selected_ > last) {
        lblJudgment->clear();
        return;
    }
    const WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    if (selected_ == 0 || selected_ == last) {
        const QString score = scoreText(w.SmpX(att, selected_).toDouble());
        lblJudgment->setText(
            (selected_ == 0 ? tr("The first point stays at the lowest score, %1.")
                            : tr("The last point stays at the highest score, %1."))
                .arg(score) +
            QLatin1Char(' ') + tr("Next judgment takes you to the points you place."));
        return;
    }
    const auto at = std::find(order_.begin(), order_.end(), selected_);
    lblJudgment->setText(judgmentText(selected_, static_cast<int>(at - order_.begin()) + 1,
                                      static_cast<int>(order_.size())));
}

}  // namespace kelmar
