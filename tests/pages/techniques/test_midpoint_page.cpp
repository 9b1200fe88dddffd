// The Midpoint page: the slider's text and judgment with its
// thresholds, the refusal, the risk attitude and the print.
#include "TechniqueFixture.h"
#include "model/ExponentialPoints.h"
#include "model/Format.h"
#include "pages/techniques/frmKelMidPoint.h"

#include <QFile>
#include <QLayout>
#include <QLineEdit>
#include <QPrinter>
#include <QSlider>
#include <QStyleOptionSlider>
#include <QTemporaryDir>

namespace kelmar::test {
namespace {

class MidPointTest : public TechniquePageTest<frmKelMidPoint> {
protected:
    // The problem with room for the parameters; message boxes recorded with
    // their title and icon.
    void SetUp() override {
        TechniquePageTest::SetUp();
        for (VariantArray* a : {&w().VFunParA, &w().VFunParB, &w().VFunParC, &w().VFunParD}) a->redim(0, 2);
        w().SelTechnique = kMidPoint;
        setMessageBoxHook([this](QMessageBox& box) {
            messages.push_back(box.windowTitle() + "|" + box.text() + "|" + QString::number(box.icon()));
            return QMessageBox::Ok;
        });
    }
    void TearDown() override {
        frmKelMidPoint::setPrinterFactory({});
        TechniquePageTest::TearDown();
    }

    QSlider* slider() const { return child<QSlider>(QStringLiteral("sldMidVal")); }

    // The centre of the slider's handle at a position, in slider pixels.
    QPoint handleAt(int position, QStyle::SubControl control = QStyle::SC_SliderHandle) const {
        QStyleOptionSlider option;
        option.initFrom(slider());
        option.orientation = Qt::Horizontal;
        option.minimum = slider()->minimum();
        option.maximum = slider()->maximum();
        option.tickPosition = slider()->tickPosition();
        option.tickInterval = slider()->tickInterval();
        option.sliderPosition = option.sliderValue = position;
        return slider()->style()->subControlRect(QStyle::CC_Slider, &option, control, slider()).center();
    }

    // Grabs the handle and drags it towards position `to`; returns the
    // position the slider reached.
    int drag(int to, Qt::MouseButton button = Qt::LeftButton) {
        const QPoint from = handleAt(slider()->value());
        const QPoint target(handleAt(to).x(), from.y());
        sendMouse(slider(), QEvent::MouseButtonPress, from, button, button);
        sendMouse(slider(), QEvent::MouseMove, target, Qt::NoButton, button);
        sendMouse(slider(), QEvent::MouseButtonRelease, target, button, Qt::NoButton);
        return slider()->value();
    }

    // Presses the handle, moves the slider to `position` (as a drag's moves
    // would) and releases it there.
    void slide(int position) {
        const QPoint at = handleAt(slider()->value());
        sendMouse(slider(), QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
        slider()->setValue(position);
        sendMouse(slider(), QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    }

    // Presses twice in a row as the window system sends a double-click.
    void doubleClick(QPoint at, Qt::MouseButton button) {
        for (const QEvent::Type press : {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick}) {
            sendMouse(slider(), press, at, button, button);
            sendMouse(slider(), QEvent::MouseButtonRelease, at, button, Qt::NoButton);
        }
    }

    // The score of the point worth one half: the judged score.
    static double judgedScore(int att = 0) {
        for (int k = 0; k < w().SmpSize(att).toInteger(); ++k) {
            if (w().SmpY(att, k).toDouble() == 0.5) return w().SmpX(att, k).toDouble();
        }
        return -1.0;
    }

    static WizardData& w() { return wizardData(); }
};

TEST_F(MidPointTest, TheSliderShowsTheScoreAsCurrencyText) {
    open();
    // Position 0 is the score minimum, the last the maximum; the text is
    // the score as currency text.
    const struct { int position; QString text;
    } rows[] = {{0, "0"}, {1, "0.05"}, {667, "33.35"}, {frmKelMidPoint::kSliderPositions, "100"}};
    for (const auto& row : rows) {
        slider()->setValue(row.position);
        EXPECT_EQ(page->sliderText(), row.text) << row.position;
    }
    // A page opened on an attribute shows its middle score.
    open(1);
    EXPECT_EQ(page->sliderText(), QStringLiteral("30"));
}

TEST_F(MidPointTest, TheMiddleScoreIsRefusedNearTheEndsOrJudgedAndFinishedWithItsRiskAttitude) {
    // Price runs 0 .. 100 (a position is 0.05); r is measured on the copy of
    // the range, which for some rows is wider or narrower. Price (benefit)
    // and Noise (cost) alike: below the centre is "Risk Prone" (lit 2), at or
    // above "Risk Averse" (0), a linear judgment "Risk Neutral" (1).
    // Finish then gives the judged score one half and every score within
    // 0.005 of the exponential; one judged a twentieth of a hundredth above
    // the lower end of a narrow copy cannot follow the exponential that
    // closely, and the page says how far it strays.
    enum Outcome { Refused, Linear, Curve };
    enum Finish { NoFinish, Follows, Strays };
    const struct {
        int att;
        double copyMaximum;  // 0: as the problem has it
        int position;
        Outcome outcome;
        int lit;
        Finish finish;
    } rows[] = {
        {0, 500.0, 10, Refused, -1, NoFinish},  // r = 0.001
        {0, 500.0, 11, Curve, -1, NoFinish},    // r = 0.0011
        {0, 100.0, 1990, Refused, -1, NoFinish},  // r = 0.995
        {0, 100.0, 1989, Curve, 0, NoFinish},     // r = 0.9945
        {0, 100.0, 1001, Linear, 1, Follows},     // r = 0.5005
        {0, 100.0, 999, Linear, 1, NoFinish},     // r = 0.4995
        {0, 100.0, 1002, Curve, 0, NoFinish},     // r = 0.501
        {0, 100.0, 998, Curve, 2, NoFinish},      // r = 0.499
        {0, 100.0, 200, Curve, 2, Follows},
        {0, 1.0, 1, Curve, -1, Strays},
        {1, 0.0, 1200, Curve, 0, NoFinish},
        {1, 0.0, 996, Curve, 2, NoFinish},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.att << " " << row.position);
        SetUp();
        if (row.copyMaximum > 0) w().ScoreMaximumCopy(0) = row.copyMaximum;
        open(row.att);
        slider()->setValue(row.position == 1000 ? 1100 : 1000);
        messages.clear();
        slide(row.position);
        if (row.outcome == Refused) {
            EXPECT_EQ(messages, (std::vector<QString>{
                                    "QUARN|You have set an unreasonable value for the middle preferential score!|" +
                                    QString::number(QMessageBox::Warning)}));
            EXPECT_EQ(w().VFunParA(0).toString(), QString());
            continue;
        }
        EXPECT_TRUE(messages.empty());
        for (int k = 0; k < 3 && row.lit >= 0; ++k)
            EXPECT_EQ(child<QLabel>(QStringLiteral("lblRiskAttitude_%1").arg(k))->font().bold(), k == row.lit) << k;
        EXPECT_EQ(w().VFunType(row.att).toInteger(), row.outcome == Linear ? 0 : 1);
        if (row.outcome == Linear) {
            EXPECT_EQ(w().VFunParA(0).toString(), QStringLiteral("0.010000"));
            EXPECT_EQ(w().VFunParB(0).toString(), QStringLiteral("0.000000"));
            EXPECT_EQ(judgedScore(), 50.0);
        } else {
            // The exponential takes all eleven points the record holds.
            EXPECT_EQ(w().SmpSize(row.att).toInteger(), 11);
            EXPECT_EQ(judgedScore(row.att), page->middleShown());
            const QString parA = w().VFunParA(row.att).toString();
            EXPECT_EQ(parA.size() - parA.indexOf('.'), 7);
        }
        if (row.finish == NoFinish) continue;
        double middle = w().ScoreMiddle(0).toDouble();
        std::int16_t att = 0;
        const double rate = MiddleScoreRate(att, middle);
        const QString strays = QStringLiteral("The exported curve strays up to %1 from the judged exponential.")
                                   .arg(fmt::formatNumber(ExponentialCurveGap(0), QStringLiteral("0.0###")));
        EXPECT_EQ(child<QLabel>(QStringLiteral("lblCurveGap"))->text(), row.finish == Strays ? strays : QString());
        for (int a = 0; a < 4; ++a) w().AltPScore(a, 0) = a == 0 ? middle : 33.0 * a;
        click("cmdFinish");
        EXPECT_EQ(sink.exportedValues(0, 0).toDouble(), 0.5);
        for (int a = 1; a < 4 && row.finish == Follows; ++a) {
            EXPECT_NEAR(sink.exportedValues(a, 0).toDouble(), ExponentialValue(33.0 * a, 0.0, 100.0, rate, false),
                        0.005);
        }
    }
}

TEST_F(MidPointTest, AReleaseJudgesTheMovedSliderAndARefusalKeepsTheFunction) {
    open();
    // Another button, and a release where the press was, change nothing and
    // show nothing.
    const int start = slider()->value();
    drag(400, Qt::RightButton);
    EXPECT_EQ(slider()->value(), start);
    sendMouse(slider(), QEvent::MouseButtonPress, handleAt(start), Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(page->sliderText(), QStringLiteral("50"));
    sendMouse(slider(), QEvent::MouseButtonRelease, handleAt(start), Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(w().VFunType(0).toInteger(), 0);
    EXPECT_FALSE(w().AttVFDone(0).toBoolean());

    // A drag towards 30 makes the curve through the judged score.
    const int reached = drag(600);
    ASSERT_NE(reached, start);
    const double middle = page->middleShown();
    EXPECT_NEAR(middle, reached * 0.05, 1e-9);
    expectEdited(0, kMidPoint);
    EXPECT_EQ(w().ScoreMiddle(0).toDouble(), middle);
    EXPECT_EQ(judgedScore(), middle);
    EXPECT_EQ(child<QLabel>(QStringLiteral("lblMidScore"))->text(),
              QStringLiteral("Middle score of the function: %1").arg(middle, 0, 'f', 2));

    // A drag to the lower end is refused: the curve stays as it was, with
    // its technique, and the slider goes back to its middle score.
    std::vector<double> before;
    for (int k = 0; k < 11; ++k) before.push_back(w().SmpX(0, k).toDouble());
    const QString parA = w().VFunParA(0).toString();
    drag(0);
    EXPECT_EQ(messages.size(), 1U);
    messages.clear();
    for (int k = 0; k < 11; ++k) EXPECT_EQ(w().SmpX(0, k).toDouble(), before[static_cast<std::size_t>(k)]);
    EXPECT_EQ(w().VFunParA(0).toString(), parA);
    EXPECT_EQ(w().VFunType(0).toInteger(), 1);
    EXPECT_EQ(slider()->value(), reached);

    // The arrow keys judge each step on its own.
    slider()->setValue(600);
    sendKey(slider(), Qt::Key_Right);
    EXPECT_EQ(slider()->value(), 601);
    EXPECT_EQ(judgedScore(), 30.05);
    EXPECT_TRUE(messages.empty());

    // Redrawing on the way to another attribute and back, and Back and Next
    // through the settings step, leave the judged score as it was judged.
    choose("cmbAttributes", 1);
    choose("cmbAttributes", 0);
    w().AttProperty = w().AttPropertyCopy;
    PrepareWorkingArrays();
    open();
    EXPECT_EQ(w().ScoreMiddle(0).toDouble(), 30.05);
}

TEST_F(MidPointTest, EveryPressOfADoubleClickIsJudgedAndOnlyTheLeftButtonMoves) {
    open();
    page->layout()->activate();
    const QPoint groove(handleAt(1800).x(), handleAt(1000, QStyle::SC_SliderGroove).y());
    doubleClick(groove, Qt::MiddleButton);
    EXPECT_EQ(slider()->value(), 1000);
    EXPECT_FALSE(w().AttVFDone(0).toBoolean());

    // Each press pages the slider towards the click; each release judges.
    doubleClick(groove, Qt::LeftButton);
    ASSERT_GT(slider()->value(), 1000);
    EXPECT_EQ(w().ScoreMiddle(0).toDouble(), slider()->value() * 0.05);
    EXPECT_EQ(judgedScore(), slider()->value() * 0.05);
    EXPECT_EQ(child<QLineEdit>(QStringLiteral("txtExact"))->text().toDouble(), slider()->value() * 0.05);
}

TEST_F(MidPointTest, PrintPutsAnImageOfThePageOnThePrinterAndSaysSoWithoutOne) {
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("page.pdf"));
    int asked = 0;
    frmKelMidPoint::setPrinterFactory([&]() -> std::unique_ptr<QPrinter> {
        ++asked;
        auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(file);
        return printer;
    });

    open();
    click("cmdCUFPrint");
    EXPECT_EQ(asked, 1);
    QFile pdf(file);
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    const QByteArray bytes = pdf.readAll();
    EXPECT_TRUE(bytes.startsWith("%PDF"));
    EXPECT_TRUE(bytes.contains("/Subtype /Image"));
    pdf.close();

    // No printer: nothing is printed and the analyst is told.
    QFile::remove(file);
    frmKelMidPoint::setPrinterFactory([] { return std::unique_ptr<QPrinter>(); });
    click("cmdCUFPrint");
    EXPECT_FALSE(QFile::exists(file));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages.front().contains(QStringLiteral("no printer"))) << messages.front().toStdString();
    messages.clear();
    // A printer that cannot start ends the print quietly.
    frmKelMidPoint::setPrinterFactory([] {
        auto printer = std::make_unique<QPrinter>();
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(QStringLiteral("/nonexistent-folder/page.pdf"));
        return printer;
    });
    click("cmdCUFPrint");
    EXPECT_TRUE(messages.empty());
}

}  // namespace
}  // namespace kelmar::test
