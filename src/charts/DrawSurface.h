// A picture area with a user coordinate scale that records what is drawn on
// it (lines, boxes, polygons, text at a current position) and replays the
// record on every paint, so a chart stays crisp at any size and tests can
// assert on the primitives.
//
// A chart is redrawn whole after every change, but only the pixels that the
// change touches are painted again: when the event loop next turns, the new
// record is compared with the one the window shows, and only the places of
// the primitives that differ are marked for repainting; a paint replays only
// the primitives that reach into the area it paints.
#pragma once

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QImage>
#include <QPalette>
#include <QPointF>
#include <QPointer>
#include <QString>
#include <QVector>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <vector>

class QPainter;
class QRegion;

namespace kelmar {

// Colours as 24-bit blue-green-red values (&H00BBGGRR); values
// with the high bit set (&H800000xx) name system colours.
using OleColor = std::uint32_t;

namespace ole {
// A colour from its red, green and blue parts.
constexpr OleColor rgb(int r, int g, int b) {
    return static_cast<OleColor>(r) | (static_cast<OleColor>(g) << 8) |
           (static_cast<OleColor>(b) << 16);
}
inline constexpr OleColor Black = 0x000000;
inline constexpr OleColor White = 0xFFFFFF;
inline constexpr OleColor ButtonFace = 0x8000000F;
inline constexpr OleColor ButtonShadow = 0x80000010;
inline constexpr OleColor Highlight = 0xFFFFC0;  // the highlighted attitude label
inline constexpr OleColor DarkGrey = 0x404040;
}  // namespace ole

// System colours are taken from the application's palette.
QColor toQColor(OleColor color);
// System colours are taken from the given palette (a widget's own).
QColor toQColor(OleColor color, const QPalette& palette);
// The sixteen QBColor colours (0 black, 9 bright blue, ...).
OleColor qbColor(int index);

struct DrawPrimitive {
    enum class Kind { Line, Box, FilledBox, Polygon, Text };
    Kind kind = Kind::Line;
    QPointF p1;  // user units; Text: top-left of the text
    QPointF p2;  // user units; unused for Text and Polygon
    OleColor color = ole::Black;      // pen colour (outline, line, text)
    OleColor fillColor = ole::Black;  // FilledBox and Polygon
    int width = 1;                    // pen width in pixels
    QString text;
    QVector<QPointF> points;  // Polygon, user units
    double fontPointSize = 8.0;  // Text, at the design size
    bool bold = false;           // Text
    // Text on a surface stretched more one way than the other keeps its
    // proportions: centred in the box it was measured to fill, or starting
    // where it was printed (a label that follows a mark, a legend).
    bool fromLeft = false;

    bool operator==(const DrawPrimitive& other) const;
};

class DrawSurface : public QWidget {
    Q_OBJECT
public:
    explicit DrawSurface(QWidget* parent = nullptr);

    // Scale (left, top)-(right, bottom). top may be greater than bottom (a
    // y axis that grows upwards).
    void setScale(double left, double top, double right, double bottom);
    double scaleLeft() const { return left_; }
    double scaleTop() const { return top_; }
    double scaleWidth() const { return right_ - left_; }
    double scaleHeight() const { return bottom_ - top_; }

    // The widget size at which fonts have their nominal point size; text
    // grows and shrinks with the widget so that measurements in user units
    // stay valid at any size.
    void setDesignSize(QSize size);
    QSize designSize() const { return designSize_; }

    // Drawing state.
    void setForeColor(OleColor c) { foreColor_ = c; }
    OleColor foreColor() const { return foreColor_; }
    void setBackColor(OleColor c);
    OleColor backColor() const { return backColor_; }
    void setDrawWidth(int w) { drawWidth_ = w; }
    int drawWidth() const { return drawWidth_; }
    void setFontPointSize(double pt);
    double fontPointSize() const { return fontPt_; }
    void setFontBold(bool bold);
    // Text printed from now on starts where it is printed however the
    // surface is stretched (see DrawPrimitive::fromLeft).
    void setTextFromLeft(bool fromLeft) { textFromLeft_ = fromLeft; }

    double currentX() const { return curX_; }
    double currentY() const { return curY_; }
    void setCurrentX(double x) { curX_ = x; }
    void setCurrentY(double y) { curY_ = y; }

    // Clears the record and moves the current position to the origin (0, 0)
    // of the user scale, as a picture box does.
    void cls();
    // Text size in user units (always positive). Measured with the font at
    // the design size, so the result does not depend on the widget's size.
    double textWidth(const QString& s) const;
    double textHeight(const QString& s) const;
    // Distance from the top of a text line to its baseline, in user units.
    double textAscent() const;
    // Prints s with its top-left at the current position, then moves the
    // current position to the start of the next line.
    void print(const QString& s);
    void line(double x1, double y1, double x2, double y2);
    void line(double x1, double y1, double x2, double y2, OleColor c);
    // Line from the current position; the end becomes the current position.
    void lineTo(double x2, double y2, OleColor c);
    void box(double x1, double y1, double x2, double y2, OleColor c);
    void filledBox(double x1, double y1, double x2, double y2, OleColor c);
    void filledBox(double x1, double y1, double x2, double y2, OleColor fill, OleColor outline);
    void polygon(const QVector<QPointF>& points, OleColor c);

    const std::vector<DrawPrimitive>& primitives() const { return record_; }

    // Replays the record onto painter as if the surface were size large
    // (logical pixels; the painter's device pixel ratio is honoured).
    void replay(QPainter& painter, QSizeF size) const;
    // The surface's picture at the given size: background and record.
    QImage toImage(QSize size, qreal devicePixelRatio = 1.0) const;
    // The factor by which text and pen widths are scaled at a widget size:
    // min(width / design width, height / design height).
    double fontScale(QSizeF size) const;

    // Mapping between user units and widget pixels (logical pixels).
    QPointF toPixel(QPointF user) const;
    QPointF toUser(QPointF pixel) const;
    double pixelsPerUnitX() const;
    double pixelsPerUnitY() const;

    // Child widgets placed in user units (the draggable marks); they follow
    // the scale when the surface is resized.
    void placeChild(QWidget* child, double userLeft, double userTop);
    double childLeft(const QWidget* child) const;
    double childTop(const QWidget* child) const;
    double childWidth(const QWidget* child) const;   // in user units
    double childHeight(const QWidget* child) const;  // in user units

    QSize sizeHint() const override;

signals:
    void resized();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // The font of text printed at a point size, at the design size, with its
    // metrics and the advances of the texts measured with it.
    struct DesignFont {
        double pointSize;
        bool bold;
        QFont font;
        QFontMetricsF metrics;
        QHash<QString, double> advances;
    };

    void relayoutChildren();
    QSizeF effectiveSize() const;
    QPointF mapToPixel(QPointF user, QSizeF size) const;
    DesignFont& designFont(double pointSize, bool bold) const;
    DesignFont& currentFont() const { return designFont(fontPt_, fontBold_); }
    static double advance(DesignFont& font, const QString& text);
    // Where text p, advance wide in font, starts its line box when the
    // surface is size large (the box then scaled by fontScale).
    QPointF textOrigin(const DrawPrimitive& p, const DesignFont& font, double advance, QSizeF size) const;
    // The pixels that p may touch when the surface is size large.
    QRectF pixelBounds(const DrawPrimitive& p, QSizeF size) const;
    // Replays the primitives that reach into area (all when it is null).
    void replay(QPainter& painter, QSizeF size, const QRegion* area) const;
    // The record has changed: the difference to what the window shows is
    // marked for repainting when the event loop next turns.
    void recordChanged();
    void markChanges();
    QRegion changedRegion() const;

    double left_ = 0, top_ = 0, right_ = 100, bottom_ = 100;
    QSize designSize_{300, 200};
    OleColor foreColor_ = ole::Black;
    OleColor backColor_ = ole::ButtonFace;
    int drawWidth_ = 1;
    double fontPt_ = 8.0;
    bool fontBold_ = false;
    bool textFromLeft_ = false;
    double curX_ = 0, curY_ = 0;
    std::vector<DrawPrimitive> record_;
    std::vector<DrawPrimitive> shown_;  // the record the window's picture was painted from
    bool changesPending_ = false;       // record_ may differ from shown_
    mutable std::vector<std::unique_ptr<DesignFont>> fonts_;
    // A placed child that is deleted drops out of the list by itself.
    struct Placed {
        QPointer<QWidget> child;
        double left;
        double top;
    };
    std::vector<Placed> placed_;
};

}  // namespace kelmar
