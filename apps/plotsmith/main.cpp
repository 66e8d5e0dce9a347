// The command line host: opens a workbook, runs one operation, and saves the workbook atomically
// when the operation changed it. Messages go to standard error; exit status 2 for a file that can't
// be opened or saved, or for wrong usage.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include <fmt/format.h>

#include "builder/ps_chart_builder.h"
#include "common/clock.h"
#include "common/common_functions.h"
#include "controller/plotsmith_controller.h"
#include "dom/document.h"
#include "metadata/ps_functions.h"
#include "forms/headless.h"
#include "host/constants.h"
#include "host/error.h"
#include "host/workbook.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

namespace {

const char* VisibilityText(long v) {
    switch (v) {
        case host::xlSheetHidden: return "hidden";
        case host::xlSheetVeryHidden: return "very hidden";
        default: return "visible";
    }
}

std::string Attr(const dom::Node& n, const char* name) {
    auto v = n.getAttribute(name);
    return v.IsNull() ? std::string{} : host::CStr(v);
}

// The columns of a table document of one kind, by name, comma separated.
std::string Columns(const dom::Node& table, const char* kind) {
    std::string out;
    for (auto col : table.selectNodes(kind)) {
        if (!out.empty()) out += ", ";
        out += Attr(col, "name");
    }
    return out.empty() ? "-" : out;
}

// The component as a host add-in holds it. Nobody answers pages at the command line: a page that
// comes up closes as cancelled, and messages go to standard error.
struct ComponentHost {
    forms::CallbackDriver nobody{nullptr};
    forms::HeadlessFrontEnd frontEnd{nobody};
    forms::StderrDialogs dialogs;
    ps::SystemClock clock;
    ps::CPlotsmithController entry{frontEnd, dialogs, clock};
    ps::Component& c = entry.component();

    // Over an open workbook, with its tables and chart definitions loaded as a run loads them.
    ComponentHost(const host::Ref<xlsx::EngineApplication>& app, const host::Ref<host::Workbook>& book) {
        c.oApplication = app;
        c.oWorkbook = book;
        c.functions->RetrieveTableDefinitions();
        c.functions->RetrieveChartDefinitions();
    }
    ComponentHost() = default;
};

// Tables and charts as the component finds them; the workbook on disk is not changed.
void ListComponent(const host::Ref<xlsx::EngineApplication>& app, const host::Ref<host::Workbook>& book) {
    ComponentHost host(app, book);
    auto& c = host.c;
    fmt::print("Tables ({}):\n", c.colTables->Count());
    for (auto& doc : *c.colTables) {
        auto t = doc->documentElement();
        bool range = Attr(t, "header-row-count") == "3";
        fmt::print("  {}  \"{}\"  on {}  {}{}\n", Attr(t, "id"), Attr(t, "name"), Attr(t, "table-worksheet"),
                   range ? "range table" : "data sheet", Attr(t, "is-bucket-candidate") == "yes" ? ", bucket candidate" : "");
        fmt::print("      labels: {}\n      numbers: {}\n", Columns(t, "label-column"), Columns(t, "number-column"));
    }
    fmt::print("Charts ({}):\n", c.colCharts->Count());
    for (auto& doc : *c.colCharts) {
        auto ch = doc->documentElement();
        std::string state = Attr(ch, "table-corrupted") == "yes" ? "unavailable: its table no longer fits"
                            : Attr(ch, "chart-area-crosshatched") == "yes" ? "unavailable"
                                                                             : "available";
        fmt::print("  {}  \"{}\"  {}  on {}  from {} ({})  {}\n", Attr(ch, "id"), Attr(ch, "name"), Attr(ch, "type"),
                   Attr(ch, "chart-worksheet"), Attr(ch, "table-id"), Attr(ch, "table-worksheet"), state);
    }
}

int List(const host::Ref<xlsx::EngineApplication>& app, const std::string& path) {
    auto book = app->Open(path);
    auto sheets = book->Sheets();
    fmt::print("Workbook: {}\n", book->Name());
    fmt::print("Sheets ({}):\n", sheets->Count());
    for (long i = 1; i <= sheets->Count(); ++i) {
        auto s = sheets->Item(i);
        fmt::print("  {:>3}  {:<31}  {:<11}  {}\n", i, s->Name(), VisibilityText(s->Visible()),
                   s->Type() == host::xlChart ? "chart sheet" : "worksheet");
    }
    auto names = book->Names();
    fmt::print("Defined names ({}):\n", names->Count());
    for (long i = 1; i <= names->Count(); ++i) {
        auto n = names->Item(i);
        fmt::print("  {:<31}  {}\n", n->Name_(), n->RefersTo());
    }
    ListComponent(app, book);
    return 0;
}

// Runs one entry operation on a workbook the way a host add-in would, then saves the workbook in
// place. The component reports its own messages (standard error); it never fails the host.
int RunOperation(xlsx::EngineApplication& app, const std::string& path,
                 const std::function<void(ps::CPlotsmithController&)>& operation) {
    auto book = app.Open(path);
    ComponentHost host;
    operation(host.entry);
    book->Save();
    return 0;
}

// ---------------------------------------------------------------- add and export

// Input the command can't take: one line on standard error, exit status 2, nothing saved.
struct BadInput : std::runtime_error {
    using std::runtime_error::runtime_error;
};

const char* const aChartTypes[] = {"area", "bar", "column", "pie", "bubble", "strategic bucket", "unknown"};

// The chart documents of a definition file: one `chart`, or the `charts` that export prints for all.
std::vector<dom::DocumentRef> ReadDefinitions(ps::Component& c, const std::string& path) {
    std::string text;
    if (path == "-") {
        text.assign(std::istreambuf_iterator<char>(std::cin), {});
    } else {
        std::ifstream in(path, std::ios::binary);
        if (!in) throw BadInput(fmt::format("cannot read '{}'", path));
        text.assign(std::istreambuf_iterator<char>(in), {});
    }
    auto doc = c.functions->ParseChartDefinition(text);
    if (!doc) throw BadInput(fmt::format("'{}' is not XML", path));
    auto root = doc->documentElement();
    std::vector<dom::DocumentRef> out;
    if (root && root.nodeName() == "chart") {
        out.push_back(doc);
    } else if (root && root.nodeName() == "charts") {
        for (auto chart : root.selectNodes("chart")) out.push_back(c.functions->ParseChartDefinition(chart.xml()));
    }
    if (out.empty()) throw BadInput(fmt::format("'{}' holds no chart definition", path));
    return out;
}

// Refuses what the Source Table page would never let through: a type it doesn't know, a table
// the workbook doesn't have.
void CheckDefinition(ps::Component& c, const dom::DocumentRef& doc, const std::string& bookPath) {
    auto chart = doc->documentElement();
    std::string name = Attr(chart, "name"), type = Attr(chart, "type");
    if (std::find(std::begin(aChartTypes), std::end(aChartTypes), type) == std::end(aChartTypes))
        throw BadInput(fmt::format("chart '{}' has type '{}', which is none of area, bar, column, pie, bubble, "
                                   "strategic bucket",
                                   name, type));
    std::vector<std::string> tables{Attr(chart, "table-id")};
    if (type == "strategic bucket") tables.push_back(Attr(chart, "strategic-bucket-table-id"));
    for (auto& table : tables)
        if (!ps::CommonFunctions::CollectionHasKey(table, c.colTables))
            throw BadInput(fmt::format("chart '{}' draws from table '{}', which '{}' doesn't have", name, table, bookPath));
}

// The sheet a chart is to stand on: an existing visible worksheet, or with newSheet one made as
// the Chart Location page makes it. Answers the sheet's name as the workbook spells it.
std::string ChartSheet(ps::Component& c, const std::string& sheet, bool newSheet, const std::string& bookPath) {
    auto& cf = *c.common;
    if (newSheet) {
        if (sheet.empty()) throw BadInput("Please provide a name for the new worksheet");
        if (cf.SheetExists(sheet))
            throw BadInput("Worksheet name is already in use. Please enter a different name for the worksheet.");
        if (!c.functions->CreateChartWorksheet(sheet))
            throw BadInput("Invalid worksheet name. Please enter a valid name for the worksheet.");
        return sheet;
    }
    host::Ref<host::Worksheet> ws;
    try {
        ws = c.oWorkbook->Worksheets()->Item(sheet);
    } catch (const host::Error&) {
        throw BadInput(fmt::format("'{}' has no worksheet '{}' (--new-sheet makes one)", bookPath, sheet));
    }
    // The page offers visible worksheets only.
    if (ws->Visible() != host::xlSheetVisible) throw BadInput(fmt::format("worksheet '{}' is hidden", ws->Name()));
    return ws->Name();
}

// "VEX_Chart" and a whole number from 1, as NextChartID makes them.
bool IsChartID(const std::string& id) {
    std::string number = host::Mid(id, host::Len(ps::sChartIDPrefix) + 1);
    return host::Left(id, host::Len(ps::sChartIDPrefix)) == ps::sChartIDPrefix && !number.empty() &&
           number[0] != '0' && number.find_first_not_of("0123456789") == std::string::npos;
}

// Places each definition as the Chart Location page's last steps do, with a new id and a free
// name where the definition's are taken, draws it, and saves the workbook.
int Add(const host::Ref<xlsx::EngineApplication>& app, const std::string& path, const std::string& definitionPath,
        const std::string& sheet, bool newSheet) {
    auto book = app->Open(path);
    ComponentHost host(app, book);
    auto& c = host.c;
    auto docs = ReadDefinitions(c, definitionPath);
    for (auto& doc : docs) CheckDefinition(c, doc, path);
    std::string sheetName = ChartSheet(c, sheet, newSheet, path);

    for (auto& doc : docs) {
        auto chart = doc->documentElement();
        std::string id = Attr(chart, "id");
        bool idFree = IsChartID(id) && !ps::CommonFunctions::CollectionHasKey(id, c.colCharts);
        c.sChartID = idFree ? id : c.functions->NextChartID();
        std::string name = host::Trim(Attr(chart, "name"));
        if (name.empty()) name = "Chart" + host::Mid(c.sChartID, host::Len(ps::sChartIDPrefix) + 1);
        chart.setAttribute("id", c.sChartID);
        chart.setAttribute("name", c.functions->FreeChartName(name));
        c.oChartDoc = doc;
        c.lMethodType = ps::mtNew;
        if (!c.functions->PlaceChartDefinition(sheetName)) throw BadInput("the chart could not be placed");
        c.builder->RefreshChart(c.sChartID);
        // A build writes into the definition (its data rows, the table's geometry); it is kept.
        c.functions->SaveChartDefinition(doc);
        fmt::print("{}  \"{}\"  {}  on {}\n", c.sChartID, Attr(chart, "name"), Attr(chart, "type"), sheetName);
    }
    book->Save();
    return 0;
}

// Definitions as stored, for add to take into another workbook: one chart (by id, or by name
// without regard to case) as its `chart` document, all of them inside `charts`.
int Export(const host::Ref<xlsx::EngineApplication>& app, const std::string& path, const std::string& wanted) {
    auto book = app->Open(path);
    ComponentHost host(app, book);
    auto& c = host.c;
    auto text = [](const dom::DocumentRef& doc) {
        std::string s = doc->xml();
        while (!s.empty() && (s.back() == '\n' || s.back() == '\r')) s.pop_back();
        return s;
    };
    if (!wanted.empty()) {
        for (auto& doc : *c.colCharts) {
            auto chart = doc->documentElement();
            if (Attr(chart, "id") == wanted || host::UCase(Attr(chart, "name")) == host::UCase(wanted)) {
                fmt::print("{}\n", text(doc));
                return 0;
            }
        }
        throw BadInput(fmt::format("'{}' has no chart '{}'", path, wanted));
    }
    fmt::print("<charts>\n");
    for (auto& doc : *c.colCharts) fmt::print("{}\n", text(doc));
    fmt::print("</charts>\n");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"Plotsmith keeps charts over the tables of spreadsheet workbooks as live views of their tables.",
                 "plotsmith"};
    app.set_version_flag("--version", std::string("plotsmith ") + PLOTSMITH_VERSION);
    app.require_subcommand(1);
    std::string hostVersion = "16";
    app.add_option("--host-version", hostVersion,
                   "Application version the engine plays: 11 takes the older road, above 11 the newer")
        ->capture_default_str();

    std::string book;
    auto* list = app.add_subcommand(
        "list", "List the sheets (with visibility), defined names, tables and charts of a workbook");
    list->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();

    auto* refresh = app.add_subcommand("refresh", "Rebuild all charts of a workbook and save it");
    refresh->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();

    std::string table;
    auto* refreshTable = app.add_subcommand("refresh-table", "Rebuild the charts of one table and save the workbook");
    refreshTable->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    refreshTable->add_option("TABLE", table, "Table id: a VEX_TableRange or VEX_SB name, or a sheet Data1 to Data5")
        ->required();

    std::vector<std::string> renames;
    auto* renameColumns = app.add_subcommand("rename-columns", "Carry renamed columns of a table into its chart definitions");
    renameColumns->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    renameColumns->add_option("TABLE", table, "Table id")->required();
    renameColumns->add_option("OLD=NEW", renames, "Column renames")->required();

    std::string definition, sheet, chart;
    bool newSheet = false;
    auto* add = app.add_subcommand("add", "Place a chart from a definition on a sheet, draw it and save the workbook");
    add->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    add->add_option("DEFINITION", definition, "Chart definition (.xml) as export prints it; - reads standard input")
        ->required();
    add->add_option("--sheet", sheet, "Worksheet the chart stands on")->required();
    add->add_flag("--new-sheet", newSheet, "Make the worksheet first, behind the last sheet");

    auto* exportCharts = app.add_subcommand("export", "Print chart definitions, for add to take into another workbook");
    exportCharts->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    exportCharts->add_option("CHART", chart, "Chart id or name; all charts when left out");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        int code = app.exit(e);
        return code == 0 ? 0 : 2;
    }

    xlsx::EngineOptions options;
    options.version = hostVersion.find('.') == std::string::npos ? hostVersion + ".0" : hostVersion;
    auto engine = xlsx::NewApplication(options);
    try {
        if (list->parsed()) return List(engine, book);
        if (add->parsed()) return Add(engine, book, definition, sheet, newSheet);
        if (exportCharts->parsed()) return Export(engine, book, chart);
        const std::string appName = "plotsmith";
        if (refresh->parsed())
            return RunOperation(*engine, book, [&](ps::CPlotsmithController& e) { e.RefreshPlotsmithData(engine, appName, {}); });
        if (refreshTable->parsed())
            return RunOperation(*engine, book, [&](ps::CPlotsmithController& e) { e.RefreshChartsForTable(engine, table); });
        if (renameColumns->parsed()) {
            std::vector<std::string> olds, news;
            for (auto& r : renames) {
                auto eq = r.find('=');
                if (eq == std::string::npos || eq == 0) {
                    std::fprintf(stderr, "plotsmith: a rename is OLD=NEW, not '%s'\n", r.c_str());
                    return 2;
                }
                olds.push_back(r.substr(0, eq));
                news.push_back(r.substr(eq + 1));
            }
            return RunOperation(*engine, book, [&](ps::CPlotsmithController& e) {
                e.UpdateChartColumnNamesForTable(engine, table, olds, news);
            });
        }
    } catch (const BadInput& e) {
        std::fprintf(stderr, "plotsmith: %s\n", e.what());
        return 2;
    } catch (const xlsx::PackageError& e) {
        std::fprintf(stderr, "plotsmith: %s\n", e.what());
        return 2;
    } catch (const host::Error& e) {
        std::fprintf(stderr, "plotsmith: %s\n", e.Description().c_str());
        return 2;
    }
    return 0;
}
