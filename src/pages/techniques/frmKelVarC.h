// The Variable Certainty Equivalent page: for each inner point the analyst
// drags the score they would take for sure instead of an even-chance lottery
// between two other points; the point's value is the mean of theirs.
#pragma once

#include "pages/techniques/GuidedPage.h"

namespace kelmar {

class frmKelVarC : public GuidedPage {
    Q_OBJECT
public:
    explicit frmKelVarC(QWidget* parent = nullptr);

    // The rating chart: the score bar, the lottery of the judged point and
    // the point values.
    void DrawCertaintyChart();
    // The lottery diagram on pic for the judged point: its outcomes are the
    // points whose values it halves.
    void DrawLottery(DrawSurface& pic, std::int16_t judged);
    // The values of the points ("0.00") under their marks.
    void ShowPointValues();
    // Places the marks at the attribute's sample scores.
    void PlaceVarCPoints();
    // Applies a drag position x (0 .. 100 across the score range) to point
    // index: between the nearest judged marks around it the mark follows,
    // the score changes and the points not judged yet make way; onto or
    // past a judged mark nothing changes and the page says why.
    void MovePoint(int index, double x);
    // Judges point index with a sure score: taken strictly between the
    // judged points around it, as a released drag would be (the value the
    // mean of its outcomes', the page on to the next lottery); refused
    // otherwise, with the reason, leaving everything as it was.
    JudgmentResult judgeSureScore(int index, double score);

    // The point under judgment; -1 until the page chooses the first one.
    std::int16_t JudgedPoint = -1;

protected:
    void drawRatingChart() override;
    void movePoint(int index, double position) override { MovePoint(index, position); }
    void afterDragStep(int index) override;
    void onMarkPressed(int index) override;
    void onMarkFocused(int index) override;
    void onMarkReleased(int index) override;
    // A typed answer is the sure score of the lottery under judgment.
    int exactPoint() const override { return JudgedPoint; }
    QString exactCaption() const override;
    JudgmentResult judgeTyped(int index, double typed) override { return judgeSureScore(index, typed); }
    bool lotteryPremium(int index, LotteryPremium& premium) const override;
    std::int16_t sizeForListIndex(int listIndex) const override;
    QStringList sampleSizeEntries() const override;
    int listIndexForSize(std::int16_t size) const override;
    void refreshPage() override;
    // A straight line has no judgments left: the walk starts again.
    void onLinear() override;
    void onSampleSizeChosen(int listIndex) override;

private:
    // Brings the attribute's points to what the page works with: a size
    // of the judgment table, values on its equal steps, scores in order;
    // then builds the table.
    void settlePoints();
    void judge(int index);
    std::int16_t firstJudgment() const;

};

}  // namespace kelmar
