#include "WizardTestSupport.h"

#include <QComboBox>

namespace kelmar::wtest {
namespace {

using TransferChecks = WizardTest;

TEST_F(TransferChecks, HostBoundsReplaceThePreallocatedShape) {
    Variant dir("C:/host");
    VariantArray scores(1, 2, 1, 3), values(0, 1, 0, 2), names(1, 3), defs(0, 2), props(0, 2);
    scores(2, 3) = 42.0;
    names(3) = "Comfort";
    TransferProblemData(dir, 7, 2, 3, scores, values, names, defs, props);
    EXPECT_EQ(w().QUARNDir, "C:/host");
    EXPECT_EQ(w().SelMCDAMethod, 7);
    EXPECT_EQ(w().AltNum, 2);
    EXPECT_EQ(w().AttNum, 3);
    EXPECT_EQ(w().AltPScore.lbound(1), 1);
    EXPECT_EQ(w().AltPScore.ubound(2), 3);
    EXPECT_EQ(w().AltPScore(2, 3).toDouble(), 42.0);
    EXPECT_EQ(w().AttName.lbound(), 1);
    EXPECT_EQ(w().AttName(3).toString(), "Comfort");
    EXPECT_EQ(errorOf([&] { (void)w().AttName(0); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(w().AttVData.ubound(2), 2);
}

TEST_F(TransferChecks, AttributeCountOverflowRaisesError) {
    Variant dir;
    VariantArray a(0, 0, 0, 0), b(0, 0, 0, 0), n(0, 0), d(0, 0), p(0, 0);
    EXPECT_EQ(errorOf([&] { TransferProblemData(dir, 0, 1, -32768, a, b, n, d, p); }),
              RuntimeError::Overflow);
    EXPECT_EQ(errorOf([&] { TransferProblemData(dir, 0, -32768, 1, a, b, n, d, p); }),
              RuntimeError::Overflow);
    // No guard for zero: the allocation is just empty.
    EXPECT_EQ(errorOf([&] { TransferProblemData(dir, 0, 0, 0, a, b, n, d, p); }), 0);

    w().AttNum = -32768;
    VariantArray v(0, 0), xy(0, 0, 0, 10);
    EXPECT_EQ(errorOf([&] {
                  TransferValueFunctions(v, v, v, 100, v, v, xy, xy, v, v, v, v, v);
              }),
              RuntimeError::Overflow);
}

TEST_F(TransferChecks, ValueFunctionsResetOnlyTheWorkingSamples) {
    w().AttNum = 2;
    // What the working record held before.
    w().ScoreMinimum.redim(0, 1);
    w().ScoreMinimum(0) = 3.0;
    w().VFunParA.redim(0, 1);
    w().VFunParA(1) = 0.25;
    w().VFunType.redim(0, 1);
    w().VFunType(1) = std::int16_t(2);
    w().MaxVal = 1;

    VariantArray mins(0, 1), mids(0, 1), maxs(0, 1), ids(0, 1), sizes(0, 1), xs(0, 1, 0, 4),
        ys(0, 1, 0, 4), pa(0, 1), pb(0, 1), pc(0, 1), pd(0, 1), types(0, 1);
    mins(0) = 0.0;
    maxs(0) = 10.0;
    ids(1) = std::int16_t(kBisection);
    sizes(1) = std::int16_t(3);
    xs(1, 2) = 10.0;
    ys(1, 2) = 1.0;
    pa(1) = 0.75;
    types(1) = std::int16_t(0);
    TransferValueFunctions(mins, mids, maxs, 100, ids, sizes, xs, ys, pa, pb, pc, pd, types);

    EXPECT_EQ(w().InMaxVal, 100);
    EXPECT_EQ(w().MaxVal, 1);
    EXPECT_EQ(w().InScoreMaximum(0).toDouble(), 10.0);
    EXPECT_EQ(w().InVFunParA(1).toDouble(), 0.75);
    EXPECT_EQ(w().InVFunType(1).toInteger(), 0);
    // The working samples are the host's at once, with the host's bounds...
    EXPECT_EQ(w().VFTechniqueID(1).toInteger(), kBisection);
    EXPECT_EQ(w().SmpSize(1).toInteger(), 3);
    EXPECT_EQ(w().SmpX.ubound(2), 4);
    EXPECT_EQ(w().SmpX(1, 2).toDouble(), 10.0);
    EXPECT_EQ(w().SmpY(1, 2).toDouble(), 1.0);
    // ...as copies that the pages can edit without touching the originals.
    w().SmpX(1, 2) = 99.0;
    EXPECT_EQ(w().InSmpX(1, 2).toDouble(), 10.0);
    // The range, the parameters and the function type are left as they were.
    EXPECT_EQ(w().ScoreMinimum(0).toDouble(), 3.0);
    EXPECT_EQ(w().VFunParA(1).toDouble(), 0.25);
    EXPECT_EQ(w().VFunType(1).toInteger(), 2);
}

using AttributeListChecks = WizardTest;

TEST_F(AttributeListChecks, DoneAttributesAreMarkedAndTheRowIsKept) {
    allocateAttributes(3);
    w().AttName(0) = "Price";
    w().AttName(1) = "Range";
    w().AttName(2) = "Comfort";
    for (int i = 0; i < 3; ++i) w().AttVFDone(i) = false;
    QComboBox list;
    FillAttributeList(list);
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(1), "Range");
    EXPECT_EQ(list.currentIndex(), -1);

    list.setCurrentIndex(2);
    w().AttVFDone(1) = true;
    w().AttVFDone(2) = true;
    FillAttributeList(list);
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(0), "Price");
    EXPECT_EQ(list.itemText(1), QString(" ") + QChar(0x00A4) + QString(" Range"));
    EXPECT_EQ(list.itemText(2), QString::fromUtf8(" \xC2\xA4 Comfort"));
    EXPECT_EQ(list.currentIndex(), 2);
}

}  // namespace
}  // namespace kelmar::wtest
