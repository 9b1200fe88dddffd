// kelmar-host as a program: the value table without a window, chart and
// report files and the exit statuses.
#include "HostTestData.h"

#include <QFileInfo>
#include <QProcess>

namespace kelmarhost {
namespace {

struct HostRun {
    int status = -1;
    QByteArray out, err;
};

HostRun host(const QStringList& arguments, const QString& stdoutFile = {}) {
    QProcess p;
    if (!stdoutFile.isEmpty()) p.setStandardOutputFile(stdoutFile);
    p.start(QStringLiteral(KELMAR_HOST_PATH), arguments);
    EXPECT_TRUE(p.waitForFinished(120000));
    return {p.exitCode(), p.readAllStandardOutput(), p.readAllStandardError()};
}

TEST(HostProgramTest, EvaluateChartAndReportEndWithTheWindowModesStatuses) {
    QTemporaryDir dir;
    const QString svg = dir.filePath(QStringLiteral("rent.svg"));
    const QString png = dir.filePath(QStringLiteral("docks.png"));
    const QString good = dataFile("good.json"), bad = dataFile("bad_property.json");
    const QString report = dir.filePath(QStringLiteral("good.pdf")), noReport = dir.filePath(QStringLiteral("bad.pdf"));
    const struct { const char* name; QStringList arguments; QString stdoutFile; int status; const char* err; } cases[] = {
        {"the sample", {QStringLiteral("--evaluate")}, {}, 0, ""},
        {"a problem file", {QStringLiteral("--evaluate"), good}, {}, 0, ""},
        {"a bad problem file", {QStringLiteral("--evaluate"), bad}, {}, 2,
         "attributes[2].property: expected \"cost\" or \"benefit\", found \"big\"\n"},
        {"a report", {QStringLiteral("--report"), report, good}, {}, 0, ""},
        {"no report of a bad file", {QStringLiteral("--report"), noReport, bad}, {}, 2, "found \"big\"\n"},
        {"two problem files", {QStringLiteral("--evaluate"), good, good}, {}, 2, "give at most one problem file\n"},
        {"output that cannot be written", {QStringLiteral("--evaluate")}, QStringLiteral("/dev/full"), 1,
         "kelmar-host: standard output cannot be written\n"},
        {"an SVG chart", {QStringLiteral("--chart"), svg, QStringLiteral("--attribute"), QStringLiteral("Rent")}, {}, 0, ""},
        {"a PNG chart by number", {QStringLiteral("--chart"), png, QStringLiteral("--attribute"), QStringLiteral("4")}, {}, 0, ""},
        {"no such attribute", {QStringLiteral("--chart"), svg, QStringLiteral("--attribute"), QStringLiteral("Price")}, {}, 2,
         "kelmar-host: sample problem: no attribute Price\n"},
        {"a chart of another kind", {QStringLiteral("--chart"), dir.filePath(QStringLiteral("x.gif"))}, {}, 2,
         "kelmar-host: --chart writes a .png or an .svg file\n"},
    };
    for (const auto& c : cases) {
        const HostRun r = host(c.arguments, c.stdoutFile);
        EXPECT_EQ(r.status, c.status) << c.name;
        if (c.status == 0) {
            EXPECT_TRUE(r.err.isEmpty()) << c.name << ": a success says nothing: " << r.err.toStdString();
        } else {
            EXPECT_TRUE(QString::fromLocal8Bit(r.err).endsWith(QString::fromUtf8(c.err))) << c.name << ": " << r.err.toStdString();
        }
    }
    const HostRun sample = host({QStringLiteral("--evaluate")});
    EXPECT_EQ(sample.out, valueTableCsv(sampleProblem().alternatives,
                                        {QStringLiteral("Rent"), QStringLiteral("Motorway access"),
                                         QStringLiteral("Floor area"), QStringLiteral("Loading docks"),
                                         QStringLiteral("Labour pool")},
                                        evaluateProblem(sampleProblem())));
    EXPECT_TRUE(QFileInfo::exists(report));
    EXPECT_FALSE(QFileInfo::exists(noReport));
    QFile drawing(svg);
    ASSERT_TRUE(drawing.open(QIODevice::ReadOnly));
    const QByteArray text = drawing.readAll();
    EXPECT_TRUE(text.startsWith("<?xml") && text.contains("Value Function Curve on Rent") && text.contains("#0000ff"))
        << "the title and the blue curve";
    EXPECT_TRUE(QImage(png).width() > 0);
}

}  // namespace
}  // namespace kelmarhost
