#include "host/variant.h"

#include <cxxabi.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include <utf8proc.h>

#include "host/error.h"

namespace host {

// ---------------------------------------------------------------- errors

namespace {
const char* Describe(long number) {
    switch (number) {
        case err::InvalidProcedureCall: return "Invalid procedure call or argument";
        case err::Overflow: return "Overflow";
        case err::SubscriptOutOfRange: return "Subscript out of range";
        case err::TypeMismatch: return "Type mismatch";
        case err::ObjectVariableNotSet: return "Object variable or With block variable not set";
        case err::InvalidUseOfNull: return "Invalid use of Null";
        case err::ObjectRequired: return "Object required";
        case err::NoSuchProperty: return "Object doesn't support this property or method";
        case err::DuplicateKey: return "This key is already associated with an element of this collection";
        case err::ApplicationDefined: return "Application-defined or object-defined error";
        default: return "Automation error";
    }
}
}  // namespace

void Raise(long number) { throw Error(number, Describe(number)); }
void Raise(long number, const std::string& description) { throw Error(number, description); }

void Unavailable(const std::string& member) {
    Raise(err::ApplicationDefined, member + " is not available in this engine yet.");
}

void Unavailable(const std::type_info& declaring, const char* member) {
    int status = 0;
    char* full = abi::__cxa_demangle(declaring.name(), nullptr, nullptr, &status);
    std::string cls = status == 0 && full ? full : declaring.name();
    std::free(full);
    if (auto colons = cls.rfind("::"); colons != std::string::npos) cls.erase(0, colons + 2);
    Unavailable(cls + "." + member);
}

// ---------------------------------------------------------------- text

namespace {
// Decodes UTF-8 into code points; invalid bytes count as one character each.
std::vector<std::pair<size_t, size_t>> CharSpans(std::string_view s) {
    std::vector<std::pair<size_t, size_t>> spans;
    size_t i = 0;
    while (i < s.size()) {
        utf8proc_int32_t cp;
        auto n = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(s.data() + i),
                                  static_cast<utf8proc_ssize_t>(s.size() - i), &cp);
        size_t len = n > 0 ? static_cast<size_t>(n) : 1;
        spans.push_back({i, len});
        i += len;
    }
    return spans;
}

std::string MapCase(std::string_view s, bool upper) {
    std::string out;
    out.reserve(s.size());
    size_t i = 0;
    while (i < s.size()) {
        utf8proc_int32_t cp;
        auto n = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(s.data() + i),
                                  static_cast<utf8proc_ssize_t>(s.size() - i), &cp);
        if (n <= 0) {
            out += s[i++];
            continue;
        }
        // ASCII fast path: most keys and names are plain.
        if (cp < 0x80) {
            char c = static_cast<char>(cp);
            if (upper && c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
            if (!upper && c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
            out += c;
        } else {
            utf8proc_int32_t m = upper ? utf8proc_toupper(cp) : utf8proc_tolower(cp);
            utf8proc_uint8_t buf[4];
            auto w = utf8proc_encode_char(m, buf);
            out.append(reinterpret_cast<char*>(buf), static_cast<size_t>(w));
        }
        i += static_cast<size_t>(n);
    }
    return out;
}
}  // namespace

long Len(std::string_view s) {
    long n = 0;
    for (unsigned char c : s)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}

std::string Mid(std::string_view s, long start, long n) {
    if (start < 1) Raise(err::InvalidProcedureCall);
    auto spans = CharSpans(s);
    long count = static_cast<long>(spans.size());
    if (start > count) return {};
    long last = (n < 0 || start - 1 + n > count) ? count : start - 1 + n;
    size_t from = spans[static_cast<size_t>(start - 1)].first;
    size_t to = last >= count ? s.size() : spans[static_cast<size_t>(last)].first;
    return std::string(s.substr(from, to - from));
}

std::string Left(std::string_view s, long n) {
    if (n < 0) Raise(err::InvalidProcedureCall);
    return n == 0 ? std::string{} : Mid(s, 1, n);
}

std::string Right(std::string_view s, long n) {
    if (n < 0) Raise(err::InvalidProcedureCall);
    long len = Len(s);
    return n >= len ? std::string(s) : Mid(s, len - n + 1);
}

long InStr(std::string_view s, std::string_view find, long start) {
    if (start < 1) Raise(err::InvalidProcedureCall);
    auto spans = CharSpans(s);
    if (start > static_cast<long>(spans.size()) + 1) return 0;
    size_t from = start - 1 < static_cast<long>(spans.size()) ? spans[static_cast<size_t>(start - 1)].first : s.size();
    size_t pos = s.find(find, from);
    if (pos == std::string_view::npos) return 0;
    return Len(s.substr(0, pos)) + 1;
}

std::string UCase(std::string_view s) { return MapCase(s, true); }
std::string LCase(std::string_view s) { return MapCase(s, false); }

std::string Trim(std::string_view s) {
    size_t a = s.find_first_not_of(' ');
    if (a == std::string_view::npos) return {};
    size_t b = s.find_last_not_of(' ');
    return std::string(s.substr(a, b - a + 1));
}

bool EqualsNoCase(std::string_view a, std::string_view b) { return UCase(a) == UCase(b); }

// ---------------------------------------------------------------- numbers and text

std::string NumberToText(double value) {
    if (value == 0) return "0";
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.15G", value);
    std::string s = buf;
    // "%G" may give an exponent; the run-time writes "1E+20" and "1E-05" alike.
    size_t e = s.find('E');
    std::string mant = e == std::string::npos ? s : s.substr(0, e);
    std::string exp = e == std::string::npos ? "" : s.substr(e);
    if (mant.find('.') != std::string::npos) {
        while (!mant.empty() && mant.back() == '0') mant.pop_back();
        if (!mant.empty() && mant.back() == '.') mant.pop_back();
    }
    if (!exp.empty()) {
        // E+020 style is not the run-time's: keep at least two exponent digits.
        char sign = exp[1];
        std::string digits = exp.substr(2);
        while (digits.size() > 2 && digits[0] == '0') digits.erase(0, 1);
        exp = std::string("E") + sign + digits;
    }
    return mant + exp;
}

namespace {
// A radix literal as the run-time types it: up to 16 bits an Integer and up to 32 bits a Long,
// both signed, so that &HFFFF is -1; wider ones keep their unsigned value. A trailing "&" asks for
// a Long, so that &HFFFF& is 65535.
double RadixValue(const std::string& t, size_t i, int radix) {
    double value = 0;
    size_t digits = 0;
    for (; i < t.size(); ++i, ++digits) {
        unsigned char ch = static_cast<unsigned char>(std::toupper(static_cast<unsigned char>(t[i])));
        int d = std::isdigit(ch) ? ch - '0' : (ch >= 'A' && ch <= 'F' ? ch - 'A' + 10 : radix);
        if (d >= radix) break;
        value = value * radix + d;
    }
    if (digits == 0) return 0;
    bool asLong = i < t.size() && t[i] == '&';
    if (!asLong && value <= 0xFFFF) return value >= 0x8000 ? value - 0x10000 : value;
    if (value <= 0xFFFFFFFFu) return value >= 0x80000000u ? value - 4294967296.0 : value;
    return value;
}
}  // namespace

double Val(std::string_view text) {
    // Blanks, tabs and line feeds are skipped anywhere, as the run-time does.
    std::string t;
    for (char c : text)
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') t += c;
    size_t i = 0;
    if (t.size() >= 2 && t[0] == '&') {
        if (t[1] == 'H' || t[1] == 'h') return RadixValue(t, 2, 16);
        if (t[1] == 'O' || t[1] == 'o') return RadixValue(t, 2, 8);
    }
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    size_t digits = 0;
    while (i < t.size() && std::isdigit(static_cast<unsigned char>(t[i]))) ++i, ++digits;
    if (i < t.size() && t[i] == '.') {
        ++i;
        while (i < t.size() && std::isdigit(static_cast<unsigned char>(t[i]))) ++i, ++digits;
    }
    if (digits == 0) return 0;
    if (i < t.size() && (t[i] == 'E' || t[i] == 'e' || t[i] == 'D' || t[i] == 'd')) {
        size_t j = i + 1;
        if (j < t.size() && (t[j] == '+' || t[j] == '-')) ++j;
        size_t k = j;
        while (k < t.size() && std::isdigit(static_cast<unsigned char>(t[k]))) ++k;
        if (k > j) {
            std::string num = t.substr(0, i) + "E" + t.substr(i + 1, k - i - 1);
            return std::strtod(num.c_str(), nullptr);
        }
    }
    return std::strtod(t.substr(0, i).c_str(), nullptr);
}

namespace {
// A text as a number the way the run-time's coercion reads it: the whole text must be numeric.
bool ParseNumber(std::string_view text, double& out) {
    std::string t = Trim(text);
    if (t.empty()) return false;
    // Thousands separators are accepted as the run-time's locale-aware parse does.
    std::string clean;
    for (char c : t)
        if (c != ',') clean += c;
    if (clean == "." || clean == "+" || clean == "-") return false;
    char* end = nullptr;
    out = std::strtod(clean.c_str(), &end);
    if (end != clean.c_str() + clean.size()) return false;
    // strtod reads "inf", "nan" and hex floats; the run-time doesn't.
    for (char c : clean)
        if (!(std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '+' || c == '-' || c == 'e' || c == 'E'))
            return false;
    return true;
}

// ---- dates: a serial counts days from 12/30/1899; below zero the whole part is the day before
// and the fraction is still the time after that day's midnight.

constexpr double kFirstDate = -657434.0;  // 1/1/100
constexpr double kPastLastDate = 2958466.0;  // the day after 12/31/9999
constexpr long long kSerialZeroFromUnix = -25569;  // days from 1/1/1970 to 12/30/1899

long long DaysFromCivil(long long y, long m, long d) {
    y -= m <= 2;
    long long era = (y >= 0 ? y : y - 399) / 400;
    long long yoe = y - era * 400;
    long long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    long long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void CivilFromDays(long long z, long long& y, long& m, long& d) {
    z += 719468;
    long long era = (z >= 0 ? z : z - 146096) / 146097;
    long long doe = z - era * 146097;
    long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    long long mp = (5 * doy + 2) / 153;
    d = static_cast<long>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<long>(mp < 10 ? mp + 3 : mp - 9);
    y = yoe + era * 400 + (m <= 2);
}

// The serial as a day and the seconds after its midnight, rounded to the second as the run-time shows it.
void SplitSerial(double serial, long long& days, long long& seconds) {
    double whole = std::trunc(serial);
    days = static_cast<long long>(whole);
    seconds = std::llround(std::fabs(serial - whole) * 86400.0);
    if (seconds >= 86400) {
        seconds -= 86400;
        ++days;
    }
}

// The short date of the run-time's default (English) locale, with the long time when there is one;
// day zero alone shows as a time.
std::string DateToText(double serial) {
    if (!(serial >= kFirstDate && serial < kPastLastDate)) return NumberToText(serial);
    long long days, seconds;
    SplitSerial(serial, days, seconds);
    char date[64] = "", time[64] = "";
    if (days != 0) {
        long long y;
        long m, d;
        CivilFromDays(days + kSerialZeroFromUnix, y, m, d);
        std::snprintf(date, sizeof date, "%ld/%ld/%04lld", m, d, y);
    }
    if (seconds != 0 || days == 0) {
        long h = static_cast<long>(seconds / 3600), mi = static_cast<long>(seconds / 60 % 60), s = static_cast<long>(seconds % 60);
        std::snprintf(time, sizeof time, "%ld:%02ld:%02ld %s", h % 12 == 0 ? 12 : h % 12, mi, s, h < 12 ? "AM" : "PM");
    }
    if (!*date) return time;
    if (!*time) return date;
    return std::string(date) + " " + time;
}

// Reads a whole text written as DateToText writes it (m/d/yyyy, h:mm[:ss] [AM|PM], or both), so
// that a Date and its text compare equal. Two-digit years follow the run-time's window (00-29 2000s).
bool ParseDateText(std::string_view text, long long& days, long long& seconds) {
    std::string t = UCase(Trim(text));
    size_t i = 0;
    auto number = [&](long& out, size_t maxDigits) {
        size_t start = i;
        out = 0;
        while (i < t.size() && i - start < maxDigits && std::isdigit(static_cast<unsigned char>(t[i])))
            out = out * 10 + (t[i++] - '0');
        return i > start ? static_cast<long>(i - start) : 0L;
    };
    auto skipBlanks = [&] { while (i < t.size() && t[i] == ' ') ++i; };
    days = 0;
    seconds = 0;
    bool any = false;
    long a, b, c;
    size_t mark = i;
    if (number(a, 2) && i < t.size() && t[i] == '/') {
        ++i;
        if (!number(b, 2) || i >= t.size() || t[i] != '/') return false;
        ++i;
        long yearDigits = number(c, 4);
        if (yearDigits == 0 || yearDigits == 3) return false;
        if (yearDigits <= 2) c += c < 30 ? 2000 : 1900;
        if (a < 1 || a > 12 || b < 1) return false;
        static const long kMonthDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        bool leap = (c % 4 == 0 && c % 100 != 0) || c % 400 == 0;
        if (b > kMonthDays[a - 1] || (a == 2 && b == 29 && !leap)) return false;
        days = DaysFromCivil(c, a, b) - kSerialZeroFromUnix;
        any = true;
        skipBlanks();
        mark = i;
    }
    i = mark;
    if (i < t.size()) {
        long h, mi, s = 0;
        if (!number(h, 2) || i >= t.size() || t[i] != ':') return false;
        ++i;
        if (number(mi, 2) != 2 || mi > 59) return false;
        if (i < t.size() && t[i] == ':') {
            ++i;
            if (number(s, 2) != 2 || s > 59) return false;
        }
        skipBlanks();
        if (i < t.size()) {
            std::string_view rest(t.c_str() + i, t.size() - i);
            if ((rest != "AM" && rest != "PM") || h < 1 || h > 12) return false;
            h = h % 12 + (rest == "PM" ? 12 : 0);
            i = t.size();
        }
        if (h > 23) return false;
        seconds = h * 3600 + mi * 60 + s;
        any = true;
    }
    return any && i == t.size();
}
}  // namespace

bool Variant::IsNumeric() const {
    double d;
    switch (type_) {
        case Type::Empty:
        case Type::Boolean:
        case Type::Long:
        case Type::Double: return true;
        case Type::String: return ParseNumber(s_, d);
        default: return false;
    }
}

std::string CStr(const Variant& v) {
    switch (v.type()) {
        case Variant::Type::Empty: return {};
        case Variant::Type::Null: Raise(err::InvalidUseOfNull);
        case Variant::Type::Boolean: return v.RawBool() ? "True" : "False";
        case Variant::Type::Long: return std::to_string(v.RawLong());
        case Variant::Type::Double: return NumberToText(v.RawDouble());
        case Variant::Type::Date: return DateToText(v.RawDouble());
        case Variant::Type::String: return v.RawString();
        case Variant::Type::Error: return "Error " + std::to_string(v.ErrorCode());
    }
    return {};
}

double CDbl(const Variant& v) {
    switch (v.type()) {
        case Variant::Type::Empty: return 0;
        case Variant::Type::Null: Raise(err::InvalidUseOfNull);
        case Variant::Type::Boolean: return v.RawBool() ? -1 : 0;
        case Variant::Type::Long: return static_cast<double>(v.RawLong());
        case Variant::Type::Double:
        case Variant::Type::Date: return v.RawDouble();
        case Variant::Type::String: {
            double d;
            if (ParseNumber(v.RawString(), d)) return d;
            if (EqualsNoCase(Trim(v.RawString()), "True")) return -1;
            if (EqualsNoCase(Trim(v.RawString()), "False")) return 0;
            Raise(err::TypeMismatch);
        }
        case Variant::Type::Error: Raise(err::TypeMismatch);
    }
    return 0;
}

long CLng(const Variant& v) {
    double d = CDbl(v);
    double r = std::nearbyint(d);  // banker's rounding under the default rounding mode
    if (r < static_cast<double>(std::numeric_limits<int32_t>::min()) ||
        r > static_cast<double>(std::numeric_limits<int32_t>::max()))
        Raise(err::Overflow);
    return static_cast<long>(r);
}

bool CBool(const Variant& v) {
    switch (v.type()) {
        case Variant::Type::Boolean: return v.RawBool();
        case Variant::Type::String: {
            std::string t = Trim(v.RawString());
            if (EqualsNoCase(t, "True")) return true;
            if (EqualsNoCase(t, "False")) return false;
            double d;
            if (ParseNumber(t, d)) return d != 0;
            Raise(err::TypeMismatch);
        }
        default: return CDbl(v) != 0;
    }
}

bool operator==(const Variant& a, const Variant& b) {
    using T = Variant::Type;
    if (a.type() == T::Null || b.type() == T::Null) return false;
    if (a.type() == T::String && b.type() == T::String) return a.RawString() == b.RawString();
    if (a.type() == T::Error || b.type() == T::Error)
        return a.type() == b.type() && a.ErrorCode() == b.ErrorCode();
    if (a.type() == T::String || b.type() == T::String) {
        const Variant& s = a.type() == T::String ? a : b;
        const Variant& o = a.type() == T::String ? b : a;
        if (o.IsEmpty()) return s.RawString().empty();
        // Against a Date the text is read as a date, not as a number.
        if (o.type() == T::Date) {
            long long days, seconds, textDays, textSeconds;
            if (!ParseDateText(s.RawString(), textDays, textSeconds)) return false;
            SplitSerial(o.RawDouble(), days, seconds);
            return days == textDays && seconds == textSeconds;
        }
        double d;
        if (!ParseNumber(s.RawString(), d)) return false;
        return d == CDbl(o);
    }
    return CDbl(a) == CDbl(b);
}

}  // namespace host
