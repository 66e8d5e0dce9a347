// The engine's cost of the work every operation pays: filling cells through the object model,
// loading and saving a large workbook, reading every cell back.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <map>

#include "xlsx/engine.h"

namespace {

constexpr long kColumns = 8;

std::string LargeBook(long rows) {
    static std::map<long, std::string> made;
    if (auto it = made.find(rows); it != made.end()) return it->second;
    std::string path = (std::filesystem::temp_directory_path() / ("plotsmith-bench-" + std::to_string(rows) + ".xlsx")).string();
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = wb->Worksheets()->Item(1L);
    const char* regions[] = {"North", "South", "East", "West"};
    for (long c = 1; c <= kColumns; ++c) ws->Cells(1, c)->SetValue("Column " + std::to_string(c));
    for (long r = 2; r <= rows + 1; ++r) {
        ws->Cells(r, 1)->SetValue(regions[r % 4]);
        ws->Cells(r, 2)->SetValue("Item " + std::to_string(r % 500));
        for (long c = 3; c <= kColumns; ++c) ws->Cells(r, c)->SetValue(static_cast<double>((r * c) % 9973) / 7);
    }
    wb->Names()->Add("VEX_TableRange1", "=Sheet1!$A$1:$H$" + std::to_string(rows + 1));
    wb->SaveAs(path);
    made[rows] = path;
    return path;
}

void BM_FillCells(benchmark::State& state) {
    for (auto _ : state) {
        auto app = xlsx::NewApplication();
        auto ws = app->NewWorkbook()->Worksheets()->Item(1L);
        for (long r = 1; r <= state.range(0); ++r)
            for (long c = 1; c <= kColumns; ++c) ws->Cells(r, c)->SetValue(static_cast<double>(r * c));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * kColumns);
}
BENCHMARK(BM_FillCells)->Arg(20000)->Unit(benchmark::kMillisecond);

void BM_LoadAndSave(benchmark::State& state) {
    std::string path = LargeBook(state.range(0));
    std::string out = path + ".out.xlsx";
    for (auto _ : state) {
        auto app = xlsx::NewApplication();
        auto wb = app->Open(path);
        wb->SaveAs(out);
    }
}
BENCHMARK(BM_LoadAndSave)->Arg(200000)->Unit(benchmark::kMillisecond)->Iterations(3);

// The edited sheet is parsed and written anew; the other parts are copied.
void BM_EditOneCellAndSave(benchmark::State& state) {
    std::string path = LargeBook(state.range(0));
    std::string out = path + ".edited.xlsx";
    for (auto _ : state) {
        auto app = xlsx::NewApplication();
        auto wb = app->Open(path);
        wb->Worksheets()->Item(1L)->Cells(2, 3)->SetValue(1.5);
        wb->SaveAs(out);
    }
}
BENCHMARK(BM_EditOneCellAndSave)->Arg(200000)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_ReadAllCells(benchmark::State& state) {
    std::string path = LargeBook(state.range(0));
    for (auto _ : state) {
        auto app = xlsx::NewApplication();
        auto ws = app->Open(path)->Worksheets()->Item(1L);
        double sum = 0;
        for (long r = 2; r <= state.range(0) + 1; ++r)
            for (long c = 3; c <= kColumns; ++c) sum += host::CDbl(ws->Cells(r, c)->Value());
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * (kColumns - 2));
}
BENCHMARK(BM_ReadAllCells)->Arg(200000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
