// The number formats of the wizard and the lenient reading of typed numbers.
#pragma once

#include <QString>

namespace kelmar::fmt {

// Formats v with one of the wizard's patterns: "0", "0.00", "0.000",
// "0.000000", "0.##", "#,##0.###" (a "0" digit is always shown, a "#" digit
// only when it is not a trailing zero, "," groups thousands). Rounding is
// half away from zero on the number's 15-digit decimal form, so 2.675 gives
// "2.68" although its binary value lies a little below. A pattern that ends
// in optional digits keeps its point for a whole number ("5." for "0.##").
QString formatNumber(double v, const QString& pattern);

// A score in a box or a label: "0.##" with one trailing point removed.
QString formatScore(double v);

// A sample value (0 .. 1) as the pages show it: hundredths as a whole number
// on the value range 100 ("73"), two decimals otherwise ("0.73").
QString formatValue(double value, int maxVal);
// A sample value in a sentence of guidance, with the digit a halving adds:
// "87.5" rather than "88" on the value range 100, "0.125" rather than
// "0.13" (and still "0.50") otherwise.
QString formatValueInText(double value, int maxVal);

// A score as a 4-decimal currency amount turned into text: at most four
// decimals, no trailing zeros (2.5 -> "2.5", 1/3 -> "0.3333"). A number
// beyond the currency range raises error 6.
QString currencyText(double v);

// The leading number of a text: blanks are skipped, then an optional sign,
// digits, one decimal point and an exponent are read as far as they go.
// Empty or non-numeric text reads as 0 ("12abc" -> 12, "1.2.3" -> 1.2).
double leadingNumber(const QString& text);

// A number as an analyst types it: a point for decimals, no grouping, no
// exponent, at most 15 significant digits and no trailing zeros
// (0.1 + 0.2 -> "0.3", 73.00000000000001 -> "73", 1e-7 -> "0.0000001").
QString plainNumber(double v);
// The same for a value kept as a Single: the fewest digits that give back
// that Single (0.29999995f -> "0.29999995", not "0.299999952316284").
QString plainSingle(float v);

// Reads text that is one complete number and nothing else: blanks around
// it, an optional sign, digits with at most one decimal point, an optional
// exponent. Separators, letters, an empty text and a number beyond the
// double range give false and leave value alone.
bool completeNumber(const QString& text, double& value);

}  // namespace kelmar::fmt
