// The Direct Rating page: every sample score is a mark on a rating scale
// from 0 to 100, and dragging a mark sets that score's value.
#pragma once

#include "pages/techniques/TechniquePage.h"

namespace kelmar {

class frmKelDirectRating : public TechniquePage {
    Q_OBJECT
public:
    explicit frmKelDirectRating(QWidget* parent = nullptr);

    // Clears and draws the rating chart for attribute att and places the
    // marks at their values.
    void DrawRatingChart(std::int16_t& att, Variant& scoreMinimum, Variant& scoreMaximum,
                         std::int16_t& sampleSize, VariantArray& smpX, VariantArray& smpY);
    // Applies a drag position x (rating-scale units) to point index.
    void MovePoint(int index, double x);
    // The score and value of point index in lblCurScore and lblCurValue.
    void ShowPointLabels(int index);

protected:
    void drawRatingChart() override;
    void movePoint(int index, double position) override { MovePoint(index, position); }
    void showPointLabels(int index) override { ShowPointLabels(index); }
    double snapPosition(double position) const override;
    QString moveToExact(int index, double typed) override;
};

}  // namespace kelmar
