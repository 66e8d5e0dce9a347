// Formulas computed with ixion. Each calculation builds a model of the workbook's formulas and
// only the values they read, lets ixion say which formulas are stale (no value yet, or over
// written cells) and in which order, and computes those one by one.
//
// ixion 0.17 differs from the application in places: it reads logical values as numbers, counts
// empty cells and texts in AVERAGE, MIN and MAX, compares texts with regard to case, formats
// numbers in texts its own way, and implements few functions. A formula that would meet one of
// these is left as the file has it and named, rather than given a value the application wouldn't.
#include "xlsx/formulas.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>
#include <tuple>
#include <unordered_map>

#include <fmt/format.h>
#include <ixion/address.hpp>
#include <ixion/cell_access.hpp>
#include <ixion/formula.hpp>
#include <ixion/formula_function_opcode.hpp>
#include <ixion/formula_name_resolver.hpp>
#include <ixion/formula_result.hpp>
#include <ixion/formula_tokens.hpp>
#include <ixion/model_context.hpp>

#include "host/constants.h"
#include "xlsx/book.h"

namespace xlsx {

Formulas& Book::formulas() {
    if (!formulas_) formulas_ = std::make_shared<Formulas>(*this);
    return *formulas_;
}

namespace {

using ixion::formula_function_t;

// The functions whose results match the application's for what the checks below let through.
// ixion implements a few more: LEFT, LEN and CONCATENATE format numbers their own way, SUBTOTAL
// knows some kinds only, NOW, WAIT and MMULT give no value a file should keep.
bool Trusted(formula_function_t f) {
    switch (f) {
        case formula_function_t::func_sum:
        case formula_function_t::func_average:
        case formula_function_t::func_min:
        case formula_function_t::func_max:
        case formula_function_t::func_counta:
        case formula_function_t::func_if:
        case formula_function_t::func_int:
        case formula_function_t::func_pi: return true;
        default: return false;
    }
}

// The application's skip empty cells, texts and logical values here; ixion's count them.
bool SkipsBlanks(formula_function_t f) {
    return f == formula_function_t::func_average || f == formula_function_t::func_min ||
           f == formula_function_t::func_max;
}

// Texts in their ranges count as the application counts them (SUM skips them, COUNTA counts them).
bool TakesTexts(formula_function_t f) {
    return f == formula_function_t::func_sum || f == formula_function_t::func_counta;
}

// ixion's MIN and MAX give an error for any range.
bool TakesRanges(formula_function_t f) { return TakesTexts(f) || f == formula_function_t::func_average; }

enum class Context { Single, Strict, Texts };

struct Read {
    ixion::abs_range_t area;
    Context context;
};

struct Analysis {
    std::string refusal;
    bool logical = false;  // a comparison is the formula's last step: its value is TRUE or FALSE
    std::vector<Read> reads;
};

const char* const kUnreadable = "the engine can't read it";

Analysis Analyse(const ixion::formula_tokens_t& tokens, const ixion::abs_address_t& pos) {
    Analysis a;
    auto refuse = [&](std::string why) {
        if (a.refusal.empty()) a.refusal = std::move(why);
    };
    struct Frame {
        bool call;
        formula_function_t fn;
        int arg;
    };
    std::vector<Frame> frames;
    bool calling = false;
    formula_function_t pending = formula_function_t::func_unknown;
    int comparisons = 0;
    for (size_t i = 0; i < tokens.size(); ++i) {
        const auto& t = *tokens[i];
        const Frame* call = !frames.empty() && frames.back().call ? &frames.back() : nullptr;
        bool ifResult = call && call->fn == formula_function_t::func_if && call->arg > 0;
        switch (t.get_opcode()) {
            case ixion::fop_function:
                pending = static_cast<formula_function_t>(t.get_uint32());
                calling = true;
                // A name that is also a function's (Rate) parses as the function.
                if (i + 1 == tokens.size() || tokens[i + 1]->get_opcode() != ixion::fop_open)
                    refuse(fmt::format("it uses the name {}, which the engine doesn't compute",
                                       ixion::get_formula_function_name(pending)));
                else if (!Trusted(pending))
                    refuse(fmt::format("{} is a function the engine doesn't compute", ixion::get_formula_function_name(pending)));
                break;
            case ixion::fop_open:
                frames.push_back({calling, pending, 0});
                calling = false;
                break;
            case ixion::fop_close:
                if (frames.empty()) refuse(kUnreadable);
                else frames.pop_back();
                break;
            case ixion::fop_sep:
                if (!call) refuse("it joins references into one");
                else frames.back().arg++;
                break;
            case ixion::fop_single_ref:
                a.reads.push_back({ixion::abs_range_t(t.get_single_ref().to_abs(pos)),
                                   call && SkipsBlanks(call->fn) ? Context::Strict : Context::Single});
                break;
            case ixion::fop_range_ref: {
                auto area = t.get_range_ref().to_abs(pos);
                if (!call) refuse("it reads a range as one value");
                else if (!TakesRanges(call->fn))
                    refuse(fmt::format("the engine's {} reads no ranges", ixion::get_formula_function_name(call->fn)));
                else if (area.first.sheet != area.last.sheet) refuse("it reads several sheets");
                else a.reads.push_back({area, SkipsBlanks(call->fn) ? Context::Strict : Context::Texts});
                break;
            }
            case ixion::fop_named_expression: {
                // A function ixion doesn't know parses as a name; so does one the application
                // added later (saved with the prefix _xlfn.).
                std::string name = t.get_name();
                if (i + 1 < tokens.size() && tokens[i + 1]->get_opcode() == ixion::fop_open) {
                    for (std::string_view prefix : {"_xlfn.", "_xlws."})
                        if (name.compare(0, prefix.size(), prefix) == 0) name.erase(0, prefix.size());
                    refuse(fmt::format("{} is a function the engine doesn't compute", name));
                    pending = formula_function_t::func_unknown;
                    calling = true;
                } else if (!name.empty() && name[0] == '#') {
                    refuse(fmt::format("it holds the error {}", name));
                } else if (!name.empty() && name.back() == '%') {
                    refuse("it takes a percentage, which the engine doesn't compute");
                } else {
                    refuse(fmt::format("it uses the name {}, which the engine doesn't compute", name));
                }
                break;
            }
            case ixion::fop_string:
                // ixion compares texts with regard to case; as a result of IF a text is what it is.
                if (!ifResult) refuse("it uses a text other than as a result of IF");
                break;
            case ixion::fop_value:
            case ixion::fop_plus:
            case ixion::fop_minus:
            case ixion::fop_multiply:
            case ixion::fop_divide:
            case ixion::fop_exponent: break;
            case ixion::fop_equal:
            case ixion::fop_not_equal:
            case ixion::fop_less:
            case ixion::fop_greater:
            case ixion::fop_less_equal:
            case ixion::fop_greater_equal:
                // ixion's comparisons give 1 and 0: a number where they are computed with, a
                // logical value where they are the result. The condition of IF is either.
                if (frames.empty()) ++comparisons;
                else if (!(call && call->fn == formula_function_t::func_if && call->arg == 0))
                    refuse("it compares where the engine would give a number for a logical value");
                break;
            case ixion::fop_concat: refuse("it joins texts, which the engine writes its own way"); break;
            default: refuse(kUnreadable); break;
        }
    }
    if (!frames.empty()) refuse(kUnreadable);
    if (comparisons > 1) refuse("it compares where the engine would give a number for a logical value");
    a.logical = comparisons == 1;
    return a;
}

// Rows and columns (1-based) of an area; whole rows and columns as ixion marks them.
void Span(const ixion::abs_range_t& a, long& r1, long& c1, long& r2, long& c2) {
    bool rows = a.first.row == ixion::row_unset || a.last.row == ixion::row_unset;
    bool cols = a.first.column == ixion::column_unset || a.last.column == ixion::column_unset;
    r1 = rows ? 1 : std::min(a.first.row, a.last.row) + 1;
    r2 = rows ? kMaxRows : std::max(a.first.row, a.last.row) + 1;
    c1 = cols ? 1 : std::min(a.first.column, a.last.column) + 1;
    c2 = cols ? kMaxCols : std::max(a.first.column, a.last.column) + 1;
}

enum class Kind { Blank, Number, Text, Other };

Kind KindOf(const host::Variant& v) {
    switch (v.type()) {
        case host::Variant::Type::Empty: return Kind::Blank;
        case host::Variant::Type::String: return Kind::Text;
        case host::Variant::Type::Boolean:
        case host::Variant::Type::Error:
        case host::Variant::Type::Null: return Kind::Other;
        default: return Kind::Number;
    }
}

// What a read may meet: a number always, an empty cell or a text where the application and
// ixion agree on it.
std::string Refusal(Context context, Kind kind) {
    switch (kind) {
        case Kind::Number: return {};
        case Kind::Blank:
            return context == Context::Strict ? "AVERAGE, MIN or MAX reads an empty cell, which the engine counts" : "";
        case Kind::Text:
            return context == Context::Texts ? "" : context == Context::Strict
                                                        ? "AVERAGE, MIN or MAX reads a text, which the engine counts"
                                                        : "it reads a text";
        default: return "it reads a logical value or an error";
    }
}

struct Formula {
    Formula(SheetImpl* s, long r, long c, std::string f, bool a, host::Variant v)
        : sheet(s), row(r), col(c), text(std::move(f)), array(a), cached(std::move(v)) {}
    SheetImpl* sheet;
    long row, col;
    std::string text;
    bool array;
    host::Variant cached;
    enum class State { Cached, Stale, Computed, Refused } state = State::Cached;
    bool settled = false;  // in the model as its cached value
    Analysis analysis;
    host::Variant value;  // what it was computed to
};

// The cells of an area formulas read, once for all formulas reading it.
struct AreaCells {
    long values = 0;  // cells holding a value, formulas included
    Kind worst = Kind::Number;  // of the cells other than formulas: Other over Text over Number
    std::vector<ixion::abs_address_t> formulas;
};

host::Variant ResultOf(const ixion::model_context& cxt, const ixion::abs_address_t& pos, bool logical, std::string& why) {
    auto r = cxt.get_cell_access(pos).get_formula_result();
    switch (r.get_type()) {
        case ixion::formula_result::result_type::value: {
            double d = r.get_value();
            if (!std::isfinite(d)) {
                why = "the engine's result is no finite number";
                return {};
            }
            if (logical) return d != 0;
            return d;
        }
        case ixion::formula_result::result_type::string: return r.get_string();
        case ixion::formula_result::result_type::error:
            if (r.get_error() == ixion::formula_error_t::division_by_zero) return host::Variant::CellError(host::xlErrDiv0);
            why = fmt::format("the engine's result is {}, where the application's may differ",
                              ixion::get_formula_error_name(r.get_error()));
            return {};
        default: why = "its result is an array"; return {};
    }
}

}  // namespace

void Formulas::Wrote(SheetImpl* sheet, long r1, long c1, long r2, long c2) {
    current_ = false;
    // A table written row by row, or a row cell by cell, is one area.
    if (!written_.empty()) {
        Area& last = written_.back();
        if (last.sheet == sheet && last.c1 == c1 && last.c2 == c2 && r1 == last.r2 + 1 && r2 >= r1) {
            last.r2 = r2;
            return;
        }
        if (last.sheet == sheet && last.r1 == r1 && last.r2 == r2 && c1 == last.c2 + 1 && c2 >= c1) {
            last.c2 = c2;
            return;
        }
        if (last.sheet == sheet && r1 >= last.r1 && r2 <= last.r2 && c1 >= last.c1 && c2 <= last.c2) return;
    }
    written_.push_back({sheet, r1, c1, r2, c2});
}

std::vector<UncomputedFormula> Formulas::TakeUncomputed() {
    // A cell refused twice (written again in between) is named once.
    std::map<std::tuple<std::string, long, long>, UncomputedFormula> once;
    for (auto& u : uncomputed_) once[{u.sheet, u.col, u.row}] = u;
    uncomputed_.clear();
    std::vector<UncomputedFormula> out;
    for (auto& [at, u] : once) out.push_back(std::move(u));
    return out;
}

void Formulas::Calculate() {
    current_ = true;
    auto written = std::move(written_);
    written_.clear();

    std::vector<SheetImpl*> sheets;
    for (auto& e : book_.SheetList())
        if (!e.sheet->IsChartsheet()) sheets.push_back(e.sheet.get());
    std::vector<Formula> formulas;
    for (auto* s : sheets)
        s->EachFormula([&](long row, long col, const std::string& text, bool array, const host::Variant& cached) {
            formulas.emplace_back(s, row, col, text, array, cached);
        });
    if (formulas.empty()) return;

    // The model holds the sheets with formulas and those a formula may name, nothing else.
    std::string texts;
    for (auto& f : formulas) texts += host::UCase(f.text) + "\n";
    std::vector<SheetImpl*> model;
    std::unordered_map<SheetImpl*, ixion::sheet_t> index;
    auto named = [&](SheetImpl* s) {
        std::string name = host::UCase(s->Name()), quoted;
        for (char c : name) quoted += c == '\'' ? std::string("''") : std::string(1, c);
        return texts.find(name) != std::string::npos || texts.find(quoted) != std::string::npos;
    };
    for (auto* s : sheets)
        if (s->HasFormulas() || named(s)) {
            index[s] = static_cast<ixion::sheet_t>(model.size());
            model.push_back(s);
        }

    // Cells written where no formula reads, and every formula with a value: nothing is stale.
    bool stale = std::any_of(formulas.begin(), formulas.end(), [](auto& f) { return f.cached.IsEmpty(); }) ||
                 std::any_of(written.begin(), written.end(), [&](auto& w) { return index.count(w.sheet) > 0; });
    if (!stale) return;

    auto refuse = [&](Formula& f, const std::string& why) {
        f.state = Formula::State::Refused;
        uncomputed_.push_back({f.sheet->Name(), f.row, f.col, f.text, why});
    };
    ixion::model_context cxt;
    std::unordered_map<ixion::abs_address_t, size_t, ixion::abs_address_t::hash> at;
    std::vector<ixion::abs_range_t> order;
    try {
        for (auto* s : model) cxt.append_sheet(s->Name());
        auto resolver = ixion::formula_name_resolver::get(ixion::formula_name_resolver_t::excel_a1, &cxt);
        ixion::abs_range_set_t valueless, modified;
        for (size_t i = 0; i < formulas.size(); ++i) {
            Formula& f = formulas[i];
            ixion::abs_address_t pos(index.at(f.sheet), f.row - 1, f.col - 1);
            at[pos] = i;
            auto tokens = ixion::formula_tokens_store::create();
            try {
                if (f.text.empty()) throw std::invalid_argument("no formula");
                tokens->get() = ixion::parse_formula_string(cxt, pos, *resolver, f.text);
                f.analysis = Analyse(tokens->get(), pos);
            } catch (const std::exception&) {
                tokens->get().clear();
                // An external reference is [n]Sheet!A1, the number naming one of the workbook's links.
                f.analysis.refusal = f.text.find('[') != std::string::npos && f.text.find('!') != std::string::npos
                                         ? "it refers to another workbook"
                                         : kUnreadable;
            }
            if (f.array && f.analysis.refusal.empty()) f.analysis.refusal = "it is an array formula";
            cxt.set_formula_cell(pos, tokens);
            ixion::register_formula_cell(cxt, pos);
            if (f.cached.IsEmpty()) valueless.insert(ixion::abs_range_t(pos));
        }
        for (auto& w : written)
            if (auto it = index.find(w.sheet); it != index.end())
                modified.insert(ixion::abs_range_t(it->second, w.r1 - 1, w.c1 - 1, w.r2 - w.r1 + 1, w.c2 - w.c1 + 1));
        order = ixion::query_and_sort_dirty_cells(cxt, modified, &valueless);
    } catch (const std::exception& e) {
        for (auto& f : formulas)
            if (f.cached.IsEmpty()) refuse(f, fmt::format("the engine can't compute the workbook's formulas ({})", e.what()));
        return;
    }
    for (auto& range : order)
        if (auto it = at.find(range.first); it != at.end()) formulas[it->second].state = Formula::State::Stale;

    // Values come into the model as stale formulas read them; a formula left as it is reads as
    // its cached value.
    std::unordered_map<ixion::abs_range_t, AreaCells, ixion::abs_range_t::hash> areas;
    auto load = [&](const ixion::abs_range_t& area) -> const AreaCells& {
        auto [it, fresh] = areas.try_emplace(area);
        if (!fresh) return it->second;
        AreaCells& cells = it->second;
        long r1, c1, r2, c2;
        Span(area, r1, c1, r2, c2);
        if (area.first.sheet < 0 || area.first.sheet >= static_cast<ixion::sheet_t>(model.size())) return cells;
        model[area.first.sheet]->EachValue(r1, c1, r2, c2, [&](long row, long col, const host::Variant& v, bool formula) {
            ixion::abs_address_t pos(area.first.sheet, row - 1, col - 1);
            if (formula) {
                cells.formulas.push_back(pos);
                ++cells.values;
                return;
            }
            Kind kind = KindOf(v);
            if (kind == Kind::Blank) return;
            ++cells.values;
            if (kind > cells.worst) cells.worst = kind;
            if (kind == Kind::Number) cxt.set_numeric_cell(pos, host::CDbl(v));
            else if (kind == Kind::Text) cxt.set_string_cell(pos, v.RawString());
        });
        return cells;
    };
    auto settle = [&](Formula& f) {
        f.settled = true;
        ixion::abs_address_t pos(index.at(f.sheet), f.row - 1, f.col - 1);
        ixion::unregister_formula_cell(cxt, pos);
        switch (KindOf(f.cached)) {
            case Kind::Number: cxt.set_numeric_cell(pos, host::CDbl(f.cached)); break;
            case Kind::Text: cxt.set_string_cell(pos, f.cached.RawString()); break;
            default: cxt.empty_cell(pos); break;
        }
    };
    auto why = [&](const Formula& f) -> std::string {
        if (!f.analysis.refusal.empty()) return f.analysis.refusal;
        for (auto& read : f.analysis.reads) {
            const AreaCells& cells = load(read.area);
            if (auto no = Refusal(read.context, cells.worst); !no.empty()) return no;
            long r1, c1, r2, c2;
            Span(read.area, r1, c1, r2, c2);
            if (cells.values < (r2 - r1 + 1) * (c2 - c1 + 1))
                if (auto no = Refusal(read.context, Kind::Blank); !no.empty()) return no;
            for (auto& pos : cells.formulas) {
                Formula& g = formulas[at.at(pos)];
                if (g.state == Formula::State::Cached && !g.settled) settle(g);
                if (g.state == Formula::State::Refused || g.state == Formula::State::Stale)
                    return "it reads a formula the engine doesn't compute";
                if (auto no = Refusal(read.context, KindOf(g.state == Formula::State::Computed ? g.value : g.cached)); !no.empty())
                    return no;
            }
        }
        return {};
    };

    for (auto& range : order) {
        auto it = at.find(range.first);
        if (it == at.end()) continue;
        Formula& f = formulas[it->second];
        std::string no = why(f);
        host::Variant value;
        if (no.empty()) {
            try {
                ixion::calculate_sorted_cells(cxt, {range}, 0);
                value = ResultOf(cxt, range.first, f.analysis.logical, no);
            } catch (const std::exception& e) {
                no = fmt::format("the engine can't compute it ({})", e.what());
            }
        }
        if (!no.empty()) {
            refuse(f, no);
            continue;
        }
        f.state = Formula::State::Computed;
        f.value = value;
        f.sheet->SetCachedValue(f.row, f.col, value);
    }
}

std::vector<UncomputedFormula> TakeUncomputedFormulas(const host::Ref<host::Workbook>& book) {
    auto b = std::dynamic_pointer_cast<Book>(book);
    if (!b) return {};
    b->formulas().BeforeSave();
    return b->formulas().TakeUncomputed();
}

std::string DescribeUncomputed(const std::vector<UncomputedFormula>& formulas) {
    auto sorted = formulas;
    std::sort(sorted.begin(), sorted.end(), [](auto& a, auto& b) {
        return std::tie(a.sheet, a.col, a.row) < std::tie(b.sheet, b.col, b.row);
    });
    std::string out;
    for (size_t i = 0; i < sorted.size();) {
        size_t j = i + 1;
        while (j < sorted.size() && sorted[j].sheet == sorted[i].sheet && sorted[j].col == sorted[i].col &&
               sorted[j].row == sorted[j - 1].row + 1 && sorted[j].reason == sorted[i].reason)
            ++j;
        auto& first = sorted[i];
        std::string cells = CellAddress(first.row, first.col);
        if (j - i > 1) cells += ":" + CellAddress(sorted[j - 1].row, first.col);
        out += fmt::format("{}{}!{} ={} ({})", out.empty() ? "" : "; ", QuoteSheetName(first.sheet), cells, first.formula,
                           first.reason);
        i = j;
    }
    return out;
}

}  // namespace xlsx
