// The classic rules of tagged values and bounded arrays.
#include <kelmar/Variant.h>

#include <gtest/gtest.h>

namespace kelmar {
namespace {

int errorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

TEST(VariantTest, ConversionsBetweenNumbersTextAndEmpty) {
    EXPECT_EQ(Variant().toDouble(), 0.0);
    EXPECT_EQ(Variant().toString(), QString());
    EXPECT_EQ(Variant(true).toInteger(), -1);
    EXPECT_EQ(Variant(false).toDouble(), 0.0);
    EXPECT_EQ(Variant(true).toString(), QStringLiteral("True"));
    EXPECT_EQ(Variant(" 12.5 ").toDouble(), 12.5);
    EXPECT_EQ(Variant("&H10").toInteger(), 16);
    EXPECT_EQ(Variant(0.1 + 0.2).toString(), QStringLiteral("0.3"));
    EXPECT_EQ(Variant(2.5f).toString(), QStringLiteral("2.5"));
    EXPECT_EQ(Variant(std::int16_t{-7}).toString(), QStringLiteral("-7"));
    EXPECT_TRUE(Variant("true").toBoolean());
    EXPECT_FALSE(Variant("0").toBoolean());
}

TEST(VariantTest, IntegerConversionRoundsHalfToEvenAndOverflows) {
    EXPECT_EQ(Variant(2.5).toInteger(), 2);
    EXPECT_EQ(Variant(3.5).toInteger(), 4);
    EXPECT_EQ(Variant(-2.5).toInteger(), -2);
    EXPECT_EQ(Variant("0.5").toInteger(), 0);
    EXPECT_EQ(Variant(1.5f).toInteger(), 2);
    EXPECT_EQ(Variant(32767.4).toInteger(), 32767);
    EXPECT_EQ(Variant(-32768.5).toInteger(), -32768);
    EXPECT_EQ(errorOf([] { (void)Variant(32767.5).toInteger(); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { (void)Variant(-32769.0).toInteger(); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { (void)Variant(1e300).toSingle(); }), RuntimeError::Overflow);
    EXPECT_EQ(clng(2147483647.4), 2147483647);
    EXPECT_EQ(errorOf([] { (void)clng(2147483647.5); }), RuntimeError::Overflow);
    EXPECT_EQ(checkedAdd(32766, 1), 32767);
    EXPECT_EQ(errorOf([] { (void)checkedAdd(32767, 1); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { (void)checkedSub(-32768, 1); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { (void)checkedMul(256, 128); }), RuntimeError::Overflow);
}

TEST(VariantTest, TextThatIsNoNumberIsATypeMismatch) {
    EXPECT_EQ(errorOf([] { (void)Variant("abc").toDouble(); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)Variant("").toInteger(); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)Variant(VariantArray(0, 1)).toDouble(); }),
              RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)Variant(1.0).toArray(); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { (void)(Variant(VariantArray(0, 1)) == Variant(1.0)); }),
              RuntimeError::TypeMismatch);
}

TEST(VariantTest, ComparisonsOfNumbersTextAndEmpty) {
    EXPECT_TRUE(Variant(std::int16_t{2}) == Variant(2.0));
    EXPECT_TRUE(Variant(true) == Variant(-1.0));
    EXPECT_TRUE(Variant(1.5) < Variant(2.0f));
    EXPECT_TRUE(Variant() == Variant(0.0));
    EXPECT_TRUE(Variant() == Variant(""));
    EXPECT_TRUE(Variant() < Variant("a"));
    EXPECT_TRUE(Variant(1e9) < Variant("1")) << "any number sorts below any text";
    EXPECT_TRUE(Variant("B") < Variant("a")) << "text compares by code unit";
    EXPECT_TRUE(Variant("abc") != Variant("ABC"));
    EXPECT_TRUE(Variant("b") >= Variant("b"));
}

TEST(VariantTest, ArrayBoundsAndSubscripts) {
    VariantArray none;
    EXPECT_FALSE(none.isAllocated());
    EXPECT_EQ(errorOf([&] { (void)none(0); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)none.ubound(); }), RuntimeError::SubscriptOutOfRange);

    VariantArray a(1, 3);
    EXPECT_EQ(a.size(), 3u);
    EXPECT_TRUE(a(1).isEmpty());
    EXPECT_EQ(errorOf([&] { (void)a(0); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)a(4); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)a(1, 1); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)a.lbound(2); }), RuntimeError::SubscriptOutOfRange);

    VariantArray m(0, 1, 0, 10);
    m(1, 10) = Variant(5.0);
    EXPECT_EQ(m.data().back().toDouble(), 5.0) << "row-major storage";
    EXPECT_EQ(errorOf([&] { (void)m(2, 0); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)m(0, 11); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { (void)m(0); }), RuntimeError::SubscriptOutOfRange);

    VariantArray empty(0, -1);
    EXPECT_TRUE(empty.isAllocated());
    EXPECT_EQ(empty.size(), 0u);
    EXPECT_EQ(empty.ubound(), -1);

    m.redim(0, 2);
    EXPECT_EQ(m.dimensions(), 1);
    EXPECT_TRUE(m(2).isEmpty()) << "redim drops the contents";
}

TEST(VariantTest, WholeArrayAssignmentTakesTheSourcesBoundsAndIsACopy) {
    VariantArray target(0, 10);
    VariantArray source(5, 6, -1, 0);
    source(5, -1) = Variant("x");
    target = source;
    EXPECT_EQ(target.dimensions(), 2);
    EXPECT_EQ(target.lbound(1), 5);
    EXPECT_EQ(target.lbound(2), -1);
    EXPECT_EQ(target(5, -1).toString(), QStringLiteral("x"));
    source(5, -1) = Variant("y");
    EXPECT_EQ(target(5, -1).toString(), QStringLiteral("x"));

    // A Variant holding an array holds its own copy too.
    Variant held(source);
    source(6, 0) = Variant(1.0);
    EXPECT_TRUE(held.toArray()(6, 0).isEmpty());
    Variant copy = held;
    copy.toArray()(6, 0) = Variant(2.0);
    EXPECT_TRUE(held.toArray()(6, 0).isEmpty());
}

TEST(VariantTest, RuntimeErrorsCarryTheClassicNumbersAndTexts) {
    EXPECT_EQ(RuntimeError(6).description(), QStringLiteral("Overflow"));
    EXPECT_EQ(RuntimeError(9).description(), QStringLiteral("Subscript out of range"));
    EXPECT_EQ(RuntimeError(13).description(), QStringLiteral("Type mismatch"));
    EXPECT_EQ(RuntimeError(91).description(),
              QStringLiteral("Object variable or With block variable not set"));
    EXPECT_STREQ(RuntimeError(6).what(), "Run-time error 6: Overflow");
}

}  // namespace
}  // namespace kelmar
