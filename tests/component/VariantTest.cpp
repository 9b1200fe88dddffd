// Tagged values and bounded arrays: conversions with their rounding, and the
// errors they raise.
#include "ComponentFixture.h"

namespace kelmartest {
namespace {

TEST(VariantTest, ConversionsOfNumbersTextAndEmptyRoundHalfToEven) {
    const struct { Variant v; double number; std::int16_t integer; QString text; } cases[] = {
        {Variant(), 0.0, 0, QString()},
        {Variant(true), -1.0, -1, QStringLiteral("True")},
        {Variant(0.1 + 0.2), 0.1 + 0.2, 0, QStringLiteral("0.3")},
        {Variant(2.5), 2.5, 2, QStringLiteral("2.5")},
        {Variant(3.5), 3.5, 4, QStringLiteral("3.5")},
        {Variant(32767.4), 32767.4, 32767, QStringLiteral("32767.4")},
        {Variant(-32768.5), -32768.5, -32768, QStringLiteral("-32768.5")},
        {Variant(" 12.5 "), 12.5, 12, QStringLiteral(" 12.5 ")},
        {Variant("&H10"), 16.0, 16, QStringLiteral("&H10")},
        {Variant("-1.5E3"), -1500.0, -1500, QStringLiteral("-1.5E3")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        EXPECT_EQ(c.v.toDouble(), c.number);
        EXPECT_EQ(c.v.toInteger(), c.integer);
        EXPECT_EQ(c.v.toString(), c.text);
    }
}

TEST(VariantTest, OverflowTypeMismatchAndSubscriptErrors) {
    VariantArray none, a(1, 3), m(0, 1, 0, 10);
    const struct { const char* what; std::function<void()> f; int error; } cases[] = {
        {"32767.5 to Integer", [] { (void)Variant(32767.5).toInteger(); }, RuntimeError::Overflow},
        {"1e300 to Single", [] { (void)Variant(1e300).toSingle(); }, RuntimeError::Overflow},
        {"clng", [] { (void)clng(2147483647.5); }, RuntimeError::Overflow},
        {"add", [] { (void)checkedAdd(32767, 1); }, RuntimeError::Overflow},
        {"abc", [] { (void)Variant("abc").toDouble(); }, RuntimeError::TypeMismatch},
        {"empty text", [] { (void)Variant("").toInteger(); }, RuntimeError::TypeMismatch},
        {"inf", [] { (void)Variant("inf").toDouble(); }, RuntimeError::TypeMismatch},
        {"array as number", [] { (void)Variant(VariantArray(0, 1)).toDouble(); }, RuntimeError::TypeMismatch},
        {"number as array", [] { (void)Variant(1.0).toArray(); }, RuntimeError::TypeMismatch},
        {"unallocated", [&] { (void)none(0); }, RuntimeError::SubscriptOutOfRange},
        {"below lbound", [&] { (void)a(0); }, RuntimeError::SubscriptOutOfRange},
        {"above ubound", [&] { (void)a(4); }, RuntimeError::SubscriptOutOfRange},
        {"too few subscripts", [&] { (void)m(0); }, RuntimeError::SubscriptOutOfRange},
    };
    for (const auto& c : cases) EXPECT_EQ(errorNumber(c.f), c.error) << c.what;
}

}  // namespace
}  // namespace kelmartest
