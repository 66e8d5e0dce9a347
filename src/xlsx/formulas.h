#pragma once
// Formulas the engine computes with ixion, lazily: when a read meets a formula without a cached
// value, or reads (or saves) after cells were written that formulas depend on. What it computes
// becomes the formula's cached value, as the application writes it after a recalculation. What it
// can't compute as the application would keeps the value the file had cached for it.
#include <string>
#include <vector>

#include "host/workbook.h"

namespace xlsx {

struct UncomputedFormula {
    std::string sheet;
    long row = 0, col = 0;
    std::string formula;  // without '='
    std::string reason;   // the same for a column of formulas filled down
};

// Computes now what edits left stale, and answers the formulas left uncomputed since the last call.
std::vector<UncomputedFormula> TakeUncomputedFormulas(const host::Ref<host::Workbook>& book);

// "Data2!C2:C4 =FOO(B2) (FOO is a function the engine doesn't compute)": the cells by column and
// reason, each run with its first formula.
std::string DescribeUncomputed(const std::vector<UncomputedFormula>& formulas);

// ---------------------------------------------------------------- engine side

class Book;
class SheetImpl;

class Formulas {
public:
    explicit Formulas(Book& book) : book_(book) {}
    // A cell's value was written or cleared, or (an area) rows moved.
    void Wrote(SheetImpl* sheet, long r1, long c1, long r2, long c2);
    void BeforeRead(bool valueless) {
        if (!current_ && (valueless || !written_.empty())) Calculate();
    }
    void BeforeSave() {
        if (!written_.empty()) Calculate();
    }
    void Calculate();
    std::vector<UncomputedFormula> TakeUncomputed();

private:
    struct Area {
        SheetImpl* sheet;
        long r1, c1, r2, c2;
    };
    Book& book_;
    // Nothing was written since the last calculation: a formula without a value stays so.
    bool current_ = false;
    std::vector<Area> written_;
    std::vector<UncomputedFormula> uncomputed_;
};

}  // namespace xlsx
