// The arithmetic of the Akima interpolation on plain doubles, shared by
// AkimaInterpolate (which reads and writes Variants) and the Finish loop
// (which reads the sample points straight into local buffers).
#pragma once

namespace kelmar {

// Largest point count that the routines keep in fixed buffers on the
// stack; a longer set falls back to the heap.
inline constexpr int kStackPoints = 16;

// Fills out[0..3] with the coefficients of the cubic on the interval that
// holds at and, when evaluate is set, out[4] with the value there; out[4]
// is left alone otherwise. Needs n >= 1 (n = 1 gives the constant y[0]).
// Raises error 11 for equal abscissae and 6 for a result that is not a
// finite double.
void akimaCore(const double* x, const double* y, int n, bool evaluate, double at, double out[5]);

}  // namespace kelmar
