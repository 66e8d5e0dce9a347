#include "wizard_book.h"

using namespace wizardtest;

namespace {

const std::string kNoName = "Please provide a name for the chart";
const std::string kNameInUse = "Chart name is already in use. Please enter a different name for the chart.";
const std::string kNoSheetName = "Please provide a name for the new worksheet";
const std::string kSheetInUse = "Worksheet name is already in use. Please enter a different name for the worksheet.";
const std::string kSheetRefused = "Invalid worksheet name. Please enter a valid name for the worksheet.";

std::vector<std::string> Entries(forms::Form& page, const std::string& name) {
    auto& list = page.Get<forms::ComboBox>(name);
    std::vector<std::string> out;
    for (long i = 0; i < list.ListCount(); ++i) out.push_back(list.List(i));
    return out;
}

// "on"/"off" with the colour that goes with it, so a box that is off and looks on shows.
std::string Look(forms::Control& ctl) {
    std::string state = ctl.Enabled() ? "on" : "off";
    bool white = ctl.BackColor() == forms::vbWhite;
    return state + (white == ctl.Enabled() ? "" : " (wrong colour)");
}

ScriptedDriver::Step Finish() { return ScriptedDriver::Click("cmdFinish"); }

}  // namespace

TEST(ChartLocation, ANewChartGoesOnAListedSheetOrANewOneAndIsDrawnThere) {
    WizardBook w;
    w.RegionTable();
    w.AddSheet("CHART2");  // takes the default name of the new chart's sheet, in another case
    w.AddSheet("Secret")->SetVisible(host::xlSheetHidden);
    w.PlaceChart("Sales", "column", "Data1", "Sheet1");
    w.Release();
    w.Sheet("Data1")->Activate();
    w.SaveAndReopen("chart_location_new");

    auto& page = ps::ChartLocationPage(w.c);
    w.driver.Visit(kAction, {ScriptedDriver::Click("cmdNew")});
    w.driver.Visit(kTable, {ScriptedDriver::Do("select", [](forms::Form& f) { f.UserSelect("grdTables", 0); }),
                            ScriptedDriver::Click("optType", 0), ScriptedDriver::Click("cmdNext")});
    w.driver.Visit(kLayout, {ScriptedDriver::Click("cmdNext")});
    w.driver.Visit(kLocation, {
        w.Expect([&] {
            EXPECT_EQ(page.Caption(), kLocation);
            EXPECT_EQ(page.Get("Frame1").Caption(), "Place the chart on");
            EXPECT_EQ(Entries(page, "cboSheet"), (std::vector<std::string>{"Sheet1", "Data1", "CHART2"}));
            EXPECT_EQ(page.Get<forms::ComboBox>("cboSheet").Text(), "Sheet1") << "the first, not the active sheet";
            EXPECT_TRUE(page.Get<forms::OptionButton>("optTargetSheet", 1).Value());
            EXPECT_EQ(page.Get<forms::TextBox>("txtSheet").Text(), "Chart2 (2)");
            EXPECT_EQ(page.Get<forms::TextBox>("txtName").Text(), "Chart2");
            EXPECT_EQ(Look(page.Get("txtSheet")), "off");
            EXPECT_EQ(Look(page.Get("cboSheet")), "on");
            EXPECT_FALSE(page.Get("cmdNext").Enabled());
            EXPECT_TRUE(page.Get<forms::CommandButton>("cmdFinish").Default());
        }),
        ScriptedDriver::Type("txtName", "  "),
        Finish(),
        w.Expect([&] { EXPECT_EQ(page.ActiveControl()->Name(), "txtName"); }),
        ScriptedDriver::Type("txtName", "SALES"),
        Finish(),
        ScriptedDriver::Type("txtName", " Regions "),
        ScriptedDriver::Click("optTargetSheet", 0),
        w.Expect([&] {
            EXPECT_EQ(Look(page.Get("txtSheet")), "on");
            EXPECT_EQ(Look(page.Get("cboSheet")), "off");
        }),
        ScriptedDriver::Type("txtSheet", "data1"),
        Finish(),
        w.Expect([&] { EXPECT_EQ(page.ActiveControl()->Name(), "txtSheet"); }),
        ScriptedDriver::Type("txtSheet", " "),
        Finish(),
        ScriptedDriver::Type("txtSheet", "Q1:Q2"),
        Finish(),
        w.Expect([&] {
            EXPECT_EQ(w.c.oWorkbook->ActiveSheet()->Name(), "Data1") << "the active sheet is back";
            EXPECT_FALSE(w.c.common->SheetExists("Q1:Q2"));
        }),
        // Back keeps a typed sheet that doesn't exist yet.
        ScriptedDriver::Type("txtSheet", "Board"),
        ScriptedDriver::Click("cmdBack"),
    });
    w.driver.Visit(kLayout, {ScriptedDriver::Click("cmdNext")});
    w.driver.Visit(kLocation, {w.Expect([&] {
                                   EXPECT_TRUE(page.Get<forms::OptionButton>("optTargetSheet", 0).Value());
                                   EXPECT_EQ(page.Get<forms::TextBox>("txtSheet").Text(), "Board");
                                   EXPECT_EQ(page.Get<forms::TextBox>("txtName").Text(), "Regions");
                               }),
                               Finish()});
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kAction, kTable, kLayout, kLocation, kLayout, kLocation}));
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{kNoName, kNameInUse, kSheetInUse, kNoSheetName, kSheetRefused}));
    auto window = w.app->ActiveWindow();
    EXPECT_FALSE(window->DisplayGridlines());
    EXPECT_FALSE(window->DisplayHeadings());
    EXPECT_EQ(w.c.oWorkbook->ActiveSheet()->Name(), "Board");

    w.SaveAndReopen("chart_location_new_after");
    auto sheets = w.c.oWorkbook->Sheets();
    EXPECT_EQ(sheets->Item(sheets->Count())->Name(), "Board") << "behind the last sheet";
    auto saved = w.Saved("VEX_Chart2");
    ASSERT_TRUE(saved);
    EXPECT_EQ(w.Attr(saved, "name"), "Regions");
    EXPECT_EQ(w.Attr(saved, "chart-worksheet"), "Board");
    EXPECT_EQ(w.Attr(saved, "type"), "bar");
    EXPECT_EQ(w.ShapesWithText("Board", "VEX_Chart2").size(), 1u);
    EXPECT_EQ(w.Sheet("Board")->ChartObjects(1)->Chart()->SeriesCollection()->Count(), 1);

    // The sheet without grid lines and headings, and its chart, are valid in the file.
    if (!testsupport::HaveValidator()) GTEST_SKIP() << "no schema validator";
    auto path = testsupport::ScratchDir("chart_location_validate") / "book.xlsx";
    w.c.oWorkbook->SaveAs(path.string());
    auto result = testsupport::ValidateXlsx({path});
    EXPECT_EQ(result.status, 0) << result.output;
}

TEST(ChartLocation, AModifiedChartStaysOnItsSheetAndMayShareAName) {
    WizardBook w;
    w.RegionTable();
    w.AddSheet("Hidden");
    std::string first = w.PlaceChart("First", "column", "Data1", "Hidden");
    w.PlaceChart("Second", "column", "Data1", "Sheet1");
    w.Sheet("Hidden")->SetVisible(host::xlSheetHidden);
    w.Release();
    w.SaveAndReopen("chart_location_modify");

    auto& page = ps::ChartLocationPage(w.c);
    w.driver.Visit(kAction, {ScriptedDriver::Do("select", [](forms::Form& f) { f.UserSelect("grdCharts", 1); }),
                             ScriptedDriver::Click("cmdModify")});
    w.driver.Visit(kLayout, {ScriptedDriver::Click("cmdNext")});
    w.driver.Visit(kLocation, {w.Expect([&] {
                                   EXPECT_EQ(w.c.sChartID, first);
                                   // The sheet is hidden: not listed, and the first sheet stands in.
                                   EXPECT_EQ(page.Get<forms::ComboBox>("cboSheet").Text(), "Sheet1");
                                   EXPECT_TRUE(page.Get<forms::OptionButton>("optTargetSheet", 1).Value());
                                   for (int i : {0, 1}) EXPECT_FALSE(page.Get("optTargetSheet", i).Enabled());
                                   EXPECT_EQ(Look(page.Get("txtSheet")), "off");
                                   EXPECT_EQ(Look(page.Get("cboSheet")), "off");
                                   std::string title = w.ChartAttr("title");
                                   EXPECT_EQ(page.Get<forms::TextBox>("txtName").Text(),
                                             title.empty() ? w.ChartAttr("name") : title);
                               }),
                               ScriptedDriver::Type("txtName", "second"), Finish()});
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kAction, kLayout, kLocation}));
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];

    w.SaveAndReopen("chart_location_modify_after");
    auto saved = w.Saved(first);
    EXPECT_EQ(w.Attr(saved, "name"), "second");
    EXPECT_EQ(w.Attr(saved, "chart-worksheet"), "Sheet1") << "overwritten, as it always was";
    EXPECT_EQ(w.ShapesWithText("Hidden", first).size(), 1u) << "the chart object stays where it is";
    EXPECT_TRUE(w.ShapesWithText("Sheet1", first).empty()) << "and no second one is made";
    EXPECT_EQ(w.Rows().size(), 2u);
}

TEST(ChartLocation, ACancelledRunLeavesTheWorkbookAsItWas) {
    WizardBook w;
    w.RegionTable();
    w.PlaceChart("Sales", "column", "Data1", "Sheet1");
    w.Release();
    w.SaveAndReopen("chart_location_cancel");

    // Modify, on to the last page, back, and cancel there: every part as it was read.
    w.driver.Visit(kAction, {ScriptedDriver::Do("select", [](forms::Form& f) { f.UserSelect("grdCharts", 1); }),
                             ScriptedDriver::Click("cmdModify")});
    w.driver.Visit(kLayout, {ScriptedDriver::Type("txtTitle", "Changed"), ScriptedDriver::Click("cmdNext")});
    w.driver.Visit(kLocation, {ScriptedDriver::Type("txtName", "Renamed"), ScriptedDriver::Click("cmdBack")});
    w.driver.Visit(kLayout, {ScriptedDriver::Click("cmdCancel")});
    w.Run();
    EXPECT_EQ(w.driver.Shown(), (std::vector<std::string>{kAction, kLayout, kLocation, kLayout}));
    EXPECT_FALSE(w.app->Changed(w.c.oWorkbook));
}

TEST(ChartLocation, PlacingLeavesItsErrorsToThePage) {
    // The page reports what goes wrong in its own plain box; the placing step says nothing itself.
    WizardBook w;
    w.RegionTable();
    w.SaveAndReopen("chart_location_errors");
    w.f.RetrieveTableDefinitions();
    w.f.RetrieveChartDefinitions();
    w.f.CreateChartDoc();
    EXPECT_THROW(w.f.PlaceChartDefinition("Nowhere"), host::Error);
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts().front();
    EXPECT_TRUE(w.f.PlaceChartDefinition("Sheet1")) << "placed: the answer is True";
    EXPECT_TRUE(ps::CommonFunctions::CollectionHasKey(w.c.sChartID, w.c.colCharts));
}
