// The Bisection page: the value range is halved again and again, and for
// each halving the analyst places the score that lies halfway in
// preference between two scores already placed.
#pragma once

#include "pages/techniques/ScoreAxisPage.h"

namespace kelmar {

class frmKelBisection : public ScoreAxisPage {
    Q_OBJECT
public:
    explicit frmKelBisection(QWidget* parent = nullptr);

protected:
    std::int16_t sizeForListIndex(int listIndex) const override;
    QStringList sampleSizeEntries() const override;
    int listIndexForSize(std::int16_t size) const override;

    std::vector<int> judgmentOrder() const override;
    std::pair<int, int> comparedPoints(int i) const override;
    QString judgmentText(int i, int step, int steps) const override;
    QString comparisonHeading() const override;
    void preparePoints() override;
};

}  // namespace kelmar
