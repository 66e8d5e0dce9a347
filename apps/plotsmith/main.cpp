// The command line host: opens a workbook, runs one operation, and saves the workbook atomically
// when the operation changed it. Messages go to standard error; exit status 2 for a file that can't
// be opened or saved, or for wrong usage. The wizard runs in real windows (wizard) or scripted from
// options (define).
#include <CLI/CLI.hpp>
#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <new>
#include <stdexcept>

#include <fmt/format.h>

#include "builder/ps_chart_builder.h"
#include "common/clock.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "controller/plotsmith_controller.h"
#include "dom/document.h"
#include "metadata/ps_functions.h"
#include "forms/form.h"
#include "forms/headless.h"
#include "forms_qt/qt_frontend.h"
#include "host/constants.h"
#include "host/error.h"
#include "host/workbook.h"
#include "xlsx/book.h"
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

// The component over an open workbook, with its tables and, with charts, its chart definitions
// loaded as a run loads them.
ps::Component& Loaded(ps::Component& c, const host::Ref<xlsx::EngineApplication>& app,
                      const host::Ref<host::Workbook>& book, bool charts = true) {
    c.oApplication = app;
    c.oWorkbook = book;
    c.functions->RetrieveTableDefinitions();
    if (charts) c.functions->RetrieveChartDefinitions();
    return c;
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

    ComponentHost(const host::Ref<xlsx::EngineApplication>& app, const host::Ref<host::Workbook>& book) {
        Loaded(c, app, book);
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

// The guards every operation passes (structure protected, shared workbook), before anything is placed.
void RefuseUnlessOpenToCharts(const host::Ref<xlsx::EngineApplication>& app) {
    ComponentHost host;
    if (std::string refusal = host.entry.WorkbookRefusal(app); !refusal.empty()) throw BadInput(refusal);
}

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
    // The store keeps a definition in one cell; what a cell can't hold would leave a chart without one.
    if (long length = host::Len(doc->xml()); length > ps::lMaxDefinitionLength)
        throw BadInput(fmt::format("chart '{}' has a definition of {} characters; a workbook cell holds at most {}",
                                   name, length, ps::lMaxDefinitionLength));
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
    RefuseUnlessOpenToCharts(app);
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
        if (!c.functions->SaveChartDefinition(doc))
            throw BadInput(fmt::format("the definition of chart '{}' could not be stored", Attr(chart, "name")));
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

// ---------------------------------------------------------------- the wizard

std::vector<std::string> ChartIDs(const host::Ref<xlsx::EngineApplication>& app, const host::Ref<host::Workbook>& book) {
    ComponentHost host(app, book);
    std::vector<std::string> ids;
    for (auto& doc : *host.c.colCharts) ids.push_back(Attr(doc->documentElement(), "id"));
    return ids;
}

// The wizard in real windows; the workbook is saved when the run changed it.
int Wizard(int argc, char** argv, const host::Ref<xlsx::EngineApplication>& engine, const std::string& path,
           const std::string& helpFile) {
    auto book = engine->Open(path);
    QApplication qapp(argc, argv);
    QApplication::setApplicationDisplayName(ps::sProductTitle);
    forms_qt::QtFrontEnd frontEnd;
    forms_qt::QtDialogs dialogs(ps::sProductTitle);
    ps::SystemClock clock;
    ps::CPlotsmithController entry(frontEnd, dialogs, clock);
    entry.RunPlotsmith(engine, "plotsmith", helpFile);
    if (engine->Changed(book)) book->Save();
    return 0;
}

// What define fills in on the pages; empty means the page's own default.
struct Definition {
    std::string table, type, title, name, sheet, newSheet, numberFormat, comment, hAxis, vAxis;
    std::vector<std::string> categories, colors;
    std::string values, xValues, sizes, bucketTable, sortBy, labels;
    bool descending = false, showValues = false, showNames = false, threeD = false, stacked = false,
         stack100 = false, exploded = false, quadrants = false, showZero = false, scaleX = false, scaleY = false;
};

using Step = forms::ScriptedDriver::Step;

bool SameText(const std::string& a, const std::string& b) { return host::UCase(a) == host::UCase(b); }

// The entries of a list, for a message when the wanted one isn't there.
std::string Entries(const forms::ListControl& list) {
    std::string out;
    for (long i = 0; i < list.ListCount(); ++i) out += (i ? ", " : "") + ("\"" + list.List(i) + "\"");
    return out.empty() ? "none" : out;
}

long IndexOfText(const forms::ListControl& list, const std::string& text) {
    for (long i = 0; i < list.ListCount(); ++i)
        if (SameText(list.List(i), text)) return i;
    return -1;
}

// Chooses the entry of a combo or list box by its text, as the pages compare names: without
// regard to case. A multi-selection list keeps what is already selected.
Step Choose(const std::string& control, const std::string& text) {
    return {"choose \"" + text + "\" in " + control, [=](forms::Form& f) {
                auto* list = dynamic_cast<forms::ListControl*>(f.Find(control));
                if (!list) return false;
                long i = IndexOfText(*list, text);
                if (i < 0) {
                    std::fprintf(stderr, "plotsmith: \"%s\" is not among the entries of %s: %s\n", text.c_str(),
                                 control.c_str(), Entries(*list).c_str());
                    return false;
                }
                auto* lb = dynamic_cast<forms::ListBox*>(list);
                if (lb && lb->MultiSelect != forms::ListBox::vbMultiSelectNone) return f.UserSetSelected(control, i, true);
                return f.UserSelect(control, i);
            }};
}

// Clicks an option or sets a check box to a state, clicking only when it differs.
Step Check(const std::string& control, bool on, int index = -1) {
    return {(on ? "check " : "clear ") + control, [=](forms::Form& f) {
                forms::Control* c = f.Find(control, index);
                if (auto* cb = dynamic_cast<forms::CheckBox*>(c))
                    return (cb->Value() == forms::CheckBox::vbChecked) == on || f.UserClick(control, index);
                if (auto* ob = dynamic_cast<forms::OptionButton*>(c)) return ob->Value() || f.UserClick(control, index);
                return false;
            }};
}

// Columns for a pair of controls: one label column in the combo box by rows, or number columns
// in the list box by columns.
void ChooseColumns(std::vector<Step>& steps, const std::vector<std::string>& names, const std::string& option,
                   const std::string& combo, const std::string& list) {
    steps.push_back({"choose " + combo + " or " + list, [=](forms::Form& f) {
                         auto* cbo = dynamic_cast<forms::ListControl*>(f.Find(combo));
                         bool byRows = names.size() == 1 && cbo && IndexOfText(*cbo, names[0]) >= 0;
                         if (!Check(option, true, byRows ? 1 : 2).act(f)) return false;
                         if (byRows) return Choose(combo, names[0]).act(f);
                         for (auto& n : names)
                             if (!Choose(list, n).act(f)) return false;
                         return true;
                     }});
}

void TypeIf(std::vector<Step>& steps, const std::string& control, const std::string& text) {
    if (!text.empty()) steps.push_back(forms::ScriptedDriver::Type(control, text));
}

const char* const aTypeOptions[] = {"bar", "column", "area", "pie", "bubble", "strategic bucket"};

// The visits of one run that makes a new chart: Select Action (when the workbook has charts),
// Source Table and Chart Type, the layout page of the type, Chart Location.
void ScriptWizard(forms::ScriptedDriver& driver, const Definition& d) {
    using SD = forms::ScriptedDriver;
    driver.Visit("frmPSSelectAction", {SD::Click("cmdNew")});

    long typeIndex = std::find(std::begin(aTypeOptions), std::end(aTypeOptions), d.type) - std::begin(aTypeOptions);
    driver.Visit("frmPSSelectTable",
                 {{"select table \"" + d.table + "\"",
                   [t = d.table](forms::Form& f) {
                       auto& grid = f.Get<forms::Grid>("grdTables");
                       std::string names;
                       for (long r = grid.FixedRows; r < grid.Rows(); ++r) {
                           if (SameText(grid.TextMatrix(r, 0), t) || SameText(host::CStr(grid.RowData(r)), t))
                               return f.UserSelect("grdTables", r);
                           names += (names.empty() ? "\"" : ", \"") + grid.TextMatrix(r, 0) + "\"";
                       }
                       std::fprintf(stderr, "plotsmith: the workbook has no table \"%s\"; its tables: %s\n", t.c_str(),
                                    names.empty() ? "none" : names.c_str());
                       return false;
                   }},
                  {"choose the type " + d.type,
                   [t = d.type, typeIndex](forms::Form& f) {
                       if (f.UserClick("optType", static_cast<int>(typeIndex))) return true;
                       std::fprintf(stderr, "plotsmith: the table doesn't offer the chart type %s\n", t.c_str());
                       return false;
                   }},
                  SD::Click("cmdNext")});

    std::vector<Step> layout;
    TypeIf(layout, "txtTitle", d.title);
    std::string layoutPage;
    if (d.type == "bar" || d.type == "column" || d.type == "area") {
        layoutPage = "frmPSLayoutABC";
        if (!d.categories.empty()) ChooseColumns(layout, d.categories, "optCategories", "cboCategories", "lstCategories");
        if (!d.colors.empty()) ChooseColumns(layout, d.colors, "optSeries", "cboSeries", "lstSeries");
        if (!d.values.empty()) layout.push_back(Choose("cboValues", d.values));
        TypeIf(layout, "cboDataLabelMask", d.numberFormat);
        if (d.showValues) layout.push_back(Check("chkShowValues", true));
        if (d.threeD) layout.push_back(Check("chk3D", true));
        if (d.stacked || d.stack100) layout.push_back(Check("chkStacked", true));
        if (d.stack100) layout.push_back(Check("chk100Pct", true));
    } else if (d.type == "pie") {
        layoutPage = "frmPSLayoutPie";
        if (!d.categories.empty()) layout.push_back(Choose("lstCategories", d.categories[0]));
        if (!d.values.empty()) layout.push_back(Choose("cboValues", d.values));
        if (!d.labels.empty())
            layout.push_back(Check("optDataLabels", true, d.labels == "values" ? 0 : d.labels == "percentages" ? 1 : 2));
        TypeIf(layout, "cboNumberMask", d.numberFormat);
        if (d.threeD) layout.push_back(Check("chk3D", true));
        if (d.exploded) layout.push_back(Check("chkExploded", true));
    } else if (d.type == "bubble") {
        layoutPage = "frmPSLayoutBubble";
        if (!d.values.empty()) layout.push_back(Choose("lstYValues", d.values));
        if (!d.xValues.empty()) layout.push_back(Choose("cboXValues", d.xValues));
        if (!d.categories.empty()) layout.push_back(Choose("cboCategories", d.categories[0]));
        if (!d.sizes.empty()) layout.push_back(Choose("cboSizes", d.sizes));
        if (!d.colors.empty()) layout.push_back(Choose("cboSeries", d.colors[0]));
        if (d.showZero) layout.push_back(Check("chkShowZeroBubbles", true));
        if (d.threeD) layout.push_back(Check("chk3D", true));
        if (d.quadrants) layout.push_back(Check("chkQuadrants", true));
        if (d.scaleX) layout.push_back(Check("chkScaleXAxis", true));
        if (d.scaleY) layout.push_back(Check("chkScaleYAxis", true));
    } else {
        layoutPage = "frmPSLayoutStrBuck";
        if (!d.bucketTable.empty()) layout.push_back(Choose("cboBucketTables", d.bucketTable));
        if (!d.categories.empty()) layout.push_back(Choose("cboCategories", d.categories[0]));
        if (!d.colors.empty()) layout.push_back(Choose("cboSeries", d.colors[0]));
        if (!d.sortBy.empty()) {
            layout.push_back(Choose("cboBlockSequence", d.sortBy));
            layout.push_back(Check("optBlockSequence", true, d.descending ? 1 : 0));
        }
        if (d.showNames) layout.push_back(Check("chkShowNames", true));
        TypeIf(layout, "cboDataLabelMask", d.numberFormat);
    }
    // Typed axis labels are the user's own: they stay whatever column is chosen.
    if (layoutPage != "frmPSLayoutPie") {
        TypeIf(layout, "txtHAxis", d.hAxis);
        TypeIf(layout, "txtVAxis", d.vAxis);
    }
    if (!d.comment.empty()) {
        std::string text;
        for (char ch : d.comment) text += ch == '\n' ? std::string("\r\n") : std::string(1, ch);
        layout.push_back(SD::Type("txtComment", text));
    }
    layout.push_back(SD::Click("cmdNext"));
    driver.Visit(layoutPage, std::move(layout));

    std::vector<Step> location;
    if (!d.newSheet.empty()) {
        location.push_back(SD::Click("optTargetSheet", 0));
        location.push_back(SD::Type("txtSheet", d.newSheet));
    } else if (!d.sheet.empty()) {
        location.push_back(SD::Click("optTargetSheet", 1));
        location.push_back(Choose("cboSheet", d.sheet));
    }
    TypeIf(location, "txtName", d.name);
    location.push_back(SD::Click("cmdFinish"));
    driver.Visit("frmPSChartLocation", std::move(location));
}

// Refuses options that don't belong to the chart type before any page comes up.
void CheckDefineOptions(Definition& d) {
    if (d.type == "bucket" || d.type == "strategic-bucket") d.type = "strategic bucket";
    if (std::find(std::begin(aTypeOptions), std::end(aTypeOptions), d.type) == std::end(aTypeOptions))
        throw BadInput(fmt::format("--type '{}' is none of bar, column, area, pie, bubble, strategic-bucket", d.type));
    auto only = [&](bool given, const char* option, std::initializer_list<const char*> types) {
        if (!given) return;
        for (auto* t : types)
            if (d.type == t) return;
        throw BadInput(fmt::format("{} doesn't apply to a {} chart", option, d.type));
    };
    only(d.categories.size() > 1, "more than one --categories column", {"bar", "column", "area"});
    only(d.colors.size() > 1, "more than one --colors column", {"bar", "column", "area"});
    only(!d.colors.empty(), "--colors", {"bar", "column", "area", "bubble", "strategic bucket"});
    only(!d.values.empty(), "--values", {"bar", "column", "area", "pie", "bubble"});
    only(!d.xValues.empty(), "--x-values", {"bubble"});
    only(!d.sizes.empty() || d.showZero || d.quadrants || d.scaleX || d.scaleY,
         "--sizes, --show-zero, --quadrants and --scale-x/--scale-y", {"bubble"});
    only(!d.bucketTable.empty() || !d.sortBy.empty() || d.descending || d.showNames,
         "--bucket-table, --sort-by, --descending and --show-names", {"strategic bucket"});
    only(!d.labels.empty() || d.exploded, "--labels and --exploded", {"pie"});
    only(d.showValues || d.stacked || d.stack100, "--show-values, --stacked and --stacked-100", {"bar", "column", "area"});
    only(d.threeD, "--3d", {"bar", "column", "area", "pie", "bubble"});
    only(!d.numberFormat.empty(), "--number-format", {"bar", "column", "area", "pie", "strategic bucket"});
    only(!d.hAxis.empty() || !d.vAxis.empty(), "--x-axis and --y-axis", {"bar", "column", "area", "bubble", "strategic bucket"});
    if (!d.sheet.empty() && !d.newSheet.empty()) throw BadInput("--sheet and --new-sheet exclude each other");
}

// The wizard run headless, its pages filled from the options. The workbook is saved only when a
// chart was made; what a page said goes to standard error.
int Define(const host::Ref<xlsx::EngineApplication>& engine, const std::string& path, Definition d) {
    CheckDefineOptions(d);
    auto book = engine->Open(path);
    RefuseUnlessOpenToCharts(engine);
    auto before = ChartIDs(engine, book);
    forms::ScriptedDriver driver;
    ScriptWizard(driver, d);
    {
        forms::HeadlessFrontEnd frontEnd(driver);
        forms::StderrDialogs dialogs;
        ps::SystemClock clock;
        ps::CPlotsmithController entry(frontEnd, dialogs, clock);
        entry.RunPlotsmith(engine, "plotsmith", {});
    }
    for (auto& p : driver.Problems()) std::fprintf(stderr, "plotsmith: %s\n", p.c_str());
    ComponentHost after(engine, book);
    for (auto& doc : *after.c.colCharts) {
        auto chart = doc->documentElement();
        if (std::find(before.begin(), before.end(), Attr(chart, "id")) != before.end()) continue;
        book->Save();
        fmt::print("{}  \"{}\"  {}  on {}\n", Attr(chart, "id"), Attr(chart, "name"), Attr(chart, "type"),
                   Attr(chart, "chart-worksheet"));
        return 0;
    }
    std::fprintf(stderr, "plotsmith: no chart was made; %s is unchanged\n", path.c_str());
    return 2;
}

// ---------------------------------------------------------------- refresh-table and rename-columns

// The table a command names, taken as define takes it: by id or by name, without regard to case,
// an exact id first. Answers the id as the workbook spells it, which the component compares exactly.
std::string TableID(ps::Component& c, const std::string& wanted, const std::string& bookPath) {
    for (auto& doc : *c.colTables)
        if (Attr(doc->documentElement(), "id") == wanted) return wanted;
    std::string known;
    for (auto& doc : *c.colTables) {
        auto t = doc->documentElement();
        if (SameText(Attr(t, "id"), wanted) || SameText(Attr(t, "name"), wanted)) return Attr(t, "id");
        known += fmt::format("{}{} (\"{}\")", known.empty() ? "" : ", ", Attr(t, "id"), Attr(t, "name"));
    }
    throw BadInput(
        fmt::format("'{}' has no table '{}'; its tables: {}", bookPath, wanted, known.empty() ? "none" : known));
}

struct Rename {
    std::string from, to;
};

// OLD=NEW arguments. Neither name may be empty: charts over a column without a name would stay
// unavailable, with no rename back.
std::vector<Rename> ParseRenames(const std::vector<std::string>& args) {
    std::vector<Rename> renames;
    for (auto& r : args) {
        auto eq = r.find('=');
        if (eq == std::string::npos || eq == 0 || eq + 1 == r.size())
            throw BadInput(fmt::format("a rename is OLD=NEW, not '{}'", r));
        renames.push_back({r.substr(0, eq), r.substr(eq + 1)});
    }
    return renames;
}

// The renames of one command are one edit of the table's header row and take effect all at once:
// Region=Product Product=Region swaps the two, A=B B=C shifts them. That is what a user who renamed
// several headers writes. The component applies renames in order, each seeing the ones before
// (the swap would merge both into Region), so when a rename takes a name another one gives up,
// every rename goes through a name of its own first.
// A rename may not give a column's charts the name of a column that stays: they would silently
// turn onto it. Column names compare without regard to case, as the pages and the validation do.
void RenameColumns(ps::CPlotsmithController& e, const host::Ref<xlsx::EngineApplication>& app,
                   const std::string& bookPath, const std::string& table, std::vector<Rename> renames) {
    auto& c = Loaded(e.component(), app, app->ActiveWorkbook());
    std::string id = TableID(c, table, bookPath);

    std::vector<std::string> tableColumns, chartColumns, labels;
    auto tableDoc = c.colTables->Item(id)->documentElement();
    for (auto* kind : {"label-column", "number-column"})
        for (auto col : tableDoc.selectNodes(kind)) tableColumns.push_back(Attr(col, "name"));
    for (auto& doc : *c.colCharts) {
        if (Attr(doc->documentElement(), "table-id") != id) continue;
        for (auto col : doc->selectNodes("//column")) chartColumns.push_back(Attr(col, "name"));
        for (auto axis : doc->selectNodes("//axis")) labels.push_back(Attr(axis, "label"));
    }
    auto holds = [](const std::vector<std::string>& list, const std::string& name) {
        return std::any_of(list.begin(), list.end(), [&](const std::string& n) { return SameText(n, name); });
    };
    // The component renames exact names only: an old name in another case takes the charts' spelling.
    for (auto& r : renames) {
        auto spelt = std::find_if(chartColumns.begin(), chartColumns.end(), [&](auto& n) { return SameText(n, r.from); });
        if (spelt != chartColumns.end() && std::count(chartColumns.begin(), chartColumns.end(), r.from) == 0) r.from = *spelt;
    }
    std::vector<std::string> renamedAway, unused;
    for (auto& r : renames)
        if (!SameText(r.from, r.to)) renamedAway.push_back(r.from);
    for (size_t i = 0; i < renames.size(); ++i) {
        const auto& r = renames[i];
        for (size_t j = 0; j < i; ++j) {
            if (SameText(renames[j].from, r.from)) throw BadInput(fmt::format("column '{}' is renamed twice", r.from));
            if (SameText(renames[j].to, r.to))
                throw BadInput(fmt::format("'{}' and '{}' would both be named '{}'", renames[j].from, r.from, r.to));
        }
        if (!holds(chartColumns, r.from)) {
            unused.push_back(r.from);
            continue;
        }
        // Another column: one the charts use beside the renamed one, or one of the table's while
        // the renamed heading still stands beside it. A header edited before the rename is the
        // renamed column itself.
        if (SameText(r.from, r.to) || holds(renamedAway, r.to)) continue;
        if (holds(chartColumns, r.to) || (holds(tableColumns, r.from) && holds(tableColumns, r.to)))
            throw BadInput(fmt::format("table '{}' already has a column '{}'; renaming '{}' to it would turn charts "
                                       "onto that column",
                                       id, r.to, r.from));
    }
    for (auto& name : unused)
        std::fprintf(stderr, "plotsmith: no chart of table '%s' uses a column '%s'\n", id.c_str(), name.c_str());

    std::vector<std::string> olds, news;
    auto givenUp = [&](const Rename& r) {
        return std::any_of(renames.begin(), renames.end(), [&](const Rename& o) { return o.from == r.to; });
    };
    bool chained =
        std::any_of(renames.begin(), renames.end(), [&](const Rename& r) { return r.to != r.from && givenUp(r); });
    std::vector<std::string> taken = labels;
    taken.insert(taken.end(), chartColumns.begin(), chartColumns.end());
    taken.insert(taken.end(), tableColumns.begin(), tableColumns.end());
    for (auto& r : renames) {
        olds.push_back(r.from);
        if (!chained) {
            news.push_back(r.to);
            continue;
        }
        std::string via = "~" + r.to + "~";
        while (holds(taken, via)) via += "~";
        taken.push_back(via);
        news.push_back(via);
    }
    for (size_t i = 0; chained && i < renames.size(); ++i) {
        olds.push_back(news[i]);
        news.push_back(renames[i].to);
    }
    e.UpdateChartColumnNamesForTable(app, id, olds, news);
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
    std::uint64_t maxInflatedMiB = xlsx::kDefaultMaxInflatedSize >> 20;
    app.add_option("--max-inflated-size", maxInflatedMiB,
                   "MiB a workbook's parts may inflate to, all together; a bigger workbook is refused")
        ->capture_default_str()
        ->type_name("MIB")
        ->check(CLI::Range(std::uint64_t(1), std::uint64_t(1) << 44).description(""));
    bool wait = false;
    app.add_flag("--wait", wait,
                 "A command that saves waits for another writer of the workbook to finish, instead of refusing");
    app.fallthrough();  // the options above may also follow the command

    std::string book;
    auto* list = app.add_subcommand(
        "list", "List the sheets (with visibility), defined names, tables and charts of a workbook");
    list->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();

    auto* refresh = app.add_subcommand("refresh", "Rebuild all charts of a workbook and save it");
    refresh->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();

    std::string table;
    auto* refreshTable = app.add_subcommand("refresh-table", "Rebuild the charts of one table and save the workbook");
    refreshTable->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    refreshTable->add_option("TABLE", table,
                             "Table: its id (a VEX_TableRange or VEX_SB name, or a sheet Data1 to Data5) or its name, "
                             "as list shows them")
        ->required();

    std::vector<std::string> renames;
    auto* renameColumns = app.add_subcommand("rename-columns", "Carry renamed columns of a table into its chart definitions");
    renameColumns->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    renameColumns->add_option("TABLE", table, "Table: its id or name, as list shows them")->required();
    renameColumns->add_option("OLD=NEW", renames, "Column renames, taking effect all at once (A=B B=A swaps)")
        ->required();

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

    std::string helpFile = PLOTSMITH_HELP_FILE;
    auto* wizard = app.add_subcommand("wizard", "Run the wizard in windows; the workbook is saved when the run changed it");
    wizard->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    wizard->add_option("--help-file", helpFile, "Contents page of the help the pages' Help buttons open (topic n is topic<n>.html beside it)")
        ->capture_default_str();

    Definition def;
    auto* define = app.add_subcommand(
        "define", "Make a new chart through the wizard's pages, filled from the options, and save the workbook");
    define->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    define->add_option("--table", def.table, "Source table: its name or id, as list shows them")->required();
    define->add_option("--type", def.type, "Chart type: bar, column, area, pie, bubble or strategic-bucket")->required();
    define->add_option("--title", def.title, "Chart title");
    define->add_option("--name", def.name, "Chart name (default: the title, else Chart and the chart's number)");
    define->add_option("--sheet", def.sheet, "Existing worksheet the chart stands on (default: the first visible one)");
    define->add_option("--new-sheet", def.newSheet, "Make a worksheet of this name for the chart");
    define->add_option("--categories", def.categories,
                       "Bar, column, area: what the category axis shows, one label column or several number "
                       "columns; pie: the label column a slice represents; bubble: what a bubble represents; "
                       "strategic bucket: what a block represents")
        ->delimiter(',');
    define->add_option("--colors", def.colors,
                       "What a colour represents: one label column, or (bar, column, area) several number columns")
        ->delimiter(',');
    define->add_option("--values", def.values,
                       "The number column giving the size (bar length, column height, area size, slice size) or, "
                       "for a bubble chart, the vertical axis");
    define->add_option("--x-values", def.xValues, "Bubble: the number column of the horizontal axis");
    define->add_option("--sizes", def.sizes, "Bubble: the number column giving the bubble size");
    define->add_option("--bucket-table", def.bucketTable, "Strategic bucket: the bucket table");
    define->add_option("--sort-by", def.sortBy, "Strategic bucket: the number column the blocks are arranged by");
    define->add_flag("--descending", def.descending, "Strategic bucket: arrange the blocks descending");
    define->add_option("--number-format", def.numberFormat, "Number format of the data labels, such as #,###;(#,###);");
    define->add_flag("--show-values", def.showValues, "Bar, column, area: show values on the chart");
    define->add_flag("--show-names", def.showNames, "Strategic bucket: show names on the blocks");
    define->add_option("--labels", def.labels, "Pie: slice labels, values, percentages or none")
        ->check(CLI::IsMember({"values", "percentages", "none"}));
    define->add_option("--x-axis", def.hAxis, "Horizontal axis label (default: from the column chosen)");
    define->add_option("--y-axis", def.vAxis, "Vertical axis label (default: from the column chosen)");
    define->add_flag("--3d", def.threeD, "Three-dimensional chart");
    define->add_flag("--stacked", def.stacked, "Bar, column, area: stacked");
    define->add_flag("--stacked-100", def.stack100, "Bar, column, area: stacked to 100%");
    define->add_flag("--exploded", def.exploded, "Pie: exploded");
    define->add_flag("--quadrants", def.quadrants, "Bubble: arrange the chart into quadrants");
    define->add_flag("--show-zero", def.showZero, "Bubble: show zero and negative sizes");
    define->add_flag("--scale-x", def.scaleX, "Bubble: recalculate the horizontal axis");
    define->add_flag("--scale-y", def.scaleY, "Bubble: recalculate the vertical axis");
    define->add_option("--comment", def.comment, "Chart comment");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        int code = app.exit(e);
        return code == 0 ? 0 : 2;
    }

    xlsx::EngineOptions options;
    options.version = hostVersion.find('.') == std::string::npos ? hostVersion + ".0" : hostVersion;
    options.maxInflatedSize = maxInflatedMiB << 20;
    // Commands that save hold the writer lock from open to save; list and export only read.
    if (!list->parsed() && !exportCharts->parsed())
        options.writerLock = wait ? xlsx::WriterLock::Wait : xlsx::WriterLock::Refuse;
    auto engine = xlsx::NewApplication(options);
    try {
        if (list->parsed()) return List(engine, book);
        if (add->parsed()) return Add(engine, book, definition, sheet, newSheet);
        if (exportCharts->parsed()) return Export(engine, book, chart);
        if (define->parsed()) return Define(engine, book, def);
        if (wizard->parsed()) return Wizard(argc, argv, engine, book, helpFile);
        const std::string appName = "plotsmith";
        if (refresh->parsed())
            return RunOperation(*engine, book, [&](ps::CPlotsmithController& e) { e.RefreshPlotsmithData(engine, appName, {}); });
        if (refreshTable->parsed())
            return RunOperation(*engine, book, [&](ps::CPlotsmithController& e) {
                auto& c = Loaded(e.component(), engine, engine->ActiveWorkbook(), false);
                std::string id = TableID(c, table, book);
                e.RefreshChartsForTable(engine, id);
            });
        if (renameColumns->parsed()) {
            auto parsed = ParseRenames(renames);
            return RunOperation(*engine, book,
                                [&](ps::CPlotsmithController& e) { RenameColumns(e, engine, book, table, parsed); });
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
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "plotsmith: out of memory working on '%s'\n", book.c_str());
        return 2;
    }
    return 0;
}
