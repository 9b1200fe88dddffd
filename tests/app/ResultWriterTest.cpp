// The JSON that kelmar-host writes for each ExportResults, and the window's
// handling of the component's events and of unsaved work.
#include "HostTestData.h"
#include "ResultWriter.h"

#include <QFileInfo>
#include <QLabel>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QPointer>
#include <QTableView>
#include <QTextBlock>
#include <QTextBrowser>

namespace kelmarhost {
namespace {

using kelmar::Variant;
using kelmar::VariantArray;

// A finished record of two alternatives on two attributes.
struct Record {
    VariantArray values, lo, mid, hi, size, x, y, a, b, c, d, type, tech;
    Variant techniques;
    static constexpr int alts = 2, atts = 2;
    Record()
        : values(0, alts - 1, 0, atts - 1), lo(0, atts - 1), mid(0, atts - 1), hi(0, atts - 1),
          size(0, atts - 1), x(0, atts - 1, 0, 10), y(0, atts - 1, 0, 10), a(0, atts - 1),
          b(0, atts - 1), c(0, atts - 1), d(0, atts - 1), type(0, atts - 1), tech(0, atts - 1) {
        for (int j = 0; j < atts; ++j) {
            const int n = 3 - j % 2;
            tech(j) = Variant(static_cast<std::int16_t>(5 - 2 * (j % 2)));
            lo(j) = Variant(1.0 * j);
            mid(j) = Variant(5.0 + j);
            hi(j) = Variant(10.0 + j);
            size(j) = Variant(static_cast<std::int16_t>(n));
            for (int k = 0; k < n; ++k) {
                x(j, k) = Variant(j + (10.0 / (n - 1)) * k);
                y(j, k) = Variant(k / (n - 1.0));
            }
            type(j) = Variant(static_cast<std::int16_t>(1 - j % 2));
            for (int i = 0; i < alts; ++i) values(i, j) = Variant(10.0 * i + j);
        }
        techniques = Variant(tech);
        a(0) = Variant(1.0), b(0) = Variant(2.0), c(0) = Variant(3.0), d(0) = Variant(4.0);
        values(1, 1) = Variant();  // a cell the component left empty
    }
    ExportedResults results() const {
        return {values, lo, mid, hi, 100, techniques, size, x, y, a, b, c, d, type};
    }
};

const QStringList kAlternatives{QStringLiteral("North"), QStringLiteral("South")};
const QStringList kAttributes{QStringLiteral("Rent"), QStringLiteral("Docks")};

QJsonObject parsed(const QByteArray& text) {
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(text, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << text.toStdString();
    return doc.object();
}

// Reads a file of JSON lines back.
QList<QJsonObject> readLines(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    QList<QJsonObject> out;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (!line.isEmpty()) out.append(parsed(line));
    }
    return out;
}

TEST(ResultWriterTest, OneExportRoundTripsThroughTheFile) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("results.jsonl"));
    ResultWriter writer(path);
    ASSERT_TRUE(writer.write(resultsToJson(Record().results(), kAlternatives, kAttributes)));
    const QJsonObject expected = parsed(R"({"maxValue": 100, "functions": [
        {"attribute": "Rent", "scoreMinimum": 0, "scoreMiddle": 5, "scoreMaximum": 10, "maxValue": 100,
         "technique": 5, "techniqueName": "Bisection", "type": 1, "sampleSize": 3,
         "points": [[0, 0], [5, 0.5], [10, 1]], "parameters": {"a": 1, "b": 2, "c": 3, "d": 4}},
        {"attribute": "Docks", "scoreMinimum": 1, "scoreMiddle": 6, "scoreMaximum": 11, "maxValue": 100,
         "technique": 3, "techniqueName": "Category Identification", "type": 0, "sampleSize": 2,
         "points": [[1, 0], [11, 1]], "parameters": {"a": null, "b": null, "c": null, "d": null}}],
      "values": [
        {"alternative": "North", "values": [{"attribute": "Rent", "value": 0}, {"attribute": "Docks", "value": 1}]},
        {"alternative": "South", "values": [{"attribute": "Rent", "value": 10}, {"attribute": "Docks", "value": null}]}]})");
    EXPECT_EQ(readLines(path), QList<QJsonObject>{expected});
}

// Nothing new closes without a question. Every Finish is written and
// shown; the wizard is released once its event has unwound and the window
// stays; closing it then asks first, and the next session starts from the
// last Finish.
TEST_F(HostWindowTest, KeepsEveryFinishAsksBeforeItIsLostAndStartsTheNextSessionFromIt) {
    EXPECT_FALSE(closeAnswering(QMessageBox::Cancel));
    EXPECT_FALSE(window.isVisible());
    window.show();
    kelmar::setMessageBoxHook([](QMessageBox&) { return QMessageBox::Ok; });
    window.showWizard();
    QPointer<QWidget> settings;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w != &window && w->isVisible()) settings = w;
    ASSERT_FALSE(settings.isNull()) << "the wizard opens";
    kelmar::WizardData& w = kelmar::wizardData();
    w.AttVData(1, 0) = 10.0;
    const double x11 = w.SmpX(1, 1).toDouble();
    exportFinish();
    exportFinish();
    const QList<QJsonObject> lines = readLines(dir.filePath(QStringLiteral("out.jsonl")));
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[1].value(QStringLiteral("values")).toArray().at(0).toObject()
                  .value(QStringLiteral("alternative")).toString(),
              QStringLiteral("Northgate Business Park"));
    auto* values = window.findChild<QTableView*>(QStringLiteral("tblValues"));
    ASSERT_TRUE(values != nullptr);
    EXPECT_EQ(values->model()->index(1, 0).data().toString(), QStringLiteral("10.00"));
    EXPECT_EQ(window.exportCount(), 2);

    closeWizard();
    EXPECT_TRUE(window.wizardOpen()) << "not while the page's handler may still run";
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    EXPECT_FALSE(window.wizardOpen());
    EXPECT_TRUE(window.isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(settings.isNull()) << "the settings page is released";

    // Cancel keeps the window; Save writes the functions first.
    EXPECT_TRUE(closeAnswering(QMessageBox::Cancel));
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_TRUE(closeAnswering(QMessageBox::Save));
    EXPECT_FALSE(window.isVisible());
    const Problem saved = loadProblemFile(path);
    EXPECT_TRUE(sameRecord(saved.functions[0], window.problem().functions[0]));
    EXPECT_EQ(saved.functions[0].technique, 5);

    window.show();
    window.showWizard();
    EXPECT_EQ(w.InSmpX(1, 1).toDouble(), x11);
    EXPECT_EQ(w.InVFTechniqueID(0).toInteger(), 5);
    // After another Finish, Discard closes all the same.
    exportFinish();
    closeWizard();
    QCoreApplication::processEvents();
    EXPECT_TRUE(closeAnswering(QMessageBox::Discard));
    EXPECT_FALSE(window.isVisible());
}

// Every Finish goes into the saved file with its technique and time, so the
// comparison comes back on reopening; an earlier curve can be made current
// again; a file that cannot be read leaves the workbench as it was.
TEST_F(HostWindowTest, TheHistoryComesBackWithTheFileAndAnEarlierCurveCanBeCurrentAgain) {
    kelmar::setMessageBoxHook([](QMessageBox&) { return QMessageBox::Ok; });
    window.showWizard();
    kelmar::WizardData& w = kelmar::wizardData();
    exportFinish();
    w.SmpY(0, 1) = w.SmpY(0, 1).toDouble() - 0.05;
    exportFinish();
    closeWizard();
    QCoreApplication::processEvents();
    const auto labels = [&] {
        QStringList out;
        for (const AttributeCurve& c : window.curvesOf(0)) out << c.label;
        return out;
    };
    EXPECT_EQ(labels(), (QStringList{QStringLiteral("Loaded"), QStringLiteral("Finish 2: Bisection, linear")}));
    ASSERT_TRUE(window.saveTo(path));
    const QDateTime second = window.finishes().at(1).finished;

    QString error;
    EXPECT_FALSE(window.openFile(dataFile("bad_property.json"), &error));
    EXPECT_TRUE(error.contains(QStringLiteral("attributes[2].property")));
    EXPECT_EQ(window.problem().source, QStringLiteral("sample problem"));

    ASSERT_TRUE(window.openFile(path));
    EXPECT_EQ(window.exportCount(), 0);
    EXPECT_EQ(labels(), (QStringList{QStringLiteral("Finish 1: Bisection, linear"),
                                     QStringLiteral("Finish 2: Bisection, linear")}));
    EXPECT_EQ(window.curvesOf(0).at(1).finished, second);
    EXPECT_TRUE(window.findChild<QLabel*>(QStringLiteral("lblComparison"))->text().startsWith(
        QStringLiteral("Largest difference")));
    EXPECT_EQ(window.recentFiles().value(0), QFileInfo(path).absoluteFilePath());

    const ValueTable before = window.values();
    window.makeCurrent(0, 0);
    EXPECT_TRUE(sameRecord(window.problem().functions[0], window.curvesOf(0).at(0).function));
    EXPECT_TRUE(window.hasUnsavedWork());
    EXPECT_NE(window.values()[3][0], before[3][0]) << "a rent near the lowered point";
    EXPECT_EQ(window.values()[3][1], before[3][1]) << "the other attributes keep their values";
}

// Help on a page of the wizard opens the help window at that page's part.
TEST_F(HostWindowTest, HelpOpensAtThePageInFront) {
    window.showWizard();
    QWidget* settings = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == QStringLiteral("frmKelSettings")) settings = w;
    ASSERT_NE(settings, nullptr);
    settings->activateWindow();
    QApplication::setActiveWindow(settings);
    settings->findChild<QAbstractButton*>(QStringLiteral("cmdHelp"))->click();
    QWidget* help = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == QStringLiteral("wndHelp") && w->isVisible()) help = w;
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->findChild<QTextBrowser*>()->textCursor().block().text(), QStringLiteral("The settings page"));
    EXPECT_EQ(window.showHelp(QStringLiteral("frmKelVarC"))->findChild<QTextBrowser*>()->textCursor().block().text(),
              QStringLiteral("Variable certainty equivalent"));
    closeWizard();
}

}  // namespace
}  // namespace kelmarhost
