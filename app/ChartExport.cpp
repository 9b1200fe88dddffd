#include "ChartExport.h"

#include <QFileInfo>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>
#include <QTextItem>

#include <algorithm>
#include <cmath>
#include <set>

namespace kelmarhost {

namespace {

// Beyond this many different scores only every n-th is marked, so that a
// very large problem still draws at once.
constexpr std::size_t kMostMarks = 1000;

QString num(double v) { return QString::number(v, 'g', 6); }

QString colorText(const QColor& c) { return c.name(QColor::HexRgb); }

// A paint engine that turns what a QPainter draws into SVG elements.
class SvgEngine : public QPaintEngine {
public:
    SvgEngine() : QPaintEngine(QPaintEngine::AllFeatures) {}

    QString body;

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return QPaintEngine::User; }

    void updateState(const QPaintEngineState& state) override {
        const DirtyFlags flags = state.state();
        if (flags & DirtyPen) pen_ = state.pen();
        if (flags & DirtyBrush) brush_ = state.brush();
        if (flags & DirtyTransform) transform_ = state.transform();
        if (flags & DirtyFont) font_ = state.font();
    }

    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}

    void drawLines(const QLineF* lines, int count) override {
        for (int i = 0; i < count; ++i) {
            const QLineF l = transform_.map(lines[i]);
            body += QStringLiteral("<line x1=\"%1\" y1=\"%2\" x2=\"%3\" y2=\"%4\"%5/>\n")
                        .arg(num(l.x1()), num(l.y1()), num(l.x2()), num(l.y2()), stroke());
        }
    }

    void drawRects(const QRectF* rects, int count) override {
        for (int i = 0; i < count; ++i) {
            QPolygonF p = transform_.map(QPolygonF(rects[i]));
            p.removeLast();  // the closing corner
            drawPoints(p, true);
        }
    }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPolygonF p;
        for (int i = 0; i < count; ++i) p << transform_.map(points[i]);
        drawPoints(p, mode != PolylineMode);
    }

    void drawPath(const QPainterPath& path) override {
        for (const QPolygonF& p : path.toSubpathPolygons(transform_)) drawPoints(p, true);
    }

    void drawTextItem(const QPointF& at, const QTextItem& item) override {
        const QFont f = item.font();
        const double size = f.pixelSize() > 0 ? f.pixelSize() : f.pointSizeF() * 96.0 / 72.0;
        const QTransform& t = transform_;
        body += QStringLiteral(
                    "<text transform=\"matrix(%1 %2 %3 %4 %5 %6)\" x=\"%7\" y=\"%8\" "
                    "font-family=\"%9\" font-size=\"%10\"%11 fill=\"%12\">%13</text>\n")
                    .arg(num(t.m11()), num(t.m12()), num(t.m21()), num(t.m22()), num(t.dx()),
                         num(t.dy()), num(at.x()), num(at.y()), f.family().toHtmlEscaped())
                    .arg(num(size),
                         f.bold() ? QStringLiteral(" font-weight=\"bold\"") : QString(),
                         colorText(pen_.color()), item.text().toHtmlEscaped());
    }

private:
    QString stroke() const {
        if (pen_.style() == Qt::NoPen) return QStringLiteral(" stroke=\"none\"");
        const double scale = std::sqrt(std::abs(transform_.determinant()));
        const double width = std::max(pen_.widthF(), 1.0) * scale;
        const QString cap = pen_.capStyle() == Qt::RoundCap    ? QStringLiteral("round")
                            : pen_.capStyle() == Qt::SquareCap ? QStringLiteral("square")
                                                               : QStringLiteral("butt");
        return QStringLiteral(" stroke=\"%1\" stroke-width=\"%2\" stroke-linecap=\"%3\"")
            .arg(colorText(pen_.color()), num(width), cap);
    }

    void drawPoints(const QPolygonF& p, bool closed) {
        QString points;
        for (const QPointF& q : p) points += num(q.x()) + QLatin1Char(',') + num(q.y()) + QLatin1Char(' ');
        const bool filled = closed && brush_.style() != Qt::NoBrush;
        body += QStringLiteral("<%1 points=\"%2\" fill=\"%3\"%4/>\n")
                    .arg(closed ? QStringLiteral("polygon") : QStringLiteral("polyline"),
                         points.trimmed(),
                         filled ? colorText(brush_.color()) : QStringLiteral("none"), stroke());
    }

    QPen pen_;
    QBrush brush_;
    QTransform transform_;
    QFont font_;
};

// A paint device of a fixed size at 96 dots per inch whose engine writes SVG.
class SvgDevice : public QPaintDevice {
public:
    explicit SvgDevice(QSize size) : size_(size) {}
    ~SvgDevice() override = default;
    QPaintEngine* paintEngine() const override { return &engine_; }
    const QString& body() const { return engine_.body; }

protected:
    int metric(PaintDeviceMetric m) const override {
        switch (m) {
        case PdmWidth: return size_.width();
        case PdmHeight: return size_.height();
        case PdmWidthMM: return qRound(size_.width() * 25.4 / 96.0);
        case PdmHeightMM: return qRound(size_.height() * 25.4 / 96.0);
        case PdmNumColors: return 0x7fffffff;
        case PdmDepth: return 32;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY: return 96;
        case PdmDevicePixelRatio: return 1;
        case PdmDevicePixelRatioScaled: return static_cast<int>(devicePixelRatioFScale());
        default: return 0;
        }
    }

private:
    QSize size_;
    mutable SvgEngine engine_;
};

}  // namespace

void drawAttributeChart(kelmar::ValueFunctionChart& chart, const Problem& problem, int att,
                        const QVector<AttributeCurve>& curves) {
    std::vector<kelmar::ChartCurve> drawn;
    double lo = 0, hi = 1;
    for (qsizetype i = 0; i < curves.size(); ++i) {
        const ValueFunction& f = curves[i].function;
        lo = i == 0 ? f.minimum : std::min(lo, f.minimum);
        hi = i == 0 ? f.maximum : std::max(hi, f.maximum);
        kelmar::ChartCurve c{curves[i].label, {}, {}};
        for (const QPointF& p : f.points) {
            c.scores.push_back(p.x());
            c.values.push_back(p.y());
        }
        drawn.push_back(std::move(c));
    }
    std::vector<QPointF> marks;
    if (!curves.isEmpty()) {
        std::set<double> scores;
        for (const QVector<double>& row : problem.scores) scores.insert(row.value(att));
        const std::size_t every = scores.size() / kMostMarks + 1;
        CurveEvaluator value(curves.last().function);
        std::size_t k = 0;
        for (double s : scores) {
            if (k++ % every == 0) marks.emplace_back(s, value(s));
        }
    }
    const QString name = problem.attributes.value(att).name;
    chart.draw(name, lo, hi, static_cast<std::int16_t>(problem.maxValue), drawn, marks);
}

ChartView::ChartView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("chartFunction"));
    setMinimumSize(260, 160);
}

QSize ChartView::sizeHint() const { return chart_.designSize(); }

void ChartView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    chart_.paint(painter, QSizeF(size()));
}

QByteArray chartSvg(const kelmar::ValueFunctionChart& chart, QSize size) {
    SvgDevice device(size);
    {
        QPainter painter(&device);
        chart.paint(painter, QSizeF(size));
    }
    return QStringLiteral(
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\" "
               "viewBox=\"0 0 %1 %2\">\n%3</svg>\n")
        .arg(size.width())
        .arg(size.height())
        .arg(device.body())
        .toUtf8();
}

bool writeChart(const kelmar::ValueFunctionChart& chart, const QString& path, QString* error,
                QSize size) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    QByteArray bytes;
    if (suffix == QLatin1String("svg")) {
        bytes = chartSvg(chart, size);
    } else if (suffix != QLatin1String("png")) {
        if (error) *error = QStringLiteral("%1: a chart is written as .png or .svg").arg(path);
        return false;
    }
    QSaveFile file(path);
    bool ok = file.open(QIODevice::WriteOnly);
    if (ok && suffix == QLatin1String("png")) {
        QImage image(size * 2, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(2.0);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            chart.paint(painter, QSizeF(size));
        }
        ok = image.save(&file, "PNG");
    } else if (ok) {
        ok = file.write(bytes) == bytes.size();
    }
    ok = ok && file.commit();
    if (!ok && error) *error = QStringLiteral("%1: %2").arg(path, file.errorString());
    return ok;
}

}  // namespace kelmarhost
