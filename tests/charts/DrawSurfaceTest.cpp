// The drawing surface: scale mapping, the record and its replay, and the
// children placed in user units.
#include "charts/DrawSurface.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPaintEvent>
#include <QScreen>

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
            EXPECT_EQ(QColor(image.pixel(int(0.2 * image.width()), int(0.2 * image.height()))), QColor(Qt::red));
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

// A chart redrawn whole after a change paints again only where the change
// shows, and what the window shows then is the picture drawn afresh.
TEST(DrawSurfaceRepaint, PaintsOnlyWhatARedrawChanged) {
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        GTEST_SKIP() << "reads the window's picture from the offscreen backing store";
    struct Painted : QObject {
        QRegion region;
        bool eventFilter(QObject*, QEvent* e) override {
            if (e->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(e)->region();
            return false;
        }
    } painted;
    DrawSurface pic;
    pic.resize(300, 200);
    pic.setScale(0, 100, 100, 0);
    auto draw = [&pic](double lineY, const QString& title, bool box) {
        pic.cls();
        pic.setBackColor(ole::White);
        for (int i = 0; i <= 10; ++i) pic.line(i * 10.0, 0, i * 10.0, 100, ole::ButtonFace);
        pic.line(0, lineY, 100, lineY + 10, qbColor(9));
        pic.setCurrentX(5);
        pic.setCurrentY(95);
        pic.print(title);
        if (box) pic.filledBox(60, 30, 70, 20, 0x0000FF);
    };
    // The changes are weighed in one turn of the event loop and painted in
    // the next.
    auto nextFrame = [] {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    };
    draw(40, QStringLiteral("Value"), true);
    pic.show();
    nextFrame();
    pic.installEventFilter(&painted);

    draw(40, QStringLiteral("Value"), true);  // the same picture
    nextFrame();
    EXPECT_TRUE(painted.region.isEmpty());

    draw(60, QStringLiteral("Values"), false);  // a line moved, a longer title, a box fewer
    nextFrame();
    long area = 0;
    for (const QRect& r : painted.region) area += long(r.width()) * r.height();
    EXPECT_LT(area, 300 * 200 / 2);
    EXPECT_FALSE(painted.region.contains(QPoint(150, 190)));  // far from every change
    const QImage shown = pic.screen()->grabWindow(pic.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(shown, pic.grab().toImage().convertToFormat(QImage::Format_RGB32));
}

}  // namespace
}  // namespace kelmar
