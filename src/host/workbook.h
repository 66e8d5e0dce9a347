#pragma once
// The spreadsheet application's object model for the workbook side: the application, workbooks,
// sheets, ranges, defined names and windows. Getters carry the member's name, setters "Set" and
// the name. Members raise host::Error as the application raises its automation errors.
#include <string>
#include <vector>

#include "host/format.h"
#include "host/fwd.h"
#include "host/variant.h"

namespace host {

class Application {
public:
    virtual ~Application() = default;
    virtual Ref<host::Workbook> ActiveWorkbook() = 0;
    virtual Ref<host::Chart> ActiveChart() = 0;  // Nothing unless a chart is selected
    virtual Ref<host::Window> ActiveWindow() = 0;
    virtual std::string Version() = 0;     // "16.0"
    virtual bool Interactive() = 0;
    virtual void SetInteractive(bool v) = 0;
    virtual bool ScreenUpdating() = 0;
    virtual void SetScreenUpdating(bool v) = 0;
    virtual bool DisplayAlerts() = 0;
    virtual void SetDisplayAlerts(bool v) = 0;
    virtual long Calculation() = 0;        // xlCalculationAutomatic, xlCalculationManual ...
    virtual void SetCalculation(long v) = 0;
    virtual std::string StandardFont() = 0;
    virtual double StandardFontSize() = 0;
    virtual long Cursor() = 0;             // the mouse pointer: xlDefault, xlWait ...
    virtual void SetCursor(long v) = 0;
    // Runs a macro by name with up to 30 arguments; a macro that isn't there raises 1004.
    virtual Variant Run(const std::string& macro, const std::vector<Variant>& args = {}) = 0;
};

class Workbook {
public:
    virtual ~Workbook() = default;
    virtual Ref<host::Application> Application() = 0;
    virtual std::string Name() = 0;
    virtual std::string FullName() = 0;
    virtual Ref<host::Sheets> Sheets() = 0;          // worksheets and chart sheets, in tab order
    virtual Ref<host::Worksheets> Worksheets() = 0;  // worksheets only
    virtual Ref<host::Sheet> ActiveSheet() = 0;
    virtual Ref<host::Names> Names() = 0;
    virtual bool ProtectStructure() = 0;
    virtual void Protect(const std::string& password = {}, bool structure = true, bool windows = false) = 0;
    virtual void Unprotect(const std::string& password = {}) = 0;
    virtual bool MultiUserEditing() = 0;
    virtual long Colors(long index) = 0;  // the palette, 1..56, RGB as a long
    virtual void SetColors(long index, long rgb) = 0;
    virtual void ResetColors() = 0;
    virtual void Save() = 0;
    virtual void SaveAs(const std::string& path) = 0;
};

// A worksheet or a chart sheet.
class Sheet {
public:
    virtual ~Sheet() = default;
    virtual std::string Name() = 0;
    virtual void SetName(const std::string& name) = 0;  // the application's name rules raise 1004
    virtual long Visible() = 0;                          // xlSheetVisible, xlSheetHidden, xlSheetVeryHidden
    virtual void SetVisible(long v) = 0;
    virtual long Index() = 0;                            // position in Sheets, 1-based
    virtual long Type() = 0;                             // xlWorksheet or xlChart
    virtual void Activate() = 0;
    virtual void Delete() = 0;  // asks nothing when DisplayAlerts is off; the last visible sheet can't go
    virtual Ref<host::Workbook> Parent() = 0;
};

class Sheets {
public:
    virtual ~Sheets() = default;
    virtual long Count() = 0;
    virtual Ref<host::Sheet> Item(long index) = 0;                // 1-based; raises 9 out of range
    virtual Ref<host::Sheet> Item(const std::string& name) = 0;   // raises 9 when absent
    // A new worksheet before or after a sheet; with neither, before the active sheet.
    virtual Ref<host::Worksheet> Add(Ref<host::Sheet> before = nullptr, Ref<host::Sheet> after = nullptr) = 0;
};

class Worksheets {
public:
    virtual ~Worksheets() = default;
    virtual long Count() = 0;
    virtual Ref<host::Worksheet> Item(long index) = 0;
    virtual Ref<host::Worksheet> Item(const std::string& name) = 0;
    virtual Ref<host::Worksheet> Add(Ref<host::Sheet> before = nullptr, Ref<host::Sheet> after = nullptr) = 0;
};

class Worksheet : public Sheet {
public:
    virtual Ref<host::Range> Cells(long row, long column) = 0;
    virtual Ref<host::Range> Cells() = 0;                          // the whole sheet
    virtual Ref<host::Range> Range(const std::string& address) = 0;  // "A1", "A1:C5", "$A$1:$B$2"
    virtual Ref<host::Range> Range(Ref<host::Range> cell1, Ref<host::Range> cell2) = 0;
    virtual Ref<host::Range> Rows(long row) = 0;             // an entire row
    virtual Ref<host::Range> Columns(long column) = 0;       // an entire column
    virtual Ref<host::Range> UsedRange() = 0;
    virtual Ref<host::Shapes> Shapes() = 0;
    virtual Ref<host::ChartObjects> ChartObjects() = 0;
    virtual Ref<host::ChartObject> ChartObjects(const Variant& indexOrName) = 0;
    virtual double StandardWidth() = 0;   // default column width in characters
    virtual double StandardHeight() = 0;  // default row height in points
};

// A rectangle of cells on one worksheet (or its rows or columns, as Rows and Columns give it).
class Range {
public:
    virtual ~Range() = default;
    virtual Ref<host::Worksheet> Worksheet() = 0;
    virtual Ref<host::Range> Cells(long row, long column) = 0;  // relative to the range's top left
    virtual long Row() = 0;
    virtual long Column() = 0;
    virtual long Count() = 0;  // cells; rows for Rows(), columns for Columns()
    virtual Ref<host::Range> Rows() = 0;
    virtual Ref<host::Range> Columns() = 0;
    virtual Ref<host::Range> EntireRow() = 0;
    virtual Ref<host::Range> EntireColumn() = 0;
    virtual std::string Address(bool rowAbsolute = true, bool columnAbsolute = true) = 0;

    // Of the top-left cell; a put writes every cell of the range.
    virtual Variant Value() = 0;
    virtual void SetValue(const Variant& v) = 0;
    virtual std::string Formula() = 0;  // "=SUM(A1:A3)", or the value as text
    virtual void SetFormula(const std::string& formula) = 0;
    virtual bool HasFormula() = 0;
    virtual std::string Text() = 0;     // displayed text through the number format
    virtual Variant NumberFormat() = 0;
    virtual void SetNumberFormat(const Variant& code) = 0;  // a code the application refuses raises 1004
    virtual Ref<host::Font> Font() = 0;
    virtual Ref<host::Interior> Interior() = 0;

    virtual void Clear() = 0;          // values, formulas and formats
    virtual void ClearContents() = 0;
    virtual void Delete(const Variant& shift = {}) = 0;  // entire rows shift up
    virtual void Insert(const Variant& shift = {}) = 0;  // entire rows shift down
    virtual void Activate() = 0;
    virtual void Select() = 0;
    // Sorts the range's rows by one key column (xlAscending/xlDescending, header xlYes/xlNo/xlGuess).
    virtual void Sort(Ref<host::Range> key1, long order1 = 1, long header = 2, long orderCustom = 1,
                      bool matchCase = false, long orientation = 1) = 0;

    // Position and size in points.
    virtual double Left() = 0;
    virtual double Top() = 0;
    virtual double Width() = 0;
    virtual double Height() = 0;
    virtual Variant ColumnWidth() = 0;
    virtual void SetColumnWidth(const Variant& v) = 0;
    virtual Variant RowHeight() = 0;
    virtual void SetRowHeight(const Variant& v) = 0;
};

class Names {
public:
    virtual ~Names() = default;
    virtual long Count() = 0;
    virtual Ref<host::Name> Item(long index) = 0;
    virtual Ref<host::Name> Item(const std::string& name) = 0;
    // refersTo as typed: "=Sheet1!$A$1:$C$9", "=42"; invalid names raise 1004.
    virtual Ref<host::Name> Add(const std::string& name, const std::string& refersTo) = 0;
};

class Name {
public:
    virtual ~Name() = default;
    virtual std::string Name_() = 0;  // the member "Name", renamed: C++ forbids a member named as its class
    virtual void SetName(const std::string& v) = 0;
    virtual std::string RefersTo() = 0;  // "=Sheet1!$A$1:$C$9" as the application shows it
    virtual void SetRefersTo(const std::string& v) = 0;
    virtual Ref<host::Range> RefersToRange() = 0;  // raises 1004 when the name is a constant or formula
    virtual bool Visible() = 0;
    virtual void Delete() = 0;
};

class Window {
public:
    virtual ~Window() = default;
    virtual bool DisplayGridlines() = 0;
    virtual void SetDisplayGridlines(bool v) = 0;
    virtual bool DisplayHeadings() = 0;
    virtual void SetDisplayHeadings(bool v) = 0;
};

// Walks a collection with Count and a 1-based Item, as "For Each" does.
template <class C>
auto Each(C& collection) {
    std::vector<decltype(collection.Item(1L))> out;
    long n = collection.Count();
    out.reserve(static_cast<size_t>(n));
    for (long i = 1; i <= n; ++i) out.push_back(collection.Item(i));
    return out;
}

}  // namespace host
