// plotsmith in a report pipeline: the progress of a refresh on a terminal, and many workbooks
// refreshed side by side, one of them damaged.
#include <gtest/gtest.h>

#include <fstream>

#include "cli.h"

using namespace clitest;

namespace {

// Runs a command with a pseudo-terminal as its standard error, as a person at a terminal does.
ts::CommandResult OnTerminal(const std::string& command) { return ts::Run("script -qec " + ts::Quote(command) + " /dev/null"); }

}  // namespace

TEST(Pipeline, ARefreshShowsItsProgressOnATerminalOnly) {
    auto book = BookWithCharts("pipeline-progress");
    auto r = OnTerminal(Plotsmith("refresh " + Q(book)));
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_TRUE(Has(r.output, "] 1/2 Revenue by region")) << r.output;
    EXPECT_TRUE(Has(r.output, "] 2/2 Units by product")) << r.output;
    EXPECT_TRUE(Has(r.output, "\r\033[K")) << "drawn over in place";

    r = OnTerminal(Plotsmith("refresh-table " + Q(book) + " \"quarterly sales\""));
    EXPECT_TRUE(Has(r.output, "] 2/2 ")) << r.output;
    r = OnTerminal(Plotsmith("--quiet refresh " + Q(book)));
    EXPECT_FALSE(Has(r.output, "1/2")) << r.output;
    r = ts::Run(Plotsmith("refresh " + Q(book)));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.output, "") << "no terminal, no bar";
}

TEST(Pipeline, ManyWorkbooksAreRefreshedSideBySideAndADamagedOneFailsAlone) {
    auto first = BookWithCharts("pipeline-many-1");
    auto second = BookWithCharts("pipeline-many-2");
    auto damaged = ts::ScratchDir("pipeline-many-3") / "damaged.xlsx";
    std::ofstream(damaged, std::ios::binary) << "PK\x03\x04 not a workbook";
    const std::string before = Slurp(damaged);

    auto r = ts::Run(Plotsmith("refresh -j 2 " + Q(first) + " " + Q(damaged) + " " + Q(second)));
    EXPECT_EQ(r.status, 2) << r.output;
    EXPECT_TRUE(Has(r.output, first.string() + ": refreshed\n")) << r.output;
    EXPECT_TRUE(Has(r.output, second.string() + ": refreshed\n")) << r.output;
    EXPECT_TRUE(Has(r.output, damaged.string() + ": failed: ")) << r.output;
    EXPECT_TRUE(Has(r.output, "2 of 3 workbooks refreshed, 1 failed\n")) << r.output;
    EXPECT_EQ(Slurp(damaged), before);
    auto listed = ts::Run(Plotsmith("list " + Q(second)));
    EXPECT_TRUE(Has(listed.output, "Charts (2):")) << listed.output;
}
