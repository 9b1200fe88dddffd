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
#pragma once

#include "MonkeyHost.h"

#include <QPointer>
#include <QString>

#include <deque>
#include <map>
#include <optional>
#include <random>
#include <set>

class QEventLoop;
class QLineEdit;
class QWidget;

namespace kelmar::monkey {

class Monkey {
public:
    Monkey(std::uint64_t seed, int eventsPerPage);

    // Runs until every page has had its events or a rule broke; returns the
    // failure (empty when none).
    QString run();

    // Events sent to each page, by the page's form name.
    const std::map<QString, int>& eventsByPage() const noexcept { return counts_; }
    int totalEvents() const noexcept { return total_; }
    int sessions() const noexcept { return sessions_; }
    int messageBoxes() const noexcept { return messageBoxes_; }

    // The form names of the wizard's pages, by page id (8 is the settings page).
    static QString formName(int pageId);

private:
    // An event whose effect on the functions is still to be checked.
    struct Pending {
        QString event;     // what was done, on which page
        Record before;     // the functions before it
        Record expected;   // what it must leave: before, or the host's record
        bool judgment = false;
        int alsoShown = -1;  // an attribute shown on the way
    };

    void step();
    void finish(const QString& failure);
    QWidget* frontPage() const;
    bool answerMessageBox();
    void reopen();
    bool steer(QWidget* page);
    void randomEvent(QWidget* page);
    void afterEvent(const QString& event);
    void chooseTarget();
    void begin(const QString& event, bool judgment = false);
    void judged() { if (pending_) pending_->judgment = true; }
    void settle();

    // Input.
    void click(QWidget* w, Qt::MouseButton button = Qt::LeftButton);
    void drag(QWidget* w, Qt::MouseButton button);
    void typeInto(QLineEdit* box, const QString& text);
    QString randomText();

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

}  // namespace kelmar::monkey
