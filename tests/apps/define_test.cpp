// plotsmith define: the wizard's pages filled from options, as a user would fill them; the
// workbook saved with the new chart, or left as it was when a page refused the input.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "host/drawing.h"
#include "host/workbook.h"
#include "test_support.h"
#include "xlsx/engine.h"

namespace ts = testsupport;

namespace {

std::string Plotsmith(const std::string& args) {
    return ts::Quote((ts::fs::path(PLOTSMITH_BINARY_DIR) / "plotsmith").string()) + " " + args;
}

std::string Bytes(const ts::fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Quarterly sales (labels Region, Product, Quarter; numbers Revenue, Units), Sales targets, Data1.
ts::fs::path SalesBook(const std::string& test) {
    auto dir = ts::ScratchDir(test);
    ts::fs::copy_file(ts::fs::path(PLOTSMITH_SOURCE_DIR) / "examples/sales.xlsx", dir / "book.xlsx");
    return dir / "book.xlsx";
}

TEST(Define, MakesChartsThroughThePagesAndSavesThem) {
    auto book = SalesBook("define-make");
    std::string b = ts::Quote(book.string());

    // No chart yet: the run opens on the Source Table page.
    auto first = ts::Run(Plotsmith("define " + b +
                                   " --table 'quarterly sales' --type column --title 'Revenue by region'"
                                   " --categories Region --values Revenue --sheet Sales --show-values"));
    ASSERT_EQ(first.status, 0) << first.output;
    EXPECT_EQ(first.output, "VEX_Chart1  \"Revenue by region\"  column  on Sales\n");

    // Now Select Action comes first and New leads on; a new sheet, colours by a label column,
    // stacking, an axis label of the user's own and a comment of two lines.
    auto second = ts::Run(Plotsmith("define " + b +
                                    " --table VEX_TableRangeSales --type bar --title Units --name 'Unit chart'"
                                    " --categories Product --colors Quarter --values Units --stacked"
                                    " --new-sheet 'Units sheet' --x-axis 'Units sold' --comment 'one\ntwo'"));
    ASSERT_EQ(second.status, 0) << second.output;
    EXPECT_EQ(second.output, "VEX_Chart2  \"Unit chart\"  bar  on Units sheet\n");

    auto exported = ts::Run(Plotsmith("export " + b + " 'Revenue by region'"));
    ASSERT_EQ(exported.status, 0) << exported.output;
    const std::string& one = exported.output;
    EXPECT_NE(one.find("title=\"Revenue by region\" type=\"column\" chart-worksheet=\"Sales\" "
                       "table-id=\"VEX_TableRangeSales\""),
              std::string::npos)
        << one;
    EXPECT_NE(one.find("<categories headings-in=\"rows\"><column name=\"Region\"/></categories>"
                       "<series headings-in=\"none\"/><values><column name=\"Revenue\"/></values>"),
              std::string::npos)
        << one;
    EXPECT_NE(one.find("<data-labels><data-label show=\"values\"/></data-labels>"), std::string::npos) << one;
    // The axis boxes filled themselves from the columns.
    EXPECT_NE(one.find("<axis type=\"label\" label=\"Region\" sticky=\"no\"/>"
                       "<axis type=\"value\" label=\"Revenue\" sticky=\"no\"/>"),
              std::string::npos)
        << one;

    auto two = ts::Run(Plotsmith("export " + b + " VEX_Chart2")).output;
    EXPECT_NE(two.find("name=\"Unit chart\" title=\"Units\" type=\"bar\" chart-worksheet=\"Units sheet\""),
              std::string::npos)
        << two;
    EXPECT_NE(two.find("<series headings-in=\"rows\"><column name=\"Quarter\"/></series>"), std::string::npos) << two;
    EXPECT_NE(two.find("<dynamic-attributes><attribute setting=\"stacked\"/></dynamic-attributes>"), std::string::npos)
        << two;
    // A bar lies on its side: the horizontal box is the value axis; typed, it is the user's.
    EXPECT_NE(two.find("<axis type=\"label\" label=\"Product\" sticky=\"no\"/>"
                       "<axis type=\"value\" label=\"Units sold\" sticky=\"yes\"/>"),
              std::string::npos)
        << two;
    EXPECT_NE(two.find("<comment>one\ntwo</comment>"), std::string::npos) << two;

    // The charts stand on their sheets, drawn.
    auto app = xlsx::NewApplication();
    auto wb = app->Open(book.string());
    EXPECT_EQ(wb->Worksheets()->Item("Sales")->ChartObjects()->Count(), 1);
    EXPECT_EQ(wb->Worksheets()->Item("Units sheet")->ChartObjects()->Count(), 1);
    auto listed = ts::Run(Plotsmith("list " + b)).output;
    EXPECT_NE(listed.find("VEX_Chart1  \"Revenue by region\"  column  on Sales  from VEX_TableRangeSales (Sales)  available"),
              std::string::npos)
        << listed;

    if (ts::HaveValidator()) {
        auto v = ts::ValidateXlsx({book});
        EXPECT_EQ(v.status, 0) << v.output;
    }
}

TEST(Define, PieAndBubbleTakeTheirOwnControls) {
    auto book = SalesBook("define-types");
    std::string b = ts::Quote(book.string());
    auto pie = ts::Run(Plotsmith("define " + b +
                                 " --table 'Quarterly sales' --type pie --categories Product --values Units"
                                 " --labels percentages --exploded --number-format '#,###;(#,###);'"));
    ASSERT_EQ(pie.status, 0) << pie.output;
    EXPECT_EQ(pie.output, "VEX_Chart1  \"Chart1\"  pie  on Sales\n");
    auto bubble = ts::Run(Plotsmith("define " + b +
                                    " --table 'Quarterly sales' --type bubble --categories Region --values Revenue"
                                    " --x-values Units --sizes Units --quadrants --name Bubbles"));
    ASSERT_EQ(bubble.status, 0) << bubble.output;

    auto p = ts::Run(Plotsmith("export " + b + " Chart1")).output;
    EXPECT_NE(p.find("number-format=\"#,###;(#,###);\""), std::string::npos) << p;
    EXPECT_NE(p.find("<categories headings-in=\"rows\"><column name=\"Product\"/></categories>"
                     "<series headings-in=\"none\"/><values><column name=\"Units\"/></values>"),
              std::string::npos)
        << p;
    EXPECT_NE(p.find("<data-labels><data-label show=\"percentages\"/></data-labels>"), std::string::npos) << p;
    EXPECT_NE(p.find("<dynamic-attributes><attribute setting=\"exploded\"/></dynamic-attributes>"), std::string::npos) << p;
    auto u = ts::Run(Plotsmith("export " + b + " bubbles")).output;
    EXPECT_NE(u.find("<values><column name=\"Revenue\"/></values><x-values><column name=\"Units\"/></x-values>"
                     "<bubble-sizes><column name=\"Units\"/></bubble-sizes>"),
              std::string::npos)
        << u;
    EXPECT_NE(u.find("<static-attributes><attribute setting=\"quadrants\"/></static-attributes>"), std::string::npos) << u;
}

TEST(Define, InputThePagesRefuseLeavesTheWorkbookAsItWas) {
    auto book = SalesBook("define-refused");
    std::string b = ts::Quote(book.string());
    std::string before = Bytes(book);
    struct Case {
        std::string args, says;
    } cases[] = {
        {"--table Nope --type column",
         "plotsmith: the workbook has no table \"Nope\"; its tables: \"Data1\", \"Quarterly sales\", \"Sales targets\"\n"},
        {"--table 'Quarterly sales' --type column --categories Nope",
         "plotsmith: \"Nope\" is not among the entries of lstCategories: \"Revenue\", \"Units\"\n"},
        {"--table 'Quarterly sales' --type column --values Region",
         "plotsmith: \"Region\" is not among the entries of cboValues: \"Revenue\", \"Units\"\n"},
        // The page's own rule and message.
        {"--table 'Quarterly sales' --type column --categories Region --colors Region",
         "Brindle Plotsmith: You cannot use the same entry for the 'Horizontal (X-axis) Shows' / and 'A Color "
         "Represents' selections\n"},
        {"--table 'Quarterly sales' --type column --sheet Nowhere",
         "plotsmith: \"Nowhere\" is not among the entries of cboSheet: \"Sales\", \"Targets\", \"Data1\"\n"},
    };
    for (auto& c : cases) {
        auto r = ts::Run(Plotsmith("define " + b + " " + c.args));
        EXPECT_EQ(r.status, 2) << c.args;
        EXPECT_EQ(r.output.find(c.says), 0u) << c.args << "\n" << r.output;
        EXPECT_NE(r.output.find("plotsmith: no chart was made; " + book.string() + " is unchanged\n"), std::string::npos)
            << r.output;
        EXPECT_EQ(Bytes(book), before) << c.args;
    }
    // Options that don't fit the type are refused before any page comes up.
    auto wrong = ts::Run(Plotsmith("define " + b + " --table Data1 --type pie --x-values Share"));
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.output, "plotsmith: --x-values doesn't apply to a pie chart\n");
    auto type = ts::Run(Plotsmith("define " + b + " --table Data1 --type radar"));
    EXPECT_EQ(type.status, 2);
    EXPECT_EQ(type.output, "plotsmith: --type 'radar' is none of bar, column, area, pie, bubble, strategic-bucket\n");
    EXPECT_EQ(Bytes(book), before);
}

}  // namespace
