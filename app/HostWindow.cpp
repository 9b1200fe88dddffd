#include "HostWindow.h"

#include "ChartExport.h"

#include <QAbstractTableModel>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QSaveFile>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <cmath>
#include <cstdio>

namespace kelmarhost {

using kelmar::Variant;
using kelmar::VariantArray;

// A read-only table of numbers, alternatives by attributes.
class TableModel : public QAbstractTableModel {
public:
    TableModel(QStringList rows, QStringList columns, int decimals, QObject* parent)
        : QAbstractTableModel(parent),
          rows_(std::move(rows)),
          columns_(std::move(columns)),
          decimals_(decimals) {}

    void setTable(ValueTable table) {
        beginResetModel();
        table_ = std::move(table);
        endResetModel();
    }
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(columns_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        if (role != Qt::DisplayRole || index.row() >= table_.size()) return {};
        const double v = table_[index.row()].value(index.column(), std::nan(""));
        if (!std::isfinite(v)) return QString();
        return decimals_ < 0 ? QString::number(v) : QString::number(v, 'f', decimals_);
    }
    QVariant headerData(int section, Qt::Orientation o, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return o == Qt::Horizontal ? columns_.value(section) : rows_.value(section);
    }

private:
    QStringList rows_, columns_;
    int decimals_;
    ValueTable table_;
};

namespace {

QStringList attributeNames(const Problem& p) {
    QStringList names;
    for (const Attribute& a : p.attributes) names << a.name;
    return names;
}

QTableView* tableView(TableModel* model, const QString& name, QWidget* parent) {
    auto* view = new QTableView(parent);
    view->setObjectName(name);
    view->setModel(model);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    view->horizontalHeader()->setDefaultSectionSize(150);
    return view;
}

}  // namespace

HostWindow::HostWindow(Problem problem, ResultWriter writer, QString savePath, QWidget* parent)
    : QMainWindow(parent),
      problem_(std::move(problem)),
      loaded_(problem_.functions),
      writer_(std::move(writer)),
      savePath_(std::move(savePath)),
      component_(std::make_unique<kelmar::KelmarDll>()) {
    const QString title = problem_.title.isEmpty() ? problem_.source : problem_.title;
    setWindowTitle(QStringLiteral("%1[*] - kelmar-host").arg(title));
    setObjectName(QStringLiteral("HostWindow"));
    component_->setEventSink(this);

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    auto* summary = new QLabel(central);
    summary->setObjectName(QStringLiteral("lblSummary"));
    summary->setWordWrap(true);
    summary->setText(QStringLiteral("<b>%1</b><br>%2 alternatives, %3 attributes (%4)")
                         .arg(title.toHtmlEscaped())
                         .arg(problem_.alternatives.size())
                         .arg(problem_.attributes.size())
                         .arg(problem_.source.toHtmlEscaped()));
    layout->addWidget(summary);

    QStringList headers;
    for (const Attribute& a : problem_.attributes) {
        QString header = a.name;
        if (!a.definition.isEmpty()) header += QStringLiteral("\n") + a.definition;
        header += a.cost ? QStringLiteral("\n(cost)") : QStringLiteral("\n(benefit)");
        headers << header;
    }
    tabs_ = new QTabWidget(central);
    tabs_->setObjectName(QStringLiteral("tabsHost"));
    scoresModel_ = new TableModel(problem_.alternatives, headers, -1, this);
    scoresModel_->setTable(problem_.scores);
    valuesModel_ = new TableModel(problem_.alternatives, headers, 2, this);
    values_ = evaluateProblem(problem_);
    valuesModel_->setTable(values_);
    valuesView_ = tableView(valuesModel_, QStringLiteral("tblValues"), tabs_);
    tabs_->addTab(tableView(scoresModel_, QStringLiteral("tblScores"), tabs_),
                  QStringLiteral("&Scores"));
    tabs_->addTab(valuesView_, QStringLiteral("&Values"));

    functionsPage_ = new QWidget(tabs_);
    auto* split = new QSplitter(functionsPage_);
    attributes_ = new QListWidget(split);
    attributes_->setObjectName(QStringLiteral("lstAttributes"));
    auto* right = new QWidget(split);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    chart_ = new ChartView(right);
    comparison_ = new QLabel(right);
    comparison_->setObjectName(QStringLiteral("lblComparison"));
    comparison_->setWordWrap(true);
    comparison_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    rightLayout->addWidget(chart_, 1);
    rightLayout->addWidget(comparison_);
    split->setStretchFactor(1, 1);
    split->setSizes({180, 720});
    auto* functionsLayout = new QVBoxLayout(functionsPage_);
    functionsLayout->setContentsMargins(0, 0, 0, 0);
    functionsLayout->addWidget(split);
    tabs_->addTab(functionsPage_, QStringLiteral("&Functions"));
    connect(attributes_, &QListWidget::currentRowChanged, this, &HostWindow::showAttribute);
    layout->addWidget(tabs_, 1);
    setCentralWidget(central);

    buildActions();
    refreshFunctions();
    statusBar()->showMessage(QStringLiteral("Values from the functions the problem came with."));
    resize(1000, 640);

    // The program ends when this window closes, not when the wizard does.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    qApp->installEventFilter(this);
}

HostWindow::~HostWindow() {
    qApp->removeEventFilter(this);
    component_->setEventSink(nullptr);
    component_.reset();
}

void HostWindow::buildActions() {
    auto* file = menuBar()->addMenu(QStringLiteral("&File"));
    auto* tools = addToolBar(QStringLiteral("Workbench"));
    tools->setObjectName(QStringLiteral("tbWorkbench"));
    tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    const auto add = [&](const QString& name, const QString& text, QKeySequence key, auto slot,
                         bool onToolbar) {
        auto* a = new QAction(text, this);
        a->setObjectName(name);
        a->setShortcut(key);
        connect(a, &QAction::triggered, this, slot);
        file->addAction(a);
        if (onToolbar) tools->addAction(a);
        return a;
    };
    wizardAction_ = add(QStringLiteral("actWizard"), QStringLiteral("Value &Function Wizard..."),
                        QKeySequence(Qt::CTRL | Qt::Key_W), &HostWindow::showWizard, true);
    file->addSeparator();
    add(QStringLiteral("actSave"), QStringLiteral("&Save"), QKeySequence::Save, &HostWindow::save,
        true);
    add(QStringLiteral("actSaveAs"), QStringLiteral("Save &As..."), QKeySequence::SaveAs,
        &HostWindow::saveAs, false);
    file->addSeparator();
    add(QStringLiteral("actExportValues"), QStringLiteral("Export &Values as CSV..."),
        QKeySequence(), &HostWindow::exportValuesAs, true);
    add(QStringLiteral("actExportChart"), QStringLiteral("Export &Chart as PNG or SVG..."),
        QKeySequence(), &HostWindow::exportChartAs, true);
    file->addSeparator();
    add(QStringLiteral("actQuit"), QStringLiteral("&Quit"), QKeySequence::Quit, &QWidget::close,
        false);
}

void HostWindow::report(const QString& message, bool failed) {
    statusBar()->showMessage(message);
    if (failed) std::fprintf(stderr, "kelmar-host: %s\n", qPrintable(message));
}

void HostWindow::showWizard() {
    if (wizardOpen_) return;
    wizardOpen_ = true;
    wizardAction_->setEnabled(false);
    try {
        arrays_ = toHostArrays(problem_);
        transferProblem(*component_, arrays_);
        component_->ShowKelmar();
    } catch (const kelmar::RuntimeError& error) {
        // Nothing may escape into the event loop.
        report(QStringLiteral("The wizard failed to open: %1").arg(QString::fromUtf8(error.what())),
               true);
        wizardOpen_ = false;
        wizardAction_->setEnabled(true);
    }
}

bool HostWindow::wizardVisible() const {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != this && qobject_cast<QDialog*>(w) != nullptr &&
            qobject_cast<QMessageBox*>(w) == nullptr && qobject_cast<QFileDialog*>(w) == nullptr &&
            w->isVisible())
            return true;
    }
    return false;
}

void HostWindow::wizardClosed() {
    if (!wizardOpen_ || wizardVisible()) return;
    wizardOpen_ = false;
    wizardAction_->setEnabled(true);
    // Releasing twice is harmless: the page variables are empty by now when
    // the wizard itself asked to be unloaded.
    component_->UnloadKelmar();
}

bool HostWindow::eventFilter(QObject* watched, QEvent* event) {
    // A wizard window closed by the analyst: once its handlers have run,
    // see whether anything of the wizard is left.
    if (event->type() == QEvent::Close && watched != this &&
        qobject_cast<QDialog*>(watched) != nullptr) {
        QTimer::singleShot(0, this, &HostWindow::wizardClosed);
    }
    return QMainWindow::eventFilter(watched, event);
}

bool HostWindow::confirmClose() {
    if (!hasUnsavedWork()) return true;
    QMessageBox box(QMessageBox::Question, QStringLiteral("kelmar-host"),
                    QStringLiteral("The value functions have changed since they were last "
                                   "saved. Save them before closing?"),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    box.setObjectName(QStringLiteral("msgUnsaved"));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save:
        save();
        return !hasUnsavedWork();
    case QMessageBox::Discard: return true;
    default: return false;
    }
}

void HostWindow::closeEvent(QCloseEvent* event) {
    if (wizardOpen_ || !confirmClose()) {
        event->ignore();
        return;
    }
    event->accept();
    component_->UnloadKelmar();
    emit sessionEnded();
}

void HostWindow::UnloadKelmar() {
    statusBar()->showMessage(QStringLiteral("The wizard has closed."));
    component_->UnloadKelmar();
    // The page that raised the event is still inside its handler; go on
    // once it has unwound.
    QTimer::singleShot(0, this, &HostWindow::wizardClosed);
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
    const int altNum = static_cast<int>(problem_.alternatives.size());
    const int attNum = static_cast<int>(problem_.attributes.size());
    QString kept;
    try {
        const int number = finishes_.isEmpty() ? 1 : finishes_.last().number + 1;
        finishes_.append({number, MaxVal, functionsFromResults(results, attNum)});
        problem_.functions = finishes_.last().functions;
        if (MaxVal == 1 || MaxVal == 100) problem_.maxValue = MaxVal;
        setWindowModified(true);
    } catch (const ProblemFileError& error) {
        kept = QStringLiteral(" The functions were not kept: %1").arg(error.message());
    }
    values_ = valuesFromResults(AttVData, altNum, attNum);
    valuesModel_->setTable(values_);
    refreshFunctions();
    tabs_->setCurrentWidget(functionsPage_);

    // Each line is also a problem file: the problem and these functions.
    QJsonObject line = resultsToJson(results, problem_.alternatives, attributeNames(problem_));
    const QJsonObject fields = problemFieldsToJson(problem_);
    for (auto it = fields.begin(); it != fields.end(); ++it) {
        if (!line.contains(it.key())) line.insert(it.key(), it.value());
    }
    QString error;
    if (writer_.write(line, &error)) {
        report((writer_.path().isEmpty()
                    ? QStringLiteral("Results written to standard output.")
                    : QStringLiteral("Results appended to %1.").arg(writer_.path())) +
                   kept,
               !kept.isEmpty());
    } else {
        writeFailed_ = true;
        report(QStringLiteral("The results could not be written: %1").arg(error) + kept, true);
    }
}

void HostWindow::refreshFunctions() {
    const int current = std::max(0, attributes_->currentRow());
    const QSignalBlocker block(attributes_);
    attributes_->clear();
    for (int j = 0; j < problem_.attributes.size(); ++j) {
        const qsizetype n = attributeCurves(loaded_, finishes_, j).size();
        attributes_->addItem(n > 1 ? QStringLiteral("%1 (%2 functions)").arg(problem_.attributes[j].name).arg(n)
                                   : problem_.attributes[j].name);
    }
    attributes_->setCurrentRow(current);
    showAttribute(current);
}

void HostWindow::showAttribute(int att) {
    if (att < 0 || att >= problem_.attributes.size()) return;
    const QVector<AttributeCurve> curves = attributeCurves(loaded_, finishes_, att);
    drawAttributeChart(chart_->chart(), problem_, att, curves);
    chart_->update();
    const QString text = describeComparison(curves, compareCurves(curves), problem_.maxValue);
    comparison_->setText(text.isEmpty() ? QStringLiteral("One function: %1.").arg(curves.value(0).label)
                                        : text);
}

bool HostWindow::saveTo(const QString& path) {
    QString error;
    if (!saveProblemFile(problem_, path, &error)) {
        report(QStringLiteral("Not saved: %1").arg(error), true);
        return false;
    }
    savePath_ = path;
    setWindowModified(false);
    report(QStringLiteral("Saved to %1.").arg(path));
    return true;
}

void HostWindow::save() {
    if (savePath_.isEmpty()) {
        saveAs();
    } else {
        saveTo(savePath_);
    }
}

void HostWindow::saveAs() {
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Save the problem"),
                                                      savePath_, QStringLiteral("Problem files (*.json)"));
    if (!path.isEmpty()) saveTo(path);
}

bool HostWindow::exportValues(const QString& path) {
    QSaveFile file(path);
    const QByteArray csv = valueTableCsv(problem_.alternatives, attributeNames(problem_), values_);
    if (!file.open(QIODevice::WriteOnly) || file.write(csv) != csv.size() || !file.commit()) {
        report(QStringLiteral("Not exported: %1: %2").arg(path, file.errorString()), true);
        return false;
    }
    report(QStringLiteral("Values exported to %1.").arg(path));
    return true;
}

bool HostWindow::exportChart(int att, const QString& path) {
    kelmar::ValueFunctionChart chart;
    drawAttributeChart(chart, problem_, att, attributeCurves(loaded_, finishes_, att));
    QString error;
    if (!writeChart(chart, path, &error)) {
        report(QStringLiteral("Not exported: %1").arg(error), true);
        return false;
    }
    report(QStringLiteral("Chart exported to %1.").arg(path));
    return true;
}

void HostWindow::exportValuesAs() {
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Export the values"), {},
                                                      QStringLiteral("CSV files (*.csv)"));
    if (!path.isEmpty()) exportValues(path);
}

void HostWindow::exportChartAs() {
    const int att = std::max(0, attributes_->currentRow());
    const QString path = QFileDialog::getSaveFileName(
        this, QStringLiteral("Export the chart of %1").arg(problem_.attributes.value(att).name), {},
        QStringLiteral("PNG pictures (*.png);;SVG drawings (*.svg)"));
    if (!path.isEmpty()) exportChart(att, path);
}

}  // namespace kelmarhost
