#include "HostWindow.h"

#include "ChartExport.h"
#include "Report.h"
#include "SampleProblem.h"

#include <QAbstractTableModel>
#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
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
    explicit TableModel(QObject* parent) : QAbstractTableModel(parent) {}

    void setTable(QStringList rows, QStringList columns, int decimals, ValueTable table) {
        beginResetModel();
        rows_ = std::move(rows);
        columns_ = std::move(columns);
        decimals_ = decimals;
        table_ = std::move(table);
        endResetModel();
    }
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
    int decimals_ = -1;
    ValueTable table_;
};

namespace {

// Where the list of recent files is kept.
const QString kSettingsOrganization = QStringLiteral("kelmar");
const QString kSettingsApplication = QStringLiteral("kelmar-host");

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

// Columns as wide as their headers (name, definition, orientation) and
// numbers need, so that no header is cut off; the analyst can still resize.
void fitColumns(QTableView* view) { view->resizeColumnsToContents(); }

}  // namespace

HostWindow::HostWindow(Problem problem, ResultWriter writer, QString savePath, QWidget* parent)
    : QMainWindow(parent), writer_(std::move(writer)) {
    setObjectName(QStringLiteral("HostWindow"));

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    summary_ = new QLabel(central);
    summary_->setObjectName(QStringLiteral("lblSummary"));
    summary_->setWordWrap(true);
    layout->addWidget(summary_);

    tabs_ = new QTabWidget(central);
    tabs_->setObjectName(QStringLiteral("tabsHost"));
    scoresModel_ = new TableModel(this);
    valuesModel_ = new TableModel(this);
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
    // The attribute's curves, oldest first; any can be made current again.
    curves_ = new QListWidget(right);
    curves_->setObjectName(QStringLiteral("lstCurves"));
    curves_->setMaximumHeight(110);
    makeCurrent_ = new QPushButton(QStringLiteral("Make &Current"), right);
    makeCurrent_->setObjectName(QStringLiteral("btnMakeCurrent"));
    makeCurrentWizard_ = new QPushButton(QStringLiteral("Make Current and Open the &Wizard"), right);
    makeCurrentWizard_->setObjectName(QStringLiteral("btnMakeCurrentWizard"));
    auto* curveButtons = new QHBoxLayout;
    curveButtons->addWidget(makeCurrent_);
    curveButtons->addWidget(makeCurrentWizard_);
    curveButtons->addStretch(1);
    rightLayout->addWidget(chart_, 1);
    rightLayout->addWidget(comparison_);
    rightLayout->addWidget(curves_);
    rightLayout->addLayout(curveButtons);
    split->setStretchFactor(1, 1);
    split->setSizes({180, 720});
    auto* functionsLayout = new QVBoxLayout(functionsPage_);
    functionsLayout->setContentsMargins(0, 0, 0, 0);
    functionsLayout->addWidget(split);
    tabs_->addTab(functionsPage_, QStringLiteral("&Functions"));
    connect(attributes_, &QListWidget::currentRowChanged, this, &HostWindow::showAttribute);
    connect(curves_, &QListWidget::currentRowChanged, this, &HostWindow::showCurve);
    connect(makeCurrent_, &QPushButton::clicked, this, [this] { makeSelectedCurrent(false); });
    connect(makeCurrentWizard_, &QPushButton::clicked, this, [this] { makeSelectedCurrent(true); });
    layout->addWidget(tabs_, 1);
    setCentralWidget(central);

    buildActions();
    setProblem(std::move(problem), savePath);
    resize(1000, 640);

    // Help from any page of the wizard opens the help window at that page.
    kelmar::KelmarDll::setHelpHandler([this](const QString&, int) {
        QWidget* front = QApplication::activeModalWidget();
        if (front == nullptr) front = QApplication::activeWindow();
        showHelp(front != nullptr ? front->objectName() : QString());
    });
    // The program ends when this window closes, not when the wizard does.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    qApp->installEventFilter(this);
}

HostWindow::~HostWindow() {
    qApp->removeEventFilter(this);
    kelmar::KelmarDll::setHelpHandler({});
    delete help_.data();
    component_->setEventSink(nullptr);
    component_.reset();
}

void HostWindow::setProblem(Problem problem, const QString& savePath) {
    // A new component: pages kept from the last problem must not show it.
    if (component_) component_->setEventSink(nullptr);
    component_ = std::make_unique<kelmar::KelmarDll>();
    component_->setEventSink(this);

    problem_ = std::move(problem);
    loaded_ = problem_.functions;
    finishes_ = problem_.history;
    sessionStart_ = finishes_.size();
    savePath_ = savePath;
    const QString title = problem_.title.isEmpty() ? problem_.source : problem_.title;
    setWindowTitle(QStringLiteral("%1[*] - kelmar-host").arg(title));
    summary_->setText(QStringLiteral("<b>%1</b><br>%2 alternatives, %3 attributes (%4)")
                          .arg(title.toHtmlEscaped())
                          .arg(problem_.alternatives.size())
                          .arg(problem_.attributes.size())
                          .arg(problem_.source.toHtmlEscaped()));

    QStringList headers;
    for (const Attribute& a : problem_.attributes) {
        QString header = a.name;
        if (!a.definition.isEmpty()) header += QStringLiteral("\n") + a.definition;
        header += a.cost ? QStringLiteral("\n(cost)") : QStringLiteral("\n(benefit)");
        headers << header;
    }
    scoresModel_->setTable(problem_.alternatives, headers, -1, problem_.scores);
    values_ = evaluateProblem(problem_);
    valuesModel_->setTable(problem_.alternatives, headers, 2, values_);
    for (QTableView* view : findChildren<QTableView*>()) fitColumns(view);

    attributes_->setCurrentRow(0);
    refreshFunctions();
    setWindowModified(false);
    statusBar()->showMessage(
        finishes_.isEmpty()
            ? QStringLiteral("Values from the functions the problem came with.")
            : QStringLiteral("Values from the current functions; %1 earlier Finishes in the history.")
                  .arg(finishes_.size()));
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
    add(QStringLiteral("actOpen"), QStringLiteral("&Open..."), QKeySequence::Open, &HostWindow::open,
        true);
    recentMenu_ = file->addMenu(QStringLiteral("Open &Recent"));
    recentMenu_->setObjectName(QStringLiteral("menuRecent"));
    connect(recentMenu_, &QMenu::aboutToShow, this, &HostWindow::fillRecentMenu);
    fillRecentMenu();
    add(QStringLiteral("actOpenSample"), QStringLiteral("Open Sa&mple"), QKeySequence(),
        &HostWindow::openSample, false);
    file->addSeparator();
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
    add(QStringLiteral("actExportReport"), QStringLiteral("Export &Report as PDF..."),
        QKeySequence(), &HostWindow::exportReportAs, false);
    file->addSeparator();
    add(QStringLiteral("actQuit"), QStringLiteral("&Quit"), QKeySequence::Quit, &QWidget::close,
        false);

    auto* helpMenu = menuBar()->addMenu(QStringLiteral("&Help"));
    auto* help = helpMenu->addAction(QStringLiteral("Kelmar &Help"));
    help->setObjectName(QStringLiteral("actHelp"));
    help->setShortcut(QKeySequence::HelpContents);
    connect(help, &QAction::triggered, this, [this] { showHelp(QString()); });
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
        // Kept to the millisecond with the offset from UTC, as the file stores it.
        const QDateTime now = QDateTime::currentDateTime();
        finishes_.append({number, MaxVal, functionsFromResults(results, attNum),
                          now.toOffsetFromUtc(now.offsetFromUtc())});
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

QVector<AttributeCurve> HostWindow::curvesOf(int att) const {
    return attributeCurves(loaded_, finishes_, att, sessionStart_);
}

void HostWindow::refreshFunctions() {
    const int current = std::max(0, attributes_->currentRow());
    const QSignalBlocker block(attributes_);
    attributes_->clear();
    for (int j = 0; j < problem_.attributes.size(); ++j) {
        const qsizetype n = curvesOf(j).size();
        attributes_->addItem(n > 1 ? QStringLiteral("%1 (%2 functions)").arg(problem_.attributes[j].name).arg(n)
                                   : problem_.attributes[j].name);
    }
    // Wide enough for the longest entry, so that no name is cut off.
    attributes_->setMinimumWidth(std::min(360, attributes_->sizeHintForColumn(0) +
                                                   2 * attributes_->frameWidth() + 24));
    attributes_->setCurrentRow(current);
    showAttribute(current);
}

void HostWindow::showAttribute(int att) {
    if (att < 0 || att >= problem_.attributes.size()) return;
    const QVector<AttributeCurve> curves = curvesOf(att);
    drawAttributeChart(chart_->chart(), problem_, att, curves);
    chart_->update();
    const QString text = describeComparison(curves, compareCurves(curves), problem_.maxValue);
    comparison_->setText(text.isEmpty() ? QStringLiteral("One function: %1.").arg(curves.value(0).label)
                                        : text);

    // Which Finish a curve came from, and when; the current one is marked.
    const QSignalBlocker block(curves_);
    curves_->clear();
    int currentRow = -1;
    for (qsizetype k = 0; k < curves.size(); ++k) {
        QString entry = curves[k].label;
        if (curves[k].finished.isValid())
            entry += QStringLiteral(" (%1)").arg(QLocale().toString(curves[k].finished, QLocale::ShortFormat));
        if (att < problem_.functions.size() && sameCurve(curves[k].function, problem_.functions[att])) {
            entry += QStringLiteral(", current");
            currentRow = static_cast<int>(k);
        }
        curves_->addItem(entry);
    }
    curves_->setCurrentRow(currentRow);
    showCurve(currentRow);
}

void HostWindow::showCurve(int row) {
    const int att = attributes_->currentRow();
    const QVector<AttributeCurve> curves = curvesOf(att);
    const bool other = row >= 0 && row < curves.size() && att < problem_.functions.size() &&
                       !sameCurve(curves[row].function, problem_.functions[att]);
    makeCurrent_->setEnabled(other);
    makeCurrentWizard_->setEnabled(row >= 0 && row < curves.size());
}

void HostWindow::makeCurrent(int att, int curve) {
    const QVector<AttributeCurve> curves = curvesOf(att);
    if (att < 0 || att >= problem_.functions.size() || curve < 0 || curve >= curves.size()) return;
    if (sameRecord(problem_.functions[att], curves[curve].function)) return;
    problem_.functions[att] = curves[curve].function;
    values_ = evaluateProblem(problem_);
    valuesModel_->setTable(values_);
    setWindowModified(true);
    showAttribute(att);
    report(QStringLiteral("%1: %2 is the current function.")
               .arg(problem_.attributes[att].name, curves[curve].label));
}

void HostWindow::makeSelectedCurrent(bool openWizard) {
    makeCurrent(attributes_->currentRow(), curves_->currentRow());
    if (openWizard) showWizard();
}

bool HostWindow::saveTo(const QString& path) {
    QString error;
    Problem saved = problem_;
    saved.history = finishes_;
    if (!saveProblemFile(saved, path, &error)) {
        report(QStringLiteral("Not saved: %1").arg(error), true);
        return false;
    }
    savePath_ = path;
    setWindowModified(false);
    rememberFile(path);
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
    QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Save the problem"), savePath_,
                                                QStringLiteral("Problem files (*.json)"));
    if (path.isEmpty()) return;
    if (QFileInfo(path).suffix().isEmpty()) path += QStringLiteral(".json");
    saveTo(path);
}

// --- Opening problems ---------------------------------------------------------

bool HostWindow::openProblem(Problem problem, const QString& savePath) {
    if (wizardOpen_ || !confirmClose()) return false;
    setProblem(std::move(problem), savePath);
    return true;
}

bool HostWindow::openFile(const QString& path, QString* error) {
    Problem problem;
    try {
        problem = loadProblemFile(path);
    } catch (const ProblemFileError& e) {
        if (error) *error = e.message();
        report(e.message(), true);
        return false;
    }
    // A file of results lines is saved under a new name, as on the command line.
    const QString savePath = problem.source == path ? path : QString();
    if (!openProblem(std::move(problem), savePath)) return false;
    rememberFile(path);
    report(QStringLiteral("Opened %1.").arg(path));
    return true;
}

void HostWindow::open() {
    const QString dir = savePath_.isEmpty() ? QString() : QFileInfo(savePath_).absolutePath();
    const QString path = QFileDialog::getOpenFileName(
        this, QStringLiteral("Open a problem"), dir,
        QStringLiteral("Problem files (*.json *.jsonl);;All files (*)"));
    if (path.isEmpty()) return;
    QString error;
    if (!openFile(path, &error) && !error.isEmpty())
        QMessageBox::warning(this, QStringLiteral("kelmar-host"), error);
}

void HostWindow::openRecent() {
    const auto* action = qobject_cast<QAction*>(sender());
    if (action == nullptr) return;
    const QString path = action->data().toString();
    QString error;
    if (openFile(path, &error) || error.isEmpty()) return;
    if (!QFileInfo::exists(path)) {
        QSettings settings(kSettingsOrganization, kSettingsApplication);
        QStringList files = settings.value(QStringLiteral("recentFiles")).toStringList();
        files.removeAll(path);
        settings.setValue(QStringLiteral("recentFiles"), files);
    }
    QMessageBox::warning(this, QStringLiteral("kelmar-host"), error);
}

void HostWindow::openSample() {
    if (openProblem(sampleProblem(), QString())) report(QStringLiteral("Opened the sample problem."));
}

QStringList HostWindow::recentFiles() const {
    return QSettings(kSettingsOrganization, kSettingsApplication).value(QStringLiteral("recentFiles")).toStringList();
}

void HostWindow::rememberFile(const QString& path) {
    constexpr qsizetype kRecentFiles = 8;
    QSettings settings(kSettingsOrganization, kSettingsApplication);
    QStringList files = settings.value(QStringLiteral("recentFiles")).toStringList();
    const QString absolute = QFileInfo(path).absoluteFilePath();
    files.removeAll(absolute);
    files.prepend(absolute);
    settings.setValue(QStringLiteral("recentFiles"), files.mid(0, kRecentFiles));
}

void HostWindow::fillRecentMenu() {
    recentMenu_->clear();
    const QStringList files = recentFiles();
    for (qsizetype k = 0; k < files.size(); ++k) {
        QAction* a = recentMenu_->addAction(
            QStringLiteral("&%1 %2").arg(k + 1).arg(QFileInfo(files[k]).fileName()));
        a->setData(files[k]);
        a->setToolTip(files[k]);
        connect(a, &QAction::triggered, this, &HostWindow::openRecent);
    }
    recentMenu_->setEnabled(!files.isEmpty());
}

// --- Help -------------------------------------------------------------------------

QWidget* HostWindow::showHelp(const QString& pageName) {
    // The part of the help about each page, by the page's object name.
    static const std::pair<const char*, const char*> kTopics[] = {
        {"frmKelSettings", "The settings page"},
        {"frmKelMidPoint", "Midpoint setting"},
        {"frmKelDirectRating", "Direct rating"},
        {"frmKelCurveDrawing", "Curve drawing"},
        {"frmKelCatIdn", "Category identification"},
        {"frmKelDiffStdSeq", "Difference standard sequences"},
        {"frmKelBisection", "Bisection"},
        {"frmKelVarP", "Variable probability"},
        {"frmKelVarC", "Variable certainty equivalent"},
        {"frmVFS", "The function view"},
    };
    QString topic = QStringLiteral("The workbench");
    for (const auto& [name, heading] : kTopics)
        if (pageName == QLatin1String(name)) topic = QString::fromLatin1(heading);

    // A window of the page in front, so that the page's modality leaves it
    // usable; it follows the analyst from page to page.
    QWidget* front = QApplication::activeModalWidget();
    if (front == nullptr) front = this;
    auto* browser = help_.isNull() ? nullptr : help_->findChild<QTextBrowser*>();
    if (browser == nullptr) {
        help_ = new QWidget(front, Qt::Window);
        help_->setObjectName(QStringLiteral("wndHelp"));
        help_->setAttribute(Qt::WA_DeleteOnClose);
        help_->setWindowTitle(QStringLiteral("Kelmar Help"));
        browser = new QTextBrowser(help_);
        browser->setObjectName(QStringLiteral("txtHelp"));
        browser->setOpenExternalLinks(true);
        QFile text(QStringLiteral(":/kelmar-host/help.md"));
        if (text.open(QIODevice::ReadOnly)) {
            browser->setMarkdown(QString::fromUtf8(text.readAll()));
        } else {
            browser->setPlainText(QStringLiteral("The help text is missing from this build."));
        }
        auto* layout = new QVBoxLayout(help_);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(browser);
        help_->resize(620, 560);
        // Beside the window it helps with where the screen has room, else
        // over its left edge.
        if (const QScreen* screen = front->screen()) {
            const QRect room = screen->availableGeometry();
            const QRect beside = front->frameGeometry();
            const int x = beside.right() + 1 + help_->width() <= room.right()
                              ? beside.right() + 1
                              : std::max(room.left(), beside.left() - help_->width() / 2);
            help_->move(x, std::clamp(beside.top(), room.top(),
                                      std::max(room.top(), room.bottom() - help_->height())));
        }
    } else if (help_->parentWidget() != front) {
        help_->setParent(front, Qt::Window);
    }
    help_->show();
    help_->raise();
    help_->activateWindow();

    // The topic's heading at the top of the window.
    QTextDocument* doc = browser->document();
    for (QTextBlock block = doc->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || block.text().trimmed() != topic) continue;
        QTextCursor cursor(block);
        browser->setTextCursor(cursor);
        const QRectF where = doc->documentLayout()->blockBoundingRect(block);
        browser->verticalScrollBar()->setValue(static_cast<int>(where.top()));
        break;
    }
    return help_;
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
    drawAttributeChart(chart, problem_, att, curvesOf(att));
    QString error;
    if (!writeChart(chart, path, &error)) {
        report(QStringLiteral("Not exported: %1").arg(error), true);
        return false;
    }
    report(QStringLiteral("Chart exported to %1.").arg(path));
    return true;
}

bool HostWindow::exportReport(const QString& path) {
    ReportContent content{problem_, {}, values_};
    for (int j = 0; j < problem_.attributes.size(); ++j) content.curves.append(curvesOf(j));
    QString error;
    if (!writeReport(content, path, &error)) {
        report(QStringLiteral("Not exported: %1").arg(error), true);
        return false;
    }
    report(QStringLiteral("Report written to %1.").arg(path));
    return true;
}

void HostWindow::exportReportAs() {
    QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Export the report"), {},
                                                QStringLiteral("PDF documents (*.pdf)"));
    if (path.isEmpty()) return;
    if (QFileInfo(path).suffix().isEmpty()) path += QStringLiteral(".pdf");
    exportReport(path);
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
