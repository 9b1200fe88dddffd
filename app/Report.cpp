#include "Report.h"

#include "ChartExport.h"

#include <QDate>
#include <QFontMetricsF>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace kelmarhost {

namespace {

constexpr double kMarginMm = 15.0;
constexpr double kFooterMm = 8.0;
constexpr double kChartWidthMm = 150.0;
constexpr double kNameColumnMm = 55.0;
constexpr double kValueColumnMm = 16.0;  // the narrowest a value column gets
constexpr double kCellPadMm = 1.2;
constexpr int kHeaderLines = 3;  // a longer column header is cut short
// Up to this many alternatives are listed by name in the overview; the
// value table names them all anyway.
constexpr qsizetype kListedAlternatives = 100;

QString scoreText(double v) { return QString::number(v, 'g', 10); }

QString valueText(double value, int maxValue) {
    if (!std::isfinite(value)) return {};
    return QString::number(value, 'f', maxValue == 1 ? 4 : 2);
}

QString parameterText(const kelmar::Variant& v) {
    if (v.isEmpty()) return QStringLiteral("\u2013");
    if (v.isString()) return v.toString();
    return QString::number(v.toDouble(), 'f', 6);
}

QString orientationText(const Attribute& a) {
    return a.cost ? QStringLiteral("cost: lower scores are better")
                  : QStringLiteral("benefit: higher scores are better");
}

QString functionKind(const ValueFunction& f) {
    return f.type == 0 ? QStringLiteral("a straight line through the points")
                       : QStringLiteral("the smooth curve through the points");
}

struct Column {
    QString header;
    double widthMm;
    bool right = false;  // numbers stand right-aligned
};

struct Table {
    QVector<Column> columns;
    qsizetype rows = 0;
    std::function<QString(qsizetype row, int column)> cell;
    // A colour line drawn in the first column of each row, when given.
    std::function<QColor(qsizetype row)> swatch;
};

// The pages of the report, filled from top to bottom: text flows onto a
// new page when the current one is full, tables repeat their header.
class Pages {
public:
    Pages(QPdfWriter& pdf, QString footer) : pdf_(pdf), footer_(std::move(footer)) {
        dotsPerMm_ = pdf_.resolution() / 25.4;
        const QRect paint = pdf_.pageLayout().paintRectPixels(pdf_.resolution());
        width_ = paint.width();
        bottom_ = paint.height() - mm(kFooterMm);
        if (painter_.begin(&pdf_)) startPage();
    }

    bool active() const { return painter_.isActive(); }
    bool end() { return painter_.end(); }
    double mm(double v) const { return v * dotsPerMm_; }
    double width() const { return width_; }

    QFont font(double points, bool bold = false) const {
        QFont f(QStringLiteral("DejaVu Sans"));
        f.setPointSizeF(points);
        f.setBold(bold);
        // No ligatures: the text reads back (and copies) letter for letter,
        // and long tables are laid out faster.
        f.setStyleStrategy(QFont::PreferNoShaping);
        return f;
    }

    void newPage() {
        pdf_.newPage();
        startPage();
    }
    void pageBreakUnlessTop() {
        if (y_ > 0) newPage();
    }
    void gap(double v) { y_ += mm(v); }

    // Text wrapped to the page's width.
    void text(const QString& s, double points = 9.0, bool bold = false, QColor color = Qt::black) {
        painter_.setFont(font(points, bold));
        painter_.setPen(color);
        const QRectF area(0, 0, width_, 1e9);
        const QRectF r = painter_.boundingRect(area, Qt::TextWordWrap, s);
        need(r.height());
        painter_.drawText(QRectF(0, y_, width_, r.height()), Qt::TextWordWrap, s);
        y_ += r.height() + mm(1);
    }
    void heading(const QString& s, int level) {
        gap(level == 1 ? 4 : 2.5);
        need(mm(level == 1 ? 30 : 20));  // a heading stays with what follows it
        text(s, level == 1 ? 15.0 : 11.0, true);
    }

    void chart(const kelmar::ValueFunctionChart& chart) {
        const QSizeF design(chart.designSize());
        const double w = mm(kChartWidthMm);
        const double h = w * design.height() / design.width();
        need(h);
        painter_.save();
        painter_.translate((width_ - w) / 2, y_);
        painter_.scale(w / design.width(), w / design.width());
        chart.paint(painter_, design);
        painter_.restore();
        y_ += h + mm(2);
    }

    void table(const Table& t) {
        const QFont bodyFont = font(8.0);
        const QFont headFont = font(8.0, true);
        const QFontMetricsF body(bodyFont, &pdf_);
        const QFontMetricsF head(headFont, &pdf_);
        const double pad = mm(kCellPadMm);
        const double rowHeight = body.height() * 1.3;
        double headerHeight = 0;
        for (const Column& c : t.columns) {
            const QRectF r = head.boundingRect(QRectF(0, 0, mm(c.widthMm) - 2 * pad, 1e9),
                                               Qt::TextWordWrap, c.header);
            headerHeight = std::max(headerHeight, std::min(r.height(), head.height() * kHeaderLines));
        }
        headerHeight += 2 * pad;
        double tableWidth = 0;
        for (const Column& c : t.columns) tableWidth += mm(c.widthMm);

        const auto drawHeader = [&] {
            painter_.fillRect(QRectF(0, y_, tableWidth, headerHeight), QColor(0xE4, 0xE8, 0xEE));
            painter_.setFont(headFont);
            painter_.setPen(Qt::black);
            double x = 0;
            for (const Column& c : t.columns) {
                const QRectF r(x + pad, y_ + pad, mm(c.widthMm) - 2 * pad, headerHeight - 2 * pad);
                painter_.drawText(r, Qt::TextWordWrap | Qt::AlignBottom |
                                         (c.right ? Qt::AlignRight : Qt::AlignLeft),
                                  c.header);
                x += mm(c.widthMm);
            }
            y_ += headerHeight;
            painter_.setFont(bodyFont);
        };

        need(headerHeight + rowHeight);
        drawHeader();
        for (qsizetype row = 0; row < t.rows; ++row) {
            if (y_ + rowHeight > bottom_) {
                newPage();
                drawHeader();
            }
            if (row % 2 == 1) painter_.fillRect(QRectF(0, y_, tableWidth, rowHeight), QColor(0xF4, 0xF5, 0xF7));
            painter_.setPen(Qt::black);
            const double baseline = y_ + (rowHeight - body.height()) / 2 + body.ascent();
            double x = 0;
            for (int col = 0; col < t.columns.size(); ++col) {
                const Column& c = t.columns[col];
                const double w = mm(c.widthMm);
                double left = x + pad;
                if (col == 0 && t.swatch) {
                    painter_.setPen(QPen(t.swatch(row), mm(0.7)));
                    painter_.drawLine(QPointF(left, y_ + rowHeight / 2),
                                      QPointF(left + mm(6), y_ + rowHeight / 2));
                    painter_.setPen(Qt::black);
                    left += mm(8);
                }
                QString s = t.cell(row, col);
                const double room = x + w - pad - left;
                double advance = c.right ? rightAdvance(body, s) : body.horizontalAdvance(s);
                if (advance > room) {
                    s = body.elidedText(s, Qt::ElideRight, room);
                    advance = body.horizontalAdvance(s);
                }
                if (!s.isEmpty())
                    painter_.drawText(QPointF(c.right ? x + w - pad - advance : left, baseline), s);
                x += w;
            }
            y_ += rowHeight;
        }
        painter_.setPen(QPen(QColor(0x90, 0x98, 0xA4), mm(0.2)));
        painter_.drawLine(QPointF(0, y_), QPointF(tableWidth, y_));
        y_ += mm(3);
    }

private:
    // Numbers are measured character by character (the fonts are laid out
    // without shaping, so a text's advance is the sum of its characters'):
    // a long value table measures fast.
    double rightAdvance(const QFontMetricsF& fm, const QString& s) {
        if (advanceFont_ != fm.height()) {
            advanceFont_ = fm.height();
            for (int c = 0; c < 128; ++c) advances_[c] = fm.horizontalAdvance(QChar(c));
        }
        double a = 0;
        for (const QChar ch : s) a += ch.unicode() < 128 ? advances_[ch.unicode()] : fm.horizontalAdvance(ch);
        return a;
    }

    void need(double h) {
        if (y_ > 0 && y_ + h > bottom_) newPage();
    }

    void startPage() {
        ++page_;
        y_ = 0;
        painter_.setFont(font(7.0));
        painter_.setPen(QColor(0x60, 0x60, 0x60));
        const QRectF foot(0, bottom_ + mm(3), width_, mm(kFooterMm - 3));
        painter_.drawText(foot, Qt::AlignLeft | Qt::AlignBottom, footer_);
        painter_.drawText(foot, Qt::AlignRight | Qt::AlignBottom, QStringLiteral("page %1").arg(page_));
    }

    QPdfWriter& pdf_;
    QPainter painter_;
    QString footer_;
    double dotsPerMm_ = 1;
    double width_ = 0;
    double bottom_ = 0;
    double y_ = 0;
    int page_ = 0;
    double advanceFont_ = -1;
    std::array<double, 128> advances_{};
};

// The function the values come from; the curves show how it came about.
const ValueFunction& current(const ReportContent& c, int att) {
    return att < c.problem.functions.size() ? c.problem.functions[att] : c.curves[att].last().function;
}

QString problemTitle(const Problem& p) { return p.title.isEmpty() ? p.source : p.title; }

void overview(Pages& pages, const ReportContent& c) {
    const Problem& p = c.problem;
    pages.text(problemTitle(p), 18.0, true);
    pages.text(QStringLiteral("Value functions report, written %1 with kelmar-host")
                   .arg(QDate::currentDate().toString(Qt::ISODate)),
               9.0, false, QColor(0x50, 0x50, 0x50));
    pages.gap(2);
    pages.text(QStringLiteral("%1 alternatives, %2 attributes. On every attribute a value runs from "
                              "0 (the worst score) to %3 (the best).")
                   .arg(p.alternatives.size())
                   .arg(p.attributes.size())
                   .arg(p.maxValue));

    pages.heading(QStringLiteral("Attributes"), 2);
    Table t;
    t.columns = {{QStringLiteral("#"), 8, true},
                 {QStringLiteral("Attribute"), 38},
                 {QStringLiteral("Definition"), 56},
                 {QStringLiteral("Orientation"), 18},
                 {QStringLiteral("Score range"), 30, true},
                 {QStringLiteral("Technique"), 30}};
    t.rows = p.attributes.size();
    t.cell = [&](qsizetype row, int col) -> QString {
        const Attribute& a = p.attributes[row];
        const ValueFunction& f = current(c, static_cast<int>(row));
        switch (col) {
        case 0: return QString::number(row + 1);
        case 1: return a.name;
        case 2: return a.definition;
        case 3: return a.cost ? QStringLiteral("cost") : QStringLiteral("benefit");
        case 4: return scoreText(f.minimum) + QStringLiteral(" \u2013 ") + scoreText(f.maximum);
        default: return techniqueName(f.technique);
        }
    };
    pages.table(t);

    pages.heading(QStringLiteral("Alternatives"), 2);
    if (p.alternatives.size() <= kListedAlternatives) {
        QStringList listed;
        for (qsizetype i = 0; i < p.alternatives.size(); ++i)
            listed << QStringLiteral("%1. %2").arg(i + 1).arg(p.alternatives[i]);
        pages.text(listed.join(QStringLiteral(";  ")));
    } else {
        pages.text(QStringLiteral("%1 alternatives, named in the value table at the end.")
                       .arg(p.alternatives.size()));
    }
}

void attributeSection(Pages& pages, const ReportContent& c, int att) {
    const Problem& p = c.problem;
    const Attribute& a = p.attributes[att];
    const QVector<AttributeCurve>& curves = c.curves[att];
    const ValueFunction& f = current(c, att);

    pages.pageBreakUnlessTop();
    pages.heading(QStringLiteral("%1. %2").arg(att + 1).arg(a.name), 1);
    pages.text((a.definition.isEmpty() ? QString() : a.definition + QStringLiteral("; ")) +
               orientationText(a));
    kelmar::ValueFunctionChart chart;
    drawAttributeChart(chart, p, att, curves);
    pages.chart(chart);

    pages.text(QStringLiteral("Technique: %1. The function is %2.")
                   .arg(techniqueName(f.technique), functionKind(f)));
    pages.text(QStringLiteral("Scores from %1 to %2, middle score %3; values from 0 to %4.")
                   .arg(scoreText(f.minimum), scoreText(f.maximum), scoreText(f.middle))
                   .arg(p.maxValue));

    Table points;
    points.columns = {{QStringLiteral("Point"), 14, true},
                      {QStringLiteral("Score"), 34, true},
                      {QStringLiteral("Value"), 26, true}};
    points.rows = f.points.size();
    points.cell = [&](qsizetype row, int col) -> QString {
        const QPointF& pt = f.points[row];
        if (col == 0) return QString::number(row);
        return col == 1 ? scoreText(pt.x()) : valueText(pt.y() * p.maxValue, p.maxValue);
    };
    pages.table(points);

    Table parameters;
    for (const char* name : {"a", "b", "c", "d"})
        parameters.columns.append({QStringLiteral("Parameter %1").arg(QLatin1String(name)), 30, true});
    parameters.rows = 1;
    parameters.cell = [&](qsizetype, int col) { return parameterText(f.parameters[col]); };
    pages.table(parameters);

    const Comparison comparison = compareCurves(curves);
    const QString words = describeComparison(curves, comparison, p.maxValue);
    if (curves.size() < 2 && words.isEmpty()) return;
    pages.heading(curves.size() < 2 ? QStringLiteral("Shape") : QStringLiteral("Comparison"), 2);
    if (curves.size() >= 2) {
        Table built;
        built.columns = {{QStringLiteral("Function"), 70},
                         {QStringLiteral("Points"), 16, true},
                         {QStringLiteral("Scores"), 44, true}};
        built.rows = curves.size();
        built.swatch = [](qsizetype row) {
            return kelmar::ValueFunctionChart::curveColor(static_cast<std::size_t>(row));
        };
        built.cell = [&](qsizetype row, int col) -> QString {
            const ValueFunction& g = curves[row].function;
            if (col == 0)
                return curves[row].label + (sameCurve(g, f) ? QStringLiteral(" (current)") : QString());
            if (col == 1) return QString::number(g.points.size());
            return scoreText(g.minimum) + QStringLiteral(" \u2013 ") + scoreText(g.maximum);
        };
        pages.table(built);
    }
    for (const QString& line : words.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) pages.text(line);
}

void valueTable(Pages& pages, const ReportContent& c) {
    const Problem& p = c.problem;
    const int attNum = static_cast<int>(p.attributes.size());
    const double room = pages.width() / pages.mm(1) - kNameColumnMm;
    const int fit = std::max(1, static_cast<int>(room / kValueColumnMm));
    const int groups = (attNum + fit - 1) / fit;
    const int perGroup = (attNum + groups - 1) / groups;
    const double columnMm = std::min(30.0, room / perGroup);

    pages.pageBreakUnlessTop();
    pages.heading(QStringLiteral("Value table"), 1);
    pages.text(QStringLiteral("Every alternative's value on every attribute, 0 to %1, from the "
                              "current functions.")
                   .arg(p.maxValue));
    for (int g = 0; g < groups; ++g) {
        const int first = g * perGroup;
        const int last = std::min(attNum, first + perGroup);
        if (groups > 1) {
            if (g > 0) pages.pageBreakUnlessTop();
            pages.text(QStringLiteral("Attributes %1 to %2 of %3").arg(first + 1).arg(last).arg(attNum),
                       9.0, true);
        }
        Table t;
        t.columns.append({QStringLiteral("Alternative"), kNameColumnMm});
        for (int j = first; j < last; ++j) t.columns.append({p.attributes[j].name, columnMm, true});
        t.rows = p.alternatives.size();
        t.cell = [&](qsizetype row, int col) -> QString {
            if (col == 0) return p.alternatives[row];
            const double v = c.values.value(row).value(first + col - 1, std::nan(""));
            return valueText(v, p.maxValue);
        };
        pages.table(t);
    }
}

}  // namespace

ReportContent reportOfProblem(const Problem& problem) {
    ReportContent c{problem, {}, evaluateProblem(problem)};
    for (int j = 0; j < problem.attributes.size(); ++j)
        c.curves.append(attributeCurves(problem.functions, problem.history, j, problem.history.size()));
    return c;
}

bool writeReport(const ReportContent& content, const QString& path, QString* error) {
    ReportContent c = content;
    const Problem& p = c.problem;
    c.curves.resize(p.attributes.size());
    for (int j = 0; j < p.attributes.size(); ++j) {
        if (c.curves[j].isEmpty() && j < p.functions.size())
            c.curves[j].append({QStringLiteral("Current"), p.functions[j], {}});
        if (c.curves[j].isEmpty()) {
            if (error) *error = QStringLiteral("%1: attribute %2 has no value function").arg(path).arg(j + 1);
            return false;
        }
    }

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error) *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    bool ok = false;
    {
        QPdfWriter pdf(&file);
        pdf.setTitle(problemTitle(p));
        pdf.setCreator(QStringLiteral("kelmar-host"));
        pdf.setResolution(300);
        pdf.setPageSize(QPageSize(QPageSize::A4));
        pdf.setPageMargins(QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm), QPageLayout::Millimeter);
        Pages pages(pdf, problemTitle(p) + QStringLiteral(" \u2013 value functions report"));
        if (pages.active()) {
            overview(pages, c);
            for (int j = 0; j < p.attributes.size(); ++j) attributeSection(pages, c, j);
            valueTable(pages, c);
            ok = pages.end();
        }
    }
    ok = ok && file.commit();
    if (!ok && error)
        *error = QStringLiteral("%1: %2").arg(path, file.errorString().isEmpty()
                                                        ? QStringLiteral("the report could not be written")
                                                        : file.errorString());
    return ok;
}

}  // namespace kelmarhost
