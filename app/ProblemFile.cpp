#include "ProblemFile.h"

#include "Workbench.h"

#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QSaveFile>

#include <algorithm>
#include <bit>
#include <cmath>
#include <initializer_list>
#include <iterator>
#include <optional>

namespace kelmarhost {

using kelmar::Variant;
using kelmar::VariantArray;

namespace {

constexpr int kMaxPoints = 11;
// The wizard lays out and draws scores in single precision (up to about
// 3.4e38): with scores within this bound, a range between any two of them
// and the steps across it fit there too.
constexpr double kLargestScore = 1e38;

QString typeName(const QJsonValue& v) {
    switch (v.type()) {
    case QJsonValue::Null: return QStringLiteral("null");
    case QJsonValue::Bool: return QStringLiteral("true or false");
    case QJsonValue::Double: return QStringLiteral("a number");
    case QJsonValue::String: return QStringLiteral("a string");
    case QJsonValue::Array: return QStringLiteral("an array");
    case QJsonValue::Object: return QStringLiteral("an object");
    case QJsonValue::Undefined: break;
    }
    return QStringLiteral("nothing");
}

// A fault stays on one line whatever the file's keys and texts hold: their
// control characters are written as escapes.
QString oneLine(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        if (c == QLatin1Char('\n')) {
            out += QStringLiteral("\\n");
        } else if (c == QLatin1Char('\r')) {
            out += QStringLiteral("\\r");
        } else if (c == QLatin1Char('\t')) {
            out += QStringLiteral("\\t");
        } else if (c.unicode() < 0x20 || c.unicode() == 0x7f || c.category() == QChar::Separator_Line ||
                   c.category() == QChar::Separator_Paragraph) {
            out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            out += c;
        }
    }
    return out;
}

// Reads the fields of one problem file and reports the first fault.
class Reader {
public:
    explicit Reader(QString source) : source_(std::move(source)) {}

    [[noreturn]] void fail(const QString& field, const QString& what) const {
        throw ProblemFileError(oneLine(QStringLiteral("%1: %2: %3").arg(source_, field, what)));
    }

    QJsonValue required(const QJsonObject& o, const QString& key, const QString& path) const {
        if (!o.contains(key)) fail(path, QStringLiteral("required field is missing"));
        return o.value(key);
    }

    QJsonArray array(const QJsonValue& v, const QString& path) const {
        if (!v.isArray()) fail(path, QStringLiteral("expected an array, found %1").arg(typeName(v)));
        return v.toArray();
    }
    QJsonObject object(const QJsonValue& v, const QString& path) const {
        if (!v.isObject())
            fail(path, QStringLiteral("expected an object, found %1").arg(typeName(v)));
        return v.toObject();
    }
    QString string(const QJsonValue& v, const QString& path) const {
        if (!v.isString()) fail(path, QStringLiteral("expected a string, found %1").arg(typeName(v)));
        return v.toString();
    }
    double number(const QJsonValue& v, const QString& path) const {
        if (!v.isDouble()) fail(path, QStringLiteral("expected a number, found %1").arg(typeName(v)));
        return v.toDouble();
    }
    // A score, a range end or a point's score.
    double score(const QJsonValue& v, const QString& path) const {
        const double d = number(v, path);
        if (std::abs(d) > kLargestScore)
            fail(path, QStringLiteral("expected a score from -%1 to %1 (a range must fit single "
                                      "precision), found %2")
                           .arg(kLargestScore)
                           .arg(d));
        return d;
    }
    int integer(const QJsonValue& v, const QString& path, int lo, int hi) const {
        const double d = number(v, path);
        if (d != std::floor(d) || d < lo || d > hi)
            fail(path, QStringLiteral("expected a whole number from %1 to %2, found %3")
                           .arg(lo)
                           .arg(hi)
                           .arg(d));
        return static_cast<int>(d);
    }

private:
    QString source_;
};

double requiredScore(const Reader& r, const QJsonObject& o, const QString& key,
                     const QString& path) {
    const QString field = path + QLatin1Char('.') + key;
    return r.score(r.required(o, key, field), field);
}

// Edits that turn one key into the other (letters, case counted).
qsizetype editDistance(const QString& a, const QString& b) {
    QVector<qsizetype> row(b.size() + 1);
    for (qsizetype j = 0; j <= b.size(); ++j) row[j] = j;
    for (qsizetype i = 1; i <= a.size(); ++i) {
        qsizetype diagonal = row[0];
        row[0] = i;
        for (qsizetype j = 1; j <= b.size(); ++j) {
            const qsizetype above = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1,
                               diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

// Refuses a key the object does not know, with the known key it most likely
// stands for.
void checkKeys(const Reader& r, const QJsonObject& o, const QString& path,
               std::initializer_list<const char*> known) {
    for (auto it = o.begin(); it != o.end(); ++it) {
        const QString key = it.key();
        if (std::any_of(known.begin(), known.end(),
                        [&](const char* k) { return key == QLatin1String(k); }))
            continue;
        QString hint;
        for (const char* k : known) {
            const QString candidate = QString::fromLatin1(k);
            if (key.compare(candidate, Qt::CaseInsensitive) == 0 ||
                editDistance(key.toLower(), candidate.toLower()) <= 2) {
                hint = QStringLiteral("; did you mean \"%1\"?").arg(candidate);
                break;
            }
        }
        r.fail(path.isEmpty() ? key : path + QLatin1Char('.') + key,
               QStringLiteral("unknown field") + hint);
    }
}

ValueFunction readFunction(const Reader& r, const QJsonObject& o, const QString& path) {
    // A results line's record also names its attribute and technique and
    // repeats the value scale and the sample size.
    checkKeys(r, o, path,
              {"scoreMinimum", "scoreMiddle", "scoreMaximum", "technique", "type", "points",
               "parameters", "categoryOrder", "attribute", "techniqueName", "maxValue",
               "sampleSize"});
    ValueFunction f;
    f.minimum = requiredScore(r, o, QStringLiteral("scoreMinimum"), path);
    f.maximum = requiredScore(r, o, QStringLiteral("scoreMaximum"), path);
    if (!(f.minimum < f.maximum))
        r.fail(path + QStringLiteral(".scoreMaximum"),
               QStringLiteral("must be greater than scoreMinimum (%1), found %2")
                   .arg(f.minimum)
                   .arg(f.maximum));
    if (o.contains(QStringLiteral("scoreMiddle"))) {
        // Kept as given: the wizard's search for the middle may end a hair
        // beyond the range.
        f.middle = r.score(o.value(QStringLiteral("scoreMiddle")),
                           path + QStringLiteral(".scoreMiddle"));
    } else {
        f.middle = (f.minimum + f.maximum) / 2.0;
    }
    if (o.contains(QStringLiteral("technique")))
        f.technique = r.integer(o.value(QStringLiteral("technique")),
                                path + QStringLiteral(".technique"), 0, 7);
    if (o.contains(QStringLiteral("type")))
        f.type = r.integer(o.value(QStringLiteral("type")), path + QStringLiteral(".type"),
                           -32768, 32767);
    if (o.contains(QStringLiteral("points"))) {
        const QString pp = path + QStringLiteral(".points");
        const QJsonArray points = r.array(o.value(QStringLiteral("points")), pp);
        if (points.size() < 2 || points.size() > kMaxPoints)
            r.fail(pp, QStringLiteral("expected 2 to %1 points, found %2")
                           .arg(kMaxPoints)
                           .arg(points.size()));
        for (qsizetype k = 0; k < points.size(); ++k) {
            const QString pk = QStringLiteral("%1[%2]").arg(pp).arg(k);
            const QJsonArray xy = r.array(points.at(k), pk);
            if (xy.size() != 2)
                r.fail(pk, QStringLiteral("expected [score, value], found %1 numbers").arg(xy.size()));
            const double x = r.score(xy.at(0), pk + QStringLiteral("[0]"));
            const double y = r.number(xy.at(1), pk + QStringLiteral("[1]"));
            if (y < 0.0 || y > 1.0)
                r.fail(pk + QStringLiteral("[1]"),
                       QStringLiteral("expected a value from 0 to 1, found %1").arg(y));
            if (!f.points.isEmpty() && !(x > f.points.last().x()))
                r.fail(pk + QStringLiteral("[0]"),
                       QStringLiteral("scores must increase from point to point, found %1 after %2")
                           .arg(x)
                           .arg(f.points.last().x()));
            f.points.append(QPointF(x, y));
        }
        if (f.points.first().x() != f.minimum || f.points.last().x() != f.maximum)
            r.fail(pp, QStringLiteral("the first point must lie at scoreMinimum (%1) and the last "
                                      "at scoreMaximum (%2)")
                           .arg(f.minimum)
                           .arg(f.maximum));
    }
    if (o.contains(QStringLiteral("parameters"))) {
        const QString pp = path + QStringLiteral(".parameters");
        const QJsonObject pars = r.object(o.value(QStringLiteral("parameters")), pp);
        const QString names[4] = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                                  QStringLiteral("d")};
        for (const QString& key : pars.keys()) {
            if (std::find(std::begin(names), std::end(names), key) == std::end(names))
                r.fail(pp + QLatin1Char('.') + key,
                       QStringLiteral("unknown parameter; expected a, b, c or d"));
        }
        for (int k = 0; k < 4; ++k) {
            if (!pars.contains(names[k])) continue;
            const QJsonValue v = pars.value(names[k]);
            if (v.isNull()) {
                f.parameters[k] = Variant();
            } else if (v.isString()) {
                f.parameters[k] = Variant(v.toString());
            } else if (v.isBool()) {
                f.parameters[k] = Variant(v.toBool());
            } else {
                f.parameters[k] = r.number(v, pp + QLatin1Char('.') + names[k]);
            }
        }
    }
    if (o.contains(QStringLiteral("categoryOrder"))) {
        const QString pc = path + QStringLiteral(".categoryOrder");
        const QString order = r.string(o.value(QStringLiteral("categoryOrder")), pc);
        if (order != QLatin1String("fromMaximum") && order != QLatin1String("fromMinimum"))
            r.fail(pc, QStringLiteral("expected \"fromMaximum\" or \"fromMinimum\", found \"%1\"")
                           .arg(order));
        if (f.points.size() > 10)
            r.fail(pc, QStringLiteral("a category order needs 10 points or fewer"));
        f.fromMaximum = order == QLatin1String("fromMaximum");
    }
    return f;
}

// Alternatives are valued on the curve through the points: points whose
// curve leaves the doubles (scores a hair apart with far-apart values)
// cannot value anything. Forms every interval's cubic once; the run-time
// error's text when one fails.
std::optional<QString> curveFault(const ValueFunction& f) {
    CurveEvaluator value(f);
    try {
        for (qsizetype k = 1; k < f.points.size(); ++k)
            static_cast<void>(value((f.points[k - 1].x() + f.points[k].x()) / 2.0));
    } catch (const kelmar::RuntimeError& error) {
        return error.description();
    }
    return std::nullopt;
}

// A function's range holds every alternative's score on its attribute.
void checkCoverage(const Reader& r, const Problem& p, qsizetype att, const QString& path) {
    const ValueFunction& f = p.functions.at(att);
    for (qsizetype i = 0; i < p.scores.size(); ++i) {
        const double x = p.scores.at(i).at(att);
        if (x >= f.minimum && x <= f.maximum) continue;
        const bool below = x < f.minimum;
        r.fail(path + (below ? QStringLiteral(".scoreMinimum") : QStringLiteral(".scoreMaximum")),
               QStringLiteral("the range %1 to %2 must hold every alternative's score; "
                              "scores[%3][%4] is %5")
                   .arg(f.minimum)
                   .arg(f.maximum)
                   .arg(i)
                   .arg(att)
                   .arg(x));
    }
}

// The Finishes of earlier sessions ("history"): when each ended, its value
// scale and every attribute's record as it came back. Each record is read
// as a current function is, so that any of them can be made current again.
QVector<Finish> readHistory(const Reader& r, const QJsonObject& root, qsizetype attNum) {
    QVector<Finish> history;
    if (!root.contains(QStringLiteral("history"))) return history;
    const QJsonArray entries = r.array(root.value(QStringLiteral("history")), QStringLiteral("history"));
    for (qsizetype k = 0; k < entries.size(); ++k) {
        const QString path = QStringLiteral("history[%1]").arg(k);
        const QJsonObject o = r.object(entries.at(k), path);
        checkKeys(r, o, path, {"finished", "maxValue", "valueFunctions"});
        Finish f;
        f.number = static_cast<int>(k) + 1;
        const QString pf = path + QStringLiteral(".finished");
        const QString when = r.string(r.required(o, QStringLiteral("finished"), pf), pf);
        f.finished = QDateTime::fromString(when, Qt::ISODateWithMs);
        if (!f.finished.isValid())
            r.fail(pf, QStringLiteral("expected a date and time such as 2024-05-17T14:03:00+02:00, "
                                      "found \"%1\"").arg(when));
        if (o.contains(QStringLiteral("maxValue"))) {
            const QString pm = path + QStringLiteral(".maxValue");
            f.maxValue = r.integer(o.value(QStringLiteral("maxValue")), pm, 1, 100);
            if (f.maxValue != 1 && f.maxValue != 100)
                r.fail(pm, QStringLiteral("expected 1 or 100, found %1").arg(f.maxValue));
        }
        const QString pv = path + QStringLiteral(".valueFunctions");
        const QJsonArray fs = r.array(r.required(o, QStringLiteral("valueFunctions"), pv), pv);
        if (fs.size() != attNum)
            r.fail(pv, QStringLiteral("expected %1 functions (one per attribute), found %2")
                           .arg(attNum)
                           .arg(fs.size()));
        for (qsizetype j = 0; j < attNum; ++j) {
            const QString pj = QStringLiteral("%1[%2]").arg(pv).arg(j);
            const QJsonObject fo = r.object(fs.at(j), pj);
            if (!fo.contains(QStringLiteral("points")))
                r.fail(pj + QStringLiteral(".points"), QStringLiteral("required field is missing"));
            ValueFunction vf = readFunction(r, fo, pj);
            if (const std::optional<QString> fault = curveFault(vf))
                r.fail(pj + QStringLiteral(".points"),
                       QStringLiteral("the curve through these points cannot be computed (%1)")
                           .arg(*fault));
            f.functions.append(vf);
        }
        history.append(f);
    }
    return history;
}

}  // namespace

ValueFunction linearFunction(double minimum, double maximum, bool cost, int count) {
    ValueFunction f;
    f.minimum = minimum;
    f.maximum = maximum;
    f.middle = (minimum + maximum) / 2.0;
    f.type = 0;
    for (int k = 0; k < count; ++k) {
        const double t = static_cast<double>(k) / (count - 1);
        const double x = k == count - 1 ? maximum : minimum + t * (maximum - minimum);
        f.points.append(QPointF(x, cost ? 1.0 - t : t));
    }
    return f;
}

Problem parseProblem(const QByteArray& json, const QString& source) {
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    const Reader r(source);
    if (error.error == QJsonParseError::GarbageAtEnd) {
        // Results lines, one object per line: the last one is the latest.
        const QList<QByteArray> lines = json.trimmed().split('\n');
        if (lines.size() > 1 && lines.last().trimmed().startsWith('{'))
            return parseProblem(lines.last(),
                                QStringLiteral("%1, line %2").arg(source).arg(lines.size()));
    }
    if (error.error != QJsonParseError::NoError) {
        // Where the text goes wrong, as an editor shows it.
        const QString before = QString::fromUtf8(json.left(error.offset));
        const qsizetype line = before.count(QLatin1Char('\n')) + 1;
        const qsizetype column = before.size() - before.lastIndexOf(QLatin1Char('\n'));
        r.fail(QStringLiteral("line %1, column %2").arg(line).arg(column),
               QStringLiteral("not valid JSON: %1").arg(error.errorString()));
    }
    if (!doc.isObject())
        r.fail(QStringLiteral("top level"),
               QStringLiteral("expected an object, found %1")
                   .arg(doc.isArray() ? QStringLiteral("an array") : QStringLiteral("nothing")));
    const QJsonObject root = doc.object();
    // A results line adds its functions and values; a saved file its history.
    checkKeys(r, root, QString(),
              {"title", "helpDirectory", "methodCode", "maxValue", "alternatives", "attributes",
               "scores", "valueFunctions", "functions", "values", "history"});

    Problem p;
    p.source = source;
    if (root.contains(QStringLiteral("title")))
        p.title = r.string(root.value(QStringLiteral("title")), QStringLiteral("title"));
    if (root.contains(QStringLiteral("helpDirectory")))
        p.helpDirectory = r.string(root.value(QStringLiteral("helpDirectory")),
                                   QStringLiteral("helpDirectory"));
    if (root.contains(QStringLiteral("methodCode")))
        p.methodCode = r.integer(root.value(QStringLiteral("methodCode")),
                                 QStringLiteral("methodCode"), -32768, 32767);
    if (root.contains(QStringLiteral("maxValue"))) {
        const double maxValue =
            r.number(root.value(QStringLiteral("maxValue")), QStringLiteral("maxValue"));
        if (maxValue != 1.0 && maxValue != 100.0)
            r.fail(QStringLiteral("maxValue"),
                   QStringLiteral("expected 1 or 100, found %1").arg(maxValue));
        p.maxValue = static_cast<int>(maxValue);
    }

    const QJsonArray alts = r.array(
        r.required(root, QStringLiteral("alternatives"), QStringLiteral("alternatives")),
        QStringLiteral("alternatives"));
    if (alts.isEmpty())
        r.fail(QStringLiteral("alternatives"), QStringLiteral("at least one alternative is needed"));
    if (alts.size() > 32767)
        r.fail(QStringLiteral("alternatives"), QStringLiteral("more than 32767 alternatives"));
    for (qsizetype i = 0; i < alts.size(); ++i) {
        const QString path = QStringLiteral("alternatives[%1]").arg(i);
        const QString name = r.string(alts.at(i), path).trimmed();
        if (name.isEmpty()) r.fail(path, QStringLiteral("a name must not be empty"));
        p.alternatives.append(name);
    }

    const QJsonArray atts = r.array(
        r.required(root, QStringLiteral("attributes"), QStringLiteral("attributes")),
        QStringLiteral("attributes"));
    if (atts.isEmpty())
        r.fail(QStringLiteral("attributes"), QStringLiteral("at least one attribute is needed"));
    if (atts.size() > 32767)
        r.fail(QStringLiteral("attributes"), QStringLiteral("more than 32767 attributes"));
    for (qsizetype j = 0; j < atts.size(); ++j) {
        const QString path = QStringLiteral("attributes[%1]").arg(j);
        const QJsonObject o = r.object(atts.at(j), path);
        checkKeys(r, o, path, {"name", "definition", "property"});
        Attribute a;
        a.name = r.string(r.required(o, QStringLiteral("name"), path + QStringLiteral(".name")),
                          path + QStringLiteral(".name"))
                     .trimmed();
        if (a.name.isEmpty())
            r.fail(path + QStringLiteral(".name"), QStringLiteral("a name must not be empty"));
        if (o.contains(QStringLiteral("definition")))
            a.definition = r.string(o.value(QStringLiteral("definition")),
                                    path + QStringLiteral(".definition"));
        const QString pp = path + QStringLiteral(".property");
        const QString property = r.string(r.required(o, QStringLiteral("property"), pp), pp);
        if (property == QLatin1String("cost")) {
            a.cost = true;
        } else if (property != QLatin1String("benefit")) {
            r.fail(pp, QStringLiteral("expected \"cost\" or \"benefit\", found \"%1\"").arg(property));
        }
        p.attributes.append(a);
    }

    const qsizetype altNum = p.alternatives.size();
    const qsizetype attNum = p.attributes.size();
    const QJsonArray rows =
        r.array(r.required(root, QStringLiteral("scores"), QStringLiteral("scores")),
                QStringLiteral("scores"));
    if (rows.size() != altNum)
        r.fail(QStringLiteral("scores"),
               QStringLiteral("expected %1 rows (one per alternative), found %2")
                   .arg(altNum)
                   .arg(rows.size()));
    // The field names are only spelt out for a fault: a large table is read
    // without a string per cell.
    const auto rowPath = [](qsizetype i) { return QStringLiteral("scores[%1]").arg(i); };
    p.scores.reserve(altNum);
    for (qsizetype i = 0; i < altNum; ++i) {
        const QJsonValue rowValue = rows.at(i);
        if (!rowValue.isArray()) r.array(rowValue, rowPath(i));
        const QJsonArray row = rowValue.toArray();
        if (row.size() != attNum)
            r.fail(rowPath(i), QStringLiteral("expected %1 scores (one per attribute), found %2")
                                   .arg(attNum)
                                   .arg(row.size()));
        QVector<double> values(attNum);
        for (qsizetype j = 0; j < attNum; ++j) {
            const QJsonValue cell = row.at(j);
            const double x = cell.toDouble();
            values[j] = cell.isDouble() && std::abs(x) <= kLargestScore
                            ? x
                            : r.score(cell, QStringLiteral("%1[%2]").arg(rowPath(i)).arg(j));
        }
        p.scores.append(std::move(values));
    }

    // A results line carries its functions as "functions".
    const QString functionsKey = root.contains(QStringLiteral("valueFunctions"))
                                     ? QStringLiteral("valueFunctions")
                                     : QStringLiteral("functions");
    if (root.contains(functionsKey)) {
        const QJsonArray fs = r.array(root.value(functionsKey), functionsKey);
        if (fs.size() != attNum)
            r.fail(functionsKey,
                   QStringLiteral("expected %1 functions (one per attribute), found %2")
                       .arg(attNum)
                       .arg(fs.size()));
        for (qsizetype j = 0; j < attNum; ++j) {
            const QString path = QStringLiteral("%1[%2]").arg(functionsKey).arg(j);
            ValueFunction f = readFunction(r, r.object(fs.at(j), path), path);
            const bool pointsGiven = !f.points.isEmpty();
            if (!pointsGiven) {
                const ValueFunction lin =
                    linearFunction(f.minimum, f.maximum, p.attributes.at(j).cost);
                f.points = lin.points;
            }
            p.functions.append(f);
            checkCoverage(r, p, j, path);
            if (const std::optional<QString> fault = curveFault(f)) {
                r.fail(path + (pointsGiven ? QStringLiteral(".points") : QStringLiteral(".scoreMaximum")),
                       (pointsGiven ? QStringLiteral("the curve through these points cannot be "
                                                     "computed (%1)")
                                    : QStringLiteral("the range is too narrow to lay points on "
                                                     "(%1)"))
                           .arg(*fault));
            }
        }
    } else {
        // Without earlier functions every attribute starts linear on the
        // range of its scores.
        for (qsizetype j = 0; j < attNum; ++j) {
            double lo = p.scores.at(0).at(j);
            double hi = lo;
            for (const QVector<double>& row : p.scores) {
                lo = std::min(lo, row.at(j));
                hi = std::max(hi, row.at(j));
            }
            // Scores all the same (or too close for a curve): a range of 1
            // above the lowest, wide enough for single precision to tell its
            // points apart however large the score is (below the highest
            // where it would leave single precision).
            const bool cost = p.attributes.at(j).cost;
            ValueFunction f = linearFunction(lo, hi, cost);
            if (hi <= lo || curveFault(f)) {
                const double width = std::max(1.0, std::abs(lo) / 65536.0);
                f = lo + width <= kLargestScore ? linearFunction(lo, lo + width, cost)
                                                : linearFunction(hi - width, hi, cost);
            }
            f.technique = kelmar::kDirectRating;
            p.functions.append(f);
        }
    }
    p.history = readHistory(r, root, attNum);
    return p;
}

Problem loadProblemFile(const QString& path) {
    QFile file(path);
    if (!QFileInfo::exists(path))
        throw ProblemFileError(QStringLiteral("%1: the file does not exist").arg(path));
    if (!file.open(QIODevice::ReadOnly))
        throw ProblemFileError(
            QStringLiteral("%1: the file cannot be read: %2").arg(path, file.errorString()));
    // A device or a pipe without end (/dev/zero) is cut off, not read for ever.
    constexpr qint64 kLargestFile = qint64(512) << 20;
    const QByteArray text = file.read(kLargestFile + 1);
    if (text.size() > kLargestFile)
        throw ProblemFileError(QStringLiteral("%1: the file is larger than 512 MiB").arg(path));
    return parseProblem(text, path);
}

QJsonValue variantToJson(const Variant& v) {
    switch (v.type()) {
    case Variant::Type::Empty: return QJsonValue(QJsonValue::Null);
    case Variant::Type::Boolean: return QJsonValue(v.toBoolean());
    case Variant::Type::String: return QJsonValue(v.toString());
    case Variant::Type::Array: return QJsonValue(QJsonValue::Null);
    default: return QJsonValue(v.toDouble());
    }
}

namespace {

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool sameVariant(const Variant& a, const Variant& b) {
    if (a.isString() || b.isString()) return a.isString() && b.isString() && a.toString() == b.toString();
    if (a.isEmpty() || b.isEmpty()) return a.isEmpty() && b.isEmpty();
    if (a.isArray() || b.isArray()) return false;
    return sameBits(a.toDouble(), b.toDouble());
}

}  // namespace

bool sameCurve(const ValueFunction& a, const ValueFunction& b) {
    if (!sameBits(a.minimum, b.minimum) || !sameBits(a.maximum, b.maximum) ||
        a.points.size() != b.points.size())
        return false;
    for (qsizetype k = 0; k < a.points.size(); ++k) {
        if (!sameBits(a.points[k].x(), b.points[k].x()) ||
            !sameBits(a.points[k].y(), b.points[k].y()))
            return false;
    }
    return true;
}

bool sameRecord(const ValueFunction& a, const ValueFunction& b) {
    if (!sameCurve(a, b) || !sameBits(a.middle, b.middle) || a.technique != b.technique ||
        a.type != b.type || a.fromMaximum != b.fromMaximum)
        return false;
    for (int k = 0; k < 4; ++k) {
        if (!sameVariant(a.parameters[k], b.parameters[k])) return false;
    }
    return true;
}

QJsonObject functionToJson(const ValueFunction& f) {
    QJsonArray points;
    for (const QPointF& p : f.points) points.append(QJsonArray{p.x(), p.y()});
    QJsonObject o{{QStringLiteral("scoreMinimum"), f.minimum},
                  {QStringLiteral("scoreMiddle"), f.middle},
                  {QStringLiteral("scoreMaximum"), f.maximum},
                  {QStringLiteral("technique"), f.technique},
                  {QStringLiteral("type"), f.type},
                  {QStringLiteral("points"), points},
                  {QStringLiteral("parameters"),
                   QJsonObject{{QStringLiteral("a"), variantToJson(f.parameters[0])},
                               {QStringLiteral("b"), variantToJson(f.parameters[1])},
                               {QStringLiteral("c"), variantToJson(f.parameters[2])},
                               {QStringLiteral("d"), variantToJson(f.parameters[3])}}}};
    if (f.fromMaximum) o.insert(QStringLiteral("categoryOrder"), QStringLiteral("fromMaximum"));
    return o;
}

QJsonObject problemFieldsToJson(const Problem& p) {
    QJsonArray attributes;
    for (const Attribute& a : p.attributes) {
        attributes.append(QJsonObject{
            {QStringLiteral("name"), a.name},
            {QStringLiteral("definition"), a.definition},
            {QStringLiteral("property"), a.cost ? QStringLiteral("cost") : QStringLiteral("benefit")}});
    }
    QJsonArray scores;
    for (const QVector<double>& row : p.scores) {
        QJsonArray r;
        for (double v : row) r.append(v);
        scores.append(r);
    }
    QJsonObject o{{QStringLiteral("methodCode"), p.methodCode},
                  {QStringLiteral("maxValue"), p.maxValue},
                  {QStringLiteral("alternatives"), QJsonArray::fromStringList(p.alternatives)},
                  {QStringLiteral("attributes"), attributes},
                  {QStringLiteral("scores"), scores}};
    if (!p.title.isEmpty()) o.insert(QStringLiteral("title"), p.title);
    if (!p.helpDirectory.isEmpty()) o.insert(QStringLiteral("helpDirectory"), p.helpDirectory);
    return o;
}

QJsonObject problemToJson(const Problem& p) {
    QJsonObject o = problemFieldsToJson(p);
    QJsonArray functions;
    for (const ValueFunction& f : p.functions) functions.append(functionToJson(f));
    o.insert(QStringLiteral("valueFunctions"), functions);
    if (!p.history.isEmpty()) {
        QJsonArray history;
        for (const Finish& f : p.history) {
            QJsonArray records;
            for (const ValueFunction& vf : f.functions) {
                QJsonObject record = functionToJson(vf);
                record.insert(QStringLiteral("techniqueName"), techniqueName(vf.technique));
                records.append(record);
            }
            history.append(QJsonObject{{QStringLiteral("finished"),
                                        f.finished.toString(Qt::ISODateWithMs)},
                                       {QStringLiteral("maxValue"), f.maxValue},
                                       {QStringLiteral("valueFunctions"), records}});
        }
        o.insert(QStringLiteral("history"), history);
    }
    return o;
}

void checkFunction(const ValueFunction& f, const QString& source, const QString& path) {
    static_cast<void>(readFunction(Reader(source), functionToJson(f), path));
}

bool saveProblemFile(const Problem& problem, const QString& path, QString* error) {
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(problemToJson(problem)).toJson(QJsonDocument::Indented));
        if (file.commit()) return true;
    }
    if (error) *error = QStringLiteral("%1: %2").arg(path, file.errorString());
    return false;
}

HostArrays toHostArrays(const Problem& p) {
    HostArrays h;
    const int altNum = static_cast<int>(p.alternatives.size());
    const int attNum = static_cast<int>(p.attributes.size());
    h.QUARNDir = Variant(p.helpDirectory);
    h.SelMCDAMethod = static_cast<std::int16_t>(p.methodCode);
    h.AltNum = static_cast<std::int16_t>(altNum);
    h.AttNum = static_cast<std::int16_t>(attNum);

    h.AltPScore.redim(0, altNum - 1, 0, attNum - 1);
    h.AttVData.redim(0, altNum - 1, 0, attNum - 1);
    for (int i = 0; i < altNum; ++i) {
        for (int j = 0; j < attNum; ++j) {
            h.AltPScore(i, j) = Variant(p.scores.at(i).at(j));
            h.AttVData(i, j) = Variant(0.0);
        }
    }
    for (VariantArray* a : {&h.AttName, &h.AttDefinition, &h.AttProperty, &h.ScoreMinimum,
                            &h.ScoreMiddle, &h.ScoreMaximum, &h.VFTechniqueID, &h.SmpSize,
                            &h.VFunParA, &h.VFunParB, &h.VFunParC, &h.VFunParD, &h.VFunType}) {
        a->redim(0, attNum - 1);
    }
    h.SmpX.redim(0, attNum - 1, 0, 10);
    h.SmpY.redim(0, attNum - 1, 0, 10);
    h.MaxVal = static_cast<std::int16_t>(p.maxValue);

    for (int j = 0; j < attNum; ++j) {
        const Attribute& a = p.attributes.at(j);
        const ValueFunction& f = p.functions.at(j);
        h.AttName(j) = Variant(a.name);
        h.AttDefinition(j) = Variant(a.definition);
        // 1 for a cost attribute (less is better), 0 for a benefit attribute.
        h.AttProperty(j) = Variant(static_cast<std::int16_t>(a.cost ? 1 : 0));
        h.ScoreMinimum(j) = Variant(f.minimum);
        h.ScoreMiddle(j) = Variant(f.middle);
        h.ScoreMaximum(j) = Variant(f.maximum);
        h.VFTechniqueID(j) = Variant(static_cast<std::int16_t>(f.technique));
        h.SmpSize(j) = Variant(static_cast<std::int16_t>(f.points.size()));
        for (int k = 0; k <= 10; ++k) {
            const bool used = k < f.points.size();
            h.SmpX(j, k) = Variant(used ? f.points.at(k).x() : 0.0);
            h.SmpY(j, k) = Variant(used ? f.points.at(k).y() : 0.0);
        }
        if (f.fromMaximum && f.points.size() <= 10) h.SmpY(j, 10) = Variant(true);
        h.VFunParA(j) = Variant(f.parameters[0]);
        h.VFunParB(j) = Variant(f.parameters[1]);
        h.VFunParC(j) = Variant(f.parameters[2]);
        h.VFunParD(j) = Variant(f.parameters[3]);
        h.VFunType(j) = Variant(static_cast<std::int16_t>(f.type));
    }
    return h;
}

void transferProblem(kelmar::KelmarDll& component, HostArrays& h) {
    component.TransferData(h.QUARNDir, h.SelMCDAMethod, h.AltNum, h.AttNum, h.AltPScore,
                           h.AttVData, h.AttName, h.AttDefinition, h.AttProperty);
    component.TransferVFunData(h.ScoreMinimum, h.ScoreMiddle, h.ScoreMaximum, h.MaxVal,
                               h.VFTechniqueID, h.SmpSize, h.SmpX, h.SmpY, h.VFunParA,
                               h.VFunParB, h.VFunParC, h.VFunParD, h.VFunType);
}

}  // namespace kelmarhost
