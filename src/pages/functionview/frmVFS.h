// The function view (frmVFS): what the current attribute is and which value
// function it has, with the function's formula and parameters. Technique
// pages open it with their cmdS button; closing it raises UnloadKelVFS.
#pragma once

#include "pages/common/KelPage.h"

#include <array>

class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;

namespace kelmar {

class FormulaImageList;

class frmVFS : public KelPage {
    Q_OBJECT
public:
    explicit frmVFS(QWidget* parent = nullptr);

    // "Cost-oriented." when the property reads as the number 1, otherwise
    // "Benefit-oriented.".
    static QString orientationText(const Variant& property);

    // The picture of imgListFormula that picFormula shows (1 .. 7).
    int formulaPicture() const noexcept { return formulaPicture_; }
    const FormulaImageList& formulaImages() const noexcept { return *imgListFormula; }

    // The cubic of the curve's interval that holds the score of point
    // `point` of attribute att: Out(0 .. 4) of AkimaInterpolate.
    void CurveParameters(std::int16_t& att, std::int16_t& point);

protected:
    void onLoad() override;
    void onClosed() override;

private:
    void fillAbout(int att);
    void fillFormula(int att);
    void showFormula(int picture);

    QTabWidget* tsPanel = nullptr;
    QLabel* labCUFProperty = nullptr;
    QPlainTextEdit* txtCUFDefinition = nullptr;
    QLabel* Label1 = nullptr;
    QLabel* lblFType = nullptr;
    QLabel* picFormula = nullptr;
    FormulaImageList* imgListFormula = nullptr;
    QGroupBox* Frame2 = nullptr;
    QLabel* lbla = nullptr;
    QLabel* lblb = nullptr;
    QLabel* lblc = nullptr;
    QLabel* lbld = nullptr;
    QLabel* lblMin = nullptr;
    QLabel* lblMiddle = nullptr;
    QLabel* lblMax = nullptr;
    QPushButton* cmdOK = nullptr;

    int formulaPicture_ = 0;
    VariantArray curveCoefficients_{0, 4};
};

}  // namespace kelmar
