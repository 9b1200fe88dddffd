// The main window of kelmar-host: the analyst's workbench around the
// wizard. It shows the problem's scores, the value table and every
// attribute's value functions (all the different ones in the problem's
// history, compared; any of them can be made current again), opens the
// wizard on the current functions, opens and saves problem files with their
// history, exports tables and charts, and shows the help.
#pragma once

#include "ProblemFile.h"
#include "ResultWriter.h"
#include "Workbench.h"

#include <kelmar/KelmarDll.h>

#include <QMainWindow>
#include <QPointer>

#include <memory>

class QAction;
class QLabel;
class QListWidget;
class QMenu;
class QPushButton;
class QTabWidget;
class QTableView;

namespace kelmarhost {

class ChartView;
class TableModel;

class HostWindow : public QMainWindow, public kelmar::KelmarEvents {
    Q_OBJECT
public:
    // savePath: where File > Save writes without asking (empty: ask).
    HostWindow(Problem problem, ResultWriter writer, QString savePath = {},
               QWidget* parent = nullptr);
    ~HostWindow() override;

    // Hands the problem and its current value functions to the component
    // and opens the wizard; with the default modal runner it returns when
    // the settings page is hidden or closed.
    void showWizard();

    // Finishes of this session (the history read with the problem not counted).
    int exportCount() const noexcept { return static_cast<int>(finishes_.size() - sessionStart_); }
    bool writeFailed() const noexcept { return writeFailed_; }
    bool wizardOpen() const noexcept { return wizardOpen_; }
    // Work that File > Save has not written yet.
    bool hasUnsavedWork() const noexcept { return isWindowModified(); }
    const Problem& problem() const noexcept { return problem_; }
    const ValueTable& values() const noexcept { return values_; }
    // Every Finish of the problem: its history, then this session's.
    const QVector<Finish>& finishes() const noexcept { return finishes_; }
    // The different curves of an attribute, oldest first, as the Functions
    // tab lists them.
    QVector<AttributeCurve> curvesOf(int att) const;

    // Puts another problem on the workbench (after asking about unsaved
    // work; false when the analyst cancels). savePath as for the constructor.
    bool openProblem(Problem problem, const QString& savePath);
    // Reads a problem file and opens it; false with the reason in `error`
    // (the workbench is left as it was).
    bool openFile(const QString& path, QString* error = nullptr);
    // The recently opened or saved problem files, newest first.
    QStringList recentFiles() const;
    // Makes curve `curve` of attributeCurves(att) the attribute's current
    // function; the value table follows.
    void makeCurrent(int att, int curve);
    // Opens the help window at the part about a page (its object name, e.g.
    // "frmKelBisection"; anything else: the workbench) and returns it.
    QWidget* showHelp(const QString& pageName);

    // The file operations behind the menu, without dialogs; false with the
    // reason shown in the status line.
    bool saveTo(const QString& path);
    bool exportValues(const QString& path);
    bool exportChart(int att, const QString& path);
    // The analyst's report of the functions as they stand (PDF).
    bool exportReport(const QString& path);
    // Asks whether to save unsaved work; false when the analyst cancels.
    bool confirmClose();

    // kelmar::KelmarEvents
    void UnloadKelmar() override;
    void UnloadKelVFS() override;
    void SendMasseges(QString Msg) override;
    void ExportResults(kelmar::VariantArray& AttVData, kelmar::VariantArray& ScoreMinimum,
                       kelmar::VariantArray& ScoreMiddle, kelmar::VariantArray& ScoreMaximum,
                       std::int16_t MaxVal, kelmar::Variant& VFTechniqueID,
                       kelmar::VariantArray& SmpSize, kelmar::VariantArray& SmpX,
                       kelmar::VariantArray& SmpY, kelmar::VariantArray& VFunParA,
                       kelmar::VariantArray& VFunParB, kelmar::VariantArray& VFunParC,
                       kelmar::VariantArray& VFunParD, kelmar::VariantArray& VFunType) override;

signals:
    // The analyst closed the workbench: the program can end.
    void sessionEnded();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildActions();
    bool wizardVisible() const;
    // Back to the workbench once no wizard window is left on screen.
    void wizardClosed();
    void save();
    void saveAs();
    void open();
    void openRecent();
    void openSample();
    void rememberFile(const QString& path);
    void fillRecentMenu();
    void setProblem(Problem problem, const QString& savePath);
    void showCurve(int row);
    void makeSelectedCurrent(bool openWizard);
    void exportValuesAs();
    void exportChartAs();
    void exportReportAs();
    void refreshFunctions();
    void showAttribute(int att);
    void report(const QString& message, bool failed = false);

    Problem problem_;
    QVector<ValueFunction> loaded_;  // the functions the problem came with
    QVector<Finish> finishes_;       // its history, then this session's
    qsizetype sessionStart_ = 0;     // where this session's Finishes begin
    ValueTable values_;
    ResultWriter writer_;
    QString savePath_;
    HostArrays arrays_;
    std::unique_ptr<kelmar::KelmarDll> component_;
    QTabWidget* tabs_ = nullptr;
    QLabel* summary_ = nullptr;
    QMenu* recentMenu_ = nullptr;
    TableModel* scoresModel_ = nullptr;
    TableModel* valuesModel_ = nullptr;
    QTableView* valuesView_ = nullptr;
    QWidget* functionsPage_ = nullptr;
    QListWidget* attributes_ = nullptr;
    ChartView* chart_ = nullptr;
    QLabel* comparison_ = nullptr;
    QListWidget* curves_ = nullptr;
    QPushButton* makeCurrent_ = nullptr;
    QPushButton* makeCurrentWizard_ = nullptr;
    QPointer<QWidget> help_;
    QAction* wizardAction_ = nullptr;
    bool wizardOpen_ = false;
    bool writeFailed_ = false;
};

}  // namespace kelmarhost
