#pragma once
// The parsed form of a number format code, shared by the parser and the renderers of numfmt*.cpp.
// Not part of the engine's interface.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace xlsx::numfmt {

enum class Kind : std::uint8_t {
    Literal,   // text shown as is; `ch` marks an unquoted digit 1-9
    Comma,     // ',' until the parser resolves it
    Digit,     // placeholder 0 # ?
    Point,     // the decimal point of a number
    Percent,   // '%': shown, and scales by 100
    ExpMark,   // E+ / E-: shows "E"; the exponent's sign goes before its first digit
    Slash,     // fraction bar
    Text,      // '@'
    General,
    // Dates and times.
    Year,      // y yy (two digits) yyy yyyy (four)
    EraYear,   // e: the four-digit year
    Buddhist,  // b bb (two digits) bbb bbbb (four)
    EraName,   // g gg ggg: no era for the Gregorian calendar
    Month,     // m mm mmm mmmm mmmmm
    Minute,    // m mm next to hours or seconds
    Day,       // d dd
    Weekday,   // ddd aaa (short) dddd aaaa (long)
    Hour,      // h hh
    Second,    // s ss
    Elapsed,   // [h] [m] [s]: unit in `ch`
    FracSec,   // .0 .00 .000 in a date: fractional seconds
    AmPm,      // AM/PM A/P and their variants: texts in `text` ("AM\0PM")
};

// Where a digit placeholder sits in a number.
enum class Role : std::uint8_t { Int, Dec, Exp, Num, Den, Pad };

struct Token {
    Kind kind = Kind::Literal;
    Role role = Role::Int;
    char ch = 0;        // placeholder character; unit letter for Elapsed
    int width = 0;      // letters of a date token; digits of FracSec
    int pos = 0;        // Digit: 1-based place in its group (from the right for Int/Exp/Num)
    bool first = false; // Digit: leftmost placeholder of its group
    bool frac = false;  // the fraction part after a whole number: blanked when the fraction is 0
    std::string text;   // Literal; AmPm "AM" and "PM" separated by '\0'
};

enum class Op : std::uint8_t { None, Lt, Le, Gt, Ge, Eq, Ne };

struct Condition {
    Op op = Op::None;
    double operand = 0;

    bool Test(double v) const;
    // A section whose condition admits only negative numbers shows them without a minus sign.
    bool OnlyNegative() const;
};

enum class SectionType : std::uint8_t { Number, General, Date, Text };

struct Section {
    SectionType type = SectionType::Number;
    Condition cond;
    std::vector<Token> tokens;

    // Numbers.
    int intDigits = 0, decDigits = 0, expDigits = 0, numDigits = 0, denDigits = 0;
    int scale = 0;          // power of ten: +2 per '%', -3 per scaling comma
    bool grouping = false;
    bool hasDigits = false;
    bool exponent = false;
    bool expPlus = false;   // E+ shows '+' for positive exponents
    bool fraction = false;
    bool fracInt = false;   // fraction with a whole-number part
    int fixedDen = 0;       // fraction with a given denominator

    // Dates.
    bool hasAmPm = false;
    int fracSecDigits = 0;
};

struct Parsed {
    std::vector<Section> numbers;  // the sections for numbers, 0 to 3
    bool hasTextSection = false;
    Section text;                  // the section for texts when hasTextSection
    bool isDate = false;
};

// Throws NumberFormatError.
Parsed Parse(std::string_view code);

// Renderers of one section; `v` is the magnitude (>= 0) unless stated.
void RenderNumber(const Section& s, double v, bool negative, std::string& out);
void RenderGeneral(double v, std::string& out);   // signed
void RenderDate(const Section& s, double v, std::string& out);

}  // namespace xlsx::numfmt
