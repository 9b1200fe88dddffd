// Alternatives' values on Finish: the ends and beyond them, and the faults.
// (Every cell of a whole table is valued on each page's Finish in the page
// tests.)
#include "ModelFixture.h"

namespace kelmar::test {
namespace {

class AlternativeValues : public ModelTest {
protected:
    void SetUp() override {
        ModelTest::SetUp();
        w().MaxVal = 100;
    }

    double valueOf(int att, double score) {
        w().AltPScore(0, att) = score;
        I16 a = 0, b = static_cast<I16>(att);
        ComputeAlternativeValue(a, b, w().MaxVal);
        return w().AttVData(0, att).toDouble();
    }
};

TEST_F(AlternativeValues, ScoresAtAndBeyondTheEndsGetTheEndsValuesExactly) {
    // Curves whose extended end cubics turn back before they leave the value
    // range, a linear function on an uneven range and a cost curve.
    const struct { const char* what; std::vector<double> x, y; bool cost;
                   std::vector<double> scores; double expected; } cases[] = {
        {"benefit, beyond the best end", {0, 10, 20}, {0, 0.9, 1}, false, {20, 30, 60, 200}, 100},
        {"benefit, beyond the worst end", {0, 10, 20}, {0, 0.9, 1}, false, {0, -10, -1e6}, 0},
        {"cost, beyond the worst end", {0, 10, 20}, {1, 0.1, 0}, true, {20, 30, 60, 200}, 0},
        {"cost, beyond the best end", {0, 10, 20}, {1, 0.1, 0}, true, {0, -5, -1e300}, 100},
        {"cost, four points", {0, 20, 50, 100}, {1, 0.6, 0.3, 0}, true, {100, 101, 150, 400}, 0},
        {"linear", {0.3, 0.475, 0.65, 0.825, 1.0}, {0, 0.25, 0.5, 0.75, 1}, false, {1.0, 7.0}, 100},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        w().AttPropertyCopy(1) = I16(c.cost ? 1 : 0);
        setCurve(1, c.x, c.y, kDirectRating);
        for (double score : c.scores) EXPECT_EQ(valueOf(1, score), c.expected) << score;
    }
}

TEST_F(AlternativeValues, FaultsRaiseTheirErrorNumbers) {
    setCurve(1, {0, 20, 50, 100}, {1, 0.6, 0.3, 0}, kDirectRating);
    I16 alt = 0, att = 1;
    w().AltPScore(0, 1) = QStringLiteral("n/a");
    EXPECT_EQ(errorNumber([&] { ComputeAlternativeValue(alt, att, w().MaxVal); }), RuntimeError::TypeMismatch);
    w().AltPScore(0, 1) = 50.0;
    for (const Variant& size : {Variant(), Variant(I16(0)), Variant(I16(12))}) {
        w().SmpSize(1) = size;
        EXPECT_EQ(errorNumber([&] { ComputeAlternativeValue(alt, att, w().MaxVal); }),
                  RuntimeError::SubscriptOutOfRange);
    }
}

}  // namespace
}  // namespace kelmar::test
