// The settings page: the first page of the wizard, with three panels shown
// one at a time in the same place (potential performance ranges, value
// range, technique), stepped through with Back and Next.
#pragma once

#include "pages/common/KelPage.h"

#include <QString>

#include <array>
#include <cstdint>
#include <functional>

class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabBar;

namespace kelmar {

class DrawSurface;
class TechniqueImageList;

class frmKelSettings : public KelPage {
    Q_OBJECT
public:
    explicit frmKelSettings(QWidget* parent = nullptr);
    ~frmKelSettings() override;

    // Which panel is showing: 0 ranges, 1 value range, 2 technique.
    std::int16_t currentPanel() const noexcept { return CurrentPanel; }

protected:
    void onLoad() override;
    void onClosed() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildPanelRanges(QFrame* panel);
    void buildPanelValueRange(QFrame* panel);
    void buildPanelTechniques(QFrame* panel);
    void buildButtons();
    void showPanel(int index);

    // Handlers.
    void cmbSelAtt_Click();
    void cmbMaxVal_Click();
    void tsTechniques_Click();
    void optTechnique_Click(std::int16_t id);
    void cmdBack_Click();
    void cmdNext_Click();
    void cmdFinish_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();

    // The score boxes.
    bool scoreBoxKeyDown(QLineEdit* box, QKeyEvent* event);
    void scoreBoxKeyUp(QLineEdit* box, QKeyEvent* event);
    void applyDecimalPointRule(QLineEdit* box);
    void checkMinScore();
    void checkMaxScore();
    void checkScore(bool maximum);

    // What a score box stands for: the exact value it was last filled from
    // or accepted with, and the text it showed then. A box whose text is
    // still that text stands for the exact value, not for its rounding.
    struct BoxValue {
        double value = 0;
        QString text;
    };
    BoxValue& boxValue(const QLineEdit* box);
    void fillBox(QLineEdit* box, double value);
    // The box's number; false for text that is not a complete number.
    bool readBox(QLineEdit* box, double& value);
    void drawScopeChart();

    // Runs a step of the page so that a run-time error in it leaves the
    // page and the wizard data as they were before (the error goes on to
    // the handler, which reports it).
    struct Snapshot;
    Snapshot capture() const;
    void restore(const Snapshot& before);
    void transaction(const std::function<void()>& step);

    void prepareValueRange();
    void setTickLabels(std::int16_t maxVal);
    void layOutTickLabels();
    void selectTechnique(std::int16_t id);

    std::int16_t CurrentPanel = 0;
    bool Filling = false;
    bool checkingScore_ = false;

    std::array<QFrame*, 3> picPanel{};
    QComboBox* cmbSelAtt = nullptr;
    QLineEdit* txtMinScore = nullptr;
    QLineEdit* txtMaxScore = nullptr;
    std::array<BoxValue, 2> boxValues_{};  // txtMinScore, txtMaxScore
    DrawSurface* picScopeChart = nullptr;

    QComboBox* cmbMaxVal = nullptr;
    DrawSurface* picVFChart = nullptr;
    QLabel* lblChartTitle = nullptr;
    QLabel* lblValues = nullptr;
    std::array<QLabel*, 5> ChartLbl{};

    QTabBar* tsTechniques = nullptr;
    QFrame* frameNumEst = nullptr;
    QFrame* frameIndEst = nullptr;
    std::array<QRadioButton*, 8> optTechnique{};  // by technique id
    QLabel* lblSelTechnique = nullptr;
    DrawSurface* picTechniques = nullptr;
    TechniqueImageList* imgListTechniques = nullptr;

    QPushButton* cmdBack = nullptr;
    QPushButton* cmdNext = nullptr;
    QPushButton* cmdFinish = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdHelp = nullptr;
};

}  // namespace kelmar
