// The value function chart: the curve it samples, its title and its labels.
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <kelmar/mdKelMain.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kelmar {
namespace {

using I16 = std::int16_t;
using Kind = DrawPrimitive::Kind;

class ValueFunctionChart : public ::testing::Test {
protected:
    void SetUp() override {
        WizardData& w = wizardData();
        w = WizardData{};
        w.AttNum = 2;
        for (VariantArray* a : {&w.AttName, &w.ScoreMinimum, &w.ScoreMaximum, &w.SmpSize})
            a->redim(0, 1);
        w.SmpX.redim(0, 1, 0, 10);
        w.SmpY.redim(0, 1, 0, 10);
        w.AttName(0) = QStringLiteral("Cost");
        w.AttName(1) = QStringLiteral("Other");
        pic.setDesignSize({520, 320});
        pic.resize(520, 320);
    }

    // Draws attribute att's chart from its points; the range is their
    // first and last score.
    void draw(I16 att, const std::vector<double>& xs, const std::vector<double>& ys) {
        WizardData& w = wizardData();
        w.SmpSize(att) = static_cast<I16>(xs.size());
        w.ScoreMinimum(att) = xs.front();
        w.ScoreMaximum(att) = xs.back();
        for (std::size_t k = 0; k < xs.size(); ++k) {
            w.SmpX(att, static_cast<int>(k)) = xs[k];
            w.SmpY(att, static_cast<int>(k)) = ys[k];
        }
        I16 maxVal = 1;
        DrawVFChart(pic, att, maxVal);
    }

    std::vector<DrawPrimitive> only(bool (*keep)(const DrawPrimitive&)) const {
        std::vector<DrawPrimitive> out;
        for (const DrawPrimitive& p : pic.primitives())
            if (keep(p)) out.push_back(p);
        return out;
    }
    std::vector<DrawPrimitive> curve() const {
        return only([](const DrawPrimitive& p) { return p.kind == Kind::Line && p.width == 2; });
    }
    std::vector<DrawPrimitive> texts() const {
        return only([](const DrawPrimitive& p) { return p.kind == Kind::Text; });
    }

    DrawSurface pic;
};

TEST_F(ValueFunctionChart, DrawsALinearFunctionAsAStraightDiagonal) {
    draw(0, {10, 20, 30, 40, 50}, {0, 0.25, 0.5, 0.75, 1});
    const std::vector<DrawPrimitive> segments = curve();
    ASSERT_EQ(segments.size(), 32u);
    for (std::size_t k = 0; k < segments.size(); ++k) {
        const DrawPrimitive& s = segments[k];
        EXPECT_EQ(s.color, qbColor(9));
        EXPECT_NEAR(s.p1.x(), 100.0 * k / 32, 1e-9);
        EXPECT_NEAR(s.p2.x(), 100.0 * (k + 1) / 32, 1e-9);
        EXPECT_NEAR(s.p1.y(), s.p1.x(), 1e-4) << k;
        EXPECT_NEAR(s.p2.y(), s.p2.x(), 1e-4) << k;
        if (k > 0) {
            EXPECT_EQ(s.p1, segments[k - 1].p2);  // one unbroken polyline
        }
    }
    EXPECT_DOUBLE_EQ(segments.front().p1.y(), 0.0);
    EXPECT_DOUBLE_EQ(segments.back().p2.y(), 100.0);
}

TEST_F(ValueFunctionChart, ClipsAnOvershootingCurveToTheBox) {
    // A curve that rises steeply to a plateau and falls back again bulges
    // beyond 0..1 between the points.
    const std::vector<double> xs{0, 10, 20, 30, 40, 50, 60};
    const std::vector<double> ys{0, 0.9, 1, 0.2, 1, 0.1, 0};
    draw(1, xs, ys);
    const std::vector<DrawPrimitive> segments = curve();
    ASSERT_EQ(segments.size(), 32u);

    // The unclipped curve at the same scores.
    VariantArray X(0, 6), Y(0, 6), out(0, 4);
    for (int k = 0; k < 7; ++k) {
        X(k) = xs[static_cast<std::size_t>(k)];
        Y(k) = ys[static_cast<std::size_t>(k)];
    }
    I16 n = 7, evaluate = -1;
    int above = 0;
    for (std::size_t k = 0; k <= 32; ++k) {
        double x = 60.0 * static_cast<double>(k) / 32;
        AkimaInterpolate(X, Y, n, evaluate, x, out);
        const double v = out(4).toDouble();
        const double drawn = k == 0 ? segments[0].p1.y() : segments[k - 1].p2.y();
        if (v > 1.0) {
            ++above;
            EXPECT_DOUBLE_EQ(drawn, 100.0) << k;
        } else if (v < 0.0) {
            EXPECT_DOUBLE_EQ(drawn, 0.0) << k;
        } else {
            EXPECT_NEAR(drawn, 100.0 * static_cast<float>(v), 1e-9) << k;
        }
    }
    EXPECT_GT(above, 0) << "the test curve must overshoot";
}

TEST_F(ValueFunctionChart, TitleShowsTheTrimmedName) {
    wizardData().AttName(0) = QStringLiteral("   Annual cost  ");
    draw(0, {0, 50, 100}, {0, 0.5, 1});
    const std::vector<DrawPrimitive> t = texts();
    ASSERT_FALSE(t.empty());
    EXPECT_EQ(t.front().text, QStringLiteral("Value Function Curve on Annual cost"));
    EXPECT_TRUE(t.front().bold);
}

TEST_F(ValueFunctionChart, ScoreLabelsAreWholeWhereTheTickIsWhole) {
    draw(0, {0, 3200}, {0, 1});
    std::vector<QString> labels;  // those hanging below the score axis
    for (const DrawPrimitive& p : texts())
        if (p.p1.y() < 0) labels.push_back(p.text);
    ASSERT_GE(labels.size(), 3u);
    EXPECT_EQ(labels.front(), QStringLiteral("0"));
    EXPECT_EQ(labels.back(), QStringLiteral("3,200"));
    EXPECT_NE(std::find(labels.begin(), labels.end(), QStringLiteral("1,600")), labels.end());
    for (const QString& s : labels) EXPECT_FALSE(s.endsWith(QLatin1Char('.'))) << s.toStdString();
}

}  // namespace
}  // namespace kelmar
