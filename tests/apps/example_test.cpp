// The main job as the README's first command runs it: four charts of the example, drawn from
// their tables, in a workbook that validates and that LibreOffice renders.
#include <gtest/gtest.h>

#include "cli.h"
#include "host/chart.h"
#include "host/chart_constants.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "xlsx/engine.h"

using namespace clitest;

namespace {

TEST(ExampleJob, FourChartsValidateAndRenderInLibreOffice) {
    const ts::fs::path source = ts::fs::path(PLOTSMITH_SOURCE_DIR);
    const ts::fs::path build = PLOTSMITH_BINARY_DIR;
    const std::string example = Slurp(source / "examples/sales.xlsx");
    auto r = ts::Run("PLOTSMITH_BUILD=" + ts::Quote(build.string()) + " PLOTSMITH_SHARED_DIR=" +
                     ts::Quote(ts::SharedDir().string()) + " " + ts::Quote((source / "scripts/run-example").string()));
    ASSERT_EQ(r.status, 0) << r.output;
    const auto book = build / "example/sales-charts.xlsx";
    EXPECT_NE(r.output.find("Workbook with charts: " + book.string() + "\n"), std::string::npos) << r.output;
    EXPECT_EQ(Slurp(source / "examples/sales.xlsx"), example) << "the source workbook stays as it was";
    // The job ran without a message from the component: each chart could be built.
    EXPECT_EQ(r.output.find("Chart '"), std::string::npos) << r.output;

    struct Expected {
        const char* sheet;
        long type;
        long series;
    };
    const Expected charts[] = {
        {"Column chart", host::xlColumnClustered, 4},  // quarters
        {"Bar chart", host::xlBarStacked, 4},          // regions
        {"Area chart", host::xlAreaStacked, 3},        // products
        {"Pie chart", host::xlPie, 1},
    };
    auto app = xlsx::NewApplication();
    auto wb = app->Open(book.string());
    for (auto& e : charts) {
        SCOPED_TRACE(e.sheet);
        auto sheet = wb->Worksheets()->Item(e.sheet);
        ASSERT_EQ(sheet->ChartObjects()->Count(), 1);
        auto chart = sheet->ChartObjects()->Item(1)->Chart();
        EXPECT_EQ(chart->ChartType(), e.type);
        EXPECT_EQ(chart->SeriesCollection()->Count(), e.series);
    }

    if (ts::HaveValidator()) {
        EXPECT_NE(r.output.find("Schema check: valid"), std::string::npos) << r.output;
    }
    if (ts::HaveLibreOffice()) {
        // One picture per visible sheet, named after it; the hidden sheets' pages are gone.
        for (auto* png : {"sales.png", "targets.png", "data1.png", "column-chart.png", "bar-chart.png", "area-chart.png",
                          "pie-chart.png"}) {
            auto file = build / "example" / png;
            EXPECT_TRUE(ts::fs::exists(file) && ts::fs::file_size(file) > 0) << png << "\n" << r.output;
        }
        long pictures = 0;
        for (auto& f : ts::fs::directory_iterator(build / "example")) pictures += f.path().extension() == ".png";
        EXPECT_EQ(pictures, 7);
    }
}

}  // namespace
