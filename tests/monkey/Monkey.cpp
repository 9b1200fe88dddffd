// Sends random but legal input to whatever page of the wizard is showing and
// checks the wizard data after every event.
//
// The controls are found by their Qt type and name on the page in front, so
// every page takes part as it is: buttons, option buttons, tab strips, lists,
// text boxes, sliders, point marks and charts. Pages are shown modally, so the
// run is a chain of single-shot timers: each step schedules the next before
// it acts, and the next one fires inside whatever modal loop the step opens.
//
// Every event is a judgment (a mark, slider or typed answer moved, Linear,
// Restore, a sample size or value range chosen) or not. An event that is not
// must leave every function record as it was, to the bit; it is checked when
// the event returns or, when it opens a page, at the first step on that page.
//
// The run in the test suite is short and always the same; scripts/monkey.sh
// runs it with any seed and length (KELMAR_MONKEY_SEED, KELMAR_MONKEY_EVENTS:
// events per page).
#include <kelmar/KelmarDll.h>
#include <kelmar/mdKelMain.h>

#include "InputKit.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QEventLoop>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTimer>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

namespace kelmar::monkey {
namespace {

// --- The host ----------------------------------------------------------------
//
// A host for the random-input run: a decision problem with cost and benefit
// attributes, handed over through the public component interface, and the
// checks that every function and every exported value must pass.

// The problem and the host's functions, as a host holds them.
struct Problem {
    std::int16_t altNum = 0;
    std::int16_t attNum = 0;
    VariantArray altPScore, attVData, attName, attDefinition, attProperty;
    VariantArray scoreMinimum, scoreMiddle, scoreMaximum, techniqueId, smpSize, smpX, smpY;
    VariantArray parA, parB, parC, parD, funType;
    std::int16_t maxVal = 100;
};

// Every cell of every attribute's function record as its type and exact
// value: per attribute SmpSize, SmpX and SmpY 0 .. 10, VFunType,
// VFTechniqueID, VFunParA .. VFunParD, ScoreMinimum, ScoreMiddle,
// ScoreMaximum.
struct Record {
    std::vector<QStringList> attributes;
};

struct AttributeRow {
    const char* name;
    bool cost;
    double low, high;
    std::int16_t type;
    std::vector<double> x, y;
};

// Cost attributes fall from 1 to 0, benefit ones rise.
const AttributeRow kAttributes[] = {
    {"Rent", true, 20000, 40000, 1, {20000, 24000, 29000, 35000, 40000}, {1, 0.85, 0.6, 0.3, 0}},
    {"Space", false, 40, 120, 0, {40, 60, 80, 100, 120}, {0, 0.25, 0.5, 0.75, 1}},
    {"Distance", true, 0.5, 12, 1, {0.5, 1, 2, 4, 6, 9, 12}, {1, 0.9, 0.75, 0.5, 0.3, 0.1, 0}},
    {"Light", false, 0.125, 0.875, 1, {0.125, 0.5, 0.875}, {0, 0.7, 1}},
    {"Noise", true, 30, 75, 0, {30, 41.25, 52.5, 63.75, 75}, {1, 0.75, 0.5, 0.25, 0}},
};
constexpr int kAlternatives = 6;

// Per attribute: SmpSize, SmpX and SmpY 0 .. 10, then the nine after them.
const char* const kNames[] = {"SmpSize",  "SmpX",     "SmpY",     "VFunType",     "VFTechniqueID", "VFunParA",
                              "VFunParB", "VFunParC", "VFunParD", "ScoreMinimum", "ScoreMiddle",   "ScoreMaximum"};
constexpr int kPointCells = 23;  // SmpSize and the points

// A cell as its type and its exact value; "no cell" where the array does not
// hold it (or holds an array there, which no record has).
QString cellText(const VariantArray& a, int att, int k = -1) {
    if (a.dimensions() != (k < 0 ? 1 : 2) || att < a.lbound(1) || att > a.ubound(1) ||
        (k >= 0 && (k < a.lbound(2) || k > a.ubound(2))) || (k < 0 ? a(att) : a(att, k)).isArray())
        return QStringLiteral("no cell");
    const Variant& v = k < 0 ? a(att) : a(att, k);
    static const char* const types[] = {"Empty", "Boolean", "Integer", "Long", "Single", "Double", "String"};
    const QString value = v.type() == Variant::Type::Double   ? QString::number(v.toDouble(), 'g', 17)
                          : v.type() == Variant::Type::Single ? QString::number(v.toSingle(), 'g', 9)
                                                              : QStringLiteral("\"%1\"").arg(v.toString());
    return QStringLiteral("%1 %2").arg(QLatin1String(types[static_cast<int>(v.type())]), value);
}

Record collect(const std::array<const VariantArray*, 12>& r, int attNum) {
    Record record;
    for (int att = 0; att < attNum; ++att) {
        QStringList cells{cellText(*r[0], att)};
        for (const VariantArray* points : {r[1], r[2]})
            for (int k = 0; k <= 10; ++k) cells << cellText(*points, att, k);
        for (std::size_t i = 3; i < r.size(); ++i) cells << cellText(*r[i], att);
        record.attributes.push_back(cells);
    }
    return record;
}

QString cellName(int att, int i) {
    if (i == 0 || i >= kPointCells)
        return QStringLiteral("%1(%2)").arg(QLatin1String(kNames[i == 0 ? 0 : i - 20])).arg(att);
    return QStringLiteral("%1(%2, %3)").arg(QLatin1String(i <= 11 ? "SmpX" : "SmpY")).arg(att).arg((i - 1) % 11);
}

QStringList cellsOf(const Record& r, int att) {
    return att < static_cast<int>(r.attributes.size()) ? r.attributes[static_cast<std::size_t>(att)] : QStringList();
}

Record workingRecord() {
    const WizardData& w = wizardData();
    return collect({&w.SmpSize, &w.SmpX, &w.SmpY, &w.VFunType, &w.VFTechniqueID, &w.VFunParA, &w.VFunParB,
                    &w.VFunParC, &w.VFunParD, &w.ScoreMinimum, &w.ScoreMiddle, &w.ScoreMaximum},
                   w.AttNum);
}

Record hostRecord(const Problem& p) {
    return collect({&p.smpSize, &p.smpX, &p.smpY, &p.funType, &p.techniqueId, &p.parA, &p.parB, &p.parC,
                    &p.parD, &p.scoreMinimum, &p.scoreMiddle, &p.scoreMaximum},
                   p.attNum);
}

// The first cell of attribute att that differs in type or in any bit, with
// both contents, or an empty text.
QString recordChange(const Record& before, const Record& after, int att) {
    const QStringList a = cellsOf(before, att), b = cellsOf(after, att);
    const QString none = QStringLiteral("no attribute");
    for (int i = 0; i < std::max(a.size(), b.size()); ++i)
        if (a.value(i, none) != b.value(i, none))
            return QStringLiteral("%1 was %2, is %3").arg(cellName(att, i), a.value(i, none), b.value(i, none));
    return {};
}

// True when attribute att's sample size or points differ.
bool pointsChanged(const Record& before, const Record& after, int att) {
    return cellsOf(before, att).mid(0, kPointCells) != cellsOf(after, att).mid(0, kPointCells);
}

// The rule and the attribute's record as it stands.
QString describe(int att, const char* rule) {
    QStringList cells = cellsOf(workingRecord(), att);
    for (int i = 0; i < cells.size(); ++i) cells[i].prepend(cellName(att, i) + QLatin1Char(' '));
    return QStringLiteral("attribute %1: %2; %3").arg(att).arg(QLatin1String(rule), cells.join(QStringLiteral(", ")));
}

// The first exported value outside 0 .. MaxVal, or an empty text.
QString badExport(const VariantArray& attVData, std::int16_t maxVal) {
    for (int alt = attVData.lbound(1); alt <= attVData.ubound(1); ++alt)
        for (int att = attVData.lbound(2); att <= attVData.ubound(2); ++att)
            if (const double v = attVData(alt, att).toDouble(); !(v >= 0.0 && v <= maxVal))
                return QStringLiteral("alternative %1 on attribute %2 exported %3 with MaxVal %4")
                    .arg(alt).arg(att).arg(v, 0, 'g', 17).arg(maxVal);
    return {};
}

// Five attributes: cost ones with a curve and with three points on an
// uneven range, benefit ones linear, curved and on a range that the boxes
// can only show rounded.
Problem sampleProblem() {
    Problem p;
    p.attNum = static_cast<std::int16_t>(std::size(kAttributes));
    p.altNum = kAlternatives;
    const int lastAtt = p.attNum - 1;
    for (VariantArray* a : {&p.altPScore, &p.attVData}) a->redim(0, kAlternatives - 1, 0, lastAtt);
    for (VariantArray* a : {&p.attName, &p.attDefinition, &p.attProperty, &p.scoreMinimum,
                            &p.scoreMiddle, &p.scoreMaximum, &p.techniqueId, &p.smpSize, &p.parA,
                            &p.parB, &p.parC, &p.parD, &p.funType})
        a->redim(0, lastAtt);
    for (VariantArray* a : {&p.smpX, &p.smpY}) a->redim(0, lastAtt, 0, 10);
    for (int att = 0; att <= lastAtt; ++att) {
        const AttributeRow& r = kAttributes[att];
        p.attName(att) = r.name;
        p.attDefinition(att) = QStringLiteral("How the flat does on %1.").arg(r.name);
        p.attProperty(att) = std::int16_t(r.cost ? 1 : 0);
        p.scoreMinimum(att) = r.low;
        p.scoreMaximum(att) = r.high;
        p.scoreMiddle(att) = (r.low + r.high) / 2.0;
        p.techniqueId(att) = std::int16_t(kDirectRating);
        p.smpSize(att) = static_cast<std::int16_t>(r.x.size());
        p.funType(att) = r.type;
        for (std::size_t k = 0; k < r.x.size(); ++k)
            std::tie(p.smpX(att, static_cast<int>(k)), p.smpY(att, static_cast<int>(k))) = std::pair(r.x[k], r.y[k]);
        // The alternatives lie at both ends and inside the range.
        for (int alt = 0; alt < kAlternatives; ++alt)
            p.altPScore(alt, att) = r.low + (r.high - r.low) * alt / (kAlternatives - 1.0);
    }
    return p;
}

// Hands the problem and the functions over, as a host does before ShowKelmar.
void transfer(KelmarDll& dll, Problem& p) {
    Variant dir(QStringLiteral("/nonexistent"));
    dll.TransferData(dir, 1, p.altNum, p.attNum, p.altPScore, p.attVData, p.attName, p.attDefinition, p.attProperty);
    dll.TransferVFunData(p.scoreMinimum, p.scoreMiddle, p.scoreMaximum, p.maxVal, p.techniqueId,
                         p.smpSize, p.smpX, p.smpY, p.parA, p.parB, p.parC, p.parD, p.funType);
}

// The first broken rule of the wizard data, or an empty text when every
// attribute's function is sound: the range only widened, point 0 on the
// minimum and the last point on the maximum, scores strictly increasing,
// values within 0 .. 1 and never against the attribute's orientation.
QString brokenRule() {
    const WizardData& w = wizardData();
    // Before the settings page first loads there is no working range yet.
    if (!w.ScoreMinimum.isAllocated() || !w.ScoreMaximum.isAllocated()) return {};
    try {
        for (int att = 0; att < w.AttNum; ++att) {
            const double low = w.ScoreMinimum(att).toDouble();
            const double high = w.ScoreMaximum(att).toDouble();
            if (low > w.InScoreMinimum(att).toDouble() || high < w.InScoreMaximum(att).toDouble())
                return describe(att, "the host's range was narrowed");
            const int n = w.SmpSize(att).toInteger();
            if (n < 2 || n > 11) return describe(att, "no usable sample size");
            if (w.SmpX(att, 0).toDouble() != low) return describe(att, "point 0 is off the minimum");
            if (w.SmpX(att, n - 1).toDouble() != high)
                return describe(att, "the last point is off the maximum");
            // The category page keeps its orientation in slot 10.
            const bool slot10 = w.VFTechniqueID(att).toInteger() == kCategoryIdentification;
            // The orientation as the pages read it: the copy once the
            // settings step has made it.
            const VariantArray& property = w.AttPropertyCopy.isAllocated() ? w.AttPropertyCopy : w.AttProperty;
            const bool cost = property(att).toDouble() != 0.0;
            for (int k = 0; k < n; ++k) {
                if (k > 0 && !(w.SmpX(att, k).toDouble() > w.SmpX(att, k - 1).toDouble()))
                    return describe(att, "scores not strictly increasing");
                if (k == 10 && slot10) continue;
                const double y = w.SmpY(att, k).toDouble();
                if (!(y >= 0.0 && y <= 1.0)) return describe(att, "a value outside 0 .. 1");
                const double previous = k > 0 ? w.SmpY(att, k - 1).toDouble() : y;
                if (cost ? y > previous : y < previous)
                    return describe(att, cost ? "a value rising on a cost attribute"
                                              : "a value falling on a benefit attribute");
            }
        }
    } catch (const RuntimeError& e) {
        return QStringLiteral("the wizard data cannot be read: ") + e.description();
    }
    return {};
}

// Records what reaches the host and keeps the last export as the host's
// functions for a later session.
class MonkeyHost : public KelmarEvents {
public:
    explicit MonkeyHost(Problem& problem) : problem_(problem) {}

    std::function<void()> onUnloadKelmar;
    QStringList faults;  // exported values out of range

    void UnloadKelmar() override { if (onUnloadKelmar) onUnloadKelmar(); }
    void ExportResults(VariantArray& AttVData, VariantArray& ScoreMinimum, VariantArray& ScoreMiddle,
                       VariantArray& ScoreMaximum, std::int16_t MaxVal, Variant& VFTechniqueID,
                       VariantArray& SmpSize, VariantArray& SmpX, VariantArray& SmpY,
                       VariantArray& VFunParA, VariantArray& VFunParB, VariantArray& VFunParC,
                       VariantArray& VFunParD, VariantArray& VFunType) override {
        const QString fault = badExport(AttVData, MaxVal);
        if (!fault.isEmpty()) faults << fault;
        // A host keeps what it received and offers it again next time.
        Problem& p = problem_;
        for (const auto& [to, from] : {std::pair{&p.scoreMinimum, &ScoreMinimum}, {&p.scoreMiddle, &ScoreMiddle},
                                       {&p.scoreMaximum, &ScoreMaximum}, {&p.smpSize, &SmpSize}, {&p.smpX, &SmpX},
                                       {&p.smpY, &SmpY}, {&p.parA, &VFunParA}, {&p.parB, &VFunParB},
                                       {&p.parC, &VFunParC}, {&p.parD, &VFunParD}, {&p.funType, &VFunType}})
            *to = *from;
        p.maxVal = MaxVal;
        if (VFTechniqueID.isArray()) p.techniqueId = VFTechniqueID.toArray();
    }

private:
    Problem& problem_;
};

// --- The run -----------------------------------------------------------------

using test::choose;
using test::gesture;
using test::pressReturn;
using test::sendKey;
using test::sendMouse;

const char* const kOptions[8] = {"optMidPoint",    "optDirectRating", "optCurveDrawing",
                                 "optCategoryIdn", "optDiffStandSeq", "optBisection",
                                 "optVarProbability", "optVarCertainty"};

bool named(const QWidget* w, std::initializer_list<const char*> names) {
    return std::any_of(names.begin(), names.end(), [w](const char* n) { return w->objectName() == QLatin1String(n); });
}

// The buttons that leave a page or the wizard: pressed less often, so that a
// visit to a page lasts.
bool leavesThePage(const QWidget* w) { return named(w, {"cmdFinish", "cmdCancel", "cmdBack"}); }

// A mark that the user drags: it shows a moving pointer.
bool draggable(const QWidget* w) {
    const Qt::CursorShape shape = w->cursor().shape();
    return w->testAttribute(Qt::WA_SetCursor) &&
           (shape == Qt::SizeHorCursor || shape == Qt::SizeVerCursor || shape == Qt::SizeAllCursor ||
            shape == Qt::OpenHandCursor || shape == Qt::ClosedHandCursor);
}

// The form names of the wizard's pages, by page id (8 is the settings page).
QString formName(int pageId) {
    static const char* const names[9] = {"frmKelMidPoint", "frmKelDirectRating", "frmKelCurveDrawing",
                                         "frmKelCatIdn",   "frmKelDiffStdSeq",   "frmKelBisection",
                                         "frmKelVarP",     "frmKelVarC",         "frmKelSettings"};
    return QString::fromLatin1(names[pageId]);
}

// The page's id, -1 for the function view and for no page.
int pageIdOf(const QWidget* page) {
    for (int id = 0; page != nullptr && id <= kSettingsPage; ++id)
        if (page->objectName() == formName(id)) return id;
    return -1;
}

// The lists that show another attribute: choosing one is no judgment.
bool attributeList(const QWidget* w) { return named(w, {"cmbAttributes", "cmbSelAtt"}); }

// The buttons whose click is a judgment.
bool judges(const QWidget* w) { return named(w, {"cmdLinear", "cmdRestore", "optMaxToMin", "optMinToMax"}); }

// A key is a judgment unless it only moves the focus or reaches a control
// that does not judge (a mark moves with the arrow keys only).
bool keyJudges(const QWidget* w, int key) {
    if (key == Qt::Key_Tab || key == Qt::Key_Escape) return false;
    if (qobject_cast<const QAbstractButton*>(w) != nullptr) return judges(w);
    if (qobject_cast<const QComboBox*>(w) != nullptr) return !attributeList(w);
    if (draggable(w))
        return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
    return true;
}

class Monkey {
public:
    Monkey(std::uint64_t seed, int eventsPerPage)
        : rng_(seed), perPage_(eventsPerPage), problem_(sampleProblem()), host_(problem_) {
        dll_.setEventSink(&host_);
        KelmarDll::setHelpHandler([](const QString&, int) {});
        // The host releases the pages when the wizard says it is done.
        host_.onUnloadKelmar = [this] {
            dll_.UnloadKelmar();
            open_ = false;
        };
        for (int id = 0; id <= 8; ++id) counts_[formName(id)] = 0;
    }

    // Runs until every page has had its events or a rule broke; returns the
    // failure (empty when none) after a summary of what was sent.
    QString run() {
        QEventLoop loop;
        loop_ = &loop;
        chooseTarget();
        QTimer::singleShot(0, [this] { step(); });
        loop.exec();
        loop_ = nullptr;
        dll_.setEventSink(nullptr);
        KelmarDll::setHelpHandler({});
        std::printf("%d events in %d sessions, %d message boxes answered\n", total_, sessions_, messageBoxes_);
        for (const auto& [page, n] : counts_) std::printf("  %-20s %d\n", qPrintable(page), n);
        return failure_;
    }

private:
    // An event whose effect on the functions is still to be checked.
    struct Pending {
        QString event;     // what was done, on which page
        Record before;     // the functions before it
        Record expected;   // what it must leave: before, or the host's record
        bool judgment = false;
        int alsoShown = -1;  // an attribute shown on the way
    };

    void step() {
        if (loop_ == nullptr) return;
        if (stopping_ && !open_ && QApplication::activeModalWidget() == nullptr) {
            settle();
            loop_->quit();
            return;
        }
        // The next step fires inside whatever modal loop this one opens.
        QTimer::singleShot(0, [this] { step(); });
        // A list's pop-up left open is closed, as Escape would.
        if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
        // A message box belongs to the event that opened it.
        if (answerMessageBox()) return;
        settle();
        if (!open_) {
            if (!stopping_) reopen();
            return;
        }
        QWidget* page = frontPage();
        if (page == nullptr) {
            finish(QStringLiteral("the wizard is open and shows no page"));
            open_ = false;
            return;
        }
        if (stopping_) {
            // Leave the wizard: the view closes, every page has Cancel.
            auto* cancel = page->findChild<QPushButton*>(QStringLiteral("cmdCancel"));
            begin(page->objectName() + QStringLiteral(": Cancel to end the run"));
            if (cancel != nullptr && cancel->isVisibleTo(page)) click(cancel);
            else page->close();
            return;
        }
        const QString name = page->objectName();
        if (!steer(page)) randomEvent(page);
        afterEvent(name);
    }

    void finish(const QString& failure) {
        if (!failure.isEmpty() && failure_.isEmpty()) {
            const QStringList last(recent_.begin(), recent_.end());
            failure_ = QStringLiteral("event %1: %2\nlast events:\n  %3").arg(total_).arg(failure, last.join(QStringLiteral("\n  ")));
        }
        done_ = stopping_ = true;
    }

    QWidget* frontPage() const {
        if (QWidget* modal = QApplication::activeModalWidget(); modal != nullptr && modal->isVisible())
            return modal;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && w->inherits("kelmar::KelPage")) return w;
        return nullptr;
    }

    bool answerMessageBox() {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr) return false;
        ++messageBoxes_;
        if (box->text().startsWith(QLatin1String("Run-time error")))
            finish(QStringLiteral("after %1: a run-time error: %2").arg(currentEvent_, box->text().simplified()));
        if (box->buttons().isEmpty()) box->accept();
        else box->buttons().front()->click();
        return true;
    }

    void reopen() {
        ++sessions_;
        open_ = true;
        rangeTyped_ = false;
        // The first session and about half of the later ones get the problem and
        // the functions anew (a later one from the last export); the settings
        // page must then start from exactly what the host handed over.
        const bool handOver = sessions_ == 1 || chance(0.5);
        begin(handOver ? QStringLiteral("ShowKelmar with the host's functions") : QStringLiteral("ShowKelmar"),
              !handOver);
        if (handOver) {
            transfer(dll_, problem_);
            pending_->expected = hostRecord(problem_);
        }
        dll_.ShowKelmar();
    }

    void begin(const QString& event, bool judgment = false) {
        settle();
        // Any event on the settings page may confirm a typed score.
        const QWidget* page = frontPage();
        if (rangeTyped_ && page != nullptr && page->objectName() == formName(kSettingsPage)) judgment = true;
        Pending p{event, workingRecord(), {}, judgment};
        p.expected = p.before;
        pending_ = std::move(p);
        currentEvent_ = event;
        recent_.push_back(event);
        if (recent_.size() > 12) recent_.pop_front();
    }

    void settle() {
        if (!pending_) return;
        const Pending p = std::move(*pending_);
        pending_.reset();
        const Record now = workingRecord();
        const WizardData& w = wizardData();
        const QWidget* front = frontPage();
        const int page = pageIdOf(front);
        const int shown = w.SelAtt;
        // These pages fit a function to their technique (size, equal value
        // steps, ladder) when they show it.
        const bool fitting = page == kCategoryIdentification || page == kDiffStandardSequence ||
                             page == kBisection || page == kVariableCertainty;
        for (int att = 0; att < w.AttNum && !p.judgment && failure_.isEmpty(); ++att) {
            const QString change = recordChange(p.expected, now, att);
            const bool firstShow = fitting && (att == shown || att == p.alsoShown) &&
                                   shown_.count({page, att}) == 0 && pointsChanged(p.before, now, att);
            if (!change.isEmpty() && !firstShow)
                finish(QStringLiteral("after %1 (%2 in front): attribute %3 (%4) changed without a judgment: %5")
                           .arg(p.event, front != nullptr ? front->objectName() : QStringLiteral("no page")).arg(att)
                           .arg(w.AttName(att).toString(), change));
        }
        for (int att = 0; att < w.AttNum; ++att)
            if (!recordChange(p.before, now, att).isEmpty())
                for (int t = 0; t < kSettingsPage; ++t) shown_.erase({t, att});
        if (page >= 0 && page < kSettingsPage) {
            shown_.insert({page, shown});
            if (p.alsoShown >= 0) shown_.insert({page, p.alsoShown});
        }
    }

    void chooseTarget() {
        // The page that has had the fewest events so far.
        int best = 8;
        for (int id = 0; id <= 8; ++id)
            if (counts_[formName(id)] < counts_[formName(best)]) best = id;
        target_ = best;
        budget_ = 40 + pick(std::max(1, perPage_ / 2));
    }

    bool steer(QWidget* page) {
        const QString name = page->objectName();
        const int id = pageIdOf(page);
        const auto named = [page](const char* n) { return page->findChild<QWidget*>(QString::fromLatin1(n)); };
        if (id == -1) {
            // The function view: closed again.
            begin(name + QStringLiteral(": close"));
            if (QWidget* ok = named("cmdOK")) click(ok);
            else page->close();
            return true;
        }
        int panel = 0;
        for (int i = 0; i < 3; ++i)
            if (QWidget* p = page->findChild<QWidget*>(QStringLiteral("picPanel_%1").arg(i)); p != nullptr && p->isVisibleTo(page))
                panel = i;
        // Back from a technique page is followed by Next to the same page.
        if (const int back = std::exchange(returnTo_, -1); back >= 0 && id == kSettingsPage && panel == 2) {
            begin(name + QStringLiteral(": Next back to ") + formName(back));
            click(named("cmdNext"));
            return true;
        }
        if (id == target_ && budget_ <= 0) chooseTarget();
        if (id == target_) return false;
        // Off the target, about every other step heads for it.
        if (!chance(0.5)) return false;

        if (id != kSettingsPage) {
            begin(name + QStringLiteral(": Back towards ") + formName(target_));
            if (QWidget* back = named("cmdBack")) click(back);
            return true;
        }
        begin(name + QStringLiteral(": Next on panel %1 towards ").arg(panel) + formName(target_));
        if (panel == 2) {
            if (auto* tabs = page->findChild<QTabBar*>(QStringLiteral("tsTechniques")))
                gesture(tabs, {tabs->tabRect(target_ < 4 ? 0 : 1).center()});
            if (QWidget* option = named(kOptions[target_])) click(option);
        }
        if (QWidget* next = named("cmdNext")) click(next);
        return true;
    }

    void randomEvent(QWidget* page) {
        const bool technique = pageIdOf(page) >= 0 && pageIdOf(page) < kSettingsPage;
        enum Kind { Button, Exit, Option, Tab, List, Box, Slider, Mark, Chart, Key, Close, Hover, Wheel,
                    Jiggle, Attribute, Orientation, BackNext, NextJudgment, Exact, KindCount };
        std::vector<QWidget*> of[KindCount];  // the widgets each kind of event can reach
        auto* minToMax = page->findChild<QRadioButton*>(QStringLiteral("optMinToMax"));
        for (QWidget* w : page->findChildren<QWidget*>()) {
            if (w->window() != page || !w->isVisibleTo(page) || !w->isEnabled()) continue;
            if (qobject_cast<QPushButton*>(w) != nullptr) {
                // The print button would send the page to the printer.
                if (named(w, {"cmdCUFPrint"})) continue;
                of[leavesThePage(w) ? Exit : Button].push_back(w);
                // The guided pages' step to the next judgment, pressed often so
                // that judgments land on every point of the order.
                if (named(w, {"cmdNextJudgment"})) of[NextJudgment].push_back(w);
                if (technique && named(w, {"cmdBack"})) of[BackNext].push_back(w);
            } else if (qobject_cast<QRadioButton*>(w) != nullptr || qobject_cast<QCheckBox*>(w) != nullptr) {
                of[Option].push_back(w);
                // The orientation turned and turned back needs one of the two set.
                if (named(w, {"optMaxToMin"}) && minToMax != nullptr &&
                    static_cast<QRadioButton*>(w)->isChecked() != minToMax->isChecked())
                    of[Orientation].push_back(w);
            } else if (qobject_cast<QTabBar*>(w) != nullptr) {
                of[Tab].push_back(w);
            } else if (auto* list = qobject_cast<QComboBox*>(w)) {
                of[List].push_back(w);
                of[Hover].push_back(w);
                if (attributeList(w) && list->count() >= 2) of[Attribute].push_back(w);
            } else if (auto* e = qobject_cast<QLineEdit*>(w); e != nullptr && !e->isReadOnly()) {
                of[named(w, {"txtExact"}) ? Exact : Box].push_back(w);
            } else if (qobject_cast<QSlider*>(w) != nullptr) {
                of[Slider].push_back(w);
                of[Hover].push_back(w);
            } else if (draggable(w)) {
                of[Mark].push_back(w);
                of[Hover].push_back(w);
            } else if (w->inherits("kelmar::DrawSurface")) {
                of[Chart].push_back(w);
                of[Hover].push_back(w);
            }
            if (w->focusPolicy() & Qt::TabFocus) of[Key].push_back(w);
        }
        of[Wheel] = of[Hover];
        of[Jiggle] = of[Mark];
        const std::pair<Kind, double> weights[] = {
            {Button, 3},   {Exit, 0.3},      {Option, 2},    {Tab, 1},         {List, 2},
            {Box, 3},      {Slider, 2},      {Mark, 6},      {Chart, 1},       {Key, 3},
            {Close, 0.02}, {Hover, 1},       {Wheel, 1},     {Jiggle, 2},      {Attribute, 1},
            {Orientation, 1}, {BackNext, 0.4}, {NextJudgment, 2}, {Exact, 3},
        };
        // Close needs no widget; any other kind one that it can reach.
        const auto reachable = [&of](Kind k) { return k == Close || !of[k].empty(); };
        double total = 0;
        for (const auto& [k, weight] : weights)
            if (reachable(k)) total += weight;
        double at = uniform(0.0, total);
        Kind kind = Close;
        QWidget* w = page;
        for (const auto& [k, weight] : weights) {
            if (!reachable(k)) continue;
            if (at < weight) {
                kind = k;
                if (k != Close) w = of[k][static_cast<std::size_t>(pick(static_cast<int>(of[k].size())))];
                break;
            }
            at -= weight;
        }
        // Closing a technique page's window leaves the wizard without a page in
        // front; only the settings page's window is closed.
        if (kind == Close && technique) kind = Key, w = page;

        const QString where = QStringLiteral("%1 (attribute %2): %3 (%4)")
                                  .arg(page->objectName()).arg(wizardData().SelAtt).arg(w->objectName(), QString::fromLatin1(w->metaObject()->className()));
        const auto act = [&](const QString& what, bool judgment = false) { begin(where + what, judgment); };
        QPointer<QWidget> guard(w);
        // A slider that moves is a judgment, whatever the page makes of it.
        QMetaObject::Connection moved;
        if (auto* slider = qobject_cast<QSlider*>(w); slider != nullptr && (kind == Slider || kind == Key))
            moved = QObject::connect(slider, &QSlider::valueChanged, [this] { judged(); });
        switch (kind) {
        case Button:
        case Exit:
        case Option:
        case NextJudgment: {
            const Qt::MouseButton button = chance(0.95) ? Qt::LeftButton : Qt::RightButton;
            act(QStringLiteral(" click"), button == Qt::LeftButton && judges(w));
            click(w, button);
            break;
        }
        case Tab: {
            auto* bar = static_cast<QTabBar*>(w);
            const int tab = pick(bar->count());
            act(QStringLiteral(" tab %1").arg(tab));
            gesture(bar, {bar->tabRect(tab).center()});
            break;
        }
        case List: {
            auto* list = static_cast<QComboBox*>(w);
            const int index = list->count() > 0 ? pick(list->count()) : -1;
            const int was = list->currentIndex();
            act(QStringLiteral(" choose %1").arg(index), !attributeList(w));
            choose(list, index);
            // Another attribute fills the score boxes anew; the same one keeps
            // what was typed.
            if (guard && named(w, {"cmbSelAtt"}) && index != was) rangeTyped_ = false;
            break;
        }
        case Exact: {
            // Near the number shown, mostly; now and then anything at all.
            auto* box = static_cast<QLineEdit*>(w);
            bool number = false;
            const double shown = box->text().toDouble(&number);
            const double spread = number && shown != 0.0 ? std::fabs(shown) : 1.0;
            const QString text = number && chance(0.8) ? QString::number(shown + spread * uniform(-0.6, 0.6), 'f', pick(6))
                                                       : randomText();
            act(QStringLiteral(" typed \"%1\"").arg(text), true);
            box->selectAll();
            test::typeKeys(box, text);
            if (guard) pressReturn(box);
            break;
        }
        case Box: {
            const QString text = randomText();
            act(QStringLiteral(" typed \"%1\"").arg(text), true);
            rangeTyped_ = true;
            typeInto(static_cast<QLineEdit*>(w), text);
            break;
        }
        case Slider:
            if (chance(0.5)) {
                const int k = std::array{Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home,
                                         Qt::Key_End}[static_cast<std::size_t>(pick(6))];
                act(QStringLiteral(" key %1").arg(k, 0, 16));
                sendKey(w, k);
                break;
            }
            [[fallthrough]];
        case Mark:
        case Chart: {
            // Sliders and charts take the left button; only the left button moves a mark.
            const bool left = kind != Mark || chance(0.9);
            act(left ? QStringLiteral(" drag") : QStringLiteral(" right drag"), left && kind == Mark);
            drag(w, left ? Qt::LeftButton : Qt::RightButton);
            break;
        }
        case Key: {
            const struct { int key; const char* text; } keys[] = {
                {Qt::Key_Left, ""}, {Qt::Key_Right, ""}, {Qt::Key_Up, ""}, {Qt::Key_Down, ""}, {Qt::Key_Home, ""},
                {Qt::Key_End, ""}, {Qt::Key_PageUp, ""}, {Qt::Key_PageDown, ""}, {Qt::Key_Space, " "},
                {Qt::Key_Return, "\r"}, {Qt::Key_Escape, ""}, {Qt::Key_Tab, "\t"}, {Qt::Key_Backspace, ""},
                {Qt::Key_Delete, ""}, {Qt::Key_A, "a"}, {Qt::Key_5, "5"}, {Qt::Key_Period, "."}, {Qt::Key_Minus, "-"}};
            const auto& k = keys[pick(static_cast<int>(std::size(keys)))];
            const double m = uniform(0.0, 1.0);
            const Qt::KeyboardModifiers mods = m < 0.7 ? Qt::NoModifier : m < 0.9 ? Qt::ShiftModifier : Qt::ControlModifier;
            act(QStringLiteral(" key %1").arg(k.key, 0, 16), qobject_cast<QSlider*>(w) == nullptr && keyJudges(w, k.key));
            // A key in a score box edits the score that Next will take.
            if (qobject_cast<QLineEdit*>(w) != nullptr) rangeTyped_ = true;
            sendKey(w, k.key, QString::fromLatin1(k.text), mods);
            break;
        }
        case Close:
            begin(page->objectName() + QStringLiteral(": close the window"));
            page->close();
            break;
        case Hover:
            act(QStringLiteral(" hover"));
            for (int i = 1 + pick(3); i > 0 && guard; --i)
                sendMouse(w, QEvent::MouseMove, QPointF(uniform(0, w->width()), uniform(0, w->height())), Qt::NoButton,
                          Qt::NoButton);
            break;
        case Wheel: {
            const QPointF over(uniform(0, w->width()), uniform(0, w->height()));
            const int delta = chance(0.5) ? 120 : -120;
            act(QStringLiteral(" wheel %1").arg(delta));
            QWheelEvent wheel(over, w->mapToGlobal(over), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QApplication::sendEvent(w, &wheel);
            break;
        }
        case Jiggle: {
            // A press that strays a pixel or three across the mark's scale, which
            // runs up and down on a mark with the vertical pointer.
            act(QStringLiteral(" press with a jiggle"));
            const bool upright = w->cursor().shape() == Qt::SizeVerCursor;
            std::vector<QPointF> path{QPointF(w->rect().center())};
            for (int i = pick(3); i > 0; --i) {
                const double off = (1 + pick(3)) * (chance(0.5) ? 1.0 : -1.0);
                path.push_back(path.front() + (upright ? QPointF(off, 0) : QPointF(0, off)));
            }
            gesture(w, path);
            break;
        }
        case Attribute: {
            // Another attribute and then the first one again.
            auto* list = static_cast<QComboBox*>(w);
            const int first = list->currentIndex();
            int other = pick(list->count() - 1);
            if (other >= first) ++other;
            act(QStringLiteral(" choose %1 and %2 again").arg(other).arg(first));
            pending_->alsoShown = other;
            choose(list, other);
            if (guard) choose(list, first);
            if (guard && named(w, {"cmbSelAtt"})) rangeTyped_ = false;
            break;
        }
        case Orientation: {
            QWidget* on = static_cast<QRadioButton*>(w)->isChecked() ? w : minToMax;
            QWidget* off = on == w ? minToMax : w;
            act(QStringLiteral(" orientation %1 and back").arg(off->objectName()));
            QPointer<QWidget> back(on);
            click(off);
            if (back) click(on);
            break;
        }
        case BackNext:
            act(QStringLiteral(" Back, to come back with Next"));
            returnTo_ = pageIdOf(page);
            click(w);
            break;
        case KindCount:
            break;
        }
        QObject::disconnect(moved);
    }

    void afterEvent(const QString& pageName) {
        settle();
        ++total_;
        ++counts_[pageName];
        if (pageName == formName(target_)) --budget_;

        const QString broken = brokenRule();
        if (!broken.isEmpty()) finish(QStringLiteral("after %1: %2").arg(currentEvent_, broken));
        if (!host_.faults.isEmpty()) finish(host_.faults.front());
        if (done_) return;
        bool all = true;
        for (int id = 0; id <= 8; ++id) all = all && counts_[formName(id)] >= perPage_;
        if (all) finish({});
        // A page that the run cannot reach is a fault of its own.
        if (total_ > 40 * 9 * perPage_ + 1000) {
            QStringList short_;
            for (const auto& [page, n] : counts_)
                if (n < perPage_) short_ << QStringLiteral("%1 (%2)").arg(page).arg(n);
            finish(QStringLiteral("pages not reached: ") + short_.join(QStringLiteral(", ")));
        }
    }

    // --- Input ---------------------------------------------------------------

    void click(QWidget* w, Qt::MouseButton button = Qt::LeftButton) {
        // An option button answers on its mark and caption, which start at its
        // left edge; other buttons anywhere.
        const bool option = qobject_cast<QRadioButton*>(w) != nullptr || qobject_cast<QCheckBox*>(w) != nullptr;
        gesture(w, {option ? QPointF(6, w->height() / 2) : QPointF(w->rect().center())}, button);
    }

    void drag(QWidget* w, Qt::MouseButton button) {
        const QRect r = w->rect();
        // Marks are grabbed in their middle, charts and sliders anywhere.
        const QPointF start = draggable(w) ? QPointF(r.center()) : QPointF(uniform(0, r.width()), uniform(0, r.height()));
        std::vector<QPointF> path{start};
        for (int i = 1 + pick(4); i > 0; --i) path.push_back(start + QPointF(uniform(-220, 220), uniform(-20, 20)));
        gesture(w, path, button);
    }

    QString randomText() {
        const WizardData& w = wizardData();
        switch (pick(4)) {
        case 0: return QString::number(static_cast<long long>(uniform(-50000, 100000)));
        case 1: return QString::number(uniform(-1000, 1000), 'f', pick(5));
        case 2: {
            // Around the attribute's own range, often a little wider.
            double low = 0, high = 1;
            try {
                low = w.InScoreMinimum(w.SelAtt).toDouble();
                high = w.InScoreMaximum(w.SelAtt).toDouble();
            } catch (const RuntimeError&) {
            }
            const double span = high - low;
            const double v = chance(0.5) ? low - span * uniform(-0.2, 1.0) : high + span * uniform(-0.2, 1.0);
            // Ranges grow from session to session (the host offers the last
            // export again); scores stay within what an analyst would type.
            return QString::number(std::clamp(v, -1e7, 1e7), 'f', pick(4));
        }
        default: {
            static const QString chars = QStringLiteral("0123456789.-+, abcxyz%$");
            QString s;
            for (int i = pick(13); i > 0; --i) s += chars[pick(static_cast<int>(chars.size()))];
            return s;
        }
        }
    }

    void typeInto(QLineEdit* box, const QString& text) {
        QPointer<QLineEdit> guard(box);
        box->setFocus(Qt::MouseFocusReason);
        sendKey(box, Qt::Key_End);
        // Part of the old text is kept and the new text goes after it; a long
        // text is cleared first, so that typed scores keep to an analyst's
        // sizes (beyond the single-precision range the curves overflow).
        const int length = static_cast<int>(box->text().size());
        for (int i = length > 8 ? length : pick(length + 1); i > 0 && guard; --i) sendKey(box, Qt::Key_Backspace);
        if (guard) test::typeKeys(box, text);
        if (!guard) return;
        const double end = uniform(0.0, 1.0);
        if (end < 0.6) pressReturn(box);
        else if (end < 0.8) sendKey(box, Qt::Key_Tab, QStringLiteral("\t"));
    }

    void judged() { if (pending_) pending_->judgment = true; }
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }
    double uniform(double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng_); }
    bool chance(double p) { return uniform(0.0, 1.0) < p; }

    std::mt19937_64 rng_;
    int perPage_;
    Problem problem_;
    KelmarDll dll_;
    MonkeyHost host_;

    bool open_ = false;      // the wizard is showing
    bool stopping_ = false;  // closing the wizard to end the run
    bool done_ = false;
    QEventLoop* loop_ = nullptr;
    QString failure_;
    int target_ = 8;    // the page the run steers to
    int budget_ = 0;    // events left for the target on this visit
    int total_ = 0;
    int sessions_ = 0;
    int messageBoxes_ = 0;
    std::map<QString, int> counts_;
    std::deque<QString> recent_;  // the last events, for the report
    QString currentEvent_;

    std::optional<Pending> pending_;
    // (technique page, attribute): the page has shown the attribute's
    // function as it stands. A page may fit a function to its technique the
    // first time it shows it, never again.
    std::set<std::pair<int, int>> shown_;
    bool rangeTyped_ = false;  // a score box of the settings page was typed into
    int returnTo_ = -1;        // the technique page that Back left, for Next
};

long long fromEnvironment(const char* name, long long fallback) {
    const char* text = std::getenv(name);
    return text != nullptr && *text != '\0' ? std::atoll(text) : fallback;
}

TEST(Monkey, RandomInputOnEveryPageKeepsEveryFunctionSound) {
    const auto seed = static_cast<std::uint64_t>(fromEnvironment("KELMAR_MONKEY_SEED", 20261123));
    const int perPage = static_cast<int>(fromEnvironment("KELMAR_MONKEY_EVENTS", 150));
    std::printf("seed %llu: ", static_cast<unsigned long long>(seed));
    const QString failure = Monkey(seed, perPage).run();
    EXPECT_TRUE(failure.isEmpty()) << "seed " << seed << ", " << failure.toStdString();
    EXPECT_EQ(brokenRule(), QString());
}

}  // namespace
}  // namespace kelmar::monkey
