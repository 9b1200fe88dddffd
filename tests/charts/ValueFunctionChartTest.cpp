// The value function chart: the curve it samples and the colours a host's
// chart gives its curves.
#include "../model/ModelFixture.h"
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <kelmar/ValueFunctionChart.h>

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>
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

// CIELAB of a colour as a reader sees it through a colour-vision matrix
// applied to linear RGB (D65 white).
std::array<double, 3> seenLab(const QColor& c, const double (&m)[3][3]) {
    const auto linear = [](double v) {
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    const double in[3] = {linear(c.redF()), linear(c.greenF()), linear(c.blueF())};
    double rgb[3];
    for (int i = 0; i < 3; ++i)
        rgb[i] = std::clamp(m[i][0] * in[0] + m[i][1] * in[1] + m[i][2] * in[2], 0.0, 1.0);
    const double x = (0.4124 * rgb[0] + 0.3576 * rgb[1] + 0.1805 * rgb[2]) / 0.9505;
    const double y = 0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2];
    const double z = (0.0193 * rgb[0] + 0.1192 * rgb[1] + 0.9505 * rgb[2]) / 1.089;
    const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116.0; };
    return {116 * f(y) - 16, 500 * (f(x) - f(y)), 200 * (f(y) - f(z))};
}

double distance(const std::array<double, 3>& a, const std::array<double, 3>& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

// Every two curves of a compared attribute stay clearly apart, and apart
// from the white ground, for normal sight and for readers who confuse red
// and green (full protanopia and deuteranopia).
TEST(CurveColorTest, CurvesStayApartForReadersWhoConfuseRedAndGreen) {
    const struct { const char* sight; double m[3][3]; } sights[] = {
        {"normal", {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
        {"protanopia", {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216},
                        {-0.003882, -0.048116, 1.051998}}},
        {"deuteranopia", {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413},
                          {-0.011820, 0.042940, 0.968881}}},
    };
    constexpr std::size_t kCompared = 6;
    EXPECT_EQ(ValueFunctionChart::curveColor(0), QColor(0, 0, 255)) << "the wizard's own blue first";
    // Never a strong red beside a strong green, however far apart their
    // lightness puts them.
    const auto hueIn = [](const QColor& c, int from, int to) {
        const int h = c.hsvHue();
        return c.hsvSaturationF() > 0.5 && (from <= to ? h >= from && h <= to : h >= from || h <= to);
    };
    bool red = false, green = false;
    for (std::size_t i = 0; i < kCompared; ++i) {
        red = red || hueIn(ValueFunctionChart::curveColor(i), 340, 20);
        green = green || hueIn(ValueFunctionChart::curveColor(i), 75, 165);
    }
    EXPECT_FALSE(red && green);
    for (const auto& s : sights) {
        const auto white = seenLab(Qt::white, s.m);
        for (std::size_t i = 0; i < kCompared; ++i) {
            const auto a = seenLab(ValueFunctionChart::curveColor(i), s.m);
            EXPECT_GT(distance(a, white), 30.0) << s.sight << " " << i;
            for (std::size_t j = i + 1; j < kCompared; ++j)
                EXPECT_GT(distance(a, seenLab(ValueFunctionChart::curveColor(j), s.m)), 15.0)
                    << s.sight << " " << i << " " << j;
        }
    }
}

}  // namespace
}  // namespace kelmar::test
