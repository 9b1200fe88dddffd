#include "pages/techniques/frmKelDirectRating.h"

#include "charts/DrawSurface.h"
#include "charts/mdVFGraphs.h"
#include "component/PageRegistry.h"
#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <QLabel>

#include <cmath>
#include <vector>

namespace kelmar {

KELMAR_REGISTER_PAGE(1, frmKelDirectRating)

namespace {

// Heights on the rating chart (the scale grows downwards).
constexpr double kMarkTop = 84.0;
constexpr double kLabelTop = 102.0;
constexpr OleColor kGridColor = 0xE6E6E6;
constexpr OleColor kHintColor = 0x8C8C8C;

bool fallingPreference(std::int16_t att) {
    return wizardData().AttPropertyCopy(att).toDouble() != 0.0;
}

// Position of a value (fraction 0..1) on the rating scale.
double positionOf(double value, bool falling) {
    return falling ? 100.0 - value * 100.0 : value * 100.0;
}

// Prints text centred on x with its top at y.
void printCentred(DrawSurface& pic, double x, double y, const QString& text) {
    pic.setCurrentX(x - pic.textWidth(text) / 2.0);
    pic.setCurrentY(y);
    pic.print(text);
}

}  // namespace

frmKelDirectRating::frmKelDirectRating(QWidget* parent)
    : TechniquePage(kDirectRating, QStringLiteral("frmKelDirectRating"),
                    QStringLiteral("Kelmar: Direct Rating"), TechniqueFeatures{}, parent) {
    for (PointMark* mark : picScorePoint)
        mark->setWhatsThis(tr("Drag the mark, or use the arrow keys, to rate this score"));
}

double frmKelDirectRating::snapPosition(double position) const {
    // Whole units of the rating scale: values move in steps of 0.01.
    return std::round(position);
}

void frmKelDirectRating::drawRatingChart() {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    std::int16_t n = w.SmpSize(att).toInteger();
    DrawRatingChart(att, w.ScoreMinimum(att), w.ScoreMaximum(att), n, w.SmpX, w.SmpY);
}

void frmKelDirectRating::DrawRatingChart(std::int16_t& att, Variant& scoreMinimum,
                                         Variant& scoreMaximum, std::int16_t& sampleSize,
                                         VariantArray& smpX, VariantArray& smpY) {
    WizardData& w = wizardData();
    DrawSurface& pic = *picRatingChart;
    const bool falling = fallingPreference(att);

    // Background: the button-face ground, the white rating area and the
    // band that carries the score bar.
    DrawRatingFrame(pic);

    // Equally spaced tick positions, drawn last.
    const std::int16_t intervals = checkedSub(sampleSize, 1);
    if (intervals == 0) throw RuntimeError(RuntimeError::DivisionByZero);
    std::vector<float> ticks(sampleSize > 0 ? static_cast<std::size_t>(sampleSize) : 0U);
    for (std::size_t i = 0; i < ticks.size(); ++i)
        ticks[i] = static_cast<float>(i) * 100.0f / static_cast<float>(intervals);

    // The score bar: the sample scores are laid out evenly from the score
    // minimum at 0 to the maximum at 100; the bar reaches a little beyond.
    const double leftEnd = -1.5;
    const double rightEnd = 101.5;
    pic.setToolTip(tr("Scores from %1 to %2")
                       .arg(fmt::formatNumber(scoreMinimum.toDouble(), QStringLiteral("0.00")),
                            fmt::formatNumber(scoreMaximum.toDouble(), QStringLiteral("0.00"))));
    pic.filledBox(leftEnd, 83.0, rightEnd, 98.0, ole::ButtonFace);
    pic.line(leftEnd, 83.0, rightEnd, 83.0, ole::ButtonShadow);
    pic.line(leftEnd, 83.0, leftEnd, 98.0, ole::ButtonShadow);
    pic.line(leftEnd, 98.0, rightEnd, 98.0, ole::White);
    pic.line(rightEnd, 83.0, rightEnd, 98.0, ole::White);

    // The marks, at their values.
    for (int i = 0; i < sampleSize; ++i) {
        if (i >= kMarkCount) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
        PointMark* mark = picScorePoint[static_cast<std::size_t>(i)];
        mark->setToolTip(fmt::formatNumber(smpX(att, i).toDouble(), QStringLiteral("0.00")));
        placeMarkCentre(i, positionOf(smpY(att, i).toDouble(), falling), kMarkTop);
    }
    hideMarksFrom(sampleSize < 0 ? 0 : sampleSize);

    const bool bands = w.SelMCDAMethod > 1 && w.SelMCDAMethod != 5;
    if (bands) {
        DrawRatingBand(pic, 1, 0.0, 2.0, falling);
        DrawRatingBand(pic, 2, 2.0, 74.0, falling);
        DrawRatingBand(pic, 3, 74.0, 100.0, falling);
    }

    // Light guides under the five labelled places of the scale.
    for (int i = 0; i <= 4; ++i)
        pic.line(i * 25.0, 1.0, i * 25.0, 77.0, kGridColor);

    // Without bands the rating area is empty: it tells a newcomer what to do.
    if (!bands) {
        pic.setForeColor(kHintColor);
        const QString hints[2] = {
            tr("Drag each mark to the value of its score; point at a mark to see the score."),
            tr("A selected mark also moves with the arrow keys (Shift: ten steps).")};
        printCentred(pic, 50.0, 26.0, hints[0]);
        printCentred(pic, 50.0, 40.0, hints[1]);
    }

    // Tick labels: label i belongs to the value i/4, wherever that value
    // lies on the scale.
    pic.setForeColor(ole::Black);
    for (int i = 0; i <= 4; ++i)
        printCentred(pic, positionOf(i / 4.0, falling), kLabelTop, fmt::formatValue(i / 4.0, w.MaxVal));

    for (const float x : ticks) pic.line(x, 88.0, x, 94.0, ole::Black);
}

void frmKelDirectRating::MovePoint(int index, double x) {
    WizardData& w = wizardData();
    std::int16_t att = w.SelAtt;
    const bool falling = fallingPreference(att);
    if (const int crossed = crossedNeighbour(index, x); crossed >= 0) {
        // Dragged across a neighbour: the point takes the neighbour's value
        // a step towards its own side, and its mark goes where that value
        // lies on the scale, so that mark and value never disagree.
        std::int16_t point = static_cast<std::int16_t>(index);
        std::int16_t neighbour = static_cast<std::int16_t>(crossed);
        const double value = SetValueBesideNeighbour(att, point, neighbour);
        placeMarkCentre(index, positionOf(value, falling), kMarkTop);
        return;
    }
    if (x < 2.0) x = 2.0;
    if (x > 100.0) x = 100.0;
    placeMarkCentre(index, x, kMarkTop);
    w.SmpY(att, index) = Variant(falling ? (100.0 - x) / 100.0 : x / 100.0);
}

QString frmKelDirectRating::moveToExact(int index, double typed) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    const double value = typed / valueScale();
    const double x = positionOf(value, fallingPreference(att));
    // Where the drag would take the position as it is, the point takes the
    // typed value itself; elsewhere the drag's rule decides.
    if (crossedNeighbour(index, x) >= 0 || x < 2.0 || x > 100.0) {
        MovePoint(index, x);
        return {};
    }
    placeMarkCentre(index, x, kMarkTop);
    w.SmpY(att, index) = Variant(value);
    return {};
}

void frmKelDirectRating::ShowPointLabels(int index) {
    WizardData& w = wizardData();
    const std::int16_t att = w.SelAtt;
    lblCurScore->setText(fmt::formatNumber(w.SmpX(att, index).toDouble(), QStringLiteral("0.00")));
    lblCurValue->setText(fmt::formatValue(w.SmpY(att, index).toDouble(), w.MaxVal));
}

}  // namespace kelmar
