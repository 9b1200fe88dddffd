// What kelmar-host keeps of the wizard's results and what it derives from
// them: the function records of every Finish, the value table, the
// comparison of two curves of one attribute, and the CSV text of a table.
#pragma once

#include "ProblemFile.h"
#include "ResultWriter.h"

#include <kelmar/Variant.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include <cstdint>
#include <optional>

namespace kelmarhost {

using ValueTable = QVector<QVector<double>>;  // alternative by attribute

// The function records of one ExportResults, one per attribute (attNum of
// them). Throws ProblemFileError naming the first cell that is not what a
// record needs (no number where one belongs, too few points).
QVector<ValueFunction> functionsFromResults(const ExportedResults& results, int attNum);
// The value table of one ExportResults; a cell that holds no number is NaN.
ValueTable valuesFromResults(const kelmar::VariantArray& AttVData, int altNum, int attNum);

// The value (0 .. 1) of a score on a function, computed as the wizard's
// Finish step does: the curve through the sample points, cut to 0 .. 1.
class CurveEvaluator {
public:
    explicit CurveEvaluator(const ValueFunction& function);
    double operator()(double score);

private:
    kelmar::VariantArray xs_, ys_, out_;
    std::int16_t n_ = 0;
};

// Every alternative's value on every attribute (0 .. maxValue) from the
// problem's current functions.
ValueTable evaluateProblem(const Problem& problem);

// The value table as CSV: a header row "Alternative" and the attribute
// names, then one row per alternative. Numbers in the C locale, shortest
// text that reads back to the same double; a field with a comma, a quote or
// a line break is quoted, its quotes doubled. Lines end in CRLF.
QByteArray valueTableCsv(const QStringList& alternatives, const QStringList& attributes,
                         const ValueTable& values);

// Where two functions of one attribute differ most, over both ranges
// together; value on the 0 .. 1 scale.
struct Difference {
    double value = 0.0;
    double score = 0.0;
};
Difference largestDifference(const ValueFunction& a, const ValueFunction& b);

// The score at which the curve first turns back (rises after falling or
// falls after rising, beyond rounding), or nothing for a monotone curve.
std::optional<double> turningScore(const ValueFunction& function);

// One curve shown for an attribute.
struct AttributeCurve {
    AttributeCurve() = default;
    AttributeCurve(QString l, ValueFunction f, QDateTime when = {})
        : label(std::move(l)), function(std::move(f)), finished(std::move(when)) {}
    QString label;
    ValueFunction function;
    QDateTime finished;  // when its Finish ended (none for the loaded one)
};
// The different curves of attribute att in the order they were made: the
// Finishes of earlier sessions (the first `loadedAfter`), the one the
// problem came with, then this session's; each only where it differs from
// every curve before it.
QVector<AttributeCurve> attributeCurves(const QVector<ValueFunction>& loaded,
                                        const QVector<Finish>& finishes, int att,
                                        qsizetype loadedAfter = 0);

// The comparison of an attribute's curves, in words: the largest
// difference between any two (on the 0 .. maxValue scale) with the score
// where it occurs, and every curve that turns back. Empty for one monotone
// curve.
struct Comparison {
    int first = -1, second = -1;  // the pair that differs most, or -1
    Difference largest;
    QVector<std::optional<double>> turns;  // per curve
};
Comparison compareCurves(const QVector<AttributeCurve>& curves);
QString describeComparison(const QVector<AttributeCurve>& curves, const Comparison& comparison,
                           int maxValue);

}  // namespace kelmarhost
