// The component class that a host creates and drives.
//
// Calling order: create, TransferData, TransferVFunData, ShowKelmar. While
// the wizard runs the host receives SendMasseges notices, ExportResults (once
// per Finish) and finally UnloadKelmar, on which it calls the method
// UnloadKelmar. Everything runs on the host's user-interface thread; a
// QApplication must exist.
#pragma once

#include <kelmar/Variant.h>

#include <cstdint>
#include <functional>
#include <memory>

#if defined(KELMAR_BUILDING_LIBRARY)
#define KELMAR_API __attribute__((visibility("default")))
#else
#define KELMAR_API
#endif

namespace kelmar {

// The event interface, in dispatch order 1 to 4. Override what you need.
class KELMAR_API KelmarEvents {
public:
    virtual ~KelmarEvents();

    virtual void UnloadKelmar() {}
    virtual void UnloadKelVFS() {}
    virtual void SendMasseges(QString Msg) { (void)Msg; }
    virtual void ExportResults(VariantArray& AttVData, VariantArray& ScoreMinimum,
                               VariantArray& ScoreMiddle, VariantArray& ScoreMaximum,
                               std::int16_t MaxVal, Variant& VFTechniqueID, VariantArray& SmpSize,
                               VariantArray& SmpX, VariantArray& SmpY, VariantArray& VFunParA,
                               VariantArray& VFunParB, VariantArray& VFunParC,
                               VariantArray& VFunParD, VariantArray& VFunType);
};

// Opens the host's help file at a context number. The default opens the file
// with the desktop's viewer when it exists and otherwise does nothing visible.
using HelpHandler = std::function<void(const QString& helpFile, int contextId)>;

class KELMAR_API KelmarDll {
public:
    KelmarDll();
    ~KelmarDll();
    KelmarDll(const KelmarDll&) = delete;
    KelmarDll& operator=(const KelmarDll&) = delete;

    // 1
    void ShowKelmar();
    // 2
    void TransferData(Variant& QUARNDir, std::int16_t SelMCDAMethod, std::int16_t AltNum,
                      std::int16_t AttNum, VariantArray& AltPScore, VariantArray& AttVData,
                      VariantArray& AttName, VariantArray& AttDefinition,
                      VariantArray& AttProperty);
    // 3
    void TransferVFunData(VariantArray& ScoreMinimum, VariantArray& ScoreMiddle,
                          VariantArray& ScoreMaximum, std::int16_t MaxVal,
                          VariantArray& VFTechniqueID, VariantArray& SmpSize, VariantArray& SmpX,
                          VariantArray& SmpY, VariantArray& VFunParA, VariantArray& VFunParB,
                          VariantArray& VFunParC, VariantArray& VFunParD, VariantArray& VFunType);
    // 4
    void HideForm(std::int16_t& frmID);
    // 5
    void ShowForm(std::int16_t& frmID, float& frmLeft, float& frmTop);
    // 6
    void UnloadKelmar();
    // 7
    void UnloadKelVFS();

    // Attach the host's event sink (not owned; nullptr detaches).
    void setEventSink(KelmarEvents* sink);
    // Replace how help is opened; an empty handler restores the default.
    static void setHelpHandler(HelpHandler handler);

    class Impl;

private:
    std::unique_ptr<Impl> d_;
};

}  // namespace kelmar

// Factory entry points for hosts that load the library with dlopen.
extern "C" {
KELMAR_API kelmar::KelmarDll* KelmarCreate();
KELMAR_API void KelmarDestroy(kelmar::KelmarDll* component);
}
