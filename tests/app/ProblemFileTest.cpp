// Reading problem files, and the sample problem the host offers.
#include "HostTestData.h"
#include "ProblemFile.h"


#include <functional>
#include <string>
#include <tuple>
#include <vector>

namespace kelmarhost {
namespace {

std::string faultOf(const std::function<void()>& read) {
    try {
        read();
    } catch (const ProblemFileError& error) {
        return error.message().toStdString();
    }
    return {};
}

TEST(ProblemFileTest, GoodFilesAreReadAndFunctionsGivenByRangeOrNotAtAllAreStraightLines) {
    const Problem p = loadProblemFile(dataFile("good.json"));
    EXPECT_EQ(p.methodCode, 3);
    ASSERT_EQ(p.functions.size(), 2);
    EXPECT_TRUE(p.attributes[0].cost && !p.attributes[1].cost);
    EXPECT_EQ(p.scores[2][0], 27500.0) << "a row per alternative";
    const ValueFunction& price = p.functions[0];
    EXPECT_EQ(std::make_tuple(price.middle, price.type, price.technique), std::make_tuple(21000.0, 1, 2));
    ASSERT_EQ(price.points.size(), 3);
    EXPECT_EQ(price.points[1], QPointF(21000, 0.7));
    std::vector<double> parameters;
    for (const kelmar::Variant& v : price.parameters) parameters.push_back(v.toDouble());
    EXPECT_EQ(parameters, (std::vector<double>{1.5, 0, 0, -2})) << "a parameter left out is 0";
    EXPECT_EQ(std::make_pair(p.functions[1].middle, p.functions[1].technique), std::make_pair(500.0, 1))
        << "a range alone: the middle in the centre, Direct Rating";
    EXPECT_EQ(loadProblemFile(dataFile("no_functions.json")).maxValue, 100);

    // Five evenly spaced points on the range or the observed scores, falling
    // for a cost.
    const struct { const char* file; int attribute; QPointF first, last; } lines[] = {
        {"good.json", 1, {300, 0}, {700, 1}},
        {"no_functions.json", 0, {20, 1}, {55, 0}},
        {"no_functions.json", 1, {4, 0}, {7, 1}},
    };
    for (const auto& l : lines) {
        const ValueFunction f = loadProblemFile(dataFile(l.file)).functions.value(l.attribute);
        ASSERT_EQ(f.points.size(), 5) << l.file << " " << l.attribute;
        EXPECT_EQ(f.points.first(), l.first) << l.file << " " << l.attribute;
        EXPECT_EQ(f.points.last(), l.last) << l.file << " " << l.attribute;
    }
}

// Each kind of bad file gets one line naming the file, the field and the fault.
TEST(ProblemFileTest, EachFaultOfAFileIsNamed) {
    const struct { const char* file; const char* expected; } files[] = {
        {"does_not_exist.json", "the file does not exist"},
        {"invalid_json.json", "line 1, column 81: not valid JSON: unterminated array"},
        {"not_an_object.json", "top level: expected an object, found an array"},
        {"missing_field.json", "attributes[1].property: required field is missing"},
        {"wrong_type.json", "scores[1][0]: expected a number, found a string"},
        {"scores_too_few_rows.json", "scores: expected 3 rows (one per alternative), found 2"},
        {"scores_short_row.json", "scores[1]: expected 2 scores (one per attribute), found 1"},
        {"bad_property.json", "attributes[2].property: expected \"cost\" or \"benefit\", found \"big\""},
        {"too_many_points.json", "valueFunctions[0].points: expected 2 to 11 points, found 12"},
        {"points_not_increasing.json",
         "valueFunctions[0].points[2][0]: scores must increase from point to point, found 400 "
         "after 400"},
        {"bad_max_value.json", "maxValue: expected 1 or 100, found 10"},
    };
    for (const auto& c : files) {
        const QString path = dataFile(c.file);
        EXPECT_EQ(faultOf([&] { loadProblemFile(path); }), path.toStdString() + ": " + c.expected);
    }

    // The faults of an earlier value function, each on an otherwise good
    // problem; a syntax error is placed in characters, not bytes.
    const QByteArray head =
        R"({"alternatives": ["A", "B"], "attributes": [{"name": "Rent", "property": "cost"}],
            "scores": [[10], [20]], "valueFunctions": [)";
    const struct { const char* function; const char* expected; } functions[] = {
        {R"({"scoreMinimum": 5, "scoreMaximum": 5})",
         "valueFunctions[0].scoreMaximum: must be greater than scoreMinimum (5), found 5"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "categoryOrder": "up"})",
         "valueFunctions[0].categoryOrder: expected \"fromMaximum\" or \"fromMinimum\", found \"up\""},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "technique": 8})",
         "valueFunctions[0].technique: expected a whole number from 0 to 7, found 8"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "type": 0.5})",
         "valueFunctions[0].type: expected a whole number from -32768 to 32767, found 0.5"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "points": [[0, 1], [30, 1.5]]})",
         "valueFunctions[0].points[1][1]: expected a value from 0 to 1, found 1.5"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "points": [[0, 1], [20, 0]]})",
         "valueFunctions[0].points: the first point must lie at scoreMinimum (0) and the last at "
         "scoreMaximum (30)"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "parameters": {"e": 1}})",
         "valueFunctions[0].parameters.e: unknown parameter; expected a, b, c or d"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30}, {"scoreMinimum": 0, "scoreMaximum": 30})",
         "valueFunctions: expected 1 functions (one per attribute), found 2"},
        {"{\"scoreMinimum\": \"Gr\xc3\xbcn\" \"scoreMaximum\": 30}", "line 2, column 81: not valid JSON: unterminated object"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "point": []})",
         "valueFunctions[0].point: unknown field; did you mean \"points\"?"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "a\nb": 1})", "valueFunctions[0].a\\nb: unknown field"},
        {R"({"scoreMinimum": 15, "scoreMaximum": 30})",
         "valueFunctions[0].scoreMinimum: the range 15 to 30 must hold every alternative's score; scores[0][0] is 10"},
        {R"({"scoreMinimum": -1e39, "scoreMaximum": 30})",
         "valueFunctions[0].scoreMinimum: expected a score from -1e+38 to 1e+38 (a range must fit single precision), found -1e+39"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30, "points": [[0, 1], [1e-300, 0.5], [30, 0]]})",
         "valueFunctions[0].points: the curve through these points cannot be computed (Overflow)"},
        {R"({"scoreMinimum": 0, "scoreMaximum": 30}], "valuefunctions": [)",
         "valuefunctions: unknown field; did you mean \"valueFunctions\"?"},
    };
    for (const auto& c : functions) {
        EXPECT_EQ(faultOf([&] { parseProblem(head + c.function + "]}", QStringLiteral("inline.json")); }),
                  std::string("inline.json: ") + c.expected);
    }
}

}  // namespace
}  // namespace kelmarhost
