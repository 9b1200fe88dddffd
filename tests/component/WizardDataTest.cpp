// What TransferData and TransferVFunData store in the wizard data.
#include "ComponentFixture.h"

namespace kelmartest {
namespace {

VariantArray filled(int lo, int hi, double base) {
    VariantArray a(lo, hi);
    for (int i = lo; i <= hi; ++i) a(i) = Variant(base + i);
    return a;
}

VariantArray filled2(int lo1, int hi1, int lo2, int hi2, double base) {
    VariantArray a(lo1, hi1, lo2, hi2);
    for (int i = lo1; i <= hi1; ++i)
        for (int j = lo2; j <= hi2; ++j) a(i, j) = Variant(base + 100 * i + j);
    return a;
}

struct HostFunctions {
    VariantArray lo = filled(0, 1, 10), mid = filled(0, 1, 20), hi = filled(0, 1, 30),
                 tech = filled(0, 1, 3), size = filled(0, 1, 5), x = filled2(0, 1, 0, 10, 0),
                 y = filled2(0, 1, 0, 10, 0.5), a = filled(0, 1, 1), b = filled(0, 1, 2),
                 c = filled(0, 1, 3), d = filled(0, 1, 4), type = filled(0, 1, 1);
    void transfer(std::int16_t maxVal = 100) {
        TransferValueFunctions(lo, mid, hi, maxVal, tech, size, x, y, a, b, c, d, type);
    }
};

class WizardDataTest : public ComponentTest {};

TEST_F(WizardDataTest, TransferDataCopiesEveryArgumentThroughTheComponent) {
    KelmarDll dll;
    Variant dir(QStringLiteral("C:\\QUARN"));
    VariantArray scores = filled2(0, 3, 0, 2, 1), values = filled2(0, 3, 0, 2, 2),
                 names = filled(0, 2, 0), defs = filled(0, 2, 10), props = filled(0, 2, 20);
    dll.TransferData(dir, 7, 4, 3, scores, values, names, defs, props);
    const WizardData& w = wizardData();
    EXPECT_EQ(w.QUARNDir, QStringLiteral("C:\\QUARN"));
    EXPECT_EQ(w.SelMCDAMethod, 7);
    EXPECT_EQ(w.AltNum, 4);
    EXPECT_EQ(w.AttNum, 3);
    EXPECT_EQ(w.AltPScore(3, 2).toDouble(), 303.0);
    EXPECT_EQ(w.AttVData(2, 1).toDouble(), 203.0);
    EXPECT_EQ(w.AttName(2).toDouble(), 2.0);
    EXPECT_EQ(w.AttDefinition(0).toDouble(), 10.0);
    EXPECT_EQ(w.AttProperty(1).toDouble(), 21.0);

    // The wizard keeps its own copies.
    scores(0, 0) = Variant(-1.0);
    names(0) = Variant(QStringLiteral("changed"));
    EXPECT_EQ(w.AltPScore(0, 0).toDouble(), 1.0);
    EXPECT_EQ(w.AttName(0).toDouble(), 0.0);
}

TEST_F(WizardDataTest, HostBoundsReplaceThePreallocatedShape) {
    Variant dir(QStringLiteral("d"));
    VariantArray scores = filled2(1, 2, 1, 5, 0), values = filled2(0, 0, 0, 0, 0),
                 names = filled(1, 4, 0), defs, props = filled(-2, 0, 0);
    TransferProblemData(dir, 1, 2, 2, scores, values, names, defs, props);
    const WizardData& w = wizardData();
    EXPECT_EQ(w.AltPScore.lbound(1), 1);
    EXPECT_EQ(w.AltPScore.ubound(2), 5);
    EXPECT_EQ(w.AttVData.ubound(1), 0);
    EXPECT_EQ(w.AttName.lbound(), 1);
    EXPECT_EQ(w.AttName.ubound(), 4);
    EXPECT_FALSE(w.AttDefinition.isAllocated()) << "an unallocated host array is copied as it is";
    EXPECT_EQ(w.AttProperty.lbound(), -2);
    EXPECT_THROW(static_cast<void>(w.AltPScore(0, 0)), RuntimeError);
}

TEST_F(WizardDataTest, AttributeCountsDecideTheAllocationAndOverflowAtTheLowestValue) {
    Variant dir;
    VariantArray empty;
    // No attributes: empty arrays. The host arrays are then copied over them.
    TransferProblemData(dir, 0, 0, 0, empty, empty, empty, empty, empty);
    EXPECT_EQ(wizardData().AttNum, 0);

    VariantArray one = filled(0, 0, 0);
    try {
        TransferProblemData(dir, 0, 1, -32768, one, one, one, one, one);
        FAIL() << "AttNum - 1 leaves the 16-bit range";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeError::Overflow);
    }
    EXPECT_EQ(wizardData().AttNum, -32768) << "the counts are stored before the allocation";

    HostFunctions f;
    try {
        f.transfer();
        FAIL() << "TransferVFunData sizes by AttNum - 1 as well";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeError::Overflow);
    }
}

TEST_F(WizardDataTest, TransferVFunDataKeepsTheHostsFunctionsAndResetsTheWorkingPoints) {
    WizardData& w = wizardData();
    // State a technique page might have left behind.
    w.VFunParA = filled(0, 1, 900);
    w.VFunType = filled(0, 1, 0);
    w.ScoreMinimum = filled(0, 1, -5);
    w.SmpSize(0) = Variant(std::int16_t{11});

    HostFunctions f;
    KelmarDll dll;
    dll.TransferVFunData(f.lo, f.mid, f.hi, 1, f.tech, f.size, f.x, f.y, f.a, f.b, f.c, f.d,
                         f.type);
    EXPECT_EQ(w.InMaxVal, 1);
    EXPECT_EQ(w.InScoreMinimum(1).toDouble(), 11.0);
    EXPECT_EQ(w.InScoreMiddle(0).toDouble(), 20.0);
    EXPECT_EQ(w.InScoreMaximum(1).toDouble(), 31.0);
    EXPECT_EQ(w.InVFunParD(1).toDouble(), 5.0);
    EXPECT_EQ(w.InVFunType(0).toDouble(), 1.0);
    // The working points follow the host at once...
    EXPECT_EQ(w.VFTechniqueID(1).toDouble(), 4.0);
    EXPECT_EQ(w.SmpSize(0).toDouble(), 5.0);
    EXPECT_EQ(w.SmpX(1, 10).toDouble(), 110.0);
    EXPECT_EQ(w.SmpY(1, 3).toDouble(), 103.5);
    // ...the parameters, the type and the working ranges do not.
    EXPECT_EQ(w.VFunParA(0).toDouble(), 900.0);
    EXPECT_EQ(w.VFunType(1).toDouble(), 1.0);
    EXPECT_EQ(w.ScoreMinimum(0).toDouble(), -5.0);
    EXPECT_EQ(w.MaxVal, 100) << "the working value range is the settings page's";

    // The working copies are independent of the "In" arrays.
    w.SmpX(0, 0) = Variant(-1.0);
    EXPECT_EQ(w.InSmpX(0, 0).toDouble(), 0.0);
    // Beyond the last attribute the sample arrays raise error 9.
    EXPECT_THROW(static_cast<void>(w.SmpX(2, 0)), RuntimeError);
    EXPECT_THROW(static_cast<void>(w.SmpY(0, 11)), RuntimeError);
}

}  // namespace
}  // namespace kelmartest
