#include "charts/DrawSurface.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QMetaObject>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QRegion>
#include <QResizeEvent>

#include <algorithm>
#include <cmath>

namespace kelmar {

namespace {

// System colour indices (the low byte of &H800000xx) and the palette
// roles that play their part on this desktop.
QColor systemColor(unsigned index, const QPalette& palette) {
    switch (index) {
    case 0x00: return palette.color(QPalette::Window);           // scroll bars
    case 0x01: return palette.color(QPalette::Window);           // desktop
    case 0x02: return palette.color(QPalette::Highlight);        // active title
    case 0x03: return palette.color(QPalette::Inactive, QPalette::Highlight);
    case 0x04: return palette.color(QPalette::Window);           // menu
    case 0x05: return palette.color(QPalette::Base);             // window background
    case 0x06: return palette.color(QPalette::Shadow);           // window frame
    case 0x07: return palette.color(QPalette::WindowText);       // menu text
    case 0x08: return palette.color(QPalette::Text);             // window text
    case 0x09: return palette.color(QPalette::HighlightedText);  // title text
    case 0x0A: return palette.color(QPalette::Mid);              // active border
    case 0x0B: return palette.color(QPalette::Mid);              // inactive border
    case 0x0C: return palette.color(QPalette::Dark);             // MDI background
    case 0x0D: return palette.color(QPalette::Highlight);
    case 0x0E: return palette.color(QPalette::HighlightedText);
    case 0x0F: return palette.color(QPalette::Button);           // button face
    case 0x10: return palette.color(QPalette::Dark);             // button shadow
    case 0x11: return palette.color(QPalette::Disabled, QPalette::Text);  // grey text
    case 0x12: return palette.color(QPalette::ButtonText);
    case 0x13: return palette.color(QPalette::Inactive, QPalette::WindowText);
    case 0x14: return palette.color(QPalette::Light);            // button highlight
    case 0x15: return palette.color(QPalette::Shadow);           // dark shadow
    case 0x16: return palette.color(QPalette::Midlight);         // light 3-D
    case 0x17: return palette.color(QPalette::ToolTipText);
    case 0x18: return palette.color(QPalette::ToolTipBase);
    default: return palette.color(QPalette::Window);
    }
}

// The font of text printed at pt points, at the design size. Whole pixel
// sizes keep the metrics identical on every screen.
QFont fontAtDesignSize(const QFont& base, double pt, bool bold) {
    QFont f = base;
    f.setPixelSize(std::max(1, static_cast<int>(std::lround(pt * 96.0 / 72.0))));
    f.setBold(bold);
    return f;
}

// Pens keep their pixel width at the design size and below, and grow with a
// larger surface in whole pixels.
double penWidth(int width, double scale) {
    const int w = std::max(1, width);
    return scale > 1.0 ? std::max<double>(w, std::round(w * scale)) : double(w);
}

// The advances of this many texts are kept per font; more start the list
// afresh.
constexpr int kKeptAdvances = 4096;

// Moves a pixel coordinate onto the device pixel grid so that a horizontal
// or vertical stroke of the given width covers whole pixels.
double snapStroke(double logical, double penWidth, double dpr) {
    const double device = logical * dpr;
    const long width = std::lround(penWidth * dpr);
    const double snapped = (width % 2 == 1) ? std::floor(device) + 0.5 : std::round(device);
    return snapped / dpr;
}

double snapEdge(double logical, double dpr) { return std::round(logical * dpr) / dpr; }

}  // namespace

QColor toQColor(OleColor color, const QPalette& palette) {
    if (color & 0x80000000u) return systemColor(color & 0xFFu, palette);
    return QColor(static_cast<int>(color & 0xFFu), static_cast<int>((color >> 8) & 0xFFu),
                  static_cast<int>((color >> 16) & 0xFFu));
}

QColor toQColor(OleColor color) { return toQColor(color, QApplication::palette()); }

OleColor qbColor(int index) {
    static const OleColor table[16] = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080,
                                       0x008080, 0xC0C0C0, 0x808080, 0xFF0000, 0x00FF00, 0xFFFF00,
                                       0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
    return table[std::clamp(index, 0, 15)];
}

bool DrawPrimitive::operator==(const DrawPrimitive& other) const {
    return kind == other.kind && p1 == other.p1 && p2 == other.p2 && color == other.color &&
           fillColor == other.fillColor && width == other.width && text == other.text &&
           points == other.points && fontPointSize == other.fontPointSize && bold == other.bold &&
           fromLeft == other.fromLeft;
}

DrawSurface::DrawSurface(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void DrawSurface::setScale(double left, double top, double right, double bottom) {
    if (left == left_ && top == top_ && right == right_ && bottom == bottom_) return;
    left_ = left;
    top_ = top;
    right_ = right;
    bottom_ = bottom;
    relayoutChildren();
    update();
}

void DrawSurface::setDesignSize(QSize size) {
    const QSize design = size.isValid() && !size.isEmpty() ? size : QSize(300, 200);
    if (design == designSize_) return;
    designSize_ = design;
    update();
}

void DrawSurface::setBackColor(OleColor c) {
    if (c == backColor_) return;
    backColor_ = c;
    update();
}

void DrawSurface::setFontPointSize(double pt) { fontPt_ = pt; }
void DrawSurface::setFontBold(bool bold) { fontBold_ = bold; }

void DrawSurface::cls() {
    record_.clear();
    curX_ = 0;
    curY_ = 0;
    recordChanged();
}

void DrawSurface::recordChanged() {
    if (changesPending_) return;
    changesPending_ = true;
    QMetaObject::invokeMethod(this, [this] { markChanges(); }, Qt::QueuedConnection);
}

void DrawSurface::markChanges() {
    if (!changesPending_) return;
    changesPending_ = false;
    // A hidden surface is painted whole when it is shown.
    if (isVisible()) update(changedRegion());
    shown_ = record_;
}

QRegion DrawSurface::changedRegion() const {
    // What both records begin and end with stays; in between, primitives
    // that differ at the same place in both mark their old and new pixels,
    // and when the middles differ in length, all of them do. A pixel outside
    // those is covered by the same primitives in the same order as before.
    const std::vector<DrawPrimitive>& was = shown_;
    const std::vector<DrawPrimitive>& now = record_;
    std::size_t head = 0;
    while (head < was.size() && head < now.size() && was[head] == now[head]) ++head;
    std::size_t wasEnd = was.size();
    std::size_t nowEnd = now.size();
    while (wasEnd > head && nowEnd > head && was[wasEnd - 1] == now[nowEnd - 1]) {
        --wasEnd;
        --nowEnd;
    }
    const QSizeF size(this->size());
    QRegion region;
    auto add = [&](const DrawPrimitive& p) { region += pixelBounds(p, size).toAlignedRect(); };
    if (wasEnd - head == nowEnd - head) {
        for (std::size_t i = head; i < wasEnd; ++i) {
            if (was[i] == now[i]) continue;
            add(was[i]);
            add(now[i]);
        }
    } else {
        for (std::size_t i = head; i < wasEnd; ++i) add(was[i]);
        for (std::size_t i = head; i < nowEnd; ++i) add(now[i]);
    }
    return region & rect();
}

DrawSurface::DesignFont& DrawSurface::designFont(double pointSize, bool bold) const {
    for (const auto& f : fonts_)
        if (f->pointSize == pointSize && f->bold == bold) return *f;
    const QFont font = fontAtDesignSize(this->font(), pointSize, bold);
    fonts_.push_back(std::make_unique<DesignFont>(
        DesignFont{pointSize, bold, font, QFontMetricsF(font), QHash<QString, double>()}));
    return *fonts_.back();
}

double DrawSurface::advance(DesignFont& font, const QString& text) {
    const auto kept = font.advances.constFind(text);
    if (kept != font.advances.constEnd()) return *kept;
    if (font.advances.size() >= kKeptAdvances) font.advances.clear();
    const double width = font.metrics.horizontalAdvance(text);
    font.advances.insert(text, width);
    return width;
}

void DrawSurface::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) fonts_.clear();
    QWidget::changeEvent(event);
}

// The widget's size, or the design size while it has none yet.
QSizeF DrawSurface::effectiveSize() const {
    if (width() > 1 && height() > 1) return QSizeF(size());
    return QSizeF(designSize_);
}

double DrawSurface::pixelsPerUnitX() const { return effectiveSize().width() / std::fabs(right_ - left_); }

double DrawSurface::pixelsPerUnitY() const {
    return effectiveSize().height() / std::fabs(bottom_ - top_);
}

QPointF DrawSurface::mapToPixel(QPointF user, QSizeF size) const {
    return {(user.x() - left_) / (right_ - left_) * size.width(),
            (user.y() - top_) / (bottom_ - top_) * size.height()};
}

QPointF DrawSurface::toPixel(QPointF user) const { return mapToPixel(user, effectiveSize()); }

QPointF DrawSurface::toUser(QPointF pixel) const {
    const QSizeF size = effectiveSize();
    return {left_ + pixel.x() / size.width() * (right_ - left_),
            top_ + pixel.y() / size.height() * (bottom_ - top_)};
}

double DrawSurface::fontScale(QSizeF size) const {
    return std::min(size.width() / designSize_.width(), size.height() / designSize_.height());
}

double DrawSurface::textWidth(const QString& s) const {
    return advance(currentFont(), s) * std::fabs(right_ - left_) / designSize_.width();
}

double DrawSurface::textHeight(const QString& s) const {
    (void)s;
    return currentFont().metrics.height() * std::fabs(bottom_ - top_) / designSize_.height();
}

double DrawSurface::textAscent() const {
    return currentFont().metrics.ascent() * std::fabs(bottom_ - top_) / designSize_.height();
}

void DrawSurface::print(const QString& s) {
    DrawPrimitive p;
    p.kind = DrawPrimitive::Kind::Text;
    p.p1 = QPointF(curX_, curY_);
    p.color = foreColor_;
    p.text = s;
    p.fontPointSize = fontPt_;
    p.bold = fontBold_;
    p.fromLeft = textFromLeft_;
    record_.push_back(p);
    // The next line starts at the left edge, one text line further down.
    const double step = textHeight(s);
    curX_ = left_;
    curY_ += (bottom_ > top_) ? step : -step;
    recordChanged();
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
    recordChanged();
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
    recordChanged();
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
    recordChanged();
}

void DrawSurface::polygon(const QVector<QPointF>& points, OleColor c) {
    DrawPrimitive p;
    p.kind = DrawPrimitive::Kind::Polygon;
    p.points = points;
    p.color = c;
    p.fillColor = c;
    p.width = drawWidth_;
    record_.push_back(p);
    recordChanged();
}

void DrawSurface::placeChild(QWidget* child, double userLeft, double userTop) {
    if (child->parentWidget() != this) child->setParent(this);
    placed_.erase(std::remove_if(placed_.begin(), placed_.end(),
                                 [](const Placed& p) { return p.child.isNull(); }),
                  placed_.end());
    auto it = std::find_if(placed_.begin(), placed_.end(),
                           [child](const Placed& p) { return p.child == child; });
    if (it == placed_.end()) {
        placed_.push_back({child, userLeft, userTop});
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
double DrawSurface::childHeight(const QWidget* child) const {
    return child->height() / pixelsPerUnitY();
}

QSize DrawSurface::sizeHint() const { return designSize_; }

void DrawSurface::relayoutChildren() {
    for (const Placed& p : placed_) {
        if (p.child.isNull()) continue;
        const QPointF px = toPixel(QPointF(p.left, p.top));
        p.child->move(static_cast<int>(std::lround(px.x())), static_cast<int>(std::lround(px.y())));
    }
}

void DrawSurface::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    relayoutChildren();
    emit resized();
}

QRectF DrawSurface::pixelBounds(const DrawPrimitive& p, QSizeF size) const {
    auto px = [this, size](QPointF user) { return mapToPixel(user, size); };
    const double scale = fontScale(size);
    // Strokes reach half their width beyond their ends and edges (more at a
    // mitred or square corner), and snapping to the pixel grid moves them
    // by up to half a pixel; antialiasing adds a pixel.
    const double margin = penWidth(p.width, scale) + 2.0;
    switch (p.kind) {
    case DrawPrimitive::Kind::Line:
    case DrawPrimitive::Kind::Box:
    case DrawPrimitive::Kind::FilledBox:
        return QRectF(px(p.p1), px(p.p2)).normalized().adjusted(-margin, -margin, margin, margin);
    case DrawPrimitive::Kind::Polygon: {
        QPolygonF poly;
        for (const QPointF& q : p.points) poly << px(q);
        return poly.boundingRect().adjusted(-2.0, -2.0, 2.0, 2.0);
    }
    case DrawPrimitive::Kind::Text: {
        // The line box as replay places it, widened by half a line each
        // way for glyphs that reach beyond their advance or the line.
        DesignFont& font = designFont(p.fontPointSize, p.bold);
        const double advance = DrawSurface::advance(font, p.text);
        const double height = font.metrics.height();
        const QPointF at = textOrigin(p, font, advance, size);
        const double reach = height * scale / 2.0 + 2.0;
        return QRectF(at, QSizeF(advance * scale, height * scale)).adjusted(-reach, -reach, reach, reach);
    }
    }
    return QRectF(QPointF(0, 0), size);
}

QPointF DrawSurface::textOrigin(const DrawPrimitive& p, const DesignFont& font, double advance, QSizeF size) const {
    // Text keeps its proportions, so on a surface stretched more in one
    // direction it is centred in the box it was measured to fill, or starts
    // where it was printed.
    const double scale = fontScale(size);
    const double sx = size.width() / designSize_.width();
    const double sy = size.height() / designSize_.height();
    const QPointF at = mapToPixel(p.p1, size);
    return {at.x() + (p.fromLeft ? 0.0 : advance * (sx - scale) / 2.0),
            at.y() + font.metrics.height() * (sy - scale) / 2.0};
}

void DrawSurface::replay(QPainter& painter, QSizeF size) const { replay(painter, size, nullptr); }

void DrawSurface::replay(QPainter& painter, QSizeF size, const QRegion* area) const {
    const QPalette& pal = palette();
    const double dpr = painter.device() != nullptr ? painter.device()->devicePixelRatioF() : 1.0;
    const double scale = fontScale(size);
    auto px = [this, size](QPointF user) { return mapToPixel(user, size); };

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.fillRect(QRectF(QPointF(0, 0), size), toQColor(backColor_, pal));

    for (const DrawPrimitive& p : record_) {
        if (area != nullptr && !area->intersects(pixelBounds(p, size).toAlignedRect())) continue;
        const double width = penWidth(p.width, scale);
        QPen pen(toQColor(p.color, pal));
        pen.setWidthF(width);
        switch (p.kind) {
        case DrawPrimitive::Kind::Line: {
            QPointF a = px(p.p1);
            QPointF b = px(p.p2);
            const bool straight = a.x() == b.x() || a.y() == b.y();
            if (straight) {
                // Across the stroke and at its square-capped ends alike.
                a = QPointF(snapStroke(a.x(), width, dpr), snapStroke(a.y(), width, dpr));
                b = QPointF(snapStroke(b.x(), width, dpr), snapStroke(b.y(), width, dpr));
            }
            pen.setCapStyle(straight ? Qt::SquareCap : Qt::RoundCap);
            pen.setJoinStyle(Qt::RoundJoin);
            painter.setPen(pen);
            painter.drawLine(a, b);
            break;
        }
        case DrawPrimitive::Kind::Box:
        case DrawPrimitive::Kind::FilledBox: {
            const QRectF r = QRectF(px(p.p1), px(p.p2)).normalized();
            if (p.kind == DrawPrimitive::Kind::FilledBox) {
                const QRectF fill(QPointF(snapEdge(r.left(), dpr), snapEdge(r.top(), dpr)),
                                  QPointF(snapEdge(r.right(), dpr), snapEdge(r.bottom(), dpr)));
                painter.fillRect(fill, toQColor(p.fillColor, pal));
                if (p.color == p.fillColor) break;
            }
            const QRectF outline(
                QPointF(snapStroke(r.left(), width, dpr), snapStroke(r.top(), width, dpr)),
                QPointF(snapStroke(r.right(), width, dpr), snapStroke(r.bottom(), width, dpr)));
            pen.setJoinStyle(Qt::MiterJoin);
            painter.setPen(pen);
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(outline);
            break;
        }
        case DrawPrimitive::Kind::Polygon: {
            QPolygonF poly;
            for (const QPointF& q : p.points) poly << px(q);
            painter.setPen(Qt::NoPen);
            painter.setBrush(toQColor(p.fillColor, pal));
            painter.drawPolygon(poly, Qt::WindingFill);
            painter.setBrush(Qt::NoBrush);
            break;
        }
        case DrawPrimitive::Kind::Text: {
            // The text is laid out with the design-size font and scaled as
            // a whole.
            DesignFont& font = designFont(p.fontPointSize, p.bold);
            painter.save();
            painter.translate(textOrigin(p, font, DrawSurface::advance(font, p.text), size));
            painter.scale(scale, scale);
            painter.setFont(font.font);
            painter.setPen(toQColor(p.color, pal));
            painter.drawText(QPointF(0, font.metrics.ascent()), p.text);
            painter.restore();
            break;
        }
        }
    }
    painter.restore();
}

QImage DrawSurface::toImage(QSize size, qreal devicePixelRatio) const {
    QImage image(size * devicePixelRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    replay(painter, QSizeF(size));
    return image;
}

void DrawSurface::paintEvent(QPaintEvent* event) {
    // What is painted now is painted from the record as it stands, so the
    // changes up to now count as shown.
    markChanges();
    QPainter painter(this);
    const QRegion& area = event->region();
    replay(painter, QSizeF(size()), area.contains(rect()) ? nullptr : &area);
}

}  // namespace kelmar
