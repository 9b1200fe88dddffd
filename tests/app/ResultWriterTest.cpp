// The JSON that kelmar-host writes for each ExportResults, and the window's
// handling of the component's events.
#include "HostWindow.h"
#include "ResultWriter.h"
#include "SampleProblem.h"

#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QPointer>
#include <QTableWidget>
#include <QTemporaryDir>

#include <gtest/gtest.h>


namespace kelmarhost {
namespace {

using kelmar::Variant;
using kelmar::VariantArray;

// A finished record of two attributes and two alternatives.
struct Record {
    VariantArray values{0, 1, 0, 1}, lo{0, 1}, mid{0, 1}, hi{0, 1}, size{0, 1}, x{0, 1, 0, 10},
        y{0, 1, 0, 10}, a{0, 1}, b{0, 1}, c{0, 1}, d{0, 1}, type{0, 1};
    Variant techniques;
    Record() {
        VariantArray tech(0, 1);
        tech(0) = Variant(std::int16_t{5});
        tech(1) = Variant(std::int16_t{3});
        techniques = Variant(tech);
        for (int j = 0; j < 2; ++j) {
            lo(j) = Variant(0.0);
            mid(j) = Variant(5.0);
            hi(j) = Variant(10.0);
            size(j) = Variant(std::int16_t{3});
            for (int k = 0; k < 3; ++k) {
                x(j, k) = Variant(5.0 * k);
                y(j, k) = Variant(k / 2.0);
            }
            type(j) = Variant(std::int16_t{1});
            for (int i = 0; i < 2; ++i) values(i, j) = Variant(10.0 * i + j);
        }
        values(1, 1) = Variant();  // a cell the component left empty
    }
    ExportedResults results() const {
        return {values, lo, mid, hi, 100, techniques, size, x, y, a, b, c, d, type};
    }
};

const QStringList kAlternatives{QStringLiteral("North"), QStringLiteral("South")};
const QStringList kAttributes{QStringLiteral("Rent"), QStringLiteral("Docks")};

// Reads a file of JSON lines back.
QList<QJsonObject> readLines(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    QList<QJsonObject> out;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.isEmpty()) continue;
        QJsonParseError error{};
        const QJsonDocument doc = QJsonDocument::fromJson(line, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
        out.append(doc.object());
    }
    return out;
}

TEST(ResultWriterTest, OneExportRoundTripsThroughTheFile) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("results.jsonl"));
    const Record r;
    ResultWriter writer(path);
    ASSERT_TRUE(writer.write(resultsToJson(r.results(), kAlternatives, kAttributes)));

    const QList<QJsonObject> lines = readLines(path);
    ASSERT_EQ(lines.size(), 1);
    const QJsonObject& json = lines.first();
    const QJsonArray functions = json.value(QStringLiteral("functions")).toArray();
    ASSERT_EQ(functions.size(), 2);
    for (int j = 0; j < 2; ++j) {
        const QJsonObject f = functions.at(j).toObject();
        EXPECT_EQ(f.value(QStringLiteral("attribute")).toString(), kAttributes.at(j));
        EXPECT_EQ(f.value(QStringLiteral("scoreMinimum")).toDouble(), r.lo(j).toDouble());
        EXPECT_EQ(f.value(QStringLiteral("scoreMiddle")).toDouble(), r.mid(j).toDouble());
        EXPECT_EQ(f.value(QStringLiteral("scoreMaximum")).toDouble(), r.hi(j).toDouble());
        EXPECT_EQ(f.value(QStringLiteral("technique")).toInt(),
                  r.techniques.toArray()(j).toInteger());
        EXPECT_EQ(f.value(QStringLiteral("sampleSize")).toInt(), r.size(j).toInteger());
        const QJsonArray points = f.value(QStringLiteral("points")).toArray();
        ASSERT_EQ(points.size(), r.size(j).toInteger());
        for (int k = 0; k < points.size(); ++k)
            EXPECT_EQ(points.at(k).toArray(), (QJsonArray{r.x(j, k).toDouble(), r.y(j, k).toDouble()}));
        EXPECT_EQ(f.value(QStringLiteral("type")).toInt(), r.type(j).toInteger());
    }
    const QJsonArray values = json.value(QStringLiteral("values")).toArray();
    ASSERT_EQ(values.size(), 2);
    for (int i = 0; i < 2; ++i) {
        const QJsonObject row = values.at(i).toObject();
        EXPECT_EQ(row.value(QStringLiteral("alternative")).toString(), kAlternatives.at(i));
        const QJsonArray cells = row.value(QStringLiteral("values")).toArray();
        ASSERT_EQ(cells.size(), 2);
        for (int j = 0; j < 2; ++j) {
            const QJsonValue v = cells.at(j).toObject().value(QStringLiteral("value"));
            if (r.values(i, j).isEmpty()) {
                EXPECT_TRUE(v.isNull());
            } else {
                EXPECT_EQ(v.toDouble(), r.values(i, j).toDouble());
            }
        }
    }
}

// The pretty-printed result line of docs/problem-format.md names the fields
// the writer writes, at every level.
TEST(ResultWriterTest, TheDocumentedResultLineHasTheWritersFields) {
    QFile doc(QStringLiteral(KELMAR_DOCS_DIR "/problem-format.md"));
    ASSERT_TRUE(doc.open(QIODevice::ReadOnly));
    const QByteArray text = doc.readAll();
    const qsizetype section = text.indexOf("## The results");
    ASSERT_GE(section, 0);
    const qsizetype begin = text.indexOf("```json\n", section);
    const qsizetype end = text.indexOf("```", begin + 8);
    ASSERT_TRUE(begin >= 0 && end > begin);
    QJsonParseError error{};
    const QJsonObject documented =
        QJsonDocument::fromJson(text.mid(begin + 8, end - begin - 8), &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();

    const Record r;
    const QJsonObject written = resultsToJson(r.results(), kAlternatives, kAttributes);
    const auto first = [](const QJsonObject& o, const char* key) {
        return o.value(QLatin1String(key)).toArray().at(0).toObject();
    };
    EXPECT_EQ(documented.keys(), written.keys());
    EXPECT_EQ(first(documented, "functions").keys(), first(written, "functions").keys());
    EXPECT_EQ(first(documented, "functions").value(QStringLiteral("parameters")).toObject().keys(),
              first(written, "functions").value(QStringLiteral("parameters")).toObject().keys());
    EXPECT_EQ(first(documented, "values").keys(), first(written, "values").keys());
    EXPECT_EQ(first(first(documented, "values"), "values").keys(),
              first(first(written, "values"), "values").keys());
}

class HostWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        kelmar::setModalRunner([](QDialog& page) { page.show(); });
        kelmar::setMessageBoxHook([](QMessageBox&) { return QMessageBox::Ok; });
    }
    void TearDown() override {
        kelmar::setModalRunner({});
        kelmar::setMessageBoxHook({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(HostWindowTest, NoticesResultsAndTheEndOfTheWizard) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.jsonl"));
    {
        HostWindow window(sampleProblem(), ResultWriter(path));
        window.show();
        window.transferProblem();
        EXPECT_EQ(kelmar::wizardData().AttNum, 5);
        EXPECT_EQ(kelmar::wizardData().AltNum, 6);
        window.showWizard();
        QPointer<QDialog> settings;
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (w != &window && w->isVisible()) settings = qobject_cast<QDialog*>(w);
        }
        ASSERT_FALSE(settings.isNull()) << "the wizard opens";

        Record r;
        for (int n = 0; n < 2; ++n) {
            window.ExportResults(r.values, r.lo, r.mid, r.hi, 100, r.techniques, r.size, r.x,
                                 r.y, r.a, r.b, r.c, r.d, r.type);
        }
        EXPECT_EQ(window.exportCount(), 2);
        EXPECT_FALSE(window.writeFailed());
        const QList<QJsonObject> lines = readLines(path);
        ASSERT_EQ(lines.size(), 2);
        EXPECT_EQ(lines[1].value(QStringLiteral("values")).toArray().at(0).toObject()
                      .value(QStringLiteral("alternative")).toString(),
                  QStringLiteral("Northgate Business Park"));
        auto* values = window.findChild<QTableWidget*>(QStringLiteral("tblValues"));
        ASSERT_NE(values, nullptr);
        ASSERT_NE(values->item(1, 0), nullptr);
        EXPECT_EQ(values->item(1, 0)->text(), QStringLiteral("10.00"));

        // The host's answer to UnloadKelmar releases the wizard; the session
        // ends once the event has unwound.
        bool ended = false;
        QObject::connect(&window, &HostWindow::sessionEnded, [&] { ended = true; });
        settings->hide();
        window.UnloadKelmar();
        EXPECT_FALSE(ended) << "not while the page's handler may still run";
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        EXPECT_TRUE(ended);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(settings.isNull()) << "the settings page is released";
    }
    kelmar::wizardData() = {};
}

TEST_F(HostWindowTest, ClosingTheLastWizardWindowEndsTheSession) {
    HostWindow window(sampleProblem(), ResultWriter(QString()));
    window.show();
    window.transferProblem();
    window.showWizard();
    QDialog* settings = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != &window && w->isVisible()) settings = qobject_cast<QDialog*>(w);
    }
    ASSERT_NE(settings, nullptr);
    bool ended = false;
    QObject::connect(&window, &HostWindow::sessionEnded, [&] { ended = true; });
    settings->close();
    QCoreApplication::processEvents();
    EXPECT_TRUE(ended);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    kelmar::wizardData() = {};
}

}  // namespace
}  // namespace kelmarhost
