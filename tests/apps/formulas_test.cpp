// A table of formulas a script wrote with openpyxl, which writes no values: charted with what the
// engine computes, and again after update-table changed what the formulas read. A formula the
// engine can't compute is named for its table and keeps the value the file has for it.
#include <gtest/gtest.h>

#include <fstream>

#include "cli.h"
#include "host/chart.h"
#include "host/workbook.h"
#include "xlsx/engine.h"

using namespace clitest;

namespace {

// sales.xlsx with a data sheet Data2 written by openpyxl: a row per segment of Data1, its
// revenue from Data1's share, and a column `heading` of `formula` ({r} the row).
ts::fs::path FormulasBook(const std::string& test, const std::string& heading, const std::string& formula) {
    auto book = SalesBook(test);
    auto py = ts::Python("import openpyxl\n"
                         "wb = openpyxl.load_workbook('" + book.string() + "')\n"
                         "ws = wb.create_sheet('Data2')\n"
                         "ws.append(['Segment', 'Revenue', '" + heading + "'])\n"
                         "for r, segment in enumerate(['Retail', 'Online', 'Wholesale'], start=2):\n"
                         "    ws.append([segment, f'=Data1!B{r}*1000', f'=" + formula + "'])\n"
                         "wb.save('" + book.string() + "')\n");
    EXPECT_EQ(py.status, 0) << py.output;
    return book;
}

// Data2's values as the file has them for other readers, by openpyxl: "420 350 230 | None None None".
std::string Cached(const ts::fs::path& book) {
    auto py = ts::Python("import openpyxl\n"
                         "ws = openpyxl.load_workbook('" + book.string() + "', data_only=True)['Data2']\n"
                         "column = lambda c: ' '.join(str(ws.cell(r, c).value) for r in range(2, 5))\n"
                         "print(column(2), '|', column(3))\n");
    EXPECT_EQ(py.status, 0) << py.output;
    return py.output;
}

// What the chart on sheet Chart draws.
std::vector<double> Drawn(const ts::fs::path& book) {
    auto wb = xlsx::NewApplication()->Open(book.string());
    auto series = wb->Worksheets()->Item("Chart")->ChartObjects()->Item(1)->Chart()->SeriesCollection();
    std::vector<double> out;
    if (series->Count() == 1)
        for (auto& v : series->Item(1L)->Values()) out.push_back(host::CDbl(v));
    return out;
}

// Data1's shares become 0.5, 0.3 and 0.2.
ts::CommandResult UpdateShares(const ts::fs::path& book) {
    auto csv = book.parent_path() / "shares.csv";
    std::ofstream(csv) << "Segment,Share\nRetail,0.5\nOnline,0.3\nWholesale,0.2\n";
    return ts::Run(Plotsmith("update-table " + Q(book) + " Data1 --from " + Q(csv)));
}

}  // namespace

TEST(Formulas, OpenpyxlFormulasAreChartedComputedAndAgainAfterUpdateTable) {
    ASSERT_TRUE(ts::HaveOpenpyxl()) << "python3-openpyxl is needed (scripts/install-deps)";
    auto book = FormulasBook("formulas-openpyxl", "Margin", "FOO(B{r})");
    const std::string named =
        "plotsmith: table 'Data2': 3 formulas not computed, kept as the file has them: "
        "Data2!C2:C4 =FOO(B2) (FOO is a function the engine doesn't compute)\n";

    auto r = ts::Run(Plotsmith("define " + Q(book) +
                               " --table Data2 --type column --categories Segment --values Revenue --new-sheet Chart"));
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_TRUE(Has(r.output, named)) << r.output;
    EXPECT_EQ(Drawn(book), (std::vector<double>{420, 350, 230}));
    EXPECT_EQ(Cached(book), "420 350 230 | None None None\n");

    r = UpdateShares(book);
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_TRUE(Has(r.output, named)) << r.output;
    EXPECT_EQ(Cached(book), "500 300 200 | None None None\n");
    r = ts::Run(Plotsmith("refresh " + Q(book)));
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(Drawn(book), (std::vector<double>{500, 300, 200}));
}

TEST(Formulas, OneTheEngineCantComputeKeepsTheValueLibreOfficeSavedForIt) {
    ASSERT_TRUE(ts::HaveOpenpyxl()) << "python3-openpyxl is needed (scripts/install-deps)";
    ASSERT_TRUE(ts::HaveLibreOffice()) << "LibreOffice is needed (scripts/install-deps)";
    auto written = FormulasBook("formulas-libreoffice", "Rounded", "ROUND(Data1!B{r}*333,0)");
    // LibreOffice computes every formula and saves the values with them.
    auto book = ts::LibreOfficeConvert(written, "xlsx", written.parent_path() / "saved");
    ASSERT_FALSE(book.empty());
    ASSERT_EQ(Cached(book), "420 350 230 | 140 117 77\n");

    auto r = UpdateShares(book);
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_TRUE(Has(r.output, "plotsmith: table 'Data2': 3 formulas not computed, kept as the file has them: "
                              "Data2!C2:C4 =ROUND(Data1!B2*333,0) (ROUND is a function the engine doesn't compute)\n"))
        << r.output;
    EXPECT_EQ(Cached(book), "500 300 200 | 140 117 77\n");
}
