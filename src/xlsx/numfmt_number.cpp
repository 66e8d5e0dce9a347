// Rendering of numbers: placeholders, grouping, scaling, scientific notation, fractions, General.
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "xlsx/numfmt_internal.h"

namespace xlsx::numfmt {

namespace {

// ---------------------------------------------------------------------------------------------
// Decimal digits. The application keeps 15 significant digits and rounds half away from zero
// on that decimal form, so 2.675 (binary 2.67499999...) shows 2.68 with two decimals.

// value = 0.d[0]d[1]...d[n-1] x 10^point; no leading or trailing zeros; n == 0 for zero.
struct Decimal {
    char d[24];
    int n = 0;
    int point = 0;

    char Digit(int i) const { return i >= 0 && i < n ? d[i] : '0'; }
};

Decimal ToDecimal(double v) {
    Decimal x;
    if (v == 0) return x;
    char buf[40];
    const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific, 14);
    // "d.dddddddddddddde+XX"
    x.d[0] = buf[0];
    for (int i = 0; i < 14; ++i) x.d[i + 1] = buf[i + 2];
    int exp = 0;
    std::from_chars(buf + 17 + (buf[17] == '+'), r.ptr, exp);
    x.n = 15;
    x.point = exp + 1;
    while (x.n > 0 && x.d[x.n - 1] == '0') --x.n;
    return x;
}

// Keeps the first `keep` significant digits, rounding half up.
void RoundDigits(Decimal& x, int keep) {
    if (keep >= x.n) return;
    if (keep < 0) {
        x.n = 0;
        return;
    }
    const bool up = x.d[keep] >= '5';
    x.n = keep;
    if (up) {
        int i = keep - 1;
        while (i >= 0 && x.d[i] == '9') --i;
        if (i < 0) {
            x.d[0] = '1';
            x.n = 1;
            ++x.point;
        } else {
            ++x.d[i];
            x.n = i + 1;
        }
    }
    while (x.n > 0 && x.d[x.n - 1] == '0') --x.n;
}

void RoundDecimals(Decimal& x, int decimals) { RoundDigits(x, x.point + decimals); }

// The whole-number digits ("" for less than one).
std::string WholeDigits(const Decimal& x) {
    std::string s;
    if (x.n == 0 || x.point <= 0) return s;
    s.reserve(static_cast<size_t>(x.point));
    for (int i = 0; i < x.point; ++i) s += x.Digit(i);
    return s;
}

// The significant decimal digits: up to `count` after the point, trailing zeros dropped.
std::string FractionDigits(const Decimal& x, int count) {
    std::string s;
    for (int i = 0; i < count; ++i) s += x.Digit(x.point + i);
    while (!s.empty() && s.back() == '0') s.pop_back();
    return s;
}

void AppendInt(long long v, std::string& out) {
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    out.append(buf, r.ptr);
}

// ---------------------------------------------------------------------------------------------
// General: the shortest faithful text in a cell of standard width, at most 11 characters
// besides the sign, switching to scientific notation when that shows more digits.

void AppendScientific(Decimal x, int sig, std::string& out) {
    RoundDigits(x, sig);
    const int exp = x.point - 1;
    out += x.Digit(0);
    if (x.n > 1) {
        out += '.';
        out.append(x.d + 1, x.d + x.n);
    }
    out += exp < 0 ? "E-" : "E+";
    if (std::abs(exp) < 10) out += '0';
    AppendInt(std::abs(exp), out);
}

void AppendGeneral(double v, std::string& out) {
    const Decimal x = ToDecimal(v);
    if (x.n == 0) {
        out += '0';
        return;
    }
    const int p = x.point;
    const int sciDigits = std::abs(p - 1) >= 100 ? 5 : 6;
    if (p <= 11) {
        // Significant digits the plain form can hold in 11 characters.
        const int plainDigits = p == 11 ? 11 : p >= 1 ? 10 : 9 + p;
        if (x.n <= plainDigits || plainDigits >= sciDigits) {
            Decimal y = x;
            RoundDecimals(y, p >= 1 ? std::max(0, 10 - p) : 9);
            if (y.n > 0 && y.point <= 11) {
                const std::string whole = WholeDigits(y);
                out += whole.empty() ? "0" : whole;
                const std::string frac = FractionDigits(y, 10);
                if (!frac.empty()) {
                    out += '.';
                    out += frac;
                }
                return;
            }
        }
    }
    AppendScientific(x, sciDigits, out);
}

// ---------------------------------------------------------------------------------------------
// Placeholders.

void AppendPad(char placeholder, std::string& out) {
    if (placeholder == '0') out += '0';
    else if (placeholder == '?') out += ' ';
}

struct Pieces {
    std::string_view whole;    // digits of the whole number, "" for zero
    std::string_view decimals; // significant decimal digits
    std::string_view exp;      // digits of the exponent
    char expSign = 0;
    std::string_view num, den;
    bool denZeros = false;     // denominator of '0' placeholders only: padded with zeros in front
};

// A placeholder of a group counted from the right (whole number, exponent, numerator); the
// leftmost one also takes the digits that don't fit. `group` puts thousands separators in.
void AppendRightAligned(const Token& t, std::string_view digits, int count, bool group, std::string& out) {
    const int len = static_cast<int>(digits.size());
    auto separator = [&](int place, char shown) {
        if (!group || place <= 1 || (place - 1) % 3 != 0) return;
        if (shown == ' ') out += ' ';
        else if (shown != 0) out += ',';
    };
    if (t.first) {
        for (int place = len; place > count; --place) {
            out += digits[static_cast<size_t>(len - place)];
            separator(place, '0');
        }
    }
    if (t.pos <= len) {
        out += digits[static_cast<size_t>(len - t.pos)];
        separator(t.pos, '0');
    } else {
        AppendPad(t.ch, out);
        separator(t.pos, t.ch == '#' ? 0 : t.ch == '?' ? ' ' : '0');
    }
}

void AppendDenominator(const Token& t, const Pieces& g, int count, std::string& out) {
    const int len = static_cast<int>(g.den.size());
    if (g.denZeros) {
        const int lead = count - len;
        if (t.pos > lead) out += g.den[static_cast<size_t>(t.pos - lead - 1)];
        else out += '0';
        return;
    }
    // Left-aligned so the bars of a column line up; the last placeholder takes any excess.
    if (t.pos < count || len <= count) {
        if (t.pos <= len) out += g.den[static_cast<size_t>(t.pos - 1)];
        else if (t.ch != '#') out += ' ';
    } else {
        out.append(g.den.substr(static_cast<size_t>(t.pos - 1)));
    }
}

void AppendToken(const Section& s, const Token& t, const Pieces& g, std::string& out) {
    switch (t.kind) {
        case Kind::Literal: out += t.text; break;
        case Kind::Percent: out += '%'; break;
        case Kind::Slash: out += '/'; break;
        case Kind::ExpMark: out += 'E'; break;
        case Kind::Point:
            // Without whole-number placeholders the whole number still shows, before the point.
            if (s.intDigits == 0 && !s.exponent) out += g.whole;
            out += '.';
            break;
        case Kind::Digit:
            switch (t.role) {
                case Role::Int: AppendRightAligned(t, g.whole, s.intDigits, s.grouping, out); break;
                case Role::Dec:
                    if (t.pos <= static_cast<int>(g.decimals.size())) out += g.decimals[static_cast<size_t>(t.pos - 1)];
                    else AppendPad(t.ch, out);
                    break;
                case Role::Exp:
                    if (t.first && g.expSign) out += g.expSign;
                    AppendRightAligned(t, g.exp, s.expDigits, false, out);
                    break;
                case Role::Num: AppendRightAligned(t, g.num, s.numDigits, false, out); break;
                case Role::Den: AppendDenominator(t, g, s.denDigits, out); break;
                case Role::Pad: AppendPad(t.ch, out); break;
            }
            break;
        default: break;
    }
}

void AppendTokens(const Section& s, const Pieces& g, std::string& out) {
    for (const Token& t : s.tokens) AppendToken(s, t, g, out);
}

// ---------------------------------------------------------------------------------------------
// Plain decimals, scientific notation, fractions.

void RenderDecimal(const Section& s, double v, bool negative, std::string& out) {
    Decimal x = ToDecimal(v);
    if (x.n > 0) x.point += s.scale;
    RoundDecimals(x, s.decDigits);
    const std::string whole = WholeDigits(x);
    const std::string decimals = FractionDigits(x, s.decDigits);
    // A number that rounds to zero loses its sign.
    if (negative && x.n > 0) out += '-';
    Pieces g;
    g.whole = whole;
    g.decimals = decimals;
    AppendTokens(s, g, out);
}

long long FloorMod(long long a, long long b) {
    const long long m = a % b;
    return m < 0 ? m + b : m;
}

void RenderScientific(const Section& s, double v, bool negative, std::string& out) {
    Decimal x = ToDecimal(v);
    int exp = 0;
    int intCount = 0;
    if (x.n > 0) {
        x.point += s.scale;
        // With several whole-number placeholders the exponent is a multiple of their count
        // (engineering notation with ##0.0E+0).
        for (int pass = 0; pass < 2; ++pass) {
            const int e10 = x.point - 1;
            exp = s.intDigits >= 1 ? e10 - static_cast<int>(FloorMod(e10, s.intDigits)) : e10 + 1;
            intCount = e10 - exp + 1;
            const int before = x.point;
            RoundDigits(x, intCount + s.decDigits);
            if (x.point == before) break;  // else it rounded up to the next power of ten
        }
    }
    std::string whole;
    for (int i = 0; i < intCount && x.n > 0; ++i) whole += x.Digit(i);
    std::string decimals;
    for (int i = 0; i < s.decDigits; ++i) decimals += x.Digit(intCount + i);
    while (!decimals.empty() && decimals.back() == '0') decimals.pop_back();
    if (x.n == 0) decimals.clear();
    std::string expDigits;
    AppendInt(std::abs(exp), expDigits);

    if (negative && x.n > 0) out += '-';
    Pieces g;
    g.whole = whole;
    g.decimals = decimals;
    g.exp = expDigits;
    g.expSign = exp < 0 ? '-' : s.expPlus ? '+' : 0;
    AppendTokens(s, g, out);
}

// The last convergent of x's continued fraction (worked out in binary floating point, as the
// application does) whose denominator has at most the placeholders' digits. Stops once closer
// than the stored value's precision.
void Approximate(double x, long long maxDen, long long& num, long long& den) {
    long long p0 = 0, q0 = 1, p1 = 1, q1 = 0;
    double r = x;
    for (int iter = 0; iter < 64; ++iter) {
        const double a = std::floor(r);
        if (a > 9e15) break;
        const auto ai = static_cast<long long>(a);
        const long long p2 = ai * p1 + p0, q2 = ai * q1 + q0;
        if (q2 > maxDen) break;
        p0 = p1;
        q0 = q1;
        p1 = p2;
        q1 = q2;
        if (std::fabs(x - static_cast<double>(p1) / static_cast<double>(q1)) < 1e-14) break;
        const double rest = r - a;
        if (rest <= 0) break;
        r = 1 / rest;
    }
    if (q1 == 0) {
        p1 = static_cast<long long>(std::floor(x));
        q1 = 1;
    }
    num = p1;
    den = q1;
}

double Rounded15(double v) {
    char buf[40];
    const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific, 14);
    double out = v;
    std::from_chars(buf, r.ptr, out);
    return out;
}

// Digits of a whole number held in a double ("" for zero); past 2^53 through its decimal form.
std::string WholeNumberDigits(double w) {
    std::string s;
    if (w >= 1e15) s = WholeDigits(ToDecimal(w));
    else if (w >= 1) AppendInt(static_cast<long long>(w), s);
    return s;
}

// As many spaces as `text` has characters.
void AppendBlanks(std::string_view text, std::string& out) {
    for (const char c : text)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) out += ' ';
}

void RenderFraction(const Section& s, double v, bool negative, std::string& out) {
    if (s.scale != 0) v *= std::pow(10.0, s.scale);
    v = Rounded15(v);
    double whole = s.fracInt ? std::floor(v) : 0;
    const double rest = v - whole;
    double num = 0;
    long long den = 1;
    if (s.fixedDen > 0) {
        den = s.fixedDen;
        num = std::floor(rest * static_cast<double>(den) + 0.5);
    } else if (rest >= 1e15) {
        num = rest;  // no digits left for a fraction
    } else {
        long long maxDen = 1;
        for (int i = 0; i < std::min(s.denDigits, 9); ++i) maxDen *= 10;
        long long n = 0;
        Approximate(rest, maxDen - 1, n, den);
        num = static_cast<double>(n);
    }
    if (s.fracInt && num == static_cast<double>(den)) {
        whole += 1;
        num = 0;
    }

    // A zero fraction after a whole number shows as 0/1 with '0' placeholders, as blanks with
    // '?', not at all with '#'.
    bool numZero = false, numQuery = false, denZeros = s.denDigits > 0;
    for (const Token& t : s.tokens) {
        if (t.kind != Kind::Digit) continue;
        if (t.role == Role::Num && t.ch == '0') numZero = true;
        if (t.role == Role::Num && t.ch == '?') numQuery = true;
        if (t.role == Role::Den && t.ch != '0') denZeros = false;
    }
    const bool blank = s.fracInt && num == 0 && !numZero;

    std::string wholeDigits = WholeNumberDigits(whole);
    if (wholeDigits.empty() && blank) wholeDigits = "0";  // something must show
    std::string numDigits = WholeNumberDigits(num);
    if (numDigits.empty()) numDigits = "0";
    std::string denDigits;
    AppendInt(blank && s.fixedDen == 0 ? 1 : den, denDigits);

    if (negative) out += '-';
    Pieces g;
    g.whole = wholeDigits;
    g.num = numDigits;
    g.den = denDigits;
    g.denZeros = denZeros;
    if (!blank) {
        AppendTokens(s, g, out);
        return;
    }
    std::string hidden;  // the fraction part, rendered for its width
    for (const Token& t : s.tokens) {
        if (t.frac) {
            AppendToken(s, t, g, hidden);
            continue;
        }
        if (numQuery) AppendBlanks(hidden, out);
        hidden.clear();
        AppendToken(s, t, g, out);
    }
    if (numQuery) AppendBlanks(hidden, out);
}

}  // namespace

void RenderGeneral(double v, std::string& out) {
    if (v < 0) out += '-';
    AppendGeneral(std::fabs(v), out);
}

void RenderNumber(const Section& s, double v, bool negative, std::string& out) {
    if (s.type == SectionType::General) {
        if (negative) out += '-';
        for (const Token& t : s.tokens) {
            if (t.kind == Kind::General) AppendGeneral(v, out);
            else if (t.kind == Kind::Literal) out += t.text;
        }
        return;
    }
    if (!s.hasDigits) {
        if (negative) out += '-';
        for (const Token& t : s.tokens)
            if (t.kind == Kind::Literal) out += t.text;
        return;
    }
    if (s.fraction) RenderFraction(s, v, negative, out);
    else if (s.exponent) RenderScientific(s, v, negative, out);
    else RenderDecimal(s, v, negative, out);
}

}  // namespace xlsx::numfmt
