#include "xlsx/references.h"

#include <utf8proc.h>

#include <algorithm>
#include <utility>

namespace xlsx {

namespace {

constexpr long kMaxRow = 1048576;
constexpr long kMaxCol = 16384;

// ---------------------------------------------------------------------------------------------
// Characters

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
char Upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

// Characters that continue a defined name, a function name or an unquoted sheet name. Bytes of
// multi-byte UTF-8 sequences count as name characters, as non-ASCII letters do in names.
bool IsNameChar(char c) {
    return IsLetter(c) || IsDigit(c) || c == '_' || c == '.' || c == '\\' || c == '?' ||
           static_cast<unsigned char>(c) >= 0x80;
}

char At(std::string_view s, size_t i) { return i < s.size() ? s[i] : '\0'; }

// One code point at p, upper-cased (Unicode simple case mapping); an invalid byte stands for
// itself, set apart from every code point.
long UpperCodePointAt(std::string_view s, size_t& p) {
    unsigned char byte = static_cast<unsigned char>(s[p]);
    if (byte < 0x80) {
        ++p;
        return Upper(static_cast<char>(byte));
    }
    utf8proc_int32_t cp;
    auto n = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(s.data() + p),
                              static_cast<utf8proc_ssize_t>(s.size() - p), &cp);
    if (n <= 0) {
        ++p;
        return 0x110000 + byte;
    }
    p += static_cast<size_t>(n);
    return utf8proc_toupper(cp);
}

// Sheet names compare without regard to case, for every letter as in the application ("Données"
// and "DONNÉES" are one sheet).
bool SameSheet(std::string_view a, std::string_view b) {
    size_t i = 0;
    size_t j = 0;
    while (i < a.size() && j < b.size())
        if (UpperCodePointAt(a, i) != UpperCodePointAt(b, j)) return false;
    return i == a.size() && j == b.size();
}

// Reads up to 7 digits (enough for any row); no leading zero, since "A01" is no reference.
bool ReadNumber(std::string_view s, size_t& p, long& value) {
    size_t start = p;
    if (!IsDigit(At(s, p)) || At(s, p) == '0') return false;
    value = 0;
    while (IsDigit(At(s, p)) && p - start < 8) value = value * 10 + (s[p++] - '0');
    return p - start < 8;
}

// ---------------------------------------------------------------------------------------------
// A1 references: parts ("$B$7", "B", "7"), areas ("B7", "B7:C9", "B:C", "3:5"), sheet prefixes

enum class PartKind { Cell, Row, Column };

struct Part {
    PartKind kind = PartKind::Cell;
    bool colAbs = false;
    bool rowAbs = false;
    std::string_view letters;  // as written, for writing back unchanged case
    long col = 0;
    long row = 0;
};

// Reads [$]letters[$]digits, [$]letters or [$]digits at p; what follows is not looked at.
bool ParsePart(std::string_view s, size_t& p, Part& part) {
    size_t q = p;
    Part r;
    bool firstAbs = At(s, q) == '$';
    if (firstAbs) ++q;
    size_t lettersStart = q;
    while (IsLetter(At(s, q))) ++q;
    r.letters = s.substr(lettersStart, q - lettersStart);
    if (!r.letters.empty()) {
        r.col = ColumnNumber(r.letters);
        if (r.col == 0) return false;
        r.colAbs = firstAbs;
        r.rowAbs = At(s, q) == '$';
        if (r.rowAbs) ++q;
        if (IsDigit(At(s, q))) {
            if (!ReadNumber(s, q, r.row) || r.row > kMaxRow) return false;
            r.kind = PartKind::Cell;
        } else {
            if (r.rowAbs) return false;
            r.kind = PartKind::Column;
        }
    } else {
        if (!ReadNumber(s, q, r.row) || r.row > kMaxRow) return false;
        r.rowAbs = firstAbs;
        r.kind = PartKind::Row;
    }
    part = r;
    p = q;
    return true;
}

// A reference ends where no name, function call, table or further address continues it.
bool EndsToken(std::string_view s, size_t p) {
    char c = At(s, p);
    return !IsNameChar(c) && c != '(' && c != '[' && c != '$' && c != '!' && c != '\'';
}

struct Prefix {
    std::string_view text;  // as written, with the '!'
    std::string sheet;      // unquoted name; for a 3-D prefix the first sheet
    std::string last;       // the last sheet of a 3-D prefix; empty otherwise
    bool external = false;  // another workbook's sheet: [1]Name!, '[Book]Name'!
    bool broken = false;    // #REF!, left where a deleted sheet's name was

    bool Local() const { return !external && !broken; }
    // Rows and columns of `name` move the reference: it is on that sheet and no other.
    bool IsOnly(std::string_view name) const {
        return Local() && SameSheet(sheet, name) && (last.empty() || SameSheet(last, name));
    }
    // The reference names `name` (as one end of a 3-D span, too).
    bool Names(std::string_view name) const {
        return Local() && (SameSheet(sheet, name) || (!last.empty() && SameSheet(last, name)));
    }
};

bool SamePrefix(const Prefix& a, const Prefix& b) {
    if (a.external || b.external) return a.external == b.external && SameSheet(a.text, b.text);
    return a.broken == b.broken && SameSheet(a.sheet, b.sheet) && SameSheet(a.last, b.last);
}

// Reads 'Name'!, Name!, First:Last!, 'First:Last'!, [1]Name!, '[Book]Name'! and #REF! at p.
std::optional<Prefix> ParsePrefix(std::string_view s, size_t p) {
    Prefix prefix;
    if (s.substr(p, 5).size() == 5 && SameSheet(s.substr(p, 5), "#REF!")) {
        prefix.text = s.substr(p, 5);
        prefix.broken = true;
        return prefix;
    }
    size_t q = p;
    std::string name;
    if (At(s, q) == '\'') {
        for (++q;; ++q) {
            if (q >= s.size()) return std::nullopt;
            if (s[q] == '\'') {
                if (At(s, q + 1) != '\'') break;
                ++q;
            }
            name += s[q];
        }
        ++q;
        // Sheet names can't hold '[': one inside quotes opens a workbook's name or path.
        prefix.external = name.find('[') != std::string::npos;
    } else {
        if (At(s, q) == '[') {
            size_t close = s.find(']', q);
            if (close == std::string_view::npos) return std::nullopt;
            prefix.external = true;
            q = close + 1;
        }
        size_t start = q;
        while (IsNameChar(At(s, q))) ++q;
        if (At(s, q) == ':' && q > start) {
            ++q;
            size_t second = q;
            while (IsNameChar(At(s, q))) ++q;
            if (q == second) return std::nullopt;
        }
        if (q == start && !prefix.external) return std::nullopt;
        name = std::string(s.substr(start, q - start));
    }
    if (At(s, q) != '!') return std::nullopt;
    prefix.text = s.substr(p, q + 1 - p);
    // Sheet names can't hold ':' either, so one inside a prefix joins the ends of a 3-D reference.
    if (size_t colon = name.find(':'); colon != std::string::npos) {
        prefix.last = name.substr(colon + 1);
        name.resize(colon);
    }
    prefix.sheet = std::move(name);
    return prefix;
}

// The prefix text for a sheet, or for the ends of a 3-D span, quoted as one where either needs it.
std::string PrefixText(std::string_view first, std::string_view last) {
    std::string quoted = QuoteSheetName(first);
    if (!last.empty()) {
        std::string quotedLast = QuoteSheetName(last);
        std::string span = std::string(first) + ':' + std::string(last);
        quoted = quoted.size() == first.size() && quotedLast.size() == last.size() ? span : QuoteSheetName(span);
    }
    return quoted + '!';
}

struct Area {
    size_t begin = 0;  // where its text begins, with the prefix
    size_t end = 0;
    const Prefix* prefix = nullptr;
    Part first;
    bool range = false;
    std::string_view lastPrefix;  // "Sheet1!" of "Sheet1!A1:Sheet1!B2"
    Part last;
};

// Reads a cell, or a range of cells, whole rows or whole columns, at p (after the prefix).
bool ParseArea(std::string_view s, size_t p, const Prefix* prefix, Area& area) {
    size_t q = p;
    Part first;
    if (!ParsePart(s, q, first)) return false;
    area.first = first;
    area.prefix = prefix;
    area.range = false;
    if (At(s, q) == ':') {
        size_t r = q + 1;
        std::string_view lastPrefix;
        if (prefix && (At(s, r) == '\'' || At(s, r) == '#' || IsNameChar(At(s, r)))) {
            if (auto again = ParsePrefix(s, r); again && SamePrefix(*again, *prefix)) {
                lastPrefix = again->text;
                r += lastPrefix.size();
            }
        }
        Part last;
        if (ParsePart(s, r, last) && last.kind == first.kind && EndsToken(s, r)) {
            area.range = true;
            area.last = last;
            area.lastPrefix = lastPrefix;
            area.end = r;
            return true;
        }
    }
    if (first.kind != PartKind::Cell || !EndsToken(s, q)) return false;
    area.end = q;
    return true;
}

void WritePart(std::string& out, const Part& part) {
    if (part.kind != PartKind::Row) {
        if (part.colAbs) out += '$';
        // Letters that still name the column are kept as written ("a5" stays lower case).
        if (ColumnNumber(part.letters) == part.col)
            out += part.letters;
        else
            out += ColumnLetters(part.col);
    }
    if (part.kind != PartKind::Column) {
        if (part.rowAbs) out += '$';
        out += std::to_string(part.row);
    }
}

// The cells of an area without its first prefix: "A1", "A1:B2", "A1:Sheet1!B2".
void WriteCells(std::string& out, const Area& area, std::string_view lastPrefix) {
    WritePart(out, area.first);
    if (area.range) {
        out += ':';
        out += lastPrefix;
        WritePart(out, area.last);
    }
}

enum class Axis { Rows, Columns };

long& Coord(Part& part, Axis axis) { return axis == Axis::Rows ? part.row : part.col; }

// Moves the rows or columns of an area; false when the area is gone (#REF!).
bool ShiftArea(Area& area, Axis axis, long at, long count) {
    const long max = axis == Axis::Rows ? kMaxRow : kMaxCol;
    Part* top = &area.first;
    Part* bottom = &area.first;
    if (area.range) (Coord(area.last, axis) < Coord(area.first, axis) ? top : bottom) = &area.last;
    long lo = Coord(*top, axis);
    long hi = Coord(*bottom, axis);
    // Every row (column) of the sheet: as a whole column (row), such an area stays whole.
    if (lo == 1 && hi == max) return true;
    if (count > 0) {
        if (hi < at) return true;
        if (lo >= at) lo += count;
        hi += count;
        // A reference pushed off the sheet is lost; a range reaching past the end stops there.
        if (lo > max) return false;
        hi = std::min(hi, max);
    } else {
        long n = -count;
        long lastDeleted = at + n - 1;
        if (hi < at) return true;
        if (lo >= at && hi <= lastDeleted) return false;
        if (lo > lastDeleted) {
            lo -= n;
            hi -= n;
        } else {
            lo = std::min(lo, at);
            hi = hi > lastDeleted ? hi - n : at - 1;
        }
    }
    Coord(*top, axis) = lo;
    Coord(*bottom, axis) = hi;
    return true;
}

// ---------------------------------------------------------------------------------------------
// Copying the parts of a formula that hold no reference

// A string literal "..." with doubled quotes; answers the position after it.
size_t SkipString(std::string_view s, size_t p) {
    for (size_t q = p + 1; q < s.size(); ++q) {
        if (s[q] == '"') {
            if (At(s, q + 1) != '"') return q + 1;
            ++q;
        }
    }
    return s.size();
}

// Brackets of a structured reference, nested, with ' escaping the character after it.
size_t SkipBrackets(std::string_view s, size_t p) {
    int depth = 0;
    for (size_t q = p; q < s.size(); ++q) {
        if (s[q] == '\'') {
            ++q;
        } else if (s[q] == '[') {
            ++depth;
        } else if (s[q] == ']' && --depth == 0) {
            return q + 1;
        }
    }
    return s.size();
}

// An array constant {1,"a;b";2,3}; its strings may hold braces.
size_t SkipArray(std::string_view s, size_t p) {
    for (size_t q = p + 1; q < s.size();) {
        if (s[q] == '"') {
            q = SkipString(s, q);
        } else if (s[q] == '}') {
            return q + 1;
        } else {
            ++q;
        }
    }
    return s.size();
}

// An error literal: #REF!, #N/A, #DIV/0!, #NAME?, #GETTING_DATA ...
size_t SkipError(std::string_view s, size_t p) {
    size_t q = p + 1;
    while (IsLetter(At(s, q)) || IsDigit(At(s, q)) || At(s, q) == '/' || At(s, q) == '_') ++q;
    if (At(s, q) == '!' || At(s, q) == '?') ++q;
    return q;
}

// A number: 12, 1.5, .5, 1E+10, 2.5e-3.
size_t SkipNumber(std::string_view s, size_t p) {
    size_t q = p;
    while (IsDigit(At(s, q))) ++q;
    if (At(s, q) == '.') {
        ++q;
        while (IsDigit(At(s, q))) ++q;
    }
    if ((At(s, q) == 'E' || At(s, q) == 'e') &&
        (IsDigit(At(s, q + 1)) || ((At(s, q + 1) == '+' || At(s, q + 1) == '-') && IsDigit(At(s, q + 2))))) {
        q += 2;
        while (IsDigit(At(s, q))) ++q;
    }
    return q;
}

// A function, defined name, table name or logical value, taken whole so that a name like A1B or
// LOG10 is never taken apart; with its structured reference, if any.
size_t SkipName(std::string_view s, size_t p) {
    size_t q = p;
    while (q < s.size() && (IsNameChar(s[q]) || s[q] == '$')) ++q;
    if (At(s, q) == '[') q = SkipBrackets(s, q);
    return q;
}

// The one tokenizer: copies everything in a formula that holds no reference and hands each
// reference to the caller, who writes it. `onArea(const Area&, std::string& out)` gets cells,
// ranges, whole rows and columns with their prefix; `onPrefix(const Prefix&, size_t after,
// std::string& out)` gets a prefix before something else (a name, #REF!) and answers where the
// copying goes on (`after` to leave what follows to the copying).
template <class OnArea, class OnPrefix>
std::string RewriteReferences(std::string_view s, OnArea&& onArea, OnPrefix&& onPrefix) {
    std::string out;
    out.reserve(s.size() + 8);
    size_t i = 0;
    while (i < s.size()) {
        const char c = s[i];
        size_t next = i + 1;
        Area area;
        area.begin = i;
        if (c == '"') {
            next = SkipString(s, i);
        } else if (c == '{') {
            next = SkipArray(s, i);
        } else if (IsDigit(c) || c == '.') {
            // Whole rows (3:5) or a number.
            if (IsDigit(c) && ParseArea(s, i, nullptr, area)) {
                onArea(area, out);
                i = area.end;
                continue;
            }
            next = SkipNumber(s, i);
            if (next == i) next = i + 1;
        } else if (c == '\'' || c == '[' || c == '$' || c == '#' || IsNameChar(c)) {
            std::optional<Prefix> prefix;
            if (c != '$') prefix = ParsePrefix(s, i);
            if (prefix) {
                size_t after = i + prefix->text.size();
                if (ParseArea(s, after, &*prefix, area)) {
                    onArea(area, out);
                    i = area.end;
                } else {
                    i = onPrefix(*prefix, after, out);
                }
                continue;
            }
            if (c != '#' && ParseArea(s, i, nullptr, area)) {
                onArea(area, out);
                i = area.end;
                continue;
            }
            if (c == '#') {
                next = SkipError(s, i);
            } else if (c == '[') {
                next = SkipBrackets(s, i);
            } else if (c == '\'') {
                // A quote that opens no sheet name: copy through its closing quote.
                size_t close = s.find('\'', i + 1);
                next = close == std::string_view::npos ? s.size() : close + 1;
            } else {
                next = SkipName(s, i + 1);
            }
        }
        out += s.substr(i, next - i);
        i = next;
    }
    return out;
}

size_t CopyPrefix(const Prefix& prefix, size_t after, std::string& out) {
    out += prefix.text;
    return after;
}

// Moves rows or columns of one sheet in a formula; see ShiftFormulaRows.
std::string ShiftFormula(std::string_view s, std::string_view hostSheet, std::string_view sheet, Axis axis,
                         long at, long count) {
    const long max = axis == Axis::Rows ? kMaxRow : kMaxCol;
    if (count == 0 || at < 1 || at > max) return std::string(s);
    const bool hostFollows = !hostSheet.empty() && SameSheet(hostSheet, sheet);
    // Whole columns don't move with rows, nor whole rows with columns.
    const PartKind still = axis == Axis::Rows ? PartKind::Column : PartKind::Row;
    auto onArea = [&](const Area& area, std::string& out) {
        bool follows = area.prefix ? area.prefix->IsOnly(sheet) : hostFollows;
        if (!follows || area.first.kind == still) {
            out += s.substr(area.begin, area.end - area.begin);
            return;
        }
        if (area.prefix) out += area.prefix->text;
        Area moved = area;
        if (!ShiftArea(moved, axis, at, count)) {
            out += "#REF!";
            return;
        }
        WriteCells(out, moved, moved.lastPrefix);
    };
    return RewriteReferences(s, onArea, CopyPrefix);
}

// ---------------------------------------------------------------------------------------------
// R1C1

struct RCPart {
    bool hasRow = false;
    bool hasCol = false;
    bool rowRel = false;
    bool colRel = false;
    long row = 0;  // the number, or the offset when relative
    long col = 0;
};

bool ReadRCIndex(std::string_view s, size_t& p, bool& relative, long& value) {
    relative = true;
    value = 0;
    if (At(s, p) == '[') {
        size_t q = p + 1;
        bool negative = At(s, q) == '-';
        if (negative || At(s, q) == '+') ++q;
        size_t digits = q;
        while (IsDigit(At(s, q)) && q - digits < 8) value = value * 10 + (s[q++] - '0');
        if (q == digits || At(s, q) != ']') return false;
        if (negative) value = -value;
        p = q + 1;
        return true;
    }
    if (IsDigit(At(s, p))) {
        relative = false;
        return ReadNumber(s, p, value);
    }
    return true;  // a bare R or C: this row or column
}

bool ParseRCPart(std::string_view s, size_t& p, RCPart& part) {
    size_t q = p;
    RCPart r;
    if (Upper(At(s, q)) == 'R') {
        ++q;
        r.hasRow = true;
        if (!ReadRCIndex(s, q, r.rowRel, r.row)) return false;
    }
    if (Upper(At(s, q)) == 'C') {
        ++q;
        r.hasCol = true;
        if (!ReadRCIndex(s, q, r.colRel, r.col)) return false;
    }
    if (!r.hasRow && !r.hasCol) return false;
    part = r;
    p = q;
    return true;
}

// A relative index beyond the sheet's edge wraps around, as the application resolves it.
std::optional<long> ResolveIndex(bool relative, long value, long base, long max) {
    if (!relative) return value >= 1 && value <= max ? std::optional<long>(value) : std::nullopt;
    long v = (base - 1 + value) % max;
    if (v < 0) v += max;
    return v + 1;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Cell addresses

long ColumnNumber(std::string_view letters) {
    if (letters.empty() || letters.size() > 3) return 0;
    long col = 0;
    for (char c : letters) {
        if (!IsLetter(c)) return 0;
        col = col * 26 + (Upper(c) - 'A' + 1);
    }
    return col <= kMaxCol ? col : 0;
}

std::string ColumnLetters(long col) {
    if (col < 1 || col > kMaxCol) return {};
    std::string letters;
    for (; col > 0; col = (col - 1) / 26) letters.insert(letters.begin(), static_cast<char>('A' + (col - 1) % 26));
    return letters;
}

std::optional<CellRef> ParseCellRef(std::string_view a1) {
    size_t p = 0;
    Part part;
    if (!ParsePart(a1, p, part) || p != a1.size() || part.kind != PartKind::Cell) return std::nullopt;
    return CellRef{part.row, part.col};
}

std::string CellAddress(long row, long col, bool absolute) {
    std::string out;
    if (absolute) out += '$';
    out += ColumnLetters(col);
    if (absolute) out += '$';
    out += std::to_string(row);
    return out;
}

std::string QuoteSheetName(std::string_view sheet) {
    bool quote = sheet.empty() || IsDigit(sheet[0]) || sheet[0] == '.' ||
                 !std::all_of(sheet.begin(), sheet.end(), [](char c) { return IsNameChar(c) && c != '?' && c != '\\'; });
    if (!quote) {
        // Names that read as an A1 or R1C1 reference ("A1", "R2C3", "R", "C5") need quotes.
        size_t p = 0;
        RCPart rc;
        quote = ParseCellRef(sheet).has_value() || (ParseRCPart(sheet, p, rc) && p == sheet.size());
    }
    if (!quote) return std::string(sheet);
    std::string out = "'";
    for (char c : sheet) {
        out += c;
        if (c == '\'') out += '\'';
    }
    out += '\'';
    return out;
}

// ---------------------------------------------------------------------------------------------
// Row and column shifts

std::string ShiftFormulaRows(std::string_view formula, std::string_view hostSheet, const RowShift& shift) {
    return ShiftFormula(formula, hostSheet, shift.sheet, Axis::Rows, shift.at, shift.count);
}

std::string ShiftFormulaColumns(std::string_view formula, std::string_view hostSheet, const ColumnShift& shift) {
    return ShiftFormula(formula, hostSheet, shift.sheet, Axis::Columns, shift.at, shift.count);
}

// ---------------------------------------------------------------------------------------------
// Sheets renamed and deleted, shared formulas

std::string RenameSheetInFormula(std::string_view formula, std::string_view oldName, std::string_view newName) {
    auto renamed = [&](const Prefix& prefix) {
        return PrefixText(SameSheet(prefix.sheet, oldName) ? newName : std::string_view(prefix.sheet),
                          !prefix.last.empty() && SameSheet(prefix.last, oldName) ? newName
                                                                                 : std::string_view(prefix.last));
    };
    auto onArea = [&](const Area& area, std::string& out) {
        if (!area.prefix || !area.prefix->Names(oldName)) {
            out += formula.substr(area.begin, area.end - area.begin);
            return;
        }
        std::string prefix = renamed(*area.prefix);
        out += prefix;
        WriteCells(out, area, area.lastPrefix.empty() ? std::string_view() : std::string_view(prefix));
    };
    auto onPrefix = [&](const Prefix& prefix, size_t after, std::string& out) {
        out += prefix.Names(oldName) ? renamed(prefix) : std::string(prefix.text);
        return after;
    };
    return RewriteReferences(formula, onArea, onPrefix);
}

std::string BreakSheetInFormula(std::string_view formula, std::string_view sheet) {
    auto onArea = [&](const Area& area, std::string& out) {
        if (!area.prefix || !area.prefix->Names(sheet)) {
            out += formula.substr(area.begin, area.end - area.begin);
            return;
        }
        out += "#REF!";
        WriteCells(out, area, {});
    };
    // A name or an error on the sheet: nothing of it is left.
    auto onPrefix = [&](const Prefix& prefix, size_t after, std::string& out) {
        if (!prefix.Names(sheet)) return CopyPrefix(prefix, after, out);
        out += "#REF!";
        return At(formula, after) == '#' ? SkipError(formula, after) : SkipName(formula, after);
    };
    return RewriteReferences(formula, onArea, onPrefix);
}

std::string TranslateFormula(std::string_view formula, long dRows, long dCols) {
    if (dRows == 0 && dCols == 0) return std::string(formula);
    auto move = [&](Part& part) {
        if (part.kind != PartKind::Column && !part.rowAbs) part.row += dRows;
        if (part.kind != PartKind::Row && !part.colAbs) part.col += dCols;
        return (part.kind == PartKind::Column || (part.row >= 1 && part.row <= kMaxRow)) &&
               (part.kind == PartKind::Row || (part.col >= 1 && part.col <= kMaxCol));
    };
    auto onArea = [&](const Area& area, std::string& out) {
        if (area.prefix && area.prefix->broken) {
            out += formula.substr(area.begin, area.end - area.begin);
            return;
        }
        if (area.prefix) out += area.prefix->text;
        Area moved = area;
        bool kept = move(moved.first);
        if (moved.range) kept = move(moved.last) && kept;
        if (!kept) {
            out += "#REF!";
            return;
        }
        WriteCells(out, moved, moved.lastPrefix);
    };
    return RewriteReferences(formula, onArea, CopyPrefix);
}

// ---------------------------------------------------------------------------------------------
// R1C1 to A1

std::optional<std::string> R1C1ToA1(std::string_view text, CellRef base) {
    std::string out;
    size_t i = 0;
    if (At(text, 0) == '=') {
        out += '=';
        i = 1;
    }
    bool anyItem = false;
    bool allA1 = true;
    while (i < text.size()) {
        char c = text[i];
        if (c == '(' || c == ')' || c == ',' || c == ' ') {
            out += c;
            ++i;
            continue;
        }
        std::optional<Prefix> prefix = ParsePrefix(text, i);
        if (prefix) {
            out += prefix->text;
            i += prefix->text.size();
        }
        size_t start = i;
        RCPart first;
        RCPart last;
        if (!ParseRCPart(text, i, first)) return std::nullopt;
        bool range = At(text, i) == ':';
        if (range) {
            ++i;
            if (!ParseRCPart(text, i, last) || last.hasRow != first.hasRow || last.hasCol != first.hasCol)
                return std::nullopt;
        }
        if (!EndsToken(text, i)) return std::nullopt;

        // "R2", "C3" and "R1:R5" read as A1 too; such a text is taken as A1.
        Area a1;
        if (!ParseArea(text, start, nullptr, a1) || a1.end != i) allA1 = false;
        anyItem = true;

        auto write = [&](const RCPart& part) -> bool {
            std::optional<long> row;
            std::optional<long> col;
            if (part.hasRow && !(row = ResolveIndex(part.rowRel, part.row, base.row, kMaxRow))) return false;
            if (part.hasCol && !(col = ResolveIndex(part.colRel, part.col, base.col, kMaxCol))) return false;
            if (col) {
                if (!part.colRel) out += '$';
                out += ColumnLetters(*col);
            }
            if (row) {
                if (!part.rowRel) out += '$';
                out += std::to_string(*row);
            }
            return true;
        };
        // A whole row or column is written as a range in A1 even when R1C1 names it once.
        const RCPart& end = range ? last : first;
        if (!write(first)) return std::nullopt;
        if (range || !first.hasRow || !first.hasCol) {
            out += ':';
            if (!write(end)) return std::nullopt;
        }
    }
    if (!anyItem || allA1) return std::nullopt;
    return out;
}

}  // namespace xlsx
