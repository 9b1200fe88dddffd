// The Curve Drawing page: the sample points are marks on the value function
// chart itself, and dragging a mark up or down sets that point's value.
#pragma once

#include "pages/techniques/TechniquePage.h"

namespace kelmar {

class frmKelCurveDrawing : public TechniquePage {
    Q_OBJECT
public:
    explicit frmKelCurveDrawing(QWidget* parent = nullptr);

    // Places the marks of the current attribute on picVFChart: each at its
    // score across and its value upwards.
    void PlaceMarks();
    // Applies a drag position y (the chart's value scale, 0 .. 100
    // upwards) to point index.
    void MovePoint(int index, double y);
    // The score and value of point index in lblCurScore and lblCurValue.
    void ShowPointLabels(int index);

protected:
    void drawRatingChart() override { PlaceMarks(); }
    void movePoint(int index, double position) override { MovePoint(index, position); }
    void showPointLabels(int index) override { ShowPointLabels(index); }
    double dragPosition(int index, QPointF pos) const override;
    double markPosition(int index) const override { return markMiddle(index); }
    double scaleCoordinate(QPointF pos) const override { return pos.y(); }
    double snapPosition(double position) const override;
    void onMarkPressed(int index) override;
    void onMarkReleased(int index) override;
    QString moveToExact(int index, double typed) override;

private:
    // Puts mark index where the point's score and value place it.
    void placeMark(int index);

    bool moved_ = false;  // a move step since the mark was pressed
};

}  // namespace kelmar
