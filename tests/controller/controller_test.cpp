#include <gtest/gtest.h>

#include "component_world.h"
#include "controller/ps_controller.h"
#include "pages/busy.h"
#include "pages/page.h"
#include "pages/pages.h"
#include "pages/wizard_pages.h"

using forms::ScriptedDriver;
using Steps = std::vector<ScriptedDriver::Step>;

namespace {

const std::string kAction = "Brindle Plotsmith - Select Action";
const std::string kTable = "Brindle Plotsmith - Source Table and Chart Type";
const std::string kLayout = "Brindle Plotsmith - Chart Layout";
const std::string kLocation = "Brindle Plotsmith - Chart Location";
const std::string kNoTables = "This workbook contains no tables. You must create one in order to run the Plotsmith.";

// The entry class over an engine application of a given version.
struct Host : testworld::Entry {
    host::Ref<xlsx::EngineApplication> app;
    std::vector<std::string> macroCalls;

    explicit Host(std::string version = "16.0") : app(xlsx::NewApplication({std::move(version)})) {}

    void InstallMacros() {
        for (std::string name : {"VEXEvents.VEXChartRefreshStarted", "VEXEvents.VEXChartRefreshComplete"})
            app->SetMacro(name, [this, name](const std::vector<host::Variant>& args) {
                std::string call = name.substr(name.find('.') + 1) + "(";
                for (auto& a : args) call += host::CStr(a);
                macroCalls.push_back(call + ")");
                return host::Variant();
            });
    }
    // A run in progress on a new workbook with one table (Region, Amount on Data1) and a new chart
    // of the type on it; with bPlaced the workbook has a drawn chart already.
    void BeginRun(const std::string& sChartType, bool bPlaced = false) {
        c.oApplication = app;
        c.oWorkbook = app->NewWorkbook();
        auto data = c.oWorkbook->Worksheets()->Add(nullptr, c.oWorkbook->Worksheets()->Item(1L));
        data->SetName("Data1");
        data->Cells(1, 1)->SetValue("Region");
        data->Cells(1, 2)->SetValue("Amount");
        data->Cells(2, 1)->SetValue("North");
        data->Cells(2, 2)->SetValue(10.0);
        c.oWorkbook->Worksheets()->Item(1L)->Activate();
        c.functions->RetrieveTableDefinitions();
        c.functions->RetrieveChartDefinitions();
        if (bPlaced) {
            NewChart("column");
            c.functions->SaveChartDefinition(c.oChartDoc);
            c.functions->CreateEmptyChart("Sheet1", c.sChartID);
            c.colCharts->Add(c.oChartDoc, c.sChartID);
        }
        NewChart(sChartType);
    }
    void NewChart(const std::string& sChartType) {
        c.functions->CreateChartDoc();
        auto chart = c.oChartDoc->documentElement();
        chart.setAttribute("type", sChartType);
        chart.setAttribute("table-id", "Data1");
        c.sChartType = sChartType;
        c.sTableID = "Data1";
    }
    bool RunEnded() const { return !c.colTables && !c.colCharts && c.sChartType == "unknown" && c.sChartID.empty(); }
    ScriptedDriver::Step Expect(std::function<void()> check) {
        return ScriptedDriver::Do("check", [check](forms::Form&) { check(); });
    }
};

}  // namespace

// ---------------------------------------------------------------- the entry class

TEST(Entry, GuardsSpeakInOrderOnlyTheFirstFailingAndErrorsNameTheOperation) {
    Host h;
    h.entry.RunPlotsmith(h.app, "Host", "no-book.chm");
    EXPECT_EQ(h.c.sHelpFile, "no-book.chm");
    EXPECT_FALSE(h.c.oWorkbook);

    auto wb = h.app->NewWorkbook();
    wb->Protect();
    h.app->SetMultiUserEditing(wb, true);
    h.app->SetCellEditMode(true);
    h.entry.RunPlotsmith(h.app, "Host", "help.chm");
    wb->Unprotect();
    h.entry.RefreshPlotsmithData(h.app, "Host", "help.chm");
    h.app->SetMultiUserEditing(wb, false);
    h.entry.RunPlotsmith(h.app, "Host", "help.chm");
    h.app->SetCellEditMode(false);
    h.app->SetInteractive(false);
    h.app->SetCellEditMode(true);
    h.entry.RunPlotsmith(h.app, "Host", "help.chm");  // Interactive already off: the edit check passes
    EXPECT_FALSE(h.app->Interactive());

    EXPECT_EQ(h.dialogs.Texts(),
              (std::vector<std::string>{
                  "You must have a workbook open to use the Plotsmith.",
                  "This workbook has been protected. To use the Plotsmith you need to turn off Structure Protection.",
                  "This is a shared workbook. To use the Plotsmith you need to turn off workbook sharing.",
                  "You are currently editing a cell or object. Please finish editing before using the Plotsmith.",
                  kNoTables}));
    EXPECT_EQ(h.dialogs.messages[0].title, "Brindle Plotsmith");
    EXPECT_FALSE(h.c.oWorkbook);
    EXPECT_FALSE(h.c.colTables) << "the run released its collections";
    EXPECT_TRUE(h.driver.Shown().empty());

    // Without a host, each operation ends in a box named after it.
    Host none;
    std::string table = "VEX_TableRange1";
    std::vector<std::string> oldNames{"Q1"}, newNames{"Quarter 1"};
    none.entry.RunPlotsmith(nullptr, "Host", "help.chm");
    none.entry.RefreshPlotsmithData(nullptr, "Host", "help.chm");
    none.entry.RefreshChartsForTable(nullptr, table);
    none.entry.UpdateChartColumnNamesForTable(nullptr, table, oldNames, newNames);
    const std::string d = "\r\nObject variable or With block variable not set";
    EXPECT_EQ(none.dialogs.Texts(), (std::vector<std::string>{"CPlotsmithController.RunPlotsmith" + d,
                                                              "CPlotsmithController.RefreshPlotsmithData" + d,
                                                              "CPlotsmithController.RefreshChartsForTable" + d,
                                                              "CPlotsmithController.UpdateChartColumnNames" + d}));
}

TEST(Entry, ProtectionSavedInTheFileStopsTheWizard) {
    Host h;
    auto path = testsupport::ScratchDir("entry_protected") / "protected.xlsx";
    auto wb = h.app->NewWorkbook();
    wb->Protect();
    wb->SaveAs(path.string());
    h.app->Close(wb);
    h.app->Open(path.string());
    h.entry.RefreshPlotsmithData(h.app, "Host", "help.chm");
    ASSERT_EQ(h.dialogs.messages.size(), 1u);
    EXPECT_EQ(h.dialogs.messages[0].text.substr(0, 34), "This workbook has been protected. ");
}

TEST(Entry, TheFirstHostAndNameStayForTheLifeOfTheComponent) {
    Host h;
    auto other = xlsx::NewApplication();
    h.app->NewWorkbook();
    h.entry.RunPlotsmith(h.app, "HostA", "a.chm");
    h.entry.RunPlotsmith(other, "HostB", "b.chm");
    EXPECT_EQ(h.c.oApplication, h.app);
    EXPECT_EQ(h.c.sCustomAppName, "HostA");
    EXPECT_EQ(h.c.sHelpFile, "b.chm");
    EXPECT_EQ(h.dialogs.Texts(), (std::vector<std::string>{kNoTables, "You must have a workbook open to use the Plotsmith."}))
        << "the workbook is read from the host of the call";

    Host fresh;
    std::string table = "VEX_TableRange1";
    fresh.app->NewWorkbook();
    fresh.entry.RefreshChartsForTable(fresh.app, table);
    fresh.entry.RunPlotsmith(fresh.app, "HostA", "a.chm");
    EXPECT_EQ(fresh.c.sCustomAppName, "") << "the table refresh can't bring the name in, and a later name is ignored";
}

// ---------------------------------------------------------------- refresh runs

TEST(Refresh, RunsBetweenTheHostsMacrosAndPutsTheHostBack) {
    for (std::string version : {"16.0", "11.0"}) {
        Host h(version);
        h.InstallMacros();
        h.app->NewWorkbook();
        h.app->SetCalculation(host::xlCalculationAutomatic);
        h.entry.RefreshPlotsmithData(h.app, "Host", "help.chm");
        EXPECT_EQ(h.macroCalls, (std::vector<std::string>{"VEXChartRefreshStarted()", "VEXChartRefreshComplete()"}));
        EXPECT_TRUE(h.dialogs.messages.empty()) << version;
        EXPECT_EQ(h.app->Calculation(), host::xlCalculationAutomatic);
        EXPECT_TRUE(h.app->ScreenUpdating());
        EXPECT_TRUE(h.app->Interactive());
        EXPECT_EQ(h.fe.MousePointer(), forms::vbDefault);
        EXPECT_EQ(h.c.lMethodType, ps::mtRefresh);
        EXPECT_FALSE(h.c.bRunAborted);
        EXPECT_TRUE(h.RunEnded());
    }
    Host bare;
    bare.app->NewWorkbook();
    bare.entry.RefreshPlotsmithData(bare.app, "Host", "help.chm");
    EXPECT_TRUE(bare.dialogs.messages.empty()) << "a host without the macros refreshes as usual";

    // The charts of one table run between the same macros, and nothing in that path ends the run.
    Host h;
    h.InstallMacros();
    h.app->NewWorkbook();
    std::string table = "VEX_TableRange9";
    h.c.lMethodType = ps::mtNew;
    h.entry.RefreshChartsForTable(h.app, table);
    EXPECT_EQ(h.macroCalls, (std::vector<std::string>{"VEXChartRefreshStarted()", "VEXChartRefreshComplete()"}));
    EXPECT_EQ(h.c.lMethodType, ps::mtRefresh) << "a refresh keeps what the user gave the plot area";
    EXPECT_TRUE(h.c.colTables && h.c.colCharts && h.c.oWorkbook);
    EXPECT_TRUE(h.app->ScreenUpdating());
    EXPECT_TRUE(h.dialogs.messages.empty());
}

TEST(Refresh, AnErrorThatReachesTheJumpEndsTheRunWithoutComplete) {
    Host h("11.0");
    h.InstallMacros();
    // The host's start macro leaves a cell in edit mode: the host then refuses Interactive.
    h.app->SetMacro("VEXEvents.VEXChartRefreshStarted", [&](const std::vector<host::Variant>&) {
        h.macroCalls.push_back("VEXChartRefreshStarted()");
        h.app->SetCellEditMode(true);
        return host::Variant();
    });
    h.app->NewWorkbook();
    h.entry.RefreshPlotsmithData(h.app, "Host", "help.chm");
    const std::string refused = "Method 'Interactive' of object '_Application' failed";
    EXPECT_EQ(h.dialogs.Texts(), (std::vector<std::string>{refused, "PSController.PSJumpToStep\r\n" + refused}));
    EXPECT_EQ(h.macroCalls, (std::vector<std::string>{"VEXChartRefreshStarted()"}));
    EXPECT_TRUE(h.c.bRunAborted);
    EXPECT_TRUE(h.RunEnded());
}

TEST(Refresh, BusyWindowWorksOnceAndTicksItsBar) {
    Host h;
    h.BeginRun("bar");
    h.c.colCharts = nullptr;
    ps::frmBusyPS busy(h.c);
    busy.lMethodType = 0;
    busy.Show();
    EXPECT_TRUE(busy.bWorking);
    EXPECT_TRUE(h.c.colCharts) << "the work ran: the charts were loaded";
    EXPECT_FALSE(busy.Visible());
    EXPECT_EQ(busy.Caption(), "Please Wait");

    h.c.colCharts = nullptr;
    busy.Show();
    EXPECT_FALSE(h.c.colCharts) << "a second activation starts no second run";
    auto& bar = busy.Get<forms::ProgressBar>("ProgressBar1");
    auto& timer = busy.Get<forms::Timer>("Timer1");
    EXPECT_EQ(timer.Interval, 100);
    timer.RaiseTick();
    EXPECT_EQ(bar.Value(), 5);
    bar.SetValue(100);
    timer.RaiseTick();
    EXPECT_EQ(bar.Value(), 0);
}

// ---------------------------------------------------------------- the wizard's moves

TEST(Wizard, NextFromALayoutPageDoesNotEndTheRunButCancelDoes) {
    Host h;
    h.BeginRun("bar");
    h.driver.Visit(kLayout, {h.Expect([&] { EXPECT_TRUE(h.app->ScreenUpdating()); }), ScriptedDriver::Click("cmdNext")});
    h.driver.Visit(kLocation, {h.Expect([&] {
                                   EXPECT_FALSE(h.RunEnded()) << "the layout page's unload asked for the end";
                                   EXPECT_FALSE(ps::LayoutABCPage(h.c).Loaded());
                               }),
                               ScriptedDriver::Click("cmdBack")});
    h.driver.Visit(kLayout, {ScriptedDriver::Click("cmdCancel")});
    h.c.controller->PSJumpToStep(6, ps::pcSelectTable, nullptr);
    EXPECT_EQ(h.driver.Shown(), (std::vector<std::string>{kLayout, kLocation, kLayout}));
    EXPECT_TRUE(h.driver.Problems().empty());
    EXPECT_TRUE(h.RunEnded());
    EXPECT_TRUE(h.app->ScreenUpdating());
    EXPECT_TRUE(h.dialogs.messages.empty());
}

TEST(Wizard, ClosingTheChartLocationPageLeavesTheEndToTheRun) {
    Host h;
    h.BeginRun("pie");
    h.driver.Visit(kLocation, {h.Expect([&] {
                                   auto& page = ps::ChartLocationPage(h.c);
                                   EXPECT_FALSE(page.Get<forms::CommandButton>("cmdNext").Enabled());
                                   EXPECT_TRUE(page.Get<forms::CommandButton>("cmdFinish").Default());
                               }),
                               ScriptedDriver::Close()});
    h.c.controller->PSJumpToStep(6, ps::pcLayout, nullptr);
    EXPECT_FALSE(h.RunEnded());
    h.c.controller->EndRun();
    EXPECT_TRUE(h.RunEnded());
}

TEST(Wizard, BackWalksToSelectActionAndAbandonsTheChart) {
    Host h;
    h.BeginRun("column", true);
    h.driver.Visit(kLayout, {ScriptedDriver::Click("cmdHelp"), ScriptedDriver::Click("cmdBack")});
    h.driver.Visit(kTable, {ScriptedDriver::Click("cmdBack")});
    h.driver.Visit(kAction, {h.Expect([&] {
                                 EXPECT_EQ(h.c.sChartType, "unknown");
                                 EXPECT_EQ(h.c.sChartID, "");
                                 EXPECT_EQ(h.c.sTableID, "");
                                 EXPECT_FALSE(h.c.oChartDoc);
                                 EXPECT_TRUE(h.c.colTables);
                             }),
                             ScriptedDriver::Click("cmdNew")});
    h.driver.Visit(kTable, {ScriptedDriver::Close()});
    h.c.sHelpFile = "plotsmith.chm";
    h.c.controller->PSJumpToStep(7, ps::pcChartLocation, nullptr);
    EXPECT_EQ(h.driver.Shown(), (std::vector<std::string>{kLayout, kTable, kAction, kTable}));
    EXPECT_TRUE(h.driver.Problems().empty());
    ASSERT_EQ(h.dialogs.helps.size(), 1u);
    EXPECT_EQ(h.dialogs.helps[0].file, "plotsmith.chm");
    EXPECT_EQ(h.dialogs.helps[0].topic, 4) << "column layout";
    EXPECT_EQ(h.c.lMethodType, ps::mtNew);
    EXPECT_TRUE(h.RunEnded());
}

TEST(Wizard, AMessageLeftOnAHiddenPageComesUpWhenItIsShown) {
    Host h;
    h.BeginRun("area");
    auto& page = ps::LayoutABCPage(h.c);
    page.Load();
    page.DisplayMessage("The requested number format is not supported by Excel");
    EXPECT_TRUE(h.dialogs.messages.empty());
    h.driver.Visit(kLayout, {h.Expect([&] {
                                 EXPECT_EQ(h.dialogs.Texts(), (std::vector<std::string>{
                                                                  "The requested number format is not supported by Excel"}));
                                 EXPECT_EQ(h.c.sPendingMessage, "");
                             }),
                             ScriptedDriver::Click("cmdCancel")});
    h.c.controller->ShowPage(ps::pgLayoutArea);
    EXPECT_EQ(h.dialogs.messages.size(), 1u);
}

TEST(Wizard, ComplaintsArePlainBoxesWithTheProcedureName) {
    struct Case {
        long lStep, lFromPage;
        std::string sChartType, text;
    } cases[] = {
        {2, 1, "bar", "PSController.PSJumpToStep\r\nUnsupported Navigation"},
        {6, 3, "unknown", "PSController.JumpNext\r\nUnknown chart type"},
        {6, 9, "bar", "PSController.JumpNext\r\nDon't know where you're coming from!"},
        {7, 5, "doughnut", "PSController.JumpPrevious\r\nUnknown chart type"},
        {7, 2, "bar", "PSController.JumpPrevious\r\nDon't know where you're coming from!"},
        {8, 3, "unknown", "PSController.JumpFinish\r\nUnknown chart type"},
        {8, 1, "bar", "PSController.JumpFinish\r\nDon't know where you're coming from!"},
    };
    for (auto& k : cases) {
        Host h;
        h.BeginRun(k.sChartType);
        h.c.controller->PSJumpToStep(k.lStep, k.lFromPage, nullptr);
        ASSERT_EQ(h.dialogs.messages.size(), 1u) << k.text;
        EXPECT_EQ(h.dialogs.messages[0].text, k.text);
        EXPECT_EQ(h.dialogs.messages[0].title, "") << "the application's default title";
        EXPECT_FALSE(h.RunEnded()) << "a complaint doesn't end the run by itself";
        EXPECT_TRUE(h.driver.Shown().empty());
    }
}

TEST(Pages, FocusHighlightMarksTheContainerOfTheFocus) {
    Host h;
    struct Page : forms::Form {
        using forms::Form::Form;
        using forms::Form::Add;
    } page(h.fe, "frmPSLayoutABC");
    auto& fraA = page.Add<forms::Frame>("fraCategories");
    auto& fraB = page.Add<forms::Frame>("fraValues");
    auto& lblA = page.Add<forms::Label>("lblCategories", &fraA);
    auto& optB = page.Add<forms::OptionButton>("optValues", &fraB);
    auto& chkTop = page.Add<forms::CheckBox>("chkLegend");
    auto& lstA = page.Add<forms::ListBox>("lstCategories", &fraA);

    ps::StyleFormControls(page, lstA);
    EXPECT_TRUE(fraA.FontBold());
    EXPECT_EQ(fraA.Appearance(), 0);
    EXPECT_EQ(fraA.BackColor(), forms::vbInfoBackground);
    EXPECT_EQ(lblA.BackColor(), forms::vbInfoBackground);
    EXPECT_EQ(optB.BackColor(), forms::vbButtonFace);
    EXPECT_EQ(lstA.BackColor(), forms::vbWhite) << "input controls keep their colour";

    ps::StyleFormControls(page, chkTop);  // on the form itself: all that sits directly on it, frames too
    EXPECT_TRUE(fraB.FontBold());
    EXPECT_EQ(lblA.BackColor(), forms::vbButtonFace);
    EXPECT_EQ(fraB.BackColor(), forms::vbInfoBackground);
    EXPECT_EQ(chkTop.BackColor(), forms::vbInfoBackground);

    ps::StyleFormControls(page);
    EXPECT_EQ(fraB.BackColor(), forms::vbButtonFace);
    EXPECT_FALSE(fraB.FontBold());
}
