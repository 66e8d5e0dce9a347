#include "wizard_book.h"

using namespace wizardtest;

namespace {

const std::string kNoTable = "Please select the table on which the chart is based";
const std::string kNoType = "Please select a chart type";

std::string OptionsOn(forms::Form& page) {
    std::string out;
    for (int i = 0; i < 6; ++i)
        if (page.Get("optType", i).Enabled()) out += std::to_string(i);
    return out;
}

std::string PicturesShown(forms::Form& page) {
    std::string out;
    for (const char* name : {"imgBar", "imgColumn", "imgArea", "imgPie", "imgBubble", "imgStrBuck"})
        if (page.Get(name).Visible()) out += std::string(out.empty() ? "" : " ") + name;
    return out;
}

ScriptedDriver::Step SelectTable(const std::string& name) {
    return ScriptedDriver::Do("select table " + name, [name](forms::Form& page) {
        auto& grid = page.Get<forms::Grid>("grdTables");
        for (long r = 0; r < grid.Rows(); ++r)
            if (grid.TextMatrix(r, 0) == name) {
                ASSERT_TRUE(page.UserSelect("grdTables", r));
                return;
            }
        FAIL() << "no table " << name;
    });
}

// Data1 with a label and a number column, Data2 with numbers only, and a range table with two
// label columns that a bucket table fits.
void Tables(WizardBook& w) {
    w.RegionTable();
    w.Table("Data2", {{"Width", "Height"}, {1.0, 2.0}});
    auto s = w.AddSheet("Plan");
    w.Row(s, 1, 1, {"Plan"});
    w.Row(s, 3, 1, {"Region", "Product", "Amount"});
    w.Row(s, 4, 1, {"North", "Tea", 3.0});
    w.Name("VEX_TableRangePlan", "=Plan!$A$1:$C$4");
    w.Row(s, 10, 1, {"Buckets"});
    w.Row(s, 12, 1, {"Region", "Amount"});
    w.Row(s, 13, 1, {"North", 5.0});
    w.Name("VEX_SB_Buckets", "=Plan!$A$10:$B$13");
}

}  // namespace

TEST(SelectTable, TheTableDecidesTheTypesAndTheChoiceGoesToTheDefinition) {
    WizardBook w;
    Tables(w);
    auto& page = ps::SelectTablePage(w.c);
    w.driver.Visit(kTable, {
        w.Expect([&] {
            EXPECT_EQ(page.Caption(), kTable);
            EXPECT_FALSE(page.Get("cmdBack").Enabled()) << "no charts: nothing to go back to";
            auto& grid = page.Get<forms::Grid>("grdTables");
            std::vector<std::string> names;
            for (long r = 0; r < grid.Rows(); ++r) names.push_back(grid.TextMatrix(r, 0));
            EXPECT_EQ(names, (std::vector<std::string>{"Buckets", "Data1", "Data2", "Plan"}));
            EXPECT_EQ(grid.SelectedRows(), 0);
            EXPECT_EQ(OptionsOn(page), "");
            EXPECT_EQ(page.Get("optType", 5).Caption(), "Strategic Bucket");
            EXPECT_EQ(page.Get("imgBar").Top, page.Get("imgStrBuck").Top);
        }),
        ScriptedDriver::Click("cmdNext"),
        w.Expect([&] { EXPECT_EQ(page.ActiveControl()->Name(), "grdTables"); }),
        SelectTable("Data1"),
        w.Expect([&] {
            EXPECT_EQ(OptionsOn(page), "01234");
            EXPECT_EQ(w.c.sTableID, "Data1");
        }),
        ScriptedDriver::Click("cmdNext"),
        ScriptedDriver::Click("optType", 1),
        w.Expect([&] {
            EXPECT_EQ(w.c.sChartType, "column");
            EXPECT_EQ(PicturesShown(page), "imgColumn");
        }),
        // A table that allows the type keeps it.
        SelectTable("Plan"),
        w.Expect([&] {
            EXPECT_EQ(OptionsOn(page), "012345");
            EXPECT_EQ(w.c.sChartType, "column");
            EXPECT_TRUE(page.Get<forms::OptionButton>("optType", 1).Value());
        }),
        // One that allows nothing drops it, and it doesn't come back by itself.
        SelectTable("Data2"),
        w.Expect([&] {
            EXPECT_EQ(OptionsOn(page), "");
            EXPECT_EQ(w.c.sChartType, "unknown");
            EXPECT_EQ(PicturesShown(page), "");
        }),
        ScriptedDriver::Click("cmdNext"),
        SelectTable("Plan"),
        w.Expect([&] { EXPECT_EQ(w.c.sChartType, "unknown"); }),
        ScriptedDriver::Click("optType", 5),
        w.Expect([&] { EXPECT_EQ(PicturesShown(page), "imgStrBuck"); }),
        ScriptedDriver::Click("optType", 2),
        ScriptedDriver::PressEnter(),
    });
    w.driver.Visit(kLayout, {w.Expect([&] {
                                 EXPECT_FALSE(page.Loaded());
                                 EXPECT_EQ(w.ChartAttr("type"), "area");
                                 EXPECT_EQ(w.ChartAttr("table-id"), "VEX_TableRangePlan");
                                 EXPECT_EQ(w.ChartAttr("table-corrupted"), "no");
                                 EXPECT_EQ(w.ChartAttr("id"), "VEX_Chart1");
                                 EXPECT_EQ(w.c.sChartID, "VEX_Chart1");
                             }),
                             ScriptedDriver::Click("cmdBack")});
    // Back on the page: the table and the type come back.
    w.driver.Visit(kTable, {w.Expect([&] {
                                auto& grid = page.Get<forms::Grid>("grdTables");
                                ASSERT_EQ(grid.SelectedRows(), 1);
                                EXPECT_EQ(grid.TextMatrix(grid.SelectedRow(0), 0), "Plan");
                                EXPECT_TRUE(page.Get<forms::OptionButton>("optType", 2).Value());
                                EXPECT_EQ(PicturesShown(page), "imgArea");
                            }),
                            ScriptedDriver::Click("cmdCancel")});
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kTable, kLayout, kTable}));
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{kNoTable, kNoType, kNoType}));
    EXPECT_EQ(w.dialogs.messages[0].title, "Brindle Plotsmith");
    EXPECT_TRUE(w.Rows().empty()) << "Cancel saves nothing";
}

TEST(SelectTable, AChartWhoseTableNoLongerFitsOpensWithTheMessageNamingIt) {
    WizardBook w;
    w.RegionTable();
    w.Table("Data2", {{"Product", "Units"}, {"Tea", 4.0}});
    std::string id = w.PlaceChart("Sales", "column", "Data1", "Sheet1");
    w.Release();
    // The label column now holds numbers: the table has no label column left.
    auto s = w.Sheet("Data1");
    w.Row(s, 2, 1, {1.0});
    w.Row(s, 3, 1, {2.0});
    w.SaveAndReopen("select_table_corrupted");

    const std::string kInvalid =
        "Table 'Data1' is not currently valid for this chart. You must select a different table to continue.";
    auto& page = ps::SelectTablePage(w.c);
    w.driver.Visit(kAction, {ScriptedDriver::Do("select", [](forms::Form& f) { f.UserSelect("grdCharts", 1); }),
                             ScriptedDriver::Click("cmdModify")});
    w.driver.Visit(kTable, {w.Expect([&] {
                                EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{kInvalid}));
                                EXPECT_NE(page.ActiveControl() ? page.ActiveControl()->Name() : "", "grdTables")
                                    << "a message with the table's name moves no focus";
                                EXPECT_TRUE(page.Get("cmdBack").Enabled());
                                EXPECT_EQ(OptionsOn(page), "");
                            }),
                            SelectTable("Data2"), ScriptedDriver::Click("optType", 0),
                            ScriptedDriver::Click("cmdNext")});
    w.driver.Visit(kLayout, {w.Expect([&] {
                                 EXPECT_EQ(w.ChartAttr("id"), id);
                                 EXPECT_EQ(w.ChartAttr("table-id"), "Data2");
                                 EXPECT_EQ(w.ChartAttr("type"), "bar");
                                 EXPECT_EQ(w.ChartAttr("table-corrupted"), "no");
                             }),
                             ScriptedDriver::Click("cmdCancel")});
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kAction, kTable, kLayout}));
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{kInvalid}));
}

TEST(SelectTable, FinishWalksThroughThePagesBehindAndDrawsTheChart) {
    WizardBook w;
    w.RegionTable();
    w.AddSheet("Later");
    w.Sheet("Later")->Activate();
    w.driver.Visit(kTable, {SelectTable("Data1"), ScriptedDriver::Click("optType", 1), ScriptedDriver::Click("cmdFinish")});
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kTable}));
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    EXPECT_FALSE(w.c.colCharts) << "the run is over";

    w.SaveAndReopen("select_table_finish");
    auto saved = w.Saved("VEX_Chart1");
    ASSERT_TRUE(saved);
    EXPECT_EQ(w.Attr(saved, "name"), "Chart1");
    EXPECT_EQ(w.Attr(saved, "type"), "column");
    EXPECT_EQ(w.Attr(saved, "table-id"), "Data1");
    // A new chart goes on the first visible worksheet, whichever sheet was active.
    EXPECT_EQ(w.Attr(saved, "chart-worksheet"), "Sheet1");
    EXPECT_EQ(w.ShapesWithText("Sheet1", "VEX_Chart1").size(), 1u);
    auto chart = w.Sheet("Sheet1")->ChartObjects(1)->Chart();
    EXPECT_EQ(chart->SeriesCollection()->Count(), 1) << "drawn from its block";
}
