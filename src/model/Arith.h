// Checked floating-point arithmetic of the wizard's routines: a division by
// zero raises error 11 and a result that leaves the finite doubles raises
// error 6, so no routine hands on an infinity or a NaN.
#pragma once

#include <kelmar/Variant.h>

#include <cmath>

namespace kelmar {

inline double checkedResult(double v) {
    if (!std::isfinite(v)) throw RuntimeError(RuntimeError::Overflow);
    return v;
}

inline double checkedDiv(double a, double b) {
    if (b == 0.0) throw RuntimeError(RuntimeError::DivisionByZero);
    return checkedResult(a / b);
}

// True when two cells hold the same number of the same type (two Empty
// cells count as the same): a cell written again with this is unchanged.
inline bool sameCell(const Variant& a, const Variant& b) {
    return a.type() == b.type() && a.isNumeric() && a == b;
}

// The attribute's orientation: a non-zero property copy at the selected
// attribute means cost.
bool isCostOriented();

// Function type 0 (or an empty type) is linear, any other number the curve
// through the sample points. A type held as text is read as its number;
// text that is not a number is a type mismatch (error 13).
inline bool isLinearType(const Variant& type) { return type.toDouble() == 0.0; }

}  // namespace kelmar
