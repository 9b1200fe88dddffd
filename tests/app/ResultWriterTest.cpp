// The JSON that kelmar-host writes for each ExportResults, and the window's
// handling of the component's events.
#include "HostTestData.h"
#include "HostWindow.h"
#include "ResultWriter.h"
#include "SampleProblem.h"

#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QPointer>
#include <QTableWidget>
#include <QTemporaryDir>

namespace kelmarhost {
namespace {

using kelmar::Variant;
using kelmar::VariantArray;

// A finished record of two attributes and two alternatives.
struct Record {
    VariantArray values{0, 1, 0, 1}, lo{0, 1}, mid{0, 1}, hi{0, 1}, size{0, 1}, x{0, 1, 0, 10},
        y{0, 1, 0, 10}, a{0, 1}, b{0, 1}, c{0, 1}, d{0, 1}, type{0, 1}, tech{0, 1};
    Variant techniques;
    Record() {
        for (int j = 0; j < 2; ++j) {
            tech(j) = Variant(static_cast<std::int16_t>(5 - 2 * j));
            lo(j) = Variant(1.0 * j);
            mid(j) = Variant(5.0 + j);
            hi(j) = Variant(10.0 + j);
            size(j) = Variant(static_cast<std::int16_t>(3 - j));
            for (int k = 0; k < 3; ++k) {
                x(j, k) = Variant(5.0 * k);
                y(j, k) = Variant(k / 2.0);
            }
            type(j) = Variant(static_cast<std::int16_t>(1 - j));
            for (int i = 0; i < 2; ++i) values(i, j) = Variant(10.0 * i + j);
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
         "points": [[0, 0], [5, 0.5]], "parameters": {"a": null, "b": null, "c": null, "d": null}}],
      "values": [
        {"alternative": "North", "values": [{"attribute": "Rent", "value": 0}, {"attribute": "Docks", "value": 1}]},
        {"alternative": "South", "values": [{"attribute": "Rent", "value": 10}, {"attribute": "Docks", "value": null}]}]})");
    EXPECT_EQ(readLines(path), QList<QJsonObject>{expected});
}

// A window with the sample problem transferred and the wizard's settings
// page open.
class HostWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        kelmar::setModalRunner([](QDialog& page) { page.show(); });
        kelmar::setMessageBoxHook([](QMessageBox&) { return QMessageBox::Ok; });
        window.show();
        window.transferProblem();
        window.showWizard();
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (w != &window && w->isVisible()) settings = qobject_cast<QDialog*>(w);
        }
        QObject::connect(&window, &HostWindow::sessionEnded, [this] { ended = true; });
    }
    void TearDown() override {
        kelmar::setModalRunner({});
        kelmar::setMessageBoxHook({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        kelmar::wizardData() = {};
    }

    QTemporaryDir dir;
    HostWindow window{sampleProblem(), ResultWriter(dir.filePath(QStringLiteral("out.jsonl")))};
    QPointer<QDialog> settings;
    bool ended = false;
};

TEST_F(HostWindowTest, NoticesResultsAndTheEndOfTheWizard) {
    ASSERT_FALSE(settings.isNull()) << "the wizard opens";
    EXPECT_EQ(kelmar::wizardData().AltNum, 6);
    Record r;
    for (int n = 0; n < 2; ++n) {
        window.ExportResults(r.values, r.lo, r.mid, r.hi, 100, r.techniques, r.size, r.x, r.y, r.a,
                             r.b, r.c, r.d, r.type);
    }
    const QList<QJsonObject> lines = readLines(dir.filePath(QStringLiteral("out.jsonl")));
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[1].value(QStringLiteral("values")).toArray().at(0).toObject()
                  .value(QStringLiteral("alternative")).toString(),
              QStringLiteral("Northgate Business Park"));
    auto* values = window.findChild<QTableWidget*>(QStringLiteral("tblValues"));
    ASSERT_TRUE(values && values->item(1, 0));
    EXPECT_EQ(values->item(1, 0)->text(), QStringLiteral("10.00"));

    // The host's answer to UnloadKelmar releases the wizard; the session
    // ends once the event has unwound.
    settings->hide();
    window.UnloadKelmar();
    EXPECT_FALSE(ended) << "not while the page's handler may still run";
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    EXPECT_TRUE(ended);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(settings.isNull()) << "the settings page is released";
}

}  // namespace
}  // namespace kelmarhost
