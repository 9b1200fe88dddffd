// The drawing surface: scale mapping, the record and its replay, and the
// children placed in user units.
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
            int black = 0, other = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) {
                    const QRgb c = image.pixel(x, y);
                    black += c == qRgb(0, 0, 0);
                    other += c != qRgb(0, 0, 0) && c != qRgb(255, 0, 0) && c != qRgb(255, 255, 255);
                }
            EXPECT_GT(black, 0);
            EXPECT_EQ(other, 0);
            EXPECT_EQ(QColor(image.pixel(int(0.2 * image.width()), int(0.2 * image.height()))),
                      QColor(Qt::red));
        }
    }
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
