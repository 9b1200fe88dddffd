// The category points: keeping, moving and carrying over points, the
// orientation entry and ranges too narrow for a ladder.
#include "ModelFixture.h"

#include "model/CategoryLadder.h"

#include <vector>

namespace kelmar::test {
namespace {

class CategoryTest : public ModelTest {
protected:
    void SetUp() override {
        ModelTest::SetUp();
        w().SelTechnique = kCategoryIdentification;
        w().CategoryCount = 7;
        w().CategoryFactor = 1.0f;
        setRange(0, 0.0, 64.0);
    }
    static void prepare() {
        I16 att = 0;
        PrepareCategoryPoints(att);
    }
    // The attribute's scores (0) or values (1).
    static std::vector<double> points(int which) {
        std::vector<double> out;
        for (int k = 0; k < w().SmpSize(0).toInteger(); ++k) out.push_back(which == 0 ? smpX(0, k) : smpY(0, k));
        return out;
    }
};

TEST_F(CategoryTest, OwnPointsKeepTheirValuesAndMoveWhenTheOrientationChanged) {
    setCurve(0, {0, 2, 4, 8, 16, 32, 64}, {0, 0.3, 0.5, 0.6, 0.7, 0.9, 1}, kCategoryIdentification);
    prepare();
    EXPECT_EQ(points(1), (std::vector<double>{0, 0.3, 0.5, 0.6, 0.7, 0.9, 1}));

    // The other orientation: new scores, values read off the same curve.
    SetCategoryMaxToMin(0, true);
    prepare();
    EXPECT_EQ(points(0), (std::vector<double>{0, 32, 48, 56, 60, 62, 64}));
    EXPECT_DOUBLE_EQ(smpY(0, 1), 0.9);
    // The curve rises above 1 beyond 32: those levels are cut to 1.
    for (int k = 2; k < 7; ++k) EXPECT_EQ(smpY(0, k), 1.0) << k;
}

TEST_F(CategoryTest, OnlyTrueInTheOrientationEntryMeansFromTheMaximum) {
    const struct { Variant entry; bool maxToMin; } entries[] = {
        {Variant(true), true}, {Variant(I16(-1)), true}, {Variant(-1.0), true},
        {Variant(false), false}, {Variant(), false}, {Variant(1.0), false},
        {Variant(QStringLiteral("True")), false}};
    for (const auto& e : entries) {
        w().SmpY(0, 10) = e.entry;
        EXPECT_EQ(CategoryMaxToMin(0), e.maxToMin) << e.entry.toString().toStdString();
    }
}

TEST_F(CategoryTest, ARangeTooNarrowForTheLadderIsSpreadEvenlyOrRefused) {
    // Near 4e15 the doubles are 0.5 apart: levels 0 and 1 (0.125 and 0.25
    // above the minimum) meet it, so the points are spread evenly.
    setRange(0, 4e15, 4e15 + 8.0);
    prepare();
    const std::vector<double> s = points(0);
    for (std::size_t k = 1; k < s.size(); ++k) EXPECT_GT(s[k], s[k - 1]) << k;
    EXPECT_EQ(s.back(), 4e15 + 8.0);

    setRange(0, 5.0, 5.0);
    w().SmpSize(0) = I16(0);
    EXPECT_EQ(errorNumber([] { prepare(); }), RuntimeError::DivisionByZero);
}

}  // namespace
}  // namespace kelmar::test
