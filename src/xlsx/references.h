#pragma once
// Cell references in formulas and reference texts: A1 and R1C1 notation, and the rewriting of
// references as the application does it when rows or columns are inserted or deleted, when
// sheets are renamed or deleted, and when a shared formula is read for the cells that follow it.
#include <optional>
#include <string>
#include <string_view>

namespace xlsx {

struct CellRef {
    long row = 0;  // 1-based
    long col = 0;  // 1-based
};

// "A" -> 1, "XFD" -> 16384; 0 for anything else.
long ColumnNumber(std::string_view letters);
// 1 -> "A"
std::string ColumnLetters(long col);
// "B7" or "$B$7" -> {7, 2}; nullopt if the text is not a single cell reference.
std::optional<CellRef> ParseCellRef(std::string_view a1);
// {7, 2} -> "B7"; absolute -> "$B$7".
std::string CellAddress(long row, long col, bool absolute = false);
// A sheet name as a reference writes it: "Sheet1", or "'My Sheet'" / "'A1'" / "'O''Neil'" where
// the name has characters outside a name, starts with a digit, or reads as a cell reference.
std::string QuoteSheetName(std::string_view sheet);

// A change of rows on one sheet: `count` rows inserted before row `at` (count > 0), or rows
// at .. at-count-1 deleted (count < 0).
struct RowShift {
    std::string sheet;  // the sheet whose rows move
    long at = 0;
    long count = 0;
};

// Rewrites every reference in a formula (without the leading '=') or in a defined name's
// reference text that points at rows of shift.sheet. `hostSheet` is the sheet the formula
// lives on (an unqualified reference belongs to it; "" for defined names, where unqualified
// references don't occur). References into deleted rows become #REF! as in the application;
// ranges shrink or grow. Strings, sheet names in quotes, function names and other sheets'
// references are left alone. Answers the text unchanged where nothing moved.
std::string ShiftFormulaRows(std::string_view formula, std::string_view hostSheet, const RowShift& shift);

// The same for columns: `count` columns inserted before column `at`, or deleted from it.
struct ColumnShift {
    std::string sheet;
    long at = 0;
    long count = 0;
};
std::string ShiftFormulaColumns(std::string_view formula, std::string_view hostSheet, const ColumnShift& shift);

// Sheet names in formulas are compared without regard to case (all letters, not only ASCII);
// references to other workbooks are never touched.

// Requalifies every reference to sheet `oldName` (quoted or not, either end of a 3-D span) with
// `newName`, quoted where it needs quotes. For cell formulas of every sheet, defined names and
// series formulas when a sheet is renamed.
std::string RenameSheetInFormula(std::string_view formula, std::string_view oldName, std::string_view newName);

// Every reference to `sheet` becomes #REF! followed by its cells ("SUM(#REF!A1:B2)"), a sheet's
// name or error ("Sheet1!Total") becomes #REF!, as the application writes them when the sheet is
// deleted. A 3-D span with the sheet at one end breaks too (the application narrows the span
// instead, which needs the order of the sheets).
std::string BreakSheetInFormula(std::string_view formula, std::string_view sheet);

// Moves the relative parts (rows and columns without '$') of every reference by the offsets:
// the text of a shared formula's leader read for a follower `dRows` below and `dCols` to the
// right of it. A reference moved off the sheet becomes #REF! (a range when either end goes).
std::string TranslateFormula(std::string_view formula, long dRows, long dCols);

// Converts an R1C1 reference text (as series formulas may hold it, "=Sheet1!R2C1:R5C1") to A1.
// Relative R1C1 parts (R[1]C) are taken relative to `base`. nullopt when the text isn't R1C1.
std::optional<std::string> R1C1ToA1(std::string_view text, CellRef base = {1, 1});

}  // namespace xlsx
