// Saving and reading problems again, the value table as CSV, and the
// comparison of an attribute's functions.
#include "HostTestData.h"
#include "ProblemFile.h"
#include "SampleProblem.h"
#include "Workbench.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>
#include <functional>
#include <random>

namespace kelmarhost {
namespace {

using kelmar::Variant;

QByteArray saved(const Problem& p) { return QJsonDocument(problemToJson(p)).toJson(); }

void expectSameProblem(const Problem& a, const Problem& b) {
    EXPECT_EQ(a.title, b.title);
    EXPECT_EQ(std::make_tuple(a.methodCode, a.maxValue, a.helpDirectory),
              std::make_tuple(b.methodCode, b.maxValue, b.helpDirectory));
    EXPECT_EQ(a.alternatives, b.alternatives);
    ASSERT_EQ(a.attributes.size(), b.attributes.size());
    for (qsizetype j = 0; j < a.attributes.size(); ++j) {
        EXPECT_EQ(std::make_tuple(a.attributes[j].name, a.attributes[j].definition, a.attributes[j].cost),
                  std::make_tuple(b.attributes[j].name, b.attributes[j].definition, b.attributes[j].cost));
        EXPECT_TRUE(sameRecord(a.functions[j], b.functions[j])) << "function " << j;
    }
    EXPECT_TRUE(a.scores == b.scores) << "the scores, exactly";
    ASSERT_EQ(a.history.size(), b.history.size());
    for (qsizetype k = 0; k < a.history.size(); ++k) {
        EXPECT_EQ(std::make_tuple(a.history[k].number, a.history[k].maxValue, a.history[k].finished),
                  std::make_tuple(b.history[k].number, b.history[k].maxValue, b.history[k].finished));
        for (qsizetype j = 0; j < a.history[k].functions.size(); ++j)
            EXPECT_TRUE(sameRecord(a.history[k].functions[j], b.history[k].functions[j])) << "history " << k;
    }
}

// Two earlier Finishes: the problem's own functions, then the same with
// every curve's middle point lowered, a day apart and in other time zones.
Problem withHistory(Problem p) {
    const QDateTime first(QDate(2026, 5, 17), QTime(14, 3, 7, 250), Qt::OffsetFromUTC, 7200);
    p.history.append({1, 100, p.functions, first});
    QVector<ValueFunction> lowered = p.functions;
    for (ValueFunction& f : lowered) {
        if (f.points.size() > 2) f.points[1].setY(f.points[1].y() / 2.0);
    }
    p.history.append({2, 1, lowered, first.addDays(1).toOffsetFromUtc(-18000)});
    return p;
}

// A problem with numbers that no short decimal writes exactly, every kind
// of stored parameter, any function type code and category orders.
Problem generated(int alternatives, int attributes, unsigned seed) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Problem p;
    p.source = QStringLiteral("generated");
    p.title = QStringLiteral("Generated, \"%1\"").arg(seed);
    p.methodCode = -7;
    p.maxValue = seed % 2 ? 1 : 100;
    for (int i = 0; i < alternatives; ++i) p.alternatives << QStringLiteral("A%1").arg(i);
    for (int j = 0; j < attributes; ++j) {
        p.attributes.append({QStringLiteral("Att, %1").arg(j), QStringLiteral("unit \u00b5"), j % 2 == 0});
        ValueFunction f;
        f.minimum = -1e3 * unit(random);
        f.maximum = f.minimum + 1e-3 + 1e5 * unit(random);
        f.middle = f.maximum + 1e-9;  // a hair beyond, as a middle search can end
        f.technique = j % 8;
        f.type = j % 3 == 2 ? 3 : j % 2;
        const int n = 2 + j % 10;
        for (int k = 0; k < n; ++k) {
            const double x = k == 0 ? f.minimum
                             : k == n - 1 ? f.maximum
                                          : f.minimum + (f.maximum - f.minimum) * (k + unit(random) * 0.5) / n;
            f.points.append(QPointF(x, unit(random)));
        }
        f.parameters[0] = Variant(unit(random) / 3.0);
        f.parameters[1] = Variant(QStringLiteral("0.333333"));
        f.parameters[2] = Variant();
        f.parameters[3] = Variant(0.25);
        f.fromMaximum = n <= 10 && j % 4 == 3;
        p.functions.append(f);
    }
    for (int i = 0; i < alternatives; ++i) {
        QVector<double> row;
        for (int j = 0; j < attributes; ++j) {
            const ValueFunction& f = p.functions[j];  // a range holds every score
            row.append(std::clamp(f.minimum + (f.maximum - f.minimum) * unit(random), f.minimum, f.maximum));
        }
        p.scores.append(row);
    }
    return p;
}

// Load, save, load: the same problem to the bit, and the same text again.
TEST(RoundTripTest, SavedProblemsReadBackToTheBit) {
    const struct { const char* name; Problem problem; } cases[] = {
        {"sample", sampleProblem()},
        {"documented", parseProblem(documentedJson("### A complete example"), QStringLiteral("doc"))},
        {"one by one", generated(1, 1, 1)},
        {"every technique and size", generated(40, 12, 2)},
        {"the most alternatives", generated(32767, 2, 3)},
        {"with its history", withHistory(generated(4, 6, 7))},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const QByteArray first = saved(c.problem);
        const Problem again = parseProblem(first, QStringLiteral("saved"));
        expectSameProblem(c.problem, again);
        EXPECT_EQ(saved(again), first);
    }
}

// A results line is a problem file too, and a file of them is read from
// its last line.
TEST(RoundTripTest, AResultsFileOpensAtItsLastLine) {
    Problem p = generated(3, 2, 4);
    QJsonObject line = problemFieldsToJson(p);
    QJsonArray functions;
    for (const ValueFunction& f : p.functions) functions.append(functionToJson(f));
    line.insert(QStringLiteral("functions"), functions);
    const QByteArray older = QJsonDocument(problemToJson(generated(3, 2, 5))).toJson(QJsonDocument::Compact);
    const QByteArray text = older + '\n' + QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    const Problem read = parseProblem(text, QStringLiteral("results.jsonl"));
    expectSameProblem(p, read);
    EXPECT_EQ(read.source, QStringLiteral("results.jsonl, line 2"));
}

// A history entry that cannot be read is refused with where and what.
TEST(RoundTripTest, AFaultyHistoryEntryIsNamed) {
    const QJsonObject good = problemToJson(withHistory(generated(2, 2, 8)));
    const auto withEntry = [&](const std::function<void(QJsonObject&)>& change) {
        QJsonObject root = good;
        QJsonArray history = root.value(QStringLiteral("history")).toArray();
        QJsonObject entry = history.at(1).toObject();
        change(entry);
        history[1] = entry;
        root.insert(QStringLiteral("history"), history);
        return QJsonDocument(root).toJson();
    };
    const struct { const char* name; QByteArray json; const char* message; } cases[] = {
        {"no time", withEntry([](QJsonObject& e) { e.insert(QStringLiteral("finished"), QStringLiteral("yesterday")); }),
         "f: history[1].finished: expected a date and time such as 2024-05-17T14:03:00+02:00, found \"yesterday\""},
        {"a function short", withEntry([](QJsonObject& e) {
             QJsonArray fs = e.value(QStringLiteral("valueFunctions")).toArray();
             fs.removeLast();
             e.insert(QStringLiteral("valueFunctions"), fs);
         }), "f: history[1].valueFunctions: expected 2 functions (one per attribute), found 1"},
        {"a misspelt key", withEntry([](QJsonObject& e) { e.insert(QStringLiteral("finshed"), 1); }),
         "f: history[1].finshed: unknown field; did you mean \"finished\"?"},
    };
    for (const auto& c : cases) {
        try {
            parseProblem(c.json, QStringLiteral("f"));
            ADD_FAILURE() << c.name << ": accepted";
        } catch (const ProblemFileError& e) {
            EXPECT_EQ(e.message().toStdString(), c.message) << c.name;
        }
    }
}

TEST(CsvTest, NamesAreQuotedWhereNeededAndNumbersAreInTheCLocale) {
    const QLocale saved = QLocale();
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QByteArray csv = valueTableCsv(
        {QStringLiteral("Old Mill, east wing"), QStringLiteral("The \"Docks\""), QStringLiteral("Plain")},
        {QStringLiteral("Rent"), QStringLiteral("Area, m\u00b2")},
        {{0.5, 1.0 / 3.0}, {100.0, std::nan("")}, {1e-7, 0.0}});
    QLocale::setDefault(saved);
    EXPECT_EQ(csv.toStdString(),
              "Alternative,Rent,\"Area, m\u00b2\"\r\n"
              "\"Old Mill, east wing\",0.5,0.3333333333333333\r\n"
              "\"The \"\"Docks\"\"\",100,\r\n"
              "Plain,1e-07,0\r\n");
}

ValueFunction curve(std::initializer_list<QPointF> points) {
    ValueFunction f;
    f.points = points;
    f.minimum = f.points.first().x();
    f.maximum = f.points.last().x();
    return f;
}

// The largest difference between a and b, and where b turns back.
TEST(ComparisonTest, LargestDifferenceAndTurnOnKnownCurves) {
    const ValueFunction concave = curve({{0, 0}, {25, 0.5}, {50, 0.71}, {75, 0.87}, {100, 1}}),
                        flat = curve({{0, 0.5}, {100, 0.5}}), dip = curve({{0, 1}, {25, 0.5}, {50, 0.8}, {100, 0}});
    const struct { const char* name; ValueFunction a, b; double value, score; std::optional<double> lo, hi; } cases[] = {
        {"the same line, differently sampled", curve({{0, 0}, {100, 1}}),
         curve({{0, 0}, {25, 0.25}, {50, 0.5}, {100, 1}}), 0.0, 0.0, {}, {}},
        {"a steeper line reaches the top at 50", curve({{0, 0}, {100, 1}}), curve({{0, 0}, {50, 1}}),
         0.5, 50.0, {}, {}},
        {"a wider range: apart most where the narrower ends", curve({{0, 0}, {100, 1}}),
         curve({{0, 0}, {200, 1}}), 0.5, 100.0, {}, {}},
        {"falling lines offset in range", curve({{0, 1}, {100, 0}}), curve({{20, 1}, {100, 0}}), 0.2,
         20.0, {}, {}},
        {"concave", concave, concave, 0.0, 0.0, {}, {}},
        {"flat", flat, flat, 0.0, 0.0, {}, {}},
        {"a falling curve with a dip", dip, dip, 0.0, 0.0, 15.0, 35.0},
    };
    for (const auto& c : cases) {
        const Difference d = largestDifference(c.a, c.b);
        EXPECT_NEAR(d.value, c.value, 1e-9) << c.name;
        if (c.value > 0) {
            EXPECT_NEAR(d.score, c.score, 1e-6) << c.name;
        }
        const std::optional<double> turn = turningScore(c.b);
        ASSERT_EQ(turn.has_value(), c.lo.has_value()) << c.name;
        if (turn) {
            EXPECT_TRUE(*turn >= *c.lo && *turn <= *c.hi) << c.name << ": " << *turn;
        }
    }
}

// Each Finish adds a curve only where it differs from every one before;
// the comparison names the pair that differs most and the curve that turns
// back (a peak in the middle, flagged at its score).
TEST(ComparisonTest, FinishesOverlayOnlyDifferentCurves) {
    const ValueFunction line = curve({{0, 0}, {100, 1}});
    ValueFunction rating = curve({{0, 0}, {25, 0.5}, {50, 1}, {75, 0.5}, {100, 0}});
    rating.type = 1;
    const QVector<Finish> finishes = {{1, 100, {line, line}, {}}, {2, 100, {rating, line}, {}}};
    const QVector<AttributeCurve> first = attributeCurves({line, line}, finishes, 0);
    ASSERT_EQ(first.size(), 2);
    EXPECT_EQ(attributeCurves({line, line}, finishes, 1).size(), 1);

    const Comparison c = compareCurves(first);
    EXPECT_EQ(std::make_pair(c.first, c.second), std::make_pair(0, 1));
    EXPECT_NEAR(c.largest.value, 1.0, 1e-9);
    EXPECT_EQ(describeComparison(first, c, 100).toStdString(),
              "Largest difference: 100.00 at score 100 (Loaded against Finish 2: Direct Rating)\n"
              "Not monotone: Finish 2: Direct Rating turns back at score 50");
}

// The table --evaluate prints: the Finish step's values of the sample.
TEST(EvaluateTest, ValuesComeFromTheCurvesCutToTheRange) {
    Problem p = sampleProblem();
    p.scores[0][0] = 50000;  // beyond the worst rent
    p.scores[1][0] = 10000;  // beyond the best
    const ValueTable t = evaluateProblem(p);
    EXPECT_EQ(t[0][0], 0.0);
    EXPECT_EQ(t[1][0], 100.0);
    EXPECT_NEAR(t[2][0], 100.0 * (45000 - 43000) / 25000.0, 1e-9);
}

}  // namespace
}  // namespace kelmarhost
