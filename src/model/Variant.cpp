#include <kelmar/Variant.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

namespace kelmar {

// --- RuntimeError -----------------------------------------------------------

QString RuntimeError::standardDescription(int number) {
    switch (number) {
    case IllegalCall: return QStringLiteral("Invalid procedure call or argument");
    case Overflow: return QStringLiteral("Overflow");
    case SubscriptOutOfRange: return QStringLiteral("Subscript out of range");
    case DivisionByZero: return QStringLiteral("Division by zero");
    case TypeMismatch: return QStringLiteral("Type mismatch");
    case ObjectNotSet: return QStringLiteral("Object variable or With block variable not set");
    default: return QStringLiteral("Application-defined or object-defined error");
    }
}

RuntimeError::RuntimeError(int number) : RuntimeError(number, standardDescription(number)) {}

RuntimeError::RuntimeError(int number, QString description)
    : number_(number), description_(std::move(description)) {
    what_ = "Run-time error " + std::to_string(number_) + ": " + description_.toStdString();
}

// --- Checked conversions ----------------------------------------------------

std::int16_t cint(double v) {
    if (std::isnan(v)) throw RuntimeError(RuntimeError::Overflow);
    const double r = std::nearbyint(v);  // the default rounding mode rounds half to even
    if (r < -32768.0 || r > 32767.0) throw RuntimeError(RuntimeError::Overflow);
    return static_cast<std::int16_t>(r);
}

std::int32_t clng(double v) {
    if (std::isnan(v)) throw RuntimeError(RuntimeError::Overflow);
    const double r = std::nearbyint(v);
    if (r < -2147483648.0 || r > 2147483647.0) throw RuntimeError(RuntimeError::Overflow);
    return static_cast<std::int32_t>(r);
}

float csng(double v) {
    if (std::isnan(v)) throw RuntimeError(RuntimeError::Overflow);
    if (std::fabs(v) > static_cast<double>(std::numeric_limits<float>::max()))
        throw RuntimeError(RuntimeError::Overflow);
    return static_cast<float>(v);
}

namespace {
std::int16_t narrow16(int v) {
    if (v < -32768 || v > 32767) throw RuntimeError(RuntimeError::Overflow);
    return static_cast<std::int16_t>(v);
}

// Kelmar's text of a number: up to `digits` significant digits, scientific
// notation for very large and very small magnitudes.
QString numberText(double v, int digits) {
    if (v == 0.0) return QStringLiteral("0");
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*G", digits, v);
    QString s = QString::fromLatin1(buf);
    const qsizetype e = s.indexOf(QLatin1Char('E'));
    QString mantissa = e >= 0 ? s.left(e) : s;
    const QString exponent = e >= 0 ? s.mid(e) : QString();
    if (mantissa.contains(QLatin1Char('.'))) {
        while (mantissa.endsWith(QLatin1Char('0'))) mantissa.chop(1);
        if (mantissa.endsWith(QLatin1Char('.'))) mantissa.chop(1);
    }
    return mantissa + exponent;
}

bool parseNumber(const QString& text, double& out) {
    const QString t = text.trimmed();
    if (t.isEmpty()) return false;
    bool ok = false;
    if (t.startsWith(QLatin1String("&H"), Qt::CaseInsensitive)) {
        const qlonglong v = t.mid(2).toLongLong(&ok, 16);
        out = static_cast<double>(v);
        return ok;
    }
    out = t.toDouble(&ok);
    return ok && std::isfinite(out);
}
}  // namespace

std::int16_t checkedAdd(std::int16_t a, std::int16_t b) { return narrow16(int(a) + int(b)); }
std::int16_t checkedSub(std::int16_t a, std::int16_t b) { return narrow16(int(a) - int(b)); }
std::int16_t checkedMul(std::int16_t a, std::int16_t b) { return narrow16(int(a) * int(b)); }

// --- Variant ------------------------------------------------------------------

Variant::Variant(const VariantArray& a) : type_(Type::Array) { u_.a = new VariantArray(a); }

Variant::Variant(const Variant& other) : type_(Type::Empty) { copyFrom(other); }

Variant::Variant(Variant&& other) noexcept : type_(other.type_), u_(other.u_), s_(std::move(other.s_)) {
    other.type_ = Type::Empty;
    other.u_.d = 0.0;
}

Variant& Variant::operator=(const Variant& other) {
    if (this != &other) {
        Variant copy(other);
        *this = std::move(copy);
    }
    return *this;
}

Variant& Variant::operator=(Variant&& other) noexcept {
    if (this != &other) {
        if (type_ >= Type::String) destroy();
        type_ = other.type_;
        u_ = other.u_;
        s_ = std::move(other.s_);
        other.type_ = Type::Empty;
        other.u_.d = 0.0;
    }
    return *this;
}

Variant::~Variant() {
    if (type_ == Type::Array) delete u_.a;
}

void Variant::destroy() noexcept {
    if (type_ == Type::Array) delete u_.a;
    type_ = Type::Empty;
    u_.d = 0.0;
    s_.clear();
}

void Variant::copyFrom(const Variant& other) {
    if (other.type_ == Type::Array) {
        u_.a = new VariantArray(*other.u_.a);
    } else {
        u_ = other.u_;
    }
    s_ = other.s_;
    type_ = other.type_;
}

bool Variant::isNumeric() const noexcept {
    return type_ != Type::String && type_ != Type::Array;
}

double Variant::toDouble() const {
    switch (type_) {
    case Type::Empty: return 0.0;
    case Type::Boolean: return u_.b ? -1.0 : 0.0;
    case Type::Integer: return u_.i;
    case Type::Long: return u_.l;
    case Type::Single: return static_cast<double>(u_.f);
    case Type::Double: return u_.d;
    case Type::String: {
        double v = 0.0;
        if (!parseNumber(s_, v)) throw RuntimeError(RuntimeError::TypeMismatch);
        return v;
    }
    case Type::Array: break;
    }
    throw RuntimeError(RuntimeError::TypeMismatch);
}

float Variant::toSingle() const {
    if (type_ == Type::Single) return u_.f;
    return csng(toDouble());
}

std::int16_t Variant::toInteger() const {
    if (type_ == Type::Integer) return u_.i;
    return cint(toDouble());
}

std::int32_t Variant::toLong() const {
    if (type_ == Type::Long) return u_.l;
    return clng(toDouble());
}

bool Variant::toBoolean() const {
    if (type_ == Type::Boolean) return u_.b;
    if (type_ == Type::String) {
        const QString t = s_.trimmed();
        if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) return true;
        if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) return false;
    }
    return toDouble() != 0.0;
}

QString Variant::toString() const {
    switch (type_) {
    case Type::Empty: return QString();
    case Type::Boolean: return u_.b ? QStringLiteral("True") : QStringLiteral("False");
    case Type::Integer: return QString::number(u_.i);
    case Type::Long: return QString::number(u_.l);
    case Type::Single: return numberText(static_cast<double>(u_.f), 7);
    case Type::Double: return numberText(u_.d, 15);
    case Type::String: return s_;
    case Type::Array: break;
    }
    throw RuntimeError(RuntimeError::TypeMismatch);
}

VariantArray& Variant::toArray() {
    if (type_ != Type::Array) throw RuntimeError(RuntimeError::TypeMismatch);
    return *u_.a;
}

const VariantArray& Variant::toArray() const {
    if (type_ != Type::Array) throw RuntimeError(RuntimeError::TypeMismatch);
    return *u_.a;
}

int compare(const Variant& a, const Variant& b) {
    using T = Variant::Type;
    if (a.type_ == T::Array || b.type_ == T::Array) throw RuntimeError(RuntimeError::TypeMismatch);
    const bool aText = a.type_ == T::String;
    const bool bText = b.type_ == T::String;
    if (aText && bText) {
        const int c = QString::compare(a.s_, b.s_, Qt::CaseSensitive);
        return (c > 0) - (c < 0);
    }
    if (aText || bText) {
        // Empty against text compares as "", any number sorts below any text.
        if (a.type_ == T::Empty) return QString().compare(b.s_) == 0 ? 0 : -1;
        if (b.type_ == T::Empty) return a.s_.compare(QString()) == 0 ? 0 : 1;
        return aText ? 1 : -1;
    }
    const double x = a.toDouble();
    const double y = b.toDouble();
    return (x > y) - (x < y);
}

// --- VariantArray -------------------------------------------------------------

VariantArray::VariantArray(int lo, int hi) { redim(lo, hi); }

VariantArray::VariantArray(int lo1, int hi1, int lo2, int hi2) { redim(lo1, hi1, lo2, hi2); }

void VariantArray::redim(int lo, int hi) {
    dims_ = 1;
    lo1_ = lo;
    hi1_ = hi;
    lo2_ = 0;
    hi2_ = -1;
    data_.assign(hi >= lo ? static_cast<std::size_t>(hi - lo + 1) : 0U, Variant());
}

void VariantArray::redim(int lo1, int hi1, int lo2, int hi2) {
    dims_ = 2;
    lo1_ = lo1;
    hi1_ = hi1;
    lo2_ = lo2;
    hi2_ = hi2;
    const std::size_t n1 = hi1 >= lo1 ? static_cast<std::size_t>(hi1 - lo1 + 1) : 0U;
    const std::size_t n2 = hi2 >= lo2 ? static_cast<std::size_t>(hi2 - lo2 + 1) : 0U;
    data_.assign(n1 * n2, Variant());
}

void VariantArray::clear() noexcept {
    dims_ = 0;
    lo1_ = lo2_ = 0;
    hi1_ = hi2_ = -1;
    data_.clear();
}

int VariantArray::lbound(int dimension) const {
    if (dimension < 1 || dimension > dims_) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return dimension == 1 ? lo1_ : lo2_;
}

int VariantArray::ubound(int dimension) const {
    if (dimension < 1 || dimension > dims_) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return dimension == 1 ? hi1_ : hi2_;
}

void VariantArray::outOfRange() { throw RuntimeError(RuntimeError::SubscriptOutOfRange); }

}  // namespace kelmar
