// What the two lottery pages draw alike on their rating chart: the score bar
// under the marks with its scores, the lottery diagram with its sure score
// and its two uncertain outcomes, the texts on the two branches and a line of
// guidance; and the scale of probabilities under a slider.
#pragma once

#include "charts/DrawSurface.h"
#include "pages/techniques/TechniquePage.h"

#include <QSize>
#include <QString>
#include <QWidget>

#include <functional>
#include <utility>
#include <vector>

class QSlider;

namespace kelmar::lottery {

// What both lottery pages have of the skeleton: the rating chart and the
// marks, no current-score or value read-outs.
inline TechniqueFeatures PageFeatures() {
    TechniqueFeatures f;
    f.currentScore = false;
    f.readout = TechniqueFeatures::Readout::None;
    f.riskPremium = true;
    return f;
}

// The top of the marks on the chart.
inline constexpr double kMarkTop = 71.0;
// The row of the bar's scores, right under it.
inline constexpr double kScoreRowTop = 102.0;
// The height of one text row under the bar.
inline constexpr double kRowHeight = 10.0;
// The first of the page's own text rows, under the scores.
inline constexpr double kRowTop = kScoreRowTop + kRowHeight;

// The height the diagram needs to be read at ease; the lottery pages open
// tall enough for it.
inline constexpr int kChartHeight = 260;
inline constexpr QSize kPageSize{780, 760};
// Gives the rating chart its height and the font size at that height, and
// lays the page out again at the size that leaves room for it.
void ShapeChart(QWidget& page, DrawSurface& pic);

// Clears the chart and draws its ground: the scale -8 .. 108 across and
// from -3 down to room for the scores and `rows` text rows under the score
// bar, the band with the sunken score bar, and a tick at each of the n
// equally spaced sample positions with its score on the current
// attribute's range (every tick where the scores fit side by side,
// otherwise the two ends).
void DrawScoreBar(DrawSurface& pic, int n, int rows);

// The horizontal chart position of a score: 0 at the minimum, 100 at the
// maximum.
double ScorePosition(double score, double minimum, double maximum);

// The diagram: a white box (0, 0)-(100, 70), the teal tree (stem, fork and
// two branches), the sure score left of the stem, the two outcomes in red
// at the branches' ends (topOutcome beside the upper branch at y = 26,
// bottomOutcome beside the lower one at y = 42) and the olive captions.
void DrawLotteryDiagram(DrawSurface& pic, double sure, double topOutcome, double bottomOutcome);

// The texts on the branches: cleared boxes (40, 15)-(70, 28) and
// (40, 51)-(70, 65), topText at (46, 16), bottomText at (46, 53).
void PrintBranchTexts(DrawSurface& pic, const QString& topText, const QString& bottomText);

// A line of guidance in grey, from the left edge, at the given height.
void PrintGuide(DrawSurface& pic, double y, const QString& text);

// Text centred on x with its top at y, in the picture's fore colour.
void PrintCentred(DrawSurface& pic, double x, double y, const QString& text);

// The scale under a horizontal slider: under each tick the text that
// `text` gives for the tick's position (the probability it stands for),
// every other or every fifth one, or only the ends, where they do not fit
// side by side; nothing while the slider is disabled. It follows the
// slider: a change of its size, range, enabled state or tip repaints it.
class SliderScale : public QWidget {
    Q_OBJECT
public:
    SliderScale(QSlider& slider, std::function<QString(int)> text, QWidget* parent = nullptr);

    // The ticks that get a text, with the centre of each in this widget's
    // pixels.
    std::vector<std::pair<int, double>> labelledTicks() const;
    QString tickText(int position) const { return text_(position); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QSlider& slider_;
    std::function<QString(int)> text_;
};

}  // namespace kelmar::lottery
