// kelmar-host: runs the Kelmar wizard on a decision problem read from a JSON
// file (or on the built-in sample problem) and writes the value functions
// and the alternatives' values as JSON; keeps the results on a workbench to
// compare, save and export. Without a window it prints the value table or
// writes a function chart.
#include "ChartExport.h"
#include "Report.h"
#include "HostWindow.h"
#include "ProblemFile.h"
#include "ResultWriter.h"
#include "SampleProblem.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QMessageBox>
#include <QSet>
#include <QTimer>

#include <cstdio>
#include <exception>

using namespace kelmarhost;

namespace {
constexpr const char* kVersion = "0.1.0";
// The exit status of an error that no check foresaw (1 and 2 are failed
// writes and bad input).
constexpr int kUnexpectedError = 3;

void reportUnexpected(const char* what) {
    std::fprintf(stderr, "kelmar-host: unexpected error: %s\n", what);
}

// An error that escapes an event handler ends that handler only: the
// analyst is told and the workbench stays open. Without a window the first
// one decides the exit status.
class HostApplication : public QApplication {
public:
    HostApplication(int& argc, char** argv, bool windowless)
        : QApplication(argc, argv), windowless_(windowless) {}

    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& error) {
            unexpected(QString::fromUtf8(error.what()));
        } catch (...) {
            unexpected(QStringLiteral("an unknown error"));
        }
        return false;
    }
    bool failed() const noexcept { return failed_; }

private:
    void unexpected(const QString& what) {
        reportUnexpected(qPrintable(what));
        failed_ = true;
        // An error met again (a picture that cannot be painted, say) is not
        // shown again: the box would come back with every repaint.
        if (windowless_ || reporting_ || shown_.contains(what)) return;
        shown_.insert(what);
        reporting_ = true;
        QMessageBox::critical(activeWindow(), QStringLiteral("kelmar-host"),
                              QStringLiteral("An unexpected error ended the last action: %1\n\n"
                                             "The workbench stays open; saving your work now "
                                             "is a good idea.")
                                  .arg(what));
        reporting_ = false;
    }

    bool windowless_;
    bool failed_ = false;
    bool reporting_ = false;
    QSet<QString> shown_;
};

void quietMessages(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "kelmar-host: %s\n", qPrintable(message));
}

}  // namespace

static int run(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);

    // The command line and the problem file are checked before any window
    // system is needed.
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Builds single-attribute value functions for a decision problem with the "
                       "Kelmar wizard and writes them, with every alternative's value, as JSON."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption output(
        {QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write the results to <file>, one line of JSON per Finish (the file is "
                       "started afresh by the first Finish). Default: standard output."),
        QStringLiteral("file"));
    parser.addOption(output);
    const QCommandLineOption evaluate(
        QStringLiteral("evaluate"),
        QStringLiteral("Print the value table that the problem's functions give, as CSV, and "
                       "exit without opening a window."));
    parser.addOption(evaluate);
    const QCommandLineOption chart(
        QStringLiteral("chart"),
        QStringLiteral("Write the value function chart of one attribute to <file> (.png or "
                       ".svg) and exit without opening a window."),
        QStringLiteral("file"));
    parser.addOption(chart);
    const QCommandLineOption attribute(
        QStringLiteral("attribute"),
        QStringLiteral("The attribute of --chart, by name or by number from 1. Default: the "
                       "first."),
        QStringLiteral("name"));
    parser.addOption(attribute);
    const QCommandLineOption report(
        QStringLiteral("report"),
        QStringLiteral("Write the analyst's report (PDF) of the problem and its functions to "
                       "<file> and exit without opening a window."),
        QStringLiteral("file"));
    parser.addOption(report);
    parser.addPositionalArgument(
        QStringLiteral("problem"),
        QStringLiteral("The decision problem, a JSON file (see docs/problem-format.md). Without "
                       "it the built-in sample problem opens."),
        QStringLiteral("[problem]"));
    if (!parser.parse(arguments)) {
        std::fprintf(stderr, "kelmar-host: %s\nTry 'kelmar-host --help'.\n",
                     qPrintable(parser.errorText()));
        return 2;
    }
    if (parser.isSet(help)) {
        std::fputs(qPrintable(parser.helpText().replace(QStringLiteral("<executable_name>"),
                                                        QStringLiteral("kelmar-host"))),
                   stdout);
        return 0;
    }
    if (parser.isSet(version)) {
        std::printf("kelmar-host %s\n", kVersion);
        return 0;
    }
    const QStringList files = parser.positionalArguments();
    if (files.size() > 1) {
        std::fprintf(stderr, "kelmar-host: give at most one problem file\n");
        return 2;
    }
    if (parser.isSet(chart)) {
        const QString suffix = QFileInfo(parser.value(chart)).suffix().toLower();
        if (suffix != QLatin1String("png") && suffix != QLatin1String("svg")) {
            std::fprintf(stderr, "kelmar-host: --chart writes a .png or an .svg file\n");
            return 2;
        }
    }
    if (parser.isSet(output) && parser.value(output).isEmpty()) {
        std::fprintf(stderr, "kelmar-host: --output needs a file name\n");
        return 2;
    }

    Problem problem;
    try {
        problem = files.isEmpty() ? sampleProblem() : loadProblemFile(files.first());
    } catch (const ProblemFileError& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.message()));
        return 2;
    }

    const bool batch = parser.isSet(evaluate) || parser.isSet(chart) || parser.isSet(report);
    int chartAttribute = 0;
    if (parser.isSet(chart)) {
        const QString wanted = parser.value(attribute);
        bool isNumber = false;
        const int number = wanted.toInt(&isNumber);
        chartAttribute = wanted.isEmpty() ? 0 : isNumber ? number - 1 : -1;
        for (int j = 0; !isNumber && j < problem.attributes.size(); ++j) {
            if (problem.attributes[j].name == wanted) chartAttribute = j;
        }
        if (chartAttribute < 0 || chartAttribute >= problem.attributes.size()) {
            std::fprintf(stderr, "kelmar-host: %s: no attribute %s\n", qPrintable(problem.source),
                         qPrintable(wanted));
            return 2;
        }
    }
    if (parser.isSet(evaluate)) {
        QStringList names;
        for (const Attribute& a : problem.attributes) names << a.name;
        const QByteArray csv = valueTableCsv(problem.alternatives, names, evaluateProblem(problem));
        if (std::fwrite(csv.constData(), 1, static_cast<std::size_t>(csv.size()), stdout) !=
                static_cast<std::size_t>(csv.size()) ||
            std::fflush(stdout) != 0) {
            std::fprintf(stderr, "kelmar-host: standard output cannot be written\n");
            return 1;
        }
    }
    // Charts are drawn without a screen.
    if (batch && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Without a window, standard error carries the program's own faults
    // only, not Qt's notes on the desktop it found.
    if (batch) qInstallMessageHandler(quietMessages);

    HostApplication app(argc, argv, batch);
    QApplication::setApplicationName(QStringLiteral("kelmar-host"));
    QApplication::setApplicationVersion(QString::fromLatin1(kVersion));
    if (parser.isSet(chart)) {
        kelmar::ValueFunctionChart drawing;
        drawAttributeChart(drawing, problem, chartAttribute,
                           {{QStringLiteral("Loaded"), problem.functions.value(chartAttribute)}});
        QString error;
        if (!writeChart(drawing, parser.value(chart), &error)) {
            std::fprintf(stderr, "kelmar-host: %s\n", qPrintable(error));
            return 1;
        }
    }
    if (parser.isSet(report)) {
        QString error;
        if (!writeReport(reportOfProblem(problem), parser.value(report), &error)) {
            std::fprintf(stderr, "kelmar-host: %s\n", qPrintable(error));
            return 1;
        }
    }
    if (batch) return app.failed() ? kUnexpectedError : 0;

    int status = 0;
    {
        // A problem file of its own is saved back to itself; the sample
        // and a file of results lines are saved under a new name.
        const QString savePath =
            files.isEmpty() || problem.source != files.first() ? QString() : files.first();
        HostWindow window(std::move(problem), ResultWriter(parser.value(output)), savePath);
        QObject::connect(&window, &HostWindow::sessionEnded, &app, [] { QApplication::exit(0); });
        window.show();
        // The wizard's settings page runs modally, so it is opened from
        // inside the event loop.
        QTimer::singleShot(0, &window, &HostWindow::showWizard);
        status = QApplication::exec();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (status == 0 && window.writeFailed()) status = 1;
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}

int main(int argc, char** argv) {
    // Nothing a problem file or the analyst does may abort the program: an
    // error no check foresaw ends it with one line and a status of its own.
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        reportUnexpected(error.what());
    } catch (...) {
        reportUnexpected("an unknown error");
    }
    return kUnexpectedError;
}
