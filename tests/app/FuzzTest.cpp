// Problem files mutated at random from the project's own: each is taken or
// refused with one line, and a taken one values every alternative within
// the value range, the same on the workbench as in the wizard's Finish, and
// draws every attribute's chart.
// KELMAR_FUZZ_SEED and KELMAR_FUZZ_COUNT choose the run (scripts/fuzz.sh).
#include "ChartExport.h"
#include "HostTestData.h"
#include "ProblemFile.h"
#include "Workbench.h"

#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <cfloat>
#include <chrono>
#include <cstdlib>
#include <random>

namespace kelmarhost {
namespace {

std::uint64_t setting(const char* name, std::uint64_t fallback) {
    const char* text = std::getenv(name);
    return text != nullptr && *text != '\0' ? std::strtoull(text, nullptr, 10) : fallback;
}

// Taken files to start from: the test data, the documented example and the
// sample problem.
QVector<QByteArray> seedFiles() {
    QVector<QByteArray> files;
    for (const char* name : {"good.json", "no_functions.json"}) {
        QFile f(dataFile(name));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name;
        files.append(f.readAll());
    }
    files.append(documentedJson("### A complete example"));
    files.append(QJsonDocument(problemToJson(sampleProblem())).toJson());
    return files;
}

class Mutator {
public:
    explicit Mutator(std::uint64_t seed) : random_(seed) {}

    QByteArray next(const QVector<QByteArray>& seeds) {
        const QByteArray& base = seeds[pick(seeds.size())];
        return pick(3) == 0 ? bytes(base) : values(base);
    }

private:
    int pick(qsizetype n) { return static_cast<int>(random_() % static_cast<std::uint64_t>(n)); }

    // Bits flipped, bytes dropped or inserted anywhere in the text.
    QByteArray bytes(QByteArray text) {
        static const QByteArray kTokens = "0123456789-+.eE[]{},:\" nul";
        for (int n = 1 + pick(4); n > 0 && !text.isEmpty(); --n) {
            const int at = pick(text.size());
            switch (pick(3)) {
            case 0: text[at] = static_cast<char>(text[at] ^ (1 << pick(8))); break;
            case 1: text.remove(at, 1); break;
            default:
                text.insert(at, pick(2) == 0 ? kTokens[pick(kTokens.size())] : static_cast<char>(pick(256)));
            }
        }
        return text;
    }

    // One to three values of the document replaced, or keys misspelt or
    // dropped.
    QByteArray values(const QByteArray& text) {
        QJsonValue root = QJsonDocument::fromJson(text).object();
        for (int n = 1 + pick(3); n > 0; --n) {
            int target = pick(count(root));
            root = mutated(root, target);
        }
        return QJsonDocument(root.toObject()).toJson(pick(2) == 0 ? QJsonDocument::Compact : QJsonDocument::Indented);
    }

    static int count(const QJsonValue& v) {
        int n = 1;
        if (v.isArray())
            for (const QJsonValue& e : v.toArray()) n += count(e);
        if (v.isObject())
            for (const QJsonValue& e : v.toObject()) n += count(e);
        return n;
    }

    QJsonValue mutated(const QJsonValue& v, int& target) {
        if (target-- == 0) return v.isObject() && pick(2) == 0 ? rekeyed(v.toObject()) : replacement(v);
        if (v.isArray()) {
            QJsonArray a = v.toArray();
            for (qsizetype k = 0; k < a.size() && target >= 0; ++k) a[k] = mutated(a[k], target);
            return a;
        }
        if (v.isObject()) {
            QJsonObject o = v.toObject();
            for (auto it = o.begin(); it != o.end() && target >= 0; ++it) it.value() = mutated(it.value(), target);
            return o;
        }
        return v;
    }

    QJsonObject rekeyed(QJsonObject o) {
        if (o.isEmpty()) return o;
        const QString key = o.keys()[pick(o.size())];
        const QJsonValue value = o.take(key);
        switch (pick(3)) {
        case 0: o.insert(key.toLower(), value); break;
        case 1: o.insert(key.left(key.size() - 1), value); break;
        default: break;  // dropped
        }
        return o;
    }

    // Huge, tiny, negative, a hair off, text, null, arrays and the rest.
    QJsonValue replacement(const QJsonValue& old) {
        const double x = old.toDouble(1.0);
        static const double kNumbers[] = {1e308, -1e308, DBL_MAX, 1e39, -3.5e38, FLT_MAX, 1e20,
                                          32768, -32769, 1e-300, -1e-310, 5e-324, 0.0, 1.0, 101};
        switch (pick(10)) {
        case 0:
        case 1: return kNumbers[pick(std::size(kNumbers))];
        case 2: return -x;
        case 3: return x * (1.0 + (pick(2) == 0 ? 1 : -1) * DBL_EPSILON * (1 + pick(4)));
        case 4: return QStringLiteral("12");
        case 5: return QJsonValue(QJsonValue::Null);
        case 6: return QJsonArray{};
        case 7: return QJsonArray{x, x};
        case 8: return QJsonObject{};
        default: return pick(2) == 0;
        }
    }

    std::mt19937_64 random_;
};

// Values of one table, alternative by attribute, all within 0 .. maxValue.
testing::AssertionResult withinRange(const ValueTable& table, int maxValue) {
    for (qsizetype i = 0; i < table.size(); ++i)
        for (qsizetype j = 0; j < table[i].size(); ++j)
            if (!(table[i][j] >= 0.0 && table[i][j] <= maxValue))
                return testing::AssertionFailure() << "value [" << i << "][" << j << "] is " << table[i][j];
    return testing::AssertionSuccess();
}

// The table the wizard's Finish hands back for a taken problem.
ValueTable finishTable(kelmar::KelmarDll& component, const Problem& p) {
    HostArrays arrays = toHostArrays(p);
    transferProblem(component, arrays);
    std::int16_t maxVal = static_cast<std::int16_t>(p.maxValue);
    for (std::int16_t alt = 0; alt < arrays.AltNum; ++alt)
        for (std::int16_t att = 0; att < arrays.AttNum; ++att) kelmar::ComputeAlternativeValue(alt, att, maxVal);
    return valuesFromResults(kelmar::wizardData().AttVData, arrays.AltNum, arrays.AttNum);
}

// A failing input, kept for the report.
QString keep(const QByteArray& text, std::uint64_t seed, int index) {
    const QString path = QDir::temp().filePath(QStringLiteral("kelmar-fuzz-%1-%2.json").arg(seed).arg(index));
    QFile f(path);
    if (f.open(QIODevice::WriteOnly)) f.write(text);
    return path;
}

TEST(FuzzTest, MutatedFilesAreTakenOrRefusedWithOneLine) {
    const std::uint64_t seed = setting("KELMAR_FUZZ_SEED", 20261124);
    const int cases = static_cast<int>(setting("KELMAR_FUZZ_COUNT", 4000));
    const QVector<QByteArray> seeds = seedFiles();
    Mutator mutator(seed);
    kelmar::KelmarDll component;
    kelmar::ValueFunctionChart chart;
    int taken = 0, failures = 0;
    auto slowest = std::chrono::steady_clock::duration::zero();
    for (int index = 0; index < cases && failures < 10; ++index) {
        const QByteArray text = mutator.next(seeds);
        const auto start = std::chrono::steady_clock::now();
        QString fault;
        try {
            const Problem p = parseProblem(text, QStringLiteral("fuzz.json"));
            const ValueTable table = evaluateProblem(p);
            ++taken;
            if (const auto range = withinRange(table, p.maxValue); !range) {
                fault = QString::fromStdString(range.message());
            } else if (finishTable(component, p) != table) {
                fault = QStringLiteral("the workbench's values differ from the wizard's Finish");
            }
            for (int att = 0; att < p.attributes.size(); ++att)
                drawAttributeChart(chart, p, att, attributeCurves(p.functions, {}, att));
        } catch (const ProblemFileError& error) {
            if (!error.message().startsWith(QStringLiteral("fuzz.json")) || error.message().contains('\n'))
                fault = QStringLiteral("not one line naming the file: ") + error.message();
        } catch (const std::exception& error) {
            fault = QStringLiteral("an unforeseen error: ") + QString::fromUtf8(error.what());
        }
        slowest = std::max(slowest, std::chrono::steady_clock::now() - start);
        if (!fault.isEmpty()) {
            ++failures;
            ADD_FAILURE() << "case " << index << " of seed " << seed << ": " << fault.toStdString() << " ("
                          << keep(text, seed, index).toStdString() << ")";
        }
    }
    std::printf("fuzz: seed %llu, %d cases, %d taken, %d refused, slowest %.1f ms\n",
                static_cast<unsigned long long>(seed), cases, taken, cases - taken,
                std::chrono::duration<double, std::milli>(slowest).count());
    EXPECT_GT(taken, cases / 40) << "the mutations should leave some files usable";
}

// The program itself, on the files that once aborted it and on a few
// mutants, in every windowless mode at once: status 0 with a table in range
// (and a chart and a report), or 2 with one line.
TEST(FuzzTest, TheProgramEndsWithStatus0Or2) {
    QTemporaryDir dir;
    QStringList files;
    const QDir data(QStringLiteral(KELMAR_TEST_DATA_DIR));
    for (const QString& name : data.entryList({QStringLiteral("aborted_*.json")})) files << data.filePath(name);
    EXPECT_GE(files.size(), 4);
    Mutator mutator(setting("KELMAR_FUZZ_SEED", 20261124) + 1);
    const QVector<QByteArray> seeds = seedFiles();
    for (int k = 0; k < 12; ++k) {
        QFile f(dir.filePath(QStringLiteral("mutant%1.json").arg(k)));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(mutator.next(seeds));
        files << f.fileName();
    }
    for (const QString& file : files) {
        QProcess p;
        p.start(QStringLiteral(KELMAR_HOST_PATH),
                {QStringLiteral("--evaluate"), QStringLiteral("--chart"), dir.filePath(QStringLiteral("chart.svg")),
                 QStringLiteral("--report"), dir.filePath(QStringLiteral("report.pdf")), file});
        ASSERT_TRUE(p.waitForFinished(60000)) << file.toStdString();
        const QByteArray out = p.readAllStandardOutput(), err = p.readAllStandardError();
        ASSERT_EQ(p.exitStatus(), QProcess::NormalExit) << file.toStdString();
        if (p.exitCode() == 2) {
            EXPECT_TRUE(err.startsWith(file.toUtf8()) && err.count('\n') == 1) << err.toStdString();
            continue;
        }
        ASSERT_EQ(p.exitCode(), 0) << file.toStdString() << ": " << err.toStdString();
        const Problem problem = loadProblemFile(file);
        const ValueTable table = evaluateProblem(problem);
        EXPECT_TRUE(withinRange(table, problem.maxValue)) << file.toStdString();
        QStringList names;
        for (const Attribute& a : problem.attributes) names << a.name;
        EXPECT_EQ(out, valueTableCsv(problem.alternatives, names, table)) << file.toStdString();
    }
}

}  // namespace
}  // namespace kelmarhost
