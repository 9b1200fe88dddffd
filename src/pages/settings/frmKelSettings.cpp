#include "pages/settings/frmKelSettings.h"

#include "charts/DrawSurface.h"
#include "component/PageRegistry.h"
#include "model/Format.h"
#include "pages/common/Ui.h"
#include "pages/settings/SettingsCharts.h"
#include "pages/settings/TechniqueImages.h"

#include <kelmar/mdKelMain.h>

#include <QComboBox>
#include <QFocusEvent>
#include <QFrame>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>

namespace kelmar {

KELMAR_REGISTER_PAGE(8, frmKelSettings)

namespace {

const QString kCaptionRanges = QStringLiteral("Kelmar: Specify Potential Performance Ranges");
const QString kCaptionValueRange =
    QStringLiteral("Kelmar: Determine Value Range for Value Measurement");
const QString kCaptionTechnique =
    QStringLiteral("Kelmar: Select a Technique to Construct Value Functions");

struct TechniqueRow {
    const char* option;
    const char* caption;
    const char* selected;
};

// By technique id; the image of a technique is its id plus one.
const TechniqueRow kTechniques[8] = {
    {"optMidPoint", "Midpoint setting", "Selected technique: Midpoint Setting"},
    {"optDirectRating", "Direct rating", "Selected technique: Direct Rating"},
    {"optCurveDrawing", "Curve drawing", "Selected technique: Curve Drawing"},
    {"optCategoryIdn", "Category identification", "Selected technique: Category Identification"},
    {"optDiffStandSeq", "Difference standard sequence",
     "Selected technique: Difference Standard Sequence"},
    {"optBisection", "Bisection", "Selected technique: Bisection"},
    {"optVarProbability", "Variable probability judgment *",
     "Selected technique: Variable Probability Judgment"},
    {"optVarCertainty", "Variable certainty equivalent judgment *",
     "Selected technique: Variable Certainty Equivalent Judgment"},
};

// Page geometry: panels share one rectangle above the button row.
constexpr int kPageWidth = 620;
constexpr int kPageHeight = 470;
constexpr int kPanelX = 10, kPanelY = 8, kPanelWidth = 600, kPanelHeight = 410;

QLabel* makeLabel(QWidget* parent, const char* name, const QString& text, QRect geometry,
                  bool wrap = false) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setGeometry(geometry);
    label->setWordWrap(wrap);
    label->setAlignment(wrap ? (Qt::AlignLeft | Qt::AlignTop) : (Qt::AlignLeft | Qt::AlignVCenter));
    return label;
}

DrawSurface* makeSurface(QWidget* parent, const char* name, QRect geometry) {
    auto* pic = new DrawSurface(parent);
    pic->setObjectName(QString::fromLatin1(name));
    pic->setGeometry(geometry);
    pic->setDesignSize(geometry.size());
    return pic;
}

double cellNumber(const VariantArray& a, int i) { return a(i).toDouble(); }

}  // namespace

frmKelSettings::frmKelSettings(QWidget* parent) : KelPage(kSettingsPage, parent) {
    setObjectName(QStringLiteral("frmKelSettings"));
    setWindowTitle(kCaptionRanges);
    setFixedSize(kPageWidth, kPageHeight);

    for (int i = 0; i < 3; ++i) {
        auto* panel = new QFrame(this);
        panel->setObjectName(QStringLiteral("picPanel_%1").arg(i));
        panel->setFrameShape(QFrame::NoFrame);
        panel->setGeometry(kPanelX, kPanelY, kPanelWidth, kPanelHeight);
        picPanel[static_cast<std::size_t>(i)] = panel;
    }
    buildPanelRanges(picPanel[0]);
    buildPanelValueRange(picPanel[1]);
    buildPanelTechniques(picPanel[2]);
    buildButtons();
    showPanel(0);
}

frmKelSettings::~frmKelSettings() = default;

// --- Building the panels -------------------------------------------------

void frmKelSettings::buildPanelRanges(QFrame* panel) {
    makeLabel(panel, "Label1_0", QStringLiteral("The relevant attribute:"), QRect(8, 10, 150, 26));
    cmbSelAtt = new QComboBox(panel);
    cmbSelAtt->setObjectName(QStringLiteral("cmbSelAtt"));
    cmbSelAtt->setGeometry(160, 10, 300, 26);
    connect(cmbSelAtt, &QComboBox::currentIndexChanged, this,
            [this] { handle([this] { cmbSelAtt_Click(); }); });

    makeLabel(panel, "lblDescirbeScope_0",
              QStringLiteral("    Please appoint suitable scopes of performance scores associated "
                             "with each attribute."),
              QRect(8, 46, 584, 26), true);
    makeLabel(panel, "lblDescirbeScope_1",
              QStringLiteral("    With respect to each attribute, there are two end points that "
                             "describe a scope of the relevant performance scores. One is for the "
                             "minimum scores , another for the maximum scores. As default, the end "
                             "points come from actual scopes of performance scores. But it might be "
                             "useful to choose end points very likely to include any possible "
                             "performance scores."),
              QRect(8, 78, 584, 84), true);

    auto* frame = new QGroupBox(QStringLiteral("End points"), panel);
    frame->setObjectName(QStringLiteral("frameEndPoints"));
    frame->setGeometry(8, 176, 190, 116);
    makeLabel(frame, "Label1_1", QStringLiteral("Min score:"), QRect(10, 34, 72, 26));
    txtMinScore = new QLineEdit(frame);
    txtMinScore->setObjectName(QStringLiteral("txtMinScore"));
    txtMinScore->setGeometry(82, 34, 98, 26);
    makeLabel(frame, "Label1_2", QStringLiteral("Max score:"), QRect(10, 74, 72, 26));
    txtMaxScore = new QLineEdit(frame);
    txtMaxScore->setObjectName(QStringLiteral("txtMaxScore"));
    txtMaxScore->setGeometry(82, 74, 98, 26);
    for (QLineEdit* box : {txtMinScore, txtMaxScore}) {
        box->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        box->installEventFilter(this);
    }

    picScopeChart = makeSurface(panel, "picScopeChart", QRect(206, 176, 386, 226));
}

void frmKelSettings::buildPanelValueRange(QFrame* panel) {
    makeLabel(panel, "Label2",
              QStringLiteral("    To create single-attribute value functions, you have to assign "
                             "arbitrary minimum and maximum values to the end points of performance "
                             "scores. Usually, the value associated with the lowest end points are "
                             "set to 0, while the values associated with the highest end points "
                             "would be set to an arbitrary positive number such as 1, 10 or 100."),
              QRect(8, 10, 584, 76), true);
    makeLabel(panel, "Label1_3", QStringLiteral("Maximum value:"), QRect(8, 98, 110, 26));
    cmbMaxVal = new QComboBox(panel);
    cmbMaxVal->setObjectName(QStringLiteral("cmbMaxVal"));
    cmbMaxVal->setGeometry(122, 98, 90, 26);
    connect(cmbMaxVal, &QComboBox::currentIndexChanged, this,
            [this] { handle([this] { cmbMaxVal_Click(); }); });

    lblChartTitle = makeLabel(panel, "lblChartTitle", QStringLiteral("VALUE FUNCION CHART"),
                              QRect(84, 140, 456, 22));
    lblChartTitle->setAlignment(Qt::AlignCenter);
    QFont bold = lblChartTitle->font();
    bold.setBold(true);
    lblChartTitle->setFont(bold);

    picVFChart = makeSurface(panel, "picVFChart", QRect(84, 168, 456, 234));
    DrawValueScaleSample(*picVFChart);

    lblValues = makeLabel(panel, "lblValues", QStringLiteral("V(S)"), QRect(30, 144, 48, 20));
    lblValues->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (int i = 0; i < 5; ++i) {
        QLabel* tick = makeLabel(panel, "", QString(), QRect(20, 0, 58, 18));
        tick->setObjectName(QStringLiteral("ChartLbl_%1").arg(i));
        tick->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        ChartLbl[static_cast<std::size_t>(i)] = tick;
    }
    layOutTickLabels();
}

void frmKelSettings::buildPanelTechniques(QFrame* panel) {
    makeLabel(panel, "Label3",
              QStringLiteral("    In estimating sample points on the value function curves, you may "
                             "use either numerical or indifference estimation techniques. Please "
                             "select one of techniques."),
              QRect(8, 6, 584, 44), true);

    tsTechniques = new QTabBar(panel);
    tsTechniques->setObjectName(QStringLiteral("tsTechniques"));
    tsTechniques->setDrawBase(false);
    tsTechniques->setExpanding(false);
    tsTechniques->addTab(QStringLiteral("Numerical estimations"));
    tsTechniques->setTabData(0, QStringLiteral("NumEst"));
    tsTechniques->addTab(QStringLiteral("Indifference estimations"));
    tsTechniques->setTabData(1, QStringLiteral("IndEst"));
    tsTechniques->move(8, 58);
    tsTechniques->resize(tsTechniques->sizeHint());
    const int frameTop = 58 + tsTechniques->height() - 1;

    const QRect frameRect(8, frameTop, 334, kPanelHeight - frameTop - 4);
    frameNumEst = new QFrame(panel);
    frameNumEst->setObjectName(QStringLiteral("frameNumEst"));
    frameIndEst = new QFrame(panel);
    frameIndEst->setObjectName(QStringLiteral("frameIndEst"));
    for (QFrame* frame : {frameNumEst, frameIndEst}) {
        frame->setFrameShape(QFrame::StyledPanel);
        frame->setFrameShadow(QFrame::Raised);
        frame->setGeometry(frameRect);
    }
    tsTechniques->raise();

    for (std::int16_t id = 0; id < 8; ++id) {
        QFrame* frame = id < 4 ? frameNumEst : frameIndEst;
        const int row = id % 4;
        auto* option = new QRadioButton(QString::fromLatin1(kTechniques[id].caption), frame);
        option->setObjectName(QString::fromLatin1(kTechniques[id].option));
        // The handlers keep one option selected across both frames.
        option->setAutoExclusive(false);
        option->setGeometry(16, 16 + row * 34, frameRect.width() - 28, 26);
        connect(option, &QRadioButton::clicked, this,
                [this, id] { handle([this, id] { optTechnique_Click(id); }); });
        optTechnique[static_cast<std::size_t>(id)] = option;
    }
    const int noteTop = 16 + 4 * 34 + 10;
    const QRect noteRect(16, noteTop, frameRect.width() - 28, frameRect.height() - noteTop - 10);
    QLabel* numNote = makeLabel(frameNumEst, "lblNumEstNote",
                                QStringLiteral("Note that: the above techniques use stimuli that are "
                                               "based on riskless outcomes."),
                                noteRect, true);
    QLabel* indNote = makeLabel(frameIndEst, "lblIndEstNote",
                                QStringLiteral("Note that: the techniques with \"*\" use stimuli based "
                                               "on gambles. Therefore, value functions created by "
                                               "the last two techniques can be regarded as utility "
                                               "functions."),
                                noteRect, true);
    for (QLabel* note : {numNote, indNote}) {
        QFont italic = note->font();
        italic.setItalic(true);
        note->setFont(italic);
    }
    frameIndEst->hide();
    connect(tsTechniques, &QTabBar::currentChanged, this,
            [this] { handle([this] { tsTechniques_Click(); }); });

    lblSelTechnique = makeLabel(panel, "lblSelTechnique", QString(),
                                QRect(352, frameTop + 2, 240, 40), true);
    QFont bold = lblSelTechnique->font();
    bold.setBold(true);
    lblSelTechnique->setFont(bold);
    picTechniques = makeSurface(panel, "picTechniques", QRect(352, frameTop + 46, 240, frameRect.height() - 46));
    picTechniques->setBackColor(0xFFFFFF);

    imgListTechniques = new TechniqueImageList(this);
    imgListTechniques->setObjectName(QStringLiteral("imgListTechniques"));
}

void frmKelSettings::buildButtons() {
    auto* rule = new QFrame(this);
    rule->setObjectName(QStringLiteral("lineButtons"));
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    rule->setGeometry(10, kPanelY + kPanelHeight + 2, kPageWidth - 20, 4);

    const int y = kPageHeight - 40;
    auto make = [this, y](const char* name, const QString& caption, int x) {
        auto* button = new QPushButton(caption, this);
        button->setObjectName(QString::fromLatin1(name));
        button->setGeometry(x, y, 90, 30);
        // Enter belongs to the score boxes; no button is the default.
        button->setAutoDefault(false);
        button->setDefault(false);
        return button;
    };
    cmdHelp = make("cmdHelp", QStringLiteral("&Help"), 10);
    cmdBack = make("cmdBack", QStringLiteral("< &Back"), 226);
    cmdNext = make("cmdNext", QStringLiteral("&Next >"), 316);
    cmdFinish = make("cmdFinish", QStringLiteral("&Finish"), 420);
    cmdCancel = make("cmdCancel", QStringLiteral("&Cancel"), 520);

    // The steps that change the wizard data either complete or leave it,
    // and the page, as they were.
    connect(cmdBack, &QPushButton::clicked, this,
            [this] { handle([this] { transaction([this] { cmdBack_Click(); }); }); });
    connect(cmdNext, &QPushButton::clicked, this,
            [this] { handle([this] { transaction([this] { cmdNext_Click(); }); }); });
    connect(cmdFinish, &QPushButton::clicked, this,
            [this] { handle([this] { transaction([this] { cmdFinish_Click(); }); }); });
    connect(cmdCancel, &QPushButton::clicked, this,
            [this] { handle([this] { cmdCancel_Click(); }); });
    connect(cmdHelp, &QPushButton::clicked, this, [this] { handle([this] { cmdHelp_Click(); }); });

    setTabOrder(cmdBack, cmdNext);
    setTabOrder(cmdNext, cmdFinish);
    setTabOrder(cmdFinish, cmdCancel);
    setTabOrder(cmdCancel, cmdHelp);
}

void frmKelSettings::showPanel(int index) {
    for (int i = 0; i < 3; ++i) picPanel[static_cast<std::size_t>(i)]->setVisible(i == index);
    // The keyboard goes on with the panel's first control (on the technique
    // panel the selected option), not with a button or a hidden box.
    QWidget* first = cmbSelAtt;
    if (index == 1) first = cmbMaxVal;
    if (index == 2) {
        first = tsTechniques;
        for (QRadioButton* option : optTechnique)
            if (option->isChecked() && option->isVisibleTo(picPanel[2])) first = option;
    }
    first->setFocus(Qt::OtherFocusReason);
}

// --- Loading ---------------------------------------------------------------

void frmKelSettings::onLoad() {
    WizardData& w = wizardData();
    setWindowTitle(kCaptionRanges);
    raiseSendMasseges(QStringLiteral("Specify single-attribute value functions."));

    const std::int16_t last = checkedSub(w.AttNum, std::int16_t(1));
    w.AttRangeSet.redim(0, last);
    w.AttVFDone.redim(0, last);
    for (int i = 0; i <= last; ++i) {
        w.AttRangeSet(i) = false;
        w.AttVFDone(i) = false;
    }
    // Every run starts from the host's record, types and parameters
    // included; within the run, Back and Next keep the pages' work.
    StartFromHostFunctions();

    Filling = true;
    cmbSelAtt->clear();
    for (int i = 0; i <= last; ++i) cmbSelAtt->addItem(w.AttName(i).toString());
    Filling = false;

    cmdBack->setEnabled(false);
    cmdFinish->setEnabled(false);
    cmdNext->setEnabled(true);
    CurrentPanel = 0;
    showPanel(0);

    // The points of an earlier session may lie on a range that has just
    // been set back to the host's: they follow it at once, so that the
    // first point sits on the minimum and the last on the maximum whichever
    // button is pressed next.
    PrepareWorkingArrays();

    // The list opens on its first attribute: take it as chosen, with its
    // range in the boxes, so that Next without typing keeps the range.
    if (cmbSelAtt->currentIndex() >= 0) cmbSelAtt_Click();
    // The technique panel shows the technique in force, on its own tab.
    if (w.SelTechnique >= 0 && w.SelTechnique < 8) {
        tsTechniques->setCurrentIndex(w.SelTechnique < 4 ? 0 : 1);
        selectTechnique(w.SelTechnique);
    }
}

void frmKelSettings::onClosed() { raiseUnloadKelmar(); }

// --- Panel 0: attribute and range ---------------------------------------------

void frmKelSettings::cmbSelAtt_Click() {
    if (Filling) return;
    const int index = cmbSelAtt->currentIndex();
    if (index < 0) return;
    WizardData& w = wizardData();
    w.SelAtt = static_cast<std::int16_t>(index);
    drawScopeChart();
    // The boxes follow the chosen attribute: Next checks and stores what
    // they hold for this attribute, so they must never carry another one's
    // range over.
    const bool set = w.AttRangeSet(w.SelAtt).toBoolean();
    fillBox(txtMinScore, cellNumber(set ? w.ScoreMinimum : w.InScoreMinimum, w.SelAtt));
    fillBox(txtMaxScore, cellNumber(set ? w.ScoreMaximum : w.InScoreMaximum, w.SelAtt));
}

// The host's range until the attribute's range is confirmed, the working
// one afterwards.
void frmKelSettings::drawScopeChart() {
    WizardData& w = wizardData();
    const bool set = w.AttRangeSet(w.SelAtt).toBoolean();
    double low = cellNumber(set ? w.ScoreMinimum : w.InScoreMinimum, w.SelAtt);
    double high = cellNumber(set ? w.ScoreMaximum : w.InScoreMaximum, w.SelAtt);
    if (set) {
        DrawScopeFromWorkingRange(*picScopeChart, w.SelAtt, low, high);
    } else {
        DrawScopeFromHostRange(*picScopeChart, w.SelAtt, low, high);
    }
}

frmKelSettings::BoxValue& frmKelSettings::boxValue(const QLineEdit* box) {
    return boxValues_[box == txtMaxScore ? 1U : 0U];
}

void frmKelSettings::fillBox(QLineEdit* box, double value) {
    const QString text = fmt::formatScore(value);
    box->setText(text);
    boxValue(box) = BoxValue{value, text};
}

bool frmKelSettings::readBox(QLineEdit* box, double& value) {
    const BoxValue& filled = boxValue(box);
    if (box->text() == filled.text) {
        value = filled.value;
        return true;
    }
    return fmt::completeNumber(box->text(), value);
}

bool frmKelSettings::eventFilter(QObject* watched, QEvent* event) {
    auto* box = (watched == txtMinScore || watched == txtMaxScore) ? static_cast<QLineEdit*>(watched)
                                                                    : nullptr;
    if (box == nullptr) return KelPage::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::KeyPress:
        return scoreBoxKeyDown(box, static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        scoreBoxKeyUp(box, static_cast<QKeyEvent*>(event));
        return false;
    case QEvent::FocusOut: {
        // Switching windows (a message box opening, another program) and
        // opening the box's own menu are no leaving of the box.
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
            !checkingScore_) {
            handle([this, box] {
                transaction([this, box] { box == txtMinScore ? checkMinScore() : checkMaxScore(); });
            });
        }
        return false;
    }
    default:
        return false;
    }
}

bool frmKelSettings::scoreBoxKeyDown(QLineEdit* box, QKeyEvent* event) {
    (void)box;
    // No pasting into a score box: Shift+Insert and Ctrl+V are swallowed.
    if (event->key() == Qt::Key_Insert && (event->modifiers() & Qt::ShiftModifier)) return true;
    if (event->text() == QString(QChar(22))) return true;
    if (event->key() == Qt::Key_V && (event->modifiers() & Qt::ControlModifier)) return true;
    return false;
}

void frmKelSettings::scoreBoxKeyUp(QLineEdit* box, QKeyEvent* event) {
    applyDecimalPointRule(box);
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && !event->isAutoRepeat() && !checkingScore_) {
        handle([this, box] {
            transaction([this, box] { box == txtMinScore ? checkMinScore() : checkMaxScore(); });
        });
    }
}

void frmKelSettings::applyDecimalPointRule(QLineEdit* box) {
    const QString text = box->text();
    const int first = text.indexOf(QLatin1Char('.'));
    if (first < 0 || text.indexOf(QLatin1Char('.'), first + 1) < 0) return;
    const int caret = box->cursorPosition();
    if (caret <= 0) return;
    box->setSelection(caret - 1, 1);
    box->del();
}

void frmKelSettings::checkMinScore() { checkScore(false); }
void frmKelSettings::checkMaxScore() { checkScore(true); }

// The working range may only widen the host's range: a minimum above the
// host's minimum or a maximum below the host's maximum is refused and the
// box gets the host's value back.
void frmKelSettings::checkScore(bool maximum) {
    WizardData& w = wizardData();
    checkingScore_ = true;
    struct Reset {
        bool& flag;
        ~Reset() { flag = false; }
    } reset{checkingScore_};

    QLineEdit* box = maximum ? txtMaxScore : txtMinScore;
    double value = 0;
    if (!readBox(box, value)) {
        // Text that is not a number is refused as a whole (a separator or a
        // letter would otherwise cut the number short); the box goes back
        // to the score it stood for.
        const BoxValue before = boxValue(box);
        showMessage(this, QStringLiteral("The score should be a number!"), QMessageBox::Warning,
                    QStringLiteral("QUARN"));
        fillBox(box, before.value);
        return;
    }
    const double host = cellNumber(maximum ? w.InScoreMaximum : w.InScoreMinimum, w.SelAtt);
    if (maximum ? value < host : value > host) {
        const QString rule = maximum ? QStringLiteral("The score should be larger than or equal to ")
                                     : QStringLiteral("The score should be less than or equal to ");
        showMessage(this, rule + fmt::formatScore(host) + QStringLiteral("!"),
                    QMessageBox::Warning, QStringLiteral("QUARN"));
        fillBox(box, host);
        return;
    }
    boxValue(box) = BoxValue{value, box->text()};
    w.AttRangeSet(w.SelAtt) = Variant(true);
    (maximum ? w.ScoreMaximum : w.ScoreMinimum)(w.SelAtt) = value;
    // The points follow the confirmed range at once (Finish is open on this
    // panel once it has been left).
    PrepareWorkingArrays();
    double low = cellNumber(w.ScoreMinimum, w.SelAtt);
    double high = cellNumber(w.ScoreMaximum, w.SelAtt);
    DrawScopeFromWorkingRange(*picScopeChart, w.SelAtt, low, high);
}

// --- Steps that leave everything as it was when they fail -------------------

struct frmKelSettings::Snapshot {
    WizardData data;
    std::int16_t panel = 0;
    QString caption;
    bool back = false, next = false, finish = false;
    QString minText, maxText;
    std::array<BoxValue, 2> boxes{};
    QStringList maxValItems;
    int maxValIndex = -1;
    std::array<QString, 5> ticks{};
};

frmKelSettings::Snapshot frmKelSettings::capture() const {
    Snapshot s;
    s.data = wizardData();
    s.panel = CurrentPanel;
    s.caption = windowTitle();
    s.back = cmdBack->isEnabled();
    s.next = cmdNext->isEnabled();
    s.finish = cmdFinish->isEnabled();
    s.minText = txtMinScore->text();
    s.maxText = txtMaxScore->text();
    s.boxes = boxValues_;
    for (int i = 0; i < cmbMaxVal->count(); ++i) s.maxValItems << cmbMaxVal->itemText(i);
    s.maxValIndex = cmbMaxVal->currentIndex();
    for (std::size_t i = 0; i < s.ticks.size(); ++i) s.ticks[i] = ChartLbl[i]->text();
    return s;
}

void frmKelSettings::restore(const Snapshot& before) {
    wizardData() = before.data;
    CurrentPanel = before.panel;
    setWindowTitle(before.caption);
    cmdBack->setEnabled(before.back);
    cmdNext->setEnabled(before.next);
    cmdFinish->setEnabled(before.finish);
    txtMinScore->setText(before.minText);
    txtMaxScore->setText(before.maxText);
    boxValues_ = before.boxes;
    // Putting the list back is no choice of the analyst's.
    cmbMaxVal->blockSignals(true);
    cmbMaxVal->clear();
    cmbMaxVal->addItems(before.maxValItems);
    cmbMaxVal->setCurrentIndex(before.maxValIndex);
    cmbMaxVal->blockSignals(false);
    for (std::size_t i = 0; i < before.ticks.size(); ++i) ChartLbl[i]->setText(before.ticks[i]);
    showPanel(CurrentPanel);
    drawScopeChart();
}

void frmKelSettings::transaction(const std::function<void()>& step) {
    const Snapshot before = capture();
    try {
        step();
    } catch (...) {
        restore(before);
        throw;
    }
}

// --- Panel 1: value range ------------------------------------------------------

void frmKelSettings::setTickLabels(std::int16_t maxVal) {
    static const char* const kDecimal[5] = {"1.00", "0.75", "0.50", "0.25", "0.00"};
    static const char* const kWhole[5] = {"100", "75", "50", "25", "0"};
    const char* const* texts = maxVal == 100 ? kWhole : kDecimal;
    for (int i = 0; i < 5; ++i) ChartLbl[static_cast<std::size_t>(i)]->setText(QString::fromLatin1(texts[i]));
}

void frmKelSettings::layOutTickLabels() {
    for (int i = 0; i < 5; ++i) {
        const double level = 1.0 - i / 4.0;  // from the top of the axis down
        const QPointF at = picVFChart->toPixel(QPointF(0, ValueScaleLevelY(level)));
        QLabel* tick = ChartLbl[static_cast<std::size_t>(i)];
        tick->move(picVFChart->x() - tick->width() - 6,
                   picVFChart->y() + static_cast<int>(at.y()) - tick->height() / 2);
    }
}

void frmKelSettings::prepareValueRange() {
    WizardData& w = wizardData();
    // Filling the list is no choice; setting the item afterwards is.
    cmbMaxVal->blockSignals(true);
    cmbMaxVal->clear();
    cmbMaxVal->addItem(QStringLiteral("1"));
    cmbMaxVal->addItem(QStringLiteral("100"));
    cmbMaxVal->setCurrentIndex(-1);
    cmbMaxVal->blockSignals(false);
    if (w.InMaxVal == 100) {
        cmbMaxVal->setCurrentIndex(1);
        setTickLabels(100);
    } else if (w.InMaxVal == 1) {
        cmbMaxVal->setCurrentIndex(0);
        setTickLabels(1);
    }
}

void frmKelSettings::cmbMaxVal_Click() {
    WizardData& w = wizardData();
    switch (cmbMaxVal->currentIndex()) {
    case 0:
        w.MaxVal = 1;
        setTickLabels(1);
        break;
    case 1:
        w.MaxVal = 100;
        setTickLabels(100);
        break;
    default:
        break;
    }
}

// --- Panel 2: technique ------------------------------------------------------

void frmKelSettings::tsTechniques_Click() {
    const bool numerical = tsTechniques->currentIndex() == 0;
    frameNumEst->setVisible(numerical);
    frameIndEst->setVisible(!numerical);
}

void frmKelSettings::selectTechnique(std::int16_t id) {
    for (std::int16_t j = 0; j < 8; ++j) optTechnique[static_cast<std::size_t>(j)]->setChecked(j == id);
    wizardData().SelTechnique = id;
    imgListTechniques->draw(id + 1, *picTechniques);
    lblSelTechnique->setText(QString::fromLatin1(kTechniques[id].selected));
}

void frmKelSettings::optTechnique_Click(std::int16_t id) { selectTechnique(id); }

// --- Buttons -------------------------------------------------------------------

void frmKelSettings::cmdNext_Click() {
    WizardData& w = wizardData();
    switch (CurrentPanel) {
    case 0: {
        setWindowTitle(kCaptionValueRange);
        checkMinScore();
        checkMaxScore();
        // The checks have left each box with a number it stands for.
        double low = 0;
        double high = 0;
        if (!readBox(txtMinScore, low) || !readBox(txtMaxScore, high))
            throw RuntimeError(RuntimeError::TypeMismatch);
        w.ScoreMinimum(w.SelAtt) = low;
        w.ScoreMaximum(w.SelAtt) = high;
        w.AttRangeSet(w.SelAtt) = true;
        DrawScopeFromWorkingRange(*picScopeChart, w.SelAtt, low, high);
        cmdBack->setEnabled(true);
        cmdFinish->setEnabled(false);
        cmdNext->setEnabled(true);
        prepareValueRange();
        showPanel(1);
        PrepareWorkingArrays();
        raiseSendMasseges(QStringLiteral("Specify value ranges of single-attribute value functions."));
        CurrentPanel = 1;
        cmdBack->setEnabled(true);
        cmdFinish->setEnabled(true);
        cmdNext->setEnabled(true);
        break;
    }
    case 1:
        setWindowTitle(kCaptionTechnique);
        w.SelAtt = 0;
        w.MaxVal = cint(fmt::leadingNumber(cmbMaxVal->currentText()));
        showPanel(2);
        raiseSendMasseges(
            QStringLiteral("Select one of techniques to construct single-attibute value functions."));
        CurrentPanel = 2;
        break;
    case 2: {
        const float left = pageLeft();
        const float top = pageTop();
        raiseHideForm(kSettingsPage);
        try {
            raiseShowForm(w.SelTechnique, left, top);
        } catch (...) {
            // No technique page took over: this page stays in front.
            if (isHidden()) show();
            throw;
        }
        break;
    }
    default:
        break;
    }
}

void frmKelSettings::cmdBack_Click() {
    switch (CurrentPanel) {
    case 1: {
        setWindowTitle(kCaptionRanges);
        CurrentPanel = 0;
        showPanel(0);
        // The attribute may have changed since this panel was left (Next on
        // the value panel starts again from the first one, a technique page
        // works on the one chosen there). Next stores the boxes into SelAtt,
        // so the list, the chart and the boxes must show that attribute.
        const std::int16_t att = wizardData().SelAtt;
        if (att >= 0 && att < cmbSelAtt->count() && att != cmbSelAtt->currentIndex())
            cmbSelAtt->setCurrentIndex(att);
        break;
    }
    case 2:
        setWindowTitle(kCaptionValueRange);
        CurrentPanel = 1;
        showPanel(1);
        break;
    default:
        break;
    }
}

void frmKelSettings::cmdFinish_Click() {
    {
        HourGlass busy;
        ComputeAllAlternativeValues();
    }
    raiseExportResults();
    raiseUnloadKelmar();
}

void frmKelSettings::cmdCancel_Click() { raiseUnloadKelmar(); }

void frmKelSettings::cmdHelp_Click() { openHelp(this); }

}  // namespace kelmar
