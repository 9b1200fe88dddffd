#include "pages/techniques/LotteryDiagram.h"

#include "model/Format.h"

#include <QLayout>

namespace kelmar::lottery {

namespace {

constexpr OleColor kTeal = 0x808000;
constexpr OleColor kRed = 0x0000FF;
constexpr OleColor kOlive = 0x008080;
constexpr OleColor kGuideColor = 0x606060;

QString scoreText(double score) { return fmt::formatNumber(score, QStringLiteral("0.00")); }

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
    for (int i = 0; i < n; ++i) {
        const double x = i * 100.0 / (n - 1);
        pic.line(x, 90.0, x, 97.0, ole::Black);
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
