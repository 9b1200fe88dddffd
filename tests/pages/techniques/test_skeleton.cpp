// The skeleton's controls and the buttons that only raise events: what a
// page has by its features, the load sequence, Specification, Print, Next
// and Help, and the decoration bands of the rating chart.
#include "TechniqueFixture.h"

#include <kelmar/KelmarDll.h>

#include <QFocusEvent>

#include <map>

namespace kelmar::testing {
namespace {

// A bare page with a chosen set of features, as a later technique page
// would declare it.
class SkeletonPage : public TechniquePage {
public:
    explicit SkeletonPage(TechniqueFeatures features)
        : TechniquePage(kMidPoint, QStringLiteral("frmSkeleton"), QStringLiteral("Skeleton"),
                        features) {}
};

QString captionOf(const QWidget* w) {
    if (const auto* label = qobject_cast<const QLabel*>(w)) return label->text();
    if (const auto* button = qobject_cast<const QPushButton*>(w)) return button->text();
    return {};
}

TEST_F(DirectRatingTest, TheFullSkeletonCarriesEveryControlWithItsCaption) {
    open();
    EXPECT_EQ(page->objectName(), "frmKelDirectRating");
    EXPECT_EQ(page->windowTitle(), "Kelmar: Direct Rating");
    const std::map<QString, QString> captions = {
        {"Label1_0", "Selected attribute:"}, {"Label2", "Sample size:"},
        {"Label3", "Current score:"},        {"Label4", "Current value:"},
        {"Label1_1", "Risk attitude:"},      {"lblRiskAttitude_0", "Risk Averse"},
        {"lblRiskAttitude_1", "Risk Neutral"}, {"lblRiskAttitude_2", "Risk Prone"},
        {"cmdLinear", "&Linear"},            {"cmdRestore", "&Restore"},
        {"cmdS", "&Specification"},          {"cmdCUFPrint", "&Print"},
        {"cmdHelp", "&Help"},                {"cmdCancel", "&Cancel"},
        {"cmdBack", "< &Back"},              {"cmdNext", "&Next >"},
        {"cmdFinish", "&Finish"}};
    for (const auto& [name, caption] : captions)
        EXPECT_EQ(captionOf(child(name)), caption) << name.toStdString();
    for (const char* name : {"Frame1", "cmbAttributes", "cmbSmpSize", "lblCurScore", "lblCurValue",
                             "picRatingChart", "picVFChart", "picPanel", "picRiskAttitude"})
        child(QString::fromLatin1(name));
    for (int i = 0; i < 11; ++i) mark(i);
    EXPECT_NE(page->findChild<QObject*>(QStringLiteral("imgListMark")), nullptr);
    EXPECT_EQ(page->findChild<QLabel*>(QStringLiteral("lblScoreDiff")), nullptr);

    auto* sizes = child<QComboBox>("cmbSmpSize");
    ASSERT_EQ(sizes->count(), 4);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(sizes->itemText(i).toInt(), 2 * i + 5);
}

TEST_F(DirectRatingTest, LaterPagesLeaveOutWhatTheirFeaturesSay) {
    // Without sample size, rating chart, marks, Linear/Restore and
    // read-outs, with a slider frame of its own, as the midpoint page.
    TechniqueFeatures slider;
    slider.ratingChart = slider.pointMarks = slider.markImages = false;
    slider.sampleSize = slider.linearRestore = slider.currentScore = false;
    slider.readout = TechniqueFeatures::Readout::None;
    SkeletonPage reduced(slider);
    for (const char* absent : {"Label2", "cmbSmpSize", "Label3", "lblCurScore", "Label4", "lblCurValue",
                               "lblScoreDiff", "picRatingChart", "picScorePoint_0", "imgListMark",
                               "cmdLinear", "cmdRestore"})
        EXPECT_EQ(reduced.findChild<QObject*>(QString::fromLatin1(absent)), nullptr) << absent;
    for (const char* present : {"Frame1", "Label1_0", "cmbAttributes", "picVFChart", "Label1_1",
                                "lblRiskAttitude_2", "cmdS", "cmdCUFPrint", "cmdHelp", "cmdBack",
                                "cmdNext", "cmdFinish", "cmdCancel"})
        EXPECT_NE(reduced.findChild<QObject*>(QString::fromLatin1(present)), nullptr) << present;

    // Score differences in place of the current value.
    TechniqueFeatures differences;
    differences.readout = TechniqueFeatures::Readout::ScoreDifferences;
    SkeletonPage scoreDiff(differences);
    EXPECT_EQ(scoreDiff.findChild<QLabel*>(QStringLiteral("lblCurValue")), nullptr);
    ASSERT_NE(scoreDiff.findChild<QLabel*>(QStringLiteral("lblScoreDiff")), nullptr);
    EXPECT_EQ(scoreDiff.findChild<QLabel*>(QStringLiteral("Label4"))->text(), "Score differences:");

    // Marks on the value function chart, no rating chart.
    TechniqueFeatures onCurve;
    onCurve.ratingChart = false;
    onCurve.marksOnValueChart = true;
    SkeletonPage curve(onCurve);
    EXPECT_EQ(curve.findChild<QWidget*>(QStringLiteral("picRatingChart")), nullptr);
    auto* onChart = curve.findChild<QWidget*>(QStringLiteral("picScorePoint_10"));
    ASSERT_NE(onChart, nullptr);
    EXPECT_EQ(onChart->parentWidget()->objectName(), "picVFChart");
}

TEST_F(DirectRatingTest, LoadShowsTheAttributeAndEndsWithTheGuidanceMessage) {
    wizardData().SelAtt = 2;
    wizardData().SmpSize(2) = std::int16_t(7);
    wizardData().InSmpSize(2) = std::int16_t(7);
    for (int k = 0; k < 7; ++k) {
        wizardData().SmpX(2, k) = 1.0 + 4.0 * k / 6.0;
        wizardData().SmpY(2, k) = k / 6.0;
    }
    page = std::make_unique<frmKelDirectRating>();
    page->setEventSink(&sink);
    page->load();
    EXPECT_EQ(sink.events, std::vector<std::string>{"Msg:Specify single-attribute value functions."});
    EXPECT_EQ(child<QComboBox>("cmbAttributes")->currentText(), "Comfort");
    EXPECT_EQ(child<QComboBox>("cmbSmpSize")->currentText(), "7");
    for (int i = 0; i < 11; ++i) EXPECT_EQ(mark(i)->isHidden(), i >= 7) << i;
    EXPECT_EQ(mark(3)->toolTip(), "3.00");
}

TEST_F(DirectRatingTest, SpecificationPrintNextAndHelpDoOnlyTheirPart) {
    open();
    drag(2, 40.0);
    sink.events.clear();
    click("cmdS");
    EXPECT_EQ(sink.events, std::vector<std::string>{"ShowKelVFS"});
    sink.events.clear();
    click("cmdCUFPrint");
    click("cmdNext");
    EXPECT_TRUE(sink.events.empty());
    EXPECT_DOUBLE_EQ(value(0, 2), 0.40);

    QString file;
    int context = 0;
    wizardData().QUARNDir = QStringLiteral("C:\\QUARN");
    KelmarDll::setHelpHandler([&](const QString& f, int c) {
        file = f;
        context = c;
    });
    click("cmdHelp");
    KelmarDll::setHelpHandler({});
    EXPECT_EQ(file, "C:\\QUARN\\QUARN.HLP");
    EXPECT_EQ(context, 4005020);
    EXPECT_TRUE(sink.events.empty());
}

TEST_F(DirectRatingTest, ChoosingAnotherAttributeShowsItsPointsAsTheyStand) {
    open();
    drag(2, 40.0);
    auto* attributes = child<QComboBox>("cmbAttributes");
    attributes->setCurrentIndex(1);
    emit attributes->activated(1);
    EXPECT_EQ(wizardData().SelAtt, 1);
    EXPECT_NEAR(centreOf(1), 25.0, 1e-9);  // Noise falls: value 0.75 at 25
    EXPECT_EQ(mark(1)->toolTip(), "20.00");
    EXPECT_TRUE(text("lblCurValue").isEmpty());
    drag(1, 30.0);
    EXPECT_DOUBLE_EQ(value(1, 1), 0.70);
    attributes->setCurrentIndex(0);
    emit attributes->activated(0);
    EXPECT_DOUBLE_EQ(value(0, 2), 0.40);
    EXPECT_NEAR(centreOf(2), 40.0, 1e-6);
}

// The decoration bands: drawn only for the method codes that ask for them,
// each captioned with the values it covers on either orientation.
TEST_F(DirectRatingTest, DecorationBandsFollowTheMethodCodeAndTheValues) {
    auto bandCaptions = [this] {
        std::vector<QString> texts;
        for (const DrawPrimitive& p : chart()->primitives())
            if (p.kind == DrawPrimitive::Kind::Text && p.text.startsWith("values"))
                texts.push_back(p.text);
        return texts;
    };
    auto polygons = [this] {
        std::vector<QVector<QPointF>> found;
        for (const DrawPrimitive& p : chart()->primitives())
            if (p.kind == DrawPrimitive::Kind::Polygon) found.push_back(p.points);
        return found;
    };
    for (const std::int16_t code : {-1, 0, 1, 5}) {
        wizardData().SelMCDAMethod = code;
        open();
        EXPECT_TRUE(polygons().empty()) << code;
    }
    for (const std::int16_t code : {2, 3, 4, 6}) {
        wizardData().SelMCDAMethod = code;
        open();
        EXPECT_EQ(polygons().size(), 3U) << code;
    }

    const struct {
        std::int16_t att, maxVal;
        std::vector<QString> captions;
        bool risesToTheRight;
    } cases[] = {
        {0, 1, {"values 0.02 \u2013 0.74", "values 0.74 \u2013 1.00"}, true},
        {1, 1, {"values 0.26 \u2013 0.98", "values 0.00 \u2013 0.26"}, false},
        {1, 100, {"values 26 \u2013 98", "values 0 \u2013 26"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.att * 1000 + c.maxVal);
        wizardData().SelMCDAMethod = 2;
        wizardData().SelAtt = c.att;
        wizardData().MaxVal = c.maxVal;
        open();
        EXPECT_EQ(bandCaptions(), c.captions);
        // The ramp's top edge of the wide band: higher (smaller y) towards
        // the best end.
        const QVector<QPointF> band2 = polygons().at(1);
        EXPECT_EQ(band2[1].y() > band2[2].y(), c.risesToTheRight);
        // The bands lie inside the rating area, above the score bar.
        for (const auto& polygon : polygons())
            for (const QPointF& p : polygon) {
                EXPECT_GE(p.y(), 0.0);
                EXPECT_LE(p.y(), 78.0);
            }
    }
}

// A page's filled polygon: corners in pixels from index 1, kept in chart
// units so that it stays in place when the chart is resized.
class FillPolygonProbe : public TechniquePage {
public:
    using TechniquePage::FillPolygon;
};

TEST_F(DirectRatingTest, FillPolygonTakesPixelCornersFromIndexOne) {
    open();
    DrawSurface& pic = *chart();
    const double w = pic.width(), h = pic.height();
    const std::vector<QPointF> corners = {{-999, -999}, {0, 0}, {w, 0}, {w / 2, h}};
    pic.cls();
    pic.setScale(-8.0, -3.0, 108.0, 112.0);
    FillPolygonProbe::FillPolygon(pic, corners, 3, ole::rgb(200, 0, 0));
    ASSERT_EQ(pic.primitives().size(), 1U);
    const DrawPrimitive& p = pic.primitives().front();
    EXPECT_EQ(p.kind, DrawPrimitive::Kind::Polygon);
    EXPECT_EQ(p.fillColor, ole::rgb(200, 0, 0));
    ASSERT_EQ(p.points.size(), 3);
    EXPECT_NEAR(p.points[0].x(), -8.0, 1e-9);
    EXPECT_NEAR(p.points[1].x(), 108.0, 1e-9);
    EXPECT_NEAR(p.points[2].x(), 50.0, 1e-9);
    EXPECT_NEAR(p.points[2].y(), 112.0, 1e-9);
    EXPECT_THROW(FillPolygonProbe::FillPolygon(pic, corners, 4, ole::Black), RuntimeError);
}

TEST_F(DirectRatingTest, AMarkReachedWithTabIsSelectedAndReadOut) {
    open();
    // The marks follow the sample size in the tab order.
    EXPECT_EQ(child("cmbSmpSize")->nextInFocusChain(), mark(0));
    EXPECT_EQ(mark(10)->nextInFocusChain(), child("cmdLinear"));

    QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(mark(3), &focus);
    EXPECT_EQ(mark(3)->picture(), 2);
    EXPECT_EQ(mark(2)->picture(), 1);
    EXPECT_EQ(text("lblCurScore"), "75.00");
    EXPECT_EQ(text("lblCurValue"), "0.75");
    // Selecting by focus changes nothing in the function.
    EXPECT_EQ(wizardData().VFunType(0).toInteger(), 0);
    EXPECT_FALSE(wizardData().AttVFDone(0).toBoolean());
}

}  // namespace
}  // namespace kelmar::testing
