// The value function chart: the curve it samples, its title and its labels.
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <kelmar/mdKelMain.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
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
    void draw(I16 att, const std::vector<double>& xs, const std::vector<double>& ys,
              I16 maxVal = 1) {
        WizardData& w = wizardData();
        w.SmpSize(att) = static_cast<I16>(xs.size());
        w.ScoreMinimum(att) = xs.front();
        w.ScoreMaximum(att) = xs.back();
        for (std::size_t k = 0; k < xs.size(); ++k) {
            w.SmpX(att, static_cast<int>(k)) = xs[k];
            w.SmpY(att, static_cast<int>(k)) = ys[k];
        }
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

TEST_F(ValueFunctionChart, ValueAxisGridAndTheClosingBox) {
    const struct { I16 maxVal; std::vector<QString> labels; } cases[] = {
        {1, {"0.00", "0.25", "0.50", "0.75", "1.00"}},
        {100, {"0.00", "25.00", "50.00", "75.00", "100.00"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.maxVal);
        draw(0, {0, 10}, {0, 1}, c.maxVal);
        // The labels left of the value axis, from the bottom up, inside the
        // picture; the caption above them.
        std::vector<QString> labels;
        for (const DrawPrimitive& p : texts()) {
            if (p.p1.x() >= 0 || p.p1.y() <= 0) continue;
            labels.push_back(p.text);
            EXPECT_GE(p.p1.x(), pic.scaleLeft()) << p.text.toStdString();
            EXPECT_LE(p.p1.x() + pic.textWidth(p.text), 0.0) << p.text.toStdString();
        }
        ASSERT_FALSE(labels.empty());
        EXPECT_EQ(labels.back(), QStringLiteral("V(s)"));
        labels.pop_back();
        EXPECT_EQ(labels, c.labels);

        // A grid line at every score tick and every value tick, and the box
        // drawn in black over it.
        const std::vector<DrawPrimitive>& all = pic.primitives();
        int vertical = 0, horizontal = 0;
        std::size_t lastGrid = 0;
        for (std::size_t i = 0; i < all.size(); ++i) {
            const DrawPrimitive& p = all[i];
            if (p.kind != Kind::Line || p.color != ole::ButtonFace) continue;
            lastGrid = i;
            if (p.p1.x() == p.p2.x()) ++vertical;
            if (p.p1.y() == p.p2.y()) ++horizontal;
        }
        EXPECT_EQ(vertical, 33);
        EXPECT_EQ(horizontal, 5);
        std::vector<std::pair<QPointF, QPointF>> edges;
        for (std::size_t i = lastGrid + 1; i < all.size(); ++i) {
            const DrawPrimitive& p = all[i];
            if (p.kind == Kind::Line && p.width == 1 && p.color == ole::Black)
                edges.emplace_back(p.p1, p.p2);
        }
        const auto has = [&edges](QPointF a, QPointF b) {
            return std::any_of(edges.begin(), edges.end(), [&](const auto& e) {
                return (e.first == a && e.second == b) || (e.first == b && e.second == a);
            });
        };
        EXPECT_TRUE(has({0, 0}, {0, 100}));
        EXPECT_TRUE(has({0, 0}, {100, 0}));
        EXPECT_TRUE(has({100, 0}, {100, 100}));
        EXPECT_TRUE(has({0, 100}, {100, 100}));
    }
}

TEST_F(ValueFunctionChart, TitleShowsTheTrimmedName) {
    wizardData().AttName(0) = QStringLiteral("   Annual cost  ");
    draw(0, {0, 50, 100}, {0, 0.5, 1});
    const std::vector<DrawPrimitive> t = texts();
    ASSERT_FALSE(t.empty());
    EXPECT_EQ(t.front().text, QStringLiteral("Value Function Curve on Annual cost"));
    EXPECT_TRUE(t.front().bold);
}

TEST_F(ValueFunctionChart, ScoreLabelsAreTrimmedAndNeverRepeat) {
    const struct { double low, high; const char* first; const char* last; const char* inner; } cases[] = {
        {0, 3200, "0", "3,200", "1,600"},  // whole ticks lose the point
        {0.001, 0.004, "0.001", "0.004", nullptr},  // three decimals would repeat
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.last);
        draw(0, {c.low, c.high}, {0, 1});
        std::vector<QString> labels;  // those hanging below the score axis
        for (const DrawPrimitive& p : texts())
            if (p.p1.y() < 0) labels.push_back(p.text);
        ASSERT_GE(labels.size(), 2u);
        EXPECT_EQ(labels.front(), QString::fromLatin1(c.first));
        EXPECT_EQ(labels.back(), QString::fromLatin1(c.last));
        if (c.inner != nullptr) {
            EXPECT_NE(std::find(labels.begin(), labels.end(), QString::fromLatin1(c.inner)),
                      labels.end());
        }
        for (std::size_t i = 0; i < labels.size(); ++i) {
            EXPECT_FALSE(labels[i].endsWith(QLatin1Char('.'))) << labels[i].toStdString();
            if (i > 0) {
                EXPECT_NE(labels[i], labels[i - 1]);
            }
        }
    }
}

}  // namespace
}  // namespace kelmar
