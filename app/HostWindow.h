// The main window of kelmar-host: the analyst's workbench around the
// wizard. It shows the problem's scores, the value table and every
// attribute's value functions (all the different ones built since the
// program started, compared), opens the wizard again on the current
// functions, saves them as a problem file and exports tables and charts.
#pragma once

#include "ProblemFile.h"
#include "ResultWriter.h"
#include "Workbench.h"

#include <kelmar/KelmarDll.h>

#include <QMainWindow>

#include <memory>

class QAction;
class QLabel;
class QListWidget;
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

    int exportCount() const noexcept { return static_cast<int>(finishes_.size()); }
    bool writeFailed() const noexcept { return writeFailed_; }
    bool wizardOpen() const noexcept { return wizardOpen_; }
    // Work that File > Save has not written yet.
    bool hasUnsavedWork() const noexcept { return isWindowModified(); }
    const Problem& problem() const noexcept { return problem_; }
    const ValueTable& values() const noexcept { return values_; }
    const QVector<Finish>& finishes() const noexcept { return finishes_; }

    // The file operations behind the menu, without dialogs; false with the
    // reason shown in the status line.
    bool saveTo(const QString& path);
    bool exportValues(const QString& path);
    bool exportChart(int att, const QString& path);
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
    void exportValuesAs();
    void exportChartAs();
    void refreshFunctions();
    void showAttribute(int att);
    void report(const QString& message, bool failed = false);

    Problem problem_;
    QVector<ValueFunction> loaded_;  // the functions the problem came with
    QVector<Finish> finishes_;
    ValueTable values_;
    ResultWriter writer_;
    QString savePath_;
    HostArrays arrays_;
    std::unique_ptr<kelmar::KelmarDll> component_;
    QTabWidget* tabs_ = nullptr;
    TableModel* scoresModel_ = nullptr;
    TableModel* valuesModel_ = nullptr;
    QTableView* valuesView_ = nullptr;
    QWidget* functionsPage_ = nullptr;
    QListWidget* attributes_ = nullptr;
    ChartView* chart_ = nullptr;
    QLabel* comparison_ = nullptr;
    QAction* wizardAction_ = nullptr;
    bool wizardOpen_ = false;
    bool writeFailed_ = false;
};

}  // namespace kelmarhost
