// The drawing surface: scale mapping, text measurement, the record and its
// replay, colours and the children placed in user units.
#include "charts/DrawSurface.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

namespace kelmar {
namespace {

constexpr OleColor kRed = 0x0000FF;  // blue-green-red order
constexpr OleColor kGreen = 0x00FF00;

// Bounding box of the pixels that differ from the colour at (0, 0).
QRect inkBounds(const QImage& image) {
    const QRgb ground = image.pixel(0, 0);
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != ground) box |= QRect(x, y, 1, 1);
    return box;
}

TEST(DrawSurfaceScale, MapsUserUnitsToPixelsAndBack) {
    DrawSurface pic;
    pic.resize(268, 248);
    pic.setScale(-14, 110, 120, -14);  // y grows upwards

    EXPECT_DOUBLE_EQ(pic.toPixel({0, 0}).x(), 28.0);
    EXPECT_DOUBLE_EQ(pic.toPixel({0, 0}).y(), 220.0);
    EXPECT_DOUBLE_EQ(pic.toPixel({100, 100}).x(), 228.0);
    EXPECT_DOUBLE_EQ(pic.toPixel({100, 100}).y(), 20.0);
    EXPECT_LT(pic.toPixel({0, 50}).y(), pic.toPixel({0, 40}).y());

    const QPointF user = pic.toUser({134.0, 62.0});
    EXPECT_DOUBLE_EQ(user.x(), 53.0);
    EXPECT_DOUBLE_EQ(user.y(), 79.0);
    EXPECT_DOUBLE_EQ(pic.pixelsPerUnitX(), 2.0);
    EXPECT_DOUBLE_EQ(pic.pixelsPerUnitY(), 2.0);
    EXPECT_DOUBLE_EQ(pic.scaleHeight(), -124.0);

    pic.resize(536, 124);
    EXPECT_DOUBLE_EQ(pic.toPixel({100, 100}).x(), 456.0);
    EXPECT_DOUBLE_EQ(pic.toPixel({100, 100}).y(), 10.0);
}

TEST(DrawSurfaceScale, UsesTheDesignSizeBeforeItHasOne) {
    DrawSurface pic;
    pic.setDesignSize({400, 200});
    pic.resize(0, 0);
    pic.setScale(0, 0, 100, 100);
    EXPECT_DOUBLE_EQ(pic.toPixel({50, 50}).x(), 200.0);
    EXPECT_DOUBLE_EQ(pic.toPixel({50, 50}).y(), 100.0);
}

TEST(DrawSurfaceText, MeasurementDoesNotDependOnTheWidgetSize) {
    DrawSurface pic;
    pic.setDesignSize({360, 300});
    pic.setScale(-14, 110, 120, -14);
    pic.resize(360, 300);
    const double w = pic.textWidth(QStringLiteral("1,234.5"));
    const double h = pic.textHeight(QStringLiteral("1,234.5"));
    ASSERT_GT(w, 0.0);
    ASSERT_GT(h, 0.0);  // positive although y grows upwards

    pic.resize(1100, 420);
    EXPECT_DOUBLE_EQ(pic.textWidth(QStringLiteral("1,234.5")), w);
    EXPECT_DOUBLE_EQ(pic.textHeight(QStringLiteral("1,234.5")), h);

    // In user units, a wider scale makes the same text longer.
    pic.setScale(-28, 110, 240, -14);
    EXPECT_NEAR(pic.textWidth(QStringLiteral("1,234.5")), 2 * w, 1e-9);
    pic.setFontBold(true);
    EXPECT_GT(pic.textWidth(QStringLiteral("1,234.5")), 2 * w);
}

TEST(DrawSurfaceText, PrintAdvancesLikeAPictureBox) {
    DrawSurface pic;
    pic.setScale(-14, 110, 120, -14);
    pic.setCurrentX(30);
    pic.setCurrentY(60);
    pic.print(QStringLiteral("first"));
    const double h = pic.textHeight(QStringLiteral("first"));
    EXPECT_DOUBLE_EQ(pic.currentX(), -14.0);
    EXPECT_DOUBLE_EQ(pic.currentY(), 60.0 - h);  // down the page on an upward scale

    pic.setScale(0, 0, 100, 100);
    pic.setCurrentY(10);
    pic.print(QStringLiteral("second"));
    EXPECT_DOUBLE_EQ(pic.currentY(), 10.0 + pic.textHeight(QStringLiteral("second")));

    ASSERT_EQ(pic.primitives().size(), 2u);
    EXPECT_EQ(pic.primitives()[0].kind, DrawPrimitive::Kind::Text);
    EXPECT_EQ(pic.primitives()[0].p1, QPointF(30, 60));

    pic.cls();
    EXPECT_TRUE(pic.primitives().empty());
    EXPECT_DOUBLE_EQ(pic.currentX(), 0.0);
    EXPECT_DOUBLE_EQ(pic.currentY(), 0.0);
}

TEST(DrawSurfaceText, DrawnTextStaysInsideItsMeasuredBoxAtAnySize) {
    DrawSurface pic;
    pic.setDesignSize({300, 200});
    pic.setScale(0, 0, 100, 100);
    pic.setBackColor(ole::White);
    const QString s = QStringLiteral("Value 12,345.678");
    pic.setCurrentX(10);
    pic.setCurrentY(40);
    pic.print(s);
    const double w = pic.textWidth(s);
    const double h = pic.textHeight(s);

    for (QSize size : {QSize(300, 200), QSize(900, 260), QSize(420, 600), QSize(150, 100)}) {
        const QImage image = pic.toImage(size);
        const QRect ink = inkBounds(image);
        ASSERT_FALSE(ink.isEmpty()) << size.width() << "x" << size.height();
        const double sx = size.width() / 100.0;
        const double sy = size.height() / 100.0;
        EXPECT_GE(ink.left(), std::floor(10 * sx) - 1) << size.width();
        EXPECT_LE(ink.right(), std::ceil((10 + w) * sx) + 1) << size.width();
        EXPECT_GE(ink.top(), std::floor(40 * sy) - 1) << size.height();
        EXPECT_LE(ink.bottom(), std::ceil((40 + h) * sy) + 1) << size.height();
        // Scaled as a whole, by the smaller of the two stretches.
        const double f = std::min(size.width() / 300.0, size.height() / 200.0);
        EXPECT_GT(ink.width(), 0.8 * w * 3.0 * f) << size.width();
    }
}

TEST(DrawSurfaceReplay, RedrawsTheRecordAtEverySize) {
    DrawSurface pic;
    pic.setScale(0, 100, 100, 0);
    pic.setBackColor(ole::White);
    pic.filledBox(10, 90, 50, 50, kRed);
    pic.setDrawWidth(1);
    pic.box(60, 40, 90, 10, kGreen);

    for (QSize size : {QSize(200, 100), QSize(640, 480)}) {
        const QImage image = pic.toImage(size);
        const auto at = [&](double ux, double uy) {
            return QColor(image.pixel(int(ux * size.width() / 100.0), int((100 - uy) * size.height() / 100.0)));
        };
        EXPECT_EQ(at(30, 70), QColor(Qt::red)) << size.width();
        EXPECT_EQ(at(5, 5), QColor(Qt::white)) << size.width();
        EXPECT_EQ(at(75, 25), QColor(Qt::white)) << "an outlined box stays empty";
        EXPECT_EQ(QColor(image.pixel(int(60 * size.width() / 100.0), int(75 * size.height() / 100.0))),
                  QColor(Qt::green))
            << size.width();
    }
}

TEST(DrawSurfaceReplay, HonoursTheDevicePixelRatio) {
    DrawSurface pic;
    pic.setScale(0, 0, 100, 100);
    pic.setBackColor(ole::White);
    pic.filledBox(50, 50, 100, 100, kRed);
    const QImage image = pic.toImage({100, 80}, 2.0);
    EXPECT_EQ(image.width(), 200);
    EXPECT_EQ(image.height(), 160);
    EXPECT_EQ(QColor(image.pixel(99, 79)), QColor(Qt::white));
    EXPECT_EQ(QColor(image.pixel(100, 80)), QColor(Qt::red));
}

TEST(DrawSurfaceReplay, StraightThinLinesCoverWholePixels) {
    DrawSurface pic;
    pic.setScale(0, 0, 100, 100);
    pic.setBackColor(ole::White);
    pic.line(10, 33.3, 90, 33.3, qbColor(0));  // lands between pixel rows
    pic.line(47.7, 5, 47.7, 95, qbColor(0));
    for (double dpr : {1.0, 2.0}) {
        const QImage image = pic.toImage({301, 217}, dpr);
        int blackRows = 0;
        int greyRows = 0;
        const int x = int(20 * 3.01 * dpr);
        for (int y = 0; y < image.height(); ++y) {
            const QColor c(image.pixel(x, y));
            if (c == QColor(Qt::black)) ++blackRows;
            else if (c != QColor(Qt::white)) ++greyRows;
        }
        EXPECT_EQ(blackRows, int(dpr)) << dpr;
        EXPECT_EQ(greyRows, 0) << dpr;
        int blackColumns = 0;
        const int y = int(70 * 2.17 * dpr);
        for (int xx = 0; xx < image.width(); ++xx)
            if (QColor(image.pixel(xx, y)) == QColor(Qt::black)) ++blackColumns;
        EXPECT_EQ(blackColumns, int(dpr)) << dpr;
    }
}

TEST(DrawSurfaceColour, ConvertsBlueGreenRedAndSystemColours) {
    EXPECT_EQ(toQColor(0x00FF8040), QColor(0x40, 0x80, 0xFF));
    EXPECT_EQ(toQColor(ole::Highlight), QColor(0xC0, 0xFF, 0xFF));
    EXPECT_EQ(toQColor(ole::DarkGrey), QColor(0x40, 0x40, 0x40));

    QPalette pal;
    pal.setColor(QPalette::Button, QColor(1, 2, 3));
    pal.setColor(QPalette::Dark, QColor(4, 5, 6));
    EXPECT_EQ(toQColor(ole::ButtonFace, pal), QColor(1, 2, 3));
    EXPECT_EQ(toQColor(ole::ButtonShadow, pal), QColor(4, 5, 6));

    EXPECT_EQ(qbColor(0), 0x000000u);
    EXPECT_EQ(toQColor(qbColor(9)), QColor(0, 0, 255));   // bright blue
    EXPECT_EQ(toQColor(qbColor(12)), QColor(255, 0, 0));  // bright red
    EXPECT_EQ(toQColor(qbColor(1)), QColor(0, 0, 128));   // dark blue
    EXPECT_EQ(qbColor(15), 0xFFFFFFu);
}

TEST(DrawSurfaceColour, SystemColoursFollowTheWidgetsPalette) {
    DrawSurface pic;
    QPalette pal = pic.palette();
    pal.setColor(QPalette::Button, QColor(200, 10, 10));
    pal.setColor(QPalette::Dark, QColor(10, 10, 200));
    pic.setPalette(pal);
    pic.setScale(0, 0, 100, 100);
    EXPECT_EQ(pic.backColor(), ole::ButtonFace);  // the default ground
    pic.filledBox(50, 0, 100, 100, ole::ButtonShadow);
    const QImage image = pic.toImage({100, 100});
    EXPECT_EQ(QColor(image.pixel(20, 50)), QColor(200, 10, 10));
    EXPECT_EQ(QColor(image.pixel(80, 50)), QColor(10, 10, 200));
}

TEST(DrawSurfaceChildren, FollowTheScaleWhenResized) {
    DrawSurface pic;
    pic.resize(200, 200);
    pic.show();  // a hidden widget gets its resize events only when shown
    pic.setScale(0, 100, 100, 0);
    QWidget mark;
    mark.resize(10, 16);
    pic.placeChild(&mark, 50, 75);
    EXPECT_EQ(mark.parentWidget(), &pic);
    EXPECT_EQ(mark.pos(), QPoint(100, 50));
    EXPECT_DOUBLE_EQ(pic.childWidth(&mark), 5.0);
    EXPECT_DOUBLE_EQ(pic.childHeight(&mark), 8.0);

    pic.resize(400, 100);
    EXPECT_EQ(mark.pos(), QPoint(200, 25));
    EXPECT_DOUBLE_EQ(pic.childLeft(&mark), 50.0);  // kept exactly, not read back from pixels
    EXPECT_DOUBLE_EQ(pic.childTop(&mark), 75.0);
    EXPECT_DOUBLE_EQ(pic.childWidth(&mark), 2.5);
    EXPECT_DOUBLE_EQ(pic.childHeight(&mark), 16.0);

    pic.placeChild(&mark, 10, 100);
    EXPECT_EQ(mark.pos(), QPoint(40, 0));
    pic.setScale(0, 0, 200, 100);  // a new scale moves it too
    EXPECT_EQ(mark.pos(), QPoint(20, 100));
}

TEST(DrawSurfaceChildren, ForgetsAChildThatIsDeleted) {
    DrawSurface pic;
    pic.resize(100, 100);
    auto* mark = new QWidget;
    pic.placeChild(mark, 20, 20);
    delete mark;
    pic.resize(300, 300);  // must not touch the deleted child
    QWidget other;
    other.resize(10, 10);
    pic.placeChild(&other, 50, 50);
    EXPECT_EQ(other.pos(), QPoint(150, 150));
}

}  // namespace
}  // namespace kelmar
