// Reading problem files, and the arrays the host hands to the component.
#include "ProblemFile.h"
#include "SampleProblem.h"

#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

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

QString parseError(const QString& json) {
    try {
        parseProblem(json.toUtf8(), QStringLiteral("p.json"));
    } catch (const ProblemFileError& error) {
        return error.message();
    }
    return {};
}

TEST(ProblemFileTest, AGoodFileIsReadCompletely) {
    const Problem p = loadProblemFile(dataFile("good.json"));
    EXPECT_EQ(p.title, QStringLiteral("Commuter car"));
    EXPECT_EQ(p.helpDirectory, QStringLiteral("/opt/quarn"));
    EXPECT_EQ(p.methodCode, 3);
    EXPECT_EQ(p.maxValue, 1);
    EXPECT_EQ(p.alternatives, (QStringList{QStringLiteral("Hatchback"), QStringLiteral("Estate"),
                                           QStringLiteral("Hybrid")}));
    ASSERT_EQ(p.attributes.size(), 2);
    EXPECT_TRUE(p.attributes[0].cost);
    EXPECT_FALSE(p.attributes[1].cost);
    EXPECT_EQ(p.attributes[1].definition, QStringLiteral("Boot volume in litres"));
    EXPECT_EQ(p.scores[2][0], 27500.0);
    EXPECT_EQ(p.scores[1][1], 600.0);

    ASSERT_EQ(p.functions.size(), 2);
    const ValueFunction& price = p.functions[0];
    EXPECT_EQ(price.minimum, 15000.0);
    EXPECT_EQ(price.middle, 21000.0);
    EXPECT_EQ(price.maximum, 30000.0);
    EXPECT_EQ(price.technique, 2);
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
    EXPECT_EQ(boot.points[2], QPointF(500, 0.5));
    EXPECT_EQ(boot.points[4], QPointF(700, 1));
}

TEST(ProblemFileTest, WithoutFunctionsEveryAttributeIsLinearOnItsObservedScores) {
    const Problem p = loadProblemFile(dataFile("no_functions.json"));
    EXPECT_EQ(p.maxValue, 100);
    EXPECT_EQ(p.methodCode, 1);
    ASSERT_EQ(p.functions.size(), 2);
    const ValueFunction& travel = p.functions[0];
    EXPECT_EQ(travel.minimum, 20.0);
    EXPECT_EQ(travel.maximum, 55.0);
    EXPECT_EQ(travel.technique, 1);
    EXPECT_EQ(travel.type, 0);
    ASSERT_EQ(travel.points.size(), 5);
    EXPECT_EQ(travel.points.first(), QPointF(20, 1)) << "cost: the least is the best";
    EXPECT_EQ(travel.points.last(), QPointF(55, 0));
    EXPECT_EQ(p.functions[1].points.first(), QPointF(4, 0));
    EXPECT_EQ(p.functions[1].points.last(), QPointF(7, 1));

    // An attribute on which every alternative scores the same still gets a
    // range the wizard can work with.
    const Problem flat = parseProblem(
        R"({"alternatives": ["A", "B"], "attributes": [{"name": "X", "property": "benefit"}],
            "scores": [[7], [7]]})",
        QStringLiteral("p.json"));
    EXPECT_EQ(flat.functions[0].minimum, 7.0);
    EXPECT_GT(flat.functions[0].maximum, 7.0);
}

TEST(ProblemFileTest, EachKindOfBadFileGetsOneMessageNamingFileFieldAndFault) {
    struct Case {
        const char* file;
        const char* expected;  // the message after "<path>: "
    };
    const Case cases[] = {
        {"does_not_exist.json", "the file does not exist"},
        {"invalid_json.json", "not valid JSON at character"},
        {"not_an_object.json", "the top level must be a JSON object"},
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
}

TEST(ProblemFileTest, RulesOfTheValueFunctionFields) {
    const QString head = QStringLiteral(
        R"({"alternatives": ["A"], "attributes": [{"name": "X", "property": "cost"}],
            "scores": [[1]], "valueFunctions": [)");
    const auto withFunction = [&](const char* function) {
        return parseError(head + QString::fromUtf8(function) + QStringLiteral("]}"));
    };
    EXPECT_EQ(withFunction(R"({"scoreMinimum": 0})"),
              QStringLiteral("p.json: valueFunctions[0].scoreMaximum: required field is missing"));
    EXPECT_TRUE(withFunction(R"({"scoreMinimum": 5, "scoreMaximum": 5})")
                    .startsWith(QStringLiteral("p.json: valueFunctions[0].scoreMaximum: must be "
                                               "greater than scoreMinimum")));
    EXPECT_TRUE(withFunction(R"({"scoreMinimum": 0, "scoreMaximum": 5, "scoreMiddle": 6})")
                    .contains(QStringLiteral("valueFunctions[0].scoreMiddle: expected a score "
                                             "from 0 to 5, found 6")));
    EXPECT_TRUE(withFunction(R"({"scoreMinimum": 0, "scoreMaximum": 5, "technique": 8})")
                    .contains(QStringLiteral("valueFunctions[0].technique: expected a whole "
                                             "number from 0 to 7, found 8")));
    EXPECT_TRUE(withFunction(R"({"scoreMinimum": 0, "scoreMaximum": 5, "type": 2})")
                    .contains(QStringLiteral("valueFunctions[0].type:")));
    EXPECT_TRUE(withFunction(R"({"scoreMinimum": 0, "scoreMaximum": 5, "points": [[0, 1]]})")
                    .contains(QStringLiteral("expected 2 to 11 points, found 1")));
    EXPECT_TRUE(
        withFunction(R"({"scoreMinimum": 0, "scoreMaximum": 5, "points": [[0, 1], [4, 0]]})")
            .contains(QStringLiteral("the last at scoreMaximum (5)")));
    EXPECT_TRUE(
        withFunction(R"({"scoreMinimum": 0, "scoreMaximum": 5, "points": [[0, 1], [5, 1.5]]})")
            .contains(QStringLiteral("points[1][1]: expected a value from 0 to 1, found 1.5")));
    EXPECT_TRUE(withFunction(R"({"scoreMinimum": 0, "scoreMaximum": 5, "parameters": {"e": 1}})")
                    .contains(QStringLiteral("valueFunctions[0].parameters.e: unknown parameter")));
    EXPECT_TRUE(parseError(head + QStringLiteral("]}"))
                    .contains(QStringLiteral("valueFunctions: expected 1 functions (one per "
                                             "attribute), found 0")));
    EXPECT_TRUE(withFunction(R"({"scoreMinimum": 0, "scoreMaximum": 5})").isEmpty());
}

TEST(ProblemFileTest, RulesOfTheProblemFields) {
    EXPECT_TRUE(parseError(R"({"alternatives": [], "attributes": [], "scores": []})")
                    .contains(QStringLiteral("alternatives: at least one alternative is needed")));
    EXPECT_TRUE(parseError(R"({"alternatives": ["A", " "],
                               "attributes": [{"name": "X", "property": "cost"}],
                               "scores": [[1], [2]]})")
                    .contains(QStringLiteral("alternatives[1]: a name must not be empty")));
    EXPECT_TRUE(parseError(R"({"alternatives": ["A"], "attributes": [{"property": "cost"}],
                               "scores": [[1]]})")
                    .contains(QStringLiteral("attributes[0].name: required field is missing")));
    EXPECT_TRUE(parseError(R"({"alternatives": "A", "attributes": [], "scores": []})")
                    .contains(QStringLiteral("alternatives: expected an array, found a string")));
    EXPECT_TRUE(parseError(R"({"alternatives": ["A"], "attributes": [{"name": "X",
                               "property": "cost"}], "scores": [[1]], "methodCode": 1.5})")
                    .contains(QStringLiteral("methodCode: expected a whole number")));
}

TEST(HostArraysTest, TheArraysHaveTheComponentsShapesAndReachTheWizardData) {
    const Problem p = loadProblemFile(dataFile("good.json"));
    HostArrays h = toHostArrays(p);
    EXPECT_EQ(h.AltNum, 3);
    EXPECT_EQ(h.AttNum, 2);
    EXPECT_EQ(h.SelMCDAMethod, 3);
    EXPECT_EQ(h.MaxVal, 1);
    EXPECT_EQ(h.AltPScore.ubound(1), 2);
    EXPECT_EQ(h.AltPScore.ubound(2), 1);
    EXPECT_EQ(h.AltPScore(2, 0).toDouble(), 27500.0) << "alternative first, attribute second";
    EXPECT_EQ(h.SmpX.ubound(1), 1) << "sample points are attribute first";
    EXPECT_EQ(h.SmpX.ubound(2), 10);
    EXPECT_TRUE(h.AttProperty(0).isNumeric());
    EXPECT_EQ(h.AttProperty(0).toInteger(), 1) << "cost";
    EXPECT_EQ(h.AttProperty(1).toInteger(), 0) << "benefit";
    EXPECT_EQ(h.SmpSize(0).toInteger(), 3);
    EXPECT_EQ(h.SmpX(0, 1).toDouble(), 21000.0);
    EXPECT_EQ(h.SmpY(0, 1).toDouble(), 0.7);
    EXPECT_EQ(h.SmpX(0, 3).toDouble(), 0.0) << "unused points are zero";
    EXPECT_EQ(h.VFunParD(0).toDouble(), -2.0);
    EXPECT_EQ(h.VFunType(0).toInteger(), 1);
    EXPECT_EQ(h.VFTechniqueID(1).toInteger(), 1);

    kelmar::wizardData() = {};
    kelmar::KelmarDll dll;
    transferProblem(dll, h);
    const kelmar::WizardData& w = kelmar::wizardData();
    EXPECT_EQ(w.QUARNDir, QStringLiteral("/opt/quarn"));
    EXPECT_EQ(w.AltNum, 3);
    EXPECT_EQ(w.AttNum, 2);
    EXPECT_EQ(w.AltPScore(1, 1).toDouble(), 600.0);
    EXPECT_EQ(w.AttName(1).toString(), QStringLiteral("Boot"));
    EXPECT_EQ(w.InScoreMaximum(0).toDouble(), 30000.0);
    EXPECT_EQ(w.SmpX(0, 2).toDouble(), 30000.0);
    EXPECT_EQ(w.InMaxVal, 1);
    kelmar::wizardData() = {};
}

TEST(SampleProblemTest, IsARealisticConsistentProblemWithEarlierFunctions) {
    const Problem p = sampleProblem();
    EXPECT_GE(p.alternatives.size(), 6);
    EXPECT_GE(p.attributes.size(), 5);
    EXPECT_EQ(p.maxValue, 100);
    EXPECT_EQ(p.methodCode, 1);
    ASSERT_EQ(p.scores.size(), p.alternatives.size());
    ASSERT_EQ(p.functions.size(), p.attributes.size());
    int costs = 0, curved = 0;
    for (int j = 0; j < p.attributes.size(); ++j) {
        const ValueFunction& f = p.functions[j];
        const bool cost = p.attributes[j].cost;
        costs += cost ? 1 : 0;
        curved += f.type == 1 ? 1 : 0;
        EXPECT_TRUE(f.type == 0 || f.type == 1);
        EXPECT_FALSE(p.attributes[j].definition.isEmpty());
        ASSERT_EQ(f.points.size(), 5);
        EXPECT_EQ(f.points.first().x(), f.minimum);
        EXPECT_EQ(f.points.last().x(), f.maximum);
        EXPECT_EQ(cost ? f.points.first().y() : f.points.last().y(), 1.0);
        EXPECT_EQ(cost ? f.points.last().y() : f.points.first().y(), 0.0);
        if (f.type == 1) {
            // Concave: the middle point lies above the straight line.
            const double linear = 0.5;
            EXPECT_GT(f.points[2].y(), linear) << p.attributes[j].name.toStdString();
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
    EXPECT_LE(curved, 2);

    // The arrays are ready for TransferData as they are.
    const HostArrays h = toHostArrays(p);
    EXPECT_EQ(h.AltNum, p.alternatives.size());
    EXPECT_EQ(h.AttNum, p.attributes.size());
    EXPECT_EQ(h.AltPScore.ubound(1), h.AltNum - 1);
    EXPECT_EQ(h.AltPScore.ubound(2), h.AttNum - 1);
    EXPECT_EQ(h.AttName.ubound(), h.AttNum - 1);
    EXPECT_EQ(h.SmpY.ubound(1), h.AttNum - 1);
    for (int j = 0; j < h.AttNum; ++j) {
        for (int i = 0; i < h.AltNum; ++i) {
            const double score = h.AltPScore(i, j).toDouble();
            EXPECT_GE(score, h.ScoreMinimum(j).toDouble());
            EXPECT_LE(score, h.ScoreMaximum(j).toDouble());
        }
        EXPECT_LE(h.ScoreMinimum(j).toDouble(), h.ScoreMiddle(j).toDouble());
        EXPECT_LE(h.ScoreMiddle(j).toDouble(), h.ScoreMaximum(j).toDouble());
    }
}

}  // namespace
}  // namespace kelmarhost
