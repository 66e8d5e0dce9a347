#pragma once
// Internal classes of the engine's workbook side. Not for use outside src/xlsx.
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

#include "host/workbook.h"
#include "xlsx/engine.h"
#include "xlsx/numfmt.h"
#include "xlsx/package.h"
#include "xlsx/references.h"

namespace xlsx {

class Book;
class SheetImpl;
class AppImpl;
class Drawing;
class Theme;
class Formulas;

inline constexpr long kMaxRows = 1048576;
inline constexpr long kMaxCols = 16384;
inline constexpr long kMaxCellText = 32767;

[[noreturn]] void Refuse(const std::string& description);  // host::Error 1004
// host::Error 1004 "<member> is not available in this engine yet.", for members still to build.
[[noreturn]] void NotAvailable(const char* member);

// ---------------------------------------------------------------- shared strings

// Cell texts in the file escape characters XML can't carry as "_xHHHH_" (CR is "_x000D_").
std::string EncodeCellText(std::string_view text);
std::string DecodeCellText(std::string_view text);

class SharedStrings {
public:
    SharedStrings(Package& pkg, std::string part);
    const std::string& Text(size_t index);  // plain text of an item, rich runs joined
    size_t Add(const std::string& text);    // index of an equal plain item, or a new one
    void Flush();                           // writes the counts of an edited table
    size_t Count();                         // items in the table

private:
    void Load();
    Package& pkg_;
    std::string part_;
    bool loaded_ = false;
    bool added_ = false;
    std::vector<std::string> texts_;
    std::unordered_map<std::string, size_t> plain_;  // plain items only: rich ones are never reused
};

// ---------------------------------------------------------------- styles

class Styles {
public:
    Styles(Package& pkg, std::string part);
    std::string FormatCode(long xf);            // the number format of a cell style
    // The parsed number format of a cell style; nullptr for a code that doesn't parse.
    const NumberFormat* Format(long xf);
    long WithFormat(long xf, const std::string& code);  // a cell style like xf with another format
    long Palette(long index);                   // Colors(1..56)
    void SetPalette(long index, long rgb);
    void ResetPalette();
    std::string DefaultFontName();
    double DefaultFontSize();
    size_t Count();  // cell styles (cellXfs), at least the one every workbook has

private:
    pugi::xml_node Root(bool edit);
    void LoadFormats();
    Package& pkg_;
    std::string part_;
    bool loaded_ = false;
    std::map<long, std::string> custom_;  // numFmtId -> code
    std::vector<long> xfFormat_;          // cellXfs index -> numFmtId
    // Every cell read asks its style's format whether it shows dates, and every text read formats
    // with it: parsing the code each time dominated reading a table. An id's code never changes
    // once known (new codes get new ids), so the parse is kept per numFmtId.
    std::unordered_map<long, std::unique_ptr<NumberFormat>> parsed_;
};

// ---------------------------------------------------------------- cells

// A worksheet's cells, indexed over the sheet's XML DOM, which stays the one truth: edits go
// into the DOM so that attributes and elements the engine doesn't know survive.
struct RowEntry {
    pugi::xml_node node;
    std::vector<std::pair<long, pugi::xml_node>> cells;  // by column, ascending
};

class SheetImpl : public host::Worksheet, public std::enable_shared_from_this<SheetImpl> {
public:
    SheetImpl(Book& book, std::string part, bool chartsheet);

    // host::Sheet
    std::string Name() override;
    void SetName(const std::string& name) override;
    long Visible() override;
    void SetVisible(long v) override;
    long Index() override;
    long Type() override;
    void Activate() override;
    void Delete() override;
    host::Ref<host::Workbook> Parent() override;

    // host::Worksheet
    host::Ref<host::Range> Cells(long row, long column) override;
    host::Ref<host::Range> Cells() override;
    host::Ref<host::Range> Range(const std::string& address) override;
    host::Ref<host::Range> Range(host::Ref<host::Range> cell1, host::Ref<host::Range> cell2) override;
    host::Ref<host::Range> Rows(long row) override;
    host::Ref<host::Range> Columns(long column) override;
    host::Ref<host::Range> UsedRange() override;
    host::Ref<host::Shapes> Shapes() override;
    host::Ref<host::ChartObjects> ChartObjects() override;
    host::Ref<host::ChartObject> ChartObjects(const host::Variant& indexOrName) override;
    double StandardWidth() override;
    double StandardHeight() override;

    // Engine side
    const std::string& Part() const { return part_; }
    bool IsChartsheet() const { return chartsheet_; }
    host::Variant CellValue(long row, long col);
    std::string CellFormula(long row, long col);  // without '=', "" if none
    std::string CellText(long row, long col);
    std::string CellFormat(long row, long col);
    long CellStyle(long row, long col);  // the cellXfs index a cell shows with
    void SetCellValue(long row, long col, const host::Variant& v);
    void SetCellFormula(long row, long col, const std::string& formula);
    void SetCellFormat(long row, long col, const std::string& code);
    void ClearCell(long row, long col, bool formats);
    // Moves rows as an insert (count > 0 before row at) or delete (count < 0 from row at).
    void ShiftRows(long at, long count);
    // Rewrites references after a row change anywhere in the workbook.
    void FollowRowShift(const RowShift& shift);
    // Applies fn to every formula text of the sheet.
    void RewriteFormulas(const std::function<std::string(const std::string&)>& fn);
    // False only when the sheet certainly has no formula that names the given sheet.
    bool MayReference(const std::string& sheet);
    void ExpandSharedFormulas();
    void SortRows(long r1, long c1, long r2, long c2, long keyCol, bool descending, bool matchCase);
    bool Used(long& r1, long& c1, long& r2, long& c2);
    // Parses the part and its drawing; ranges beyond a sheet's limits and a damaged drawing raise
    // PackageError. Rows and cells are checked when the index is built, before any is read.
    void Verify();
    // Column widths and row heights in points, for positions.
    double ColumnWidthPoints(long col);
    double RowHeightPoints(long row);
    // Points from the sheet's left (top) edge to the left (top) edge of a column (row).
    double ColumnLeft(long col);
    double RowTop(long row);
    void SetColumnWidthChars(long c1, long c2, double chars);
    void SetRowHeightPoints(long r1, long r2, double points);
    double ColumnWidthChars(long col);
    // Before a save: tabSelected of the sheet view (written only when it changed) and, for an
    // edited sheet, the dimension.
    void PrepareSave(bool selected);
    // A switch of the sheet's view (showGridLines, showRowColHeaders), on unless the file says off.
    bool ViewFlag(const char* attribute);
    void SetViewFlag(const char* attribute, bool on);
    Book& book() { return book_; }
    Drawing& drawing();  // the sheet's shapes, made on first use
    // What formulas.cpp computes over: the sheet's formulas with their cached values (Empty for
    // none), the values stored in an area, and a computed value written back as a formula's
    // cached value (false when the cell held it already).
    bool HasFormulas() const { return hasFormulas_; }
    void EachFormula(const std::function<void(long row, long col, const std::string& formula, bool array,
                                              const host::Variant& cached)>& fn);
    void EachValue(long r1, long c1, long r2, long c2,
                   const std::function<void(long row, long col, const host::Variant& value, bool formula)>& fn);
    bool SetCachedValue(long row, long col, const host::Variant& value);

private:
    pugi::xml_node Root(bool edit);
    void BuildIndex();
    pugi::xml_node FindCell(long row, long col);
    // Readers walk a table row by row: the row last found, or the one after it, is tried before
    // the map. Only ShiftRows erases rows, and it forgets the cached one.
    std::map<long, RowEntry>::iterator FindRow(long row);
    pugi::xml_node MakeCell(long row, long col);
    RowEntry& MakeRow(long row);
    void FormatAsAbove(long at, long count);
    pugi::xml_node SheetData();
    void LoadCols();

    Book& book_;
    std::string part_;
    bool chartsheet_;
    bool indexed_ = false;
    std::map<long, RowEntry> rows_;
    std::map<long, RowEntry>::iterator lastRow_ = rows_.end();
    bool colsLoaded_ = false;
    struct ColSpec { long min, max; double width; bool custom; };
    std::vector<ColSpec> cols_;
    double defaultColWidth_ = -1, defaultRowHeight_ = 15;
    std::shared_ptr<Drawing> drawing_;
    bool hasFormulas_ = false;
};

// ---------------------------------------------------------------- workbook

struct SheetEntry {
    pugi::xml_node node;  // <sheet> in workbook.xml
    std::shared_ptr<SheetImpl> sheet;
};

class Book : public host::Workbook, public std::enable_shared_from_this<Book> {
public:
    Book(AppImpl& app, std::unique_ptr<Package> pkg, std::string path);

    host::Ref<host::Application> Application() override;
    std::string Name() override;
    std::string FullName() override;
    host::Ref<host::Sheets> Sheets() override;
    host::Ref<host::Worksheets> Worksheets() override;
    host::Ref<host::Sheet> ActiveSheet() override;
    host::Ref<host::Names> Names() override;
    bool ProtectStructure() override;
    void Protect(const std::string& password, bool structure, bool windows) override;
    void Unprotect(const std::string& password) override;
    bool MultiUserEditing() override;
    long Colors(long index) override;
    void SetColors(long index, long rgb) override;
    void ResetColors() override;
    void Save() override;
    void SaveAs(const std::string& path) override;
    // Whether a save would change what the file holds (see EngineApplication::Changed).
    bool DiffersFromFile();
    void PrepareSave();  // what a save writes besides the edits: view state, string counts

    // Engine side
    Package& pkg() { return *pkg_; }
    AppImpl& app() { return app_; }
    SharedStrings& strings();
    Styles& styles();
    Theme& theme();  // read on first use (drawingml.cpp)
    Formulas& formulas();  // formulas.cpp
    // The same counts as strings().Count() and styles().Count(), without making either part.
    size_t SharedStringCount();
    size_t CellStyleCount();
    const std::string& WorkbookPart() const { return wbPart_; }
    std::vector<SheetEntry>& SheetList() { return sheets_; }
    std::shared_ptr<SheetImpl> SheetAt(long index);  // 1-based, any kind
    std::shared_ptr<SheetImpl> SheetNamed(const std::string& name);  // nullptr when absent
    long IndexOf(const SheetImpl* sheet);
    std::string SheetName(const SheetImpl* sheet);
    void RenameSheet(SheetImpl* sheet, const std::string& name);
    long SheetState(const SheetImpl* sheet);
    void SetSheetState(SheetImpl* sheet, long state);
    void ActivateSheet(SheetImpl* sheet);
    void DeleteSheet(SheetImpl* sheet);
    std::shared_ptr<SheetImpl> AddSheet(long position);  // 0-based position in the tab order
    void ApplyRowShift(const RowShift& shift);
    // Applies fn to every formula and defined name that may refer to the sheet.
    void RewriteReferencesTo(const std::string& sheet, const std::function<std::string(const std::string&)>& fn);
    void RewriteNames(const std::function<std::string(const std::string&)>& fn);
    void SetProtectStructure(bool on);
    void SetMultiUserEditing(bool on);
    pugi::xml_node WorkbookRoot(bool edit);
    void MarkCalcOnLoad();
    // The file is damaged: PackageError naming the file and the part, saying what is wrong with it.
    [[noreturn]] void Damaged(std::string_view part, const std::string& what) const;
    // Parses a part now and checks its root element: the name given, if any, and in any case not
    // one whose namespace prefixes the engine can't read by.
    const pugi::xml_document& ExpectRoot(const std::string& part, const char* name);

private:
    void LoadSheets();
    void Verify();
    std::string RelatedPart(const char* type, bool required);
    void CheckSheetName(const std::string& name, const SheetImpl* except);

    AppImpl& app_;
    std::unique_ptr<Package> pkg_;
    std::string path_;
    std::string wbPart_;
    std::vector<SheetEntry> sheets_;
    long activeTab_ = 0;
    std::unique_ptr<SharedStrings> strings_;
    std::unique_ptr<Styles> styles_;
    std::shared_ptr<Theme> theme_;
    std::shared_ptr<Formulas> formulas_;
    bool shared_ = false;
};

// ---------------------------------------------------------------- application

class AppImpl : public EngineApplication, public std::enable_shared_from_this<AppImpl> {
public:
    explicit AppImpl(EngineOptions options) : options_(std::move(options)) {}

    host::Ref<host::Workbook> ActiveWorkbook() override;
    host::Ref<host::Chart> ActiveChart() override;
    host::Ref<host::Window> ActiveWindow() override;
    std::string Version() override { return options_.version; }
    const EngineOptions& Options() const { return options_; }
    bool Interactive() override { return interactive_; }
    void SetInteractive(bool v) override;
    bool ScreenUpdating() override { return screenUpdating_; }
    void SetScreenUpdating(bool v) override { screenUpdating_ = v; }
    bool DisplayAlerts() override { return displayAlerts_; }
    void SetDisplayAlerts(bool v) override { displayAlerts_ = v; }
    long Calculation() override { return calculation_; }
    void SetCalculation(long v) override;
    std::string StandardFont() override;
    double StandardFontSize() override;
    long Cursor() override { return cursor_; }
    void SetCursor(long v) override { cursor_ = v; }
    host::Variant Run(const std::string& macro, const std::vector<host::Variant>& args) override;

    host::Ref<host::Workbook> Open(const std::string& path) override;
    host::Ref<host::Workbook> NewWorkbook() override;
    void Close(host::Ref<host::Workbook> workbook) override;
    bool Changed(host::Ref<host::Workbook> workbook) override;
    void SetMacro(const std::string& name, MacroHandler handler) override;
    void SetMultiUserEditing(host::Ref<host::Workbook> workbook, bool shared) override;
    void SetCellEditMode(bool editing) override { editing_ = editing; }

    host::Ref<AppImpl> self() { return shared_from_this(); }

private:
    EngineOptions options_;
    std::shared_ptr<Book> active_;
    bool interactive_ = true, screenUpdating_ = true, displayAlerts_ = true, editing_ = false;
    long calculation_ = -4105;
    long cursor_ = -4143;
    std::map<std::string, MacroHandler> macros_;  // keys upper-cased
    std::shared_ptr<host::Window> window_;
};

// A Range over one sheet; rows and columns may be entire (Rows(n), EntireRow).
std::shared_ptr<host::Range> MakeRange(std::shared_ptr<SheetImpl> sheet, long r1, long c1, long r2, long c2,
                                       int unit = 0 /* 0 cells, 1 rows, 2 columns */);

// "Sheet1!$A$1:$C$3", "'My Sheet'!A1" -> sheet name and corners; false when not a single area.
bool ParseAreaRef(std::string_view text, std::string& sheet, long& r1, long& c1, long& r2, long& c2);

}  // namespace xlsx
