#include "Monkey.h"

#include "InputKit.h"

#include <QAbstractButton>
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

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelmar::monkey {

using test::gesture;
using test::sendKey;
using test::sendMouse;

namespace {

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

// The page's id, -1 for the function view and for no page.
int pageIdOf(const QWidget* page) {
    for (int id = 0; page != nullptr && id <= kSettingsPage; ++id)
        if (page->objectName() == Monkey::formName(id)) return id;
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

// A list choice as the analyst makes it.
void choose(QComboBox* list, int index) {
    QPointer<QComboBox> guard(list);
    list->setCurrentIndex(index);
    if (guard && index >= 0) emit list->activated(index);
}

void pressReturn(QWidget* w) { sendKey(w, Qt::Key_Return, QStringLiteral("\r")); }

}  // namespace

QString Monkey::formName(int pageId) {
    static const char* const names[9] = {"frmKelMidPoint", "frmKelDirectRating", "frmKelCurveDrawing",
                                         "frmKelCatIdn",   "frmKelDiffStdSeq",   "frmKelBisection",
                                         "frmKelVarP",     "frmKelVarC",         "frmKelSettings"};
    return QString::fromLatin1(names[pageId]);
}

Monkey::Monkey(std::uint64_t seed, int eventsPerPage)
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

QString Monkey::run() {
    QEventLoop loop;
    loop_ = &loop;
    chooseTarget();
    QTimer::singleShot(0, [this] { step(); });
    loop.exec();
    loop_ = nullptr;
    dll_.setEventSink(nullptr);
    KelmarDll::setHelpHandler({});
    return failure_;
}

void Monkey::finish(const QString& failure) {
    if (!failure.isEmpty() && failure_.isEmpty()) {
        const QStringList last(recent_.begin(), recent_.end());
        failure_ = QStringLiteral("event %1: %2\nlast events:\n  %3").arg(total_).arg(failure, last.join(QStringLiteral("\n  ")));
    }
    done_ = stopping_ = true;
}

QWidget* Monkey::frontPage() const {
    if (QWidget* modal = QApplication::activeModalWidget(); modal != nullptr && modal->isVisible())
        return modal;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->inherits("kelmar::KelPage")) return w;
    return nullptr;
}

bool Monkey::answerMessageBox() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return false;
    ++messageBoxes_;
    if (box->text().startsWith(QLatin1String("Run-time error")))
        finish(QStringLiteral("after %1: a run-time error: %2").arg(currentEvent_, box->text().simplified()));
    if (box->buttons().isEmpty()) box->accept();
    else box->buttons().front()->click();
    return true;
}

void Monkey::step() {
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

void Monkey::reopen() {
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

void Monkey::begin(const QString& event, bool judgment) {
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

void Monkey::settle() {
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
                       .arg(p.event, front != nullptr ? front->objectName() : QStringLiteral("no page"))
                       .arg(att)
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

void Monkey::chooseTarget() {
    // The page that has had the fewest events so far.
    int best = 8;
    for (int id = 0; id <= 8; ++id)
        if (counts_[formName(id)] < counts_[formName(best)]) best = id;
    target_ = best;
    budget_ = 40 + pick(std::max(1, perPage_ / 2));
}

bool Monkey::steer(QWidget* page) {
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

void Monkey::randomEvent(QWidget* page) {
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
                              .arg(page->objectName())
                              .arg(wizardData().SelAtt)
                              .arg(w->objectName(), QString::fromLatin1(w->metaObject()->className()));
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
        begin(where + QStringLiteral(" click"), button == Qt::LeftButton && judges(w));
        click(w, button);
        break;
    }
    case Tab: {
        auto* bar = static_cast<QTabBar*>(w);
        const int tab = pick(bar->count());
        begin(where + QStringLiteral(" tab %1").arg(tab));
        gesture(bar, {bar->tabRect(tab).center()});
        break;
    }
    case List: {
        auto* list = static_cast<QComboBox*>(w);
        const int index = list->count() > 0 ? pick(list->count()) : -1;
        const int was = list->currentIndex();
        begin(where + QStringLiteral(" choose %1").arg(index), !attributeList(w));
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
        begin(where + QStringLiteral(" typed \"%1\"").arg(text), true);
        box->selectAll();
        test::typeKeys(box, text);
        if (guard) pressReturn(box);
        break;
    }
    case Box: {
        const QString text = randomText();
        begin(where + QStringLiteral(" typed \"%1\"").arg(text), true);
        rangeTyped_ = true;
        typeInto(static_cast<QLineEdit*>(w), text);
        break;
    }
    case Slider:
        if (chance(0.5)) {
            const int keys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp, Qt::Key_PageDown,
                                Qt::Key_Home, Qt::Key_End};
            const int k = keys[pick(6)];
            begin(where + QStringLiteral(" key %1").arg(k, 0, 16));
            sendKey(w, k);
        } else {
            begin(where + QStringLiteral(" drag"));
            drag(w, Qt::LeftButton);
        }
        break;
    case Mark: {
        const Qt::MouseButton button = chance(0.9) ? Qt::LeftButton : Qt::RightButton;
        // Only the left button moves a mark.
        begin(where + (button == Qt::LeftButton ? QStringLiteral(" drag") : QStringLiteral(" right drag")),
              button == Qt::LeftButton);
        drag(w, button);
        break;
    }
    case Chart:
        begin(where + QStringLiteral(" drag"));
        drag(w, Qt::LeftButton);
        break;
    case Key: {
        const struct { int key; const char* text; } keys[] = {
            {Qt::Key_Left, ""},   {Qt::Key_Right, ""},   {Qt::Key_Up, ""},     {Qt::Key_Down, ""},
            {Qt::Key_Home, ""},   {Qt::Key_End, ""},     {Qt::Key_PageUp, ""}, {Qt::Key_PageDown, ""},
            {Qt::Key_Space, " "}, {Qt::Key_Return, "\r"}, {Qt::Key_Escape, ""}, {Qt::Key_Tab, "\t"},
            {Qt::Key_Backspace, ""}, {Qt::Key_Delete, ""}, {Qt::Key_A, "a"},  {Qt::Key_5, "5"},
            {Qt::Key_Period, "."}, {Qt::Key_Minus, "-"},
        };
        const auto& k = keys[pick(static_cast<int>(std::size(keys)))];
        const double m = uniform(0.0, 1.0);
        const Qt::KeyboardModifiers mods = m < 0.7 ? Qt::NoModifier : m < 0.9 ? Qt::ShiftModifier : Qt::ControlModifier;
        begin(where + QStringLiteral(" key %1").arg(k.key, 0, 16),
              qobject_cast<QSlider*>(w) == nullptr && keyJudges(w, k.key));
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
        begin(where + QStringLiteral(" hover"));
        for (int i = 1 + pick(3); i > 0 && guard; --i)
            sendMouse(w, QEvent::MouseMove, QPointF(uniform(0, w->width()), uniform(0, w->height())), Qt::NoButton,
                      Qt::NoButton);
        break;
    case Wheel: {
        const QPointF over(uniform(0, w->width()), uniform(0, w->height()));
        const int delta = chance(0.5) ? 120 : -120;
        begin(where + QStringLiteral(" wheel %1").arg(delta));
        QWheelEvent wheel(over, w->mapToGlobal(over), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(w, &wheel);
        break;
    }
    case Jiggle: {
        // A press that strays a pixel or three across the mark's scale, which
        // runs up and down on a mark with the vertical pointer.
        begin(where + QStringLiteral(" press with a jiggle"));
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
        begin(where + QStringLiteral(" choose %1 and %2 again").arg(other).arg(first));
        pending_->alsoShown = other;
        choose(list, other);
        if (guard) choose(list, first);
        if (guard && named(w, {"cmbSelAtt"})) rangeTyped_ = false;
        break;
    }
    case Orientation: {
        QWidget* on = static_cast<QRadioButton*>(w)->isChecked() ? w : minToMax;
        QWidget* off = on == w ? minToMax : w;
        begin(where + QStringLiteral(" orientation %1 and back").arg(off->objectName()));
        QPointer<QWidget> back(on);
        click(off);
        if (back) click(on);
        break;
    }
    case BackNext:
        begin(where + QStringLiteral(" Back, to come back with Next"));
        returnTo_ = pageIdOf(page);
        click(w);
        break;
    case KindCount:
        break;
    }
    QObject::disconnect(moved);
}

void Monkey::afterEvent(const QString& pageName) {
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

// --- Input ---------------------------------------------------------------------

void Monkey::click(QWidget* w, Qt::MouseButton button) {
    // An option button answers on its mark and caption, which start at its
    // left edge; other buttons anywhere.
    const bool option = qobject_cast<QRadioButton*>(w) != nullptr || qobject_cast<QCheckBox*>(w) != nullptr;
    gesture(w, {option ? QPointF(6, w->height() / 2) : QPointF(w->rect().center())}, button);
}

void Monkey::drag(QWidget* w, Qt::MouseButton button) {
    const QRect r = w->rect();
    // Marks are grabbed in their middle, charts and sliders anywhere.
    const QPointF start = draggable(w) ? QPointF(r.center()) : QPointF(uniform(0, r.width()), uniform(0, r.height()));
    std::vector<QPointF> path{start};
    for (int i = 1 + pick(4); i > 0; --i) path.push_back(start + QPointF(uniform(-220, 220), uniform(-20, 20)));
    gesture(w, path, button);
}

QString Monkey::randomText() {
    const WizardData& w = wizardData();
    switch (pick(4)) {
    case 0:
        return QString::number(static_cast<long long>(uniform(-50000, 100000)));
    case 1:
        return QString::number(uniform(-1000, 1000), 'f', pick(5));
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

void Monkey::typeInto(QLineEdit* box, const QString& text) {
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

}  // namespace kelmar::monkey
