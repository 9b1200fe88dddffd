// What the pages that lead the analyst through an order of judgments share
// (bisection, the difference standard sequence and the two lottery pages):
// a point moves between the nearest judged points around it while the points
// not judged yet make way, a refused answer says why on the page
// (lblRefusal), and every judgment is remembered with the points it left.
#pragma once

#include "model/JudgedPoints.h"
#include "pages/techniques/TechniquePage.h"

#include <vector>

class QLabel;

namespace kelmar {

class GuidedPage : public TechniquePage {
    Q_OBJECT
public:
    using TechniquePage::TechniquePage;

protected:
    // Adds lblRefusal to the upper frame, under what is there already.
    void addJudgmentNote();
    // A drag of point index to position x (0 .. 100 on the score bar): the
    // score is written and the unjudged scores make way when the judged
    // marks around it leave room; otherwise nothing changes, the page says
    // why and the result is false. The page then places its marks.
    bool moveScore(int index, double x);
    // A typed score for point index, checked and written as moveScore does,
    // without the marks' room (only strictly between the judged scores).
    JudgmentResult placeTypedScore(int index, double score);
    // The release of a typed answer: as a mark moved and let go.
    void releaseAsMoved(int index);
    // Remembers point index judged with the points it has left.
    void rememberJudgment(int index);

    void onMarkPressed(int index) override;

    // A typed answer for point index, judged by the page's own judgment,
    // which says on the page why it refused it and redraws what it took.
    virtual JudgmentResult judgeTyped(int index, double typed) = 0;
    // Typed answers go through judgeTyped; a refusal is told once, beside
    // the typed number.
    QString moveToExact(int index, double typed) final;
    void afterExact(int index) final { Q_UNUSED(index) }
    // By default a typed answer is the point's score.
    double exactQuantity(int index) const override;

    QLabel* lblRefusal = nullptr;

private:
    std::vector<bool> pressJudged_;  // the judged points when the mark was pressed
    std::vector<bool> moveJudged_;   // those the last accepted move kept in place
};

}  // namespace kelmar
