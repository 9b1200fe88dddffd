// The value function chart: the curve it samples.
#include "../model/ModelFixture.h"
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <algorithm>
#include <vector>

namespace kelmar::test {
namespace {

TEST_F(ModelTest, TheValueFunctionChartDrawsTheCurveAsOnePolylineCutToTheBox) {
    const struct { std::vector<double> x, y; bool overshoots; } cases[] = {
        {{10, 20, 30, 40, 50}, {0, 0.25, 0.5, 0.75, 1}, false},
        // Rising steeply to a plateau and falling back again bulges beyond
        // 0 .. 1 between the points.
        {{0, 10, 20, 30, 40, 50, 60}, {0, 0.9, 1, 0.2, 1, 0.1, 0}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.x.size());
        DrawSurface pic;
        pic.setDesignSize({520, 320});
        pic.resize(520, 320);
        setRange(1, c.x.front(), c.x.back());
        setCurve(1, c.x, c.y, kDirectRating);
        I16 att = 1, maxVal = 1;
        DrawVFChart(pic, att, maxVal);
        std::vector<DrawPrimitive> segments;
        std::copy_if(pic.primitives().begin(), pic.primitives().end(), std::back_inserter(segments),
                     [](const DrawPrimitive& p) { return p.kind == DrawPrimitive::Kind::Line && p.width == 2; });
        ASSERT_EQ(segments.size(), 32u);
        Curve unclipped(c.x, c.y);
        int cut = 0;
        for (std::size_t k = 0; k <= 32; ++k) {
            const QPointF drawn = k == 0 ? segments[0].p1 : segments[k - 1].p2;
            EXPECT_TRUE(k == 0 || k == 32 || segments[k].p1 == drawn) << k;  // unbroken
            EXPECT_TRUE(k == 32 || segments[k].color == qbColor(9)) << k;
            const double x = c.x.front() + (c.x.back() - c.x.front()) * static_cast<double>(k) / 32;
            const double v = 100.0 * static_cast<float>(unclipped.at(x));
            cut += v < 0.0 || v > 100.0;
            EXPECT_NEAR(drawn.x(), 100.0 * static_cast<double>(k) / 32, 1e-9) << k;
            EXPECT_NEAR(drawn.y(), std::clamp(v, 0.0, 100.0), 1e-9) << k;
        }
        EXPECT_EQ(cut > 0, c.overshoots);
    }
}

}  // namespace
}  // namespace kelmar::test
