// The Midpoint page: the analyst slides the score whose value lies half-way
// between the worst and the best score; the page makes the function linear
// or the exponential through that score. It is the one page that prints.
#pragma once

#include "pages/techniques/TechniquePage.h"

#include <functional>
#include <memory>

class QGroupBox;
class QPrinter;
class QSlider;

namespace kelmar {

class frmKelMidPoint : public TechniquePage {
    Q_OBJECT
public:
    // Slider positions from the score minimum (0) to the maximum: a step
    // is half a thousandth of the range.
    static constexpr int kSliderPositions = 2000;

    explicit frmKelMidPoint(QWidget* parent = nullptr);

    // Judges the middle score shown and sets the function: refused (with
    // the message) within 0.001 of the lower end or 0.005 of the upper end,
    // linear within 0.001 of the centre, the exponential otherwise.
    // Returns false when the judgment was refused.
    bool FitMidpoint();

    // The middle score shown and the slider's text (the tip while dragging).
    double middleShown() const noexcept { return middle_; }
    QString sliderText() const;

    // Where Print sends the page. The factory gives the printer to use, or
    // none when there is no printer (the default asks for the system's
    // default printer). An empty function restores the default.
    using PrinterFactory = std::function<std::unique_ptr<QPrinter>()>;
    static void setPrinterFactory(PrinterFactory factory);

protected:
    void refreshPage() override;
    void onPrint() override;
    float middleScore(std::int16_t att) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    // The typed answer is the middle score.
    int exactPoint() const override { return 0; }
    double exactQuantity(int index) const override;
    QString exactCaption() const override;
    QString moveToExact(int index, double typed) override;
    void afterExact(int index) override;

private:
    // Whether a middle score lies too near an end of the range to be judged.
    static bool unreasonableMiddle(double middle);
    // Judges the middle score shown: the function, the charts, the labels.
    void judgeMiddle();
    // The middle score at a slider position; the last position is the score
    // maximum itself.
    double middleAt(int position) const;
    void showMiddle(int position);
    void sliderMouseDown();
    void sliderMouseUp();
    // Puts the slider on the function's middle score and writes the labels
    // under it.
    void placeSlider();
    void showFunctionLabels();

    // The four parameter writers ("0.000000" texts).
    void WriteLinearParA();
    void WriteLinearParB();
    void WriteExponentialParA();
    void WriteExponentialParB();

    QGroupBox* frameSlider = nullptr;
    QSlider* sldMidVal = nullptr;
    QLabel* lblSliderMin_ = nullptr;
    QLabel* lblSliderMax_ = nullptr;
    QLabel* lblMidScore = nullptr;   // the function's middle score
    QLabel* lblCurveGap = nullptr;   // how far the curve strays from the exponential

    double middle_ = 0.0;     // the middle score shown
    double step_ = 0.0;       // the score of one slider position
    int downPosition_ = 0;    // the slider position at MouseDown
    bool sliderLeftDown_ = false;
};

}  // namespace kelmar
