#include "pages/techniques/LotteryDiagram.h"

#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <QEvent>
#include <QLayout>
#include <QPainter>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>

#include <algorithm>
#include <utility>

namespace kelmar::lottery {

namespace {

constexpr OleColor kTeal = 0x808000;
constexpr OleColor kRed = 0x0000FF;
constexpr OleColor kOlive = 0x008080;
constexpr OleColor kGuideColor = 0x606060;

QString scoreText(double score) { return fmt::formatNumber(score, QStringLiteral("0.00")); }

QString tickScoreText(double score) {
    QString text = fmt::formatNumber(score, QStringLiteral("#,##0.###"));
    return TrimTrailingPoint(text);
}

// Room kept free between two neighbouring texts on a scale, in the units of
// their widths.
constexpr double kTickTextGap = 4.0;
constexpr double kSliderTextGap = 8.0;

}  // namespace

void PrintCentred(DrawSurface& pic, double x, double y, const QString& text) {
    pic.setCurrentX(x - pic.textWidth(text) / 2.0);
    pic.setCurrentY(y);
    pic.print(text);
}

double ScorePosition(double score, double minimum, double maximum) {
    return maximum == minimum ? 0.0 : (score - minimum) * 100.0 / (maximum - minimum);
}

void ShapeChart(QWidget& page, DrawSurface& pic) {
    pic.setMinimumHeight(kChartHeight);
    pic.setDesignSize(QSize(740, kChartHeight));
    page.resize(kPageSize);
    // Settled now, so that the marks placed at load have their final size.
    // The frame around the chart takes the new height first, then the page.
    pic.parentWidget()->layout()->activate();
    page.layout()->activate();
    page.layout()->setGeometry(page.rect());
}

void DrawScoreBar(DrawSurface& pic, int n, int rows) {
    pic.cls();
    pic.setScale(-8.0, -3.0, 108.0, kRowTop + rows * kRowHeight + 1.0);
    pic.filledBox(-8.0, -3.0, 108.0, kRowTop + rows * kRowHeight + 1.0, ole::ButtonFace);
    pic.filledBox(-8.0, 85.0, 108.0, 102.0, ole::ButtonFace);
    pic.line(-8.0, 84.5, 108.0, 84.5, ole::ButtonShadow);

    const double leftEnd = -1.5;
    const double rightEnd = 101.5;
    pic.line(leftEnd, 88.0, rightEnd, 88.0, ole::ButtonShadow);
    pic.line(leftEnd, 88.0, leftEnd, 99.0, ole::ButtonShadow);
    pic.line(leftEnd, 99.0, rightEnd, 99.0, ole::White);
    pic.line(rightEnd, 88.0, rightEnd, 99.0, ole::White);
    if (n < 2) return;
    const WizardData& w = wizardData();
    const double low = w.ScoreMinimum(w.SelAtt).toDouble();
    const double high = w.ScoreMaximum(w.SelAtt).toDouble();
    std::vector<QString> scores;
    double widest = 0.0;
    for (int i = 0; i < n; ++i) {
        // The end scores are the range's own, the steps between them equal.
        const double score = i == n - 1 ? high : low + (high - low) * i / (n - 1);
        scores.push_back(tickScoreText(score));
        widest = std::max(widest, pic.textWidth(scores.back()));
    }
    const bool all = widest + kTickTextGap < 100.0 / (n - 1);
    pic.setForeColor(ole::Black);
    for (int i = 0; i < n; ++i) {
        const double x = i * 100.0 / (n - 1);
        pic.line(x, 90.0, x, 97.0, ole::Black);
        if (all || i == 0 || i == n - 1) PrintCentred(pic, x, kScoreRowTop, scores[static_cast<std::size_t>(i)]);
    }
}

void DrawLotteryDiagram(DrawSurface& pic, double sure, double topOutcome, double bottomOutcome) {
    pic.filledBox(0.0, 0.0, 100.0, 70.0, ole::White);

    pic.line(30.0, 40.0, 40.0, 40.0, kTeal);
    pic.line(40.0, 32.0, 40.0, 48.0, kTeal);
    pic.line(40.0, 32.0, 70.0, 32.0, kTeal);
    pic.line(40.0, 48.0, 70.0, 48.0, kTeal);

    // The sure score ends just left of the stem.
    const QString sureText = scoreText(sure);
    pic.setForeColor(ole::Black);
    pic.setCurrentX(29.0 - pic.textWidth(sureText));
    pic.setCurrentY(34.0);
    pic.print(sureText);

    pic.setForeColor(kRed);
    pic.setCurrentX(72.0);
    pic.setCurrentY(26.0);
    pic.print(scoreText(topOutcome));
    pic.setCurrentX(72.0);
    pic.setCurrentY(42.0);
    pic.print(scoreText(bottomOutcome));

    // The captions head their columns: the sure score's and the outcomes'.
    pic.setForeColor(kOlive);
    const QString sureLines[2] = {QStringLiteral("An Outcome"), QStringLiteral("for Sure")};
    const QString lotteryLines[2] = {QStringLiteral("Two Uncertain"), QStringLiteral("Outcomes")};
    const double firstLine = 10.0 - pic.textHeight(sureLines[0]);
    PrintCentred(pic, 15.0, firstLine, sureLines[0]);
    PrintCentred(pic, 15.0, 10.0, sureLines[1]);
    PrintCentred(pic, 82.0, firstLine, lotteryLines[0]);
    PrintCentred(pic, 82.0, 10.0, lotteryLines[1]);
    pic.setForeColor(ole::Black);
}

void PrintBranchTexts(DrawSurface& pic, const QString& topText, const QString& bottomText) {
    pic.filledBox(40.0, 15.0, 70.0, 28.0, ole::White);
    pic.filledBox(40.0, 51.0, 70.0, 65.0, ole::White);
    pic.setForeColor(ole::Black);
    pic.setCurrentX(46.0);
    pic.setCurrentY(16.0);
    pic.print(topText);
    pic.setCurrentX(46.0);
    pic.setCurrentY(53.0);
    pic.print(bottomText);
}

void PrintGuide(DrawSurface& pic, double y, const QString& text) {
    pic.setForeColor(kGuideColor);
    pic.setCurrentX(-6.0);
    pic.setCurrentY(y);
    pic.print(text);
    pic.setForeColor(ole::Black);
}

}  // namespace kelmar::lottery

// --- SliderScale -------------------------------------------------------------

namespace kelmar::lottery {

SliderScale::SliderScale(QSlider& slider, std::function<QString(int)> text, QWidget* parent)
    : QWidget(parent), slider_(slider), text_(std::move(text)) {
    slider_.installEventFilter(this);
    connect(&slider_, &QSlider::rangeChanged, this, [this] { update(); });
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize SliderScale::sizeHint() const { return {slider_.sizeHint().width(), fontMetrics().height() + 2}; }

bool SliderScale::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::EnabledChange:
    case QEvent::ToolTipChange:
    case QEvent::StyleChange:
        update();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

std::vector<std::pair<int, double>> SliderScale::labelledTicks() const {
    std::vector<std::pair<int, double>> ticks;
    const int low = slider_.minimum();
    const int high = slider_.maximum();
    if (!slider_.isEnabled() || high <= low) return ticks;
    // The ticks stand where the style puts the handle's centre for each
    // position.
    QStyleOptionSlider option;
    option.initFrom(&slider_);
    option.orientation = slider_.orientation();
    option.minimum = low;
    option.maximum = high;
    option.sliderPosition = slider_.sliderPosition();
    option.sliderValue = slider_.value();
    option.singleStep = slider_.singleStep();
    option.pageStep = slider_.pageStep();
    option.tickPosition = slider_.tickPosition();
    option.tickInterval = slider_.tickInterval();
    option.upsideDown = slider_.invertedAppearance() != (slider_.layoutDirection() == Qt::RightToLeft);
    const QStyle* style = slider_.style();
    const QRect groove = style->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, &slider_);
    const QRect handle = style->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider_);
    const int room = groove.width() - handle.width();
    const double offset = mapFromGlobal(slider_.mapToGlobal(QPoint(0, 0))).x() + groove.x() + handle.width() / 2.0;
    auto centre = [&](int position) {
        return offset + QStyle::sliderPositionFromValue(low, high, position, room, option.upsideDown);
    };

    // Every position, or every other, or every fifth ... : the smallest step
    // that divides the range and keeps the widest text clear of its
    // neighbours; the ends always.
    int widest = 0;
    for (int v = low; v <= high; ++v) widest = std::max(widest, fontMetrics().horizontalAdvance(text_(v)));
    const double spacing = room > 0 ? static_cast<double>(room) / (high - low) : 0.0;
    int step = high - low;
    for (int s = 1; s < high - low; ++s) {
        if ((high - low) % s == 0 && widest + kSliderTextGap <= s * spacing) {
            step = s;
            break;
        }
    }
    for (int v = low; v <= high; v += step) ticks.emplace_back(v, centre(v));
    return ticks;
}

void SliderScale::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const int height = fontMetrics().height();
    for (const auto& [position, x] : labelledTicks()) {
        const QString text = text_(position);
        const double width = fontMetrics().horizontalAdvance(text);
        // Texts at the ends stay inside the widget.
        const double left = std::clamp(x - width / 2.0, 0.0, std::max(0.0, this->width() - width));
        painter.drawText(QRectF(left, 1.0, width, height), Qt::AlignCenter, text);
    }
}

}  // namespace kelmar::lottery
