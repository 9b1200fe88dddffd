#include "charts/DrawSurface.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QResizeEvent>

#include <algorithm>
#include <cmath>

namespace kelmar {

QColor toQColor(OleColor color) {
    if (color & 0x80000000u) {
        const QPalette palette;
        switch (color & 0xFFu) {
        case 0x05: return palette.color(QPalette::Base);
        case 0x08: return palette.color(QPalette::Text);
        case 0x0F: return palette.color(QPalette::Button);
        case 0x10: return palette.color(QPalette::Dark);
        case 0x12: return palette.color(QPalette::ButtonText);
        case 0x14: return palette.color(QPalette::Light);
        case 0x15: return palette.color(QPalette::Shadow);
        default: return palette.color(QPalette::Window);
        }
    }
    return QColor(static_cast<int>(color & 0xFFu), static_cast<int>((color >> 8) & 0xFFu),
                  static_cast<int>((color >> 16) & 0xFFu));
}

OleColor qbColor(int index) {
    static const OleColor table[16] = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080,
                                       0x008080, 0xC0C0C0, 0x808080, 0xFF0000, 0x00FF00, 0xFFFF00,
                                       0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
    return table[std::clamp(index, 0, 15)];
}

DrawSurface::DrawSurface(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void DrawSurface::setScale(double left, double top, double right, double bottom) {
    left_ = left;
    top_ = top;
    right_ = right;
    bottom_ = bottom;
    relayoutChildren();
    update();
}

void DrawSurface::setDesignSize(QSize size) {
    designSize_ = size;
    update();
}

void DrawSurface::setBackColor(OleColor c) {
    backColor_ = c;
    update();
}

void DrawSurface::setFontPointSize(double pt) { fontPt_ = pt; }
void DrawSurface::setFontBold(bool bold) { fontBold_ = bold; }

void DrawSurface::cls() {
    record_.clear();
    curX_ = left_;
    curY_ = top_;
    update();
}

// The widget's size, or the design size while it has none yet.
static QSizeF effectiveSize(const QWidget& w, QSize design) {
    if (w.width() > 1 && w.height() > 1) return QSizeF(w.size());
    return QSizeF(design);
}

double DrawSurface::pixelsPerUnitX() const {
    return effectiveSize(*this, designSize_).width() / std::fabs(right_ - left_);
}

double DrawSurface::pixelsPerUnitY() const {
    return effectiveSize(*this, designSize_).height() / std::fabs(bottom_ - top_);
}

QPointF DrawSurface::toPixel(QPointF user) const {
    const QSizeF size = effectiveSize(*this, designSize_);
    return {(user.x() - left_) / (right_ - left_) * size.width(),
            (user.y() - top_) / (bottom_ - top_) * size.height()};
}

QPointF DrawSurface::toUser(QPointF pixel) const {
    const QSizeF size = effectiveSize(*this, designSize_);
    return {left_ + pixel.x() / size.width() * (right_ - left_),
            top_ + pixel.y() / size.height() * (bottom_ - top_)};
}

// Text grows and shrinks with the widget, so that its size in user units
// does not depend on the widget's size.
double DrawSurface::fontPixelSize() const {
    const double scale = effectiveSize(*this, designSize_).height() / designSize_.height();
    return fontPt_ * 96.0 / 72.0 * scale;
}

static QFont surfaceFont(const QFont& base, double pixelSize, bool bold) {
    QFont f = base;
    f.setPixelSize(std::max(1, static_cast<int>(std::lround(pixelSize))));
    f.setBold(bold);
    return f;
}

double DrawSurface::textWidth(const QString& s) const {
    const QFontMetricsF fm(surfaceFont(font(), fontPixelSize(), fontBold_));
    return fm.horizontalAdvance(s) / pixelsPerUnitX();
}

double DrawSurface::textHeight(const QString& s) const {
    (void)s;
    const QFontMetricsF fm(surfaceFont(font(), fontPixelSize(), fontBold_));
    return fm.height() / pixelsPerUnitY();
}

void DrawSurface::print(const QString& s) {
    DrawPrimitive p;
    p.kind = DrawPrimitive::Kind::Text;
    p.p1 = QPointF(curX_, curY_);
    p.color = foreColor_;
    p.text = s;
    p.fontPointSize = fontPt_;
    p.bold = fontBold_;
    record_.push_back(p);
    // The next line starts at the left edge, one text line further on.
    const double step = textHeight(s);
    curX_ = left_;
    curY_ += (bottom_ > top_) ? step : -step;
    update();
}

void DrawSurface::line(double x1, double y1, double x2, double y2) { line(x1, y1, x2, y2, foreColor_); }

void DrawSurface::line(double x1, double y1, double x2, double y2, OleColor c) {
    DrawPrimitive p;
    p.kind = DrawPrimitive::Kind::Line;
    p.p1 = QPointF(x1, y1);
    p.p2 = QPointF(x2, y2);
    p.color = c;
    p.width = drawWidth_;
    record_.push_back(p);
    curX_ = x2;
    curY_ = y2;
    update();
}

void DrawSurface::lineTo(double x2, double y2, OleColor c) { line(curX_, curY_, x2, y2, c); }

void DrawSurface::box(double x1, double y1, double x2, double y2, OleColor c) {
    DrawPrimitive p;
    p.kind = DrawPrimitive::Kind::Box;
    p.p1 = QPointF(x1, y1);
    p.p2 = QPointF(x2, y2);
    p.color = c;
    p.width = drawWidth_;
    record_.push_back(p);
    curX_ = x2;
    curY_ = y2;
    update();
}

void DrawSurface::filledBox(double x1, double y1, double x2, double y2, OleColor c) {
    filledBox(x1, y1, x2, y2, c, c);
}

void DrawSurface::filledBox(double x1, double y1, double x2, double y2, OleColor fill,
                            OleColor outline) {
    DrawPrimitive p;
    p.kind = DrawPrimitive::Kind::FilledBox;
    p.p1 = QPointF(x1, y1);
    p.p2 = QPointF(x2, y2);
    p.color = outline;
    p.fillColor = fill;
    p.width = drawWidth_;
    record_.push_back(p);
    curX_ = x2;
    curY_ = y2;
    update();
}

void DrawSurface::polygon(const QVector<QPointF>& points, OleColor c) {
    DrawPrimitive p;
    p.kind = DrawPrimitive::Kind::Polygon;
    p.points = points;
    p.color = c;
    p.fillColor = c;
    p.width = drawWidth_;
    record_.push_back(p);
    update();
}

void DrawSurface::placeChild(QWidget* child, double userLeft, double userTop) {
    if (child->parentWidget() != this) child->setParent(this);
    auto it = std::find_if(placed_.begin(), placed_.end(), [child](const Placed& p) { return p.child == child; });
    if (it == placed_.end()) {
        placed_.push_back({child, userLeft, userTop});
        connect(child, &QObject::destroyed, this, [this, child] {
            placed_.erase(std::remove_if(placed_.begin(), placed_.end(),
                                         [child](const Placed& p) { return p.child == child; }),
                          placed_.end());
        });
    } else {
        it->left = userLeft;
        it->top = userTop;
    }
    const QPointF px = toPixel(QPointF(userLeft, userTop));
    child->move(static_cast<int>(std::lround(px.x())), static_cast<int>(std::lround(px.y())));
}

double DrawSurface::childLeft(const QWidget* child) const {
    for (const Placed& p : placed_)
        if (p.child == child) return p.left;
    return toUser(QPointF(child->pos())).x();
}

double DrawSurface::childTop(const QWidget* child) const {
    for (const Placed& p : placed_)
        if (p.child == child) return p.top;
    return toUser(QPointF(child->pos())).y();
}

double DrawSurface::childWidth(const QWidget* child) const { return child->width() / pixelsPerUnitX(); }
double DrawSurface::childHeight(const QWidget* child) const { return child->height() / pixelsPerUnitY(); }

QSize DrawSurface::sizeHint() const { return designSize_; }

void DrawSurface::relayoutChildren() {
    for (const Placed& p : placed_) {
        const QPointF px = toPixel(QPointF(p.left, p.top));
        p.child->move(static_cast<int>(std::lround(px.x())), static_cast<int>(std::lround(px.y())));
    }
}

void DrawSurface::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    relayoutChildren();
    emit resized();
}

void DrawSurface::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), toQColor(backColor_));
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    const double scale = effectiveSize(*this, designSize_).height() / designSize_.height();

    for (const DrawPrimitive& p : record_) {
        QPen pen(toQColor(p.color));
        pen.setWidthF(std::max(1, p.width));
        pen.setCapStyle(Qt::FlatCap);
        switch (p.kind) {
        case DrawPrimitive::Kind::Line:
            pen.setCapStyle(Qt::RoundCap);
            painter.setPen(pen);
            painter.drawLine(toPixel(p.p1), toPixel(p.p2));
            break;
        case DrawPrimitive::Kind::Box:
        case DrawPrimitive::Kind::FilledBox: {
            const QRectF r = QRectF(toPixel(p.p1), toPixel(p.p2)).normalized();
            if (p.kind == DrawPrimitive::Kind::FilledBox) painter.fillRect(r, toQColor(p.fillColor));
            painter.setPen(pen);
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(r);
            break;
        }
        case DrawPrimitive::Kind::Polygon: {
            QPolygonF poly;
            for (const QPointF& q : p.points) poly << toPixel(q);
            painter.setPen(Qt::NoPen);
            painter.setBrush(toQColor(p.fillColor));
            painter.drawPolygon(poly, Qt::WindingFill);
            painter.setBrush(Qt::NoBrush);
            break;
        }
        case DrawPrimitive::Kind::Text: {
            painter.setFont(surfaceFont(font(), p.fontPointSize * 96.0 / 72.0 * scale, p.bold));
            painter.setPen(toQColor(p.color));
            const QPointF at = toPixel(p.p1);
            painter.drawText(QRectF(at, QSizeF(4000, 4000)), Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip, p.text);
            break;
        }
        }
    }
}

}  // namespace kelmar
