// The Difference Standard Sequences page: the scores form a chain from the
// lowest to the highest score in which every step is worth the same
// increase of value, and the analyst drags each point until the steps on
// either side of it are equally preferred.
#pragma once

#include "pages/techniques/ScoreAxisPage.h"

namespace kelmar {

class frmKelDiffStdSeq : public ScoreAxisPage {
    Q_OBJECT
public:
    explicit frmKelDiffStdSeq(QWidget* parent = nullptr);

protected:
    std::vector<int> judgmentOrder() const override;
    std::pair<int, int> comparedPoints(int i) const override;
    QString judgmentText(int i, int step, int steps) const override;
    QString comparisonHeading() const override;
    // The move itself makes the function the curve through the points.
    void onMoveAccepted(int index) override;
};

}  // namespace kelmar
