// The number formats and the lenient number reading. (The attribute list's
// marks for done attributes: the Linear and Restore table of the pages.)
#include "ModelFixture.h"
#include "model/Format.h"

namespace kelmar::test {
namespace {

TEST(NumberFormats, RoundHalfAwayFromZeroAndDropUnusedDecimals) {
    // "score" and "currency" name those routines; anything else is a pattern.
    const struct { double value; const char* format; const char* expected; } cases[] = {
        // 2.675 rounds on its decimal form, away from zero; no negative zero.
        {2.675, "0.00", "2.68"}, {1.005, "0.00", "1.01"}, {-2.675, "0.00", "-2.68"},
        {-0.001, "0.00", "0.00"}, {0.0005, "0.000", "0.001"}, {-2.5, "0", "-3"},
        {-12.3456789, "0.000000", "-12.345679"}, {99.996, "0.00", "100.00"},
        {5.0, "0.##", "5."}, {5.10, "0.##", "5.1"}, {0.004, "0.##", "0."},
        {1234567.8915, "#,##0.###", "1,234,567.892"}, {-1234.5, "#,##0.###", "-1,234.5"},
        {999.9996, "#,##0.###", "1,000."},
        {5.0, "score", "5"}, {-0.125, "score", "-0.13"}, {19.999, "score", "20"},
        // At most four decimals; a fifth of exactly 5 goes to the even fourth.
        {2.0 / 3.0, "currency", "0.6667"}, {100.0, "currency", "100"},
        {0.00015, "currency", "0.0002"}, {0.00025, "currency", "0.0002"},
        {-1234.56785, "currency", "-1234.5678"}, {-0.00004, "currency", "0"},
    };
    for (const auto& c : cases) {
        const QString format = QString::fromLatin1(c.format);
        const QString text = format == "score"      ? fmt::formatScore(c.value)
                             : format == "currency" ? fmt::currencyText(c.value)
                                                    : fmt::formatNumber(c.value, format);
        EXPECT_EQ(text, c.expected) << c.value << " " << c.format;
    }
    EXPECT_EQ(errorNumber([] { fmt::currencyText(1e15); }), RuntimeError::Overflow);
}

TEST(NumberFormats, LeadingNumberOfTheText) {
    const struct { const char* text; double expected; } cases[] = {
        {"12abc", 12.0}, {"1.2.3", 1.2}, {"  -3.5e2x", -350.0}, {"", 0.0}, {"abc", 0.0},
        {".5", 0.5}, {"+7", 7.0}, {"1 000", 1000.0} /* blanks anywhere are skipped */,
        {"1e", 1.0}, {"2E+", 2.0}, {"--3", 0.0}, {"-", 0.0}, {".", 0.0}, {"4,5", 4.0},
    };
    for (const auto& c : cases) EXPECT_EQ(fmt::leadingNumber(c.text), c.expected) << c.text;
}

}  // namespace
}  // namespace kelmar::test
