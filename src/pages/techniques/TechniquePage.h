// The skeleton that every technique page shares: the controls of the upper
// frame, the point marks and their drag, the sample size, Linear and
// Restore, the risk attitude display and the navigation buttons.
//
// A technique page passes the features it has to the constructor and
// overrides the hooks in which it differs (its chart, its move rule, its
// labels, its release rule).
#pragma once

#include "charts/DrawSurface.h"
#include "model/Consistency.h"
#include "pages/common/KelPage.h"

#include <QPixmap>
#include <QStringList>
#include <QWidget>

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

class QBoxLayout;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kelmar {

class TechniquePage;

// What a technique page has of the common skeleton.
struct TechniqueFeatures {
    enum class Readout {
        Value,             // Label4 "Current value:" with lblCurValue
        ScoreDifferences,  // Label4 "Score differences:" with lblScoreDiff
        None,              // no Label4 read-out
    };

    bool ratingChart = true;        // picRatingChart
    bool pointMarks = true;         // picScorePoint_0..10
    bool markImages = true;         // imgListMark (without it the marks keep the plain pin)
    bool sampleSize = true;         // Label2 and cmbSmpSize
    bool linearRestore = true;      // cmdLinear and cmdRestore
    bool currentScore = true;       // Label3 and lblCurScore
    Readout readout = Readout::Value;
    bool marksOnValueChart = false;  // the marks lie on picVFChart (no rating chart)
    bool riskPremium = false;        // lblRiskPremium, room for the lotteries' premiums
};

// imgListMark: the two pictures of a point mark, 1 the normal mark and 2
// the selected one.
class MarkImageList : public QObject {
    Q_OBJECT
public:
    // Pin: a pin whose point marks a position on a rating scale. Dot: a round
    // mark centred on its point, for marks that stand on the curve itself.
    enum class Shape { Pin, Dot };

    explicit MarkImageList(QObject* parent = nullptr, Shape shape = Shape::Pin);
    // picture 1 or 2; any other number gives picture 1.
    const QPixmap& picture(int picture) const noexcept;
    int count() const noexcept { return 2; }
    // The size of a mark showing these pictures.
    QSize size() const noexcept { return size_; }

private:
    std::array<QPixmap, 2> pictures_;
    QSize size_;
};

// One draggable point mark (picScorePoint_i). It shows picture 1 or 2 of
// the page's imgListMark and hands its mouse and key events to the page.
class PointMark : public QWidget {
    Q_OBJECT
public:
    PointMark(TechniquePage& page, int index, QWidget* parent);

    int index() const noexcept { return index_; }
    // 1: the normal mark, 2: the selected mark.
    void setPicture(int picture);
    int picture() const noexcept { return picture_; }

    static QSize markSize();
    static QSize dotSize();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    TechniquePage& page_;
    int index_;
    int picture_ = 1;
};

class TechniquePage : public KelPage {
    Q_OBJECT
public:
    static constexpr int kMarkCount = 11;

    TechniquePage(int pageId, const QString& formName, const QString& title,
                  TechniqueFeatures features, QWidget* parent = nullptr);
    ~TechniquePage() override;

    const TechniqueFeatures& features() const noexcept { return features_; }

    // The pictures the marks show: imgListMark, or the plain pins on a page
    // without it.
    const MarkImageList& markPictures() const noexcept;

    // Entry points of the marks' events. Each runs as a guarded handler.
    void markMouseDown(int index, Qt::MouseButton button, QPointF pos);
    void markMouseMove(int index, Qt::MouseButtons buttons, QPointF pos);
    void markMouseUp(int index, Qt::MouseButton button, QPointF pos);
    // Arrow keys: moves the mark by units of the chart scale through the
    // move rule and the release step, as a drag would.
    void markKeyStep(int index, double units);
    // A mark reached with Tab: selected and its read-outs shown, as a
    // MouseDown would, without starting a drag.
    void markFocused(int index);

    // The risk attitude display for attribute att.
    void ShowRiskAttitude(std::int16_t att);

    // Enter in txtExact: applies the typed number to the selected point as
    // a drag to it would, or says on the page why nothing changed.
    void applyTypedAnswer();

protected:
    // --- Hooks -------------------------------------------------------------

    // Draws the technique's chart and places the marks for the current
    // attribute (the page's point routine).
    virtual void drawRatingChart() {}
    // Applies a drag position (chart units) to point index.
    virtual void movePoint(int index, double position) { Q_UNUSED(index) Q_UNUSED(position) }
    // Shows the score and value (or differences) of point index.
    virtual void showPointLabels(int index) { Q_UNUSED(index) }
    // The drag position of mark index for a mouse position inside it.
    // The default is the horizontal rule of the rating chart.
    virtual double dragPosition(int index, QPointF pos) const;
    // Where mark index stands now, in the units of dragPosition (by default
    // the horizontal centre); the arrow keys step from here.
    virtual double markPosition(int index) const;
    // A mouse position inside a mark along the mark's scale (across by
    // default): a move that keeps it is no move of the mark.
    virtual double scaleCoordinate(QPointF pos) const { return pos.x(); }
    // The grid a dragged or keyed position snaps to (none by default).
    virtual double snapPosition(double position) const { return position; }
    // After each accepted move step: labels and the value function chart.
    virtual void afterDragStep(int index);
    // After the selection at MouseDown (the lottery pages draw here).
    virtual void onMarkPressed(int index) { Q_UNUSED(index) }
    // After the selection of a mark reached with Tab; the same as a press
    // unless a page tells them apart.
    virtual void onMarkFocused(int index) { onMarkPressed(index); }
    // The release of a dragged mark (left button).
    virtual void onMarkReleased(int index);
    // Whether the release of point index makes a judgment: an inner point
    // whose mark has moved since it was pressed.
    bool releaseJudges(int index) const;
    // Sample size of a cmbSmpSize list index; below 0 ignores the choice.
    virtual std::int16_t sizeForListIndex(int listIndex) const;
    // The entries cmbSmpSize is filled with at load, and the entry that
    // shows a size (-1: none).
    virtual QStringList sampleSizeEntries() const;
    virtual int listIndexForSize(std::int16_t size) const;
    // cmdCUFPrint: no action unless a page gives it one.
    virtual void onPrint() {}
    // The middle score that the risk attitude display stores and compares:
    // the judged score of a midpoint exponential, otherwise
    // ComputeScoreMiddle unless a page knows it better.
    virtual float middleScore(std::int16_t att);
    // Redraws everything for the current attribute (after load, attribute
    // change and Restore).
    virtual void refreshPage();

    // --- Typed answers and consistency -------------------------------------

    // The point whose judged quantity txtExact shows (-1: none); by default
    // the selected mark.
    virtual int exactPoint() const;
    // The judged quantity of point index as txtExact shows it; by default
    // its value on the value scale MaxVal shows.
    virtual double exactQuantity(int index) const;
    // The quantity as txtExact shows it.
    virtual QString exactText(int index) const;
    // The caption of txtExact's label.
    virtual QString exactCaption() const;
    // Moves point index to the typed quantity with the page's own move rule,
    // keeping the typed number itself wherever the rule takes it as it is.
    // Returns why the rule refused it (empty: applied). Nothing is redrawn.
    virtual QString moveToExact(int index, double typed);
    // After an applied typed answer: by default a drag step and its release.
    virtual void afterExact(int index);
    // The premium of point index's lottery on a lottery page (none elsewhere).
    virtual bool lotteryPremium(int index, LotteryPremium& premium) const;
    // The lottery that the last judgment answered (-1: none yet).
    int lastLottery_ = -1;

    // The factor between a value (0 .. 1) and the value scale MaxVal shows.
    static double valueScale();
    // txtExact shows the quantity of the selected point; an earlier note
    // goes.
    void showExact();
    // The words under the value chart: where the curve turns back (the
    // stretches the chart shaded) and, on the lottery pages, the premiums of
    // the judged lotteries.
    void showConsistency(const std::vector<TurnBack>& turnBacks);

    // --- Common handlers (pages may extend them) -------------------------
    void onLoad() override;
    // A page kept loaded while the wizard was closed and opened again (the
    // component keeps some pages on UnloadKelmar) is shown again without a
    // new load; it redraws from the wizard data, which the new session may
    // have changed under it.
    void showEvent(QShowEvent* event) override;
    virtual void onAttributeChosen(int listIndex);
    virtual void onSampleSizeChosen(int listIndex);
    virtual void onLinear();
    virtual void onRestore();
    virtual void onShowVFS();
    virtual void onHelp();
    virtual void onBack();
    virtual void onCancel();
    virtual void onFinish();

    // --- Helpers -----------------------------------------------------------
    // Runs a redraw that shows the current attribute's function as it
    // stands (load, a showing again, an attribute chosen): the risk attitude
    // display in it stores the middle score only when the showing itself
    // changed the function, as when another technique's points are fitted
    // to the page.
    void showFunction(const std::function<void()>& redraw);
    static std::int16_t currentAttribute();
    std::int16_t sampleSize() const;
    void drawValueChart();
    void refreshAttributeList();
    void showSampleSizeEntry();
    // Empties lblCurScore, lblCurValue and lblScoreDiff.
    void clearReadouts();
    // Every visible mark gets picture 1, mark index picture 2.
    void selectMark(int index);
    // Marks from..10 get picture 1.
    void resetMarkPictures(int from);
    // Places mark index with its centre at x and its top at y (chart units).
    void placeMarkCentre(int index, double x, double y);
    // Places mark index with its middle on the point (x, y) (chart units),
    // for marks that stand on the point rather than hang from a height;
    // it stays centred there when the chart changes its size.
    void placeMarkMiddle(int index, double x, double y);
    double markMiddle(int index) const;  // the vertical centre so placed
    void hideMarksFrom(int from);
    // Places the marks of the current attribute's points at their scores on
    // a 0 .. 100 score bar (the score minimum at 0, the maximum at 100; an
    // empty range puts every mark at 0) with their tops at top, each with its
    // score "0.00" as tool tip, and hides the rest.
    void placeMarksAtScores(double top);
    double markLeft(int index) const;
    double markWidth(int index) const;  // chart units
    // The neighbour (index - 1 or index + 1) that mark index would run
    // into at x, or -1. A mark keeps a mark's width clear of its
    // neighbours; one that lies closer already may still move away from
    // the neighbour it is near, but never onto or past it.
    int crossedNeighbour(int index, double x) const;
    // Size of one chart unit in pixels (the scale factor f).
    double scaleFactor() const;
    // Adds a page's own widget under the rating chart in the upper frame.
    void addToUpperFrame(QWidget* widget);

    DrawSurface* markSurface() const;

    // Controls (null when the page lacks them).
    QFrame* Frame1 = nullptr;
    // Label1_0 "Selected attribute:", Label1_1 "Risk attitude:".
    std::array<QLabel*, 2> Label1{};
    QComboBox* cmbAttributes = nullptr;
    QLabel* Label2 = nullptr;
    QComboBox* cmbSmpSize = nullptr;
    QLabel* Label3 = nullptr;
    QLabel* lblCurScore = nullptr;
    QLabel* Label4 = nullptr;
    QLabel* lblCurValue = nullptr;
    QLabel* lblScoreDiff = nullptr;
    DrawSurface* picRatingChart = nullptr;
    std::array<PointMark*, kMarkCount> picScorePoint{};
    DrawSurface* picVFChart = nullptr;
    DrawSurface* picPanel = nullptr;
    QFrame* picRiskAttitude = nullptr;
    std::array<QLabel*, 3> lblRiskAttitude{};
    QPushButton* cmdLinear = nullptr;
    QPushButton* cmdRestore = nullptr;
    QPushButton* cmdS = nullptr;
    QPushButton* cmdCUFPrint = nullptr;
    QPushButton* cmdHelp = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdBack = nullptr;
    QPushButton* cmdNext = nullptr;
    QPushButton* cmdFinish = nullptr;
    MarkImageList* imgListMark = nullptr;
    QLabel* lblExact = nullptr;
    QLineEdit* txtExact = nullptr;
    QLabel* lblExactNote = nullptr;
    QLabel* lblTurnBack = nullptr;
    QLabel* lblRiskPremium = nullptr;

    // Drag state.
    double grabOffset_ = 0;   // pixels inside the mark at MouseDown
    double grabOffsetY_ = 0;  // the same, vertically
    double downLeft_ = 0;     // the mark's left at MouseDown (chart units)
    double downAlong_ = 0;    // the mouse along the mark's scale at MouseDown (screen)
    int dragIndex_ = 0;
    bool leftDown_ = false;
    std::int16_t oldSize_ = 0;  // the sample size before the last change

private:
    // The cells of the current attribute's function that a drag may
    // change, as they stood when the mark was pressed.
    struct PressedFunction {
        std::int16_t att = -1;
        std::vector<Variant> cells;
    };
    static std::vector<Variant> functionCells(std::int16_t att);
    static bool sameCells(const std::vector<Variant>& a, const std::vector<Variant>& b);
    static void putFunctionCells(std::int16_t att, const std::vector<Variant>& cells);
    // A release with the mouse where it pressed the mark, along the mark's
    // scale, is no judgment: the function goes back to what it was at the
    // press. True when the mouse moved along the scale.
    bool keepUnlessMoved(int index, QPointF pos);

    void buildControls();
    void replaceMarks();
    // The top that puts the middle of mark m at height y.
    double topOverMiddle(const QWidget* m, double y) const;

    TechniqueFeatures features_;
    MarkImageList* markPictures_ = nullptr;  // imgListMark, or unnamed plain pins
    std::array<double, kMarkCount> markCentre_{};
    std::array<double, kMarkCount> markTop_{};
    std::array<double, kMarkCount> markMiddle_{};
    std::array<bool, kMarkCount> placedByMiddle_{};
    QBoxLayout* upperLayout_ = nullptr;
    bool shownBefore_ = false;
    PressedFunction pressed_;
    bool showing_ = false;
    std::vector<Variant> shownCells_;  // the function when the showing began
    QString shownExact_;               // the text txtExact was last given
};

}  // namespace kelmar
