// The command line host: opens a workbook, runs one operation, and saves the workbook atomically
// when the operation changed it. Messages go to standard error; exit status 2 for a file that can't
// be opened or saved, or for wrong usage. The wizard runs in real windows (wizard) or scripted from
// options (define).
#include <CLI/CLI.hpp>
#include <QApplication>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <new>
#include <stdexcept>

#include <fmt/format.h>

#include "csv_input.h"
#include "common/clock.h"
#include "common/constants.h"
#include "controller/plotsmith_controller.h"
#include "forms/form.h"
#include "forms/headless.h"
#include "forms_qt/qt_frontend.h"
#include "host/constants.h"
#include "host/error.h"
#include "host/workbook.h"
#include "session/session.h"
#include "xlsx/package.h"

namespace {

// Input the command can't take: one line on standard error, exit status 2, nothing saved.
using BadInput = session::Refused;

const char* VisibilityText(long v) {
    switch (v) {
        case host::xlSheetHidden: return "hidden";
        case host::xlSheetVeryHidden: return "very hidden";
        default: return "visible";
    }
}

std::string Listed(const std::vector<std::string>& names) {
    std::string out;
    for (auto& n : names) out += (out.empty() ? "" : ", ") + n;
    return out.empty() ? "-" : out;
}

void PrintChart(const session::Chart& ch) {
    fmt::print("{}  \"{}\"  {}  on {}\n", ch.id, ch.name, ch.type, ch.sheet);
}

// Sheets, names, then tables and charts as the component finds them; nothing is saved.
int List(session::Workbook& wb) {
    auto book = wb.Book();
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
    auto tables = wb.Tables();
    fmt::print("Tables ({}):\n", tables.size());
    for (auto& t : tables) {
        fmt::print("  {}  \"{}\"  on {}  {}{}\n", t.id, t.name, t.sheet, t.rangeTable ? "range table" : "data sheet",
                   t.bucketCandidate ? ", bucket candidate" : "");
        fmt::print("      labels: {}\n      numbers: {}\n", Listed(t.labels), Listed(t.numbers));
    }
    auto charts = wb.Charts();
    fmt::print("Charts ({}):\n", charts.size());
    for (auto& ch : charts)
        fmt::print("  {}  \"{}\"  {}  on {}  from {} ({})  {}\n", ch.id, ch.name, ch.type, ch.sheet, ch.table,
                   ch.tableSheet, ch.state);
    return 0;
}

std::string ReadInput(const std::string& path) {
    if (path == "-") return std::string(std::istreambuf_iterator<char>(std::cin), {});
    std::ifstream in(path, std::ios::binary);
    if (!in) throw BadInput(fmt::format("cannot read '{}'", path));
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// OLD=NEW arguments. Neither name may be empty: charts over a column without a name would stay
// unavailable, with no rename back.
std::vector<session::Rename> ParseRenames(const std::vector<std::string>& args) {
    std::vector<session::Rename> renames;
    for (auto& r : args) {
        auto eq = r.find('=');
        if (eq == std::string::npos || eq == 0 || eq + 1 == r.size())
            throw BadInput(fmt::format("a rename is OLD=NEW, not '{}'", r));
        renames.emplace_back(r.substr(0, eq), r.substr(eq + 1));
    }
    return renames;
}

// ---------------------------------------------------------------- long work

// Chart n of N and its name on standard error, drawn over in place as each chart begins.
class Progress {
public:
    // The charts of one table (its id or name), or all with an empty table.
    Progress(session::Workbook& wb, const std::string& table) {
        std::string id = table.empty() ? std::string() : wb.TableID(table);
        for (auto& ch : wb.Charts())
            if (table.empty() || ch.table == id) names_[ch.id] = ch.name;
        wb.OnChartStarted([this](const std::string& chartID) { Started(chartID); });
    }
    ~Progress() { Clear(); }
    // Takes the bar off the line, for a message; the next chart draws it again.
    void Clear() {
        if (!drawn_) return;
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
        drawn_ = false;
    }

private:
    void Started(const std::string& chartID) {
        size_t total = std::max(names_.size(), ++done_);
        constexpr size_t width = 24;
        size_t filled = width * (done_ - 1) / total;
        std::string bar = std::string(filled, '#') + std::string(width - filled, '-');
        auto it = names_.find(chartID);
        fmt::print(stderr, "\r\033[K[{}] {}/{} {}", bar, done_, total, it != names_.end() ? it->second : chartID);
        std::fflush(stderr);
        drawn_ = true;
    }
    std::map<std::string, std::string> names_;
    size_t done_ = 0;
    bool drawn_ = false;
};

// Several workbooks, each refreshed and saved by a process of its own, `jobs` at a time: a line for
// each as it ends, with its messages below it, then a summary. Exit status 2 if any failed.
int RefreshMany(const std::vector<std::string>& books, unsigned jobs, const std::vector<std::string>& options, bool wait) {
    if (jobs == 0) jobs = std::max(1u, std::thread::hardware_concurrency());
    std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    std::mutex lock;
    std::condition_variable freed;
    unsigned running = 0;
    size_t failed = 0;
    std::vector<std::thread> threads;
    auto quote = [](const std::string& s) {
        std::string out = "'";
        for (char ch : s) out += ch == '\'' ? std::string("'\\''") : std::string(1, ch);
        return out + "'";
    };
    for (auto& path : books) {
        {
            std::unique_lock<std::mutex> hold(lock);
            freed.wait(hold, [&] { return running < jobs; });
            ++running;
        }
        std::string command = quote(self) + " refresh --quiet" + (wait ? " --wait" : "");
        for (auto& o : options) command += " " + quote(o);
        command += " -- " + quote(path) + " 2>&1";
        threads.emplace_back([&, command, path] {
            std::string output;
            int status = -1;
            if (FILE* child = popen(command.c_str(), "r")) {
                char buffer[4096];
                for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, child)) > 0;) output.append(buffer, n);
                status = pclose(child);
            }
            bool ok = status == 0;
            std::lock_guard<std::mutex> hold(lock);
            std::vector<std::string> lines;
            for (size_t at = 0, end; at < output.size(); at = end + 1) {
                end = output.find('\n', at);
                if (end == std::string::npos) end = output.size();
                if (end > at) lines.push_back(output.substr(at, end - at));
            }
            if (ok) {
                fmt::print("{}: refreshed\n", path);
            } else {
                ++failed;
                std::string why = lines.empty() ? "the process ended abnormally" : lines.back();
                if (why.rfind("plotsmith: ", 0) == 0) why = why.substr(11);
                fmt::print("{}: failed: {}\n", path, why);
                if (!lines.empty()) lines.pop_back();
            }
            for (auto& line : lines) fmt::print("    {}\n", line);
            std::fflush(stdout);
            --running;
            freed.notify_one();
        });
    }
    for (auto& t : threads) t.join();
    fmt::print("{} of {} workbooks refreshed{}\n", books.size() - failed, books.size(),
               failed ? fmt::format(", {} failed", failed) : std::string());
    return failed ? 2 : 0;
}

// ---------------------------------------------------------------- the wizard

// The wizard in real windows; the workbook is saved when the run changed it.
int Wizard(int argc, char** argv, session::Workbook& wb, const std::string& helpFile) {
    QApplication qapp(argc, argv);
    QApplication::setApplicationDisplayName(ps::sProductTitle);
    forms_qt::QtFrontEnd frontEnd;
    forms_qt::QtDialogs dialogs(ps::sProductTitle);
    ps::SystemClock clock;
    ps::CPlotsmithController entry(frontEnd, dialogs, clock);
    entry.RunPlotsmith(wb.Engine(), "plotsmith", helpFile);
    if (wb.Changed()) wb.Save();
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
int Define(session::Workbook& wb, Definition d) {
    CheckDefineOptions(d);
    wb.CheckOpenToCharts();
    std::vector<std::string> before;
    for (auto& ch : wb.Charts()) before.push_back(ch.id);
    forms::ScriptedDriver driver;
    ScriptWizard(driver, d);
    {
        forms::HeadlessFrontEnd frontEnd(driver);
        forms::LineDialogs dialogs;
        ps::SystemClock clock;
        ps::CPlotsmithController entry(frontEnd, dialogs, clock);
        entry.RunPlotsmith(wb.Engine(), "plotsmith", {});
    }
    for (auto& p : driver.Problems()) std::fprintf(stderr, "plotsmith: %s\n", p.c_str());
    for (auto& ch : wb.Charts()) {
        if (std::find(before.begin(), before.end(), ch.id) != before.end()) continue;
        wb.Save();
        PrintChart(ch);
        return 0;
    }
    std::fprintf(stderr, "plotsmith: no chart was made; %s is unchanged\n", wb.Path().c_str());
    return 2;
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
    bool quiet = false;
    app.add_flag("--quiet", quiet, "No progress bar while charts are drawn (there is none unless standard error is a terminal)");
    app.fallthrough();  // the options above may also follow the command

    std::string book;
    auto* list = app.add_subcommand(
        "list", "List the sheets (with visibility), defined names, tables and charts of a workbook");
    list->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();

    std::vector<std::string> books;
    unsigned jobs = 0;
    auto* refresh = app.add_subcommand(
        "refresh", "Rebuild all charts of a workbook and save it; several workbooks are refreshed side by side");
    refresh->add_option("BOOK", books, "Workbooks (.xlsx or .xlsm)")->required();
    refresh->add_option("-j,--jobs", jobs, "Workbooks refreshed at once, each by a process of its own (default: the cores)")
        ->check(CLI::Range(1u, 256u));

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

    std::string csvPath;
    auto* updateTable = app.add_subcommand(
        "update-table", "Replace a table's rows with the rows of a CSV file, rebuild its charts and save the workbook");
    updateTable->add_option("BOOK", book, "Workbook (.xlsx or .xlsm)")->required();
    updateTable->add_option("TABLE", table, "Table: its id or name, as list shows them")->required();
    updateTable
        ->add_option("--from", csvPath,
                     "CSV file (UTF-8, a header row naming the table's columns in any order; - reads standard "
                     "input). Numbers become numbers, other fields text, empty fields blank cells")
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

    if (refresh->parsed()) {
        if (books.size() > 1) return RefreshMany(books, jobs, {"--host-version", hostVersion, "--max-inflated-size",
                                                               std::to_string(maxInflatedMiB)}, wait);
        book = books.front();
    }
    session::Options options;
    options.hostVersion = hostVersion;
    options.maxInflatedSize = maxInflatedMiB << 20;
    // Commands that save hold the writer lock from open to save; list and export only read.
    options.willSave = !list->parsed() && !exportCharts->parsed();
    options.wait = wait;
    std::unique_ptr<Progress> progress;
    auto messages = [&](const std::string& line) {
        if (progress) progress->Clear();
        std::fprintf(stderr, "%s\n", line.c_str());
    };
    try {
        session::Workbook wb(book, options, messages);
        if (!quiet && isatty(STDERR_FILENO) && (refresh->parsed() || refreshTable->parsed() || updateTable->parsed()))
            progress = std::make_unique<Progress>(wb, refresh->parsed() ? std::string() : table);
        if (list->parsed()) return List(wb);
        if (exportCharts->parsed()) {
            fmt::print("{}", wb.Export(chart));
            return 0;
        }
        if (define->parsed()) return Define(wb, def);
        if (wizard->parsed()) return Wizard(argc, argv, wb, helpFile);
        if (add->parsed()) {
            std::string text = ReadInput(definition);
            for (auto& ch : wb.Add(text, sheet, newSheet, definition)) PrintChart(ch);
        }
        if (refresh->parsed()) wb.Refresh();
        if (refreshTable->parsed()) wb.RefreshTable(table);
        if (renameColumns->parsed()) wb.RenameColumns(table, ParseRenames(renames));
        if (updateTable->parsed()) {
            std::string source = csvPath == "-" ? "standard input" : csvPath;
            auto csv = ReadCsv(ReadInput(csvPath), source);
            try {
                wb.UpdateTable(table, csv.columns, csv.rows);
            } catch (const session::BadColumns& e) {
                throw BadInput(fmt::format("'{}' line 1, {}", source, e.what()));
            }
        }
        progress.reset();
        wb.Save();
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
