// Ranges of cells, and the worksheet members that hand them out.
#include <algorithm>

#include "host/constants.h"
#include "host/error.h"
#include "xlsx/book.h"

namespace xlsx {

namespace {

enum Unit { kCells = 0, kRows = 1, kColumns = 2 };

class RangeImpl : public host::Range, public std::enable_shared_from_this<RangeImpl> {
public:
    RangeImpl(std::shared_ptr<SheetImpl> sheet, long r1, long c1, long r2, long c2, int unit)
        : sheet_(std::move(sheet)), r1_(r1), c1_(c1), r2_(r2), c2_(c2), unit_(unit) {}

    host::Ref<host::Worksheet> Worksheet() override { return sheet_; }
    host::Ref<host::Range> Cells(long row, long column) override {
        return MakeRange(sheet_, r1_ + row - 1, c1_ + column - 1, r1_ + row - 1, c1_ + column - 1);
    }
    long Row() override { return r1_; }
    long Column() override { return c1_; }
    long Count() override {
        if (unit_ == kRows) return r2_ - r1_ + 1;
        if (unit_ == kColumns) return c2_ - c1_ + 1;
        return (r2_ - r1_ + 1) * (c2_ - c1_ + 1);
    }
    host::Ref<host::Range> Rows() override { return MakeRange(sheet_, r1_, c1_, r2_, c2_, kRows); }
    host::Ref<host::Range> Columns() override { return MakeRange(sheet_, r1_, c1_, r2_, c2_, kColumns); }
    host::Ref<host::Range> EntireRow() override { return MakeRange(sheet_, r1_, 1, r2_, kMaxCols, kRows); }
    host::Ref<host::Range> EntireColumn() override { return MakeRange(sheet_, 1, c1_, kMaxRows, c2_, kColumns); }

    std::string Address(bool rowAbs, bool colAbs) override {
        auto cell = [&](long r, long c) {
            return (colAbs ? "$" : "") + ColumnLetters(c) + (rowAbs ? "$" : "") + std::to_string(r);
        };
        if (c1_ == 1 && c2_ == kMaxCols) {
            auto row = [&](long r) { return (rowAbs ? "$" : "") + std::to_string(r); };
            return row(r1_) + ":" + row(r2_);
        }
        if (r1_ == 1 && r2_ == kMaxRows) {
            auto col = [&](long c) { return (colAbs ? "$" : "") + ColumnLetters(c); };
            return col(c1_) + ":" + col(c2_);
        }
        if (r1_ == r2_ && c1_ == c2_) return cell(r1_, c1_);
        return cell(r1_, c1_) + ":" + cell(r2_, c2_);
    }

    host::Variant Value() override { return sheet_->CellValue(r1_, c1_); }
    void SetValue(const host::Variant& v) override { EachCell([&](long r, long c) { sheet_->SetCellValue(r, c, v); }); }
    std::string Formula() override {
        std::string f = sheet_->CellFormula(r1_, c1_);
        if (!f.empty()) return "=" + f;
        host::Variant v = sheet_->CellValue(r1_, c1_);
        if (v.type() == host::Variant::Type::Boolean) return v.RawBool() ? "TRUE" : "FALSE";
        return v.IsError() ? sheet_->CellText(r1_, c1_) : host::CStr(v);
    }
    void SetFormula(const std::string& formula) override {
        EachCell([&](long r, long c) {
            if (!formula.empty() && formula[0] == '=') sheet_->SetCellFormula(r, c, formula);
            else sheet_->SetCellValue(r, c, formula);
        });
    }
    bool HasFormula() override { return !sheet_->CellFormula(r1_, c1_).empty(); }
    std::string Text() override { return sheet_->CellText(r1_, c1_); }
    host::Variant NumberFormat() override {
        std::string first = sheet_->CellFormat(r1_, c1_);
        if (Count() > 1 && Count() <= 100000) {
            bool mixed = false;
            EachCell([&](long r, long c) { mixed = mixed || sheet_->CellFormat(r, c) != first; });
            if (mixed) return host::Variant::Null();
        }
        return first;
    }
    void SetNumberFormat(const host::Variant& code) override {
        std::string text = host::CStr(code);
        EachCell([&](long r, long c) { sheet_->SetCellFormat(r, c, text); });
    }
    host::Ref<host::Font> Font() override {
        NotAvailable("Range.Font");
    }
    host::Ref<host::Interior> Interior() override {
        NotAvailable("Range.Interior");
    }

    void Clear() override { EachExisting([&](long r, long c) { sheet_->ClearCell(r, c, true); }); }
    void ClearContents() override { EachExisting([&](long r, long c) { sheet_->ClearCell(r, c, false); }); }

    void Delete(const host::Variant& /*shift*/) override {
        if (!WholeRows()) Refuse("Delete method of Range class failed: only entire rows can be deleted here.");
        sheet_->ShiftRows(r1_, -(r2_ - r1_ + 1));
    }
    void Insert(const host::Variant& /*shift*/) override {
        if (!WholeRows()) Refuse("Insert method of Range class failed: only entire rows can be inserted here.");
        sheet_->ShiftRows(r1_, r2_ - r1_ + 1);
    }
    void Activate() override { sheet_->Activate(); }
    void Select() override { sheet_->Activate(); }

    void Sort(host::Ref<host::Range> key1, long order1, long header, long /*orderCustom*/, bool matchCase,
              long orientation) override {
        if (orientation != host::xlTopToBottom) Refuse("Sort method of Range class failed: only rows can be sorted here.");
        if (!key1) Refuse("Sort method of Range class failed");
        long key = key1->Column();
        if (key < c1_ || key > c2_) Refuse("The sort reference is not valid. Make sure that it's within the data you want to sort, and the first Sort By box isn't the same or blank.");
        long first = r1_;
        bool hasHeader = header == host::xlYes;
        if (header == host::xlGuess) {
            // A text heading over a number below it is taken for a header, as the application guesses.
            auto top = sheet_->CellValue(r1_, key), next = sheet_->CellValue(r1_ + 1, key);
            hasHeader = top.IsString() && !next.IsString() && !next.IsEmpty();
        }
        if (hasHeader) ++first;
        long last = r2_;
        if (unit_ != kCells || r2_ == kMaxRows) {
            long ur1, uc1, ur2, uc2;
            last = sheet_->Used(ur1, uc1, ur2, uc2) ? std::min(r2_, ur2) : first;
        }
        if (first >= last) return;
        sheet_->SortRows(first, c1_, last, std::min(c2_, kMaxCols), key, order1 == host::xlDescending, matchCase);
    }

    double Left() override { return sheet_->ColumnLeft(c1_); }
    double Top() override { return sheet_->RowTop(r1_); }
    double Width() override {
        double w = 0;
        for (long c = c1_; c <= c2_; ++c) w += sheet_->ColumnWidthPoints(c);
        return w;
    }
    double Height() override {
        double h = 0;
        for (long r = r1_; r <= r2_; ++r) h += sheet_->RowHeightPoints(r);
        return h;
    }
    host::Variant ColumnWidth() override {
        double w = sheet_->ColumnWidthChars(c1_);
        for (long c = c1_ + 1; c <= c2_; ++c)
            if (sheet_->ColumnWidthChars(c) != w) return host::Variant::Null();
        return w - 0.7109375;
    }
    void SetColumnWidth(const host::Variant& v) override { sheet_->SetColumnWidthChars(c1_, c2_, host::CDbl(v)); }
    host::Variant RowHeight() override {
        double h = sheet_->RowHeightPoints(r1_);
        for (long r = r1_ + 1; r <= r2_; ++r)
            if (sheet_->RowHeightPoints(r) != h) return host::Variant::Null();
        return h;
    }
    void SetRowHeight(const host::Variant& v) override { sheet_->SetRowHeightPoints(r1_, r2_, host::CDbl(v)); }

private:
    template <class F>
    void EachCell(F f) {
        if (static_cast<double>(r2_ - r1_ + 1) * static_cast<double>(c2_ - c1_ + 1) > 1e7)
            Refuse("The range is too large for this operation.");
        for (long r = r1_; r <= r2_; ++r)
            for (long c = c1_; c <= c2_; ++c) f(r, c);
    }
    // Clearing visits only the cells that exist, so that whole columns clear quickly.
    template <class F>
    void EachExisting(F f) {
        long ur1, uc1, ur2, uc2;
        if (!sheet_->Used(ur1, uc1, ur2, uc2)) return;
        for (long r = std::max(r1_, ur1); r <= std::min(r2_, ur2); ++r)
            for (long c = std::max(c1_, uc1); c <= std::min(c2_, uc2); ++c) f(r, c);
    }
    // Only entire rows move; the shift argument says nothing more for them.
    bool WholeRows() const { return c1_ == 1 && c2_ == kMaxCols; }

    std::shared_ptr<SheetImpl> sheet_;
    long r1_, c1_, r2_, c2_;
    int unit_;
};

}  // namespace

std::shared_ptr<host::Range> MakeRange(std::shared_ptr<SheetImpl> sheet, long r1, long c1, long r2, long c2, int unit) {
    if (r1 > r2) std::swap(r1, r2);
    if (c1 > c2) std::swap(c1, c2);
    if (r1 < 1 || c1 < 1 || r2 > kMaxRows || c2 > kMaxCols) Refuse("Application-defined or object-defined error");
    return std::make_shared<RangeImpl>(std::move(sheet), r1, c1, r2, c2, unit);
}

namespace {
// "A1", "$A$1:B2", "3:5", "A:C" -> corners; false if not one area.
bool ParseArea(std::string_view text, long& r1, long& c1, long& r2, long& c2) {
    auto colon = text.find(':');
    std::string_view a = text.substr(0, colon), b = colon == std::string_view::npos ? a : text.substr(colon + 1);
    auto strip = [](std::string_view s) {
        std::string out;
        for (char ch : s)
            if (ch != '$') out += ch;
        return out;
    };
    std::string sa = strip(a), sb = strip(b);
    auto ca = ParseCellRef(sa), cb = ParseCellRef(sb);
    if (ca && cb) {
        r1 = ca->row, c1 = ca->col, r2 = cb->row, c2 = cb->col;
        return true;
    }
    if (colon == std::string_view::npos) return false;
    auto allDigits = [](const std::string& s) {
        return !s.empty() && s.size() < 10 && s.find_first_not_of("0123456789") == std::string::npos;
    };
    if (allDigits(sa) && allDigits(sb)) {
        r1 = std::stol(sa), r2 = std::stol(sb), c1 = 1, c2 = kMaxCols;
        return r1 >= 1 && r2 >= 1 && r1 <= kMaxRows && r2 <= kMaxRows;
    }
    long ka = ColumnNumber(sa), kb = ColumnNumber(sb);
    if (ka && kb) {
        c1 = ka, c2 = kb, r1 = 1, r2 = kMaxRows;
        return true;
    }
    return false;
}
}  // namespace

bool ParseAreaRef(std::string_view text, std::string& sheet, long& r1, long& c1, long& r2, long& c2) {
    if (!text.empty() && text[0] == '=') text.remove_prefix(1);
    sheet.clear();
    auto bang = text.rfind('!');
    if (bang != std::string_view::npos) {
        std::string_view s = text.substr(0, bang);
        if (s.size() >= 2 && s.front() == '\'' && s.back() == '\'') {
            std::string unq;
            for (size_t i = 1; i + 1 < s.size(); ++i) {
                unq += s[i];
                if (s[i] == '\'' && s[i + 1] == '\'') ++i;
            }
            sheet = unq;
        } else {
            sheet = std::string(s);
        }
        text = text.substr(bang + 1);
    }
    return ParseArea(text, r1, c1, r2, c2);
}

host::Ref<host::Range> SheetImpl::Cells(long row, long column) {
    return MakeRange(shared_from_this(), row, column, row, column);
}
host::Ref<host::Range> SheetImpl::Cells() { return MakeRange(shared_from_this(), 1, 1, kMaxRows, kMaxCols); }

host::Ref<host::Range> SheetImpl::Range(const std::string& address) {
    long r1, c1, r2, c2;
    std::string sheet;
    if (!ParseAreaRef(address, sheet, r1, c1, r2, c2) || (!sheet.empty() && !host::EqualsNoCase(sheet, Name())))
        Refuse("Method 'Range' of object '_Worksheet' failed");
    return MakeRange(shared_from_this(), r1, c1, r2, c2);
}

host::Ref<host::Range> SheetImpl::Range(host::Ref<host::Range> cell1, host::Ref<host::Range> cell2) {
    if (!cell1 || !cell2) host::Raise(host::err::ObjectRequired);
    long r2 = cell2->Row() + cell2->Rows()->Count() - 1, c2 = cell2->Column() + cell2->Columns()->Count() - 1;
    return MakeRange(shared_from_this(), std::min(cell1->Row(), cell2->Row()), std::min(cell1->Column(), cell2->Column()),
                     std::max(r2, cell1->Row()), std::max(c2, cell1->Column()));
}

host::Ref<host::Range> SheetImpl::Rows(long row) { return MakeRange(shared_from_this(), row, 1, row, kMaxCols, kRows); }
host::Ref<host::Range> SheetImpl::Columns(long column) {
    return MakeRange(shared_from_this(), 1, column, kMaxRows, column, kColumns);
}

host::Ref<host::Range> SheetImpl::UsedRange() {
    long r1, c1, r2, c2;
    if (!Used(r1, c1, r2, c2)) return MakeRange(shared_from_this(), 1, 1, 1, 1);
    return MakeRange(shared_from_this(), r1, c1, r2, c2);
}


}  // namespace xlsx
