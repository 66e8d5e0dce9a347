// The command line host: opens a workbook, runs one operation, and saves the workbook atomically
// when the operation changed it. Messages go to standard error; exit status 2 for a file that can't
// be opened or saved, or for wrong usage.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include <fmt/format.h>

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

int List(xlsx::EngineApplication& app, const std::string& path) {
    auto book = app.Open(path);
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
    auto* list = app.add_subcommand("list", "List the sheets (with visibility) and defined names of a workbook");
    list->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();

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
        if (list->parsed()) return List(*engine, book);
    } catch (const xlsx::PackageError& e) {
        std::fprintf(stderr, "plotsmith: %s\n", e.what());
        return 2;
    } catch (const host::Error& e) {
        std::fprintf(stderr, "plotsmith: %s\n", e.Description().c_str());
        return 2;
    }
    return 0;
}
