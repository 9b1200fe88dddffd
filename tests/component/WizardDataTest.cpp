// What TransferData and TransferVFunData store in the wizard data.
#include "ComponentFixture.h"

#include <algorithm>
#include <tuple>

namespace kelmartest {
namespace {

// lo..hi, or lo..hi by 0..hi2; cell (i, j) holds base + 100 * i + j.
VariantArray filled(int lo, int hi, double base, int hi2 = -1) {
    VariantArray a = hi2 < 0 ? VariantArray(lo, hi) : VariantArray(lo, hi, 0, hi2);
    for (int i = lo; i <= hi; ++i)
        for (int j = 0; j <= std::max(hi2, 0); ++j) (hi2 < 0 ? a(i) : a(i, j)) = Variant(base + 100 * i + j);
    return a;
}

struct HostFunctions {
    VariantArray lo = filled(0, 1, 10), mid = filled(0, 1, 20), hi = filled(0, 1, 30),
                 tech = filled(0, 1, 3), size = filled(0, 1, 5), x = filled(0, 1, 0, 10),
                 y = filled(0, 1, 0.5, 10), a = filled(0, 1, 1), b = filled(0, 1, 2),
                 c = filled(0, 1, 3), d = filled(0, 1, 4), type = filled(0, 1, 1);
    void transfer(KelmarDll& dll, std::int16_t maxVal) {
        dll.TransferVFunData(lo, mid, hi, maxVal, tech, size, x, y, a, b, c, d, type);
    }
};

using WizardDataTest = ComponentTest;

TEST_F(WizardDataTest, TransferDataKeepsCopiesWithTheHostsBounds) {
    wizardData().AltPScore = VariantArray(0, 9, 0, 9);  // a shape prepared earlier
    Variant dir(QStringLiteral("C:\\QUARN"));
    VariantArray scores = filled(1, 2, 1, 5), values = filled(0, 3, 2, 2),
                 names = filled(1, 4, 0), defs, props = filled(-2, 0, 20);
    dll.TransferData(dir, 7, 2, 3, scores, values, names, defs, props);
    const WizardData& w = wizardData();
    EXPECT_EQ(std::make_tuple(w.SelMCDAMethod, w.AltNum, w.AttNum), std::make_tuple(7, 2, 3));
    EXPECT_EQ(w.AltPScore(2, 5).toDouble(), 206.0);
    EXPECT_EQ(w.AttProperty(-1).toDouble(), -80.0);
    EXPECT_FALSE(w.AttDefinition.isAllocated()) << "an unallocated host array is copied as it is";
    EXPECT_EQ(errorNumber([&] { (void)w.AltPScore(0, 0); }), 9) << "the host's bounds, not the earlier ones";
    scores(1, 1) = Variant(-1.0);
    EXPECT_EQ(w.AltPScore(1, 1).toDouble(), 102.0) << "a copy";
}

TEST_F(WizardDataTest, TheLowestAttributeCountOverflowsInBothTransfers) {
    Variant dir;
    VariantArray one = filled(0, 0, 0);
    EXPECT_EQ(errorNumber([&] { dll.TransferData(dir, 0, 1, -32768, one, one, one, one, one); }), 6);
    EXPECT_EQ(wizardData().AttNum, -32768) << "the counts are stored before the allocation";
    HostFunctions f;
    EXPECT_EQ(errorNumber([&] { f.transfer(dll, 100); }), 6) << "sized by AttNum - 1 as well";
}

// The host's functions reset the working points at once, and leave the
// parameters, the type, the working ranges and MaxVal as a page left them.
TEST_F(WizardDataTest, TransferVFunDataResetsTheWorkingPointsAndNotTheParameters) {
    WizardData& w = wizardData();
    w.VFunParA = filled(0, 1, 900);
    w.VFunType = filled(0, 1, 0);
    w.ScoreMinimum = filled(0, 1, -5);
    w.MaxVal = 100;
    w.SmpX = filled(0, 1, -50, 10);
    HostFunctions f;
    f.transfer(dll, 1);
    EXPECT_EQ(std::make_tuple(w.InMaxVal, w.InVFunParD(1).toDouble(), w.VFTechniqueID(1).toDouble(),
                              w.SmpSize(0).toDouble(), w.SmpX(1, 10).toDouble(), w.SmpY(1, 3).toDouble()),
              std::make_tuple(std::int16_t{1}, 104.0, 103.0, 5.0, 110.0, 103.5));
    EXPECT_EQ(std::make_tuple(w.VFunParA(0).toDouble(), w.VFunType(0).toDouble(), w.ScoreMinimum(0).toDouble(), w.MaxVal),
              std::make_tuple(900.0, 0.0, -5.0, std::int16_t{100}));
    w.SmpX(0, 0) = Variant(-1.0);
    EXPECT_EQ(w.InSmpX(0, 0).toDouble(), 0.0) << "the working copies are independent";
}

}  // namespace
}  // namespace kelmartest
