// The analyst's report and the exported charts, read back from their files:
// the PDF's text through pdftotext, its pictures through pdfimages.
#include "ChartExport.h"
#include "HostTestData.h"
#include "Report.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace kelmarhost {
namespace {

QString popplerOutput(const char* tool, const QStringList& arguments) {
    QProcess p;
    p.start(QStandardPaths::findExecutable(QString::fromLatin1(tool)), arguments);
    EXPECT_TRUE(p.waitForFinished(120000)) << tool;
    return QString::fromUtf8(p.readAllStandardOutput());
}

bool popplerInstalled() {
    return !QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty() &&
           !QStandardPaths::findExecutable(QStringLiteral("pdfimages")).isEmpty();
}

// A line of the laid-out text that holds exactly these cells, in order,
// apart from blanks.
bool hasRow(const QString& text, const QStringList& cells) {
    QStringList quoted;
    for (const QString& c : cells) quoted << QRegularExpression::escape(c);
    const QRegularExpression row(QStringLiteral("^\\s*") + quoted.join(QStringLiteral("\\s+")) +
                                     QStringLiteral("\\s*$"),
                                 QRegularExpression::MultilineOption);
    return row.match(text).hasMatch();
}

// The sample problem with Rent built again by Bisection into a curve that
// turns back: the report names everything, gives the current points, the
// comparison and every value, and draws its charts as vector drawing.
TEST(ReportTest, TheReportSaysWhatWasBuiltAndDrawsItsChartsAsVectors) {
    if (!popplerInstalled()) GTEST_SKIP() << "poppler-utils is not installed";
    ReportContent content = reportOfProblem(sampleProblem());
    ValueFunction turned = content.problem.functions[0];
    turned.technique = 5;
    turned.type = 1;
    turned.points[2].setY(0.8);
    content.curves[0].append({QStringLiteral("Finish 1: Bisection"), turned, {}});
    content.problem.functions[0] = turned;
    content.values = evaluateProblem(content.problem);

    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    QString error;
    ASSERT_TRUE(writeReport(content, pdf, &error)) << error.toStdString();
    const QString text = popplerOutput("pdftotext", {QStringLiteral("-layout"), pdf, QStringLiteral("-")});

    const Problem& p = content.problem;
    EXPECT_TRUE(text.contains(p.title));
    for (const Attribute& a : p.attributes)
        EXPECT_TRUE(text.contains(QStringLiteral("Value Function Curve on ") + a.name)) << a.name.toStdString();
    for (qsizetype k = 0; k < turned.points.size(); ++k) {
        const QPointF pt = turned.points[k];
        EXPECT_TRUE(hasRow(text, {QString::number(k), QString::number(pt.x(), 'g', 10),
                                  QString::number(pt.y() * 100, 'f', 2)}))
            << "point " << k;
    }
    EXPECT_TRUE(text.contains(QStringLiteral("Technique: Bisection")));
    EXPECT_TRUE(text.contains(QStringLiteral("Largest difference:")));
    EXPECT_TRUE(text.contains(QStringLiteral("Finish 1: Bisection turns back at score")));
    for (qsizetype i = 0; i < p.alternatives.size(); ++i) {
        QStringList cells{p.alternatives[i]};
        for (double v : content.values[i]) cells << QString::number(v, 'f', 2);
        EXPECT_TRUE(hasRow(text, cells)) << p.alternatives[i].toStdString();
    }

    // No picture anywhere: pdfimages lists its two header lines only.
    const QStringList images =
        popplerOutput("pdfimages", {QStringLiteral("-list"), pdf}).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    EXPECT_EQ(images.size(), 2) << images.join(QLatin1Char('\n')).toStdString();
}

// A compared attribute's chart file carries what the screen shows: the
// score axis' caption, the legend, the largest difference, the turn-back
// line and the names of the alternatives; the SVG is Qt's own.
TEST(ReportTest, AnExportedChartCarriesTheComparison) {
    Problem p = sampleProblem();
    ValueFunction turned = p.functions[0];
    turned.type = 1;
    turned.points[2].setY(0.8);
    const QVector<AttributeCurve> curves{{QStringLiteral("Loaded"), p.functions[0], {}},
                                         {QStringLiteral("Finish 1: Bisection"), turned, {}}};
    kelmar::ValueFunctionChart chart;
    drawAttributeChart(chart, p, 0, curves);
    const QString svg = QString::fromUtf8(chartSvg(chart, QSize(780, 480)));
    EXPECT_TRUE(svg.contains(QStringLiteral("<svg")));
    for (const QString& shown : {p.attributes[0].definition, QStringLiteral("Finish 1: Bisection"),
                                 QStringLiteral("largest difference"), QStringLiteral("turns back"),
                                 p.alternatives[0]})
        EXPECT_TRUE(svg.contains(shown)) << shown.toStdString();
}

}  // namespace
}  // namespace kelmarhost
