#include <cmath>

#include "wizard_book.h"

#include "host/chart_constants.h"

using namespace wizardtest;

namespace {

const std::string kDeleteOne =
    "Are you sure you want to delete this chart?\r\n\r\nClick 'OK' to delete or 'Cancel' to abort.";
const std::string kDeleteMany =
    "Are you sure you want to delete these charts?\r\n\r\nClick 'OK' to delete or 'Cancel' to abort.";

// The grid's rows below the heads, each as "name|type|chart sheet|table sheet".
std::vector<std::string> GridRows(forms::Form& page) {
    auto& grid = page.Get<forms::Grid>("grdCharts");
    std::vector<std::string> out;
    for (long r = 1; r < grid.Rows(); ++r)
        out.push_back(grid.TextMatrix(r, 0) + "|" + grid.TextMatrix(r, 1) + "|" + grid.TextMatrix(r, 2) + "|" +
                      grid.TextMatrix(r, 3));
    return out;
}

long RowOf(forms::Form& page, const std::string& name) {
    auto& grid = page.Get<forms::Grid>("grdCharts");
    for (long r = 1; r < grid.Rows(); ++r)
        if (grid.TextMatrix(r, 0) == name) return r;
    return -1;
}

// The buttons that are on, in the page's order.
std::string ButtonsOn(forms::Form& page) {
    std::string out;
    for (const char* name : {"cmdNew", "cmdModify", "cmdCopy", "cmdDelete", "cmdGoToChart", "cmdGoToTable"})
        if (page.Get(name).Enabled()) out += std::string(out.empty() ? "" : " ") + (name + 3);
    return out;
}

ScriptedDriver::Step SelectChart(const std::string& name, bool selected = true) {
    return ScriptedDriver::Do("select " + name, [name, selected](forms::Form& page) {
        ASSERT_TRUE(page.UserSetSelected("grdCharts", RowOf(page, name), selected)) << name;
    });
}

}  // namespace

TEST(SelectAction, ListsChartsByNameAndOffersWhatTheSelectionAllows) {
    WizardBook w;
    w.RegionTable();
    w.Table("Data2", {{"Product", "Units"}, {"Tea", 4.0}});
    w.AddSheet("Charts");
    w.AddSheet("Hidden");
    std::string beta = w.PlaceChart("beta", "column", "Data1", "Charts");
    std::string alpha = w.PlaceChart("Alpha", "bar", "Data2", "Hidden", "Product", "Units");
    std::string gamma = w.PlaceChart("gamma", "area", "Data1", "Sheet1");
    w.Sheet("Hidden")->SetVisible(host::xlSheetHidden);
    w.Sheet("Sheet1")->Activate();
    w.Release();
    w.SaveAndReopen("select_action_list");

    w.driver.Visit(kAction, {
        w.Expect([&] {
            auto& page = ps::SelectActionPage(w.c);
            EXPECT_EQ(page.Caption(), kAction);
            auto& grid = page.Get<forms::Grid>("grdCharts");
            EXPECT_EQ(grid.Container()->Caption(), "Charts in this Workbook");
            EXPECT_EQ(grid.TextMatrix(0, 0) + "|" + grid.TextMatrix(0, 1) + "|" + grid.TextMatrix(0, 2) + "|" +
                          grid.TextMatrix(0, 3),
                      "Chart Name|Type|Chart Worksheet|Table Worksheet");
            EXPECT_EQ(GridRows(page), (std::vector<std::string>{"Alpha|bar|Hidden|Data2", "beta|column|Charts|Data1",
                                                                 "gamma|area|Sheet1|Data1"}));
            EXPECT_EQ(host::CStr(grid.RowData(1)), alpha);
            EXPECT_EQ(grid.SelectedRows(), 0) << "the list opens with nothing selected";
            EXPECT_EQ(grid.ColWidth(0), std::round(0.4 * grid.ClientWidth()));
            EXPECT_EQ(grid.ColWidth(3), std::round(0.2 * grid.ClientWidth()));
            EXPECT_EQ(ButtonsOn(page), "New");
            EXPECT_TRUE(page.Get<forms::CommandButton>("cmdNew").Default());
            EXPECT_EQ(page.Get("cmdCopy").Caption(), "Co&py...");
        }),
        SelectChart("Alpha"),
        w.Expect([&] {
            // Its table is there, its own sheet is hidden: it can be modified but not gone to.
            EXPECT_EQ(ButtonsOn(ps::SelectActionPage(w.c)), "New Modify Copy Delete GoToTable");
            EXPECT_EQ(w.c.sChartID, alpha);
        }),
        SelectChart("gamma"),
        w.Expect([&] {
            EXPECT_EQ(ButtonsOn(ps::SelectActionPage(w.c)), "New Delete");
            EXPECT_EQ(w.c.sChartID, "");
        }),
        SelectChart("Alpha", false),
        ScriptedDriver::Click("cmdGoToTable"),
        w.Expect([&] { EXPECT_EQ(w.c.oWorkbook->ActiveSheet()->Name(), "Data1"); }),
        ScriptedDriver::Click("cmdGoToChart"),
        w.Expect([&] {
            EXPECT_EQ(w.c.oWorkbook->ActiveSheet()->Name(), "Sheet1");
            EXPECT_TRUE(ps::SelectActionPage(w.c).Visible()) << "the page stays";
        }),
        ScriptedDriver::Click("cmdHelp"),
        ScriptedDriver::Click("cmdCancel"),
    });
    w.c.sHelpFile = "plotsmith.chm";
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kAction}));
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    ASSERT_EQ(w.dialogs.helps.size(), 1u);
    EXPECT_EQ(w.dialogs.helps[0].topic, 1);
    EXPECT_FALSE(w.c.colCharts) << "Cancel ends the run";

    // A very hidden sheet is no hidden sheet to the Go To test.
    w.Sheet("Hidden")->SetVisible(host::xlSheetVeryHidden);
    w.driver.Visit(kAction, {SelectChart("Alpha"), w.Expect([&] {
                                 EXPECT_EQ(ButtonsOn(ps::SelectActionPage(w.c)),
                                           "New Modify Copy Delete GoToChart GoToTable");
                             }),
                             ScriptedDriver::Close()});
    w.Run();
}

TEST(SelectAction, AChartWhoseTableWentCanOnlyBeDeleted) {
    WizardBook w;
    w.RegionTable();
    w.Table("Data2", {{"Product", "Units"}, {"Tea", 4.0}});
    std::string id = w.PlaceChart("Teas", "column", "Data2", "Sheet1", "Product", "Units");
    w.PlaceChart("Regions", "column", "Data1", "Sheet1");
    w.Release();
    w.Sheet("Data2")->SetName("Archive");  // no table any more

    w.driver.Visit(kAction, {
        SelectChart("Teas"),
        w.Expect([&] {
            auto& page = ps::SelectActionPage(w.c);
            EXPECT_EQ(GridRows(page)[1], "Teas|column|Sheet1|[Deleted]");
            EXPECT_EQ(ButtonsOn(page), "New Delete GoToChart");
        }),
        ScriptedDriver::DblClick("grdCharts"),
        w.Expect([&] {
            EXPECT_TRUE(ps::SelectActionPage(w.c).Visible()) << "a double click on it does nothing";
            EXPECT_EQ(w.c.sChartID, id);
        }),
        ScriptedDriver::Click("cmdCancel"),
    });
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kAction}));
}

TEST(SelectAction, CopyAndModifyWorkOnAPrivateCopyUntilTheLastPage) {
    WizardBook w;
    w.RegionTable();
    std::string sales = w.PlaceChart("Sales", "column", "Data1", "Sheet1");
    w.PlaceChart("copy of sales", "bar", "Data1", "Sheet1");
    w.PlaceChart("Copy of Copy of Sales", "area", "Data1", "Sheet1");
    w.Release();
    auto rowsBefore = w.Rows();

    // Copy: a new id and the first free name, names compared without regard to case. The table is
    // still good, so the run goes straight on to the layout page.
    w.driver.Visit(kAction, {SelectChart("Sales"), ScriptedDriver::Click("cmdCopy")});
    w.driver.Visit(kLayout, {w.Expect([&] {
                                 EXPECT_EQ(w.c.lMethodType, ps::mtCopy);
                                 EXPECT_EQ(w.c.sChartID, "VEX_Chart4");
                                 EXPECT_EQ(w.ChartAttr("id"), "VEX_Chart4");
                                 EXPECT_EQ(w.ChartAttr("name"), "Copy (1) of Sales");
                                 EXPECT_EQ(w.c.sChartType, "column");
                                 EXPECT_EQ(w.c.sTableID, "Data1");
                                 EXPECT_FALSE(ps::CommonFunctions::CollectionHasKey("VEX_Chart4", w.c.colCharts));
                             }),
                             ScriptedDriver::Click("cmdCancel")});
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kAction, kLayout}));
    EXPECT_EQ(w.Rows(), rowsBefore) << "a cancelled copy leaves no trace";
    EXPECT_TRUE(w.ShapesWithText("Sheet1", "VEX_Chart4").empty());

    // A copy of the copy's source name: "Copy of Copy of Sales" is taken, so the counter starts.
    w.driver.Visit(kAction, {SelectChart("copy of sales"), ScriptedDriver::Click("cmdCopy")});
    w.driver.Visit(kLayout, {w.Expect([&] { EXPECT_EQ(w.ChartAttr("name"), "Copy (1) of copy of sales"); }),
                             ScriptedDriver::Click("cmdCancel")});
    w.Run();

    // Modify: the document in work is a copy; the loaded one stays as it was.
    w.driver.Visit(kAction, {SelectChart("Sales"), ScriptedDriver::DblClick("grdCharts")});
    w.driver.Visit(kLayout, {w.Expect([&] {
                                 EXPECT_EQ(w.c.lMethodType, ps::mtModify);
                                 EXPECT_EQ(w.c.sChartID, sales);
                                 EXPECT_EQ(w.ChartAttr("name"), "Sales");
                                 w.c.oChartDoc->documentElement().setAttribute("name", "Changed");
                                 auto loaded = w.c.colCharts->Item(sales)->documentElement();
                                 EXPECT_EQ(w.Attr(loaded, "name"), "Sales");
                             }),
                             ScriptedDriver::Click("cmdCancel")});
    w.Run();
    EXPECT_EQ(w.driver.Shown().size(), 6u);
    EXPECT_EQ(w.Attr(w.Saved(sales), "name"), "Sales");
}

TEST(SelectAction, DeleteAsksThenRemovesTheChartsAndTheirCommentsAndStartsAgain) {
    WizardBook w;
    w.RegionTable();
    w.AddSheet("Other");
    std::string one = w.PlaceChart("One", "column", "Data1", "Sheet1");
    std::string two = w.PlaceChart("Two", "column", "Data1", "Other");
    std::string three = w.PlaceChart("Three", "column", "Data1", "Sheet1");
    // A comment box of chart one, and a drawing that merely bears its id: only the first goes.
    auto note = w.Sheet("Other")->Shapes()->AddTextbox(1, 10, 10, 100, 40);
    note->SetAlternativeText(one);
    auto oval = w.Sheet("Other")->Shapes()->AddShape(9, 10, 10, 40, 40);
    oval->SetAlternativeText(one);
    w.Release();
    w.SaveAndReopen("select_action_delete");

    w.dialogs.answers = {forms::vbCancel, forms::vbOK, forms::vbOK};
    w.driver.Visit(kAction, {SelectChart("One"), SelectChart("Two"), ScriptedDriver::Click("cmdDelete"),
                             w.Expect([&] {
                                 auto& page = ps::SelectActionPage(w.c);
                                 EXPECT_TRUE(page.Visible()) << "Cancel keeps the page as it was";
                                 EXPECT_EQ(page.Get<forms::Grid>("grdCharts").SelectedRows(), 2);
                             }),
                             ScriptedDriver::Click("cmdDelete")});
    w.driver.Visit(kAction, {w.Expect([&] { EXPECT_EQ(GridRows(ps::SelectActionPage(w.c)).size(), 1u); }),
                             SelectChart("Three"), ScriptedDriver::Click("cmdDelete")});
    // With no chart left the run opens at the table page, for a new chart.
    w.driver.Visit(kTable, {w.Expect([&] { EXPECT_EQ(w.c.lMethodType, ps::mtNew); }), ScriptedDriver::Click("cmdCancel")});
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kAction, kAction, kTable}));
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{kDeleteMany, kDeleteMany, kDeleteOne}));
    EXPECT_EQ(w.dialogs.messages[0].style, forms::vbOKCancel);

    w.SaveAndReopen("select_action_delete_after");
    EXPECT_TRUE(w.ShapesWithText("Sheet1", one).empty());
    EXPECT_TRUE(w.ShapesWithText("Sheet1", three).empty());
    EXPECT_TRUE(w.ShapesWithText("Other", two).empty());
    EXPECT_EQ(w.ShapesWithText("Other", one).size(), 1u) << "the oval stays";
    EXPECT_TRUE(w.Rows().empty()) << "the reload dropped the definitions";
    EXPECT_TRUE(w.c.common->SheetExists("Other")) << "the sheet that held a chart stays";
}
