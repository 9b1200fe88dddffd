// kelmar-host: runs the Kelmar wizard on a decision problem read from a JSON
// file (or on the built-in sample problem) and writes the value functions
// and the alternatives' values as JSON.
#include "HostWindow.h"
#include "ProblemFile.h"
#include "ResultWriter.h"
#include "SampleProblem.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>

using namespace kelmarhost;

namespace {
constexpr const char* kVersion = "0.1.0";
}

int main(int argc, char** argv) {
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

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kelmar-host"));
    QApplication::setApplicationVersion(QString::fromLatin1(kVersion));
    int status = 0;
    {
        HostWindow window(std::move(problem), ResultWriter(parser.value(output)));
        QObject::connect(&window, &HostWindow::sessionEnded, &app, [] { QApplication::exit(0); });
        window.transferProblem();
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
