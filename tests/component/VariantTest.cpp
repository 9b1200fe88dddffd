// The classic rules of tagged values and bounded arrays.
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
    for (const auto& c : cases) EXPECT_EQ(errorOf(c.f), c.error) << c.what;
}

TEST(VariantTest, ComparisonsOfNumbersTextAndEmpty) {
    const struct { const char* what; bool holds; } cases[] = {
        {"2 = 2.0", Variant(std::int16_t{2}) == Variant(2.0)},
        {"Empty = 0", Variant() == Variant(0.0)},
        {"Empty = \"\"", Variant() == Variant("")},
        {"Empty < \"a\"", Variant() < Variant("a")},
        {"any number sorts below any text", Variant(1e9) < Variant("1")},
        {"text compares by code unit", Variant("B") < Variant("a")},
    };
    for (const auto& c : cases) EXPECT_TRUE(c.holds) << c.what;
}

TEST(VariantTest, AssignmentCopiesTheSourcesShapeAndContents) {
    VariantArray target(0, 10), source(5, 6, -1, 0);
    source(5, -1) = Variant("x");
    target = source;
    EXPECT_EQ(target.lbound(1), 5);
    EXPECT_EQ(target.lbound(2), -1);
    source(5, -1) = Variant("y");
    EXPECT_EQ(target(5, -1).toString(), QStringLiteral("x"));
    // A Variant holding an array holds its own copy too.
    Variant held(source);
    Variant copy = held;
    copy.toArray()(6, 0) = Variant(2.0);
    EXPECT_TRUE(held.toArray()(6, 0).isEmpty());
    source.redim(5, 6);
    EXPECT_TRUE(source(5).isEmpty()) << "redim drops the contents";
    EXPECT_EQ(held.toArray()(5, -1).toString(), QStringLiteral("y"));
}

}  // namespace
}  // namespace kelmartest
