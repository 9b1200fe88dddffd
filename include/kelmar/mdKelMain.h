// The wizard data and the shared routines of the wizard (module mdKelMain).
//
// Every page and routine works directly on the one WizardData instance
// returned by wizardData(). Routine arguments are passed by reference, as the
// pages hold them in their own variables; results are written into the
// wizard data.
#pragma once

#include <kelmar/Variant.h>

#include <cstdint>
#include <vector>

class QWidget;
class QComboBox;

namespace kelmar {

// One row of the bisection judgment table.
struct BisectionRecord {
    std::int16_t Lower = 0;
    std::int16_t Upper = 0;
    std::int16_t Level = 0;
};

// Technique and page ids.
enum TechniqueId : std::int16_t {
    kMidPoint = 0,
    kDirectRating = 1,
    kCurveDrawing = 2,
    kCategoryIdentification = 3,
    kDiffStandardSequence = 4,
    kBisection = 5,
    kVariableProbability = 6,
    kVariableCertainty = 7,
    kSettingsPage = 8,
};

struct WizardData {
    // Problem data (TransferData).
    QString QUARNDir;
    std::int16_t SelMCDAMethod = 0;
    std::int16_t AltNum = 0;
    std::int16_t AttNum = 0;
    VariantArray AltPScore;  // alternative x attribute
    VariantArray AttVData;   // alternative x attribute
    VariantArray AttName;
    VariantArray AttDefinition;
    VariantArray AttProperty;

    // The host's earlier value functions (TransferVFunData), as received.
    VariantArray InScoreMinimum;
    VariantArray InScoreMiddle;
    VariantArray InScoreMaximum;
    std::int16_t InMaxVal = 0;
    VariantArray InVFTechniqueID;
    VariantArray InSmpSize;
    VariantArray InSmpX;  // attribute x point 0..10
    VariantArray InSmpY;  // attribute x point 0..10
    VariantArray InVFunParA;
    VariantArray InVFunParB;
    VariantArray InVFunParC;
    VariantArray InVFunParD;
    VariantArray InVFunType;

    // The working value-function record that ExportResults returns.
    VariantArray ScoreMinimum;
    VariantArray ScoreMiddle;
    VariantArray ScoreMaximum;
    std::int16_t MaxVal = 0;
    VariantArray VFTechniqueID;
    VariantArray SmpSize;
    VariantArray SmpX;  // attribute x point 0..10
    VariantArray SmpY;  // attribute x point 0..10, fractions 0..1
    VariantArray VFunParA;
    VariantArray VFunParB;
    VariantArray VFunParC;
    VariantArray VFunParD;
    VariantArray VFunType;

    // Navigation state.
    std::int16_t SelAtt = 0;
    std::int16_t SelTechnique = 0;
    VariantArray AttRangeSet;  // Booleans, per attribute
    VariantArray AttVFDone;    // Booleans, per attribute
    VariantArray AttPropertyCopy;

    // Further shared variables of the technique pages.
    VariantArray ScoreMinimumCopy;
    VariantArray ScoreMaximumCopy;
    std::int16_t SelPoint = 0;
    float CategoryFactor = 1.0f;
    std::int16_t CategoryCount = 7;
    std::vector<BisectionRecord> BisectionTable;

    // What the Category Identification page keeps of each attribute whose
    // ladder it turned to the other orientation: the function as it stood
    // before (held for the orientation `maxToMin`) and as the turn left it,
    // so that turning back while nothing else changed gives the earlier
    // points back exactly. Cleared when a wizard run starts.
    struct CategoryTurn {
        bool maxToMin = false;
        std::vector<Variant> before;
        std::vector<Variant> after;
    };
    std::vector<CategoryTurn> CategoryTurns;

    // Which points of each attribute the analyst has judged on the guided
    // pages, with the points as the last judgment left them: the flags hold
    // only while the points are still those (model/JudgedPoints.h).
    struct JudgedMarks {
        std::vector<double> points;
        std::vector<bool> judged;
    };
    std::vector<JudgedMarks> Judged;
};

// The one module-level instance.
WizardData& wizardData();

// --- Storing what the host passes in -------------------------------------

void TransferProblemData(Variant& QUARNDir, std::int16_t SelMCDAMethod, std::int16_t AltNum,
                         std::int16_t AttNum, VariantArray& AltPScore, VariantArray& AttVData,
                         VariantArray& AttName, VariantArray& AttDefinition,
                         VariantArray& AttProperty);
void TransferValueFunctions(VariantArray& ScoreMinimum, VariantArray& ScoreMiddle,
                            VariantArray& ScoreMaximum, std::int16_t MaxVal,
                            VariantArray& VFTechniqueID, VariantArray& SmpSize, VariantArray& SmpX,
                            VariantArray& SmpY, VariantArray& VFunParA, VariantArray& VFunParB,
                            VariantArray& VFunParC, VariantArray& VFunParD,
                            VariantArray& VFunType);

// --- Curve interpolation ---------------------------------------------------

// Akima piecewise-cubic interpolation through (X(k), Y(k)), k = 0 .. n-1.
// Out(0..3) receive the cubic's coefficients on the interval holding x,
// Out(4) the value at x when evaluate is True (-1).
void AkimaInterpolate(VariantArray& X, VariantArray& Y, std::int16_t& n, std::int16_t& evaluate,
                      double& x, VariantArray& Out);

// --- Value function families ----------------------------------------------

float ComputeScoreMiddle(std::int16_t& att);
// Writes a middle score that was computed in single precision into
// ScoreMiddle(att), unless the number stored there already narrows to that
// same Single: then the stored number stays, bit for bit, so a judged score
// keeps its full precision however often the middle is computed again.
void StoreScoreMiddle(std::int16_t& att, float computed);
double GeometricPointFromLow(Variant& a0, Variant& a1, std::int16_t& j, std::int16_t& k, float& c);
double GeometricPointFromHigh(Variant& a0, Variant& a1, std::int16_t& j, std::int16_t& k, float& c);
double GeometricIndexFromLow(Variant& a0, Variant& a1, Variant& a2, std::int16_t& k, float& c);
double GeometricIndexFromHigh(Variant& a0, Variant& a1, Variant& a2, std::int16_t& k, float& c);

// --- The exponential of a midpoint judgment --------------------------------
//
// For an attribute on lo .. hi the value is
//   benefit: v(x) = (1 - e^(-(x - lo) / rho)) / (1 - e^(-(hi - lo) / rho))
//   cost:    v(x) = (1 - e^(-(hi - x) / rho)) / (1 - e^(-(hi - lo) / rho))
// with rho of either sign and the straight line as rho goes to infinity.
// The routines below work with the rate k = (hi - lo) / rho, which is 0 for
// the line, so that no infinity is ever formed.

// The shape on the unit square, s(t) = (1 - e^(-k t)) / (1 - e^(-k)), t the
// distance from the worst end as a fraction of the range; and its inverse.
double ExponentialShape(double t, double rate);
double ExponentialShapeInverse(double v, double rate);
// The rate k whose shape is one half at z (0 < z < 1; 0 for z = 0.5), by
// bisection to the last bits of a double. Error 5 outside 0 < z < 1.
double ExponentialRate(double z);
// v(x) for a benefit or a cost attribute on lo .. hi.
double ExponentialValue(double x, double lo, double hi, double rate, bool cost);
// The rate that makes the middle score worth one half on the attribute's
// working range (its orientation from AttPropertyCopy(att)).
double MiddleScoreRate(std::int16_t& att, double& middle);
// The parameters that VFunParA and VFunParB show. Linear: v(x) = a x + b,
// so a = +-1 / (hi - lo) and b the intercept. Exponential: a = rho (in
// score units), b = rho / (hi - lo). Nothing evaluates a function from them.
double LinearParameterA(std::int16_t& att);
double LinearParameterB(std::int16_t& att);
double ExponentialParameterA(std::int16_t& att, double& middle);
double ExponentialParameterB(std::int16_t& att, double& middle);
// Refills the attribute's SmpSize points (3 .. 11) from the exponential
// through the middle score: the ends copied from the range, one point the
// middle score itself at value one half, the others on the exponential
// where the curve through the points keeps the order and strays least from
// it. ScoreMiddle(att) becomes the middle score.
void ResampleExponential(std::int16_t& att, double& middle);

// --- Sample points ---------------------------------------------------------

void UpdateSamplePoints(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize);
void SetLinearSamplePoints(std::int16_t& att, std::int16_t& newSize);
void ResampleByScore(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize);
void ResampleByValue(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize);
void PrepareCategoryPoints(std::int16_t& att);
// Turns att's category ladder to the orientation maxToMin and lays its
// points on the new ladder (when it runs that way already, only the
// orientation entry records the choice).
// Turning back a ladder that nothing has changed since it was turned gives
// the points back as they were, bit for bit.
void TurnCategoryLadder(std::int16_t& att, bool maxToMin);
void CategoryPointsFromLinear(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize);
void CategoryPointsRefresh(std::int16_t& att, std::int16_t& newSize, std::int16_t& oldSize);
void CategoryPointsFromOtherTechnique(std::int16_t& att, std::int16_t& newSize,
                                      std::int16_t& oldSize);

// --- Judgments on neighbouring points -------------------------------------

// The value that point `index` of attribute att takes when a drag would
// carry it across its neighbour `neighbour` (index - 1 or index + 1): the
// neighbour's value moved 0.025 towards the point's own side in value terms
// (upwards from the lower-value neighbour, downwards from the higher one,
// so for a cost attribute the other way round than for a benefit one), kept
// between the two neighbours. Writes SmpY(att, index) and returns it.
double SetValueBesideNeighbour(std::int16_t& att, std::int16_t& index, std::int16_t& neighbour);

// The bisection judgment table for n points: BisectionTable(0 .. n - 1)
// with the fixed rows of the five- and nine-point halvings. Any n other
// than 5 gets the nine-point rows, so a size below 9 other than 5 fails with
// a subscript-out-of-range error once a row beyond n - 1 is written (the
// rows written before it stay).
void BuildBisectionTable(std::int16_t& n);

// --- Lottery judgments ----------------------------------------------------

// The distance a judged probability keeps from each neighbour's value.
inline constexpr double kProbabilityMargin = 0.005;

// Of the two neighbours `lower` and `upper` that bound a judged point, the
// one with the lower value, the base of the probability slider: `lower` on
// a benefit attribute (property copy 0), `upper` on a cost one.
std::int16_t ProbabilityBaseNeighbour(std::int16_t& att, std::int16_t& lower, std::int16_t& upper);
// The width W of the probability interval that the neighbours base and far
// leave free: (far's value - e) - (base's value + e), as a Single.
// Neighbours closer than 2e, or out of order, leave no room: the width is
// then 0.
float ProbabilityWidth(std::int16_t& att, std::int16_t& base, std::int16_t& far);
// The probability at slider position `position`: the base neighbour's
// value plus step * position, summed in double and kept as a Single, never
// outside 0 .. 1.
float JudgedProbability(std::int16_t& att, std::int16_t& base, float& step,
                        std::int16_t& position);
// Records a judgment on point index: SmpY(att, index) = value, the
// function becomes the curve through the points, the attribute is done
// with the selected technique, and index becomes SelPoint.
void StoreJudgedValue(std::int16_t& att, std::int16_t& index, Variant& value);

// The value a certainty equivalent gives point index: the mean of the
// values of its two outcomes, rows Lower and Upper of BisectionTable.
double CertaintyEquivalentValue(std::int16_t& att, std::int16_t& index);
// The size of the judgment table nearest to n: 5 up to 6 points, 9 above.
std::int16_t CertaintySampleSize(std::int16_t& n);
// The inner points of BisectionTable in the order they are judged: by
// Level (the whole range's halving first), then from the lowest score up.
std::vector<std::int16_t> CertaintyJudgmentOrder();
// True when the values of att's points are the equal steps of its size
// (rising on a benefit attribute, falling on a cost one).
bool ValuesOnEqualSteps(std::int16_t& att);

// True when att's points have the shape every function keeps: at least two
// points, the ends at ScoreMinimum and ScoreMaximum, scores strictly
// rising, every value within 0 .. 1.
bool SamplePointsInOrder(std::int16_t& att);
// Puts every inner score that is not strictly between its neighbours (or
// outside the range) evenly between the nearest scores that are; the
// values stay.
void SpreadScoresInOrder(std::int16_t& att);

// --- Page support ----------------------------------------------------------

void CentreFormOnScreen(QWidget& form);
void FillAttributeList(QComboBox& list);
QString TrimTrailingPoint(QString& s);

// --- Alternative values ----------------------------------------------------

void ComputeAlternativeValue(std::int16_t& alt, std::int16_t& att, std::int16_t& maxVal);
// The Finish loop: every alternative (outer) on every attribute (inner).
void ComputeAllAlternativeValues();

// --- The settings step -----------------------------------------------------

// Prepares the working arrays when the analyst leaves the range panel of
// the settings page with Next.
void PrepareWorkingArrays();

// Starts a wizard run from the host's record: the working functions
// (ranges, points, sizes, techniques, types and parameters) become the ones
// the host handed over, whatever an earlier run left in them. The types and
// parameters take their shape at the next PrepareWorkingArrays.
void StartFromHostFunctions();

// Keeps the first sample point of attribute att on ScoreMinimum and the last
// on ScoreMaximum, with the scores strictly increasing: a linear function
// is laid out again on the range, a curve moves its ends (and stretches its
// inner points when one lies outside the range); an attribute without a
// usable function starts as a straight line of five points.
void FitSamplePointsToRange(std::int16_t& att);

}  // namespace kelmar
