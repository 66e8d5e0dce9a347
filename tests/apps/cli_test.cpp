// The command line as a user meets it: the listing, and one clear line for files it can't open.
#include <gtest/gtest.h>

#include <fstream>

#include "test_support.h"
#include "xlsx/engine.h"

namespace ts = testsupport;

namespace {

std::string Plotsmith(const std::string& args) {
    return ts::Quote((ts::fs::path(PLOTSMITH_BINARY_DIR) / "plotsmith").string()) + " " + args;
}

TEST(CommandLine, ListsSheetsAndNames) {
    auto dir = ts::ScratchDir("cli");
    auto app = xlsx::NewApplication();
    auto wb = app->Open((ts::fs::path(PLOTSMITH_SOURCE_DIR) / "examples/sales.xlsx").string());
    auto hidden = wb->Sheets()->Add(nullptr, wb->Sheets()->Item(wb->Sheets()->Count()));
    hidden->SetName("VEX_ChartDefinitions");
    hidden->SetVisible(2);
    wb->SaveAs((dir / "book.xlsx").string());

    auto r = ts::Run(Plotsmith("list " + ts::Quote((dir / "book.xlsx").string())));
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
    auto missing = ts::Run(Plotsmith("list " + ts::Quote((dir / "nope.xlsx").string())));
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.output, "plotsmith: cannot open '" + (dir / "nope.xlsx").string() + "': no such file\n");

    { std::ofstream(dir / "junk.xlsx") << "this is not a workbook"; }
    auto junk = ts::Run(Plotsmith("list " + ts::Quote((dir / "junk.xlsx").string())));
    EXPECT_EQ(junk.status, 2);
    EXPECT_EQ(junk.output.rfind("plotsmith: '" + (dir / "junk.xlsx").string() + "' is not a valid workbook package", 0), 0u)
        << junk.output;
    EXPECT_EQ(std::count(junk.output.begin(), junk.output.end(), '\n'), 1);

    EXPECT_EQ(ts::Run(Plotsmith("frobnicate")).status, 2);
    EXPECT_EQ(ts::Run(Plotsmith("list")).status, 2);
    auto help = ts::Run(Plotsmith("--help"));
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("list"), std::string::npos);
    auto version = ts::Run(Plotsmith("--version"));
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output.rfind("plotsmith ", 0), 0u);
}

}  // namespace

namespace {

TEST(CommandLine, OperationsRunAndSaveInPlace) {
    auto dir = ts::ScratchDir("cli-ops");
    auto book = dir / "sales.xlsx";
    ts::fs::copy_file(ts::fs::path(PLOTSMITH_SOURCE_DIR) / "examples/sales.xlsx", book);
    auto refresh = ts::Run(Plotsmith("refresh " + ts::Quote(book.string())));
    EXPECT_EQ(refresh.status, 0) << refresh.output;
    EXPECT_EQ(refresh.output, "");
    auto table = ts::Run(Plotsmith("refresh-table " + ts::Quote(book.string()) + " VEX_TableRangeSales"));
    EXPECT_EQ(table.status, 0) << table.output;
    auto rename = ts::Run(Plotsmith("rename-columns " + ts::Quote(book.string()) + " VEX_TableRangeSales Units=Pieces"));
    EXPECT_EQ(rename.status, 0) << rename.output;
    auto bad = ts::Run(Plotsmith("rename-columns " + ts::Quote(book.string()) + " VEX_TableRangeSales Units"));
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

}  // namespace
