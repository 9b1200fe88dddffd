// The Category Identification page: the attribute's range is cut into the
// seven levels of an order-of-magnitude ladder, each with its verbal
// category, and the analyst orders the levels' values by dragging one mark
// per level on the order-values chart.
#pragma once

#include "pages/techniques/TechniquePage.h"

class QGroupBox;
class QRadioButton;
class QStackedWidget;
class QTabBar;

namespace kelmar {

class frmKelCatIdn : public TechniquePage {
    Q_OBJECT
public:
    explicit frmKelCatIdn(QWidget* parent = nullptr);

    // Prepares the attribute's category points and redraws the
    // categorization chart, the order-values chart, the value function
    // chart and the risk attitude.
    void RefreshCategoryPage(std::int16_t& att);
    // The order-values chart: the ground of the rating chart, one row per
    // level with its category and value, and the marks at the values.
    void DrawOrderValues(DrawSurface& pic, std::int16_t& att, std::int16_t& sampleSize,
                         Variant& scoreMaximum, Variant& scoreMinimum, VariantArray& smpX,
                         VariantArray& smpY);
    // Applies a drag position x (rating-scale units) to point index.
    void MovePoint(int index, double x);
    // A tab of tsCurves chosen, by its number (1 and 2; any other does nothing).
    void tsCurvesClick(int tabIndex);

    // 1 while the page loads, 2 while Linear, Restore or the release of a
    // level mark runs, 0 otherwise. The attribute list is ignored unless 0.
    int busyFlag() const noexcept { return busy_; }

protected:
    void onLoad() override;
    void refreshPage() override;
    void onAttributeChosen(int listIndex) override;
    void onLinear() override;
    void onRestore() override;
    void drawRatingChart() override;
    void movePoint(int index, double position) override { MovePoint(index, position); }
    double snapPosition(double position) const override;
    void afterDragStep(int index) override;
    void onMarkReleased(int index) override;
    QString moveToExact(int index, double typed) override;

private:
    void onOrientation(bool maxToMin);
    void showOrientation();

    QGroupBox* frameOrientation = nullptr;
    QRadioButton* optMaxToMin = nullptr;
    QRadioButton* optMinToMax = nullptr;
    QTabBar* tsCurves = nullptr;
    QStackedWidget* curves_ = nullptr;
    DrawSurface* picCatChart = nullptr;
    QGroupBox* frameOrdVal = nullptr;
    int busy_ = 0;
};

}  // namespace kelmar
