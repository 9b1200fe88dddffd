// The pages on which the analyst judges scores: the marks lie on a sunken
// score bar and are dragged along it, while the values of the points stay
// at equal steps. Bisection and the difference standard sequence share the
// chart, the move rule, the score-difference read-out and a walk through
// the judgments that shows, for the selected point, the two stretches of
// score it is to make equally preferred.
#pragma once

#include "pages/techniques/GuidedPage.h"

#include <utility>
#include <vector>

class QLabel;
class QPushButton;

namespace kelmar {

class ScoreAxisPage : public GuidedPage {
    Q_OBJECT
public:
    ScoreAxisPage(int pageId, const QString& formName, const QString& title,
                  QWidget* parent = nullptr);

    // Clears and draws the rating chart for attribute att and places the
    // marks at their scores.
    void DrawRatingChart(std::int16_t& att, Variant& scoreMinimum, Variant& scoreMaximum,
                         std::int16_t& sampleSize, VariantArray& smpX);
    // Applies a drag position x (0 .. 100 along the score bar, the mark's
    // centre) to point index. The mark moves between the nearest judged
    // marks around it, and the points not judged yet make way; a position
    // onto or past a judged mark is refused: nothing changes, the page says
    // why and the result is false.
    bool MovePoint(int index, double x);
    // Judges point index at a score: taken strictly between the judged
    // points around it, as a released drag would be; refused otherwise,
    // with the reason, leaving everything as it was.
    JudgmentResult judgeScore(int index, double score);
    // The score of point index in lblCurScore and its distances to the
    // neighbouring scores in lblScoreDiff.
    void ShowPointLabels(int index);

    // The point whose judgment the page shows (-1: none).
    int judgedPoint() const noexcept { return selected_; }

protected:
    // The interior points in the order the walk takes them.
    virtual std::vector<int> judgmentOrder() const = 0;
    // The two points whose scores the judgment of point i compares with
    // its own (the point itself at an end).
    virtual std::pair<int, int> comparedPoints(int i) const = 0;
    // What the analyst is to judge for interior point i, judgment `step`
    // of `steps`.
    virtual QString judgmentText(int i, int step, int steps) const = 0;
    // The question over the two stretches on the chart.
    virtual QString comparisonHeading() const = 0;
    // Brings the attribute's points to the page before the chart is drawn:
    // the values on equal steps, resampled from the curve when they are not.
    virtual void preparePoints();
    // Called before an accepted move changes anything.
    virtual void onMoveAccepted(int index) { Q_UNUSED(index) }

    void drawRatingChart() override;
    void movePoint(int index, double position) override { MovePoint(index, position); }
    void showPointLabels(int index) override { ShowPointLabels(index); }
    double snapPosition(double position) const override;
    // An accepted move updates the page itself; a refused one changes nothing.
    void afterDragStep(int index) override { Q_UNUSED(index) }
    void onMarkPressed(int index) override;
    void onMarkReleased(int index) override;
    // A typed answer is the selected point's score, judged as a released
    // drag to it.
    int exactPoint() const override { return selected_; }
    QString exactCaption() const override;
    JudgmentResult judgeTyped(int index, double typed) override { return judgeScore(index, typed); }
    void refreshPage() override;
    // A straight line has no judgments left: the walk starts again.
    void onLinear() override;

    // After a move of point index: the read-outs, the function fitted to
    // the scores, the judgment on the chart and in words, the value chart.
    void updateJudgment(int index);

    QLabel* lblJudgment = nullptr;
    QPushButton* cmdNextJudgment = nullptr;

private:
    void drawAxis(std::int16_t att, double scoreMinimum, double scoreMaximum, std::int16_t n,
                  VariantArray& smpX);
    void redrawAxis();
    void showJudgmentText();
    void onNextJudgment();

    std::vector<int> order_;
    int selected_ = -1;
    std::int16_t walkSize_ = 0;  // the sample size the walk was laid out for
};

}  // namespace kelmar
