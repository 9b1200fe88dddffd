// The value function chart shades the stretches where the curve it draws
// turns back.
#include "../model/ModelFixture.h"
#include "charts/DrawSurface.h"
#include "charts/TurnBacks.h"
#include "charts/mdVFGraphs.h"

#include <algorithm>
#include <vector>

namespace kelmar::test {
namespace {

TEST_F(ModelTest, TheChartShadesWhereTheCurveThroughThePointsTurnsBack) {
    // Five points on 0 .. 100; the chart draws the curve at steps of 3.125.
    const struct { const char* what; std::vector<double> y; bool cost; std::vector<double> stretches; } cases[] = {
        {"even steps", {0, 0.25, 0.5, 0.75, 1}, false, {}},
        {"a point out of order", {0, 0.6, 0.4, 0.75, 1}, false, {25, 46.875}},
        // In order, yet the curve overshoots the close pair and comes back.
        {"two close points high up", {0, 0.1, 0.9, 0.91, 1}, false, {56.25, 68.75}},
        {"the same on a cost attribute", {1, 0.9, 0.1, 0.09, 0}, true, {56.25, 68.75}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        setRange(1, 0, 100);
        setCurve(1, {0, 25, 50, 75, 100}, c.y, kDirectRating);
        w().AttPropertyCopy(1) = I16(c.cost ? 1 : 0);
        std::vector<double> found;
        for (const TurnBack& t : DrawnTurnBacks(1)) found.insert(found.end(), {t.from, t.to});
        EXPECT_EQ(found, c.stretches);

        // The shading lies under the curve, across the whole box.
        DrawSurface pic;
        I16 att = 1, maxVal = 1;
        DrawVFChart(pic, att, maxVal);
        const auto& drawn = pic.primitives();
        const auto curve = std::find_if(drawn.begin(), drawn.end(), [](const DrawPrimitive& p) {
            return p.kind == DrawPrimitive::Kind::Line && p.width == 2;
        });
        std::vector<double> shaded;
        for (auto p = drawn.begin(); p != curve; ++p)
            if (p->kind == DrawPrimitive::Kind::FilledBox && p->p1.y() == 0 && p->p2.y() == 100)
                shaded.insert(shaded.end(), {p->p1.x(), p->p2.x()});
        EXPECT_EQ(shaded, c.stretches);
    }
}

}  // namespace
}  // namespace kelmar::test
