// The engine's workbook side through the host object model: sheets, names, cells, rows, sorting,
// and what a saved file looks like to other readers.
#include <gtest/gtest.h>

#include <fstream>

#include "host/constants.h"
#include "host/error.h"
#include "test_support.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

using namespace host;
namespace ts = testsupport;

namespace {

using testsupport::ErrorNumberOf;
using testsupport::ErrorTextOf;

TEST(Workbook, SheetsFollowTheApplicationsRules) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    ASSERT_EQ(wb->Sheets()->Count(), 1);
    auto first = wb->Worksheets()->Item(1L);
    EXPECT_EQ(first->Name(), "Sheet1");

    auto last = wb->Sheets()->Add(nullptr, first);
    EXPECT_EQ(last->Name(), "Sheet2");
    EXPECT_EQ(last->Index(), 2);
    EXPECT_EQ(wb->ActiveSheet()->Name(), "Sheet2");  // a new sheet is active
    auto front = wb->Sheets()->Add(first, nullptr);
    EXPECT_EQ(front->Index(), 1);
    EXPECT_EQ(first->Index(), 2);

    // Names: unique without regard to case, at most 31 characters, none of : \ / ? * [ ]
    EXPECT_EQ(ErrorNumberOf([&] { last->SetName("sheet1"); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { last->SetName("a/b"); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { last->SetName(std::string(32, 'x')); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { last->SetName(""); }), 1004);
    last->SetName(std::string(31, 'x'));
    last->SetName("VEX_ChartData");
    EXPECT_EQ(wb->Sheets()->Item("vex_chartdata")->Index(), 3);
    EXPECT_EQ(ErrorNumberOf([&] { wb->Sheets()->Item("nope"); }), 9);

    // Visibility; the last visible sheet can be neither hidden nor deleted.
    last->SetVisible(xlSheetVeryHidden);
    EXPECT_EQ(last->Visible(), xlSheetVeryHidden);
    front->SetVisible(xlSheetHidden);
    EXPECT_EQ(ErrorNumberOf([&] { first->SetVisible(xlSheetHidden); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { first->Delete(); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { last->Activate(); }), 1004);
    front->SetVisible(xlSheetVisible);
    front->Activate();
    EXPECT_EQ(wb->ActiveSheet()->Name(), front->Name());
    front->Delete();
    EXPECT_EQ(wb->Sheets()->Count(), 2);
    EXPECT_EQ(first->Index(), 1);

    wb->Protect();
    EXPECT_TRUE(wb->ProtectStructure());
    EXPECT_EQ(ErrorNumberOf([&] { wb->Sheets()->Add(); }), 1004);
    wb->Unprotect();
    EXPECT_FALSE(wb->ProtectStructure());
}

TEST(Workbook, DefinedNamesShowTheirReferenceAndRange) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    wb->Worksheets()->Item(1L)->SetName("My Data");
    auto names = wb->Names();
    names->Add("VEX_TableRange1", "='My Data'!$A$1:$C$9");
    names->Add("Rate", "=0.25");
    EXPECT_EQ(names->Count(), 2);
    EXPECT_EQ(names->Item(1L)->Name_(), "Rate");  // kept in order, as the application writes them
    auto table = names->Item("vex_tablerange1");
    EXPECT_EQ(table->RefersTo(), "='My Data'!$A$1:$C$9");
    auto range = table->RefersToRange();
    EXPECT_EQ(range->Row(), 1);
    EXPECT_EQ(range->Column(), 1);
    EXPECT_EQ(range->Rows()->Count(), 9);
    EXPECT_EQ(range->Columns()->Count(), 3);
    EXPECT_EQ(range->Worksheet()->Name(), "My Data");
    EXPECT_EQ(ErrorNumberOf([&] { names->Item("Rate")->RefersToRange(); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { names->Add("A1", "=1"); }), 1004);
    EXPECT_EQ(ErrorNumberOf([&] { names->Add("two words", "=1"); }), 1004);
}

TEST(Workbook, CellsHoldValuesFormulasAndFormats) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = wb->Worksheets()->Item(1L);
    ws->Cells(1, 1)->SetValue("Name");
    ws->Cells(2, 1)->SetValue(12345.6789);
    ws->Cells(3, 1)->SetValue(true);
    ws->Cells(4, 1)->SetValue("42");  // typed text that reads as a number becomes one
    ws->Cells(5, 1)->SetValue("'42");
    ws->Cells(6, 1)->SetFormula("=SUM(A2:A4)");
    EXPECT_EQ(ws->Cells(1, 1)->Value(), Variant("Name"));
    EXPECT_EQ(ws->Cells(4, 1)->Value().type(), Variant::Type::Double);
    EXPECT_EQ(ws->Cells(5, 1)->Value(), Variant("42"));  // the apostrophe keeps it text and goes
    EXPECT_EQ(ws->Cells(5, 1)->Value().type(), Variant::Type::String);
    EXPECT_EQ(ws->Cells(3, 1)->Text(), "TRUE");
    EXPECT_EQ(ws->Cells(6, 1)->Formula(), "=SUM(A2:A4)");
    EXPECT_TRUE(ws->Cells(6, 1)->HasFormula());
    EXPECT_EQ(ws->Cells(2, 1)->Text(), "12345.6789");

    ws->Cells(2, 1)->SetNumberFormat("#,##0.00");
    EXPECT_EQ(ws->Cells(2, 1)->Text(), "12,345.68");
    EXPECT_EQ(ws->Cells(2, 1)->NumberFormat(), Variant("#,##0.00"));
    EXPECT_EQ(ErrorTextOf([&] { ws->Cells(2, 1)->SetNumberFormat("0.0.0\"x"); }),
              "Unable to set the NumberFormat property of the Range class");
    ws->Cells(2, 1)->SetNumberFormat("General");
    EXPECT_EQ(ws->Cells(2, 1)->Text(), "12345.6789");

    EXPECT_EQ(ErrorNumberOf([&] { ws->Cells(7, 1)->SetValue(std::string(32768, 'a')); }), 1004);
    ws->Cells(7, 1)->SetValue(std::string(32767, 'a'));
    EXPECT_EQ(Len(CStr(ws->Cells(7, 1)->Value())), 32767);

    auto used = ws->UsedRange();
    EXPECT_EQ(used->Address(), "$A$1:$A$7");
    ws->Cells(7, 1)->Clear();
    EXPECT_EQ(ws->UsedRange()->Address(), "$A$1:$A$6");
    EXPECT_TRUE(ws->Cells(7, 1)->Value().IsEmpty());
}

TEST(Workbook, RowsInsertAndDeleteCarryReferencesAlong) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = wb->Worksheets()->Item(1L);
    auto other = wb->Sheets()->Add(nullptr, ws);
    other->SetName("Other");
    for (long r = 1; r <= 5; ++r) ws->Cells(r, 1)->SetValue(r * 10L);
    ws->Cells(6, 1)->SetFormula("=SUM(A1:A5)");
    ws->Cells(6, 2)->SetFormula("=A3*2");
    other->Cells(1, 1)->SetFormula("=Sheet1!A5+Sheet1!$A$2");
    wb->Names()->Add("Block", "=Sheet1!$A$2:$A$4");

    ws->Rows(3)->Insert();
    EXPECT_TRUE(ws->Cells(3, 1)->Value().IsEmpty());
    EXPECT_EQ(ws->Cells(4, 1)->Value(), Variant(30.0));
    EXPECT_EQ(ws->Cells(7, 1)->Formula(), "=SUM(A1:A6)");
    EXPECT_EQ(ws->Cells(7, 2)->Formula(), "=A4*2");
    EXPECT_EQ(other->Cells(1, 1)->Formula(), "=Sheet1!A6+Sheet1!$A$2");
    EXPECT_EQ(wb->Names()->Item("Block")->RefersTo(), "=Sheet1!$A$2:$A$5");

    ws->Rows(4)->Delete();  // the row that held 30
    EXPECT_EQ(ws->Cells(4, 1)->Value(), Variant(40.0));
    EXPECT_EQ(ws->Cells(6, 2)->Formula(), "=#REF!*2");
    EXPECT_EQ(wb->Names()->Item("Block")->RefersTo(), "=Sheet1!$A$2:$A$4");
    EXPECT_EQ(other->Cells(1, 1)->Formula(), "=Sheet1!A5+Sheet1!$A$2");
}

TEST(Workbook, SortOrdersRowsAsTheApplicationDoes) {
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = wb->Worksheets()->Item(1L);
    std::vector<Variant> keys = {"Key", 3.0, "b", Variant{}, 1.0, "A", true, 2.0};
    for (size_t i = 0; i < keys.size(); ++i) {
        ws->Cells(static_cast<long>(i + 1), 1)->SetValue(keys[i]);
        ws->Cells(static_cast<long>(i + 1), 2)->SetValue(static_cast<long>(i));
    }
    auto all = ws->Range("A1:B8");
    all->Sort(ws->Range("A1"), xlAscending, xlYes);
    std::vector<std::string> got;
    for (long r = 2; r <= 8; ++r) got.push_back(ws->Cells(r, 1)->Text() + "/" + ws->Cells(r, 2)->Text());
    EXPECT_EQ(got, (std::vector<std::string>{"1/4", "2/7", "3/1", "A/5", "b/2", "TRUE/6", "/3"}));
    all->Sort(ws->Range("A1"), xlDescending, xlYes);
    got.clear();
    for (long r = 2; r <= 8; ++r) got.push_back(ws->Cells(r, 1)->Text());
    EXPECT_EQ(got, (std::vector<std::string>{"TRUE", "b", "A", "3", "2", "1", ""}));
    EXPECT_EQ(ws->Cells(1, 1)->Value(), Variant("Key"));
}

TEST(Workbook, ApplicationPropertiesAndMacros) {
    xlsx::EngineOptions old;
    old.version = "11.0";
    auto app = xlsx::NewApplication(old);
    EXPECT_EQ(app->Version(), "11.0");
    EXPECT_EQ(app->ActiveWorkbook(), nullptr);
    auto wb = app->NewWorkbook();
    EXPECT_EQ(app->ActiveWorkbook(), wb);
    app->SetCalculation(xlCalculationManual);
    EXPECT_EQ(app->Calculation(), xlCalculationManual);
    EXPECT_EQ(app->StandardFont(), "Calibri");
    EXPECT_EQ(ErrorTextOf([&] { app->Run("VEXEvents.VEXChartRefreshStarted"); }),
              "Cannot run the macro 'VEXEvents.VEXChartRefreshStarted'. The macro may not be available in this "
              "workbook or all macros may be disabled.");
    std::vector<std::string> calls;
    app->SetMacro("VEXEvents.VEXChartRefreshStarted", [&](const std::vector<Variant>& args) {
        calls.push_back(args.empty() ? "-" : CStr(args[0]));
        return Variant{};
    });
    app->Run("vexevents.vexchartrefreshstarted", {Variant("VEX_Chart1")});
    EXPECT_EQ(calls, std::vector<std::string>{"VEX_Chart1"});
    app->SetCellEditMode(true);
    EXPECT_EQ(ErrorNumberOf([&] { app->SetInteractive(false); }), 1004);

    EXPECT_EQ(wb->Colors(3), 0x0000FF);  // red, as a BGR long
    wb->SetColors(3, 0x123456);
    EXPECT_EQ(wb->Colors(3), 0x123456);
    EXPECT_EQ(ErrorNumberOf([&] { wb->Colors(57); }), 9);

    // The window's grid lines and headings belong to the sheet shown, and are saved with it.
    auto charts = wb->Worksheets()->Add(nullptr, wb->Worksheets()->Item(1L));
    charts->Activate();
    app->ActiveWindow()->SetDisplayGridlines(false);
    app->ActiveWindow()->SetDisplayHeadings(false);
    wb->Worksheets()->Item(1L)->Activate();
    EXPECT_TRUE(app->ActiveWindow()->DisplayGridlines());
    auto path = ts::ScratchDir("window-view") / "view.xlsx";
    wb->SaveAs(path.string());
    auto app2 = xlsx::NewApplication();
    auto reopened = app2->Open(path.string());
    EXPECT_TRUE(app2->ActiveWindow()->DisplayHeadings()) << "the first sheet is shown";
    reopened->Worksheets()->Item(2L)->Activate();
    EXPECT_FALSE(app2->ActiveWindow()->DisplayGridlines());
    EXPECT_FALSE(app2->ActiveWindow()->DisplayHeadings());
    if (ts::HaveValidator()) {
        EXPECT_EQ(ts::ValidateXlsx({path}).status, 0);
    }
}

TEST(Workbook, ApplicationFilesKeepSharedFormulasAndChartSheetsStraight) {
    if (ts::SharedDir().empty()) GTEST_SKIP() << "the shared corpus is not beside the source tree";
    auto app = xlsx::NewApplication();
    auto wb = app->Open((ts::SharedDir() / "corpus/excel/openpyxl_contains_chartsheets.xlsx").string());
    EXPECT_EQ(wb->Sheets()->Count(), 3);
    EXPECT_EQ(wb->Worksheets()->Count(), 2);
    EXPECT_EQ(wb->Sheets()->Item(2L)->Type(), xlChart);
    auto data = wb->Worksheets()->Item("data");
    // A follower of a shared formula reads as the application shows it.
    EXPECT_EQ(data->Cells(5, 2)->Formula(), "=SIN(A5/PI())");
    EXPECT_NEAR(CDbl(data->Cells(5, 2)->Value()), 0.816273, 1e-6);

    auto more = wb->Worksheets()->Item("moredata");
    more->Cells(20, 1)->SetFormula("=data!B5+'data'!$B$10");
    wb->Names()->Add("Sines", "=data!$B$2:$B$10");
    data->Rows(4)->Insert();
    EXPECT_EQ(data->Cells(6, 2)->Formula(), "=SIN(A6/PI())");
    EXPECT_EQ(data->Cells(3, 2)->Formula(), "=SIN(A3/PI())");
    EXPECT_EQ(more->Cells(20, 1)->Formula(), "=data!B6+'data'!$B$11");

    data->SetName("My data");
    EXPECT_EQ(more->Cells(20, 1)->Formula(), "='My data'!B6+'My data'!$B$11");
    EXPECT_EQ(wb->Names()->Item("Sines")->RefersTo(), "='My data'!$B$2:$B$11");

    auto dir = ts::ScratchDir("chartsheets");
    wb->SaveAs((dir / "out.xlsx").string());
    auto again = app->Open((dir / "out.xlsx").string());
    EXPECT_EQ(again->Worksheets()->Item("My data")->Cells(6, 2)->Formula(), "=SIN(A6/PI())");
    again->Worksheets()->Item("My data")->Delete();
    EXPECT_EQ(again->Names()->Item("Sines")->RefersTo(), "=#REF!$B$2:$B$11");
    EXPECT_EQ(again->Worksheets()->Item("moredata")->Cells(20, 1)->Formula(), "=#REF!B6+#REF!$B$11");
    if (ts::HaveValidator()) {
        again->SaveAs((dir / "deleted.xlsx").string());
        auto v = ts::ValidateXlsx({dir / "out.xlsx", dir / "deleted.xlsx"});
        EXPECT_EQ(v.status, 0) << v.output;
    }
}

TEST(Workbook, TextsSurviveASaveCharacterForCharacter) {
    auto dir = ts::ScratchDir("texts");
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = wb->Worksheets()->Item(1L);
    const std::vector<std::string> texts = {"line one\r\nline two", " padded\t", "_x0041_ stays literal", "Zürich ☃",
                                            "<chart id=\"VEX_Chart1\"/>"};
    for (size_t i = 0; i < texts.size(); ++i) ws->Cells(static_cast<long>(i + 1), 1)->SetValue(texts[i]);
    wb->SaveAs((dir / "texts.xlsx").string());
    auto again = app->Open((dir / "texts.xlsx").string())->Worksheets()->Item(1L);
    for (size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(CStr(again->Cells(static_cast<long>(i + 1), 1)->Value()), texts[i]);
}

}  // namespace
