#include "session/session.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

#include "builder/ps_chart_builder.h"
#include "common/clock.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "controller/plotsmith_controller.h"
#include "dom/document.h"
#include "forms/headless.h"
#include "host/constants.h"
#include "host/error.h"
#include "metadata/ps_functions.h"
#include "xlsx/formulas.h"
#include "xlsx/references.h"

namespace session {

namespace {

std::string Attr(const dom::Node& n, const char* name) {
    auto v = n.getAttribute(name);
    return v.IsNull() ? std::string{} : host::CStr(v);
}

bool SameText(const std::string& a, const std::string& b) { return host::UCase(a) == host::UCase(b); }

bool Holds(const std::vector<std::string>& list, const std::string& name) {
    return std::any_of(list.begin(), list.end(), [&](const std::string& n) { return SameText(n, name); });
}

std::string Joined(const std::vector<std::string>& names) {
    std::string out;
    for (auto& n : names) out += (out.empty() ? "" : ", ") + n;
    return out;
}

const char* const aChartTypes[] = {"area", "bar", "column", "pie", "bubble", "strategic bucket", "unknown"};

// "VEX_Chart" and a whole number from 1, as NextChartID makes them.
bool IsChartID(const std::string& id) {
    std::string number = host::Mid(id, host::Len(ps::sChartIDPrefix) + 1);
    return host::Left(id, host::Len(ps::sChartIDPrefix)) == ps::sChartIDPrefix && !number.empty() &&
           number[0] != '0' && number.find_first_not_of("0123456789") == std::string::npos;
}

Chart ChartOf(const dom::Element& ch) {
    std::string state = Attr(ch, "table-corrupted") == "yes"           ? "unavailable: its table no longer fits"
                        : Attr(ch, "chart-area-crosshatched") == "yes" ? "unavailable"
                                                                       : "available";
    return {Attr(ch, "id"), Attr(ch, "name"), Attr(ch, "type"), Attr(ch, "chart-worksheet"), Attr(ch, "table-id"),
            Attr(ch, "table-worksheet"), state};
}

}  // namespace

// The component as a host add-in holds it.
struct Workbook::Host {
    explicit Host(std::function<void(const std::string&)> sink) : dialogs(forms::vbCancel, std::move(sink)) {}
    host::Ref<xlsx::EngineApplication> engine;
    host::Ref<host::Workbook> book;
    forms::CallbackDriver nobody{nullptr};
    forms::HeadlessFrontEnd frontEnd{nobody};
    forms::LineDialogs dialogs;
    ps::SystemClock clock;
    ps::CPlotsmithController entry{frontEnd, dialogs, clock};
    std::function<void(const std::string&)> note;
    std::function<void(const std::string&)> chartStarted;

    // The component over the workbook, with its tables and, with charts, its chart definitions
    // loaded as a run loads them.
    ps::Component& Loaded(bool charts = true) {
        ps::Component& c = entry.component();
        c.oApplication = engine;
        c.oWorkbook = book;
        c.functions->RetrieveTableDefinitions();
        if (charts) c.functions->RetrieveChartDefinitions();
        return c;
    }
    // Formulas of tables the engine couldn't compute, a line per table; outside tables they draw nothing.
    void NoteUncomputed() {
        auto left = xlsx::TakeUncomputedFormulas(book);
        if (left.empty()) return;
        for (auto& doc : *Loaded(false).colTables) {
            auto t = doc->documentElement();
            long top = host::CLng(Attr(t, "table-top-row")), bottom = top + host::CLng(Attr(t, "table-height")) - 1;
            std::vector<long> columns;
            for (auto* kind : {"label-column", "number-column"})
                for (auto col : t.selectNodes(kind)) columns.push_back(host::CLng(Attr(col, "worksheet-column-number")));
            std::vector<xlsx::UncomputedFormula> in;
            for (auto& f : left)
                if (SameText(f.sheet, Attr(t, "table-worksheet")) && f.row >= top && f.row <= bottom &&
                    std::count(columns.begin(), columns.end(), f.col))
                    in.push_back(f);
            if (!in.empty())
                note(fmt::format("table '{}': {} not computed, kept as the file has {}: {}", Attr(t, "name"),
                                 in.size() == 1 ? "a formula" : std::to_string(in.size()) + " formulas",
                                 in.size() == 1 ? "it" : "them", xlsx::DescribeUncomputed(in)));
        }
    }
    // The guards every placing operation passes (structure protected, shared workbook).
    void RefuseUnlessOpenToCharts() {
        if (std::string refusal = entry.WorkbookRefusal(engine); !refusal.empty()) throw Refused(refusal);
    }
};

Workbook::Workbook(const std::string& path, Options options, std::function<void(const std::string&)> messages)
    : path_(path) {
    if (!messages) messages = [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); };
    host_ = std::make_unique<Host>(messages);
    host_->note = [messages](const std::string& line) { messages("plotsmith: " + line); };
    xlsx::EngineOptions engine;
    engine.version = options.hostVersion.find('.') == std::string::npos ? options.hostVersion + ".0" : options.hostVersion;
    engine.maxInflatedSize = options.maxInflatedSize;
    if (options.willSave) engine.writerLock = options.wait ? xlsx::WriterLock::Wait : xlsx::WriterLock::Refuse;
    host_->engine = xlsx::NewApplication(engine);
    host_->book = host_->engine->Open(path);
    // The component tells a host of each chart it draws through a macro of the host's.
    Host* h = host_.get();
    host_->engine->SetMacro(ps::sMacroRefreshStarted, [h](const std::vector<host::Variant>& args) {
        if (args.size() == 1 && h->chartStarted) h->chartStarted(host::CStr(args[0]));
        return host::Variant();
    });
}

void Workbook::OnChartStarted(std::function<void(const std::string&)> observer) {
    host_->chartStarted = std::move(observer);
}

Workbook::~Workbook() = default;

host::Ref<host::Workbook> Workbook::Book() const { return host_->book; }
host::Ref<xlsx::EngineApplication> Workbook::Engine() const { return host_->engine; }

std::vector<Table> Workbook::Tables() {
    auto& c = host_->Loaded(false);
    std::vector<Table> out;
    for (auto& doc : *c.colTables) {
        auto t = doc->documentElement();
        Table table{Attr(t, "id"), Attr(t, "name"), Attr(t, "table-worksheet"), Attr(t, "header-row-count") == "3",
                    Attr(t, "is-bucket-candidate") == "yes", {}, {}, {}};
        std::vector<std::pair<long, std::string>> bySheet;
        for (auto* kind : {"label-column", "number-column"})
            for (auto col : t.selectNodes(kind)) {
                (kind[0] == 'l' ? table.labels : table.numbers).push_back(Attr(col, "name"));
                bySheet.emplace_back(host::CLng(Attr(col, "worksheet-column-number")), Attr(col, "name"));
            }
        std::sort(bySheet.begin(), bySheet.end());
        for (auto& [at, name] : bySheet) table.columns.push_back(name);
        out.push_back(std::move(table));
    }
    return out;
}

std::vector<Chart> Workbook::Charts() {
    auto& c = host_->Loaded();
    std::vector<Chart> out;
    for (auto& doc : *c.colCharts) out.push_back(ChartOf(doc->documentElement()));
    return out;
}

void Workbook::Refresh() {
    host_->entry.RefreshPlotsmithData(host_->engine, "plotsmith", {});
    host_->NoteUncomputed();
}

// The table an operation names, by id or by name, without regard to case, an exact id first.
// Answers the id as the workbook spells it, which the component compares exactly.
std::string Workbook::TableID(const std::string& wanted) {
    auto& c = host_->Loaded(false);
    for (auto& doc : *c.colTables)
        if (Attr(doc->documentElement(), "id") == wanted) return wanted;
    std::string known;
    for (auto& doc : *c.colTables) {
        auto t = doc->documentElement();
        if (SameText(Attr(t, "id"), wanted) || SameText(Attr(t, "name"), wanted)) return Attr(t, "id");
        known += fmt::format("{}{} (\"{}\")", known.empty() ? "" : ", ", Attr(t, "id"), Attr(t, "name"));
    }
    throw Refused(fmt::format("'{}' has no table '{}'; its tables: {}", path_, wanted, known.empty() ? "none" : known));
}

void Workbook::RefreshTable(const std::string& table) {
    std::string id = TableID(table);
    host_->entry.RefreshChartsForTable(host_->engine, id);
    host_->NoteUncomputed();
}

// The component applies renames in order, each seeing the ones before (a swap would merge both
// columns into one), so when a rename takes a name another one gives up, every rename goes through
// a name of its own first. A rename may not give a column's charts the name of a column that stays:
// they would silently turn onto it. Column names compare without regard to case, as the pages and
// the validation do.
void Workbook::RenameColumns(const std::string& table, std::vector<Rename> renames) {
    for (auto& [from, to] : renames)
        if (from.empty() || to.empty())
            throw Refused(fmt::format("a rename is OLD=NEW with both names given, not '{}={}'", from, to));
    std::string id = TableID(table);
    auto& c = host_->Loaded();

    std::vector<std::string> tableColumns, chartColumns, labels;
    auto tableDoc = c.colTables->Item(id)->documentElement();
    for (auto* kind : {"label-column", "number-column"})
        for (auto col : tableDoc.selectNodes(kind)) tableColumns.push_back(Attr(col, "name"));
    for (auto& doc : *c.colCharts) {
        if (Attr(doc->documentElement(), "table-id") != id) continue;
        for (auto col : doc->selectNodes("//column")) chartColumns.push_back(Attr(col, "name"));
        for (auto axis : doc->selectNodes("//axis")) labels.push_back(Attr(axis, "label"));
    }
    // The component renames exact names only: an old name in another case takes the charts' spelling.
    for (auto& r : renames) {
        auto spelt = std::find_if(chartColumns.begin(), chartColumns.end(), [&](auto& n) { return SameText(n, r.first); });
        if (spelt != chartColumns.end() && std::count(chartColumns.begin(), chartColumns.end(), r.first) == 0) r.first = *spelt;
    }
    std::vector<std::string> renamedAway, unused;
    for (auto& r : renames)
        if (!SameText(r.first, r.second)) renamedAway.push_back(r.first);
    for (size_t i = 0; i < renames.size(); ++i) {
        const auto& r = renames[i];
        for (size_t j = 0; j < i; ++j) {
            if (SameText(renames[j].first, r.first)) throw Refused(fmt::format("column '{}' is renamed twice", r.first));
            if (SameText(renames[j].second, r.second))
                throw Refused(fmt::format("'{}' and '{}' would both be named '{}'", renames[j].first, r.first, r.second));
        }
        if (!Holds(chartColumns, r.first)) {
            unused.push_back(r.first);
            continue;
        }
        // Another column: one the charts use beside the renamed one, or one of the table's while
        // the renamed heading still stands beside it. A header edited before the rename is the
        // renamed column itself.
        if (SameText(r.first, r.second) || Holds(renamedAway, r.second)) continue;
        if (Holds(chartColumns, r.second) || (Holds(tableColumns, r.first) && Holds(tableColumns, r.second)))
            throw Refused(fmt::format("table '{}' already has a column '{}'; renaming '{}' to it would turn charts "
                                      "onto that column",
                                      id, r.second, r.first));
    }
    for (auto& name : unused) host_->note(fmt::format("no chart of table '{}' uses a column '{}'", id, name));

    std::vector<std::string> olds, news;
    auto givenUp = [&](const Rename& r) {
        return std::any_of(renames.begin(), renames.end(), [&](const Rename& o) { return o.first == r.second; });
    };
    bool chained =
        std::any_of(renames.begin(), renames.end(), [&](const Rename& r) { return r.second != r.first && givenUp(r); });
    std::vector<std::string> taken = labels;
    taken.insert(taken.end(), chartColumns.begin(), chartColumns.end());
    taken.insert(taken.end(), tableColumns.begin(), tableColumns.end());
    for (auto& r : renames) {
        olds.push_back(r.first);
        if (!chained) {
            news.push_back(r.second);
            continue;
        }
        std::string via = "~" + r.second + "~";
        while (Holds(taken, via)) via += "~";
        taken.push_back(via);
        news.push_back(via);
    }
    for (size_t i = 0; chained && i < renames.size(); ++i) {
        olds.push_back(news[i]);
        news.push_back(renames[i].second);
    }
    host_->entry.UpdateChartColumnNamesForTable(host_->engine, id, olds, news);
}

// ---------------------------------------------------------------- add and export

namespace {

// The chart documents of a definition: one `chart`, or the `charts` that Export writes for all.
std::vector<dom::DocumentRef> ParseDefinitions(ps::Component& c, const std::string& text, const std::string& source) {
    auto doc = c.functions->ParseChartDefinition(text);
    if (!doc) throw Refused(fmt::format("'{}' is not XML", source));
    auto root = doc->documentElement();
    std::vector<dom::DocumentRef> out;
    if (root && root.nodeName() == "chart") {
        out.push_back(doc);
    } else if (root && root.nodeName() == "charts") {
        for (auto chart : root.selectNodes("chart")) out.push_back(c.functions->ParseChartDefinition(chart.xml()));
    }
    if (out.empty()) throw Refused(fmt::format("'{}' holds no chart definition", source));
    return out;
}

// Refuses what the Source Table page would never let through: a type it doesn't know, a table
// the workbook doesn't have.
void CheckDefinition(ps::Component& c, const dom::DocumentRef& doc, const std::string& bookPath) {
    auto chart = doc->documentElement();
    std::string name = Attr(chart, "name"), type = Attr(chart, "type");
    if (std::find(std::begin(aChartTypes), std::end(aChartTypes), type) == std::end(aChartTypes))
        throw Refused(fmt::format("chart '{}' has type '{}', which is none of area, bar, column, pie, bubble, "
                                  "strategic bucket",
                                  name, type));
    // The store keeps a definition in one cell; what a cell can't hold would leave a chart without one.
    if (long length = host::Len(doc->xml()); length > ps::lMaxDefinitionLength)
        throw Refused(fmt::format("chart '{}' has a definition of {} characters; a workbook cell holds at most {}",
                                  name, length, ps::lMaxDefinitionLength));
    std::vector<std::string> tables{Attr(chart, "table-id")};
    if (type == "strategic bucket") tables.push_back(Attr(chart, "strategic-bucket-table-id"));
    for (auto& table : tables)
        if (!ps::CommonFunctions::CollectionHasKey(table, c.colTables))
            throw Refused(fmt::format("chart '{}' draws from table '{}', which '{}' doesn't have", name, table, bookPath));
}

// The sheet a chart is to stand on: an existing visible worksheet, or with newSheet one made as
// the Chart Location page makes it. Answers the sheet's name as the workbook spells it.
std::string ChartSheet(ps::Component& c, const std::string& sheet, bool newSheet, const std::string& bookPath) {
    auto& cf = *c.common;
    if (newSheet) {
        if (sheet.empty()) throw Refused("Please provide a name for the new worksheet");
        if (cf.SheetExists(sheet))
            throw Refused("Worksheet name is already in use. Please enter a different name for the worksheet.");
        if (!c.functions->CreateChartWorksheet(sheet))
            throw Refused("Invalid worksheet name. Please enter a valid name for the worksheet.");
        return sheet;
    }
    host::Ref<host::Worksheet> ws;
    try {
        ws = c.oWorkbook->Worksheets()->Item(sheet);
    } catch (const host::Error&) {
        throw Refused(fmt::format("'{}' has no worksheet '{}' (--new-sheet makes one)", bookPath, sheet));
    }
    // The page offers visible worksheets only.
    if (ws->Visible() != host::xlSheetVisible) throw Refused(fmt::format("worksheet '{}' is hidden", ws->Name()));
    return ws->Name();
}

}  // namespace

// Places each definition as the Chart Location page's last steps do, with a new id and a free
// name where the definition's are taken, and draws it.
std::vector<Chart> Workbook::Add(const std::string& definitionXml, const std::string& sheet, bool newSheet,
                                 const std::string& source) {
    host_->RefuseUnlessOpenToCharts();
    auto& c = host_->Loaded();
    auto docs = ParseDefinitions(c, definitionXml, source);
    for (auto& doc : docs) CheckDefinition(c, doc, path_);
    std::string sheetName = ChartSheet(c, sheet, newSheet, path_);

    std::vector<Chart> placed;
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
        if (!c.functions->PlaceChartDefinition(sheetName)) throw Refused("the chart could not be placed");
        c.builder->RefreshChart(c.sChartID);
        // A build writes into the definition (its data rows, the table's geometry); it is kept.
        if (!c.functions->SaveChartDefinition(doc))
            throw Refused(fmt::format("the definition of chart '{}' could not be stored", Attr(chart, "name")));
        placed.push_back(ChartOf(chart));
    }
    host_->NoteUncomputed();
    return placed;
}

std::string Workbook::Export(const std::string& wanted) {
    auto& c = host_->Loaded();
    auto text = [](const dom::DocumentRef& doc) {
        std::string s = doc->xml();
        while (!s.empty() && (s.back() == '\n' || s.back() == '\r')) s.pop_back();
        return s + "\n";
    };
    if (!wanted.empty()) {
        for (auto& doc : *c.colCharts) {
            auto chart = doc->documentElement();
            if (Attr(chart, "id") == wanted || SameText(Attr(chart, "name"), wanted)) return text(doc);
        }
        throw Refused(fmt::format("'{}' has no chart '{}'", path_, wanted));
    }
    std::string out = "<charts>\n";
    for (auto& doc : *c.colCharts) out += text(doc);
    return out + "</charts>\n";
}

// ---------------------------------------------------------------- new table data

void Workbook::UpdateTable(const std::string& table, const std::vector<std::string>& columns,
                           const std::vector<std::vector<host::Variant>>& rows) {
    host_->RefuseUnlessOpenToCharts();
    std::string id = TableID(table);
    auto& c = host_->Loaded(false);
    auto t = c.colTables->Item(id)->documentElement();

    // Where each given column goes on the sheet; every column of the table once.
    std::map<std::string, long> sheetColumns;  // upper-cased heading -> sheet column
    std::vector<std::string> headings;
    for (auto* kind : {"label-column", "number-column"})
        for (auto col : t.selectNodes(kind)) {
            sheetColumns[host::UCase(Attr(col, "name"))] = host::CLng(Attr(col, "worksheet-column-number"));
            headings.push_back(Attr(col, "name"));
        }
    std::vector<long> target;
    for (auto& name : columns) {
        auto it = sheetColumns.find(host::UCase(name));
        if (it == sheetColumns.end())
            throw BadColumns(fmt::format("column {}: table '{}' has no column '{}'; its columns: {}", target.size() + 1, id,
                                         name, Joined(headings)));
        if (std::find(target.begin(), target.end(), it->second) != target.end())
            throw BadColumns(fmt::format("column {}: '{}' is given twice", target.size() + 1, name));
        target.push_back(it->second);
    }
    for (auto& heading : headings)
        if (!Holds(columns, heading)) throw BadColumns(fmt::format("the table's column '{}' is missing", heading));
    for (size_t i = 0; i < rows.size(); ++i)
        if (rows[i].size() != columns.size())
            throw Refused(fmt::format("row {} has {} values for {} columns", i + 1, rows[i].size(), columns.size()));

    // The table grows or shrinks by whole rows at its end, so that what stands below it moves
    // with it and a new row takes the formats of the one above.
    auto sheet = host_->book->Worksheets()->Item(Attr(t, "table-worksheet"));
    long top = host::CLng(Attr(t, "table-top-row"));
    long headers = host::CLng(Attr(t, "header-row-count"));
    long firstData = top + headers;
    long oldRows = host::CLng(Attr(t, "table-height")) - headers;
    long newRows = static_cast<long>(rows.size());
    auto wholeRows = [&](long from, long count) {
        return sheet->Range(sheet->Cells(from, 1), sheet->Cells(from + count - 1, 1))->EntireRow();
    };
    if (newRows > oldRows) wholeRows(firstData + oldRows, newRows - oldRows)->Insert();
    if (newRows < oldRows) wholeRows(firstData + newRows, oldRows - newRows)->Delete();
    if (Attr(t, "header-row-count") == "3") {
        // A range table is its defined name: it now ends at the last new row.
        auto name = host_->book->Names()->Item(id);
        auto range = name->RefersToRange();
        auto area = sheet->Range(sheet->Cells(top, range->Column()),
                                 sheet->Cells(firstData + newRows - 1, range->Column() + range->Columns()->Count() - 1));
        name->SetRefersTo("=" + xlsx::QuoteSheetName(sheet->Name()) + "!" + area->Address());
    }
    for (long i = 0; i < newRows; ++i)
        for (size_t j = 0; j < columns.size(); ++j) {
            auto cell = sheet->Cells(firstData + i, target[j]);
            const host::Variant& v = rows[static_cast<size_t>(i)][j];
            if (v.IsEmpty() || v.IsNull()) cell->ClearContents();
            else cell->SetValue(v);
        }
    host_->entry.RefreshChartsForTable(host_->engine, id);
    host_->NoteUncomputed();
}

void Workbook::CheckOpenToCharts() { host_->RefuseUnlessOpenToCharts(); }

bool Workbook::Changed() { return host_->engine->Changed(host_->book); }

void Workbook::Save(const std::string& path) {
    host_->NoteUncomputed();
    if (path.empty()) host_->book->Save();
    else host_->book->SaveAs(path);
}

}  // namespace session
