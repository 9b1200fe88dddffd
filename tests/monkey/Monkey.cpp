#include "Monkey.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTimer>

#include <algorithm>

namespace kelmar::monkey {

namespace {

const char* const kOptions[8] = {"optMidPoint",    "optDirectRating", "optCurveDrawing",
                                 "optCategoryIdn", "optDiffStandSeq", "optBisection",
                                 "optVarProbability", "optVarCertainty"};

// The buttons that leave a page or the wizard: pressed less often, so that a
// visit to a page lasts.
bool leavesThePage(const QWidget* w) {
    static const QStringList exits{QStringLiteral("cmdFinish"), QStringLiteral("cmdCancel"), QStringLiteral("cmdBack")};
    return exits.contains(w->objectName());
}

// A mark that the user drags: it shows a moving pointer.
bool draggable(const QWidget* w) {
    const Qt::CursorShape shape = w->cursor().shape();
    return w->testAttribute(Qt::WA_SetCursor) &&
           (shape == Qt::SizeHorCursor || shape == Qt::SizeVerCursor || shape == Qt::SizeAllCursor ||
            shape == Qt::OpenHandCursor || shape == Qt::ClosedHandCursor);
}

// The key that types `c`: a digit, a letter or a sign of the random texts.
int keyFor(QChar c) { return c.toUpper().unicode(); }

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
        QStringList last(recent_.begin(), recent_.end());
        failure_ = QStringLiteral("event %1: %2\nlast events:\n  %3")
                       .arg(total_)
                       .arg(failure, last.join(QStringLiteral("\n  ")));
    }
    done_ = true;
    stopping_ = true;
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
    const QString text = box->text();
    if (text.startsWith(QLatin1String("Run-time error")))
        finish(QStringLiteral("after %1: a run-time error: %2").arg(currentEvent_, text.simplified()));
    const QList<QAbstractButton*> buttons = box->buttons();
    if (!buttons.isEmpty()) {
        buttons.front()->click();
    } else {
        box->accept();
    }
    return true;
}

void Monkey::step() {
    if (loop_ == nullptr) return;
    if (stopping_ && !open_ && QApplication::activeModalWidget() == nullptr) {
        loop_->quit();
        return;
    }
    // The next step fires inside whatever modal loop this one opens.
    QTimer::singleShot(0, [this] { step(); });
    // A list's pop-up left open is closed, as Escape would.
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    if (answerMessageBox()) return;
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
        if (cancel != nullptr && cancel->isVisibleTo(page)) {
            currentEvent_ = page->objectName() + QStringLiteral(": Cancel to end the run");
            click(cancel);
        } else {
            page->close();
        }
        return;
    }
    const QString name = page->objectName();
    if (!steer(page)) randomEvent(page);
    afterEvent(name);
}

void Monkey::reopen() {
    ++sessions_;
    open_ = true;
    // The first session and about half of the later ones get the problem and
    // the functions anew (a later one from the last export).
    if (sessions_ == 1 || chance(0.5)) transfer(dll_, problem_);
    currentEvent_ = QStringLiteral("ShowKelmar");
    dll_.ShowKelmar();
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
    int id = -1;
    for (int k = 0; k <= 8; ++k)
        if (name == formName(k)) id = k;
    if (id == -1) {
        // The function view: closed again.
        auto* ok = page->findChild<QPushButton*>(QStringLiteral("cmdOK"));
        currentEvent_ = name + QStringLiteral(": close");
        if (ok != nullptr) {
            click(ok);
        } else {
            page->close();
        }
        return true;
    }
    if (id == target_ && budget_ <= 0) chooseTarget();
    if (id == target_) return false;
    // Off the target, about every other step heads for it.
    if (!chance(0.5)) return false;

    const auto named = [page](const char* n) { return page->findChild<QWidget*>(QString::fromLatin1(n)); };
    if (id != 8) {
        currentEvent_ = name + QStringLiteral(": Back towards ") + formName(target_);
        if (QWidget* back = named("cmdBack")) click(back);
        return true;
    }
    int panel = 0;
    for (int i = 0; i < 3; ++i) {
        QWidget* p = page->findChild<QWidget*>(QStringLiteral("picPanel_%1").arg(i));
        if (p != nullptr && p->isVisibleTo(page)) panel = i;
    }
    currentEvent_ = name + QStringLiteral(": Next on panel %1 towards ").arg(panel) + formName(target_);
    if (panel == 2) {
        if (auto* tabs = page->findChild<QTabBar*>(QStringLiteral("tsTechniques"))) {
            const int tab = target_ < 4 ? 0 : 1;
            clickAt(tabs, tabs->tabRect(tab).center());
        }
        if (QWidget* option = named(kOptions[target_])) click(option);
    }
    if (QWidget* next = named("cmdNext")) click(next);
    return true;
}

void Monkey::randomEvent(QWidget* page) {
    std::vector<QWidget*> buttons, exits, options, tabs, lists, boxes, sliders, marks, charts, keyed;
    for (QWidget* w : page->findChildren<QWidget*>()) {
        if (w->window() != page || !w->isVisibleTo(page) || !w->isEnabled()) continue;
        if (auto* b = qobject_cast<QPushButton*>(w)) {
            // The print button would send the page to the printer.
            if (b->objectName() == QLatin1String("cmdCUFPrint")) continue;
            (leavesThePage(b) ? exits : buttons).push_back(b);
        } else if (qobject_cast<QRadioButton*>(w) != nullptr || qobject_cast<QCheckBox*>(w) != nullptr) {
            options.push_back(w);
        } else if (qobject_cast<QTabBar*>(w) != nullptr) {
            tabs.push_back(w);
        } else if (qobject_cast<QComboBox*>(w) != nullptr) {
            lists.push_back(w);
        } else if (auto* e = qobject_cast<QLineEdit*>(w); e != nullptr && !e->isReadOnly()) {
            boxes.push_back(w);
        } else if (qobject_cast<QSlider*>(w) != nullptr) {
            sliders.push_back(w);
        } else if (draggable(w)) {
            marks.push_back(w);
        } else if (w->inherits("kelmar::DrawSurface")) {
            charts.push_back(w);
        }
        if (w->focusPolicy() & Qt::TabFocus) keyed.push_back(w);
    }
    enum Kind { Button, Exit, Option, Tab, List, Box, Slider, Mark, Chart, Key, Close };
    const struct { Kind kind; double weight; const std::vector<QWidget*>* from; } kinds[] = {
        {Button, 3, &buttons}, {Exit, 0.3, &exits},  {Option, 2, &options}, {Tab, 1, &tabs},
        {List, 2, &lists},     {Box, 3, &boxes},     {Slider, 2, &sliders}, {Mark, 6, &marks},
        {Chart, 1.5, &charts}, {Key, 3, &keyed},     {Close, 0.02, nullptr},
    };
    double total = 0;
    for (const auto& k : kinds)
        if (k.from == nullptr || !k.from->empty()) total += k.weight;
    double at = uniform(0.0, total);
    Kind kind = Close;
    QWidget* w = page;
    for (const auto& k : kinds) {
        if (k.from != nullptr && k.from->empty()) continue;
        if (at < k.weight) {
            kind = k.kind;
            if (k.from != nullptr) w = (*k.from)[static_cast<std::size_t>(pick(static_cast<int>(k.from->size())))];
            break;
        }
        at -= k.weight;
    }
    // Closing a technique page's window leaves the wizard without a page in
    // front; only the settings page's window is closed.
    if (kind == Close && page->objectName() != formName(8)) kind = Key, w = page;

    const QString where = page->objectName() + QStringLiteral(": ") + w->objectName() +
                          QStringLiteral(" (") + QString::fromLatin1(w->metaObject()->className()) +
                          QStringLiteral(")");
    currentEvent_ = where;
    switch (kind) {
    case Button:
    case Exit:
    case Option:
        click(w, chance(0.95) ? Qt::LeftButton : Qt::RightButton);
        break;
    case Tab: {
        auto* bar = static_cast<QTabBar*>(w);
        clickAt(bar, bar->tabRect(pick(bar->count())).center());
        break;
    }
    case List: {
        auto* list = static_cast<QComboBox*>(w);
        const int index = list->count() > 0 ? pick(list->count()) : -1;
        currentEvent_ = where + QStringLiteral(" choose %1").arg(index);
        QPointer<QComboBox> guard(list);
        list->setCurrentIndex(index);
        if (guard && index >= 0) emit list->activated(index);
        break;
    }
    case Box:
        typeInto(w);
        break;
    case Slider:
        if (chance(0.5)) {
            const int keys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp, Qt::Key_PageDown,
                                Qt::Key_Home, Qt::Key_End};
            key(w, keys[pick(6)]);
        } else {
            drag(w, Qt::LeftButton);
        }
        break;
    case Mark:
        drag(w, chance(0.9) ? Qt::LeftButton : Qt::RightButton);
        break;
    case Chart:
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
        const Qt::KeyboardModifiers mods = m < 0.7 ? Qt::NoModifier
                                           : m < 0.9 ? Qt::ShiftModifier
                                                     : Qt::ControlModifier;
        currentEvent_ = where + QStringLiteral(" key %1").arg(k.key, 0, 16);
        key(w, k.key, mods, QString::fromLatin1(k.text));
        break;
    }
    case Close:
        currentEvent_ = page->objectName() + QStringLiteral(": close the window");
        page->close();
        break;
    }
}

void Monkey::afterEvent(const QString& pageName) {
    ++total_;
    ++counts_[pageName];
    if (pageName == formName(target_)) --budget_;
    recent_.push_back(currentEvent_);
    if (recent_.size() > 12) recent_.pop_front();

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

namespace {

void mouse(QWidget* w, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, at, w->mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(w, &event);
}

}  // namespace

void Monkey::clickAt(QWidget* w, QPoint at, Qt::MouseButton button) {
    QPointer<QWidget> guard(w);
    mouse(w, QEvent::MouseButtonPress, at, button, button);
    if (guard) mouse(w, QEvent::MouseButtonRelease, at, button, Qt::NoButton);
}

void Monkey::click(QWidget* w, Qt::MouseButton button) {
    // An option button answers on its mark and caption, which start at its
    // left edge; other buttons anywhere.
    const bool option = qobject_cast<QRadioButton*>(w) != nullptr || qobject_cast<QCheckBox*>(w) != nullptr;
    clickAt(w, option ? QPoint(6, w->height() / 2) : w->rect().center(), button);
}

void Monkey::drag(QWidget* w, Qt::MouseButton button) {
    QPointer<QWidget> guard(w);
    const QRect r = w->rect();
    // Marks are grabbed in their middle, charts and sliders anywhere.
    QPointF pos = draggable(w) ? QPointF(r.center())
                               : QPointF(uniform(0, r.width()), uniform(0, r.height()));
    const QPointF start = pos;
    mouse(w, QEvent::MouseButtonPress, pos, button, button);
    const int moves = 1 + pick(4);
    for (int i = 0; i < moves && guard; ++i) {
        pos = start + QPointF(uniform(-220, 220), uniform(-20, 20));
        mouse(w, QEvent::MouseMove, pos, Qt::NoButton, button);
    }
    if (guard) mouse(w, QEvent::MouseButtonRelease, pos, button, Qt::NoButton);
}

void Monkey::key(QWidget* w, int k, Qt::KeyboardModifiers modifiers, const QString& text) {
    QPointer<QWidget> guard(w);
    QKeyEvent press(QEvent::KeyPress, k, modifiers, text), release(QEvent::KeyRelease, k, modifiers, text);
    QApplication::sendEvent(w, &press);
    if (guard) QApplication::sendEvent(w, &release);
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

void Monkey::typeInto(QWidget* w) {
    auto* box = static_cast<QLineEdit*>(w);
    QPointer<QLineEdit> guard(box);
    box->setFocus(Qt::MouseFocusReason);
    key(box, Qt::Key_End);
    // Part of the old text is kept and the new text goes after it; a long
    // text is cleared first, so that typed scores keep to an analyst's
    // sizes (beyond the single-precision range the curves overflow).
    const int length = static_cast<int>(box->text().size());
    for (int i = length > 8 ? length : pick(length + 1); i > 0 && guard; --i)
        key(box, Qt::Key_Backspace);
    const QString text = randomText();
    currentEvent_ += QStringLiteral(" typed \"%1\"").arg(text);
    for (QChar c : text) {
        if (!guard) return;
        key(box, keyFor(c), Qt::NoModifier, QString(c));
    }
    if (!guard) return;
    const double end = uniform(0.0, 1.0);
    if (end < 0.6) {
        key(box, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    } else if (end < 0.8) {
        key(box, Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    }
}

}  // namespace kelmar::monkey
