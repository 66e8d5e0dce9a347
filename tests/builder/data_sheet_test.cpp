#include "builder_world.h"

using buildertest::BuilderWorld;
using buildertest::Def;
using buildertest::Group;

namespace {

const std::string kByRegion = Group("categories", "rows", {"Region"}) + Group("series", "none", {}) +
                              Group("values", "", {"Amount"});

// Two charts on two tables: Data1 by region with a currency format, Data2 by product.
void TwoCharts(BuilderWorld& w) {
    w.Table("Data1", {{"Region", "Amount"}, {"East", 1.0}, {"West", 2.0}});
    w.Table("Data2", {{"Product", "Amount"}, {"Widget", 3.0}});
    w.Sheet("Sheet1")->Activate();
    w.Chart(Def("VEX_Chart1", "column", kByRegion, " number-format=\"$#,##0.00\""));
    w.Chart(Def("VEX_Chart2", "pie",
                Group("categories", "rows", {"Product"}) + Group("series", "none", {}) +
                    Group("values", "", {"Amount"}),
                "", "Data2"));
    w.b.PopulateChart("VEX_Chart1");
    w.b.PopulateChart("VEX_Chart2");
}

std::string StartRow(BuilderWorld& w, const std::string& id) {
    return w.Attr(w.c.colCharts->Item(id)->documentElement(), "data-start-row");
}

}  // namespace

TEST(DataSheet, BlocksGrowAndShrinkInPlaceAndTheBlocksBelowFollow) {
    BuilderWorld w;
    TwoCharts(w);
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    auto data = w.Sheet(ps::sDataSheet);
    EXPECT_EQ(data->Visible(), host::xlSheetVeryHidden);
    EXPECT_EQ(data->Index(), w.c.oWorkbook->Sheets()->Count()) << "made behind the last sheet";
    EXPECT_EQ(w.c.oWorkbook->ActiveSheet()->Name(), "Sheet1");
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||Amount", "VEX_Chart1|East|1", "VEX_Chart1|West|2",
                                                  "VEX_Chart2||Amount", "VEX_Chart2|Widget|3"}));
    EXPECT_EQ(StartRow(w, "VEX_Chart1") + StartRow(w, "VEX_Chart2"), "14");
    // The chart's format covers the whole block but the id column; without one it is General.
    EXPECT_EQ(data->Cells(2, 3)->Text(), "$1.00");
    EXPECT_EQ(host::CStr(data->Cells(1, 2)->NumberFormat()), "$#,##0.00");
    EXPECT_EQ(host::CStr(data->Cells(2, 1)->NumberFormat()), "General");
    EXPECT_EQ(host::CStr(data->Cells(5, 3)->NumberFormat()), "General");

    // The second chart's drawn series (a pie's, without a name) points at its block.
    auto series = w.ChartObject("VEX_Chart2")->SeriesCollection(1L);
    EXPECT_EQ(series->Formula(), "=SERIES(,VEX_ChartData!$B$5,VEX_ChartData!$C$5,1)");

    // Three more regions: the first block grows by three rows inside itself.
    w.Row(w.Sheet("Data1"), 4, 1, {"North", 4.0});
    w.Row(w.Sheet("Data1"), 5, 1, {"South", 5.0});
    w.Row(w.Sheet("Data1"), 6, 1, {"east", 6.0});
    w.Row(w.Sheet("Data1"), 7, 1, {"Central", "n/a"});
    w.f.RetrieveTableDefinitions();
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||Amount", "VEX_Chart1|East|7", "VEX_Chart1|West|2",
                                                  "VEX_Chart1|North|4", "VEX_Chart1|South|5", "VEX_Chart1|Central|0",
                                                  "VEX_Chart2||Amount", "VEX_Chart2|Widget|3"}))
        << "east adds to East; a text in a number column adds 0";
    EXPECT_EQ(series->Formula(), "=SERIES(,VEX_ChartData!$B$8,VEX_ChartData!$C$8,1)");
    EXPECT_EQ(StartRow(w, "VEX_Chart2"), "4") << "a record of the last build, not an address";

    // Back to one region: the block loses its rows and no blank row stays behind.
    for (int i = 0; i < 5; ++i) w.Sheet("Data1")->Rows(3)->Delete();
    w.f.RetrieveTableDefinitions();
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||Amount", "VEX_Chart1|East|1", "VEX_Chart2||Amount",
                                                  "VEX_Chart2|Widget|3"}));
    EXPECT_EQ(series->Formula(), "=SERIES(,VEX_ChartData!$B$4,VEX_ChartData!$C$4,1)");
    // Its own refresh draws the series anew and records where the block now is.
    w.b.PopulateChart("VEX_Chart2");
    EXPECT_EQ(w.ChartObject("VEX_Chart2")->SeriesCollection()->Count(), 1);
    EXPECT_EQ(StartRow(w, "VEX_Chart2"), "3");
    EXPECT_TRUE(w.dialogs.messages.empty());
}

TEST(DataSheet, ValuesThatDisappearLeaveBlankCellsAndNamesStayText) {
    BuilderWorld w;
    w.Table("Data1", {{"Region", "Year", "Amount"}, {"East", 2024.0, 1.0}, {"West", 2025.0, 2.0}, {"West", 2024.0, 5.0}});
    w.Chart(Def("VEX_Chart1", "column",
                Group("categories", "rows", {"Region"}) + Group("series", "rows", {"Year"}) +
                    Group("values", "", {"Amount"})));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||2024|2025", "VEX_Chart1|East|1",
                                                  "VEX_Chart1|West|5|2"}));
    EXPECT_TRUE(w.Sheet(ps::sDataSheet)->Cells(1, 3)->Value().IsString()) << "a bare year stays a text";

    // West's 2024 row becomes East's 2025: West's old 2024 value is emptied, not left or zeroed.
    w.Row(w.Sheet("Data1"), 4, 1, {"East", 2025.0});
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||2024|2025", "VEX_Chart1|East|1|5",
                                                  "VEX_Chart1|West||2"}));
    EXPECT_TRUE(w.dialogs.messages.empty());
}

TEST(DataSheet, BlocksSurviveASavedAndReopenedWorkbook) {
    BuilderWorld w;
    TwoCharts(w);
    for (auto& doc : *w.c.colCharts) w.f.SaveChartDefinition(doc);
    auto before = w.Data();
    w.SaveAndReopen("builder_round_trip");
    EXPECT_EQ(w.Data(), before);
    EXPECT_EQ(w.Sheet(ps::sDataSheet)->Visible(), host::xlSheetVeryHidden);

    // A refresh of the reopened book finds the blocks by their ids and grows the first in place.
    w.Forget();
    w.Row(w.Sheet("Data1"), 4, 1, {"North", 4.0});
    w.c.lMethodType = ps::mtRefresh;
    w.b.PopulateAllCharts();
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||Amount", "VEX_Chart1|East|1", "VEX_Chart1|West|2",
                                                  "VEX_Chart1|North|4", "VEX_Chart2||Amount", "VEX_Chart2|Widget|3"}));

    w.SaveAndReopen("builder_round_trip_2");
    if (!testsupport::HaveOpenpyxl()) GTEST_SKIP() << "openpyxl missing";
    auto r = testsupport::Python("import openpyxl\nwb = openpyxl.load_workbook(" +
                                 testsupport::Quote(w.c.oWorkbook->FullName()) +
                                 ")\nws = wb['VEX_ChartData']\nprint(ws.sheet_state)\n"
                                 "for row in ws.iter_rows(values_only=True): print(row[0], row[2])\n");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(r.output.substr(0, r.output.find('\n')), "veryHidden");
    EXPECT_NE(r.output.find("\nVEX_Chart1 4\n"), std::string::npos) << r.output;
    EXPECT_NE(r.output.find("\nVEX_Chart2 3\n"), std::string::npos) << r.output;
}
