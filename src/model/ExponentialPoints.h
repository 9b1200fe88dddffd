// Where the points that carry a midpoint exponential go. The exported
// function is the Akima curve through the points, so the points are placed
// for that curve: it passes through the judged middle score at one half,
// keeps the attribute's order, and strays as little as the points allow
// from the exponential.
#pragma once

#include <array>
#include <cstdint>

namespace kelmar {

inline constexpr int kLayoutMaxPoints = 11;

// Points on the unit square, worst end first: t the place in the range,
// v the value. Point 0 is (0, 0), the last (1, 1), point `judged`
// (z, 0.5).
struct ExponentialLayout {
    int n = 0;
    int judged = 0;
    std::array<double, kLayoutMaxPoints> t{};
    std::array<double, kLayoutMaxPoints> v{};
    // The largest distance found between the curve through the points and
    // the exponential.
    double gap = 0.0;
    // True when no placement on the exponential kept the order, so the
    // points lie on a curve whose chords shrink by a steady factor instead.
    bool fallback = false;
};

// The points for the exponential of rate `rate` that is worth one half at
// z (0 < z < 1), n = 3 .. 11 of them.
ExponentialLayout PlaceExponentialPoints(double z, double rate, int n);

// The largest distance between the curve through the points (t, v) on the
// unit square and the shape of rate `rate`, sampled densely inside every
// interval. `keepsOrder`, when given, tells whether the curve rises all the
// way from one point to the next.
double LayoutGap(const double* t, const double* v, int n, double rate, bool* keepsOrder = nullptr);

// The largest distance between the attribute's curve and the exponential
// through its ScoreMiddle on its working range (values 0 .. 1).
double ExponentialCurveGap(std::int16_t att);

}  // namespace kelmar
