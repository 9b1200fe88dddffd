// Opens the settings page on a small problem in a real window, for trying
// it by hand (not part of the test suite).
#include "pages/common/KelPage.h"
#include "pages/settings/frmKelSettings.h"

#include <kelmar/mdKelMain.h>

#include <QApplication>

#include <cstdio>

namespace {
struct PrintingSink : kelmar::PageEventSink {
    void pageUnloadKelmar(kelmar::KelPage& page) override {
        std::puts("UnloadKelmar");
        page.hide();
        QApplication::quit();
    }
    void pageHideForm(kelmar::KelPage&, std::int16_t& id) override { std::printf("HideForm %d\n", id); }
    void pageShowForm(kelmar::KelPage&, std::int16_t& id, float& l, float& t) override {
        std::printf("ShowForm %d %g %g\n", id, double(l), double(t));
    }
    void pageUnloadOwn(kelmar::KelPage&) override {}
    void pageShowKelVFS(kelmar::KelPage&) override {}
    void pageSendMasseges(kelmar::KelPage&, QString m) override { std::printf("%s\n", qPrintable(m)); }
    void pageExportResults(kelmar::KelPage&, kelmar::VariantArray&, kelmar::VariantArray&,
                           kelmar::VariantArray&, kelmar::VariantArray&, std::int16_t maxVal,
                           kelmar::Variant&, kelmar::VariantArray&, kelmar::VariantArray&,
                           kelmar::VariantArray&, kelmar::VariantArray&, kelmar::VariantArray&,
                           kelmar::VariantArray&, kelmar::VariantArray&, kelmar::VariantArray&) override {
        std::printf("ExportResults MaxVal %d\n", maxVal);
    }
    void pageUnloadKelVFS(kelmar::KelPage&) override {}
};
}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    using namespace kelmar;
    WizardData& w = wizardData();
    w.AltNum = 6;
    w.AttNum = 2;
    const double scores[6][2] = {{34000, 18000}, {29500, 22500}, {43000, 25000},
                                 {24000, 15000}, {37000, 21000}, {27000, 19500}};
    w.AltPScore.redim(0, 5, 0, 1);
    w.AttVData.redim(0, 5, 0, 1);
    for (int a = 0; a < 6; ++a)
        for (int j = 0; j < 2; ++j) w.AltPScore(a, j) = scores[a][j];
    for (VariantArray* a : {&w.AttName, &w.AttProperty, &w.InScoreMinimum, &w.InScoreMaximum,
                            &w.InScoreMiddle, &w.SmpSize, &w.VFTechniqueID, &w.InVFunType})
        a->redim(0, 1);
    w.SmpX.redim(0, 1, 0, 10);
    w.SmpY.redim(0, 1, 0, 10);
    const double lo[2] = {20000, 15000}, hi[2] = {45000, 25000};
    for (int j = 0; j < 2; ++j) {
        w.AttName(j) = j == 0 ? "Rent" : "Floor area";
        w.AttProperty(j) = std::int16_t(j == 0 ? 1 : 0);
        w.InScoreMinimum(j) = lo[j];
        w.InScoreMaximum(j) = hi[j];
        w.InScoreMiddle(j) = (lo[j] + hi[j]) / 2;
        w.SmpSize(j) = std::int16_t(5);
        w.InVFunType(j) = std::int16_t(0);
        for (int k = 0; k < 5; ++k) {
            w.SmpX(j, k) = lo[j] + (hi[j] - lo[j]) * k / 4;
            w.SmpY(j, k) = j == 0 ? 1 - k / 4.0 : k / 4.0;
        }
    }
    w.InSmpSize = w.SmpSize;
    w.InSmpX = w.SmpX;
    w.InSmpY = w.SmpY;
    w.InMaxVal = 100;
    w.SelTechnique = 0;

    PrintingSink sink;
    frmKelSettings page;
    page.setEventSink(&sink);
    page.load();
    page.move(330, 215);
    page.show();
    return QApplication::exec();
}
