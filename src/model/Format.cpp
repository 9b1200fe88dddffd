#include "model/Format.h"

#include <kelmar/mdKelMain.h>

#include <QLocale>
#include <QRegularExpression>

#include <cmath>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace kelmar::fmt {

namespace {

// |v| rounded to `decimals` places on its 15-significant-digit decimal form:
// the integer digits and the decimal digits as text.
struct Decimal {
    std::string integer;   // at least "0"
    std::string fraction;  // exactly `decimals` digits
};

Decimal roundDecimal(double v, int decimals, bool halfEven) {
    Decimal out{"0", std::string(static_cast<std::size_t>(decimals), '0')};
    if (v == 0.0 || !std::isfinite(v)) return out;
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(v));
    // buf: d.dddddddddddddde[+-]XX
    std::string digits;
    digits.push_back(buf[0]);
    digits.append(buf + 2, 14);
    const int exponent = std::atoi(std::strchr(buf, 'e') + 1);
    const int point = exponent + 1;  // digits before the decimal point
    const int keep = point + decimals;
    if (keep < 0) return out;

    std::string kept = digits.substr(0, static_cast<std::size_t>(keep));
    if (keep > static_cast<int>(digits.size()))
        kept.append(static_cast<std::size_t>(keep) - digits.size(), '0');
    bool roundUp = false;
    if (keep < static_cast<int>(digits.size())) {
        const char next = digits[static_cast<std::size_t>(keep)];
        if (next > '5') {
            roundUp = true;
        } else if (next == '5') {
            const bool tail = digits.find_first_not_of('0', static_cast<std::size_t>(keep) + 1) !=
                              std::string::npos;
            const bool odd = !kept.empty() && ((kept.back() - '0') % 2 == 1);
            roundUp = !halfEven || tail || odd;
        }
    }
    if (roundUp) {
        int i = static_cast<int>(kept.size()) - 1;
        while (i >= 0 && kept[static_cast<std::size_t>(i)] == '9') {
            kept[static_cast<std::size_t>(i)] = '0';
            --i;
        }
        if (i >= 0) {
            ++kept[static_cast<std::size_t>(i)];
        } else {
            kept.insert(kept.begin(), '1');
        }
    }
    const int intDigits = static_cast<int>(kept.size()) - decimals;
    if (intDigits > 0) {
        out.integer = kept.substr(0, static_cast<std::size_t>(intDigits));
        out.fraction = kept.substr(static_cast<std::size_t>(intDigits));
    } else {
        out.integer.assign(1, '0');
        out.fraction.assign(static_cast<std::size_t>(-intDigits), '0');
        out.fraction.append(kept);
    }
    const std::size_t nz = out.integer.find_first_not_of('0');
    if (nz == std::string::npos) {
        out.integer.assign(1, '0');
    } else {
        out.integer.erase(0, nz);
    }
    return out;
}

bool isZero(const Decimal& d) {
    return d.integer == "0" && d.fraction.find_first_not_of('0') == std::string::npos;
}

std::string grouped(const std::string& integer) {
    std::string out;
    const int n = static_cast<int>(integer.size());
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0) out.push_back(',');
        out.push_back(integer[static_cast<std::size_t>(i)]);
    }
    return out;
}

}  // namespace

QString formatNumber(double v, const QString& pattern) {
    const qsizetype dot = pattern.indexOf(QLatin1Char('.'));
    const QString intPart = dot < 0 ? pattern : pattern.left(dot);
    const QString fracPart = dot < 0 ? QString() : pattern.mid(dot + 1);
    const int required = static_cast<int>(fracPart.count(QLatin1Char('0')));
    const int optional = static_cast<int>(fracPart.count(QLatin1Char('#')));
    const int decimals = required + optional;

    Decimal d = roundDecimal(v, decimals, false);
    std::string fraction = d.fraction;
    while (static_cast<int>(fraction.size()) > required && !fraction.empty() && fraction.back() == '0')
        fraction.pop_back();

    std::string text = intPart.contains(QLatin1Char(',')) ? grouped(d.integer) : d.integer;
    if (dot >= 0) text += "." + fraction;
    if (v < 0 && !isZero(d)) text.insert(text.begin(), '-');
    return QString::fromStdString(text);
}

QString formatScore(double v) {
    QString s = formatNumber(v, QStringLiteral("0.##"));
    return TrimTrailingPoint(s);
}

QString formatValue(double value, int maxVal) {
    return maxVal == 100 ? formatNumber(value * 100.0, QStringLiteral("0"))
                         : formatNumber(value, QStringLiteral("0.00"));
}

QString formatValueInText(double value, int maxVal) {
    if (maxVal != 100) return formatNumber(value, QStringLiteral("0.00#"));
    QString s = formatNumber(value * 100.0, QStringLiteral("0.#"));
    return TrimTrailingPoint(s);
}

QString currencyText(double v) {
    // The currency type holds at most 922,337,203,685,477.5807.
    if (!std::isfinite(v) || std::fabs(v) > 922337203685477.5)
        throw RuntimeError(RuntimeError::Overflow);
    const Decimal d = roundDecimal(v, 4, true);
    std::string fraction = d.fraction;
    while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
    std::string text = d.integer;
    if (!fraction.empty()) text += "." + fraction;
    if (v < 0 && !isZero(d)) text.insert(text.begin(), '-');
    return QString::fromStdString(text);
}

double leadingNumber(const QString& text) {
    std::string s;
    for (const QChar ch : text) {
        if (ch == QLatin1Char(' ') || ch == QLatin1Char('\t') || ch == QLatin1Char('\n') ||
            ch == QLatin1Char('\r'))
            continue;
        s.push_back(ch.unicode() < 128 ? static_cast<char>(ch.unicode()) : '?');
    }
    std::size_t i = 0;
    std::string number;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) number.push_back(s[i++]);
    bool digits = false;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) {
        number.push_back(s[i++]);
        digits = true;
    }
    if (i < s.size() && s[i] == '.') {
        number.push_back(s[i++]);
        while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) {
            number.push_back(s[i++]);
            digits = true;
        }
    }
    if (!digits) return 0.0;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        std::size_t j = i + 1;
        std::string exponent = "e";
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) exponent.push_back(s[j++]);
        bool expDigits = false;
        while (j < s.size() && std::isdigit(static_cast<unsigned char>(s[j]))) {
            exponent.push_back(s[j++]);
            expDigits = true;
        }
        if (expDigits) number += exponent;
    }
    const double v = std::strtod(number.c_str(), nullptr);
    return std::isfinite(v) ? v : 0.0;
}

QString plainNumber(double v) {
    // Rounded to 15 digits first, so that the noise of binary fractions
    // never shows; then the shortest fixed form of what is left.
    const double rounded = QString::number(v, 'g', 15).toDouble();
    return QString::number(rounded == 0.0 ? 0.0 : rounded, 'f', QLocale::FloatingPointShortest);
}

QString plainSingle(float v) {
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, v == 0.0f ? 0.0f : v, std::chars_format::fixed);
    return QString::fromLatin1(text, static_cast<qsizetype>(end.ptr - text));
}

bool completeNumber(const QString& text, double& value) {
    static const QRegularExpression number(
        QStringLiteral("^\\s*[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eEdD][+-]?[0-9]+)?\\s*$"));
    if (!number.match(text).hasMatch()) return false;
    std::string s = text.trimmed().toStdString();
    for (char& c : s)
        if (c == 'd' || c == 'D') c = 'e';
    const double v = std::strtod(s.c_str(), nullptr);
    if (!std::isfinite(v)) return false;
    value = v;
    return true;
}

}  // namespace kelmar::fmt
