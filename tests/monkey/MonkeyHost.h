// A host for the random-input run: a decision problem with cost and benefit
// attributes, handed over through the public component interface, and the
// checks that every function and every exported value must pass.
#pragma once

#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace kelmar::monkey {

// The problem and the host's functions, as a host holds them.
struct Problem {
    std::int16_t altNum = 0;
    std::int16_t attNum = 0;
    VariantArray altPScore, attVData, attName, attDefinition, attProperty;
    VariantArray scoreMinimum, scoreMiddle, scoreMaximum, techniqueId, smpSize, smpX, smpY;
    VariantArray parA, parB, parC, parD, funType;
    std::int16_t maxVal = 100;
};

// Five attributes: cost ones with a curve and with three points on an
// uneven range, benefit ones linear, curved and on a range that the boxes
// can only show rounded.
Problem sampleProblem();

// Hands the problem and the functions over, as a host does before ShowKelmar.
void transfer(KelmarDll& dll, Problem& p);

// The first broken rule of the wizard data, or an empty text when every
// attribute's function is sound: the range only widened, point 0 on the
// minimum and the last point on the maximum, scores strictly increasing,
// values within 0 .. 1 and never against the attribute's orientation.
QString brokenRule();

// Every cell of every attribute's function record as its type and exact
// value: per attribute SmpSize, SmpX and SmpY 0 .. 10, VFunType,
// VFTechniqueID, VFunParA .. VFunParD, ScoreMinimum, ScoreMiddle,
// ScoreMaximum.
struct Record {
    std::vector<QStringList> attributes;
};
Record workingRecord();
Record hostRecord(const Problem& p);
// The first cell of attribute att that differs in type or in any bit, with
// both contents, or an empty text.
QString recordChange(const Record& before, const Record& after, int att);
// True when attribute att's sample size or points differ.
bool pointsChanged(const Record& before, const Record& after, int att);

// Records what reaches the host and keeps the last export as the host's
// functions for a later session.
class MonkeyHost : public KelmarEvents {
public:
    explicit MonkeyHost(Problem& problem) : problem_(problem) {}

    std::function<void()> onUnloadKelmar;
    QStringList faults;  // exported values out of range

    void UnloadKelmar() override;
    void ExportResults(VariantArray& AttVData, VariantArray& ScoreMinimum, VariantArray& ScoreMiddle,
                       VariantArray& ScoreMaximum, std::int16_t MaxVal, Variant& VFTechniqueID,
                       VariantArray& SmpSize, VariantArray& SmpX, VariantArray& SmpY,
                       VariantArray& VFunParA, VariantArray& VFunParB, VariantArray& VFunParC,
                       VariantArray& VFunParD, VariantArray& VFunType) override;

private:
    Problem& problem_;
};

}  // namespace kelmar::monkey
