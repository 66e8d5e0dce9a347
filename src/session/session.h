#pragma once
// A workbook opened for a script or the command line: the engine's workbook with the component
// loaded over it as a host add-in holds it, and the operations a pipeline runs on it. Nobody
// answers pages here: a page that comes up closes as cancelled. The component's messages go to the
// session's sink as lines. What an operation refuses (input it can't take, a workbook closed to
// charts) raises Refused with one line and changes nothing; a workbook that can't be opened or
// saved raises the engine's PackageError.
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/variant.h"
#include "host/workbook.h"
#include "xlsx/engine.h"

namespace session {

struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};
// New rows whose columns don't match the table's: one unknown, given twice, or missing.
struct BadColumns : Refused {
    using Refused::Refused;
};

struct Options {
    std::string hostVersion = "16";  // the application version the engine plays; 11 the older road
    std::uint64_t maxInflatedSize = xlsx::kDefaultMaxInflatedSize;
    // A session that will save holds the writer lock from open to save, waiting for another
    // writer or refusing at once; one that only reads takes no lock.
    bool willSave = true;
    bool wait = false;
};

struct Table {
    std::string id, name, sheet;
    bool rangeTable = false;  // a defined range; otherwise a Data sheet
    bool bucketCandidate = false;
    std::vector<std::string> labels, numbers;  // column headings
    std::vector<std::string> columns;          // all headings, in sheet order
};

struct Chart {
    std::string id, name, type, sheet, table, tableSheet;
    std::string state;  // "available", "unavailable", "unavailable: its table no longer fits"
};

// A rename of a table's column heading: OLD=NEW.
using Rename = std::pair<std::string, std::string>;

class Workbook {
public:
    explicit Workbook(const std::string& path, Options options = {},
                      std::function<void(const std::string&)> messages = {});
    ~Workbook();
    Workbook(const Workbook&) = delete;
    Workbook& operator=(const Workbook&) = delete;

    const std::string& Path() const { return path_; }
    host::Ref<host::Workbook> Book() const;
    host::Ref<xlsx::EngineApplication> Engine() const;

    std::vector<Table> Tables();
    // The id of the table an operation names by id or by name, without regard to case, an exact
    // id first; Refused, listing the tables, when the workbook has none such.
    std::string TableID(const std::string& wanted);
    std::vector<Chart> Charts();

    // Rebuilds every chart, as a host's refresh does.
    void Refresh();
    // Rebuilds the charts of one table (its id or name, without regard to case).
    void RefreshTable(const std::string& table);
    // Carries renamed headings into the chart definitions; the renames of one call take effect
    // all at once (A=B B=A swaps).
    void RenameColumns(const std::string& table, std::vector<Rename> renames);
    // Replaces the table's data rows: `columns` names the table's columns (each once, in any
    // order), each row holds one value per column (a number, a text, Empty for a blank cell).
    // The table grows or shrinks by whole sheet rows at its end, new rows taking the formats of
    // the row above; then the table's charts are rebuilt.
    void UpdateTable(const std::string& table, const std::vector<std::string>& columns,
                     const std::vector<std::vector<host::Variant>>& rows);
    // Places each chart of a definition (one `chart`, or `charts` as Export writes them) on a
    // visible worksheet, or a new one, and draws it. Answers the charts placed.
    // `source` names the definition in messages.
    std::vector<Chart> Add(const std::string& definitionXml, const std::string& sheet, bool newSheet = false,
                           const std::string& source = "the definition");
    // The stored definitions: one chart's (by id, or name without regard to case), or all inside `charts`.
    std::string Export(const std::string& chart = {});
    // Raises Refused when the workbook is closed to new charts (its structure protected, or shared).
    void CheckOpenToCharts();
    // Called as the drawing of each chart begins, with the chart's id, by every operation that
    // draws charts: what a progress display follows.
    void OnChartStarted(std::function<void(const std::string& chartID)> observer);
    // Whether a save would change what the file holds.
    bool Changed();
    // Writes the workbook atomically, to its own path or another.
    void Save(const std::string& path = {});

private:
    struct Host;
    std::string path_;
    std::unique_ptr<Host> host_;
};

}  // namespace session
