// The decorations of the Direct Rating chart.
//
// Each band is a slice of one value ramp: over the rating area a pale wedge
// rises from the worst end of the scale (value 0) to the best end (value 1),
// so its height at a position is the value a mark dropped there gets. On a
// cost attribute the wedge rises to the left. The bands keep their places on
// the scale; each is captioned with the values it covers, in the page's
// value range, so that the reading does not depend on the orientation.
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"
#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <QPointF>
#include <QString>
#include <QVector>

#include <algorithm>

namespace kelmar {

namespace {

// The rating area of the chart runs from 0 (top) to 78 (bottom).
constexpr double kAreaTop = 0.6;
constexpr double kAreaBottom = 77.4;
constexpr double kRampTop = 15.0;    // the ramp's height at value 1, below the captions
constexpr double kCaptionTop = 3.0;

struct BandLook {
    OleColor fill;
    OleColor edge;     // the band's boundary line
    OleColor caption;  // the caption's text
};

// Band 1 is the strip at the end of the scale that an interior mark cannot
// reach (the drag stops at 2); bands 2 and 3 are two shades of one hue.
constexpr BandLook kLooks[3] = {
    {ole::rgb(0xD4, 0xD4, 0xD4), ole::rgb(0x9A, 0x9A, 0x9A), ole::rgb(0x50, 0x50, 0x50)},
    {ole::rgb(0xDD, 0xE9, 0xF7), ole::rgb(0x86, 0xA6, 0xD0), ole::rgb(0x2A, 0x4C, 0x7A)},
    {ole::rgb(0xC2, 0xD7, 0xF0), ole::rgb(0x86, 0xA6, 0xD0), ole::rgb(0x2A, 0x4C, 0x7A)},
};

// The value (0..1) that a mark at position x of the rating scale stands for.
double valueAt(double x, bool falling) {
    const double v = x / 100.0;
    return falling ? 1.0 - v : v;
}

double rampY(double x, bool falling) {
    const double v = std::clamp(valueAt(x, falling), 0.0, 1.0);
    return kAreaBottom - (kAreaBottom - kRampTop) * v;
}

}  // namespace

void DrawRatingFrame(DrawSurface& pic) {
    pic.cls();
    pic.setScale(-8.0, -3.0, 108.0, 112.0);
    pic.filledBox(-8.0, -3.0, 108.0, 102.0, ole::ButtonFace);
    pic.filledBox(-1.0, 0.0, 101.0, 78.0, ole::White, ole::Black);
    pic.filledBox(-8.0, 80.0, 108.0, 102.0, ole::ButtonFace);
}

void DrawRatingBand(DrawSurface& pic, std::int16_t band, double lo, double hi, bool falling) {
    if (band < 1 || band > 3) return;
    const BandLook& look = kLooks[band - 1];
    const double left = std::min(lo, hi);
    const double right = std::max(lo, hi);

    const OleColor savedColor = pic.foreColor();
    pic.polygon({QPointF(left, kAreaBottom), QPointF(left, rampY(left, falling)),
                 QPointF(right, rampY(right, falling)), QPointF(right, kAreaBottom)},
                look.fill);
    if (left > 0.0) pic.line(left, kAreaTop, left, kAreaBottom, look.edge);

    // The values the band covers, lowest first, centred in the band when
    // the caption fits there.
    const double v1 = valueAt(left, falling);
    const double v2 = valueAt(right, falling);
    const std::int16_t maxVal = wizardData().MaxVal;
    const QString caption = QStringLiteral("values %1 \u2013 %2")
                                .arg(fmt::formatValue(std::min(v1, v2), maxVal),
                                     fmt::formatValue(std::max(v1, v2), maxVal));
    const double width = pic.textWidth(caption);
    if (width + 1.0 < right - left) {
        pic.setForeColor(look.caption);
        pic.setCurrentX((left + right - width) / 2.0);
        pic.setCurrentY(kCaptionTop);
        pic.print(caption);
    }
    pic.setForeColor(savedColor);
}

}  // namespace kelmar
