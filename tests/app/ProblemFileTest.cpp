// Reading problem files, and the sample problem the host offers.
#include "ProblemFile.h"
#include "SampleProblem.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace kelmarhost {
namespace {

QString dataFile(const char* name) {
    return QStringLiteral(KELMAR_TEST_DATA_DIR "/") + QString::fromLatin1(name);
}

QString loadError(const QString& path) {
    try {
        loadProblemFile(path);
    } catch (const ProblemFileError& error) {
        return error.message();
    }
    return {};
}

TEST(ProblemFileTest, AGoodFileIsReadCompletely) {
    const Problem p = loadProblemFile(dataFile("good.json"));
    EXPECT_EQ(p.methodCode, 3);
    ASSERT_EQ(p.attributes.size(), 2);
    EXPECT_TRUE(p.attributes[0].cost);
    EXPECT_FALSE(p.attributes[1].cost);
    EXPECT_EQ(p.scores[2][0], 27500.0);

    ASSERT_EQ(p.functions.size(), 2);
    const ValueFunction& price = p.functions[0];
    EXPECT_EQ(price.middle, 21000.0);
    EXPECT_EQ(price.type, 1);
    ASSERT_EQ(price.points.size(), 3);
    EXPECT_EQ(price.points[1], QPointF(21000, 0.7));
    EXPECT_EQ(price.parameters[0], 1.5);
    EXPECT_EQ(price.parameters[1], 0.0) << "a parameter left out is 0";
    EXPECT_EQ(price.parameters[3], -2.0);

    // A function given by its range only: linear, five points, the middle
    // in the centre, Direct Rating.
    const ValueFunction& boot = p.functions[1];
    EXPECT_EQ(boot.middle, 500.0);
    EXPECT_EQ(boot.type, 0);
    EXPECT_EQ(boot.technique, 1);
    ASSERT_EQ(boot.points.size(), 5);
    EXPECT_EQ(boot.points[0], QPointF(300, 0));
    EXPECT_EQ(boot.points[4], QPointF(700, 1));
}

TEST(ProblemFileTest, WithoutFunctionsEveryAttributeIsLinearOnItsObservedScores) {
    const Problem p = loadProblemFile(dataFile("no_functions.json"));
    EXPECT_EQ(p.maxValue, 100);
    ASSERT_EQ(p.functions.size(), 2);
    const ValueFunction& travel = p.functions[0];
    ASSERT_EQ(travel.points.size(), 5);
    EXPECT_EQ(travel.points.first(), QPointF(20, 1)) << "cost: the least is the best";
    EXPECT_EQ(travel.points.last(), QPointF(55, 0));
    EXPECT_EQ(p.functions[1].points.first(), QPointF(4, 0));
    EXPECT_EQ(p.functions[1].points.last(), QPointF(7, 1));
}

TEST(ProblemFileTest, EachKindOfBadFileGetsOneMessageNamingFileFieldAndFault) {
    struct Case {
        const char* file;
        const char* expected;  // the message after "<path>: "
    };
    const Case cases[] = {
        {"does_not_exist.json", "the file does not exist"},
        {"invalid_json.json", "line 1, column 81: not valid JSON: unterminated array"},
        {"not_an_object.json", "top level: expected an object, found an array"},
        {"missing_field.json", "attributes[1].property: required field is missing"},
        {"wrong_type.json", "scores[1][0]: expected a number, found a string"},
        {"scores_too_few_rows.json", "scores: expected 3 rows (one per alternative), found 2"},
        {"scores_short_row.json", "scores[1]: expected 2 scores (one per attribute), found 1"},
        {"no_attributes.json", "attributes: at least one attribute is needed"},
        {"bad_property.json",
         "attributes[2].property: expected \"cost\" or \"benefit\", found \"big\""},
        {"too_many_points.json", "valueFunctions[0].points: expected 2 to 11 points, found 12"},
        {"points_not_increasing.json",
         "valueFunctions[0].points[2][0]: scores must increase from point to point, found 400 "
         "after 400"},
        {"bad_max_value.json", "maxValue: expected 1 or 100, found 10"},
    };
    for (const Case& c : cases) {
        const QString path = dataFile(c.file);
        const QString message = loadError(path);
        EXPECT_TRUE(message.startsWith(path + QStringLiteral(": ") + QString::fromUtf8(c.expected)))
            << c.file << ": " << message.toStdString();
        EXPECT_FALSE(message.contains(QLatin1Char('\n'))) << c.file;
    }

    // A syntax error is placed by line and column (where reading stopped),
    // counted in characters, not bytes.
    const QString source = QStringLiteral("inline.json");
    const QByteArray broken = "{\n  \"title\": \"Gr\xc3\xbcn\"\n  \"alternatives\": []\n}";
    try {
        parseProblem(broken, source);
        ADD_FAILURE() << "a syntax error is reported";
    } catch (const ProblemFileError& error) {
        EXPECT_TRUE(error.message().startsWith(QStringLiteral("inline.json: line 3, column 4: not valid JSON: ")))
            << error.message().toStdString();
    }
}

// The checks of an earlier value function, each on an otherwise good problem.
TEST(ProblemFileTest, EachFaultOfAnEarlierFunctionIsNamed) {
    const QByteArray head =
        R"({"alternatives": ["A", "B"], "attributes": [{"name": "Rent", "property": "cost"}],
            "scores": [[10], [20]], "valueFunctions": [)";
    const struct {
        const char* function;
        const char* expected;  // the message after "inline.json: "
    } cases[] = {
        {R"({"scoreMinimum": 5, "scoreMaximum": 5})",
         "valueFunctions[0].scoreMaximum: must be greater than scoreMinimum (5), found 5"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "scoreMiddle": 31})",
         "valueFunctions[0].scoreMiddle: expected a score from 0 to 30, found 31"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "technique": 8})",
         "valueFunctions[0].technique: expected a whole number from 0 to 7, found 8"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "type": 0.5})",
         "valueFunctions[0].type: expected a whole number from 0 to 1, found 0.5"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "points": [[0, 1], [30, 1.5]]})",
         "valueFunctions[0].points[1][1]: expected a value from 0 to 1, found 1.5"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "points": [[0, 1], [20, 0]]})",
         "valueFunctions[0].points: the first point must lie at scoreMinimum (0) and the last at "
         "scoreMaximum (30)"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "points": [[0, 1], [30]]})",
         "valueFunctions[0].points[1]: expected [score, value], found 1 numbers"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "parameters": {"e": 1}})",
         "valueFunctions[0].parameters.e: unknown parameter; expected a, b, c or d"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30}, {"scoreMinimum": 0, "scoreMaximum": 30})",
         "valueFunctions: expected 1 functions (one per attribute), found 2"},
    };
    for (const auto& c : cases) {
        QString message;
        try {
            parseProblem(head + c.function + "]}", QStringLiteral("inline.json"));
        } catch (const ProblemFileError& error) {
            message = error.message();
        }
        EXPECT_EQ(message, QStringLiteral("inline.json: ") + QString::fromUtf8(c.expected));
    }
}

// The complete example of docs/problem-format.md is a file the loader takes.
TEST(ProblemFileTest, TheDocumentedExampleLoads) {
    QFile doc(QStringLiteral(KELMAR_DOCS_DIR "/problem-format.md"));
    ASSERT_TRUE(doc.open(QIODevice::ReadOnly));
    const QByteArray text = doc.readAll();
    const qsizetype section = text.indexOf("### A complete example");
    ASSERT_GE(section, 0);
    const qsizetype begin = text.indexOf("```json\n", section);
    const qsizetype end = text.indexOf("```", begin + 8);
    ASSERT_TRUE(begin >= 0 && end > begin);
    const Problem p = parseProblem(text.mid(begin + 8, end - begin - 8), QStringLiteral("example"));
    EXPECT_EQ(p.alternatives.size(), 6);
    ASSERT_EQ(p.attributes.size(), 5);
    ASSERT_EQ(p.functions.size(), 5);
    EXPECT_EQ(p.functions[2].points.size(), 5) << "a range alone gives five linear points";
    EXPECT_EQ(p.functions[2].points.first(), QPointF(30, 1)) << "Commute time is a cost";
    EXPECT_EQ(p.functions[4].points.size(), 4);
}

// The program itself: a bad problem file ends it before any window opens
// or any output is written.
TEST(HostProgramTest, ABadProblemFileEndsWithStatus2OneLineAndNoOutput) {
    QTemporaryDir dir;
    const QString output = dir.filePath(QStringLiteral("results.json"));
    const struct {
        QStringList arguments;
        QString message;
    } cases[] = {
        {{QStringLiteral("--output"), output, dataFile("bad_property.json")},
         dataFile("bad_property.json") +
             QStringLiteral(": attributes[2].property: expected \"cost\" or \"benefit\", found \"big\"\n")},
        {{QStringLiteral("-o"), output, dataFile("scores_short_row.json")},
         dataFile("scores_short_row.json") +
             QStringLiteral(": scores[1]: expected 2 scores (one per attribute), found 1\n")},
        {{dataFile("does_not_exist.json"), QStringLiteral("--output"), output},
         dataFile("does_not_exist.json") + QStringLiteral(": the file does not exist\n")},
    };
    for (const auto& c : cases) {
        QProcess host;
        host.start(QStringLiteral(KELMAR_HOST_PATH), c.arguments);
        ASSERT_TRUE(host.waitForFinished(120000));
        EXPECT_EQ(host.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(host.exitCode(), 2);
        EXPECT_EQ(QString::fromLocal8Bit(host.readAllStandardError()), c.message);
        EXPECT_TRUE(host.readAllStandardOutput().isEmpty());
        EXPECT_FALSE(QFileInfo::exists(output));
    }
}

TEST(SampleProblemTest, IsARealisticConsistentProblemWithEarlierFunctions) {
    const Problem p = sampleProblem();
    EXPECT_GE(p.alternatives.size(), 6);
    EXPECT_GE(p.attributes.size(), 5);
    ASSERT_EQ(p.scores.size(), p.alternatives.size());
    ASSERT_EQ(p.functions.size(), p.attributes.size());
    int costs = 0, curved = 0;
    for (int j = 0; j < p.attributes.size(); ++j) {
        const ValueFunction& f = p.functions[j];
        const bool cost = p.attributes[j].cost;
        costs += cost ? 1 : 0;
        curved += f.type == 1 ? 1 : 0;
        ASSERT_EQ(f.points.size(), 5);
        EXPECT_EQ(f.points.first().x(), f.minimum);
        EXPECT_EQ(f.points.last().x(), f.maximum);
        EXPECT_EQ(cost ? f.points.first().y() : f.points.last().y(), 1.0);
        EXPECT_EQ(cost ? f.points.last().y() : f.points.first().y(), 0.0);
        if (f.type == 1) {
            // Concave: the middle point lies above the straight line.
            EXPECT_GT(f.points[2].y(), 0.5) << p.attributes[j].name.toStdString();
        }
        for (const QVector<double>& row : p.scores) {
            ASSERT_EQ(row.size(), p.attributes.size());
            EXPECT_GE(row[j], f.minimum) << p.attributes[j].name.toStdString();
            EXPECT_LE(row[j], f.maximum) << p.attributes[j].name.toStdString();
        }
    }
    EXPECT_GT(costs, 0);
    EXPECT_LT(costs, p.attributes.size());
    EXPECT_GE(curved, 1);

    // The arrays are ready for TransferData as they are.
    const HostArrays h = toHostArrays(p);
    EXPECT_EQ(h.AltPScore.ubound(1), h.AltNum - 1) << "alternative first, attribute second";
    EXPECT_EQ(h.AltPScore.ubound(2), h.AttNum - 1);
    for (int j = 0; j < h.AttNum; ++j) {
        EXPECT_EQ(h.AltPScore(0, j).toDouble(), p.scores[0][j]);
        EXPECT_LE(h.ScoreMinimum(j).toDouble(), h.ScoreMiddle(j).toDouble());
        EXPECT_LE(h.ScoreMiddle(j).toDouble(), h.ScoreMaximum(j).toDouble());
    }
}

}  // namespace
}  // namespace kelmarhost
