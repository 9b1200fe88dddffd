// The number formats, the lenient number reading and the attribute list
// (which needs the test program's QApplication).
#include "ModelFixture.h"
#include "model/Format.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace kelmar::test {
namespace {

TEST(NumberFormats, FormatsRoundHalfAwayFromZeroAndDropUnusedDecimals) {
    struct Case {
        double value;
        const char* format;
        const char* expected;
    };
    const Case cases[] = {
        // 2.675 rounds on its decimal form, away from zero; no negative zero.
        {2.675, "0.00", "2.68"}, {1.005, "0.00", "1.01"}, {-2.675, "0.00", "-2.68"},
        {-0.001, "0.00", "0.00"}, {0.0005, "0.000", "0.001"}, {-2.5, "0", "-3"},
        {-12.3456789, "0.000000", "-12.345679"}, {99.996, "0.00", "100.00"},
        {5.0, "0.##", "5."}, {5.10, "0.##", "5.1"}, {0.004, "0.##", "0."},
        {1234567.8915, "#,##0.###", "1,234,567.892"}, {-1234.5, "#,##0.###", "-1,234.5"},
        {999.9996, "#,##0.###", "1,000."},
    };
    for (const Case& c : cases)
        EXPECT_EQ(fmt::formatNumber(c.value, c.format), c.expected) << c.value << " " << c.format;

    EXPECT_EQ(fmt::formatScore(5.0), "5");
    EXPECT_EQ(fmt::formatScore(-0.125), "-0.13");
    EXPECT_EQ(fmt::formatScore(19.999), "20");
    // At most four decimals; a fifth of exactly 5 goes to the even fourth.
    EXPECT_EQ(fmt::currencyText(2.0 / 3.0), "0.6667");
    EXPECT_EQ(fmt::currencyText(100.0), "100");
    EXPECT_EQ(fmt::currencyText(0.00015), "0.0002");
    EXPECT_EQ(fmt::currencyText(0.00025), "0.0002");
    EXPECT_EQ(fmt::currencyText(-1234.56785), "-1234.5678");
    EXPECT_EQ(fmt::currencyText(-0.00004), "0");
    EXPECT_EQ(errorNumber([] { fmt::currencyText(1e15); }), RuntimeError::Overflow);
}

TEST(NumberFormats, LeadingNumberOfTheText) {
    struct Case {
        const char* text;
        double expected;
    };
    const Case cases[] = {
        {"12abc", 12.0}, {"1.2.3", 1.2}, {"  -3.5e2x", -350.0}, {"", 0.0}, {"abc", 0.0},
        {".5", 0.5}, {"+7", 7.0}, {"1 000", 1000.0} /* blanks anywhere are skipped */,
        {"1e", 1.0}, {"2E+", 2.0}, {"--3", 0.0}, {"-", 0.0}, {".", 0.0}, {"4,5", 4.0},
    };
    for (const Case& c : cases) EXPECT_EQ(fmt::leadingNumber(c.text), c.expected) << c.text;
}

TEST(NumberFormats, TrimTrailingPointRemovesOnePointOnly) {
    QString whole = "5.", twice = "5..", digits = "5.25", empty;
    EXPECT_EQ(TrimTrailingPoint(whole), "5");
    EXPECT_EQ(TrimTrailingPoint(twice), "5.");
    EXPECT_EQ(TrimTrailingPoint(digits), "5.25");
    EXPECT_EQ(TrimTrailingPoint(empty), "");
    EXPECT_EQ(whole, "5.");  // the argument itself is left as it was
}

TEST_F(ModelTest, AttributeListMarksDoneAttributesAndKeepsTheRow) {
    w().AttName(0) = QStringLiteral("Cost");
    w().AttName(1) = QStringLiteral("Safety");
    w().AttName(2) = QStringLiteral("Comfort");
    QComboBox list;
    FillAttributeList(list);
    list.setCurrentIndex(2);
    w().AttVFDone(2) = true;
    w().AttVFDone(0) = I16(-1);
    FillAttributeList(list);
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(0), QString::fromUtf8(" \u00A4 Cost"));
    EXPECT_EQ(list.itemText(1), "Safety");
    EXPECT_EQ(list.itemText(2), QString::fromUtf8(" \u00A4 Comfort"));
    EXPECT_EQ(list.currentIndex(), 2);
}

TEST(PageSupport, CentreFormOnScreenKeepsTheSize) {
    QWidget page;
    page.resize(301, 199);
    CentreFormOnScreen(page);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_EQ(page.size(), QSize(301, 199));
    EXPECT_EQ(page.x(), screen.x() + (screen.width() - 301) / 2);
    EXPECT_EQ(page.y(), screen.y() + (screen.height() - 199) / 2);
}

}  // namespace
}  // namespace kelmar::test
