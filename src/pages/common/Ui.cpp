#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>
#include <QDialog>
#include <QMessageBox>

namespace kelmar {

namespace {
std::function<void(QDialog&)>& modalRunner() {
    static std::function<void(QDialog&)> runner;
    return runner;
}
std::function<QMessageBox::StandardButton(QMessageBox&)>& messageHook() {
    static std::function<QMessageBox::StandardButton(QMessageBox&)> hook;
    return hook;
}
}  // namespace

void runModal(QDialog& page) {
    if (modalRunner()) {
        modalRunner()(page);
        return;
    }
    page.exec();
}

void setModalRunner(std::function<void(QDialog&)> runner) { modalRunner() = std::move(runner); }

QMessageBox::StandardButton showMessage(QWidget* parent, const QString& text,
                                        QMessageBox::Icon icon, const QString& title) {
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.setObjectName(QStringLiteral("msgBox"));
    if (messageHook()) return messageHook()(box);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

void setMessageBoxHook(std::function<QMessageBox::StandardButton(QMessageBox&)> hook) {
    messageHook() = std::move(hook);
}

void reportRuntimeError(QWidget* parent, const RuntimeError& error) {
    showMessage(parent,
                QStringLiteral("Run-time error '%1':\n\n%2").arg(error.number()).arg(error.description()),
                QMessageBox::Critical, QStringLiteral("Kelmar"));
}

HourGlass::HourGlass() { QApplication::setOverrideCursor(Qt::WaitCursor); }
HourGlass::~HourGlass() { QApplication::restoreOverrideCursor(); }

QString helpFilePath() {
    return wizardData().QUARNDir + QStringLiteral("\\") + QStringLiteral("QUARN.HLP");
}

}  // namespace kelmar
