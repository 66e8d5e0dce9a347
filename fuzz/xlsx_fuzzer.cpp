// A libFuzzer target over arbitrary bytes taken as an .xlsx workbook.
//
// Each input is opened with the engine, read through the host object model the way the component
// reads a workbook (sheets, used ranges with cell values and displayed text, shapes, chart objects
// with their series, titles and axes, defined names), then loaded as a host add-in loads it: table
// and chart definitions, with the read-back of hand-made chart changes. Last the workbook is saved
// to scratch space, since every command that changes a workbook saves it.
//
// What counts as a finding: a sanitizer report, a hang (-timeout), memory past -rss_limit_mb or a
// single allocation past -malloc_limit_mb, and any exception other than the two the engine
// documents for bad input (xlsx::PackageError at open or save, host::Error from a member), which
// escapes to libFuzzer and aborts. The component's own error blocks swallow what happens below
// them, so the direct walk over the object model is what brings other engine exceptions to light.
//
// Mutation (part_mutator.cpp): byte flips mostly break the zip, so the custom mutator unpacks an
// input, mutates the XML of one part and packs it again; some inputs still get raw byte mutations
// so that the zip reader stays under test. PLOTSMITH_FUZZ_RAW=1 turns the part mutations off.
//
// Build and run with scripts/fuzz (it also replays fuzz/regressions/ first). By hand:
//   cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++-14 -DPLOTSMITH_FUZZ=ON -DPLOTSMITH_TESTS=OFF
//   cmake --build build-fuzz --target plotsmith_fuzz_xlsx -j2
//   build-fuzz/fuzz/plotsmith_fuzz_xlsx -dict=fuzz/xlsx.dict -max_len=2097152 -timeout=10 \
//       -rss_limit_mb=2048 CORPUS_DIR SEED_DIR...
//   build-fuzz/fuzz/plotsmith_fuzz_xlsx CRASH_FILE          replays one input
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "common/clock.h"
#include "common/component.h"
#include "controller/plotsmith_controller.h"
#include "forms/headless.h"
#include "host/chart.h"
#include "host/chart_constants.h"
#include "host/constants.h"
#include "host/drawing.h"
#include "host/error.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

namespace {

// Bounds on what the walk reads, so that a workbook that legitimately declares a huge sheet
// costs the walk no more than a small one; the component reads what it reads.
constexpr long kMaxCells = 4000;
constexpr long kMaxRows = 200;
constexpr long kMaxColumns = 40;
constexpr long kMaxItems = 64;  // shapes, chart objects, series, points, names per collection
constexpr int kMaxGroupDepth = 4;
constexpr std::uint64_t kMaxInflated = 64u << 20;

// Inputs must replay alike: the component's yield reads the clock.
class StillClock : public ps::Clock {
public:
    double Timer() override { return 0; }
};

// Errors a member documents for a workbook it can't answer about; the walk goes on past them.
template <class F>
void Try(F&& f) {
    try {
        f();
    } catch (const host::Error&) {
    } catch (const xlsx::PackageError&) {
    }
}

// A member answering Nothing, used as an object, raises as the run-time does. Held keeps the
// object for later statements; N is for use within one expression.
template <class T>
host::Ref<T> Held(host::Ref<T> ref) {
    if (!ref) host::Raise(host::err::ObjectVariableNotSet);
    return ref;
}
template <class T>
T& N(const host::Ref<T>& ref) {
    return *Held(ref);
}

// Keeps results alive so the reads aren't optimised away.
volatile size_t sink;
void Use(const std::string& s) { sink = sink + s.size(); }
void Use(const host::Variant& v) {
    Try([&] { Use(host::CStr(v)); });
}
void Use(double d) { sink = sink + static_cast<size_t>(d != 0); }

void ReadFont(const host::Ref<host::Font>& font) {
    Try([&] { Use(N(font).Name()); });
    Try([&] { Use(N(font).Size()); });
    Try([&] { Use(N(font).Bold()); });
}

void ReadRange(const host::Ref<host::Range>& ref, long& budget) {
    auto range = Held(ref);
    long rows = 0, columns = 0;
    Try([&] { Use(range->Address()); });
    Try([&] { rows = N(range->Rows()).Count(); });
    Try([&] { columns = N(range->Columns()).Count(); });
    Try([&] { Use(range->Left() + range->Top() + range->Width() + range->Height()); });
    for (long r = 1; r <= std::min(rows, kMaxRows) && budget > 0; ++r) {
        Try([&] { Use(N(range->Cells(r, 1)).RowHeight()); });
        for (long c = 1; c <= std::min(columns, kMaxColumns) && budget > 0; ++c, --budget) {
            Try([&] {
                auto cell = Held(range->Cells(r, c));
                Use(cell->Value());
                Use(cell->Text());
                Use(cell->Formula());
                Use(cell->NumberFormat());
                if (r == 1) Use(cell->ColumnWidth());
            });
        }
    }
}

void ReadText(const host::Ref<host::Shape>& shape) {
    Try([&] { Use(N(N(shape->TextFrame()).Characters()).Text()); });
    Try([&] {
        auto text = Held(N(shape->TextFrame2()).TextRange());
        Use(text->Text());
        Use(N(text->Font()).Name());
        Use(N(text->Font()).Size());
    });
}

void ReadChart(const host::Ref<host::Chart>& chart);

void ReadShape(const host::Ref<host::Shape>& ref, int depth) {
    auto shape = Held(ref);
    long type = 0;
    Try([&] { Use(shape->Name()); });
    Try([&] { Use(shape->AlternativeText()); });
    Try([&] { type = shape->Type(); });
    Try([&] { Use(shape->Left() + shape->Top() + shape->Width() + shape->Height() + shape->Rotation()); });
    Try([&] { Use(N(shape->TopLeftCell()).Address()); });
    Try([&] { Use(N(shape->BottomRightCell()).Address()); });
    Try([&] { Use(shape->Visible() + shape->ZOrderPosition()); });
    Try([&] { Use(N(N(shape->Fill()).ForeColor()).RGB()); });
    Try([&] { Use(N(shape->Line()).Weight()); });
    ReadText(shape);
    if (type == host::msoChart) Try([&] { ReadChart(shape->Chart()); });
    if (type == host::msoGroup && depth < kMaxGroupDepth) {
        Try([&] {
            auto items = Held(shape->GroupItems());
            for (long i = 1; i <= std::min(items->Count(), kMaxItems); ++i) Try([&] { ReadShape(items->Item(i), depth + 1); });
        });
    }
}

void ReadShapes(const host::Ref<host::Shapes>& ref) {
    auto shapes = Held(ref);
    for (long i = 1; i <= std::min(shapes->Count(), kMaxItems); ++i) Try([&] { ReadShape(shapes->Item(i), 0); });
}

void ReadAxis(const host::Ref<host::Chart>& chart, long type, long group) {
    Try([&] {
        if (!host::CBool(chart->HasAxis(type, group))) return;
        auto axis = Held(chart->Axes(type, group));
        Try([&] {
            if (axis->HasTitle()) {
                Use(N(axis->AxisTitle()).Text());
                ReadFont(N(axis->AxisTitle()).Font());
            }
        });
        Try([&] { Use(N(axis->TickLabels()).NumberFormat()); });
        Try([&] { ReadFont(N(axis->TickLabels()).Font()); });
        Try([&] { Use(axis->MinimumScale() + axis->MaximumScale() + axis->MajorUnit()); });
        Try([&] { Use(axis->DisplayUnit() + axis->ScaleType() + axis->Crosses()); });
        Try([&] { Use(axis->HasMajorGridlines() + axis->HasMinorGridlines()); });
    });
}

void ReadSeries(const host::Ref<host::Series>& ref) {
    auto series = Held(ref);
    Try([&] { Use(series->Name()); });
    Try([&] { Use(series->Formula()); });
    Try([&] { Use(series->ChartType() + series->AxisGroup() + series->PlotOrder()); });
    Try([&] {
        for (auto& v : series->Values()) Use(v);
    });
    Try([&] {
        for (auto& v : series->XValues()) Use(v);
    });
    Try([&] { Use(series->BubbleSizes()); });
    Try([&] { Use(N(N(series->Fill()).ForeColor()).RGB()); });
    Try([&] {
        if (!series->HasDataLabels()) return;
        auto labels = Held(series->DataLabels());
        Use(labels->NumberFormat());
        ReadFont(labels->Font());
        Use(labels->Position() + labels->ShowValue() + labels->ShowPercentage());
    });
    Try([&] {
        auto points = Held(series->Points());
        for (long i = 1; i <= std::min(points->Count(), kMaxItems); ++i) {
            Try([&] {
                auto point = Held(points->Item(i));
                Use(point->Explosion() + point->HasDataLabel());
                Use(N(N(point->Fill()).ForeColor()).RGB());
                if (point->HasDataLabel()) Use(N(point->DataLabel()).Text());
            });
        }
    });
}

void ReadChart(const host::Ref<host::Chart>& ref) {
    auto chart = Held(ref);
    Try([&] { Use(chart->Name()); });
    Try([&] { Use(chart->ChartType()); });
    Try([&] {
        if (chart->HasTitle()) {
            Use(N(chart->ChartTitle()).Text());
            ReadFont(N(chart->ChartTitle()).Font());
        }
    });
    Try([&] {
        if (chart->HasLegend()) {
            auto legend = Held(chart->Legend());
            Use(legend->Position());
            ReadFont(legend->Font());
            Use(N(legend->LegendEntries()).Count());
        }
    });
    Try([&] {
        auto all = Held(chart->SeriesCollection());
        for (long i = 1; i <= std::min(all->Count(), kMaxItems); ++i) Try([&] { ReadSeries(all->Item(i)); });
    });
    Try([&] {
        auto groups = Held(chart->ChartGroups());
        for (long i = 1; i <= std::min(groups->Count(), kMaxItems); ++i)
            Try([&] {
                auto g = Held(groups->Item(i));
                Use(N(g->SeriesCollection()).Count() + g->GapWidth() + g->Overlap() + g->FirstSliceAngle());
            });
    });
    for (long type : {host::xlCategory, host::xlValue, host::xlSeriesAxis})
        for (long group : {host::xlPrimary, host::xlSecondary}) ReadAxis(chart, type, group);
    Try([&] { ReadFont(N(chart->ChartArea()).Font()); });
    Try([&] { Use(N(chart->PlotArea()).InsideLeft() + N(chart->PlotArea()).InsideWidth()); });
    Try([&] { ReadShapes(chart->Shapes()); });
}

void ReadWorksheet(const host::Ref<host::Worksheet>& ref, long& budget) {
    auto sheet = Held(ref);
    Try([&] { Use(sheet->StandardWidth() + sheet->StandardHeight()); });
    Try([&] { ReadRange(sheet->UsedRange(), budget); });
    Try([&] { ReadShapes(sheet->Shapes()); });
    Try([&] {
        long count = N(sheet->ChartObjects()).Count();
        for (long i = 1; i <= std::min(count, kMaxItems); ++i) {
            Try([&] {
                auto object = Held(sheet->ChartObjects(host::Variant(i)));
                Use(object->Name());
                Use(object->Left() + object->Top() + object->Width() + object->Height());
                ReadChart(object->Chart());
            });
        }
    });
}

void ReadWorkbook(const host::Ref<host::Workbook>& book) {
    Try([&] { Use(book->Name()); });
    Try([&] { Use(N(book->ActiveSheet()).Name()); });
    Try([&] {
        auto sheets = Held(book->Sheets());
        for (long i = 1; i <= std::min(sheets->Count(), kMaxItems); ++i)
            Try([&] {
                auto s = Held(sheets->Item(i));
                Use(s->Name());
                Use(s->Visible() + s->Type() + s->Index());
            });
    });
    long budget = kMaxCells;
    Try([&] {
        auto sheets = Held(book->Worksheets());
        for (long i = 1; i <= std::min(sheets->Count(), kMaxItems); ++i) Try([&] { ReadWorksheet(sheets->Item(i), budget); });
    });
    Try([&] {
        auto names = Held(book->Names());
        for (long i = 1; i <= std::min(names->Count(), kMaxItems); ++i)
            Try([&] {
                auto n = Held(names->Item(i));
                Use(n->Name_());
                Use(n->RefersTo());
                Use(n->Visible());
                Try([&] {
                    auto r = Held(n->RefersToRange());
                    Use(r->Address());
                    Use(N(r->Worksheet()).Name());
                });
            });
    });
    Try([&] { Use(book->Colors(1)); });
}

// The component over the workbook, as a host add-in holds it and as the command line loads it.
void LoadComponent(const host::Ref<xlsx::EngineApplication>& app, const host::Ref<host::Workbook>& book) {
    forms::CallbackDriver nobody{nullptr};
    forms::HeadlessFrontEnd frontEnd{nobody};
    forms::CollectingDialogs dialogs;
    StillClock clock;
    ps::CPlotsmithController entry{frontEnd, dialogs, clock};
    ps::Component& c = entry.component();
    c.oApplication = app;
    c.oWorkbook = book;
    c.functions->RetrieveTableDefinitions();
    c.functions->RetrieveChartDefinitions();
}

std::string ScratchDir() {
    // tmpfs when there is one: an input is written and a workbook saved at every run.
    const char* base = std::getenv("PLOTSMITH_FUZZ_SCRATCH");
    std::filesystem::path dir = base ? base : (std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp");
    dir /= "plotsmith-fuzz-" + std::to_string(getpid());
    std::filesystem::create_directories(dir);
    return dir.string();
}

struct Scratch {
    std::string dir = ScratchDir();
    std::string input = dir + "/input.xlsx";
    std::string saved = dir + "/saved.xlsx";
    ~Scratch() {
        std::error_code ec;
        std::filesystem::remove_all(dir, ec);
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Scratch scratch;
    {
        std::ofstream out(scratch.input, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        if (!out) std::abort();  // scratch space full: no run would mean anything
    }
    xlsx::EngineOptions options;
    // Far below the engine's default, which is meant for real machines: a parsed part takes
    // several times its text, and the whole run must stay under -rss_limit_mb.
    options.maxInflatedSize = kMaxInflated;
    auto app = xlsx::NewApplication(options);
    host::Ref<host::Workbook> book;
    try {
        book = app->Open(scratch.input);
    } catch (const xlsx::PackageError&) {
        return 0;
    }
    ReadWorkbook(book);
    Try([&] { LoadComponent(app, book); });
    Try([&] { book->SaveAs(scratch.saved); });
    app->Close(book);
    return 0;
}
