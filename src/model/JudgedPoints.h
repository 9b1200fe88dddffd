// Which points of a function the analyst has judged, and the rule that the
// guided pages (bisection, the difference standard sequence and the two
// lottery pages) share for a judgment: a point moves freely between the
// nearest judged points around it, and the points not judged yet make way,
// laid out again on the straight line between the judged ones.
#pragma once

#include <kelmar/mdKelMain.h>

#include <QString>

#include <vector>

namespace kelmar {

// One flag per point of att's SmpSize points: true where the point holds a
// judgment. The ends always do. What the analyst judged is remembered with
// the points as the last judgment left them and holds while the points are
// still those (so across showings, attribute changes and Back then Next).
// Points that changed in any other way hold no memory: a straight line
// (linear type, after Linear or a new size) is judged at its ends only, a
// curve that the analyst made, here or with another technique, throughout.
std::vector<bool> JudgedPoints(std::int16_t att);
// Remembers `judged` for att's points as they now stand.
void RecordJudgedPoints(std::int16_t att, const std::vector<bool>& judged);
// Remembers point index judged as well, where `judged` held the judged
// points before the judgment (read afresh when it is not for att's size).
void RememberJudgedPoint(std::int16_t att, std::vector<bool> judged, int index);

// The first point of `order` that `judged` does not mark; the first of the
// order when every one is marked, `none` for an empty order.
template <typename Point>
Point FirstUnjudged(const std::vector<Point>& order, const std::vector<bool>& judged, Point none) {
    for (const Point k : order)
        if (static_cast<std::size_t>(k) < judged.size() && !judged[static_cast<std::size_t>(k)]) return k;
    return order.empty() ? none : order.front();
}

// The nearest judged points below and above point index (index itself not
// counted); the ends when none lies between.
struct JudgedRoom {
    int lower = 0;
    int upper = 0;
};
JudgedRoom RoomBetweenJudged(const std::vector<bool>& judged, int index);

// Puts every entry of `at` that is not judged, point `index` counting as
// judged, on the straight line between the judged entries around it, read
// along `along` (the other coordinate of the points). Judged entries stay.
void LayOutUnjudged(std::vector<double>& at, const std::vector<double>& along, std::vector<bool> judged,
                    int index);

// Point index of att takes `score` and the scores of the points not judged
// around it are laid out again between the judged ones (their values are
// the equal steps, so at equal distances).
void PlaceJudgedScore(std::int16_t att, int index, double score, const std::vector<bool>& judged);
// The values of the points not judged around point index are laid out
// again on the line between the judged ones and `value` at index, read
// along the scores. Only those values are written: the caller stores the
// judged value itself (StoreJudgedValue).
void PlaceJudgedValue(std::int16_t att, int index, double value, const std::vector<bool>& judged);

// The judged point that a score (or a value, when byValue) for point index
// would reach or pass, or -1 when it lies strictly between them (a value
// may equal a judged neighbour's: values only keep their order).
int BlockingJudgedPoint(std::int16_t att, int index, double wanted, const std::vector<bool>& judged,
                        bool byValue = false);

// What became of one judgment.
struct JudgmentResult {
    bool accepted = false;
    QString reason;  // why a refused judgment was refused
};

// Whether point index of att may take `wanted`, a score or (byValue) a
// value: refused for an end point and for an answer that would reach or
// pass a judged point, with the reason; accepted otherwise.
JudgmentResult CheckJudgment(std::int16_t att, int index, double wanted, const std::vector<bool>& judged,
                             bool byValue = false);

// Why a point cannot go to `wanted`: it would reach or pass the judged point
// at `limit`, an end of the range when atEnd. The caller formats both.
QString RefusalText(bool atEnd, const QString& wanted, const QString& limit);
// The same for a score of att that would reach or pass point blocker
// ("0.00"), or a value ("0.000").
QString ScoreRefusal(std::int16_t att, int blocker, double wanted, bool byValue = false);

}  // namespace kelmar
