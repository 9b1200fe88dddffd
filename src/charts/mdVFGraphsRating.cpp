// The decorations of the Direct Rating chart.
#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"

#include <QString>

#include <algorithm>

namespace kelmar {

namespace {

// The rating area of the chart runs from 0 (top) to 78 (bottom).
constexpr double kAreaTop = 0.6;
constexpr double kAreaBottom = 77.4;
constexpr double kCaptionTop = 3.0;

struct BandLook {
    OleColor fill;     // a pale tint, so the grid and the marks stay readable
    OleColor edge;     // the band's boundary line
    OleColor caption;  // the anchor's text
    const char* anchor;
};

// Looks by the part of the value range: low, middle, high.
constexpr BandLook kLooks[3] = {
    {0xE8E8FB, 0x9C9CD8, 0x30309A, "Poor"},
    {0xE3F6FB, 0x7CC4D8, 0x2C6A80, "Acceptable"},
    {0xE6F6E6, 0x88C888, 0x2A6A2A, "Good"},
};

}  // namespace

void DrawRatingBand(DrawSurface& pic, std::int16_t band, double lo, double hi, bool falling) {
    if (band < 1 || band > 3) return;
    // Band 1 lies at the left end of the scale; on a falling scale the left
    // end holds the high values.
    const int part = falling ? 3 - band : band - 1;
    const BandLook& look = kLooks[part];

    const OleColor savedColor = pic.foreColor();
    const double left = std::min(lo, hi);
    const double right = std::max(lo, hi);
    pic.filledBox(left, kAreaTop, right, kAreaBottom, look.fill);
    if (left > 0.0) pic.line(left, kAreaTop, left, kAreaBottom, look.edge);

    // The anchor, centred in the band when it fits there.
    const QString caption = QString::fromLatin1(look.anchor);
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
