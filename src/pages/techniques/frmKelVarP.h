// The Variable Probability page: the sample scores stay where they are, and
// for each inner score the analyst sets, with a slider, the probability at
// which a lottery between the best and the worst score is as good as that
// score for sure. The probability becomes the score's value.
#pragma once

#include "pages/techniques/GuidedPage.h"

class QGroupBox;
class QLabel;
class QPushButton;
class QSlider;

namespace kelmar {

class frmKelVarP : public GuidedPage {
    Q_OBJECT
public:
    explicit frmKelVarP(QWidget* parent = nullptr);

    // Prepares sldProbability for point i: the neighbours (the nearest
    // judged points around it), the base neighbour by the attribute's kind,
    // the probability per step. An end point gets no slider.
    void SetProbabilityRange(std::int16_t i);
    // Judges point index at probability p: taken between the values of the
    // judged points around it (the points not judged yet make way), with
    // the function and the diagram following; refused otherwise, with the
    // reason, leaving everything as it was. The judged point stays the one
    // under judgment.
    // The slider's p is kept as a Single, a typed one (exact) as it is.
    JudgmentResult judgeProbability(int index, double p, bool exact = false);
    // The lottery diagram on pic for the judged point.
    void DrawLottery(DrawSurface& pic, std::int16_t judged);
    // p and 1 - p on the lottery's branches.
    void ShowProbability(DrawSurface& pic, float p);

    // Probability per slider step for the judged point.
    float ProbStep = 0.0f;
    // Slider position when the left button went down.
    float SliderStart = 0.0f;
    // The point under judgment (the last mark pressed); -1 until the page
    // chooses the first one.
    std::int16_t JudgedPoint = -1;
    // The nearest judged points below and above the judged one.
    std::int16_t LowerNeighbour = 0;
    std::int16_t UpperNeighbour = 0;

protected:
    // A typed answer is the probability of the lottery under judgment.
    int exactPoint() const override { return JudgedPoint; }
    double exactQuantity(int index) const override;
    QString exactText(int index) const override;
    QString exactCaption() const override;
    JudgmentResult judgeTyped(int index, double typed) override { return judgeProbability(index, typed, true); }
    bool lotteryPremium(int index, LotteryPremium& premium) const override;
    void drawRatingChart() override;
    void onMarkPressed(int index) override;
    void refreshPage() override;
    // A straight line has no judgments left: the walk starts again.
    void onLinear() override;
    void onSampleSizeChosen(int listIndex) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool judgingInnerPoint() const;
    // p for the slider position in force.
    float sliderProbability() const;
    void onSliderScroll();
    void onSliderRelease();
    // Moves the judgment on to the next inner point, from the lowest score
    // up and round again.
    void onNextJudgment();
    // Clears the chart and draws the bar, the diagram, p and the guidance.
    void redraw(float p);

    QGroupBox* frameProbability = nullptr;
    QSlider* sldProbability = nullptr;
    QPushButton* cmdNextJudgment = nullptr;
    std::int16_t baseNeighbour_ = 0;
    int keyStart_ = 0;
    bool resizing_ = false;  // a sample size change is laying out the points
};

}  // namespace kelmar
