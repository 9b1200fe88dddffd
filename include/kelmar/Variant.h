// Tagged values and bounded arrays as the host and the wizard exchange them.
//
// A Variant holds one of: Empty, Boolean, Integer (16-bit), Long (32-bit),
// Single, Double, String or Array. Conversions follow fixed rules:
// Empty reads as 0 and as "", numeric text converts, non-numeric text in
// arithmetic is a type mismatch (error 13), conversion to a 16-bit Integer
// rounds half to even and overflows (error 6) outside -32768 .. 32767.
#pragma once

#include <QString>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace kelmar {

// A run-time error with its error number.
class RuntimeError : public std::exception {
public:
    enum Code : int {
        IllegalCall = 5,
        Overflow = 6,
        SubscriptOutOfRange = 9,
        DivisionByZero = 11,
        TypeMismatch = 13,
        ObjectNotSet = 91,
    };

    explicit RuntimeError(int number);
    RuntimeError(int number, QString description);

    int number() const noexcept { return number_; }
    const QString& description() const noexcept { return description_; }
    const char* what() const noexcept override { return what_.c_str(); }

    // The standard text for an error number ("Overflow", "Type mismatch", ...).
    static QString standardDescription(int number);

private:
    int number_;
    QString description_;
    std::string what_;
};

class VariantArray;

class Variant {
public:
    enum class Type : std::uint8_t { Empty, Boolean, Integer, Long, Single, Double, String, Array };

    Variant() noexcept : type_(Type::Empty) { u_.d = 0.0; }
    Variant(bool b) noexcept : type_(Type::Boolean) { u_.b = b; }
    Variant(std::int16_t i) noexcept : type_(Type::Integer) { u_.i = i; }
    Variant(std::int32_t l) noexcept : type_(Type::Long) { u_.l = l; }
    Variant(float f) noexcept : type_(Type::Single) { u_.f = f; }
    Variant(double d) noexcept : type_(Type::Double) { u_.d = d; }
    Variant(const QString& s) : type_(Type::String), s_(s) { u_.d = 0.0; }
    Variant(const char* s) : type_(Type::String), s_(QString::fromUtf8(s)) { u_.d = 0.0; }
    Variant(const VariantArray& a);

    Variant(const Variant& other);
    Variant(Variant&& other) noexcept;
    Variant& operator=(const Variant& other);
    Variant& operator=(Variant&& other) noexcept;
    // Plain numbers are stored in place (exactly double or float only, so
    // that every other type still goes through its own constructor).
    template <typename D>
        requires std::is_same_v<D, double>
    Variant& operator=(D d) noexcept {
        if (type_ >= Type::String) destroy();
        type_ = Type::Double;
        u_.d = d;
        return *this;
    }
    template <typename F>
        requires std::is_same_v<F, float>
    Variant& operator=(F f) noexcept {
        if (type_ >= Type::String) destroy();
        type_ = Type::Single;
        u_.f = f;
        return *this;
    }
    ~Variant();

    Type type() const noexcept { return type_; }
    bool isEmpty() const noexcept { return type_ == Type::Empty; }
    bool isNumeric() const noexcept;  // Boolean, Integer, Long, Single, Double, Empty
    bool isArray() const noexcept { return type_ == Type::Array; }
    bool isString() const noexcept { return type_ == Type::String; }

    // Conversions. Each throws RuntimeError 13 for text that is not a number
    // (or an Array where a scalar is needed) and 6 when the result does not fit.
    double toDouble() const;
    float toSingle() const;
    std::int16_t toInteger() const;
    std::int32_t toLong() const;
    bool toBoolean() const;
    QString toString() const;
    // The array held; error 13 when the Variant holds no array.
    VariantArray& toArray();
    const VariantArray& toArray() const;

    // Fast path for the common case of a Double held in an array cell.
    double asDoubleFast() const { return type_ == Type::Double ? u_.d : toDouble(); }

    // Comparison: numbers numerically, strings by code unit, Empty as 0
    // or "", and any number below any string.
    friend int compare(const Variant& a, const Variant& b);
    friend bool operator==(const Variant& a, const Variant& b) { return compare(a, b) == 0; }
    friend bool operator!=(const Variant& a, const Variant& b) { return compare(a, b) != 0; }
    friend bool operator<(const Variant& a, const Variant& b) { return compare(a, b) < 0; }
    friend bool operator<=(const Variant& a, const Variant& b) { return compare(a, b) <= 0; }
    friend bool operator>(const Variant& a, const Variant& b) { return compare(a, b) > 0; }
    friend bool operator>=(const Variant& a, const Variant& b) { return compare(a, b) >= 0; }

private:
    void destroy() noexcept;
    void copyFrom(const Variant& other);

    Type type_;
    union {
        bool b;
        std::int16_t i;
        std::int32_t l;
        float f;
        double d;
        VariantArray* a;
    } u_;
    QString s_;
};

// A 1-D or 2-D array of Variants, each dimension with its own bounds.
// A default-constructed array is not allocated: any element access raises
// error 9, lbound/ubound as well.
class VariantArray {
public:
    VariantArray() = default;
    VariantArray(int lo, int hi);
    VariantArray(int lo1, int hi1, int lo2, int hi2);

    bool isAllocated() const noexcept { return dims_ > 0; }
    int dimensions() const noexcept { return dims_; }
    int lbound(int dimension = 1) const;
    int ubound(int dimension = 1) const;
    // Number of elements; 0 when not allocated or empty (ubound < lbound).
    std::size_t size() const noexcept { return data_.size(); }

    Variant& operator()(int i) { return data_[offset(i)]; }
    const Variant& operator()(int i) const { return data_[offset(i)]; }
    Variant& operator()(int i, int j) { return data_[offset(i, j)]; }
    const Variant& operator()(int i, int j) const { return data_[offset(i, j)]; }

    // Re-dimension (drops the contents, like a plain ReDim). An upper bound
    // below the lower bound gives an empty array.
    void redim(int lo, int hi);
    void redim(int lo1, int hi1, int lo2, int hi2);
    void clear() noexcept;  // back to "not allocated"

    // Element storage in row-major order (first index slowest).
    const std::vector<Variant>& data() const noexcept { return data_; }
    std::vector<Variant>& data() noexcept { return data_; }

private:
    [[noreturn]] static void outOfRange();
    std::size_t offset(int i) const {
        if (dims_ != 1 || i < lo1_ || i > hi1_) outOfRange();
        return static_cast<std::size_t>(i - lo1_);
    }
    std::size_t offset(int i, int j) const {
        if (dims_ != 2 || i < lo1_ || i > hi1_ || j < lo2_ || j > hi2_) outOfRange();
        return static_cast<std::size_t>(i - lo1_) * static_cast<std::size_t>(hi2_ - lo2_ + 1) +
               static_cast<std::size_t>(j - lo2_);
    }

    int dims_ = 0;
    int lo1_ = 0, hi1_ = -1, lo2_ = 0, hi2_ = -1;
    std::vector<Variant> data_;
};

// Checked 16-bit integer arithmetic: results outside -32768 .. 32767 raise
// error 6, as Integer arithmetic does.
std::int16_t checkedAdd(std::int16_t a, std::int16_t b);
std::int16_t checkedSub(std::int16_t a, std::int16_t b);
std::int16_t checkedMul(std::int16_t a, std::int16_t b);

// Round half to even into a 16-bit Integer (error 6 when out of range).
std::int16_t cint(double v);
// Round half to even into a 32-bit Long (error 6 when out of range).
std::int32_t clng(double v);
// Narrow a Double into a Single (error 6 when out of range).
float csng(double v);

}  // namespace kelmar
