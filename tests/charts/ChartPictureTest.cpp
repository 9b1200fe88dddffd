// The chart as it appears on screen, at a page's size and at a large size.
// With KELMAR_SNAPSHOT_DIR set, the pictures are also written there as PNG
// for a look by eye.
#include "charts/DrawSurface.h"
#include "charts/Snapshot.h"
#include "charts/mdVFGraphs.h"

#include <kelmar/mdKelMain.h>

#include <QDir>

#include <gtest/gtest.h>

#include <cstdlib>

namespace kelmar {
namespace {

using I16 = std::int16_t;

void setFunction(const std::vector<double>& xs, const std::vector<double>& ys) {
    WizardData& w = wizardData();
    w = WizardData{};
    w.AttNum = 1;
    for (VariantArray* a : {&w.AttName, &w.ScoreMinimum, &w.ScoreMaximum, &w.SmpSize}) a->redim(0, 0);
    w.SmpX.redim(0, 0, 0, 10);
    w.SmpY.redim(0, 0, 0, 10);
    w.AttName(0) = QStringLiteral(" Travel time ");
    w.SmpSize(0) = static_cast<I16>(xs.size());
    w.ScoreMinimum(0) = xs.front();
    w.ScoreMaximum(0) = xs.back();
    for (std::size_t k = 0; k < xs.size(); ++k) {
        w.SmpX(0, static_cast<int>(k)) = xs[k];
        w.SmpY(0, static_cast<int>(k)) = ys[k];
    }
}

void keep(QWidget& widget, const char* name, qreal dpr = 1.0) {
    const char* dir = std::getenv("KELMAR_SNAPSHOT_DIR");
    if (dir == nullptr) return;
    EXPECT_TRUE(saveSnapshot(widget, QDir(QString::fromLocal8Bit(dir)).filePath(QString::fromLatin1(name)), dpr));
}

class ChartPicture : public ::testing::TestWithParam<QSize> {};

TEST_P(ChartPicture, ShowsTheCurveOnAWhiteGroundInsideABlackFrame) {
    setFunction({0, 15, 30, 45, 60}, {0, 0.25, 0.5, 0.75, 1});
    DrawSurface pic;
    pic.setDesignSize({520, 320});
    pic.resize(GetParam());
    I16 att = 0, maxVal = 1;
    DrawVFChart(pic, att, maxVal);

    const QImage image = snapshot(pic);
    ASSERT_EQ(image.size(), GetParam());
    const auto at = [&](double x, double y) {
        const QPointF p = pic.toPixel({x, y});
        return QColor(image.pixel(int(p.x()), int(p.y())));
    };
    const QColor ground = toQColor(0x80000005, pic.palette());
    EXPECT_EQ(at(70, 30), ground);   // below the diagonal, between grid lines
    EXPECT_EQ(at(-13.5, 50), ground);  // the margin has the same ground

    // The diagonal passes through the middle of the box in bright blue.
    const QColor mid = at(50, 50);
    EXPECT_GT(mid.blue(), 200);
    EXPECT_LT(mid.red(), 120);
    EXPECT_EQ(at(100, 50), QColor(Qt::black));  // right side of the frame

    keep(pic, GetParam().width() > 600 ? "vf-linear-large.png" : "vf-linear.png");
}

INSTANTIATE_TEST_SUITE_P(Sizes, ChartPicture, ::testing::Values(QSize(360, 300), QSize(1040, 700)));

TEST(ChartPictureCurved, KeepsACurvedFunctionForALookByEye) {
    setFunction({0, 12.5, 25, 37.5, 50, 62.5, 75}, {0, 0.42, 0.66, 0.81, 0.9, 0.96, 1});
    DrawSurface pic;
    pic.setDesignSize({520, 320});
    pic.resize(520, 320);
    I16 att = 0, maxVal = 100;
    DrawVFChart(pic, att, maxVal);
    const QImage image = snapshot(pic, 2.0);
    EXPECT_EQ(image.width(), 1040);
    keep(pic, "vf-curved.png", 2.0);
    pic.resize(360, 300);
    keep(pic, "vf-curved-small.png");
}

}  // namespace
}  // namespace kelmar
