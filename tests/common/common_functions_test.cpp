#include <gtest/gtest.h>

#include "common/clock.h"
#include "common/common_functions.h"
#include "common/component.h"
#include "forms/headless.h"
#include "host/constants.h"
#include "host/workbook.h"
#include "component_world.h"
#include "test_support.h"
#include "xlsx/engine.h"

using host::Variant;

namespace {

using testworld::ManualClock;
using testworld::World;

}  // namespace

TEST(Messages, PendingMessageIsShownOnceAndLostWhenAnotherTextComes) {
    World w;
    w.c.sPendingMessage = "Select a table.";
    w.cf.ShowMessage("");
    w.cf.ShowMessage("");
    w.c.sPendingMessage = "lost";
    w.cf.ShowMessage("Choose a type.");
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{"Select a table.", "Choose a type."}));
    EXPECT_EQ(w.c.sPendingMessage, "");
    EXPECT_EQ(w.dialogs.messages[0].title, "Brindle Plotsmith");
    EXPECT_EQ(w.dialogs.messages[0].style, forms::vbOKOnly);

    w.dialogs.answers = {forms::vbCancel};
    EXPECT_EQ(w.cf.AskOkCancel("Delete?"), forms::vbCancel);
    EXPECT_EQ(w.dialogs.messages.back().style, forms::vbOKCancel);

    w.cf.ShowRuntimeError({91, "Object variable or With block variable not set", "Plotsmith"});
    EXPECT_EQ(w.dialogs.messages.back().text,
              "ERROR\r\nNumber: 91\r\nDescription: Object variable or With block variable not set\r\nSource: Plotsmith");
    EXPECT_EQ(w.dialogs.messages.back().style, forms::vbCritical);
    EXPECT_EQ(w.dialogs.messages.back().title, "");

    // The two report forms: a module's through ShowMessage, a handler's titled with the host's name.
    try {
        host::Raise(host::err::TypeMismatch);
    } catch (const std::exception&) {
        w.cf.ReportError("PSFunctions.GetBucketCandidates");
        w.cf.ReportHandlerError();
    }
    auto& m = w.dialogs.messages;
    EXPECT_EQ(m[m.size() - 2].text, "PSFunctions.GetBucketCandidates\r\nType mismatch");
    EXPECT_EQ(m.back().text, "Type mismatch");
    EXPECT_EQ(m.back().title, " Brindle Plotsmith") << "an empty host name leaves the blank";
}

TEST(Tokens, PlaceholdersAreFilledByPosition) {
    World w;
    EXPECT_EQ(w.cf.ReplaceTokens("Chart '/TKN/' uses /TKN/.", {"Sales"}), "Chart 'Sales' uses .");
    EXPECT_EQ(w.cf.ReplaceTokens("/TKN/a/TKN/b/TKN/", {}), "ab");
    EXPECT_EQ(w.cf.ReplaceTokens("/TKN/ and /TKN/", {"x/TKN/", "y"}), "xy and ");
    EXPECT_EQ(w.cf.ReplaceTokens("Copy /TKN/of ", {"(2) ", "surplus"}), "Copy (2) of ");
    EXPECT_EQ(w.cf.ReplaceTokens("/TKN/ of /TKN/", {254L, 2.5}), "254 of 2.5");
}

TEST(Values, SafeConversionsArraysAndKeys) {
    EXPECT_TRUE(ps::CommonFunctions::SafeBool("True"));
    EXPECT_TRUE(ps::CommonFunctions::SafeBool(-1L));
    EXPECT_FALSE(ps::CommonFunctions::SafeBool("yes"));
    EXPECT_FALSE(ps::CommonFunctions::SafeBool(Variant::Null()));
    EXPECT_EQ(ps::CommonFunctions::SafeString(Variant::Null()), "");
    EXPECT_EQ(ps::CommonFunctions::SafeString(true), "True");

    std::vector<Variant> names = {"Data2", "Data1"};
    EXPECT_TRUE(ps::CommonFunctions::ArrayContains("Data1", names));
    EXPECT_FALSE(ps::CommonFunctions::ArrayContains("data1", names));
    EXPECT_FALSE(ps::CommonFunctions::ArrayContains("Data1", {}));

    auto col = std::make_shared<host::Collection<int>>();
    col->Add(1, "VEX_Chart1");
    EXPECT_TRUE(ps::CommonFunctions::CollectionHasKey("vex_chart1", col));
    EXPECT_FALSE(ps::CommonFunctions::CollectionHasKey("VEX_Chart2", col));
    EXPECT_TRUE(ps::CommonFunctions::CollectionHasKey("VEX_Chart2", ps::CollectionRef<int>{}))
        << "only error 5 answers False; Nothing raises 91";
}

TEST(Xml, AbsentAttributesReadEmptyAndNewDocumentsKeepWhitespace) {
    World w;
    auto doc = w.cf.NewXMLDocument();
    EXPECT_FALSE(doc->async());
    EXPECT_FALSE(doc->validateOnParse());
    EXPECT_FALSE(doc->resolveExternals());
    ASSERT_TRUE(doc->loadXML("<chart id=\"VEX_Chart1\" name=\"\"> <title/></chart>"));
    EXPECT_EQ(doc->documentElement().childNodes().length(), 2) << "whitespace is kept";
    auto root = doc->documentElement();
    EXPECT_EQ(w.cf.GetAttributeText(root, "id"), "VEX_Chart1");
    EXPECT_EQ(w.cf.GetAttributeText(root, "name"), "");
    EXPECT_EQ(w.cf.GetAttributeText(root, "type"), "");
    EXPECT_THROW(w.cf.GetAttributeText(dom::Element{}, "id"), host::Error);

    auto ns = w.cf.NewXMLDocument(Variant("xmlns:c='urn:c'"));
    EXPECT_EQ(host::CStr(ns->getProperty("SelectionLanguage")), "XPath");
    EXPECT_EQ(host::CStr(ns->getProperty("SelectionNamespaces")), "xmlns:c='urn:c'");
}

TEST(Sheets, CreateFindAndHideSheetsSurviveASavedWorkbook) {
    World w;
    auto& wb = *w.c.oWorkbook;
    EXPECT_TRUE(w.cf.CreateSheet("VEX_ChartDefinitions", 1, host::xlSheetVeryHidden));
    EXPECT_EQ(wb.ActiveSheet()->Name(), "Sheet1") << "a hidden sheet doesn't change what the user sees";
    EXPECT_TRUE(w.cf.CreateSheet("VEX_ChartData", 1, host::xlSheetHidden));
    EXPECT_TRUE(w.cf.CreateSheet("Charts", 0, host::xlSheetVisible));
    EXPECT_EQ(wb.ActiveSheet()->Name(), "Charts");

    long count = wb.Sheets()->Count();
    EXPECT_FALSE(w.cf.CreateSheet("Bad:Name", 1, host::xlSheetVisible));
    EXPECT_FALSE(w.cf.CreateSheet("charts", 1, host::xlSheetVisible)) << "names are unique without regard to case";
    EXPECT_EQ(wb.Sheets()->Count(), count) << "a refused name leaves no stray sheet";
    EXPECT_TRUE(w.app->DisplayAlerts());

    auto path = testsupport::ScratchDir("common_sheets") / "sheets.xlsx";
    wb.SaveAs(path.string());
    w.c.oWorkbook = w.app->Open(path.string());
    auto sheets = w.c.oWorkbook->Sheets();
    ASSERT_EQ(sheets->Count(), 4);
    EXPECT_EQ(sheets->Item(1L)->Name(), "Charts");
    EXPECT_EQ(sheets->Item(4L)->Name(), "VEX_ChartData");
    EXPECT_TRUE(w.cf.SheetExists("vex_chartdata"));
    EXPECT_TRUE(w.cf.SheetExists(Variant("VEX_CHARTDEFINITIONS")));
    EXPECT_FALSE(w.cf.SheetExists("Data1"));
    EXPECT_TRUE(w.cf.SheetIsVisible("VEX_ChartDefinitions")) << "very hidden is not 0";
    EXPECT_FALSE(w.cf.SheetIsVisible("VEX_ChartData"));
    EXPECT_FALSE(w.cf.SheetIsVisible("Data1"));
    EXPECT_TRUE(w.cf.SheetIsVisible(1L));
}

TEST(Sheets, AWorkbookThatRefusesNewSheetsGetsTheMetadataSheetsOwnMessage) {
    World w;
    w.c.oWorkbook->Protect({}, true);
    w.SaveAndReopen("common_protected");
    ASSERT_TRUE(w.c.oWorkbook->ProtectStructure());
    EXPECT_FALSE(w.cf.CreateSheet("VEX_ChartDefinitions", 1, host::xlSheetVeryHidden));
    EXPECT_FALSE(w.cf.CreateSheet("Charts", 0, host::xlSheetVisible));
    EXPECT_EQ(w.c.oWorkbook->Sheets()->Count(), 1);
    EXPECT_TRUE(w.app->DisplayAlerts());
    EXPECT_TRUE(w.dialogs.messages.empty()) << "the caller words the failure";

    w.f.RetrieveChartDefinitions();
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{"Unable to create the metadata worksheet"}));
}

TEST(Sheets, RowsAndCellValues) {
    World w;
    auto sheet = w.Sheet("Sheet1");
    sheet->Cells(1, 1)->SetValue("Region");
    sheet->Cells(2, 1)->SetValue(1234.5);
    sheet->Cells(2, 1)->SetNumberFormat("#,##0.00");
    sheet->Cells(3, 1)->SetValue(Variant::CellError(host::xlErrDiv0));
    sheet->Cells(4, 1)->SetValue(Variant::Date(45382));
    sheet->Cells(4, 1)->SetNumberFormat("mmm yyyy");

    EXPECT_EQ(host::CStr(w.cf.GetCellValue(sheet, 2, 1, 0)), "1,234.50");
    EXPECT_EQ(host::CDbl(w.cf.GetCellValue(sheet, 2, 1, 1)), 1234.5);
    EXPECT_EQ(host::CStr(w.cf.GetCellValue(sheet, 2, 1, 2)), "1234.5");
    EXPECT_EQ(host::CDbl(w.cf.GetCellValue(sheet, 1, 1, 1)), 0.0) << "text in kind 1 gives 0";
    EXPECT_EQ(host::CStr(w.cf.GetCellValue(sheet, 3, 1, 2)), "") << "a cell error fails the conversion";
    // A date reads as shown, as its serial, and as its short date.
    EXPECT_EQ(host::CStr(w.cf.GetCellValue(sheet, 4, 1, 0)), "Mar 2024");
    EXPECT_EQ(host::CDbl(w.cf.GetCellValue(sheet, 4, 1, 1)), 45382.0);
    EXPECT_EQ(host::CStr(w.cf.GetCellValue(sheet, 4, 1, 2)), "3/31/2024");
    EXPECT_TRUE(w.cf.GetCellValue(sheet, 1, 1, 7).IsEmpty());
    EXPECT_TRUE(w.cf.GetCellValue(sheet, 0, 1, 7).IsNull());
    EXPECT_TRUE(w.dialogs.messages.empty());

    w.cf.InsertSheetRow(sheet, 1);
    EXPECT_EQ(host::CStr(sheet->Cells(2, 1)->Value()), "Region");
    EXPECT_TRUE(w.cf.DeleteSheetRow(sheet, 1));
    EXPECT_EQ(host::CStr(sheet->Cells(1, 1)->Value()), "Region");
    EXPECT_FALSE(w.cf.DeleteSheetRow(nullptr, 1));
    EXPECT_TRUE(w.dialogs.messages.empty());
    w.cf.InsertSheetRow(nullptr, 1);
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{
                                     "CommonFunctions.InsertSheetRow\r\nObject variable or With block variable not set"}));
}

TEST(Sheets, FormatSampleNumberUsesTheDefinitionSheetAndLeavesNoTrace) {
    World w;
    EXPECT_EQ(w.cf.FormatSampleNumber("#,##0.00"), "(invalid format)") << "no definition sheet";
    ASSERT_TRUE(w.cf.CreateSheet("VEX_ChartDefinitions", 1, host::xlSheetVeryHidden));
    EXPECT_EQ(w.cf.FormatSampleNumber("#,##0.00"), "12,345.68");
    EXPECT_EQ(w.cf.FormatSampleNumber("$#,###;($#,###);"), "$12,346");
    EXPECT_EQ(w.cf.FormatSampleNumber("General"), "12345.6789");
    auto cell = w.Sheet("VEX_ChartDefinitions")->Cells(1, 2);
    EXPECT_TRUE(cell->Value().IsEmpty());
    EXPECT_EQ(host::CStr(cell->NumberFormat()), "General");
    EXPECT_EQ(w.cf.FormatSampleNumber("0;0;0;0;0"), "(invalid format)");
}

TEST(Yield, AtMostOncePerTwoSecondsOfTheClock) {
    World w;
    auto pumps = [&] { return w.fe.PumpCount(); };
    w.clock.now = 0.5;
    w.cf.YieldToHost();
    EXPECT_EQ(pumps(), 0) << "half a second after midnight is less than two after 0";
    w.clock.now = 36000.4;
    w.cf.YieldToHost();
    EXPECT_EQ(pumps(), 1);
    EXPECT_EQ(w.c.lLastYieldTime, 36000);
    w.clock.now = 36001.9;
    w.cf.YieldToHost();
    EXPECT_EQ(pumps(), 1);
    w.clock.now = 36002.0;
    w.cf.YieldToHost();
    EXPECT_EQ(pumps(), 2);
    w.clock.now = 36010.6;
    w.cf.YieldToHost();
    EXPECT_EQ(w.c.lLastYieldTime, 36011) << "stored rounded";
    w.clock.now = 36012.5;
    w.cf.YieldToHost();
    EXPECT_EQ(pumps(), 3) << "1.9 seconds after the rounded time";
    w.clock.now = 5.0;
    w.cf.YieldToHost();
    EXPECT_EQ(pumps(), 3) << "after midnight nothing yields until the clock passes the stored time";
}
