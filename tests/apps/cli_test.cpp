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
              "Sheets (3):\n"
              "    1  Sales                            visible      worksheet\n"
              "    2  Data1                            visible      worksheet\n"
              "    3  VEX_ChartDefinitions             very hidden  worksheet\n"
              "Defined names (1):\n"
              "  VEX_TableRangeSales              =Sales!$A$1:$E$49\n");
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
