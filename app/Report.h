// The analyst's report: a PDF to hand on to a decision maker. It names the
// problem, its alternatives and attributes; gives every attribute's chart
// (alternatives marked and, for a small problem, named), technique, sample
// points and parameters, and the comparison where the attribute was built
// more than once; and ends with the value table. Charts are vector
// drawing, crisp at any zoom.
#pragma once

#include "Workbench.h"

#include <QString>
#include <QVector>

namespace kelmarhost {

struct ReportContent {
    Problem problem;
    // Per attribute, its different curves; the last is the current one. An
    // attribute without any gets the problem's function alone.
    QVector<QVector<AttributeCurve>> curves;
    // Alternative by attribute on the 0 .. maxValue scale; a cell that is
    // not a number is left blank.
    ValueTable values;
};

// The report of a problem as it was read: its functions, the values they
// give.
ReportContent reportOfProblem(const Problem& problem);

// Writes the report; nothing is left at `path` when it fails (false, with
// the reason in `error`).
bool writeReport(const ReportContent& content, const QString& path, QString* error = nullptr);

}  // namespace kelmarhost
