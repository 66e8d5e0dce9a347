// plotsmith rename-columns and refresh-table on copies of the example workbook with charts added:
// what they refuse, how several renames combine, and what a rename leaves on the drawn charts.
#include <gtest/gtest.h>

#include <algorithm>

#include "cli.h"
#include "host/chart.h"
#include "host/drawing.h"
#include "host/format.h"
#include "host/workbook.h"
#include "xlsx/engine.h"

using namespace clitest;

namespace {

// Edits the table's headings as a user does before telling the charts.
void RenameHeadings(const ts::fs::path& book, std::vector<std::pair<std::string, std::string>> renames) {
    auto app = xlsx::NewApplication();
    auto wb = app->Open(book.string());
    auto sheet = wb->Worksheets()->Item("Sales");
    std::vector<host::Ref<host::Range>> cells;
    for (auto& r : renames)
        for (long row = 1; row <= 3; ++row)
            for (long col = 1; col <= 5; ++col)
                if (host::CStr(sheet->Cells(row, col)->Value()) == r.first) cells.push_back(sheet->Cells(row, col));
    ASSERT_EQ(cells.size(), renames.size());
    for (size_t i = 0; i < cells.size(); ++i) cells[i]->SetValue(renames[i].second);
    wb->Save();
}

host::Ref<host::Chart> ChartOf(const host::Ref<host::Workbook>& wb, long index) {
    return wb->Worksheets()->Item("Sales")->ChartObjects()->Item(index)->Chart();
}

std::string AxisTitle(const host::Ref<host::Chart>& chart, long axis) {
    auto a = chart->Axes(axis, host::xlPrimary);
    return a->HasTitle() ? a->AxisTitle()->Text() : "(none)";
}

long Lines(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

}  // namespace

TEST(Renames, WhatWouldLoseOrTurnAColumnIsRefusedAndTheFileStaysAsItWas) {
    auto book = BookWithCharts("renames-refused");
    std::string b = Q(book);
    const std::string before = Slurp(book);
    const std::string table = " VEX_TableRangeSales ";
    struct Case {
        std::string args, message;
    };
    for (const Case& k : std::vector<Case>{
             {"rename-columns " + b + table + "Region=", "a rename is OLD=NEW, not 'Region='"},
             {"rename-columns " + b + table + "=Region", "a rename is OLD=NEW, not '=Region'"},
             {"rename-columns " + b + table + "Region=Product",
              "table 'VEX_TableRangeSales' already has a column 'Product'; renaming 'Region' to it would turn charts "
              "onto that column"},
             {"rename-columns " + b + table + "Region=product", "table 'VEX_TableRangeSales' already has a column 'product'"},
             {"rename-columns " + b + table + "Region=Area region=Zone", "column 'Region' is renamed twice"},
             {"rename-columns " + b + table + "Region=Area Quarter=AREA", "'Region' and 'Quarter' would both be named 'AREA'"},
             {"rename-columns " + b + " Sales Region=Area", "'" + book.string() + "' has no table 'Sales'; its tables: "
                                                            "VEX_TableRangeSales (\"Quarterly sales\"), VEX_SBTargets "
                                                            "(\"Sales targets\"), Data1 (\"Data1\")"},
             {"refresh-table " + b + " VEX_TableRange", "'" + book.string() + "' has no table 'VEX_TableRange'"},
         }) {
        auto r = ts::Run(Plotsmith(k.args));
        EXPECT_EQ(r.status, 2) << k.args;
        EXPECT_EQ(r.output.rfind("plotsmith: " + k.message, 0), 0u) << r.output;
        EXPECT_EQ(Lines(r.output), 1) << r.output;
    }
    EXPECT_EQ(Slurp(book), before);

    // A rename before the heading is edited is taken, the old name in any case; the next one sees
    // the new name in the charts.
    auto ahead = ts::Run(Plotsmith("rename-columns " + b + table + "QUARTER=Period"));
    EXPECT_EQ(ahead.status, 0) << ahead.output;
    EXPECT_EQ(ahead.output, "");
    auto again = ts::Run(Plotsmith("rename-columns " + b + table + "Quarter=Period"));
    EXPECT_EQ(again.status, 0) << again.output;
    EXPECT_EQ(again.output, "plotsmith: no chart of table 'VEX_TableRangeSales' uses a column 'Quarter'\n");
    EXPECT_TRUE(Has(ts::Run(Plotsmith("export " + b + " VEX_Chart1")).output,
                    "<series headings-in=\"rows\"><column name=\"Period\" "));
}

TEST(Renames, HeadingsRenamedTogetherAreRenamedTogetherAndTablesAreFoundAsDefineFindsThem) {
    auto book = BookWithCharts("renames-swap");
    std::string b = Q(book);
    RenameHeadings(book, {{"Region", "Product"}, {"Product", "Region"}, {"Units", "Pieces"}});

    // A swap swaps, whatever the case of the table's id.
    auto swap = ts::Run(Plotsmith("rename-columns " + b + " vex_tablerangesales Region=Product Product=Region Units=Pieces"));
    ASSERT_EQ(swap.status, 0) << swap.output;
    EXPECT_EQ(swap.output, "");
    auto column = ts::Run(Plotsmith("export " + b + " VEX_Chart1")).output;
    EXPECT_TRUE(Has(column, "<categories headings-in=\"rows\"><column name=\"Product\" ")) << column;
    EXPECT_TRUE(Has(column, "<axis type=\"label\" label=\"Product\" sticky=\"no\"/>")) << column;
    auto bar = ts::Run(Plotsmith("export " + b + " VEX_Chart2")).output;
    for (auto* part : {"<categories headings-in=\"rows\"><column name=\"Region\" ",
                       "<series headings-in=\"rows\"><column name=\"Product\" ", "<values><column name=\"Pieces\" "})
        EXPECT_TRUE(Has(bar, part)) << part << " in " << bar;
    EXPECT_TRUE(Has(bar, "<axis type=\"label\" label=\"Region\" sticky=\"no\"/>")) << bar;
    EXPECT_FALSE(Has(bar, "~")) << "the names the renames went through are gone";

    // The table by its name, in another case; both charts are drawn from the swapped columns.
    auto refresh = ts::Run(Plotsmith("refresh-table " + b + " 'QUARTERLY sales'"));
    EXPECT_EQ(refresh.status, 0) << refresh.output;
    EXPECT_EQ(refresh.output, "");
    auto list = ts::Run(Plotsmith("list " + b)).output;
    EXPECT_FALSE(Has(list, "unavailable")) << list;
    auto wb = xlsx::NewApplication()->Open(book.string());
    EXPECT_EQ(AxisTitle(ChartOf(wb, 1), host::xlCategory), "Product");
    EXPECT_EQ(AxisTitle(ChartOf(wb, 2), host::xlCategory), "Region");
    EXPECT_EQ(AxisTitle(ChartOf(wb, 2), host::xlValue), "Pieces");
}

TEST(Renames, AnAxisTitleFollowsItsColumnAndAHandTypedOneStays) {
    auto book = BookWithCharts("renames-titles");
    std::string b = Q(book);
    {
        // The user types a title of their own on the bar chart's value axis.
        auto app = xlsx::NewApplication();
        auto wb = app->Open(book.string());
        ChartOf(wb, 2)->Axes(host::xlValue, host::xlPrimary)->AxisTitle()->SetText("Pieces sold");
        wb->Save();
    }
    RenameHeadings(book, {{"Region", "Area"}, {"Units", "Pieces"}});
    auto rename = ts::Run(Plotsmith("rename-columns " + b + " VEX_TableRangeSales Region=Area Units=Pieces"));
    ASSERT_EQ(rename.status, 0) << rename.output;
    {
        // Before any redraw the chart already says what its definition says.
        auto wb = xlsx::NewApplication()->Open(book.string());
        EXPECT_EQ(AxisTitle(ChartOf(wb, 1), host::xlCategory), "Area");
        EXPECT_EQ(AxisTitle(ChartOf(wb, 2), host::xlValue), "Pieces sold");
    }
    auto refresh = ts::Run(Plotsmith("refresh-table " + b + " VEX_TableRangeSales"));
    ASSERT_EQ(refresh.status, 0) << refresh.output;
    EXPECT_EQ(refresh.output, "");

    auto column = ts::Run(Plotsmith("export " + b + " VEX_Chart1")).output;
    EXPECT_TRUE(Has(column, "<axis type=\"label\" label=\"Area\" sticky=\"no\"/>")) << column;
    auto bar = ts::Run(Plotsmith("export " + b + " VEX_Chart2")).output;
    EXPECT_TRUE(Has(bar, "<values><column name=\"Pieces\" ")) << bar;
    EXPECT_TRUE(Has(bar, "<axis type=\"value\" label=\"Pieces sold\" sticky=\"yes\"/>")) << bar;
    auto wb = xlsx::NewApplication()->Open(book.string());
    EXPECT_EQ(AxisTitle(ChartOf(wb, 1), host::xlCategory), "Area");
    EXPECT_EQ(AxisTitle(ChartOf(wb, 2), host::xlValue), "Pieces sold");
}

TEST(Renames, RefreshingOneTableKeepsWhatTheUserGaveThePlotArea) {
    auto book = BookWithCharts("renames-plot-area");
    {
        auto wb = xlsx::NewApplication()->Open(book.string());
        auto area = ChartOf(wb, 1)->PlotArea();
        area->Interior()->SetColorIndex(6L);
        area->Border()->SetColorIndex(3L);
        area->Border()->SetLineStyle(host::xlContinuous);
        wb->Save();
    }
    for (std::string args : {"refresh-table " + Q(book) + " VEX_TableRangeSales", "refresh " + Q(book)}) {
        auto r = ts::Run(Plotsmith(args));
        ASSERT_EQ(r.status, 0) << r.output;
        auto wb = xlsx::NewApplication()->Open(book.string());
        auto area = ChartOf(wb, 1)->PlotArea();
        EXPECT_EQ(host::CLng(area->Interior()->ColorIndex()), 6) << args;
        EXPECT_EQ(host::CLng(area->Border()->ColorIndex()), 3) << args;
        EXPECT_EQ(host::CLng(area->Border()->LineStyle()), host::xlContinuous) << args;
    }
}
