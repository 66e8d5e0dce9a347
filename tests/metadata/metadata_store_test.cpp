#include "host/chart.h"
#include "component_world.h"

using host::Variant;
using testworld::World;

namespace {

std::string Def(const std::string& id, const std::string& extra = "") {
    return "<chart id=\"" + id + "\"" + extra + "/>";
}

long RGB(long r, long g, long b) { return r + g * 256 + b * 65536; }

const std::vector<long> kChartColors{RGB(102, 102, 153), RGB(255, 255, 153), RGB(51, 153, 102),
                                     RGB(255, 128, 128), RGB(51, 204, 204), RGB(128, 0, 128)};
std::vector<long> Palette(World& w) {
    std::vector<long> out;
    for (long i = 17; i <= 22; ++i) out.push_back(w.c.oWorkbook->Colors(i));
    return out;
}

}  // namespace

TEST(Store, AFirstLoadLeavesAVeryHiddenSheetBehind) {
    World w;
    w.AddSheet("Report")->Activate();
    w.f.RetrieveChartDefinitions();
    EXPECT_TRUE(w.dialogs.messages.empty());
    ASSERT_TRUE(w.c.colCharts && w.c.colChartObjects && w.c.colChartShapes);
    EXPECT_EQ(w.c.colCharts->Count() + w.c.colChartObjects->Count() + w.c.colChartShapes->Count(), 0);
    auto s = w.Sheet(ps::sDefinitionSheet);
    EXPECT_EQ(s->Visible(), host::xlSheetVeryHidden);
    EXPECT_EQ(s->Index(), 3) << "after the last sheet";
    EXPECT_EQ(w.Text(s, 1, 1), "Plotsmith Version 2.0");
    EXPECT_EQ(w.c.oWorkbook->ActiveSheet()->Name(), "Report");

    // Both hidden sheets of the component stay very hidden in the saved file.
    w.c.common->CreateSheet(ps::sDataSheet, 1, host::xlSheetVeryHidden);
    w.SaveAndReopen("store_first_load");
    EXPECT_EQ(w.Sheet(ps::sDefinitionSheet)->Visible(), host::xlSheetVeryHidden);
    if (!testsupport::HaveOpenpyxl()) GTEST_SKIP() << "openpyxl missing";
    auto r = testsupport::Python("import openpyxl\nwb = openpyxl.load_workbook(" +
                                 testsupport::Quote(w.c.oWorkbook->FullName()) +
                                 ")\nfor ws in wb.worksheets: print(ws.title, ws.sheet_state, ws['A1'].value)\n");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(r.output,
              "Sheet1 visible None\nReport visible None\nVEX_ChartDefinitions veryHidden Plotsmith Version 2.0\n"
              "VEX_ChartData veryHidden None\n");
}

TEST(Store, SavesReplaceTheirRowOrAppendAndLeaveOtherRowsInPlace) {
    World w;
    w.f.RetrieveChartDefinitions();
    auto s = w.Sheet(ps::sDefinitionSheet);
    s->Cells(2, 1)->SetValue(Def("VEX_Chart1", " ps-chart-schema-version=\"2\" name=\"one\""));
    s->Cells(3, 1)->SetValue("<chart id=\"VEX_Chart2\"");  // not XML: stepped over and left
    s->Cells(4, 1)->SetValue(Def("VEX_Chart3", " ps-chart-schema-version=\"2\""));

    auto three = w.f.ParseChartDefinition(Def("VEX_Chart3", " ps-chart-schema-version=\"1\" name=\"three\""));
    w.f.SaveChartDefinition(three);
    auto two = w.f.ParseChartDefinition(Def("VEX_Chart2", " name=\"two\""));
    w.f.SaveChartDefinition(two);
    EXPECT_TRUE(w.dialogs.messages.empty());
    const std::vector<std::string> expected{
        Def("VEX_Chart1", " ps-chart-schema-version=\"2\" name=\"one\""), "<chart id=\"VEX_Chart2\"",
        "<chart id=\"VEX_Chart3\" ps-chart-schema-version=\"2\" name=\"three\"/>\r\n",
        "<chart id=\"VEX_Chart2\" name=\"two\" ps-chart-schema-version=\"2\"/>\r\n"};
    EXPECT_EQ(w.Rows(), expected) << "an old version is upgraded in place; a missing one is added at the end";

    auto saved = w.Definitions();
    w.SaveAndReopen("store_saves");
    EXPECT_EQ(w.Definitions(), saved);

    // A text too long for a cell is the host's refusal, reported; the rows stay as they were.
    auto big = w.f.ParseChartDefinition(Def("VEX_Chart1"));
    big->documentElement().appendChild(big->createElement("comment")).setText(std::string(33000, 'x'));
    w.f.SaveChartDefinition(big);
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{
                                     "PSFunctions.SaveChartDefinition\r\nApplication-defined or object-defined error"}));
    EXPECT_EQ(w.Definitions(), saved);
}

TEST(Store, ChartsAreMarkedWhenTheirTableNoLongerFits) {
    World w;
    auto s = w.Sheet("Sheet1");
    // A table with data, one with its header only, one with no number column, and two bucket tables.
    w.Row(s, 3, 1, {"Region", "Amount"});
    w.Row(s, 4, 1, {"North", 1.0});
    w.Name("VEX_TableRangeOK", "=Sheet1!$A$1:$B$4");
    w.Name("VEX_TableRangeEmpty", "=Sheet1!$A$1:$B$3");
    w.Row(s, 13, 1, {"Region", "Note"});
    w.Row(s, 14, 1, {"North", "n/a"});
    w.Name("VEX_TableRangeText", "=Sheet1!$A$11:$B$14");
    w.Row(s, 23, 1, {"region", "AMOUNT"});
    w.Row(s, 24, 1, {"North", 5.0});
    w.Name("VEX_SB_Fits", "=Sheet1!$A$21:$B$24");
    w.Row(s, 33, 1, {"Country", "Amount"});
    w.Row(s, 34, 1, {"France", 5.0});
    w.Name("VEX_SB_Foreign", "=Sheet1!$A$31:$B$34");
    w.f.RetrieveTableDefinitions();

    struct Case {
        std::string extra, corrupted;
    } cases[] = {
        {" table-id=\"VEX_TableRangeOK\" table-corrupted=\"yes\"", "no"},
        {" table-id=\"vex_tablerangeok\"", "no"},
        {" table-id=\"VEX_TableRangeEmpty\"", "yes"},
        {" table-id=\"VEX_TableRangeText\"", "yes"},
        {" table-id=\"VEX_TableRangeGone\"", "yes"},
        {"", "yes"},
        {" type=\"strategic bucket\" table-id=\"VEX_TableRangeOK\" strategic-bucket-table-id=\"VEX_SB_Fits\"", "no"},
        {" type=\"strategic bucket\" table-id=\"VEX_TableRangeOK\" strategic-bucket-table-id=\"VEX_SB_Foreign\"", "yes"},
        {" type=\"strategic bucket\" table-id=\"VEX_TableRangeOK\"", "yes"},
        {" type=\"bar\" table-id=\"VEX_TableRangeOK\" strategic-bucket-table-id=\"VEX_SB_Foreign\"", "no"},
    };
    w.c.colCharts = std::make_shared<host::Collection<dom::DocumentRef>>();
    for (size_t i = 0; i < std::size(cases); ++i) {
        std::string id = "VEX_Chart" + std::to_string(i + 1);
        w.c.colCharts->Add(w.f.ParseChartDefinition(Def(id, cases[i].extra)), id);
    }
    w.f.ValidateChartsAgainstTables();
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(host::CStr(w.c.colCharts->Item(long(i + 1))->documentElement().getAttribute("table-corrupted")),
                  cases[i].corrupted)
            << cases[i].extra;
    EXPECT_TRUE(w.dialogs.messages.empty());
    EXPECT_EQ(w.f.GetTableSheetName("VEX_TABLERANGEOK"), "Sheet1");
    EXPECT_EQ(w.f.GetTableSheetName("VEX_TableRangeGone"), "[Deleted]");

    w.c.colCharts->Add(w.f.ParseChartDefinition("<other/>"), "broken");
    w.f.ValidateChartsAgainstTables();
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{
                                     "PSFunctions.ValidateChartsAgainstTables\r\n"
                                     "Object variable or With block variable not set"}));
}

TEST(Store, RowsWithoutAChartInTheWorkbookLeaveTheSheetAtTheLoad) {
    World w;
    w.f.RetrieveChartDefinitions();
    auto s = w.Sheet(ps::sDefinitionSheet);
    s->Cells(2, 1)->SetValue(Def("VEX_Chart1"));
    s->Cells(3, 1)->SetValue("not xml");
    s->Cells(4, 1)->SetValue(Def("VEX_Chart7"));
    s->Cells(6, 1)->SetValue(Def("VEX_Chart8"));  // beyond the first gap: not a definition
    w.SaveAndReopen("store_orphans");
    w.c.colCharts = nullptr;
    w.f.RetrieveChartDefinitions();
    EXPECT_TRUE(w.dialogs.messages.empty());
    EXPECT_EQ(w.c.colCharts->Count(), 0);
    s = w.Sheet(ps::sDefinitionSheet);
    EXPECT_EQ(w.Text(s, 1, 1), "Plotsmith Version 2.0");
    EXPECT_EQ(w.Text(s, 2, 1), "");
    EXPECT_EQ(w.Text(s, 3, 1), Def("VEX_Chart8")) << "rows were deleted, not cleared";
}

TEST(Store, TheLoadFollowsChartsByTheirShapesAlternativeText) {
    World w;
    auto s1 = w.Sheet("Sheet1");
    w.Row(s1, 3, 1, {"Region", "Amount"});
    w.Row(s1, 4, 1, {"North", 1.0});
    w.Name("VEX_TableRange1", "=Sheet1!$A$1:$B$4");
    auto report = w.AddSheet("Report");
    // Charts as the user's workbook holds them: any shape name, the id in the alternative text.
    auto Chart = [&](const host::Ref<host::Worksheet>& s, const std::string& id) {
        auto o = s->ChartObjects()->Add(10, 10, 200, 150);
        s->Shapes()->Item(o->Name())->SetAlternativeText(id);
    };
    Chart(s1, "VEX_Chart1");
    Chart(report, "VEX_Chart2");
    Chart(report, "VEX_Chart3");
    w.f.RetrieveChartDefinitions();
    auto box = report->Shapes()->AddTextbox(host::msoTextOrientationHorizontal, 10, 400, 200, 40);
    box->SetAlternativeText("VEX_Chart2");

    auto def = w.Sheet(ps::sDefinitionSheet);
    def->Cells(2, 1)->SetValue(Def("VEX_Chart2", " table-id=\"VEX_TableRange1\""));
    def->Cells(3, 1)->SetValue("<broken");
    def->Cells(4, 1)->SetValue(Def("VEX_Chart1", " table-id=\"VEX_TableRange9\""));
    def->Cells(5, 1)->SetValue(Def("VEX_Chart2", " name=\"duplicate\""));
    def->Cells(6, 1)->SetValue(Def("VEX_Chart5"));
    def->Cells(7, 1)->SetValue(Def("VEX_Chart3", " table-id=\"VEX_TableRange1\""));
    w.SaveAndReopen("store_load");
    w.c.colTables = nullptr;
    w.f.RetrieveTableDefinitions();
    w.f.RetrieveChartDefinitions();
    EXPECT_TRUE(w.dialogs.messages.empty());
    EXPECT_EQ(World::Ids(w.c.colCharts), (std::vector<std::string>{"VEX_Chart2", "VEX_Chart1", "VEX_Chart3"}));
    EXPECT_EQ(w.c.colChartObjects->Count(), 3);
    EXPECT_EQ(w.c.colChartShapes->Count(), 1);
    EXPECT_TRUE(w.c.colChartShapes->Has("VEX_Chart2"));
    auto d1 = w.c.colCharts->Item("VEX_Chart1")->documentElement();
    EXPECT_EQ(host::CStr(d1.getAttribute("chart-worksheet")), "Sheet1");
    EXPECT_EQ(host::CStr(d1.getAttribute("table-worksheet")), "[Deleted]");
    EXPECT_EQ(host::CStr(d1.getAttribute("table-corrupted")), "yes");
    auto d2 = w.c.colCharts->Item("VEX_Chart2")->documentElement();
    EXPECT_EQ(host::CStr(d2.getAttribute("chart-worksheet")), "Report");
    EXPECT_EQ(host::CStr(d2.getAttribute("table-worksheet")), "Sheet1");
    EXPECT_EQ(host::CStr(d2.getAttribute("table-corrupted")), "no");
    EXPECT_EQ(w.Rows(), (std::vector<std::string>{Def("VEX_Chart2", " table-id=\"VEX_TableRange1\""),
                                                 Def("VEX_Chart1", " table-id=\"VEX_TableRange9\""),
                                                 Def("VEX_Chart3", " table-id=\"VEX_TableRange1\"")}))
        << "the load deletes rows and rewrites nothing else";
}

TEST(Store, AnEmptyChartFrameLiesLowerForEachChartOnItsSheet) {
    World w;
    w.f.RetrieveChartDefinitions();
    auto report = w.AddSheet("Report");
    for (std::string id : {"VEX_Chart1", "VEX_Chart2", "VEX_Chart3"}) w.f.CreateEmptyChart("Report", id);
    if (!w.dialogs.messages.empty() && w.dialogs.Texts()[0].find("LineStyle") != std::string::npos)
        GTEST_SKIP() << "the engine refuses Border.LineStyle 0, which the application takes as no line";
    ASSERT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    auto third = report->ChartObjects()->Item(3L);
    EXPECT_EQ(third->Left(), 40);
    EXPECT_EQ(third->Top(), 40);
    EXPECT_EQ(third->Width(), 420);
    EXPECT_EQ(third->Height(), 345);
    EXPECT_EQ(report->Shapes()->Item(third->Name())->AlternativeText(), "VEX_Chart3");
    EXPECT_EQ(third->Chart()->ChartArea()->Interior()->ColorIndex(), Variant(host::xlNone));
    ASSERT_EQ(w.c.colChartObjects->Count(), 3);
    EXPECT_EQ(w.c.colChartObjects->Item("VEX_Chart3"), third->Chart());

    // The frames carry their ids through the file, and the load finds them by it.
    for (std::string id : {"VEX_Chart1", "VEX_Chart2", "VEX_Chart3"})
        w.f.SaveChartDefinition(w.f.ParseChartDefinition(Def(id)));
    w.SaveAndReopen("empty_chart");
    w.c.colCharts = nullptr;
    w.f.RetrieveTableDefinitions();
    w.f.RetrieveChartDefinitions();
    EXPECT_EQ(World::Ids(w.c.colCharts), (std::vector<std::string>{"VEX_Chart1", "VEX_Chart2", "VEX_Chart3"}));
    EXPECT_TRUE(w.dialogs.messages.empty());

    // Without a sheet of that name: reported.
    w.f.CreateEmptyChart("Nowhere", "VEX_Chart4");
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{"PSFunctions.CreateEmptyChart\r\nSubscript out of range"}));
}

TEST(Store, ThePaletteChangesOnlyForANewSheetInABookWithoutChartsAndDefaultColours) {
    World fresh;
    fresh.f.RetrieveChartDefinitions();
    EXPECT_EQ(Palette(fresh), kChartColors);
    fresh.SaveAndReopen("palette");
    EXPECT_EQ(Palette(fresh), kChartColors) << "the palette travels with the file";

    World custom;
    custom.c.oWorkbook->SetColors(20, RGB(1, 2, 3));
    auto before = Palette(custom);
    custom.f.RetrieveChartDefinitions();
    EXPECT_EQ(Palette(custom), before);

    World charted;
    charted.Sheet("Sheet1")->ChartObjects()->Add(0, 0, 100, 100);
    before = Palette(charted);
    charted.f.RetrieveChartDefinitions();
    EXPECT_EQ(Palette(charted), before);

    World again;
    again.c.common->CreateSheet(ps::sDefinitionSheet, 1, host::xlSheetVeryHidden);
    before = Palette(again);
    again.f.RetrieveChartDefinitions();
    EXPECT_EQ(Palette(again), before) << "only a sheet made by this load";
}

TEST(Controller, AWorkbookWithATableButNoChartOpensAtTheSourceTablePage) {
    World w;
    auto data = w.AddSheet("Data1");
    w.Row(data, 1, 1, {"Product", "Units"});
    w.Row(data, 2, 1, {"Tea", 4.0});
    testworld::Entry e;
    const std::string kTable = "Brindle Plotsmith - Source Table and Chart Type";
    e.driver.Visit(kTable, {forms::ScriptedDriver::Do("check",
                                                      [&](forms::Form&) {
                                                          ASSERT_TRUE(e.c.colTables && e.c.colCharts);
                                                          EXPECT_EQ(e.c.colTables->Count(), 1);
                                                          EXPECT_EQ(e.c.colCharts->Count(), 0);
                                                          EXPECT_EQ(e.c.lMethodType, ps::mtNew);
                                                      }),
                            forms::ScriptedDriver::Close()});
    e.entry.RunPlotsmith(w.app, "Host", "help.chm");
    EXPECT_EQ(e.driver.Shown(), (std::vector<std::string>{kTable}));
    EXPECT_TRUE(e.driver.Problems().empty());
    EXPECT_TRUE(e.dialogs.messages.empty()) << e.dialogs.Texts()[0];
    EXPECT_EQ(w.Sheet(ps::sDefinitionSheet)->Visible(), host::xlSheetVeryHidden)
        << "even a run that makes no chart leaves the definition sheet";
}
