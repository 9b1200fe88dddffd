// The base of every wizard page: its id, the events it raises to the
// component class, and the guarded running of its handlers.
#pragma once

#include <kelmar/Variant.h>

#include <QDialog>

#include <cstdint>
#include <functional>

namespace kelmar {

class KelPage;

// Receives the events that pages raise. The component class implements it;
// tests implement it to watch what a page raises.
class PageEventSink {
public:
    virtual ~PageEventSink() = default;
    virtual void pageUnloadKelmar(KelPage& page) = 0;
    virtual void pageHideForm(KelPage& page, std::int16_t& frmID) = 0;
    virtual void pageShowForm(KelPage& page, std::int16_t& frmID, float& frmLeft,
                              float& frmTop) = 0;
    // The page's own unload event (UnloadKelDirectRating and the rest).
    virtual void pageUnloadOwn(KelPage& page) = 0;
    virtual void pageShowKelVFS(KelPage& page) = 0;
    virtual void pageSendMasseges(KelPage& page, QString Msg) = 0;
    virtual void pageExportResults(KelPage& page, VariantArray& AttVData,
                                   VariantArray& ScoreMinimum, VariantArray& ScoreMiddle,
                                   VariantArray& ScoreMaximum, std::int16_t MaxVal,
                                   Variant& VFTechniqueID, VariantArray& SmpSize,
                                   VariantArray& SmpX, VariantArray& SmpY,
                                   VariantArray& VFunParA, VariantArray& VFunParB,
                                   VariantArray& VFunParC, VariantArray& VFunParD,
                                   VariantArray& VFunType) = 0;
    // Raised by the function view (frmVFS) when it is closed.
    virtual void pageUnloadKelVFS(KelPage& page) = 0;
};

class KelPage : public QDialog {
    Q_OBJECT
public:
    // Page id 0..8; the function view (frmVFS) has none (-1).
    static constexpr int kNoPageId = -1;

    explicit KelPage(int pageId, QWidget* parent = nullptr);
    ~KelPage() override;

    int pageId() const noexcept { return pageId_; }
    void setEventSink(PageEventSink* sink) noexcept { sink_ = sink; }
    PageEventSink* eventSink() const noexcept { return sink_; }

    // Runs the page's load handler once (the component calls it right after
    // creating the page). Errors reach the caller.
    void load();
    bool isLoaded() const noexcept { return loaded_; }

    // The page's position, its Left and Top.
    float pageLeft() const;
    float pageTop() const;

    // Runs a handler: a RuntimeError ends it and is reported to the user;
    // nothing escapes into the event loop.
    void handle(const std::function<void()>& handler);
    // True while load() or one of the page's handlers is on the stack; such
    // a page must not be deleted right away.
    bool isRunningHandler() const noexcept { return running_ > 0; }

protected:
    virtual void onLoad() {}
    // What closing the window raises; technique pages raise their own
    // unload event, the settings page UnloadKelmar.
    virtual void onClosed();

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;  // Escape does not close a page

    void raiseUnloadKelmar();
    void raiseHideForm(std::int16_t frmID);
    void raiseShowForm(std::int16_t frmID, float frmLeft, float frmTop);
    void raiseUnloadOwn();
    void raiseShowKelVFS();
    void raiseSendMasseges(const QString& msg);
    // Raises ExportResults with the wizard data's working record.
    void raiseExportResults();
    void raiseUnloadKelVFS();

private:
    int pageId_;
    PageEventSink* sink_ = nullptr;
    bool loaded_ = false;
    int running_ = 0;
};

}  // namespace kelmar
