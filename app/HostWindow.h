// The main window of kelmar-host: the problem at a glance, the wizard's
// guidance in the status line, and the host side of the component's events.
#pragma once

#include "ProblemFile.h"
#include "ResultWriter.h"

#include <kelmar/KelmarDll.h>

#include <QMainWindow>

#include <memory>

class QTableWidget;
class QTabWidget;

namespace kelmarhost {

class HostWindow : public QMainWindow, public kelmar::KelmarEvents {
    Q_OBJECT
public:
    HostWindow(Problem problem, ResultWriter writer, QWidget* parent = nullptr);
    ~HostWindow() override;

    // Hands the problem and its earlier value functions to the component.
    void transferProblem();
    // Opens the wizard; with the default modal runner it returns when the
    // settings page is hidden or closed.
    void showWizard();

    int exportCount() const noexcept { return exports_; }
    bool writeFailed() const noexcept { return writeFailed_; }

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
    // The wizard is gone and its pages are released: the program can end.
    void sessionEnded();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool wizardVisible() const;
    // Ends the session when no wizard window is left on screen.
    void endIfWizardGone();
    void fillScores();
    void fillValues(const kelmar::VariantArray& AttVData);

    Problem problem_;
    ResultWriter writer_;
    HostArrays arrays_;
    std::unique_ptr<kelmar::KelmarDll> component_;
    QTabWidget* tabs_ = nullptr;
    QTableWidget* scores_ = nullptr;
    QTableWidget* values_ = nullptr;
    bool ended_ = false;
    bool writeFailed_ = false;
    int exports_ = 0;
};

}  // namespace kelmarhost
