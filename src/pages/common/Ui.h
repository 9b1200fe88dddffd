// Small user-interface services shared by the component class and the pages:
// modal display, message boxes, the hourglass, help, run-time error reports.
// Each has a seam that tests (and embedding hosts) can replace.
#pragma once

#include <QMessageBox>
#include <QString>

#include <functional>

class QDialog;
class QWidget;

namespace kelmar {

class RuntimeError;

// Shows a page modally. The default runs QDialog::exec(); the call returns
// when the page is hidden or closed.
void runModal(QDialog& page);
// Replace the modal runner (tests show pages without blocking). An empty
// function restores the default.
void setModalRunner(std::function<void(QDialog&)> runner);

// A message box in the wizard's style: the box is a QMessageBox with the
// given icon, text and title ("QUARN" for the wizard's own messages).
// Returns the button pressed.
QMessageBox::StandardButton showMessage(QWidget* parent, const QString& text,
                                        QMessageBox::Icon icon = QMessageBox::Warning,
                                        const QString& title = QStringLiteral("QUARN"));
// Replace how message boxes are run: the hook receives the prepared box
// and returns the button (tests record the texts instead of blocking).
void setMessageBoxHook(std::function<QMessageBox::StandardButton(QMessageBox&)> hook);

// Reports a run-time error to the user ("Run-time error '9':" and its text).
void reportRuntimeError(QWidget* parent, const RuntimeError& error);

// The hourglass pointer for the lifetime of the object.
class HourGlass {
public:
    HourGlass();
    ~HourGlass();
    HourGlass(const HourGlass&) = delete;
    HourGlass& operator=(const HourGlass&) = delete;
};

// The help file path and the one context number of every page.
inline constexpr int kHelpContext = 4005020;
QString helpFilePath();  // QUARNDir & "\" & "QUARN.HLP"
// Opens help through the handler the host installed (KelmarDll::setHelpHandler).
void openHelp(QWidget* parent);

}  // namespace kelmar
