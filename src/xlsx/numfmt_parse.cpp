// Parsing of number format codes into sections, with the application's refusals.
#include <algorithm>
#include <charconv>

#include "xlsx/numfmt.h"
#include "xlsx/numfmt_internal.h"

namespace xlsx::numfmt {

namespace {

[[noreturn]] void Fail(std::string_view code, const char* why) {
    throw NumberFormatError("invalid number format \"" + std::string(code) + "\": " + why);
}

// Bytes of the UTF-8 sequence starting at `i`.
size_t CodepointLength(std::string_view s, size_t i) {
    const auto c = static_cast<unsigned char>(s[i]);
    size_t n = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    return std::min(n, s.size() - i);
}

bool StartsWithNoCase(std::string_view s, size_t i, std::string_view word) {
    if (s.size() - i < word.size()) return false;
    for (size_t k = 0; k < word.size(); ++k) {
        char c = s[i + k];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != word[k]) return false;
    }
    return true;
}

size_t RunLength(std::string_view s, size_t i, char lower) {
    const char upper = static_cast<char>(lower - 'a' + 'A');
    size_t n = 0;
    while (i + n < s.size() && (s[i + n] == lower || s[i + n] == upper)) ++n;
    return n;
}

bool IsDateKind(Kind k) {
    switch (k) {
        case Kind::Year: case Kind::EraYear: case Kind::Buddhist: case Kind::EraName:
        case Kind::Month: case Kind::Minute: case Kind::Day: case Kind::Weekday:
        case Kind::Hour: case Kind::Second: case Kind::Elapsed: case Kind::AmPm:
            return true;
        default:
            return false;
    }
}

struct RawSection {
    std::vector<Token> tokens;
    Condition cond;
    bool brackets = false;  // colours, conditions, locales...
    bool content = false;   // ...and anything else
};

void AddLiteral(RawSection& s, std::string_view text, char digit = 0) {
    Token t;
    t.kind = Kind::Literal;
    t.text = text;
    t.ch = digit;
    s.tokens.push_back(std::move(t));
}

// The two texts of a morning/afternoon marker are kept apart by a NUL.
void AddAmPm(RawSection& s, std::string_view am, std::string_view pm) {
    Token t;
    t.kind = Kind::AmPm;
    t.text.assign(am);
    t.text += '\0';
    t.text += pm;
    s.tokens.push_back(std::move(t));
}

void AddToken(RawSection& s, Kind kind, char ch = 0, int width = 0) {
    Token t;
    t.kind = kind;
    t.ch = ch;
    t.width = width;
    s.tokens.push_back(std::move(t));
}

// ---------------------------------------------------------------------------------------------
// Bracketed parts: colours, conditions, currency and locale, elapsed time, other modifiers.

void ParseBracket(std::string_view code, std::string_view inner, RawSection& s) {
    if (inner.empty()) return;
    if (inner[0] == '$') {
        // [$€-407]: the currency text is shown, the locale after '-' is not.
        std::string_view cur = inner.substr(1);
        if (auto dash = cur.rfind('-'); dash != std::string_view::npos) cur = cur.substr(0, dash);
        if (!cur.empty()) AddLiteral(s, cur);
        return;
    }
    if (inner[0] == '<' || inner[0] == '>' || inner[0] == '=') {
        Op op;
        size_t n = 1;
        if (inner.substr(0, 2) == "<=") op = Op::Le, n = 2;
        else if (inner.substr(0, 2) == ">=") op = Op::Ge, n = 2;
        else if (inner.substr(0, 2) == "<>") op = Op::Ne, n = 2;
        else if (inner[0] == '<') op = Op::Lt;
        else if (inner[0] == '>') op = Op::Gt;
        else op = Op::Eq;
        const std::string_view number = inner.substr(n);
        double operand = 0;
        const auto r = std::from_chars(number.data(), number.data() + number.size(), operand);
        if (number.empty() || r.ec != std::errc() || r.ptr != number.data() + number.size())
            Fail(code, "bad condition");
        if (s.cond.op == Op::None) s.cond = Condition{op, operand};
        return;
    }
    const char unit = static_cast<char>(inner[0] | 0x20);
    if ((unit == 'h' || unit == 'm' || unit == 's') &&
        RunLength(inner, 0, unit) == inner.size()) {
        AddToken(s, Kind::Elapsed, unit, static_cast<int>(inner.size()));
        return;
    }
    // Colours ([Red], [Color10]) and modifiers such as [DBNum1] change nothing in the text.
}

// ---------------------------------------------------------------------------------------------
// Tokenizer: the whole code into raw sections.

std::vector<RawSection> Tokenize(std::string_view code) {
    std::vector<RawSection> sections(1);
    size_t i = 0;
    const size_t n = code.size();
    while (i < n) {
        RawSection& s = sections.back();
        const char c = code[i];
        if (c == '[') s.brackets = true;
        else if (c != ';') s.content = true;
        switch (c) {
            case ';':
                sections.emplace_back();
                ++i;
                break;
            case '"': {
                const size_t end = code.find('"', i + 1);
                if (end == std::string_view::npos) Fail(code, "unterminated quoted text");
                if (end > i + 1) AddLiteral(s, code.substr(i + 1, end - i - 1));
                i = end + 1;
                break;
            }
            case '\\':
            case '_':
            case '*': {
                if (i + 1 >= n) Fail(code, "nothing after an escape, skip or fill");
                const size_t len = CodepointLength(code, i + 1);
                if (c == '\\') AddLiteral(s, code.substr(i + 1, len));
                if (c == '_') AddLiteral(s, " ");  // the width of a character: one space
                // '*' repeats its character to fill the cell; no width here, so nothing.
                i += 1 + len;
                break;
            }
            case '[': {
                const size_t end = code.find(']', i + 1);
                if (end == std::string_view::npos) Fail(code, "unterminated bracket");
                ParseBracket(code, code.substr(i + 1, end - i - 1), s);
                i = end + 1;
                break;
            }
            case '0': case '#': case '?':
                AddToken(s, Kind::Digit, c);
                ++i;
                break;
            case '.': AddToken(s, Kind::Point); ++i; break;
            case ',': AddToken(s, Kind::Comma); ++i; break;
            case '%': AddToken(s, Kind::Percent); ++i; break;
            case '/': AddToken(s, Kind::Slash); ++i; break;
            case '@': AddToken(s, Kind::Text); ++i; break;
            case 'E':
                if (i + 1 < n && (code[i + 1] == '+' || code[i + 1] == '-')) {
                    AddToken(s, Kind::ExpMark, code[i + 1]);
                    i += 2;
                    break;
                }
                Fail(code, "'E' without '+' or '-'");
            case 'N': case 'n':
                Fail(code, "unquoted 'n'");
            case 'e': {
                const size_t len = RunLength(code, i, 'e');
                AddToken(s, Kind::EraYear, 'e', static_cast<int>(len));
                i += len;
                break;
            }
            case 'G': case 'g':
                if (StartsWithNoCase(code, i, "general")) {
                    AddToken(s, Kind::General);
                    i += 7;
                } else {
                    const size_t len = RunLength(code, i, 'g');
                    AddToken(s, Kind::EraName, 'g', static_cast<int>(len));
                    i += len;
                }
                break;
            case 'B': case 'b': {
                if (c == 'B' && i + 1 < n && (code[i + 1] == '1' || code[i + 1] == '2')) {
                    i += 2;  // calendar choice; the Gregorian calendar is shown
                    break;
                }
                if (c == 'B' && i + 1 == n) Fail(code, "'B' at the end");
                const size_t len = RunLength(code, i, 'b');
                AddToken(s, Kind::Buddhist, 'b', static_cast<int>(len));
                i += len;
                break;
            }
            case 'Y': case 'y': case 'M': case 'm': case 'D': case 'd':
            case 'H': case 'h': case 'S': case 's': {
                const char lower = static_cast<char>(c | 0x20);
                const size_t len = RunLength(code, i, lower);
                const int w = static_cast<int>(len);
                switch (lower) {
                    case 'y': AddToken(s, Kind::Year, 'y', w); break;
                    case 'm': AddToken(s, Kind::Month, 'm', w); break;
                    case 'd': AddToken(s, w >= 3 ? Kind::Weekday : Kind::Day, 'd', w); break;
                    case 'h': AddToken(s, Kind::Hour, 'h', w); break;
                    default: AddToken(s, Kind::Second, 's', w); break;
                }
                i += len;
                break;
            }
            case 'A': case 'a': {
                if (StartsWithNoCase(code, i, "am/pm")) {
                    AddAmPm(s, "AM", "PM");  // upper case however written
                    i += 5;
                } else if (StartsWithNoCase(code, i, "a/p")) {
                    AddAmPm(s, code.substr(i, 1), code.substr(i + 2, 1));  // case as written
                    i += 3;
                } else if (const size_t len = RunLength(code, i, 'a'); len >= 3) {
                    AddToken(s, Kind::Weekday, 'a', static_cast<int>(len));
                    i += len;
                } else {
                    AddLiteral(s, code.substr(i, 1));
                    ++i;
                }
                break;
            }
            case '1': case '2': case '3': case '4': case '5': case '6': case '7': case '8': case '9':
                AddLiteral(s, code.substr(i, 1), c);
                ++i;
                break;
            default: {
                const size_t len = CodepointLength(code, i);
                const std::string_view cp = code.substr(i, len);
                static constexpr std::string_view kChineseAmPm = "\u4E0A\u5348/\u4E0B\u5348";
                if (code.substr(i, kChineseAmPm.size()) == kChineseAmPm) {
                    AddAmPm(s, kChineseAmPm.substr(0, 6), kChineseAmPm.substr(7));  // works as AM/PM
                    i += kChineseAmPm.size();
                    break;
                }
                // Accented forms of 'e' and 'n' are refused like the letters themselves.
                static constexpr std::string_view kRefused[] = {"\u00C9", "\u00C8", "\u00CA", "\u00CB",
                                                                "\u00E9", "\u00E8", "\u00EA", "\u00EB",
                                                                "\u00D1", "\u00F1"};
                if (std::find(std::begin(kRefused), std::end(kRefused), cp) != std::end(kRefused))
                    Fail(code, "unquoted accented 'e' or 'n'");
                AddLiteral(s, cp);
                i += len;
                break;
            }
        }
    }
    return sections;
}

// ---------------------------------------------------------------------------------------------
// Section building.

struct SectionFlags {
    bool date = false, general = false, text = false, digits = false, exp = false;
    bool percent = false, slash = false;
};

SectionFlags Inspect(const std::vector<Token>& tokens) {
    SectionFlags f;
    for (const Token& t : tokens) {
        if (IsDateKind(t.kind)) f.date = true;
        else if (t.kind == Kind::General) f.general = true;
        else if (t.kind == Kind::Text) f.text = true;
        else if (t.kind == Kind::Digit) f.digits = true;
        else if (t.kind == Kind::ExpMark) f.exp = true;
        else if (t.kind == Kind::Percent) f.percent = true;
        else if (t.kind == Kind::Slash) f.slash = true;
    }
    return f;
}

Token MakeLiteral(std::string text) {
    Token t;
    t.kind = Kind::Literal;
    t.text = std::move(text);
    return t;
}

// Turns the punctuation of a section without digits into plain text.
void PunctuationToText(std::vector<Token>& tokens) {
    for (Token& t : tokens) {
        switch (t.kind) {
            case Kind::Point: t = MakeLiteral("."); break;
            case Kind::Comma: t = MakeLiteral(","); break;
            case Kind::Slash: t = MakeLiteral("/"); break;
            case Kind::Percent: t = MakeLiteral("%"); break;
            default: break;
        }
    }
}

// 'm' and 'mm' are minutes right after hours, or right before seconds; also right after
// seconds that no earlier minute took.
void ResolveMinutes(std::vector<Token>& tokens) {
    std::vector<size_t> parts;
    for (size_t i = 0; i < tokens.size(); ++i)
        if (IsDateKind(tokens[i].kind) && tokens[i].kind != Kind::AmPm) parts.push_back(i);
    std::vector<bool> secondTaken(tokens.size(), false);
    auto isHour = [&](size_t i) {
        return tokens[i].kind == Kind::Hour || (tokens[i].kind == Kind::Elapsed && tokens[i].ch == 'h');
    };
    auto isSecond = [&](size_t i) {
        return tokens[i].kind == Kind::Second || (tokens[i].kind == Kind::Elapsed && tokens[i].ch == 's');
    };
    for (size_t k = 0; k < parts.size(); ++k) {
        Token& t = tokens[parts[k]];
        if (t.kind != Kind::Month || t.width > 2) continue;
        const bool prevHour = k > 0 && isHour(parts[k - 1]);
        const bool prevFreeSecond = k > 0 && isSecond(parts[k - 1]) && !secondTaken[parts[k - 1]];
        const bool nextSecond = k + 1 < parts.size() && isSecond(parts[k + 1]);
        if (prevHour || nextSecond || prevFreeSecond) {
            t.kind = Kind::Minute;
            if (nextSecond) secondTaken[parts[k + 1]] = true;
        }
    }
}

void BuildDate(std::string_view code, Section& s) {
    std::vector<Token> out;
    out.reserve(s.tokens.size());
    for (size_t i = 0; i < s.tokens.size(); ++i) {
        Token& t = s.tokens[i];
        switch (t.kind) {
            case Kind::Point: {
                // ".0", ".00", ".000": fractional seconds wherever they stand.
                size_t j = i + 1;
                while (j < s.tokens.size() && s.tokens[j].kind == Kind::Digit && s.tokens[j].ch == '0') ++j;
                if (j > i + 1) {
                    Token f;
                    f.kind = Kind::FracSec;
                    f.width = static_cast<int>(std::min<size_t>(j - i - 1, 3));
                    s.fracSecDigits = std::max(s.fracSecDigits, f.width);
                    out.push_back(std::move(f));
                    i = j - 1;
                } else {
                    out.push_back(MakeLiteral("."));
                }
                break;
            }
            case Kind::Digit: Fail(code, "digit placeholder in a date");
            case Kind::Percent: Fail(code, "percent in a date");
            case Kind::ExpMark: Fail(code, "exponent in a date");
            case Kind::General: Fail(code, "General in a date");
            case Kind::Text: Fail(code, "text placeholder in a date");
            case Kind::Comma: out.push_back(MakeLiteral(",")); break;
            case Kind::Slash: out.push_back(MakeLiteral("/")); break;
            case Kind::AmPm: s.hasAmPm = true; out.push_back(std::move(t)); break;
            default: out.push_back(std::move(t)); break;
        }
    }
    s.tokens = std::move(out);
    ResolveMinutes(s.tokens);
    s.type = SectionType::Date;
}

// Digits and points make a following comma a separator or a divisor; so do digits written as
// text ("01," divides by 1000).
bool DigitLike(const Token& t) {
    return t.kind == Kind::Digit || t.kind == Kind::Point || (t.kind == Kind::Literal && t.ch != 0);
}

// Marks the placeholders of one group: places counted from the right or from the left.
void NumberGroup(std::vector<Token>& tokens, const std::vector<size_t>& idx, Role role, bool fromRight) {
    const int count = static_cast<int>(idx.size());
    for (int k = 0; k < count; ++k) {
        Token& t = tokens[idx[k]];
        t.role = role;
        t.pos = fromRight ? count - k : k + 1;
        t.first = k == 0;
    }
}

// Token indices that split a number; `none` (the token count) where absent.
struct Landmarks {
    size_t none, exp, slash, point;
    size_t numerator;  // first placeholder of a fraction's numerator
};

Landmarks FindLandmarks(std::string_view code, std::vector<Token>& tk) {
    const size_t none = tk.size();
    Landmarks m{none, none, none, none, none};
    for (size_t i = 0; i < tk.size(); ++i) {
        if (tk[i].kind == Kind::ExpMark) {
            if (m.exp != none) Fail(code, "two exponents");
            m.exp = i;
        } else if (tk[i].kind == Kind::Slash) {
            if (m.slash == none && m.exp == none) m.slash = i;
            else tk[i] = MakeLiteral("/");
        }
    }
    if (m.exp != none && m.slash != none) Fail(code, "exponent and fraction together");
    // The first point before an exponent or a fraction is the decimal point; others are text.
    const size_t end = std::min(m.exp, m.slash);
    for (size_t i = 0; i < tk.size(); ++i) {
        if (tk[i].kind != Kind::Point) continue;
        if (m.point == none && i < end) m.point = i;
        else tk[i] = MakeLiteral(".");
    }
    if (m.slash != none) {
        // The numerator is the last run of placeholders before the bar.
        size_t i = m.slash;
        while (i > 0 && tk[i - 1].kind != Kind::Digit) --i;
        while (i > 0 && (tk[i - 1].kind == Kind::Digit || tk[i - 1].kind == Kind::Comma)) --i;
        while (i < m.slash && tk[i].kind != Kind::Digit) ++i;
        if (i >= m.slash) Fail(code, "fraction without numerator");
        m.numerator = i;
    }
    return m;
}

// Commas: after a digit and before another in the whole number they group thousands; after a
// digit with no placeholder following they divide by 1000 each; after a digit with more
// placeholders to come they vanish. Elsewhere the first of a run is shown as text.
void ResolveCommas(std::string_view code, Section& s, const Landmarks& m) {
    std::vector<Token>& tk = s.tokens;
    const size_t numberEnd = std::min(m.exp, tk.size());
    for (size_t i = 0; i < tk.size(); ++i) {
        if (tk[i].kind != Kind::Comma) continue;
        size_t j = i;
        while (j < tk.size() && tk[j].kind == Kind::Comma) ++j;
        // Resolved commas become empty literals so the landmarks keep their indices.
        for (size_t k = i; k < j; ++k) tk[k] = MakeLiteral("");
        if (i == 0 || !DigitLike(tk[i - 1])) {
            tk[i].text = ",";
        } else {
            if (m.numerator != m.none && i >= m.numerator) Fail(code, "comma in a fraction");
            const bool inWhole = i < m.point && i < m.exp && i < m.slash;
            const bool nextDigit = j < tk.size() && tk[j].kind == Kind::Digit;
            bool laterDigit = m.exp != m.none && i > m.exp;
            for (size_t k = j; k < numberEnd; ++k) laterDigit |= tk[k].kind == Kind::Digit;
            if (nextDigit && inWhole) s.grouping = true;
            else if (!laterDigit) s.scale -= 3 * static_cast<int>(j - i);
        }
        i = j - 1;
    }
}

// A fraction: whole number, numerator, bar, denominator (placeholders or written digits),
// and placeholders after it that show as for zero.
void AssignFraction(std::string_view code, Section& s, const Landmarks& m) {
    std::vector<Token>& tk = s.tokens;
    std::vector<size_t> whole, num, den, pad;
    for (size_t k = 0; k < m.slash; ++k)
        if (tk[k].kind == Kind::Digit) (k >= m.numerator ? num : whole).push_back(k);
    size_t i = m.slash + 1;
    while (i < tk.size() && tk[i].kind != Kind::Digit && !(tk[i].kind == Kind::Literal && tk[i].ch)) ++i;
    size_t denEnd = i;
    if (i < tk.size() && tk[i].kind == Kind::Literal) {
        // A given denominator such as /16: its digits become one text token.
        std::string digits;
        const size_t start = i;
        for (; i < tk.size() && ((tk[i].kind == Kind::Literal && tk[i].ch) ||
                                 (tk[i].kind == Kind::Digit && tk[i].ch == '0'));
             ++i)
            digits += tk[i].kind == Kind::Literal ? tk[i].ch : '0';
        if (std::from_chars(digits.data(), digits.data() + digits.size(), s.fixedDen).ec != std::errc())
            Fail(code, "denominator too large");
        tk.erase(tk.begin() + static_cast<long>(start) + 1, tk.begin() + static_cast<long>(i));
        tk[start] = MakeLiteral(digits);
        tk[start].role = Role::Den;
        denEnd = start;
        i = start + 1;
    } else {
        while (i < tk.size() && tk[i].kind == Kind::Digit) den.push_back(i++);
        if (den.empty()) Fail(code, "fraction without denominator");
        denEnd = den.back();
    }
    for (; i < tk.size(); ++i)
        if (tk[i].kind == Kind::Digit) pad.push_back(i);
    if (!whole.empty())
        for (size_t k = whole.back() + 1; k <= denEnd; ++k) tk[k].frac = true;
    s.fracInt = !whole.empty();
    NumberGroup(tk, whole, Role::Int, true);
    NumberGroup(tk, num, Role::Num, true);
    NumberGroup(tk, den, Role::Den, false);
    NumberGroup(tk, pad, Role::Pad, false);
    s.intDigits = static_cast<int>(whole.size());
    s.numDigits = static_cast<int>(num.size());
    s.denDigits = static_cast<int>(den.size());
}

// Plain decimals and scientific notation: whole, decimal and exponent placeholders.
void AssignDecimal(std::string_view code, Section& s, const Landmarks& m) {
    std::vector<Token>& tk = s.tokens;
    std::vector<size_t> whole, decimals, exp;
    for (size_t i = 0; i < tk.size(); ++i) {
        if (tk[i].kind != Kind::Digit) continue;
        if (m.exp != m.none && i > m.exp) exp.push_back(i);
        else if (m.point != m.none && i > m.point) decimals.push_back(i);
        else whole.push_back(i);
    }
    if (s.exponent) {
        if (exp.empty() || (whole.empty() && decimals.empty())) Fail(code, "incomplete exponent");
        s.expPlus = tk[m.exp].ch == '+';
    }
    NumberGroup(tk, whole, Role::Int, true);
    NumberGroup(tk, decimals, Role::Dec, false);
    NumberGroup(tk, exp, Role::Exp, true);
    s.intDigits = static_cast<int>(whole.size());
    s.decDigits = static_cast<int>(decimals.size());
    s.expDigits = static_cast<int>(exp.size());
}

void BuildNumber(std::string_view code, Section& s) {
    const SectionFlags f = Inspect(s.tokens);
    if (f.text) Fail(code, "text placeholder in a number");
    s.type = SectionType::Number;
    s.hasDigits = f.digits;
    if (!f.digits) {
        if (f.exp || f.slash) Fail(code, "exponent or fraction without digits");
        PunctuationToText(s.tokens);
        return;
    }
    const Landmarks m = FindLandmarks(code, s.tokens);
    s.exponent = m.exp != m.none;
    s.fraction = m.slash != m.none;
    ResolveCommas(code, s, m);
    for (const Token& t : s.tokens)
        if (t.kind == Kind::Percent) s.scale += 2;
    if (s.fraction) AssignFraction(code, s, m);
    else AssignDecimal(code, s, m);
}

void BuildGeneral(std::string_view code, Section& s) {
    const SectionFlags f = Inspect(s.tokens);
    if (f.digits || f.exp || f.text) Fail(code, "General with other placeholders");
    PunctuationToText(s.tokens);
    s.type = SectionType::General;
}

void BuildText(std::string_view code, Section& s) {
    const SectionFlags f = Inspect(s.tokens);
    if (f.digits || f.exp || f.date) Fail(code, "number or date placeholders in the text section");
    PunctuationToText(s.tokens);
    for (Token& t : s.tokens)
        if (t.kind == Kind::General) t.kind = Kind::Text;  // General shows the text as it is
    s.type = SectionType::Text;
}

// Joins neighbouring literals so rendering appends fewer pieces.
void MergeLiterals(std::vector<Token>& tokens) {
    std::vector<Token> out;
    out.reserve(tokens.size());
    for (Token& t : tokens) {
        if (t.kind == Kind::Literal && t.text.empty()) continue;
        if (t.kind == Kind::Literal && t.role != Role::Den && !out.empty() &&
            out.back().kind == Kind::Literal && out.back().role != Role::Den && out.back().frac == t.frac) {
            out.back().text += t.text;
            out.back().ch = 0;
            continue;
        }
        out.push_back(std::move(t));
    }
    tokens = std::move(out);
}

}  // namespace

bool Condition::Test(double v) const {
    switch (op) {
        case Op::Lt: return v < operand;
        case Op::Le: return v <= operand;
        case Op::Gt: return v > operand;
        case Op::Ge: return v >= operand;
        case Op::Eq: return v == operand;
        case Op::Ne: return v != operand;
        case Op::None: return true;
    }
    return true;
}

bool Condition::OnlyNegative() const {
    switch (op) {
        case Op::Lt: return operand <= 0;
        case Op::Le: case Op::Eq: return operand < 0;
        default: return false;
    }
}

Parsed Parse(std::string_view code) {
    // An empty code is how some writers say General.
    std::vector<RawSection> raw = Tokenize(code.empty() ? std::string_view("General") : code);
    if (raw.size() > 4) Fail(code, "more than four sections");

    Parsed p;
    const size_t count = raw.size();
    // The text section: the fourth, or a last section holding '@'.
    size_t textAt = count;
    if (count == 4) textAt = 3;
    else if (Inspect(raw.back().tokens).text) textAt = count - 1;

    for (size_t i = 0; i < count; ++i) {
        Section s;
        s.cond = raw[i].cond;
        s.tokens = std::move(raw[i].tokens);
        // A section of only a colour or a condition ([Red][<=100]) shows the number as General;
        // a section of nothing at all hides it.
        if (raw[i].brackets && !raw[i].content && s.tokens.empty()) {
            Token g;
            g.kind = Kind::General;
            s.tokens.push_back(g);
        }
        if (i == textAt) {
            BuildText(code, s);
            MergeLiterals(s.tokens);
            p.text = std::move(s);
            p.hasTextSection = true;
            continue;
        }
        const SectionFlags f = Inspect(s.tokens);
        if (f.text) Fail(code, "text placeholder outside the text section");
        if (f.date) {
            BuildDate(code, s);
            p.isDate = true;
        } else if (f.general) {
            BuildGeneral(code, s);
        } else {
            BuildNumber(code, s);
        }
        MergeLiterals(s.tokens);
        p.numbers.push_back(std::move(s));
    }
    return p;
}

}  // namespace xlsx::numfmt
