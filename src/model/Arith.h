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

// The attribute's orientation: a non-zero property copy means cost.
bool isCostOriented();

}  // namespace kelmar
