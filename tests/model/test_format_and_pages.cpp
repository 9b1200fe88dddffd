// The number formats, the lenient number reading and the page support
// routines (these need the test program's QApplication).
#include "ModelFixture.h"
#include "model/Format.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace kelmar::test {
namespace {

using fmt::currencyText;
using fmt::formatNumber;
using fmt::formatScore;
using fmt::leadingNumber;

TEST(NumberFormats, FixedDecimals) {
    EXPECT_EQ(formatNumber(2.675, "0.00"), "2.68");  // decimal form 2.675, half up
    EXPECT_EQ(formatNumber(1.005, "0.00"), "1.01");
    EXPECT_EQ(formatNumber(-2.675, "0.00"), "-2.68");  // away from zero
    EXPECT_EQ(formatNumber(0.0, "0.00"), "0.00");
    EXPECT_EQ(formatNumber(-0.001, "0.00"), "0.00");  // no negative zero
    EXPECT_EQ(formatNumber(0.1234, "0.000"), "0.123");
    EXPECT_EQ(formatNumber(0.0005, "0.000"), "0.001");
    EXPECT_EQ(formatNumber(1.0 / 3.0, "0.000000"), "0.333333");
    EXPECT_EQ(formatNumber(-12.3456789, "0.000000"), "-12.345679");
    EXPECT_EQ(formatNumber(2.5, "0"), "3");
    EXPECT_EQ(formatNumber(-2.5, "0"), "-3");
    EXPECT_EQ(formatNumber(99.996, "0.00"), "100.00");
    EXPECT_EQ(formatNumber(1234567.0, "0.00"), "1234567.00");
}

TEST(NumberFormats, OptionalDecimalsAndGrouping) {
    EXPECT_EQ(formatNumber(5.0, "0.##"), "5.");
    EXPECT_EQ(formatNumber(5.10, "0.##"), "5.1");
    EXPECT_EQ(formatNumber(0.125, "0.##"), "0.13");
    EXPECT_EQ(formatNumber(0.004, "0.##"), "0.");
    EXPECT_EQ(formatNumber(1234567.8915, "#,##0.###"), "1,234,567.892");
    EXPECT_EQ(formatNumber(1000.0, "#,##0.###"), "1,000.");
    EXPECT_EQ(formatNumber(-1234.5, "#,##0.###"), "-1,234.5");
    EXPECT_EQ(formatNumber(0.25, "#,##0.###"), "0.25");
    EXPECT_EQ(formatNumber(999.9996, "#,##0.###"), "1,000.");

    EXPECT_EQ(formatScore(5.0), "5");
    EXPECT_EQ(formatScore(2.5), "2.5");
    EXPECT_EQ(formatScore(-0.125), "-0.13");
    EXPECT_EQ(formatScore(19.999), "20");
}

TEST(NumberFormats, CurrencyTextHasAtMostFourDecimals) {
    EXPECT_EQ(currencyText(2.5), "2.5");
    EXPECT_EQ(currencyText(1.0 / 3.0), "0.3333");
    EXPECT_EQ(currencyText(2.0 / 3.0), "0.6667");
    EXPECT_EQ(currencyText(100.0), "100");
    EXPECT_EQ(currencyText(-1.23456), "-1.2346");
    EXPECT_EQ(currencyText(0.0), "0");
    EXPECT_EQ(currencyText(1234567.0), "1234567");
    // A fifth decimal of exactly 5 goes to the even fourth, as the
    // currency conversion rounds.
    EXPECT_EQ(currencyText(0.00005), "0");
    EXPECT_EQ(currencyText(0.00015), "0.0002");
    EXPECT_EQ(currencyText(0.00025), "0.0002");
}

TEST(NumberFormats, LeadingNumberOfTheText) {
    EXPECT_EQ(leadingNumber("12abc"), 12.0);
    EXPECT_EQ(leadingNumber("1.2.3"), 1.2);
    EXPECT_EQ(leadingNumber("  -3.5e2x"), -350.0);
    EXPECT_EQ(leadingNumber(""), 0.0);
    EXPECT_EQ(leadingNumber("abc"), 0.0);
    EXPECT_EQ(leadingNumber(".5"), 0.5);
    EXPECT_EQ(leadingNumber("+7"), 7.0);
    EXPECT_EQ(leadingNumber("1 000"), 1000.0);  // blanks anywhere are skipped
    EXPECT_EQ(leadingNumber("1e"), 1.0);
    EXPECT_EQ(leadingNumber("2E+"), 2.0);
    EXPECT_EQ(leadingNumber("--3"), 0.0);
    EXPECT_EQ(leadingNumber("-"), 0.0);
    EXPECT_EQ(leadingNumber("."), 0.0);
    EXPECT_EQ(leadingNumber("4,5"), 4.0);
}

TEST(NumberFormats, TrimTrailingPointRemovesOnePointOnly) {
    QString whole = "5.", twice = "5..", digits = "5.25", empty;
    EXPECT_EQ(TrimTrailingPoint(whole), "5");
    EXPECT_EQ(TrimTrailingPoint(twice), "5.");
    EXPECT_EQ(TrimTrailingPoint(digits), "5.25");
    EXPECT_EQ(TrimTrailingPoint(empty), "");
    EXPECT_EQ(whole, "5.");  // the argument itself is left as it was
}

// --- Page support -----------------------------------------------------------------

using PageSupport = ModelTest;

TEST_F(PageSupport, AttributeListMarksDoneAttributesAndKeepsTheRow) {
    w().AttName(0) = QStringLiteral("Cost");
    w().AttName(1) = QStringLiteral("Safety");
    w().AttName(2) = QStringLiteral("Comfort");
    QComboBox list;
    FillAttributeList(list);
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(1), "Safety");
    EXPECT_EQ(list.currentIndex(), -1);  // nothing chosen yet, nothing chosen now

    list.setCurrentIndex(2);
    w().AttVFDone(2) = true;
    w().AttVFDone(0) = I16(-1);
    FillAttributeList(list);
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(0), QString::fromUtf8(" \u00A4 Cost"));
    EXPECT_EQ(list.itemText(1), "Safety");
    EXPECT_EQ(list.itemText(2), QString::fromUtf8(" \u00A4 Comfort"));
    EXPECT_EQ(list.currentIndex(), 2);
}

TEST(PageSupportScreen, CentreFormOnScreenKeepsTheSize) {
    QWidget form;
    form.resize(320, 200);
    CentreFormOnScreen(form);
    QScreen* screen = form.screen() ? form.screen() : QGuiApplication::primaryScreen();
    ASSERT_NE(screen, nullptr);
    const QRect area = screen->geometry();
    const QSize outer = form.frameGeometry().size();
    EXPECT_EQ(form.size(), QSize(320, 200));
    EXPECT_EQ(form.pos().x(), area.x() + (area.width() - outer.width()) / 2);
    EXPECT_EQ(form.pos().y(), area.y() + (area.height() - outer.height()) / 2);
}

}  // namespace
}  // namespace kelmar::test
