#include "ChartExport.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace kelmarhost {

namespace {

// Beyond this many different scores only every n-th is marked, so that a
// very large problem still draws at once.
constexpr std::size_t kMostMarks = 1000;

// Alternatives are named on the chart up to this many; beyond it the marks
// alone stand for them.
constexpr qsizetype kMostNames = 40;

// The guides of the comparison: where the two most different curves part
// furthest, and where a curve turns back.
std::vector<kelmar::ChartGuide> comparisonGuides(const QVector<AttributeCurve>& curves,
                                                 int maxValue) {
    std::vector<kelmar::ChartGuide> guides;
    const Comparison c = compareCurves(curves);
    if (c.first >= 0) {
        const double s = c.largest.score;
        guides.push_back({s, CurveEvaluator(curves[c.first].function)(s),
                          CurveEvaluator(curves[c.second].function)(s),
                          QStringLiteral("largest difference %1")
                              .arg(QString::number(c.largest.value * maxValue, 'f', 2)),
                          -1});
    }
    for (qsizetype i = 0; i < c.turns.size(); ++i) {
        if (c.turns[i])
            guides.push_back({*c.turns[i], 0.0, 1.0, QStringLiteral("turns back"), static_cast<int>(i)});
    }
    return guides;
}

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
    kelmar::ChartExtras extras;
    const Attribute attribute = problem.attributes.value(att);
    extras.scoreCaption = attribute.definition.isEmpty() ? attribute.name : attribute.definition;
    if (!curves.isEmpty()) {
        // Alternatives with the same score share one mark and one name.
        std::vector<std::pair<double, qsizetype>> byScore;
        byScore.reserve(static_cast<std::size_t>(problem.scores.size()));
        for (qsizetype i = 0; i < problem.scores.size(); ++i)
            byScore.emplace_back(problem.scores[i].value(att), i);
        std::sort(byScore.begin(), byScore.end());
        std::size_t distinct = 0;
        for (std::size_t i = 0; i < byScore.size(); ++i)
            distinct += i == 0 || byScore[i].first != byScore[i - 1].first;
        const bool named = problem.alternatives.size() <= kMostNames;
        const std::size_t every = distinct / kMostMarks + 1;
        // Marked on the current function: the problem's own, which need not
        // be the latest curve.
        CurveEvaluator value(att < problem.functions.size() ? problem.functions[att]
                                                            : curves.last().function);
        std::size_t k = 0;
        for (std::size_t i = 0; i < byScore.size();) {
            const double s = byScore[i].first;
            QStringList names;
            for (; i < byScore.size() && byScore[i].first == s; ++i)
                if (named) names << problem.alternatives.value(byScore[i].second);
            if (k++ % every != 0) continue;
            marks.emplace_back(s, value(s));
            if (named) extras.markNames.push_back(names.join(QStringLiteral(", ")));
        }
        extras.guides = comparisonGuides(curves, problem.maxValue);
    }
    chart.draw(attribute.name, lo, hi, static_cast<std::int16_t>(problem.maxValue), drawn, marks,
               extras);
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
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    // Logical pixels, as on screen.
    svg.setResolution(96);
    svg.setTitle(QStringLiteral("Value function chart"));
    svg.setDescription(QStringLiteral("Drawn by kelmar-host"));
    {
        QPainter painter(&svg);
        chart.paint(painter, QSizeF(size));
    }
    return buffer.data();
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
