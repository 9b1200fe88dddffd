// The drawing surface: scale mapping, text measurement, the record and its
// replay, colours and the children placed in user units.
#include "charts/DrawSurface.h"

#include <QImage>

#include <gtest/gtest.h>

namespace kelmar {
namespace {

TEST(DrawSurfaceScale, MapsUserUnitsToPixelsAndBack) {
    DrawSurface pic;
    pic.resize(268, 248);
    pic.setScale(-14, 110, 120, -14);  // y grows upwards
    EXPECT_EQ(pic.toPixel({0, 0}), QPointF(28.0, 220.0));
    EXPECT_EQ(pic.toPixel({100, 100}), QPointF(228.0, 20.0));
    EXPECT_EQ(pic.toUser({134.0, 62.0}), QPointF(53.0, 79.0));
    pic.resize(536, 124);
    EXPECT_EQ(pic.toPixel({100, 100}), QPointF(456.0, 10.0));
}

TEST(DrawSurfaceText, MeasurementDoesNotDependOnTheWidgetSize) {
    DrawSurface pic;
    pic.setDesignSize({360, 300});
    pic.setScale(-14, 110, 120, -14);
    pic.resize(360, 300);
    const QString text = QStringLiteral("1,234.5");
    const double w = pic.textWidth(text), h = pic.textHeight(text);
    ASSERT_GT(w, 0.0);
    ASSERT_GT(h, 0.0);  // positive although y grows upwards
    pic.resize(1100, 420);
    EXPECT_DOUBLE_EQ(pic.textWidth(text), w);
    EXPECT_DOUBLE_EQ(pic.textHeight(text), h);
    // In user units, a wider scale makes the same text longer.
    pic.setScale(-28, 110, 240, -14);
    EXPECT_NEAR(pic.textWidth(text), 2 * w, 1e-9);
}

TEST(DrawSurfaceReplay, RedrawsTheRecordWithCrispStrokesAtEverySize) {
    DrawSurface pic;
    pic.setDesignSize({200, 100});
    pic.setScale(0, 100, 100, 0);
    pic.setBackColor(ole::White);
    pic.filledBox(10, 90, 30, 60, 0x0000FF);  // blue-green-red order: red
    pic.line(5, 50.3, 95, 50.3, ole::Black);  // off the pixel grid at every size
    pic.line(33.3, 5, 33.3, 95, ole::Black);
    pic.setDrawWidth(2);
    pic.box(60.2, 80.7, 90.6, 20.1, ole::Black);
    for (QSize size : {QSize(200, 100), QSize(333, 157)}) {
        for (qreal dpr : {1.0, 2.0}) {
            SCOPED_TRACE(testing::Message() << size.width() << " @" << dpr);
            const QImage image = pic.toImage(size, dpr);
            // Any pixel of a stroke is fully black; nothing is half-covered.
            int black = 0, red = 0, other = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QRgb c = image.pixel(x, y);
                    black += c == qRgb(0, 0, 0);
                    red += c == qRgb(255, 0, 0);
                    other += c != qRgb(0, 0, 0) && c != qRgb(255, 0, 0) && c != qRgb(255, 255, 255);
                }
            }
            EXPECT_GT(black, 0);
            EXPECT_GT(red, 0);
            EXPECT_EQ(other, 0);
            EXPECT_EQ(QColor(image.pixel(int(0.2 * image.width()), int(0.2 * image.height()))),
                      QColor(Qt::red));
        }
    }
}

TEST(DrawSurfaceColour, ConvertsBlueGreenRedAndSystemColours) {
    EXPECT_EQ(toQColor(0x00FF8040), QColor(0x40, 0x80, 0xFF));
    EXPECT_EQ(toQColor(qbColor(9)), QColor(0, 0, 255));  // bright blue
    QPalette pal;
    pal.setColor(QPalette::Button, QColor(1, 2, 3));
    pal.setColor(QPalette::Dark, QColor(4, 5, 6));
    EXPECT_EQ(toQColor(ole::ButtonFace, pal), QColor(1, 2, 3));
    EXPECT_EQ(toQColor(ole::ButtonShadow, pal), QColor(4, 5, 6));
}

TEST(DrawSurfaceChildren, FollowTheScaleWhenResizedAndForgetDeletedOnes) {
    DrawSurface pic;
    pic.resize(200, 200);
    pic.show();  // a hidden widget gets its resize events only when shown
    pic.setScale(0, 100, 100, 0);
    QWidget mark;
    mark.resize(10, 16);
    pic.placeChild(&mark, 50, 75);
    EXPECT_EQ(mark.pos(), QPoint(100, 50));
    auto* gone = new QWidget;
    pic.placeChild(gone, 20, 20);
    delete gone;
    pic.resize(400, 100);  // must not touch the deleted child
    EXPECT_EQ(mark.pos(), QPoint(200, 25));
    EXPECT_DOUBLE_EQ(pic.childLeft(&mark), 50.0);  // kept exactly, not read back from pixels
    EXPECT_DOUBLE_EQ(pic.childTop(&mark), 75.0);
    EXPECT_DOUBLE_EQ(pic.childWidth(&mark), 2.5);
}

}  // namespace
}  // namespace kelmar
