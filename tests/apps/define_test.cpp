// plotsmith define: the wizard's pages filled from options, as a user would fill them; the
// workbook saved with the new chart, or left as it was when a page refused the input.
#include <gtest/gtest.h>

#include "cli.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "xlsx/engine.h"

using namespace clitest;

namespace {

void ExpectParts(const std::string& text, std::initializer_list<const char*> parts) {
    for (auto* part : parts) EXPECT_TRUE(Has(text, part)) << part << "\nin\n" << text;
}

TEST(Define, MakesChartsThroughThePagesAndSavesThem) {
    auto book = SalesBook("define-make");
    std::string b = Q(book);

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

    // The axis boxes filled themselves from the columns.
    ExpectParts(ts::Run(Plotsmith("export " + b + " 'Revenue by region'")).output,
                {"title=\"Revenue by region\" type=\"column\" chart-worksheet=\"Sales\" table-id=\"VEX_TableRangeSales\"",
                 "<categories headings-in=\"rows\"><column name=\"Region\"/></categories>"
                 "<series headings-in=\"none\"/><values><column name=\"Revenue\"/></values>",
                 "<data-labels><data-label show=\"values\"/></data-labels>",
                 "<axis type=\"label\" label=\"Region\" sticky=\"no\"/><axis type=\"value\" label=\"Revenue\" sticky=\"no\"/>"});
    // A bar lies on its side: the horizontal box is the value axis; typed, it is the user's.
    ExpectParts(ts::Run(Plotsmith("export " + b + " VEX_Chart2")).output,
                {"name=\"Unit chart\" title=\"Units\" type=\"bar\" chart-worksheet=\"Units sheet\"",
                 "<series headings-in=\"rows\"><column name=\"Quarter\"/></series>",
                 "<dynamic-attributes><attribute setting=\"stacked\"/></dynamic-attributes>",
                 "<axis type=\"label\" label=\"Product\" sticky=\"no\"/><axis type=\"value\" label=\"Units sold\" sticky=\"yes\"/>",
                 "<comment>one\ntwo</comment>"});

    // The charts stand on their sheets, drawn.
    auto wb = xlsx::NewApplication()->Open(book.string());
    EXPECT_EQ(wb->Worksheets()->Item("Sales")->ChartObjects()->Count(), 1);
    EXPECT_EQ(wb->Worksheets()->Item("Units sheet")->ChartObjects()->Count(), 1);
    ExpectParts(ts::Run(Plotsmith("list " + b)).output,
                {"VEX_Chart1  \"Revenue by region\"  column  on Sales  from VEX_TableRangeSales (Sales)  available"});
    if (ts::HaveValidator()) {
        auto v = ts::ValidateXlsx({book});
        EXPECT_EQ(v.status, 0) << v.output;
    }
}

TEST(Define, PieAndBubbleTakeTheirOwnControls) {
    auto book = SalesBook("define-types");
    std::string b = Q(book);
    auto pie = ts::Run(Plotsmith("define " + b +
                                 " --table 'Quarterly sales' --type pie --categories Product --values Units"
                                 " --labels percentages --exploded --number-format '#,###;(#,###);'"));
    ASSERT_EQ(pie.status, 0) << pie.output;
    EXPECT_EQ(pie.output, "VEX_Chart1  \"Chart1\"  pie  on Sales\n");
    auto bubble = ts::Run(Plotsmith("define " + b +
                                    " --table 'Quarterly sales' --type bubble --categories Region --values Revenue"
                                    " --x-values Units --sizes Units --quadrants --name Bubbles"));
    ASSERT_EQ(bubble.status, 0) << bubble.output;

    ExpectParts(ts::Run(Plotsmith("export " + b + " Chart1")).output,
                {"number-format=\"#,###;(#,###);\"",
                 "<categories headings-in=\"rows\"><column name=\"Product\"/></categories>"
                 "<series headings-in=\"none\"/><values><column name=\"Units\"/></values>",
                 "<data-labels><data-label show=\"percentages\"/></data-labels>",
                 "<dynamic-attributes><attribute setting=\"exploded\"/></dynamic-attributes>"});
    ExpectParts(ts::Run(Plotsmith("export " + b + " bubbles")).output,
                {"<values><column name=\"Revenue\"/></values><x-values><column name=\"Units\"/></x-values>"
                 "<bubble-sizes><column name=\"Units\"/></bubble-sizes>",
                 "<static-attributes><attribute setting=\"quadrants\"/></static-attributes>"});
}

TEST(Define, InputThePagesRefuseLeavesTheWorkbookAsItWas) {
    auto book = SalesBook("define-refused");
    std::string b = Q(book);
    std::string before = Slurp(book);
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
        EXPECT_TRUE(Has(r.output, "plotsmith: no chart was made; " + book.string() + " is unchanged\n")) << r.output;
        EXPECT_EQ(Slurp(book), before) << c.args;
    }
    // Options that don't fit the type are refused before any page comes up.
    auto wrong = ts::Run(Plotsmith("define " + b + " --table Data1 --type pie --x-values Share"));
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.output, "plotsmith: --x-values doesn't apply to a pie chart\n");
    auto type = ts::Run(Plotsmith("define " + b + " --table Data1 --type radar"));
    EXPECT_EQ(type.status, 2);
    EXPECT_EQ(type.output, "plotsmith: --type 'radar' is none of bar, column, area, pie, bubble, strategic-bucket\n");
    EXPECT_EQ(Slurp(book), before);
}

}  // namespace
