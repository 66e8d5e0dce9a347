#include "builder_world.h"

using buildertest::BuilderWorld;
using buildertest::Def;
using buildertest::Group;

namespace {

// Data1: Region, Product, Units, Amount; a range table with its header only; two bucket tables.
void Tables(BuilderWorld& w) {
    w.Table("Data1", {{"Region", "Product", "Units", "Amount"}, {"East", "Widget", 1.0, 10.0}});
    auto r = w.AddSheet("Ranges");
    w.Row(r, 1, 1, {"Empty orders"});
    w.Row(r, 3, 1, {"Region", "Amount"});
    w.Name("VEX_TableRangeEmpty", "=Ranges!$A$1:$B$3");
    w.Row(r, 11, 1, {"Targets"});
    w.Row(r, 13, 1, {"REGION", "amount"});
    w.Row(r, 14, 1, {"East", 5.0});
    w.Name("VEX_SBFits", "=Ranges!$A$11:$B$14");
    w.Row(r, 21, 1, {"Other"});
    w.Row(r, 23, 1, {"Country", "Amount"});
    w.Row(r, 24, 1, {"France", 5.0});
    w.Name("VEX_SBForeign", "=Ranges!$A$21:$B$24");
}

const std::string kCols = Group("categories", "rows", {"region"}) + Group("series", "none", {}) +
                          "<values><column name=\"AMOUNT\" worksheet-column-number=\"3\"/></values>";

}  // namespace

TEST(Validation, CarriesTheTablesGeometryAndColumnNumbersIntoTheChart) {
    BuilderWorld w;
    Tables(w);
    auto chart = w.Chart(Def("VEX_Chart1", "pie", kCols, " table-top-row=\"7\" table-height=\"99\""));
    ASSERT_TRUE(w.b.ValidateSourceData(chart));
    EXPECT_TRUE(w.dialogs.messages.empty());
    std::string geometry;
    for (auto name : {"table-worksheet", "table-top-row", "table-left-column", "table-height", "header-row-count"})
        geometry += w.Attr(chart, name) + " ";
    EXPECT_EQ(geometry, "Data1 1 1 2 1 ");
    // Names match ignoring case; a column that moved gets its new number.
    EXPECT_EQ(w.Attr(chart.selectSingleNode("categories/column"), "worksheet-column-number"), "1");
    EXPECT_EQ(w.Attr(chart.selectSingleNode("values/column"), "worksheet-column-number"), "4");

    // A bucket table matching the source table's headings, in any case, gives their positions.
    auto bucket = w.Chart(Def("VEX_Chart2", "strategic bucket", kCols, " strategic-bucket-table-id=\"VEX_SBFits\""));
    ASSERT_TRUE(w.b.ValidateSourceData(bucket));
    EXPECT_EQ(w.Attr(bucket, "bucket-name-column-position"), "1");
    EXPECT_EQ(w.Attr(bucket, "bucket-value-column-position"), "4");
}

TEST(Validation, TheFirstFailingRuleSpeaksAndWhatCameBeforeItStays) {
    BuilderWorld w;
    Tables(w);
    w.f.RetrieveTableDefinitions();
    struct Case {
        std::string table, extra, children, message;
    } cases[] = {
        {"VEX_TableRangeGone", "", kCols,
         "Chart 'VEX_Chart1 name' has become unavailable because its source table no longer exists in this "
         "workbook."},
        {"VEX_TableRangeEmpty", "", kCols,
         "Chart 'VEX_Chart1 name' has become unavailable because table 'Empty orders' \r\ncurrently contains no "
         "data.The chart will reappear the next time the table is refreshed with one or more rows of data."},
        {"Data1", "",
         Group("categories", "rows", {"Nope", "Nada"}) +
             "<values><column name=\"Amount\" worksheet-column-number=\"99\"/></values>",
         "Chart 'VEX_Chart1 name' has become unavailable because column 'Nope'\r\nin table 'Data1' is missing or "
         "contains invalid data."},
        {"Data1", " strategic-bucket-table-id=\"VEX_SBGone\"", kCols,
         "Chart 'VEX_Chart1 name' has become unavailable because its strategic bucket table no longer exists in this "
         "workbook."},
        {"Data1", " strategic-bucket-table-id=\"VEX_SBForeign\"", kCols,
         "Chart 'VEX_Chart1 name' has become unavailable because its strategic bucket table doesn't match the source "
         "table."},
    };
    for (auto& k : cases) {
        w.dialogs.messages.clear();
        auto doc = w.f.ParseChartDefinition(Def("VEX_Chart1", "column", k.children, k.extra, k.table));
        auto chart = doc->documentElement();
        EXPECT_FALSE(w.b.ValidateSourceData(chart)) << k.message;
        EXPECT_EQ(w.dialogs.Texts(), std::vector<std::string>{k.message});
        if (k.table == "VEX_TableRangeEmpty") {
            EXPECT_EQ(w.Attr(chart, "table-worksheet") + w.Attr(chart, "table-height") +
                          w.Attr(chart, "header-row-count"),
                      "Ranges33")
                << "the geometry is written before the check";
        }
        if (k.children.find("Nope") != std::string::npos) {
            EXPECT_EQ(w.Attr(chart.selectSingleNode("values/column"), "worksheet-column-number"), "99")
                << "columns behind the failing one are not looked at";
        }
    }

    // One row of data more than the header is enough.
    w.Name("VEX_TableRangeOne", "=Ranges!$A$1:$B$4");
    w.f.RetrieveTableDefinitions();
    w.dialogs.messages.clear();
    auto one = w.f.ParseChartDefinition(Def("VEX_Chart1", "column", kCols, "", "VEX_TableRangeOne"));
    EXPECT_TRUE(w.b.ValidateSourceData(one->documentElement()));

    // Geometry that isn't a number is a run-time error, reported under the procedure's name.
    w.c.colTables->Item("Data1")->documentElement().setAttribute("table-height", "tall");
    auto bad = w.f.ParseChartDefinition(Def("VEX_Chart1", "column", kCols));
    EXPECT_FALSE(w.b.ValidateSourceData(bad->documentElement()));
    EXPECT_EQ(w.dialogs.Texts(), std::vector<std::string>{"PSChartBuilder.ValidateSourceData\r\nType mismatch"});
}
