// Workbooks that other programs saved in between: a script with openpyxl, a user in LibreOffice.
// Both drop the link from a chart's shape to its definition (and openpyxl the comment boxes), and
// LibreOffice keeps the metadata sheets only hidden; nothing of a chart may be lost for that.
#include <gtest/gtest.h>

#include "cli.h"
#include "host/chart.h"
#include "host/constants.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "xlsx/engine.h"

using namespace clitest;

namespace {

struct Chart {
    std::string id, sheet;
    bool crosshatched = false;
};
// The charts of the book below: one of each type, and one whose table lost a column.
const std::vector<Chart> kCharts = {
    {"VEX_Chart1", "Column chart"}, {"VEX_Chart2", "Bar chart"}, {"VEX_Chart3", "Area chart"},
    {"VEX_Chart4", "Pie chart"},    {"VEX_Chart5", "Bubble"},    {"VEX_Chart6", "Bucket"},
    {"VEX_Chart7", "Empty", true}};

// What every refresh says while Data2's column is renamed, and nothing else.
const std::string kChart7Unavailable =
    "Brindle Plotsmith: Chart 'Chart7' has become unavailable because column 'Share' / in table 'Data2' is missing or "
    "contains invalid data.\n";

void Ok(const std::string& command) {
    auto r = ts::Run(Plotsmith(command));
    ASSERT_EQ(r.status, 0) << command << "\n" << r.output;
}

// Renames the heading of Data2's number column with the engine, as a host that changes a table.
void SetData2Heading(const ts::fs::path& book, const std::string& heading) {
    auto app = xlsx::NewApplication();
    auto wb = app->Open(book.string());
    wb->Worksheets()->Item("Data2")->Cells(1, 2)->SetValue(heading);
    wb->Save();
}

// Made once per run, copied for each test: the example with a bucket table that fits Sales, a
// data sheet Data2, charts of all six types (the bubble chart with a comment box), and a column
// chart over Data2 left crosshatched without series because its column was renamed.
ts::fs::path AllTypesBook() {
    static ts::fs::path made = [] {
        auto book = SalesBook("all-types");
        auto py = ts::Python("import openpyxl\n"
                             "wb = openpyxl.load_workbook('" + book.string() + "')\n"
                             "wb['Targets']['B3'] = 'Revenue'\n"
                             "wb.copy_worksheet(wb['Data1']).title = 'Data2'\n"
                             "wb.save('" + book.string() + "')\n");
        EXPECT_EQ(py.status, 0) << py.output;
        std::string b = Q(book) + " ";
        Ok("add " + b + Q(Example("column-revenue-by-region.xml")) + " --sheet 'Column chart' --new-sheet");
        Ok("add " + b + Q(Example("bar-units-by-product.xml")) + " --sheet 'Bar chart' --new-sheet");
        Ok("add " + b + Q(Example("area-revenue-by-quarter.xml")) + " --sheet 'Area chart' --new-sheet");
        Ok("add " + b + Q(Example("pie-share-by-segment.xml")) + " --sheet 'Pie chart' --new-sheet");
        Ok("define " + b + "--table 'Quarterly sales' --type bubble --categories Region --values Revenue "
                           "--x-values Units --sizes Units --quadrants --new-sheet Bubble --comment 'Bubbles per region'");
        Ok("define " + b + "--table 'Quarterly sales' --type strategic-bucket --bucket-table 'Sales targets' "
                           "--categories Product --colors Region --show-names --new-sheet Bucket");
        Ok("define " + b + "--table Data2 --type column --categories Segment --values Share --new-sheet Empty");
        SetData2Heading(book, "Portion");
        Ok("refresh " + b);
        return book;
    }();
    auto copy = ts::ScratchDir("all-types-copy") / "book.xlsx";
    ts::fs::copy_file(made, copy, ts::fs::copy_options::overwrite_existing);
    return copy;
}

// The shape of a sheet that links to a chart id, of the kind wanted (chart or comment box).
std::vector<host::Ref<host::Shape>> Linked(const host::Ref<host::Worksheet>& sheet, const std::string& id, bool chart) {
    std::vector<host::Ref<host::Shape>> out;
    auto shapes = sheet->Shapes();
    for (long i = 1; i <= shapes->Count(); ++i) {
        auto s = shapes->Item(i);
        if (s->AlternativeText() == id && (s->Type() == host::msoChart) == chart) out.push_back(s);
    }
    return out;
}

// After a refresh of a book another program saved: every definition is there, every chart linked
// and drawn from its block again, the comment box is there once, the metadata sheets very hidden.
void ExpectEveryChartKept(const ts::fs::path& book) {
    auto exported = ts::Run(Plotsmith("export " + Q(book)));
    ASSERT_EQ(exported.status, 0) << exported.output;
    for (auto& ch : kCharts) EXPECT_TRUE(Has(exported.output, "id=\"" + ch.id + "\"")) << ch.id;

    auto app = xlsx::NewApplication();
    auto wb = app->Open(book.string());
    EXPECT_EQ(wb->Worksheets()->Item("VEX_ChartDefinitions")->Visible(), host::xlSheetVeryHidden);
    EXPECT_EQ(wb->Worksheets()->Item("VEX_ChartData")->Visible(), host::xlSheetVeryHidden);
    for (auto& ch : kCharts) {
        auto sheet = wb->Worksheets()->Item(ch.sheet);
        auto shapes = Linked(sheet, ch.id, true);
        ASSERT_EQ(shapes.size(), 1u) << ch.id;
        auto series = sheet->ChartObjects(host::Variant(shapes[0]->Name()))->Chart()->SeriesCollection();
        if (ch.crosshatched) {
            EXPECT_EQ(series->Count(), 0) << ch.id;
            continue;
        }
        ASSERT_GT(series->Count(), 0) << ch.id;
        EXPECT_TRUE(Has(series->Item(1L)->Formula(), "VEX_ChartData!")) << ch.id << ": " << series->Item(1L)->Formula();
        // Bubble and bucket charts draw their legend of shapes inside the chart.
        if (ch.sheet == "Bubble" || ch.sheet == "Bucket") {
            auto inside = sheet->ChartObjects(host::Variant(shapes[0]->Name()))->Chart()->Shapes();
            EXPECT_EQ(inside->Count() > 0 ? inside->Item(1L)->Name() : "", "VEX_Legend") << ch.id;
        }
    }
    auto boxes = Linked(wb->Worksheets()->Item("Bubble"), "VEX_Chart5", false);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]->TextFrame()->Characters()->Text(), "Bubbles per region");
}

// The crosshatched chart recovers once its table fits again: its definition and shape survived.
void ExpectCrosshatchedChartRecovers(const ts::fs::path& book) {
    SetData2Heading(book, "Share");
    Ok("refresh " + Q(book));
    auto app = xlsx::NewApplication();
    auto wb = app->Open(book.string());
    auto sheet = wb->Worksheets()->Item("Empty");
    auto shapes = Linked(sheet, "VEX_Chart7", true);
    ASSERT_EQ(shapes.size(), 1u);
    EXPECT_GT(sheet->ChartObjects(host::Variant(shapes[0]->Name()))->Chart()->SeriesCollection()->Count(), 0);
}

TEST(OtherPrograms, OpenpyxlSaveKeepsEveryChart) {
    ASSERT_TRUE(ts::HaveOpenpyxl()) << "python3-openpyxl is needed (scripts/install-deps)";
    auto book = AllTypesBook();
    auto py = ts::Python("import openpyxl\n"
                         "wb = openpyxl.load_workbook('" + book.string() + "')\n"
                         "wb['Sales']['E4'] = 9999\n"
                         "wb.save('" + book.string() + "')\n");
    ASSERT_EQ(py.status, 0) << py.output;

    auto r = ts::Run(Plotsmith("refresh " + Q(book)));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.output, kChart7Unavailable);
    ExpectEveryChartKept(book);
    // A second refresh finds everything by its restored links: nothing doubles.
    Ok("refresh " + Q(book));
    ExpectEveryChartKept(book);
    ExpectCrosshatchedChartRecovers(book);
}

TEST(OtherPrograms, LibreOfficeSaveWithHandEditsKeepsEveryChart) {
    ASSERT_TRUE(ts::HaveLibreOffice()) << "LibreOffice is needed (scripts/install-deps)";
    auto book = AllTypesBook();
    auto edited = book.parent_path() / "edited.xlsx";
    // A user opens the book in LibreOffice, retitles the column chart, removes its legend, saves.
    auto lo = ts::Run("/usr/bin/python3 " + Q(ts::fs::path(PLOTSMITH_SOURCE_DIR) / "tests/apps/scripts/libreoffice_edit.py") +
                      " " + Q(book) + " " + Q(edited) + " 'Column chart' 'Edited in LibreOffice' " +
                      Q(book.parent_path() / "lo-profile"));
    ASSERT_EQ(lo.status, 0) << lo.output;
    ASSERT_TRUE(ts::fs::exists(edited));

    auto r = ts::Run(Plotsmith("refresh " + Q(edited)));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.output, kChart7Unavailable);
    ExpectEveryChartKept(edited);

    auto column = ts::Run(Plotsmith("export " + Q(edited) + " VEX_Chart1"));
    EXPECT_TRUE(Has(column.output, "title=\"Edited in LibreOffice\"")) << column.output;
    EXPECT_TRUE(Has(column.output, "<persist property=\"legend-visibility\" value=\"hide\"/>")) << column.output;
    auto app = xlsx::NewApplication();
    auto wb = app->Open(edited.string());
    auto sheet = wb->Worksheets()->Item("Column chart");
    auto chart = sheet->ChartObjects(host::Variant(Linked(sheet, "VEX_Chart1", true).at(0)->Name()))->Chart();
    EXPECT_TRUE(chart->HasTitle());
    EXPECT_EQ(chart->ChartTitle()->Text(), "Edited in LibreOffice");
    EXPECT_FALSE(chart->HasLegend());
    app->Close(wb);

    ExpectCrosshatchedChartRecovers(edited);
}

}  // namespace
