// The placement works on the unit square with a curve that rises steeply
// first (rate k > 0, z < 0.5); a judgment above the centre is its mirror
// image, t -> 1 - t and v -> 1 - v, which the Akima curve follows exactly.
//
// Every point but the ends and the judged one may move. The search tries
// each index for the judged point; for each it spreads the intervals so that
// their largest distances from the exponential come out alike (a wide
// interval where the curve is nearly straight, a narrow one where it bends),
// then moves one point at a time to where the largest distance around it is
// least. A layout whose curve turns back anywhere is never taken.
#include "model/ExponentialPoints.h"

#include "model/AkimaCore.h"
#include "model/Arith.h"

#include <kelmar/mdKelMain.h>

#include <cmath>
#include <limits>

namespace kelmar {

namespace {

constexpr int kMaxIntervals = kLayoutMaxPoints - 1;
// Samples inside each interval: while placing, and when a curve is measured.
constexpr int kPlacingSamples = 16;
constexpr int kMeasureSamples = 32;
constexpr int kSpreadRounds = 12;
constexpr int kPolishSweeps = 4;
constexpr int kGoldenSteps = 12;
// Values within this of one are taken as one: on the flat end of a steep
// curve the doubles no longer tell the chords apart, and equal values keep
// the curve flat where chords of a few units in the last place would not.
constexpr double kFlat = 1e-13;
constexpr double kNever = std::numeric_limits<double>::infinity();

struct Piece {
    double gap = 0.0;
    bool turns = false;
};

// Interval i of the curve through (t, v): its largest distance from the
// shape over `samples` equal steps, and whether its slope goes negative.
Piece piece(const double* t, const double* v, int n, int i, double rate, int samples) {
    double c[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
    akimaCore(DoubleCells{t}, DoubleCells{v}, n, false, 0.5 * (t[i] + t[i + 1]), c);
    const double h = t[i + 1] - t[i];
    // The slope c1 + 2 c2 d + 3 c3 d^2 is least at an end or at its vertex.
    double least = std::fmin(c[1], c[1] + 2.0 * c[2] * h + 3.0 * c[3] * h * h);
    if (c[3] != 0.0) {
        const double d = -c[2] / (3.0 * c[3]);
        if (d > 0.0 && d < h) least = std::fmin(least, c[1] + 2.0 * c[2] * d + 3.0 * c[3] * d * d);
    }
    Piece p;
    p.turns = least < 0.0;
    for (int q = 1; q < samples; ++q) {
        const double d = h * q / samples;
        const double curve = c[0] + c[1] * d + c[2] * d * d + c[3] * d * d * d;
        p.gap = std::fmax(p.gap, std::fabs(curve - ExponentialShape(t[i] + d, rate)));
    }
    return p;
}

// A layout being placed, with the pieces of its curve.
struct Work {
    ExponentialLayout p;
    double rate = 0.0;
    double z = 0.0;
    std::array<Piece, kMaxIntervals> pieces{};

    int intervals() const { return p.n - 1; }

    // The largest distance, or kNever when the curve turns back.
    double worst(int from = 0, int to = kMaxIntervals) const {
        double w = 0.0;
        for (int i = from < 0 ? 0 : from; i < to && i < intervals(); ++i) {
            if (pieces[static_cast<std::size_t>(i)].turns) return kNever;
            w = std::fmax(w, pieces[static_cast<std::size_t>(i)].gap);
        }
        return w;
    }

    void measure(int from, int to) {
        for (int i = from < 0 ? 0 : from; i < to && i < intervals(); ++i)
            pieces[static_cast<std::size_t>(i)] = piece(p.t.data(), p.v.data(), p.n, i, rate, kPlacingSamples);
    }

    double valueAt(int j) const {
        const double v = ExponentialShape(p.t[static_cast<std::size_t>(j)], rate);
        return 1.0 - v <= kFlat ? 1.0 : v;
    }

    // Values from the places, with the ends and the judged point exact.
    void settle() {
        const int last = p.n - 1;
        p.t[0] = 0.0;
        p.t[static_cast<std::size_t>(last)] = 1.0;
        p.t[static_cast<std::size_t>(p.judged)] = z;
        for (int j = 1; j < last; ++j) p.v[static_cast<std::size_t>(j)] = valueAt(j);
        p.v[0] = 0.0;
        p.v[static_cast<std::size_t>(last)] = 1.0;
        p.v[static_cast<std::size_t>(p.judged)] = 0.5;
        keepEndChords();
        measure(0, last);
    }

    // The curve leaves the last point with 1.5 times the last chord less
    // half the one before, so the last chord may not be flattened to one
    // while the chord before still rises.
    void keepEndChords() {
        const std::size_t last = static_cast<std::size_t>(p.n - 1);
        if (p.n >= 4 && static_cast<int>(last) - 1 > p.judged && p.v[last - 1] == 1.0 && p.v[last - 2] != 1.0)
            p.v[last - 1] = ExponentialShape(p.t[last - 1], rate);
    }

    // Moves point j and measures the pieces that depend on it.
    void move(int j, double t) {
        p.t[static_cast<std::size_t>(j)] = t;
        p.v[static_cast<std::size_t>(j)] = valueAt(j);
        if (j >= p.n - 3 && p.n - 2 != p.judged) {
            p.v[static_cast<std::size_t>(p.n - 2)] = valueAt(p.n - 2);
            keepEndChords();
        }
        measure(j - 3, j + 3);
    }
};

// Equal steps of the shape of a third of the rate on each side of the
// judged point: closer where the curve bends, as its third derivative asks.
Work startingLayout(double z, double rate, int n, int judged) {
    Work w;
    w.z = z;
    w.rate = rate;
    w.p.n = n;
    w.p.judged = judged;
    const double gentle = rate / 3.0;
    const double wz = ExponentialShape(z, gentle);
    const int last = n - 1;
    for (int j = 1; j < last; ++j) {
        const double u = j <= judged ? wz * j / judged : wz + (1.0 - wz) * (j - judged) / (last - judged);
        w.p.t[static_cast<std::size_t>(j)] = ExponentialShapeInverse(u, gentle);
    }
    w.settle();
    return w;
}

// One round of spreading on the intervals from .. to - 1, which run over lo
// .. hi: an interval far from the exponential narrows, one close to it
// widens. On the flat side the last two intervals stay within 1 / rate, so
// the last chord keeps at least a third of the one before and the curve
// leaves the last point without turning back.
void spread(Work& w, int from, int to, double lo, double hi) {
    std::array<double, kMaxIntervals> width{};
    double largest = 0.0;
    for (int i = from; i < to; ++i) largest = std::fmax(largest, w.pieces[static_cast<std::size_t>(i)].gap);
    if (largest <= 0.0) return;
    const double span = hi - lo;
    double sum = 0.0;
    for (int i = from; i < to; ++i) {
        const std::size_t k = static_cast<std::size_t>(i);
        const double share = std::fmax(w.pieces[k].gap, largest * 1e-3) / largest;
        width[k] = std::fmax((w.p.t[k + 1] - w.p.t[k]) * std::pow(share, -0.3), span * 1e-4);
        sum += width[k];
    }
    for (int i = from; i < to; ++i) width[static_cast<std::size_t>(i)] *= span / sum;
    if (to == w.intervals() && to - from >= 3 && w.rate > 0.0) {
        const double cap = 1.0 / w.rate;
        double excess = 0.0;
        for (int i = to - 2; i < to; ++i) {
            double& h = width[static_cast<std::size_t>(i)];
            if (h > cap) {
                excess += h - cap;
                h = cap;
            }
        }
        double rest = 0.0;
        for (int i = from; i < to - 2; ++i) rest += width[static_cast<std::size_t>(i)];
        for (int i = from; i < to - 2; ++i) width[static_cast<std::size_t>(i)] += excess * width[static_cast<std::size_t>(i)] / rest;
    }
    double at = lo;
    for (int i = from; i < to - 1; ++i) {
        at += width[static_cast<std::size_t>(i)];
        w.p.t[static_cast<std::size_t>(i + 1)] = at;
    }
}

// Moves each free point in turn, by golden section within its neighbours,
// to where the largest distance of the pieces it shapes is least.
void polish(Work& w) {
    constexpr double g = 0.6180339887498949;
    for (int sweep = 0; sweep < kPolishSweeps; ++sweep) {
        const double before = w.worst();
        for (int j = 1; j < w.p.n - 1; ++j) {
            if (j == w.p.judged) continue;
            const double lo = w.p.t[static_cast<std::size_t>(j - 1)];
            const double hi = w.p.t[static_cast<std::size_t>(j + 1)];
            // Keep clear of the neighbours by a fiftieth of the room.
            auto tried = [&](double f) {
                Work c = w;
                c.move(j, lo + (hi - lo) * (0.02 + 0.96 * f));
                return c;
            };
            double a = 0.0, b = 1.0;
            double c = b - g * (b - a), d = a + g * (b - a);
            Work wc = tried(c), wd = tried(d);
            double fc = wc.worst(j - 3, j + 3), fd = wd.worst(j - 3, j + 3);
            for (int step = 0; step < kGoldenSteps; ++step) {
                if (fc < fd) {
                    b = d, d = c, fd = fc, wd = wc;
                    c = b - g * (b - a);
                    wc = tried(c);
                    fc = wc.worst(j - 3, j + 3);
                } else {
                    a = c, c = d, fc = fd, wc = wd;
                    d = a + g * (b - a);
                    wd = tried(d);
                    fd = wd.worst(j - 3, j + 3);
                }
            }
            const double now = w.worst(j - 3, j + 3);
            if (fc < now && fc <= fd) {
                w = wc;
            } else if (fd < now) {
                w = wd;
            }
        }
        if (w.worst() > before * (1.0 - 1e-3)) break;
    }
}

// Points that keep the order for every z: the judged point first, then
// chords that shrink by one steady factor r, each carrying an equal share of
// the upper half of the value. Every tangent of the curve lies between the
// chords beside it, so with r at most 3 no cubic turns back (eleven points
// reach r = 2.6 at z = 0.001).
ExponentialLayout steadyChords(double z, int n) {
    ExponentialLayout p;
    p.n = n;
    p.judged = 1;
    p.fallback = true;
    const int chords = n - 2;  // above the judged point
    // sum of r^j, j = 1 .. chords, equals chords (1 - z) / z.
    const double target = chords * (1.0 - z) / z;
    auto sum = [&](double r) {
        double s = 0.0, power = 1.0;
        for (int j = 1; j <= chords; ++j) s += (power *= r);
        return s;
    };
    double lo = 1.0, hi = 2.0;
    while (sum(hi) < target) hi *= 2.0;
    for (int i = 0; i < 200 && hi - lo > 1e-15 * hi; ++i) {
        const double mid = 0.5 * (lo + hi);
        (sum(mid) < target ? lo : hi) = mid;
    }
    const double r = 0.5 * (lo + hi);
    const double slope0 = 0.5 / z;  // the chord below the judged point
    const double share = 0.5 / chords;
    p.t[1] = z;
    p.v[1] = 0.5;
    double slope = slope0;
    for (int j = 1; j < n - 2; ++j) {
        slope /= r;
        p.t[static_cast<std::size_t>(j + 1)] = p.t[static_cast<std::size_t>(j)] + share / slope;
        p.v[static_cast<std::size_t>(j + 1)] = 0.5 + share * j;
    }
    p.t[static_cast<std::size_t>(n - 1)] = 1.0;
    p.v[static_cast<std::size_t>(n - 1)] = 1.0;
    return p;
}

}  // namespace

double LayoutGap(const double* t, const double* v, int n, double rate, bool* keepsOrder) {
    double gap = 0.0;
    bool order = true;
    for (int i = 0; i + 1 < n; ++i) {
        const Piece p = piece(t, v, n, i, rate, kMeasureSamples);
        gap = std::fmax(gap, p.gap);
        order = order && !p.turns;
    }
    if (keepsOrder != nullptr) *keepsOrder = order;
    return gap;
}

ExponentialLayout PlaceExponentialPoints(double z, double rate, int n) {
    if (n < 3 || n > kLayoutMaxPoints || !(z > 0.0 && z < 1.0)) throw RuntimeError(RuntimeError::IllegalCall);
    const bool mirrored = rate < 0.0;
    const double zr = mirrored ? 1.0 - z : z;
    const double kr = mirrored ? -rate : rate;
    const int last = n - 1;

    ExponentialLayout best;
    if (kr == 0.0) {
        best = startingLayout(zr, kr, n, last / 2).p;  // the line: any points carry it
    } else {
        Work found;
        double least = kNever;
        for (int judged = 1; judged < last; ++judged) {
            Work w = startingLayout(zr, kr, n, judged);
            for (int round = 0;; ++round) {
                if (w.worst() < least) {
                    least = w.worst();
                    found = w;
                }
                if (round == kSpreadRounds) break;
                spread(w, 0, judged, 0.0, zr);
                spread(w, judged, last, zr, 1.0);
                w.settle();
            }
        }
        if (least < kNever) {
            polish(found);
            best = found.p;
        } else {
            best = steadyChords(zr, n);
        }
    }
    best.gap = LayoutGap(best.t.data(), best.v.data(), n, kr);

    if (mirrored) {
        ExponentialLayout m = best;
        for (int j = 0; j <= last; ++j) {
            const std::size_t from = static_cast<std::size_t>(last - j);
            m.t[static_cast<std::size_t>(j)] = 1.0 - best.t[from];
            m.v[static_cast<std::size_t>(j)] = 1.0 - best.v[from];
        }
        m.judged = last - best.judged;
        m.t[static_cast<std::size_t>(m.judged)] = z;
        best = m;
    }
    return best;
}

double ExponentialCurveGap(std::int16_t att) {
    WizardData& w = wizardData();
    const int n = w.SmpSize(att).toInteger();
    if (n < 2 || n > kLayoutMaxPoints) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    const double lo = w.ScoreMinimum(att).toDouble();
    const double hi = w.ScoreMaximum(att).toDouble();
    const bool cost = w.AttPropertyCopy(att).toDouble() != 0.0;
    double middle = w.ScoreMiddle(att).toDouble();
    const double rate = MiddleScoreRate(att, middle);
    std::array<double, kLayoutMaxPoints> t{};
    std::array<double, kLayoutMaxPoints> v{};
    for (int k = 0; k < n; ++k) {
        // Worst end first.
        const int from = cost ? n - 1 - k : k;
        const double x = w.SmpX(att, from).toDouble();
        t[static_cast<std::size_t>(k)] = checkedDiv(cost ? hi - x : x - lo, hi - lo);
        const double y = w.SmpY(att, from).toDouble();
        v[static_cast<std::size_t>(k)] = y;
    }
    return LayoutGap(t.data(), v.data(), n, rate);
}

}  // namespace kelmar
