// plotsmith update-table: new rows for a table from CSV, the table grown or shrunk on its sheet, its
// charts redrawn from the new rows; and what it refuses, leaving the file as it was.
#include <gtest/gtest.h>

#include <fstream>

#include "cli.h"
#include "host/chart.h"
#include "host/workbook.h"
#include "xlsx/engine.h"

using namespace clitest;

namespace {

ts::fs::path Write(const ts::fs::path& dir, const std::string& name, const std::string& text) {
    std::ofstream(dir / name, std::ios::binary) << text;
    return dir / name;
}

// The values of every series of a chart, added up, and the number of categories.
std::pair<double, size_t> Drawn(const host::Ref<host::Chart>& chart) {
    double sum = 0;
    size_t categories = 0;
    auto series = chart->SeriesCollection();
    for (long i = 1; i <= series->Count(); ++i) {
        auto s = series->Item(i);
        for (auto& v : s->Values())
            if (v.IsNumeric() && !v.IsEmpty()) sum += host::CDbl(v);
        categories = std::max(categories, s->XValues().size());
    }
    return {sum, categories};
}

}  // namespace

TEST(UpdateTable, NewRowsGrowOrShrinkTheTableAndItsChartsDrawThem) {
    auto book = SalesBook("update-table");
    auto dir = book.parent_path();
    for (auto [xml, sheet] : {std::pair{"column-revenue-by-region.xml", "Sales"}, {"pie-share-by-segment.xml", "Sales"}}) {
        auto r = ts::Run(Plotsmith("add " + Q(book) + " " + Q(Example(xml)) + " --sheet " + sheet));
        ASSERT_EQ(r.status, 0) << r.output;
    }
    double pie = 0;
    {
        // Something below the table, which must move with it rather than be written over.
        auto wb = xlsx::NewApplication()->Open(book.string());
        wb->Worksheets()->Item("Sales")->Cells(60, 1)->SetValue(std::string("note"));
        pie = Drawn(wb->Worksheets()->Item("Sales")->ChartObjects()->Item(2)->Chart()).first;
        wb->Save();
    }

    // Fewer rows, columns in another order, a blank Units cell.
    auto small = Write(dir, "small.csv",
                       "Units,Revenue,Quarter,Product,Region\n10,100,Q1,Widgets,North\n,200,Q1,Widgets,South\n"
                       "30,300,Q2,\"Gadgets, large\",East\n");
    auto r = ts::Run(Plotsmith("update-table " + Q(book) + " \"quarterly sales\" --from " + Q(small)));
    ASSERT_EQ(r.status, 0) << r.output;
    {
        auto wb = xlsx::NewApplication()->Open(book.string());
        EXPECT_EQ(wb->Names()->Item("VEX_TableRangeSales")->RefersTo(), "=Sales!$A$1:$E$6");
        auto sales = wb->Worksheets()->Item("Sales");
        EXPECT_EQ(host::CStr(sales->Cells(6, 2)->Value()), "Gadgets, large");
        EXPECT_TRUE(sales->Cells(5, 5)->Value().IsEmpty()) << "an empty field is a blank cell";
        EXPECT_EQ(host::CStr(sales->Cells(15, 1)->Value()), "note") << "what stood below moved up with the table";
        auto [sum, categories] = Drawn(sales->ChartObjects()->Item(1)->Chart());
        EXPECT_DOUBLE_EQ(sum, 600);
        EXPECT_EQ(categories, 3u);
        // The other table's chart is as it was.
        EXPECT_GT(pie, 0);
        EXPECT_DOUBLE_EQ(Drawn(sales->ChartObjects()->Item(2)->Chart()).first, pie);
    }

    // More rows than before, from standard input: new rows take the formats of the rows above.
    std::string rows = "Region,Product,Quarter,Revenue,Units\n";
    double total = 0;
    for (int i = 0; i < 80; ++i) {
        rows += std::string(i % 2 ? "North" : "South") + ",Widgets,Q" + std::to_string(i % 4 + 1) + "," +
                std::to_string(1000 + i) + "," + std::to_string(i) + "\n";
        total += 1000 + i;
    }
    auto big = Write(dir, "big.csv", rows);
    r = ts::Run("cat " + Q(big) + " | " + Plotsmith("update-table " + Q(book) + " VEX_TableRangeSales --from -"));
    ASSERT_EQ(r.status, 0) << r.output;
    auto wb = xlsx::NewApplication()->Open(book.string());
    EXPECT_EQ(wb->Names()->Item("VEX_TableRangeSales")->RefersTo(), "=Sales!$A$1:$E$83");
    auto sales = wb->Worksheets()->Item("Sales");
    EXPECT_EQ(host::CStr(sales->Cells(15 + 77, 1)->Value()), "note");
    EXPECT_EQ(host::CStr(sales->Cells(83, 4)->NumberFormat()), host::CStr(sales->Cells(4, 4)->NumberFormat()));
    EXPECT_EQ(sales->Cells(83, 4)->Text(), "1,079");
    auto [sum, categories] = Drawn(sales->ChartObjects()->Item(1)->Chart());
    EXPECT_DOUBLE_EQ(sum, total);
    EXPECT_EQ(categories, 2u);
}

TEST(UpdateTable, RowsItCannotTakeAreNamedByLineAndTheFileStaysAsItWas) {
    auto book = SalesBook("update-table-refused");
    auto dir = book.parent_path();
    const std::string before = Slurp(book);
    struct Case {
        std::string csv, message;
    };
    const Case cases[] = {
        {"Segment,Share,Colour\nRetail,1,red\n", "'bad.csv' line 1, column 3: table 'Data1' has no column 'Colour'"},
        {"Share\n1\n", "'bad.csv' line 1, the table's column 'Segment' is missing"},
        {"Segment,Share\nRetail,1\nOnline,2,3\n", "'bad.csv' line 3: 3 fields where the header names 2 columns"},
        {"Segment,Share\nRetail,1\n\"Online\n,2\n", "'bad.csv' line 3: a quoted field is not closed"},
        {"Segment,Share\nRet\xE9il,1\n", "'bad.csv' line 2, column 1: the text is not UTF-8"},
        {"", "'bad.csv' is empty"},
    };
    for (auto& c : cases) {
        auto csv = Write(dir, "bad.csv", c.csv);
        auto r = ts::Run("cd " + Q(dir) + " && " + Plotsmith("update-table " + Q(book) + " Data1 --from bad.csv"));
        EXPECT_EQ(r.status, 2) << c.csv;
        EXPECT_TRUE(Has(r.output, "plotsmith: " + c.message)) << r.output;
        EXPECT_EQ(Slurp(book), before) << c.csv;
    }
    auto good = Write(dir, "good.csv", "Segment,Share\nRetail,1\n");
    auto r = ts::Run(Plotsmith("update-table " + Q(book) + " Nowhere --from " + Q(good)));
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(Has(r.output, "has no table 'Nowhere'")) << r.output;
}
