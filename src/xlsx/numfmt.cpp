// Number formats: choosing the section for a value, texts and Booleans, built-in codes.
#include "xlsx/numfmt.h"

#include <cmath>
#include <functional>
#include <unordered_map>

#include "xlsx/numfmt_internal.h"

namespace xlsx {

using numfmt::Condition;
using numfmt::Kind;
using numfmt::Op;
using numfmt::Section;
using numfmt::SectionType;

struct NumberFormat::Impl {
    std::string code;
    numfmt::Parsed parsed;
};

NumberFormat::NumberFormat(std::string_view code) : impl_(std::make_unique<Impl>()) {
    impl_->code = code;
    impl_->parsed = numfmt::Parse(code);
}

NumberFormat::~NumberFormat() = default;
NumberFormat::NumberFormat(NumberFormat&&) noexcept = default;
NumberFormat& NumberFormat::operator=(NumberFormat&&) noexcept = default;

const std::string& NumberFormat::Code() const { return impl_->code; }

bool NumberFormat::IsDate() const { return impl_->parsed.isDate; }

namespace {

// Which section shows a number, and whether it carries a minus sign of its own.
struct Choice {
    const Section* section = nullptr;  // nullptr: General
    bool minus = false;
    bool overflow = false;  // no section applies: ######
};

// A failed first condition leaves the rest to the next section; it shows a minus sign unless
// the failed condition was of the "less than" kind.
bool MinusAfterFailed(const Condition& c) { return c.op == Op::Eq || c.op == Op::Gt || c.op == Op::Ge; }

Choice Choose(const std::vector<Section>& sections, double v) {
    Choice c;
    const size_t n = sections.size();
    if (n == 0) {
        c.minus = v < 0;
        return c;
    }
    bool conditional = false;
    for (const Section& s : sections) conditional |= s.cond.op != Op::None;
    if (!conditional) {
        // Positive; negative; zero. With two sections zero goes with the positives; with one
        // section negatives show a minus sign.
        if (n == 1) c.section = &sections[0], c.minus = v < 0;
        else if (n == 2) c.section = &sections[v >= 0 ? 0 : 1];
        else c.section = &sections[v > 0 ? 0 : v < 0 ? 1 : 2];
        return c;
    }
    const Condition first = sections[0].cond.op != Op::None ? sections[0].cond
                                                            : Condition{n >= 3 ? Op::Gt : Op::Ge, 0};
    if (first.Test(v)) {
        c.section = &sections[0];
        c.minus = v < 0 && !first.OnlyNegative();
        return c;
    }
    if (n == 1) {
        c.minus = v < 0 && MinusAfterFailed(first);
        return c;
    }
    if (n == 2) {
        const Condition& second = sections[1].cond;
        if (second.op == Op::None) {
            c.section = &sections[1];
            c.minus = v < 0 && MinusAfterFailed(first);
        } else if (second.Test(v)) {
            c.section = &sections[1];
            c.minus = v < 0 && !second.OnlyNegative();
        } else {
            c.overflow = true;
        }
        return c;
    }
    const Condition second = sections[1].cond.op != Op::None ? sections[1].cond : Condition{Op::Lt, 0};
    if (second.Test(v)) {
        c.section = &sections[1];
        c.minus = v < 0 && !second.OnlyNegative();
    } else {
        c.section = &sections[2];
        c.minus = v < 0;
    }
    return c;
}

}  // namespace

std::string NumberFormat::Format(double value) const {
    std::string out;
    if (!std::isfinite(value)) return "#NUM!";
    if (value == 0) value = 0;  // no negative zero
    const Choice c = Choose(impl_->parsed.numbers, value);
    if (c.overflow) return "######";
    if (c.section == nullptr) {
        if (c.minus) out += '-';
        numfmt::RenderGeneral(std::fabs(value), out);
        return out;
    }
    const Section& s = *c.section;
    if (s.tokens.empty()) return out;
    if (s.type == SectionType::Date) {
        if (c.minus) return "######";  // no negative dates
        numfmt::RenderDate(s, std::fabs(value), out);
        return out;
    }
    numfmt::RenderNumber(s, std::fabs(value), c.minus, out);
    return out;
}

std::string NumberFormat::FormatText(std::string_view text) const {
    const numfmt::Parsed& p = impl_->parsed;
    if (!p.hasTextSection) return std::string(text);
    std::string out;
    for (const auto& t : p.text.tokens) {
        if (t.kind == Kind::Text) out += text;
        else if (t.kind == Kind::Literal) out += t.text;
    }
    return out;
}

std::string NumberFormat::FormatBool(bool value) const { return FormatText(value ? "TRUE" : "FALSE"); }

bool IsValidNumberFormat(std::string_view code) {
    try {
        numfmt::Parse(code);
        return true;
    } catch (const NumberFormatError&) {
        return false;
    }
}

std::string FormatNumber(std::string_view code, double value) {
    // Cells of a column share a few codes; parse each once per thread.
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
    };
    thread_local std::unordered_map<std::string, NumberFormat, Hash, std::equal_to<>> cache;
    auto it = cache.find(code);
    if (it == cache.end()) {
        NumberFormat parsed(code);  // throws before anything is cached
        if (cache.size() >= 256) cache.clear();
        it = cache.emplace(std::string(code), std::move(parsed)).first;
    }
    return it->second.Format(value);
}

std::string_view BuiltinNumberFormat(int id) {
    switch (id) {
        case 0: return "General";
        case 1: return "0";
        case 2: return "0.00";
        case 3: return "#,##0";
        case 4: return "#,##0.00";
        case 5: return "\"$\"#,##0_);\\(\"$\"#,##0\\)";
        case 6: return "\"$\"#,##0_);[Red]\\(\"$\"#,##0\\)";
        case 7: return "\"$\"#,##0.00_);\\(\"$\"#,##0.00\\)";
        case 8: return "\"$\"#,##0.00_);[Red]\\(\"$\"#,##0.00\\)";
        case 9: return "0%";
        case 10: return "0.00%";
        case 11: return "0.00E+00";
        case 12: return "# ?/?";
        case 13: return "# ?\?/??";
        case 14: return "m/d/yyyy";
        case 15: return "d-mmm-yy";
        case 16: return "d-mmm";
        case 17: return "mmm-yy";
        case 18: return "h:mm AM/PM";
        case 19: return "h:mm:ss AM/PM";
        case 20: return "h:mm";
        case 21: return "h:mm:ss";
        case 22: return "m/d/yyyy h:mm";
        // The standard lists these with a blank; the application shows a padding of the ')' width.
        case 37: return "#,##0_);(#,##0)";
        case 38: return "#,##0_);[Red](#,##0)";
        case 39: return "#,##0.00_);(#,##0.00)";
        case 40: return "#,##0.00_);[Red](#,##0.00)";
        case 41: return "_(* #,##0_);_(* \\(#,##0\\);_(* \"-\"_);_(@_)";
        case 42: return "_(\"$\"* #,##0_);_(\"$\"* \\(#,##0\\);_(\"$\"* \"-\"_);_(@_)";
        case 43: return "_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"??_);_(@_)";
        case 44: return "_(\"$\"* #,##0.00_);_(\"$\"* \\(#,##0.00\\);_(\"$\"* \"-\"??_);_(@_)";
        case 45: return "mm:ss";
        case 46: return "[h]:mm:ss";
        case 47: return "mmss.0";
        case 48: return "##0.0E+0";
        case 49: return "@";
        default: return "";
    }
}

}  // namespace xlsx
