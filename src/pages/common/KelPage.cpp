#include "pages/common/KelPage.h"

#include "pages/common/Ui.h"

#include <kelmar/mdKelMain.h>

#include <QCloseEvent>
#include <QKeyEvent>

#include <exception>

namespace kelmar {

KelPage::KelPage(int pageId, QWidget* parent) : QDialog(parent), pageId_(pageId) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

KelPage::~KelPage() = default;

namespace {
// Counts the handlers of a page that are on the stack.
class RunningGuard {
public:
    explicit RunningGuard(int& count) : count_(count) { ++count_; }
    ~RunningGuard() { --count_; }
    RunningGuard(const RunningGuard&) = delete;
    RunningGuard& operator=(const RunningGuard&) = delete;

private:
    int& count_;
};
}  // namespace

void KelPage::load() {
    if (loaded_) return;
    loaded_ = true;
    RunningGuard running(running_);
    onLoad();
}

float KelPage::pageLeft() const { return static_cast<float>(frameGeometry().x()); }
float KelPage::pageTop() const { return static_cast<float>(frameGeometry().y()); }

void KelPage::handle(const std::function<void()>& handler) {
    RunningGuard running(running_);
    try {
        handler();
    } catch (const RuntimeError& error) {
        reportRuntimeError(this, error);
    } catch (const std::exception& error) {
        // A fault in the host's own event handler must not take the host down.
        reportRuntimeError(this, RuntimeError(RuntimeError::IllegalCall,
                                              QString::fromLocal8Bit(error.what())));
    } catch (...) {
        reportRuntimeError(this, RuntimeError(RuntimeError::IllegalCall));
    }
}

void KelPage::onClosed() { raiseUnloadOwn(); }

void KelPage::closeEvent(QCloseEvent* event) {
    handle([this] { onClosed(); });
    event->accept();
}

void KelPage::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void KelPage::raiseUnloadKelmar() {
    if (sink_) sink_->pageUnloadKelmar(*this);
}

void KelPage::raiseHideForm(std::int16_t frmID) {
    if (sink_) sink_->pageHideForm(*this, frmID);
}

void KelPage::raiseShowForm(std::int16_t frmID, float frmLeft, float frmTop) {
    if (sink_) sink_->pageShowForm(*this, frmID, frmLeft, frmTop);
}

void KelPage::raiseUnloadOwn() {
    if (sink_) sink_->pageUnloadOwn(*this);
}

void KelPage::raiseShowKelVFS() {
    if (sink_) sink_->pageShowKelVFS(*this);
}

void KelPage::raiseSendMasseges(const QString& msg) {
    if (sink_) sink_->pageSendMasseges(*this, msg);
}

void KelPage::raiseExportResults() {
    if (!sink_) return;
    WizardData& w = wizardData();
    Variant techniques(w.VFTechniqueID);
    sink_->pageExportResults(*this, w.AttVData, w.ScoreMinimum, w.ScoreMiddle, w.ScoreMaximum,
                             w.MaxVal, techniques, w.SmpSize, w.SmpX, w.SmpY, w.VFunParA,
                             w.VFunParB, w.VFunParC, w.VFunParD, w.VFunType);
    // The variant stands for the working array: what the host wrote into it
    // goes back, as it does for every other argument.
    if (techniques.isArray()) w.VFTechniqueID = techniques.toArray();
}

void KelPage::raiseUnloadKelVFS() {
    if (sink_) sink_->pageUnloadKelVFS(*this);
}

}  // namespace kelmar
