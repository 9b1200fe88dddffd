#include "HostWindow.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdio>

namespace kelmarhost {

using kelmar::Variant;
using kelmar::VariantArray;

HostWindow::HostWindow(Problem problem, ResultWriter writer, QWidget* parent)
    : QMainWindow(parent),
      problem_(std::move(problem)),
      writer_(std::move(writer)),
      component_(std::make_unique<kelmar::KelmarDll>()) {
    setWindowTitle(QStringLiteral("kelmar-host"));
    setObjectName(QStringLiteral("HostWindow"));
    component_->setEventSink(this);

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    auto* summary = new QLabel(central);
    summary->setObjectName(QStringLiteral("lblSummary"));
    summary->setWordWrap(true);
    const QString title = problem_.title.isEmpty() ? problem_.source : problem_.title;
    summary->setText(QStringLiteral("<b>%1</b><br>%2 alternatives, %3 attributes (%4)")
                         .arg(title.toHtmlEscaped())
                         .arg(problem_.alternatives.size())
                         .arg(problem_.attributes.size())
                         .arg(problem_.source.toHtmlEscaped()));
    layout->addWidget(summary);

    tabs_ = new QTabWidget(central);
    scores_ = new QTableWidget(tabs_);
    scores_->setObjectName(QStringLiteral("tblScores"));
    values_ = new QTableWidget(tabs_);
    values_->setObjectName(QStringLiteral("tblValues"));
    for (QTableWidget* t : {scores_, values_}) {
        t->setEditTriggers(QAbstractItemView::NoEditTriggers);
        t->setRowCount(static_cast<int>(problem_.alternatives.size()));
        t->setColumnCount(static_cast<int>(problem_.attributes.size()));
        t->setVerticalHeaderLabels(problem_.alternatives);
        t->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    }
    tabs_->addTab(scores_, QStringLiteral("&Scores"));
    tabs_->addTab(values_, QStringLiteral("&Values"));
    layout->addWidget(tabs_, 1);
    setCentralWidget(central);
    fillScores();

    statusBar()->showMessage(QStringLiteral("Opening the value function wizard..."));
    resize(900, 400);

    // With quitOnLastWindowClosed off, the program ends here: when the last
    // window goes, or when the analyst closes the last wizard window while
    // this one stays open.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    connect(qApp, &QGuiApplication::lastWindowClosed, this, [this] {
        if (!wizardVisible()) endIfWizardGone();
    });
    qApp->installEventFilter(this);
}

HostWindow::~HostWindow() {
    qApp->removeEventFilter(this);
    component_->setEventSink(nullptr);
    component_.reset();
}

void HostWindow::fillScores() {
    QStringList headers;
    for (const Attribute& a : problem_.attributes) {
        QString header = a.name;
        if (!a.definition.isEmpty()) header += QStringLiteral("\n") + a.definition;
        header += a.cost ? QStringLiteral("\n(cost)") : QStringLiteral("\n(benefit)");
        headers << header;
    }
    scores_->setHorizontalHeaderLabels(headers);
    values_->setHorizontalHeaderLabels(headers);
    for (int i = 0; i < problem_.scores.size(); ++i) {
        for (int j = 0; j < problem_.scores.at(i).size(); ++j) {
            auto* item = new QTableWidgetItem(QString::number(problem_.scores.at(i).at(j)));
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            scores_->setItem(i, j, item);
        }
    }
}

void HostWindow::fillValues(const VariantArray& AttVData) {
    if (AttVData.dimensions() != 2) return;
    for (int i = AttVData.lbound(1); i <= AttVData.ubound(1); ++i) {
        for (int j = AttVData.lbound(2); j <= AttVData.ubound(2); ++j) {
            if (i < 0 || i >= values_->rowCount() || j < 0 || j >= values_->columnCount())
                continue;
            const Variant& v = AttVData(i, j);
            QString text;
            try {
                text = v.isEmpty() ? QString() : QString::number(v.toDouble(), 'f', 2);
            } catch (const kelmar::RuntimeError&) {
                text = v.toString();
            }
            auto* item = new QTableWidgetItem(text);
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            values_->setItem(i, j, item);
        }
    }
}

void HostWindow::transferProblem() {
    arrays_ = toHostArrays(problem_);
    kelmarhost::transferProblem(*component_, arrays_);
}

void HostWindow::showWizard() {
    try {
        component_->ShowKelmar();
    } catch (const kelmar::RuntimeError& error) {
        // Nothing may escape into the event loop.
        std::fprintf(stderr, "kelmar-host: the wizard failed to open: %s\n", error.what());
        ended_ = true;
        QCoreApplication::exit(1);
    }
}

bool HostWindow::wizardVisible() const {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != this && qobject_cast<QDialog*>(w) != nullptr && w->isVisible()) return true;
    }
    return false;
}

void HostWindow::endIfWizardGone() {
    if (ended_ || wizardVisible()) return;
    ended_ = true;
    // Releasing twice is harmless: the page variables are empty by now when
    // the wizard itself asked to be unloaded.
    component_->UnloadKelmar();
    emit sessionEnded();
}

bool HostWindow::eventFilter(QObject* watched, QEvent* event) {
    // A wizard window closed by the analyst: once its handlers have run,
    // see whether anything of the wizard is left.
    if (event->type() == QEvent::Close && watched != this &&
        qobject_cast<QDialog*>(watched) != nullptr) {
        QTimer::singleShot(0, this, &HostWindow::endIfWizardGone);
    }
    return QMainWindow::eventFilter(watched, event);
}

void HostWindow::UnloadKelmar() {
    statusBar()->showMessage(QStringLiteral("The wizard has closed."));
    component_->UnloadKelmar();
    // The page that raised the event is still inside its handler; end once
    // it has unwound.
    QTimer::singleShot(0, this, &HostWindow::endIfWizardGone);
}

void HostWindow::UnloadKelVFS() { component_->UnloadKelVFS(); }

void HostWindow::SendMasseges(QString Msg) { statusBar()->showMessage(Msg); }

void HostWindow::ExportResults(VariantArray& AttVData, VariantArray& ScoreMinimum,
                               VariantArray& ScoreMiddle, VariantArray& ScoreMaximum,
                               std::int16_t MaxVal, Variant& VFTechniqueID, VariantArray& SmpSize,
                               VariantArray& SmpX, VariantArray& SmpY, VariantArray& VFunParA,
                               VariantArray& VFunParB, VariantArray& VFunParC,
                               VariantArray& VFunParD, VariantArray& VFunType) {
    const ExportedResults results{AttVData, ScoreMinimum, ScoreMiddle, ScoreMaximum, MaxVal,
                                  VFTechniqueID, SmpSize, SmpX, SmpY, VFunParA, VFunParB,
                                  VFunParC, VFunParD, VFunType};
    QStringList attributes;
    for (const Attribute& a : problem_.attributes) attributes << a.name;
    ++exports_;
    fillValues(AttVData);
    tabs_->setCurrentWidget(values_);
    QString error;
    if (writer_.write(resultsToJson(results, problem_.alternatives, attributes), &error)) {
        statusBar()->showMessage(
            writer_.path().isEmpty()
                ? QStringLiteral("Results written to standard output.")
                : QStringLiteral("Results appended to %1.").arg(writer_.path()));
    } else {
        writeFailed_ = true;
        std::fprintf(stderr, "kelmar-host: %s\n", qPrintable(error));
        statusBar()->showMessage(QStringLiteral("The results could not be written: %1").arg(error));
    }
}

}  // namespace kelmarhost
