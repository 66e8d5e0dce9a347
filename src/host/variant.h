#pragma once
// The automation Variant with the run-time's conversions.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class Variant {
public:
    enum class Type { Empty, Null, Boolean, Long, Double, String, Date, Error };

    Variant() = default;
    Variant(bool b) : type_(Type::Boolean), b_(b) {}
    Variant(int v) : type_(Type::Long), l_(v) {}
    Variant(long v) : type_(Type::Long), l_(v) {}
    Variant(double v) : type_(Type::Double), d_(v) {}
    Variant(const char* s) : type_(Type::String), s_(s) {}
    Variant(std::string s) : type_(Type::String), s_(std::move(s)) {}
    Variant(std::string_view s) : type_(Type::String), s_(s) {}

    static Variant Null() { Variant v; v.type_ = Type::Null; return v; }
    static Variant Date(double serial) { Variant v; v.type_ = Type::Date; v.d_ = serial; return v; }
    // A cell error value; code is the application's error number (2007 #DIV/0!, 2042 #N/A ...).
    static Variant CellError(long code) { Variant v; v.type_ = Type::Error; v.l_ = code; return v; }

    Type type() const { return type_; }
    bool IsEmpty() const { return type_ == Type::Empty; }
    bool IsNull() const { return type_ == Type::Null; }
    bool IsError() const { return type_ == Type::Error; }
    // As the run-time's IsNumeric: numbers, Booleans, Empty, numeric text; a Date is no number.
    bool IsNumeric() const;
    bool IsString() const { return type_ == Type::String; }

    // Raw access without conversion (the caller checked type()).
    bool RawBool() const { return b_; }
    long RawLong() const { return l_; }
    double RawDouble() const { return d_; }
    const std::string& RawString() const { return s_; }
    long ErrorCode() const { return l_; }

    // Equality as the run-time's "=" between two values of compatible kinds; texts case-sensitive,
    // a text against a Date read as a date.
    friend bool operator==(const Variant& a, const Variant& b);

private:
    Type type_ = Type::Empty;
    bool b_ = false;
    long l_ = 0;
    double d_ = 0;
    std::string s_;
};

// Conversions; a failure raises "Type mismatch" (13), a Null "Invalid use of Null" (94).
std::string CStr(const Variant& v);  // a Date as its short date (m/d/yyyy) and long time, in English
double CDbl(const Variant& v);       // a Date as its serial number
long CLng(const Variant& v);  // rounds half to even, "Overflow" (6) outside 32 bits
bool CBool(const Variant& v);
// The longest numeric prefix with the point as decimal sign; 0 for none. &H and &O read hex and
// octal, typed as the run-time types such literals (&HFFFF is -1). Never raises.
double Val(std::string_view text);
// A number as the run-time writes it: up to 15 significant digits, no trailing zeros.
std::string NumberToText(double value);

// Text helpers that count characters (code points), never bytes.
long Len(std::string_view s);
std::string Left(std::string_view s, long n);
std::string Right(std::string_view s, long n);
std::string Mid(std::string_view s, long start, long n = -1);  // start is 1-based
long InStr(std::string_view s, std::string_view find, long start = 1);  // 1-based, 0 if absent
std::string UCase(std::string_view s);  // Unicode simple case mapping
std::string LCase(std::string_view s);
std::string Trim(std::string_view s);
bool EqualsNoCase(std::string_view a, std::string_view b);

}  // namespace host
