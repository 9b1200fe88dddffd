// What the host tests share: the problem files under data/, the JSON blocks
// of docs/problem-format.md and a workbench on the sample problem, with the
// wizard's Finish and close and the window's own close as the analyst
// makes them.
#pragma once

#include "HostWindow.h"
#include "SampleProblem.h"

#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QAbstractButton>
#include <QApplication>
#include <QByteArray>
#include <QFile>
#include <QMessageBox>
#include <QStandardPaths>
#include <QString>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

namespace kelmarhost {

inline QString dataFile(const char* name) {
    return QStringLiteral(KELMAR_TEST_DATA_DIR "/") + QString::fromLatin1(name);
}

// The first ```json block after `heading` in docs/problem-format.md; empty
// (and a failure) if the document has none there.
inline QByteArray documentedJson(const char* heading) {
    QFile doc(QStringLiteral(KELMAR_DOCS_DIR "/problem-format.md"));
    EXPECT_TRUE(doc.open(QIODevice::ReadOnly));
    const QByteArray text = doc.readAll();
    const qsizetype section = text.indexOf(heading);
    const qsizetype begin = section < 0 ? -1 : text.indexOf("```json\n", section);
    const qsizetype end = begin < 0 ? -1 : text.indexOf("```", begin + 8);
    EXPECT_TRUE(end > begin && begin >= 0) << "no JSON block after " << heading;
    return end > begin && begin >= 0 ? text.mid(begin + 8, end - begin - 8) : QByteArray();
}

// A workbench on the sample problem whose wizard pages show without
// blocking; results go to out.jsonl, saving to saved.json.
class HostWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        // The recent-files list goes to a test location, not the user's.
        QStandardPaths::setTestModeEnabled(true);
        kelmar::setModalRunner([](QDialog& page) { page.show(); });
        window.show();
    }
    void TearDown() override {
        kelmar::setModalRunner({});
        kelmar::setMessageBoxHook({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        kelmar::wizardData() = {};
    }
    // The wizard data handed over as a Finish would, with technique 5 for
    // the first attribute.
    void exportFinish() {
        kelmar::WizardData& w = kelmar::wizardData();
        w.VFTechniqueID(0) = kelmar::Variant(std::int16_t(5));
        kelmar::Variant techniques(w.VFTechniqueID);
        kelmar::VariantArray scoreMinimum = w.InScoreMinimum, scoreMiddle = w.InScoreMiddle,
                             scoreMaximum = w.InScoreMaximum;
        window.ExportResults(w.AttVData, scoreMinimum, scoreMiddle, scoreMaximum, 100, techniques,
                             w.SmpSize, w.SmpX, w.SmpY, w.InVFunParA, w.InVFunParB, w.InVFunParC,
                             w.InVFunParD, w.InVFunType);
    }
    // Hides the wizard's pages and answers its UnloadKelmar.
    void closeWizard() {
        for (QWidget* page : QApplication::topLevelWidgets())
            if (page != &window) page->hide();
        window.UnloadKelmar();
    }
    // Closes the window, answering the question (if one comes) with `answer`;
    // returns whether a question came.
    bool closeAnswering(QMessageBox::StandardButton answer) {
        bool asked = false;
        QTimer::singleShot(0, &window, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr) return;
            asked = true;
            box->button(answer)->click();
        });
        window.close();
        return asked;
    }

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("saved.json"));
    HostWindow window{sampleProblem(), ResultWriter(dir.filePath(QStringLiteral("out.jsonl"))), path};
};

}  // namespace kelmarhost
