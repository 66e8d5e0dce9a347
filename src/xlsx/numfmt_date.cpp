// Rendering of dates and times from serial numbers of the 1900 date system.
#include <charconv>
#include <cmath>

#include "xlsx/numfmt_internal.h"

namespace xlsx::numfmt {

namespace {

// Serial 2958466 is 10000-01-01, beyond the last day the application shows.
constexpr double kSerialLimit = 2958466;

constexpr const char* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};
constexpr const char* kDays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

struct Civil {
    int year, month, day;
};

// Days since 1970-01-01 to a proleptic Gregorian date.
Civil CivilFromDays(long long z) {
    z += 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const auto doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long y = static_cast<long long>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const unsigned d = doy - (153 * mp + 2) / 5 + 1;
    const unsigned m = mp < 10 ? mp + 3 : mp - 9;
    return {static_cast<int>(y + (m <= 2)), static_cast<int>(m), static_cast<int>(d)};
}

// The 1900 system counts 1900-02-29, a day that never was (serial 60), and shows serial 0 as
// 1900-01-00.
Civil DateFromSerial(long long serial) {
    if (serial == 0) return {1900, 1, 0};
    if (serial == 60) return {1900, 2, 29};
    const long long real = serial < 60 ? serial : serial - 1;  // days after 1899-12-31
    return CivilFromDays(real - 25568);                        // 1899-12-31 is day -25568
}

void AppendNumber(long long v, int width, std::string& out) {
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    for (int n = static_cast<int>(r.ptr - buf); n < width; ++n) out += '0';
    out.append(buf, r.ptr);
}

}  // namespace

void RenderDate(const Section& s, double v, std::string& out) {
    if (!(v >= 0) || v >= kSerialLimit) {
        out += "######";
        return;
    }
    // Round once to the finest unit shown: whole seconds, or the fractional digits.
    long long unit = 1;
    for (int i = 0; i < s.fracSecDigits; ++i) unit *= 10;
    const long long perDay = 86400 * unit;
    const auto ticks = static_cast<long long>(std::floor(v * static_cast<double>(perDay) + 0.5));
    const long long serial = ticks / perDay;
    if (serial >= static_cast<long long>(kSerialLimit)) {
        out += "######";
        return;
    }
    const long long secondsOfDay = ticks % perDay / unit;
    const long long fraction = ticks % unit;
    const int hour = static_cast<int>(secondsOfDay / 3600);
    const int minute = static_cast<int>(secondsOfDay / 60 % 60);
    const int second = static_cast<int>(secondsOfDay % 60);
    Civil date{0, 0, 0};
    bool haveDate = false;
    auto civil = [&]() -> const Civil& {
        if (!haveDate) date = DateFromSerial(serial), haveDate = true;
        return date;
    };

    for (const Token& t : s.tokens) {
        switch (t.kind) {
            case Kind::Literal: out += t.text; break;
            case Kind::Year:
                if (t.width <= 2) AppendNumber(civil().year % 100, 2, out);
                else AppendNumber(civil().year, 4, out);
                break;
            case Kind::EraYear: AppendNumber(civil().year, 4, out); break;
            case Kind::Buddhist:
                if (t.width <= 2) AppendNumber((civil().year + 543) % 100, 2, out);
                else AppendNumber(civil().year + 543, 4, out);
                break;
            case Kind::EraName: break;  // the Gregorian calendar has no era name
            case Kind::Month: {
                const int m = civil().month;
                if (t.width <= 2) AppendNumber(m, t.width, out);
                else if (t.width == 3) out.append(kMonths[m - 1], 3);
                else if (t.width == 5) out += kMonths[m - 1][0];
                else out += kMonths[m - 1];
                break;
            }
            case Kind::Minute: AppendNumber(minute, t.width, out); break;
            case Kind::Day: AppendNumber(civil().day, t.width, out); break;
            case Kind::Weekday: {
                const auto wd = static_cast<size_t>((serial + 6) % 7);  // serial 1 is a Sunday
                if (t.width == 3) out.append(kDays[wd], 3);
                else out += kDays[wd];
                break;
            }
            case Kind::Hour: {
                int h = hour;
                if (s.hasAmPm) h = h % 12 == 0 ? 12 : h % 12;
                AppendNumber(h, t.width >= 2 ? 2 : 1, out);
                break;
            }
            case Kind::Second: AppendNumber(second, t.width >= 2 ? 2 : 1, out); break;
            case Kind::Elapsed: {
                const long long seconds = ticks / unit;
                const long long total = t.ch == 'h' ? seconds / 3600 : t.ch == 'm' ? seconds / 60 : seconds;
                AppendNumber(total, t.width, out);
                break;
            }
            case Kind::FracSec: {
                std::string digits;
                AppendNumber(fraction, s.fracSecDigits, digits);
                out += '.';
                out.append(digits, 0, static_cast<size_t>(t.width));
                break;
            }
            case Kind::AmPm: {
                const size_t sep = t.text.find('\0');
                if (hour < 12) out.append(t.text, 0, sep);
                else out.append(t.text, sep + 1);
                break;
            }
            default: break;
        }
    }
}

}  // namespace xlsx::numfmt
