// The command line host: opens a workbook, runs one operation, and saves the workbook atomically
// when the operation changed it. Messages go to standard error; exit status 2 for a file that can't
// be opened or saved, or for wrong usage.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <functional>
#include <iostream>

#include <fmt/format.h>

#include "common/clock.h"
#include "controller/plotsmith_controller.h"
#include "dom/document.h"
#include "metadata/ps_functions.h"
#include "forms/headless.h"
#include "host/constants.h"
#include "host/error.h"
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

// Tables and charts as the component finds them; the workbook on disk is not changed.
void ListComponent(const host::Ref<xlsx::EngineApplication>& app, const host::Ref<host::Workbook>& book) {
    forms::CallbackDriver nobody(nullptr);
    forms::HeadlessFrontEnd frontEnd(nobody);
    forms::StderrDialogs dialogs;
    ps::SystemClock clock;
    ps::CPlotsmithController entry(frontEnd, dialogs, clock);
    auto& c = entry.component();
    c.oApplication = app;
    c.oWorkbook = book;
    c.functions->RetrieveTableDefinitions();
    c.functions->RetrieveChartDefinitions();
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
    forms::CallbackDriver nobody(nullptr);  // no user at the command line: pages close as cancelled
    forms::HeadlessFrontEnd frontEnd(nobody);
    forms::StderrDialogs dialogs;
    ps::SystemClock clock;
    ps::CPlotsmithController entry(frontEnd, dialogs, clock);
    operation(entry);
    book->Save();
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
    } catch (const xlsx::PackageError& e) {
        std::fprintf(stderr, "plotsmith: %s\n", e.what());
        return 2;
    } catch (const host::Error& e) {
        std::fprintf(stderr, "plotsmith: %s\n", e.Description().c_str());
        return 2;
    }
    return 0;
}
