#include "WizardTestSupport.h"

#include "model/Format.h"

namespace kelmar::wtest {
namespace {

TEST(FormatChecks, PatternsOfTheWizard) {
    using fmt::formatNumber;
    EXPECT_EQ(formatNumber(5, "0.##"), "5.");
    EXPECT_EQ(formatNumber(2.5, "0.##"), "2.5");
    EXPECT_EQ(formatNumber(0.004, "0.##"), "0.");
    EXPECT_EQ(formatNumber(3, "0.00"), "3.00");
    EXPECT_EQ(formatNumber(0.5, "0.000"), "0.500");
    EXPECT_EQ(formatNumber(1.0 / 3.0, "0.000000"), "0.333333");
    EXPECT_EQ(formatNumber(12345.5, "#,##0.###"), "12,345.5");
    EXPECT_EQ(formatNumber(1234567, "#,##0.###"), "1,234,567.");
    EXPECT_EQ(formatNumber(999.9996, "#,##0.###"), "1,000.");
    EXPECT_EQ(formatNumber(0.25, "#,##0.###"), "0.25");
    EXPECT_EQ(formatNumber(-1234.5, "#,##0.###"), "-1,234.5");
    EXPECT_EQ(formatNumber(7.6, "0"), "8");
    EXPECT_EQ(formatNumber(-0.4, "0"), "0");  // no negative zero
    EXPECT_EQ(formatNumber(-0.001, "0.00"), "0.00");
}

TEST(FormatChecks, RoundingIsHalfAwayFromZeroOnTheDecimalForm) {
    using fmt::formatNumber;
    EXPECT_EQ(formatNumber(2.675, "0.00"), "2.68");  // binary value lies below
    EXPECT_EQ(formatNumber(0.125, "0.00"), "0.13");
    EXPECT_EQ(formatNumber(-2.675, "0.00"), "-2.68");
    EXPECT_EQ(formatNumber(2.5, "0"), "3");
    EXPECT_EQ(formatNumber(1.005, "0.00"), "1.01");
    EXPECT_EQ(formatNumber(0.0005, "0.000"), "0.001");
    EXPECT_EQ(formatNumber(9.995, "0.00"), "10.00");
}

TEST(FormatChecks, ScoresAndCurrencyText) {
    EXPECT_EQ(fmt::formatScore(5), "5");
    EXPECT_EQ(fmt::formatScore(2.5), "2.5");
    EXPECT_EQ(fmt::formatScore(2.499), "2.5");
    EXPECT_EQ(fmt::formatScore(-3), "-3");
    EXPECT_EQ(fmt::formatScore(0.999), "1");

    EXPECT_EQ(fmt::currencyText(1.0 / 3.0), "0.3333");
    EXPECT_EQ(fmt::currencyText(2.5), "2.5");
    EXPECT_EQ(fmt::currencyText(5), "5");
    EXPECT_EQ(fmt::currencyText(-0.25), "-0.25");
    // Four decimals, a tie going to the even digit.
    EXPECT_EQ(fmt::currencyText(0.00015), "0.0002");
    EXPECT_EQ(fmt::currencyText(0.00025), "0.0002");
    EXPECT_EQ(fmt::currencyText(0.00004), "0");
}

TEST(FormatChecks, LeadingNumberOfText) {
    using fmt::leadingNumber;
    EXPECT_EQ(leadingNumber("12abc"), 12.0);
    EXPECT_EQ(leadingNumber("1.2.3"), 1.2);
    EXPECT_EQ(leadingNumber(""), 0.0);
    EXPECT_EQ(leadingNumber("abc"), 0.0);
    EXPECT_EQ(leadingNumber(" -3.5e2x"), -350.0);
    EXPECT_EQ(leadingNumber("  +7"), 7.0);
    EXPECT_EQ(leadingNumber(".5"), 0.5);
    EXPECT_EQ(leadingNumber("4e"), 4.0);  // an exponent without digits is left out
    EXPECT_EQ(leadingNumber("-"), 0.0);
    EXPECT_EQ(leadingNumber("1e999"), 0.0);
}

TEST(TrimChecks, RemovesOnePointOnly) {
    QString whole("5."), twice("5.."), decimals("2.5"), empty;
    EXPECT_EQ(TrimTrailingPoint(whole), "5");
    EXPECT_EQ(TrimTrailingPoint(twice), "5.");
    EXPECT_EQ(TrimTrailingPoint(decimals), "2.5");
    EXPECT_EQ(TrimTrailingPoint(empty), "");
    EXPECT_EQ(whole, "5.");  // the argument itself is left as it was
}

TEST(VariantChecks, EmptyAndTextConversions) {
    const Variant empty;
    EXPECT_EQ(empty.toDouble(), 0.0);
    EXPECT_EQ(empty.toString(), "");
    EXPECT_EQ(empty.toInteger(), 0);
    EXPECT_TRUE(empty == Variant(std::int16_t(0)));
    EXPECT_TRUE(empty == Variant(""));

    EXPECT_EQ(Variant("12.5").toDouble(), 12.5);
    EXPECT_EQ(Variant(" 7 ").toInteger(), 7);
    EXPECT_EQ(Variant("&H1F").toInteger(), 31);
    EXPECT_EQ(errorOf([] { (void)Variant("abc").toDouble(); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)Variant("").toDouble(); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)Variant(VariantArray(0, 1)).toDouble(); }),
              RuntimeError::TypeMismatch);
    EXPECT_EQ(Variant(true).toDouble(), -1.0);
    EXPECT_EQ(Variant(0.1f).toString(), "0.1");
    EXPECT_EQ(Variant(1.0 / 3.0).toString(), "0.333333333333333");
    // Numbers sort below any text.
    EXPECT_TRUE(Variant(1e9) < Variant("0"));
}

TEST(VariantChecks, IntegerConversionRoundsHalfToEven) {
    EXPECT_EQ(Variant(2.5).toInteger(), 2);
    EXPECT_EQ(Variant(3.5).toInteger(), 4);
    EXPECT_EQ(Variant(-2.5).toInteger(), -2);
    EXPECT_EQ(Variant("4.5").toInteger(), 4);
    EXPECT_EQ(Variant(32767.4).toInteger(), 32767);
    EXPECT_EQ(Variant(-32768.5).toInteger(), -32768);
    EXPECT_EQ(errorOf([] { (void)Variant(32767.5).toInteger(); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { (void)Variant(-32769.0).toInteger(); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { (void)checkedAdd(32767, 1); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { (void)checkedSub(-32768, 1); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { (void)csng(1e300); }), RuntimeError::Overflow);
}

TEST(VariantChecks, ArrayBoundsAndWholeArrayAssignment) {
    VariantArray a(0, 2), grid(0, 1, 0, 10), unallocated;
    EXPECT_EQ(errorOf([&] { (void)a(3); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)a(-1); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)grid(2, 0); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)grid(0, 11); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)grid(0); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)unallocated(0); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)unallocated.ubound(); }), RuntimeError::SubscriptOutOfRange);
    grid(1, 10) = 4.0;
    EXPECT_EQ(grid.data().back().toDouble(), 4.0);  // row-major storage

    VariantArray source(1, 3);
    source(3) = "x";
    a(0) = 1.0;
    a = source;
    EXPECT_EQ(a.lbound(), 1);
    EXPECT_EQ(a.ubound(), 3);
    EXPECT_EQ(a(3).toString(), "x");
    source(3) = "changed";  // a copy, not a view
    EXPECT_EQ(a(3).toString(), "x");

    // An array inside a Variant is copied deeply as well.
    Variant held(source), copy(held);
    held.toArray()(1) = 9.0;
    EXPECT_TRUE(copy.toArray()(1).isEmpty());

    VariantArray none(0, -1);
    EXPECT_EQ(none.size(), 0u);
    EXPECT_EQ(none.ubound(), -1);
}

}  // namespace
}  // namespace kelmar::wtest
