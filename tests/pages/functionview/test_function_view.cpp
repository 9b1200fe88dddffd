// The function view: the attribute's texts, the formula picture and the
// parameters for every kind of function, and its closing.
#include "../PageTestKit.h"
#include "pages/functionview/FormulaImages.h"
#include "pages/functionview/frmVFS.h"

#include <QLabel>
#include <QPlainTextEdit>

#include <cmath>
#include <set>

namespace kelmar::test {
namespace {

class FunctionViewTest : public PageTest<frmVFS> {
protected:
    // One attribute on 10 .. 50 with five points of a curve.
    void SetUp() override {
        WizardData& w = wizardData();
        w = WizardData{};
        w.AttNum = 1;
        for (VariantArray* a : {&w.AttName, &w.AttDefinition, &w.AttProperty, &w.AttPropertyCopy, &w.VFunType,
                                &w.VFTechniqueID, &w.VFunParA, &w.VFunParB, &w.ScoreMinimum, &w.ScoreMiddle,
                                &w.ScoreMaximum, &w.SmpSize})
            a->redim(0, 0);
        w.SmpX.redim(0, 0, 0, 10);
        w.SmpY.redim(0, 0, 0, 10);
        w.AttName(0) = "Noise";
        w.AttDefinition(0) = "  Sound level at the desk, in dB.\t ";
        w.AttProperty(0) = "1";
        w.AttPropertyCopy(0) = std::int16_t(0);
        w.ScoreMinimum(0) = 10.0;
        w.ScoreMiddle(0) = 27.5f;
        w.ScoreMaximum(0) = 50.0;
        w.SmpSize(0) = std::int16_t(5);
        const double xs[5] = {10, 20, 30, 40, 50}, ys[5] = {0, 0.45, 0.7, 0.9, 1};
        for (int k = 0; k < 5; ++k) {
            w.SmpX(0, k) = xs[k];
            w.SmpY(0, k) = ys[k];
        }
        // Texts an earlier exponential left behind.
        w.VFunParA(0) = "30.475913";
        w.VFunParB(0) = "0.304759";
    }

    void open() { openPage(); }
    QString text(const char* label) const { return child<QLabel>(QString::fromLatin1(label))->text(); }
    QString parameters() const {
        return text("lbla") + "|" + text("lblb") + "|" + text("lblc") + "|" + text("lbld");
    }
};

// Only a property of 1 is a cost; the definition is shown trimmed. OK and
// closing the window both raise UnloadKelVFS.
TEST_F(FunctionViewTest, AboutTheAttributeAndClosing) {
    const struct { Variant property; const char* shown; } rows[] = {
        {"1", "Cost-oriented."}, {std::int16_t(1), "Cost-oriented."}, {"0", "Benefit-oriented."},
        {"cost", "Benefit-oriented."}, {Variant(), "Benefit-oriented."}};
    for (const auto& row : rows) {
        wizardData().AttProperty(0) = row.property;
        open();
        EXPECT_EQ(text("labCUFProperty"), QString::fromLatin1(row.shown));
    }
    EXPECT_EQ(child<QPlainTextEdit>("txtCUFDefinition")->toPlainText(), "Sound level at the desk, in dB.");
    page->show();
    click("cmdOK");
    page->show();
    page->close();
    EXPECT_EQ(sink.events, (std::vector<std::string>{"UnloadKelVFS", "UnloadKelVFS"}));
}

TEST_F(FunctionViewTest, TheFormulaAndItsParametersForEachKindOfFunction) {
    WizardData& w = wizardData();
    // The cubic of the interval that holds point 2 (the point moved last).
    VariantArray x(0, 4), y(0, 4), out(0, 4);
    for (int k = 0; k < 5; ++k) x(k) = w.SmpX(0, k), y(k) = w.SmpY(0, k);
    std::int16_t n = 5, evaluate = -1;
    double at = 30.0;
    AkimaInterpolate(x, y, n, evaluate, at, out);
    const QString cubic = out(0).toString() + "|" + out(1).toString() + "|" + out(2).toString() + "|" + out(3).toString();

    const struct { int type, technique, costCopy; double lastValue; int picture; const char* kind; QString shown;
    } rows[] = {
        {0, 1, 0, 1, 1, "Linear", "0.025|-0.25||"},
        {0, 0, 1, 1, 2, "Linear", "-0.025|1.25||"},
        {1, 0, 0, 1, 3, "Non-Linear", {}},  // the exponential's parameters: below
        {1, 0, 1, 1, 4, "Non-Linear", {}},
        {1, 1, 0, 1, 5, "Non-Linear", cubic},
        {1, 2, 1, 1, 5, "Non-Linear", cubic},
        {1, 7, 0, 1, 5, "Non-Linear", cubic},
        {1, 3, 0, 0, 6, "Non-Linear", "1|6||"},
        {1, 3, 1, 1, 7, "Non-Linear", "1|6||"},
    };
    w.SelPoint = 2;
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.type << " " << row.technique << " " << row.costCopy);
        w.VFunType(0) = std::int16_t(row.type);
        w.VFTechniqueID(0) = std::int16_t(row.technique);
        w.AttPropertyCopy(0) = std::int16_t(row.costCopy);
        w.SmpY(0, 10) = row.lastValue;
        open();
        EXPECT_EQ(text("lblFType"), QString::fromLatin1(row.kind));
        EXPECT_EQ(page->formulaPicture(), row.picture);
        EXPECT_EQ(child<QLabel>("picFormula")->pixmap().cacheKey(),
                  page->formulaImages().picture(row.picture).cacheKey());
        if (!row.shown.isNull()) {
            EXPECT_EQ(parameters(), row.shown);
        }
        EXPECT_EQ(text("lblMin") + "|" + text("lblMiddle") + "|" + text("lblMax"), "10|27.5|50");
    }
}

TEST_F(FunctionViewTest, LineAndExponentialParametersOnTheCurrentRange) {
    // A middle score a third of the way from the worst end has the rate
    // k = 3 ln(golden ratio): a = width / k, b = 1 / k.
    const double k = 3.0 * std::log((1.0 + std::sqrt(5.0)) / 2.0);
    const QString exponential = Variant(60.0 / k).toString() + "|" + Variant(1.0 / k).toString() + "||";
    const struct { int type, costCopy; double low, middle, high; QString shown; } rows[] = {
        {0, 0, 0, 5e6, 1e7, "1E-07|0||"},
        {0, 1, -1e7, 0, 1e7, "-5E-08|0.5||"},
        {1, 0, 10, 30, 70, exponential},  // the range widened since the judgment
        {1, 1, 10, 50, 70, exponential},
        {0, 0, 10, 10, 10, "|||"},  // nothing to compute
        {1, 0, 10, 10, 50, "|||"},
    };
    WizardData& w = wizardData();
    w.VFTechniqueID(0) = std::int16_t(kMidPoint);
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.type << " " << row.low << " " << row.high);
        w.VFunType(0) = std::int16_t(row.type);
        w.AttPropertyCopy(0) = std::int16_t(row.costCopy);
        w.ScoreMinimum(0) = row.low;
        w.ScoreMiddle(0) = row.middle;
        w.ScoreMaximum(0) = row.high;
        open();
        EXPECT_EQ(parameters(), row.shown);
    }
}

// The seven formulas are drawn (ink on white) and each is its own.
TEST_F(FunctionViewTest, SevenDistinctFormulaPictures) {
    FormulaImageList list;
    std::set<QByteArray> images;
    for (int i = 1; i <= list.count(); ++i) {
        const QImage image = list.picture(i).toImage();
        int ink = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) ink += qGray(image.pixel(x, y)) < 128;
        EXPECT_GT(ink, image.width() * image.height() / 100) << i;
        images.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes()));
    }
    EXPECT_EQ(images.size(), 7U);
}

}  // namespace
}  // namespace kelmar::test
