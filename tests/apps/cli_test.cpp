// The command line as a user meets it: the listing, one clear line for files it can't open, and
// charts carried from one workbook to another through export and add.
#include <gtest/gtest.h>

#include <fstream>

#include "cli.h"
#include "host/chart_constants.h"
#include "host/constants.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "xlsx/engine.h"

using namespace clitest;

namespace {

void Write(const ts::fs::path& p, const std::string& text) { std::ofstream(p, std::ios::binary) << text; }

// The definition texts on the very hidden sheet, from A2 to the first empty cell.
std::vector<std::string> DefinitionRows(const host::Ref<host::Workbook>& wb) {
    std::vector<std::string> rows;
    auto sheet = wb->Worksheets()->Item("VEX_ChartDefinitions");
    for (long r = 2;; ++r) {
        std::string text = host::CStr(sheet->Cells(r, 1)->Value());
        if (text.empty()) return rows;
        rows.push_back(text);
    }
}

// The chart shapes of a sheet, in drawing order; comment boxes beside them don't count.
std::vector<host::Ref<host::Shape>> ChartShapes(const host::Ref<host::Worksheet>& sheet) {
    std::vector<host::Ref<host::Shape>> charts;
    auto shapes = sheet->Shapes();
    for (long i = 1; i <= shapes->Count(); ++i)
        if (shapes->Item(i)->Type() == host::msoChart) charts.push_back(shapes->Item(i));
    return charts;
}

TEST(CommandLine, ListsSheetsAndNames) {
    auto dir = ts::ScratchDir("cli");
    auto app = xlsx::NewApplication();
    auto wb = app->Open(Example("sales.xlsx").string());
    auto hidden = wb->Sheets()->Add(nullptr, wb->Sheets()->Item(wb->Sheets()->Count()));
    hidden->SetName("VEX_ChartDefinitions");
    hidden->SetVisible(2);
    wb->SaveAs((dir / "book.xlsx").string());

    auto r = ts::Run(Plotsmith("list " + Q(dir / "book.xlsx")));
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(r.output,
              "Workbook: book.xlsx\n"
              "Sheets (4):\n"
              "    1  Sales                            visible      worksheet\n"
              "    2  Targets                          visible      worksheet\n"
              "    3  Data1                            visible      worksheet\n"
              "    4  VEX_ChartDefinitions             very hidden  worksheet\n"
              "Defined names (2):\n"
              "  VEX_TableRangeSales              =Sales!$A$1:$E$51\n"
              "  VEX_SBTargets                    =Targets!$A$1:$B$7\n"
              "Tables (3):\n"
              "  VEX_TableRangeSales  \"Quarterly sales\"  on Sales  range table\n"
              "      labels: Region, Product, Quarter\n"
              "      numbers: Revenue, Units\n"
              "  VEX_SBTargets  \"Sales targets\"  on Targets  range table, bucket candidate\n"
              "      labels: Region\n"
              "      numbers: Target\n"
              "  Data1  \"Data1\"  on Data1  data sheet\n"
              "      labels: Segment\n"
              "      numbers: Share\n"
              "Charts (0):\n");
}

TEST(CommandLine, BadFilesAndUsageExitWithTwo) {
    auto dir = ts::ScratchDir("cli-bad");
    auto missing = ts::Run(Plotsmith("list " + Q(dir / "nope.xlsx")));
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.output, "plotsmith: cannot open '" + (dir / "nope.xlsx").string() + "': no such file\n");

    { std::ofstream(dir / "junk.xlsx") << "this is not a workbook"; }
    auto junk = ts::Run(Plotsmith("list " + Q(dir / "junk.xlsx")));
    EXPECT_EQ(junk.status, 2);
    EXPECT_EQ(junk.output.rfind("plotsmith: '" + (dir / "junk.xlsx").string() + "' is not a valid workbook package", 0), 0u)
        << junk.output;
    EXPECT_EQ(std::count(junk.output.begin(), junk.output.end(), '\n'), 1);

    EXPECT_EQ(ts::Run(Plotsmith("frobnicate")).status, 2);
    EXPECT_EQ(ts::Run(Plotsmith("list")).status, 2);
    auto help = ts::Run(Plotsmith("--help"));
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(Has(help.output, "list") && Has(help.output, "add") && Has(help.output, "export")) << help.output;
    auto addHelp = ts::Run(Plotsmith("add --help"));
    EXPECT_EQ(addHelp.status, 0);
    EXPECT_TRUE(Has(addHelp.output, "--new-sheet")) << addHelp.output;
    auto version = ts::Run(Plotsmith("--version"));
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output.rfind("plotsmith ", 0), 0u);
}

TEST(CommandLine, OperationsRunAndSaveInPlace) {
    auto book = SalesBook("cli-ops");
    auto refresh = ts::Run(Plotsmith("refresh " + Q(book)));
    EXPECT_EQ(refresh.status, 0) << refresh.output;
    EXPECT_EQ(refresh.output, "");
    auto table = ts::Run(Plotsmith("refresh-table " + Q(book) + " VEX_TableRangeSales"));
    EXPECT_EQ(table.status, 0) << table.output;
    auto rename = ts::Run(Plotsmith("rename-columns " + Q(book) + " VEX_TableRangeSales Units=Pieces"));
    EXPECT_EQ(rename.status, 0) << rename.output;
    auto bad = ts::Run(Plotsmith("rename-columns " + Q(book) + " VEX_TableRangeSales Units"));
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.output, "plotsmith: a rename is OLD=NEW, not 'Units'\n");

    // The definition store now stands in the workbook, very hidden, and the file is sound.
    auto app = xlsx::NewApplication();
    auto wb = app->Open(book.string());
    EXPECT_EQ(wb->Worksheets()->Item("VEX_ChartDefinitions")->Visible(), 2);
    if (ts::HaveValidator()) {
        auto v = ts::ValidateXlsx({book});
        EXPECT_EQ(v.status, 0) << v.output;
    }
}

TEST(AddAndExport, CarryAChartToAnotherWorkbook) {
    auto dir = ts::ScratchDir("cli-add");
    auto a = dir / "a.xlsx", b = dir / "b.xlsx", c = dir / "c.xlsx";
    for (auto& book : {a, b, c}) ts::fs::copy_file(Example("sales.xlsx"), book);
    auto column = Q(Example("column-revenue-by-region.xml"));

    auto first = ts::Run(Plotsmith("add " + Q(a) + " " + column + " --sheet Charts --new-sheet"));
    ASSERT_EQ(first.status, 0) << first.output;
    EXPECT_EQ(first.output, "VEX_Chart1  \"Revenue by region\"  column  on Charts\n");
    auto own = ts::Run(Plotsmith("add " + Q(b) + " " + column + " --sheet sales"));
    EXPECT_EQ(own.output, "VEX_Chart1  \"Revenue by region\"  column  on Sales\n");

    // One chart by its name, in any case; its id and name are taken in b, so it gets new ones.
    auto one = ts::Run(Plotsmith("export " + Q(a) + " \"revenue BY region\""));
    ASSERT_EQ(one.status, 0) << one.output;
    EXPECT_EQ(one.output.rfind("<chart ", 0), 0u) << one.output;
    EXPECT_TRUE(Has(one.output, "chart-worksheet=\"Charts\"")) << one.output;
    Write(dir / "one.xml", one.output);
    auto carried = ts::Run(Plotsmith("add " + Q(b) + " " + Q(dir / "one.xml") + " --sheet Sales"));
    ASSERT_EQ(carried.status, 0) << carried.output;
    EXPECT_EQ(carried.output, "VEX_Chart2  \"Revenue by region (1)\"  column  on Sales\n");

    // A definition without id and name gets the next id and its default name.
    Write(dir / "bare.xml",
          "<chart type=\"pie\" table-id=\"Data1\"><categories headings-in=\"rows\"><column name=\"Segment\"/>"
          "</categories><series headings-in=\"none\"/><values><column name=\"Share\"/></values></chart>");
    auto bare = ts::Run(Plotsmith("add " + Q(b) + " " + Q(dir / "bare.xml") + " --sheet Data1"));
    EXPECT_EQ(bare.output, "VEX_Chart3  \"Chart3\"  pie  on Data1\n");

    // Reopened: both charts on Sales, found by their ids, the second 20 points further on.
    auto app = xlsx::NewApplication();
    {
        auto wb = app->Open(b.string());
        auto charts = ChartShapes(wb->Worksheets()->Item("Sales"));
        ASSERT_EQ(charts.size(), 2u);
        EXPECT_EQ(charts[0]->AlternativeText(), "VEX_Chart1");
        auto second = charts[1];
        EXPECT_EQ(second->AlternativeText(), "VEX_Chart2");
        EXPECT_DOUBLE_EQ(second->Left(), 20);
        EXPECT_DOUBLE_EQ(second->Top(), 20);
        EXPECT_DOUBLE_EQ(second->Width(), 420);
        EXPECT_DOUBLE_EQ(second->Height(), 345);
        auto rows = DefinitionRows(wb);
        ASSERT_EQ(rows.size(), 3u);
        EXPECT_TRUE(Has(rows[1], "id=\"VEX_Chart2\"")) << rows[1];
        EXPECT_TRUE(Has(rows[1], "name=\"Revenue by region (1)\"")) << rows[1];
        EXPECT_TRUE(Has(rows[1], "chart-worksheet=\"Sales\"")) << rows[1];
        app->Close(wb);
    }
    auto list = ts::Run(Plotsmith("list " + Q(b)));
    EXPECT_TRUE(Has(list.output, "Charts (3):\n"
                                 "  VEX_Chart1  \"Revenue by region\"  column  on Sales  from VEX_TableRangeSales (Sales)  available\n"
                                 "  VEX_Chart2  \"Revenue by region (1)\"  column  on Sales  from VEX_TableRangeSales (Sales)  available\n"))
        << list.output;

    // All charts of b, through standard input, into a workbook without charts: ids and names stay.
    auto all = ts::Run(Plotsmith("export " + Q(b)));
    ASSERT_EQ(all.status, 0) << all.output;
    EXPECT_EQ(all.output.rfind("<charts>\n<chart ", 0), 0u) << all.output;
    Write(dir / "all.xml", all.output);
    auto both = ts::Run(Plotsmith("add " + Q(c) + " - --sheet Charts --new-sheet < " + Q(dir / "all.xml")));
    ASSERT_EQ(both.status, 0) << both.output;
    EXPECT_EQ(both.output,
              "VEX_Chart1  \"Revenue by region\"  column  on Charts\n"
              "VEX_Chart2  \"Revenue by region (1)\"  column  on Charts\n"
              "VEX_Chart3  \"Chart3\"  pie  on Charts\n");
    {
        // The new sheet stands last of the visible ones, and active.
        auto wb = app->Open(c.string());
        std::vector<std::string> visible;
        for (long i = 1; i <= wb->Sheets()->Count(); ++i)
            if (wb->Sheets()->Item(i)->Visible() == host::xlSheetVisible) visible.push_back(wb->Sheets()->Item(i)->Name());
        EXPECT_EQ(visible, (std::vector<std::string>{"Sales", "Targets", "Data1", "Charts"}));
        EXPECT_EQ(wb->ActiveSheet()->Name(), "Charts");
        EXPECT_EQ(ChartShapes(wb->Worksheets()->Item("Charts")).size(), 3u);
        EXPECT_EQ(DefinitionRows(wb).size(), 3u);
    }
    if (ts::HaveValidator()) {
        auto v = ts::ValidateXlsx({a, b, c});
        EXPECT_EQ(v.status, 0) << v.output;
    }
}

TEST(AddAndExport, BadInputSaysWhyInOneLineAndLeavesTheWorkbookAlone) {
    auto book = SalesBook("cli-add-bad");
    auto dir = book.parent_path();
    const std::string before = Slurp(book);
    auto B = Q(book);
    auto column = Q(Example("column-revenue-by-region.xml"));
    Write(dir / "broken.xml", "<chart id=\"VEX_Chart1\"");
    Write(dir / "table.xml", "<table id=\"Data1\"/>");
    Write(dir / "radar.xml", "<chart name=\"Radar\" type=\"radar\" table-id=\"Data1\"/>");
    Write(dir / "lost.xml", "<chart name=\"Lost\" type=\"column\" table-id=\"VEX_TableRangeGone\"/>");
    // With the line break a stored document ends in, one character more than a cell holds: the
    // store could not keep it, and the chart would go at the next load.
    const std::string longStart = "<chart name=\"Long\" type=\"column\" table-id=\"Data1\"><comment>", longEnd = "</comment></chart>";
    Write(dir / "long.xml", longStart + std::string(32766 - longStart.size() - longEnd.size(), 'x') + longEnd);
    // A workbook whose structure is protected takes no chart, as every operation refuses it.
    auto protectedBook = dir / "protected.xlsx";
    {
        auto app = xlsx::NewApplication();
        auto wb = app->Open(Example("sales.xlsx").string());
        wb->Protect({}, true);
        wb->SaveAs(protectedBook.string());
    }
    const std::string protectedBefore = Slurp(protectedBook);

    struct Case {
        std::string args, message;
    };
    const std::string b = book.string(), d = dir.string();
    const Case cases[] = {
        {"add " + B + " " + Q(dir / "missing.xml") + " --sheet Sales", "cannot read '" + d + "/missing.xml'"},
        {"add " + B + " " + Q(dir / "broken.xml") + " --sheet Sales", "'" + d + "/broken.xml' is not XML"},
        {"add " + B + " " + Q(dir / "table.xml") + " --sheet Sales", "'" + d + "/table.xml' holds no chart definition"},
        {"add " + B + " " + Q(dir / "radar.xml") + " --sheet Sales",
         "chart 'Radar' has type 'radar', which is none of area, bar, column, pie, bubble, strategic bucket"},
        {"add " + B + " " + Q(dir / "lost.xml") + " --sheet Sales",
         "chart 'Lost' draws from table 'VEX_TableRangeGone', which '" + b + "' doesn't have"},
        {"add " + B + " " + column + " --sheet Nowhere", "'" + b + "' has no worksheet 'Nowhere' (--new-sheet makes one)"},
        {"add " + B + " " + column + " --sheet VEX_ChartDefinitions", "worksheet 'VEX_ChartDefinitions' is hidden"},
        {"add " + B + " " + column + " --sheet targets --new-sheet",
         "Worksheet name is already in use. Please enter a different name for the worksheet."},
        {"add " + B + " " + column + " --sheet 'Bad/Name' --new-sheet",
         "Invalid worksheet name. Please enter a valid name for the worksheet."},
        {"export " + B + " Nothing", "'" + b + "' has no chart 'Nothing'"},
        {"add " + B + " " + Q(dir / "long.xml") + " --sheet Sales",
         "chart 'Long' has a definition of 32768 characters; a workbook cell holds at most 32767"},
        {"add " + Q(protectedBook) + " " + column + " --sheet Sales",
         "This workbook has been protected. To use the Plotsmith you need to turn off Structure Protection."},
        {"define " + Q(protectedBook) + " --table Data1 --type pie",
         "This workbook has been protected. To use the Plotsmith you need to turn off Structure Protection."},
    };
    for (auto& t : cases) {
        auto r = ts::Run(Plotsmith(t.args));
        EXPECT_EQ(r.status, 2) << t.args;
        EXPECT_EQ(r.output, "plotsmith: " + t.message + "\n") << t.args;
    }
    EXPECT_EQ(ts::Run(Plotsmith("add " + B + " " + column)).status, 2);  // --sheet is required
    EXPECT_EQ(Slurp(book), before);
    EXPECT_EQ(Slurp(protectedBook), protectedBefore);
}

}  // namespace
