#pragma once
// PSFunctions: table discovery, the definition store on the hidden sheet, the operations on chart
// definitions and the sources of strategic buckets.
//
// Chart documents have the root `chart`, table documents the root `table`; both are described
// where they are made (chart_definitions.cpp, table_definitions.cpp). Every reader goes through
// GetAttributeText, so an absent attribute reads as "".
#include <memory>
#include <string>
#include <vector>

#include "common/component.h"
#include "dom/document.h"
#include "host/collection.h"
#include "host/fwd.h"

namespace ps {

// The version of the chart document that every saved definition carries.
inline constexpr const char* sChartSchemaVersion = "2";
// Chart ids are this prefix and a number from 1.
inline constexpr const char* sChartIDPrefix = "VEX_Chart";
// The sheet name of a chart whose table is gone; the pages show and test for it.
inline constexpr const char* sDeletedTableSheet = "[Deleted]";
// The longest definition the store can keep: one cell's text.
inline constexpr long lMaxDefinitionLength = 32767;
// The mark in A1 of a new definition sheet.
inline constexpr const char* sDefinitionSheetMark = "Plotsmith Version 2.0";

// Bucket totals: the bucket's name in upper case, and the sum of its values.
using BucketTotals = std::shared_ptr<host::Dictionary<double>>;

class PSFunctions {
public:
    explicit PSFunctions(Component& c) : c(c) {}

    // ---- table definitions
    // Replaces colTables with the tables found in oWorkbook: range tables first, then data sheets.
    void RetrieveTableDefinitions();
    // The document of the range table under a defined name, or Nothing.
    dom::DocumentRef GetTableDefinitionAsXML(const std::string& sTableRangeName);
    // The document of a data sheet Data1..Data5, or Nothing.
    dom::DocumentRef GetDataNTableAsXML(const std::string& sSheetName);
    // A `label-column` or `number-column` element, in a document of its own; Nothing for a column
    // without a heading.
    dom::Element GetColumnDefinitionAsXML(const host::Ref<host::Worksheet>& oSheet, long lHeaderRow, long lColumn,
                                          long lLastRow);
    // The sheet a defined name refers to, with quotes taken off; "" for a name that is no range.
    std::string SheetNameFromRefersTo(const host::Ref<host::Name>& oName);

    // ---- strategic bucket sources
    // The tables of colTables that can serve as the bucket table of this source table, by id.
    CollectionRef<dom::DocumentRef> GetBucketCandidates(const dom::Element& oTableElement);
    // The totals of a bucket table; Nothing after an error.
    BucketTotals GetStrategicBuckets(const dom::DocumentRef& oTableDoc);

    // ---- the definition store on VEX_ChartDefinitions
    // Builds colCharts, colChartObjects and colChartShapes from the definition sheet, which it
    // creates when missing; rows that can't be loaded leave the sheet. colTables has to be loaded
    // first: without it every row fails, and goes.
    void RetrieveChartDefinitions();
    // Sets `table-corrupted` on every document of colCharts.
    void ValidateChartsAgainstTables();
    // Writes a chart document to its row of the definition sheet, or to the first empty row. False
    // when it could not be written (a text longer than a cell holds, a protected sheet), after a
    // message.
    bool SaveChartDefinition(const dom::DocumentRef& oChartDoc);
    // The first worksheet with a chart shape of this id, or "".
    std::string FindChartSheet(const std::string& sChartID);
    host::Ref<host::Chart> FindChartObject(const std::string& sChartID, const std::string& sSheetName);
    host::Ref<host::Shape> FindChartComment(const std::string& sChartID, const std::string& sSheetName);
    // The table's `table-worksheet`, or "[Deleted]" for a table colTables doesn't hold.
    std::string GetTableSheetName(const std::string& sTableID);
    // Gives a workbook without charts and with the default palette the chart colours.
    void EnsureWorkbookPalette();

    // ---- charts another program re-saved without their links (chart_recovery.cpp)
    // The sheet of the chart that no shape names but that belongs to this definition: the chart
    // whose series read from the chart's block, or the one empty chart recorded for it. The
    // shape's link is restored. "" when the chart is really gone.
    std::string FindLostChart(const std::string& sChartID, const dom::Element& oChart);
    // The comment box of a chart whose link was lost, by its text or its place at the chart's
    // corner; its link is restored. Nothing when there is none.
    host::Ref<host::Shape> FindLostComment(const std::string& sChartID, const std::string& sSheetName,
                                           const dom::Element& oChart);
    // A chart whose drawn legend went with its link (a writer that drops the shapes inside charts)
    // gets it drawn again, rather than taken as deleted by the user.
    void KeepDrawnLegend(const dom::DocumentRef& oDoc, const host::Ref<host::Chart>& oChart);
    // The definition and data sheets found merely hidden are made very hidden again.
    void KeepMetadataSheetsVeryHidden();

    // ---- chart definition operations
    // Starts a new chart: oChartDoc with its default attributes, and sChartID.
    void CreateChartDoc();
    // "VEX_Chart" and the first number from 1 that colCharts doesn't hold.
    std::string NextChartID();
    // Whether a chart other than sChartID bears this name, ignoring case.
    bool ChartNameInUse(const std::string& sName);
    // sBaseName, or the first of "sBaseName (1)", "sBaseName (2)" ... that ChartNameInUse lets pass.
    std::string FreeChartName(const std::string& sBaseName);

    // ---- placing a chart (chart_location.cpp): the last steps of the Chart Location page
    // A new visible worksheet behind the last sheet, made active, without grid lines and headings;
    // false when the host refuses the name, and the sheet that was active is active again.
    bool CreateChartWorksheet(const std::string& sSheetName);
    // oChartDoc (sChartID) stands on sSheetName: the sheet is recorded and activated, the document
    // saved, a chart that colCharts doesn't hold yet gets its empty frame, and the document enters
    // colCharts. The caller has set the name. False when the definition could not be stored; an
    // error raises to the caller.
    bool PlaceChartDefinition(const std::string& sSheetName);
    // Puts the empty frame of a new chart on a sheet and enters its chart in colChartObjects.
    void CreateEmptyChart(const std::string& sSheetName, const std::string& sChartID);
    // Carries renamed columns of one table into the chart definitions that use it, and saves all.
    void UpdateChartColumnNames(const std::string& sTableRangeName, std::vector<std::string>& aOldColumnNames,
                                std::vector<std::string>& aNewColumnNames);

    // A chart document from its saved text; Nothing for text that isn't XML.
    dom::DocumentRef ParseChartDefinition(const std::string& sText);

private:
    // Loads one row's document into the run's collections; false when the row is to go.
    bool LoadChartDefinitionRow(const std::string& sText);
    // The live chart corrects its definition here (chart identity first, then the comment).
    void ReadBackChart(const dom::DocumentRef& oDoc, const host::Ref<host::Chart>& oChart,
                       const host::Ref<host::Shape>& oComment, bool bReadComment);
    // The chart frame's shape of this id on a sheet, or Nothing.
    host::Ref<host::Shape> FindChartShape(const std::string& sChartID, const std::string& sSheetName);

    Component& c;
};

}  // namespace ps
