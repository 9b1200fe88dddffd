#include <kelmar/mdKelMain.h>

namespace kelmar {

WizardData& wizardData() {
    static WizardData data;
    return data;
}

void TransferProblemData(Variant& QUARNDir, std::int16_t SelMCDAMethod, std::int16_t AltNum,
                         std::int16_t AttNum, VariantArray& AltPScore, VariantArray& AttVData,
                         VariantArray& AttName, VariantArray& AttDefinition,
                         VariantArray& AttProperty) {
    WizardData& w = wizardData();
    w.QUARNDir = QUARNDir.toString();
    w.SelMCDAMethod = SelMCDAMethod;
    w.AltNum = AltNum;
    w.AttNum = AttNum;

    // The preallocated shapes; the bounds are formed in 16-bit arithmetic.
    const std::int16_t lastAlt = checkedSub(w.AltNum, 1);
    const std::int16_t lastAtt = checkedSub(w.AttNum, 1);
    w.AltPScore.redim(0, lastAlt, 0, lastAtt);
    w.AttVData.redim(0, lastAlt, 0, lastAtt);
    w.AttName.redim(0, lastAtt);
    w.AttDefinition.redim(0, lastAtt);
    w.AttProperty.redim(0, lastAtt);

    // Whole-array copies take the host's bounds.
    w.AltPScore = AltPScore;
    w.AttVData = AttVData;
    w.AttName = AttName;
    w.AttDefinition = AttDefinition;
    w.AttProperty = AttProperty;
}

void TransferValueFunctions(VariantArray& ScoreMinimum, VariantArray& ScoreMiddle,
                            VariantArray& ScoreMaximum, std::int16_t MaxVal,
                            VariantArray& VFTechniqueID, VariantArray& SmpSize, VariantArray& SmpX,
                            VariantArray& SmpY, VariantArray& VFunParA, VariantArray& VFunParB,
                            VariantArray& VFunParC, VariantArray& VFunParD,
                            VariantArray& VFunType) {
    WizardData& w = wizardData();
    const std::int16_t lastAtt = checkedSub(w.AttNum, 1);
    for (VariantArray* a : {&w.InScoreMinimum, &w.InScoreMiddle, &w.InScoreMaximum,
                            &w.InVFTechniqueID, &w.InSmpSize, &w.InVFunParA, &w.InVFunParB,
                            &w.InVFunParC, &w.InVFunParD, &w.InVFunType, &w.VFTechniqueID,
                            &w.SmpSize}) {
        a->redim(0, lastAtt);
    }
    for (VariantArray* a : {&w.SmpX, &w.SmpY, &w.InSmpX, &w.InSmpY}) {
        a->redim(0, lastAtt, 0, 10);
    }

    w.InScoreMinimum = ScoreMinimum;
    w.InScoreMiddle = ScoreMiddle;
    w.InScoreMaximum = ScoreMaximum;
    w.InMaxVal = MaxVal;
    w.InVFTechniqueID = VFTechniqueID;
    w.InSmpSize = SmpSize;
    w.InSmpX = SmpX;
    w.InSmpY = SmpY;
    // The working record starts from the host's functions at once; the
    // parameters and the function type are left as they are.
    w.VFTechniqueID = w.InVFTechniqueID;
    w.SmpSize = w.InSmpSize;
    w.SmpX = w.InSmpX;
    w.SmpY = w.InSmpY;
    w.InVFunParA = VFunParA;
    w.InVFunParB = VFunParB;
    w.InVFunParC = VFunParC;
    w.InVFunParD = VFunParD;
    w.InVFunType = VFunType;
}

}  // namespace kelmar
