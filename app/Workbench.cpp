#include "Workbench.h"

#include <kelmar/mdKelMain.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelmarhost {

using kelmar::Variant;
using kelmar::VariantArray;

namespace {

[[noreturn]] void badRecord(int att, const QString& what) {
    throw ProblemFileError(QStringLiteral("results: functions[%1]: %2").arg(att).arg(what));
}

// A scalar cell of a per-attribute array, or a fault naming the field.
const Variant& cellOf(const VariantArray& a, int att, const char* field) {
    if (a.dimensions() != 1 || att < a.lbound() || att > a.ubound() || a(att).isArray())
        badRecord(att, QStringLiteral("no %1").arg(QLatin1String(field)));
    return a(att);
}

template <typename Read>
auto read(int att, const char* field, Read r) {
    try {
        return r();
    } catch (const kelmar::RuntimeError& e) {
        badRecord(att, QStringLiteral("%1: %2").arg(QLatin1String(field), e.description()));
    }
}

double number(const VariantArray& a, int att, const char* field) {
    const Variant& v = cellOf(a, att, field);
    return read(att, field, [&] { return v.toDouble(); });
}

int whole(const VariantArray& a, int att, const char* field) {
    const Variant& v = cellOf(a, att, field);
    return read(att, field, [&] { return static_cast<int>(v.toInteger()); });
}

bool holdsPoint(const VariantArray& a, int att, int k) {
    return a.dimensions() == 2 && att >= a.lbound(1) && att <= a.ubound(1) && k >= a.lbound(2) &&
           k <= a.ubound(2);
}

QByteArray csvField(const QString& text) {
    QByteArray utf8 = text.toUtf8();
    if (!utf8.contains(',') && !utf8.contains('"') && !utf8.contains('\n') && !utf8.contains('\r'))
        return utf8;
    utf8.replace("\"", "\"\"");
    return '"' + utf8 + '"';
}

QString scoreText(double score) { return QString::number(score, 'g', 6); }

}  // namespace

QVector<ValueFunction> functionsFromResults(const ExportedResults& r, int attNum) {
    if (!r.VFTechniqueID.isArray()) badRecord(0, QStringLiteral("no technique array"));
    const VariantArray& techniques = r.VFTechniqueID.toArray();
    QVector<ValueFunction> functions;
    functions.reserve(attNum);
    for (int j = 0; j < attNum; ++j) {
        ValueFunction f;
        f.minimum = number(r.ScoreMinimum, j, "scoreMinimum");
        f.middle = number(r.ScoreMiddle, j, "scoreMiddle");
        f.maximum = number(r.ScoreMaximum, j, "scoreMaximum");
        f.technique = whole(techniques, j, "technique");
        f.type = whole(r.VFunType, j, "type");
        const int n = whole(r.SmpSize, j, "sampleSize");
        if (n < 2 || n > 11) badRecord(j, QStringLiteral("%1 sample points").arg(n));
        for (int k = 0; k < n; ++k) {
            if (!holdsPoint(r.SmpX, j, k) || !holdsPoint(r.SmpY, j, k))
                badRecord(j, QStringLiteral("no point %1").arg(k));
            const double x = read(j, "points", [&] { return r.SmpX(j, k).toDouble(); });
            const double y = read(j, "points", [&] { return r.SmpY(j, k).toDouble(); });
            f.points.append(QPointF(x, y));
        }
        const VariantArray* pars[4] = {&r.VFunParA, &r.VFunParB, &r.VFunParC, &r.VFunParD};
        for (int k = 0; k < 4; ++k) f.parameters[k] = cellOf(*pars[k], j, "parameters");
        f.fromMaximum = categoryFromMaximum(r.SmpY, j, n);
        checkFunction(f, QStringLiteral("results"), QStringLiteral("functions[%1]").arg(j));
        functions.append(f);
    }
    return functions;
}

ValueTable valuesFromResults(const VariantArray& AttVData, int altNum, int attNum) {
    ValueTable table(altNum, QVector<double>(attNum, std::numeric_limits<double>::quiet_NaN()));
    for (int i = 0; i < altNum; ++i) {
        for (int j = 0; j < attNum; ++j) {
            if (!holdsPoint(AttVData, i, j)) continue;
            const Variant& v = AttVData(i, j);
            if (v.isEmpty() || v.isString() || v.isArray()) continue;
            table[i][j] = v.toDouble();
        }
    }
    return table;
}

CurveEvaluator::CurveEvaluator(const ValueFunction& f)
    : xs_(0, static_cast<int>(f.points.size()) - 1),
      ys_(0, static_cast<int>(f.points.size()) - 1),
      out_(0, 4),
      n_(static_cast<std::int16_t>(f.points.size())) {
    for (int k = 0; k < n_; ++k) {
        xs_(k) = f.points[k].x();
        ys_(k) = f.points[k].y();
    }
}

double CurveEvaluator::operator()(double score) {
    if (n_ < 1) return std::numeric_limits<double>::quiet_NaN();
    // At or beyond an end the score is worth that end's value, as on Finish:
    // the extended end cubic may turn back, and far out it overflows.
    if (score <= xs_(0).toDouble()) return std::clamp(ys_(0).toDouble(), 0.0, 1.0);
    if (score >= xs_(n_ - 1).toDouble()) return std::clamp(ys_(n_ - 1).toDouble(), 0.0, 1.0);
    std::int16_t evaluate = -1;
    kelmar::AkimaInterpolate(xs_, ys_, n_, evaluate, score, out_);
    return std::clamp(out_(4).toDouble(), 0.0, 1.0);
}

ValueTable evaluateProblem(const Problem& p) {
    const qsizetype altNum = p.alternatives.size();
    ValueTable table(altNum, QVector<double>(p.attributes.size(), 0.0));
    for (qsizetype j = 0; j < p.functions.size() && j < p.attributes.size(); ++j) {
        CurveEvaluator value(p.functions[j]);
        for (qsizetype i = 0; i < altNum; ++i)
            table[i][j] = p.maxValue * value(p.scores[i][j]);
    }
    return table;
}

QByteArray valueTableCsv(const QStringList& alternatives, const QStringList& attributes,
                         const ValueTable& values) {
    QByteArray out = "Alternative";
    for (const QString& a : attributes) out += ',' + csvField(a);
    out += "\r\n";
    for (qsizetype i = 0; i < values.size(); ++i) {
        out += csvField(alternatives.value(i));
        for (double v : values[i]) {
            out += ',';
            if (std::isfinite(v)) out += QByteArray::number(v, 'g', QLocale::FloatingPointShortest);
        }
        out += "\r\n";
    }
    return out;
}

Difference largestDifference(const ValueFunction& a, const ValueFunction& b) {
    CurveEvaluator fa(a), fb(b);
    const double lo = std::min(a.minimum, b.minimum);
    const double hi = std::max(a.maximum, b.maximum);
    const auto gap = [&](double x) { return std::abs(fa(x) - fb(x)); };

    // A fine grid and every sample score of both, then the best place
    // narrowed down between its grid neighbours.
    constexpr int kSteps = 1024;
    const double step = (hi - lo) / kSteps;
    Difference best{gap(lo), lo};
    const auto consider = [&](double x) {
        const double g = gap(x);
        if (g > best.value) best = {g, x};
    };
    for (int k = 1; k <= kSteps; ++k) consider(k == kSteps ? hi : lo + k * step);
    for (const ValueFunction* f : {&a, &b})
        for (const QPointF& p : f->points) consider(p.x());
    double left = std::max(lo, best.score - step), right = std::min(hi, best.score + step);
    for (int i = 0; i < 60 && right - left > 0; ++i) {
        const double m1 = left + (right - left) / 3, m2 = right - (right - left) / 3;
        if (gap(m1) < gap(m2)) {
            left = m1;
        } else {
            right = m2;
        }
    }
    consider((left + right) / 2);
    return best;
}

std::optional<double> turningScore(const ValueFunction& f) {
    constexpr int kSteps = 64;  // per interval between sample points
    constexpr double kRounding = 1e-9;
    CurveEvaluator value(f);
    int direction = 0;
    double previousX = f.points.isEmpty() ? 0.0 : f.points.first().x();
    double previous = value(previousX);
    for (qsizetype k = 1; k < f.points.size(); ++k) {
        const double x0 = f.points[k - 1].x(), x1 = f.points[k].x();
        for (int s = 1; s <= kSteps; ++s) {
            const double x = s == kSteps ? x1 : x0 + (x1 - x0) * s / kSteps;
            const double v = value(x);
            const double change = v - previous;
            if (std::abs(change) > kRounding) {
                const int d = change > 0 ? 1 : -1;
                if (direction != 0 && d != direction) return previousX;
                direction = d;
            }
            previousX = x;
            previous = v;
        }
    }
    return std::nullopt;
}

QVector<AttributeCurve> attributeCurves(const QVector<ValueFunction>& loaded,
                                        const QVector<Finish>& finishes, int att,
                                        qsizetype loadedAfter) {
    QVector<AttributeCurve> curves;
    const auto add = [&](const QString& label, const ValueFunction& candidate, const QDateTime& when) {
        const bool seen = std::any_of(curves.cbegin(), curves.cend(), [&](const AttributeCurve& c) {
            return sameCurve(c.function, candidate);
        });
        if (!seen) curves.append({label, candidate, when});
    };
    loadedAfter = std::clamp<qsizetype>(loadedAfter, 0, finishes.size());
    for (qsizetype k = 0; k <= finishes.size(); ++k) {
        if (k == loadedAfter && att >= 0 && att < loaded.size())
            add(QStringLiteral("Loaded"), loaded[att], {});
        if (k == finishes.size()) break;
        const Finish& f = finishes[k];
        if (att < 0 || att >= f.functions.size()) continue;
        const ValueFunction& candidate = f.functions[att];
        QString technique = techniqueName(candidate.technique);
        if (candidate.type == 0) technique += QStringLiteral(", linear");
        add(QStringLiteral("Finish %1: %2").arg(f.number).arg(technique), candidate, f.finished);
    }
    return curves;
}

Comparison compareCurves(const QVector<AttributeCurve>& curves) {
    Comparison c;
    for (qsizetype i = 0; i < curves.size(); ++i) {
        c.turns.append(turningScore(curves[i].function));
        for (qsizetype j = i + 1; j < curves.size(); ++j) {
            const Difference d = largestDifference(curves[i].function, curves[j].function);
            if (c.first < 0 || d.value > c.largest.value) {
                c.first = static_cast<int>(i);
                c.second = static_cast<int>(j);
                c.largest = d;
            }
        }
    }
    return c;
}

QString describeComparison(const QVector<AttributeCurve>& curves, const Comparison& c,
                           int maxValue) {
    QStringList lines;
    if (c.first >= 0) {
        lines << QStringLiteral("Largest difference: %1 at score %2 (%3 against %4)")
                     .arg(QString::number(c.largest.value * maxValue, 'f', 2),
                          scoreText(c.largest.score), curves[c.first].label,
                          curves[c.second].label);
    }
    for (qsizetype i = 0; i < c.turns.size() && i < curves.size(); ++i) {
        if (c.turns[i])
            lines << QStringLiteral("Not monotone: %1 turns back at score %2")
                         .arg(curves[i].label, scoreText(*c.turns[i]));
    }
    return lines.join(QLatin1Char('\n'));
}

}  // namespace kelmarhost
