// The read-back over charts that the application itself made: every chart of the corpus reads
// into a fresh definition without a message, the definitions say what the charts show, and the
// chart parts save byte for byte as they were.
#include <map>
#include <utility>

#include "readback_world.h"
#include "xlsx/package.h"

using readbacktest::ReadbackWorld;

TEST(CorpusReadBack, ApplicationMadeChartsReadBackWithoutAMessage) {
    auto files = testsupport::CorpusWorkbooks();
    if (files.empty()) GTEST_SKIP() << "../shared is not beside the source tree";

    // "file#n" (n-th chart object over all worksheets) to "type|title|settings|legend".
    std::map<std::string, std::string> seen;
    long charts = 0;
    for (auto& path : files) {
        ReadbackWorld w;
        auto book = w.app->Open(path.string());
        w.c.oWorkbook = book;
        long n = 0;
        for (auto& sheet : host::Each(*book->Worksheets())) {
            auto objects = sheet->ChartObjects();
            for (long i = 1; i <= objects->Count(); ++i) {
                auto oChart = objects->Item(i)->Chart();
                auto doc = w.f.ParseChartDefinition("<chart id=\"VEX_Chart1\" type=\"unknown\"/>");
                w.r.RevEngineerChart(oChart, doc);
                w.r.RevEngineerComment(nullptr, doc);
                auto chart = doc->documentElement();
                std::string settings;
                for (auto a : chart.selectNodes("dynamic-attributes/attribute")) settings += " " + w.Attr(a, "setting");
                std::string key = path.filename().string() + "#" + std::to_string(++n);
                auto legend = w.Persist(chart, "legend-position");
                seen[key] = w.Attr(chart, "type") + "|" + w.Attr(chart, "title") + "|" + settings + "|" +
                            (legend.empty() ? "" : legend.front());
                EXPECT_TRUE(w.dialogs.Texts().empty()) << key << ": " << w.dialogs.Texts().front();
                w.dialogs.messages.clear();
                ++charts;
            }
        }
        if (n == 0) continue;
        auto out = testsupport::ScratchDir("readback-corpus") / path.filename();
        book->SaveAs(out.string());
        auto before = xlsx::Package::Open(path.string()), after = xlsx::Package::Open(out.string());
        for (auto& part : before->Parts())
            EXPECT_TRUE(!part.starts_with("xl/charts/") || before->Bytes(part) == after->Bytes(part))
                << path << " " << part;
    }
    EXPECT_GT(charts, 150);
    const std::pair<const char*, const char*> sample[] = {
        {"php_32readwriteAreaPercentageChart3D1.xlsx#1", "area|Sales| 3D stacked 100%|legend-position=-4152"},
        {"php_32readwriteBarStackedChart3D1.xlsx#1", "bar|Sales| 3D stacked|legend-position=-4152"},
        {"php_32readwritePieChartExploded3D1.xlsx#2", "pie|Exploded Pie 3D| 3D exploded|legend-position=-4152"},
        {"php_32readwriteBubbleChart1.xlsx#2", "bubble|Bubble Chart||legend-position=-4152"},
        {"php_32readwriteDonutChart4.xlsx#1", "unknown|Qtr 1 - 2008||legend-position=-4152"},
        {"exceljs_test-update-ref.xlsx#1", "column|Most liked distro||"},
        {"oxsdk_legend_top_00D4EE78.xlsx#1", "column|All Consuming||legend-position=-4160"},
        {"aspose_sampleModifyPieChart_legend_left.xlsx#1", "pie|||legend-position=-4131"},
    };
    for (auto& [key, expected] : sample) {
        if (!seen.count(key)) continue;  // a corpus without that file
        EXPECT_EQ(seen[key], expected) << key;
    }
}
