// Plotsmith at scale: the generated sales table (sales_table.h) under the twenty charts of
// scale-charts.xml, at 20,000 and 200,000 rows. Each case runs in a process of its own, forked for
// it, so that the peak memory it reports (peak_MiB, the process's maximum resident set) is that
// case's alone, as /usr/bin/time -v would report it for a command:
//   OpenRefreshAndSave  open, refresh of all charts through the entry class, save: plotsmith refresh
//   OpenAndSave         open and save untouched
//
//   bench_refresh                                      both cases at 20,000 and 200,000 rows
//   PLOTSMITH_BENCH_ROWS=1000000 bench_refresh         other sizes, comma separated
//   bench_refresh --write-workbook PATH ROWS           writes the workbook, to time other programs on it
//   bench_refresh --open-save IN OUT                   opens IN and saves it untouched as OUT, once
#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "builder/ps_chart_builder.h"
#include "common/clock.h"
#include "common/component.h"
#include "controller/plotsmith_controller.h"
#include "forms/headless.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"
#include "sales_table.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

namespace {

namespace fs = std::filesystem;

// Rows written through the object model, over which the charts are built when they are placed;
// further rows are streamed into the sheet part, far faster than the object model takes them.
constexpr long kSeedRows = 1000;

// The component as the command line holds it: pages close as cancelled, messages are collected.
struct Host {
    forms::CallbackDriver nobody{nullptr};
    forms::HeadlessFrontEnd frontEnd{nobody};
    forms::CollectingDialogs dialogs;
    ps::SystemClock clock;
    ps::CPlotsmithController entry{frontEnd, dialogs, clock};

    void Check(const std::string& what) {
        if (!dialogs.messages.empty()) throw std::runtime_error(what + " showed: " + dialogs.Texts().front());
    }
};

std::string Slurp(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + p.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

// The charts placed on a new sheet as `plotsmith add` places them: each drawn over the table and
// its definition stored.
void PlaceCharts(const host::Ref<xlsx::EngineApplication>& app, const host::Ref<host::Workbook>& book) {
    Host h;
    auto& c = h.entry.component();
    c.oApplication = app;
    c.oWorkbook = book;
    c.functions->RetrieveTableDefinitions();
    c.functions->RetrieveChartDefinitions();
    if (!c.functions->CreateChartWorksheet("Charts")) throw std::runtime_error("no sheet for the charts");
    auto all = c.functions->ParseChartDefinition(Slurp(fs::path(PLOTSMITH_BENCH_DIR) / "scale-charts.xml"));
    for (auto chart : all->documentElement().selectNodes("chart")) {
        auto doc = c.functions->ParseChartDefinition(chart.xml());
        c.sChartID = host::CStr(doc->documentElement().getAttribute("id"));
        c.oChartDoc = doc;
        c.lMethodType = ps::mtNew;
        if (!c.functions->PlaceChartDefinition("Charts")) throw std::runtime_error("cannot place " + c.sChartID);
        c.builder->RefreshChart(c.sChartID);
        c.functions->SaveChartDefinition(doc);
    }
    h.Check("placing the charts");
}

void AppendNumber(std::string& out, long v) {
    char buf[24];
    out.append(buf, std::to_chars(buf, buf + sizeof buf, v).ptr);
}

// The sheet data of the whole table as the engine writes cells: texts as shared strings, numbers
// in their shortest exact form.
std::string SheetData(long rows, const std::map<std::string, long>& strings) {
    std::string out;
    out.reserve(static_cast<size_t>(rows) * 360 + 4096);
    out += "<sheetData>";
    auto cell = [&](long row, long col, const host::Variant& v) {
        out += "<c r=\"";
        out += char('A' + col - 1);
        AppendNumber(out, row);
        if (v.IsString()) {
            out += "\" t=\"s\"><v>";
            AppendNumber(out, strings.at(v.RawString()));
        } else {
            out += "\"><v>";
            char buf[32];
            out.append(buf, std::to_chars(buf, buf + sizeof buf, v.RawDouble()).ptr);
        }
        out += "</v></c>";
    };
    auto row = [&](long r, auto&& cells) {
        out += "<row r=\"";
        AppendNumber(out, r);
        out += "\">";
        cells();
        out += "</row>";
    };
    row(1, [&] { cell(1, 1, salestable::kTitle); });
    row(2, [&] { cell(2, 1, salestable::kSubtitle); });
    row(3, [&] {
        for (long col = 1; col <= salestable::kColumns; ++col) cell(3, col, salestable::kHeadings[col - 1]);
    });
    for (long i = 0; i < rows; ++i) {
        long r = salestable::kHeaderRows + 1 + i;
        row(r, [&] {
            for (long col = 1; col <= salestable::kColumns; ++col) cell(r, col, salestable::Cell(i, col));
        });
    }
    return out + "</sheetData>";
}

// Replaces the table of the saved seed with `rows` rows and widens its name to them: the workbook
// then stands as after the host refreshed a table, its charts awaiting a refresh.
void GrowTable(const std::string& path, long rows) {
    auto pkg = xlsx::Package::Open(path);
    auto book = pkg->Edit("xl/workbook.xml").document_element();
    std::string sheetPart;
    for (auto sheet : book.child("sheets").children("sheet"))
        if (std::string(sheet.attribute("name").value()) == "Sales")
            for (auto a : sheet.attributes())
                if (std::string(a.name()).ends_with(":id")) sheetPart = pkg->Target("xl/workbook.xml", a.value());
    for (auto name : book.child("definedNames").children("definedName"))
        if (std::string(name.attribute("name").value()) == "VEX_TableRange1")
            name.text().set(salestable::TableAddress(rows).substr(1).c_str());

    std::map<std::string, long> strings;
    for (auto si : pkg->Read("xl/sharedStrings.xml").document_element().children("si"))
        strings.emplace(si.child("t").text().get(), static_cast<long>(strings.size()));

    std::string xml = pkg->Bytes(sheetPart);
    size_t from = xml.find("<sheetData"), to = xml.find("</sheetData>");
    size_t end = to == std::string::npos ? xml.find("/>", from) + 2 : to + 12;
    if (from == std::string::npos || end < from) throw std::runtime_error("the seed sheet has no sheet data");
    xml.replace(from, end - from, SheetData(rows, strings));
    if (size_t d = xml.find("<dimension ref=\""); d != std::string::npos) {
        size_t q = xml.find('"', d + 16);
        xml.replace(d + 16, q - d - 16, "A1:H" + std::to_string(rows + salestable::kHeaderRows));
    }
    pkg->Put(sheetPart, std::move(xml));
    pkg->Save(path);
}

void WriteWorkbook(const std::string& path, long rows) {
    {
        auto app = xlsx::NewApplication();
        auto book = app->NewWorkbook();
        salestable::Fill(*book, *book->Worksheets()->Item(1L), std::min(rows, kSeedRows));
        PlaceCharts(app, book);
        book->SaveAs(path);
    }
    if (rows > kSeedRows) GrowTable(path, rows);
}

void OpenAndSave(const std::string& in, const std::string& out) {
    auto app = xlsx::NewApplication();
    app->Open(in)->SaveAs(out);
}

// As `plotsmith refresh` does it, but saved elsewhere so that every run starts from the same file.
void OpenRefreshAndSave(const std::string& in, const std::string& out) {
    auto app = xlsx::NewApplication();
    auto book = app->Open(in);
    Host h;
    h.entry.RefreshPlotsmithData(app, "plotsmith", {});
    h.Check("the refresh");
    book->SaveAs(out);
}

struct Outcome {
    double seconds = 0, peakMiB = 0;
    bool ok = false;
};

// Runs `work` in a child process: its wall time from fork to exit, and its own peak memory.
Outcome InChild(const std::function<void()>& work) {
    std::fflush(nullptr);
    auto start = std::chrono::steady_clock::now();
    pid_t pid = fork();
    if (pid < 0) return {};
    if (pid == 0) {
        int code = 0;
        try {
            work();
        } catch (const std::exception& e) {
            std::fprintf(stderr, "%s\n", e.what());
            code = 1;
        }
        std::fflush(nullptr);
        _exit(code);
    }
    int status = 0;
    struct rusage ru {};
    if (wait4(pid, &status, 0, &ru) != pid) return {};
    Outcome o;
    o.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    o.peakMiB = static_cast<double>(ru.ru_maxrss) / 1024;
    o.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return o;
}

// Written once per process, in a child, so that what the writing takes stays out of the measures.
std::string Workbook(long rows) {
    static std::set<long> made;
    std::string path = (fs::temp_directory_path() / ("plotsmith-scale-" + std::to_string(rows) + ".xlsx")).string();
    if (!made.count(rows)) {
        if (!InChild([&] { WriteWorkbook(path, rows); }).ok) return {};
        made.insert(rows);
    }
    return path;
}

void Measure(benchmark::State& state, void (*operation)(const std::string&, const std::string&)) {
    std::string in = Workbook(state.range(0));
    if (in.empty()) {
        state.SkipWithError("the workbook could not be written");
        return;
    }
    std::string out = in + ".saved.xlsx";
    for (auto _ : state) {
        Outcome o = InChild([&] { operation(in, out); });
        if (!o.ok) {
            state.SkipWithError("the operation failed");
            break;
        }
        state.SetIterationTime(o.seconds);
        state.counters["peak_MiB"] = o.peakMiB;
    }
    fs::remove(out);
}

void BM_OpenRefreshAndSave(benchmark::State& state) { Measure(state, OpenRefreshAndSave); }
void BM_OpenAndSave(benchmark::State& state) { Measure(state, OpenAndSave); }

std::vector<long> Sizes() {
    const char* env = std::getenv("PLOTSMITH_BENCH_ROWS");
    std::string list = env && *env ? env : "20000,200000";
    std::vector<long> out;
    for (size_t at = 0; at < list.size();) {
        size_t comma = list.find(',', at);
        if (comma == std::string::npos) comma = list.size();
        out.push_back(std::stol(list.substr(at, comma - at)));
        at = comma + 1;
    }
    return out;
}

int Usage() {
    std::fprintf(stderr,
                 "usage: bench_refresh [benchmark options]\n"
                 "       bench_refresh --write-workbook PATH ROWS\n"
                 "       bench_refresh --open-save IN OUT\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    std::string mode = argc > 1 ? argv[1] : "";
    try {
        if (mode == "--write-workbook") {
            if (argc != 4) return Usage();
            WriteWorkbook(argv[2], std::stol(argv[3]));
            return 0;
        }
        if (mode == "--open-save") {
            if (argc != 4) return Usage();
            OpenAndSave(argv[2], argv[3]);
            return 0;
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "bench_refresh: %s\n", e.what());
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return Usage();
    for (auto* b : {benchmark::RegisterBenchmark("OpenRefreshAndSave", BM_OpenRefreshAndSave),
                    benchmark::RegisterBenchmark("OpenAndSave", BM_OpenAndSave)}) {
        for (long rows : Sizes()) b->Arg(rows);
        b->UseManualTime()->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
