// What opening a workbook refuses: parts that are missing or hold what no valid file holds, each
// named in one line; and workbooks whose parts bind their namespaces to prefixes of their own,
// read, edited and saved as any other.
#include <gtest/gtest.h>

#include <functional>

#include "host/chart.h"
#include "host/constants.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "reprefix.h"
#include "test_support.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

namespace ts = testsupport;
using namespace host;

namespace {

// A book made by the engine: texts, a number with a format, a text box, a chart holding a text
// box of its own, and a sheet summing the numbers, so that every part checked at open is there.
const ts::fs::path& BaseBook() {
    static ts::fs::path out = [] {
        auto app = xlsx::NewApplication();
        auto wb = app->NewWorkbook();
        auto ws = wb->Worksheets()->Item(1L);
        ws->Cells(1, 1)->SetValue("Region");
        ws->Cells(1, 2)->SetValue("Revenue");
        ws->Cells(2, 1)->SetValue("North");
        ws->Cells(2, 2)->SetValue(0.125);
        ws->Cells(2, 2)->SetNumberFormat("0.0%");
        ws->Shapes()->AddTextbox(msoTextOrientationHorizontal, 100, 30, 180, 120)->SetName("Note");
        auto chart = ws->ChartObjects()->Add(10, 150, 400, 250)->Chart();
        chart->SeriesCollection()->NewSeries()->SetFormula("=SERIES(Sheet1!$B$1,Sheet1!$A$2,Sheet1!$B$2,1)");
        auto inside = chart->Shapes()->AddTextbox(msoTextOrientationHorizontal, 20, 10, 120, 24);
        inside->TextFrame()->Characters()->SetText("Inside");
        wb->Worksheets()->Add(nullptr, ws)->SetName("Sums");
        wb->Worksheets()->Item("Sums")->Cells(1, 1)->SetFormula("=SUM(Sheet1!B2:B3)");
        auto path = ts::ScratchDir("damaged-parts") / "base.xlsx";
        wb->SaveAs(path.string());
        return path;
    }();
    return out;
}

// A copy of the base book, changed through its package.
ts::fs::path Changed(const std::string& name, const std::function<void(xlsx::Package&)>& change) {
    auto path = BaseBook().parent_path() / (name + ".xlsx");
    ts::fs::copy_file(BaseBook(), path, ts::fs::copy_options::overwrite_existing);
    auto pkg = xlsx::Package::Open(path.string());
    change(*pkg);
    pkg->Save(path.string());
    return path;
}

// One part's text with its first `from` made `to`; a `from` the part doesn't have fails the test.
std::function<void(xlsx::Package&)> Replace(const std::string& part, const std::string& from, const std::string& to) {
    return [=](xlsx::Package& pkg) {
        std::string text = pkg.Bytes(part);
        auto at = text.find(from);
        ASSERT_NE(at, std::string::npos) << part << " has no " << from;
        pkg.Put(part, text.replace(at, from.size(), to));
    };
}

// The error opening the book raises, or the first read of a cell; "(read)" when neither does.
std::string OpenError(const ts::fs::path& path) {
    try {
        xlsx::NewApplication()->Open(path.string());
    } catch (const xlsx::PackageError& e) {
        return e.what();
    }
    return "(opened)";
}

constexpr const char* kCompat =
    "xmlns:x=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
    "xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\" mc:Ignorable=\"x\" ";

std::string Refusal(const ts::fs::path& path, const std::string& part, const std::string& what) {
    return "'" + path.string() + "' is not a valid workbook package: part '" + part + "' " + what;
}

// The base book rewritten with those prefixes reads as the original; edited in every part the
// engine reads, it saves well-formed, valid and as edited.
void ReadEditSave(const reprefix::Prefixes& prefixes, const std::string& name) {
    SCOPED_TRACE(name);
    auto prefixed = BaseBook().parent_path() / (name + ".xlsx");
    ts::fs::copy_file(BaseBook(), prefixed, ts::fs::copy_options::overwrite_existing);
    reprefix::Workbook(prefixed.string(), prefixes);
    ASSERT_NE(xlsx::Package::Open(prefixed.string())->Bytes("xl/worksheets/sheet1.xml").find("<x:c "), std::string::npos);

    auto app = xlsx::NewApplication();
    auto plain = app->Open(BaseBook().string());
    auto other = xlsx::NewApplication()->Open(prefixed.string());
    auto look = [](const Ref<Workbook>& wb) {
        auto ws = wb->Worksheets()->Item(1L);
        std::string out = ws->Name() + "|" + CStr(ws->Cells(2, 1)->Value()) + "|" + CStr(ws->Cells(2, 2)->Text());
        auto note = ws->Shapes()->Item("Note");
        out += "|" + std::to_string(ws->Shapes()->Count()) + "|" + NumberToText(note->Left()) + "," + NumberToText(note->Top());
        auto chart = ws->ChartObjects(1L)->Chart();
        out += "|" + chart->SeriesCollection()->Item(1L)->Formula();
        out += "|" + chart->Shapes()->Item(1L)->TextFrame()->Characters()->Text();
        return out;
    };
    EXPECT_EQ(look(other), look(plain));
    EXPECT_EQ(look(other), "Sheet1|North|12.5%|2|100,30|=SERIES(Sheet1!$B$1,Sheet1!$A$2,Sheet1!$B$2,1)|Inside");

    // Every part the engine reads gets edited: workbook, sheet, strings, styles, drawing, chart, its shapes.
    auto ws = other->Worksheets()->Item(1L);
    ws->Cells(3, 1)->SetValue("South");
    ws->Cells(3, 2)->SetValue(0.5);
    ws->Cells(3, 2)->SetNumberFormat("0.00%");
    ws->Shapes()->Item("Note")->SetLeft(140);
    auto chart = ws->ChartObjects(1L)->Chart();
    chart->SeriesCollection()->Item(1L)->SetFormula("=SERIES(Sheet1!$B$1,Sheet1!$A$2:$A$3,Sheet1!$B$2:$B$3,1)");
    chart->Shapes()->AddTextbox(msoTextOrientationHorizontal, 40, 10, 120, 24)->SetName("Second");
    other->Worksheets()->Add()->SetName("Added");
    // The summing sheet was never read: its formula is found in the part's text, prefixes and all.
    ws->Rows(1)->Insert();
    auto saved = BaseBook().parent_path() / (name + "-saved.xlsx");
    other->SaveAs(saved.string());

    auto again = xlsx::NewApplication()->Open(saved.string());
    auto ws2 = again->Worksheets()->Item("Sheet1");
    EXPECT_EQ(CStr(ws2->Cells(4, 1)->Value()), "South");
    EXPECT_EQ(ws2->Cells(4, 2)->Text(), Variant("50.00%"));
    EXPECT_EQ(ws2->Shapes()->Item("Note")->Left(), 140);
    auto chart2 = ws2->ChartObjects(1L)->Chart();
    EXPECT_EQ(chart2->SeriesCollection()->Item(1L)->Formula(), "=SERIES(Sheet1!$B$2,Sheet1!$A$3:$A$4,Sheet1!$B$3:$B$4,1)");
    EXPECT_EQ(chart2->Shapes()->Count(), 2);
    EXPECT_EQ(again->Worksheets()->Item("Sums")->Cells(1, 1)->Formula(), "=SUM(Sheet1!B3:B4)");
    EXPECT_EQ(again->Worksheets()->Count(), 3);

    EXPECT_NE(xlsx::Package::Open(saved.string())->Bytes("xl/workbook.xml").find("<workbook "), std::string::npos);
    if (ts::HaveValidator()) {
        auto v = ts::ValidateXlsx({saved});
        EXPECT_EQ(v.status, 0) << v.output;
    }
}

}  // namespace

TEST(DamagedParts, WhatNoValidFileHoldsIsNamedAtOpen) {
    const std::string sheet = "xl/worksheets/sheet1.xml", drawing = "xl/drawings/drawing1.xml";
    const std::string kCells = "outside the cells of a sheet (A1:XFD1048576)";
    struct Case {
        const char* name;
        std::function<void(xlsx::Package&)> change;
        std::string part, what;
    };
    const Case cases[] = {
        {"cell", Replace(sheet, "r=\"B2\"", "r=\"XFE2\""), sheet, "has a cell at 'XFE2', " + kCells},
        {"string", Replace(sheet, "t=\"s\"><v>0</v>", "t=\"s\"><v>7</v>"), sheet,
         "refers to shared string '7' in cell A1, but the workbook has 3"},
        {"style", Replace(sheet, "s=\"1\"", "s=\"40\""), sheet, "gives cell B2 the style '40', but the workbook has 2 cell styles"},
        {"dimension", Replace(sheet, "<dimension ref=\"A1:B2\"/>", "<dimension ref=\"A1:B1048577\"/>"), sheet,
         "has the dimension 'A1:B1048577', " + kCells},
        {"cols", Replace(sheet, "<sheetData>", "<cols><col min=\"1\" max=\"16385\" width=\"9\"/></cols><sheetData>"), sheet,
         "sizes columns up to '16385', where a sheet's columns are 1 to 16384"},
        {"anchor", Replace(drawing, "<xdr:from><xdr:col>", "<xdr:from><xdr:col>99999999"), drawing,
         "anchors a shape at column index '99999999"},
        {"inside", Replace("xl/drawings/drawing2.xml", "<cdr:x>", "<cdr:x>x"), "xl/drawings/drawing2.xml",
         "places a shape at 'x"},
        {"frame", Replace(drawing, "r:id=\"rId1\"", "r:id=\"rId9\""), drawing,
         "refers to relationship 'rId9', which 'xl/drawings/_rels/drawing1.xml.rels' doesn't have"},
        {"sheet", [](xlsx::Package& pkg) { pkg.Remove("xl/worksheets/sheet1.xml"); }, "xl/_rels/workbook.xml.rels",
         "points sheet 'Sheet1' at 'xl/worksheets/sheet1.xml', which the package doesn't have"},
        {"strings", [](xlsx::Package& pkg) { pkg.Remove("xl/sharedStrings.xml"); }, "xl/_rels/workbook.xml.rels",
         "points at 'xl/sharedStrings.xml', which the package doesn't have"},
        {"shapes", [](xlsx::Package& pkg) { pkg.Remove(std::string("xl/drawings/drawing2.xml")); },
         "xl/charts/_rels/chart1.xml.rels", "points at 'xl/drawings/drawing2.xml', which the package doesn't have"},
        // A prefix a markup compatibility list names is never renamed, so this root stays unread.
        {"prefix",
         [](xlsx::Package& pkg) {
             std::string text = pkg.Bytes("xl/styles.xml");
             for (auto [from, to] : {std::pair<std::string, std::string>{"<styleSheet ", "<x:styleSheet " + std::string(kCompat)},
                                     {"</styleSheet>", "</x:styleSheet>"}})
                 text.replace(text.find(from), from.size(), to);
             pkg.Put("xl/styles.xml", text);
         },
         "xl/styles.xml", "declares its namespaces in a way that can't be read"},
    };
    for (auto& c : cases) {
        auto path = Changed(c.name, c.change);
        std::string error = OpenError(path);
        EXPECT_EQ(error.rfind(Refusal(path, c.part, c.what), 0), 0u) << c.name << ": " << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    }
    EXPECT_EQ(OpenError(BaseBook()), "(opened)");
}

TEST(Namespaces, PartsWithPrefixesOfTheirOwnReadEditAndSaveAsAnyOther) {
    ReadEditSave(reprefix::Unusual(), "prefixed");
    ReadEditSave(reprefix::Defaults(), "drawings-by-default");
}
