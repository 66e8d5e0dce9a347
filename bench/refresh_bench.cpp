// The cost of refreshing all charts of a large workbook through the entry class, as the command line
// does, against the cost of opening and saving the same workbook unchanged. A refresh covers source
// validation, the pivot map, the data sheet and the drawing of each chart.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "common/clock.h"
#include "common/component.h"
#include "controller/plotsmith_controller.h"
#include "forms/headless.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"
#include "xlsx/engine.h"

namespace {

constexpr long kHeaderRows = 3;

std::string Group(const std::string& element, const std::string& headingsIn, const std::vector<std::string>& columns) {
    std::string s = "<" + element + (headingsIn.empty() ? "" : " headings-in=\"" + headingsIn + "\"") + ">";
    for (auto& col : columns) s += "<column name=\"" + col + "\"/>";
    return s + "</" + element + ">";
}

// Twenty definitions of the four types over the table, with categories and series in rows and in
// columns, and a single dimension.
std::vector<std::string> Definitions() {
    const char* types[] = {"column", "bar", "area", "pie"};
    struct Shape {
        std::string categories, series, values;
    };
    const std::vector<Shape> twoWay = {
        {Group("categories", "rows", {"Region"}), Group("series", "rows", {"Product"}), Group("values", "", {"Amount"})},
        {Group("categories", "rows", {"Product"}), Group("series", "rows", {"Quarter"}), Group("values", "", {"Units"})},
        {Group("categories", "rows", {"Quarter"}), Group("series", "columns", {"Amount", "Cost", "Margin"}), ""},
        {Group("categories", "columns", {"Units", "Price"}), Group("series", "rows", {"Region"}), ""},
        {Group("categories", "rows", {"Region"}), Group("series", "none", {}), Group("values", "", {"Margin"})},
    };
    const std::vector<Shape> pie = {
        {Group("categories", "rows", {"Region"}), Group("series", "none", {}), Group("values", "", {"Amount"})},
        {Group("categories", "rows", {"Product"}), Group("series", "none", {}), Group("values", "", {"Units"})},
        {Group("categories", "rows", {"Quarter"}), Group("series", "none", {}), Group("values", "", {"Cost"})},
        {Group("categories", "rows", {"Product"}), Group("series", "none", {}), Group("values", "", {"Price"})},
        {Group("categories", "rows", {"Region"}), Group("series", "none", {}), Group("values", "", {"Margin"})},
    };
    std::vector<std::string> out;
    for (int t = 0; t < 4; ++t) {
        const auto& shapes = std::string(types[t]) == "pie" ? pie : twoWay;
        for (size_t i = 0; i < shapes.size(); ++i) {
            std::string id = "VEX_Chart" + std::to_string(out.size() + 1);
            out.push_back("<chart id=\"" + id + "\" name=\"" + id + " name\" type=\"" + types[t] +
                          "\" table-id=\"VEX_TableRange1\">" + shapes[i].categories + shapes[i].series +
                          shapes[i].values + "</chart>");
        }
    }
    return out;
}

// A range table of `rows` data rows (title, a second header row and headings above them) with three
// label columns and five number columns, and twenty charts over it.
std::string RefreshBook(long rows) {
    std::string path = (std::filesystem::temp_directory_path() /
                        ("plotsmith-refresh-bench-" + std::to_string(rows) + ".xlsx")).string();
    static std::vector<long> made;
    for (long r : made)
        if (r == rows) return path;

    forms::CallbackDriver nobody(nullptr);
    forms::HeadlessFrontEnd fe(nobody);
    forms::CollectingDialogs dialogs;
    ps::SystemClock clock;
    ps::Component c(fe, dialogs, clock);
    auto app = xlsx::NewApplication();
    c.oApplication = app;
    c.oWorkbook = app->NewWorkbook();
    auto ws = c.oWorkbook->Worksheets()->Item(1L);
    ws->SetName("Sales");

    const char* regions[] = {"North", "South", "East", "West"};
    ws->Cells(1, 1)->SetValue("Sales by region");
    ws->Cells(2, 1)->SetValue("All figures in thousands");
    const char* headings[] = {"Region", "Product", "Quarter", "Amount", "Units", "Price", "Cost", "Margin"};
    for (long col = 1; col <= 8; ++col) ws->Cells(3, col)->SetValue(headings[col - 1]);
    for (long i = 0; i < rows; ++i) {
        long r = kHeaderRows + 1 + i;
        ws->Cells(r, 1)->SetValue(regions[i % 4]);
        ws->Cells(r, 2)->SetValue("Product " + std::to_string((i * 7) % 50));
        ws->Cells(r, 3)->SetValue("Q" + std::to_string(i % 8 / 4 + 2025) + "-" + std::to_string(i % 4 + 1));
        for (long col = 4; col <= 8; ++col) ws->Cells(r, col)->SetValue(static_cast<double>((i * col) % 9973) / 7);
    }
    c.oWorkbook->Names()->Add("VEX_TableRange1",
                              "=Sales!$A$1:$H$" + std::to_string(rows + kHeaderRows));
    auto charts = c.oWorkbook->Worksheets()->Add(nullptr, ws);
    charts->SetName("Charts");

    c.functions->RetrieveTableDefinitions();
    c.functions->RetrieveChartDefinitions();
    for (auto& xml : Definitions()) {
        auto doc = c.functions->ParseChartDefinition(xml);
        std::string id = host::CStr(doc->documentElement().getAttribute("id"));
        c.colCharts->Add(doc, id);
        c.functions->CreateEmptyChart("Charts", id);
        c.functions->SaveChartDefinition(doc);
    }
    if (!dialogs.messages.empty()) throw std::runtime_error("setting up the workbook showed a message");
    c.oWorkbook->SaveAs(path);
    made.push_back(rows);
    return path;
}

void BM_OpenAndSave(benchmark::State& state) {
    std::string path = RefreshBook(state.range(0));
    std::string out = path + ".saved.xlsx";
    for (auto _ : state) {
        auto app = xlsx::NewApplication();
        auto wb = app->Open(path);
        wb->SaveAs(out);
    }
}
BENCHMARK(BM_OpenAndSave)->Arg(200000)->Unit(benchmark::kMillisecond)->Iterations(2);

void BM_OpenRefreshAndSave(benchmark::State& state) {
    std::string path = RefreshBook(state.range(0));
    std::string out = path + ".refreshed.xlsx";
    for (auto _ : state) {
        auto app = xlsx::NewApplication();
        auto wb = app->Open(path);
        forms::CallbackDriver nobody(nullptr);
        forms::HeadlessFrontEnd fe(nobody);
        forms::CollectingDialogs dialogs;
        ps::SystemClock clock;
        ps::CPlotsmithController entry(fe, dialogs, clock);
        entry.RefreshPlotsmithData(app, "plotsmith", {});
        if (!dialogs.messages.empty()) {
            state.SkipWithError(("the refresh showed: " + dialogs.Texts().front()).c_str());
            break;
        }
        wb->SaveAs(out);
    }
}
BENCHMARK(BM_OpenRefreshAndSave)->Arg(200000)->Unit(benchmark::kMillisecond)->Iterations(1);

// A smaller table for profiling runs.
BENCHMARK(BM_OpenRefreshAndSave)->Arg(20000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
