#include "pages/settings/TechniqueImages.h"

#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <QPointF>
#include <QVector>

#include <cmath>

namespace kelmar {

namespace {

using ole::rgb;

constexpr OleColor kInk = rgb(32, 32, 32);
constexpr OleColor kMuted = rgb(110, 110, 110);
constexpr OleColor kLight = rgb(225, 225, 225);
constexpr OleColor kAccent = rgb(40, 96, 168);
constexpr OleColor kAccentLight = rgb(190, 214, 240);
constexpr OleColor kMark = rgb(200, 80, 32);
constexpr OleColor kPaper = rgb(255, 255, 255);
constexpr double kPi = 3.14159265358979323846;

void text(DrawSurface& pic, double x, double y, const QString& s, OleColor c = kInk) {
    pic.setForeColor(c);
    pic.setCurrentX(x);
    pic.setCurrentY(y);
    pic.print(s);
}

void centred(DrawSurface& pic, double x, double y, const QString& s, OleColor c = kInk) {
    text(pic, x - pic.textWidth(s) / 2.0, y, s, c);
}

void rightAligned(DrawSurface& pic, double x, double y, const QString& s, OleColor c = kInk) {
    text(pic, x - pic.textWidth(s), y, s, c);
}

// A mark that points down at x, its tip at y (the marks the pages drag).
void pointer(DrawSurface& pic, double x, double y, OleColor c = kMark) {
    pic.polygon({QPointF(x - 2.2, y - 6), QPointF(x + 2.2, y - 6), QPointF(x, y)}, c);
}

void dot(DrawSurface& pic, double x, double y, double r, OleColor c) {
    QVector<QPointF> pts;
    for (int i = 0; i < 16; ++i) {
        const double a = i * kPi / 8.0;
        pts.append(QPointF(x + r * std::cos(a), y + r * std::sin(a) * 1.25));
    }
    pic.polygon(pts, c);
}

// A score axis from x1 to x2 at height y with "worst" and "best" at its ends.
void scoreAxis(DrawSurface& pic, double x1, double x2, double y) {
    pic.setDrawWidth(2);
    pic.line(x1, y, x2, y, kInk);
    pic.setDrawWidth(1);
    pic.line(x1, y - 2, x1, y + 2, kInk);
    pic.line(x2, y - 2, x2, y + 2, kInk);
    text(pic, x1 - 2, y + 3, QStringLiteral("worst"), kMuted);
    rightAligned(pic, x2 + 2, y + 3, QStringLiteral("best"), kMuted);
}

void midpoint(DrawSurface& pic) {
    scoreAxis(pic, 10, 90, 62);
    centred(pic, 10, 48, QStringLiteral("v = 0"), kMuted);
    centred(pic, 90, 48, QStringLiteral("v = 1"), kMuted);
    // The slider with its thumb at the middle preferential score.
    pic.filledBox(10, 36, 90, 39, kLight, kMuted);
    pic.filledBox(40, 31, 46, 44, kAccent, kInk);
    pic.line(43, 44, 43, 62, kMark);
    pointer(pic, 43, 61);
    centred(pic, 43, 72, QStringLiteral("v = 0.5 ?"), kMark);
    text(pic, 6, 84, QStringLiteral("Slide to the score whose value"), kMuted);
    text(pic, 6, 90, QStringLiteral("is halfway between the ends."), kMuted);
}

void directRating(DrawSurface& pic) {
    const double left = 10, right = 90, y = 62;
    pic.filledBox(left, y - 3, right, y + 3, kLight, kMuted);
    for (int i = 0; i <= 4; ++i) {
        const double x = left + i * (right - left) / 4.0;
        pic.line(x, y + 3, x, y + 6, kInk);
        centred(pic, x, y + 7, QString::number(i * 25));
    }
    const double rated[] = {0, 35, 60, 80, 100};
    const char* labels[] = {"s1", "s2", "s3", "s4", "s5"};
    for (int i = 0; i < 5; ++i) {
        const double x = left + rated[i] * (right - left) / 100.0;
        pointer(pic, x, y - 3);
        centred(pic, x, y - 16, QString::fromLatin1(labels[i]), kMark);
    }
    text(pic, 6, 84, QStringLiteral("Rate every score from 0 to 100:"), kMuted);
    text(pic, 6, 90, QStringLiteral("worst 0, best 100."), kMuted);
}

void curveDrawing(DrawSurface& pic) {
    const double x0 = 14, x1 = 90, yBottom = 80, yTop = 24;
    pic.line(x0, yBottom, x1, yBottom, kInk);
    pic.line(x0, yBottom, x0, yTop - 4, kInk);
    text(pic, 3, yTop - 6, QStringLiteral("v"), kMuted);
    rightAligned(pic, x1, yBottom + 2, QStringLiteral("score"), kMuted);
    auto curve = [&](double t) { return QPointF(x0 + t * (x1 - x0), yBottom - std::sqrt(t) * (yBottom - yTop)); };
    pic.setDrawWidth(2);
    QPointF prev = curve(0);
    for (int i = 1; i <= 24; ++i) {
        const QPointF next = curve(i / 24.0);
        pic.line(prev.x(), prev.y(), next.x(), next.y(), kAccent);
        prev = next;
    }
    pic.setDrawWidth(1);
    for (double t : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        const QPointF p = curve(t);
        pic.filledBox(p.x() - 1.5, p.y() - 2.2, p.x() + 1.5, p.y() + 2.2, kPaper, kAccent);
    }
    // One point being dragged upwards.
    const QPointF p = curve(0.25);
    pic.filledBox(p.x() - 1.5, p.y() - 2.2, p.x() + 1.5, p.y() + 2.2, kMark, kMark);
    pic.line(p.x() + 4, p.y() + 4, p.x() + 4, p.y() - 8, kMark);
    pic.polygon({QPointF(p.x() + 4, p.y() - 11), QPointF(p.x() + 2, p.y() - 7),
                 QPointF(p.x() + 6, p.y() - 7)},
                kMark);
    text(pic, 6, 90, QStringLiteral("Drag the points into shape."), kMuted);
}

void categoryIdentification(DrawSurface& pic) {
    const char* names[] = {"excellent", "good", "fair", "poor", "very poor"};
    const char* scores[] = {"95", "80", "60", "35", "0"};
    const double left = 30, right = 62;
    // The ladder of levels, best on top, each with the score it fits.
    pic.line(left, 22, left, 82, kMuted);
    pic.line(right, 22, right, 82, kMuted);
    for (int i = 0; i < 5; ++i) {
        const double y = 22 + i * 13;
        pic.filledBox(left, y, right, y + 8, i % 2 == 0 ? kAccentLight : kLight, kMuted);
        centred(pic, (left + right) / 2.0, y + 0.8, QString::fromLatin1(names[i]));
        text(pic, right + 5, y + 0.8, QString::fromLatin1(scores[i]), kMark);
    }
    centred(pic, (left + right) / 2.0, 14, QStringLiteral("level"), kMuted);
    text(pic, right + 5, 14, QStringLiteral("score"), kMuted);
    text(pic, 6, 90, QStringLiteral("Give the score of each level."), kMuted);
}

void differenceSequence(DrawSurface& pic) {
    const double xs[] = {10, 22, 37, 57, 90};
    const double y = 62;
    scoreAxis(pic, 10, 90, y);
    for (int i = 0; i < 5; ++i) {
        dot(pic, xs[i], y, 1.4, kMark);
        centred(pic, xs[i], y - 9, QStringLiteral("x%1").arg(i), kMark);
    }
    for (int i = 0; i < 4; ++i) {
        const double a = xs[i] + 1.2, b = xs[i + 1] - 1.2, top = 40;
        pic.line(a, top + 6, a, top, kAccent);
        pic.line(a, top, b, top, kAccent);
        pic.line(b, top, b, top + 6, kAccent);
        centred(pic, (a + b) / 2.0, top - 7, QStringLiteral("+d"), kAccent);
    }
    text(pic, 6, 84, QStringLiteral("Every step up the axis adds"), kMuted);
    text(pic, 6, 90, QStringLiteral("the same value d."), kMuted);
}

void bisection(DrawSurface& pic) {
    const double left = 10, right = 90;
    const double rows[] = {30, 46, 62};
    // Row 1: the whole range split at its value midpoint; rows 2 and 3 split
    // the halves again.
    pic.setDrawWidth(2);
    for (double y : rows) pic.line(left, y, right, y, kInk);
    pic.setDrawWidth(1);
    const double mid = 44;
    pic.line(left, rows[0] - 3, left, rows[0] + 3, kInk);
    pic.line(right, rows[0] - 3, right, rows[0] + 3, kInk);
    pointer(pic, mid, rows[0]);
    centred(pic, mid, rows[0] - 13, QStringLiteral("0.5"), kMark);
    const double quarter = 24, threeQuarter = 64;
    for (double y : {rows[1], rows[2]}) {
        pic.line(left, y - 3, left, y + 3, kMuted);
        pic.line(mid, y - 3, mid, y + 3, kMuted);
        pic.line(right, y - 3, right, y + 3, kMuted);
    }
    pointer(pic, quarter, rows[1]);
    pointer(pic, threeQuarter, rows[1]);
    centred(pic, quarter, rows[1] - 13, QStringLiteral("0.25"), kMark);
    centred(pic, threeQuarter, rows[1] - 13, QStringLiteral("0.75"), kMark);
    for (double x : {17.0, 34.0, 54.0, 77.0}) pointer(pic, x, rows[2], kAccent);
    text(pic, left - 2, rows[2] + 3, QStringLiteral("worst"), kMuted);
    rightAligned(pic, right + 2, rows[2] + 3, QStringLiteral("best"), kMuted);
    text(pic, 6, 84, QStringLiteral("Halve each interval in value,"), kMuted);
    text(pic, 6, 90, QStringLiteral("again and again."), kMuted);
}

// A lottery node at (x, y) with its two branches and outcomes.
void lottery(DrawSurface& pic, double x, double y, const QString& upper, const QString& lower,
             const QString& pUpper, const QString& pLower, OleColor probColour) {
    const double endX = x + 22;
    pic.line(x, y, endX, y - 14, kInk);
    pic.line(x, y, endX, y + 14, kInk);
    dot(pic, x, y, 2.2, kAccent);
    text(pic, endX + 1.5, y - 17, upper);
    text(pic, endX + 1.5, y + 11, lower);
    text(pic, x + 4, y - 17, pUpper, probColour);
    text(pic, x + 4, y + 10, pLower, probColour);
}

void variableProbability(DrawSurface& pic) {
    text(pic, 6, 43, QStringLiteral("sure"), kMuted);
    text(pic, 6, 49, QStringLiteral("score x"), kInk);
    centred(pic, 36, 46, QStringLiteral("~"), kInk);
    lottery(pic, 46, 52, QStringLiteral("best"), QStringLiteral("worst"), QStringLiteral("p ?"),
            QStringLiteral("1 - p"), kMark);
    text(pic, 6, 84, QStringLiteral("Find the chance p that makes"), kMuted);
    text(pic, 6, 90, QStringLiteral("the lottery worth the sure x."), kMuted);
}

void variableCertainty(DrawSurface& pic) {
    text(pic, 6, 43, QStringLiteral("sure"), kMuted);
    text(pic, 6, 49, QStringLiteral("score ?"), kMark);
    centred(pic, 36, 46, QStringLiteral("~"), kInk);
    lottery(pic, 46, 52, QStringLiteral("best"), QStringLiteral("worst"), QStringLiteral("0.5"),
            QStringLiteral("0.5"), kAccent);
    text(pic, 6, 84, QStringLiteral("Find the sure score worth as"), kMuted);
    text(pic, 6, 90, QStringLiteral("much as the lottery."), kMuted);
}

}  // namespace

TechniqueImageList::TechniqueImageList(QObject* parent) : QObject(parent) {}

QString TechniqueImageList::question(int index) {
    switch (index) {
    case 1: return QStringLiteral("Which score is halfway in value?");
    case 2: return QStringLiteral("How do you rate each score?");
    case 3: return QStringLiteral("What shape has the value curve?");
    case 4: return QStringLiteral("Which score fits each category?");
    case 5: return QStringLiteral("Which steps are worth the same?");
    case 6: return QStringLiteral("Which score halves the value?");
    case 7: return QStringLiteral("Which chance makes them equal?");
    case 8: return QStringLiteral("Which sure score equals the lottery?");
    default: return {};
    }
}

void TechniqueImageList::draw(int index, DrawSurface& pic) const {
    pic.cls();
    pic.setBackColor(kPaper);
    pic.setScale(0, 0, 100, 100);
    pic.setDrawWidth(1);
    // The picture lies on a sunken panel, like the charts of the pages.
    DrawPanel(pic, 0, 0, 100, 100, 2);
    pic.filledBox(1.2, 1.2, 98.8, 98.8, kPaper);
    pic.setFontPointSize(8.5);
    pic.setFontBold(true);
    centred(pic, 50, 4, question(index));
    pic.setFontBold(false);
    pic.setFontPointSize(8);
    switch (index) {
    case 1: midpoint(pic); break;
    case 2: directRating(pic); break;
    case 3: curveDrawing(pic); break;
    case 4: categoryIdentification(pic); break;
    case 5: differenceSequence(pic); break;
    case 6: bisection(pic); break;
    case 7: variableProbability(pic); break;
    case 8: variableCertainty(pic); break;
    default: break;
    }
}

}  // namespace kelmar
