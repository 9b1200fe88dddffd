// The value function chart: the curve it samples, its title, grid, labels
// and the panel routine.
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <kelmar/mdKelMain.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
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

    // Sample points of attribute att; the range is their first and last x.
    static void setPoints(I16 att, const std::vector<double>& xs, const std::vector<double>& ys) {
        WizardData& w = wizardData();
        w.SmpSize(att) = static_cast<I16>(xs.size());
        w.ScoreMinimum(att) = xs.front();
        w.ScoreMaximum(att) = xs.back();
        for (std::size_t k = 0; k < xs.size(); ++k) {
            w.SmpX(att, static_cast<int>(k)) = xs[k];
            w.SmpY(att, static_cast<int>(k)) = ys[k];
        }
    }

    void draw(I16 att, I16 maxVal = 1) { DrawVFChart(pic, att, maxVal); }

    std::vector<DrawPrimitive> curve() const {
        std::vector<DrawPrimitive> out;
        for (const DrawPrimitive& p : pic.primitives())
            if (p.kind == Kind::Line && p.width == 2) out.push_back(p);
        return out;
    }

    std::vector<DrawPrimitive> texts() const {
        std::vector<DrawPrimitive> out;
        for (const DrawPrimitive& p : pic.primitives())
            if (p.kind == Kind::Text) out.push_back(p);
        return out;
    }

    // The labels hanging below the score axis, left to right.
    std::vector<DrawPrimitive> scoreLabels() const {
        std::vector<DrawPrimitive> out;
        for (const DrawPrimitive& p : texts())
            if (p.p1.y() < 0) out.push_back(p);
        return out;
    }

    std::vector<QString> scoreLabelTexts() const {
        std::vector<QString> out;
        for (const DrawPrimitive& p : scoreLabels()) out.push_back(p.text);
        return out;
    }

    // The labels left of the value axis, bottom to top.
    std::vector<QString> valueLabelTexts() const {
        std::vector<QString> out;
        for (const DrawPrimitive& p : texts())
            if (p.p1.x() < 0 && p.p1.y() >= 0 && p.text != QStringLiteral("V(s)")) out.push_back(p.text);
        return out;
    }

    DrawSurface pic;
};

TEST_F(ValueFunctionChart, DrawsALinearFunctionAsAStraightDiagonal) {
    setPoints(0, {10, 20, 30, 40, 50}, {0, 0.25, 0.5, 0.75, 1});
    draw(0);
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
    // The curve is drawn over the grid and the frame.
    EXPECT_EQ(pic.primitives().back().width, 2);
    EXPECT_EQ(pic.drawWidth(), 1);
}

TEST_F(ValueFunctionChart, ClipsAnOvershootingCurveToTheBox) {
    // A curve that rises steeply to a plateau and falls back again bulges
    // beyond 0..1 between the points.
    const std::vector<double> xs{0, 10, 20, 30, 40, 50, 60};
    const std::vector<double> ys{0, 0.9, 1, 0.2, 1, 0.1, 0};
    setPoints(1, xs, ys);
    draw(1);
    const std::vector<DrawPrimitive> segments = curve();
    ASSERT_EQ(segments.size(), 32u);

    // The unclipped curve at the same scores.
    VariantArray X(0, 6), Y(0, 6), out(0, 4);
    for (int k = 0; k < 7; ++k) {
        X(k) = xs[static_cast<std::size_t>(k)];
        Y(k) = ys[static_cast<std::size_t>(k)];
    }
    I16 n = 7;
    I16 evaluate = -1;
    int above = 0, below = 0;
    for (int k = 0; k <= 32; ++k) {
        double x = 60.0 * k / 32;
        AkimaInterpolate(X, Y, n, evaluate, x, out);
        const double v = out(4).toDouble();
        const double drawn = k == 0 ? segments[0].p1.y() : segments[static_cast<std::size_t>(k - 1)].p2.y();
        if (v > 1.0) {
            ++above;
            EXPECT_DOUBLE_EQ(drawn, 100.0) << k;
        } else if (v < 0.0) {
            ++below;
            EXPECT_DOUBLE_EQ(drawn, 0.0) << k;
        } else {
            EXPECT_NEAR(drawn, 100.0 * static_cast<float>(v), 1e-9) << k;
        }
    }
    EXPECT_GT(above, 0) << "the test curve must overshoot";
    EXPECT_GT(below + above, 1);
}

TEST_F(ValueFunctionChart, TitleShowsTheTrimmedNameAboveTheBox) {
    wizardData().AttName(0) = QStringLiteral("   Annual cost  ");
    setPoints(0, {0, 50, 100}, {0, 0.5, 1});
    draw(0);
    const std::vector<DrawPrimitive> t = texts();
    ASSERT_FALSE(t.empty());
    const DrawPrimitive& title = t.front();
    EXPECT_EQ(title.text, QStringLiteral("Value Function Curve on Annual cost"));
    EXPECT_TRUE(title.bold);

    // Hung one line below the top of the scale, centred over the box.
    DrawSurface probe;
    probe.setDesignSize(pic.designSize());
    probe.setScale(-14, 110, 120, -14);
    probe.setFontPointSize(title.fontPointSize);
    probe.setFontBold(true);
    const double h = probe.textHeight(title.text);
    const double w = probe.textWidth(title.text);
    EXPECT_DOUBLE_EQ(title.p1.y(), 110 - h);
    EXPECT_DOUBLE_EQ(title.p1.x(), (100 - w) / 2);
    EXPECT_GT(title.p1.y() - probe.textAscent(), 100.0) << "the title must clear the box";
}

TEST_F(ValueFunctionChart, TitleShrinksAndIsCutShortToFitASmallChart) {
    const auto titleOn = [this](const QString& name, QSize design) {
        wizardData().AttName(0) = name;
        setPoints(0, {0, 100}, {0, 1});
        pic.setDesignSize(design);
        draw(0);
        return texts().front();
    };
    const auto probeFor = [](const DrawPrimitive& title, QSize design) {
        auto probe = std::make_unique<DrawSurface>();
        probe->setDesignSize(design);
        probe->setScale(-14, 110, 120, -14);
        probe->setFontPointSize(title.fontPointSize);
        probe->setFontBold(true);
        return probe;
    };

    const QSize small(300, 240);
    const DrawPrimitive shrunk = titleOn(QStringLiteral("Price"), small);
    const DrawPrimitive roomy = titleOn(QStringLiteral("Price"), QSize(520, 320));
    EXPECT_LT(shrunk.fontPointSize, roomy.fontPointSize);
    auto probe = probeFor(shrunk, small);
    EXPECT_EQ(shrunk.text, QStringLiteral("Value Function Curve on Price"));
    EXPECT_GT(shrunk.p1.y() - probe->textAscent(), 100.0);

    const DrawPrimitive cut = titleOn(QStringLiteral("Expected annual maintenance cost of the plant"), small);
    probe = probeFor(cut, small);
    EXPECT_TRUE(cut.text.startsWith(QStringLiteral("Value Function Curve on Expected")));
    EXPECT_TRUE(cut.text.endsWith(QChar(0x2026)));
    EXPECT_LE(probe->textWidth(cut.text), 100.0);
    EXPECT_GE(cut.p1.x(), 0.0);
}

TEST_F(ValueFunctionChart, ScoreLabelsAreWholeWhereTheTickIsWhole) {
    setPoints(0, {0, 3200}, {0, 1});
    draw(0);
    const std::vector<QString> labels = scoreLabelTexts();
    ASSERT_GE(labels.size(), 2u);
    EXPECT_EQ(labels.front(), QStringLiteral("0"));
    EXPECT_EQ(labels.back(), QStringLiteral("3,200"));
    for (const QString& s : labels) EXPECT_FALSE(s.endsWith(QLatin1Char('.'))) << s.toStdString();
    EXPECT_NE(std::find(labels.begin(), labels.end(), QStringLiteral("1,600")), labels.end());
}

TEST_F(ValueFunctionChart, ScoreLabelsKeepThreeDecimalsAndNeverOverlap) {
    for (QSize design : {QSize(520, 320), QSize(360, 300), QSize(300, 200)}) {
        pic.setDesignSize(design);
        setPoints(0, {-1234.5, 98765.4321}, {0, 1});
        draw(0);
        const std::vector<DrawPrimitive> labels = scoreLabels();
        ASSERT_GE(labels.size(), 2u);
        EXPECT_EQ(labels.front().text, QStringLiteral("-1,234.5"));
        EXPECT_EQ(labels.back().text, QStringLiteral("98,765.432"));
        for (std::size_t i = 1; i < labels.size(); ++i) {
            const double rightOfPrevious = labels[i - 1].p1.x() + pic.textWidth(labels[i - 1].text);
            EXPECT_LT(rightOfPrevious, labels[i].p1.x()) << design.width() << " " << i;
        }
        // Labelled ticks are evenly spread: every 32/(count-1)th tick.
        EXPECT_EQ(32 % (labels.size() - 1), 0u);
    }
}

TEST_F(ValueFunctionChart, ScoreLabelsAreCentredUnderTheirTicks) {
    setPoints(0, {0, 32}, {0, 1});
    draw(0);
    for (const DrawPrimitive& label : scoreLabels()) {
        const double tick = label.text.toDouble() * 100.0 / 32;
        EXPECT_NEAR(label.p1.x() + pic.textWidth(label.text) / 2, tick, 1e-4) << label.text.toStdString();
        EXPECT_DOUBLE_EQ(label.p1.y(), -2.0);
    }
}

TEST_F(ValueFunctionChart, ValueLabelsFollowTheValueRange) {
    setPoints(0, {0, 100}, {0, 1});
    draw(0, 1);
    EXPECT_EQ(valueLabelTexts(), (std::vector<QString>{"0.00", "0.25", "0.50", "0.75", "1.00"}));
    draw(0, 100);
    EXPECT_EQ(valueLabelTexts(), (std::vector<QString>{"0", "25", "50", "75", "100"}));
    draw(0, 10);
    EXPECT_EQ(valueLabelTexts(), (std::vector<QString>{"0", "2.5", "5", "7.5", "10"}));
    // The curve itself does not depend on the value range.
    EXPECT_DOUBLE_EQ(curve().back().p2.y(), 100.0);
}

TEST_F(ValueFunctionChart, DrawsGridFrameAndCaption) {
    setPoints(0, {0, 100}, {0, 1});
    draw(0);
    int verticalGrid = 0, horizontalGrid = 0;
    for (const DrawPrimitive& p : pic.primitives()) {
        if (p.kind != Kind::Line || p.color != ole::ButtonFace) continue;
        if (p.p1.x() == p.p2.x() && p.p1.y() == 0 && p.p2.y() == 100) ++verticalGrid;
        if (p.p1.y() == p.p2.y() && p.p1.x() == 0 && p.p2.x() == 100) ++horizontalGrid;
    }
    EXPECT_EQ(verticalGrid, 33);
    EXPECT_EQ(horizontalGrid, 5);

    // The black frame is drawn after the grid, right before the curve.
    const auto& all = pic.primitives();
    ASSERT_GT(all.size(), 36u);
    const std::vector<std::pair<QPointF, QPointF>> frame{
        {{0, 0}, {0, 100}}, {{0, 0}, {100, 0}}, {{100, 100}, {100, 0}}, {{100, 100}, {0, 100}}};
    for (std::size_t i = 0; i < 4; ++i) {
        const DrawPrimitive& p = all[all.size() - 36 + i];
        EXPECT_EQ(p.kind, Kind::Line);
        EXPECT_EQ(p.color, qbColor(0));
        EXPECT_EQ(p.p1, frame[i].first);
        EXPECT_EQ(p.p2, frame[i].second);
    }

    const std::vector<DrawPrimitive> t = texts();
    const auto caption = std::find_if(t.begin(), t.end(), [](const DrawPrimitive& p) { return p.text == "V(s)"; });
    ASSERT_NE(caption, t.end());
    EXPECT_LT(caption->p1.x() + pic.textWidth("V(s)"), 0.0);
    EXPECT_GT(caption->p1.y() - pic.textHeight("V(s)"), 100.0);
    EXPECT_LE(caption->p1.y(), 110.0);
}

TEST_F(ValueFunctionChart, RedrawingReplacesThePreviousChart) {
    setPoints(0, {0, 100}, {0, 1});
    draw(0);
    const std::size_t count = pic.primitives().size();
    draw(0);
    EXPECT_EQ(pic.primitives().size(), count);
}

TEST_F(ValueFunctionChart, AttributeWithoutPointsRaisesSubscriptError) {
    wizardData().SmpSize(0) = I16(0);
    I16 att = 0, maxVal = 1;
    try {
        DrawVFChart(pic, att, maxVal);
        FAIL() << "no error raised";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), RuntimeError::SubscriptOutOfRange);
    }
}

TEST(DrawVFSeriesRoutine, ScalesByTheDivisorAndColoursEachSeries) {
    DrawSurface pic;
    pic.setDrawWidth(3);
    std::vector<std::vector<float>> table{{0, 0, 0, 0}, {0, 10, 20, 40}, {40, 30, 20, 10}};
    I16 points = 3, series = 2;
    double divisor = 40;
    DrawVFSeries(pic, points, series, table, divisor);
    const auto& p = pic.primitives();
    ASSERT_EQ(p.size(), 6u);
    EXPECT_EQ(p[0].color, qbColor(9));
    EXPECT_EQ(p[3].color, qbColor(10));
    EXPECT_NEAR(p[2].p2.x(), 100.0, 1e-9);
    EXPECT_DOUBLE_EQ(p[2].p2.y(), 100.0);
    EXPECT_DOUBLE_EQ(p[3].p1.y(), 100.0);
    EXPECT_DOUBLE_EQ(p[1].p1.y(), 25.0);
    for (const DrawPrimitive& line : p) EXPECT_EQ(line.width, 2);
    EXPECT_EQ(pic.drawWidth(), 3);
}

// The lines of a panel: which edges are lit and which are shaded.
struct PanelEdges {
    OleColor top, left, bottom, right;
};

PanelEdges panelEdges(const DrawSurface& pic, double x1, double y1, double x2, double y2) {
    PanelEdges e{};
    const double cx = (x1 + x2) / 2, cy = (y1 + y2) / 2;
    const bool yDown = pic.scaleHeight() > 0;
    for (const DrawPrimitive& p : pic.primitives()) {
        if (p.kind != Kind::Line) continue;
        if (p.p1.y() == p.p2.y()) {
            const bool upper = yDown ? p.p1.y() < cy : p.p1.y() > cy;
            (upper ? e.top : e.bottom) = p.color;
        } else {
            (p.p1.x() < cx ? e.left : e.right) = p.color;
        }
    }
    return e;
}

TEST(DrawPanelRoutine, LightsTheTopLeftOfARaisedAndTheBottomRightOfASunkenPanel) {
    for (bool yDown : {true, false}) {
        DrawSurface pic;
        if (yDown) pic.setScale(0, 0, 100, 100);
        else pic.setScale(0, 100, 100, 0);
        DrawPanel(pic, 10, 20, 90, 80, 1);
        ASSERT_EQ(pic.primitives().front().kind, Kind::FilledBox);
        EXPECT_EQ(pic.primitives().front().fillColor, ole::ButtonFace);
        PanelEdges raised = panelEdges(pic, 10, 20, 90, 80);
        EXPECT_EQ(raised.top, ole::White) << yDown;
        EXPECT_EQ(raised.left, ole::White);
        EXPECT_EQ(raised.bottom, ole::ButtonShadow);
        EXPECT_EQ(raised.right, ole::ButtonShadow);

        pic.cls();
        DrawPanel(pic, 90, 80, 10, 20, 2);  // corners in either order
        PanelEdges sunken = panelEdges(pic, 10, 20, 90, 80);
        EXPECT_EQ(sunken.top, ole::ButtonShadow) << yDown;
        EXPECT_EQ(sunken.left, ole::ButtonShadow);
        EXPECT_EQ(sunken.bottom, ole::White);
        EXPECT_EQ(sunken.right, ole::White);
    }
}

TEST(DrawPanelRoutine, InsetsTheEdgesAndRestoresTheDrawingState) {
    DrawSurface pic;
    pic.setScale(0, 0, 100, 100);
    pic.setDrawWidth(4);
    pic.setForeColor(0x123456);
    pic.setCurrentX(7);
    pic.setCurrentY(8);
    DrawPanel(pic, 0, 0, 100, 100, 1);
    const DrawPrimitive& top = pic.primitives()[1];
    EXPECT_DOUBLE_EQ(top.p1.y(), 0.4);
    EXPECT_DOUBLE_EQ(top.p1.x(), 0.4);
    EXPECT_DOUBLE_EQ(top.p2.x(), 99.6);
    for (const DrawPrimitive& p : pic.primitives()) EXPECT_EQ(p.width, 1);
    EXPECT_EQ(pic.drawWidth(), 4);
    EXPECT_EQ(pic.foreColor(), 0x123456u);
    EXPECT_DOUBLE_EQ(pic.currentX(), 7.0);
    EXPECT_DOUBLE_EQ(pic.currentY(), 8.0);
}

}  // namespace
}  // namespace kelmar
