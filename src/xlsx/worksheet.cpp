// Worksheet parts: cells read and written in the sheet's DOM through a row and cell index.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "host/constants.h"
#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_part.h"
#include "xlsx/drawing.h"
#include "xlsx/formulas.h"
#include "xlsx/numfmt.h"
#include "xlsx/ooxml.h"

namespace xlsx {

namespace {

long ErrorCodeOf(std::string_view text) {
    if (text == "#NULL!") return host::xlErrNull;
    if (text == "#DIV/0!") return host::xlErrDiv0;
    if (text == "#VALUE!") return host::xlErrValue;
    if (text == "#REF!") return host::xlErrRef;
    if (text == "#NAME?") return host::xlErrName;
    if (text == "#NUM!") return host::xlErrNum;
    return host::xlErrNA;
}

std::string ErrorText(long code) {
    switch (code) {
        case host::xlErrNull: return "#NULL!";
        case host::xlErrDiv0: return "#DIV/0!";
        case host::xlErrValue: return "#VALUE!";
        case host::xlErrRef: return "#REF!";
        case host::xlErrName: return "#NAME?";
        case host::xlErrNum: return "#NUM!";
        default: return "#N/A";
    }
}

// The shortest text that reads back as the same double, as the application writes numbers.
std::string NumberXml(double d) {
    char buf[32];
    auto r = std::to_chars(buf, buf + sizeof buf, d);
    std::string s(buf, r.ptr);
    // to_chars may give "1e+20"; the application writes "1E+20".
    for (auto& c : s)
        if (c == 'e') c = 'E';
    return s;
}

// Text typed into a cell becomes a number, a logical or a formula as the application parses it.
host::Variant ParseTyped(const std::string& text, bool& formula) {
    formula = false;
    // A leading apostrophe keeps the rest as text, and is not part of the value.
    if (!text.empty() && text[0] == '\'') return text.substr(1);
    if (text.size() > 1 && text[0] == '=') {
        formula = true;
        return text;
    }
    std::string t = host::Trim(text);
    if (t.empty()) return text;
    if (host::EqualsNoCase(t, "TRUE")) return true;
    if (host::EqualsNoCase(t, "FALSE")) return false;
    // Plain decimal numbers with an optional sign and exponent; thousands separators in groups of three.
    size_t i = 0;
    std::string digits;
    if (t[i] == '+' || t[i] == '-') digits += t[i++];
    bool any = false, point = false;
    for (; i < t.size(); ++i) {
        char c = t[i];
        if (std::isdigit(static_cast<unsigned char>(c))) {
            digits += c;
            any = true;
        } else if (c == '.' && !point) {
            digits += c;
            point = true;
        } else if (c == ',' && !point && any) {
            // a group separator must be followed by exactly three digits
            if (i + 3 >= t.size()) return text;
            if (!(std::isdigit(static_cast<unsigned char>(t[i + 1])) && std::isdigit(static_cast<unsigned char>(t[i + 2])) &&
                  std::isdigit(static_cast<unsigned char>(t[i + 3]))))
                return text;
            if (i + 4 < t.size() && std::isdigit(static_cast<unsigned char>(t[i + 4]))) return text;
        } else {
            break;
        }
    }
    if (!any) return text;
    if (i < t.size() && (t[i] == 'E' || t[i] == 'e')) {
        size_t j = i + 1;
        std::string exp = "E";
        if (j < t.size() && (t[j] == '+' || t[j] == '-')) exp += t[j++];
        size_t k = j;
        while (k < t.size() && std::isdigit(static_cast<unsigned char>(t[k]))) exp += t[k++];
        if (k == j) return text;
        digits += exp;
        i = k;
    }
    if (i != t.size()) return text;
    double d = std::strtod(digits.c_str(), nullptr);
    if (!std::isfinite(d)) return text;
    return d;
}

}  // namespace

SheetImpl::SheetImpl(Book& book, std::string part, bool chartsheet)
    : book_(book), part_(std::move(part)), chartsheet_(chartsheet) {}

// ---------------------------------------------------------------- sheet properties

std::string SheetImpl::Name() { return book_.SheetName(this); }
void SheetImpl::SetName(const std::string& name) { book_.RenameSheet(this, name); }
long SheetImpl::Visible() { return book_.SheetState(this); }
void SheetImpl::SetVisible(long v) { book_.SetSheetState(this, v); }
long SheetImpl::Index() { return book_.IndexOf(this); }
long SheetImpl::Type() { return chartsheet_ ? host::xlChart : host::xlWorksheet; }
void SheetImpl::Activate() { book_.ActivateSheet(this); }
void SheetImpl::Delete() { book_.DeleteSheet(this); }
host::Ref<host::Workbook> SheetImpl::Parent() { return book_.shared_from_this(); }

pugi::xml_node SheetImpl::Root(bool edit) {
    if (chartsheet_) Refuse("A chart sheet has no cells.");
    return edit ? book_.pkg().Edit(part_).document_element() : book_.pkg().Read(part_).document_element();
}

pugi::xml_node SheetImpl::SheetData() {
    auto root = Root(true);
    auto sd = root.child("sheetData");
    if (!sd) {
        // sheetData follows cols / sheetFormatPr / sheetViews / dimension / sheetPr, whichever is last.
        pugi::xml_node after;
        for (const char* n : {"sheetPr", "dimension", "sheetViews", "sheetFormatPr", "cols"})
            if (root.child(n)) after = root.child(n);
        sd = after ? root.insert_child_after("sheetData", after) : root.prepend_child("sheetData");
    }
    return sd;
}

bool SheetImpl::ViewFlag(const char* attribute) {
    if (chartsheet_) return true;
    return Root(false).child("sheetViews").child("sheetView").attribute(attribute).as_bool(true);
}

void SheetImpl::SetViewFlag(const char* attribute, bool on) {
    if (chartsheet_ || ViewFlag(attribute) == on) return;
    auto root = Root(true);
    auto views = root.child("sheetViews");
    if (!views) {
        pugi::xml_node after;
        for (const char* n : {"sheetPr", "dimension"})
            if (root.child(n)) after = root.child(n);
        views = after ? root.insert_child_after("sheetViews", after) : root.prepend_child("sheetViews");
    }
    auto view = views.child("sheetView");
    if (!view) {
        view = views.append_child("sheetView");
        view.append_attribute("workbookViewId") = "0";
    }
    // The default is on: an "on" is written by leaving the attribute out, as the application does.
    view.remove_attribute(attribute);
    if (!on) view.append_attribute(attribute) = "0";
}

void SheetImpl::PrepareSave(bool selected) {
    // The saved file carries the values of formulas over written cells.
    book_.formulas().BeforeSave();
    if (chartsheet_) return;
    auto view = Root(false).child("sheetViews").child("sheetView");
    if (view && view.attribute("tabSelected").as_bool(false) != selected) {
        view = Root(true).child("sheetViews").child("sheetView");
        view.remove_attribute("tabSelected");
        if (selected) view.prepend_attribute("tabSelected").set_value("1");
    }
    if (!book_.pkg().Changed(part_)) return;
    auto root = Root(true);
    long r1, c1, r2, c2;
    std::string ref = Used(r1, c1, r2, c2) ? (r1 == r2 && c1 == c2 ? CellAddress(r1, c1)
                                                                      : CellAddress(r1, c1) + ":" + CellAddress(r2, c2))
                                           : "A1";
    auto dim = root.child("dimension");
    if (!dim) {
        auto after = root.child("sheetPr");
        dim = after ? root.insert_child_after("dimension", after) : root.prepend_child("dimension");
    }
    if (!dim.attribute("ref")) dim.append_attribute("ref");
    dim.attribute("ref").set_value(ref.c_str());
}

// ---------------------------------------------------------------- verifying

namespace {
// "A1" or "A1:C3" inside the sheet's cells.
bool CellArea(std::string_view ref) {
    auto colon = ref.find(':');
    if (colon == std::string_view::npos) return ParseCellRef(ref).has_value();
    return ParseCellRef(ref.substr(0, colon)) && ParseCellRef(ref.substr(colon + 1));
}

const char* kCells = "outside the cells of a sheet (A1:XFD1048576)";
}  // namespace

void SheetImpl::Verify() {
    book_.ExpectRoot(part_, chartsheet_ ? "chartsheet" : nullptr);
    VerifyDrawing(book_, part_, false);
    if (chartsheet_) return;
    auto fail = [&](const std::string& what) { book_.Damaged(part_, what); };
    auto root = book_.pkg().Read(part_).document_element();
    std::string_view dim = root.child("dimension").attribute("ref").value();
    if (!dim.empty() && !CellArea(dim)) fail("has the dimension '" + std::string(dim) + "', " + kCells);
    for (auto m : root.child("mergeCells").children("mergeCell"))
        if (!CellArea(m.attribute("ref").value()))
            fail("merges the cells '" + std::string(m.attribute("ref").value()) + "', " + kCells);
    for (auto c : root.child("cols").children("col"))
        for (const char* end : {"min", "max"}) {
            auto n = IntegerOf(c.attribute(end).value());
            if (!n || *n < 1 || *n > kMaxCols)
                fail("sizes columns up to '" + std::string(c.attribute(end).value()) +
                     "', where a sheet's columns are 1 to " + std::to_string(kMaxCols));
        }
    // Damaged cells found inside an operation would be taken for an empty or changed table, and
    // the charts over it saved so; the index is built for nearly every sheet an operation reads anyway.
    BuildIndex();
}

// ---------------------------------------------------------------- index

void SheetImpl::BuildIndex() {
    if (indexed_) return;
    // Editing from the start: the index holds nodes of the document that will be written.
    // Reading alone must not mark the part changed, so the index is built over the read DOM,
    // which is the same document object the edit DOM returns.
    // Cells no valid sheet has fail here, at open. A failed index stays unbuilt.
    auto fail = [&](const std::string& what) { book_.Damaged(part_, what); };
    size_t strings = book_.SharedStringCount(), styles = book_.CellStyleCount();
    std::map<long, RowEntry> rows;
    long lastRow = 0;
    bool formulas = false;
    for (auto row : Root(false).child("sheetData").children("row")) {
        long r = lastRow + 1;
        if (auto a = row.attribute("r")) {
            auto n = IntegerOf(a.value());
            if (!n || *n < 1 || *n > kMaxRows)
                fail("has row '" + std::string(a.value()) + "', where a sheet's rows are 1 to " + std::to_string(kMaxRows));
            r = static_cast<long>(*n);
        } else if (r > kMaxRows) {
            fail("has more rows than a sheet (" + std::to_string(kMaxRows) + ")");
        }
        lastRow = r;
        RowEntry& e = rows[r];
        e.node = row;
        long lastCol = 0;
        for (auto c : row.children("c")) {
            pugi::xml_attribute ref, style, type;
            for (auto a = c.first_attribute(); a; a = a.next_attribute()) {
                const char* name = a.name();
                if (name[0] != 0 && name[1] == 0) {
                    if (name[0] == 'r') ref = a;
                    else if (name[0] == 's') style = a;
                    else if (name[0] == 't') type = a;
                }
            }
            long col = lastCol + 1;
            if (ref) {
                auto at = ParseCellRef(ref.value());
                if (!at) fail("has a cell at '" + std::string(ref.value()) + "', " + kCells);
                col = at->col;
            } else if (col > kMaxCols) {
                fail("has more cells in row " + std::to_string(r) + " than a sheet has columns (" + std::to_string(kMaxCols) + ")");
            }
            lastCol = col;
            e.cells.push_back({col, c});
            if (!formulas && c.child("f")) formulas = true;
            if (style) {
                auto n = IntegerOf(style.value());
                if (!n || *n < 0 || static_cast<unsigned long long>(*n) >= styles)
                    fail("gives cell " + CellAddress(r, col) + " the style '" + style.value() + "', but the workbook has " +
                         std::to_string(styles) + " cell styles");
            }
            if (type && type.value()[0] == 's' && type.value()[1] == 0)
                if (auto value = c.child("v")) {
                    auto n = IntegerOf(value.text().get());
                    if (!n || *n < 0 || static_cast<unsigned long long>(*n) >= strings)
                        fail("refers to shared string '" + std::string(value.text().get()) + "' in cell " + CellAddress(r, col) +
                             ", but the workbook has " + std::to_string(strings));
                }
        }
        std::sort(e.cells.begin(), e.cells.end(), [](auto& a, auto& b) { return a.first < b.first; });
    }
    rows_ = std::move(rows);
    lastRow_ = rows_.end();
    hasFormulas_ = formulas;
    indexed_ = true;
}

std::map<long, RowEntry>::iterator SheetImpl::FindRow(long row) {
    BuildIndex();
    if (lastRow_ != rows_.end()) {
        if (lastRow_->first == row) return lastRow_;
        auto next = std::next(lastRow_);
        if (next != rows_.end() && next->first == row) return lastRow_ = next;
    }
    auto it = rows_.find(row);
    if (it != rows_.end()) lastRow_ = it;
    return it;
}

pugi::xml_node SheetImpl::FindCell(long row, long col) {
    auto it = FindRow(row);
    if (it == rows_.end()) return {};
    auto& cells = it->second.cells;
    auto c = std::lower_bound(cells.begin(), cells.end(), col, [](auto& p, long v) { return p.first < v; });
    return c != cells.end() && c->first == col ? c->second : pugi::xml_node{};
}

RowEntry& SheetImpl::MakeRow(long row) {
    BuildIndex();
    auto sd = SheetData();  // marks the part edited
    auto it = rows_.find(row);
    if (it == rows_.end()) {
        auto next = rows_.upper_bound(row);
        pugi::xml_node node = next != rows_.end() ? sd.insert_child_before("row", next->second.node) : sd.append_child("row");
        node.append_attribute("r").set_value(row);
        it = rows_.emplace(row, RowEntry{node, {}}).first;
    }
    return it->second;
}

pugi::xml_node SheetImpl::MakeCell(long row, long col) {
    if (row < 1 || row > kMaxRows || col < 1 || col > kMaxCols) Refuse("Application-defined or object-defined error");
    auto& e = MakeRow(row);
    auto pos = std::lower_bound(e.cells.begin(), e.cells.end(), col, [](auto& p, long v) { return p.first < v; });
    if (pos != e.cells.end() && pos->first == col) return pos->second;
    pugi::xml_node cell = pos != e.cells.end() ? e.node.insert_child_before("c", pos->second) : e.node.append_child("c");
    cell.append_attribute("r").set_value(CellAddress(row, col).c_str());
    // A new cell takes the row's style, or the column's, as the application does.
    long style = e.node.attribute("customFormat").as_bool() ? e.node.attribute("s").as_int() : 0;
    if (style) cell.append_attribute("s").set_value(style);
    e.cells.insert(pos, {col, cell});
    // The spans hint of the row is optional; a stale one misleads readers, so it goes.
    e.node.remove_attribute("spans");
    return cell;
}

// ---------------------------------------------------------------- cell values

namespace {

// The value of a cell node, and its style. One pass over the attributes: every cell read of a
// table comes here, and looking each attribute up by name cost more than the read itself.
host::Variant ValueOfCell(Book& book, pugi::xml_node c, long& xf) {
    pugi::xml_attribute type, style;
    for (auto a = c.first_attribute(); a; a = a.next_attribute()) {
        const char* name = a.name();
        if (name[0] == 't' && name[1] == 0 && !type) type = a;
        else if (name[0] == 's' && name[1] == 0 && !style) style = a;
    }
    const char* t = type.value();
    xf = style.as_int();
    if (std::strcmp(t, "inlineStr") == 0) {
        auto is = c.child("is");
        if (auto tt = is.child("t")) return DecodeCellText(tt.text().get());
        std::string out;
        for (auto r : is.children("r")) out += r.child("t").text().get();
        return DecodeCellText(out);
    }
    auto v = c.child("v");
    if (!v) return {};
    const char* text = v.text().get();
    if (t[0] != 0) {
        if (std::strcmp(t, "s") == 0) return book.strings().Text(static_cast<size_t>(std::strtoul(text, nullptr, 10)));
        if (std::strcmp(t, "str") == 0) return DecodeCellText(text);
        if (std::strcmp(t, "b") == 0) return std::strcmp(text, "1") == 0 || std::strcmp(text, "true") == 0;
        if (std::strcmp(t, "e") == 0) return host::Variant::CellError(ErrorCodeOf(text));
    }
    // Scripts write formulas with an empty <v/>: no value yet, rather than a zero.
    if (!*text) return {};
    // from_chars is several times faster than strtod on the plain decimals the file holds;
    // anything else (spaces, hex, a sign strtod allows) still goes through strtod.
    double d = 0;
    const char* end = text + std::strlen(text);
    auto [stop, ec] = std::from_chars(text, end, d);
    if (ec != std::errc{} || stop != end) d = std::strtod(text, nullptr);
    // A number shown as a date reads as a Date, as Range.Value gives it.
    if (xf != 0) {
        auto* format = book.styles().Format(xf);
        if (format && format->IsDate()) return host::Variant::Date(d);
    }
    return d;
}

// A formula is computed before it is read when it has no value yet, or cells were written since.
void ComputeIfStale(Book& book, pugi::xml_node c) {
    if (!c.child("f")) return;
    auto v = c.child("v");
    book.formulas().BeforeRead(!v || (!*v.text().get() && std::strcmp(c.attribute("t").value(), "str") != 0));
}

}  // namespace

host::Variant SheetImpl::CellValue(long row, long col) {
    auto c = FindCell(row, col);
    if (!c) return {};
    ComputeIfStale(book_, c);
    long xf;
    return ValueOfCell(book_, c, xf);
}

std::string SheetImpl::CellFormula(long row, long col) {
    auto c = FindCell(row, col);
    auto f = c.child("f");
    if (!f) return {};
    if (std::string(f.attribute("t").value()) == "shared" && !*f.text().get()) {
        // A follower of a shared formula reads as its leader's text, moved by the distance between them.
        std::string si = f.attribute("si").value();
        for (auto& [r, e] : rows_)
            for (auto& [k, cell] : e.cells) {
                auto lf = cell.child("f");
                if (lf && si == lf.attribute("si").value() && *lf.text().get())
                    return TranslateFormula(lf.text().get(), row - r, col - k);
            }
        return {};
    }
    return f.text().get();
}

long SheetImpl::CellStyle(long row, long col) {
    auto c = FindCell(row, col);
    long xf = c ? c.attribute("s").as_int() : 0;
    if (!c) {
        auto it = FindRow(row);
        if (it != rows_.end() && it->second.node.attribute("customFormat").as_bool()) xf = it->second.node.attribute("s").as_int();
    }
    return xf;
}

std::string SheetImpl::CellFormat(long row, long col) { return book_.styles().FormatCode(CellStyle(row, col)); }

std::string SheetImpl::CellText(long row, long col) {
    auto c = FindCell(row, col);
    if (!c) return {};
    ComputeIfStale(book_, c);
    long xf;
    host::Variant v = ValueOfCell(book_, c, xf);
    if (v.IsEmpty()) return {};
    if (v.IsError()) return ErrorText(v.ErrorCode());
    auto* fmt = book_.styles().Format(xf);
    if (!fmt) return host::CStr(v);
    try {
        switch (v.type()) {
            case host::Variant::Type::String: return fmt->FormatText(v.RawString());
            case host::Variant::Type::Boolean: return fmt->FormatBool(v.RawBool());
            default: return fmt->Format(host::CDbl(v));
        }
    } catch (const NumberFormatError&) {
        return host::CStr(v);
    }
}

void SheetImpl::SetCellValue(long row, long col, const host::Variant& value) {
    host::Variant v = value;
    if (v.IsString()) {
        if (host::Len(v.RawString()) > kMaxCellText) Refuse("Application-defined or object-defined error");
        bool formula = false;
        v = ParseTyped(v.RawString(), formula);
        if (formula) return SetCellFormula(row, col, v.RawString());
    }
    if (v.IsNull()) v = host::Variant{};
    if (v.IsEmpty()) {
        if (auto c = FindCell(row, col)) ClearCell(row, col, false);
        return;
    }
    auto c = MakeCell(row, col);
    c.remove_child("f");
    c.remove_child("v");
    c.remove_child("is");
    c.remove_attribute("t");
    book_.formulas().Wrote(this, row, col, row, col);
    auto setType = [&](const char* t) { c.append_attribute("t").set_value(t); };
    std::string text;
    switch (v.type()) {
        case host::Variant::Type::Boolean:
            setType("b");
            text.assign(1, v.RawBool() ? '1' : '0');
            break;
        case host::Variant::Type::String:
            setType("s");
            text = std::to_string(book_.strings().Add(v.RawString()));
            break;
        case host::Variant::Type::Error:
            setType("e");
            text = ErrorText(v.ErrorCode());
            break;
        case host::Variant::Type::Date:
            text = NumberXml(v.RawDouble());
            if (CellFormat(row, col) == "General") SetCellFormat(row, col, "m/d/yyyy");
            break;
        default: text = NumberXml(host::CDbl(v)); break;
    }
    // extLst, if any, stays last.
    auto vn = c.child("extLst") ? c.insert_child_before("v", c.child("extLst")) : c.append_child("v");
    vn.text().set(text.c_str());
}

void SheetImpl::SetCellFormula(long row, long col, const std::string& formula) {
    std::string f = formula;
    if (!f.empty() && f[0] == '=') f.erase(0, 1);
    if (host::Len(f) > 8192) Refuse("Application-defined or object-defined error");
    auto c = MakeCell(row, col);
    c.remove_child("f");
    c.remove_child("v");
    c.remove_child("is");
    c.remove_attribute("t");
    auto fn = c.child("extLst") ? c.insert_child_before("f", c.child("extLst")) : c.append_child("f");
    fn.text().set(f.c_str());
    hasFormulas_ = true;
    book_.formulas().Wrote(this, row, col, row, col);
    // The engine computes only what it can: the application works the rest out on opening the file.
    book_.MarkCalcOnLoad();
}

void SheetImpl::SetCellFormat(long row, long col, const std::string& code) {
    try {
        NumberFormat check(code);
    } catch (const NumberFormatError&) {
        Refuse("Unable to set the NumberFormat property of the Range class");
    }
    // A cell that isn't there has the default format: giving it that makes no cell.
    auto found = FindCell(row, col);
    long current = found ? found.attribute("s").as_int() : 0;
    long xf = book_.styles().WithFormat(current, code);
    if (!found && xf == 0) return;
    auto c = found ? found : MakeCell(row, col);
    if (!c.attribute("s")) {
        if (xf == 0) return;
        c.insert_attribute_after("s", c.attribute("r"));
    }
    c.attribute("s").set_value(xf);
}

void SheetImpl::ClearCell(long row, long col, bool formats) {
    auto c = FindCell(row, col);
    if (!c) return;
    SheetData();  // edit
    book_.formulas().Wrote(this, row, col, row, col);
    c.remove_child("f");
    c.remove_child("v");
    c.remove_child("is");
    c.remove_attribute("t");
    if (formats) c.remove_attribute("s");
    if (!c.attribute("s") && !c.first_child()) {
        auto& e = rows_[row];
        e.node.remove_child(c);
        e.cells.erase(std::find_if(e.cells.begin(), e.cells.end(), [&](auto& p) { return p.first == col; }));
    }
}

// ---------------------------------------------------------------- formulas

void SheetImpl::EachFormula(
    const std::function<void(long row, long col, const std::string& formula, bool array, const host::Variant& cached)>& fn) {
    if (chartsheet_ || !hasFormulas_) return;
    BuildIndex();
    // A follower of a shared formula holds no text: it reads as its leader's, moved.
    std::map<std::string, std::pair<CellRef, std::string>> leaders;
    for (auto& [r, e] : rows_)
        for (auto& [col, c] : e.cells)
            if (auto f = c.child("f"); f && *f.text().get() && std::strcmp(f.attribute("t").value(), "shared") == 0)
                leaders.emplace(f.attribute("si").value(), std::pair{CellRef{r, col}, std::string(f.text().get())});
    for (auto& [r, e] : rows_)
        for (auto& [col, c] : e.cells) {
            auto f = c.child("f");
            if (!f) continue;
            std::string_view type = f.attribute("t").value();
            std::string text = f.text().get();
            if (type == "shared" && text.empty())
                if (auto it = leaders.find(f.attribute("si").value()); it != leaders.end())
                    text = TranslateFormula(it->second.second, r - it->second.first.row, col - it->second.first.col);
            long xf;
            fn(r, col, text, type == "array" || type == "dataTable", ValueOfCell(book_, c, xf));
        }
}

void SheetImpl::EachValue(long r1, long c1, long r2, long c2,
                          const std::function<void(long row, long col, const host::Variant& value, bool formula)>& fn) {
    if (chartsheet_) return;
    BuildIndex();
    for (auto it = rows_.lower_bound(r1); it != rows_.end() && it->first <= r2; ++it) {
        auto& cells = it->second.cells;
        auto c = std::lower_bound(cells.begin(), cells.end(), c1, [](auto& p, long v) { return p.first < v; });
        for (; c != cells.end() && c->first <= c2; ++c) {
            long xf;
            fn(it->first, c->first, ValueOfCell(book_, c->second, xf), static_cast<bool>(c->second.child("f")));
        }
    }
}

bool SheetImpl::SetCachedValue(long row, long col, const host::Variant& value) {
    auto c = FindCell(row, col);
    auto f = c.child("f");
    if (!f) return false;
    const char* type = "";
    std::string text;
    switch (value.type()) {
        case host::Variant::Type::Boolean:
            type = "b";
            text = value.RawBool() ? "1" : "0";
            break;
        case host::Variant::Type::String:
            type = "str";
            text = EncodeCellText(value.RawString());
            break;
        case host::Variant::Type::Error:
            type = "e";
            text = ErrorText(value.ErrorCode());
            break;
        default: text = NumberXml(host::CDbl(value)); break;
    }
    std::string_view held = c.attribute("t").value();
    bool number = !*type;
    auto v = c.child("v");
    // A value the cell holds already leaves the part unchanged; a number compares as a number,
    // whichever digits wrote it.
    if (v && (held == type || (number && held == "n"))) {
        const char* was = v.text().get();
        if (number ? *was && std::strtod(was, nullptr) == host::CDbl(value) : text == was) return false;
    }
    Root(true);
    if (number) {
        if (held != "n") c.remove_attribute("t");
    } else {
        if (!c.attribute("t")) c.append_attribute("t");
        c.attribute("t").set_value(type);
    }
    if (!v) v = c.insert_child_after("v", f);
    v.text().set(text.c_str());
    return true;
}

bool SheetImpl::Used(long& r1, long& c1, long& r2, long& c2) {
    BuildIndex();
    bool any = false;
    for (auto& [r, e] : rows_) {
        if (e.cells.empty()) continue;
        if (!any) r1 = r, c1 = e.cells.front().first, c2 = e.cells.back().first, any = true;
        r2 = r;
        c1 = std::min(c1, e.cells.front().first);
        c2 = std::max(c2, e.cells.back().first);
    }
    return any;
}

// ---------------------------------------------------------------- rows moving

void SheetImpl::ShiftRows(long at, long count) {
    if (count == 0) return;
    BuildIndex();
    // Followers of a shared formula are relative to their leader, which a row change can
    // separate from them: they become formulas of their own while the rows are still in place.
    std::string me = Name();
    for (auto& e : book_.SheetList())
        if (e.sheet->MayReference(me)) e.sheet->ExpandSharedFormulas();
    auto sd = SheetData();
    lastRow_ = rows_.end();
    if (count > 0) {
        // Cells pushed off the sheet would be lost: the application refuses.
        auto last = rows_.lower_bound(kMaxRows - count + 1);
        for (auto it = last; it != rows_.end(); ++it)
            if (!it->second.cells.empty())
                Refuse("To prevent possible loss of data, Excel cannot shift nonblank cells off of the worksheet.");
        for (auto it = last; it != rows_.end();) {
            sd.remove_child(it->second.node);
            it = rows_.erase(it);
        }
    } else {
        long to = at - count;  // first row after the deleted ones
        for (auto it = rows_.lower_bound(at); it != rows_.end() && it->first < to;) {
            sd.remove_child(it->second.node);
            it = rows_.erase(it);
        }
    }
    // Renumber the rows that move, from the side that keeps keys unique.
    std::map<long, RowEntry> moved;
    for (auto it = rows_.lower_bound(count > 0 ? at : at - count); it != rows_.end();) {
        long r = it->first + count;
        RowEntry e = std::move(it->second);
        it = rows_.erase(it);
        if (!e.node.attribute("r")) e.node.prepend_attribute("r");
        e.node.attribute("r").set_value(r);
        for (auto& [col, c] : e.cells) {
            if (!c.attribute("r")) c.prepend_attribute("r");
            c.attribute("r").set_value(CellAddress(r, col).c_str());
        }
        moved.emplace(r, std::move(e));
    }
    rows_.merge(moved);
    lastRow_ = rows_.end();
    // What formulas read from the moved rows on may have changed (a sum lost a deleted row).
    book_.formulas().Wrote(this, at, 1, kMaxRows, kMaxCols);
    if (count > 0) FormatAsAbove(at, count);
    book_.ApplyRowShift(RowShift{Name(), at, count});
}

// Inserted rows take the formats of the row above them, as the application inserts rows: the
// row's own format and height, and each cell's style.
void SheetImpl::FormatAsAbove(long at, long count) {
    auto above = rows_.find(at - 1);
    if (above == rows_.end()) return;
    pugi::xml_node source = above->second.node;
    std::vector<std::pair<long, std::string>> styles;
    for (auto& [col, c] : above->second.cells)
        if (c.attribute("s").as_int() != 0) styles.emplace_back(col, c.attribute("s").value());
    const char* const rowFormat[] = {"s", "customFormat", "ht", "customHeight"};
    bool formatted = std::any_of(std::begin(rowFormat), std::end(rowFormat), [&](const char* a) { return source.attribute(a); });
    if (!formatted && styles.empty()) return;
    for (long r = at; r < at + count; ++r) {
        auto& row = MakeRow(r);
        for (const char* a : rowFormat)
            if (auto v = source.attribute(a)) row.node.append_attribute(a).set_value(v.value());
        for (auto& [col, s] : styles) {
            auto c = MakeCell(r, col);
            if (!c.attribute("s")) c.append_attribute("s");
            c.attribute("s").set_value(s.c_str());
        }
    }
}

bool SheetImpl::MayReference(const std::string& sheet) {
    if (chartsheet_) return false;
    if (host::EqualsNoCase(Name(), sheet) || book_.pkg().Changed(part_) || indexed_) return true;
    // A sheet never indexed needs no walk unless its text has formulas naming the sheet. Formula
    // elements may have a prefix; a name with characters XML escapes is not looked for.
    std::string bytes = book_.pkg().Bytes(part_);
    if (bytes.find("<f") == std::string::npos && bytes.find(":f>") == std::string::npos &&
        bytes.find(":f ") == std::string::npos)
        return false;
    if (sheet.find_first_of("&<>") != std::string::npos) return true;
    return host::UCase(bytes).find(host::UCase(sheet)) != std::string::npos;
}

void SheetImpl::ExpandSharedFormulas() {
    BuildIndex();
    std::map<std::string, std::pair<CellRef, std::string>> leaders;  // si -> leader cell and text
    bool any = false;
    for (auto& [r, e] : rows_)
        for (auto& [col, c] : e.cells) {
            auto f = c.child("f");
            if (!f || std::string(f.attribute("t").value()) != "shared") continue;
            any = true;
            if (*f.text().get()) leaders[f.attribute("si").value()] = {CellRef{r, col}, f.text().get()};
        }
    if (!any) return;
    Root(true);
    for (auto& [r, e] : rows_)
        for (auto& [col, c] : e.cells) {
            auto f = c.child("f");
            if (!f || std::string(f.attribute("t").value()) != "shared") continue;
            auto it = leaders.find(f.attribute("si").value());
            if (!*f.text().get() && it != leaders.end()) {
                auto& [at, text] = it->second;
                f.text().set(TranslateFormula(text, r - at.row, col - at.col).c_str());
            }
            f.remove_attribute("t");
            f.remove_attribute("si");
            f.remove_attribute("ref");
        }
}

void SheetImpl::RewriteFormulas(const std::function<std::string(const std::string&)>& fn) {
    if (chartsheet_) return;
    BuildIndex();
    bool edited = false;
    for (auto& [r, e] : rows_)
        for (auto& [col, c] : e.cells) {
            auto f = c.child("f");
            std::string text = f.text().get();
            if (text.empty()) continue;
            std::string now = fn(text);
            if (now == text) continue;
            if (!edited) Root(true), edited = true;
            f.text().set(now.c_str());
        }
}

void SheetImpl::FollowRowShift(const RowShift& shift) {
    if (!MayReference(shift.sheet)) return;
    std::string me = Name();
    bool mine = host::EqualsNoCase(me, shift.sheet);
    auto shiftText = [&](const std::string& text) { return ShiftFormulaRows(text, me, shift); };
    RewriteFormulas(shiftText);
    auto root = Root(false);
    auto edit = [&] { Root(true); };
    if (!mine) return;
    // Range lists of the sheet itself move with its rows.
    auto moveList = [&](pugi::xml_attribute a) {
        if (!a) return;
        std::string in = a.value(), out;
        size_t i = 0;
        while (i <= in.size()) {
            size_t j = in.find(' ', i);
            if (j == std::string::npos) j = in.size();
            std::string part = shiftText(in.substr(i, j - i));
            if (part.find("#REF!") == std::string::npos) {
                if (!out.empty()) out += ' ';
                out += part;
            }
            i = j + 1;
        }
        if (out != in) edit(), a.set_value(out.c_str());
    };
    moveList(root.child("dimension").attribute("ref"));
    for (auto m : root.child("mergeCells").children("mergeCell")) moveList(m.attribute("ref"));
    for (auto cf : root.children("conditionalFormatting")) moveList(cf.attribute("sqref"));
    for (auto dv : root.child("dataValidations").children("dataValidation")) moveList(dv.attribute("sqref"));
    for (auto h : root.child("hyperlinks").children("hyperlink")) moveList(h.attribute("ref"));
    moveList(root.child("autoFilter").attribute("ref"));
}

void Book::ApplyRowShift(const RowShift& shift) {
    for (auto& e : sheets_) e.sheet->FollowRowShift(shift);
    RewriteNames([&](const std::string& text) { return ShiftFormulaRows(text, "", shift); });
    RewriteChartFormulas(*this, [&](const std::string& text) { return ShiftFormulaRows(text, "", shift); });
}

void Book::RewriteNames(const std::function<std::string(const std::string&)>& fn) {
    bool edited = false;
    for (auto dn : WorkbookRoot(false).child("definedNames").children("definedName")) {
        std::string text = dn.text().get();
        std::string now = fn(text);
        if (now == text) continue;
        if (!edited) WorkbookRoot(true), edited = true;
        dn.text().set(now.c_str());
    }
}

void Book::RewriteReferencesTo(const std::string& sheet, const std::function<std::string(const std::string&)>& fn) {
    for (auto& e : sheets_)
        if (e.sheet->MayReference(sheet)) e.sheet->RewriteFormulas(fn);
    RewriteNames(fn);
    RewriteChartFormulas(*this, fn);
}

// ---------------------------------------------------------------- sorting

void SheetImpl::SortRows(long r1, long c1, long r2, long c2, long keyCol, bool descending, bool matchCase) {
    BuildIndex();
    struct Line {
        long row;
        host::Variant key;
    };
    std::vector<Line> lines;
    for (long r = r1; r <= r2; ++r) lines.push_back({r, CellValue(r, keyCol)});
    // The application's order: numbers, texts, logicals, errors; blanks last in both directions.
    auto rank = [](const host::Variant& v) {
        switch (v.type()) {
            case host::Variant::Type::Empty: return 4;
            case host::Variant::Type::String: return v.RawString().empty() ? 4 : 1;
            case host::Variant::Type::Boolean: return 2;
            case host::Variant::Type::Error: return 3;
            default: return 0;
        }
    };
    auto less = [&](const Line& a, const Line& b) {
        int ra = rank(a.key), rb = rank(b.key);
        if (ra == 4 || rb == 4) return ra < rb;  // blanks stay last
        if (ra != rb) return descending ? ra > rb : ra < rb;
        int cmp = 0;
        if (ra == 0) {
            double x = host::CDbl(a.key), y = host::CDbl(b.key);
            cmp = x < y ? -1 : x > y ? 1 : 0;
        } else if (ra == 1) {
            std::string x = matchCase ? a.key.RawString() : host::UCase(a.key.RawString());
            std::string y = matchCase ? b.key.RawString() : host::UCase(b.key.RawString());
            cmp = x.compare(y);
            cmp = cmp < 0 ? -1 : cmp > 0 ? 1 : 0;
        } else if (ra == 2) {
            cmp = static_cast<int>(a.key.RawBool()) - static_cast<int>(b.key.RawBool());
        }
        return descending ? cmp > 0 : cmp < 0;
    };
    std::stable_sort(lines.begin(), lines.end(), less);
    bool identity = true;
    for (size_t i = 0; i < lines.size(); ++i)
        if (lines[i].row != r1 + static_cast<long>(i)) identity = false;
    if (identity) return;

    // Park copies of the cells, then put them back in the new order.
    pugi::xml_document park;
    auto holder = park.append_child("park");
    std::vector<std::vector<std::pair<long, pugi::xml_node>>> saved(lines.size());
    for (size_t i = 0; i < lines.size(); ++i)
        for (long c = c1; c <= c2; ++c)
            if (auto cell = FindCell(lines[i].row, c)) saved[i].push_back({c, holder.append_copy(cell)});
    for (long r = r1; r <= r2; ++r)
        for (long c = c1; c <= c2; ++c) ClearCell(r, c, true);
    for (size_t i = 0; i < lines.size(); ++i) {
        long r = r1 + static_cast<long>(i);
        for (auto& [c, copy] : saved[i]) {
            auto cell = MakeCell(r, c);
            for (auto a : copy.attributes())
                if (std::strcmp(a.name(), "r") != 0) {
                    if (!cell.attribute(a.name())) cell.append_attribute(a.name());
                    cell.attribute(a.name()).set_value(a.value());
                }
            for (auto ch : copy.children()) cell.append_copy(ch);
        }
    }
}

// ---------------------------------------------------------------- sizes

void SheetImpl::LoadCols() {
    if (colsLoaded_) return;
    colsLoaded_ = true;
    auto root = Root(false);
    auto fmt = root.child("sheetFormatPr");
    defaultRowHeight_ = fmt.attribute("defaultRowHeight").as_double(15);
    if (auto w = fmt.attribute("defaultColWidth")) defaultColWidth_ = w.as_double();
    else {
        // Without a stated default the application widens base characters plus padding to a
        // multiple of 8 pixels: 64 px (8.43 characters) for the base of 8 at Calibri 11.
        double px = std::ceil((fmt.attribute("baseColWidth").as_double(8) * 7 + 5) / 8) * 8;
        defaultColWidth_ = std::ceil(px / 7 * 256) / 256;
    }
    for (auto c : root.child("cols").children("col"))
        cols_.push_back({c.attribute("min").as_int(), c.attribute("max").as_int(), c.attribute("width").as_double(defaultColWidth_),
                         c.attribute("customWidth").as_bool()});
}

double SheetImpl::ColumnWidthChars(long col) {
    LoadCols();
    for (auto& c : cols_)
        if (col >= c.min && col <= c.max) return c.width;
    return defaultColWidth_;
}

double SheetImpl::ColumnWidthPoints(long col) {
    // Characters of the default font's digit width (7 px at Calibri 11) plus padding, in points.
    double chars = ColumnWidthChars(col);
    double px = std::trunc(((256.0 * chars + std::trunc(128.0 / 7)) / 256.0) * 7);
    return px * 0.75;
}

double SheetImpl::RowHeightPoints(long row) {
    LoadCols();
    BuildIndex();
    auto it = rows_.find(row);
    if (it != rows_.end() && it->second.node.attribute("ht")) return it->second.node.attribute("ht").as_double();
    return defaultRowHeight_;
}

double SheetImpl::ColumnLeft(long col) {
    double x = 0;
    col = std::min(col, kMaxCols + 1);  // no further edge to walk to
    for (long c = 1; c < col; ++c) x += ColumnWidthPoints(c);
    return x;
}

double SheetImpl::RowTop(long row) {
    // Rows of the default height are counted, not visited: only rows in the file can differ.
    LoadCols();
    BuildIndex();
    double y = defaultRowHeight_ * static_cast<double>(row - 1);
    for (auto it = rows_.begin(); it != rows_.end() && it->first < row; ++it)
        if (auto ht = it->second.node.attribute("ht")) y += ht.as_double() - defaultRowHeight_;
    return y;
}

void SheetImpl::SetColumnWidthChars(long c1, long c2, double chars) {
    if (chars < 0 || chars > 255) Refuse("Unable to set the ColumnWidth property of the Range class");
    LoadCols();
    auto root = Root(true);
    auto cols = root.child("cols");
    if (!cols) cols = root.insert_child_before("cols", root.child("sheetData") ? root.child("sheetData") : SheetData());
    // Split spans that overlap the changed columns, then write one span for them.
    std::vector<pugi::xml_node> nodes;
    for (auto c : cols.children("col")) nodes.push_back(c);
    for (auto n : nodes) {
        long a = n.attribute("min").as_int(), b = n.attribute("max").as_int();
        if (b < c1 || a > c2) continue;
        if (a < c1) {
            auto left = cols.insert_copy_before(n, n);
            left.attribute("max").set_value(c1 - 1);
        }
        if (b > c2) {
            auto right = cols.insert_copy_after(n, n);
            right.attribute("min").set_value(c2 + 1);
        }
        cols.remove_child(n);
    }
    pugi::xml_node before;
    for (auto c : cols.children("col"))
        if (c.attribute("min").as_int() > c2) {
            before = c;
            break;
        }
    auto col = before ? cols.insert_child_before("col", before) : cols.append_child("col");
    col.append_attribute("min").set_value(c1);
    col.append_attribute("max").set_value(c2);
    col.append_attribute("width").set_value(chars + 0.7109375);
    col.append_attribute("customWidth").set_value("1");
    colsLoaded_ = false;
    cols_.clear();
}

void SheetImpl::SetRowHeightPoints(long r1, long r2, double points) {
    if (points < 0 || points > 409.5) Refuse("Unable to set the RowHeight property of the Range class");
    for (long r = r1; r <= r2; ++r) {
        MakeCell(r, 1);  // makes the row
        auto& e = rows_[r];
        if (!e.node.attribute("ht")) e.node.append_attribute("ht");
        e.node.attribute("ht").set_value(points);
        if (!e.node.attribute("customHeight")) e.node.append_attribute("customHeight");
        e.node.attribute("customHeight").set_value("1");
        ClearCell(r, 1, false);
    }
}

double SheetImpl::StandardWidth() {
    LoadCols();
    return defaultColWidth_ - 0.7109375;
}
double SheetImpl::StandardHeight() {
    LoadCols();
    return defaultRowHeight_;
}

}  // namespace xlsx
